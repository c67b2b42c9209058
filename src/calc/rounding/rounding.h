#pragma once

namespace calc {

/// Rounds to `decimals` (0 to 4) as ROUND does in statements: scaled by 10^decimals in binary, then an exact
/// half goes to the even neighbour. 2.5 gives 2, 0.125 to 2 decimals 0.12, 2.675 (whose product is a
/// half) 2.68. Never answers a negative zero.
double Round(double value, int decimals);

/// The rounding of the spreadsheet import: half to even on the exact stored value, so that 2.675, which is
/// stored a little below its half, gives 2.67.
double RoundStored(double value, int decimals);

/// Adds 0.001 to a value whose fraction (value minus its floor) is exactly one half, so that later rounding
/// takes it up.
double NudgeHalf(double value);

/// Whole number as the declaration file writes it: exact halves of (value minus integer part) go up by 0.001
/// first.
long long WholeNumber(double value);

}  // namespace calc
