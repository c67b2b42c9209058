#include "calc/rounding/rounding.h"

#include <array>
#include <cmath>
#include <limits>

#include "store/functions.h"

namespace calc {

double Round(double value, int decimals) { return store::RoundHalfEven(value, decimals) + 0.0; }

double RoundStored(double value, int decimals) {
  static constexpr std::array<double, 5> kScales = {1, 10, 100, 1000, 10000};
  const double scale = kScales.at(static_cast<std::size_t>(decimals));
  const double scaled = value * scale;
  if (!(std::fabs(scaled) < 4503599627370496.0)) return value;  // 2^52: no fraction left, or not finite
  const double below = std::floor(scaled);
  const double fraction = scaled - below;
  // What the multiplication lost tells a stored 2.675 (a little below its half) from a true half.
  const double lost = std::fma(value, scale, -scaled);
  double whole = below;
  if (fraction > 0.5 || (fraction == 0.5 && lost > 0)) {
    whole += 1;
  } else if (fraction == 0.5 && lost == 0 && std::fmod(below, 2) != 0) {
    whole += 1;
  }
  return whole / scale + 0.0;  // + 0.0 turns a negative zero into zero
}

double NudgeHalf(double value) { return value - std::floor(value) == 0.5 ? value + 0.001 : value; }

long long WholeNumber(double value) {
  if (std::isnan(value)) return 0;
  if (value - std::trunc(value) == 0.5) value += 0.001;
  const double whole = Round(value, 0);
  // The nearest doubles inside the range of long long.
  if (whole >= 9223372036854775807.0) return std::numeric_limits<long long>::max();
  if (whole <= -9223372036854775808.0) return std::numeric_limits<long long>::min();
  return static_cast<long long>(whole);
}

}  // namespace calc
