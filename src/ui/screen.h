#pragma once

#include <QDialog>
#include <QString>
#include <functional>

#include "ui/context.h"

class QShortcut;
class QSplitter;

namespace ui {

/// Every window of the program but the main one: its object name is the screen's name (Frm_…), F1 opens the
/// manual at it, Esc closes it, it opens centred over its parent and remembers its size.
class Screen : public QDialog {
  Q_OBJECT
 public:
  Screen(Context& context, const QString& name, QWidget* parent);

  Context& context() { return *context_; }
  session::Session& session() { return context_->session; }

  /// Runs what a command does; a failing store is shown by the common error routine and answers false.
  bool Try(const std::function<void()>& action);

  /// A key for a button of this screen; the button's tooltip then names the key.
  void BindKey(QPushButton* button, const QKeySequence& key);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  /// Enter presses the button that has the focus; the default one only from elsewhere.
  void keyPressEvent(QKeyEvent* key) override;
  /// Size at the first opening ever; the remembered one wins.
  void SetFirstSize(const QSize& size) { first_size_ = size; }

 private:
  Context* context_;
  QSize first_size_;
  bool placed_ = false;
};

/// Gives a splitter the sizes it was left with and keeps what the user makes of them. `key` is the splitter's
/// own within its screen.
void RememberSplit(Context& context, const QString& screen, const QString& key, QSplitter* splitter);

/// Runs an action outside of a screen in the same way.
bool Try(Context& context, const std::function<void()>& action);

}  // namespace ui
