#include "platform/spreadsheet/table.h"
#include "store/recordset_data.h"
#include "store/source_projection.h"

namespace store {

namespace {

// A value of a worksheet shown with leading zeros keeps them; only sources give such values.
bool KeepsZeros(sqlite3_stmt* statement, int column) {
  return sqlite3_value_subtype(sqlite3_column_value(statement, column)) != 0;
}

}  // namespace

Cell NumberCell(const dialect::ResultColumn& column, double number) {
  if (column.typed && column.type == ColumnType::kDateTime) return Cell::DateOf(number);
  if (column.typed && column.type == ColumnType::kYesNo) return Cell::Boolean(number != 0);
  return Cell::Double(number);
}

Cell IntegerCell(const dialect::ResultColumn& column, std::int64_t number) {
  if (!column.typed) return Cell::Integer(number);
  switch (column.type) {
    case ColumnType::kDateTime:
      return Cell::DateOf(static_cast<double>(number));
    case ColumnType::kYesNo:
      return Cell::Boolean(number != 0);
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kCurrency:
    case ColumnType::kDecimal:
      return Cell::Double(static_cast<double>(number));
    default:
      return Cell::Integer(number);
  }
}

namespace {

std::string_view ColumnText(sqlite3_stmt* statement, int column) {
  const unsigned char* text = sqlite3_column_text(statement, column);
  return {reinterpret_cast<const char*>(text),
          static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

}  // namespace

Cell ReadCell(sqlite3_stmt* statement, int index, const dialect::ResultColumn& column, bool from_source,
              std::string& text) {
  switch (sqlite3_column_type(statement, index)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return IntegerCell(column, sqlite3_column_int64(statement, index));
    case SQLITE_FLOAT: {
      const double number = sqlite3_column_double(statement, index);
      if (!from_source || !KeepsZeros(statement, index)) return NumberCell(column, number);
      const auto digits =
          static_cast<std::uint8_t>(sqlite3_value_subtype(sqlite3_column_value(statement, index)));
      text = platform::spreadsheet::NumberToText(number, digits);
      return Cell::TextRef(text);
    }
    default:
      return Cell::TextRef(ColumnText(statement, index));
  }
}

Recordset RecordsetFactory::Load(const std::shared_ptr<Engine>& engine, Prepared& prepared,
                                 std::string_view text, const OpenOptions& options,
                                 const dialect::Normalized* literals) {
  const dialect::Translation& translation = prepared.translation;
  std::vector<FieldInfo> fields;
  for (const dialect::ResultColumn& column : translation.columns) {
    fields.push_back({.name = column.name,
                      .type = column.type,
                      .size = column.size,
                      .base_column = column.table_column,
                      .typed = column.typed});
  }
  auto set = std::make_shared<RowSet>(std::move(fields));
  set->engine = engine;
  set->session = engine->session();
  set->statement = StatementHead(text);
  set->in_memory = options.in_memory;
  set->updatable = options.updatable && !options.in_memory && !translation.base_table.empty();
  if (set->updatable) {
    set->base_table = translation.base_table;
    set->base_name = translation.base_name;
    for (std::size_t i = 0; i < set->fields.size(); ++i) {
      const FieldInfo& field = set->fields[i];
      if (field.type == ColumnType::kCounter && !field.base_column.empty()) {
        set->counter_field = static_cast<int>(i);
      }
    }
  }
  if (literals != nullptr && engine->source() != nullptr &&
      LoadProjection(*engine->source(), translation, *literals, set->rows)) {
    return Wrap(std::move(set));
  }
  sqlite3_stmt* statement = prepared.statement.get();
  const ResetGuard guard(statement);
  const int columns = static_cast<int>(translation.columns.size());
  const bool from_source = engine->is_source();
  std::string padded;
  while (engine->Step(prepared, text)) {
    Cell* row = set->rows.Add();
    for (int i = 0; i < columns; ++i) {
      const Cell cell =
          ReadCell(statement, i, translation.columns[static_cast<std::size_t>(i)], from_source, padded);
      if (cell.kind == Cell::Kind::kText) {
        set->rows.StoreText(&row[i], i, cell.AsText());
      } else {
        row[i] = cell;
      }
    }
    if (set->updatable) set->rowids.push_back(sqlite3_column_int64(statement, columns));
  }
  return Wrap(std::move(set));
}

Recordset RecordsetFactory::Wrap(std::shared_ptr<RowSet> rows) {
  return Recordset(std::make_shared<Recordset::Data>(std::move(rows)));
}

}  // namespace store
