#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/table.h"

namespace platform::spreadsheet {

/// Fills a Table row by row, then gives its columns names and types.
class TableBuilder {
 public:
  std::vector<Column>& columns() { return table_.columns_; }
  std::size_t row_count() const { return table_.rows_.size(); }

  /// Puts a value into the row being filled; `column` counts from 0. Numbers, dates and booleans as CellEvent
  /// has them.
  void PutNumber(std::size_t column, CellKind source, double number, std::uint8_t zero_pad = 0);
  void PutText(std::size_t column, std::string_view text);
  void EndRow();
  void SetFirstRow(std::uint32_t row) { table_.first_row_ = row; }

  /// Drops the leading columns without a value, then makes columns as wide as the widest row.
  void FitColumns();
  /// Names the columns; `headings` may be shorter than the columns, which then are F and their number.
  void NameColumns(const std::vector<std::string>& headings);
  /// Takes the first row out of the table, as texts.
  std::vector<std::string> TakeHeadings();
  /// Types every column by its cells and converts those of another type.
  void TypeColumns(bool mixed_as_text);

  Table Take() { return std::move(table_); }

 private:
  Cell& Slot(std::size_t column);
  void SetText(Cell& cell, std::string_view text);
  void TypeColumn(std::size_t column, bool mixed_as_text);

  Table table_;
  std::vector<Cell> row_;  ///< being filled
  std::size_t cells_left_ = 0;
  Cell* next_cell_ = nullptr;
};

/// A heading as the dialect can name it, at most 64 characters, without blanks at its ends.
std::string FitHeading(std::string_view heading);

}  // namespace platform::spreadsheet
