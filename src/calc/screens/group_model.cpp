#include "calc/screens/group_model.h"

#include <unordered_map>

#include "platform/encoding.h"
#include "ui/text.h"

namespace calc {
namespace {

ui::Format FormatOf(const GroupColumn& column) {
  switch (column.kind) {
    case GroupColumn::Kind::kTick:
      return ui::Format::kTick;
    case GroupColumn::Kind::kNumber:
      return ui::FormatByText(column.format);
    case GroupColumn::Kind::kText:
      break;
  }
  return ui::Format::kText;
}

std::vector<ui::Column> ColumnsOf(const GroupCalculation& calculation, const ui::CodeList& currencies) {
  std::vector<ui::Column> columns;
  for (const GroupColumn& each : calculation.Columns()) {
    ui::Column column;
    column.field = each.field;
    column.caption = ui::Q(each.caption);
    column.format = FormatOf(each);
    column.width = each.kind == GroupColumn::Kind::kText ? 6 : 11;
    // Invoice numbers and partner codes are as long as texts of a group get.
    if (each.field == "Factura_Numar" || each.field == "VAT_ID" || each.field == "Transp_Document") {
      column.width = 16;
    }
    column.editable = each.editable;
    if (each.field == "Transport_Moneda") column.codes = [&currencies] { return &currencies; };
    columns.push_back(std::move(column));
  }
  return columns;
}

}  // namespace

QString RemarksText(const GroupFigures& figures) {
  if (!figures.error.empty()) return QStringLiteral("Eroare: ") + ui::Q(figures.error);
  QStringList remarks;
  for (const std::string& remark : figures.remarks) remarks << ui::Q(remark);
  return remarks.join(QStringLiteral("; "));
}

GroupModel::GroupModel(GroupCalculation& calculation, const FiguresByRow& figures,
                       const ui::CodeList& currencies, const std::string& amount)
    : RecordsetModel(ColumnsOf(calculation, currencies), calculation.rows()),
      calculation_(&calculation),
      figures_(&figures),
      tick_(ColumnOf("Redistribuie")),
      amount_(ColumnOf(amount)) {}

void GroupModel::Refresh() {
  list_rows_.clear();
  SetRows(calculation_->rows());
}

void GroupModel::SortBy(int index, Qt::SortOrder order) {
  list_rows_.clear();
  RecordsetModel::SortBy(index, order);
}

std::int64_t GroupModel::ListRow(int row) const {
  if (list_rows_.empty()) {
    std::unordered_map<std::string, std::int64_t> by_key;
    store::Recordset list = calculation_->rows();
    for (list.SetFilter(""); !list.eof(); list.MoveNext()) {
      by_key[calculation_->GroupKey(list)] = list.position();
    }
    store::Recordset shown = rows();
    for (int i = 0; i < Rows(); ++i) {
      shown.set_position(i);
      list_rows_.push_back(by_key[calculation_->GroupKey(shown)]);
    }
  }
  return list_rows_[static_cast<std::size_t>(row)];
}

int GroupModel::ShownRow(std::int64_t list_row) const {
  for (int row = 0; row < Rows(); ++row) {
    if (ListRow(row) == list_row) return row;
  }
  return -1;
}

int GroupModel::entry_column() const {
  for (int i = 0; i < columnCount(); ++i) {
    if (columns()[static_cast<std::size_t>(i)].editable && i != tick_) return i;
  }
  return 0;
}

bool GroupModel::SetTextAt(int row, int index, const QString& text) {
  if (!RecordsetModel::SetTextAt(row, index, text)) return false;
  if (index == amount_ && tick_ >= 0) {
    RecordsetModel::SetTextAt(row, tick_,
                              text.trimmed().isEmpty() ? QStringLiteral("0") : QStringLiteral("1"));
  }
  Q_EMIT Entered(row);
  return true;
}

bool GroupModel::TakesSameText(int row, int index) const {
  return index == amount_ && tick_ >= 0 && !ValueAt(row, tick_).ToBoolean();
}

QString GroupModel::TextAt(int row, int index) const {
  const bool entered_later = tick_ >= 0 && columns()[static_cast<std::size_t>(index)].editable;
  if (entered_later && store::NumberOr(ValueAt(row, index), 0) == 0 &&
      ui::RightAligned(columns()[static_cast<std::size_t>(index)].format)) {
    // A ticked zero takes a group's shares away; a rate of zero counts as none.
    if (index != amount_ || !ValueAt(row, tick_).ToBoolean()) return {};
  }
  return RecordsetModel::TextAt(row, index);
}

QVariant GroupModel::data(const QModelIndex& index, int role) const {
  // A zero typed where nothing shows is an entry, not what the cell held.
  if (role == Qt::EditRole && index.isValid() && TextAt(index.row(), index.column()).isEmpty()) return {};
  return RecordsetModel::data(index, role);
}

QString GroupModel::ProblemAt(int row, int index) const {
  if (index >= 0 || figures_->empty()) return {};
  const auto found = figures_->find(ListRow(row));
  return found == figures_->end() ? QString() : RemarksText(found->second);
}

FiguresModel::FiguresModel(std::vector<ui::Column> columns, const FiguresByRow& figures)
    : GridModel(std::move(columns)), figures_(&figures) {
  Refresh();
}

void FiguresModel::Refresh() {
  beginResetModel();
  rows_.clear();
  for (const auto& [row, figures] : *figures_) rows_.push_back(row);
  endResetModel();
}

int FiguresModel::ShownRow(std::int64_t list_row) const {
  const auto found = std::lower_bound(rows_.begin(), rows_.end(), list_row);
  return found != rows_.end() && *found == list_row ? static_cast<int>(found - rows_.begin()) : -1;
}

store::Value FiguresModel::ValueAt(int row, int index) const {
  const auto found = figures_->find(ListRow(row));
  if (found == figures_->end()) return {};
  const GroupFigures& figures = found->second;
  const std::string& field = column(index).field;
  if (field == "group") return figures.group;
  if (field == "lines") return figures.lines;
  if (field == "remarks") return ui::Utf8(RemarksText(figures));
  if (!figures.error.empty()) return {};  // the lines are as they were
  if (field == "invoiced") return figures.invoiced;
  if (field == "expected") return figures.expected;
  if (field == "shared") return figures.shared;
  if (field == "difference") return figures.difference;
  if (field == "Val_Stat" && figures.Val_Stat) return *figures.Val_Stat;
  return {};
}

QString FiguresModel::ProblemAt(int row, int index) const {
  const auto found = figures_->find(ListRow(row));
  return index >= 0 || found == figures_->end() ? QString() : RemarksText(found->second);
}

}  // namespace calc
