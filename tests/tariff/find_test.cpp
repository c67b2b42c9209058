#include "tariff/find.h"

#include <gtest/gtest.h>

#include "tariff/levels.h"

namespace {

using tariff::FindCondition;
using tariff::FindOption;
using tariff::Narrow;

TEST(FindCondition, ComparesAsChosen) {
  EXPECT_EQ(FindCondition(FindOption::kEqual, "[A]", "x"), "[A] = 'x'");
  EXPECT_EQ(FindCondition(FindOption::kBegins, "[A]", "x"), "[A] LIKE 'x%'");
  EXPECT_EQ(FindCondition(FindOption::kContains, "[A]", "x"), "[A] LIKE '%x%'");
  EXPECT_EQ(FindCondition(FindOption::kWords, "[A]", "aparate+ electrice"),
            "[A] LIKE '%aparate%' AND [A] LIKE '%electrice%'");
  EXPECT_EQ(FindCondition(FindOption::kWords, "[A]", "cai-magari"),
            "[A] LIKE '%cai%' OR [A] LIKE '%magari%'");
  EXPECT_EQ(FindCondition(FindOption::kWords, "[A]", "a+b-c"), "[A] LIKE '%a%' AND [A] LIKE '%b-c%'");
  EXPECT_EQ(FindCondition(FindOption::kWords, "[A]", "un cal"), "[A] LIKE '%un cal%'");
}

TEST(Narrow, KeepsConditionAndOrder) {
  EXPECT_EQ(Narrow("SELECT a FROM T order by a", "a = '1'"), "SELECT a FROM T WHERE a = '1' order by a");
  EXPECT_EQ(Narrow("SELECT a FROM T", "a = '1'"), "SELECT a FROM T WHERE a = '1'");
  EXPECT_EQ(
      Narrow(tariff::FindLevel(8)->query, "[DESCRIERE] LIKE '%cai%'"),
      "SELECT [HS8_COD],[HS12_COD], [DESCRIERE],[UM_SUPL], [AN_START] FROM [HS_8] WHERE [AN_END] IS NULL "
      "AND [DESCRIERE] LIKE '%cai%' ORDER BY [HS12_COD]");
  EXPECT_EQ(Narrow("SELECT a FROM T WHERE a=1 OR b=2 ORDER BY a", "c = '3'"),
            "SELECT a FROM T WHERE (a=1 OR b=2) AND c = '3' ORDER BY a");
  EXPECT_EQ(Narrow("SELECT a FROM T WHERE a=1", "c LIKE '%x%' OR c LIKE '%y%'"),
            "SELECT a FROM T WHERE a=1 AND (c LIKE '%x%' OR c LIKE '%y%')");
}

TEST(SelectedColumns, AreNamedAsTheStatementWritesThem) {
  EXPECT_EQ(
      tariff::SelectedColumns("SELECT TR1_COD + '.'+ TR2_COD, TR_DESC FROM Tranzactii ORDER BY TR1_COD"),
      (std::vector<std::string>{"(TR1_COD + '.'+ TR2_COD)", "TR_DESC"}));
  EXPECT_EQ(tariff::SelectedColumns("select LEFT([A B],2), ', from ' & [C], [D] from T"),
            (std::vector<std::string>{"(LEFT([A B],2))", "(', from ' & [C])", "[D]"}));
}

TEST(Levels, GoUpToTheSections) {
  EXPECT_EQ(tariff::LevelAbove(*tariff::FindLevel(1)), nullptr);
  EXPECT_EQ(tariff::ParentStatement(*tariff::FindLevel(8), "84713000"),
            "SELECT [HS6_COD] FROM [HS_8] WHERE [HS8_COD]='84713000'");
}

TEST(Levels, GoDownToTheCodes) {
  EXPECT_EQ(tariff::ChildrenStatement(*tariff::FindLevel(1), "XVI"),
            "SELECT [HS2_COD], [HS2_DESC], [HS2_NOTE] FROM [HS_2] WHERE [HS1_COD]='XVI' ORDER BY [HS2_COD]");
  EXPECT_EQ(tariff::ChildrenStatement(*tariff::FindLevel(6), "847130"),
            "SELECT [HS8_COD],[HS12_COD], [DESCRIERE],[UM_SUPL], [AN_START] FROM [HS_8] WHERE HS6_COD "
            "='847130' AND "
            "[AN_END] IS NULL ORDER BY [HS12_COD]");
  EXPECT_EQ(tariff::ChildrenStatement(*tariff::FindLevel(8), "84713000"), "");
}

}  // namespace
