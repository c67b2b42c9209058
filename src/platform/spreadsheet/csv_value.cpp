#include "platform/spreadsheet/csv_value.h"

#include <charconv>
#include <cmath>
#include <string>

#include "platform/encoding.h"
#include "platform/spreadsheet/text_value.h"

namespace platform::spreadsheet {
namespace {

constexpr std::size_t kMostDigits = 15;
constexpr std::size_t kLongestNumber = 40;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A sign between groups of digits: the one that is not the decimal sign, or a plain, no-break or narrow
// blank.
std::size_t GroupSign(std::string_view text, char decimal) {
  if (text.starts_with(decimal == ',' ? '.' : ',') || text.starts_with(' ')) return 1;
  if (text.starts_with("\xC2\xA0")) return 2;
  if (text.starts_with("\xE2\x80\xAF")) return 3;
  return 0;
}

// Digits of the whole part with their groups, without the signs between; false where they are not threes.
bool TakeWhole(std::string_view& text, char decimal, std::string& plain) {
  std::size_t run = 0;
  bool grouped = false;
  std::string_view sign;
  while (!text.empty()) {
    if (IsDigit(text[0])) {
      plain += text[0];
      text.remove_prefix(1);
      ++run;
      continue;
    }
    const std::size_t length = GroupSign(text, decimal);
    if (length == 0) break;
    const std::string_view here = text.substr(0, length);
    if (run == 0 || run > 3 || (grouped && (run != 3 || here != sign))) return false;
    sign = here;
    grouped = true;
    run = 0;
    text.remove_prefix(length);
  }
  return !grouped || run == 3;
}

}  // namespace

std::optional<double> ParseCsvNumber(std::string_view text, char decimal) {
  text = Trim(text);
  if (text.empty() || text.size() > kLongestNumber) return std::nullopt;
  std::string plain;
  if (text[0] == '-') {
    plain = "-";
    text.remove_prefix(1);
  }
  const std::size_t sign = plain.size();
  if (text.empty() || !(IsDigit(text[0]) || text[0] == decimal)) return std::nullopt;
  if (!TakeWhole(text, decimal, plain)) return std::nullopt;
  if (plain.size() - sign > 1 && plain[sign] == '0') return std::nullopt;
  if (plain.size() == sign) plain += '0';
  std::size_t digits = plain.size() - sign;
  if (!text.empty() && text[0] == decimal) {
    plain += '.';
    text.remove_prefix(1);
    const std::size_t before = digits;
    for (; !text.empty() && IsDigit(text[0]); text.remove_prefix(1), ++digits) plain += text[0];
    if (digits == before) return std::nullopt;
  }
  // An exponent only with its sign, as programs write it: 12E4 is somebody's code.
  if (text.size() > 2 && (text[0] | 0x20) == 'e' && (text[1] == '+' || text[1] == '-')) {
    plain += 'e';
    plain += text.substr(1);
    if (plain[plain.size() - text.size() + 1] == '+') plain.erase(plain.size() - text.size() + 1, 1);
    text = {};
  }
  if (!text.empty() || digits > kMostDigits + (plain[sign] == '0' ? 1u : 0u)) return std::nullopt;
  double value = 0;
  const auto end = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (end.ec != std::errc() || end.ptr != plain.data() + plain.size()) return std::nullopt;
  return value;
}

std::optional<double> ParseCsvDate(std::string_view text, bool month_first) {
  text = Trim(text);
  if (text.size() < 6 || text.size() > 24 || !IsDigit(text[0])) return std::nullopt;
  const std::size_t separator = text.find_first_not_of("0123456789");
  if (separator == std::string_view::npos) return std::nullopt;
  if (separator == 4) return ParseDate(text.substr(0, text.find('.')), "yyyy-mm-dd");
  switch (text[separator]) {
    case '.':
      if (const auto days = ParseDate(text, "d.m.yyyy")) return days;
      return ParseDate(text, "d.m.yy");
    case '/':
      return ParseDate(text, month_first ? "m/d/yyyy" : "d/m/yyyy");
    case '-':
      return ParseDate(text, "d-m-yyyy");
    default:
      return std::nullopt;
  }
}

}  // namespace platform::spreadsheet
