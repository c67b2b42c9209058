#pragma once

#include "import/screens/choices.h"
#include "ui/list_screen.h"

namespace importer {

/// The templates of the open company, to choose one for editing or for deleting.
class Frm_Machete : public ui::ListScreen {
  Q_OBJECT
 public:
  enum class Purpose { kModify, kDelete };  ///< what Enter and a double click do

  /// Throws store::Error where the table cannot be read.
  Frm_Machete(ui::Context& context, Purpose purpose, QWidget* parent, FileChooser choose_file = {});

 private:
  void Reload(const std::string& current);
  std::string Chosen();  ///< name of the current template; "" after having said that there is none
  void Edit(const std::string& Nume_Structura);
  void Delete();

  FileChooser choose_file_;
  ui::RecordsetModel* model_;
};

}  // namespace importer
