#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "store/error.h"

namespace store::functions {

/// Ends a function with an error that carries one of the numbers of error.h.
struct Failure {
  int number;
  std::string description;
};
[[noreturn]] void Fail(int number, std::string description);
[[noreturn]] void FailMismatch();     ///< text where a number is needed
[[noreturn]] void FailOverflow();     ///< a result that its type does not hold
[[noreturn]] void FailInvalidCall();  ///< an argument outside what the function takes

/// The text of an argument: a view of SQLite's own bytes, or of a number written out.
class TextArgument {
 public:
  explicit TextArgument(sqlite3_value* value);
  TextArgument(const TextArgument&) = delete;
  TextArgument& operator=(const TextArgument&) = delete;
  operator std::string_view() const { return view_; }
  std::string_view view() const { return view_; }

 private:
  std::string own_;
  std::string_view view_;
};

/// One call of an SQL function: its arguments and its result. Numbers are read from texts too; a text that is
/// no number fails as a type mismatch.
class Call {
 public:
  Call(sqlite3_context* context, int count, sqlite3_value** values)
      : context_(context), count_(count), values_(values) {}

  int count() const { return count_; }
  int type(int i) const { return sqlite3_value_type(values_[i]); }
  bool IsNull(int i) const { return type(i) == SQLITE_NULL; }
  bool AnyNull() const;
  TextArgument Text(int i) const { return TextArgument(values_[i]); }
  double Number(int i) const;
  std::int64_t Integer(int i) const;             ///< half to even
  int SmallInteger(int i) const;                 ///< within 32 bits, else an overflow
  int SmallInteger(int i, int otherwise) const;  ///< where the argument is missing
  std::optional<double> TryNumber(int i) const;  ///< nothing for texts that are no number
  double Days(int i) const;                      ///< a date; texts are read as dates
  std::optional<double> TryDays(int i) const;
  sqlite3_value* value(int i) const { return values_[i]; }

  void ReturnNull() { sqlite3_result_null(context_); }
  void Return(std::string_view text);
  void Return(const char* text) { Return(std::string_view(text)); }
  void Return(double number);  ///< infinities and what is no number are overflows
  void Return(std::int64_t number) { sqlite3_result_int64(context_, number); }
  void Return(int number) { sqlite3_result_int64(context_, number); }
  void Return(bool truth) { sqlite3_result_int64(context_, truth ? -1 : 0); }
  void ReturnSame(int i) { sqlite3_result_value(context_, values_[i]); }
  /// Whole results of arithmetic on whole operands stay whole.
  void ReturnArithmetic(double number, bool whole);

 private:
  sqlite3_context* context_;
  int count_;
  sqlite3_value** values_;
};

double ReadNumber(sqlite3_value* value);

/// Leaves a Failure as the call's error ("dx:<number>:<description>").
void LeaveError(sqlite3_context* context, const Failure& failure);

template <void (*function)(Call&)>
void Enter(sqlite3_context* context, int count, sqlite3_value** values) {
  try {
    Call call(context, count, values);
    function(call);
  } catch (const Failure& failure) {
    LeaveError(context, failure);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  }
}

/// For functions that answer Null where any argument is Null.
template <void (*function)(Call&)>
void NullThrough(Call& call) {
  if (call.AnyNull()) {
    call.ReturnNull();
  } else {
    function(call);
  }
}

/// A function under the name "dx_" + name, taking `fewest` to `most` arguments.
struct Definition {
  const char* name;
  int fewest, most;
  void (*entry)(sqlite3_context*, int, sqlite3_value**);
  bool deterministic = true;
};
void Register(sqlite3* db, const Definition& definition);

template <std::size_t n>
void RegisterAll(sqlite3* db, const Definition (&definitions)[n]) {
  for (const Definition& definition : definitions) Register(db, definition);
}

void RegisterOperators(sqlite3* db);
void RegisterText(sqlite3* db);
void RegisterNumeric(sqlite3* db);
void RegisterDates(sqlite3* db);
void RegisterConversions(sqlite3* db);
void RegisterAggregates(sqlite3* db);

/// FORMAT with a number or date (`is_date`) and a pattern; in functions_format.cpp.
std::string FormatNumber(double value, std::string_view pattern);
std::string FormatDate(double days, std::string_view pattern, int first_weekday, int first_week);
std::string FormatText(std::string_view text, std::string_view pattern);
bool IsDatePattern(std::string_view pattern);
/// Romanian names without diacritics; days count from Sunday = 1.
std::string_view MonthName(int month);
std::string_view DayName(int day_from_sunday);
/// Week of the year for `first_weekday` (1 = Sunday) and `first_week` (1: holds 1 January, 2: first of four
/// days, 3: first full week).
int WeekOfYear(double days, int first_weekday, int first_week);

}  // namespace store::functions
