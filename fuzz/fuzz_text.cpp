// A column description, a line with "====", then the delimited text it describes.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/spreadsheet/text_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace platform::spreadsheet;
  const std::string input(data, data + size);
  constexpr std::string_view kMark = "====\n";
  const std::size_t mark = input.find(kMark);
  const std::string ini = mark == std::string::npos ? std::string() : input.substr(0, mark);
  const std::string text = mark == std::string::npos ? input : input.substr(mark + kMark.size());
  try {
    const Table table = ParseTextTable(text, ParseSchemaIni("[a.txt]\n" + ini, "a.txt"), size % 2 == 0);
    if (table.columns().empty()) std::abort();
    volatile unsigned sum = 0;
    for (std::size_t row = 0; row < table.row_count(); ++row) {
      for (std::size_t column = 0; column < table.columns().size(); ++column) {
        const Cell& cell = table.at(row, column);
        if (cell.kind != Cell::Kind::kText) continue;
        for (const char c : cell.AsText()) sum = sum + static_cast<unsigned char>(c);
      }
    }
  } catch (const SheetError&) {
  }
  return 0;
}
