#include "store/functions.h"

#include <sqlite3.h>

#include <cmath>

#include "platform/spreadsheet/table.h"
#include "store/functions_call.h"
#include "store/value.h"

namespace store::functions {

void Fail(int number, std::string description) { throw Failure{number, std::move(description)}; }
void FailMismatch() { Fail(kTypeMismatch, "Tipuri de date nepotrivite in expresie"); }
void FailOverflow() { Fail(kConversion, "Valoare in afara domeniului permis (depasire)"); }
void FailInvalidCall() { Fail(kDivisionByZero, "Argument nepermis al functiei"); }

TextArgument::TextArgument(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
      return;
    case SQLITE_FLOAT: {
      // A worksheet's number shown with leading zeros carries its digits as subtype.
      const auto digits = static_cast<std::uint8_t>(sqlite3_value_subtype(value));
      const double number = sqlite3_value_double(value);
      view_ = own_ = digits == 0 ? DoubleText(number) : platform::spreadsheet::NumberToText(number, digits);
      return;
    }
    case SQLITE_INTEGER:
      view_ = own_ = std::to_string(sqlite3_value_int64(value));
      return;
    default: {
      auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(value));
      view_ = {bytes == nullptr ? "" : bytes, static_cast<std::size_t>(sqlite3_value_bytes(value))};
    }
  }
}

bool Call::AnyNull() const {
  for (int i = 0; i < count_; ++i) {
    if (IsNull(i)) return true;
  }
  return false;
}

double ReadNumber(sqlite3_value* value) {
  int type = sqlite3_value_type(value);
  if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) return sqlite3_value_double(value);
  auto number = ParseNumber(TextArgument(value));
  if (!number) FailMismatch();
  return *number;
}

double Call::Number(int i) const { return ReadNumber(values_[i]); }

std::optional<double> Call::TryNumber(int i) const {
  if (type(i) == SQLITE_INTEGER || type(i) == SQLITE_FLOAT) return sqlite3_value_double(values_[i]);
  return ParseNumber(Text(i));
}

std::int64_t Call::Integer(int i) const {
  if (type(i) == SQLITE_INTEGER) return sqlite3_value_int64(values_[i]);
  double number = RoundHalfEven(Number(i), 0);
  if (!(number >= -9223372036854775808.0 && number < 9223372036854775808.0)) FailOverflow();
  return static_cast<std::int64_t>(number);
}

int Call::SmallInteger(int i) const {
  std::int64_t number = Integer(i);
  if (number < INT32_MIN || number > INT32_MAX) FailOverflow();
  return static_cast<int>(number);
}

int Call::SmallInteger(int i, int otherwise) const { return i < count_ ? SmallInteger(i) : otherwise; }

std::optional<double> Call::TryDays(int i) const {
  if (type(i) != SQLITE_TEXT) return sqlite3_value_double(values_[i]);
  if (auto date = ParseDate(Text(i))) return date->days;
  return ParseNumber(Text(i));
}

double Call::Days(int i) const {
  auto days = TryDays(i);
  if (!days) FailMismatch();
  // Years 100 to 9999, as dates of the engine.
  if (!(*days >= -657434 && *days < 2958466)) FailOverflow();
  return *days;
}

void Call::Return(std::string_view text) {
  sqlite3_result_text64(context_, text.data() == nullptr ? "" : text.data(), text.size(), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
}

void Call::Return(double number) {
  if (!std::isfinite(number)) FailOverflow();
  sqlite3_result_double(context_, number);
}

void Call::ReturnArithmetic(double number, bool whole) {
  if (whole && std::abs(number) < 9007199254740992.0) {
    Return(static_cast<std::int64_t>(number));
  } else {
    Return(number);
  }
}

void LeaveError(sqlite3_context* context, const Failure& failure) {
  std::string message =
      std::string(kFunctionErrorPrefix) + std::to_string(failure.number) + ":" + failure.description;
  sqlite3_result_error(context, message.data(), static_cast<int>(message.size()));
}

void Register(sqlite3* db, const Definition& definition) {
  int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (definition.deterministic ? SQLITE_DETERMINISTIC : 0);
  std::string name = std::string("dx_") + definition.name;
  for (int count = definition.fewest; count <= definition.most; ++count) {
    sqlite3_create_function_v2(db, name.c_str(), count, flags, nullptr, definition.entry, nullptr, nullptr,
                               nullptr);
  }
}

}  // namespace store::functions

namespace store {

double RoundHalfEven(double value, int decimals) {
  static constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  double power = kPowers[decimals < 0 ? 0 : decimals > 15 ? 15 : decimals];
  double scaled = value * power;
  // From 2^52 on every double is whole.
  if (!(std::abs(scaled) < 4503599627370496.0)) return value;
  return std::nearbyint(scaled) / power + 0.0;
}

void RegisterFunctions(sqlite3* db) {
  auto compare = [](void*, int left_size, const void* left, int right_size, const void* right) {
    return CompareText({static_cast<const char*>(left), static_cast<std::size_t>(left_size)},
                       {static_cast<const char*>(right), static_cast<std::size_t>(right_size)});
  };
  // SQLite's Bloom filters hash the length of texts (up to 3.40), so that texts which the collation calls
  // equal although one has trailing blanks would not join. The mask is SQLite's own for that optimization.
  constexpr int kBloomFilter = 0x00080000;
  sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, db, kBloomFilter);
  sqlite3_create_collation_v2(db, kCollation, SQLITE_UTF8, nullptr, compare, nullptr);
  functions::RegisterOperators(db);
  functions::RegisterText(db);
  functions::RegisterNumeric(db);
  functions::RegisterDates(db);
  functions::RegisterConversions(db);
  functions::RegisterAggregates(db);
}

}  // namespace store
