#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <random>

#include "platform/spreadsheet/xls.h"
#include "spreadsheet/cells.h"

namespace platform::spreadsheet {
namespace {

using test_support::CellMap;
using Reason = SheetError::Reason;

const std::filesystem::path kFolder =
    std::filesystem::path(DECLARIX_SOURCE_DIR) / ".." / "shared" / "reference" / "xls";

// Worksheets of many other programs. They are no part of the project; without them these cases are skipped.
class ReferenceFiles : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(kFolder)) GTEST_SKIP() << "no worksheets in " << kFolder;
  }

  static std::string Content(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  static std::vector<std::filesystem::path> Files() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
      if (entry.path().extension() == ".xls") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
  }

  static CellMap Cells(std::string_view file, std::string_view sheet) {
    CellMap cells;
    OpenWorkbook((kFolder / file).string())->Read(sheet, cells);
    return cells;
  }
};

// Reads every sheet; the reason of the first refusal, or none.
std::optional<Reason> ReadAll(std::string content) {
  try {
    const std::unique_ptr<Workbook> book = OpenXlsContent(std::move(content));
    for (const SheetInfo& info : book->sheets()) {
      CellMap cells;
      book->Read(info.name, cells);
    }
  } catch (const SheetError& error) {
    EXPECT_STRNE(error.what(), "");
    return error.reason();
  }
  return std::nullopt;
}

TEST_F(ReferenceFiles, AreReadOrRefusedWithTheirReason) {
  const std::map<std::string, Reason> refused = {
      {"calamine__OOM_alloc3.xls", Reason::kDamaged},  // its first sheet can be read
      {"phpss__pwtest.xls", Reason::kEncrypted},
      {"poi__35897-type4.xls", Reason::kEncrypted},
      {"poi__61300.xls", Reason::kDamaged},
      {"poi__clusterfuzz-testcase-minimized-POIHSSFFuzzer-4657005060816896.xls", Reason::kDamaged},
      {"poi__testEXCEL_3.xls", Reason::kUnsupported},
      {"sheetjs__password_2002_40_xor.xls", Reason::kEncrypted},
  };
  for (const std::filesystem::path& path : Files()) {
    SCOPED_TRACE(path.filename().string());
    const auto start = std::chrono::steady_clock::now();
    const std::optional<Reason> reason = ReadAll(Content(path));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    const auto expected = refused.find(path.filename().string());
    EXPECT_EQ(reason, expected == refused.end() ? std::nullopt : std::optional(expected->second));
  }
}

TEST_F(ReferenceFiles, HoldTheValuesThatTheirProgramsShow) {
  const CellMap mixed = Cells("readxl__types.xls", "smorgasbord");
  EXPECT_EQ(mixed.at(1, 1), "tHELLO WORLD");
  EXPECT_EQ(mixed.at(5, 1), "n1.6900000000000002");
  EXPECT_EQ(mixed.at(8, 1), "b1");
  EXPECT_EQ(mixed.at(11, 1), "d42431");
  EXPECT_EQ(mixed.at(19, 1), "e#NULL!");

  const CellMap mac = Cells("phpss__maccentraleurope.xls", "Arkusz1");  // BIFF5, Macintosh code page
  EXPECT_EQ(mac.at(0, 8), "tŁadowność");
  const CellMap umlauts = Cells("xlrd__Formate.xls", "Blätt1");
  EXPECT_EQ(umlauts.at(1, 0), "tÄcker");
  EXPECT_EQ(umlauts.at(1, 1), "d38406");
  EXPECT_EQ(umlauts.at(6, 1), "n0.974");
  EXPECT_EQ(Cells("poi__15556.xls", "2270-170-1").at(0, 35), "t체결(TIGHTENING)");
  EXPECT_EQ(Cells("poi__StringFormulas.xls", "Sheet1").at(0, 0), "tXYZ");
  EXPECT_EQ(Cells("poi__SimpleChart.xls", "Sheet1").cells.size(), 30u) << "a sheet with a chart on it";
  EXPECT_EQ(Cells("readxl__dates-1904.xls", "Sheet1").at(0, 0), "d36526");
  EXPECT_EQ(Cells("sheetjs__1900.xls", "Sheet1").at(0, 1), "d2");
  EXPECT_EQ(Cells("readxl__biff5-label-records.xls", "worksheet1").at(3, 2), "n0.170769");
  EXPECT_EQ(Cells("sheetjs__crlf.xls", "Sheet1").cells.size(), 5u);
}

TEST_F(ReferenceFiles, SurviveCutsAndFlips) {
  std::mt19937 random(2026);
  for (const std::filesystem::path& path : Files()) {
    const std::string whole = Content(path);
    if (whole.size() > 40'000) continue;
    SCOPED_TRACE(path.filename().string());
    for (std::size_t length = 0; length < whole.size(); length += 512) ReadAll(whole.substr(0, length));
    for (int round = 0; round < 200; ++round) {
      std::string changed = whole;
      for (int flips = 0; flips < 4; ++flips)
        changed[random() % changed.size()] = static_cast<char>(random());
      ReadAll(std::move(changed));
    }
  }
}

}  // namespace
}  // namespace platform::spreadsheet
