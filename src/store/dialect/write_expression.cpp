#include <fmt/format.h>

#include "store/dialect/diagnose.h"
#include "store/dialect/function_table.h"
#include "store/dialect/scan.h"
#include "store/dialect/writer.h"

namespace store::dialect {

namespace {

/// Written as 0 or 1 by SQLite, where the dialect's value is 0 or -1.
bool WritesTruth(const Expr& e) {
  switch (e.op) {
    case Op::kEqual:
    case Op::kNotEqual:
    case Op::kLess:
    case Op::kGreater:
    case Op::kLessEqual:
    case Op::kGreaterEqual:
    case Op::kBetween:
    case Op::kIn:
    case Op::kInQuery:
    case Op::kIsNull:
    case Op::kExists:
    case Op::kQuantified:
      return true;
    case Op::kLike:
      return e.negated;  // dx_like answers -1
    case Op::kNot:
    case Op::kAnd:
    case Op::kOr:
    case Op::kXor:
    case Op::kEqv:
    case Op::kImp:
      return e.type.is_yes_no();
    case Op::kFunction:
      return e.text == "ISNULL";
    default:
      return false;
  }
}

const char* Sign(Op op) {
  switch (op) {
    case Op::kEqual:
      return " = ";
    case Op::kNotEqual:
      return " <> ";
    case Op::kLess:
      return " < ";
    case Op::kGreater:
      return " > ";
    case Op::kLessEqual:
      return " <= ";
    default:
      return " >= ";
  }
}

/// A table's own text column brings its collation along.
bool CarriesCollation(const Expr& e) {
  return e.op == Op::kColumn && e.source != nullptr &&
         e.source->columns[static_cast<std::size_t>(e.column)].collated;
}

bool IsLogical(const Expr& e) {
  // One side that is true or false makes the bitwise result true or false as well.
  return e.type.is_yes_no() || e.args[0]->type.is_yes_no() || e.args[1]->type.is_yes_no();
}

/// + - * that SQLite computes as the dialect would.
bool IsNativeNumber(const Expr& e) {
  if (e.op == Op::kMultiply || e.op == Op::kSubtract) return true;
  auto number = [](const Type& type) { return type.numeric() || type.is_null(); };
  return e.op == Op::kAdd && number(e.args[0]->type) && number(e.args[1]->type);
}

bool IsJoinedText(const Expr& e) {
  return e.op == Op::kAdd && e.args[0]->type.is_text() && e.args[1]->type.is_text();
}

bool IsFixed(const Expr& e) { return e.op == Op::kLiteral || e.op == Op::kDeclared; }

bool MayBeText(const Expr& e) { return !e.type.numeric(); }

}  // namespace

std::string QuoteName(std::string_view name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

std::string QuoteText(std::string_view text) {
  std::string out = "'";
  for (char c : text) {
    if (c == '\'') out += '\'';
    out += c;
  }
  return out + "'";
}

int Writer::ParameterOf(const Expr& e) {
  for (std::size_t i = 0; i < out_.parameters.size(); ++i) {
    const Parameter& parameter = out_.parameters[i];
    const bool same = e.op == Op::kDeclared ? SameName(parameter.name, e.text) && parameter.literal < 0
                                            : parameter.literal == e.literal_index;
    if (same) return static_cast<int>(i) + 1;
  }
  Parameter parameter;
  if (e.op == Op::kDeclared) {
    parameter.name = e.text;
  } else {
    parameter.literal = e.literal_index;
  }
  out_.parameters.push_back(std::move(parameter));
  return static_cast<int>(out_.parameters.size());
}

void Writer::LiteralText(const Expr& e) {
  if (e.literal_index >= 0) {
    sql_ += '?';
    sql_ += std::to_string(ParameterOf(e));
    return;
  }
  const store::Value value = LiteralValue(e.literal);
  switch (e.literal.kind) {
    case LiteralKind::kText:
      sql_ += QuoteText(value.text());
      break;
    case LiteralKind::kDate:
      sql_ += fmt::format("({:.17g}+0.0)", value.ToDate().days);
      break;
    case LiteralKind::kBoolean:
      sql_ += value.ToBoolean() ? "(-1)" : "0";
      break;
    case LiteralKind::kInteger:
    case LiteralKind::kNumber:
      sql_ += e.literal.raw;
      break;
  }
}

std::string Writer::Captured(const Expr& e) {
  std::string saved = std::exchange(sql_, {});
  Value(e);
  return std::exchange(sql_, std::move(saved));
}

void Writer::TextValue(const Expr& e) {
  if (!e.type.is_date()) return Value(e);
  sql_ += "dx_date_text(";
  Value(e);
  sql_ += ')';
}

void Writer::NumberValue(const Expr& e) {
  if (e.type.numeric() || e.type.is_null()) return Value(e);
  sql_ += "dx_plus(";
  Value(e);
  sql_ += ", 0)";
}

void Writer::CollatedValue(const Expr& e) {
  Value(e);
  if (MayBeText(e) && !CarriesCollation(e)) sql_ += " COLLATE DX";
}

void Writer::Condition(const Expr& e) {
  if (!WritesTruth(e) || e.op == Op::kFunction) {
    // Conditions built of conditions need no numbers in between.
    const bool mixed =
        (e.op == Op::kAnd || e.op == Op::kOr) && (e.args[0]->type.is_yes_no() || e.args[1]->type.is_yes_no());
    if (mixed) return Logical(e);
    if (e.op == Op::kFunction && e.text == "ISNULL") {
      sql_ += '(';
      Value(*e.args[0]);
      sql_ += " IS NULL)";
      return;
    }
    return Value(e);
  }
  switch (e.op) {
    case Op::kBetween:
      return Between(e);
    case Op::kIn:
    case Op::kInQuery:
      return In(e);
    case Op::kIsNull:
      sql_ += '(';
      Value(*e.args[0]);
      sql_ += e.negated ? " IS NOT NULL)" : " IS NULL)";
      return;
    case Op::kExists:
      sql_ += "EXISTS (";
      WriteQuery(*e.query, {});
      sql_ += ')';
      return;
    case Op::kQuantified:
      return Quantified(e);
    case Op::kLike:
      sql_ += "(NOT ";
      Call("dx_like", e);
      sql_ += ')';
      return;
    case Op::kNot:
    case Op::kAnd:
    case Op::kOr:
    case Op::kXor:
    case Op::kEqv:
    case Op::kImp:
      return Logical(e);
    default:
      return Comparison(*e.args[0], e.op, *e.args[1]);
  }
}

void Writer::Comparison(const Expr& left, Op op, const Expr& right) {
  sql_ += '(';
  Value(left);
  // A column on the left decides, even one that has lost its collation on the way through a query.
  const bool decided = CarriesCollation(left) || (CarriesCollation(right) && IsFixed(left));
  if (MayBeText(left) && MayBeText(right) && !decided) sql_ += " COLLATE DX";
  sql_ += Sign(op);
  Value(right);
  sql_ += ')';
}

/// The bounds may come in either order.
void Writer::Between(const Expr& e) {
  const Expr &value = *e.args[0], &low = *e.args[1], &high = *e.args[2];
  const bool texts = MayBeText(value) && MayBeText(low) && MayBeText(high);
  auto bound = [&](const char* function) {
    sql_ += function;
    sql_ += '(';
    Value(low);
    if (texts) sql_ += " COLLATE DX";
    sql_ += ", ";
    Value(high);
    sql_ += ')';
  };
  sql_ += '(';
  Value(value);
  if (texts && !CarriesCollation(value)) sql_ += " COLLATE DX";
  sql_ += e.negated ? " NOT BETWEEN " : " BETWEEN ";
  bound("min");
  sql_ += " AND ";
  bound("max");
  sql_ += ')';
}

void Writer::In(const Expr& e) {
  sql_ += '(';
  CollatedValue(*e.args[0]);
  sql_ += e.negated ? " NOT IN (" : " IN (";
  if (e.op == Op::kInQuery) {
    WriteQuery(*e.query, {});
  } else {
    for (std::size_t i = 1; i < e.args.size(); ++i) {
      if (i > 1) sql_ += ", ";
      Value(*e.args[i]);
    }
  }
  sql_ += "))";
}

/// x op ANY (…): some row meets it. x op ALL (…): no row fails to.
void Writer::Quantified(const Expr& e) {
  const Expr& left = *e.args[0];
  sql_ += e.all ? "(NOT EXISTS (SELECT 1 FROM (" : "(EXISTS (SELECT 1 FROM (";
  Shape shape;
  shape.named = true;
  WriteQuery(*e.query, shape);
  sql_ += ") AS q WHERE (";
  Value(left);
  if (MayBeText(left)) sql_ += " COLLATE DX";
  sql_ += Sign(e.compare);
  sql_ += e.all ? "q.c1) IS NOT TRUE))" : "q.c1)))";
}

/// SQLite's parser nests less than a hundred deep: rows of ANDs, sums and joined texts are written flat.
void Writer::LogicalChain(const Expr& e, Op op) {
  if (e.op != op || !IsLogical(e)) return Condition(e);
  LogicalChain(*e.args[0], op);
  sql_ += op == Op::kAnd ? " AND " : " OR ";
  LogicalChain(*e.args[1], op);
}

/// A sub-query as a value has one row at most; SQLite would take the first of several.
void Writer::Scalar(const Expr& e) {
  const Select& select = *e.query->selects[0];
  const bool one_row =
      !e.query->is_union() && (select.from.empty() || (select.grouped && select.group_by.empty()));
  // SQLite counts an aggregate of outer columns alone to the query outside.
  const bool own = std::any_of(select.sources.begin(), select.sources.end(),
                               [&](const Source* source) { return Reads(*select.columns[0].expr, *source); });
  const bool plain =
      own && !e.query->is_union() && !select.grouped && !select.distinct && select.top == nullptr;
  sql_ += '(';
  if (one_row) {
    WriteQuery(*e.query, {});
  } else if (plain) {
    sql_ += "SELECT dx_only(";
    Value(*select.columns[0].expr);
    sql_ += ')';
    WriteBody(select, false);
  } else {
    sql_ += "SELECT dx_only(c1) FROM (";
    Shape shape;
    shape.named = true;
    WriteQuery(*e.query, shape);
    sql_ += ')';
  }
  sql_ += ')';
}

void Writer::Logical(const Expr& e) {
  sql_ += '(';
  switch (e.op) {
    case Op::kNot:
      sql_ += "NOT ";
      Condition(*e.args[0]);
      break;
    case Op::kAnd:
    case Op::kOr:
      LogicalChain(e, e.op);
      break;
    case Op::kImp:
      sql_ += "NOT ";
      Condition(*e.args[0]);
      sql_ += " OR ";
      Condition(*e.args[1]);
      break;
    default:
      // NOT makes 0 and 1 of whatever is true or false.
      sql_ += "(NOT ";
      Condition(*e.args[0]);
      sql_ += e.op == Op::kXor ? ") <> (NOT " : ") = (NOT ";
      Condition(*e.args[1]);
      sql_ += ')';
  }
  sql_ += ')';
}

void Writer::NumberChain(const Expr& e) {
  const Expr& left = *e.args[0];
  const bool product = e.op == Op::kMultiply;
  if (IsNativeNumber(left) && (left.op == Op::kMultiply) == product) {
    NumberChain(left);
  } else {
    NumberValue(left);
  }
  sql_ += product ? " * " : e.op == Op::kAdd ? " + " : " - ";
  NumberValue(*e.args[1]);
}

void Writer::TextChain(const Expr& e) {
  if (IsJoinedText(*e.args[0])) {
    TextChain(*e.args[0]);
  } else {
    Value(*e.args[0]);
  }
  sql_ += " || ";
  Value(*e.args[1]);
}

void Writer::Concat(const Expr& e) {
  std::vector<const Expr*> parts;
  const Expr* at = &e;
  for (; at->op == Op::kConcat; at = at->args[0]) parts.push_back(at->args[1]);
  parts.push_back(at);
  std::reverse(parts.begin(), parts.end());
  if (parts.size() > 2) sql_ += '(';
  for (std::size_t i = 0; i < parts.size(); i += 2) {
    sql_ += i == 0 ? "dx_cat(" : " || dx_cat(";
    TextValue(*parts[i]);
    sql_ += ", ";
    if (i + 1 < parts.size()) {
      TextValue(*parts[i + 1]);
    } else {
      sql_ += "''";
    }
    sql_ += ')';
  }
  if (parts.size() > 2) sql_ += ')';
}

void Writer::Call(std::string_view name, const Expr& e) {
  const bool texts = e.op == Op::kLike;
  sql_ += name;
  sql_ += '(';
  for (std::size_t i = 0; i < e.args.size(); ++i) {
    if (i > 0) sql_ += ", ";
    if (texts) {
      TextValue(*e.args[i]);
    } else {
      Value(*e.args[i]);
    }
  }
  sql_ += ')';
}

void Writer::Value(const Expr& e) {
  if (WritesTruth(e)) {
    sql_ += "(-";
    Condition(e);
    sql_ += ')';
    return;
  }
  switch (e.op) {
    case Op::kLiteral:
      return LiteralText(e);
    case Op::kNull:
      sql_ += "NULL";
      return;
    case Op::kBoolean:
      sql_ += e.truth ? "(-1)" : "0";
      return;
    case Op::kDeclared:
      sql_ += '?';
      sql_ += std::to_string(ParameterOf(e));
      return;
    case Op::kDecimal:
      sql_ += '(';
      sql_ += e.text;
      sql_ += ')';
      return;
    case Op::kColumn:
      sql_ += e.source->id;
      sql_ += '.';
      if (e.source->query != nullptr) {
        sql_ += 'c';
        sql_ += std::to_string(e.column + 1);
      } else {
        sql_ += QuoteName(e.source->columns[static_cast<std::size_t>(e.column)].name);
      }
      return;
    case Op::kNegate:
      sql_ += "(-";
      NumberValue(*e.args[0]);
      sql_ += ')';
      return;
    case Op::kMultiply:
    case Op::kSubtract:
    case Op::kAdd:
      if (IsNativeNumber(e)) {
        sql_ += '(';
        NumberChain(e);
        sql_ += ')';
        return;
      }
      if (IsJoinedText(e)) {
        sql_ += '(';
        TextChain(e);
        sql_ += ')';
        return;
      }
      return Call("dx_plus", e);
    case Op::kPower:
      return Call("dx_pow", e);
    case Op::kDivide:
      return Call("dx_div", e);
    case Op::kIntegerDivide:
      return Call("dx_idiv", e);
    case Op::kModulo:
      return Call("dx_mod", e);
    case Op::kConcat:
      return Concat(e);
    case Op::kLike:
      return Call("dx_like", e);
    case Op::kNot:
      return Call("dx_not", e);
    case Op::kAnd:
      return Call("dx_and", e);
    case Op::kOr:
      return Call("dx_or", e);
    case Op::kXor:
      return Call("dx_xor", e);
    case Op::kEqv:
      return Call("dx_eqv", e);
    case Op::kImp:
      return Call("dx_imp", e);
    case Op::kScalar:
      return Scalar(e);
    case Op::kFunction:
      return Function(e);
    case Op::kAggregate:
      return Aggregate(e);
    default:
      return;
  }
}

void Writer::Aggregate(const Expr& e) {
  const AggregateInfo& info = *FindAggregate(e.text);
  sql_ += info.sqlite_name;
  sql_ += '(';
  if (e.args.empty()) {
    sql_ += '*';
  } else if (e.text == "MIN" || e.text == "MAX") {
    CollatedValue(*e.args[0]);
  } else if (info.numeric) {
    NumberValue(*e.args[0]);
  } else {
    Value(*e.args[0]);
  }
  sql_ += ')';
}

void Writer::Case(const Expr& e) {
  auto when = [&](const Expr& condition, const Expr& value) {
    sql_ += " WHEN ";
    Condition(condition);
    sql_ += " THEN ";
    Value(value);
  };
  sql_ += "CASE";
  if (e.text == "IIF") {
    const Expr* arm = &e;
    for (; arm->op == Op::kFunction && arm->text == "IIF"; arm = arm->args[2])
      when(*arm->args[0], *arm->args[1]);
    sql_ += " ELSE ";
    Value(*arm);
  } else if (e.text == "SWITCH") {
    for (std::size_t i = 0; i + 1 < e.args.size(); i += 2) when(*e.args[i], *e.args[i + 1]);
  } else {  // CHOOSE
    sql_ += " dx_fix(";
    Value(*e.args[0]);
    sql_ += ')';
    for (std::size_t i = 1; i < e.args.size(); ++i) {
      sql_ += " WHEN " + std::to_string(i) + " THEN ";
      Value(*e.args[i]);
    }
  }
  sql_ += " END";
}

void Writer::Function(const Expr& e) {
  const FunctionInfo& info = *e.function;
  if (info.rule == ResultRule::kUnknown) return Case(e);
  const bool date = !e.args.empty() && e.args[0]->type.is_date();
  if (date) {
    // Dates are plain numbers to SQLite; where that would show, the answer is known here.
    if (e.text == "CSTR" || (e.text == "FORMAT" && e.args.size() == 1)) return TextValue(*e.args[0]);
    if (e.text == "ISNUMERIC") {
      sql_ += '0';
      return;
    }
    if (e.text == "ISDATE") {
      sql_ += "(-(";
      Value(*e.args[0]);
      sql_ += " IS NOT NULL))";
      return;
    }
  }
  sql_ += "dx_";
  for (char c : info.name) sql_ += static_cast<char>(c + 32);
  sql_ += '(';
  for (std::size_t i = 0; i < e.args.size(); ++i) {
    if (i > 0) sql_ += ", ";
    // INSTR has a start position in front only when three or more arguments are given.
    if ((info.text_arguments >> i & 1U) != 0 || (e.text == "INSTR" && e.args.size() == 2)) {
      TextValue(*e.args[i]);
    } else {
      Value(*e.args[i]);
    }
  }
  sql_ += ')';
}

}  // namespace store::dialect
