#include "tariff/screens/query_models.h"

#include <cmath>

#include "platform/encoding.h"
#include "ui/text.h"

namespace tariff {

QueryTablesModel::QueryTablesModel(std::vector<store::SchemaTable> tables, QObject* parent)
    : GridModel({{.field = "TableName", .caption = QStringLiteral("Nume Tabel"), .width = 14}}, parent),
      tables_(std::move(tables)) {}

int QueryTablesModel::RowOf(std::string_view name) const {
  const auto at = std::find_if(tables_.begin(), tables_.end(), [name](const store::SchemaTable& table) {
    return platform::EqualsNoCase(table.name, name);
  });
  return at == tables_.end() ? -1 : static_cast<int>(at - tables_.begin());
}

store::Value QueryTablesModel::ValueAt(int row, int) const { return NameAt(row); }

QString QueryTablesModel::PictureAt(int row, int) const {
  return tables_[static_cast<std::size_t>(row)].type == "VIEW" ? QStringLiteral("filtreaza")
                                                               : QStringLiteral("tabele");
}

QueryColumnsModel::QueryColumnsModel(std::vector<SearchOperator> operators, QObject* parent)
    : GridModel(
          {{.field = "FieldName", .caption = QStringLiteral("Nume coloana"), .width = 15},
           {.field = "Afiseaza",
            .caption = QStringLiteral("Afiseaza Coloana"),
            .format = ui::Format::kTick,
            .width = 6,
            .editable = true},
           {.field = "Semn",
            .caption = QStringLiteral("Semn"),
            .width = 16,
            .editable = true,
            .codes = [this] { return OperatorsOfCurrentRow(); }},
           {.field = "Valoare", .caption = QStringLiteral("Valoare Cautata"), .width = 18, .editable = true},
           {.field = "DataType", .caption = QStringLiteral("Tip"), .width = 9},
           {.field = "Descriere", .caption = QStringLiteral("Descriere"), .width = 24}},
          parent),
      operators_(std::move(operators)) {
  for (const SearchOperator& each : operators_) {
    ui::CodeList& list = lists_[each.SeAplicaLa];
    list.code_heading = QStringLiteral("Semn");
    list.description_heading = QStringLiteral("Simbol");
    list.lines.push_back({ui::Q(each.DescSemn), ui::Q(each.Semn).trimmed()});
  }
}

void QueryColumnsModel::SetRows(std::vector<QueryColumn> rows) {
  beginResetModel();
  rows_ = std::move(rows);
  errors_.clear();
  endResetModel();
}

void QueryColumnsModel::ShowAll(bool shown) {
  for (QueryColumn& each : rows_) each.shown = shown;
  if (!rows_.empty()) Q_EMIT dataChanged(index(0, kShown), index(Rows() - 1, kShown));
}

void QueryColumnsModel::SetError(int row, const QString& text) {
  errors_[row] = text;
  Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
  Q_EMIT headerDataChanged(Qt::Vertical, row, row);
}

void QueryColumnsModel::ClearErrors() {
  if (errors_.empty()) return;
  errors_.clear();
  Q_EMIT dataChanged(index(0, 0), index(Rows() - 1, columnCount() - 1));
  Q_EMIT headerDataChanged(Qt::Vertical, 0, Rows() - 1);
}

store::Value QueryColumnsModel::ValueAt(int row, int column) const {
  const QueryColumn& at = At(row);
  switch (column) {
    case kFieldName:
      return at.FieldName;
    case kShown:
      return at.shown;
    case kOperator:
      return at.DescSemn;
    case kValue:
      return at.value;
    case kDataType:
      return at.DataType;
    default:
      return at.description;
  }
}

bool QueryColumnsModel::SetTextAt(int row, int column, const QString& text) {
  QueryColumn& at = rows_[static_cast<std::size_t>(row)];
  switch (column) {
    case kShown:
      at.shown = text == QLatin1String("1");
      return true;
    case kOperator:
      if (!ChooseOperator(at, operators_, ui::Utf8(text))) {
        Q_EMIT NotInList();
        return false;
      }
      break;
    case kValue: {
      const QString typed = text.trimmed();
      const std::optional<double> number =
          at.DataType == "NUMERIC" && typed.contains(QLocale().decimalPoint()) ? ui::ParseNumber(typed)
                                                                               : std::nullopt;
      // Numbers in statements have a decimal point, whatever the user's own mark.
      EnterValue(at, number ? store::DoubleText(*number) : ui::Utf8(text));
      break;
    }
    default:
      return false;
  }
  errors_.erase(row);
  return true;
}

QString QueryColumnsModel::ProblemAt(int row, int column) const {
  const auto error = errors_.find(row);
  if (column == -1 && error != errors_.end()) return error->second;
  if (column == kValue) {
    return error != errors_.end() ? error->second : ui::Q(ValueRemark(At(row)));
  }
  return {};
}

const ui::CodeList* QueryColumnsModel::OperatorsOfCurrentRow() const {
  static const ui::CodeList kNone;
  if (current_row_ < 0 || current_row_ >= Rows()) return &kNone;
  const auto list = lists_.find(At(current_row_).DataType);
  return list == lists_.end() ? &kNone : &list->second;
}

std::vector<ui::Column> ResultColumns(store::Recordset rows) {
  constexpr int kLookedAt = 200;  // rows that tell whether dates have a time of day
  std::vector<ui::Column> columns;
  for (int i = 0; i < rows.field_count(); ++i) {
    const store::FieldInfo& field = rows.field(i);
    ui::Column column;
    column.caption = ui::Q(field.name);
    column.width = 12;
    if (!field.typed) {
      columns.push_back(std::move(column));
      continue;
    }
    switch (field.type) {
      case store::ColumnType::kText:
        column.width = std::clamp(field.size, 8, 30);
        break;
      case store::ColumnType::kMemo:
        column.width = 40;
        break;
      case store::ColumnType::kYesNo:
        column.format = ui::Format::kTick;
        column.width = 6;
        break;
      case store::ColumnType::kDateTime: {
        column.format = ui::Format::kDate;
        if (rows.record_count() > 0) rows.MoveFirst();
        for (int row = 0; row < kLookedAt && !rows.eof(); ++row, rows.MoveNext()) {
          const double days = rows.Get(i).ToDate().days;
          if (days != std::floor(days)) column.format = ui::Format::kDateTime;
        }
        break;
      }
      default:
        column.format = ui::Format::kNumber;
    }
    columns.push_back(std::move(column));
  }
  return columns;
}

}  // namespace tariff
