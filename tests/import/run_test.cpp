#include "import/run.h"

#include <gmock/gmock.h>

#include "import_fixture.h"

namespace {

using importer::Outcome;
using platform::Icon;
using testing::Contains;
using testing::HasSubstr;

class ImportRun : public ImportTest {
 protected:
  void SetUp() override { CreateCodesTemplate(); }

  importer::Result Run() { return importer::Run(session(), Inputs()); }
  void ExpectSaved(int saved, int total) {
    prompter().ExpectInfo(fmt::format("Au fost preluate : {} inregistrari din totalul de : {}", saved, total),
                          "Preluare Terminata");
  }
  /// The general text comes first, then the reason.
  void ExpectUnreadable(std::string_view reason_begins = "") {
    prompter().ExpectError("Fisierul Excel NU poate fi citit, verificati macheta de preluare");
    prompter().ExpectStarting(reason_begins, "EROARE", Icon::kCritical);
  }
};

TEST_F(ImportRun, ReportsAllMissingInputsInOrder) {
  for (const char* label :
       {"Anul", "Luna", "Nume fisier", "Sheet Name", "Cod inreg fiscala", "Nume Macheta", "Tip Operatiune"}) {
    prompter().ExpectError(std::string(label) + "  -  Obligatoriu de completat !");
  }
  EXPECT_EQ(importer::Run(session(), {0, 0, "", " ", "", " ", ""}).outcome, Outcome::kRefused);
}

TEST_F(ImportRun, NamesAMissingFile) {
  prompter().ExpectError(std::string("Nu exista fisierul : ") + kPath);
  EXPECT_EQ(Run().outcome, Outcome::kRefused);
}

TEST_F(ImportRun, ShowsItsStepsAndMarksTheLinesWithTheirSource) {
  SaveCodes({"84713000", "94036010", "01012100"});
  session().user_name = "operator";
  ExpectSaved(3, 3);
  EXPECT_EQ(Run().outcome, Outcome::kDone);
  const auto& progress = at_.machine.progress;
  EXPECT_THAT(
      progress.statuses,
      testing::ElementsAre("Se citeste fisiereul excel : C:\\Foi\\martie.xls", "TOTAL INREGISTRARI CITITE: 3",
                           "SE RETIN DATELE - Inregistrarea : 1", "SE RETIN DATELE - Inregistrarea : 2",
                           "SE RETIN DATELE - Inregistrarea : 3", "OPERATIE TERMINATA . . ."));
  EXPECT_THAT(progress.updates, testing::ElementsAre(testing::Pair("Copiere date ...", 33),
                                                     testing::Pair("Copiere date ...", 67),
                                                     testing::Pair("Copiere date ...", 100)));
  EXPECT_EQ(
      at_.Get(
          "SELECT UserName & '|' & SourceFile & '|' & SourceFile_FullPath & '|' & Anul & '|' & Luna & '|' "
          "& Cod_Fiscal FROM Intrastat WHERE Cod_NC='84713000'"),
      store::Value("operator|martie.xls|C:\\Foi\\martie.xls|2026|3|RO123456"));
}

TEST_F(ImportRun, AsksBeforeTakingAFileOverTwiceForTheSameMonth) {
  SaveCodes({"84713000"});
  const std::string question = std::string("Fisierul : ") + kPath + "\r\nA MAI FOST PRELUAT, CONTINUATI ?";
  ExpectSaved(1, 1);
  EXPECT_EQ(Run().outcome, Outcome::kDone);
  prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, false);
  EXPECT_EQ(Run().outcome, Outcome::kRefused);
  EXPECT_EQ(Lines(), 1);
  prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, true);
  ExpectSaved(1, 1);
  EXPECT_EQ(Run().outcome, Outcome::kDone);
  EXPECT_EQ(Lines(), 2);

  importer::Inputs april = Inputs();
  april.Luna = 4;
  ExpectSaved(1, 1);
  EXPECT_EQ(importer::Run(session(), april).outcome, Outcome::kDone) << "another month does not ask";
}

TEST_F(ImportRun, ComparesNoMoreOfALongPathThanIsStored) {
  const std::string path = "C:\\" + std::string(200, 'a') + "\\" + std::string(60, 'b') + "\\martie.xls";
  SaveCodes({"84713000"}, path);
  importer::Inputs inputs = Inputs();
  inputs.path = path;
  ExpectSaved(1, 1);
  EXPECT_EQ(importer::Run(session(), inputs).outcome, Outcome::kDone);
  EXPECT_EQ(at_.Get("SELECT LEN(SourceFile_FullPath) FROM Intrastat").ToInteger(), 255);
  prompter().ExpectQuestion("Fisierul : " + path + "\r\nA MAI FOST PRELUAT, CONTINUATI ?", "RASPUNDETI",
                            Icon::kQuestion, false);
  EXPECT_EQ(importer::Run(session(), inputs).outcome, Outcome::kRefused);
}

TEST_F(ImportRun, StopsOnAnApostropheInThePath) {
  const std::string path = "C:\\Foi\\O'Neil.xls";
  SaveCodes({"84713000"}, path);
  importer::Inputs inputs = Inputs();
  inputs.path = path;
  prompter().ExpectStarting("Eroare nr: ", "EROARE", Icon::kCritical);
  EXPECT_EQ(importer::Run(session(), inputs).outcome, Outcome::kRefused);
  EXPECT_EQ(Lines(), 0);
}

TEST_F(ImportRun, SaysWhyAFileCannotBeRead) {
  files().CreateFolders("C:\\Foi");
  files().Replace(kPath, "Cod,Kg\r\n84713000,1\r\n");
  ExpectUnreadable();
  EXPECT_EQ(Run().outcome, Outcome::kRefused);
  EXPECT_THAT(at_.machine.progress.statuses,
              Contains("EROARE - Fisierul Excel NU poate fi citit, verificati macheta de preluare"));

  SaveCodes({"84713000"});
  importer::Inputs inputs = Inputs();
  inputs.sheet = "Foaie lipsa";
  ExpectUnreadable();
  EXPECT_EQ(importer::Run(session(), inputs).outcome, Outcome::kRefused);
  EXPECT_THAT(prompter().seen().back(), HasSubstr("Foaie lipsa"));

  inputs = Inputs("Alta macheta");
  ExpectUnreadable("Macheta Alta macheta");
  EXPECT_EQ(importer::Run(session(), inputs).outcome, Outcome::kRefused);

  SaveCodes({});
  ExpectUnreadable("Fisierul C:\\Foi\\martie.xls: Foaia Sheet1 nu are nicio inregistrare");
  EXPECT_EQ(Run().outcome, Outcome::kRefused);
  EXPECT_EQ(Lines(), 0);
}

TEST_F(ImportRun, TakesATemplateThatDoesNotFitForAnUnreadableSheet) {
  SaveCodes({"84713000"});
  importer::ChangeRow(session(), "Coduri", "UM", {3, std::nullopt, std::nullopt});
  ExpectUnreadable(
      "Fisierul C:\\Foi\\martie.xls: In macheta, UM are numarul 3, iar foaia Sheet1 are 2 coloane");
  EXPECT_EQ(Run().outcome, Outcome::kRefused);

  importer::ChangeRow(session(), "Coduri", "UM", {0, std::nullopt, std::nullopt});
  importer::ChangeRow(session(), "Coduri", "Val_Fiscala", {std::nullopt, "o suta", std::nullopt});
  ExpectUnreadable();
  EXPECT_EQ(Run().outcome, Outcome::kRefused) << "a bare default that is no expression";

  CreateTemplate("Goala", "LIVRARE");
  at_.Run("UPDATE StructuraFisiereContinut SET Valoare_Implicita=Null WHERE Nume_Structura='Goala'");
  ExpectUnreadable("Macheta Goala nu are nicio coloana bifata");
  EXPECT_EQ(importer::Run(session(), Inputs("Goala", "O-LIVRARE")).outcome, Outcome::kRefused);
}

TEST_F(ImportRun, ReadsNumbersWrittenAsTextsTheWayPeopleWriteThem) {
  test_support::XlsWriter book;
  test_support::XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
  sheet.Row(0, "'Cod|'Kg|'Buc");
  const char* const texts[] = {"1.234,50", "12,5", "1.125", " 7 ", "4,5 kg"};
  for (unsigned i = 0; i < std::size(texts); ++i) {
    sheet.Row(i + 1, fmt::format("'8471300{}|'{}|'{}", i, texts[i], i == 1 ? "1 200" : "3"));
  }
  Save(book);
  importer::ChangeRow(session(), "Coduri", "Cantitate", {3, "0", std::nullopt});
  ExpectSaved(4, 5);
  const importer::Result result = Run();
  ASSERT_EQ(result.rejected.size(), 1u) << "a number with its unit is none";
  EXPECT_EQ(result.rejected[0].row, 6);
  EXPECT_EQ(at_.Get("SELECT Net FROM Intrastat WHERE Cod_NC='84713000'").ToDouble(), 1234.5);
  EXPECT_EQ(at_.Get("SELECT Net FROM Intrastat WHERE Cod_NC='84713001'").ToDouble(), 12.5);
  EXPECT_EQ(at_.Get("SELECT Net FROM Intrastat WHERE Cod_NC='84713002'").ToDouble(), 1.12) << "as it stands";
  EXPECT_EQ(at_.Get("SELECT Net FROM Intrastat WHERE Cod_NC='84713003'").ToDouble(), 7);
  EXPECT_EQ(at_.Get("SELECT Cantitate FROM Intrastat WHERE Cod_NC='84713001'").ToDouble(), 1200);
}

TEST_F(ImportRun, LeavesNothingWhenItIsStopped) {
  SaveCodes({"84713000", "94036010"});
  class StopsAfterOne : public test_support::RecordingProgress {
   public:
    bool Cancelled() const override { return !updates.empty(); }
  } progress;
  session::Session stopped(
      platform::Host{files(), at_.machine.clock, prompter(), progress, at_.machine.errors});
  stopped.settings = session().settings;
  stopped.current = session().current;
  session().company.Close();
  session::OpenCommonConnection(stopped);
  session::OpenCompanyConnection(stopped, stopped.current.database_path);
  prompter().ExpectMessage("Preluarea a fost oprita, nu s-a retinut nicio inregistrare", "MESAJ",
                           Icon::kExclamation);
  const importer::Result result = importer::Run(stopped, Inputs());
  EXPECT_EQ(result.outcome, Outcome::kCancelled);
  EXPECT_EQ(result.saved, 0);
  EXPECT_EQ(stopped.company.Scalar("SELECT COUNT(*) FROM Intrastat"), store::Value(0));
}

TEST_F(ImportRun, LeavesNothingWhenAColumnIsGone) {
  SaveCodes({"84713000"});
  at_.Run(
      "INSERT INTO StructuraFisiereContinut (Nume_Structura, Dest_ColumnName, Exista_Coloana, Numar_Coloana) "
      "VALUES ('Coduri', 'Coloana_Veche', True, 1)");
  prompter().AcceptAnything(true);
  EXPECT_EQ(Run().outcome, Outcome::kRefused);
  EXPECT_THAT(prompter().seen(), testing::SizeIs(1));
  EXPECT_EQ(Lines(), 0);
}

}  // namespace
