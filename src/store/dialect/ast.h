#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/dialect/schema.h"
#include "store/dialect/translate.h"

/// The tree of a statement. The parser makes it; the binder resolves names and types in place; the writers
/// turn it into SQLite text. Nodes live in a Tree and point at each other freely.
namespace store::dialect {

struct Select;
struct Query;
struct Source;
struct FunctionInfo;

/// What is known of an expression's value before it runs.
struct Type {
  enum class Kind : std::uint8_t { kNull, kUnknown, kNumber, kText, kDate, kYesNo };
  Kind kind = Kind::kUnknown;
  ColumnType column = ColumnType::kText;
  int size = 0;  ///< characters of a text column

  static Type Of(ColumnType column, int size = 0);
  bool is_text() const { return kind == Kind::kText; }
  bool is_date() const { return kind == Kind::kDate; }
  bool is_yes_no() const { return kind == Kind::kYesNo; }
  bool is_null() const { return kind == Kind::kNull; }
  bool known() const { return kind != Kind::kUnknown && kind != Kind::kNull; }
  /// Stored as a number: numbers, dates and yes/no compare with each other.
  bool numeric() const { return kind == Kind::kNumber || kind == Kind::kDate || kind == Kind::kYesNo; }
};

enum class Op : std::uint8_t {
  kLiteral,
  kNull,
  kBoolean,   // True, False; `truth`
  kName,      // before binding
  kColumn,    // after binding: source, column
  kDeclared,  // a PARAMETERS name
  kDecimal,   // exact result of literal arithmetic; `text`
  kNegate,
  kPower,
  kMultiply,
  kDivide,
  kIntegerDivide,
  kModulo,
  kAdd,
  kSubtract,
  kConcat,
  kEqual,
  kNotEqual,
  kLess,
  kGreater,
  kLessEqual,
  kGreaterEqual,
  kLike,
  kBetween,
  kIn,
  kInQuery,
  kIsNull,
  kExists,
  kScalar,
  kQuantified,  // args[0] compare ANY/ALL query
  kNot,
  kAnd,
  kOr,
  kXor,
  kEqv,
  kImp,
  kFunction,
  kAggregate,
};

struct Expr {
  Op op = Op::kNull;
  int position = 0;
  int depth = 1;         ///< height of the tree below, to refuse what SQLite could not parse
  int weight = 1;        ///< nodes below once aliases are put in
  bool negated = false;  ///< NOT LIKE, NOT BETWEEN, NOT IN, IS NOT NULL
  bool truth = false;
  std::vector<Expr*> args;
  std::vector<std::string> path;  ///< kName: qualifiers and column
  Literal literal{LiteralKind::kInteger, {}};
  int literal_index = -1;  ///< in Normalized::literals; -1 inside stored queries, whose literals stay text
  std::string text;        ///< function name, declared name, folded decimal
  const FunctionInfo* function = nullptr;
  Query* query = nullptr;
  Op compare = Op::kEqual;  ///< kQuantified
  bool all = false;
  // Filled by the binder.
  Type type;
  Source* source = nullptr;  ///< null with a column: a column of the UNION being sorted
  int column = -1;
};

/// A column that a source offers or a query returns.
struct OutputColumn {
  std::string name;
  Type type;
  bool collated = false;     ///< a text that still carries the column's collation
  bool used = false;         ///< of a source: named by the statement around it
  std::string table_column;  ///< base table's column, where it is one
  Expr* expr = nullptr;      ///< of a SELECT
};

/// Something in FROM.
struct Source {
  std::string name;                    ///< what qualifies its columns
  std::string object;                  ///< the table or stored query as FROM names it; empty: derived
  std::string id;                      ///< alias in the SQLite text, unique in the statement
  const Relation* relation = nullptr;  ///< a table, or the stored query that was put in
  Query* query = nullptr;              ///< derived table or stored query
  std::vector<OutputColumn> columns;
  bool rowid_used = false;
  int position = 0;
};

struct From {
  enum class Kind : std::uint8_t { kSource, kInner, kLeft, kRight };
  Kind kind = Kind::kSource;
  // kSource, before binding: a name or a derived table
  std::string name, alias;
  Query* derived = nullptr;
  Source* source = nullptr;
  // joins
  From* left = nullptr;
  From* right = nullptr;
  Expr* on = nullptr;
  int position = 0;
};

struct SelectItem {
  Expr* expr = nullptr;  ///< null: a star
  std::string alias;
  std::string star_of;  ///< "t.*"
  int position = 0;
};

struct OrderItem {
  Expr* expr = nullptr;
  bool descending = false;
};

struct Select {
  bool distinct = false;
  bool distinct_row = false;
  Expr* top = nullptr;
  bool top_percent = false;
  std::vector<SelectItem> items;
  std::vector<From*> from;
  Expr* where = nullptr;
  std::vector<Expr*> group_by;
  Expr* having = nullptr;
  std::vector<OrderItem> order_by;
  int position = 0;
  // Filled by the binder.
  std::vector<Source*> sources;
  std::vector<OutputColumn> columns;
  bool grouped = false;
  std::vector<Expr*> outer_references;  ///< this select's columns named inside its sub-queries
};

/// One SELECT, or several joined by UNION.
struct Query {
  std::vector<Select*> selects;
  std::vector<bool> all;              ///< all[i]: UNION ALL before selects[i + 1]
  std::vector<OrderItem> order_by;    ///< of the union; a single SELECT has its own
  std::vector<OutputColumn> columns;  ///< filled by the binder
  bool is_union() const { return selects.size() > 1; }
};

struct Assignment {
  std::vector<std::string> target;
  Expr* value = nullptr;
  int position = 0;
};

struct Declared {
  std::string name;
  Type type;
};

struct Statement {
  StatementKind kind = StatementKind::kSelect;
  std::vector<Declared> parameters;
  Query* query = nullptr;       ///< SELECT; source of INSERT
  std::vector<From*> from;      ///< UPDATE, DELETE
  std::vector<Assignment> set;  ///< UPDATE
  std::string delete_of;        ///< DELETE t.*
  Expr* where = nullptr;
  std::string object, index;  ///< INSERT and DDL: table; index name
  int object_position = 0;
  std::vector<std::string> insert_columns;
  std::vector<Expr*> values;
  bool unique = false;
  std::vector<NewColumn> new_columns;
  std::vector<std::string> key_columns;
};

/// Owns the nodes of one translation.
struct Tree {
  std::deque<Expr> exprs;
  std::deque<Select> selects;
  std::deque<Query> queries;
  std::deque<From> froms;
  std::deque<Source> sources;

  Expr* NewExpr(Op op, int position) {
    Expr& e = exprs.emplace_back();
    e.op = op;
    e.position = position;
    return &e;
  }
};

}  // namespace store::dialect
