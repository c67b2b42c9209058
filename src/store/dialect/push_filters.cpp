#include "store/dialect/push_filters.h"

#include <algorithm>

namespace store::dialect {

namespace {

bool GroupsWithin(const Query& query);

bool GroupsWithin(const Select& select) {
  if (select.grouped && !select.group_by.empty()) return true;
  return std::any_of(select.sources.begin(), select.sources.end(), [](const Source* source) {
    return source->query != nullptr && GroupsWithin(*source->query);
  });
}

bool GroupsWithin(const Query& query) {
  return std::any_of(query.selects.begin(), query.selects.end(),
                     [](const Select* select) { return GroupsWithin(*select); });
}

bool IsFixed(const Expr& e) {
  switch (e.op) {
    case Op::kLiteral:
    case Op::kBoolean:
    case Op::kDecimal:
    case Op::kDeclared:
      return true;
    case Op::kNegate:
      return IsFixed(*e.args[0]);
    default:
      return false;
  }
}

/// The column that a condition "column op constants" is about; such a condition is never true of Null, so it
/// may be checked before an outer join as well as after it.
const Expr* TestedColumn(const Expr& e) {
  const bool comparison = e.op >= Op::kEqual && e.op <= Op::kGreaterEqual;
  if (!comparison && e.op != Op::kBetween && e.op != Op::kIn) return nullptr;
  const Expr* column = nullptr;
  for (std::size_t i = 0; i < e.args.size(); ++i) {
    const Expr& arg = *e.args[i];
    const bool place = i == 0 || (comparison && i == 1);
    if (place && arg.op == Op::kColumn && arg.source != nullptr && column == nullptr) {
      column = &arg;
    } else if (!IsFixed(arg)) {
      return nullptr;
    }
  }
  return column;
}

/// The inner expression that a pushed condition would test; null where it may not go in.
Expr* InnerColumn(const Select& inner, int column) {
  if (inner.top != nullptr) return nullptr;
  Expr* e = inner.columns[static_cast<std::size_t>(column)].expr;
  if (e->op != Op::kColumn || e->source == nullptr) return nullptr;
  if (!inner.grouped) return e;
  const bool key = std::any_of(inner.group_by.begin(), inner.group_by.end(), [&](const Expr* group) {
    return group->op == Op::kColumn && group->source == e->source && group->column == e->column;
  });
  return key ? e : nullptr;
}

void Push(Tree& tree, const Expr& condition, const Expr& tested) {
  const Query* query = tested.source->query;
  if (query == nullptr || !GroupsWithin(*query)) return;
  for (Select* inner : query->selects) {
    Expr* column = InnerColumn(*inner, tested.column);
    if (column == nullptr) continue;
    Expr* copy = tree.NewExpr(condition.op, condition.position);
    *copy = condition;
    for (Expr*& arg : copy->args) {
      if (arg == &tested) arg = column;
    }
    if (inner->where == nullptr) {
      inner->where = copy;
    } else {
      Expr* both = tree.NewExpr(Op::kAnd, condition.position);
      both->type = Type::Of(ColumnType::kYesNo);
      both->args = {inner->where, copy};
      inner->where = both;
    }
  }
}

void PushAll(Tree& tree, const Expr& condition) {
  if (condition.op == Op::kAnd && condition.type.is_yes_no()) {
    for (const Expr* arg : condition.args) PushAll(tree, *arg);
  } else if (const Expr* tested = TestedColumn(condition)) {
    Push(tree, condition, *tested);
  }
}

}  // namespace

void PushFilters(Tree& tree) {
  // A query stands before the queries inside it, so that a condition goes all the way down.
  for (std::size_t i = 0; i < tree.selects.size(); ++i) {
    const Select& select = tree.selects[i];
    if (select.where != nullptr) PushAll(tree, *select.where);
  }
}

}  // namespace store::dialect
