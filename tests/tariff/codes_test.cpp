#include "tariff/codes.h"

#include <gtest/gtest.h>

#include "support/installation.h"
#include "tariff/lookup.h"

namespace tariff {
namespace {

class CodesTest : public testing::Test {
 protected:
  session::Session& session() { return bench_.session; }
  std::string Describe(const char* column, const char* code) {
    return CodeDescription(session(), *FindCodeCheck(column), code).value_or("(unknown)");
  }
  test_support::Installation bench_;
};

TEST_F(CodesTest, EveryCheckAnswersForAKnownCodeAndNotForAnother) {
  const std::vector<std::pair<const char*, const char*>> kKnown = {
      {"Cod_NC", "84713000"}, {"Moneda", "EUR"},  {"Tara_Orig", "CN"}, {"tara_exp", "DE"},
      {"Tara_Dest", "XI"},    {"UM", "p/st"},     {"Cod_UMS", "m2"},   {"Nat_Tranz", "1.1"},
      {"Incoterms", "DAP"},   {"Mod_Transp", "3"}};
  for (const auto& [column, code] : kKnown) {
    SCOPED_TRACE(column);
    EXPECT_NE(Describe(column, code), "(unknown)");
    EXPECT_NE(Describe(column, code), "");
    EXPECT_EQ(Describe(column, "@@"), "(unknown)");
    EXPECT_EQ(Describe(column, ""), "(unknown)");
    EXPECT_THROW(Describe(column, "'"), store::Error);
  }
  EXPECT_EQ(Describe("Tara_Exp", "CN"), "(unknown)");
  EXPECT_EQ(FindCodeCheck("Descriere"), nullptr);
  EXPECT_EQ(CheckStatement(*FindCodeCheck("Tara_Dest"), "DE"),
            "SELECT [COD_TARA] ,[Tara_DESC] FROM [UE_Tari] WHERE [COD_TARA]='DE'");
}

TEST_F(CodesTest, ListsAreOrdered) {
  store::Recordset modes = session().company.Query(kModTranspList);
  EXPECT_EQ(modes[0].ToText(), "1");
  store::Recordset natures = session().company.Query(kNatTranzList);
  EXPECT_EQ(natures[0].ToText(), "1.1");
  EXPECT_EQ(session().company.Query(kCountiesList).record_count(), 42);
  store::Recordset towns = session().company.Query(TownsOfCounty(""));
  EXPECT_EQ(towns.record_count(), 0);
  EXPECT_LT(session().company.Query(TownsOfCounty("MS")).record_count(),
            session().company.Query(kTownsList).record_count());
}

TEST_F(CodesTest, SingleCodeLookup) {
  const std::string with_unit = Cautare_Tarif(session(), "84713000");
  EXPECT_TRUE(with_unit.ends_with("|p/st|1")) << with_unit;
  EXPECT_TRUE(Cautare_Tarif(session(), "39269097").ends_with("||0"));
  EXPECT_EQ(Cautare_Tarif(session(), "84710000"), "||");
  EXPECT_EQ(bench_.machine.errors.count(), 0);
  EXPECT_EQ(Cautare_Tarif(session(), "8471'"), "||");
  EXPECT_EQ(bench_.machine.errors.count(), 1);
  session().tariff.Close();
  EXPECT_EQ(Cautare_Tarif(session(), "84713000"), "||");
}

TEST_F(CodesTest, SubdivisionsOfACodeCollapseAndClosedRowsDoNotCount) {
  session().tariff.Execute("DELETE FROM HS_8");
  const auto add = [&](const std::string& code8, const std::string& code12, const std::string& text,
                       const std::string& unit, const std::string& end) {
    session().tariff.Execute(
        "INSERT INTO HS_8 (HS8_COD, HS12_COD, DESCRIERE, UM_SUPL, AN_START, AN_END) VALUES ('" + code8 +
        "','" + code12 + "','" + text + "'," + unit + ",2020," + end + ")");
  };
  add("11111111", "111111110000", " " + std::string(260, 'b'), "NULL", "NULL");
  add("11111111", "111111110001", "a", "'kg'", "NULL");
  add("22222222", "222222220000", "inchis", "'m'", "2024");
  const std::string found = Cautare_Tarif(session(), "11111111");
  const TariffAnswer answer = SplitAnswer(found);
  EXPECT_TRUE(answer.found);
  EXPECT_EQ(answer.unit, "kg");
  EXPECT_EQ(answer.flag, "1");
  EXPECT_EQ(Cautare_Tarif(session(), "22222222"), "||");
  EXPECT_EQ(SplitAnswer(" doua vorbe |l|1").description, "doua vorbe");
  EXPECT_FALSE(SplitAnswer("||").found);
}

class PeriodTest : public CodesTest {
 protected:
  void Versions(const std::vector<std::array<std::string, 5>>& rows) {
    session().common.Execute("DELETE FROM InsCodeVersions");
    for (const auto& [from_year, from_month, to_year, to_month, file] : rows) {
      session().common.Execute(
          "INSERT INTO InsCodeVersions (Anul, Luna, Anul_End, Luna_End, CN_File) VALUES (" + from_year + "," +
          from_month + "," + to_year + "," + to_month + ",'" + file + "')");
      const std::string path = session().settings.DataBase + "CN\\" + file;
      if (!bench_.machine.files.Exists(path)) bench_.machine.files.Copy(session().tariff.path(), path);
    }
  }
  std::string Chosen(int month, int year) {
    EXPECT_TRUE(ConexiuneTarif(session(), month, year));
    return std::string(platform::FileNameOf(session().tariff.path()));
  }
};

TEST_F(PeriodTest, YearAndMonthAreComparedSeparately) {
  Versions({{"2020", "1", "2020", "12", "a.mdb"}, {"2021", "1", "NULL", "NULL", "b.mdb"}});
  EXPECT_EQ(Chosen(3, 2021), "b.mdb");
  EXPECT_EQ(Chosen(12, 2020), "a.mdb");
  EXPECT_EQ(Chosen(3, 2019), "b.mdb");  // no row fits: the version in force
  Versions({{"2020", "7", "NULL", "NULL", "c.mdb"}});
  EXPECT_EQ(Chosen(2, 2021), "c.mdb");
  EXPECT_EQ(session().tariff_connection_string,
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=;Data Source='" + session().settings.DataBase +
                "CN\\c.mdb';Mode=Read|Write");
}

TEST_F(PeriodTest, YearZeroIsThisYearAndIsWrittenBack) {
  Versions({{"2026", "1", "NULL", "NULL", "b.mdb"}});
  int month = 2, year = 0;
  EXPECT_TRUE(ConexiuneTarif(session(), month, year));
  EXPECT_EQ(year, 2026);
}

TEST_F(PeriodTest, RefusalsAreShownAndLeaveTheTariffInUse) {
  const std::string before = session().tariff.path();
  int month = 3, year = 2026;
  Versions({});
  bench_.machine.prompter.ExpectError("Nu se poate identifica tabela tarif vamal");
  EXPECT_FALSE(ConexiuneTarif(session(), month, year));
  Versions({{"2026", "1", "NULL", "NULL", "lipsa.mdb"}});
  bench_.machine.files.Remove(session().settings.DataBase + "CN\\lipsa.mdb");
  bench_.machine.prompter.ExpectError("Nu se poate identifica fisierul pentru tabela tarif vamal");
  EXPECT_FALSE(ConexiuneTarif(session(), month, year));
  EXPECT_EQ(session().tariff.path(), before);
  EXPECT_NE(Cautare_Tarif(session(), "84713000"), "||");
}

TEST_F(PeriodTest, DamagedTariffFileIsShownAndTheEarlierOneServes) {
  Versions({{"2026", "1", "NULL", "NULL", "stricat.mdb"}});
  const std::string before = session().tariff.path();
  bench_.machine.files.Replace(session().settings.DataBase + "CN\\stricat.mdb", "nu este o baza de date");
  bench_.machine.prompter.AcceptAnything(false);
  int month = 3, year = 2026;
  EXPECT_FALSE(ConexiuneTarif(session(), month, year));
  EXPECT_EQ(bench_.machine.prompter.seen().size(), 1U);
  EXPECT_EQ(session().tariff.path(), before);
  EXPECT_NE(Cautare_Tarif(session(), "84713000"), "||");
}

TEST_F(PeriodTest, CompanyStatementsReadTheSameTariff) {
  Versions({{"2025", "1", "2025", "12", "a.mdb"}, {"2026", "1", "NULL", "NULL", "b.mdb"}});
  Chosen(3, 2026);
  session().tariff.Execute("DELETE FROM HS_8 WHERE HS8_COD='84713000'");
  EXPECT_EQ(Describe("Cod_NC", "84713000"), "(unknown)");
  Chosen(3, 2025);
  EXPECT_NE(Describe("Cod_NC", "84713000"), "(unknown)");
}

}  // namespace
}  // namespace tariff
