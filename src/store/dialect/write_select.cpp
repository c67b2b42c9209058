#include "store/dialect/scan.h"
#include "store/dialect/writer.h"

namespace store::dialect {

namespace {

/// A query around may leave out the columns it does not use, unless they decide which rows there are.
bool MayPrune(const Select& select) {
  return !select.distinct && !(select.grouped && select.group_by.empty());
}

/// No two rows share an ORDER BY key: the auto-number column of a single table is in it.
bool OrderIsUnique(const Select& select) {
  if (select.sources.size() != 1 || select.grouped || select.distinct) return false;
  const Source& source = *select.sources[0];
  if (source.relation == nullptr || source.query != nullptr) return false;
  return std::any_of(select.order_by.begin(), select.order_by.end(), [&](const OrderItem& item) {
    return item.expr->op == Op::kColumn &&
           SameName(source.columns[static_cast<std::size_t>(item.expr->column)].name,
                    source.relation->counter_column);
  });
}

bool IsConstant(const Expr& e) { return e.op == Op::kLiteral || e.op == Op::kNull || e.op == Op::kBoolean; }

}  // namespace

bool Reads(const Expr& e, const Source& source) {
  if (e.op == Op::kColumn && e.source == &source) return true;
  return std::any_of(e.args.begin(), e.args.end(), [&](const Expr* arg) { return Reads(*arg, source); });
}

Base FindBase(const Select& select) {
  if (select.distinct || select.grouped || select.sources.size() != 1) return {};
  const Source& source = *select.sources[0];
  if (source.query == nullptr) {
    if (!source.relation->has_rowid) return {};
    return {source.relation, source.object};
  }
  return source.query->is_union() ? Base{} : FindBase(*source.query->selects[0]);
}

void Writer::WriteTopQuery(Query& query) {
  Shape shape;
  if (!query.is_union()) {
    const Base base = FindBase(*query.selects[0]);
    if (base.relation != nullptr) {
      shape.rowid = true;
      out_.base_table = base.relation->sqlite_name;
      out_.base_name = base.name;
    }
  }
  WriteQuery(query, shape);
}

void Writer::WriteQuery(const Query& query, const Shape& shape) {
  if (!query.is_union()) return WriteSelect(*query.selects[0], shape);
  Shape member = shape;
  member.wanted = nullptr;
  member.rowid = false;
  member.collate = std::find(query.all.begin(), query.all.end(), false) != query.all.end();
  for (std::size_t i = 0; i < query.selects.size(); ++i) {
    const Select& select = *query.selects[i];
    if (i > 0) sql_ += query.all[i - 1] ? " UNION ALL " : " UNION ";
    // SQLite takes no LIMIT and no ORDER BY inside a member.
    const bool closed = select.top != nullptr;
    if (closed) sql_ += "SELECT * FROM (";
    Shape this_member = member;
    this_member.named = member.named || closed;
    WriteSelect(select, this_member);
    if (closed) sql_ += ')';
  }
  if (query.order_by.empty()) return;
  sql_ += " ORDER BY ";
  for (std::size_t i = 0; i < query.order_by.size(); ++i) {
    if (i > 0) sql_ += ", ";
    sql_ += std::to_string(query.order_by[i].expr->column + 1);
    if (!query.order_by[i].expr->type.numeric()) sql_ += " COLLATE DX";
    if (query.order_by[i].descending) sql_ += " DESC";
  }
}

void Writer::WriteSelect(const Select& select, const Shape& shape) {
  const bool ranked =
      select.top != nullptr && (select.top_percent || (!select.order_by.empty() && !OrderIsUnique(select)));
  if (ranked) return WriteRanked(select, shape);
  WriteColumns(select, shape);
  WriteBody(select, true);
  if (select.top != nullptr) {
    sql_ += " LIMIT ";
    Value(*select.top);
  }
}

/// TOP with ties: rows whose ORDER BY key ranks within the first n.
void Writer::WriteRanked(const Select& select, const Shape& shape) {
  auto columns = [&] {
    bool any = false;
    for (std::size_t i = 0; i < select.columns.size(); ++i) {
      if (shape.wanted != nullptr && MayPrune(select) && !(*shape.wanted)[i].used) continue;
      if (any) sql_ += ", ";
      sql_ += 'c' + std::to_string(i + 1);
      any = true;
    }
    if (!any) sql_ += "1 AS c0";
    if (shape.rowid) sql_ += ", rid";
  };
  auto window = [&](const std::function<void()>& order) {
    sql_ += select.order_by.empty() ? ", ROW_NUMBER() OVER (" : ", RANK() OVER (";
    order();
    sql_ += ") AS place";
    if (select.top_percent) sql_ += ", COUNT(*) OVER () AS total";
  };
  sql_ += "SELECT ";
  columns();
  sql_ += " FROM (";
  Shape inner = shape;
  inner.named = true;
  if (select.distinct) {
    sql_ += "SELECT ";
    columns();
    window([&] {
      if (select.order_by.empty()) return;
      sql_ += "ORDER BY ";
      for (std::size_t i = 0; i < select.order_by.size(); ++i) {
        const OrderItem& item = select.order_by[i];
        std::size_t place = 0;
        while (select.items[place].expr != item.expr) ++place;
        if (i > 0) sql_ += ", ";
        sql_ += 'c' + std::to_string(place + 1);
        if (!item.expr->type.numeric()) sql_ += " COLLATE DX";
        if (item.descending) sql_ += " DESC";
      }
    });
    sql_ += " FROM (";
    WriteColumns(select, inner);
    WriteBody(select, false);
    sql_ += ')';
  } else {
    WriteColumns(select, inner);
    window([&] {
      std::string saved = std::exchange(sql_, {});
      WriteOrder(select.order_by);
      std::string order = std::exchange(sql_, std::move(saved));
      if (!order.empty()) sql_ += order.substr(1);
    });
    WriteBody(select, false);
  }
  sql_ += ") WHERE ";
  if (select.top_percent) {
    // A started percentage counts: 10 percent of 15 rows are 2.
    sql_ += "(place - 1) * 100 < total * ";
  } else {
    sql_ += "place <= ";
  }
  Value(*select.top);
  sql_ += " ORDER BY place";
}

void Writer::WriteColumns(const Select& select, const Shape& shape) {
  sql_ += select.distinct ? "SELECT DISTINCT " : "SELECT ";
  const bool prune = shape.wanted != nullptr && MayPrune(select);
  bool any = false;
  for (std::size_t i = 0; i < select.columns.size(); ++i) {
    if (prune && !(*shape.wanted)[i].used) continue;
    if (any) sql_ += ", ";
    any = true;
    const Expr& e = *select.columns[i].expr;
    if (select.distinct || shape.collate) {
      CollatedValue(e);
    } else {
      Value(e);
    }
    if (shape.named) sql_ += " AS c" + std::to_string(i + 1);
  }
  if (!any) sql_ += "1 AS c0";
  if (shape.rowid) {
    sql_ += ", ";
    WriteRowid(*select.sources[0]);
    if (shape.named) sql_ += " AS rid";
  }
}

void Writer::WriteRowid(const Source& source) {
  sql_ += source.id;
  sql_ += '.';
  if (source.query != nullptr) {
    sql_ += "rid";
    return;
  }
  // A column may carry one of the names that SQLite gives the row's number.
  for (const char* name : {"rowid", "_rowid_", "oid"}) {
    const bool taken = std::any_of(source.columns.begin(), source.columns.end(),
                                   [&](const OutputColumn& column) { return SameName(column.name, name); });
    if (taken) continue;
    sql_ += name;
    return;
  }
  sql_ += QuoteName(source.relation->counter_column);
}

void Writer::WriteBody(const Select& select, bool with_order) {
  WriteFromList(select);
  if (select.where != nullptr) {
    sql_ += " WHERE ";
    Condition(*select.where);
  }
  for (std::size_t i = 0; i < select.group_by.size(); ++i) {
    sql_ += i == 0 ? " GROUP BY " : ", ";
    const Expr& e = *select.group_by[i];
    if (IsConstant(e)) {
      sql_ += "CAST(";  // a bare number would mean a place
      Value(e);
      sql_ += " AS TEXT)";
    } else {
      CollatedValue(e);
    }
  }
  if (select.distinct_row && !select.grouped) WriteDistinctRows(select);
  if (select.having != nullptr) {
    sql_ += " HAVING ";
    Condition(*select.having);
  }
  if (with_order) WriteOrder(select.order_by);
}

/// DISTINCTROW: a joined table that gives no column does not multiply the rows of those that do.
void Writer::WriteDistinctRows(const Select& select) {
  std::vector<const Source*> giving;
  for (const Source* source : select.sources) {
    if (source->query != nullptr || !source->relation->has_rowid) return;
    if (std::any_of(select.columns.begin(), select.columns.end(),
                    [&](const OutputColumn& column) { return Reads(*column.expr, *source); })) {
      giving.push_back(source);
    }
  }
  if (giving.empty() || giving.size() == select.sources.size()) return;
  for (std::size_t i = 0; i < giving.size(); ++i) {
    sql_ += i == 0 ? " GROUP BY " : ", ";
    WriteRowid(*giving[i]);
  }
}

void Writer::WriteOrder(const std::vector<OrderItem>& order) {
  bool any = false;
  for (const OrderItem& item : order) {
    if (IsConstant(*item.expr)) continue;
    sql_ += any ? ", " : " ORDER BY ";
    any = true;
    CollatedValue(*item.expr);
    if (item.descending) sql_ += " DESC";
  }
}

void Writer::WriteFromList(const Select& select) {
  for (std::size_t i = 0; i < select.from.size(); ++i) {
    sql_ += i == 0 ? " FROM " : ", ";
    WriteFrom(*select.from[i], false);
  }
}

void Writer::WriteFrom(const From& from, bool nested) {
  if (from.kind == From::Kind::kSource) return WriteSource(*from.source);
  if (nested) sql_ += '(';
  // A right join is a left join read from the other side.
  const bool swapped = from.kind == From::Kind::kRight;
  WriteFrom(swapped ? *from.right : *from.left, false);
  sql_ += from.kind == From::Kind::kInner ? " JOIN " : " LEFT JOIN ";
  WriteFrom(swapped ? *from.left : *from.right, true);
  sql_ += " ON ";
  Condition(*from.on);
  if (nested) sql_ += ')';
}

void Writer::WriteSource(const Source& source) {
  if (source.query == nullptr) {
    sql_ += source.relation->sqlite_name;
  } else {
    Shape shape;
    shape.named = true;
    shape.wanted = &source.columns;
    // The row's number is there wherever one stands behind; SQLite drops it where nobody asks.
    shape.rowid = !source.query->is_union() && FindBase(*source.query->selects[0]).relation != nullptr;
    sql_ += '(';
    WriteQuery(*source.query, shape);
    sql_ += ')';
  }
  sql_ += " AS ";
  sql_ += source.id;
}

}  // namespace store::dialect
