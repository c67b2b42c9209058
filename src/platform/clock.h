#pragma once

#include <chrono>
#include <string>

namespace platform {

/// Local civil date and time, to the second.
struct LocalTime {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;

  friend bool operator==(const LocalTime&, const LocalTime&) = default;
};

/// Days since 1899-12-30 as the database engine counts dates; the fraction is the time of day.
double ToSerial(const LocalTime& time);
LocalTime FromSerial(double serial);

/// The user's local time of a moment, such as a file's last change.
LocalTime ToLocal(std::chrono::system_clock::time_point when);

/// False for days that no calendar has (30 February, month 13).
bool IsValidDate(int year, int month, int day);

/// The time now; virtual so that tests fix it.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime Now() const = 0;
};

class SystemClock : public Clock {
 public:
  LocalTime Now() const override;
};

class FixedClock : public Clock {
 public:
  explicit FixedClock(LocalTime now) : now_(now) {}
  LocalTime Now() const override { return now_; }
  void Set(LocalTime now) { now_ = now; }

 private:
  LocalTime now_;
};

/// Operating-system user name; "N/A" where there is none.
std::string UserName();

}  // namespace platform
