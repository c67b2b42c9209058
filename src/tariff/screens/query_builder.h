#pragma once

#include <QPlainTextEdit>
#include <map>
#include <string>

#include "tariff/query/scripts.h"
#include "tariff/screens/query_models.h"
#include "ui/form.h"
#include "ui/list_screen.h"

namespace tariff {

/// Asks for the name under which a statement is saved.
class Frm_Script : public ui::Form {
  Q_OBJECT
 public:
  Frm_Script(ui::Context& context, const QString& name, QWidget* parent);
  std::string Script_Name() const;
};

/// The query builder: table, columns and conditions on the left, the statement they make (or one typed by
/// hand) and the saved scripts on the right, the rows below. Reads only.
class Frm_Interogari : public ui::ListScreen {
  Q_OBJECT
 public:
  /// Throws store::Error where no company is open.
  Frm_Interogari(ui::Context& context, QWidget* parent);
  ~Frm_Interogari() override;

  /// Saves the statement in the box under a name; one that is taken is replaced only if the user says so.
  /// False where he does not.
  bool SaveAs(const std::string& Script_Name);

 private:
  void AddCommands();
  QWidget* TablesPart();
  QWidget* ColumnsPart();
  QWidget* StatementPart();

  void ShowTable(int row);
  void TickAll();
  void ShowQuery();  ///< build and run
  void RunTyped();
  /// False after having said why a typed statement is refused, and pointed at the word.
  bool MayUse(const std::string& text);
  void Run(const BuiltQuery* built);
  void ShowRows(store::Recordset rows, const std::string& statement);
  /// Puts the cursor where the statement stopped making sense, and marks the condition it came from.
  void PointAt(const store::Error& error, const BuiltQuery* built);
  void MarkPlace(int begin, int end);

  void Save();
  void LoadScript(const QString& name);
  void DeleteScript();
  void ReadScripts(const std::string& chosen);
  void Export();
  void PrintRows();

  /// Where the widths of the result's columns are remembered.
  QString ResultLayout() const { return objectName() + QStringLiteral("_rezultat"); }
  std::string statement() const;
  void PutStatement(const QString& text);

  QueryTablesModel* tables_model_;
  QueryColumnsModel* columns_model_;
  std::unique_ptr<ui::RecordsetModel> rows_model_;
  ui::Grid* tables_ = nullptr;
  ui::Grid* columns_ = nullptr;
  QPlainTextEdit* TXT_SQL_ = nullptr;
  QComboBox* scripts_ = nullptr;
  QPushButton* delete_ = nullptr;
  std::string table_;
  std::map<std::string, std::vector<QueryColumn>> asked_;  ///< of tables left, to find them as they were
  std::string shown_statement_;                            ///< the one behind the rows
};

/// Opens the query builder and comes back when it is closed. A failing store is shown.
void OpenQueryBuilder(ui::Context& context, QWidget* parent);

}  // namespace tariff
