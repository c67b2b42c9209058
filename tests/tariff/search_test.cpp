#include "tariff/search.h"

#include <gtest/gtest.h>

#include <set>

#include "support/sample_lines.h"

namespace {

using test_support::Installation;

TEST(SearchTariff, FindsByWordAndByDigitsInBoth) {
  Installation at;
  test_support::AddLine(at.session, "I", 2026, 2, {{"Descriere", "Laptop PROBA"}});
  test_support::AddLine(at.session, "I", 2026, 3, {{"Descriere", "Laptop proba nou"}});
  test_support::AddLine(at.session, "O", 2025, 12, {{"Descriere", "Altceva"}});
  const auto by_word = tariff::SearchTariff(at.session, "proba");
  ASSERT_TRUE(by_word);
  EXPECT_EQ(by_word->declarations_status,
            "2 Inregistrari gasite in declaratiile intrastat pentru expresia : proba");
  EXPECT_EQ(by_word->declarations["luna"].ToInteger(), 3);  // the newest first
  const auto by_code = tariff::SearchTariff(at.session, "84713000");
  ASSERT_TRUE(by_code);
  EXPECT_EQ(by_code->tariff_status, "1 Inregistrari gasite in tariful vamal pentru expresia : 84713000");
  EXPECT_EQ(by_code->tariff["HS12_COD"].ToText(), "847130000000");
  EXPECT_EQ(by_code->declarations.record_count(), 3);
}

TEST(SearchTariff, ReadsRowsThatAreNoLongerValid) {
  Installation at;
  at.session.tariff.Execute("UPDATE HS_8 SET AN_END=2025 WHERE HS8_COD='84713000'");
  EXPECT_EQ(tariff::SearchTariff(at.session, "84713000")->tariff.record_count(), 1);
}

TEST(SearchTariff, WithoutATariffChoosesThatOfTheCurrentWork) {
  Installation at;
  at.session.tariff.Close();
  at.session.Anul = 2026;
  at.session.Luna = 3;
  EXPECT_EQ(tariff::SearchTariff(at.session, "84713000")->tariff.record_count(), 1);
  at.session.tariff.Close();
  at.session.common.Execute("DELETE FROM InsCodeVersions");
  at.prompter().ExpectError("Nu se poate identifica tabela tarif vamal");
  const auto found = tariff::SearchTariff(at.session, "84713000");
  EXPECT_EQ(found->tariff_status, "");
  EXPECT_EQ(found->declarations.record_count(), 0);
}

TEST(SearchTariff, FoundLinesAreToldApart) {
  Installation at;
  for (const double amount : {10.0, 20.0, 10.0, 30.0}) {
    test_support::AddLine(at.session, "I", 2026, 3, {{"Descriere", "Pompa"}, {"Val_Fiscala", amount}});
  }
  test_support::AddLine(at.session, "O", 2026, 2, {{"Descriere", "Pompa"}, {"Val_Fiscala", 10.0}});
  store::Recordset found = tariff::SearchTariff(at.session, "pompa")->declarations;
  found.SetSort("Val_Fiscala");  // as the user may have put it
  std::set<std::int64_t> lines;
  for (int row = 0; row < 5; ++row) {
    const auto line = tariff::FoundLine(at.session, found, row);
    ASSERT_TRUE(line);
    lines.insert(*line);
    found.set_position(row);
    EXPECT_EQ(at.Get(fmt::format("SELECT Val_Fiscala FROM Intrastat WHERE Record_ID={}", *line)), found[5]);
    EXPECT_EQ(at.Get(fmt::format("SELECT luna FROM Intrastat WHERE Record_ID={}", *line)), found[1]);
  }
  EXPECT_EQ(lines.size(), 5U);
  at.Run("UPDATE Intrastat SET Val_Fiscala=31 WHERE Val_Fiscala=30");
  EXPECT_EQ(tariff::FoundLine(at.session, found, 4), std::nullopt);
}

TEST(SearchTariff, NothingForNothingAndAQuoteFails) {
  Installation at;
  EXPECT_FALSE(tariff::SearchTariff(at.session, ""));
  EXPECT_THROW(tariff::SearchTariff(at.session, "d'Artagnan"), store::Error);
}

}  // namespace
