#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QString>
#include <memory>
#include <string_view>

#include "platform/progress.h"

class QDialog;
class QLabel;
class QProgressBar;
class QPushButton;

namespace ui {

/// Object name of the progress box.
inline constexpr QLatin1String kProgressBox("Frm_Progres");

/// The progress of long runs on screen: a modal box with the step's text, a bar and, where the run can stop
/// safely, a cancel button. It appears once a run has taken 0.3 s and processes the window's events, so that
/// the program stays alive; until then user input waits. Runs are marked by LongRun; outside of one nothing
/// is shown.
class QtProgress : public platform::Progress {
 public:
  QtProgress();
  ~QtProgress() override;

  void Update(std::string_view caption, int percent) override;
  void Status(std::string_view text) override;
  bool Cancelled() const override { return cancelled_; }

 private:
  friend class LongRun;
  void Begin(const QString& title, const QString& text, bool can_cancel);
  void End();
  void Show();
  void Pump();

  int depth_ = 0;
  bool cancelled_ = false, can_cancel_ = false;
  QString title_, text_, status_;
  int percent_ = -1;
  QElapsedTimer since_start_, since_pump_;
  std::unique_ptr<QDialog> box_;
  QLabel* text_label_ = nullptr;
  QLabel* status_label_ = nullptr;
  QProgressBar* bar_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

enum class Stopping { kNotPossible, kPossible };

/// Marks a long run of the session's progress for its scope. With another Progress than ours (tests) it does
/// nothing. Runs may nest; the outermost one's box stays.
class LongRun {
 public:
  LongRun(platform::Progress& progress, const QString& title, Stopping stopping = Stopping::kNotPossible,
          const QString& text = {});
  ~LongRun();
  LongRun(const LongRun&) = delete;
  LongRun& operator=(const LongRun&) = delete;

 private:
  QtProgress* progress_;
};

}  // namespace ui
