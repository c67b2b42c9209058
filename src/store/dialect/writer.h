#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/dialect/ast.h"
#include "store/dialect/translate.h"

namespace store::dialect {

/// The base table that a SELECT's rows are, one by one.
struct Base {
  const Relation* relation = nullptr;  ///< null: none
  std::string name;
};
/// Rows of one table, directly or through queries that neither group nor join.
Base FindBase(const Select& select);

/// A column of the source is somewhere in the expression.
bool Reads(const Expr& e, const Source& source);

std::string QuoteName(std::string_view name);
std::string QuoteText(std::string_view text);

/// Writes a bound tree in SQLite's words and lists the parameters it binds.
class Writer {
 public:
  explicit Writer(Translation& out) : out_(out) {}

  /// The outermost SELECT; adds the rowid column where rows can be written through.
  void WriteTopQuery(Query& query);
  void WriteInsert(const Statement& statement, const Relation& target,
                   const std::vector<const SourceColumn*>& columns);
  /// `select` holds the sources, the condition and, for UPDATE, the new values as items.
  void WriteUpdate(Select& select, Source& target, const std::vector<int>& columns);
  void WriteDelete(Select& select, Source& target);

  std::string Take() { return std::move(sql_); }

 private:
  // Expressions
  void Value(const Expr& e);        ///< -1/0 for what is true or false
  void Condition(const Expr& e);    ///< for WHERE, ON, WHEN: true where not 0
  void TextValue(const Expr& e);    ///< dates spelled out
  void NumberValue(const Expr& e);  ///< texts read as numbers
  void CollatedValue(const Expr& e);
  void LiteralText(const Expr& e);
  void NumberChain(const Expr& e);
  void TextChain(const Expr& e);
  void Concat(const Expr& e);
  void LogicalChain(const Expr& e, Op op);
  void Call(std::string_view name, const Expr& e);
  void Comparison(const Expr& left, Op op, const Expr& right);
  void Between(const Expr& e);
  void In(const Expr& e);
  void Quantified(const Expr& e);
  void Scalar(const Expr& e);
  void Logical(const Expr& e);
  void Function(const Expr& e);
  void Aggregate(const Expr& e);
  void Case(const Expr& e);
  std::string Captured(const Expr& e);
  int ParameterOf(const Expr& e);

  // SELECT
  struct Shape {
    bool named = false;                                 ///< columns are c1, c2, … for a query around it
    const std::vector<OutputColumn>* wanted = nullptr;  ///< only the used ones of these
    bool rowid = false;                                 ///< one more column with the row's id ("rid")
    bool collate = false;                               ///< texts carry the collation (members of a UNION)
  };
  void WriteQuery(const Query& query, const Shape& shape);
  void WriteSelect(const Select& select, const Shape& shape);
  void WriteRanked(const Select& select, const Shape& shape);
  void WriteColumns(const Select& select, const Shape& shape);
  void WriteBody(const Select& select, bool with_order);
  void WriteFromList(const Select& select);
  void WriteDistinctRows(const Select& select);
  void WriteFrom(const From& from, bool nested);
  void WriteSource(const Source& source);
  void WriteOrder(const std::vector<OrderItem>& order);
  void WriteRowid(const Source& source);

  void Assign(const SourceColumn& target, const Type& type, bool plain_column, const std::string& value);
  void WriteSingleUpdateFilter(const Select& select, const Source& target, const std::vector<int>& columns,
                               const Base& base);
  const SourceColumn& TargetColumn(const Source& target, int column, const Base& base) const;

  Translation& out_;
  std::string sql_;
};

}  // namespace store::dialect
