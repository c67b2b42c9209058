#include "ui/grid_model.h"

#include "ui/icons.h"
#include "ui/text.h"

namespace ui {

GridModel::GridModel(std::vector<Column> columns, QObject* parent)
    : QAbstractTableModel(parent), columns_(std::move(columns)) {}

int GridModel::ColumnOf(std::string_view field) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i].field == field) return static_cast<int>(i);
  }
  return -1;
}

bool GridModel::SetTextAt(int, int, const QString&) { return false; }
bool GridModel::CanEdit(int, int index) const { return column(index).editable; }
QString GridModel::ProblemAt(int, int) const { return {}; }
QString GridModel::PictureAt(int, int) const { return {}; }
void GridModel::SortBy(int, Qt::SortOrder) {}
bool GridModel::CanSearch(int) const { return true; }

QString GridModel::TextAt(int row, int index) const {
  return Shown(ValueAt(row, index), column(index).format);
}

int GridModel::FindText(int index, const QString& text, int from) const {
  const int rows = Rows();
  for (int i = 0; i < rows; ++i) {
    const int row = (from + i) % rows;
    if (TextAt(row, index).startsWith(text, Qt::CaseInsensitive)) return row;
  }
  return -1;
}

bool GridModel::Refuse(const QString& message) {
  Q_EMIT Refused(message);
  return false;
}

int GridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : Rows(); }

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= Rows()) return {};
  const int row = index.row(), at = index.column();
  const Format format = column(at).format;
  switch (role) {
    case Qt::DisplayRole:
      return TextAt(row, at);
    case Qt::EditRole:
      return ForEditing(ValueAt(row, at), format);
    case Qt::TextAlignmentRole:
      return QVariant(Qt::AlignVCenter | (RightAligned(format) ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::CheckStateRole:
      if (format != Format::kTick) return {};
      return int{ValueAt(row, at).ToBoolean() ? Qt::Checked : Qt::Unchecked};
    case Qt::ToolTipRole: {
      const QString cell = ProblemAt(row, at);
      return cell.isEmpty() ? ProblemAt(row, -1) : cell;
    }
    case Qt::DecorationRole: {
      const QString picture = PictureAt(row, at);
      return picture.isEmpty() ? QVariant() : Icon(picture);
    }
    default:
      return {};
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) {
    if (section < 0 || section >= Rows()) return {};
    if (role == Qt::ToolTipRole) return ProblemAt(section, -1);
    return {};
  }
  if (section < 0 || section >= columnCount()) return {};
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return column(section).caption;
  if (role == Qt::TextAlignmentRole) {
    return QVariant(Qt::AlignVCenter |
                    (RightAligned(column(section).format) ? Qt::AlignRight : Qt::AlignLeft));
  }
  return {};
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (CanEdit(index.row(), index.column())) flags |= Qt::ItemIsEditable;
  return flags;
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid()) return false;
  if (!SetTextAt(index.row(), index.column(), value.toString())) return false;
  if (index.row() < Rows()) {
    // A cell may fill others of its row (look-ups) and change what the row's mark says.
    Q_EMIT dataChanged(index.siblingAtColumn(0), index.siblingAtColumn(columnCount() - 1));
    Q_EMIT headerDataChanged(Qt::Vertical, index.row(), index.row());
  }
  return true;
}

void GridModel::sort(int index, Qt::SortOrder order) {
  beginResetModel();
  SortBy(index, order);
  endResetModel();
}

}  // namespace ui
