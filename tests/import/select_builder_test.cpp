#include "import/select_builder.h"

#include <gmock/gmock.h>

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

}  // namespace
