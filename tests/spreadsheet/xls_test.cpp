#include "platform/spreadsheet/xls.h"

#include <gmock/gmock.h>

#include <bit>

#include "spreadsheet/cells.h"
#include "support/xls_writer.h"

namespace platform::spreadsheet {
namespace {

using test_support::BiffStream;
using test_support::CellMap;
using test_support::CompoundFileOf;
using test_support::XlsWriter;
using Reason = SheetError::Reason;

CellMap Cells(std::string content, std::string_view sheet) {
  CellMap cells;
  OpenXlsContent(std::move(content))->Read(sheet, cells);
  return cells;
}

// The reason and text of a refusal; a file that is read fails the test.
std::pair<Reason, std::string> Refusal(std::string content, std::string_view sheet = "Foaie") {
  try {
    Cells(std::move(content), sheet);
  } catch (const SheetError& error) {
    return {error.reason(), error.what()};
  }
  ADD_FAILURE() << "was read";
  return {Reason::kUnreadable, ""};
}

TEST(Xls, ReadsEveryKindOfCell) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Foaie");
  sheet.Row(0, "'Încărcătură €|=12.5|01012100|@46100||?1|!");
  sheet.Date(0, 4, 46100.75, "dd.mm.yyyy hh:mm");
  sheet.Row(1, "~99.95||\"țară|\"");
  sheet.FormulaNumber(1, 1, 46101, "dd/mm/yyyy");
  sheet.FormulaBoolean(1, 4, false);
  sheet.FormulaError(1, 5, 0x07);
  sheet.raw().Begin(0x027E).U16(2).U16(0).U16(15).U32((1234u << 2) | 3);     // RK: integer in hundredths
  sheet.raw().Begin(0x027E).U16(2).U16(1).U16(15).U32(0x3FF80000);           // RK: upper half of 1.5
  sheet.raw().Begin(0x00BD).U16(2).U16(2).U16(15).U32(7u << 2 | 2).U16(15);  // MULRK: 7, -8
  sheet.raw().U32(static_cast<std::uint32_t>(-8) << 2 | 2).U16(3);
  sheet.raw().Begin(0x0201).U16(2).U16(4).U16(15);                           // BLANK
  sheet.raw().Begin(0x0204).U16(2).U16(5).U16(15).U16(2).U8(0).Bytes("ab");  // LABEL
  const CellMap cells = Cells(book.Content(), "FOAIE");
  EXPECT_EQ(cells.Row(0), "tÎncărcătură €|n12.5|n1012100/8|d46100|d46100.75|b1|e#N/A");
  EXPECT_EQ(cells.Row(1), "n99.95|d46101|tțară|t|b0|e#DIV/0!");
  EXPECT_EQ(cells.Row(2), "n12.34|n1.5|n7|n-8||tab");
  EXPECT_EQ(cells.cells.size(), 18u);
}

TEST(Xls, FollowsTheDateBase) {
  XlsWriter book;
  book.Use1904();
  XlsWriter::Sheet& sheet = book.AddSheet("Foaie");
  sheet.Date(0, 0, 44638);
  sheet.Date(0, 1, 0.25, "hh:mm");
  sheet.Date(0, 2, 1.5, "[h]:mm");
  const CellMap late = Cells(book.Content(), "Foaie");
  EXPECT_EQ(late.Row(0), "d46100|d0.25|d1.5");

  XlsWriter usual;
  XlsWriter::Sheet& days = usual.AddSheet("Foaie");
  days.Date(0, 0, 1);        // 1900-01-01 in a worksheet
  days.Date(0, 1, 61);       // 1900-03-01, from where on both count alike
  days.Date(0, 2, -3);       // shown as no date
  days.Date(0, 3, 3000000);  // behind the year 9999
  const CellMap cells = Cells(usual.Content(), "Foaie");
  EXPECT_EQ(cells.Row(0), "d2|d61|n-3|n3000000");
}

TEST(Xls, ReadsSharedTextsOverManyRecords) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Foaie");
  std::vector<std::string> texts;
  for (unsigned i = 0; i < 900; ++i) {
    std::string text = fmt::format("{} {}", i, std::string(i % 61, 'x'));
    if (i % 3 == 0) text += " ștăț";
    if (i % 7 == 0) text += " é";
    if (i % 100 == 0) text += std::string(9000, 'y') + (i % 200 == 0 ? "😀ș" : "");
    texts.push_back(text);
    sheet.Text(i, i % 5, text);
  }
  const CellMap cells = Cells(book.Content(), "Foaie");
  for (unsigned i = 0; i < texts.size(); ++i) ASSERT_EQ(cells.at(i, i % 5), "t" + texts[i]) << i;
}

// A text whose width changes at a CONTINUE boundary, with formatting runs and extended data behind it.
TEST(Xls, ReadsTextsThatChangeWidthAtABoundary) {
  BiffStream stream;
  stream.Begin(0x0809).U16(0x0600).U16(0x0005).U32(0).U32(0).U32(0);
  stream.Begin(0x0085);
  const std::size_t slot = stream.size();
  stream.U32(0).U8(0).U8(0).U8(5).U8(0).Bytes("Foaie");
  stream.Begin(0x00FC).U32(2).U32(2);
  stream.U16(6).U8(0x0C).U16(1).U32(3).Bytes("abc");               // rich, extended, narrow so far
  stream.Begin(0x003C).U8(1).U16(0x0219).U16(0xD83D);              // ș and half of a pair
  stream.Begin(0x003C).U8(1).U16(0xDE00).U16(0xAAAA).U16(0xBBBB);  // the other half, the run
  stream.U8(1);
  stream.Begin(0x003C).U8(2).U8(3);  // extended data goes on without a flags byte
  stream.U16(2).U8(0).Bytes("zz");
  stream.Begin(0x000A).End();
  std::string globals = stream.Take();
  globals[slot] = static_cast<char>(globals.size());
  BiffStream sheet;
  sheet.Begin(0x0809).U16(0x0600).U16(0x0010).U32(0).U32(0).U32(0);
  sheet.Begin(0x00FD).U16(0).U16(0).U16(0).U32(0);
  sheet.Begin(0x00FD).U16(0).U16(1).U16(0).U32(1);
  sheet.Begin(0x000A).End();
  const CellMap cells = Cells(CompoundFileOf(globals + sheet.Take(), "WORKBOOK"), "foaie");
  EXPECT_EQ(cells.Row(0), "tabcș😀|tzz");
}

TEST(Xls, ReadsBiff5InItsCodePage) {
  BiffStream stream;
  stream.Begin(0x0809).U16(0x0500).U16(0x0005).U32(0);
  stream.Begin(0x0085);
  const std::size_t slot = stream.size();
  stream.U32(0).U8(0).U8(0).U8(5).Bytes("Fo\xE3i\xFE");
  stream.Begin(0x0042).U16(1250);  // behind the name it decodes
  stream.Begin(0x041E).U16(165).U8(8).Bytes("dd.mm.yy");
  stream.Begin(0x00E0).U16(0).U16(0).Bytes(std::string(12, '\0'));
  stream.Begin(0x00E0).U16(0).U16(165).Bytes(std::string(12, '\0'));
  stream.Begin(0x000A).End();
  std::string globals = stream.Take();
  globals[slot] = static_cast<char>(globals.size());
  BiffStream sheet;
  sheet.Begin(0x0809).U16(0x0500).U16(0x0010).U32(0);
  sheet.Begin(0x0204).U16(0).U16(0).U16(0).U16(5).Bytes("\xBAu\xFE\xE3m");
  sheet.Begin(0x00D6).U16(0).U16(1).U16(0).U16(2).Bytes("ab").U8(1).U16(0);
  sheet.Begin(0x0203).U16(0).U16(2).U16(1).F64(46100);
  sheet.Begin(0x0006)
      .U16(0)
      .U16(3)
      .U16(0)
      .F64(std::bit_cast<double>(0xFFFF000000000000u))
      .U16(0)
      .U32(0)
      .U16(0);
  sheet.Begin(0x00BC).U16(0);  // the shared formula lies between the cell and its text
  sheet.Begin(0x0207).U16(3).Bytes("c\xEEt");
  sheet.Begin(0x000A).End();
  const CellMap cells = Cells(CompoundFileOf(globals + sheet.Take(), "Book"), "FOĂIȚ");
  EXPECT_EQ(cells.Row(0), "tșuțăm|tab|d46100|tcît");
}

TEST(Xls, DeliversInOrderWhatWasWrittenInNone) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Foaie");
  sheet.Number(5, 1, 1);
  sheet.Number(2, 3, 2);
  sheet.FormulaText(2, 0, "text");
  sheet.Number(5, 1, 3);  // again: this one holds
  const CellMap cells = Cells(book.Content(), "Foaie");
  EXPECT_EQ(cells.cells.size(), 3u);
  EXPECT_EQ(cells.Row(2), "ttext|||n2");
  EXPECT_EQ(cells.Row(5), "|n3");
}

TEST(Xls, PassesOverChartsAndNamesHiddenSheets) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Foaie");
  sheet.Number(0, 0, 1);
  sheet.raw().Begin(0x0809).U16(0x0600).U16(0x0020).U32(0).U32(0).U32(0);  // a chart inside the sheet
  sheet.Number(1, 0, 2);
  sheet.raw().Begin(0x000A);
  sheet.Number(2, 0, 3);
  book.AddSheet("Ascunsă", true).Number(0, 0, 9);
  const std::unique_ptr<Workbook> open = OpenXlsContent(book.Content());
  ASSERT_EQ(open->sheets().size(), 2u);
  EXPECT_FALSE(open->sheets()[0].hidden);
  EXPECT_TRUE(open->sheets()[1].hidden);
  CellMap cells;
  open->Read("Foaie", cells);
  EXPECT_EQ(cells.cells.size(), 2u);
  EXPECT_EQ(cells.at(2, 0), "n3");
  CellMap hidden;
  open->Read("ASCUNSĂ", hidden);
  EXPECT_EQ(hidden.at(0, 0), "n9");
  CellMap first;
  first.limit = 1;
  open->Read("Foaie", first);
  EXPECT_EQ(first.cells.size(), 1u) << "a sink that has enough is not called again";
}

TEST(Xls, RefusesForeignFilesByName) {
  EXPECT_EQ(Refusal("").first, Reason::kNotAWorksheet);
  EXPECT_THAT(Refusal(" \r\n<html><table>").second, testing::HasSubstr("HTML"));
  EXPECT_THAT(Refusal("\xEF\xBB\xBF<?xml version=\"1.0\"?>").second, testing::HasSubstr("XML"));
  EXPECT_THAT(Refusal(std::string("\xFF\xFE<\0h\0t\0m\0l\0", 12)).second, testing::HasSubstr("HTML"));
  EXPECT_EQ(Refusal("a,b,c\r\n1,2,3\r\n").first, Reason::kNotAWorksheet);
  EXPECT_EQ(Refusal(std::string("\x09\x04\x06\0\0\0\x10\0\0\0", 10)).first, Reason::kUnsupported);
  EXPECT_EQ(Refusal(CompoundFileOf(std::string(5000, 'w'), "WordDocument")).first, Reason::kNotAWorksheet);
  EXPECT_EQ(Refusal(CompoundFileOf(std::string(5000, 'w'), "EncryptedPackage")).first, Reason::kEncrypted);
  EXPECT_EQ(Refusal(CompoundFileOf(std::string(5000, 'w'), "Workbook")).first, Reason::kDamaged);

  BiffStream locked;
  locked.Begin(0x0809).U16(0x0600).U16(0x0005).U32(0).U32(0).U32(0);
  locked.Begin(0x002F).U16(1).Bytes(std::string(50, '\x77'));
  locked.Begin(0x000A).End();
  EXPECT_EQ(Refusal(CompoundFileOf(locked.Take(), "Workbook")).first, Reason::kEncrypted);
}

TEST(Xls, NamesTheSheetAndPlaceOfDamage) {
  XlsWriter book;
  book.AddSheet("Foaie").raw().Begin(0x00FD).U16(41).U16(2).U16(15).U32(7);  // no such text
  const auto [reason, text] = Refusal(book.Content());
  EXPECT_EQ(reason, Reason::kDamaged);
  EXPECT_THAT(text, testing::HasSubstr("randul 42, coloana 3"));

  const auto [missing, names] = Refusal(book.Content(), "Sheet1");
  EXPECT_EQ(missing, Reason::kNoSuchSheet);
  EXPECT_THAT(names, testing::HasSubstr("Foaie"));

  try {
    OpenWorkbook("/nowhere/achizitii.xls");
    FAIL();
  } catch (const SheetError& error) {
    EXPECT_EQ(error.reason(), Reason::kUnreadable);
    EXPECT_THAT(error.what(), testing::HasSubstr("achizitii.xls"));
  }
}

// Whatever is cut off or flipped, the answer is a table or a named refusal; a sheet cut before its end is
// never delivered in part.
TEST(Xls, SurvivesCutsAndFlips) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Foaie");
  for (unsigned row = 0; row < 60; ++row) {
    sheet.Text(row, 0, fmt::format("produs {} ș", row));
    sheet.FormulaText(row, 1, "text");
    sheet.Number(row, 2, row, "00000000");
    sheet.FormulaNumber(row, 3, row * 1.5);
  }
  const std::string whole = book.Content();
  const std::size_t cells = Cells(whole, "Foaie").cells.size();
  for (std::size_t length = 0; length < whole.size(); length += 64) {
    CellMap got;
    try {
      OpenXlsContent(whole.substr(0, length))->Read("Foaie", got);
      EXPECT_EQ(got.cells.size(), cells);
    } catch (const SheetError&) {
      EXPECT_TRUE(got.cells.empty());
    }
  }
  for (std::size_t at = 0; at < whole.size(); at += 3) {
    std::string flipped = whole;
    flipped[at] = static_cast<char>(flipped[at] ^ (1 << (at % 8)));
    try {
      const std::unique_ptr<Workbook> open = OpenXlsContent(std::move(flipped));
      for (const SheetInfo& info : open->sheets()) {
        CellMap got;
        open->Read(info.name, got);
      }
    } catch (const SheetError& error) {
      EXPECT_STRNE(error.what(), "");
    }
  }
}

// The table of sectors of a file over seven megabytes needs a list of its own.
TEST(Xls, ReadsLargeFiles) {
  XlsWriter book;
  XlsWriter::Sheet& sheet = book.AddSheet("Foaie");
  for (unsigned row = 0; row < 22000; ++row) {
    for (unsigned column = 0; column < 22; ++column) sheet.Number(row, column, row + column / 100.0);
  }
  const std::string content = book.Content();
  ASSERT_GT(content.size(), 8u << 20);
  struct Sum : CellSink {
    double sum = 0;
    bool OnCell(const CellEvent& cell) override { return sum += cell.number, true; }
  } sink;
  OpenXlsContent(content)->Read("Foaie", sink);
  EXPECT_NEAR(sink.sum, 22.0 * 22000 * 21999 / 2 + 22000 * 2.31, 0.5);
}

}  // namespace
}  // namespace platform::spreadsheet
