// Files that no import can read, through everything that the screens do with a file: nothing is stored, what
// is stored stays, and the message names the file.

#include <gmock/gmock.h>
#include <zip.h>

#include <fstream>

#include "import/preview.h"
#include "import/worksheet.h"
#include "import_fixture.h"
#include "spreadsheet/parts.h"

namespace {

using testing::HasSubstr;

class BadFiles : public ImportTest {
 protected:
  void SetUp() override {
    CreateCodesTemplate();
    files().CreateFolders("C:\\Foi");
    at_.Run("INSERT INTO Intrastat (TIP, Cod_Fiscal, Anul, Luna) VALUES ('I', 'RO123456', 2026, 3)");
    prompter().AcceptAnything(true);
  }

  static std::string Delivered(const std::string& name) {
    std::ifstream file(DECLARIX_SOURCE_DIR "/tests/data/foi/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string Zip(const test_support::Parts::Map& parts) {
    const std::string path = "C:\\Foi\\arhiva.zip";
    zip_t* archive = zip_open(files().ToHost(path).string().c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const auto& [name, content] : parts) {
      zip_file_add(archive, name.c_str(), zip_source_buffer(archive, content.data(), content.size(), 0), 0);
    }
    zip_close(archive);
    return files().Read(path);
  }

  void ExpectRefused(const std::string& name, const std::string& content, const std::string& reason) {
    SCOPED_TRACE(name);
    const std::string path = "C:\\Foi\\" + name;
    files().Replace(path, content);
    const auto problem = testing::AllOf(HasSubstr(name), HasSubstr(reason));
    const importer::SheetList sheets = importer::ReadSheetList(session(), path);
    if (sheets.names.empty()) {
      EXPECT_THAT(sheets.problem, problem);
    }
    const std::string sheet = sheets.names.empty() ? "Sheet1" : sheets.names.front();
    EXPECT_THAT(importer::TrySample(session(), path, sheet).problem, problem);
    importer::Preview preview(session());
    preview.Open(path, sheet);
    EXPECT_THAT(preview.Read({{"Cod_NC", true, 1, "", ""}}, "ACHIZITIE").problem, problem);

    importer::Inputs inputs = Inputs();
    inputs.path = path;
    inputs.sheet = sheet;
    const std::size_t before = prompter().seen().size();
    EXPECT_EQ(importer::Run(session(), inputs).outcome, importer::Outcome::kRefused);
    ASSERT_EQ(prompter().seen().size(), before + 2);
    EXPECT_EQ(prompter().seen()[before], "Fisierul Excel NU poate fi citit, verificati macheta de preluare");
    EXPECT_THAT(prompter().seen()[before + 1], problem);
    EXPECT_EQ(Lines(), 1);
  }
};

TEST_F(BadFiles, AreRefusedByName) {
  test_support::Parts::Map bomb = test_support::XlsxParts("");
  bomb["xl/worksheets/a.xml"] = "<worksheet><sheetData>" + std::string(80 << 20, ' ');
  ExpectRefused("bomba.xlsx", Zip(bomb), "bomba zip");
  const std::string xlsx = Delivered("achizitii.xlsx"), ods = Delivered("achizitii.ods");
  ExpectRefused("scurt.xlsx", xlsx.substr(0, xlsx.size() / 2), "trunchiata");
  ExpectRefused("scurt.ods", ods.substr(0, ods.size() - 30), "trunchiata");
  ExpectRefused("text.xlsx", "Cod;Kg\r\n84713000;1\r\n", ".csv");
  ExpectRefused("pagina.xlsx", "<html><table><tr><td>1</td></tr></table></html>", "HTML");
  ExpectRefused("document.xlsx",
                Zip({{"_rels/.rels",
                      "<Relationships><Relationship Id='a' Target='word/document.xml' "
                      "Type='http://x/officeDocument'/></Relationships>"},
                     {"word/document.xml", "<w/>"}}),
                "foaie de calcul");
  ExpectRefused("gol.csv", "", "gol");
  ExpectRefused("octeti.csv", std::string("Cod;Kg\r\n84713000;1\0\0\r\n", 22), "octeti care nu sunt text");
  ExpectRefused("ghilimele.csv", "Cod;Kg\r\n\"84713000;1\r\n84713000;1\r\n", "randul 2");
}

TEST_F(BadFiles, AreToldFromTemplatesThatDoNotFit) {
  files().Replace("C:\\Foi\\doua.csv", "Cod;Kg\r\n84713000;1\r\n");
  importer::ChangeRow(session(), "Coduri", "UM", {7, std::nullopt, std::nullopt});
  importer::Inputs inputs = Inputs();
  inputs.path = "C:\\Foi\\doua.csv";
  inputs.sheet = "doua";
  EXPECT_EQ(importer::Run(session(), inputs).outcome, importer::Outcome::kRefused);
  EXPECT_EQ(prompter().seen().back(),
            "Fisierul C:\\Foi\\doua.csv: In macheta, UM are numarul 7, iar foaia doua are 2 coloane");
  EXPECT_EQ(
      at_.Get("SELECT Numar_Coloana FROM StructuraFisiereContinut WHERE Dest_ColumnName='UM'").ToInteger(),
      7);
}

// One text in each encoding that programs write; what windows-1250 has is "s" with a cedilla.
TEST_F(BadFiles, AreNoTextsInAnyUsualEncoding) {
  importer::ChangeRow(session(), "Coduri", "Descriere", {3, std::nullopt, std::nullopt});
  const std::string utf8 = "Cod;Kg;Denumire\r\n84713000;1,5;Mașină de tăiat\r\n";
  std::string utf16 = "\xFF\xFE";
  for (const char16_t c : std::u16string(u"Cod;Kg;Denumire\r\n84713000;1,5;Mașină de tăiat\r\n")) {
    utf16 += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
  }
  for (const std::string& content :
       {utf8, "\xEF\xBB\xBF" + utf8, utf16,
        std::string("Cod;Kg;Denumire\r\n84713000;1,5;Ma\xBAin\xE3 de t\xE3iat\r\n")}) {
    files().Replace("C:\\Foi\\lista.csv", content);
    importer::Inputs inputs = Inputs();
    inputs.path = "C:\\Foi\\lista.csv";
    inputs.sheet = "lista";
    EXPECT_EQ(importer::Run(session(), inputs).saved, 1);
    EXPECT_EQ(at_.Get("SELECT Descriere FROM Intrastat WHERE Net=1.5"), store::Value("Mașină de tăiat"));
    at_.Run("DELETE FROM Intrastat WHERE Net=1.5");
  }
}

}  // namespace
