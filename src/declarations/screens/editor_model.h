#pragma once

#include <map>

#include "declarations/editor/editor.h"
#include "ui/grid_model.h"

namespace declarations {

/// The editor's lines in a grid: one row a line and, where lines can be added, a blank last row that begins
/// one. Made anew whenever the editor's columns change.
class EditorModel : public ui::GridModel {
  Q_OBJECT
 public:
  EditorModel(session::Session& session, Editor& editor, QObject* parent);

  /// After the editor has read its lines anew.
  void Reload();
  /// After lines were begun, added or given up, and whatever else changed in the lines on show.
  void Follow();
  /// Whether the columns are still those of the editor.
  bool Fits() const;

  int Rows() const override { return rows_; }
  int DataRows() const override { return editor_->row_count(); }
  store::Value ValueAt(int row, int column) const override;
  bool SetTextAt(int row, int column, const QString& text) override;
  bool CanEdit(int row, int column) const override { return editor_->CanEdit(row, column); }
  QString ProblemAt(int row, int column) const override;
  void SortBy(int column, Qt::SortOrder order) override;
  QVariant data(const QModelIndex& index, int role) const override;
  /// Captions in two lines: code columns stay as narrow as their codes.
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 Q_SIGNALS:
  void CellTaken(const QString& note);  ///< what the user should know of it, mostly nothing

 private:
  std::vector<ui::Column> ColumnsOf();
  const ui::CodeList* Codes(const tariff::CodeCheck& codes);
  const ui::CodeList* Descriptions();
  int RowsNow() const { return editor_->row_count() + (editor_->can_edit() ? 1 : 0); }

  session::Session* session_;
  Editor* editor_;
  int rows_ = 0;
  std::map<const tariff::CodeCheck*, ui::CodeList> lists_;
  ui::CodeList descriptions_;
  std::vector<int> code_columns_;
};

}  // namespace declarations
