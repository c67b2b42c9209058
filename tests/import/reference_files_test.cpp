// Worksheets of many other programs, each sheet the whole way of the import screens: list of sheets, sample,
// proposal, preview, run. They are no part of the project; without them this is skipped.

#include <gmock/gmock.h>

#include <filesystem>

#include "import/preview.h"
#include "import/template_draft.h"
#include "import/worksheet.h"
#include "import_fixture.h"

namespace {

using importer::Outcome;
using testing::HasSubstr;

const std::filesystem::path kFolder =
    std::filesystem::path(DECLARIX_SOURCE_DIR) / ".." / "shared" / "reference" / "xls";
constexpr std::size_t kSheets = 4;  // of each file

class ForeignWorksheets : public ImportTest {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(kFolder)) GTEST_SKIP() << "no worksheets in " << kFolder;
    prompter().AcceptAnything(true);
    draft_.header = {"Straina", "ACHIZITIE", "", "", ""};
    ASSERT_TRUE(draft_.Save());
  }

  void Take(const std::string& path, const std::string& name, const std::string& sheet) {
    SCOPED_TRACE(sheet);
    const importer::SampleReading reading = importer::TrySample(session(), path, sheet);
    if (!reading.sample) {
      EXPECT_THAT(reading.problem, HasSubstr(name));
      ++refused_;
    }
    Map(reading.sample ? reading.sample->columns : std::vector<importer::SampleColumn>());
    importer::Preview preview(session());
    preview.Open(path, sheet);
    const importer::PreviewLines lines = preview.Read(draft_.Rules(), "ACHIZITIE");
    EXPECT_NE(lines.lines.empty(), lines.problem.empty());

    importer::Inputs inputs = Inputs("Straina");
    inputs.path = path;
    inputs.sheet = sheet;
    const importer::Result result = importer::Run(session(), inputs);
    if (result.outcome == Outcome::kRefused) {
      EXPECT_THAT(prompter().seen().back(), HasSubstr(name));
    } else {
      ++taken_;
      EXPECT_EQ(result.outcome, Outcome::kDone);
      EXPECT_TRUE(reading.sample);
      EXPECT_EQ(result.saved + static_cast<std::int64_t>(result.rejected.size()), result.total);
      for (const importer::Rejected& row : result.rejected) {
        EXPECT_GT(row.row, 1);
        EXPECT_NE(row.reason, "");
      }
    }
    EXPECT_EQ(Lines(), result.saved);
    at_.Run("DELETE FROM Intrastat");
  }

  // What the headings propose; the columns left go to the rows left, so that every value is taken somewhere.
  void Map(const std::vector<importer::SampleColumn>& columns) {
    for (std::size_t row = 0; row < draft_.rows().size(); ++row) draft_.SetPresent(row, false);
    draft_.Propose(columns);
    std::set<int> used;
    for (const importer::TemplateRow& row : draft_.rows()) used.insert(row.Numar_Coloana.value_or(0));
    std::size_t row = 0;
    for (const importer::SampleColumn& column : columns) {
      if (used.contains(column.number)) continue;
      while (row < draft_.rows().size() && draft_.rows()[row].Numar_Coloana) ++row;
      if (row == draft_.rows().size()) break;
      draft_.Assign(row, column.number);
    }
    if (columns.empty()) draft_.Assign(0, 1);
    ASSERT_TRUE(draft_.Save());
  }

  importer::TemplateDraft draft_{session()};
  int taken_ = 0, refused_ = 0;
};

TEST_F(ForeignWorksheets, AreTakenOverOrRefusedByName) {
  for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
    if (entry.path().extension() != ".xls") continue;
    const std::string name = entry.path().filename().string();
    SCOPED_TRACE(name);
    const std::string path = files().drives().FromHost(entry.path());
    const importer::SheetList sheets = importer::ReadSheetList(session(), path);
    if (sheets.names.empty()) {
      EXPECT_THAT(sheets.problem, HasSubstr(name));
      Take(path, name, "Sheet1");
    }
    for (std::size_t i = 0; i < std::min(sheets.names.size(), kSheets); ++i)
      Take(path, name, sheets.names[i]);
  }
  EXPECT_GT(taken_, 40);
  EXPECT_GT(refused_, 3);
}

}  // namespace
