#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/dialect/schema.h"
#include "store/value.h"

namespace store::dialect {

enum class LiteralKind : char { kText = 't', kInteger = 'i', kNumber = 'n', kDate = 'd', kBoolean = 'b' };

/// A literal of a statement, taken out so that statements that differ only in values share one translation.
struct Literal {
  LiteralKind kind;
  std::string_view raw;  ///< its place in the statement's text, quotes included
  bool doubled = false;  ///< a text that holds doubled quotes
};

/// A statement with its literals replaced by marks: the key of the prepared-statement cache. Made in one pass
/// over the text, without allocating once the buffers have grown.
struct Normalized {
  std::string key;
  std::vector<Literal> literals;
};

/// Throws Error(kSyntaxError) for unclosed quotes, brackets and dates and for characters no statement can
/// hold.
void Normalize(std::string_view text, Normalized& out);

/// The value of a literal. Texts lose their quotes, #…# becomes a Date (throws kSyntaxError where it is
/// none).
Value LiteralValue(const Literal& literal);

enum class StatementKind {
  kSelect,
  kInsert,
  kUpdate,
  kDelete,
  kCreateTable,
  kDropTable,
  kCreateIndex,
  kDropIndex
};

/// How the n-th SQLite parameter (?1, ?2, …) is filled.
struct Parameter {
  int literal = -1;  ///< index into Normalized::literals, or
  std::string name;  ///< a declared PARAMETERS name
};

struct ResultColumn {
  std::string name;
  ColumnType type = ColumnType::kText;  ///< what the engine makes of the SQLite value (dates, yes/no)
  bool typed = true;                    ///< false: the type is only known per value (mixed IIF arms)
  int size = 0;
  std::string table_column;  ///< the base table's column, where it is one; else empty
};

/// One column of a projection: a column of the source, what stands for its Nulls, where its text is cut.
struct Projected {
  int column = -1;     ///< of the source; -1: the literal alone
  int otherwise = -1;  ///< literal for a Null
  int cut = -1;        ///< literal: the number of characters kept
};

struct NewColumn {
  std::string name;
  ColumnType type;
  int size = 0;
  bool primary_key = false;
  bool not_null = false;
  std::string default_text;  ///< expression text, as COLUMN_DEFAULT shows it
};

/// A statement in SQLite's words, ready to prepare.
struct Translation {
  StatementKind kind = StatementKind::kSelect;
  std::string sql;  ///< empty for CREATE and DROP, which the engine carries out from the fields below
  std::vector<Parameter> parameters;
  /// Names of a PARAMETERS clause in their order, whether used or not.
  std::vector<std::string> declared;
  /// Literals that shaped the SQL (TOP n, ORDER BY 1, folded decimals): the translation serves only
  /// statements where these agree.
  std::vector<std::pair<int, std::string>> structural;
  std::vector<ResultColumn> columns;
  /// Single-table queries that can be written through: the table's SQLite name and dialect name. The SELECT
  /// then carries the row's rowid as one extra last column that `columns` does not list.
  std::string base_table;
  std::string base_name;
  /// A query that only hands over columns of one worksheet or delimited file, item by item; else empty.
  std::vector<Projected> projection;
  std::string projected_source;  ///< its name in FROM
  /// UPDATE that skips rows which hold its values already: counts the rows it is about, with the same
  /// parameters.
  std::string matched_sql;
  // CREATE / DROP
  std::string object;  ///< table name; for indexes the table
  std::string index;
  bool unique = false;
  std::vector<NewColumn> new_columns;
  std::vector<std::string> key_columns;  ///< PRIMARY KEY (…) or index columns
};

/// Parses one statement and writes it in SQLite's words. `parameters` lists names bound by the caller (stored
/// queries with PARAMETERS declare their own). Throws Error with the numbers of error.h and the position.
Translation Translate(std::string_view text, const SchemaSource& schema);

/// Columns and updatable base of a stored query's text, for schema rowsets.
std::vector<ResultColumn> Describe(std::string_view query_text, const SchemaSource& schema);

/// A condition on one row outside SQLite (Recordset.Find and Filter): column, operator, value, joined by AND
/// and OR.
struct RowCondition {
  struct Term {
    std::string column;
    std::string op;  ///< = <> < > <= >= LIKE
    Value value;
  };
  std::vector<std::vector<Term>> any_of;  ///< OR of ANDs
};
RowCondition ParseRowCondition(std::string_view text);

}  // namespace store::dialect
