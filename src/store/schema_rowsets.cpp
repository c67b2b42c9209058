#include "store/connection.h"
#include "store/connection_impl.h"
#include "store/sources.h"

namespace store {

namespace {

int PrecisionOf(ColumnType type, int size) {
  switch (type) {
    case ColumnType::kByte:
      return 3;
    case ColumnType::kShort:
      return 5;
    case ColumnType::kCounter:
    case ColumnType::kLong:
      return 10;
    case ColumnType::kSingle:
      return 7;
    case ColumnType::kDouble:
      return 15;
    case ColumnType::kCurrency:
      return 19;
    default:
      return DecimalPrecision(size);
  }
}

SchemaColumn Row(std::string_view table, int ordinal, const ColumnDefinition& column) {
  SchemaColumn row;
  row.table_name = table;
  row.column_name = column.name;
  row.description = column.description;
  row.ordinal_position = ordinal;
  row.column_default = column.default_text;
  row.type = column.type;
  row.is_nullable = !column.required && !column.primary_key && column.type != ColumnType::kYesNo &&
                    column.type != ColumnType::kCounter;
  // A column has one of the three measures; yes/no has none.
  if (column.type == ColumnType::kText) row.character_maximum_length = column.size;
  if (column.type == ColumnType::kMemo) row.character_maximum_length = 0;
  if (column.type == ColumnType::kDateTime) row.datetime_precision = 0;
  if (IsNumeric(column.type)) row.numeric_precision = PrecisionOf(column.type, column.size);
  return row;
}

template <typename Columns>
std::vector<SchemaColumn> Rows(std::string_view table, const Columns& columns) {
  std::vector<SchemaColumn> rows;
  int ordinal = 0;
  for (const auto& column : columns) {
    ColumnDefinition definition;
    definition.name = column.name;
    definition.type = column.type;
    definition.size = column.size;
    rows.push_back(Row(table, ++ordinal, definition));
  }
  return rows;
}

}  // namespace

std::vector<SchemaTable> Connection::Tables() const {
  Engine& engine = *impl_->engine;
  engine.RequireOpen("");
  std::vector<SchemaTable> tables;
  if (engine.is_source()) {
    for (const std::string& name : engine.source()->Names()) tables.push_back({name, "TABLE", ""});
    return tables;
  }
  engine.RefreshChangedFiles();
  const FileSchema& file = engine.main_file();
  for (const auto& [name, table] : file.tables()) {
    if (!file.bindings().contains(name)) tables.push_back({table->name, "TABLE", table->description});
  }
  for (const auto& [name, link] : file.links()) {
    if (!file.bindings().contains(name)) tables.push_back({link.name, "LINK", ""});
  }
  for (const auto& [name, link] : file.bindings()) tables.push_back({link.name, "LINK", ""});
  for (const auto& [name, info] : file.queries()) {
    if (!file.bindings().contains(name)) tables.push_back({info->query.name, "VIEW", ""});
  }
  std::sort(tables.begin(), tables.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return tables;
}

std::vector<SchemaColumn> Connection::Columns(std::string_view table) const {
  Engine& engine = *impl_->engine;
  engine.RequireOpen(table);
  if (engine.is_source()) return Rows(table, engine.source()->Find(table)->columns);
  engine.RefreshChangedFiles();
  const FileSchema::Target target = engine.main_file().Resolve(table);
  if (target.query != nullptr) {
    return Rows(table, dialect::Describe(target.query->query.text, *target.home));
  }
  std::vector<SchemaColumn> rows;
  if (target.table == nullptr) return rows;
  int ordinal = 0;
  for (const ColumnDefinition& column : target.table->columns) rows.push_back(Row(table, ++ordinal, column));
  return rows;
}

std::uint32_t Connection::FirstRow(std::string_view table) const {
  Engine& engine = *impl_->engine;
  engine.RequireOpen(table);
  return engine.source()->FirstRow(table);
}

}  // namespace store
