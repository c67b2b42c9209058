#include <gmock/gmock.h>

#include "cli_fixture.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class Cli : public CliTest {};

TEST_F(Cli, TellsUsageFromRefusal) {
  EXPECT_EQ(Run({}).status, cli::kUsage);
  EXPECT_EQ(Run({"--help"}).status, cli::kDone);
  EXPECT_EQ(Run({"template", "set"}).status, cli::kUsage);
  EXPECT_EQ(Run({"lines", "--company", "RO1", "--tip", "I", "--year", "2026", "--month", "13"}).status,
            cli::kUsage);
  EXPECT_EQ(Run({"lines", "--company", "RO1", "--tip", "X", "--year", "2026", "--month", "1"}).status,
            cli::kUsage);
  EXPECT_EQ(Run({"rate", "--company", "RO1", "--moneda", "EUR"}).status, cli::kUsage);
  EXPECT_EQ(Run({"rate", "--company", "RO1", "--moneda", "EUR", "--date", "2026-02-30"}).status, cli::kUsage);
  EXPECT_EQ(Run({"sql", "SELECT 1"}).status, cli::kUsage);
  EXPECT_EQ(Run({"sql", "--db", "company", "SELECT 1"}).status, cli::kUsage);

  const Answer nothing_laid = Run({"company", "list"});
  EXPECT_EQ(nothing_laid.status, cli::kRefused);
  EXPECT_THAT(nothing_laid.err, HasSubstr("declarix-cli setup"));
  EXPECT_EQ(nothing_laid.out, "");
}

TEST_F(Cli, LaysDownOnceAndThenOnlyWhatIsMissing) {
  EXPECT_THAT(Run({"setup"}).out, HasSubstr("Comun.mdb"));
  EXPECT_EQ(Run({"setup"}).out, "adaugat\n");
  EXPECT_EQ(Run({"--json", "settings", "get", "DataBase"}).out,
            "{\"DataBase\": \"C:\\\\Declarix\\\\System\\\\DataBase\\\\\"}\n");
}

TEST_F(Cli, ChangesSettingsButTheForcedOnes) {
  ASSERT_EQ(Run({"setup"}).status, cli::kDone);
  EXPECT_EQ(Run({"settings", "set", "VerificaNet", "1"}).status, cli::kDone);
  EXPECT_EQ(Run({"settings", "get", "VerificaNet"}).out, "1\n");
  const Answer forced = Run({"settings", "set", "Moneda", "USD"});
  EXPECT_EQ(forced.status, cli::kRefused);
  EXPECT_THAT(forced.err, HasSubstr("la fiecare pornire"));
  EXPECT_EQ(Run({"settings", "get", "Moneda"}).out, "EUR\n");
  EXPECT_EQ(Run({"settings", "get", "moneda"}).status, cli::kRefused);
  EXPECT_EQ(Run({"settings", "set", "ZecRotLEI", "256"}).err, "EROARE: Zecimale_ZecRotLEI - NU ESTE NUMAR\n");
}

TEST_F(Cli, RegistersCompaniesWithTheirDefaults) {
  Install();
  EXPECT_EQ(Run({"company", "list"}).out,
            "Nume_Firma\tCod_Fiscal\tDataBaseFile\nProba\tRO123456\tRO123456.mdb\n");
  EXPECT_EQ(Run({"company", "add", "--cod-fiscal", "123", "--nume", "X"}).status, cli::kRefused);
  EXPECT_THAT(Run({"company", "add", "--cod-fiscal", "RO123456", "--nume", "X"}).err,
              HasSubstr("Exista deja firma cu codul fiscal : RO123456"));
  EXPECT_EQ(Run({"company", "add", "--cod-fiscal", "RO2", "--nume", "X", "--field", "Lipsa=1"}).status,
            cli::kUsage);
  EXPECT_EQ(Run({"company", "add", "--cod-fiscal", "RO2", "--nume", "Alta", "--field", "XML_Detaliat=1",
                 "--field", "Oras_Firma=Iasi"})
                .status,
            cli::kDone);
  EXPECT_EQ(
      Run({"sql", "--db", "common", "SELECT Oras_Firma, XML_Detaliat FROM Firme WHERE Cod_Fiscal='RO2'"}).out,
      "Oras_Firma\tXML_Detaliat\nIasi\t-1\n");
  EXPECT_EQ(Run({"defaults", "set", "--company", "RO2", "I_Tara_Exp=DE", "O_Incoterms=DAP"}).status,
            cli::kDone);
  EXPECT_EQ(Run({"sql", "--db", "common",
                 "SELECT I_Tara_Exp, O_Incoterms FROM Intrastat_Default WHERE Cod_Fiscal='RO2'"})
                .out,
            "I_Tara_Exp\tO_Incoterms\nDE\tDAP\n");
  EXPECT_EQ(Run({"defaults", "set", "--company", "RO9", "I_Tara_Exp=DE"}).status, cli::kRefused);
}

TEST_F(Cli, AnswersForTariffAndRates) {
  Install();
  EXPECT_THAT(Run({"tariff", "find", "84713000", "--year", "2026", "--month", "3"}).out,
              EndsWith("|p/st|1\n"));
  EXPECT_EQ(Run({"tariff", "find", "84713001", "--year", "2026", "--month", "3"}).out, "||\n");
  const Answer missing = Run({"tariff", "load", HostPath("lipsa.xml"), "--year", "2024"});
  EXPECT_EQ(missing.status, cli::kRefused);
  EXPECT_THAT(missing.err, HasSubstr("lipsa.xml"));

  EXPECT_EQ(Run({"rate", "add", "--company", "RO123456", "--moneda", "HUF", "--date", "2026-03-04", "--curs",
                 "1.2753", "--multiplicator", "100"})
                .status,
            cli::kDone);
  EXPECT_EQ(Run({"rate", "--company", "RO123456", "--moneda", "HUF", "--date", "2026-03-04"}).out,
            "0.0000\n");
  EXPECT_EQ(Run({"rate", "--company", "RO123456", "--moneda", "HUF", "--date", "2026-03-05"}).out,
            "0.0128\n");
  for (const auto& [currency, rate] : {std::pair("EUR", "0.00004"), {"QQQ", "4.97"}, {"RON", "1"}}) {
    EXPECT_EQ(Run({"rate", "add", "--company", "RO123456", "--moneda", currency, "--date", "2026-03-04",
                   "--curs", rate})
                  .status,
              cli::kRefused)
        << currency;
  }
}

TEST_F(Cli, TakesAWorksheetToTheDeclarationFile) {
  Install();
  ASSERT_EQ(Run({"defaults", "set", "--company", "RO123456", "I_Tara_Exp=DE"}).status, cli::kDone);
  test_support::XlsWriter book;
  auto& sheet = book.AddSheet("Foaie");
  const char* headings[] = {"Cod", "Lei", "Exp", "Net", "Buc", "Orig"};
  for (unsigned i = 0; i < std::size(headings); ++i) sheet.Text(0, i, headings[i]);
  const char* codes[] = {"8471.30-00", "8471.30-00 laptop nou, negru", "94036010"};
  for (unsigned row = 1; row <= std::size(codes); ++row) {
    sheet.Text(row, 0, codes[row - 1]);
    sheet.Number(row, 1, 1000.5 * row);
    sheet.Text(row, 2, row == 3 ? "GB" : "de");
    sheet.Number(row, 3, 12.25);
    sheet.Number(row, 4, 3);
    sheet.Text(row, 5, "cn");
  }
  const std::string xls = HostPath("martie o'neil.xls"), plain = HostPath("martie.xls");
  book.Save(xls);
  book.Save(plain);

  const std::vector<std::string> month = {"--company", "RO123456", "--tip",   "I",
                                          "--year",    "2026",     "--month", "3"};
  const auto with_month = [&](std::vector<std::string> command, const std::vector<std::string>& rest = {}) {
    command.insert(command.end(), month.begin(), month.end());
    command.insert(command.end(), rest.begin(), rest.end());
    return Run(command);
  };
  ASSERT_EQ(Run({"template", "create", "--company", "RO123456", "--name", "M", "--tip", "ACHIZITIE",
                 "--sheet", "Foaie"})
                .status,
            cli::kDone);
  EXPECT_EQ(Run({"template", "create", "--company", "RO123456", "--name", "M", "--tip", "ACHIZITIE"}).err,
            "EROARE: Exista deja macheta: M\n");
  const char* columns[] = {"Cod_NC", "Val_Fiscala", "Tara_Exp", "Net", "Cantitate", "Tara_Orig"};
  for (unsigned i = 0; i < std::size(columns); ++i) {
    ASSERT_EQ(Run({"template", "set", "--company", "RO123456", "--name", "M", "--column", columns[i],
                   "--number", std::to_string(i + 1), "--size", ""})
                  .status,
              cli::kDone);
  }
  EXPECT_EQ(
      Run({"template", "set", "--company", "RO123456", "--name", "M", "--column", "Lipsa", "--number", "1"})
          .status,
      cli::kRefused);
  EXPECT_THAT(Run({"template", "show", "--company", "RO123456", "--name", "M"}).out,
              HasSubstr("\nTara_Orig\tTara Origine\t-1\t6\t\\N\t\\N\tTEXT\n"));
  EXPECT_EQ(Run({"template", "columns", plain, "--sheet", "Foaie"}).out,
            "Nr. Coloana\tCap Coloana\tPrima "
            "Valoare\n1\tCod\t8471.30-00\n2\tLei\t1000.5\n3\tExp\tde\n4\tNet\t12.25\n"
            "5\tBuc\t3\n6\tOrig\tcn\n");

  const Answer apostrophe = with_month({"import", "--template", "M"}, {xls});
  EXPECT_EQ(apostrophe.status, cli::kRefused);
  EXPECT_THAT(apostrophe.err, HasSubstr("-2147217900"));
  const Answer imported = with_month({"import", "--template", "M"}, {plain});
  EXPECT_EQ(imported.status, cli::kRefused) << "a row was rejected";
  EXPECT_EQ(imported.out, "preluate\ttotal\trespinse\n2\t3\t1\n");
  EXPECT_THAT(
      imported.err,
      testing::AllOf(HasSubstr("Preluare Terminata: Au fost preluate : 2 inregistrari din totalul de : 3\n"),
                     HasSubstr("\nRandul 3, coloana Cod_NC: ")));
  EXPECT_THAT(with_month({"import", "--template", "M"}, {plain}).err,
              HasSubstr("A MAI FOST PRELUAT, CONTINUATI ? -> Nu\n"));
  EXPECT_THAT(with_month({"lines"}).out,
              testing::AllOf(StartsWith("TIP\tCod_Fiscal\tAnul\tLuna\tDataReceptiei\t"),
                             HasSubstr("\nI\tRO123456\t2026\t3\t\\N\t\\N\t84713000\t"),
                             HasSubstr("\t1000.5\t0\tCN\tDE\tRO\t12.25\tp/st\t3\t1.1\tCPT\t3\t")));

  const Answer checked = with_month({"check"}, {"--statistic"});
  EXPECT_EQ(checked.status, cli::kRefused);
  EXPECT_THAT(checked.out, HasSubstr(" - Tara_Exp = GB ===> NU EXISTA SAU NU ESTE TARA UE\n"));
  const Answer refused = with_month({"export"});
  EXPECT_EQ(refused.status, cli::kRefused);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(Run({"sql", "--db", "company", "--company", "RO123456",
                 "UPDATE Intrastat SET Tara_Exp='FR' WHERE Tara_Exp='GB'"})
                .out,
            "affected 1\n");
  EXPECT_EQ(with_month({"check"}, {"--no-statistic"}).status, cli::kDone);
  EXPECT_EQ(with_month({"check"}, {"--statistic"}).status, cli::kRefused) << "Val_Stat is 0 on every line";

  const Answer written = with_month({"export"}, {"--header", "TXT_Email=a@b.example", "--no-statistic"});
  EXPECT_EQ(written.out, "C:\\Declarix\\System\\DeclaratiiXML\\0000123456_A_20263.xml\n");
  EXPECT_THAT(written.err, HasSubstr("TXT_Nume_Prenume")) << "placeholders are warned about";
  const std::string host = HostPath("c/Declarix/System/DeclaratiiXML/0000123456_A_20263.xml");
  std::stringstream xml;
  xml << std::ifstream(host).rdbuf();
  EXPECT_THAT(xml.str(),
              testing::AllOf(HasSubstr("<Email>a@b.example</Email>"), Not(HasSubstr("StatisticalValue"))));
  EXPECT_THAT(
      with_month({"export", "--json"}, {"--kind", "C", "--no-statistic"}).out,
      testing::AllOf(HasSubstr("_AR_20263.xml"), HasSubstr("\"host_path\": \"" + folder_.path().string())));
  EXPECT_EQ(with_month({"export"}, {"--header", "TXT_Lipsa=1"}).status, cli::kUsage);
  EXPECT_EQ(with_month({"nil"}, {"--header", "TXT_CUI_Dec=RO77"}).out,
            "C:\\Declarix\\System\\DeclaratiiXML\\0000123456_AN_20263.xml\n");
  std::stringstream nil;
  nil << std::ifstream(HostPath("c/Declarix/System/DeclaratiiXML/0000123456_AN_20263.xml")).rdbuf();
  EXPECT_THAT(nil.str(), HasSubstr("<VatNr>0000000077</VatNr>")) << "the agent is filed without its switch";
}

TEST_F(Cli, DeletesATemplateOnlyWhenToldTo) {
  Install();
  const std::vector<std::string> which = {"--company", "RO123456", "--name", "M"};
  ASSERT_EQ(Run({"template", "create", "--company", "RO123456", "--name", "M", "--tip", "LIVRARE"}).status,
            cli::kDone);
  const Answer unanswered = Run({"template", "delete", "--company", "RO123456", "--name", "M"});
  EXPECT_EQ(unanswered.status, cli::kRefused);
  EXPECT_EQ(unanswered.err, "CONFIRMARE STERGERE: Stergeti modul de preluare ? M -> Nu\n");
  EXPECT_EQ(Run({"template", "delete", "--company", "RO123456", "--name", "M", "--answer", "yes"}).status,
            cli::kDone);
  EXPECT_EQ(Run({"template", "show", "--company", "RO123456", "--name", "M"}).status, cli::kRefused);
}

TEST_F(Cli, NamesADatabaseThatIsNone) {
  Install();
  std::ofstream(HostPath("c/Declarix/System/DataBase/RO123456.mdb"))
      << "not a database, but long enough to be read";
  const Answer answer =
      Run({"lines", "--company", "RO123456", "--tip", "I", "--year", "2026", "--month", "3"});
  EXPECT_EQ(answer.status, cli::kRefused);
  EXPECT_THAT(answer.err, HasSubstr("RO123456.mdb"));
}

TEST_F(Cli, PrintsTheReportOfThisCheckThoughItCannotBeFiled) {
  Install();
  const std::filesystem::path report = HostPath("c/Declarix/System/Verificare/RO123456_I_3_2026.txt");
  std::filesystem::create_directories(report);  // stands where the file would
  ASSERT_EQ(Run({"sql", "--db", "company", "--company", "RO123456",
                 "INSERT INTO Intrastat (TIP, Cod_Fiscal, Anul, Luna) VALUES ('I', 'RO123456', 2026, 3)"})
                .status,
            cli::kDone);
  for (const char* command : {"check", "export"}) {
    const Answer answer =
        Run({command, "--company", "RO123456", "--tip", "I", "--year", "2026", "--month", "3"});
    EXPECT_EQ(answer.status, cli::kRefused);
    EXPECT_THAT(answer.err, HasSubstr("RO123456_I_3_2026.txt"));
    EXPECT_THAT(answer.out + answer.err, HasSubstr("Pozitia: 1 - Cod_NC ESTE GOL\n")) << command;
  }
}

TEST_F(Cli, SaysOnlyWhyTheSettingsCannotBeRead) {
  Install();
  std::ofstream(HostPath("c/ProgramData/Declarix/Settings.xml")) << "<Settings><Dec";
  const Answer answer = Run({"company", "list"});
  EXPECT_EQ(answer.status, cli::kRefused);
  EXPECT_THAT(answer.err, HasSubstr("Settings.xml"));
  EXPECT_THAT(answer.err, Not(HasSubstr("Comun.mdb"))) << "what follows from it is not said too";
}

TEST_F(Cli, RunsStatementsInTurnAndStopsAtTheFirstError) {
  const std::string path = HostPath("proba.mdb");
  const Answer answer =
      Run({"sql", "--file", path, "--create", "CREATE TABLE T (A LONG, B TEXT(20), C YESNO, D DATETIME)",
           "INSERT INTO T (A, B, C, D) VALUES (1, 'x', True, #3-4-26#)", "INSERT INTO T (A) VALUES (2)",
           "SELECT * FROM T ORDER BY A", "SELECT Lipsa FROM T", "DELETE FROM T"});
  EXPECT_EQ(answer.status, cli::kRefused);
  EXPECT_EQ(answer.out,
            "affected 0\naffected 1\naffected 1\nA\tB\tC\tD\n1\tx\t-1\t2026-03-04\n2\t\\N\t0\t\\N\n");
  EXPECT_THAT(answer.err, StartsWith("eroare -2147217904: "));
  EXPECT_EQ(Run({"--json", "sql", "--file", path, "DELETE FROM T WHERE A=2", "SELECT A, B, C FROM T"}).out,
            "[{\"affected\": 1},\n{\"columns\": [\"A\", \"B\", \"C\"], \"rows\": [\n[1, \"x\", true]]}]\n");
  EXPECT_EQ(Run({"sql", "--file", path, "--create", "SELECT 1"}).status, cli::kRefused)
      << "it exists already";
  const Answer missing = Run({"sql", "--file", HostPath("lipsa.mdb"), "SELECT 1"});
  EXPECT_EQ(missing.status, cli::kRefused);
  EXPECT_THAT(missing.err, StartsWith("eroare -2147467259: ")) << "a file that cannot be opened, too";
}

TEST_F(Cli, ShowsWorksheetsAndTextFilesAsTheDriversDo) {
  test_support::XlsWriter book;
  auto& sheet = book.AddSheet("Sheet1");
  sheet.Text(0, 0, "Cod");
  sheet.Number(1, 0, 1012100, "00000000");
  sheet.Number(2, 0, 84713000, "00000000");
  book.Save(HostPath("coduri.xls"));
  EXPECT_EQ(
      Run({"sql", "--file", HostPath("coduri.xls"), "SELECT LEFT([Cod] ,8) AS Cod_NC FROM [Sheet1$]"}).out,
      "Cod_NC\n01012100\n84713000\n")
      << "leading zeros of a code shown with them";

  std::ofstream(HostPath("curs.txt")) << "EUR,5.09\nUSD,4.31\n";
  EXPECT_EQ(Run({"sql", "--file", HostPath("curs.txt"), "SELECT F1 FROM curs.txt ORDER BY F1 DESC"}).out,
            "F1\nUSD\nEUR\n");
}

}  // namespace
