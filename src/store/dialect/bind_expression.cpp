#include "store/dialect/binder.h"
#include "store/dialect/decimal.h"
#include "store/dialect/diagnose.h"
#include "store/dialect/function_table.h"
#include "store/dialect/scan.h"
#include "store/dialect/types.h"

namespace store::dialect {

namespace {

// Aliases put into each other double a tree at every step.
constexpr int kHeaviest = 20000;

std::string Joined(const std::vector<std::string>& path, std::size_t count) {
  std::string out;
  for (std::size_t i = 0; i < count; ++i) out += (i > 0 ? "." : "") + path[i];
  return out;
}

Type Unknown() {
  Type type;
  type.kind = Type::Kind::kUnknown;
  return type;
}

Type NullType() {
  Type type;
  type.kind = Type::Kind::kNull;
  return type;
}

Type LiteralType(const Literal& literal) {
  switch (literal.kind) {
    case LiteralKind::kText:
      return Type::Of(ColumnType::kMemo);
    case LiteralKind::kInteger:
      return Type::Of(ColumnType::kLong);
    case LiteralKind::kNumber:
      return Type::Of(ColumnType::kDouble);
    case LiteralKind::kDate:
      return Type::Of(ColumnType::kDateTime);
    case LiteralKind::kBoolean:
      return Type::Of(ColumnType::kYesNo);
  }
  return Unknown();
}

}  // namespace

Expr* Binder::ColumnOf(Source& source, int column, int position) {
  Expr* e = tree_.NewExpr(Op::kColumn, position);
  OutputColumn& found = source.columns[static_cast<std::size_t>(column)];
  found.used = true;
  e->source = &source;
  e->column = column;
  e->type = found.type;
  return e;
}

bool Binder::FindColumn(const std::vector<Source*>& sources, const std::vector<std::string>& path,
                        const Unit& unit, int position, Source*& source, int& column) const {
  source = nullptr;
  const std::string qualifier = Joined(path, path.size() - 1);
  for (Source* candidate : sources) {
    if (path.size() > 1 && !SameName(candidate->name, qualifier)) continue;
    for (std::size_t i = 0; i < candidate->columns.size(); ++i) {
      if (!SameName(candidate->columns[i].name, path.back())) continue;
      if (source != nullptr) {
        ThrowAt(kSyntaxError, unit.text,
                "Numele '" + path.back() + "' se gaseste in mai multe tabele din clauza FROM", position);
      }
      source = candidate;
      column = static_cast<int>(i);
      break;
    }
  }
  return source != nullptr;
}

Expr* Binder::BindName(Expr* e, const Unit& unit, Scope& scope) {
  const std::string& name = e->path.back();
  for (Scope* at = &scope; at != nullptr; at = at->outer) {
    Source* source = nullptr;
    int column = -1;
    if (at->sources != nullptr && FindColumn(*at->sources, e->path, unit, e->position, source, column)) {
      Expr* found = ColumnOf(*source, column, e->position);
      if (at != &scope && at->select != nullptr) at->select->outer_references.push_back(found);
      return found;
    }
    if (at->aliases != nullptr && e->path.size() == 1) {
      for (const SelectItem& item : *at->aliases) {
        if (item.expr != nullptr && SameName(item.alias, name)) return item.expr;
      }
    }
  }
  if (e->path.size() == 1) {
    for (const Unit* at = &unit; at != nullptr; at = at->outer) {
      if (at->declared == nullptr) continue;
      for (const Declared& declared : *at->declared) {
        if (!SameName(declared.name, name)) continue;
        // Only the outermost text's parameters have values.
        if (at->outer != nullptr) continue;
        e->op = Op::kDeclared;
        e->text = declared.name;
        e->type = declared.type;
        return e;
      }
    }
    for (const char* word : {"YES", "ON", "NO", "OFF"}) {
      if (!SameName(name, word)) continue;
      e->op = Op::kBoolean;
      e->truth = word[0] == 'Y' || word[1] == 'N';
      e->type = Type::Of(ColumnType::kYesNo);
      return e;
    }
  }
  ThrowAt(kMissingParameter, unit.text,
          "Lipseste valoarea unuia sau mai multor parametri: " + Joined(e->path, e->path.size()),
          e->position);
}

void Binder::BindSubquery(Expr* e, const Unit& unit, Scope& scope) {
  const bool in_aggregate = std::exchange(in_aggregate_, false);
  BindQuery(*e->query, unit, &scope);
  in_aggregate_ = in_aggregate;
  if (e->op != Op::kExists && e->query->columns.size() != 1) {
    ThrowAt(kSyntaxError, unit.text, "O subinterogare folosita ca valoare trebuie sa aiba o singura coloana",
            e->position);
  }
}

Expr* Binder::BindAggregate(Expr* e, const Unit& unit, Scope& scope) {
  const bool count_all = e->op == Op::kAggregate;
  e->op = Op::kAggregate;
  const AggregateInfo& info = *FindAggregate(e->text);
  if (!count_all && e->args.size() != 1) {
    ThrowAt(kSyntaxError, unit.text, "Numar gresit de argumente pentru functia " + e->text, e->position);
  }
  if (scope.no_aggregates != nullptr || in_aggregate_) {
    ThrowAt(kSyntaxError, unit.text,
            "Functia de agregare " + e->text + " nu poate sta in " +
                (in_aggregate_ ? "alta functie de agregare" : scope.no_aggregates),
            e->position);
  }
  if (scope.select != nullptr) scope.select->grouped = true;
  if (count_all) {
    e->type = Type::Of(ColumnType::kLong);
    return e;
  }
  in_aggregate_ = true;
  e->args[0] = Bind(e->args[0], unit, scope);
  in_aggregate_ = false;
  const Type& argument = e->args[0]->type;
  if (info.numeric && argument.is_text()) {
    ThrowAt(kTypeMismatch, unit.text, "Tipuri de date nepotrivite: " + e->text + " cere numere", e->position);
  }
  if (e->text == "COUNT") {
    e->type = Type::Of(ColumnType::kLong);
  } else if (!info.numeric) {
    e->type = argument;
  } else if ((e->text == "SUM" || e->text == "AVG") &&
             (argument.column == ColumnType::kCurrency || argument.column == ColumnType::kDecimal)) {
    e->type = argument;
  } else {
    e->type = Type::Of(ColumnType::kDouble);
  }
  return e;
}

Expr* Binder::BindFunction(Expr* e, const Unit& unit, Scope& scope) {
  if (FindAggregate(e->text) != nullptr) return BindAggregate(e, unit, scope);
  e->function = FindFunction(e->text);
  if (e->function == nullptr) {
    ThrowAt(kSyntaxError, unit.text, "Functie nedefinita in expresie: " + e->text, e->position);
  }
  const int count = static_cast<int>(e->args.size());
  if (count < e->function->fewest || count > e->function->most || (e->text == "SWITCH" && count % 2 != 0)) {
    ThrowAt(kSyntaxError, unit.text, "Numar gresit de argumente pentru functia " + e->text, e->position);
  }
  for (Expr*& arg : e->args) arg = Bind(arg, unit, scope);
  e->type = FunctionType(*e);
  return e;
}

Type Binder::FunctionType(const Expr& e) const {
  const FunctionInfo& info = *e.function;
  if (info.rule == ResultRule::kFixed) return Type::Of(info.result);
  if (info.rule == ResultRule::kLikeFirst) {
    const Type& first = e.args[0]->type;
    if (e.text == "CVAR" || !first.is_text()) {
      return first.is_yes_no() && e.text != "CVAR" ? Type::Of(ColumnType::kShort) : first;
    }
    return Type::Of(info.result);
  }
  Type type = NullType();
  const std::size_t step = e.text == "SWITCH" ? 2 : 1;
  for (std::size_t i = 1; i < e.args.size(); i += step) type = CommonType(type, e.args[i]->type);
  return type;
}

void Binder::CheckComparable(const Expr& a, const Expr& b, const Unit& unit) const {
  if (!a.type.known() || !b.type.known() || a.type.is_text() == b.type.is_text()) return;
  ThrowAt(kTypeMismatch, unit.text, "Tipuri de date nepotrivite in expresia criteriului", b.position);
}

void Binder::SetType(Expr* e, const Unit& unit) {
  auto type = [&](std::size_t i) -> const Type& { return e->args[i]->type; };
  switch (e->op) {
    case Op::kLiteral:
      e->type = LiteralType(e->literal);
      if (e->literal.kind == LiteralKind::kDate) {
        try {
          LiteralValue(e->literal);
        } catch (const Error& error) {
          ThrowAt(error.number(), unit.text, error.description(), e->position);
        }
      }
      return;
    case Op::kNull:
      e->type = NullType();
      return;
    case Op::kDecimal:
      e->type = Type::Of(ColumnType::kDouble);
      return;
    case Op::kNegate:
      e->type = NumberType(type(0), NullType());
      return;
    case Op::kMultiply:
      e->type = NumberType(type(0), type(1));
      return;
    case Op::kPower:
    case Op::kDivide:
      e->type = Type::Of(ColumnType::kDouble);
      return;
    case Op::kIntegerDivide:
    case Op::kModulo:
      e->type = Type::Of(ColumnType::kLong);
      return;
    case Op::kAdd:
      if (type(0).is_text() && type(1).is_text()) {
        e->type = Type::Of(ColumnType::kMemo);
      } else if (type(0).is_text() || type(1).is_text() || !type(0).known() || !type(1).known()) {
        e->type = type(0).is_null() ? type(1) : type(1).is_null() ? type(0) : Unknown();
      } else {
        e->type = type(0).is_date() || type(1).is_date() ? Type::Of(ColumnType::kDateTime)
                                                         : NumberType(type(0), type(1));
      }
      return;
    case Op::kSubtract:
      e->type = type(0).is_date() && !type(1).is_date() ? Type::Of(ColumnType::kDateTime)
                                                        : NumberType(type(0), type(1));
      return;
    case Op::kConcat:
      e->type = Type::Of(ColumnType::kMemo);
      return;
    case Op::kEqual:
    case Op::kNotEqual:
    case Op::kLess:
    case Op::kGreater:
    case Op::kLessEqual:
    case Op::kGreaterEqual:
    case Op::kBetween:
    case Op::kIn:
      for (std::size_t i = 1; i < e->args.size(); ++i) CheckComparable(*e->args[0], *e->args[i], unit);
      e->type = Type::Of(ColumnType::kYesNo);
      return;
    case Op::kInQuery:
    case Op::kQuantified: {
      Expr other;
      other.type = e->query->columns[0].type;
      other.position = e->position;
      CheckComparable(*e->args[0], other, unit);
      e->type = Type::Of(ColumnType::kYesNo);
      return;
    }
    case Op::kScalar:
      e->type = e->query->columns[0].type;
      return;
    case Op::kNot:
    case Op::kAnd:
    case Op::kOr:
    case Op::kXor:
    case Op::kEqv:
    case Op::kImp: {
      bool truth = true, numbers = true;
      for (const Expr* arg : e->args) {
        if (arg->type.is_text()) {
          ThrowAt(kTypeMismatch, unit.text, "Tipuri de date nepotrivite in expresia criteriului",
                  arg->position);
        }
        truth = truth && (arg->type.is_yes_no() || arg->type.is_null());
        numbers = numbers && arg->type.known();
      }
      e->type = truth ? Type::Of(ColumnType::kYesNo) : numbers ? Type::Of(ColumnType::kLong) : Unknown();
      return;
    }
    default:
      e->type = Type::Of(ColumnType::kYesNo);
  }
}

Expr* Binder::Bind(Expr* e, const Unit& unit, Scope& scope) {
  if (IsDecimalArithmetic(*e)) {
    MarkStructural(*e);
    if (const auto folded = FoldDecimal(*e)) {
      e->op = Op::kDecimal;
      e->text = *folded;
      e->args.clear();
    }
  }
  Expr* bound = e;
  if (e->op == Op::kName) {
    bound = BindName(e, unit, scope);
  } else if (e->op == Op::kFunction) {
    bound = BindFunction(e, unit, scope);
  } else if (e->op == Op::kAggregate) {
    bound = BindAggregate(e, unit, scope);
  } else {
    for (Expr*& arg : e->args) arg = Bind(arg, unit, scope);
    if (e->query != nullptr) BindSubquery(e, unit, scope);
    SetType(e, unit);
  }
  bound->weight = 1;
  for (const Expr* arg : bound->args) {
    bound->weight += arg->weight;
    bound->depth = std::max(bound->depth, arg->depth + 1);
    if (bound->weight > kHeaviest || bound->depth > 900) {
      ThrowAt(kSyntaxError, unit.text, "Expresie prea complexa", e->position);
    }
  }
  return bound;
}

Expr* Binder::BindValue(Expr* e, const Unit& unit) {
  Scope scope;
  scope.no_aggregates = "VALUES";
  return Bind(e, unit, scope);
}

void Binder::MarkStructural(const Expr& e) {
  if (e.op == Op::kLiteral && e.literal_index >= 0) {
    structural_.emplace_back(e.literal_index, std::string(e.literal.raw));
  }
  for (const Expr* arg : e.args) MarkStructural(*arg);
}

bool Binder::Same(const Expr& a, const Expr& b, std::vector<const Expr*>& literals) const {
  if (&a == &b) return true;
  if (a.op != b.op || a.negated != b.negated || a.truth != b.truth || a.source != b.source ||
      a.column != b.column || a.query != nullptr || b.query != nullptr || a.text != b.text ||
      a.args.size() != b.args.size()) {
    return false;
  }
  if (a.op == Op::kLiteral) {
    if (a.literal.kind != b.literal.kind || a.literal.raw != b.literal.raw) return false;
    literals.push_back(&a);
    literals.push_back(&b);
  }
  for (std::size_t i = 0; i < a.args.size(); ++i) {
    if (!Same(*a.args[i], *b.args[i], literals)) return false;
  }
  return true;
}

bool Binder::SameValue(const Expr& a, const Expr& b) {
  std::vector<const Expr*> literals;
  if (!Same(a, b, literals)) return false;
  for (const Expr* literal : literals) MarkStructural(*literal);
  return true;
}

}  // namespace store::dialect
