#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/dialect/ast.h"

namespace store::dialect {

/// A text whose names are looked up together: the statement itself or a stored query put into it.
struct Unit {
  std::string_view text;
  const SchemaSource* schema = nullptr;
  const std::vector<Declared>* declared = nullptr;
  const Unit* outer = nullptr;  ///< the text that reads this stored query
};

/// Where a name is looked for, from the inside out.
struct Scope {
  Scope* outer = nullptr;
  Select* select = nullptr;
  const std::vector<Source*>* sources = nullptr;
  const std::vector<SelectItem>* aliases = nullptr;  ///< bound items whose aliases may be used
  const char* no_aggregates = nullptr;               ///< the clause that cannot hold them
};

/// Resolves names, expands stars and stored queries, finds types and refuses what does not fit together.
class Binder {
 public:
  Binder(Tree& tree, std::vector<std::pair<int, std::string>>& structural)
      : tree_(tree), structural_(structural) {}

  void BindQuery(Query& query, const Unit& unit, Scope* outer);
  /// `values` of a statement without FROM.
  Expr* BindValue(Expr* e, const Unit& unit);
  /// Sources, WHERE and items of an UPDATE or DELETE, laid out as a SELECT.
  void BindSelect(Select& select, const Unit& unit, Scope* outer);
  /// The source and column that `path` names among the select's own.
  std::pair<Source*, int> FindTarget(const Select& select, const std::vector<std::string>& path,
                                     const Unit& unit, int position);

 private:
  // SELECT
  void BindFrom(From& from, Select& select, const Unit& unit, Scope* outer);
  void BindSource(From& from, Select& select, const Unit& unit);
  void OpenStoredQuery(Source& source, const Unit& unit);
  void ExpandItems(Select& select, const Unit& unit, Scope& scope);
  void ExpandStar(Select& select, const SelectItem& star, const Unit& unit, std::vector<SelectItem>& out);
  void NameColumns(Select& select, const Unit& unit);
  void BindOrderBy(Select& select, const Unit& unit, Scope& scope);
  void BindUnionOrder(Query& query, const Unit& unit);
  void CheckGroups(Select& select, const Unit& unit);
  Expr* CheckGrouped(Expr* e, const Select& select, const Unit& unit);
  int Position(const Expr& e, const std::vector<OutputColumn>& columns, const Unit& unit);

  // Expressions
  Expr* Bind(Expr* e, const Unit& unit, Scope& scope);
  Expr* BindName(Expr* e, const Unit& unit, Scope& scope);
  Expr* BindFunction(Expr* e, const Unit& unit, Scope& scope);
  Expr* BindAggregate(Expr* e, const Unit& unit, Scope& scope);
  void BindSubquery(Expr* e, const Unit& unit, Scope& scope);
  void SetType(Expr* e, const Unit& unit);
  Type FunctionType(const Expr& e) const;
  void CheckComparable(const Expr& a, const Expr& b, const Unit& unit) const;
  Expr* ColumnOf(Source& source, int column, int position);
  bool FindColumn(const std::vector<Source*>& sources, const std::vector<std::string>& path, const Unit& unit,
                  int position, Source*& source, int& column) const;
  bool Same(const Expr& a, const Expr& b, std::vector<const Expr*>& literals) const;
  /// Same value for certain; literals that had to be compared become part of the translation's key.
  bool SameValue(const Expr& a, const Expr& b);
  void MarkStructural(const Expr& e);

  Tree& tree_;
  std::vector<std::pair<int, std::string>>& structural_;
  std::vector<const Relation*> open_queries_;
  bool in_aggregate_ = false;
};

}  // namespace store::dialect
