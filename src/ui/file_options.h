#pragma once

#include <QString>
#include <string>

#include "ui/screen.h"

namespace ui {

/// What to do with a file that has just been written: open it, show it in its folder, copy it somewhere, send
/// it by mail. Closing does nothing.
class Frm_Fisier_Optiuni : public Screen {
  Q_OBJECT
 public:
  Frm_Fisier_Optiuni(Context& context, const std::string& windows_path, QWidget* parent);

  /// The file dialog's part left out. False after having said why.
  bool CopyTo(const std::string& windows_folder);

 private:
  void Copy();
  void SendByMail();

  std::string path_;
  QLabel* status_;
};

/// A title as the name of a file, without extension: what no file name may have is left out.
QString FileNameFor(const QString& title);

/// Asks where to write a file: a name made of the title, in the folder that the settings name for saving.
/// Windows path; empty where the user gives up.
std::string AskForFile(Screen* screen, const QString& title, const QString& caption, const QString& filter,
                       const QString& extension);

/// Opens the user's mail program on a new message with the file attached; false where this host has no way
/// to.
bool MailWithAttachment(const QString& host_path);

}  // namespace ui
