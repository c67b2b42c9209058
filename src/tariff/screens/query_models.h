#pragma once

#include <map>
#include <string>
#include <vector>

#include "tariff/query/builder.h"
#include "ui/grid_model.h"

namespace tariff {

/// "Nume Tabel": what can be asked.
class QueryTablesModel : public ui::GridModel {
  Q_OBJECT
 public:
  explicit QueryTablesModel(std::vector<store::SchemaTable> tables, QObject* parent = nullptr);

  const std::string& NameAt(int row) const { return tables_[static_cast<std::size_t>(row)].name; }
  int RowOf(std::string_view name) const;  ///< -1 where there is none

  int Rows() const override { return static_cast<int>(tables_.size()); }
  store::Value ValueAt(int row, int column) const override;
  QString PictureAt(int row, int column) const override;

 private:
  std::vector<store::SchemaTable> tables_;
};

/// The columns of the chosen table with what is asked of each.
class QueryColumnsModel : public ui::GridModel {
  Q_OBJECT
 public:
  enum Place { kFieldName, kShown, kOperator, kValue, kDataType, kDescription };

  explicit QueryColumnsModel(std::vector<SearchOperator> operators, QObject* parent = nullptr);

  void SetRows(std::vector<QueryColumn> rows);
  const std::vector<QueryColumn>& rows() const { return rows_; }
  void ShowAll(bool shown);
  /// The row that is edited; its kind decides which operators the list offers.
  void SetCurrentRow(int row) { current_row_ = row; }
  /// What the last run said about a row's condition, until the row is changed.
  void SetError(int row, const QString& text);
  void ClearErrors();

  int Rows() const override { return static_cast<int>(rows_.size()); }
  store::Value ValueAt(int row, int column) const override;
  bool SetTextAt(int row, int column, const QString& text) override;
  QString ProblemAt(int row, int column) const override;

 Q_SIGNALS:
  void NotInList();  ///< an operator was typed that the column's type does not have

 private:
  const QueryColumn& At(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  const ui::CodeList* OperatorsOfCurrentRow() const;

  std::vector<SearchOperator> operators_;
  std::map<std::string, ui::CodeList> lists_;  // by data type
  std::vector<QueryColumn> rows_;
  std::map<int, QString> errors_;
  int current_row_ = -1;
};

/// Columns for any result, formatted by their types.
std::vector<ui::Column> ResultColumns(store::Recordset rows);

}  // namespace tariff
