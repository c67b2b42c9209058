#pragma once

#include <map>
#include <vector>

#include "calc/redistribution/group_calculation.h"
#include "ui/grid_model.h"

namespace calc {

/// What the groups get, by the group's row in the order the list was read.
using FiguresByRow = std::map<std::int64_t, GroupFigures>;

/// The group list, edited in memory. An amount ticks its row and an emptied one takes the tick away; what was
/// not entered shows as nothing instead of the list's zeros.
class GroupModel : public ui::RecordsetModel {
  Q_OBJECT
 public:
  /// All outlive the model. `amount` is the column to share; empty where every group is taken.
  GroupModel(GroupCalculation& calculation, const FiguresByRow& figures, const ui::CodeList& currencies,
             const std::string& amount);

  void Refresh();  ///< after the list was read anew
  int amount_column() const { return amount_; }
  int entry_column() const;  ///< the first one to type into
  /// A shown row's row in the list, and back (-1 where it is not shown).
  std::int64_t ListRow(int row) const;
  int ShownRow(std::int64_t list_row) const;

  bool SetTextAt(int row, int column, const QString& text) override;
  bool TakesSameText(int row, int column) const override;  ///< an amount typed again ticks its row again
  QString TextAt(int row, int column) const override;
  QString ProblemAt(int row, int column) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  void SortBy(int column, Qt::SortOrder order) override;

 Q_SIGNALS:
  void Entered(int row);  ///< a cell was changed

 private:
  GroupCalculation* calculation_;
  const FiguresByRow* figures_;
  int tick_, amount_;
  mutable std::vector<std::int64_t> list_rows_;  ///< of the shown rows; empty: to be found
};

/// The figures themselves, read only, in the order of the list.
class FiguresModel : public ui::GridModel {
  Q_OBJECT
 public:
  /// Columns: "group", "lines", "invoiced", "expected", "shared", "difference", "Val_Stat", "remarks".
  FiguresModel(std::vector<ui::Column> columns, const FiguresByRow& figures);

  void Refresh();
  std::int64_t ListRow(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  int ShownRow(std::int64_t list_row) const;

  int Rows() const override { return static_cast<int>(rows_.size()); }
  store::Value ValueAt(int row, int column) const override;
  QString ProblemAt(int row, int column) const override;

 private:
  const FiguresByRow* figures_;
  std::vector<std::int64_t> rows_;
};

/// What the user should know about a group: the failed statement's reason, else the remarks; "; " between.
QString RemarksText(const GroupFigures& figures);

}  // namespace calc
