#include "store/file_schema.h"

#include "platform/encoding.h"
#include "store/engine.h"

namespace store {

namespace {

constexpr int kLinkDepth = 8;  // links that point at each other end here

ColumnType TypeOfDeclaration(std::string_view declared) {
  const std::string upper = platform::ToUpper(declared);
  const auto holds = [&](std::string_view part) { return upper.find(part) != std::string::npos; };
  if (holds("INT")) return ColumnType::kLong;
  if (holds("CHAR") || holds("TEXT") || holds("CLOB")) return ColumnType::kMemo;
  if (holds("DATE") || holds("TIME")) return ColumnType::kDateTime;
  if (holds("BOOL")) return ColumnType::kYesNo;
  return holds("REAL") || holds("DOUB") || holds("FLOA") || holds("NUM") || holds("DEC") ? ColumnType::kDouble
                                                                                         : ColumnType::kMemo;
}

}  // namespace

FileSchema::FileSchema(Engine& engine, std::string alias, std::string path)
    : engine_(&engine), alias_(std::move(alias)), path_(std::move(path)) {}

const dialect::Relation* FileSchema::Target::relation() const {
  if (table != nullptr) return &table->relation;
  return query != nullptr ? &query->relation : nullptr;
}

void FileSchema::Load() {
  tables_.clear();
  links_.clear();
  queries_.clear();
  data_version_ = engine_->DataVersion(alias_);
  std::vector<std::string> names;
  bool has_catalog = false;
  Statement tables = engine_->PrepareOwn("SELECT name FROM " + Qualified("sqlite_master") +
                                         " WHERE type = 'table' AND name NOT LIKE 'sqlite~_%' ESCAPE '~'");
  while (engine_->Step(tables)) {
    const std::string_view name = tables.Text(0);
    if (name == "dx_tables") has_catalog = true;
    if (!name.starts_with("dx_")) names.emplace_back(name);
  }
  if (has_catalog) LoadCatalog();
  for (const std::string& name : names) {
    if (Table(name) == nullptr) LoadPlainTable(name);
  }
  for (auto& [name, table] : tables_) Describe(*table);
}

void FileSchema::LoadCatalog() {
  Statement tables = engine_->PrepareOwn("SELECT name, description FROM " + Qualified("dx_tables"));
  while (engine_->Step(tables)) {
    auto table = std::make_unique<TableInfo>();
    table->name = tables.Text(0);
    table->description = tables.Text(1);
    std::string key = table->name;
    tables_.insert_or_assign(std::move(key), std::move(table));
  }
  Statement columns = engine_->PrepareOwn(
      "SELECT table_name, name, type, size, description, default_text, required, primary_key FROM " +
      Qualified("dx_columns") + " ORDER BY table_name, ordinal");
  while (engine_->Step(columns)) {
    const auto table = tables_.find(columns.Text(0));
    if (table == tables_.end()) continue;
    ColumnDefinition column;
    column.name = columns.Text(1);
    column.type = static_cast<ColumnType>(
        std::clamp<std::int64_t>(columns.Integer(2), 0, static_cast<int>(ColumnType::kYesNo)));
    column.size = static_cast<int>(columns.Integer(3));
    column.description = columns.Text(4);
    column.default_text = columns.Text(5);
    column.required = columns.Integer(6) != 0;
    column.primary_key = columns.Integer(7) != 0;
    table->second->columns.push_back(std::move(column));
  }
  Statement links = engine_->PrepareOwn("SELECT name, file, remote_name FROM " + Qualified("dx_links"));
  while (engine_->Step(links)) {
    links_.insert_or_assign(std::string(links.Text(0)),
                            LinkDefinition{.name = std::string(links.Text(0)),
                                           .file = std::string(links.Text(1)),
                                           .remote_name = std::string(links.Text(2))});
  }
  Statement queries = engine_->PrepareOwn("SELECT name, text FROM " + Qualified("dx_queries"));
  while (engine_->Step(queries)) {
    auto info = std::make_unique<QueryInfo>();
    info->query = {.name = std::string(queries.Text(0)), .text = std::string(queries.Text(1))};
    info->relation.is_query = true;
    info->relation.query_text = info->query.text;
    info->relation.home = this;
    std::string key = info->query.name;
    queries_.insert_or_assign(std::move(key), std::move(info));
  }
}

// A table that another program made: its declared types serve.
void FileSchema::LoadPlainTable(std::string_view name) {
  auto table = std::make_unique<TableInfo>();
  table->name = name;
  Statement columns =
      engine_->PrepareOwn("SELECT name, type, \"notnull\" FROM pragma_table_info(?1, ?2) ORDER BY cid");
  columns.Bind(1, name);
  columns.Bind(2, std::string_view(alias_));
  while (engine_->Step(columns)) {
    ColumnDefinition column;
    column.name = columns.Text(0);
    column.type = TypeOfDeclaration(columns.Text(1));
    column.required = columns.Integer(2) != 0;
    table->columns.push_back(std::move(column));
  }
  tables_.insert_or_assign(std::string(name), std::move(table));
}

void FileSchema::Describe(TableInfo& table) const {
  table.relation.sqlite_name = Qualified(table.name);
  for (const ColumnDefinition& column : table.columns) {
    table.relation.columns.push_back({.name = column.name, .type = column.type, .size = column.size});
    if (column.type == ColumnType::kCounter) table.relation.counter_column = column.name;
  }
}

const dialect::Relation* FileSchema::Find(std::string_view name) const { return Resolve(name).relation(); }

FileSchema::Target FileSchema::Resolve(std::string_view name, int depth) const {
  if (depth > kLinkDepth) {
    throw Error(kIntegrity, path_, fmt::format("Tabela legata '{}' trimite la ea insasi", name));
  }
  const LinkDefinition* link = nullptr;
  bool bound = false;
  if (const auto binding = bindings_.find(name); binding != bindings_.end()) {
    link = &binding->second;
    bound = true;
  } else if (const TableInfo* table = Table(name)) {
    return {.table = table, .query = nullptr, .home = this};
  } else if (const QueryInfo* query = Query(name)) {
    return {.table = nullptr, .query = query, .home = this};
  } else {
    link = Link(name);
  }
  if (link == nullptr) return {};
  const std::string target_path = bound ? link->file : engine_->LinkPath(link->file);
  const FileSchema* target = nullptr;
  try {
    target = &engine_->Attach(target_path);
  } catch (const Error& error) {
    throw Error(kIntegrity, target_path,
                fmt::format("Tabela legata '{}' nu poate fi folosita: {}", name, error.what()));
  }
  const Target found = target->Resolve(link->remote_name, depth + 1);
  if (found.relation() == nullptr) {
    throw Error(kNoSuchTable, target_path,
                fmt::format("Tabela legata '{}' cauta '{}' in fisierul {}, unde nu exista", name,
                            link->remote_name, target_path));
  }
  return found;
}

const TableInfo* FileSchema::Table(std::string_view name) const {
  const auto found = tables_.find(name);
  return found == tables_.end() ? nullptr : found->second.get();
}

const QueryInfo* FileSchema::Query(std::string_view name) const {
  const auto found = queries_.find(name);
  return found == queries_.end() ? nullptr : found->second.get();
}

const LinkDefinition* FileSchema::Link(std::string_view name) const {
  const auto found = links_.find(name);
  return found == links_.end() ? nullptr : &found->second;
}

bool FileSchema::Taken(std::string_view name) const {
  return Table(name) != nullptr || Query(name) != nullptr || Link(name) != nullptr;
}

std::string FileSchema::Qualified(std::string_view name) const {
  // Names of the main file stay bare: a view's text must not name a schema, or the file could not be
  // attached.
  return alias_ == "main" ? QuoteName(name) : QuoteName(alias_) + "." + QuoteName(name);
}

}  // namespace store
