#include "calc/rounding/rounding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace calc {
namespace {

TEST(Rounding, TrueHalvesGoToTheEvenNeighbour) {
  EXPECT_EQ(Round(2.5, 0), 2);
  EXPECT_EQ(Round(3.5, 0), 4);
  EXPECT_EQ(Round(0.125, 2), 0.12);
  EXPECT_EQ(Round(0.375, 2), 0.38);
  EXPECT_EQ(Round(-2.5, 0), -2);
  EXPECT_EQ(Round(-3.5, 0), -4);
  EXPECT_EQ(Round(0.03125, 4), 0.0312);
}

TEST(Rounding, TheImportFollowsTheStoredValueTheRestTheProductAsStatementsDo) {
  EXPECT_EQ(RoundStored(2.675, 2), 2.67);  // stored as 2.67499…
  EXPECT_EQ(RoundStored(1.005, 2), 1.0);   // stored as 1.00499…
  EXPECT_EQ(RoundStored(1.115, 2), 1.11);  // stored as 1.11499…, although 1.115 * 100 is exactly 111.5
  EXPECT_EQ(RoundStored(0.545, 2), 0.55);  // stored as 0.54500…4
  EXPECT_EQ(RoundStored(0.125, 2), 0.12);
  EXPECT_EQ(RoundStored(-2.675, 2), -2.67);
  EXPECT_EQ(Round(2.675, 2), 2.68);
  EXPECT_EQ(Round(1.115, 2), 1.12);
  EXPECT_EQ(Round(0.545, 2), 0.55);
}

TEST(Rounding, KeepsLargeAndSpecialValuesAndNeverAnswersNegativeZero) {
  EXPECT_EQ(Round(9007199254740993.0, 4), 9007199254740993.0);
  EXPECT_TRUE(std::isnan(Round(std::nan(""), 2)));
  EXPECT_TRUE(std::isinf(Round(std::numeric_limits<double>::infinity(), 0)));
  EXPECT_FALSE(std::signbit(Round(-0.004, 2)));
  EXPECT_EQ(Round(4.97514999, 4), 4.9751);
}

TEST(Rounding, NudgeRaisesExactHalvesOnly) {
  EXPECT_EQ(NudgeHalf(12.5), 12.501);
  EXPECT_EQ(NudgeHalf(0.5), 0.501);
  EXPECT_EQ(NudgeHalf(12.49), 12.49);
  EXPECT_EQ(NudgeHalf(-2.5), -2.5 + 0.001);  // -2.5 lies half above its floor
  EXPECT_EQ(Round(NudgeHalf(2.5), 0), 3);
}

TEST(Rounding, WholeNumbersOfTheFileTakeHalvesUp) {
  EXPECT_EQ(WholeNumber(12.5), 13);
  EXPECT_EQ(WholeNumber(13.5), 14);
  EXPECT_EQ(WholeNumber(12.49), 12);
  EXPECT_EQ(WholeNumber(12.501), 13);
  EXPECT_EQ(WholeNumber(-2.5), -2);  // a negative value's fraction is -0.5: no rise
  EXPECT_EQ(WholeNumber(123456789012.0), 123456789012LL);
  EXPECT_EQ(WholeNumber(1e30), std::numeric_limits<long long>::max());
}

}  // namespace
}  // namespace calc
