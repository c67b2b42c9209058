#pragma once

#include "declarations/lines/lines.h"
#include "import/run.h"
#include "import/screens/choices.h"
#include "ui/form.h"

namespace importer {

/// Opens the editor on a declaration and comes back when it is closed. `parent` is the window to stand over.
using OpenDeclaration = std::function<void(const declarations::Identity& identity, QWidget* parent)>;

/// The spreadsheet import: what to take over, from where and by which template. Stays open after a run, with
/// the rows that were refused and the declaration at hand.
class Frm_Preluare : public ui::Form {
  Q_OBJECT
 public:
  /// Throws store::Error where the templates cannot be read.
  Frm_Preluare(ui::Context& context, OpenDeclaration open_declaration, QWidget* parent,
               FileChooser choose_file = {});

  const Result& last() const { return result_; }  ///< of the last run

 Q_SIGNALS:
  void LinesSaved();  ///< by a run

 private:
  void AddFields();
  void AddTemplateCommand(const char* name, const QString& caption, const QString& icon, const QString& tip,
                          std::function<void()> action);
  Inputs Typed() const;
  void ReadTemplates(const std::string& current);
  /// Folder, worksheet and flow of the chosen template.
  void FollowTemplate();
  void ChooseFile();
  void TakeFile(const std::string& path);
  void FitSheet();  ///< takes the file's only sheet; where it has others than the one named, says so
  void EditTemplate();
  void NewTemplate();
  void Run();
  void ShowResult();
  void ShowRejected();
  void FocusMissing();

  OpenDeclaration open_declaration_;
  FileChooser choose_file_;
  Inputs taken_;  ///< of the last run
  Result result_;
  std::string folder_;  ///< of the chosen template
  QComboBox *template_ = nullptr, *sheet_ = nullptr, *operation_ = nullptr;
  QLabel* state_ = nullptr;
  QPushButton *rejected_ = nullptr, *declaration_ = nullptr;
};

}  // namespace importer
