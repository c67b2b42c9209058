#include "platform/clock.h"

#include <chrono>
#include <cmath>
#include <ctime>

#ifdef _WIN32
#include <windows.h>
// after windows.h
#include <lmcons.h>
#else
#include <pwd.h>
#include <unistd.h>
#endif

namespace platform {
namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr sys_days kDayZero = std::chrono::year{1899} / std::chrono::December / 30;
constexpr long long kSecondsPerDay = 86400;

}  // namespace

double ToSerial(const LocalTime& time) {
  const sys_days day =
      sys_days(std::chrono::year{time.year} / std::chrono::month{static_cast<unsigned>(time.month)} / 1) +
      days{time.day - 1};
  const double whole = static_cast<double>((day - kDayZero).count());
  const double part = (time.hour * 3600 + time.minute * 60 + time.second) / double{kSecondsPerDay};
  // Before day zero the engine counts the time of day away from zero: -1.25 is six in the morning of day -1.
  return whole < 0 ? whole - part : whole + part;
}

LocalTime FromSerial(double serial) {
  double whole = std::trunc(serial);
  long long seconds = std::llround(std::fabs(serial - whole) * kSecondsPerDay);
  if (seconds >= kSecondsPerDay) {
    seconds -= kSecondsPerDay;
    whole += 1;
  }
  const std::chrono::year_month_day date{kDayZero + days{static_cast<long long>(whole)}};
  LocalTime time;
  time.year = static_cast<int>(date.year());
  time.month = static_cast<int>(static_cast<unsigned>(date.month()));
  time.day = static_cast<int>(static_cast<unsigned>(date.day()));
  time.hour = static_cast<int>(seconds / 3600);
  time.minute = static_cast<int>(seconds / 60 % 60);
  time.second = static_cast<int>(seconds % 60);
  return time;
}

bool IsValidDate(int year, int month, int day) {
  if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return false;
  return (std::chrono::year{year} / std::chrono::month{static_cast<unsigned>(month)} /
          std::chrono::day{static_cast<unsigned>(day)})
      .ok();
}

LocalTime ToLocal(std::chrono::system_clock::time_point when) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(when);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &seconds);
#else
  localtime_r(&seconds, &local);
#endif
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

LocalTime SystemClock::Now() const { return ToLocal(std::chrono::system_clock::now()); }

std::string UserName() {
#ifdef _WIN32
  wchar_t wide[UNLEN + 1];
  DWORD length = UNLEN + 1;
  if (GetUserNameW(wide, &length) && wide[0] != 0) {
    char utf8[4 * (UNLEN + 1)];
    const int written = WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8, sizeof utf8, nullptr, nullptr);
    if (written > 1) return std::string(utf8);
  }
#else
  if (const passwd* entry = getpwuid(geteuid()); entry != nullptr && entry->pw_name[0] != '\0') {
    return entry->pw_name;
  }
#endif
  return "N/A";
}

}  // namespace platform
