#include <charconv>
#include <cmath>

#include "store/dialect/diagnose.h"
#include "store/dialect/scan.h"

namespace store::dialect {

void ThrowUnclosed(std::string_view text, std::size_t position) {
  const char c = text[position];
  const char* what = c == '['   ? "nume fara \"]\""
                     : c == '#' ? "data fara \"#\" la sfarsit"
                                : "text fara ghilimele la sfarsit";
  ThrowSyntax(text, what, position);
}

void ThrowRefusedChar(std::string_view text, std::size_t position) {
  ThrowSyntax(text, "caracter nepermis", position);
}

void Normalize(std::string_view text, Normalized& out) {
  // Marks are single bytes that a statement cannot hold, so the key is never longer than the text and two
  // different token rows never share one.
  static constexpr char kTextMark = 1, kIntegerMark = 2, kNumberMark = 3, kDateMark = 4;
  out.literals.clear();
  if (out.key.size() < text.size()) out.key.resize(text.size());
  char* to = out.key.data();
  const char* const begin = to;
  std::size_t p = 0;
  const std::size_t size = text.size();
  auto copy = [&](std::size_t end) {
    while (p < end) *to++ = text[p++];
  };
  while (p < size) {
    const char c = text[p];
    switch (ClassOf(c)) {
      case CharClass::kBlank:
        while (p < size && ClassOf(text[p]) == CharClass::kBlank) ++p;
        if (to != begin && p < size) *to++ = ' ';
        break;
      case CharClass::kLetter:
        do {
          *to++ = text[p++];
        } while (p < size && IsNameChar(text[p]));
        break;
      case CharClass::kDot:
        if (p + 1 >= size || !IsDigit(text[p + 1])) {
          *to++ = text[p++];
          break;
        }
        [[fallthrough]];
      case CharClass::kDigit: {
        LiteralKind kind;
        const std::size_t end = ScanNumber(text, p, kind);
        out.literals.push_back({kind, text.substr(p, end - p), false});
        *to++ = kind == LiteralKind::kInteger ? kIntegerMark : kNumberMark;
        p = end;
        break;
      }
      case CharClass::kQuote: {
        bool doubled;
        const std::size_t end = ScanText(text, p, doubled);
        out.literals.push_back({LiteralKind::kText, text.substr(p, end - p), doubled});
        *to++ = kTextMark;
        p = end;
        break;
      }
      case CharClass::kHash: {
        const std::size_t end = ScanDate(text, p);
        out.literals.push_back({LiteralKind::kDate, text.substr(p, end - p), false});
        *to++ = kDateMark;
        p = end;
        break;
      }
      case CharClass::kBracket:
        copy(ScanBracket(text, p));
        break;
      case CharClass::kSign:
        *to++ = text[p++];
        break;
      case CharClass::kRefused:
        ThrowRefusedChar(text, p);
    }
  }
  out.key.resize(static_cast<std::size_t>(to - begin));
}

namespace {

double NumberOf(std::string_view raw) {
  double value = 0;
  const auto [end, error] = std::from_chars(raw.data(), raw.data() + raw.size(), value);
  if (error == std::errc::result_out_of_range && !(raw.find('-') != std::string_view::npos)) {
    throw Error(kConversion, std::string(raw), "Depasire: numarul " + std::string(raw) + " este prea mare");
  }
  return value;
}

std::int64_t DayNumber(int year, int month, int day) {
  // Days from 1899-12-30 in the proleptic Gregorian calendar; the year begins in March.
  const int y = month <= 2 ? year - 1 : year;
  const int era = y / 400;
  const int of_era = y - era * 400;
  const int of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int of_era_day = of_era * 365 + of_era / 4 - of_era / 100 + of_year;
  return static_cast<std::int64_t>(era) * 146097 + of_era_day - 693899;
}

int DaysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

/// Reads the inside of a #…#.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : text_(text) {}

  bool Read(double& days) {
    SkipBlanks();
    int first = 0, digits = 0;
    if (!Number(first, digits)) return false;
    double whole = 0;
    if (Take(':')) {
      p_ = 0;
      SkipBlanks();
    } else {
      if (!DayPart(first, digits, whole)) return false;
      SkipBlanks();
      if (p_ == text_.size()) {
        days = whole;
        return true;
      }
    }
    double fraction = 0;
    if (!TimePart(fraction)) return false;
    // Before day 0 the whole part counts down while the time of day still counts up.
    days = whole < 0 ? whole - fraction : whole + fraction;
    return true;
  }

 private:
  void SkipBlanks() {
    while (p_ < text_.size() && text_[p_] == ' ') ++p_;
  }
  bool Take(char c) {
    if (p_ < text_.size() && text_[p_] == c) {
      ++p_;
      return true;
    }
    return false;
  }
  bool Number(int& value, int& digits) {
    value = digits = 0;
    while (p_ < text_.size() && IsDigit(text_[p_]) && digits < 5) {
      value = value * 10 + (text_[p_++] - '0');
      ++digits;
    }
    return digits > 0 && digits < 5;
  }

  bool DayPart(int first, int first_digits, double& whole) {
    const char separator = p_ < text_.size() ? text_[p_] : '\0';
    if (separator != '/' && separator != '-') return false;
    ++p_;
    int second = 0, third = 0, digits = 0, third_digits = 0;
    if (!Number(second, digits) || digits > 2 || !Take(separator) || !Number(third, third_digits))
      return false;
    int year = 0, month = 0, day = 0;
    if (first_digits > 2) {
      if (third_digits > 2) return false;
      year = first, month = second, day = third;
    } else {
      month = first, day = second, year = third;
      if (third_digits <= 2) year += year < 50 ? 2000 : 1900;
      if (month > 12 && day <= 12) std::swap(month, day);
    }
    if (year < 100 || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month)) return false;
    whole = static_cast<double>(DayNumber(year, month, day));
    return true;
  }

  bool TimePart(double& fraction) {
    int hour = 0, minute = 0, second = 0, digits = 0;
    if (!Number(hour, digits) || digits > 2) return false;
    bool clock = false;
    if (Take(':')) {
      clock = true;
      if (!Number(minute, digits) || digits > 2 || minute > 59) return false;
      if (Take(':') && (!Number(second, digits) || digits > 2 || second > 59)) return false;
    }
    SkipBlanks();
    if (p_ < text_.size()) {
      const std::string_view half = text_.substr(p_, 2);
      const bool pm = SameName(half, "PM");
      if (!pm && !SameName(half, "AM")) return false;
      if (hour < 1 || hour > 12) return false;
      hour = hour % 12 + (pm ? 12 : 0);
      clock = true;
      p_ += 2;
      SkipBlanks();
    }
    if (!clock || hour > 23 || p_ != text_.size()) return false;
    fraction = (hour * 3600 + minute * 60 + second) / 86400.0;
    return true;
  }

  std::string_view text_;
  std::size_t p_ = 0;
};

}  // namespace

Value LiteralValue(const Literal& literal) {
  const std::string_view raw = literal.raw;
  switch (literal.kind) {
    case LiteralKind::kText: {
      const std::string_view inside = raw.substr(1, raw.size() - 2);
      if (!literal.doubled) return Value(inside);
      std::string text;
      text.reserve(inside.size());
      for (std::size_t i = 0; i < inside.size(); ++i) {
        text += inside[i];
        if (inside[i] == raw[0]) ++i;
      }
      return Value(std::move(text));
    }
    case LiteralKind::kInteger: {
      std::int64_t value = 0;
      std::from_chars(raw.data(), raw.data() + raw.size(), value);
      return Value(value);
    }
    case LiteralKind::kNumber:
      return Value(NumberOf(raw));
    case LiteralKind::kDate: {
      Date date;
      if (!DateReader(raw.substr(1, raw.size() - 2)).Read(date.days)) {
        throw Error(kSyntaxError, std::string(raw),
                    "Eroare de sintaxa in data calendaristica: " + std::string(raw));
      }
      return Value(date);
    }
    case LiteralKind::kBoolean:
      return Value(SameName(raw, "TRUE") || SameName(raw, "YES") || SameName(raw, "ON"));
  }
  return Value();
}

}  // namespace store::dialect
