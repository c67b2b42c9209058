#include <gmock/gmock.h>

#include <QProcess>

#include "ui/grid/grid_fixture.h"
#include "ui/grid_export.h"

namespace {

using test_support::GridFixture;

constexpr char kBook[] = "C:\\Declarix\\lista.xlsx";

/// A part of an .xlsx, which is a zip of XML files.
std::string PartOf(const GridFixture& at, const char* part) {
  QProcess unzip;
  unzip.start("unzip", {"-p", QString::fromStdString(at.at.machine.files.ToHost(kBook).string()), part});
  if (!unzip.waitForFinished()) return "no unzip";
  return unzip.readAllStandardOutput().toStdString();
}

class Export : public testing::Test {
 protected:
  Export() : model(at.Columns(), at.Rows()) {}
  ui::GridContent Content() { return {&model, {1, 2, 3, 4, 5}, "Proba: linii -"}; }
  GridFixture at;
  ui::RecordsetModel model;
};

TEST_F(Export, SpreadsheetHasHeadingsValuesAndFormats) {
  ASSERT_TRUE(ui::WriteSpreadsheet(at.at.session, Content(), kBook));
  using testing::HasSubstr;
  EXPECT_THAT(PartOf(at, "xl/workbook.xml"), HasSubstr("<sheet name=\"Proba linii\""));
  const std::string sheet = PartOf(at, "xl/worksheets/sheet1.xml");
  EXPECT_THAT(sheet, HasSubstr("<pane ySplit=\"1\""));
  EXPECT_THAT(sheet, HasSubstr("<autoFilter ref=\"A1:E6\"/>"));
  EXPECT_THAT(sheet, HasSubstr("r=\"A1\" s=\"1\" t=\"inlineStr\"><is><t>Data</t>"));
  EXPECT_THAT(sheet, HasSubstr("r=\"A2\" s=\"2\"><v>46082</v>"));
  EXPECT_THAT(sheet, HasSubstr("<is><t>Piulita d'alama</t>"));
  EXPECT_THAT(sheet, HasSubstr("r=\"C2\" t=\"inlineStr\"><is><t>500</t>"));  // codes stay texts
  EXPECT_THAT(sheet, HasSubstr("r=\"D2\" s=\"3\"><v>1000.125</v>"));
  EXPECT_THAT(sheet, HasSubstr("<is><t>Da</t>"));
  const std::string styles = PartOf(at, "xl/styles.xml");
  EXPECT_THAT(styles, HasSubstr("formatCode=\"dd.mm.yyyy\""));
  EXPECT_THAT(styles, HasSubstr("formatCode=\"#,##0.00\""));
}

TEST_F(Export, FailingAndCancelledRunsLeaveTheEarlierFile) {
  at.at.files().Replace(kBook, "vechi");
  at.at.machine.progress.cancelled = true;
  at.at.prompter().ExpectInfo("Exportul a fost oprit; fisierul nu a fost scris");
  EXPECT_FALSE(ui::WriteSpreadsheet(at.at.session, Content(), kBook));
  at.at.machine.progress.cancelled = false;
  at.at.files().refuses = [](std::string_view path) { return path == kBook; };
  at.at.prompter().AcceptAnything(true);
  EXPECT_FALSE(ui::WriteSpreadsheet(at.at.session, Content(), kBook));
  EXPECT_THAT(at.at.prompter().seen().back(), testing::HasSubstr(kBook));
  EXPECT_EQ(at.at.files().Read(kBook), "vechi");
}

}  // namespace
