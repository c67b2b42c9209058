#include <utility>

#include "store/dialect/types.h"
#include "store/dialect/writer.h"

namespace store::dialect {

/// A value on its way into a column: converted to the column's type, or refused, by the dx_to_ functions.
void Writer::Assign(const SourceColumn& target, const Type& type, bool plain_column,
                    const std::string& value) {
  if (type.is_null() && target.type != ColumnType::kYesNo) {
    sql_ += value;
    return;
  }
  if (plain_column && Fits(type, target)) {
    sql_ += value;
    return;
  }
  const std::string name = ", " + QuoteText(target.name);
  auto call = [&](const char* function, const std::string& limits = {}) {
    sql_ += function + ("(" + value) + name + limits + ")";
  };
  switch (target.type) {
    case ColumnType::kText:
    case ColumnType::kMemo:
      sql_ += "dx_to_text(" + (type.is_date() ? "dx_date_text(" + value + ")" : value) + name + ", " +
              std::to_string(target.type == ColumnType::kText ? target.size : 0) + ")";
      return;
    case ColumnType::kByte:
      return call("dx_to_int", ", 0, 255");
    case ColumnType::kShort:
      return call("dx_to_int", ", -32768, 32767");
    case ColumnType::kLong:
    case ColumnType::kCounter:
      return call("dx_to_int", ", -2147483648, 2147483647");
    case ColumnType::kSingle:
      return call("dx_to_single");
    case ColumnType::kDouble:
      return call("dx_to_double");
    case ColumnType::kCurrency:
      return call("dx_to_currency");
    case ColumnType::kDecimal:
      return call("dx_to_decimal", ", " + std::to_string(DecimalPrecision(target.size)) + ", " +
                                       std::to_string(DecimalScale(target.size)));
    case ColumnType::kDateTime:
      return call("dx_to_date");
    case ColumnType::kYesNo:
      return call("dx_to_yesno");
  }
}

void Writer::WriteInsert(const Statement& statement, const Relation& target,
                         const std::vector<const SourceColumn*>& columns) {
  sql_ += "INSERT INTO " + target.sqlite_name + " (";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) sql_ += ", ";
    sql_ += QuoteName(columns[i]->name);
  }
  if (statement.query == nullptr) {
    sql_ += ") VALUES (";
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (i > 0) sql_ += ", ";
      const Expr& e = *statement.values[i];
      Assign(*columns[i], e.type, false, Captured(e));
    }
    sql_ += ')';
    return;
  }
  sql_ += ") SELECT ";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) sql_ += ", ";
    const OutputColumn& column = statement.query->columns[i];
    Assign(*columns[i], column.type, !column.table_column.empty(), "q.c" + std::to_string(i + 1));
  }
  sql_ += " FROM (";
  Shape shape;
  shape.named = true;
  WriteQuery(*statement.query, shape);
  sql_ += ") AS q";
}

const SourceColumn& Writer::TargetColumn(const Source& target, int column, const Base& base) const {
  const std::string& name = target.columns[static_cast<std::size_t>(column)].table_column;
  for (const SourceColumn& candidate : base.relation->columns) {
    if (candidate.name == name) return candidate;
  }
  return base.relation->columns.front();
}

void Writer::WriteUpdate(Select& select, Source& target, const std::vector<int>& columns) {
  const bool single = select.sources.size() == 1 && target.query == nullptr;
  const Base base =
      target.query == nullptr ? Base{target.relation, target.object} : FindBase(*target.query->selects[0]);
  auto plain = [](const Expr& e) { return e.op == Op::kColumn; };
  sql_ += "UPDATE " + base.relation->sqlite_name + " AS " + (single ? target.id : "t") + " SET ";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) sql_ += ", ";
    const SourceColumn& column = TargetColumn(target, columns[i], base);
    const Expr& e = *select.items[i].expr;
    sql_ += QuoteName(column.name) + " = ";
    Assign(column, e.type, plain(e), single ? Captured(e) : "u.c" + std::to_string(i + 1));
  }
  if (single) {
    WriteSingleUpdateFilter(select, target, columns, base);
    return;
  }
  // Joined tables are read first, row numbers with them, so that every kind of join serves.
  sql_ += " FROM (SELECT ";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    Value(*select.items[i].expr);
    sql_ += " AS c" + std::to_string(i + 1) + ", ";
  }
  WriteRowid(target);
  sql_ += " AS rid";
  WriteBody(select, false);
  sql_ += ") AS u WHERE t.rowid = u.rid";
}

/// Rows that hold constant new values already are not written again: clearing a mark that few lines carry
/// would rewrite them all. They count as touched all the same, which `matched_sql` tells.
void Writer::WriteSingleUpdateFilter(const Select& select, const Source& target,
                                     const std::vector<int>& columns, const Base& base) {
  std::string condition;
  if (select.where != nullptr) {
    std::string saved = std::exchange(sql_, {});
    Condition(*select.where);
    condition = std::exchange(sql_, std::move(saved));
  }
  const bool constant = std::all_of(select.items.begin(), select.items.end(), [](const SelectItem& item) {
    return item.expr->op == Op::kLiteral || item.expr->op == Op::kNull || item.expr->op == Op::kBoolean;
  });
  if (!constant) {
    if (!condition.empty()) sql_ += " WHERE " + condition;
    return;
  }
  out_.matched_sql = "SELECT COUNT(*) FROM " + base.relation->sqlite_name + " AS " + target.id;
  if (!condition.empty()) out_.matched_sql += " WHERE " + condition;
  sql_ += " WHERE ";
  if (!condition.empty()) sql_ += "(" + condition + ") AND ";
  sql_ += '(';
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) sql_ += " OR ";
    const SourceColumn& column = TargetColumn(target, columns[i], base);
    const Expr& e = *select.items[i].expr;
    sql_ += target.id + "." + QuoteName(column.name) + " IS NOT ";
    Assign(column, e.type, false, Captured(e));
    sql_ += " COLLATE BINARY";
  }
  sql_ += ')';
}

void Writer::WriteDelete(Select& select, Source& target) {
  const bool single = select.sources.size() == 1 && target.query == nullptr;
  const Base base =
      target.query == nullptr ? Base{target.relation, target.object} : FindBase(*target.query->selects[0]);
  sql_ += "DELETE FROM " + base.relation->sqlite_name;
  if (single) {
    sql_ += " AS " + target.id;
    if (select.where != nullptr) {
      sql_ += " WHERE ";
      Condition(*select.where);
    }
    return;
  }
  sql_ += " WHERE rowid IN (SELECT ";
  WriteRowid(target);
  WriteBody(select, false);
  sql_ += ')';
}

}  // namespace store::dialect
