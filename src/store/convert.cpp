#include "store/convert.h"

#include <cmath>
#include <limits>

#include "platform/encoding.h"
#include "store/dialect/translate.h"
#include "store/error.h"
#include "store/functions.h"
#include "store/sqlite.h"

namespace store {

namespace {

constexpr double kFirstDay = -657434;      // 0100-01-01
constexpr double kDayAfterLast = 2958466;  // 9999-12-31 and its hours
constexpr double kCurrencyLimit = 922337203685477.58;
constexpr std::size_t kShownText = 60;

std::string Shown(std::string_view text) {
  if (platform::Utf8Length(text) <= kShownText) return std::string(text);
  return std::string(platform::Utf8Prefix(text, kShownText)) + "...";
}

ConversionFailure NotThisType(const Value& value, ColumnType type) {
  return {kConversion, fmt::format("valoarea '{}' nu este {}", Shown(value.ToText()), TypeName(type))};
}

ConversionFailure OutOfRange(const Value& value, std::string_view limits) {
  return {kConversion, fmt::format("valoarea {} depaseste limitele {}", Shown(value.ToText()), limits)};
}

std::optional<double> NumberOf(const Value& value) {
  if (value.is_text()) return ParseNumber(value.text());
  if (value.is_date()) return value.ToDate().days;
  return value.ToDouble();
}

ConversionFailure ToInteger(const Value& value, ColumnType type, std::int64_t low, std::int64_t high,
                            Cell& cell) {
  if (value.is_integer()) {
    cell = Cell::Integer(value.ToInteger());
  } else {
    const std::optional<double> number = NumberOf(value);
    if (!number || std::isnan(*number)) return NotThisType(value, type);
    const double rounded = std::nearbyint(*number);
    if (rounded < static_cast<double>(low) || rounded > static_cast<double>(high)) {
      return OutOfRange(value, fmt::format("{} ... {}", low, high));
    }
    cell = Cell::Integer(static_cast<std::int64_t>(rounded));
  }
  if (cell.integer < low || cell.integer > high) {
    return OutOfRange(value, fmt::format("{} ... {}", low, high));
  }
  return {};
}

ConversionFailure ToReal(const Value& value, ColumnType type, int size, Cell& cell) {
  const std::optional<double> number = NumberOf(value);
  if (!number || !std::isfinite(*number)) return NotThisType(value, type);
  double result = *number;
  if (type == ColumnType::kSingle) {
    if (std::abs(result) > static_cast<double>(std::numeric_limits<float>::max())) {
      return OutOfRange(value, "-3.4E38 ... 3.4E38");
    }
    result = static_cast<double>(static_cast<float>(result));
  } else if (type == ColumnType::kCurrency) {
    if (std::abs(result) > kCurrencyLimit) return OutOfRange(value, "unei sume");
    result = RoundHalfEven(result, 4);
  } else if (type == ColumnType::kDecimal) {
    result = RoundHalfEven(result, DecimalScale(size));
    if (std::abs(result) >= std::pow(10.0, DecimalPrecision(size) - DecimalScale(size))) {
      return OutOfRange(value,
                        fmt::format("{} cifre, {} zecimale", DecimalPrecision(size), DecimalScale(size)));
    }
  }
  cell = Cell::Double(result);
  return {};
}

ConversionFailure ToDate(const Value& value, Cell& cell) {
  std::optional<double> days;
  if (value.is_text()) {
    if (const std::optional<Date> date = ParseDate(value.text())) days = date->days;
  } else if (!value.is_boolean()) {
    days = NumberOf(value);
  }
  if (!days || std::isnan(*days)) return NotThisType(value, ColumnType::kDateTime);
  if (*days < kFirstDay || *days >= kDayAfterLast) return OutOfRange(value, "01.01.0100 ... 31.12.9999");
  cell = Cell::DateOf(*days);
  return {};
}

ConversionFailure ToYesNo(const Value& value, Cell& cell) {
  if (!value.is_text()) {
    cell = Cell::Boolean(value.ToBoolean());
    return {};
  }
  const std::string_view text = platform::Trim(value.text());
  if (const std::optional<double> number = ParseNumber(text)) {
    cell = Cell::Boolean(*number != 0);
    return {};
  }
  for (const std::string_view yes : {"True", "Yes", "On", "Da", "Adevarat"}) {
    if (platform::EqualsNoCase(text, yes)) return cell = Cell::Boolean(true), ConversionFailure{};
  }
  for (const std::string_view no : {"False", "No", "Off", "Nu", "Fals"}) {
    if (platform::EqualsNoCase(text, no)) return cell = Cell::Boolean(false), ConversionFailure{};
  }
  return NotThisType(value, ColumnType::kYesNo);
}

ConversionFailure ToText(const Value& value, int size, Cell& cell, std::string& text) {
  if (value.is_text()) {
    text.assign(value.text());
  } else {
    text = value.ToText();
  }
  // Bytes are never fewer than characters.
  if (size > 0 && text.size() > static_cast<std::size_t>(size)) {
    const std::size_t length = platform::Utf8Length(text);
    if (length > static_cast<std::size_t>(size)) {
      return {kTooLong,
              fmt::format("textul '{}' are {} caractere, cel mult {} incap", Shown(text), length, size)};
    }
  }
  cell = Cell::TextRef(text);
  return {};
}

}  // namespace

ConversionFailure ConvertForColumn(const Value& value, ColumnType type, int size, Cell& cell,
                                   std::string& text) {
  if (value.is_null()) {
    // A yes/no column is never Null.
    cell = type == ColumnType::kYesNo ? Cell::Boolean(false) : Cell();
    return {};
  }
  switch (type) {
    case ColumnType::kText:
      return ToText(value, size, cell, text);
    case ColumnType::kMemo:
      return ToText(value, 0, cell, text);
    case ColumnType::kByte:
      return ToInteger(value, type, 0, 255, cell);
    case ColumnType::kShort:
      return ToInteger(value, type, -32768, 32767, cell);
    case ColumnType::kCounter:
    case ColumnType::kLong:
      return ToInteger(value, type, std::numeric_limits<std::int32_t>::min(),
                       std::numeric_limits<std::int32_t>::max(), cell);
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kCurrency:
    case ColumnType::kDecimal:
      return ToReal(value, type, size, cell);
    case ColumnType::kDateTime:
      return ToDate(value, cell);
    case ColumnType::kYesNo:
      return ToYesNo(value, cell);
  }
  return {};
}

DefaultExpression ParseDefault(std::string_view text, ColumnType type, int size) {
  text = platform::Trim(text);
  if (text.starts_with('=')) text = platform::Trim(text.substr(1));
  DefaultExpression result;
  if (text.empty() || platform::EqualsNoCase(text, "Null")) return result;
  const auto is = [&](std::string_view name) { return platform::EqualsNoCase(text, name); };
  const char quote = text.front();
  if ((quote == '"' || quote == '\'') && text.size() >= 2 && text.back() == quote) {
    const std::string doubled(2, quote);
    result.value = platform::ReplaceAll(text.substr(1, text.size() - 2), doubled, std::string(1, quote));
  } else if (is("True") || is("Yes") || is("On")) {
    result.value = true;
  } else if (is("False") || is("No") || is("Off")) {
    result.value = false;
  } else if (const std::optional<double> number = ParseNumber(text)) {
    result.value = *number;
  } else if (quote == '#') {
    result.value = dialect::LiteralValue({dialect::LiteralKind::kDate, text, false});
  } else if (is("Date()") || is("Now()")) {
    // 2415018.5 is the Julian day of 1899-12-30.
    const std::string now = "julianday('now', 'localtime') - 2415018.5";
    result.sql = is("Now()") ? "(" + now + ")" : "(CAST(" + now + " AS INTEGER))";
    result.computed = true;
    return result;
  } else {
    throw Error(kSyntaxError, std::string(text),
                fmt::format("Valoarea implicita {} nu este o constanta", text));
  }
  Cell cell;
  std::string buffer;
  const ConversionFailure failure = ConvertForColumn(result.value, type, size, cell, buffer);
  if (failure.number != 0) {
    throw Error(failure.number, std::string(text), "Valoare implicita: " + failure.reason);
  }
  result.value = cell.ToValue();
  if (result.value.is_text()) {
    result.sql = QuoteText(result.value.text());
  } else if (result.value.is_integer() || result.value.is_boolean()) {
    result.sql = std::to_string(result.value.ToInteger());
  } else {
    result.sql = NumberText(cell.AsNumber());
  }
  return result;
}

std::string_view TypeName(ColumnType type) {
  switch (type) {
    case ColumnType::kCounter:
    case ColumnType::kByte:
    case ColumnType::kShort:
    case ColumnType::kLong:
      return "un numar intreg";
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kCurrency:
    case ColumnType::kDecimal:
      return "un numar";
    case ColumnType::kDateTime:
      return "o data";
    case ColumnType::kYesNo:
      return "Da sau Nu";
    case ColumnType::kText:
    case ColumnType::kMemo:
      return "un text";
  }
  return "";
}

}  // namespace store
