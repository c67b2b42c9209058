#include <cmath>
#include <limits>

#include "platform/encoding.h"
#include "store/functions.h"
#include "store/functions_call.h"
#include "store/value.h"

namespace store::functions {

namespace {

std::optional<bool> Truth(std::string_view text) {
  for (std::string_view word : {"true", "yes", "on", "da"}) {
    if (platform::EqualsNoCase(text, word)) return true;
  }
  for (std::string_view word : {"false", "no", "off", "nu"}) {
    if (platform::EqualsNoCase(text, word)) return false;
  }
  if (auto number = ParseNumber(text)) return *number != 0;
  return std::nullopt;
}

/// Whole number from anything, within bounds.
template <std::int64_t lo, std::int64_t hi>
void ToWhole(Call& call) {
  double number = call.type(0) == SQLITE_TEXT && !call.TryNumber(0) ? call.Days(0) : call.Number(0);
  number = RoundHalfEven(number, 0);
  if (!(number >= static_cast<double>(lo) && number <= static_cast<double>(hi))) FailOverflow();
  call.Return(static_cast<std::int64_t>(number));
}

float Narrow(double number) {
  if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max())) FailOverflow();
  return static_cast<float>(number);
}

/// Currency holds 64-bit counts of 1/10000.
constexpr double kLargestCurrency = 922337203685477.5807;
double ToCurrency(double number) {
  if (!(std::abs(number) <= kLargestCurrency)) FailOverflow();
  return RoundHalfEven(number, 4);
}

void CStr(Call& call) { call.Return(call.Text(0)); }
void CDbl(Call& call) { call.Return(call.Number(0)); }
void CSng(Call& call) { call.Return(static_cast<double>(Narrow(call.Number(0)))); }
void CCur(Call& call) { call.Return(ToCurrency(call.Number(0))); }
void CVar(Call& call) { call.ReturnSame(0); }
void CDate(Call& call) { call.Return(call.Days(0)); }

void CBool(Call& call) {
  if (call.type(0) != SQLITE_TEXT) return call.Return(call.Number(0) != 0);
  auto truth = Truth(call.Text(0));
  if (!truth) FailMismatch();
  call.Return(*truth);
}

// Conversions on assignment: the value, the column's name for the message, and what the column holds.

[[noreturn]] void FailColumn(const Call& call, int number, std::string_view reason) {
  Fail(number, std::string(reason) + " '" + std::string(call.Text(1).view()) + "'");
}
[[noreturn]] void FailNoFit(const Call& call) {
  FailColumn(call, kConversion, "Valoarea nu se potriveste in coloana");
}

double AssignedNumber(const Call& call) {
  auto number = call.TryNumber(0);
  if (!number) FailNoFit(call);
  return *number;
}

void AssignText(Call& call) {
  auto limit = static_cast<std::size_t>(call.Integer(2));
  TextArgument text = call.Text(0);
  // Bytes are at least as many as characters: most values need no count.
  if (limit > 0 && text.view().size() > limit && platform::Utf8Length(text) > limit) {
    FailColumn(call, kTooLong, "Text mai lung decat coloana");
  }
  if (call.type(0) == SQLITE_TEXT) return call.ReturnSame(0);
  call.Return(text.view());
}

void AssignInt(Call& call) {
  if (call.type(0) == SQLITE_INTEGER) {
    std::int64_t value = call.Integer(0);
    if (value < call.Integer(2) || value > call.Integer(3)) FailNoFit(call);
    return call.ReturnSame(0);
  }
  double number = RoundHalfEven(AssignedNumber(call), 0);
  if (!(number >= call.Number(2) && number <= call.Number(3))) FailNoFit(call);
  call.Return(static_cast<std::int64_t>(number));
}

void AssignDouble(Call& call) {
  double number = AssignedNumber(call);
  if (!std::isfinite(number)) FailNoFit(call);
  call.Return(number);
}

void AssignSingle(Call& call) {
  double number = AssignedNumber(call);
  if (!(std::abs(number) <= static_cast<double>(std::numeric_limits<float>::max()))) FailNoFit(call);
  call.Return(static_cast<double>(static_cast<float>(number)));
}

void AssignCurrency(Call& call) {
  double number = AssignedNumber(call);
  if (!(std::abs(number) <= kLargestCurrency)) FailNoFit(call);
  call.Return(RoundHalfEven(number, 4));
}

void AssignDecimal(Call& call) {
  int precision = call.SmallInteger(2), scale = call.SmallInteger(3);
  double number = RoundHalfEven(AssignedNumber(call), scale);
  if (!(std::abs(number) < std::pow(10.0, precision - scale))) FailNoFit(call);
  call.Return(number);
}

void AssignDate(Call& call) {
  auto days = call.TryDays(0);
  if (!days || !(*days >= -657434 && *days < 2958466)) FailNoFit(call);
  call.Return(*days);
}

void AssignYesNo(Call& call) {
  if (call.IsNull(0)) return call.Return(false);  // yes/no columns hold no Null
  if (call.type(0) != SQLITE_TEXT) return call.Return(call.Number(0) != 0);
  auto truth = Truth(call.Text(0));
  if (!truth) FailNoFit(call);
  call.Return(*truth);
}

/// Null stays Null on assignment, whatever the column; whether it may is the table's matter.
template <void (*function)(Call&)>
void NullStays(Call& call) {
  if (call.IsNull(0)) {
    call.ReturnNull();
  } else {
    function(call);
  }
}

}  // namespace

void RegisterConversions(sqlite3* db) {
  static constexpr Definition kDefinitions[] = {
      {"cstr", 1, 1, Enter<NullThrough<CStr>>},
      {"cbyte", 1, 1, Enter<NullThrough<ToWhole<0, 255>>>},
      {"cint", 1, 1, Enter<NullThrough<ToWhole<INT16_MIN, INT16_MAX>>>},
      {"clng", 1, 1, Enter<NullThrough<ToWhole<INT32_MIN, INT32_MAX>>>},
      {"cdbl", 1, 1, Enter<NullThrough<CDbl>>},
      {"csng", 1, 1, Enter<NullThrough<CSng>>},
      {"ccur", 1, 1, Enter<NullThrough<CCur>>},
      {"cdec", 1, 1, Enter<NullThrough<CDbl>>},
      {"cbool", 1, 1, Enter<NullThrough<CBool>>},
      {"cdate", 1, 1, Enter<NullThrough<CDate>>},
      {"cvdate", 1, 1, Enter<NullThrough<CDate>>},
      {"cvar", 1, 1, Enter<CVar>},
      {"to_text", 3, 3, Enter<NullStays<AssignText>>},
      {"to_int", 4, 4, Enter<NullStays<AssignInt>>},
      {"to_double", 2, 2, Enter<NullStays<AssignDouble>>},
      {"to_single", 2, 2, Enter<NullStays<AssignSingle>>},
      {"to_currency", 2, 2, Enter<NullStays<AssignCurrency>>},
      {"to_decimal", 4, 4, Enter<NullStays<AssignDecimal>>},
      {"to_date", 2, 2, Enter<NullStays<AssignDate>>},
      {"to_yesno", 2, 2, Enter<AssignYesNo>},
  };
  RegisterAll(db, kDefinitions);
}

}  // namespace store::functions
