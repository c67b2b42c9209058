#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/dialect/translate.h"
#include "store/value.h"

namespace store {

struct ColumnDefinition {
  std::string name;
  ColumnType type = ColumnType::kText;
  int size = 0;  ///< characters of a text column
  /// Shown to the user; a described column of Intrastat takes part in import templates.
  std::string description = {};
  std::string default_text = {};  ///< expression text as the engine shows it ("\"RO\"", 0)
  bool required = false;
  bool primary_key = false;
};

struct LinkDefinition {
  std::string name;
  std::string file;         ///< bare file name, resolved against the link folder at every open
  std::string remote_name;  ///< table or stored query there
};

struct StoredQuery {
  std::string name;
  std::string text;  ///< in the dialect
};

/// What a database file knows beyond SQLite: Access types, sizes, descriptions, defaults, links and stored
/// queries. Every change is one transaction and is seen by the connection at once. Names are matched without
/// regard to case.
class Catalog {
 public:
  virtual ~Catalog() = default;

  virtual void CreateTable(std::string_view name, const std::vector<ColumnDefinition>& columns,
                           std::string_view description = "") = 0;
  /// Adds a column to an existing table (upgrades of older files).
  virtual void AddColumn(std::string_view table, const ColumnDefinition& column) = 0;
  virtual void CreateIndex(std::string_view name, std::string_view table,
                           const std::vector<std::string>& columns, bool unique) = 0;
  virtual std::vector<ColumnDefinition> Columns(
      std::string_view table) const = 0;  ///< in ordinal order; empty: no such table

  /// Throws Error(kIntegrity) where a table or link of that name exists.
  virtual void CreateLink(const LinkDefinition& link) = 0;
  virtual std::vector<LinkDefinition> Links() const = 0;
  virtual void DropLink(std::string_view name) = 0;

  /// Creates or replaces a stored query; its text must parse, its names need not exist yet.
  virtual void SetQuery(const StoredQuery& query) = 0;
  virtual std::vector<StoredQuery> Queries() const = 0;
  virtual void DropQuery(std::string_view name) = 0;

  /// Deleting a row of `parent` deletes the rows of `child` with the same value in `column` (a cascading
  /// relationship).
  virtual void CreateCascade(std::string_view parent, std::string_view child, std::string_view column) = 0;
};

}  // namespace store
