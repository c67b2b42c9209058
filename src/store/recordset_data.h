#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/convert.h"
#include "store/dialect/translate.h"
#include "store/engine.h"
#include "store/recordset.h"
#include "store/rows.h"

namespace store {

struct RowSet;

/// A chapter of a shaped recordset: the child rows and the fields that tie them to the parent.
struct Chapter {
  std::string alias;
  std::shared_ptr<RowSet> rows;
  std::vector<std::pair<int, int>> relation;  ///< parent field, child field
};

/// The rows of one query, shared by the recordsets on them, and where they are written back to.
struct RowSet {
  explicit RowSet(std::vector<FieldInfo> field_list);

  std::vector<FieldInfo> fields;
  std::unordered_map<std::string, int, NameHash, NameEqual> by_name;
  RowBlock rows;
  std::vector<std::int64_t> rowids;  ///< of updatable rows
  std::vector<std::uint32_t> live;   ///< rows not deleted, once `deleted` is set; before, all are live
  bool deleted = false;
  std::uint32_t version = 0;  ///< changes with every deletion

  bool in_memory = false;
  bool updatable = false;
  std::shared_ptr<Engine> engine;
  std::uint64_t session = 0;  ///< of the engine, when the rows were read
  std::string statement;      ///< its head, for errors
  std::string base_table, base_name;
  int counter_field = -1;
  bool defaults_read = false;
  std::vector<Cell> defaults;
  std::vector<std::string> default_texts;  ///< storage of `defaults`
  std::vector<std::pair<int, std::string>> computed_defaults;
  std::vector<Chapter> chapters;

  std::int64_t live_count() const { return deleted ? static_cast<std::int64_t>(live.size()) : rows.size(); }
  std::int64_t live_row(std::int64_t position) const {
    return deleted ? live[static_cast<std::size_t>(position)] : position;
  }
  void AppendLive();
  void RemoveLive(std::int64_t row);
};

/// The statements that write a recordset's rows, one for each set of columns written so far.
struct EditPlans {
  struct Plan {
    std::vector<char> mask;
    Statement* statement = nullptr;
  };
  std::vector<Plan> plans;  ///< the last used one first
  std::uint64_t generation = 0;
};

/// A recordset: a cursor over a row set, with its own filter, order and pending change.
struct Recordset::Data {
  explicit Data(std::shared_ptr<RowSet> row_set) : set(std::move(row_set)) {}
  Data(const Data& other);  ///< the cursor, without its pending change

  std::shared_ptr<RowSet> set;
  std::int64_t at = 0;  ///< position among the rows shown; -1 before the first

  bool has_view = false;
  std::vector<std::uint32_t> view;
  std::uint32_t view_version = 0;
  dialect::RowCondition filter;
  std::vector<std::pair<int, bool>> order;     ///< field, descending
  std::vector<std::pair<int, Value>> related;  ///< a child's fields and the parent's values
  struct NewRowValue {
    int field;
    std::unique_ptr<const std::string> text;  ///< storage of the cell's text
    Cell cell;
  };
  std::vector<NewRowValue> new_row_values;

  enum class Pending { kNone, kEdit, kNew };
  Pending pending = Pending::kNone;
  std::vector<Cell> buffer;
  std::vector<std::string> buffer_texts;
  std::vector<char> changed;
  std::string scratch;
  EditPlans insert_plans, update_plans;

  std::int64_t count() const;
  std::int64_t row_at(std::int64_t position) const;
  /// The current row's cells: the pending ones, or the stored; throws kEndOfRecordset.
  const Cell& cell(int field) const;
  std::int64_t CurrentRow() const;
  void Settle();       ///< brings the view up to date after deletions through a copy
  void RebuildView();  ///< from filter, relation and order
  void BeginPending(Pending kind);
  /// The value as a cell of the field's type, its text in `text`. Throws kNotUpdatable, kConversion,
  /// kTooLong.
  Cell Converted(int field, const Value& value, std::string& text) const;
  void RequireStored(const FieldInfo& info) const;
  void BeginChange(int field);
  /// Puts a converted value into the pending row; a long text is taken out of `text`.
  void Change(int field, const Cell& cell, std::string& text);
  void SaveNew();
  void SaveEdit();
  void RequireWritable() const;
  Statement& Plan(EditPlans& kept, bool insert);
  int BindPending(Statement& statement) const;  ///< parameters bound
  void ReadDefaults();
};

/// Makes recordsets.
struct RecordsetFactory {
  static Recordset Load(const std::shared_ptr<Engine>& engine, Prepared& prepared, std::string_view text,
                        const OpenOptions& options, const dialect::Normalized* literals = nullptr);
  static Recordset Wrap(std::shared_ptr<RowSet> rows);
  static const std::shared_ptr<RowSet>& Rows(const Recordset& recordset) { return recordset.data_->set; }
};

/// A number that SQLite or a source gives, as a cell of the result column's type.
Cell NumberCell(const dialect::ResultColumn& column, double number);
Cell IntegerCell(const dialect::ResultColumn& column, std::int64_t number);

/// One value of a result row. A text is SQLite's own, valid until the next step, or lies in `text`.
Cell ReadCell(sqlite3_stmt* statement, int index, const dialect::ResultColumn& column, bool from_source,
              std::string& text);

/// Fields by number; throws kItemNotFound.
void RequireField(const RowSet& set, int field);

/// The engine's order of two cells: Null first, texts by CompareText.
int CompareCells(const Cell& a, const Cell& b);

/// Whether a row meets a condition of Find or Filter. Throws kItemNotFound, kTypeMismatch.
class RowTest {
 public:
  RowTest(const dialect::RowCondition& condition, const RowSet& set);
  bool operator()(const Cell* row) const;

 private:
  struct Term {
    int field;
    std::string op;
    Value value;
  };
  static bool Meets(const Term& term, const Cell& cell);
  std::vector<std::vector<Term>> any_of_;
};

/// The data behind a recordset, or the error of using one that is closed.
template <typename Data>
Data& Opened(const std::shared_ptr<Data>& data) {
  if (data == nullptr) throw Error(kObjectClosed, "", "Setul de inregistrari este inchis");
  return *data;
}

}  // namespace store
