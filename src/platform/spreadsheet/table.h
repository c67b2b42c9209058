#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {

/// The type that the worksheet driver gives a whole column.
enum class ColumnKind : std::uint8_t { kNumber, kDate, kText, kBoolean };

/// One typed value of a column; 16 bytes, texts live in the table's arena.
struct Cell {
  enum class Kind : std::uint8_t { kNull, kNumber, kText };
  Kind kind = Kind::kNull;
  std::uint32_t length = 0;  ///< bytes of a text
  union {
    double number;
    const char* text;
  };
  Cell() : number(0) {}
  std::string_view AsText() const { return {text, length}; }
};

struct Column {
  std::string name;  ///< heading fitted for the dialect: "." is "#", "!" is "_", brackets are parentheses,
                     ///< line ends blanks
  ColumnKind kind = ColumnKind::kText;
  int size = 255;  ///< characters, for text
};

/// A source (worksheet or delimited file) read whole into typed columns: what the drivers show as a table.
///
/// With headings, the first row names the columns: a blank heading is F and its 1-based number, a repeated
/// one gets a number behind it. Trailing empty rows and columns do not count.
class Table {
 public:
  const std::vector<Column>& columns() const { return columns_; }
  std::size_t row_count() const { return row_count_; }
  const Cell& at(std::size_t row, std::size_t column) const { return cells_[row * columns_.size() + column]; }

 private:
  friend class TableBuilder;
  std::vector<Column> columns_;
  std::vector<Cell> cells_;
  std::size_t row_count_ = 0;
  std::vector<std::unique_ptr<char[]>> arena_;
};

struct SheetOptions {
  bool headings = true;  ///< HDR=YES
  bool mixed_as_text =
      true;  ///< IMEX=1; without it a mixed column takes the majority's type and the others read as Null
};

/// Reads one worksheet of a .xls file. `sheet` without the driver's "$". Throws SheetError.
Table ReadSheetTable(const std::string& host_path, std::string_view sheet, const SheetOptions& options);

/// Names of the worksheets of a file, in its order.
std::vector<std::string> SheetNames(const std::string& host_path);

/// Reads a delimited text file as its column description says (the section of the file's name in "Schema.ini"
/// beside it: ColNameHeader, Format = Delimited(x) | CSVDelimited | TabDelimited, DateTimeFormat,
/// DecimalSymbol, CharacterSet, Col1=name type [Width n] …). Without a section: comma, all text, columns F1,
/// F2 …; `headings` is the connection's HDR, overridden by ColNameHeader. A field that does not fit its
/// column's type reads as Null. Throws SheetError.
Table ReadTextTable(const std::string& host_path, bool headings);

}  // namespace platform::spreadsheet
