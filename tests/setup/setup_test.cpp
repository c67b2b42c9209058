#include "setup/setup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "companies/open_company.h"
#include "store/layout/layout.h"
#include "support/installation.h"
#include "tariff/lookup.h"

namespace setup {
namespace {

using test_support::Installation;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> Column(store::Connection& connection, std::string_view select) {
  std::vector<std::string> values;
  for (store::Recordset rows = connection.Query(select); !rows.eof(); rows.MoveNext()) {
    values.push_back(rows.Get(0).ToText());
  }
  return values;
}

TEST(Setup, LaysDownWhatTheProgramNeeds) {
  const auto begin = std::chrono::steady_clock::now();
  test_support::TestHost machine;
  const Outcome outcome = LayDown(machine, "E:\\Alt & loc", test_support::DataFolder(machine.files));
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  EXPECT_LT(took.count(), 10) << "meant for under two seconds on a quiet machine";
  EXPECT_THAT(outcome.notes, IsEmpty());
  const std::string system = "E:\\Alt & loc\\System\\";
  for (const char* folder : {"DataBase\\CompactDB", "DataBase\\CN", "CursBNR", "Verificare",
                             "ReportDefinition", "DeclaratiiXML", "SQL", "Default", "ComboBox", "Erori"}) {
    EXPECT_TRUE(machine.files.FolderExists(system + folder)) << folder;
  }
  for (const char* file : {"DataBase\\Comun.mdb", "DataBase\\goala.mdb", "DataBase\\CN\\CN_2026.mdb",
                           "DataBase\\CN\\selfExplainTexts_ro.xml", "CursBNR\\Schema.ini",
                           "ReportDefinition\\UE_Reports.xml", "ComboBox\\Combo_Tip.Frm_INTRASTAT.txt"}) {
    EXPECT_TRUE(machine.files.Exists(system + file)) << file;
    EXPECT_THAT(outcome.added, Contains(system + file));
  }
  EXPECT_EQ(machine.files.Read(system + "CursBNR\\data.txt"), "");
  EXPECT_LT(*machine.files.LastModified(system + "CursBNR\\data.txt"),
            std::chrono::system_clock::now() - std::chrono::hours(48));

  session::Session session(machine.host());
  session.ReadSettings("E:\\Program");
  EXPECT_EQ(session.settings.DataBase, system + "DataBase\\");
  EXPECT_EQ(session.settings.DirectorSalvare, system + "DeclaratiiXML\\");
  EXPECT_FALSE(session.settings.UpdateCurs);
  EXPECT_FALSE(session.settings.VerificaUpdate);
  EXPECT_EQ(session.settings.Meniu_Color, 12648447u);
}

TEST(Setup, LeavesTheOutputFolderToTheInstitutesProgram) {
  test_support::TestHost machine;
  machine.files.CreateFolders("C:\\Program Files (x86)\\INTRASTAT\\declaratii\\");
  LayDown(machine, kDefaultRoot, test_support::DataFolder(machine.files));
  session::Session session(machine.host());
  session.ReadSettings("C:\\Program");
  EXPECT_EQ(session.settings.DirectorSalvare, "C:\\Program Files (x86)\\INTRASTAT\\declaratii\\");
}

TEST(Setup, RunAgainOnlyAddsWhatIsMissing) {
  Installation at;
  const std::string data = test_support::DataFolder(at.files());
  EXPECT_THAT(LayDown(at.machine, kDefaultRoot, data).added, IsEmpty());

  at.session.common.Execute("UPDATE Monezi SET Moneda_DESC='Euro, al nostru' WHERE Moneda_COD='EUR'");
  at.session.common.Execute("DELETE FROM Monezi WHERE Moneda_COD='USD'");
  at.session.common.Execute("INSERT INTO Monezi (Moneda_COD, Moneda_DESC) VALUES ('ZZZ','A utilizatorului')");
  at.Run("DROP TABLE Scripts");
  at.session.company.catalog().SetQuery({"Lista_Intrastat", "SELECT TIP FROM Intrastat"});
  at.session.company.catalog().SetQuery({"A_Mea", "SELECT TIP FROM Intrastat"});
  at.session.company.Close();
  at.session.tariff.Close();
  at.session.common.Close();
  at.files().Remove(Installation::InSystem("CursBNR\\Schema.ini"));
  at.files().Replace(Installation::InSystem("ComboBox\\Format.Frm_Macheta.txt"), "TEXT\r\n");

  const Outcome outcome = LayDown(at.machine, kDefaultRoot, data);
  EXPECT_THAT(outcome.added,
              testing::UnorderedElementsAre(Installation::InSystem("CursBNR\\Schema.ini"),
                                            Installation::InDataBase("Comun.mdb: Monezi, 1 inregistrari"),
                                            Installation::InDataBase("RO123456.mdb: Scripts"),
                                            Installation::InDataBase("RO123456.mdb: Lista_Intrastat")));
  EXPECT_EQ(at.files().Read(Installation::InSystem("ComboBox\\Format.Frm_Macheta.txt")), "TEXT\r\n");
  session::OpenCommonConnection(at.session);
  EXPECT_EQ(Column(at.session.common,
                   "SELECT Moneda_DESC FROM Monezi WHERE Moneda_COD IN ('EUR','ZZZ') ORDER BY Moneda_COD"),
            (std::vector<std::string>{"Euro, al nostru", "A utilizatorului"}));
  session::OpenCompanyConnection(at.session, at.session.current.database_path);
  EXPECT_TRUE(at.Get("SELECT COUNT(*) FROM A_Mea").is_integer()) << "the user's own query stays";
  EXPECT_EQ(at.Get("SELECT COUNT(*) FROM Scripts").ToInteger(), 0);
}

TEST(Setup, ReplacesTheFirstReportsAndNoLaterOnes) {
  Installation at;
  const std::string data = test_support::DataFolder(at.files());
  const std::string path = Installation::InSystem("ReportDefinition\\UE_Reports.xml");
  const std::string delivered = at.files().Read(path);
  at.files().Replace(path, "<Reports><Report Name=\"Lista\" Title=\"REPORT\"></Report></Reports>");
  EXPECT_THAT(LayDown(at.machine, kDefaultRoot, data).added, testing::ElementsAre(path));
  EXPECT_EQ(at.files().Read(path), delivered);

  const std::string own = "<Reports><Report Id=\"Al_Meu\" Name=\"Lista\" Title=\"REPORT\"/></Reports>";
  at.files().Replace(path, own);
  LayDown(at.machine, kDefaultRoot, data);
  EXPECT_EQ(at.files().Read(path), own);
}

TEST(Setup, AddsColumnsOfANewerVersionAndKeepsRows) {
  test_support::TestHost machine;
  const store::Environment environment{.drives = &machine.drives, .link_folder = nullptr};
  const std::string path = "C:\\veche.mdb";
  machine.files.CreateFolders("C:\\");
  store::layout::Database layout =
      store::layout::Read(machine.files, test_support::DataFolder(machine.files), "comun");
  store::layout::Database older = layout;
  older.queries.clear();
  for (auto& table : older.tables) {
    if (table.name == "Firme") table.columns.resize(3);
  }
  store::layout::Build(environment, machine.files, path, older, [](store::Connection& connection) {
    connection.Execute("INSERT INTO Firme (Cod_Fiscal, Nume_Firma) VALUES ('RO1','PROBA')");
  });
  EXPECT_FALSE(machine.files.Exists(path + ".nou"));
  store::Connection connection(environment);
  connection.Open(store::JetString(path));
  EXPECT_THAT(store::layout::Complete(connection, layout), Contains("Firme.Reg_No_Firma"));
  EXPECT_EQ(connection.Scalar("SELECT Nume_Firma FROM Firme WHERE ValoareStatistica=0")->ToText(), "PROBA");
  EXPECT_THAT(store::layout::Complete(connection, layout), IsEmpty());
}

TEST(Setup, ErrorsNameTheFileAndLeaveNothingHalfDone) {
  test_support::TestHost machine;
  machine.files.CreateFolders(Installation::InDataBase(""));
  machine.files.Replace(Installation::InDataBase("Comun.mdb"), "not a database at all");
  try {
    LayDown(machine, kDefaultRoot, test_support::DataFolder(machine.files));
    FAIL();
  } catch (const platform::FileError& error) {
    EXPECT_THAT(error.what(), HasSubstr(Installation::InDataBase("Comun.mdb")));
  }
  EXPECT_FALSE(machine.files.Exists(session::SettingsPath())) << "the program must not start on this";

  test_support::TestHost full;
  full.files.refuses = [](std::string_view path) { return path.ends_with("goala.mdb"); };
  EXPECT_THROW(LayDown(full, kDefaultRoot, test_support::DataFolder(full.files)), platform::FileError);
  EXPECT_FALSE(full.files.Exists(Installation::InDataBase("goala.mdb")));
  EXPECT_FALSE(full.files.Exists(Installation::InDataBase("goala.mdb.nou")));
  full.files.refuses = nullptr;
  full.files.Replace(Installation::InDataBase("goala.mdb.nou"), "what a killed run left");
  LayDown(full, kDefaultRoot, test_support::DataFolder(full.files));
  EXPECT_FALSE(full.files.Exists(Installation::InDataBase("goala.mdb.nou")));
  EXPECT_TRUE(full.files.Exists(Installation::InDataBase("goala.mdb")));
}

TEST(Setup, ADamagedCompanyFileIsNotedAndTheRestGoesOn) {
  Installation at(Installation::State::kCommonOpen);
  at.session.common.Close();
  at.files().Replace(Installation::InDataBase("RO123456.mdb"), "damaged");
  at.files().Remove(Installation::InDataBase("goala.mdb"));
  const std::string data = store::layout::FindDataFolder(at.files(), "C:\\Program");
  const Outcome outcome = LayDown(at.machine, kDefaultRoot, data);
  ASSERT_EQ(outcome.notes.size(), 1u);
  EXPECT_THAT(outcome.notes[0], HasSubstr("RO123456.mdb"));
  EXPECT_THAT(outcome.added, ElementsAre(Installation::InDataBase("goala.mdb")));
  EXPECT_EQ(at.files().Read(Installation::InDataBase("RO123456.mdb")), "damaged");

  at.files().Remove(Installation::InDataBase("RO123456.mdb"));
  EXPECT_THAT(LayDown(at.machine, "D:\\Altundeva", data).notes, ElementsAre(HasSubstr("alt director")));
}

TEST(Setup, DeliveredTariffAnswersLookups) {
  Installation at;
  int month = 3, year = 2026;
  ASSERT_TRUE(tariff::ConexiuneTarif(at.session, month, year));
  EXPECT_EQ(tariff::Cautare_Tarif(at.session, "01012100"), "Animale vii|p/st|1");
  EXPECT_THAT(tariff::Cautare_Tarif(at.session, "94036010"), testing::EndsWith("||0"));
  EXPECT_EQ(tariff::Cautare_Tarif(at.session, "00000000"), "||");
  EXPECT_EQ(at.session.tariff.Scalar("SELECT COUNT(*) FROM HS8")->ToInteger(), 9791);
  EXPECT_EQ(at.session.tariff.Scalar("SELECT COUNT(*) FROM HS_1")->ToInteger(), 21);
  EXPECT_EQ(at.Get("SELECT HS8_COD FROM HS8 WHERE HS8_COD ='01012100'").ToText(), "01012100");
  EXPECT_EQ(
      at.session.tariff
          .Scalar("SELECT COUNT(*) FROM ((HS_8 INNER JOIN HS_6 ON HS_8.HS6_COD=HS_6.HS6_COD) INNER JOIN HS_4 "
                  "ON HS_6.HS4_COD=HS_4.HS4_COD) INNER JOIN HS_2 ON HS_4.HS2_COD=HS_2.HS2_COD")
          ->ToInteger(),
      9791);
  EXPECT_THAT(Column(at.session.common, "SELECT DISTINCT RTRIM(UM_COD) FROM UM"), Contains("Kg 90% sdt."));
  EXPECT_EQ(at.session.tariff.Scalar("SELECT COUNT(*) FROM HS_8 WHERE UM_SUPL = ''")->ToInteger(), 0);
}

TEST(Setup, EveryPeriodHasOneVersionRow) {
  Installation at;
  for (int year = 2011; year <= 2028; ++year) {
    for (const int month : {1, 6, 12}) {
      const store::Recordset rows = at.session.common.Query(fmt::format(
          "SELECT CnVer, CountryVer FROM InsCodeVersions WHERE ( Anul<={0} AND Luna<={1} AND Anul_End>={0} "
          "AND "
          "Luna_End>={1})  OR ( Anul<={0} AND Luna<={1} AND Anul_End IS NULL AND Luna_End IS NULL) ",
          year, month));
      ASSERT_EQ(rows.record_count(), 1) << month << "/" << year;
      EXPECT_EQ(rows["CnVer"].ToText(), std::to_string(std::min(year, 2026)));
      EXPECT_EQ(rows["CountryVer"].ToText(), year < 2022 ? "2007" : "2022");
    }
  }
}

}  // namespace
}  // namespace setup
