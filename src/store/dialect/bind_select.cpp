#include "store/dialect/binder.h"
#include "store/dialect/diagnose.h"
#include "store/dialect/parser.h"
#include "store/dialect/scan.h"
#include "store/dialect/types.h"

namespace store::dialect {

namespace {

// A stored query that names itself twice over, level upon level, grows without bound.
constexpr std::size_t kMostSources = 400;
constexpr std::size_t kMostOpenQueries = 40;

[[noreturn]] void FailGrouped(const std::string& name, const Unit& unit, int position) {
  ThrowAt(kSyntaxError, unit.text,
          "Interogarea nu include expresia '" + name + "' in functia de agregare sau in GROUP BY", position);
}

}  // namespace

void Binder::BindQuery(Query& query, const Unit& unit, Scope* outer) {
  for (Select* select : query.selects) BindSelect(*select, unit, outer);
  query.columns = query.selects[0]->columns;
  if (!query.is_union()) return;
  for (std::size_t i = 1; i < query.selects.size(); ++i) {
    const Select& select = *query.selects[i];
    if (select.columns.size() != query.columns.size()) {
      ThrowAt(kSyntaxError, unit.text, "Interogarile legate prin UNION nu au acelasi numar de coloane",
              select.position);
    }
    for (std::size_t k = 0; k < query.columns.size(); ++k) {
      query.columns[k].type = CommonType(query.columns[k].type, select.columns[k].type);
    }
  }
  for (OutputColumn& column : query.columns) column.table_column.clear();
  BindUnionOrder(query, unit);
}

void Binder::BindUnionOrder(Query& query, const Unit& unit) {
  for (OrderItem& item : query.order_by) {
    int column = -1;
    if (item.expr->op == Op::kLiteral) {
      column = Position(*item.expr, query.columns, unit);
    } else if (item.expr->op == Op::kName) {
      for (std::size_t i = 0; i < query.columns.size() && column < 0; ++i) {
        if (SameName(query.columns[i].name, item.expr->path.back())) column = static_cast<int>(i);
      }
    }
    if (column < 0) {
      ThrowAt(kSyntaxError, unit.text, "ORDER BY poate numi numai coloanele primei interogari din UNION",
              item.expr->position);
    }
    Expr* e = tree_.NewExpr(Op::kColumn, item.expr->position);
    e->column = column;
    e->type = query.columns[static_cast<std::size_t>(column)].type;
    item.expr = e;
  }
}

/// ORDER BY 2: a literal that names a column by its place.
int Binder::Position(const Expr& e, const std::vector<OutputColumn>& columns, const Unit& unit) {
  MarkStructural(e);
  std::size_t place = 0;
  if (e.literal.kind == LiteralKind::kInteger && e.literal.raw.size() < 6) {
    for (char c : e.literal.raw) place = place * 10 + static_cast<std::size_t>(c - '0');
  }
  if (place < 1 || place > columns.size()) {
    ThrowAt(kSyntaxError, unit.text, "ORDER BY: nu exista coloana " + std::string(e.literal.raw), e.position);
  }
  return static_cast<int>(place) - 1;
}

void Binder::BindSelect(Select& select, const Unit& unit, Scope* outer) {
  if (tree_.sources.size() > kMostSources)
    ThrowAt(kSyntaxError, unit.text, "Interogare prea complexa", select.position);
  for (From* from : select.from) BindFrom(*from, select, unit, outer);

  Scope scope;
  scope.outer = outer;
  scope.select = &select;
  scope.sources = &select.sources;
  scope.no_aggregates = "WHERE";
  if (select.where != nullptr) {
    select.where = Bind(select.where, unit, scope);
    if (select.where->type.is_text()) {
      ThrowAt(kTypeMismatch, unit.text, "Tipuri de date nepotrivite in expresia criteriului",
              select.where->position);
    }
  }
  scope.no_aggregates = "GROUP BY";
  for (Expr*& e : select.group_by) e = Bind(e, unit, scope);
  scope.no_aggregates = nullptr;
  select.outer_references.clear();

  select.grouped = !select.group_by.empty() || select.having != nullptr;
  ExpandItems(select, unit, scope);
  NameColumns(select, unit);
  if (select.having != nullptr) select.having = Bind(select.having, unit, scope);
  BindOrderBy(select, unit, scope);
  if (select.top != nullptr) select.top = Bind(select.top, unit, scope);
  if (select.grouped) CheckGroups(select, unit);

  for (std::size_t i = 0; i < select.columns.size(); ++i) {
    OutputColumn& column = select.columns[i];
    column.expr = select.items[i].expr;
    column.type = column.expr->type;
    if (column.expr->op != Op::kColumn || column.expr->source == nullptr) continue;
    const OutputColumn& from = column.expr->source->columns[static_cast<std::size_t>(column.expr->column)];
    column.collated = from.collated;
    column.table_column = from.table_column;
  }
}

void Binder::BindFrom(From& from, Select& select, const Unit& unit, Scope* outer) {
  if (from.kind == From::Kind::kSource) {
    BindSource(from, select, unit);
    return;
  }
  const std::size_t begin = select.sources.size();
  BindFrom(*from.left, select, unit, outer);
  BindFrom(*from.right, select, unit, outer);
  // ON sees the tables of its own join only.
  const std::vector<Source*> joined(select.sources.begin() + static_cast<std::ptrdiff_t>(begin),
                                    select.sources.end());
  Scope scope;
  scope.outer = outer;
  scope.select = &select;
  scope.sources = &joined;
  scope.no_aggregates = "JOIN ... ON";
  from.on = Bind(from.on, unit, scope);
  if (from.on->type.is_text()) {
    ThrowAt(kTypeMismatch, unit.text, "Tipuri de date nepotrivite in expresia JOIN", from.on->position);
  }
}

void Binder::BindSource(From& from, Select& select, const Unit& unit) {
  Source& source = tree_.sources.emplace_back();
  source.id = "s" + std::to_string(tree_.sources.size());
  source.position = from.position;
  source.name = from.alias.empty() ? from.name : from.alias;
  source.object = from.name;
  from.source = &source;
  if (tree_.sources.size() > kMostSources)
    ThrowAt(kSyntaxError, unit.text, "Interogare prea complexa", from.position);
  for (const Source* other : select.sources) {
    if (!source.name.empty() && SameName(other->name, source.name)) {
      ThrowAt(kSyntaxError, unit.text, "Numele '" + source.name + "' apare de doua ori in clauza FROM",
              from.position);
    }
  }
  if (from.derived != nullptr) {
    source.query = from.derived;
    BindQuery(*source.query, unit, nullptr);
  } else {
    source.relation = unit.schema->Find(from.name);
    if (source.relation == nullptr) {
      ThrowAt(kNoSuchTable, unit.text, "Nu exista tabela sau interogarea '" + from.name + "'", from.position);
    }
    if (source.relation->is_query) OpenStoredQuery(source, unit);
  }
  if (source.query != nullptr) {
    for (const OutputColumn& column : source.query->columns) {
      source.columns.push_back({column.name, column.type, false, false, column.table_column, nullptr});
    }
  } else {
    for (const SourceColumn& column : source.relation->columns) {
      const Type type = Type::Of(column.type, column.size);
      source.columns.push_back({column.name, type, type.is_text(), false, column.name, nullptr});
    }
  }
  select.sources.push_back(&source);
}

void Binder::OpenStoredQuery(Source& source, const Unit& unit) {
  const Relation& relation = *source.relation;
  for (const Relation* open : open_queries_) {
    if (open == &relation || open_queries_.size() > kMostOpenQueries) {
      ThrowAt(kSyntaxError, unit.text, "Referinta circulara prin interogarea '" + source.object + "'",
              source.position);
    }
  }
  open_queries_.push_back(&relation);
  try {
    Parser parser(relation.query_text, tree_, false);
    const Statement statement = parser.ParseStatement();
    if (statement.kind != StatementKind::kSelect) {
      ThrowAt(kSyntaxError, relation.query_text, "Interogarea nu este un SELECT", 0);
    }
    const Unit inner{relation.query_text, relation.home != nullptr ? relation.home : unit.schema,
                     &statement.parameters, &unit};
    source.query = statement.query;
    BindQuery(*source.query, inner, nullptr);
  } catch (const Error& error) {
    // The position is of the stored text, not of the statement that the caller sees.
    throw Error(error.number(), error.source(),
                error.description() + " (interogarea '" + source.object + "')");
  }
  open_queries_.pop_back();
}

void Binder::ExpandItems(Select& select, const Unit& unit, Scope& scope) {
  std::vector<SelectItem> out;
  scope.aliases = &out;
  for (SelectItem& item : select.items) {
    if (item.expr == nullptr) {
      if (select.grouped) FailGrouped("*", unit, item.position);
      ExpandStar(select, item, unit, out);
      continue;
    }
    SelectItem bound = item;
    bound.expr = Bind(item.expr, unit, scope);
    out.push_back(std::move(bound));
  }
  select.items = std::move(out);
  scope.aliases = nullptr;
}

void Binder::ExpandStar(Select& select, const SelectItem& star, const Unit& unit,
                        std::vector<SelectItem>& out) {
  bool found = false;
  for (Source* source : select.sources) {
    if (!star.star_of.empty() && !SameName(source->name, star.star_of)) continue;
    found = true;
    for (std::size_t i = 0; i < source->columns.size(); ++i) {
      SelectItem item;
      item.expr = ColumnOf(*source, static_cast<int>(i), star.position);
      item.position = star.position;
      out.push_back(item);
    }
  }
  if (found) return;
  if (star.star_of.empty()) ThrowAt(kSyntaxError, unit.text, "SELECT * fara clauza FROM", star.position);
  ThrowAt(kNoSuchTable, unit.text, "Nu exista tabela '" + star.star_of + "' in clauza FROM", star.position);
}

/// A column keeps its own name, an expression is Expr1000 and its place; the same name from two tables is
/// told apart by the table.
void Binder::NameColumns(Select& select, const Unit& unit) {
  auto own_name = [](const SelectItem& item) -> std::string {
    if (!item.alias.empty()) return item.alias;
    if (item.expr->op != Op::kColumn || item.expr->source == nullptr) return {};
    return item.expr->source->columns[static_cast<std::size_t>(item.expr->column)].name;
  };
  std::vector<std::string> names;
  for (const SelectItem& item : select.items) names.push_back(own_name(item));
  select.columns.resize(select.items.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const SelectItem& item = select.items[i];
    std::string name = names[i];
    bool same_column = false, other_column = false;
    for (std::size_t k = 0; k < names.size(); ++k) {
      if (k == i || name.empty() || !SameName(names[k], name)) continue;
      const SelectItem& other = select.items[k];
      if (!item.alias.empty() && !other.alias.empty() && k < i) {
        ThrowAt(kSyntaxError, unit.text, "Numele '" + name + "' apare de doua ori dupa AS", item.position);
      }
      if (!item.alias.empty()) continue;
      const bool same = other.alias.empty() && other.expr->source == item.expr->source;
      if (same && k < i) same_column = true;
      if (!same) other_column = true;
    }
    if (same_column) {
      name.clear();
    } else if (other_column && !item.expr->source->name.empty()) {
      name = item.expr->source->name + "." + name;
    }
    select.columns[i].name = name.empty() ? "Expr" + std::to_string(1000 + i) : name;
  }
}

void Binder::BindOrderBy(Select& select, const Unit& unit, Scope& scope) {
  scope.aliases = &select.items;
  for (OrderItem& item : select.order_by) {
    if (item.expr->op == Op::kLiteral && item.expr->literal.kind == LiteralKind::kInteger) {
      item.expr = select.items[static_cast<std::size_t>(Position(*item.expr, select.columns, unit))].expr;
    } else {
      const int position = item.expr->position;
      item.expr = Bind(item.expr, unit, scope);
      if (!select.distinct) continue;
      for (const SelectItem& output : select.items) {
        if (SameValue(*output.expr, *item.expr)) item.expr = output.expr;
      }
      const bool shown = std::any_of(select.items.begin(), select.items.end(),
                                     [&](const SelectItem& output) { return output.expr == item.expr; });
      if (!shown) ThrowAt(kSyntaxError, unit.text, "Clauza ORDER BY intra in conflict cu DISTINCT", position);
    }
  }
  scope.aliases = nullptr;
}

void Binder::CheckGroups(Select& select, const Unit& unit) {
  for (SelectItem& item : select.items) {
    Expr* before = item.expr;
    item.expr = CheckGrouped(item.expr, select, unit);
    for (OrderItem& order : select.order_by) {
      if (order.expr == before) order.expr = item.expr;
    }
  }
  if (select.having != nullptr) select.having = CheckGrouped(select.having, select, unit);
  for (OrderItem& item : select.order_by) item.expr = CheckGrouped(item.expr, select, unit);
  for (const Expr* reference : select.outer_references) {
    const bool listed = std::any_of(select.group_by.begin(), select.group_by.end(), [&](const Expr* e) {
      return e->op == Op::kColumn && e->source == reference->source && e->column == reference->column;
    });
    if (!listed) {
      FailGrouped(reference->source->columns[static_cast<std::size_t>(reference->column)].name, unit,
                  reference->position);
    }
  }
}

/// The expression with its grouped parts replaced by the GROUP BY terms themselves, so that SQLite sees them
/// as one.
Expr* Binder::CheckGrouped(Expr* e, const Select& select, const Unit& unit) {
  for (Expr* group : select.group_by) {
    if (SameValue(*e, *group)) return group;
  }
  if (e->op == Op::kAggregate) return e;
  if (e->op == Op::kColumn) {
    const bool own =
        std::find(select.sources.begin(), select.sources.end(), e->source) != select.sources.end();
    if (own) FailGrouped(e->source->columns[static_cast<std::size_t>(e->column)].name, unit, e->position);
    return e;
  }
  for (Expr*& arg : e->args) arg = CheckGrouped(arg, select, unit);
  return e;
}

std::pair<Source*, int> Binder::FindTarget(const Select& select, const std::vector<std::string>& path,
                                           const Unit& unit, int position) {
  Source* source = nullptr;
  int column = -1;
  if (!FindColumn(select.sources, path, unit, position, source, column)) {
    ThrowAt(kMissingParameter, unit.text, "Lipseste valoarea unuia sau mai multor parametri: " + path.back(),
            position);
  }
  source->columns[static_cast<std::size_t>(column)].used = true;
  return {source, column};
}

}  // namespace store::dialect
