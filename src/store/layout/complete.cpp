#include <fmt/format.h>

#include <cstdio>
#include <unordered_set>

#include "platform/clock.h"
#include "platform/encoding.h"
#include "store/layout/layout.h"

namespace store::layout {
namespace {

/// A name or key as two texts compare: without regard to case.
std::string Folded(std::string_view text) { return platform::ToUpper(text); }

template <typename Items, typename Name>
std::unordered_set<std::string> FoldedNames(const Items& items, Name name) {
  std::unordered_set<std::string> names;
  for (const auto& item : items) names.insert(Folded(name(item)));
  return names;
}

/// Adds the table or its missing columns. True where the table is new.
bool CompleteTable(Catalog& catalog, const Table& table, std::vector<std::string>& added) {
  const std::vector<ColumnDefinition> present = catalog.Columns(table.name);
  if (present.empty()) {
    catalog.CreateTable(table.name, table.columns);
    added.push_back(table.name);
    return true;
  }
  const auto names = FoldedNames(present, [](const ColumnDefinition& column) { return column.name; });
  for (const ColumnDefinition& column : table.columns) {
    if (names.contains(Folded(column.name))) continue;
    catalog.AddColumn(table.name, column);
    added.push_back(table.name + "." + column.name);
  }
  return false;
}

std::vector<std::string> KeyColumns(const Table& table) {
  std::vector<std::string> keys;
  for (const ColumnDefinition& column : table.columns) {
    if (column.primary_key) keys.push_back(column.name);
  }
  return keys;
}

std::unordered_set<std::string> PresentKeys(Connection& connection, const Table& table,
                                            const std::vector<std::string>& keys) {
  std::string list;
  for (const std::string& key : keys) list += (list.empty() ? "[" : ", [") + key + "]";
  std::unordered_set<std::string> present;
  for (Recordset rows = connection.Query("SELECT " + list + " FROM [" + table.name + "]"); !rows.eof();
       rows.MoveNext()) {
    std::string key;
    for (int i = 0; i < rows.field_count(); ++i) key += Folded(rows.Get(i).ToText()) + '\t';
    present.insert(std::move(key));
  }
  return present;
}

Value ToValue(const std::string& field, const ColumnDefinition& column, const Csv& list, std::size_t row) {
  if (field.empty()) return column.required && column.type == ColumnType::kText ? Value("") : Value();
  if (column.type != ColumnType::kDateTime) return field;
  int year = 0, month = 0, day = 0;
  char rest = 0;
  if (std::sscanf(field.c_str(), "%4d-%2d-%2d%c", &year, &month, &day, &rest) != 3 ||
      !platform::IsValidDate(year, month, day)) {
    FailAtLine(list.path, list.lines[row], fmt::format("{} nu este o data: {}", column.name, field));
  }
  return Date{platform::ToSerial({.year = year, .month = month, .day = day})};
}

}  // namespace

std::vector<std::string> Complete(Connection& connection, const Database& layout) {
  std::vector<std::string> added;
  Transaction transaction(connection);
  Catalog& catalog = connection.catalog();
  std::unordered_set<std::string> new_tables;
  for (const Table& table : layout.tables) {
    if (CompleteTable(catalog, table, added)) new_tables.insert(table.name);
  }
  for (const Index& index : layout.indexes) {
    if (new_tables.contains(index.table)) {
      catalog.CreateIndex(index.name, index.table, index.columns, index.unique);
    }
  }
  for (const Cascade& cascade : layout.cascades) {
    if (new_tables.contains(cascade.child)) {
      catalog.CreateCascade(cascade.parent, cascade.child, cascade.column);
    }
  }
  const auto links = FoldedNames(catalog.Links(), [](const LinkDefinition& link) { return link.name; });
  for (const LinkDefinition& link : layout.links) {
    // a table of the user's own under that name stays
    if (links.contains(Folded(link.name)) || !catalog.Columns(link.name).empty()) continue;
    catalog.CreateLink(link);
    added.push_back(link.name);
  }
  const std::vector<StoredQuery> present = catalog.Queries();
  for (const StoredQuery& query : layout.queries) {
    const auto same = std::find_if(present.begin(), present.end(), [&](const StoredQuery& other) {
      return platform::EqualsNoCase(other.name, query.name);
    });
    if (same != present.end() && same->text == query.text) continue;
    catalog.SetQuery(query);
    added.push_back(query.name);
  }
  transaction.Commit();
  return added;
}

void Build(const Environment& environment, platform::Files& files, std::string_view path,
           const Database& layout, const std::function<void(Connection&)>& fill) {
  const std::string draft = std::string(path.substr(0, path.rfind('.'))) + kDraftSuffix;
  files.Remove(draft);
  try {
    Connection::CreateDatabase(environment, draft);
    Connection connection(environment);
    connection.Open(JetString(draft));
    Transaction transaction(connection);
    Complete(connection, layout);
    if (fill) fill(connection);
    transaction.Commit();
    connection.Close();
    files.Copy(draft, path);
  } catch (...) {
    try {
      files.Remove(draft);
    } catch (const platform::FileError&) {  // the first failure is the one to tell
    }
    throw;
  }
  files.Remove(draft);
}

int AddMissingRows(Connection& connection, const Table& table, const Csv& list) {
  std::vector<const ColumnDefinition*> columns;
  for (const std::string& name : list.header) {
    const auto found = std::find_if(table.columns.begin(), table.columns.end(),
                                    [&](const ColumnDefinition& column) { return column.name == name; });
    if (found == table.columns.end()) {
      FailAtLine(list.path, 1, fmt::format("tabela {} nu are coloana {}", table.name, name));
    }
    columns.push_back(&*found);
  }
  std::vector<std::size_t> key_fields;
  const std::vector<std::string> keys = KeyColumns(table);
  key_fields.reserve(keys.size());
  for (const std::string& key : keys) key_fields.push_back(list.Column(key));
  std::unordered_set<std::string> present = PresentKeys(connection, table, keys);

  int added = 0;
  RowWriter writer(connection, table.name, list.header);
  std::vector<Value> values(columns.size());
  for (std::size_t row = 0; row < list.rows.size(); ++row) {
    std::string key;
    for (const std::size_t field : key_fields) key += Folded(list.rows[row][field]) + '\t';
    if (!present.insert(std::move(key)).second) continue;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      values[i] = ToValue(list.rows[row][i], *columns[i], list, row);
    }
    try {
      writer.Add(values);
    } catch (const Error& error) {
      FailAtLine(list.path, list.lines[row], error.description());
    }
    ++added;
  }
  return added;
}

RowWriter::RowWriter(Connection& connection, std::string_view table, const std::vector<std::string>& columns)
    : rows_(connection.QueryForUpdate(fmt::format("SELECT * FROM [{}] WHERE 1=0", table))) {
  for (const std::string& column : columns) fields_.push_back(rows_.FieldIndex(column));
}

void RowWriter::Add(const std::vector<Value>& values) {
  rows_.AddNew();
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (!values[i].is_null()) rows_.Set(fields_[i], values[i]);
  }
  rows_.Update();
}

}  // namespace store::layout
