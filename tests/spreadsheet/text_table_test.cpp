#include "platform/spreadsheet/text_table.h"

#include <gmock/gmock.h>

#include <fstream>

#include "platform/encoding.h"
#include "platform/spreadsheet/text_value.h"
#include "support/test_host.h"

namespace platform::spreadsheet {
namespace {

std::string Rows(const Table& table) {
  std::string text;
  for (std::size_t row = 0; row < table.row_count(); ++row) {
    for (std::size_t column = 0; column < table.columns().size(); ++column) {
      const Cell& cell = table.at(row, column);
      text += column == 0 ? "" : "|";
      if (cell.kind == Cell::Kind::kNumber) text += fmt::format("{}", cell.number);
      if (cell.kind == Cell::Kind::kText) text += "'" + std::string(cell.AsText()) + "'";
    }
    text += "\n";
  }
  return text;
}

std::string Names(const Table& table) {
  std::string text;
  for (const Column& column : table.columns()) text += column.name + " ";
  return text;
}

constexpr std::string_view kRatesIni =
    "; folder of the rates\r\n"
    "[data.txt]\r\nColNameHeader=True\r\n\r\n"
    "[CURS.TXT]\r\n"
    "ColNameHeader = False\r\n"
    "Format=Delimited(;)\r\n"
    "MaxScanRows=0\r\n"
    "CharacterSet=ANSI\r\n"
    "DateTimeFormat=yyyy-mm-dd\r\n"
    "DecimalSymbol=,\r\n"
    "Col1=Currency_Code Text Width 3\r\n"
    "Col2=\"Data Curs\" DateTime\r\n"
    "Col3=Curs Double\r\n"
    "Col4=Raport Long\r\n";

TEST(TextTable, ReadsByTheColumnDescription) {
  test_support::TempFolder folder;
  std::ofstream(folder.path() / "SCHEMA.ini", std::ios::binary) << kRatesIni;
  std::ofstream(folder.path() / "curs.txt", std::ios::binary)
      << "EUR;2026-03-04;5,0912;1\r\n\r\nHUF;2026-03-04;1,2950;100\nUSDX;4.3.2026;4.35;1,5\nGBP;2026-02-30;;"
         "99999999999";
  const Table table = ReadTextTable((folder.path() / "curs.txt").string(), true);
  EXPECT_EQ(Names(table), "Currency_Code Data Curs Curs Raport ");
  EXPECT_EQ(table.columns()[0].size, 3);
  EXPECT_EQ(table.columns()[1].kind, ColumnKind::kDate);
  EXPECT_EQ(table.columns()[3].kind, ColumnKind::kNumber);
  EXPECT_EQ(Rows(table),
            "'EUR'|46085|5.0912|1\n"
            "'HUF'|46085|1.295|100\n"
            "'USD'|||2\n"
            "'GBP'|||\n")
      << "what does not fit its column is Null; whole numbers round half to even";
}

TEST(TextTable, ReadsWithoutADescription) {
  const std::string text =
      "\xEF\xBB\xBF"
      "cod,denumire\n1,\"a, \"\"b\"\"\nc\"\n,,trei\n\n\"\",ș\x1A";
  const Table headed = ParseTextTable(text, TextLayout(), true);
  EXPECT_EQ(Names(headed), "cod denumire F3 ");
  EXPECT_EQ(Rows(headed), "'1'|'a, \"b\"\nc'|\n||'trei'\n''|'ș'|\n") << "only a quoted empty text is no Null";
  const Table plain = ParseTextTable(text, TextLayout(), false);
  EXPECT_EQ(Names(plain), "F1 F2 F3 ");
  EXPECT_EQ(plain.row_count(), 4u);
  EXPECT_EQ(Names(ParseTextTable("", TextLayout(), true)), "F1 ");
}

TEST(TextTable, FollowsDelimitersAndCharacterSets) {
  TextLayout layout =
      ParseSchemaIni("[a.txt]\nFormat=TabDelimited\nCharacterSet=1250\nTextDelimiter=none\n", "A.TXT");
  EXPECT_EQ(Rows(ParseTextTable("\"\xBA\xFE\"\tb,c\n", layout, false)), "'\"șț\"'|'b,c'\n");
  layout =
      ParseSchemaIni("[a.txt]\nFormat=Delimited(|)\nCharacterSet=Unicode\nCol1=x Bit\nCol2=y Memo", "a.txt");
  const Table table = ParseTextTable(ToCodePage("Yes|ț\n0|a", 1200), layout, false);
  EXPECT_EQ(Rows(table), "-1|'ț'\n0|'a'\n");
  EXPECT_EQ(table.columns()[1].size, 0);
}

TEST(TextTable, RefusesADescriptionThatMakesNoSense) {
  for (const char* line : {"Col1=a Colour", "Col0=a Text", "Colx=a Text", "Col9999=a Text",
                           "Format=FixedLength", "Format=Delimited()", "CharacterSet=Klingon",
                           "ColNameHeader=maybe", "rubbish", "Col1=a Text Width x"}) {
    EXPECT_THROW(ParseSchemaIni(std::string("[a.txt]\n") + line, "a.txt"), SheetError) << line;
    EXPECT_NO_THROW(ParseSchemaIni(std::string("[b.txt]\n") + line, "a.txt")) << line;
  }
}

TEST(TextValue, ReadsDatesByFormat) {
  constexpr double kDay = 46085;  // 2026-03-04
  const std::tuple<const char*, const char*, double> good[] = {
      {"2026-03-04", "yyyy-mm-dd", kDay},
      {"04.03.2026", "dd.mm.yyyy", kDay},
      {"4.3.2026", "dd.mm.yyyy", kDay},
      {"20260304", "yyyymmdd", kDay},
      {"3/4/26", "m/d/yy", kDay},
      {"04.03.99", "dd.mm.yy", 36223},
      {"2026-03-04 18:00", "yyyy-mm-dd", kDay + 0.75},
      {"2026-03-04T06:00:00", "yyyy-mm-dd", kDay + 0.25},
      {"04.03.2026 12:00", "dd.mm.yyyy hh:mm", kDay + 0.5},
  };
  for (const auto& [text, format, days] : good) EXPECT_EQ(ParseDate(text, format), days) << text;
  for (const char* bad : {"", "2026-02-29", "2026-13-01", "26-03-04", "2026-03", "2026-03-04x", "2026/03/04",
                          "2026-03-04 25:00", "2026-03-04 ", "2026-03-04 1:2:3:4"}) {
    const bool blank_behind = std::string_view(bad) == "2026-03-04 ";
    EXPECT_EQ(ParseDate(bad, "yyyy-mm-dd").has_value(), blank_behind) << bad;
  }
}

TEST(TextValue, ReadsNumbers) {
  EXPECT_EQ(ParseNumber(" -12.50 ", '.'), -12.5);
  EXPECT_EQ(ParseNumber("+4,9751", ','), 4.9751);
  EXPECT_EQ(ParseNumber("1E3", '.'), 1000);
  for (const char* bad : {"", "x", "1 2", "1,5", "inf", "nan", "1e999", "--1", "+-1", "12 lei"}) {
    EXPECT_FALSE(ParseNumber(bad, '.')) << bad;
  }
}

}  // namespace
}  // namespace platform::spreadsheet
