#pragma once

#include "reports/declaration_report.h"
#include "reports/screens/preview.h"
#include "ui/screen.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QVBoxLayout;

namespace ui {
class CommandRow;
}

namespace reports {

class PageView;

/// The preview of a report: its pages, to be read, searched, printed, written to a file or sent.
class Frm_Raport : public ui::Screen {
  Q_OBJECT
 public:
  /// Throws ReportError or store::Error where the report cannot be made.
  Frm_Raport(ui::Context& context, Subject subject, QWidget* parent);
  ~Frm_Raport() override;

  const Report& report() const { return *report_; }
  const Layout& layout_of_pages() const { return *layout_; }
  PageView* view() { return view_; }

  /// Writes a file; false after having said why. The file dialog and what follows are left out.
  bool WritePdf(const std::string& windows_path);
  bool WriteHtml(const std::string& windows_path);
  bool WriteXlsx(const std::string& windows_path);

 protected:
  void keyPressEvent(QKeyEvent* key) override;

 private:
  void AddCommands();
  void AddViewRow(QVBoxLayout* layout);
  void AddSearchRow(QVBoxLayout* layout);
  void AddKeys();
  /// The one to open with. Throws ReportError.
  const Definition* FirstDefinition() const;
  /// Makes the report of a definition; the one on show stays where that fails.
  void Make(const Definition& definition);
  void LayOut(Orientation orientation);
  void ShowPlace();
  void ChooseZoom(int index);
  void StepZoom(int direction);
  void FindNext(int direction);
  /// Breaks what pages are left, with progress; false where the user stopped it.
  bool FinishPages(Layout& pages);
  void Print();
  using Writer = bool (Frm_Raport::*)(const std::string& windows_path);
  void Export(const QString& filter, const QString& extension, Writer writer);
  void SendByMail();
  /// The report as PDF; empty after having said why not.
  QByteArray MakePdf();
  bool Store(const std::string& windows_path, std::string_view bytes);
  QString Title() const;
  bool landscape() const;

  Subject subject_;
  Definitions definitions_;
  Definition plain_;
  Fonts fonts_;
  std::unique_ptr<Report> report_;
  std::unique_ptr<Layout> layout_;
  ui::CommandRow* commands_;
  PageView* view_;
  QComboBox* choice_ = nullptr;
  int shown_ = -1;  ///< of the choice
  QComboBox* orientation_ = nullptr;
  QComboBox* zoom_ = nullptr;
  QSpinBox* page_ = nullptr;
  QLabel* pages_ = nullptr;
  QLabel* status_ = nullptr;
  QWidget* search_ = nullptr;
  QLineEdit* search_text_ = nullptr;
};

}  // namespace reports
