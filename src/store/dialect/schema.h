#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/value.h"

namespace store::dialect {

struct SourceColumn {
  std::string name;
  ColumnType type = ColumnType::kText;
  int size = 0;  ///< characters of a text column; 0 for memo and the rest
};

class SchemaSource;

/// What a name in FROM stands for.
struct Relation {
  bool is_query = false;
  /// Tables: the SQLite name, quoted and with its schema ("link1"."Tari"). Queries: empty.
  std::string sqlite_name;
  std::vector<SourceColumn> columns;  ///< tables only; a query's columns come from translating it
  bool has_rowid = true;              ///< worksheet and text sources have none
  std::string counter_column;         ///< auto-number column, if any
  std::string query_text;             ///< queries: the dialect text
  const SchemaSource* home =
      nullptr;  ///< queries: where the names inside are looked up (a linked file's own)
};

/// Finds tables, links and stored queries by name, without regard to case. The connection implements it.
class SchemaSource {
 public:
  virtual ~SchemaSource() = default;
  /// Null where there is none. The pointer lives until the schema changes.
  virtual const Relation* Find(std::string_view name) const = 0;
};

}  // namespace store::dialect
