#include "platform/spreadsheet/number_format.h"

#include <algorithm>

#include "platform/encoding.h"

namespace platform::spreadsheet {
namespace {

using Kind = NumberFormat::Kind;

// What the sections seen so far hold outside quotes, brackets and escapes.
struct Tokens {
  bool day_or_year = false;
  bool hour_or_second = false;
  bool month_or_minute = false;
  bool elapsed = false;
  bool digits = false;  // a digit place before any date letter
  bool other = false;
  int zeros = 0;

  bool Dated() const { return !digits && (day_or_year || hour_or_second || month_or_minute || elapsed); }
};

bool IsElapsed(std::string_view bracketed) {
  if (bracketed.empty()) return false;
  const char first = static_cast<char>(bracketed[0] | 0x20);
  return (first == 'h' || first == 'm' || first == 's') &&
         std::all_of(bracketed.begin(), bracketed.end(), [&](char c) { return (c | 0x20) == first; });
}

// Length of a word at the head of the text that has date letters in it and is none.
std::size_t WordLength(std::string_view text) {
  for (const std::string_view word : {"general", "standard", "am/pm"}) {
    if (EqualsNoCase(text.substr(0, word.size()), word)) return word.size();
  }
  return 0;
}

void TakeLetter(char letter, Tokens& tokens) {
  switch (letter) {
    case 'y':
    case 'Y':
    case 'd':
    case 'D':
      tokens.day_or_year = true;
      break;
    case 'h':
    case 'H':
    case 's':
    case 'S':
      tokens.hour_or_second = true;
      break;
    case 'm':
    case 'M':
      tokens.month_or_minute = true;
      break;
    case '0':
      ++tokens.zeros;
      [[fallthrough]];
    case '#':
    case '?':
      if (!tokens.Dated()) tokens.digits = true;
      if (letter != '0') tokens.other = true;
      break;
    default:
      tokens.other = true;
  }
}

Tokens ScanSection(std::string_view section) {
  Tokens tokens;
  for (std::size_t i = 0; i < section.size(); ++i) {
    const char c = section[i];
    if (c == '"') {
      i = std::min(section.find('"', i + 1), section.size());
      tokens.other = true;
    } else if (c == '[') {
      const std::size_t close = std::min(section.find(']', i), section.size());
      tokens.elapsed = tokens.elapsed || IsElapsed(section.substr(i + 1, close - i - 1));
      i = close;
    } else if (c == '\\' || c == '_' || c == '*') {
      ++i;
      tokens.other = true;
    } else if (const std::size_t word = WordLength(section.substr(i))) {
      i += word - 1;
      tokens.other = true;
    } else {
      TakeLetter(c, tokens);
    }
  }
  return tokens;
}

// The end of the section that starts at `from`; a semicolon inside quotes or behind \ ends none.
std::size_t SectionEnd(std::string_view format, std::size_t from) {
  bool quoted = false;
  for (std::size_t i = from; i < format.size(); ++i) {
    if (format[i] == '"') quoted = !quoted;
    if (quoted) continue;
    if (format[i] == '\\') {
      ++i;
    } else if (format[i] == ';') {
      return i;
    }
  }
  return format.size();
}

}  // namespace

NumberFormat ClassifyNumberFormat(std::string_view format) {
  NumberFormat result;
  for (std::size_t from = 0; from <= format.size();) {
    const std::size_t end = SectionEnd(format, from);
    const Tokens tokens = ScanSection(format.substr(from, end - from));
    if (from == 0 && tokens.zeros > 1 && !tokens.other && !tokens.Dated()) {
      result.zero_pad = static_cast<std::uint8_t>(std::min(tokens.zeros, 255));
    }
    if (tokens.Dated()) {
      result.zero_pad = 0;
      if (tokens.day_or_year || (tokens.month_or_minute && !tokens.hour_or_second && !tokens.elapsed)) {
        result.kind = Kind::kDate;
      } else {
        result.kind = tokens.elapsed ? Kind::kElapsed : Kind::kTime;
      }
      return result;
    }
    from = end + 1;
  }
  return result;
}

NumberFormat BuiltInNumberFormat(std::uint16_t index) {
  NumberFormat result;
  if (index == 46) {
    result.kind = Kind::kElapsed;
  } else if ((index >= 18 && index <= 21) || index == 45 || index == 47) {
    result.kind = Kind::kTime;
  } else if ((index >= 14 && index <= 17) || index == 22 || (index >= 27 && index <= 36) ||
             (index >= 50 && index <= 58)) {
    result.kind = Kind::kDate;
  }
  return result;
}

}  // namespace platform::spreadsheet
