#include "platform/spreadsheet/text_value.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <string>

#include "platform/encoding.h"

namespace platform::spreadsheet {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsFormatLetter(char c) { return std::string_view("ymdhns").find(c) != std::string_view::npos; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

struct Parts {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;

  void Set(char letter, int value) {
    switch (letter) {
      case 'y':
        year = value;
        break;
      case 'm':
        month = value;
        break;
      case 'd':
        day = value;
        break;
      case 'h':
        hour = value;
        break;
      case 'n':
        minute = value;
        break;
      default:
        second = value;
    }
  }

  std::optional<double> Days() const {
    using namespace std::chrono;
    const year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                              std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    constexpr sys_days kEpoch = std::chrono::year{1899} / 12 / 30;
    return static_cast<double>((sys_days(date) - kEpoch).count()) +
           (hour * 3600 + minute * 60 + second) / 86400.0;
  }
};

// Reads `text` through `format`, moving both on; false where they part.
bool Match(std::string_view& text, std::string_view format, Parts& parts) {
  char before = '\0';
  while (!format.empty()) {
    char letter = Lower(format[0]);
    if (!IsFormatLetter(letter)) {
      if (text.empty() || text[0] != format[0]) return false;
      text.remove_prefix(1);
      format.remove_prefix(1);
      continue;
    }
    std::size_t run = 1;
    while (run < format.size() && Lower(format[run]) == letter) ++run;
    format.remove_prefix(run);
    // With no separator behind it a part has exactly the digits that the format shows.
    const bool joined = !format.empty() && IsFormatLetter(Lower(format[0]));
    const std::size_t most = letter == 'y' && run > 2 ? 4 : 2;
    const std::size_t wanted = joined ? run : most;
    std::size_t digits = 0;
    while (digits < wanted && digits < text.size() && IsDigit(text[digits])) ++digits;
    if (digits == 0 || ((joined || most == 4) && digits != wanted)) return false;
    int value = 0;
    std::from_chars(text.data(), text.data() + digits, value);
    text.remove_prefix(digits);
    if (letter == 'm' && before == 'h') letter = 'n';
    if (letter == 'y' && most == 2) value += value < 30 ? 2000 : 1900;  // the window of Windows
    parts.Set(letter, value);
    before = letter;
  }
  return true;
}

}  // namespace

std::optional<double> ParseDate(std::string_view text, std::string_view format) {
  text = Trim(text);
  Parts parts;
  if (!Match(text, format, parts)) return std::nullopt;
  if (!text.empty()) {
    if (text[0] != ' ' && text[0] != 'T') return std::nullopt;
    text.remove_prefix(1);
    const auto colons = std::count(text.begin(), text.end(), ':');
    if (!Match(text, colons == 2 ? "h:n:s" : "h:n", parts) || !text.empty()) return std::nullopt;
  }
  return parts.Days();
}

std::optional<double> ParseNumber(std::string_view text, char decimal) {
  text = Trim(text);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  if (text.empty() || !(IsDigit(text[0]) || text[0] == '-' || text[0] == decimal)) return std::nullopt;
  std::string plain(text);
  if (decimal != '.') {
    if (plain.find('.') != std::string::npos) return std::nullopt;
    std::replace(plain.begin(), plain.end(), decimal, '.');
  }
  double value = 0;
  const auto end = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (end.ec != std::errc() || end.ptr != plain.data() + plain.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace platform::spreadsheet
