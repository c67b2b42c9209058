#include "declarations/export.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "declarations/nil.h"
#include "support/installation.h"
#include "support/sample_lines.h"

namespace declarations {
namespace {

using test_support::AddLine;

constexpr char kAllWell[] = "Declaratie Intrastat - OK. Nu sunt probleme";
constexpr char kFolder[] = "C:\\Declarix\\System\\DeclaratiiXML\\";

/// Content of a golden file; DECLARIX_GOLDEN=write in the environment writes it instead.
std::string Golden(const std::string& name, const std::string& actual) {
  const std::filesystem::path path = std::filesystem::path(DECLARIX_SOURCE_DIR) / "tests/golden" / name;
  const char* mode = std::getenv("DECLARIX_GOLDEN");
  if (mode != nullptr && std::string_view(mode) == "write") {
    std::ofstream(path, std::ios::binary) << actual;
  }
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class ExportTest : public testing::Test {
 protected:
  session::Session& session() { return bench_.session; }
  test_support::ScriptedPrompter& prompter() { return bench_.machine.prompter; }
  std::string Code() { return session().current.Cod_Fiscal; }

  static Header FullHeader(const std::string& code) {
    Header header;
    header.TXT_CodFiscal = code;
    header.TXT_NumeCompanie = "Ulei & Țesături Mureș!";
    header.TXT_Nume_Prenume = "Contact";
    header.TXT_Nume_Pers = "Firma";
    header.TXT_PozitieCompanie = "contabil";
    header.TXT_Tel = "0265 000 000";
    header.TXT_Fax = "0265 000 001";
    header.TXT_Email = "firma@example.ro";
    return header;
  }

  std::string FilePath(const std::string& tail) { return kFolder + PaddedFiscalCode(Code()) + tail; }

  ExportRequest Request(const std::string& TIP, int Anul, int Luna, const std::string& Combo_Tip = "N-Noua") {
    ExportRequest request;
    request.identity = {TIP, Code(), Anul, Luna};
    request.Combo_Tip = Combo_Tip;
    request.header = FullHeader(Code());
    return request;
  }

  /// Exports and answers the file's text; findings of the review are kept. `tail`: the file's name behind the
  /// fiscal code.
  std::string Export(ExportRequest request, const std::string& tail) {
    findings_.clear();
    prompter().ExpectInfo(kAllWell);
    const ExportResult result = ExportDeclaration(
        session(), request, {nullptr, nullptr, [this](const std::vector<Finding>& findings) {
                               findings_ = findings;
                               return true;
                             }});
    EXPECT_EQ(result.outcome, ExportOutcome::kWritten);
    EXPECT_EQ(result.path, FilePath(tail));
    return bench_.machine.files.Exists(result.path) ? bench_.machine.files.Read(result.path) : "";
  }

  /// The institute's own verdict, where its schema is at hand.
  void ExpectAccepted(const std::string& text) {
    const std::filesystem::path schema =
        std::filesystem::path(DECLARIX_SOURCE_DIR) / "../shared/reference/ins/intrastat4.xsd";
    if (!std::filesystem::exists(schema)) GTEST_SKIP() << "intrastat4.xsd is not at hand";
    const std::filesystem::path file = bench_.machine.folder.path() / "validated.xml";
    std::ofstream(file, std::ios::binary) << text;
    const std::string command = "xmllint --noout --schema '" + schema.string() + "' '" + file.string() +
                                "' > '" + file.string() + ".log' 2>&1";
    const int status = std::system(command.c_str());
    std::ifstream log(file.string() + ".log");
    EXPECT_EQ(status, 0) << std::string(std::istreambuf_iterator<char>(log), {});
  }

  /// Three lines that make two items: the first two differ in values only.
  void AddArrivals(int Anul, int Luna) {
    AddLine(session(), "I", Anul, Luna, {{"Val_Fiscala", 100.25}, {"Net", 0.4}});
    AddLine(session(), "I", Anul, Luna, {{"Val_Fiscala", 12.25}, {"Net", 12.1}, {"VAT_ID", "DE1"}});
    AddLine(session(), "I", Anul, Luna,
            {{"Cod_NC", "39269097"}, {"Nat_Tranz", "8"}, {"Tara_Exp", "IT"}, {"Net", 2.5}});
  }
  void AddDispatches(int Anul, int Luna) {
    AddLine(session(), "O", Anul, Luna, {});
    AddLine(session(), "O", Anul, Luna, {{"VAT_ID", "el012345678"}, {"Tara_Dest", "GR"}});
    AddLine(session(), "O", Anul, Luna, {{"Val_Fiscala", 50.0}});
    AddLine(session(), "O", Anul, Luna, {{"Cod_NC", "39269097"}, {"VAT_ID", "QV"}});
  }

  test_support::Installation bench_;
  std::vector<Finding> findings_;
};

TEST_F(ExportTest, FilesAreTheGoldenOnes) {
  test_support::LendTariff(bench_, 2014);
  AddArrivals(2026, 3);
  AddArrivals(2026, 11);
  AddDispatches(2014, 12);
  AddDispatches(2026, 12);
  struct Case {
    const char *golden, *flow, *tail, *kind;
    int year, month;
    bool statistical_value = false, detailed = false, agent = false, accepted = true;
  };
  for (const Case& c : {
           Case{"arrivals_new.xml", "I", "_A_20263.xml", "N-Noua", 2026, 3, true},
           Case{"arrivals_revised_agent.xml", "I", "_AR_202611.xml", "C-Corectie", 2026, 11, false, false,
                true},
           // Before 2015 there was no partner, and today's schema does not fit.
           Case{"dispatches_2014.xml", "O", "_D_201412.xml", "N-Noua", 2014, 12, false, false, false, false},
           Case{"dispatches_new.xml", "O", "_D_202612.xml", "N-Noua", 2026, 12},
           Case{"dispatches_detailed.xml", "O", "_DR_202612.xml", "C-Corectie", 2026, 12, false, true},
       }) {
    SCOPED_TRACE(c.golden);
    ExportRequest request = Request(c.flow, c.year, c.month, c.kind);
    request.Check_ValStatistica = c.statistical_value;
    request.Check_XML_Detaliat = c.detailed;
    if (c.agent) {
      request.header.Check_Dec_Tert = true;
      request.header.TXT_CUI_Dec = "RO77";
      request.header.TXT_Nume_Dec = "Agent declarant";
      request.header.TXT_Strada_Dec = "Livezii";
      request.header.TXT_Judet_Dec = "MS";
      request.header.TXT_Oras_Dec = "114328";
    }
    const std::string text = Export(request, c.tail);
    EXPECT_EQ(text, Golden(c.golden, text));
    if (c.statistical_value) {
      EXPECT_TRUE(findings_.empty()) << FindingsText(findings_);
    }
    if (c.agent) {
      EXPECT_EQ(FindingsText(findings_), "TXT_Judet_Dec: 'MS' nu este un cod din lista");
    }
    if (c.accepted) ExpectAccepted(text);
  }
}

TEST_F(ExportTest, DetailedArrivals) {
  AddArrivals(2026, 3);
  ExportRequest request = Request("I", 2026, 3);
  request.Check_XML_Detaliat = true;
  const std::string text = Export(request, "_A_20263.xml");
  EXPECT_NE(text.find("OrderNr=\"3\""), std::string::npos);
  EXPECT_EQ(text.find("Partner"), std::string::npos);
  // The first line weighs 0.4 kg: alone it would be filed as 0.
  EXPECT_EQ(FindingsText(findings_), "pozitia 1 (84713000): masa neta ar fi 0 sau negativa dupa rotunjire");
}

TEST_F(ExportTest, ProblemsStopBeforeTheFileIsTouched) {
  AddLine(session(), "I", 2026, 3, {{"Mod_Transp", "6"}});
  const std::string path = FilePath("_A_20263.xml");
  bench_.machine.files.Replace(path, "earlier");
  std::string report;
  ExportRequest request = Request("I", 2026, 3);
  const ExportResult result = ExportDeclaration(
      session(), request, {[&](const std::string& shown) { report = shown; }, nullptr, nullptr});
  EXPECT_EQ(result.outcome, ExportOutcome::kProblems);
  EXPECT_EQ(report, calc::ProblemsReportPath(session(), request.identity));
  EXPECT_EQ(bench_.machine.files.Read(path), "earlier");
}

TEST_F(ExportTest, ReviewMayGiveUpAndAFullDiskLeavesTheEarlierFile) {
  AddArrivals(2026, 3);
  const std::string path = FilePath("_A_20263.xml");
  bench_.machine.files.Replace(path, "earlier");
  ExportRequest request = Request("I", 2026, 3);
  request.header.TXT_Email = "";
  prompter().ExpectInfo(kAllWell);
  EXPECT_EQ(ExportDeclaration(session(), request,
                              {nullptr, nullptr, [](const std::vector<Finding>&) { return false; }})
                .outcome,
            ExportOutcome::kGivenUp);
  bench_.machine.files.refuses = [](std::string_view name) { return name.ends_with(".xml"); };
  prompter().ExpectInfo(kAllWell);
  prompter().ExpectStarting("", "EROARE", platform::Icon::kCritical);
  EXPECT_EQ(ExportDeclaration(session(), request, {}).outcome, ExportOutcome::kFailed);
  bench_.machine.files.refuses = nullptr;
  EXPECT_EQ(bench_.machine.files.Read(path), "earlier");
  EXPECT_EQ(request.header.TXT_NumeCompanie, "Ulei - Țesături Mureș-");  // as it was filed
}

TEST_F(ExportTest, WithoutASetFolderOneIsAskedFor) {
  AddArrivals(2026, 3);
  session().settings.DirectorSalvare = "\\";
  ExportRequest request = Request("I", 2026, 3);
  prompter().ExpectInfo(kAllWell);
  prompter().ExpectError("Directorul de salvare al declaratiilor nu este stabilit (setarea DirectorSalvare)");
  EXPECT_EQ(ExportDeclaration(session(), request, {}).outcome, ExportOutcome::kNoFolder);
  session().host.files.CreateFolders("E:\\Declaratii");
  prompter().ExpectInfo(kAllWell);
  const ExportResult result =
      ExportDeclaration(session(), request, {nullptr, [] { return "E:\\Declaratii"; }, nullptr});
  EXPECT_EQ(result.path, "E:\\Declaratii\\" + PaddedFiscalCode(Code()) + "_A_20263.xml");
}

TEST_F(ExportTest, PeriodWithoutVersionRowHasAnEmptyVersionsElement) {
  session().common.Execute("DELETE FROM InsCodeVersions WHERE Anul<2026");
  session().common.Execute("UPDATE InsCodeVersions SET Luna=7");
  AddArrivals(2026, 3);
  const int logged = bench_.machine.errors.count();
  const std::string text = Export(Request("I", 2026, 3), "_A_20263.xml");
  EXPECT_NE(text.find("<InsCodeVersions>\r\n\r\n</InsCodeVersions>\r\n"), std::string::npos);
  EXPECT_EQ(bench_.machine.errors.count(), logged + 1);  // the doubled keyword
  ASSERT_EQ(findings_.size(), 1U);
  EXPECT_EQ(findings_[0].where, "InsCodeVersions");
}

TEST_F(ExportTest, DeclarationWithoutLinesIsReviewedOnlyWhereTheInstituteRefusesIt) {
  const std::string revised = Export(Request("O", 2026, 1, "C-Corectie"), "_DR_20261.xml");
  EXPECT_TRUE(findings_.empty());
  ExpectAccepted(revised);
  Export(Request("O", 2026, 1), "_D_20261.xml");
  EXPECT_EQ(FindingsText(findings_), "declaratia: nu are nici o pozitie");
}

TEST_F(ExportTest, NilDeclarationTakesTheRegisterRow) {
  session().common.Execute(
      "UPDATE Firme SET Nume_Firma='Firma & Fiii', Persoana_Intrastat='Contact de Firma', "
      "Persoana_Functie='', Tel_Firma='0265', Email_Firma='f@example.ro' WHERE Cod_Fiscal='" +
      Code() + "'");
  session().current.Nume_Firma = "Firma & Fiii";
  Header header = NilHeader(session());
  EXPECT_EQ(header.TXT_Nume_Prenume, "Contact");
  EXPECT_EQ(header.TXT_Nume_Pers, "de Firma");
  EXPECT_EQ(header.TXT_PozitieCompanie, "responsabil intrastat");
  const ExportResult result = WriteNilDeclaration(session(), {"O", Code(), 2026, 2}, header, {});
  EXPECT_EQ(result.path, FilePath("_DN_20262.xml"));
  const std::string text = bench_.machine.files.Read(result.path);
  EXPECT_EQ(text, Golden("nil_dispatches.xml", text));
  ExpectAccepted(text);
  EXPECT_FALSE(session().company.Any("SELECT Record_ID FROM Intrastat"));
}

TEST_F(ExportTest, NilDeclarationWithoutContactUsesStandIns) {
  session().common.Execute("UPDATE Firme SET Persoana_Intrastat=' '");
  Header header = NilHeader(session());
  EXPECT_EQ(header.TXT_Nume_Prenume, "Nume");
  EXPECT_EQ(header.TXT_Nume_Pers, "Prenume");
  session().common.Execute("UPDATE Firme SET Persoana_Intrastat='Singur'");
  header = NilHeader(session());
  EXPECT_EQ(header.TXT_Nume_Prenume, "Singur");
  EXPECT_EQ(header.TXT_Nume_Pers, "");
}

TEST_F(ExportTest, ConfirmingNamesEveryMissingFieldInOrder) {
  for (const char* label : {"Luna", "Anul", "Fel"}) {
    prompter().ExpectError(std::string(label) + "  -  Obligatoriu de completat !");
  }
  EXPECT_FALSE(ConfirmDeclaration(session(), {"", " ", ""}));
}

TEST_F(ExportTest, ConfirmingOpensAnExistingDeclarationAndAnEmptyOneOtherwise) {
  AddLine(session(), "I", 2026, 3);
  prompter().ExpectInfo("Aceasta declaratie exista deja");
  const auto existing = ConfirmDeclaration(session(), {"achizitie", "2026", "3"});
  ASSERT_TRUE(existing);
  EXPECT_TRUE(existing->modify);
  EXPECT_EQ(existing->title, "Modificare Declaratie : I - 2026 / 3");
  const auto other = ConfirmDeclaration(session(), {"LIVRARE", "2026", "3"});
  ASSERT_TRUE(other);
  EXPECT_FALSE(other->modify);
  EXPECT_EQ(other->title, "Adauga Declaratie : O - 2026 / 3");
}

TEST_F(ExportTest, DeclaringAgentIsKeptBetweenUses) {
  Header header = FullHeader("RO1");
  EXPECT_TRUE(ReadDeclaringAgent(session(), header)) << "no file yet";
  const Header as_read = header;
  EXPECT_TRUE(KeepDeclaringAgent(session(), header, as_read));
  EXPECT_FALSE(bench_.files().Exists(bench_.InSystem("Default\\Frm_INTRASTAT.txt"))) << "nothing has changed";
  header.TXT_Nume_Dec = "Agent = \r\nȘoimul";
  header.TXT_Judet_Dec = "MS";
  EXPECT_TRUE(KeepDeclaringAgent(session(), header, as_read));
  Header later;
  later.TXT_Email = "ramane";
  ReadDeclaringAgent(session(), later);
  EXPECT_EQ(later.TXT_Nume_Dec, "Agent =   Șoimul");
  EXPECT_EQ(later.TXT_Judet_Dec, "MS");
  EXPECT_EQ(later.TXT_Email, "ramane");
  EXPECT_EQ(HeaderField(later, "TXT_Altceva"), nullptr);
}

}  // namespace
}  // namespace declarations
