#pragma once

#include <cmath>

namespace importer {

/// Rounds the exact stored value to `decimals` (0 to 4), a half of it going to the even neighbour: 2.675,
/// which is stored slightly below, gives 2.67; 0.125 gives 0.12. Only the taking over of worksheets rounds
/// so.
inline double RoundStored(double value, int decimals) {
  static constexpr double kPowers[] = {1, 10, 100, 1000, 10000};
  const double power = kPowers[decimals];
  const double scaled = value * power;
  if (!(std::abs(scaled) < 4503599627370496.0)) return value;  // 2^52: no fraction left
  const double below = std::floor(scaled);
  double whole = std::nearbyint(scaled);
  if (scaled - below == 0.5) {
    // The product looks like a half; what multiplying lost says on which side the value really lies.
    const double lost = std::fma(value, power, -scaled);
    if (lost > 0) whole = below + 1;
    if (lost < 0) whole = below;
  }
  return whole / power + 0.0;  // never a negative zero
}

}  // namespace importer
