#pragma once

#include <QTextBrowser>
#include <string>

namespace tariff {

/// Shows rich text of the explanatory notes; what is copied from it goes to the clipboard as rich text too.
class NotesPane : public QTextBrowser {
  Q_OBJECT
 public:
  explicit NotesPane(QWidget* parent);

  void SetRtf(std::string rtf);
  const std::string& rtf() const { return rtf_; }
  /// The whole note, as rich text and as plain text.
  void CopyAll() const;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Render();
  std::string rtf_;
};

}  // namespace tariff
