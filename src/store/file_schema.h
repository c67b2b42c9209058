#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/catalog.h"
#include "store/dialect/schema.h"
#include "store/sqlite.h"

namespace store {

class Engine;

/// A table of one file as the catalog describes it.
struct TableInfo {
  std::string name, description;
  std::vector<ColumnDefinition> columns;
  dialect::Relation relation;
};

struct QueryInfo {
  StoredQuery query;
  dialect::Relation relation;
};

/// The names of one open database file: its tables, its links and its stored queries, read from the file's
/// catalog. A link is followed into the file it points at.
class FileSchema : public dialect::SchemaSource {
 public:
  /// `alias` is SQLite's name of the file: "main" or that of an ATTACH.
  FileSchema(Engine& engine, std::string alias, std::string path);

  /// Reads everything anew.
  void Load();

  const dialect::Relation* Find(std::string_view name) const override;

  /// What a name stands for once links are followed; both null where there is nothing of that name.
  struct Target {
    const TableInfo* table = nullptr;
    const QueryInfo* query = nullptr;
    const FileSchema* home = nullptr;
    const dialect::Relation* relation() const;
  };
  /// Throws Error where a link's file cannot be reached or lacks the name.
  Target Resolve(std::string_view name, int depth = 0) const;

  const TableInfo* Table(std::string_view name) const;
  const QueryInfo* Query(std::string_view name) const;
  const LinkDefinition* Link(std::string_view name) const;
  bool Taken(std::string_view name) const;  ///< by a table, a stored link or a stored query

  template <typename T>
  using ByName = std::unordered_map<std::string, T, NameHash, NameEqual>;
  const ByName<std::unique_ptr<TableInfo>>& tables() const { return tables_; }
  const ByName<LinkDefinition>& links() const { return links_; }
  const ByName<std::unique_ptr<QueryInfo>>& queries() const { return queries_; }
  /// Links for the connection's life only; their `file` is a whole Windows path. They go before stored names.
  ByName<LinkDefinition>& bindings() { return bindings_; }
  const ByName<LinkDefinition>& bindings() const { return bindings_; }

  const std::string& alias() const { return alias_; }
  const std::string& path() const { return path_; }
  /// The name with this file's schema where it is not the main one.
  std::string Qualified(std::string_view name) const;

  std::int64_t data_version() const { return data_version_; }

 private:
  void LoadCatalog();
  void LoadPlainTable(std::string_view name);
  void Describe(TableInfo& table) const;

  Engine* engine_;
  std::string alias_, path_;
  std::int64_t data_version_ = 0;
  ByName<std::unique_ptr<TableInfo>> tables_;
  ByName<LinkDefinition> links_, bindings_;
  ByName<std::unique_ptr<QueryInfo>> queries_;
};

}  // namespace store
