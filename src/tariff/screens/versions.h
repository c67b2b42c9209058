#pragma once

#include <functional>
#include <string>

#include "tariff/load.h"
#include "ui/form.h"
#include "ui/list_screen.h"

namespace tariff {

/// The tariffs that are there: which file serves which years, and loading the institute's nomenclature file
/// of a year. The constructor reads the versions and throws store::Error.
class Frm_Tarif_Versiuni : public ui::ListScreen {
  Q_OBJECT
 public:
  /// Asks for a file; its Windows path, or "" where the user gives up.
  using FileChooser = std::function<std::string()>;

  /// `data_folder` holds the layout of tariff files.
  Frm_Tarif_Versiuni(ui::Context& context, std::string data_folder, QWidget* parent = nullptr,
                     FileChooser choose_file = {});

  bool loaded() const { return loaded_; }  ///< some tariff was, since the screen opened

 private:
  void Reload();
  void SelectYear(int year);
  void Load();
  std::string AskForFile();

  std::string data_folder_;
  FileChooser choose_file_;
  ui::RecordsetModel* model_;
  bool loaded_ = false;
};

/// Year and file of a nomenclature to load; nothing is loaded here.
class Frm_Tarif_Incarcare : public ui::Form {
  Q_OBJECT
 public:
  Frm_Tarif_Incarcare(ui::Context& context, Frm_Tarif_Versiuni::FileChooser choose_file, QWidget* parent);

  std::string file() const;  ///< Windows path
  int year() const;

 private:
  void Browse();
  void ProposeYear();  ///< from the file's name
  void Confirm();
  Frm_Tarif_Versiuni::FileChooser choose_file_;
};

}  // namespace tariff
