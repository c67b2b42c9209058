#include "store/engine_catalog.h"

#include <set>

#include "platform/encoding.h"
#include "store/convert.h"
#include "store/functions.h"

namespace store {

namespace {

constexpr char kPrimaryKey[] = "PrimaryKey";

// Indexes are named within their table, but share one name space in a file.
std::string IndexName(std::string_view table, std::string_view index) {
  return QuoteName(fmt::format("{}.{}", table, index));
}

std::string SqlType(const ColumnDefinition& column) {
  switch (column.type) {
    case ColumnType::kCounter:
      return "INTEGER PRIMARY KEY AUTOINCREMENT";
    case ColumnType::kByte:
    case ColumnType::kShort:
    case ColumnType::kLong:
    case ColumnType::kYesNo:
      return "INTEGER";
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kCurrency:
    case ColumnType::kDecimal:
    case ColumnType::kDateTime:
      return "REAL";
    case ColumnType::kText:
      return fmt::format("TEXT({}) COLLATE {}", column.size, kCollation);
    case ColumnType::kMemo:
      return fmt::format("TEXT COLLATE {}", kCollation);
  }
  return "";
}

std::string Declaration(const ColumnDefinition& column) {
  std::string sql = QuoteName(column.name) + " " + SqlType(column);
  if (column.type == ColumnType::kCounter) return sql;
  const bool yes_no = column.type == ColumnType::kYesNo;
  if (column.required || column.primary_key || yes_no) sql += " NOT NULL";
  const DefaultExpression value = ParseDefault(column.default_text, column.type, column.size);
  if (!value.sql.empty()) {
    sql += " DEFAULT " + value.sql;
  } else if (yes_no) {
    sql += " DEFAULT 0";
  }
  return sql;
}

ColumnDefinition Completed(ColumnDefinition column) {
  if (column.type == ColumnType::kText && column.size <= 0) column.size = 255;
  if (column.type != ColumnType::kText && column.type != ColumnType::kDecimal) column.size = 0;
  return column;
}

std::string NameList(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    if (!list.empty()) list += ", ";
    list += QuoteName(name);
  }
  return list;
}

void CheckName(std::string_view name) {
  if (name.empty() || name.size() > 128 || name.starts_with("dx_") || name.starts_with("sqlite_")) {
    throw Error(kSyntaxError, std::string(name), fmt::format("Numele '{}' nu poate fi folosit", name));
  }
}

}  // namespace

FileSchema& EngineCatalog::file() const {
  engine_.RequireOpen("");
  return engine_.main_file();
}

const TableInfo& EngineCatalog::RequireTable(std::string_view name) const {
  const TableInfo* table = file().Table(name);
  if (table == nullptr) {
    throw Error(kNoSuchTable, std::string(name),
                fmt::format("Nu exista tabela '{}' in fisierul {}", name, engine_.path()));
  }
  return *table;
}

void EngineCatalog::RequireFree(std::string_view name) const {
  CheckName(name);
  if (file().Taken(name)) {
    throw Error(kIntegrity, std::string(name),
                fmt::format("Exista deja o tabela, o legatura sau o interogare cu numele '{}' in fisierul {}",
                            name, engine_.path()));
  }
}

void EngineCatalog::RunWith(std::string_view sql, std::initializer_list<std::string_view> texts) {
  Statement statement = engine_.PrepareOwn(sql);
  int index = 0;
  for (const std::string_view text : texts) statement.Bind(++index, text);
  while (engine_.Step(statement)) {
  }
}

void EngineCatalog::StoreColumn(std::string_view table, int ordinal, const ColumnDefinition& column) {
  Statement insert = engine_.PrepareOwn(
      "INSERT INTO dx_columns(table_name, ordinal, name, type, size, description, default_text, required,"
      " primary_key) VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
  insert.Bind(1, table);
  insert.Bind(2, std::int64_t{ordinal});
  insert.Bind(3, std::string_view(column.name));
  insert.Bind(4, static_cast<std::int64_t>(column.type));
  insert.Bind(5, std::int64_t{column.size});
  insert.Bind(6, std::string_view(column.description));
  insert.Bind(7, std::string_view(column.default_text));
  insert.Bind(8, std::int64_t{column.required});
  insert.Bind(9, std::int64_t{column.primary_key});
  engine_.Step(insert);
}

void EngineCatalog::CreateTable(std::string_view name, const std::vector<ColumnDefinition>& columns,
                                std::string_view description) {
  RequireFree(name);
  if (columns.empty()) throw Error(kSyntaxError, std::string(name), "O tabela are cel putin o coloana");
  std::string declarations;
  std::vector<std::string> key;
  bool counter_is_key = false;
  std::vector<ColumnDefinition> completed;
  std::set<std::string> seen;
  for (const ColumnDefinition& given : columns) {
    const ColumnDefinition& column = completed.emplace_back(Completed(given));
    if (column.name.empty() || !seen.insert(platform::ToUpper(column.name)).second) {
      throw Error(kSyntaxError, std::string(name),
                  fmt::format("Coloana '{}' apare de mai multe ori sau nu are nume", column.name));
    }
    if (!declarations.empty()) declarations += ", ";
    declarations += Declaration(column);
    if (!column.primary_key) continue;
    key.push_back(column.name);
    counter_is_key = column.type == ColumnType::kCounter;
  }
  SchemaChange change(engine_);
  engine_.Run(fmt::format("CREATE TABLE main.{}({})", QuoteName(name), declarations));
  // A key of other columns is an index: as SQLite's own key, one integer column would become a counter.
  if (!key.empty() && !(key.size() == 1 && counter_is_key)) {
    engine_.Run(fmt::format("CREATE UNIQUE INDEX main.{} ON {}({})", IndexName(name, kPrimaryKey),
                            QuoteName(name), NameList(key)));
  }
  RunWith("INSERT INTO dx_tables(name, description) VALUES(?1, ?2)", {name, description});
  int ordinal = 0;
  for (const ColumnDefinition& column : completed) StoreColumn(name, ++ordinal, column);
  change.Finish();
  engine_.SchemaChanged(file());
}

void EngineCatalog::AddColumn(std::string_view table_name, const ColumnDefinition& given) {
  const TableInfo& table = RequireTable(table_name);
  const std::string name = table.name;
  const ColumnDefinition column = Completed(given);
  if (column.type == ColumnType::kCounter || column.primary_key) {
    throw Error(kIntegrity, name,
                fmt::format("Coloana '{}' nu poate deveni cheie intr-o tabela existenta", column.name));
  }
  const int ordinal = static_cast<int>(table.columns.size()) + 1;
  SchemaChange change(engine_);
  engine_.Run(fmt::format("ALTER TABLE main.{} ADD COLUMN {}", QuoteName(name), Declaration(column)));
  StoreColumn(name, ordinal, column);
  change.Finish();
  engine_.SchemaChanged(file());
}

void EngineCatalog::CreateIndex(std::string_view name, std::string_view table_name,
                                const std::vector<std::string>& columns, bool unique) {
  const std::string table = RequireTable(table_name).name;
  SchemaChange change(engine_);
  engine_.Run(fmt::format("CREATE {}INDEX main.{} ON {}({})", unique ? "UNIQUE " : "", IndexName(table, name),
                          QuoteName(table), NameList(columns)));
  change.Finish();
  engine_.SchemaChanged(file());
}

void EngineCatalog::DropIndex(std::string_view name, std::string_view table_name) {
  const std::string table = RequireTable(table_name).name;
  SchemaChange change(engine_);
  engine_.Run("DROP INDEX main." + IndexName(table, name));
  change.Finish();
  engine_.SchemaChanged(file());
}

std::vector<ColumnDefinition> EngineCatalog::Columns(std::string_view table) const {
  const TableInfo* info = file().Table(table);
  return info == nullptr ? std::vector<ColumnDefinition>{} : info->columns;
}

void EngineCatalog::CreateLink(const LinkDefinition& link) {
  RequireFree(link.name);
  SchemaChange change(engine_);
  RunWith("INSERT INTO dx_links(name, file, remote_name) VALUES(?1, ?2, ?3)",
          {link.name, link.file, link.remote_name});
  change.Finish();
  engine_.SchemaChanged(file());
}

std::vector<LinkDefinition> EngineCatalog::Links() const {
  std::vector<LinkDefinition> links;
  for (const auto& [name, link] : file().links()) links.push_back(link);
  std::sort(links.begin(), links.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return links;
}

void EngineCatalog::DropLink(std::string_view name) {
  if (file().Link(name) == nullptr) {
    throw Error(kNoSuchTable, std::string(name), fmt::format("Nu exista tabela legata '{}'", name));
  }
  SchemaChange change(engine_);
  RunWith("DELETE FROM dx_links WHERE name = ?1", {name});
  change.Finish();
  engine_.SchemaChanged(file());
}

void EngineCatalog::SetQuery(const StoredQuery& query) {
  if (file().Query(query.name) == nullptr) RequireFree(query.name);
  try {
    dialect::Translate(query.text, file());
  } catch (const Error& error) {
    // Names may come later, and a link's file may be away; anything else is a faulty text.
    if (error.number() != kNoSuchTable && error.number() != kMissingParameter &&
        error.number() != kIntegrity) {
      throw;
    }
  }
  SchemaChange change(engine_);
  engine_.Run("DROP VIEW IF EXISTS main." + QuoteName(query.name));
  RunWith("INSERT OR REPLACE INTO dx_queries(name, text) VALUES(?1, ?2)", {query.name, query.text});
  CreateView(query);
  change.Finish();
  engine_.SchemaChanged(file());
}

// The view is for other programs that open the file; ours reads the text. Queries over links, over other
// queries not yet there or with parameters have none.
void EngineCatalog::CreateView(const StoredQuery& query) {
  try {
    const std::unique_ptr<Prepared> prepared = engine_.PrepareUncached(query.text, file(), {});
    if (prepared->translation.kind != dialect::StatementKind::kSelect) return;
    char* expanded = sqlite3_expanded_sql(prepared->statement.get());
    if (expanded == nullptr) return;
    std::string columns;
    for (const dialect::ResultColumn& column : prepared->translation.columns) {
      columns += (columns.empty() ? "" : ", ") + QuoteName(column.name);
    }
    if (!prepared->translation.base_table.empty())
      columns += ", \"rid\"";  // the row's id, as our own queries read it
    const std::string sql =
        fmt::format("CREATE VIEW main.{}({}) AS {}", QuoteName(query.name), columns, expanded);
    sqlite3_free(expanded);
    sqlite3_exec(engine_.db(), sql.c_str(), nullptr, nullptr, nullptr);
  } catch (const Error&) {
    // Best effort, see above.
  }
}

std::vector<StoredQuery> EngineCatalog::Queries() const {
  std::vector<StoredQuery> queries;
  for (const auto& [name, info] : file().queries()) queries.push_back(info->query);
  std::sort(queries.begin(), queries.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return queries;
}

void EngineCatalog::DropQuery(std::string_view name) {
  if (file().Query(name) == nullptr) {
    throw Error(kNoSuchTable, std::string(name), fmt::format("Nu exista interogarea '{}'", name));
  }
  SchemaChange change(engine_);
  engine_.Run("DROP VIEW IF EXISTS main." + QuoteName(name));
  RunWith("DELETE FROM dx_queries WHERE name = ?1", {name});
  change.Finish();
  engine_.SchemaChanged(file());
}

void EngineCatalog::CreateCascade(std::string_view parent_name, std::string_view child_name,
                                  std::string_view column) {
  const std::string parent = RequireTable(parent_name).name, child = RequireTable(child_name).name;
  SchemaChange change(engine_);
  engine_.Run(
      fmt::format("CREATE TRIGGER main.{0} AFTER DELETE ON {1} FOR EACH ROW BEGIN DELETE FROM {2} WHERE {3} "
                  "= OLD.{3}; END",
                  QuoteName(fmt::format("{}.{}.cascade", parent, child)), QuoteName(parent), QuoteName(child),
                  QuoteName(column)));
  change.Finish();
  engine_.SchemaChanged(file());
}

void EngineCatalog::DropTable(std::string_view name) {
  if (file().Table(name) == nullptr && file().Link(name) != nullptr) return DropLink(name);
  const std::string table = RequireTable(name).name;
  SchemaChange change(engine_);
  // A cascade into the dropped table would make every later delete of the parent fail.
  Statement cascades = engine_.PrepareOwn(
      "SELECT name FROM main.sqlite_master WHERE type = 'trigger' AND name LIKE '%.cascade' AND"
      " lower(substr(name, length(tbl_name) + 2)) = lower(?1 || '.cascade')");
  cascades.Bind(1, std::string_view(table));
  std::vector<std::string> dropped;
  while (engine_.Step(cascades)) dropped.emplace_back(cascades.Text(0));
  cascades.Reset();
  for (const std::string& trigger : dropped) engine_.Run("DROP TRIGGER main." + QuoteName(trigger));
  engine_.Run("DROP TABLE main." + QuoteName(table));
  RunWith("DELETE FROM dx_columns WHERE table_name = ?1", {table});
  RunWith("DELETE FROM dx_tables WHERE name = ?1", {table});
  change.Finish();
  engine_.SchemaChanged(file());
}

void EngineCatalog::Carry(const dialect::Translation& translation) {
  using dialect::StatementKind;
  switch (translation.kind) {
    case StatementKind::kCreateTable: {
      std::vector<ColumnDefinition> columns;
      for (const dialect::NewColumn& column : translation.new_columns) {
        const auto in_key = [&](const std::string& name) { return NameEqual()(name, column.name); };
        columns.push_back(
            {.name = column.name,
             .type = column.type,
             .size = column.size,
             .description = "",
             .default_text = column.default_text,
             .required = column.not_null,
             .primary_key = column.primary_key || std::any_of(translation.key_columns.begin(),
                                                              translation.key_columns.end(), in_key)});
      }
      return CreateTable(translation.object, columns, "");
    }
    case StatementKind::kDropTable:
      return DropTable(translation.object);
    case StatementKind::kCreateIndex:
      return CreateIndex(translation.index, translation.object, translation.key_columns, translation.unique);
    case StatementKind::kDropIndex:
      return DropIndex(translation.index, translation.object);
    default:
      throw Error(kSyntaxError, translation.object, "Instructiunea nu este CREATE sau DROP");
  }
}

}  // namespace store
