#include "platform/spreadsheet/csv.h"

#include <gmock/gmock.h>

#include "platform/encoding.h"
#include "platform/spreadsheet/csv_value.h"
#include "platform/spreadsheet/table.h"
#include "spreadsheet/cells.h"

namespace platform::spreadsheet {
namespace {

using test_support::CellMap;
using testing::HasSubstr;
using testing::StartsWith;

CellMap Cells(std::string content) {
  CellMap cells;
  OpenWorkbookContent(std::move(content), "martie.03.csv")->Read("Sheet1", cells);
  return cells;
}

TEST(Csv, FindsTheDelimiter) {
  EXPECT_EQ(Cells("Cod;Kg\nx;1,5\ny;2,5\n").Row(2), "ty|n2.5");
  EXPECT_EQ(Cells("Cod,Kg,Lei\r\nx,1.5,2\r\n").Row(1), "tx|n1.5|n2");
  EXPECT_EQ(Cells("Cod\tKg\nLemn, brut, uscat\t2,25\n").Row(1), "tLemn, brut, uscat|n2.25");
  EXPECT_EQ(Cells("Cod|Kg\ra|1\r").Row(1), "ta|n1");
  EXPECT_EQ(Cells("sep=|\nCod;x|Kg\n").Row(0), "tCod;x|tKg");
  EXPECT_EQ(Cells("Cod\n\nx\n").Row(2), "tx") << "a blank line is a row as any program shows it";
}

TEST(Csv, FindsTheEncoding) {
  const std::string text = "Țara;Denumire\nRO;cărămidă și țiglă\n";
  const char* expected = "tRO|tcărămidă și țiglă";
  std::string utf16;
  for (const char c : std::string("Tara;Kg\nRO;7\n")) utf16 += {c, '\0'};
  EXPECT_EQ(Cells(text).Row(1), expected);
  EXPECT_EQ(Cells("\xEF\xBB\xBF" + text).Row(0), "tȚara|tDenumire");
  EXPECT_EQ(Cells(utf16).Row(1), "tRO|n7");
  EXPECT_EQ(Cells("\xFF\xFE" + utf16).Row(0), "tTara|tKg");
  EXPECT_EQ(Cells("\xFE\xFF" + std::string(1, '\0') + utf16.substr(0, utf16.size() - 1)).Row(1), "tRO|n7");
  EXPECT_EQ(Cells(ToCodePage(text, 1250)).Row(1), expected);
  EXPECT_EQ(Cells(text + std::string(20, ';') + "\n\xFE;ăăăăăăăăăăăăăă\n").Row(1), expected)
      << "a stray byte";
}

TEST(Csv, ReadsQuotedFields) {
  const CellMap cells =
      Cells("Cod;\"Descriere\"\n1;\"Laptop 15,6\"\"; negru\nusor\"\n\"2\";\"\"\n3;\"a\" b\n");
  EXPECT_EQ(cells.Row(1), "t1|tLaptop 15,6\"; negru\nusor");
  EXPECT_EQ(cells.Row(2), "t2") << "quotes mark texts where others have none";
  EXPECT_EQ(cells.Row(3), "t3|ta b");
  EXPECT_EQ(Cells("\"Cod\",\"Kg\"\n\"x\",\"1,234.5\"\n\"y\",\"2\"\n").Row(2), "ty|n2") << "all are in quotes";
  EXPECT_EQ(Cells("Cod,Kg\nx,\"1,5\"\ny,2\n").Row(1), "tx|n1.5") << "needed quotes say nothing";
}

TEST(Csv, TypesColumnsByTheirFields) {
  const CellMap cells = Cells(
      "Cod;NC;Lei;Nat;Data;US;Ales;Fel\n"
      "01012100;8471.3000;1.234;1.1;02.03.2026;3/31/2026;TRUE;0,5\n"
      "84713000;8471.30-00;1.234,50;8.0;2.3.26 12:00;02/01/2026;FALSE;1\n"
      ";;#N/A;;2026-03-02;;;patru\n");
  EXPECT_EQ(cells.Row(1), "t01012100|t8471.3000|n1234|n1.1|d46083|d46112|b1|n0.5");
  EXPECT_EQ(cells.Row(2), "t84713000|t8471.30-00|n1234.5|n8|d46083.5|d46054|b0|t1");
  EXPECT_EQ(cells.Row(3), "||e#N/A||d46083|||tpatru");
  EXPECT_EQ(Cells("1;2\n3;4\n").Row(0), "n1|n2") << "without headings";
}

TEST(Csv, TakesForNumbersOnlyWhatIsOne) {
  EXPECT_EQ(ParseCsvNumber("-1.234.567,5", ','), -1234567.5);
  EXPECT_EQ(ParseCsvNumber("1\xC2\xA0"
                           "234,5",
                           ','),
            1234.5);
  EXPECT_EQ(ParseCsvNumber("1,234", '.'), 1234);
  EXPECT_EQ(ParseCsvNumber(",5", ','), 0.5);
  EXPECT_EQ(ParseCsvNumber("1.5E+10", '.'), 1.5e10);
  for (const char* text : {"", "-", "12E4", "007", "+40", "1.23.456", "12.34", "1.234 567", "1,", "1,2,3",
                           "5 lei", "1234567890123456", "84 71 30"}) {
    EXPECT_FALSE(ParseCsvNumber(text, ',')) << text;
  }
  EXPECT_FALSE(ParseCsvDate("31.02.2026", false));
  EXPECT_FALSE(ParseCsvDate("1.1", false));
}

TEST(Csv, NamesWhatItRefuses) {
  const auto refusal = [](std::string content, const char* name) -> std::string {
    try {
      OpenWorkbookContent(std::move(content), name);
    } catch (const SheetError& error) {
      return error.what();
    }
    return "citit";
  };
  EXPECT_THAT(refusal("Cod;Kg\nx;\"1\ny;2\n", "a.csv"), StartsWith("Fisierul a.csv: textul este trunchiat"));
  EXPECT_THAT(refusal("Cod;Kg\nx;\"1\ny;2\n", "a.csv"), HasSubstr("randul 2"));
  EXPECT_THAT(refusal("<!DOCTYPE html><table>", "a.csv"), HasSubstr("HTML"));
  EXPECT_THAT(refusal(std::string("a\0\0\0b;c", 7), "a.csv"), HasSubstr("octeti"));
  EXPECT_THAT(refusal("", "a.csv"), HasSubstr("gol"));
  EXPECT_THAT(refusal("Cod;Kg\n", "a.xls"), HasSubstr(".csv"));
  EXPECT_EQ(OpenWorkbookContent("a;b\n", "martie.03.csv")->sheets()[0].name, "martie.03");
}

}  // namespace
}  // namespace platform::spreadsheet
