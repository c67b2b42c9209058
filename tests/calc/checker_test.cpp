#include "calc/checker.h"

#include <gtest/gtest.h>

#include "support/installation.h"
#include "support/sample_lines.h"

namespace calc {
namespace {

using test_support::AddLine;
using test_support::LineValues;

const store::Value kNull;
constexpr char kAllWell[] = "Declaratie Intrastat - OK. Nu sunt probleme";

class CheckerTest : public testing::Test {
 protected:
  session::Session& session() { return bench_.session; }
  test_support::ScriptedPrompter& prompter() { return bench_.machine.prompter; }

  /// Checks a declaration; the report's problem lines, without its header.
  std::vector<std::string> Problems(const std::string& TIP, int Anul, int Luna, bool check_stat = false) {
    shown_.clear();
    result_ =
        Verifica_Declaratie(session(), TIP, static_cast<std::int16_t>(Anul), static_cast<std::int16_t>(Luna),
                            check_stat, [this](const std::string& path) { shown_ = path; });
    std::vector<std::string> lines = platform::SplitLines(Report(TIP, Anul, Luna));
    EXPECT_GE(lines.size(), 8U);
    lines.erase(lines.begin(), lines.begin() + 8);
    return lines;
  }
  std::string Report(const std::string& TIP, int Anul, int Luna) {
    return bench_.machine.files.Read(
        ProblemsReportPath(session(), {TIP, session().current.Cod_Fiscal, Anul, Luna}));
  }
  store::Value Stored(std::int64_t id, const std::string& column) {
    return *session().company.Scalar("SELECT [" + column +
                                     "] FROM Intrastat WHERE Record_ID=" + std::to_string(id));
  }

  test_support::Installation bench_;
  bool result_ = false;
  std::string shown_;
};

/// One line, what the report says about it (after "Pozitia: n"), and the switches that matter.
struct Case {
  const char* rule;
  const char* TIP;
  int year;
  LineValues changes;
  std::vector<std::string> expected;
  const char* switches = "";  ///< letters: s statistical value, r whole values, n net mass
  const char* box = nullptr;  ///< VAT number of the message box
};

const std::vector<Case>& Cases() {
  static const std::vector<Case> kCases = {
      {"good arrival", "I", 2026, {}, {}, "srn"},
      {"good dispatch", "O", 2026, {}, {}, "srn"},
      {"1 and 6: no code",
       "I",
       2026,
       {{"Cod_NC", kNull}},
       {" - Cod_NC ESTE GOL", " - Cod_NC =  ===> NU EXISTA"}},
      {"2: dispatch without mass", "O", 2026, {{"Net", kNull}}, {" - Net ESTE GOL"}},
      {"2: dispatch without values",
       "O",
       2026,
       {{"Val_Fiscala", kNull}, {"Val_Stat", kNull}},
       {" - Val_Fiscala ESTE GOL", " - Val_Stat ESTE GOL",
        " - Val_Fiscala =  ===> ESTE NULL - ZERO SAU VALOARE NEGATIVA"}},
      {"2' and 7: arrival with a blank origin",
       "I",
       2026,
       {{"Tara_Orig", " "}},
       {" - Tara_Orig ESTE GOL", " - Tara_Orig =   ===> NU EXISTA"}},
      {"3 and 9: dispatch of 2015 without origin",
       "O",
       2015,
       {{"Tara_Orig", kNull}},
       {" - Tara_Orig ESTE GOL", " - Tara_Orig =  ===> NU EXISTA"}},
      {"3, 4, 9: before 2015 origin and partner may be empty",
       "O",
       2014,
       {{"Tara_Orig", kNull}, {"VAT_ID", kNull}},
       {}},
      {"4: no partner", "O", 2015, {{"VAT_ID", kNull}}, {" - VAT_ID ESTE GOL"}},
      {"4: arrivals need no partner", "I", 2026, {{"VAT_ID", kNull}}, {}},
      {"4a: digits", "O", 2026, {{"VAT_ID", "12345678"}}, {" - VAT_ID FORMAT INCORECT"}, "", "12345678"},
      {"4a: one digit", "O", 2026, {{"VAT_ID", "7"}}, {" - VAT_ID FORMAT INCORECT"}, "", "7"},
      {"4a: not before 2015", "O", 2014, {{"VAT_ID", "12345678"}}, {}},
      {"4b: no member state",
       "O",
       2026,
       {{"VAT_ID", "us123"}},
       {" - VAT_ID = US ===> PREFIX TARA - COD TVA INCORECT "}},
      {"4b: a letter and a digit",
       "O",
       2026,
       {{"VAT_ID", "I7123"}},
       {" - VAT_ID = I7 ===> PREFIX TARA - COD TVA INCORECT "}},
      {"4b: lower case passes", "O", 2026, {{"VAT_ID", "it123"}}, {}},
      {"4b: Greece files as EL", "O", 2026, {{"VAT_ID", "EL012"}}, {}},
      {"5 and 14 to 16: nothing filled",
       "I",
       2026,
       {{"Nat_Tranz", kNull}, {"Incoterms", ""}, {"Mod_Transp", " "}},
       {" - Nat_Tranz ESTE GOL", " - Incoterms ESTE GOL", " - Mod_Transp ESTE GOL",
        " - Nat_Tranz =  ===> NU EXISTA", " - Incoterms =  ===> NU EXISTA",
        " - Mod_Transp =   ===> NU EXISTA"}},
      {"6: unknown code", "I", 2026, {{"Cod_NC", "84710000"}}, {" - Cod_NC = 84710000 ===> NU EXISTA"}},
      {"7: unknown origin", "I", 2026, {{"Tara_Orig", "ZZ"}}, {" - Tara_Orig = ZZ ===> NU EXISTA"}},
      {"8: arrival from home",
       "I",
       2026,
       {{"Tara_Exp", "RO"}},
       {" - Tara_Exp = RO ===> NU SE POATE TARA EXPEDIERE ROMANIA"}},
      {"9: unknown origin", "O", 2015, {{"Tara_Orig", "ZZ"}}, {" - Tara_Orig = ZZ ===> NU EXISTA"}},
      {"9: not before 2015", "O", 2014, {{"Tara_Orig", "ZZ"}}, {}},
      {"10: dispatch to home",
       "O",
       2015,
       {{"Tara_Dest", "RO"}},
       {" - Tara_Dest = RO ===> NU SE POATE TARA DEST ROMANIA"}},
      {"10: not before 2015", "O", 2014, {{"Tara_Dest", "RO"}}, {}},
      {"11: not in the Union",
       "I",
       2026,
       {{"Tara_Exp", "CN"}},
       {" - Tara_Exp = CN ===> NU EXISTA SAU NU ESTE TARA UE"}},
      {"11: Northern Ireland", "I", 2026, {{"Tara_Exp", "XI"}}, {}},
      {"12: retired country, once",
       "I",
       2021,
       {{"Tara_Exp", "GB"}, {"Tara_Dest", "GB"}},
       {" - Tara_Exp = GB ===> NU EXISTA SAU NU ESTE TARA UE", " ===> GB Nu se mai poate folosi dupa 2020",
        " - Tara_Dest = GB ===> NU EXISTA SAU NU ESTE TARA UE"}},
      {"12: not in 2020",
       "I",
       2020,
       {{"Tara_Exp", "GB"}},
       {" - Tara_Exp = GB ===> NU EXISTA SAU NU ESTE TARA UE"}},
      {"12: the origin was turned into XU before", "I", 2021, {{"Tara_Orig", "GB"}}, {}},
      {"13: not in the Union",
       "O",
       2026,
       {{"Tara_Dest", "US"}},
       {" - Tara_Dest = US ===> NU EXISTA SAU NU ESTE TARA UE"}},
      {"14: without its dot", "I", 2026, {{"Nat_Tranz", "11"}}, {" - Nat_Tranz = 11 ===> NU EXISTA"}},
      {"14: a code without second digit", "I", 2026, {{"Nat_Tranz", "8"}}, {}},
      {"15: unknown terms", "I", 2026, {{"Incoterms", "ZZZ"}}, {" - Incoterms = ZZZ ===> NU EXISTA"}},
      {"16: unknown mode", "I", 2026, {{"Mod_Transp", "6"}}, {" - Mod_Transp = 6 ===> NU EXISTA"}},
      {"16: an apostrophe breaks the probe only",
       "I",
       2026,
       {{"Mod_Transp", "'"}},
       {" - Mod_Transp = ' ===> NU EXISTA"}},
      {"17: a unit is due but not there",
       "I",
       2026,
       {{"Cod_NC", "84710000"}, {"Cod_UMS", kNull}},
       {" - Cod_NC = 84710000 ===> NU EXISTA", " - Cod NC : 84710000 ===> COD UM SUPL NU EXISTA"}},
      {"17: the tariff fills the unit in", "I", 2026, {{"Cod_UMS", kNull}}, {}},
      {"17a: less than half a unit",
       "I",
       2026,
       {{"Val_UMS", 0.49}},
       {" - Cod NC : 84713000 ===> VALOARE UM SUPL NU EXISTA in unitatea de masura: p/st"}},
      {"17a: no quantity",
       "I",
       2026,
       {{"Val_UMS", kNull}},
       {" - Cod NC : 84713000 ===> VALOARE UM SUPL NU EXISTA in unitatea de masura: p/st"}},
      {"17a: half a unit counts", "I", 2026, {{"Val_UMS", 0.5}}, {}},
      {"18: zero in whole lei",
       "I",
       2026,
       {{"Val_Fiscala", 0.4}},
       {" - Val_Fiscala = 0.4 ===> ESTE NULL - ZERO SAU VALOARE NEGATIVA"},
       "r"},
      {"18: above zero with decimals", "I", 2026, {{"Val_Fiscala", 0.4}}, {}},
      {"18: zero with decimals",
       "O",
       2026,
       {{"Val_Fiscala", 0.004}},
       {" - Val_Fiscala = 0.004 ===> ESTE NULL - ZERO SAU VALOARE NEGATIVA"}},
      {"18: negative",
       "I",
       2026,
       {{"Val_Fiscala", -3.0}},
       {" - Val_Fiscala = -3 ===> ESTE NULL - ZERO SAU VALOARE NEGATIVA"}},
      {"19: zero",
       "I",
       2026,
       {{"Val_Stat", 0.0}},
       {" - Val_Stat = 0 ===> ESTE NULL - ZERO SAU VALOARE NEGATIVA"},
       "s"},
      {"19: not asked", "I", 2026, {{"Val_Stat", 0.0}}, {}},
      {"20: zero", "I", 2026, {{"Net", 0.0}}, {" - Net = 0 ===> VALOARE NEGATIVA"}, "n"},
      {"20: above zero", "I", 2026, {{"Net", 0.01}}, {}, "n"},
      {"20: not asked", "I", 2026, {{"Net", -1.0}}, {}},
  };
  return kCases;
}

TEST_F(CheckerTest, EachRuleTripsOnItsLineAndNotOnTheOneBeside) {
  for (const int year : {2014, 2015, 2020, 2021}) test_support::LendTariff(bench_, year);
  // Lines of one flow, year and set of switches make one declaration.
  std::map<std::tuple<std::string, int, std::string>, std::vector<const Case*>> declarations;
  for (const Case& c : Cases()) declarations[{c.TIP, c.year, c.switches}].push_back(&c);
  for (const auto& [declaration, cases] : declarations) {
    const auto& [TIP, year, switches] = declaration;
    SCOPED_TRACE(TIP + std::to_string(year) + switches);
    session().settings.ValoriRotunjite = switches.find('r') != std::string::npos;
    session().settings.VerificaNet = switches.find('n') != std::string::npos;
    store::Transaction lines(session().company);
    session().company.Execute("DELETE FROM Intrastat");
    std::vector<std::pair<std::int64_t, const Case*>> added;
    std::vector<std::string> expected;
    for (const Case* c : cases) {
      const std::int64_t id = AddLine(session(), TIP, year, 3, c->changes);
      added.emplace_back(id, c);
      for (const std::string& text : c->expected) expected.push_back("Pozitia: " + std::to_string(id) + text);
      if (c->box != nullptr) {
        prompter().ExpectError(std::string("Format incorect Cod TVA: ") + c->box +
                               "\r\nCodul de TVA trebuie sa inceapa cu codul tarii");
      }
    }
    if (expected.empty()) prompter().ExpectInfo(kAllWell);
    EXPECT_EQ(Problems(TIP, year, 3, switches.find('s') != std::string::npos), expected);
    EXPECT_EQ(result_, expected.empty());
    for (const auto& [id, c] : added) {
      EXPECT_EQ(Stored(id, "Probleme").ToInteger(), c->expected.empty() ? 0 : -1) << c->rule;
    }
    prompter().Verify();
    lines.Commit();
  }
}

TEST_F(CheckerTest, ReportBeginsWithTheDeclarationAndTheProblemsScreenOpensOnIt) {
  const std::int64_t id = AddLine(session(), "O", 2026, 3, {{"Mod_Transp", "6"}});
  bench_.machine.clock.Set({2026, 4, 9, 8, 5, 7});
  Problems("O", 2026, 3);
  const std::string code = session().current.Cod_Fiscal;
  EXPECT_EQ(shown_, "C:\\Declarix\\System\\Verificare\\" + code + "_O_3_2026.txt");
  EXPECT_EQ(Report("O", 2026, 3),
            "09.04.2026 08:05:07\r\nTIP = O\r\nCod_Fiscal= " + code +
                "\r\nAnul=2026\r\nLuna=3\r\nPOZITIA ESTE AFISATA PE ULTIMA COLOANA\r\n" +
                std::string(62, '*') + "\r\n\r\nPozitia: " + std::to_string(id) +
                " - Mod_Transp = 6 ===> NU EXISTA\r\n");
}

TEST_F(CheckerTest, EmptyDeclarationIsWellAndLeavesTheHeaderAlone) {
  prompter().ExpectInfo(kAllWell);
  EXPECT_TRUE(Problems("I", 2026, 7).empty());
  EXPECT_TRUE(result_);
  EXPECT_EQ(shown_, "");
}

TEST_F(CheckerTest, RefreshBringsTariffColumnsHalvesAndRetiredCountryUpToDate) {
  const std::int64_t unit = AddLine(session(), "I", 2026, 3,
                                    {{"Cod_UMS", "l"},
                                     {"Exista_UMS", 0},
                                     {"Descriere_NC", kNull},
                                     {"Net", 12.5},
                                     {"Val_Fiscala", 7.5},
                                     {"Val_Stat", 0.5},
                                     {"Val_UMS", 3.5},
                                     {"Tara_Orig", "GB"}});
  const std::int64_t no_unit =
      AddLine(session(), "I", 2026, 3, {{"Cod_NC", "39269097"}, {"Cod_UMS", "kg"}, {"Val_UMS", 5.0}});
  const std::int64_t unknown =
      AddLine(session(), "I", 2026, 3, {{"Cod_NC", "84710000"}, {"Descriere_NC", "x"}, {"Net", kNull}});
  EXPECT_EQ(Problems("I", 2026, 3).size(), 2U);  // both on the unknown code's line
  EXPECT_EQ(Stored(unit, "Cod_UMS").ToText(), "p/st");
  EXPECT_TRUE(Stored(unit, "Exista_UMS").ToBoolean());
  EXPECT_NE(Stored(unit, "Descriere_NC").ToText(), "");
  EXPECT_EQ(Stored(unit, "Net").ToDouble(), 12.501);
  EXPECT_EQ(Stored(unit, "Val_Fiscala").ToDouble(), 7.501);
  EXPECT_EQ(Stored(unit, "Val_Stat").ToDouble(), 0.501);
  EXPECT_EQ(Stored(unit, "Val_UMS").ToDouble(), 3.501);
  EXPECT_EQ(Stored(unit, "Tara_Orig").ToText(), "XU");
  EXPECT_EQ(Stored(unit, "Probleme").ToInteger(), 0);
  EXPECT_TRUE(Stored(no_unit, "Cod_UMS").is_null());
  EXPECT_TRUE(Stored(no_unit, "Val_UMS").is_null());
  EXPECT_FALSE(Stored(no_unit, "Exista_UMS").ToBoolean());
  EXPECT_EQ(Stored(unknown, "Descriere_NC").ToText(), "x");
  EXPECT_TRUE(Stored(unknown, "Net").is_null());
  EXPECT_EQ(Stored(unknown, "Probleme").ToInteger(), -1);
}

TEST_F(CheckerTest, WithoutThePeriodsTariffItsColumnsStay) {
  const std::int64_t id = AddLine(session(), "I", 2021, 3,
                                  {{"Cod_NC", "39269097"},
                                   {"Descriere_NC", "asa cum era"},
                                   {"Cod_UMS", "kg"},
                                   {"Exista_UMS", 1},
                                   {"Val_UMS", 5.5},
                                   {"Tara_Orig", "GB"}});
  prompter().ExpectError("Nu se poate identifica fisierul pentru tabela tarif vamal");
  prompter().ExpectInfo(kAllWell);
  EXPECT_TRUE(Problems("I", 2021, 3).empty());
  EXPECT_EQ(Stored(id, "Descriere_NC").ToText(), "asa cum era");
  EXPECT_EQ(Stored(id, "Cod_UMS").ToText(), "kg");
  EXPECT_EQ(Stored(id, "Val_UMS").ToDouble(), 5.501);
  EXPECT_EQ(Stored(id, "Tara_Orig").ToText(), "XU");
}

TEST_F(CheckerTest, MarksOnlyItsOwnDeclarationAndClearsEarlierMarks) {
  const std::int64_t other_month = AddLine(session(), "I", 2026, 4, {{"Mod_Transp", "6"}, {"Net", 1.5}});
  const std::int64_t mended = AddLine(session(), "I", 2026, 3, {{"Probleme", -1}});
  prompter().ExpectInfo(kAllWell);
  Problems("I", 2026, 3);
  EXPECT_TRUE(result_);
  EXPECT_EQ(Stored(mended, "Probleme").ToInteger(), 0);
  EXPECT_EQ(Stored(other_month, "Probleme").ToInteger(), 0);
  EXPECT_EQ(Stored(other_month, "Net").ToDouble(), 1.5);
}

TEST_F(CheckerTest, InstallationMayReplaceTheLineQuery) {
  AddLine(session(), "I", 2026, 3);
  const std::int64_t second = AddLine(session(), "I", 2026, 3, {{"Incoterms", "ZZZ"}});
  const std::int64_t third = AddLine(session(), "I", 2026, 3, {{"Incoterms", "YYY"}});
  session().host.files.CreateFolders("C:\\Declarix\\System\\SQL\\");
  session().host.files.Replace(
      "C:\\Declarix\\System\\SQL\\Verificare.txt",
      std::string("SELECT ") + declarations::kCheckerColumns + " FROM Intrastat\r\n ORDER BY Record_ID DESC");
  EXPECT_EQ(
      Problems("I", 2026, 3),
      (std::vector<std::string>{"Pozitia: " + std::to_string(third) + " - Incoterms = YYY ===> NU EXISTA",
                                "Pozitia: " + std::to_string(second) + " - Incoterms = ZZZ ===> NU EXISTA"}));
  // A file of one line leaves the tail empty.
  session().host.files.Replace("C:\\Declarix\\System\\SQL\\Verificare.txt",
                               std::string("SELECT ") + declarations::kCheckerColumns + " FROM Intrastat");
  EXPECT_EQ(Problems("I", 2026, 3).size(), 2U);
}

TEST_F(CheckerTest, LineQueryThatFailsLeavesDataAsItWas) {
  const std::int64_t id = AddLine(session(), "I", 2026, 3, {{"Probleme", -1}, {"Net", 1.5}});
  session().host.files.CreateFolders("C:\\Declarix\\System\\SQL\\");
  session().host.files.Replace("C:\\Declarix\\System\\SQL\\Verificare.txt", "SELECT Altceva FROM Intrastat");
  EXPECT_THROW(Verifica_Declaratie(session(), "I", 2026, 3, false, nullptr), store::Error);
  EXPECT_EQ(Stored(id, "Probleme").ToInteger(), -1);
  EXPECT_EQ(Stored(id, "Net").ToDouble(), 1.5);
  EXPECT_FALSE(session().company.in_transaction());
}

TEST_F(CheckerTest, ReportThatCannotBeWrittenIsSaidAndStillCounts) {
  AddLine(session(), "I", 2026, 3, {{"Mod_Transp", "6"}});
  bench_.machine.files.refuses = [](std::string_view path) { return path.find("Verificare") != path.npos; };
  prompter().ExpectStarting("", "EROARE", platform::Icon::kCritical);
  EXPECT_FALSE(Verifica_Declaratie(session(), "I", 2026, 3, false, nullptr));
  bench_.machine.files.refuses = nullptr;
}

TEST_F(CheckerTest, ProgressNamesItsPasses) {
  AddLine(session(), "I", 2026, 3);
  AddLine(session(), "I", 2026, 3);
  prompter().ExpectInfo(kAllWell);
  bench_.machine.progress.updates.clear();
  Problems("I", 2026, 3);
  const std::vector<std::pair<std::string, int>> expected = {{"ACTUALIZARE UM SUPLIMENTARE", 0},
                                                             {"Se verifica UM Supl ..... ", 50},
                                                             {"Se verifica UM Supl ..... ", 100},
                                                             {"Verificare in detaliu ..... ", 50},
                                                             {"Verificare in detaliu ..... ", 100}};
  EXPECT_EQ(bench_.machine.progress.updates, expected);
}

}  // namespace
}  // namespace calc
