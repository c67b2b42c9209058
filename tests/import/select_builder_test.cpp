#include "import/select_builder.h"

#include <gmock/gmock.h>

#include "import/stored_rounding.h"

namespace {

using importer::BuildSelect;
using importer::ColumnRule;

ColumnRule Present(std::string name, int number, std::string value, std::string size) {
  return {std::move(name), true, number, std::move(value), std::move(size)};
}
ColumnRule Absent(std::string name, std::string value, std::string size) {
  return {std::move(name), false, std::nullopt, std::move(value), std::move(size)};
}

std::string Build(const std::vector<ColumnRule>& rules) {
  return BuildSelect(rules, {"Nr", "Moneda facturii", "Cod"}, "Sheet1").statement;
}

TEST(SelectBuilder, WritesEveryCombinationOfPresenceDefaultAndSize) {
  EXPECT_EQ(Build({Present("Cod_NC", 3, "0", "8")}),
            R"(SELECT LEFT(IIF(ISNULL([Cod]),"0" ,[Cod]) ,8) AS Cod_NC FROM [Sheet1$])");
  EXPECT_EQ(Build({Present("Cod_NC", 3, "", "8")}), "SELECT LEFT([Cod] ,8) AS Cod_NC FROM [Sheet1$]");
  EXPECT_EQ(Build({Present("Cod_NC", 3, "0", "")}),
            "SELECT IIF(ISNULL([Cod]),0 ,[Cod]) AS Cod_NC FROM [Sheet1$]");
  EXPECT_EQ(Build({Present("Cod_NC", 3, "", "")}), "SELECT [Cod] AS Cod_NC FROM [Sheet1$]");
  EXPECT_EQ(Build({Absent("Moneda", "RON", "3")}), "SELECT 'RON' AS Moneda FROM [Sheet1$]");
  EXPECT_EQ(Build({Absent("Net", "1.5", "")}), "SELECT 1.5 AS Net FROM [Sheet1$]");
}

TEST(SelectBuilder, LeavesOutAbsentColumnsWithoutDefault) {
  EXPECT_EQ(Build({Absent("UM", "", "5"), Present("Moneda", 2, " ", " "), Absent("Net", " ", "")}),
            "SELECT [Moneda facturii] AS Moneda FROM [Sheet1$]");
  EXPECT_EQ(Build({Absent("UM", "", "5"), Absent("Net", "", "")}), "SELECT  FROM [Sheet1$]")
      << "an empty list, which the database refuses";
}

TEST(SelectBuilder, KeepsTheOrderOfTheTemplate) {
  EXPECT_EQ(Build({Present("B", 3, "", ""), Absent("C", "0", ""), Present("A", 1, "", "2")}),
            "SELECT [Cod] AS B, 0 AS C, LEFT([Nr] ,2) AS A FROM [Sheet1$]");
}

TEST(SelectBuilder, RefusesColumnsThatTheSheetLacks) {
  EXPECT_THAT(BuildSelect({Present("Net", 4, "", "")}, {"A", "B", "C"}, "Sheet1").problem,
              testing::AllOf(testing::HasSubstr("Net"), testing::HasSubstr("4"), testing::HasSubstr("Sheet1"),
                             testing::HasSubstr("3 coloane")));
  EXPECT_THAT(BuildSelect({{"Net", true, std::nullopt, "", ""}}, {"A"}, "Sheet1").problem,
              testing::HasSubstr("Net nu are numar"));
  EXPECT_NE(BuildSelect({Present("Net", 0, "", "")}, {"A"}, "Sheet1").problem, "");
}

TEST(StoredRounding, TakesHalvesOfTheStoredValueToTheEvenNeighbour) {
  const auto round = importer::RoundStored;
  EXPECT_EQ(round(0.5, 0), 0);
  EXPECT_EQ(round(1.5, 0), 2);
  EXPECT_EQ(round(-0.4, 0), 0);
  EXPECT_FALSE(std::signbit(round(-0.4, 0)));
  EXPECT_EQ(round(0.125, 2), 0.12);
  EXPECT_EQ(round(-0.375, 2), -0.38);
  EXPECT_EQ(round(1e300, 4), 1e300);
}

TEST(StoredRounding, SeesWhichSideOfAHalfTheStoredValueLies) {
  const auto round = importer::RoundStored;
  EXPECT_EQ(round(2.675, 2), 2.67) << "stored as 2.67499…";
  EXPECT_EQ(round(1.005, 2), 1.0) << "stored as 1.00499…";
  EXPECT_EQ(round(8.345, 2), 8.35) << "stored as 8.34500…6";
  EXPECT_EQ(round(-2.675, 2), -2.67);
  EXPECT_EQ(round(1.00005, 4), 1.0001) << "stored as 1.0000500…7";
}

}  // namespace
