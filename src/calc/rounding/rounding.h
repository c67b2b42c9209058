#pragma once

namespace calc {

/// Rounds to `decimals` (0 to 4), an exact half of the stored value going to the even neighbour: 2.5 gives 2,
/// 0.125 to 2 decimals gives 0.12. Never answers a negative zero.
double Round(double value, int decimals);

/// Adds 0.001 to a value whose fraction (value minus its floor) is exactly one half, so that later rounding
/// takes it up.
double NudgeHalf(double value);

/// Whole number as the declaration file writes it: exact halves of (value minus integer part) go up by 0.001
/// first.
long long WholeNumber(double value);

}  // namespace calc
