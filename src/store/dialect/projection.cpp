#include "store/dialect/projection.h"

namespace store::dialect {

namespace {

bool IsCall(const Expr& e, std::string_view name) { return e.op == Op::kFunction && e.text == name; }

bool IsHoisted(const Expr& e) { return e.op == Op::kLiteral && e.literal_index >= 0; }

/// A literal that may stand in for a Null of the column without changing what the result's type would be.
bool SameKind(const Expr& literal, const Expr& column) {
  switch (literal.literal.kind) {
    case LiteralKind::kText:
      return column.type.is_text();
    case LiteralKind::kInteger:
    case LiteralKind::kNumber:
      return column.type.kind == Type::Kind::kNumber;
    default:
      return false;
  }
}

bool ReadColumn(const Expr& e, Projected& out) {
  if (e.op == Op::kColumn) {
    out.column = e.column;
    return true;
  }
  if (!IsCall(e, "IIF") || !IsCall(*e.args[0], "ISNULL")) return false;
  const Expr& tested = *e.args[0]->args[0];
  const Expr& otherwise = *e.args[1];
  const Expr& column = *e.args[2];
  if (tested.op != Op::kColumn || column.op != Op::kColumn || tested.column != column.column ||
      !IsHoisted(otherwise) || !SameKind(otherwise, column)) {
    return false;
  }
  out.column = column.column;
  out.otherwise = otherwise.literal_index;
  return true;
}

bool ReadItem(const Expr& e, Projected& out) {
  if (IsHoisted(e)) {
    out.otherwise = e.literal_index;
    return e.literal.kind == LiteralKind::kText || e.literal.kind == LiteralKind::kInteger ||
           e.literal.kind == LiteralKind::kNumber;
  }
  if (!IsCall(e, "LEFT")) return ReadColumn(e, out);
  const Expr& count = *e.args[1];
  if (!IsHoisted(count) || count.literal.kind != LiteralKind::kInteger) return false;
  // Only texts are cut here: how a date or a number is spelled is the functions' business.
  if (!e.args[0]->type.is_text() || !ReadColumn(*e.args[0], out)) return false;
  out.cut = count.literal_index;
  return true;
}

}  // namespace

void FindProjection(const Query& query, Translation& out) {
  if (query.is_union()) return;
  const Select& select = *query.selects[0];
  if (select.distinct || select.distinct_row || select.top != nullptr || select.where != nullptr ||
      select.grouped || select.having != nullptr || !select.order_by.empty() || select.sources.size() != 1) {
    return;
  }
  const Source& source = *select.sources[0];
  if (source.query != nullptr || source.relation == nullptr || source.relation->has_rowid) return;
  std::vector<Projected> projection;
  for (const OutputColumn& column : select.columns) {
    Projected item;
    if (column.expr == nullptr || !ReadItem(*column.expr, item)) return;
    projection.push_back(item);
  }
  out.projection = std::move(projection);
  out.projected_source = source.object;
}

}  // namespace store::dialect
