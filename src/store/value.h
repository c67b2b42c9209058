#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace store {

/// A date and time: days since 1899-12-30, the fraction is the time of day.
struct Date {
  double days = 0;
  friend bool operator==(const Date&, const Date&) = default;
};

struct Null {
  friend bool operator==(Null, Null) { return true; }
};

/// A value as the database engine knows it. True is -1 as a number. Equality here is exact (kind and bytes);
/// the engine's own comparison is in functions.h.
class Value {
 public:
  Value() = default;
  Value(Null) {}
  Value(bool b) : v_(b) {}
  Value(int i) : v_(static_cast<std::int64_t>(i)) {}
  Value(std::int64_t i) : v_(i) {}
  Value(double d) : v_(d) {}
  Value(Date d) : v_(d) {}
  Value(std::string s) : v_(std::move(s)) {}
  Value(std::string_view s) : v_(std::string(s)) {}
  Value(const char* s) : v_(std::string(s)) {}

  bool is_null() const { return std::holds_alternative<Null>(v_); }
  bool is_boolean() const { return std::holds_alternative<bool>(v_); }
  bool is_integer() const { return std::holds_alternative<std::int64_t>(v_); }
  bool is_double() const { return std::holds_alternative<double>(v_); }
  bool is_date() const { return std::holds_alternative<Date>(v_); }
  bool is_text() const { return std::holds_alternative<std::string>(v_); }
  bool is_number() const { return is_integer() || is_double() || is_boolean(); }

  /// The text itself; throws std::bad_variant_access for other kinds.
  const std::string& text() const { return std::get<std::string>(v_); }

  /// As the engine turns a value into text with &: Null "", True "-1", doubles shortest with a decimal point
  /// and at most 15 digits, dates "dd.mm.yyyy[ hh:mm:ss]" as a Romanian desktop shows them.
  std::string ToText() const;
  /// Null, and text that is no number, gives `otherwise`. Text is read with a decimal point.
  double ToDouble(double otherwise = 0) const;
  std::int64_t ToInteger(std::int64_t otherwise = 0) const;  ///< half to even
  bool ToBoolean() const;  ///< Null false; numbers <> 0; text "-1", "1", "True"
  Date ToDate() const;     ///< Null and texts that are no date: day 0

  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<Null, bool, std::int64_t, double, Date, std::string> v_;
};

/// The system's shared empty-value test: Null, "" or a single blank.
bool IsEmpty(const Value& value);
inline bool IsEmpty(std::string_view text) { return text.empty() || text == " "; }
inline bool IsEmpty(const std::string& text) { return IsEmpty(std::string_view(text)); }
/// Its companions: an empty text gives the default; an empty or zero number gives the default.
std::string TextOr(const Value& value, std::string_view otherwise);
double NumberOr(const Value& value, double otherwise);

/// A number written in text: blanks around it, a sign, a decimal point and an exponent are allowed, nothing
/// else.
std::optional<double> ParseNumber(std::string_view text);
/// A date, a time or both in text: day first ("5.3.2026", "5/3/2026"; day and month change places where only
/// that makes a date) or year first ("2026-03-05"), then "hh:mm[:ss][ AM|PM]". Years 00 to 49 are 20xx, 50 to
/// 99 are 19xx.
std::optional<Date> ParseDate(std::string_view text);
/// "dd.mm.yyyy", followed by " hh:mm:ss" where there is a time; a time alone where the day is 0.
std::string DateText(Date date);
/// As the engine shows a double: at most 15 digits, shortest, with a decimal point where it needs one.
std::string DoubleText(double value);

/// A number as statement text: shortest form that reads back exactly, always with a decimal point.
std::string NumberText(double value);

/// "m-d-yy" / "yyyy-mm-dd" forms used inside #…#.
std::string DateMdy(Date date);
std::string DateIso(Date date);

/// Access column types, in the catalog and in schema rowsets.
enum class ColumnType : std::uint8_t {
  kCounter,
  kByte,
  kShort,
  kLong,
  kSingle,
  kDouble,
  kCurrency,
  kDecimal,
  kText,
  kMemo,
  kDateTime,
  kYesNo,
};

/// A decimal column's size holds both of its measures; DECIMAL without them is (18, 0).
constexpr int DecimalSize(int precision, int scale) { return precision * 100 + scale; }
constexpr int DecimalPrecision(int size) { return size == 0 ? 18 : size / 100; }
constexpr int DecimalScale(int size) { return size % 100; }

bool IsNumeric(ColumnType type);  ///< counter to decimal

}  // namespace store
