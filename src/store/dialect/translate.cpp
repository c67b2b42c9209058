#include "store/dialect/binder.h"
#include "store/dialect/diagnose.h"
#include "store/dialect/parser.h"
#include "store/dialect/projection.h"
#include "store/dialect/push_filters.h"
#include "store/dialect/scan.h"
#include "store/dialect/writer.h"

namespace store::dialect {

namespace {

constexpr std::size_t kLongestSql = 900'000;  // SQLite stops at a million bytes

class Translator {
 public:
  Translator(std::string_view text, const SchemaSource& schema)
      : parser_(text, tree_, true), binder_(tree_, out_.structural), writer_(out_) {
    unit_.text = text;
    unit_.schema = &schema;
  }

  Translation Run() {
    statement_ = parser_.ParseStatement();
    unit_.declared = &statement_.parameters;
    out_.kind = statement_.kind;
    for (const Declared& declared : statement_.parameters) out_.declared.push_back(declared.name);
    switch (statement_.kind) {
      case StatementKind::kSelect:
        RunSelect();
        break;
      case StatementKind::kInsert:
        RunInsert();
        break;
      case StatementKind::kUpdate:
        RunUpdate();
        break;
      case StatementKind::kDelete:
        RunDelete();
        break;
      default:
        out_.object = statement_.object;
        out_.index = statement_.index;
        out_.unique = statement_.unique;
        out_.new_columns = statement_.new_columns;
        out_.key_columns = statement_.key_columns;
    }
    out_.sql = writer_.Take();
    if (out_.sql.size() > kLongestSql) ThrowAt(kSyntaxError, unit_.text, "Interogare prea complexa", 0);
    return std::move(out_);
  }

 private:
  void RunSelect() {
    binder_.BindQuery(*statement_.query, unit_, nullptr);
    for (const OutputColumn& column : statement_.query->columns) {
      ResultColumn result;
      result.name = column.name;
      result.type = column.type.column;
      result.typed = column.type.known();
      result.size = column.type.size;
      result.table_column = column.table_column;
      out_.columns.push_back(std::move(result));
    }
    FindProjection(*statement_.query, out_);
    PushFilters(tree_);
    writer_.WriteTopQuery(*statement_.query);
  }

  const Relation& WritableTable(const std::string& name, int position) {
    const Relation* relation = unit_.schema->Find(name);
    if (relation == nullptr) {
      ThrowAt(kNoSuchTable, unit_.text, "Nu exista tabela sau interogarea '" + name + "'", position);
    }
    if (relation->is_query || !relation->has_rowid) FailReadOnly(name, position);
    return *relation;
  }

  [[noreturn]] void FailReadOnly(const std::string& name, int position) {
    ThrowAt(kNotUpdatable, unit_.text, "Operatia cere o tabela care se poate modifica: " + name, position);
  }

  const SourceColumn* FindColumn(const Relation& relation, std::string_view name) {
    for (const SourceColumn& column : relation.columns) {
      if (SameName(column.name, name)) return &column;
    }
    return nullptr;
  }

  void RunInsert() {
    const Relation& target = WritableTable(statement_.object, statement_.object_position);
    std::vector<const SourceColumn*> columns;
    for (const std::string& name : statement_.insert_columns) {
      const SourceColumn* column = FindColumn(target, name);
      if (column == nullptr) FailUnknownField(name);
      if (std::find(columns.begin(), columns.end(), column) != columns.end()) {
        ThrowAt(kSyntaxError, unit_.text, "Coloana apare de doua ori: " + name, statement_.object_position);
      }
      columns.push_back(column);
    }
    for (Expr*& e : statement_.values) e = binder_.BindValue(e, unit_);
    std::size_t count = statement_.values.size();
    if (statement_.query != nullptr) {
      binder_.BindQuery(*statement_.query, unit_, nullptr);
      count = statement_.query->columns.size();
    }
    if (columns.empty()) columns = AllColumns(target, count);
    if (columns.size() != count) {
      ThrowAt(kSyntaxError, unit_.text, "Numarul de valori difera de numarul de coloane",
              statement_.object_position);
    }
    PushFilters(tree_);
    writer_.WriteInsert(statement_, target, columns);
  }

  [[noreturn]] void FailUnknownField(const std::string& name) {
    ThrowAt(kSyntaxError, unit_.text, "INSERT INTO contine un nume de coloana necunoscut: '" + name + "'",
            statement_.object_position);
  }

  /// Without a column list VALUES fill the table's columns in order; a SELECT fills those of its names.
  std::vector<const SourceColumn*> AllColumns(const Relation& target, std::size_t count) {
    std::vector<const SourceColumn*> out;
    if (statement_.query == nullptr) {
      for (const SourceColumn& column : target.columns) out.push_back(&column);
      return out;
    }
    for (std::size_t i = 0; i < count; ++i) {
      const std::string& name = statement_.query->columns[i].name;
      const SourceColumn* column = FindColumn(target, name);
      if (column == nullptr) FailUnknownField(name);
      out.push_back(column);
    }
    return out;
  }

  /// The one table that an UPDATE or DELETE changes must have rows behind it.
  void CheckTarget(const Source& target) {
    const bool table = target.query == nullptr && target.relation->has_rowid;
    const bool through = target.query != nullptr && !target.query->is_union() &&
                         FindBase(*target.query->selects[0]).relation != nullptr;
    if (!table && !through) FailReadOnly(target.name, target.position);
  }

  Select& SelectOf() {
    Select& select = tree_.selects.emplace_back();
    select.from = statement_.from;
    select.where = statement_.where;
    return select;
  }

  void RunUpdate() {
    Select& select = SelectOf();
    for (const Assignment& set : statement_.set) {
      SelectItem item;
      item.expr = set.value;
      item.position = set.position;
      select.items.push_back(item);
    }
    binder_.BindSelect(select, unit_, nullptr);
    if (select.grouped) {
      ThrowAt(kSyntaxError, unit_.text, "Functiile de agregare nu pot sta in UPDATE", 0);
    }
    Source* target = nullptr;
    std::vector<int> columns;
    for (const Assignment& set : statement_.set) {
      const auto [source, column] = binder_.FindTarget(select, set.target, unit_, set.position);
      if (target != nullptr && source != target) {
        ThrowAt(kSyntaxError, unit_.text, "UPDATE poate schimba o singura tabela", set.position);
      }
      if (std::find(columns.begin(), columns.end(), column) != columns.end()) {
        ThrowAt(kSyntaxError, unit_.text, "Coloana apare de doua ori: " + set.target.back(), set.position);
      }
      if (source->columns[static_cast<std::size_t>(column)].table_column.empty()) {
        ThrowAt(kNotUpdatable, unit_.text, "Coloana nu se poate modifica: " + set.target.back(),
                set.position);
      }
      target = source;
      columns.push_back(column);
    }
    CheckTarget(*target);
    PushFilters(tree_);
    writer_.WriteUpdate(select, *target, columns);
  }

  void RunDelete() {
    Select& select = SelectOf();
    binder_.BindSelect(select, unit_, nullptr);
    Source* target = nullptr;
    for (Source* source : select.sources) {
      if (!statement_.delete_of.empty() && !SameName(source->name, statement_.delete_of)) continue;
      if (target != nullptr) {
        ThrowAt(kSyntaxError, unit_.text, "Specificati tabela din care se sterg inregistrari", 0);
      }
      target = source;
    }
    if (target == nullptr) {
      ThrowAt(kNoSuchTable, unit_.text, "Nu exista tabela '" + statement_.delete_of + "' in clauza FROM", 0);
    }
    CheckTarget(*target);
    PushFilters(tree_);
    writer_.WriteDelete(select, *target);
  }

  Translation out_;
  Tree tree_;
  Unit unit_;
  Parser parser_;
  Binder binder_;
  Writer writer_;
  Statement statement_;
};

}  // namespace

Translation Translate(std::string_view text, const SchemaSource& schema) {
  return Translator(text, schema).Run();
}

std::vector<ResultColumn> Describe(std::string_view query_text, const SchemaSource& schema) {
  return Translate(query_text, schema).columns;
}

}  // namespace store::dialect
