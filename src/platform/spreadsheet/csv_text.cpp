#include "platform/spreadsheet/csv_text.h"

#include <algorithm>
#include <map>

#include "platform/encoding.h"
#include "platform/spreadsheet/cell_value.h"

namespace platform::spreadsheet {
namespace {

constexpr int kUtf16 = 1200, kUtf8 = 65001, kWindows1250 = 1250;
constexpr std::size_t kSample = 4096;

void SwapBytes(std::string& text) {
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) std::swap(text[i], text[i + 1]);
}

// Whether text without a mark is UTF-16: ASCII characters, all delimiters among them, then have a zero byte.
enum class Utf16 { kNo, kLittle, kBig };
Utf16 GuessUtf16(std::string_view text) {
  text = text.substr(0, kSample);
  std::size_t zeros[2] = {0, 0};
  for (std::size_t i = 0; i < text.size(); ++i) zeros[i % 2] += text[i] == '\0' ? 1u : 0u;
  const std::size_t half = text.size() / 2;
  if (zeros[1] * 2 > half && zeros[0] == 0) return Utf16::kLittle;
  if (zeros[0] * 2 > half && zeros[1] == 0) return Utf16::kBig;
  return Utf16::kNo;
}

// Sequences of more than one byte that are UTF-8 and bytes that are none.
bool IsMostlyUtf8(std::string_view text) {
  std::size_t good = 0, bad = 0;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    const bool valid = length == 1 || (length > 1 && IsValidUtf8(text.substr(i, length)));
    if (length != 1) ++(valid ? good : bad);
    i += valid ? length : 1;
  }
  return bad == 0 || good > 10 * bad;
}

}  // namespace

std::string DecodeCsv(std::string content) {
  int code_page = kUtf8;
  if (content.starts_with("\xEF\xBB\xBF")) {
    content.erase(0, 3);
  } else if (content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF")) {
    if (content[0] == '\xFE') SwapBytes(content);
    content.erase(0, 2);
    code_page = kUtf16;
  } else if (const Utf16 guess = GuessUtf16(content); guess != Utf16::kNo) {
    if (guess == Utf16::kBig) SwapBytes(content);
    code_page = kUtf16;
  } else if (!IsMostlyUtf8(content)) {
    code_page = kWindows1250;
  }
  std::string text = FromCodePage(content, code_page);
  if (!text.empty() && text.back() == '\x1A') text.pop_back();  // DOS end of file
  if (text.find('\0') != std::string::npos) {
    throw SheetError(SheetError::Reason::kNotAWorksheet,
                     "nu este un text delimitat: contine octeti care nu sunt text");
  }
  return text;
}

CsvRows CutCsv(std::string_view text, char delimiter, std::size_t most_rows) {
  CsvRows rows;
  const char ends[] = {delimiter, '\n', '\r'};
  const std::string_view field_ends(ends, std::size(ends));
  std::size_t at = 0;
  while (at < text.size() && rows.row_ends.size() < most_rows) {
    for (;;) {
      std::string_view field;
      CsvQuotes quotes = CsvQuotes::kNone;
      if (at < text.size() && text[at] == '"') {
        const std::size_t open = ++at;
        bool doubled = false;
        for (; at < text.size(); ++at) {
          if (text[at] != '"') continue;
          if (at + 1 >= text.size() || text[at + 1] != '"') break;
          doubled = true;
          ++at;
        }
        field = text.substr(open, at - open);
        if (at >= text.size()) {
          rows.open_quote = true;
          rows.open_row = rows.row_ends.size() + 1;
        }
        const bool needed = doubled || field.find_first_of(field_ends) != std::string_view::npos;
        quotes = needed ? CsvQuotes::kNeeded : CsvQuotes::kNeedless;
        at = std::min(at + 1, text.size());
        const std::size_t end = std::min(text.find_first_of(field_ends, at), text.size());
        if (doubled || end > at) {
          std::string& whole = rows.unquoted.emplace_back(ReplaceAll(field, "\"\"", "\""));
          whole += text.substr(at, end - at);
          field = whole;
          at = end;
        }
      } else {
        const std::size_t end = std::min(text.find_first_of(field_ends, at), text.size());
        field = text.substr(at, end - at);
        at = end;
      }
      if (rows.fields.size() >= kMostCells) TooManyCells();
      rows.fields.push_back(field);
      rows.quotes.push_back(quotes);
      if (at >= text.size() || text[at] != delimiter) break;
      ++at;
    }
    if (at < text.size()) at += text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n' ? 2 : 1;
    rows.row_ends.push_back(rows.fields.size());
  }
  return rows;
}

char DetectDelimiter(std::string_view text) {
  constexpr std::size_t kRows = 50;
  char best = ';';
  std::size_t best_score = 0;
  for (const char delimiter : {';', '\t', ',', '|'}) {
    const CsvRows rows = CutCsv(text, delimiter, kRows);
    std::map<std::size_t, std::size_t> widths;
    for (std::size_t row = 0; row < rows.row_ends.size(); ++row) {
      const std::size_t width = rows.row_ends[row] - rows.row_begin(row);
      if (width > 1) ++widths[width];
    }
    std::size_t score = 0;
    for (const auto& [width, count] : widths) score = std::max(score, count * count * (width - 1));
    if (score > best_score) {
      best_score = score;
      best = delimiter;
    }
  }
  return best;
}

}  // namespace platform::spreadsheet
