#include "store/value.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/clock.h"
#include "platform/encoding.h"
#include "store/functions.h"

namespace store {

namespace {

std::string_view TrimSpaces(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Reads digits at the front; -1 where there is none or they are too many.
int TakeInt(std::string_view& text, std::size_t* digits = nullptr) {
  std::size_t n = 0;
  int value = 0;
  while (n < text.size() && IsDigit(text[n])) {
    if (n == 6) return -1;
    value = value * 10 + (text[n] - '0');
    ++n;
  }
  if (n == 0) return -1;
  if (digits != nullptr) *digits = n;
  text.remove_prefix(n);
  return value;
}

int FullYear(int year, std::size_t digits) {
  if (digits > 2) return year;
  return year < 50 ? 2000 + year : 1900 + year;
}

/// "hh:mm[:ss][ AM|PM]" as a fraction of a day.
std::optional<double> ParseTime(std::string_view text) {
  int hour = TakeInt(text);
  int minute = 0, second = 0;
  bool colon = false;
  if (!text.empty() && text.front() == ':') {
    colon = true;
    text.remove_prefix(1);
    minute = TakeInt(text);
    if (!text.empty() && text.front() == ':') {
      text.remove_prefix(1);
      second = TakeInt(text);
    }
  }
  text = TrimSpaces(text);
  bool am = platform::EqualsNoCase(text, "AM"), pm = platform::EqualsNoCase(text, "PM");
  if (!text.empty() && !am && !pm) return std::nullopt;
  if (!colon && !am && !pm) return std::nullopt;
  if (am || pm) {
    if (hour < 1 || hour > 12) return std::nullopt;
    hour = hour % 12 + (pm ? 12 : 0);
  }
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return std::nullopt;
  return (hour * 3600 + minute * 60 + second) / 86400.0;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  text = TrimSpaces(text);
  bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return std::nullopt;
  double value = 0;
  auto [stop, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failure != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  return negative ? -value : value;
}

std::optional<Date> ParseDate(std::string_view text) {
  text = TrimSpaces(text);
  if (auto time = ParseTime(text)) return Date{*time};
  std::size_t first_digits = 0, last_digits = 0;
  int first = TakeInt(text, &first_digits);
  if (first < 0 || text.empty()) return std::nullopt;
  char separator = text.front();
  if (separator != '.' && separator != '/' && separator != '-') return std::nullopt;
  text.remove_prefix(1);
  int second = TakeInt(text);
  if (second < 0 || text.empty() || text.front() != separator) return std::nullopt;
  text.remove_prefix(1);
  int third = TakeInt(text, &last_digits);
  if (third < 0 || last_digits > 4) return std::nullopt;
  int year, month = second, day;
  if (first_digits >= 3) {
    year = first;
    day = third;
  } else {
    year = FullYear(third, last_digits);
    day = first;
    if (!platform::IsValidDate(year, month, day)) std::swap(day, month);
  }
  if (year < 100 || year > 9999 || !platform::IsValidDate(year, month, day)) return std::nullopt;
  double days = platform::ToSerial({year, month, day, 0, 0, 0});
  if (text.empty()) return Date{days};
  if (text.front() != ' ' && text.front() != 'T') return std::nullopt;
  text.remove_prefix(1);
  auto time = ParseTime(TrimSpaces(text));
  if (!time) return std::nullopt;
  return Date{days < 0 ? days - *time : days + *time};
}

std::string DateText(Date date) {
  platform::LocalTime t = platform::FromSerial(date.days);
  bool has_time = t.hour != 0 || t.minute != 0 || t.second != 0;
  std::string time = fmt::format("{:02}:{:02}:{:02}", t.hour, t.minute, t.second);
  if (has_time && std::abs(date.days) < 1) return time;
  std::string day = fmt::format("{:02}.{:02}.{:04}", t.day, t.month, t.year);
  return has_time ? day + " " + time : day;
}

std::string DoubleText(double value) {
  if (value == 0) return "0";
  std::string text = fmt::format("{:.14e}", value);
  std::size_t e = text.find('e');
  if (e == std::string::npos) return text;  // infinities
  int exponent = std::stoi(text.substr(e + 1));
  std::string digits = text.substr(0, e);
  bool negative = digits[0] == '-';
  if (negative) digits.erase(0, 1);
  if (digits.size() > 1) digits.erase(1, 1);  // the point
  digits.erase(digits.find_last_not_of('0') + 1);
  int count = static_cast<int>(digits.size());
  std::string result;
  if (exponent >= 15 || exponent < -9) {
    result = digits.substr(0, 1);
    if (count > 1) result += "." + digits.substr(1);
    result += fmt::format("E{}{:02}", exponent < 0 ? '-' : '+', std::abs(exponent));
  } else if (exponent < 0) {
    result = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  } else if (count <= exponent + 1) {
    result = digits + std::string(static_cast<std::size_t>(exponent + 1 - count), '0');
  } else {
    std::size_t whole = static_cast<std::size_t>(exponent) + 1;
    result = digits.substr(0, whole) + "." + digits.substr(whole);
  }
  return negative ? "-" + result : result;
}

std::string Value::ToText() const {
  struct Visitor {
    std::string operator()(Null) const { return ""; }
    std::string operator()(bool b) const { return b ? "-1" : "0"; }
    std::string operator()(std::int64_t i) const { return std::to_string(i); }
    std::string operator()(double d) const { return DoubleText(d); }
    std::string operator()(Date d) const { return DateText(d); }
    std::string operator()(const std::string& s) const { return s; }
  };
  return std::visit(Visitor{}, v_);
}

double Value::ToDouble(double otherwise) const {
  if (auto* b = std::get_if<bool>(&v_)) return *b ? -1 : 0;
  if (auto* i = std::get_if<std::int64_t>(&v_)) return static_cast<double>(*i);
  if (auto* d = std::get_if<double>(&v_)) return *d;
  if (auto* date = std::get_if<Date>(&v_)) return date->days;
  if (auto* s = std::get_if<std::string>(&v_)) return ParseNumber(*s).value_or(otherwise);
  return otherwise;
}

std::int64_t Value::ToInteger(std::int64_t otherwise) const {
  if (auto* i = std::get_if<std::int64_t>(&v_)) return *i;
  double number = ToDouble(std::numeric_limits<double>::quiet_NaN());
  if (std::isnan(number)) return otherwise;
  number = RoundHalfEven(number, 0);
  // 2^63 itself does not fit; both bounds are exact doubles.
  if (number < -9223372036854775808.0 || number >= 9223372036854775808.0) return otherwise;
  return static_cast<std::int64_t>(number);
}

bool Value::ToBoolean() const {
  if (auto* s = std::get_if<std::string>(&v_)) {
    if (platform::EqualsNoCase(*s, "true")) return true;
    return ParseNumber(*s).value_or(0) != 0;
  }
  return ToDouble() != 0;
}

Date Value::ToDate() const {
  if (auto* date = std::get_if<Date>(&v_)) return *date;
  if (auto* s = std::get_if<std::string>(&v_)) return ParseDate(*s).value_or(Date{});
  return Date{ToDouble()};
}

bool IsEmpty(const Value& value) {
  return value.is_null() || (value.is_text() && IsEmpty(std::string_view(value.text())));
}

std::string TextOr(const Value& value, std::string_view otherwise) {
  return IsEmpty(value) ? std::string(otherwise) : value.ToText();
}

double NumberOr(const Value& value, double otherwise) {
  double number = IsEmpty(value) ? 0 : value.ToDouble();
  return number == 0 ? otherwise : number;
}

std::string NumberText(double value) {
  // The dialect's numbers have no leading sign of their own, and an exponent is read only after a digit.
  double size = std::abs(value);
  std::string text =
      size != 0 && (size < 1e-15 || size >= 1e21) ? fmt::format("{:e}", value) : fmt::format("{}", value);
  std::size_t e = text.find('e');
  if (e != std::string::npos && size >= 1e-15 && size < 1e21) {
    // Small and large numbers of few digits: written out, exactly as the shortest digits say.
    int exponent = std::stoi(text.substr(e + 1));
    std::string digits = text.substr(0, e);
    bool negative = digits[0] == '-';
    if (negative) digits.erase(0, 1);
    if (digits.size() > 1) digits.erase(1, 1);
    if (exponent < 0) {
      text = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    } else {
      std::size_t whole = static_cast<std::size_t>(exponent) + 1;
      if (digits.size() < whole) digits.append(whole - digits.size(), '0');
      text = digits.substr(0, whole) + (digits.size() > whole ? "." + digits.substr(whole) : "");
    }
    if (negative) text.insert(0, "-");
  } else if (e != std::string::npos) {
    text = fmt::format("{:.17g}", value);
    for (int precision = 1; precision < 17; ++precision) {
      std::string shorter = fmt::format("{:.{}e}", value, precision);
      double back = 0;
      std::from_chars(shorter.data(), shorter.data() + shorter.size(), back);
      if (back == value) return shorter;
    }
    return text;
  }
  if (text.find('.') == std::string::npos) text += ".0";
  return text;
}

std::string DateMdy(Date date) {
  platform::LocalTime t = platform::FromSerial(date.days);
  // Two digits only where they are read back as the same year.
  if (t.year >= 1950 && t.year < 2050) return fmt::format("{}-{}-{:02}", t.month, t.day, t.year % 100);
  return fmt::format("{}-{}-{:04}", t.month, t.day, t.year);
}

std::string DateIso(Date date) {
  platform::LocalTime t = platform::FromSerial(date.days);
  return fmt::format("{:04}-{:02}-{:02}", t.year, t.month, t.day);
}

bool IsNumeric(ColumnType type) { return type <= ColumnType::kDecimal; }

}  // namespace store
