#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/error.h"
#include "store/value.h"

namespace store {

class Connection;

struct FieldInfo {
  std::string name;
  ColumnType type = ColumnType::kText;
  int size = 0;
  std::string base_column;  ///< column of the base table; empty for computed fields
  bool typed = true;        ///< false: each row's value has its own type (mixed IIF arms)
};

/// A static, client-side set of rows with a current row, as ADO callers use it. Movable; copies share their
/// rows.
///
/// Fields are reached by position (from 0) or by name without regard to case; a missing one throws
/// Error(kItemNotFound), a missing current row Error(kEndOfRecordset). Rows live in one compact block (16
/// bytes a cell and the texts). A copy has a current row, filter and order of its own. Moving away from a row
/// with pending changes saves them, as ADO does.
class Recordset {
 public:
  Recordset();
  ~Recordset();
  Recordset(const Recordset&);
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(const Recordset&);
  Recordset& operator=(Recordset&&) noexcept;

  int field_count() const;
  const FieldInfo& field(int index) const;
  int FieldIndex(std::string_view name) const;  ///< throws kItemNotFound
  int FindField(std::string_view name) const;   ///< -1 where there is none

  std::int64_t record_count() const;  ///< rows that pass the filter
  bool eof() const;
  bool bof() const;
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  /// Row position from 0 among the rows shown.
  std::int64_t position() const;
  void set_position(std::int64_t row);

  Value Get(int field) const;
  Value Get(std::string_view name) const { return Get(FieldIndex(name)); }
  Value operator[](std::string_view name) const { return Get(name); }
  Value operator[](int field) const { return Get(field); }
  /// Text of the current row's field without a copy; empty for Null. Valid until the row changes; texts only.
  std::string_view TextView(int field) const;
  bool IsNull(int field) const;

  /// Begins a new row; its fields are the column defaults or Null until Set. It is saved by Update.
  void AddNew();
  /// Changes a field of the current (or new) row. Nothing is stored before Update. The value is converted to
  /// the column's type at once: throws Error(kConversion) or Error(kTooLong) naming the column and leaves the
  /// field as it was.
  void Set(int field, const Value& value);
  void Set(std::string_view name, const Value& value) { Set(FieldIndex(name), value); }
  /// Sets a field from the current row of another recordset, as Set with its value would.
  void SetFrom(int field, const Recordset& from, int from_field);
  /// Every row begun by AddNew from now on has this value set. Throws as Set does.
  void SetForNewRows(int field, const Value& value);
  /// Stores the changed fields (one INSERT or UPDATE of just these columns); nothing changed, nothing done.
  /// After an insert the new row is current and its counter readable. On failure throws; the pending values
  /// stay until CancelUpdate.
  void Update();
  void CancelUpdate();
  bool pending() const;
  void Delete();  ///< the current row; the next one becomes current

  /// First row from `start` (default: the current one) whose one column meets "[col] op value"; both "*" and
  /// "%" are wildcards. Moves there and answers true, or to EOF.
  bool Find(std::string_view criterion, std::int64_t start = -1);
  /// Shows only rows that meet the criterion ("" shows all); moves to the first.
  void SetFilter(std::string_view criterion);
  /// "[Col] DESC, Col2" in memory, with the engine's text order; stable; "" restores the query's order.
  void SetSort(std::string_view columns);

  /// Child rows of a shaped recordset's chapter field (by its alias) for the current row.
  Recordset Child(std::string_view alias) const;

  struct Data;  // engine internals

 private:
  friend class Connection;
  friend struct RecordsetFactory;
  explicit Recordset(std::shared_ptr<Data> data);
  std::shared_ptr<Data> data_;
};

}  // namespace store
