#include "calc/rounding/typed_number.h"
#include "declarations/editor/typed_text.h"
#include "editor_fixture.h"

namespace declarations {
namespace {

TEST_F(EditorTest, ATypedLineFillsWhatFollowsAndIsSavedWhenLeft) {
  calc::AddRate(at.session, "EUR", {kMarch2 - 1}, 4.9751, 1);
  at.session.defaults.I_Incoterms = "CPT";
  at.session.defaults.I_Tara_Exp = "DE";
  Editor& editor = Open();
  EXPECT_EQ(editor.Title(), "INTRASTAT :  ACHIZITIE 2026 / 3 -   INREGISTRARI : 0");
  ASSERT_EQ(editor.NewLine(), 0);
  EXPECT_EQ(Text(0, "Tara_Dest") + Text(0, "Tara_Exp") + Text(0, "Incoterms"), "RODECPT");
  MustType(0, "DataReceptiei", "2");
  MustType(0, "Descriere", "Laptop");
  MustType(0, "Cod_NC", "84713000");
  MustType(0, "Cantitate", "2");
  MustType(0, "Valoare_Valuta", "1.200,50");
  MustType(0, "Moneda", "eur");
  EXPECT_EQ(Text(0, "Moneda") + " " + Text(0, "Curs_Schimb"), "EUR 4,9751");
  EXPECT_EQ(Text(0, "Val_Fiscala") + " " + Text(0, "Val_Stat"), "5972,61 5972,61");
  EXPECT_EQ(Text(0, "Cod_UMS") + Text(0, "Exista_UMS"), "p/st1");
  EXPECT_NE(Text(0, "Descriere_NC"), "");
  MustType(0, "Net", "5");
  MustType(0, "Cantitate", "3");
  EXPECT_EQ(Text(0, "Net"), "7,5");
  EXPECT_EQ(at.Get("SELECT COUNT(*) FROM Intrastat"), store::Value(0));

  ASSERT_TRUE(editor.SaveLine());
  EXPECT_EQ(Stored("SELECT TIP, Cod_Fiscal, Anul, Luna, DataReceptiei, Val_Fiscala, Net_Unitar, Probleme "
                   "FROM Intrastat"),
            "I|RO123456|2026|3|02.03.2026|5972.61|2.5|0");
  EXPECT_EQ(Stored("SELECT Denumire FROM Denumiri_Intrastat"), "Laptop");
  EXPECT_DOUBLE_EQ(editor.totals().Val_Fiscala, 5972.61);
  // A further line begun and left untouched does not stay.
  editor.NewLine();
  EXPECT_TRUE(editor.SaveLine());
  EXPECT_EQ(editor.row_count(), 1);
}

TEST_F(EditorTest, ADispatchStartsInRomania) {
  at.session.defaults.O_Tara_Dest = "IT";
  at.session.defaults.O_Nat_Tranz = "1.1.1";  // does not fit
  Editor& editor = Open(Editor::Mode::kModify, "O");
  MustType(0, "UM", "");  // passing through the row behind the last begins nothing
  EXPECT_EQ(editor.row_count(), 0);
  editor.NewLine();
  EXPECT_EQ(Text(0, "Tara_Exp") + Text(0, "Tara_Dest"), "ROIT");
  EXPECT_EQ(editor.columns()[static_cast<std::size_t>(editor.ColumnOf("VAT_ID"))].caption, "Dest TVA cod");
}

TEST_F(EditorTest, ValuesInLeiFollowCurrencyDateAndRate) {
  calc::AddRate(at.session, "EUR", {kMarch2 - 1}, 5, 1);
  calc::AddRate(at.session, "EUR", {kMarch2 + 5}, 5.1, 1);
  AddLine({{"DataReceptiei", store::Date{kMarch2}},
           {"Moneda", "EUR"},
           {"Curs_Schimb", 5.0},
           {"Valoare_Valuta", 20.0},
           {"Val_Fiscala", 100.0},
           {"Val_Stat", 100.0}});
  Open();
  MustType(0, "DataReceptiei", "10.3");
  EXPECT_EQ(Text(0, "Val_Fiscala") + " " + Text(0, "Val_Stat"), "102 102");
  MustType(0, "Val_Stat", "110");
  const EditResult kept = Type(0, "Valoare_Valuta", "30");
  EXPECT_TRUE(kept.accepted);
  EXPECT_NE(kept.message, "");
  EXPECT_EQ(Text(0, "Val_Fiscala") + " " + Text(0, "Val_Stat"), "153 110");
  // A currency without a rate leaves no value at another currency's rate.
  EXPECT_EQ(Type(0, "Moneda", "USD").message, "Nu exista curs pentru USD inainte de 10.03.2026");
  EXPECT_EQ(Text(0, "Curs_Schimb") + Text(0, "Val_Fiscala"), "");
  MustType(0, "Curs_Schimb", "4,5");
  EXPECT_EQ(Text(0, "Val_Fiscala"), "135");
  // One typed by hand outlives a date without a rate.
  Type(0, "DataReceptiei", "12.3");
  EXPECT_EQ(Text(0, "Curs_Schimb"), "4,5");
  MustType(0, "Moneda", "RON");
  EXPECT_EQ(Text(0, "Curs_Schimb") + " " + Text(0, "Val_Fiscala"), "1 30");
  EXPECT_EQ(Type(0, "Curs_Schimb", "4,5").message, "Pentru RON cursul este 1");
  EXPECT_EQ(Text(0, "Curs_Schimb") + " " + Text(0, "Val_Fiscala"), "1 30");
}

TEST_F(EditorTest, MassAndQuantityDoNotUndoEachOther) {
  AddLine({{"Cantitate", 1.0}, {"Net", 0.1}, {"Net_Unitar", 0.1}});
  Open();
  MustType(0, "Cantitate", "3");
  EXPECT_EQ(Text(0, "Net"), "0,3") << "not 0.30000000000000004";
  MustType(0, "Cantitate", "");
  MustType(0, "Net", "7");
  MustType(0, "Cantitate", "2");
  EXPECT_EQ(Text(0, "Net"), "7") << "typed while there was no quantity";
}

TEST_F(EditorTest, ATariffThatCannotBeReadTakesNothingAway) {
  AddLine({{"Cod_NC", "84713000"}, {"Descriere_NC", "Laptop"}, {"Cod_UMS", "p/st"}});
  Editor& editor = Open();
  at.session.company.BindLink("HS8", at.session.tariff.path(), "Lipseste");
  EXPECT_NE(Type(0, "Cod_NC", "94036010").message, "");
  EXPECT_EQ(Text(0, "Descriere_NC") + Text(0, "Cod_UMS"), "Laptopp/st");
  EXPECT_EQ(editor.CodeProblem(0, editor.ColumnOf("Cod_NC")), "") << "nobody knows whether it exists";
  at.session.company.BindLink("HS8", at.session.tariff.path(), "HS8");
  MustType(0, "Cod_NC", "84713000");
  MustType(0, "Cod_NC", "94036010");
  EXPECT_EQ(Text(0, "Cod_UMS"), "");
}

TEST_F(EditorTest, AnUnknownCodeStaysAsTypedAndIsMarked) {
  AddLine();
  Editor& editor = Open();
  MustType(0, "Cod_NC", "99999999");
  EXPECT_EQ(Text(0, "Cod_UMS") + Text(0, "Descriere_NC") + Text(0, "Exista_UMS"), "0");
  EXPECT_EQ(Text(0, "Val_UMS"), "2");
  MustType(0, "Incoterms", "zz");
  MustType(0, "UM", "d'o");
  EXPECT_TRUE(editor.SaveLine());
  EXPECT_EQ(Stored("SELECT Cod_NC, Incoterms, UM FROM Intrastat"), "99999999|zz|d'o");
  EXPECT_EQ(editor.CodeProblem(0, editor.ColumnOf("Incoterms")), "Cond livrare: codul 'zz' nu exista");
  EXPECT_NE(editor.CodeProblem(0, editor.ColumnOf("Cod_NC")), "");
  EXPECT_NE(editor.CodeProblem(0, editor.ColumnOf("UM")), "");
  EXPECT_EQ(editor.CodeProblem(0, editor.ColumnOf("Tara_Exp")), "");
  EXPECT_EQ(editor.CodeDescription(0, editor.ColumnOf("Tara_Exp")), "Germania");
  MustType(0, "Tara_Exp", "EL");  // a partner's prefix, which the checker takes
  EXPECT_EQ(editor.CodeProblem(0, editor.ColumnOf("Tara_Exp")), "");
  // A code without supplementary unit clears its quantity.
  MustType(0, "Cod_NC", "94036010");
  EXPECT_EQ(Text(0, "Cod_UMS") + Text(0, "Val_UMS") + Text(0, "Exista_UMS"), "0");
}

TEST_F(EditorTest, WrongTextIsRefusedByTheColumnsName) {
  AddLine();
  Editor& editor = Open();
  const std::tuple<const char*, const char*, const char*> kCases[] = {
      {"Cantitate", "doi", "Coloana Cantitate: 'doi' nu este un numar"},
      {"Net", "1,2,3", "Coloana Net [Kg]: '1,2,3' nu este un numar"},
      {"Net", "1E300", "Coloana Net [Kg]: '1E300' este un numar prea mare"},
      {"DataReceptiei", "31.02.2026", "Coloana Data receptiei: '31.02.2026' nu este o data (zz.ll.aaaa)"},
      {"DataReceptiei", "1.1.1926",
       "Coloana Data receptiei: '1.1.1926' este o data in afara anilor 2000 - 2099"},
      {"Tara_Exp", "DEU", "Coloana Tara Exp: 'DEU' are mai mult de 2 caractere"},
      {"Descriere_NC", "x", "Coloana Descriere Cod vamal nu se completeaza de mana"}};
  for (const auto& [field, text, message] : kCases) {
    const EditResult result = Type(0, field, text);
    EXPECT_FALSE(result.accepted) << field;
    EXPECT_EQ(result.message, message);
  }
  EXPECT_TRUE(editor.SaveLine());
  EXPECT_EQ(Stored("SELECT Cantitate, Net, Tara_Exp FROM Intrastat"), "2|10|DE");
}

TEST_F(EditorTest, NumbersAndDatesAreReadAsTheUserWritesThem) {
  const std::tuple<const char*, const char*, const char*> kNumbers[] = {{"1.234,5", ",", "1234.5"},
                                                                        {"1 234,5", ",", "1234.5"},
                                                                        {"1\u00A0234", ",", "1234"},
                                                                        {",5", ",", "0.5"},
                                                                        {"1.5", ",", "1.5"},
                                                                        {"1.500", ",", "1500"},
                                                                        {"12000,50", ".", "12000.5"},
                                                                        {"12,000", ".", "12000"},
                                                                        {"1.50.0", ",", "-"},
                                                                        {"-3", ",", "-3"},
                                                                        {"1,234.5", ".", "1234.5"},
                                                                        {"1,5", ".", "1.5"},
                                                                        {".", ".", "-"},
                                                                        {"", ",", "-"},
                                                                        {"12,5%", ",", "-"},
                                                                        {"1,5E-3", ",", "0.0015"}};
  for (const auto& [text, mark, number] : kNumbers) {
    const std::optional<double> read = calc::ParseTypedNumber(text, mark);
    EXPECT_EQ(read ? store::DoubleText(*read) : "-", number) << text << " with " << mark;
  }
  const std::pair<const char*, const char*> kDates[] = {{"5", "05.03.2026"},
                                                        {"5.2", "05.02.2026"},
                                                        {"05/02/26", "05.02.2026"},
                                                        {"05022026", "05.02.2026"},
                                                        {"2026-02-05", "05.02.2026"},
                                                        {"32", "-"},
                                                        {"12:30", "-"},
                                                        {"5.", "05.03.2026"}};
  for (const auto& [text, date] : kDates) {
    const std::optional<store::Date> read = ParseTypedDate(text, 2026, 3);
    EXPECT_EQ(read ? store::DateText(*read) : "-", date) << text;
  }
}

TEST_F(EditorTest, LinesAreCopiedAndDeletedAfterAQuestion) {
  AddLine({{"Raport_Stat", 1.1}, {"Transport_Suma", 10.0}, {"Probleme", -1}, {"Descriere", "a"}});
  AddLine({{"Descriere", "b"}}, "O");
  Editor& editor = Open();
  EXPECT_EQ(editor.DuplicateLine(0), 1);
  EXPECT_EQ(
      Stored(
          "SELECT TOP 1 Descriere, Val_Stat, Raport_Stat, Transport_Suma, Probleme FROM Intrastat ORDER BY "
          "Record_ID DESC"),
      "a|100|||0");
  EXPECT_EQ(Type(2, "UM", "BUC").accepted, true);  // the row behind the last begins a line
  EXPECT_TRUE(editor.CopyAbove(2, editor.ColumnOf("Cod_NC")).accepted);
  EXPECT_EQ(Text(2, "Cod_UMS"), "p/st");
  EXPECT_FALSE(editor.CopyAbove(0, editor.ColumnOf("Cod_NC")).accepted);

  const std::string question = "Stergeti 2 linii din declaratia ACHIZITIE 2026 / 3 ?";
  at.prompter().ExpectQuestion(question, "RASPUNDETI", platform::Icon::kQuestion, false);
  EXPECT_FALSE(editor.DeleteLines({0, 1}));
  at.prompter().ExpectQuestion(question, "RASPUNDETI", platform::Icon::kQuestion, true);
  EXPECT_TRUE(editor.DeleteLines({0, 1}));
  EXPECT_EQ(Text(0, "UM"), "BUC");
  at.prompter().ExpectQuestion("Stergeti linia selectata din declaratia ACHIZITIE 2026 / 3 ?", "RASPUNDETI",
                               platform::Icon::kQuestion, true);
  EXPECT_TRUE(editor.DeleteLines({0}));
  EXPECT_EQ(Stored("SELECT COUNT(*), MAX(TIP) FROM Intrastat"), "1|O");
}

TEST_F(EditorTest, ALineThatSomeoneDeletedIsOfferedAsANewOne) {
  AddLine({{"Descriere", "prima"}});
  const std::int64_t second = AddLine({{"Descriere", "a doua"}});
  Editor& editor = Open();
  at.Run("DELETE FROM Intrastat");
  MustType(1, "Descriere", "schimbata");
  at.prompter().ExpectQuestion(
      fmt::format(
          "Linia {} a fost stearsa intre timp din declaratia ACHIZITIE 2026 / 3.\r\nO salvati ca linie "
          "noua, cu valorile din grila ?",
          second),
      "RASPUNDETI", platform::Icon::kQuestion, true);
  at.prompter().ExpectError("Din declaratia ACHIZITIE 2026 / 3 s-a sters o linie intre timp");
  EXPECT_TRUE(editor.SaveLine());
  EXPECT_EQ(editor.row_count(), 1);
  EXPECT_EQ(Stored("SELECT Descriere, Net FROM Intrastat"), "schimbata|10");

  at.Run("DELETE FROM Intrastat");
  at.prompter().ExpectError(
      "Declaratia ACHIZITIE 2026 / 3 nu mai are nici o linie: a fost stearsa intre timp");
  EXPECT_TRUE(editor.Refresh());
  EXPECT_EQ(editor.row_count(), 0);
  EXPECT_TRUE(editor.Refresh());  // said once
}

TEST_F(EditorTest, AFailedSaveKeepsTheLineAndTellsWhy) {
  AddLine();
  Editor& editor = Open();
  MustType(0, "Net", "12");
  store::Connection other(session::StoreEnvironment(at.session));
  other.Open(store::JetString(at.session.current.database_path));
  other.Execute("CREATE TABLE Alta (a LONG)");
  other.Begin();
  other.Execute("INSERT INTO Alta (a) VALUES (1)");
  at.prompter().AcceptAnything(false);
  EXPECT_FALSE(editor.SaveLine());
  EXPECT_EQ(at.prompter().seen().size(), 1u);
  EXPECT_EQ(editor.pending_row(), 0);
  EXPECT_EQ(Text(0, "Net"), "12");
  other.Rollback();
  EXPECT_TRUE(editor.SaveLine());
  EXPECT_EQ(Stored("SELECT Net FROM Intrastat"), "12");
}

TEST_F(EditorTest, ViewingWritesNothing) {
  AddLine({{"Descriere", "a"}});
  Editor& editor = Open(Editor::Mode::kView);
  EXPECT_FALSE(editor.CanEdit(0, editor.ColumnOf("Net")));
  EXPECT_FALSE(Type(0, "Net", "99").accepted);
  at.prompter().AcceptAnything(true);
  editor.NewLine();
  editor.DuplicateLine(0);
  editor.DeleteLines({0});
  editor.Paste(0, {editor.ColumnOf("Net")}, "77\n78");
  editor.ExecuteUpdate("Net", "66", {});
  editor.Check({});
  EXPECT_EQ(at.prompter().seen().size(), 6u);
  EXPECT_EQ(Stored("SELECT COUNT(*), SUM(Net) FROM Intrastat"), "1|10");
}

}  // namespace
}  // namespace declarations
