#include <array>
#include <chrono>
#include <cmath>

#include "platform/clock.h"
#include "platform/encoding.h"
#include "store/functions.h"
#include "store/functions_call.h"
#include "store/value.h"

namespace store {

namespace {
std::function<double()>& ClockHook() {
  static std::function<double()> hook;
  return hook;
}
double Now() { return ClockHook() ? ClockHook()() : platform::ToSerial(platform::SystemClock().Now()); }
}  // namespace

void SetFunctionClock(std::function<double()> now) { ClockHook() = std::move(now); }

namespace functions {

namespace {

enum class Interval { kYear, kQuarter, kMonth, kDayOfYear, kDay, kWeekday, kWeek, kHour, kMinute, kSecond };

Interval IntervalOf(const Call& call, int i) {
  static constexpr std::pair<std::string_view, Interval> kIntervals[] = {
      {"yyyy", Interval::kYear},   {"q", Interval::kQuarter}, {"m", Interval::kMonth},
      {"y", Interval::kDayOfYear}, {"d", Interval::kDay},     {"w", Interval::kWeekday},
      {"ww", Interval::kWeek},     {"h", Interval::kHour},    {"n", Interval::kMinute},
      {"s", Interval::kSecond},
  };
  TextArgument text = call.Text(i);
  for (auto& [name, interval] : kIntervals) {
    if (platform::EqualsNoCase(text, name)) return interval;
  }
  FailInvalidCall();
}

platform::LocalTime Parts(const Call& call, int i) { return platform::FromSerial(call.Days(i)); }

double Serial(int year, int month, int day) { return platform::ToSerial({year, month, day, 0, 0, 0}); }

/// Whole days counted up from 1899-12-30, below 0 before it.
std::int64_t DayNumber(double days) {
  platform::LocalTime t = platform::FromSerial(days);
  return std::llround(Serial(t.year, t.month, t.day));
}

/// 1 to 7 from the given first day of the week (1 = Sunday).
int Weekday(double days, int first) {
  // Day 0, 1899-12-30, was a Saturday: the seventh day from Sunday.
  std::int64_t from_sunday = (DayNumber(days) + 6) % 7;
  if (from_sunday < 0) from_sunday += 7;
  return static_cast<int>((from_sunday - (first - 1) + 7) % 7) + 1;
}

/// 0 stands for the desktop's own first day, Monday.
int FirstDay(const Call& call, int i) {
  int first = call.SmallInteger(i, 1);
  if (first < 0 || first > 7) FailInvalidCall();
  return first == 0 ? 2 : first;
}

int FirstWeek(const Call& call, int i) {
  int first = call.SmallInteger(i, 1);
  if (first < 0 || first > 3) FailInvalidCall();
  return first == 0 ? 1 : first;
}

void ReturnDate(Call& call, double days) {
  if (!(days >= -657434 && days < 2958466)) FailOverflow();
  call.Return(days);
}

/// A day of any month number and day number: month 14 and day 0 run over into what follows or precedes.
double SerialAcross(std::int64_t year, std::int64_t month, std::int64_t day) {
  std::int64_t months = year * 12 + month - 1;
  std::int64_t whole_year = months / 12, rest = months % 12;
  if (rest < 0) {
    rest += 12;
    --whole_year;
  }
  if (whole_year < 100 || whole_year > 9999) FailInvalidCall();
  return Serial(static_cast<int>(whole_year), static_cast<int>(rest) + 1, 1) + static_cast<double>(day - 1);
}

double TimeOf(double days) { return std::abs(days - std::trunc(days)); }
/// Puts a day and a time together: before day 0 the time still counts up.
double WithTime(double day, double time) { return day < 0 ? day - time : day + time; }

double AddMonths(double days, std::int64_t months) {
  platform::LocalTime t = platform::FromSerial(days);
  double first = SerialAcross(t.year, t.month + months, 1);
  platform::LocalTime target = platform::FromSerial(first);
  int day = t.day;
  while (!platform::IsValidDate(target.year, target.month, day))
    --day;  // 31 January plus a month: the last day
  return WithTime(first + day - 1, TimeOf(days));
}

/// A serial as a steady count, without the fold of times before day 0.
double Steady(double days) { return days < 0 ? std::trunc(days) + TimeOf(days) : days; }
double FromSteady(double steady) {
  double day = std::floor(steady);
  return WithTime(day, steady - day);
}

void DateAdd(Call& call) {
  Interval interval = IntervalOf(call, 0);
  auto amount = static_cast<std::int64_t>(std::trunc(call.Number(1)));
  if (amount > 400'000'000'000 || amount < -400'000'000'000) FailOverflow();
  double days = call.Days(2);
  auto number = static_cast<double>(amount);
  switch (interval) {
    case Interval::kYear:
      return ReturnDate(call, AddMonths(days, amount * 12));
    case Interval::kQuarter:
      return ReturnDate(call, AddMonths(days, amount * 3));
    case Interval::kMonth:
      return ReturnDate(call, AddMonths(days, amount));
    case Interval::kDayOfYear:
    case Interval::kDay:
    case Interval::kWeekday:
      return ReturnDate(call, FromSteady(Steady(days) + number));
    case Interval::kWeek:
      return ReturnDate(call, FromSteady(Steady(days) + 7 * number));
    case Interval::kHour:
      number *= 3600;
      break;
    case Interval::kMinute:
      number *= 60;
      break;
    case Interval::kSecond:
      break;
  }
  // In whole seconds, so that many small steps end on the hour.
  ReturnDate(call, FromSteady((std::round(Steady(days) * 86400) + number) / 86400));
}

void DateDiff(Call& call) {
  Interval interval = IntervalOf(call, 0);
  double from = call.Days(1), to = call.Days(2);
  int first_day = FirstDay(call, 3);
  platform::LocalTime a = platform::FromSerial(from), b = platform::FromSerial(to);
  std::int64_t days = DayNumber(to) - DayNumber(from);
  std::int64_t seconds = (b.hour - a.hour) * 3600 + (b.minute - a.minute) * 60 + (b.second - a.second);
  switch (interval) {
    case Interval::kYear:
      return call.Return(b.year - a.year);
    case Interval::kQuarter:
      return call.Return((b.year - a.year) * 4 + (b.month - 1) / 3 - (a.month - 1) / 3);
    case Interval::kMonth:
      return call.Return((b.year - a.year) * 12 + b.month - a.month);
    case Interval::kDayOfYear:
    case Interval::kDay:
      return call.Return(days);
    case Interval::kWeekday:
      return call.Return(days / 7);
    case Interval::kWeek:  // first days of the week passed
      return call.Return((days - Weekday(to, first_day) + Weekday(from, first_day)) / 7);
    case Interval::kHour:
      return call.Return(days * 24 + b.hour - a.hour);
    case Interval::kMinute:
      return call.Return(days * 1440 + (b.hour - a.hour) * 60 + b.minute - a.minute);
    case Interval::kSecond:
      return call.Return(days * 86400 + seconds);
  }
}

void DatePart(Call& call) {
  Interval interval = IntervalOf(call, 0);
  double days = call.Days(1);
  int first_day = FirstDay(call, 2), first_week = FirstWeek(call, 3);
  platform::LocalTime t = platform::FromSerial(days);
  switch (interval) {
    case Interval::kYear:
      return call.Return(t.year);
    case Interval::kQuarter:
      return call.Return((t.month - 1) / 3 + 1);
    case Interval::kMonth:
      return call.Return(t.month);
    case Interval::kDayOfYear:
      return call.Return(DayNumber(days) - DayNumber(Serial(t.year, 1, 1)) + 1);
    case Interval::kDay:
      return call.Return(t.day);
    case Interval::kWeekday:
      return call.Return(Weekday(days, first_day));
    case Interval::kWeek:
      return call.Return(WeekOfYear(days, first_day, first_week));
    case Interval::kHour:
      return call.Return(t.hour);
    case Interval::kMinute:
      return call.Return(t.minute);
    case Interval::kSecond:
      return call.Return(t.second);
  }
}

void Year(Call& call) { call.Return(Parts(call, 0).year); }
void Month(Call& call) { call.Return(Parts(call, 0).month); }
void Day(Call& call) { call.Return(Parts(call, 0).day); }
void Hour(Call& call) { call.Return(Parts(call, 0).hour); }
void Minute(Call& call) { call.Return(Parts(call, 0).minute); }
void Second(Call& call) { call.Return(Parts(call, 0).second); }
void WeekdayFunction(Call& call) { call.Return(Weekday(call.Days(0), FirstDay(call, 1))); }

void WeekdayName(Call& call) {
  int day = call.SmallInteger(0);
  if (day < 1 || day > 7) FailInvalidCall();
  std::string_view name = DayName((day - 1 + FirstDay(call, 2) - 1) % 7 + 1);
  bool shortened = call.SmallInteger(1, 0) != 0;
  call.Return(shortened ? name.substr(0, 2) : name);
}

void MonthNameFunction(Call& call) {
  int month = call.SmallInteger(0);
  if (month < 1 || month > 12) FailInvalidCall();
  std::string_view name = MonthName(month);
  bool shortened = call.SmallInteger(1, 0) != 0;
  call.Return(shortened ? name.substr(0, 3) : name);
}

void DateSerial(Call& call) {
  int year = call.SmallInteger(0);
  if (year >= 0 && year < 100) year += year < 50 ? 2000 : 1900;
  ReturnDate(call, SerialAcross(year, call.SmallInteger(1), call.SmallInteger(2)));
}

void DateValue(Call& call) { ReturnDate(call, std::trunc(call.Days(0))); }
void TimeValue(Call& call) { call.Return(TimeOf(call.Days(0))); }

void TimeSerial(Call& call) {
  double seconds = call.SmallInteger(0) * 3600.0 + call.SmallInteger(1) * 60.0 + call.SmallInteger(2);
  ReturnDate(call, FromSteady(seconds / 86400));
}

void NowFunction(Call& call) { call.Return(Now()); }
void Today(Call& call) { call.Return(std::floor(Now())); }
void TimeNow(Call& call) { call.Return(TimeOf(Now())); }

/// Arguments known to be dates never get here: to SQLite they are plain numbers, which are no dates.
void IsDate(Call& call) { call.Return(call.type(0) == SQLITE_TEXT && ParseDate(call.Text(0)).has_value()); }

}  // namespace

std::string_view MonthName(int month) {
  static constexpr std::array<std::string_view, 12> kNames = {
      "ianuarie", "februarie", "martie",     "aprilie",   "mai",       "iunie",
      "iulie",    "august",    "septembrie", "octombrie", "noiembrie", "decembrie"};
  return kNames[static_cast<std::size_t>(month - 1)];
}

std::string_view DayName(int day_from_sunday) {
  static constexpr std::array<std::string_view, 7> kNames = {"duminica", "luni",   "marti",  "miercuri",
                                                             "joi",      "vineri", "sambata"};
  return kNames[static_cast<std::size_t>(day_from_sunday - 1)];
}

int WeekOfYear(double days, int first_weekday, int first_week) {
  int year = platform::FromSerial(days).year;
  auto start_of = [&](int y) {
    double january = Serial(y, 1, 1);
    int in_week = Weekday(january, first_weekday);  // 1: the year begins on the first day of a week
    double start = january - (in_week - 1);
    bool counts = first_week == 1 || (first_week == 2 && in_week <= 4) || (first_week == 3 && in_week == 1);
    return counts ? start : start + 7;
  };
  double day = static_cast<double>(DayNumber(days));
  double start = start_of(year);
  if (day < start) start = start_of(year - 1);
  // The last days of December may be in the first week of the next year, except where 1 January opens a week
  // on its own count.
  if (first_week != 1 && day >= start_of(year + 1)) start = start_of(year + 1);
  return static_cast<int>((day - start) / 7) + 1;
}

void RegisterDates(sqlite3* db) {
  static constexpr Definition kDefinitions[] = {
      {"now", 0, 0, Enter<NowFunction>, false},
      {"date", 0, 0, Enter<Today>, false},
      {"time", 0, 0, Enter<TimeNow>, false},
      {"year", 1, 1, Enter<NullThrough<Year>>},
      {"month", 1, 1, Enter<NullThrough<Month>>},
      {"day", 1, 1, Enter<NullThrough<Day>>},
      {"hour", 1, 1, Enter<NullThrough<Hour>>},
      {"minute", 1, 1, Enter<NullThrough<Minute>>},
      {"second", 1, 1, Enter<NullThrough<Second>>},
      {"weekday", 1, 2, Enter<NullThrough<WeekdayFunction>>},
      {"weekdayname", 1, 3, Enter<NullThrough<WeekdayName>>},
      {"monthname", 1, 2, Enter<NullThrough<MonthNameFunction>>},
      {"dateadd", 3, 3, Enter<NullThrough<DateAdd>>},
      {"datediff", 3, 5, Enter<NullThrough<DateDiff>>},
      {"datepart", 2, 4, Enter<NullThrough<DatePart>>},
      {"dateserial", 3, 3, Enter<NullThrough<DateSerial>>},
      {"datevalue", 1, 1, Enter<NullThrough<DateValue>>},
      {"timeserial", 3, 3, Enter<NullThrough<TimeSerial>>},
      {"timevalue", 1, 1, Enter<NullThrough<TimeValue>>},
      {"isdate", 1, 1, Enter<IsDate>},
  };
  RegisterAll(db, kDefinitions);
}

}  // namespace functions
}  // namespace store
