#include "editor_fixture.h"

namespace declarations {
namespace {

using platform::Icon;
using test_support::Installation;

constexpr char kNoCondition[] =
    "NU ati selectat nici o conditie, se vor actualiza toate inregistrarile. Continuati ?";

TEST_F(EditorTest, ConditionsAreBuiltWithTheirOddities) {
  EXPECT_EQ(ConditionText("UM", "IS NOT NULL", "x"), " AND [UM] <> \" \"");
  EXPECT_EQ(ConditionText("UM", "IS NULL", ""), " AND ([UM] IS NULL OR [UM]=\"\")");
  EXPECT_EQ(ConditionText("UM", "BETWEEN 'Valoare' AND 'Valoare'", "a"), " AND [UM] BETWEEN 'a' AND 'a'");
  EXPECT_EQ(StatementValue(ColumnKind::kNumber, "1.234,5", ","), "1234.5");
  EXPECT_EQ(StatementValue(ColumnKind::kNumber, "[Net]*2", ","), "[Net]*2");
  EXPECT_EQ(StatementValue(ColumnKind::kDate, "5.3.2026", ","), "2026-03-05");
  EXPECT_EQ(StatementValue(ColumnKind::kText, "1,5", ","), "1,5");
  EXPECT_EQ(CodeListStatement(*tariff::FindCodeCheck("Nat_Tranz")), tariff::kNatTranzList);
  EXPECT_EQ(CodeListStatement(*tariff::FindCodeCheck("Mod_Transp")), tariff::kModTranspList);
}

TEST_F(EditorTest, TheFilterShowsSomeLinesAndTheTotalsOfAll) {
  AddLine({{"Descriere", ""}, {"Net", 1.5}, {"DataReceptiei", store::Date{kMarch2}}});
  AddLine({{"Descriere", "a"}, {"Net", 2.0}, {"DataReceptiei", store::Date{kMarch2 + 1}}});
  AddLine({{"Descriere", store::Null()}});
  AddLine({{"Descriere", "a"}}, "O");
  Editor& editor = Open();
  const std::pair<Condition, int> kCases[] = {{{"Descriere", "IS NOT NULL", ""}, 2},
                                              {{"Descriere", "IS NULL", ""}, 2},
                                              {{"Net", "= Valoare", "1,5"}, 1},
                                              {{"DataReceptiei", "> #Valoare#", "02.03.2026"}, 1},
                                              {{"Descriere", "LIKE '%Valoare%'", "A"}, 1},
                                              {Condition{}, 3}};
  for (const auto& [condition, rows] : kCases) {
    EXPECT_TRUE(editor.Filter(condition));
    EXPECT_EQ(editor.row_count(), rows) << condition.CmbColoanaWhere << condition.TXT_SemnExpresie;
    EXPECT_EQ(editor.totals().Net, 13.5);
  }
  std::vector<ConditionOperator> operators = editor.Operators(editor.ColumnOf("Descriere"));
  ASSERT_EQ(operators.size(), 11u);
  EXPECT_EQ(operators[0].DescSemn + "|" + operators[0].SemnExpresie, "egal|= 'Valoare'");
  EXPECT_EQ(editor.Operators(editor.ColumnOf("Factura_Data")).size(), 8u);

  at.prompter().ExpectError("Semn conditie  -  Obligatoriu de completat !");
  EXPECT_FALSE(editor.Filter({"Net", "", "1"}));
  // A filter that fails leaves the one on show.
  EXPECT_TRUE(editor.Filter({"Net", "= Valoare", "2"}));
  at.prompter().ExpectStarting("Eroare nr: -2147217904", "EROARE", Icon::kCritical);
  EXPECT_FALSE(editor.Filter({"Net", "= Valoare", "doi"}));
  EXPECT_EQ(editor.row_count(), 1);
  EXPECT_TRUE(editor.filtered());
  EXPECT_TRUE(editor.Refresh());
  EXPECT_EQ(editor.row_count(), 3);
}

TEST_F(EditorTest, ABulkUpdateSetsTheLinesThatMeetTheCondition) {
  AddLine({{"Descriere", "a"}});
  AddLine({{"Descriere", "b"}});
  AddLine({{"Descriere", "a"}}, "O");
  test_support::AddLine(at.session, "I", 2026, 4, {{"Descriere", "a"}});
  Editor& editor = Open();
  const auto all = [this](const char* column) {
    std::string text;
    store::Recordset rows =
        at.session.company.Query(fmt::format("SELECT {} FROM Intrastat ORDER BY Record_ID", column));
    for (; !rows.eof(); rows.MoveNext()) text += rows.Get(0).ToText() + "|";
    return text;
  };
  at.prompter().ExpectError("Coloana Actulizata  -  Obligatoriu de completat !");
  at.prompter().ExpectError("Valoare Nou  -  Obligatoriu de completat !");
  EXPECT_FALSE(editor.ExecuteUpdate("", "", {}));
  at.prompter().ExpectInfo("Coloana Descriere_NC NU SE POATE ACTUALIZA");
  EXPECT_FALSE(editor.CanUpdate("Descriere_NC"));
  at.prompter().ExpectQuestion(kNoCondition, "RASPUNDETI", Icon::kQuestion, false);
  EXPECT_FALSE(editor.ExecuteUpdate("UM", "BUC", {}));
  EXPECT_EQ(all("UM"), "||||");

  MustType(0, "Net", "11");  // the pending line is saved first
  at.prompter().ExpectInfo("Inregistrari modificate : 1");
  EXPECT_TRUE(editor.ExecuteUpdate("UM", "1,5", {"Descriere", "= 'Valoare'", "a"}));
  EXPECT_EQ(all("UM") + all("Net"), "1,5||||11|10|10|10|");
  EXPECT_EQ(editor.row_count(), 2);
  at.prompter().ExpectQuestion(kNoCondition, "RASPUNDETI", Icon::kQuestion, true);
  at.prompter().ExpectInfo("Inregistrari modificate : 2");
  EXPECT_TRUE(editor.ExecuteUpdate("Net", "1,5", {}));
  EXPECT_EQ(all("Net"), "1.5|1.5|10|10|");
  EXPECT_EQ(editor.totals().Net, 3);
  EXPECT_TRUE(editor.Filter({"Descriere", "= 'Valoare'", "a"}));
  at.prompter().ExpectInfo("Inregistrari modificate : 1");
  EXPECT_TRUE(editor.ExecuteUpdate("Factura_Data", "5.3.2026", {"Descriere", "= 'Valoare'", "b"}));
  EXPECT_EQ(all("Factura_Data"), "|05.03.2026|||");
  EXPECT_EQ(editor.row_count(), 1);  // the filter is applied again
}

TEST_F(EditorTest, AnApostropheFailsTheBulkUpdateAndChangesNothing) {
  AddLine({{"Descriere", "a"}});
  Editor& editor = Open();
  at.prompter().AcceptAnything(true);
  EXPECT_FALSE(editor.ExecuteUpdate("Descriere", "O'Neil", {"Net", "= Valoare", "10"}));
  ASSERT_EQ(at.prompter().seen().size(), 1u);
  EXPECT_THAT(at.prompter().seen()[0], testing::HasSubstr("-2147217900"));
  EXPECT_EQ(Text(0, "Descriere"), "a");
}

TEST_F(EditorTest, ASortKeepsTheLineUnderTheCursorAndTheOrderOfTies) {
  AddLine({{"Descriere", "b"}});
  AddLine({{"Descriere", "c"}});
  AddLine({{"Descriere", "B"}, {"Net", 3.0}});
  Editor& editor = Open();
  const int column = editor.ColumnOf("Descriere");
  EXPECT_TRUE(editor.Sort(column, true));
  EXPECT_EQ(Text(0, "Descriere") + Text(1, "Descriere") + Text(2, "Descriere"), "cbB");
  MustType(2, "Descriere", "d");  // stays where it is until the next sort
  EXPECT_TRUE(editor.SaveLine());
  EXPECT_EQ(Text(2, "Descriere") + Text(2, "Net"), "d3");
  EXPECT_EQ(editor.DuplicateLine(0), 3);
  EXPECT_EQ(Text(3, "Descriere"), "c");
  const auto shown = [this] {
    return Text(0, "Descriere") + Text(1, "Descriere") + Text(2, "Descriere") + Text(3, "Descriere");
  };
  EXPECT_TRUE(editor.ReadAgain());
  EXPECT_EQ(shown(), "dccb");
  EXPECT_TRUE(editor.Sort(-1, false));
  EXPECT_EQ(shown(), "bcdc");
  EXPECT_TRUE(editor.Sort(column, true));
  EXPECT_TRUE(editor.Refresh());
  EXPECT_EQ(shown(), "bcdc") << "reloading brings the order of entry back";
  at.prompter().ExpectError("Eroare sortare");
  EXPECT_FALSE(editor.Sort(99, false));
}

TEST_F(EditorTest, AReplacedQueryAndTheProvenanceViewAreShown) {
  AddLine({{"SourceFile", "martie.xls"}, {"Net", 1.0}});
  AddLine({{"SourceFile", "alta.xls"}, {"Net", 2.0}});
  Editor& editor = Open();
  EXPECT_EQ(editor.columns().size(), 37u);
  EXPECT_TRUE(editor.ShowProvenance(true));
  const int source = editor.ColumnOf("SourceFile");
  EXPECT_EQ(editor.columns()[static_cast<std::size_t>(source)].caption, "Fisier sursa");
  EXPECT_FALSE(editor.columns()[static_cast<std::size_t>(source)].hidden);
  EXPECT_TRUE(editor.Sort(source, false));
  EXPECT_EQ(Text(0, "SourceFile"), "alta.xls");
  EXPECT_FALSE(Type(0, "Net", "5").accepted);
  EXPECT_TRUE(editor.ShowProvenance(false));  // which has no such column to sort by
  EXPECT_EQ(Text(0, "Net"), "1");

  at.files().CreateFolders(at.InSystem("SQL\\"));
  at.files().Replace(at.InSystem("SQL\\Intrastat.txt"),
                     "SELECT Record_ID, Net, Net*2 AS Dublu FROM Intrastat\r\n ORDER BY Net DESC\r\n");
  EXPECT_TRUE(editor.Refresh());
  EXPECT_EQ(Text(0, "Net") + Text(0, "Dublu"), "24");
  EXPECT_EQ(editor.columns()[2].caption, "Dublu");
  EXPECT_FALSE(editor.columns()[2].hidden);
  EXPECT_FALSE(editor.CanEdit(0, 2));
  MustType(0, "Net", "7,25");
  EXPECT_TRUE(editor.SaveLine());
  EXPECT_EQ(Stored("SELECT SUM(Net) FROM Intrastat"), "8.25");
  at.prompter().ExpectStarting("Interogarea instalarii", "EROARE", Icon::kCritical);
  EXPECT_EQ(editor.NewLine(), -1);
}

TEST_F(EditorTest, TheCalculationsGetTheFilterWithoutTheFiscalCode) {
  Editor& editor = Open();
  at.prompter().ExpectInfo(
      "Nu este bifata optiunea calcul valoare statistica\r\nPentru a determina necesitatea calculului "
      "valorii "
      "statistice va rugam consultati legislatia in vigoare");
  EXPECT_FALSE(editor.RecalcValStatFilter());
  editor.request().Check_ValStatistica = true;
  EXPECT_EQ(editor.RecalcValStatFilter(), " WHERE [TIP] ='I' AND [Anul]=2026 AND [Luna]=3");
  EXPECT_EQ(editor.FileName(), "0000123456_A_20263.xml");
}

TEST_F(EditorTest, ProblemsLeadToTheirCells) {
  AddLine();
  AddLine({{"Tara_Exp", "GB"}, {"Val_UMS", 0.0}, {"Mod_Transp", store::Null()}});
  Editor& editor = Open();
  std::string shown;
  EXPECT_EQ(editor.Check([&shown](const std::string& path) { shown = path; }), CheckOutcome::kProblems);
  EXPECT_EQ(shown, at.InSystem("Verificare\\RO123456_I_3_2026.txt"));
  EXPECT_FALSE(editor.Flagged(0));
  EXPECT_TRUE(editor.Flagged(1));
  EXPECT_EQ(editor.ProblemText(0), "");
  EXPECT_EQ(editor.ProblemText(1, editor.ColumnOf("Mod_Transp")),
            "Mod_Transp ESTE GOL\nMod_Transp =  ===> NU EXISTA");
  std::string columns;
  EXPECT_TRUE(editor.Filter({"Tara_Exp", "= 'Valoare'", "DE"}));
  for (const LineProblem& problem : editor.problems().all()) {
    const Editor::Cell cell = editor.Locate(problem);  // the filter hides the line
    EXPECT_EQ(cell.row, 1);
    columns += editor.columns()[static_cast<std::size_t>(cell.column)].field + " ";
  }
  EXPECT_EQ(columns, "Mod_Transp Tara_Exp Tara_Exp Mod_Transp Val_UMS ");
  at.Run("UPDATE Intrastat SET Tara_Exp='DE', Mod_Transp='3', Val_UMS=1, Net=0.2");
  at.prompter().ExpectInfo("Declaratie Intrastat - OK. Nu sunt probleme");
  std::vector<Finding> findings;
  EXPECT_EQ(editor
                .Export({nullptr, [] { return Installation::InSystem("Declaratii"); },
                         [&findings](const std::vector<Finding>& found) {
                           findings = found;
                           return false;
                         }})
                .outcome,
            ExportOutcome::kGivenUp);
  EXPECT_EQ(editor.problems().all().size(), 0u);
  ASSERT_FALSE(findings.empty());
  const Editor::Cell mass = editor.Locate(findings.back());
  EXPECT_EQ(mass.row, 0);
  EXPECT_EQ(mass.column, editor.ColumnOf("Net"));

  // Opened again, the texts of the last check are there; a later declaration of the month has none of them.
  at.Run("UPDATE Intrastat SET Mod_Transp='x'");
  editor.Check({});
  Open();
  EXPECT_EQ(editor_->ProblemText(1), "Mod_Transp = x ===> NU EXISTA");
  at.Run("DELETE FROM Intrastat");
  AddLine();
  EXPECT_EQ(Open().problems().all().size(), 0u);
}

TEST_F(EditorTest, AFailedCheckOrExportLeavesWhatIsKnown) {
  AddLine({{"Mod_Transp", "x"}});
  Editor& editor = Open();
  // A report that cannot be filed is still the one of this check.
  at.machine.files.refuses = [](std::string_view path) {
    return path.find("Verificare\\") != std::string_view::npos;
  };
  at.prompter().AcceptAnything(true);
  EXPECT_EQ(editor.Check({}), CheckOutcome::kProblems);
  EXPECT_THAT(editor.report(), testing::HasSubstr("Mod_Transp = x ===> NU EXISTA"));
  at.files().CreateFolders(at.InSystem("SQL\\"));
  at.files().Replace(at.InSystem("SQL\\Verificare.txt"), "SELECT Nimic FROM Intrastat\r\n\r\n");
  EXPECT_EQ(editor.Check({}), CheckOutcome::kNotRun);
  EXPECT_EQ(editor.Export({}).outcome, ExportOutcome::kFailed);
  EXPECT_EQ(editor.problems().all().size(), 1u);
}

TEST_F(EditorTest, TheAgentsFileIsWrittenOnlyAfterAChange) {
  const std::string file = at.InSystem("Default\\Frm_INTRASTAT.txt");
  at.files().CreateFolders(file);  // a folder in its place cannot be read
  Editor& editor = Open();
  EXPECT_TRUE(editor.Close());
  editor.request().header.TXT_Nume_Dec = "ALT DECLARANT SRL";
  at.prompter().ExpectStarting("Datele declarantului tert nu s-au putut pastra", "EROARE", Icon::kCritical);
  EXPECT_TRUE(editor.Close());
}

TEST_F(EditorTest, ABlockIsPastedThroughTheSameRules) {
  AddLine({{"Cantitate", 1.0}});
  Editor& editor = Open();
  const std::vector<int> columns = {editor.ColumnOf("Cod_NC"), editor.ColumnOf("Descriere_NC"),
                                    editor.ColumnOf("Cantitate"), editor.ColumnOf("Incoterms")};
  at.session.defaults.I_Incoterms = "CPT";
  const PasteResult result = editor.Paste(
      0, columns,
      "94036010\taltceva\t2,5\tDAP\r\n84713000\t\tdoi\t\r\n\r\n\"84713000\"\t\t\"1\n\"\tzz\tprea mult\r\n");
  EXPECT_TRUE(result.done);
  EXPECT_EQ(result.lines_added, 2);
  EXPECT_EQ(editor.row_count(), 3);
  EXPECT_EQ(Stored("SELECT TOP 1 Cod_NC, Cantitate, Incoterms, Cod_UMS FROM Intrastat ORDER BY Record_ID"),
            "94036010|2.5|DAP|");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM Intrastat WHERE Cod_UMS='p/st' AND Tara_Dest='RO'"), "2");
  EXPECT_EQ(Text(1, "Incoterms") + Text(2, "Incoterms") + Text(2, "Cantitate"), "CPTzz1");
  std::string refused;
  for (const RefusedCell& cell : result.refused) {
    refused += fmt::format("{},{}: {}; ", cell.row, cell.column, cell.reason);
  }
  EXPECT_EQ(refused, fmt::format("0,{}: Coloana Descriere Cod vamal nu se completeaza de mana; "
                                 "1,{}: Coloana Cantitate: 'doi' nu este un numar; "
                                 "2,-1: Nu mai sunt coloane la dreapta; ",
                                 columns[1], columns[2]));
}

TEST_F(EditorTest, ACancelledPasteIsUndone) {
  AddLine();
  Editor& editor = Open();
  std::string block;
  for (int i = 0; i < 600; ++i) block += "nou\n";
  at.machine.progress.cancelled = true;
  EXPECT_FALSE(editor.Paste(0, {editor.ColumnOf("Descriere")}, block).done);
  EXPECT_EQ(Stored("SELECT COUNT(*), MAX(Descriere) FROM Intrastat"), "1|");
  EXPECT_EQ(editor.row_count(), 1);
}

TEST_F(EditorTest, APasteThatTheDatabaseRefusesChangesNothing) {
  const std::int64_t first = AddLine({{"Net", 1.0}});
  const std::int64_t second = AddLine({{"Net", 2.0}});
  Editor& editor = Open();
  at.Run(fmt::format("DELETE FROM Intrastat WHERE Record_ID={}", second));
  at.prompter().AcceptAnything(true);
  const PasteResult result = editor.Paste(0, {editor.ColumnOf("Descriere")}, "x\ny\nz");
  EXPECT_FALSE(result.done);
  ASSERT_EQ(at.prompter().seen().size(), 2u);
  EXPECT_THAT(at.prompter().seen()[1], testing::HasSubstr("s-a sters o linie intre timp"));
  EXPECT_EQ(Stored("SELECT Record_ID, Descriere FROM Intrastat"), fmt::format("{}|", first));
  EXPECT_EQ(Text(0, "Descriere"), "");
  EXPECT_EQ(at.Get("SELECT COUNT(*) FROM Denumiri_Intrastat"), store::Value(0));
}

}  // namespace
}  // namespace declarations
