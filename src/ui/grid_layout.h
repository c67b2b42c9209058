#pragma once

#include <QHeaderView>
#include <QString>
#include <vector>

#include "ui/grid_model.h"

namespace ui {

/// A grid's columns as text for the screen memory: "Tara_COD=90;Tara_DESC=400", in the order shown, hidden
/// ones included. Columns without a field go by their position ("#0").
QString ColumnsText(const QHeaderView& header, const std::vector<Column>& columns);

/// Brings widths and order back. Columns that the text does not know keep their place behind their
/// neighbour; what it knows and the grid does not is passed over. False where nothing was usable.
bool ApplyColumnsText(QHeaderView& header, const std::vector<Column>& columns, const QString& text);

/// "Tara_COD ASC"; empty for no sort.
QString SortText(const std::vector<Column>& columns, int column, Qt::SortOrder order);
/// The column and order of a text; -1 where it names no column of the grid.
std::pair<int, Qt::SortOrder> ParseSortText(const std::vector<Column>& columns, const QString& text);

}  // namespace ui
