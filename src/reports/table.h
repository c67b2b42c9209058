#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/definition.h"
#include "store/recordset.h"

namespace reports {

/// How a value reads, in the user's number marks.
using Formatter = std::function<std::string(const store::Value& value, Format format)>;

/// The rows that a report is made of.
class Table {
 public:
  struct Column {
    std::string field, caption;
    Format format = Format::kText;
    int number = 0;  ///< of the source, from 1, where the columns stand in another order; 0: as they stand
  };

  virtual ~Table() = default;

  const std::vector<Column>& columns() const { return columns_; }
  int ColumnOf(std::string_view field) const;  ///< without regard to case; "#1" the source's first; -1

  /// The first ones, which the user sees; any other can be named all the same.
  virtual int visible_columns() const { return static_cast<int>(columns_.size()); }
  virtual int rows() const = 0;
  virtual store::Value ValueAt(int row, int column) const = 0;
  /// A cell on one line, blanks drawn together.
  std::string TextAt(int row, int column, Format format, const Formatter& formatter) const;

 protected:
  /// A cell as its own screen shows it, which need not be the formatted value ("ACHIZITIE" for I).
  virtual std::string ShownAt(int row, int column, const Formatter& formatter) const;

  std::vector<Column> columns_;
};

/// The rows of a statement.
class RecordsetTable : public Table {
 public:
  explicit RecordsetTable(store::Recordset rows);
  int rows() const override { return static_cast<int>(rows_.record_count()); }
  store::Value ValueAt(int row, int column) const override;

 private:
  mutable store::Recordset rows_;
};

/// Rows held in memory.
class MemoryTable : public Table {
 public:
  MemoryTable(std::vector<Column> columns, std::vector<std::vector<store::Value>> rows);
  int rows() const override { return static_cast<int>(rows_.size()); }
  store::Value ValueAt(int row, int column) const override;

 private:
  std::vector<std::vector<store::Value>> rows_;
};

}  // namespace reports
