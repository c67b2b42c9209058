#include "ui/grid_layout.h"

#include <algorithm>

#include "ui/text.h"

namespace ui {
namespace {

constexpr int kNarrowest = 20, kWidest = 3000;  // pixels

QString NameOf(const std::vector<Column>& columns, int column) {
  const Column& each = columns[static_cast<std::size_t>(column)];
  return each.field.empty() ? QStringLiteral("#%1").arg(column) : Q(each.field);
}

int ColumnNamed(const std::vector<Column>& columns, const QString& name) {
  for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
    if (NameOf(columns, i) == name) return i;
  }
  return -1;
}

}  // namespace

QString ColumnsText(const QHeaderView& header, const std::vector<Column>& columns) {
  QStringList parts;
  for (int visual = 0; visual < header.count(); ++visual) {
    const int column = header.logicalIndex(visual);
    // A hidden section's size is 0; its first width comes back when it is shown.
    parts << QStringLiteral("%1=%2").arg(NameOf(columns, column)).arg(header.sectionSize(column));
  }
  return parts.join(';');
}

bool ApplyColumnsText(QHeaderView& header, const std::vector<Column>& columns, const QString& text) {
  std::vector<int> order;
  for (const QString& part : text.split(';', Qt::SkipEmptyParts)) {
    const qsizetype equals = part.lastIndexOf('=');
    if (equals < 0) continue;
    const int column = ColumnNamed(columns, part.left(equals));
    if (column < 0 || std::find(order.begin(), order.end(), column) != order.end()) continue;
    const int width = part.mid(equals + 1).toInt();
    if (width > 0 && !header.isSectionHidden(column)) {
      header.resizeSection(column, std::clamp(width, kNarrowest, kWidest));
    }
    order.push_back(column);
  }
  if (order.empty()) return false;
  for (int column = 0; column < static_cast<int>(columns.size()); ++column) {
    if (std::find(order.begin(), order.end(), column) != order.end()) continue;
    const auto before = std::find(order.begin(), order.end(), column - 1);
    order.insert(before == order.end() ? order.begin() : before + 1, column);
  }
  for (int visual = 0; visual < static_cast<int>(order.size()); ++visual) {
    header.moveSection(header.visualIndex(order[static_cast<std::size_t>(visual)]), visual);
  }
  return true;
}

QString SortText(const std::vector<Column>& columns, int column, Qt::SortOrder order) {
  if (column < 0) return {};
  return NameOf(columns, column) +
         (order == Qt::AscendingOrder ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
}

std::pair<int, Qt::SortOrder> ParseSortText(const std::vector<Column>& columns, const QString& text) {
  const qsizetype blank = text.lastIndexOf(' ');
  if (blank < 0) return {-1, Qt::AscendingOrder};
  return {ColumnNamed(columns, text.left(blank)),
          text.mid(blank + 1) == "DESC" ? Qt::DescendingOrder : Qt::AscendingOrder};
}

}  // namespace ui
