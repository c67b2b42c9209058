#include "platform/spreadsheet/number_format.h"

namespace platform::spreadsheet {
namespace {

using Kind = NumberFormat::Kind;

TEST(NumberFormat, TellsDatesAndTimesFromNumbers) {
  const std::pair<const char*, Kind> cases[] = {
      {"General", Kind::kNumber},
      {"Standard", Kind::kNumber},
      {"0.00", Kind::kNumber},
      {"#,##0.00\\ \"lei\"", Kind::kNumber},
      {"0\\d", Kind::kNumber},
      {"#,##0 \"USD\";[Red]-#,##0 \"USD\"", Kind::kNumber},
      {"#,##0.00\\ [$DM-407]", Kind::kNumber},
      {"_-* #,##0_d_-", Kind::kNumber},
      {"0.00E+00", Kind::kNumber},
      {"@", Kind::kNumber},
      {"", Kind::kNumber},
      {"\"ym", Kind::kNumber},  // a quote left open
      {"[Red", Kind::kNumber},
      {"dd.mm.yyyy", Kind::kDate},
      {"dd\\.mm\\.yyyy", Kind::kDate},
      {"[$-418]d\\ mmmm\\ yyyy;@", Kind::kDate},
      {"mmm", Kind::kDate},
      {"\"la \"yyyy", Kind::kDate},
      {"[=0]\"\";dd/mm/yy", Kind::kDate},
      {"yyyy-mm-dd hh:mm:ss.000", Kind::kDate},
      {"h:mm AM/PM", Kind::kTime},
      {"mm:ss.0", Kind::kTime},
      {"[h]:mm", Kind::kElapsed},
      {"[mm]:ss", Kind::kElapsed},
      {"[ss]", Kind::kElapsed},
  };
  for (const auto& [format, kind] : cases) EXPECT_EQ(ClassifyNumberFormat(format).kind, kind) << format;
}

TEST(NumberFormat, KnowsZeroPadding) {
  const std::pair<const char*, int> cases[] = {
      {"00000000", 8},    {"00000000;-00000000", 8},
      {"[$-418]0000", 4}, {"0", 0},
      {"0.00", 0},        {"#0000", 0},
      {"000-000", 0},     {"00\"x\"", 0},
  };
  for (const auto& [format, pad] : cases) EXPECT_EQ(ClassifyNumberFormat(format).zero_pad, pad) << format;
}

TEST(NumberFormat, KnowsTheUnstoredDates) {
  EXPECT_EQ(BuiltInNumberFormat(14).kind, Kind::kDate);
  EXPECT_EQ(BuiltInNumberFormat(20).kind, Kind::kTime);
  EXPECT_EQ(BuiltInNumberFormat(22).kind, Kind::kDate);
  EXPECT_EQ(BuiltInNumberFormat(46).kind, Kind::kElapsed);
  for (const int plain : {0, 1, 2, 4, 9, 10, 12, 37, 44, 48, 49, 59}) {
    EXPECT_EQ(BuiltInNumberFormat(static_cast<std::uint16_t>(plain)).kind, Kind::kNumber) << plain;
  }
}

}  // namespace
}  // namespace platform::spreadsheet
