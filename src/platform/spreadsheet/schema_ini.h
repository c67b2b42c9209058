#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::spreadsheet {

/// How a delimited file is laid out: one section of a "Schema.ini", the text driver's column description.
struct TextLayout {
  enum class Type { kText, kMemo, kBit, kByte, kShort, kLong, kSingle, kDouble, kDateTime };
  struct Field {
    std::string name;  ///< empty: named by the heading, or F and its number
    Type type = Type::kText;
    int width = 255;  ///< characters, for text
  };
  std::optional<bool> headings;  ///< ColNameHeader
  char delimiter = ',';
  char quote = '"';  ///< TextDelimiter; 0 for none
  char decimal = '.';
  std::string date_format;  ///< empty: yyyy-mm-dd or dd.mm.yyyy
  int code_page = 1252;
  std::vector<Field> fields;
};

/// The section of `file_name` (without regard to case) in the description's text; without one, what holds for
/// a file that has none. Throws SheetError naming the line that makes no sense.
TextLayout ParseSchemaIni(std::string_view ini, std::string_view file_name);

}  // namespace platform::spreadsheet
