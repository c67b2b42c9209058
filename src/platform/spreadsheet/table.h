#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/sheet.h"
#include "platform/spreadsheet/text_arena.h"

namespace platform::spreadsheet {

/// The type that the worksheet driver gives a whole column.
enum class ColumnKind : std::uint8_t { kNumber, kDate, kText, kBoolean };

/// One typed value of a column; 16 bytes, texts live in the table's arena. Dates are days since 1899-12-30,
/// booleans -1 and 0.
struct Cell {
  enum class Kind : std::uint8_t { kNull, kNumber, kText };
  Kind kind = Kind::kNull;
  CellKind source = CellKind::kEmpty;  ///< what the worksheet had, before its column's type was known
  std::uint8_t zero_pad = 0;           ///< digits of the cell's own zero-padding format, else 0
  std::uint32_t length = 0;            ///< bytes of a text
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
  int size = 255;  ///< characters, for text; 0 for a memo, a column with a text of more than 255
  /// Digits to which a number of this column is padded when it becomes text, as NumberToText does: the widest
  /// of the cells' zero-padding formats where all of them have one, else 0.
  std::uint8_t zero_pad = 0;
};

/// A source (worksheet or delimited file) read whole into typed columns: what the drivers show as a table.
///
/// With headings, the first row names the columns: a blank heading is F and its 1-based number, a repeated
/// one gets a number behind it. A worksheet's table is its used range within the first 256 columns: it starts
/// at the first row and the first column that hold a value and ends at the last ones. There is always at
/// least one column.
class Table {
 public:
  const std::vector<Column>& columns() const { return columns_; }
  std::size_t row_count() const { return rows_.size(); }
  /// Worksheet row, from 1, in which the table begins: its headings where it has some.
  std::uint32_t first_row() const { return first_row_; }
  const Cell& at(std::size_t row, std::size_t column) const {
    const Row& cells = rows_[row];
    return column < cells.width ? cells.first[column] : null_;
  }

 private:
  friend class TableBuilder;
  struct Row {
    Cell* first = nullptr;
    std::size_t width = 0;  ///< cells up to the row's last value; those behind are Null
  };
  std::vector<Column> columns_;
  std::vector<Row> rows_;
  std::uint32_t first_row_ = 1;
  std::vector<std::unique_ptr<Cell[]>> cells_;
  TextArena texts_;
  Cell null_;
};

struct SheetOptions {
  bool headings = true;  ///< HDR=YES
  /// IMEX=1: a column of mixed kinds is text. Without it, such a column takes the type of the majority (of
  /// equals the first of number, date, text, boolean) and the other values read as Null.
  bool mixed_as_text = true;
};

/// Reads one worksheet. `sheet` without the driver's "$"; a name as the dialect writes it ("."
/// as "#") finds its sheet too. Cells with an error and empty texts (of formulas) are Null and no say in the
/// column's type. Throws SheetError.
Table ReadSheetTable(Workbook& book, std::string_view sheet, const SheetOptions& options);
Table ReadSheetTable(const std::string& host_path, std::string_view sheet, const SheetOptions& options);

/// Reads a delimited text file as its column description says (the section of the file's name in "Schema.ini"
/// beside it: ColNameHeader, Format = Delimited(x) | CSVDelimited | TabDelimited, DateTimeFormat,
/// DecimalSymbol, CharacterSet, Col1=name type [Width n] …). Without a section: comma, all text, columns F1,
/// F2 …; `headings` is the connection's HDR, overridden by ColNameHeader. A field that does not fit its
/// column's type reads as Null. Throws SheetError.
Table ReadTextTable(const std::string& host_path, bool headings);

/// How a number, a date or a boolean of a worksheet reads where its column is text: a number with up to 15
/// digits, as short as its value allows and padded with zeros to `zero_pad` digits if it is whole; a date as
/// dd.mm.yyyy, with hh:mm:ss behind it or alone where there is a time; a boolean as TRUE or FALSE.
std::string NumberToText(double number, std::uint8_t zero_pad);
std::string DateToText(double days);

}  // namespace platform::spreadsheet
