#include "calc/rates.h"

#include <gtest/gtest.h>

#include "support/installation.h"

namespace calc {
namespace {

store::Date Day(int year, int month, int day) { return {platform::ToSerial({year, month, day, 0, 0, 0})}; }

class RatesTest : public testing::Test {
 protected:
  session::Session& session() { return bench_.session; }
  float Rate(const char* currency, const store::Value& date) {
    return Curs_Schimb(session(), currency, date);
  }
  test_support::Installation bench_;
};

TEST_F(RatesTest, TakesTheLatestRateOfADayBeforeTheDocument) {
  AddRate(session(), "EUR", Day(2024, 3, 1), 4.9701, 1);
  AddRate(session(), "EUR", Day(2024, 3, 4), 4.9751, 1);
  AddRate(session(), "USD", Day(2024, 3, 3), 4.59, 1);
  EXPECT_EQ(Rate("EUR", Day(2024, 3, 4)), 4.9701F);
  EXPECT_EQ(Rate("EUR", Day(2024, 3, 5)), 4.9751F);
  EXPECT_EQ(Rate("eur", Day(2025, 1, 1)), 4.9751F);
  EXPECT_EQ(Rate("EUR", Day(2024, 3, 1)), 0);
  EXPECT_EQ(Rate("CHF", Day(2024, 3, 5)), 0);
  EXPECT_EQ(Rate("EUR", store::Date{Day(2024, 3, 4).days + 0.75}), 4.9701F);  // the hour does not count
  EXPECT_EQ(bench_.machine.errors.count(), 0);
}

TEST_F(RatesTest, DividesByTheMultiplierAndRoundsToFourDecimals) {
  AddRate(session(), "HUF", Day(2026, 1, 5), 1.2345, 100);
  AddRate(session(), "JPY", Day(2026, 1, 5), 3.2, 0);
  EXPECT_EQ(Rate("HUF", Day(2026, 1, 6)), 0.0123F);
  EXPECT_EQ(Rate("JPY", Day(2026, 1, 6)), 0);
}

TEST_F(RatesTest, EmptyOrBrokenArgumentsGiveNoRate) {
  EXPECT_EQ(Rate("", Day(2026, 1, 6)), 0);
  EXPECT_EQ(Rate(" ", Day(2026, 1, 6)), 0);
  EXPECT_EQ(Rate("EUR", store::Value()), 0);
  EXPECT_EQ(Rate("EUR", "nu este data"), 0);
  EXPECT_EQ(bench_.machine.errors.count(), 0);
  EXPECT_EQ(Rate("E'R", Day(2026, 1, 6)), 0);
  EXPECT_EQ(bench_.machine.errors.count(), 1);  // the broken statement is noted
}

TEST_F(RatesTest, AddingReplacesTheSameDayAndKeepsFourDecimals) {
  AddRate(session(), "EUR", Day(2026, 1, 5), 4.97514999, 1);
  AddRate(session(), "EUR", Day(2026, 1, 5), 5.08125, 10);
  const store::Recordset rates = session().company.Query("SELECT * FROM Rate_Schimb");
  ASSERT_EQ(rates.record_count(), 1);
  EXPECT_EQ(rates["Curs_Schimb"].ToDouble(), 5.0812);  // 5.08125 is stored a little below its half
  EXPECT_EQ(rates["Multiplicator"].ToInteger(), 10);
}

}  // namespace
}  // namespace calc
