#pragma once

#include <QString>
#include <functional>

#include "ui/screen.h"

class QHBoxLayout;
class QTextBrowser;

namespace ui {

class CommandRow;

/// The reader skeleton: a text to read, with zoom (Ctrl+plus, Ctrl+minus, Ctrl+0), print, export and close.
/// How the text is printed is the screen's own matter.
class Reader : public Screen {
  Q_OBJECT
 public:
  Reader(Context& context, const QString& name, QWidget* parent);

  CommandRow* commands() { return commands_; }
  QTextBrowser* text() { return text_; }

  void SetPlainText(const QString& text);
  void SetHtml(const QString& html);

  /// Print (Ctrl+P), PDF (Ctrl+E) and close, after the screen's own commands.
  void AddReaderCommands();
  /// A double click on a line of the text, from 0.
  void OnLineActivated(std::function<void(int line)> handler);
  void ShowStatus(const QString& text);

  virtual void Print() = 0;
  virtual void ExportPdf() = 0;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Zoom(int steps);

  CommandRow* commands_;
  QTextBrowser* text_;
  QLabel* status_;
  std::function<void(int)> on_line_;
  int zoom_ = 0;
};

}  // namespace ui
