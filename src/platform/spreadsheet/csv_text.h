#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace platform::spreadsheet {

/// Bytes of a text file as UTF-8: by its byte order mark, by the zeros of UTF-16, as UTF-8 where nearly all
/// of it is that (a stray byte becomes U+FFFD), else as windows-1250. Throws SheetError for what is no text.
std::string DecodeCsv(std::string content);

enum class CsvQuotes : std::uint8_t {
  kNone,
  kNeedless,  ///< the content would read the same without
  kNeeded,
};

/// Delimited text cut into rows of fields. Quoted fields may hold delimiters, line ends and doubled quotes.
struct CsvRows {
  std::vector<std::string_view> fields;  ///< parts of the text or of `unquoted`
  std::vector<CsvQuotes> quotes;         ///< by field
  std::vector<std::size_t> row_ends;
  std::deque<std::string> unquoted;
  bool open_quote = false;   ///< the last field's quote is not closed
  std::size_t open_row = 0;  ///< the row where it opens, from 1

  std::size_t row_begin(std::size_t row) const { return row == 0 ? 0 : row_ends[row - 1]; }
};
CsvRows CutCsv(std::string_view text, char delimiter, std::size_t most_rows = std::string_view::npos);

/// The delimiter that cuts the first rows into most fields, and most evenly.
char DetectDelimiter(std::string_view text);

}  // namespace platform::spreadsheet
