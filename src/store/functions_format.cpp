#include <fmt/format.h>

#include <cmath>
#include <tuple>

#include "platform/clock.h"
#include "platform/encoding.h"
#include "store/collation.h"
#include "store/functions.h"
#include "store/functions_call.h"
#include "store/value.h"

// FORMAT: the named formats and the pattern characters of numbers (0 # . , % E+), dates (d m y h n s q w) and
// texts (@ & < > !). Decimals are shown with a point, thousands with a comma, whatever the desktop.

namespace store::functions {

namespace {

/// A pattern taken apart at ";" outside quotes.
std::vector<std::string> Sections(std::string_view pattern) {
  std::vector<std::string> sections(1);
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    char c = pattern[i];
    if (c == '"') quoted = !quoted;
    if (c == '\\' && !quoted && i + 1 < pattern.size()) {
      sections.back() += c;
      sections.back() += pattern[++i];
    } else if (c == ';' && !quoted) {
      sections.emplace_back();
    } else {
      sections.back() += c;
    }
  }
  return sections;
}

std::string_view NamedNumber(std::string_view pattern) {
  static constexpr std::pair<std::string_view, std::string_view> kNames[] = {
      {"fixed", "0.00"},
      {"standard", "#,##0.00"},
      {"percent", "0.00%"},
      {"currency", "#,##0.00"},
      {"scientific", "0.00E+00"},
      {"yes/no", "\"Yes\";\"Yes\";\"No\""},
      {"true/false", "\"True\";\"True\";\"False\""},
      {"on/off", "\"On\";\"On\";\"Off\""},
  };
  for (auto& [name, meaning] : kNames) {
    if (platform::EqualsNoCase(pattern, name)) return meaning;
  }
  return pattern;
}

std::string_view NamedDate(std::string_view pattern) {
  static constexpr std::pair<std::string_view, std::string_view> kNames[] = {
      {"general date", "dd.mm.yyyy hh:nn:ss"},
      {"long date", "d mmmm yyyy"},
      {"medium date", "dd-mmm-yy"},
      {"short date", "dd.mm.yyyy"},
      {"long time", "hh:nn:ss"},
      {"medium time", "hh:nn AM/PM"},
      {"short time", "hh:nn"},
  };
  for (auto& [name, meaning] : kNames) {
    if (platform::EqualsNoCase(pattern, name)) return meaning;
  }
  return "";
}

/// What a number pattern asks for.
struct NumberPattern {
  int whole_digits = 0;     ///< zeros before the point
  int decimals = 0;         ///< places after it
  int fixed_decimals = 0;   ///< of these, zeros
  int exponent_digits = 0;  ///< 0: plain
  bool exponent_plus = false;
  bool grouped = false;
  double scale = 1;
  bool placeholders = false;
};

bool IsPlace(char c) { return c == '0' || c == '#'; }

/// Calls `visit(character, literal)` for each byte of a section, quotes and escapes resolved.
template <typename Visit>
void Walk(std::string_view section, Visit visit) {
  bool quoted = false;
  for (std::size_t i = 0; i < section.size(); ++i) {
    char c = section[i];
    if (c == '"') {
      quoted = !quoted;
    } else if (quoted) {
      visit(i, c, true);
    } else if (c == '\\' && i + 1 < section.size()) {
      ++i;
      visit(i, section[i], true);
    } else {
      visit(i, c, false);
    }
  }
}

NumberPattern Study(std::string_view section) {
  NumberPattern study;
  bool after_point = false, zero_seen = false;
  int commas = 0;
  bool exponent = false;
  Walk(section, [&](std::size_t i, char c, bool literal) {
    if (literal) return;
    if ((c == 'E' || c == 'e') && i + 2 < section.size() &&
        (section[i + 1] == '+' || section[i + 1] == '-') && IsPlace(section[i + 2])) {
      exponent = true;
      study.exponent_plus = section[i + 1] == '+';
    } else if (IsPlace(c) && exponent) {
      ++study.exponent_digits;
    } else if (IsPlace(c)) {
      study.placeholders = true;
      if (after_point) {
        ++study.decimals;
        if (c == '0') study.fixed_decimals = study.decimals;
      } else {
        if (commas > 0) study.grouped = true;
        commas = 0;
        zero_seen = zero_seen || c == '0';
        if (zero_seen) ++study.whole_digits;
      }
    } else if (c == '.') {
      after_point = true;
    } else if (c == ',' && !after_point) {
      ++commas;
    } else if (c == '%') {
      study.scale *= 100;
    }
  });
  for (; commas > 0; --commas) study.scale /= 1000;  // commas right before the point divide by thousands
  return study;
}

std::string Grouped(std::string digits) {
  for (auto at = static_cast<std::ptrdiff_t>(digits.size()) - 3; at > 0; at -= 3) {
    digits.insert(static_cast<std::size_t>(at), ",");
  }
  return digits;
}

/// Digits of a value of no sign: rounded half away from zero at the last place shown, from its 15 digits.
std::pair<std::string, std::string> Digits(double value, int decimals) {
  std::string shown = fmt::format("{:.15g}", value);
  std::string text;
  if (shown.find('e') == std::string::npos) {
    std::size_t point = shown.find('.');
    std::string whole = shown.substr(0, point),
                rest = point == std::string::npos ? "" : shown.substr(point + 1);
    auto places = static_cast<std::size_t>(decimals);
    bool up = rest.size() > places && rest[places] >= '5';
    rest.resize(places, '0');
    text = whole + rest;
    for (std::size_t i = text.size(); up && i-- > 0;) {
      up = text[i] == '9';
      text[i] = up ? '0' : static_cast<char>(text[i] + 1);
    }
    if (up) text.insert(0, "1");
    return {text.substr(0, text.size() - places), text.substr(text.size() - places)};
  }
  text = fmt::format("{:.{}f}", value, decimals);
  std::size_t point = text.find('.');
  return {text.substr(0, point), point == std::string::npos ? "" : text.substr(point + 1)};
}

std::string FormatSection(double value, std::string_view section) {
  NumberPattern study = Study(section);
  value *= study.scale;
  std::string exponent;
  if (study.exponent_digits > 0) {
    int power = value == 0 ? 0 : static_cast<int>(std::floor(std::log10(value)));
    double mantissa = value / std::pow(10.0, power);
    if (Digits(mantissa, study.decimals).first.size() > 1) {
      ++power;
      mantissa /= 10;
    }
    value = mantissa;
    exponent = std::string("E") +
               (power < 0             ? "-"
                : study.exponent_plus ? "+"
                                      : "") +
               fmt::format("{:0{}}", std::abs(power), study.exponent_digits);
  }
  std::string whole, decimals;
  std::tie(whole, decimals) = Digits(value, study.decimals);
  while (static_cast<int>(decimals.size()) > study.fixed_decimals && decimals.back() == '0')
    decimals.pop_back();
  if (whole == "0") whole.clear();
  if (static_cast<int>(whole.size()) < study.whole_digits) {
    whole.insert(0, static_cast<std::size_t>(study.whole_digits) - whole.size(), '0');
  }
  if (study.grouped) whole = Grouped(whole);
  std::string result;
  bool whole_done = false, decimals_done = false, in_exponent = false, after_point = false;
  Walk(section, [&](std::size_t i, char c, bool literal) {
    if (literal) {
      result += c;
    } else if ((c == 'E' || c == 'e') && study.exponent_digits > 0 && !in_exponent &&
               i + 1 < section.size() && (section[i + 1] == '+' || section[i + 1] == '-')) {
      in_exponent = true;
      result += exponent;
    } else if (in_exponent && (IsPlace(c) || c == '+' || c == '-')) {
      return;
    } else if (IsPlace(c)) {
      if (!after_point && !whole_done) {
        result += whole;
        whole_done = true;
      } else if (after_point && !decimals_done) {
        result += decimals;
        decimals_done = true;
      }
    } else if (c == '.' && !after_point) {
      if (!whole_done) result += whole;
      whole_done = after_point = true;
      result += '.';
    } else if (c != ',') {
      result += c;
    }
  });
  return result;
}

}  // namespace

bool IsDatePattern(std::string_view pattern) {
  if (!NamedDate(pattern).empty()) return true;
  if (NamedNumber(pattern) != pattern || platform::EqualsNoCase(pattern, "general number")) return false;
  bool date = false, number = false;
  Walk(pattern, [&](std::size_t, char c, bool literal) {
    if (literal) return;
    number = number || IsPlace(c) || c == '@' || c == '&' || c == '<' || c == '>';
    date = date || std::string_view("dmyhnsqwDMYHNSQW").find(c) != std::string_view::npos;
  });
  return date && !number;
}

std::string FormatNumber(double value, std::string_view pattern) {
  if (platform::EqualsNoCase(pattern, "general number")) return DoubleText(value);
  std::vector<std::string> sections = Sections(NamedNumber(pattern));
  if (value == 0 && sections.size() > 2 && !sections[2].empty()) return FormatSection(0, sections[2]);
  if (value < 0 && sections.size() > 1 && !sections[1].empty()) return FormatSection(-value, sections[1]);
  std::string text = FormatSection(std::abs(value), sections[0]);
  // A value that rounds to nothing loses its sign.
  bool negative = value < 0 && text.find_first_of("123456789") != std::string::npos;
  return negative ? "-" + text : text;
}

std::string FormatDate(double days, std::string_view pattern, int first_weekday, int first_week) {
  if (std::string_view named = NamedDate(pattern); !named.empty()) {
    if (platform::EqualsNoCase(pattern, "general date")) return DateText(Date{days});
    pattern = named;
  }
  platform::LocalTime t = platform::FromSerial(days);
  double january = platform::ToSerial({t.year, 1, 1, 0, 0, 0});
  double day = platform::ToSerial({t.year, t.month, t.day, 0, 0, 0});
  int from_sunday = static_cast<int>(((std::llround(day) + 6) % 7 + 7) % 7) + 1;
  bool half_day = false;
  for (std::size_t i = 0; i + 4 < pattern.size(); ++i) {
    half_day = half_day || platform::EqualsNoCase(pattern.substr(i, 5), "AM/PM");
  }
  std::string result;
  bool after_hour = false;
  for (std::size_t i = 0; i < pattern.size();) {
    char c = FoldCase(static_cast<unsigned char>(pattern[i])) < 128
                 ? static_cast<char>(FoldCase(static_cast<unsigned char>(pattern[i])))
                 : pattern[i];
    if (c == '"') {
      std::size_t close = pattern.find('"', i + 1);
      if (close == std::string_view::npos) close = pattern.size();
      result += pattern.substr(i + 1, close - i - 1);
      i = close + 1;
      continue;
    }
    if (c == '\\' && i + 1 < pattern.size()) {
      result += pattern[i + 1];
      i += 2;
      continue;
    }
    if (c == 'a' && platform::EqualsNoCase(pattern.substr(i, 5), "AM/PM")) {
      result += t.hour < 12 ? "AM" : "PM";
      i += 5;
      continue;
    }
    std::size_t run = 1;
    while (i + run < pattern.size() && (pattern[i + run] | 0x20) == (pattern[i] | 0x20) && c >= 'a') ++run;
    i += run;
    auto number = [&](int n) { result += fmt::format("{:0{}}", n, run >= 2 ? 2 : 1); };
    switch (c) {
      case 'd':
        if (run <= 2) {
          number(t.day);
        } else {
          result += run == 3 ? DayName(from_sunday).substr(0, 2) : DayName(from_sunday);
        }
        break;
      case 'm':
        if (after_hour && run <= 2) {  // right after the hours it means minutes
          number(t.minute);
        } else if (run <= 2) {
          number(t.month);
        } else {
          result += run == 3 ? MonthName(t.month).substr(0, 3) : MonthName(t.month);
        }
        break;
      case 'y':
        if (run == 1) {
          result += std::to_string(static_cast<int>(day - january) + 1);
        } else {
          result += run == 2 ? fmt::format("{:02}", t.year % 100) : fmt::format("{:04}", t.year);
        }
        break;
      case 'q':
        result += std::to_string((t.month - 1) / 3 + 1);
        break;
      case 'w':
        result += std::to_string(run == 1 ? (from_sunday - first_weekday + 7) % 7 + 1
                                          : WeekOfYear(days, first_weekday, first_week));
        break;
      case 'h':
        number(half_day ? (t.hour + 11) % 12 + 1 : t.hour);
        break;
      case 'n':
        number(t.minute);
        break;
      case 's':
        number(t.second);
        break;
      default:
        result.append(run, c >= 'a' ? pattern[i - 1] : c);
        break;
    }
    if (c >= 'a' && c <= 'z') after_hour = c == 'h';
  }
  return result;
}

std::string FormatText(std::string_view text, std::string_view pattern) {
  std::vector<std::string> sections = Sections(pattern);
  std::string_view section = text.empty() && sections.size() > 1 ? sections[1] : sections[0];
  std::string source(text);
  std::size_t places = 0;
  bool from_left = false;
  Walk(section, [&](std::size_t, char c, bool literal) {
    if (literal) return;
    if (c == '>') source = platform::ToUpper(text);
    if (c == '<') source = platform::ToLower(text);
    if (c == '!') from_left = true;
    if (c == '@' || c == '&') ++places;
  });
  if (places == 0 && section.find_first_of("<>!") == std::string_view::npos && !section.empty())
    return source;
  std::size_t length = platform::Utf8Length(source), place = 0, at = 0;
  std::string result;
  Walk(section, [&](std::size_t, char c, bool literal) {
    if (literal) {
      result += c;
    } else if (c == '@' || c == '&') {
      bool filled = from_left ? place < length : place + length >= places;
      if (filled && at < source.size()) {
        // Text longer than its places overflows at the first one.
        std::size_t take = place == 0 && length > places && !from_left ? length - places + 1 : 1;
        for (; take > 0; --take) {
          std::size_t begin = at;
          NextCodePoint(source, at);
          result += source.substr(begin, at - begin);
        }
      } else if (c == '@') {
        result += ' ';
      }
      ++place;
    } else if (c != '<' && c != '>' && c != '!') {
      result += c;
    }
  });
  return result + source.substr(at);
}

}  // namespace store::functions
