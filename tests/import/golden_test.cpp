// Each file of tests/golden/import is one import: the template's rows, the worksheet, and the lines and
// rejections that must come of it. README.md there explains the form.

#include <filesystem>
#include <fstream>

#include "import_fixture.h"

namespace {

using test_support::XlsWriter;

std::vector<std::string> Split(const std::string& line, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : line) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

using Section = std::vector<std::string>;

std::map<std::string, Section> ReadCase(const std::filesystem::path& path) {
  std::map<std::string, Section> sections;
  std::ifstream file(path);
  std::string line, section;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == ';') continue;
    if (line[0] == '[') {
      section = line.substr(1, line.find(']') - 1);
    } else {
      sections[section].push_back(line);
    }
  }
  return sections;
}

class ImportGolden : public ImportTest, public testing::WithParamInterface<std::string> {};

TEST_P(ImportGolden, GivesTheExpectedLines) {
  auto sections =
      ReadCase(std::filesystem::path(DECLARIX_SOURCE_DIR) / "tests/golden/import" / (GetParam() + ".txt"));
  const std::string operation = sections["operatiune"].at(0);

  CreateTemplate("Proba", operation.substr(2));
  for (const std::string& line : sections["macheta"]) {
    const auto parts = Split(line, '|');
    importer::RowChange change;
    if (!parts[1].empty()) change.Numar_Coloana = std::stoi(parts[1]);
    if (parts[2] != "*") change.Valoare_Implicita = parts[2];
    if (parts[3] != "*") change.Marime_Maxima = parts[3];
    ASSERT_TRUE(importer::ChangeRow(session(), "Proba", parts[0], change)) << line;
  }
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
  unsigned row = 0;
  for (const std::string& line : sections["foaie"]) sheet.Row(row++, line);
  Save(book);
  at_.Run(
      "INSERT INTO Rate_Schimb (Cod_Moneda, Valid_La_Data, Curs_Schimb, Multiplicator) "
      "VALUES ('EUR', #3-2-26#, 5.0947, 1)");
  at_.Run(
      "INSERT INTO Rate_Schimb (Cod_Moneda, Valid_La_Data, Curs_Schimb, Multiplicator) "
      "VALUES ('HUF', #3-2-26#, 1.2753, 100)");
  session().defaults = {.I_Incoterms = "cpt",
                        .I_Mod_Transp = "3",
                        .I_Nat_Tranz = "1.1",
                        .I_Tara_Exp = "de",
                        .O_Incoterms = "EXW",
                        .O_Mod_Transp = "1",
                        .O_Nat_Tranz = "2.1",
                        .O_Tara_Dest = "AT"};

  prompter().AcceptAnything(false);
  const importer::Result result = importer::Run(session(), Inputs("Proba", operation));
  ASSERT_EQ(result.outcome, importer::Outcome::kDone);

  Section rejected;
  for (const importer::Rejected& item : result.rejected) {
    EXPECT_FALSE(item.reason.empty());
    rejected.push_back(fmt::format("{}|{}", item.row, item.column));
  }
  EXPECT_EQ(rejected, sections["respinse"]);

  const std::string header = sections["linii"].at(0);
  Section lines{header};
  const auto columns = Split(header, '|');
  store::Recordset rows = session().company.Query("SELECT * FROM Intrastat ORDER BY Record_ID");
  for (; !rows.eof(); rows.MoveNext()) {
    std::string line;
    for (const std::string& column : columns) {
      const store::Value value = rows.Get(column);
      line += (line.empty() ? "" : "|") + (value.is_null() ? "\\N" : value.ToText());
    }
    lines.push_back(line);
  }
  EXPECT_EQ(lines, sections["linii"]);
}

INSTANTIATE_TEST_SUITE_P(Cases, ImportGolden, testing::Values("achizitii", "livrari", "respinse"),
                         [](const testing::TestParamInfo<std::string>& one) { return one.param; });

}  // namespace
