#include <gmock/gmock.h>

#include "platform/spreadsheet/table.h"
#include "support/test_host.h"
#include "support/xls_writer.h"

namespace platform::spreadsheet {
namespace {

using test_support::XlsWriter;

class SheetTable : public testing::Test {
 protected:
  Table Read(XlsWriter& book, const SheetOptions& options = {}, std::string_view sheet = "Sheet1") {
    const std::string path = (folder_.path() / "test.xls").string();
    book.Save(path);
    return ReadSheetTable(path, sheet, options);
  }

  test_support::TempFolder folder_;
};

std::string Show(const Table& table, std::size_t row, std::size_t column) {
  const Cell& cell = table.at(row, column);
  if (cell.kind == Cell::Kind::kNull) return "null";
  if (cell.kind == Cell::Kind::kText) return "'" + std::string(cell.AsText()) + "'";
  return fmt::format("{}", cell.number);
}

std::string Show(const Table& table, std::size_t row) {
  std::string text;
  for (std::size_t i = 0; i < table.columns().size(); ++i) text += (i == 0 ? "" : "|") + Show(table, row, i);
  return text;
}

TEST_F(SheetTable, TypesColumnsAsTheDriverDoes) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
  sheet.Row(0, "'numar|'data|'logic|'text|'mixt|'cod|'cod mixt|'cod partial|'erori");
  sheet.Row(1, "=2.5|@46100|?1|'a|=0.30000000000000004|01012100|01012100|01012100|!");
  sheet.Row(2, "\"||||@46100.5||'8471.30-00|=84713000");  // the empty text of a formula is no text
  sheet.Number(2, 5, 84713000, "0000000000");
  sheet.Row(3, "!||?0||?0");
  const Table table = Read(book);

  ASSERT_EQ(table.columns().size(), 9u);
  ASSERT_EQ(table.row_count(), 3u);
  const ColumnKind kinds[] = {ColumnKind::kNumber, ColumnKind::kDate,   ColumnKind::kBoolean,
                              ColumnKind::kText,   ColumnKind::kText,   ColumnKind::kNumber,
                              ColumnKind::kText,   ColumnKind::kNumber, ColumnKind::kText};
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(table.columns()[i].kind, kinds[i]) << i;
  // An error reads as Null and does not make the column text.
  EXPECT_EQ(Show(table, 0), "2.5|46100|-1|'a'|'0.3'|1012100|'01012100'|1012100|null");
  EXPECT_EQ(Show(table, 1), "null|null|null|null|'19.03.2026 12:00:00'|84713000|'8471.30-00'|84713000|null");
  EXPECT_EQ(Show(table, 2), "null|null|0|null|'FALSE'|null|null|null|null");
  EXPECT_EQ(table.columns()[5].zero_pad, 10);
  EXPECT_EQ(table.columns()[7].zero_pad, 0) << "one cell without padding";
}

TEST_F(SheetTable, WithoutImexTheMajorityHolds) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
  sheet.Row(0, "'cod|'egal");
  sheet.Row(1, "=1|'a");
  sheet.Row(2, "'doi|=5");
  sheet.Row(3, "=3");
  SheetOptions options;
  options.mixed_as_text = false;
  const Table table = Read(book, options);
  EXPECT_EQ(table.columns()[0].kind, ColumnKind::kNumber);
  EXPECT_EQ(Show(table, 0, 0) + Show(table, 1, 0) + Show(table, 2, 0), "1null3");
  EXPECT_EQ(table.columns()[1].kind, ColumnKind::kNumber) << "of equals the number";
}

TEST_F(SheetTable, FitsHeadings) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
  sheet.Row(0, "'Val. fisc!|'Net [kg]\r\nbrut|'  |'Cod|'COD|=2026|'Cod");
  sheet.Text(0, 7, std::string(70, 'x'));
  sheet.Number(1, 8, 1);  // a column without any heading
  std::vector<std::string> names;
  const Table table = Read(book);
  for (const Column& column : table.columns()) names.push_back(column.name);
  EXPECT_THAT(names, testing::ElementsAre("Val# fisc_", "Net (kg) brut", "F3", "Cod", "COD1", "2026", "Cod2",
                                          std::string(64, 'x'), "F9"));
}

TEST_F(SheetTable, StartsAndEndsWithItsValues) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
  sheet.Text(3, 2, "a");
  sheet.Text(3, 4, "b");
  sheet.Number(5, 4, 7);
  sheet.Number(5, 200, 0);
  sheet.Text(60000, 3, "");  // beyond the last value
  SheetOptions no_headings;
  no_headings.headings = false;
  const Table plain = Read(book, no_headings);
  EXPECT_EQ(plain.row_count(), 3u);
  EXPECT_EQ(plain.columns().size(), 199u);
  EXPECT_EQ(plain.columns()[198].name, "F199");
  EXPECT_EQ(Show(plain, 0, 0), "'a'");
  EXPECT_EQ(Show(plain, 1, 0), "null");
  EXPECT_EQ(Show(plain, 2, 198), "0");
  const Table table = Read(book);
  EXPECT_EQ(table.row_count(), 2u);
  EXPECT_EQ(Show(table, 1, 2), "7");

  XlsWriter empty;
  empty.AddSheet("Sheet1");
  const Table none = Read(empty);
  EXPECT_EQ(none.row_count(), 0u);
  ASSERT_EQ(none.columns().size(), 1u);
  EXPECT_EQ(none.columns()[0].name, "F1");
}

TEST_F(SheetTable, LongTextsMakeAMemo) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
  std::string letters;
  for (int i = 0; i < 255; ++i) letters += "ș";
  sheet.Text(1, 0, letters);
  sheet.Text(1, 1, letters + "x");
  SheetOptions options;
  options.headings = false;
  const Table table = Read(book, options);
  EXPECT_EQ(table.columns()[0].size, 255);
  EXPECT_EQ(table.columns()[1].size, 0);
  EXPECT_EQ(table.at(0, 1).AsText(), letters + "x");
}

TEST_F(SheetTable, FindsSheetsByTheirFittedNames) {
  XlsWriter book;
  book.AddSheet("Achiz. 03!2026").Number(0, 0, 1);
  book.AddSheet("Sheet1", true).Number(0, 0, 2);
  SheetOptions options;
  options.headings = false;
  EXPECT_EQ(Show(Read(book, options, "achiz# 03_2026"), 0, 0), "1");
  EXPECT_EQ(Show(Read(book, options, "SHEET1"), 0, 0), "2");
  EXPECT_THROW(Read(book, options, "Achiz"), SheetError);
  std::vector<std::string> names;
  const std::unique_ptr<Workbook> opened = OpenWorkbook((folder_.path() / "test.xls").string());
  for (const SheetInfo& info : opened->sheets()) names.push_back(info.name);
  EXPECT_THAT(names, testing::ElementsAre("Achiz. 03!2026", "Sheet1"));
}

// The delivered samples come from a real spreadsheet program.
TEST(SheetTableSamples, HoldWhatTheirSourcesSay) {
  const std::string folder = DECLARIX_SOURCE_DIR "/data/samples/";
  const Table in = ReadSheetTable(folder + "achizitii.xls", "achizitii", {});
  ASSERT_EQ(in.columns().size(), 18u);
  EXPECT_EQ(in.row_count(), 36u);
  EXPECT_EQ(in.columns()[12].name, "Greutate neta (kg)");
  EXPECT_EQ(in.columns()[5].name, "U#M#");
  EXPECT_EQ(in.columns()[1].kind, ColumnKind::kDate);
  EXPECT_EQ(in.columns()[3].kind, ColumnKind::kText);
  EXPECT_EQ(Show(in, 0, 3), "'8471.30-00'");
  EXPECT_EQ(Show(in, 30, 3), "'09012100'") << "typed as a number, shown with its zero";
  EXPECT_EQ(Show(in, 33, 3), "'8708.99-97 '");
  EXPECT_EQ(Show(in, 0, 2), "'Laptop 15,6\" cu tastatură iluminată'");
  EXPECT_EQ(in.columns()[7].kind, ColumnKind::kNumber);
  EXPECT_EQ(Show(in, 0, 7), "20496") << "a formula's value";
  EXPECT_EQ(Show(in, 0, 9), "null");
  EXPECT_EQ(Show(in, 4, 9), "94266.8");
  EXPECT_EQ(Show(in, 11, 15), "'184'") << "a number among texts";
  const Table out = ReadSheetTable(folder + "livrari.xls", "Livrari", {});
  ASSERT_EQ(out.columns().size(), 18u);
  EXPECT_EQ(out.row_count(), 32u);
  EXPECT_EQ(Show(out, 26, 5), "'02071410'");
  EXPECT_EQ(out.columns()[17].kind, ColumnKind::kNumber);
  EXPECT_EQ(NumberToText(out.at(22, 17).number, 0) + " " + NumberToText(out.at(0, 17).number, 0), "8 1.1");
}

TEST(SheetText, WritesNumbersAndDates) {
  EXPECT_EQ(NumberToText(12, 0), "12");
  EXPECT_EQ(NumberToText(-12, 4), "-0012");
  EXPECT_EQ(NumberToText(12.5, 8), "12.5");
  EXPECT_EQ(NumberToText(123456789012345, 0), "123456789012345");
  EXPECT_EQ(NumberToText(1e20, 0), "1E+20");
  EXPECT_EQ(NumberToText(-0.0, 0), "0");
  EXPECT_EQ(DateToText(46100), "19.03.2026");
  EXPECT_EQ(DateToText(0.5), "12:00:00");
  EXPECT_EQ(DateToText(46100.999999), "20.03.2026") << "rounded to the second";
  EXPECT_EQ(DateToText(1), "31.12.1899");
}

}  // namespace
}  // namespace platform::spreadsheet
