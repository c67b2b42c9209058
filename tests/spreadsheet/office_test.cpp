#include <gmock/gmock.h>
#include <zip.h>

#include <fstream>

#include "platform/spreadsheet/office_book.h"
#include "platform/spreadsheet/table.h"
#include "spreadsheet/cells.h"
#include "spreadsheet/parts.h"
#include "support/test_host.h"

namespace platform::spreadsheet {
namespace {

using Reason = SheetError::Reason;
using test_support::CellMap;
using test_support::OdsParts;
using test_support::Parts;
using test_support::XlsxParts;
using testing::HasSubstr;
using testing::Pair;

CellMap Cells(const Parts::Map& parts, std::string_view sheet = "Foaie") {
  CellMap cells;
  OpenPackage(std::make_unique<Parts>(parts))->Read(sheet, cells);
  return cells;
}

// Why a content or its sheet "Foaie" is refused.
template <typename Open>
std::pair<Reason, std::string> RefusalOf(const Open& open) {
  try {
    class Blind : public CellSink {
      bool OnCell(const CellEvent&) override { return true; }
    } blind;
    open()->Read("Foaie", blind);
  } catch (const SheetError& error) {
    return {error.reason(), error.what()};
  }
  ADD_FAILURE() << "was read";
  return {};
}
std::pair<Reason, std::string> Refusal(const Parts::Map& parts) {
  return RefusalOf([&] { return OpenPackage(std::make_unique<Parts>(parts)); });
}

std::string Zip(const Parts::Map& parts) {
  const test_support::TempFolder folder;
  const std::string path = (folder.path() / "a.zip").string();
  zip_t* archive = zip_open(path.c_str(), ZIP_CREATE, nullptr);
  for (const auto& [name, content] : parts) {
    zip_file_add(archive, name.c_str(), zip_source_buffer(archive, content.data(), content.size(), 0), 0);
  }
  zip_close(archive);
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Xlsx, ReadsEveryKindOfCell) {
  const CellMap cells = Cells(XlsxParts(
      R"(<row r="1"><c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c><c r="C1" t="s"><v>2</v></c></row>)"
      R"(<row r="3"><c r="A3"><v>1.5E3</v></c><c r="C3" s="1"><v>46100.5</v></c><c s="2"><v>1012100</v></c>)"
      R"(<c r="F3" s="3"><v>59</v></c><c r="G3" t="b"><v>1</v></c><c r="H3" t="e"><v>#N/A</v></c></row>)"
      R"(<row><c t="str"><f>A1&amp;"x"</f><v> a_x000D_b</v></c><c><f>SUM(A3)</f><v>7</v></c><c s="1"/>)"
      R"(<c t="inlineStr"><is><t xml:space="preserve"> în </t></is></c><c t="d"><v>2026-03-19T12:00:00.5Z</v></c></row>)",
      R"(<si><t> Cod </t></si><si><r><t xml:space="preserve">a </t></r><r><t>b&lt;</t></r><rPh><t>x</t></rPh></si>)"
      R"(<si><t/></si>)"));
  EXPECT_EQ(cells.Row(0), "tCod|ta b<|t");
  EXPECT_EQ(cells.Row(1), "");
  EXPECT_EQ(cells.Row(2), "n1500||d46100.5|n1012100/8||d60|b1|e#N/A");
  EXPECT_EQ(cells.Row(3), "t a\rb|n7||t în |d46100.5");
}

TEST(Xlsx, ListsWorksheetsAndCountsFrom1904) {
  const Parts::Map parts = XlsxParts("<row><c s='3'><v>1</v></c></row>", "", "<x:workbookPr date1904='1'/>");
  const auto book = OpenPackage(std::make_unique<Parts>(parts));
  ASSERT_EQ(book->sheets().size(), 2u) << "without the chart";
  EXPECT_TRUE(book->sheets()[1].hidden);
  EXPECT_EQ(Cells(parts).at(0, 0), "d1463");
  EXPECT_EQ(Cells(parts, "ASCUNSĂ").at(0, 0), "n9");
}

TEST(Xlsx, RefusesWhatIsNoSheetOrDamaged) {
  const auto sheet = [](const char* rows) { return Refusal(XlsxParts(rows)).second; };
  EXPECT_THAT(sheet("<row r='2'><c r='B2' t='s'><v>7</v></c></row>"), HasSubstr("randul 2, coloana 2"));
  EXPECT_THAT(sheet("<row r='2'/><row r='1'/>"), HasSubstr("rand cu numar gresit"));
  EXPECT_THAT(sheet("<row><c r='B1'/><c r='A1'/></row>"), HasSubstr("adresa gresita"));
  EXPECT_THAT(sheet("<row><c r='ZZZZ1'/></row>"), HasSubstr("in afara foii"));
  EXPECT_THAT(sheet("<row r='1048577'/>"), HasSubstr("in afara foii"));
  EXPECT_THAT(sheet("<row><c><v>doi</v></c></row>"), HasSubstr("numar gresit"));
  EXPECT_THAT(sheet("<row><c>"), HasSubstr("worksheets/a.xml: XML gresit"));
  Parts::Map parts = XlsxParts("");
  parts["xl/worksheets/a.xml"] = "<!DOCTYPE a [<!ENTITY b 'ccc'>]><worksheet>&b;</worksheet>";
  EXPECT_THAT(Refusal(parts).second, HasSubstr("DOCTYPE"));
  parts["xl/worksheets/a.xml"] = "<html/>";
  EXPECT_THAT(Refusal(parts).second, HasSubstr("nu este o foaie de calcul"));
  parts.erase("xl/worksheets/a.xml");
  EXPECT_THAT(Refusal(parts), Pair(Reason::kDamaged, HasSubstr("lipseste")));
  EXPECT_EQ(Refusal({{"word/document.xml", ""}}).first, Reason::kNotAWorksheet);
}

TEST(OfficeXml, TakesWhatIsWellFormedOnly) {
  const auto with = [](const std::string& sheet) {
    Parts::Map parts = XlsxParts("");
    parts["xl/worksheets/a.xml"] = sheet;
    return parts;
  };
  const std::string head = "<w><sheetData><row><c t='str'><v>", tail = "</v></c></row></sheetData></w>";
  const auto text = [&](const std::string& value) { return Cells(with(head + value + tail)).at(0, 0); };
  const auto refused = [&](const std::string& sheet) { return Refusal(with(sheet)).second; };
  EXPECT_EQ(text("&#537;&#x21B;&#x1F600;&amp;lt;"), "tșț😀&lt;");
  EXPECT_EQ(text("a<!-- <v> --><![CDATA[<&]]>b<?x ?>"), "ta<&b");
  EXPECT_EQ(Cells(with("\xEF\xBB\xBF<?xml version='1.0'?>\n" + head + "x" + tail + "\n")).at(0, 0), "tx");
  for (const char* value :
       {"&nbsp;", "&#0;", "&#xD800;", "&#1114112;", "a & b", "\xC3", "\xED\xA0\x80", "</c>"}) {
    EXPECT_THAT(refused(head + value + tail), HasSubstr("XML gresit la octetul")) << value;
  }
  EXPECT_THAT(refused(head + "x" + tail + "<w/>"), HasSubstr("al doilea"));
  EXPECT_THAT(refused("<w a=1/>"), HasSubstr("ghilimele"));
  EXPECT_THAT(refused(std::string("\xFF\xFE<\0w\0", 6)), HasSubstr("UTF-8"));
  const Parts::Map endless = with("<w b='" + std::string(5 << 20, 'x'));
  EXPECT_THAT(RefusalOf([&] { return OpenPackage(std::make_unique<Parts>(endless, 1 << 18)); }).second,
              HasSubstr("prea lung"));
}

TEST(Ods, ReadsEveryKindOfCell) {
  const CellMap cells = Cells(OdsParts(
      "<table:tracked-changes><table:table-cell office:value-type='float' "
      "office:value='1'/></table:tracked-changes>"
      "<table:table "
      "table:name='Foaie'><table:shapes><draw:frame><text:p>desen</text:p></draw:frame></table:shapes>"
      "<table:table-column/><table:table-column table:default-cell-style-name='cod' "
      "table:number-columns-repeated='9'/>"
      "<table:table-header-rows><table:table-row>"
      "<table:table-cell "
      "office:value-type='string'><office:annotation><text:p>nota</text:p></office:annotation>"
      "<text:p>  Val.\n <text:span>de<text:s "
      "text:c='2'/>azi</text:span></text:p><text:p>lei<text:line-break/>x </text:p>"
      "</table:table-cell><table:table-cell table:number-columns-repeated='1022'/></table:table-row>"
      "</table:table-header-rows><table:table-row table:number-rows-repeated='2'>"
      "<table:table-cell office:value-type='currency' office:value='-1.5'><text:p>1,50 "
      "lei</text:p></table:table-cell>"
      "<table:table-cell office:value-type='float' office:value='1012100' table:number-columns-repeated='2'/>"
      "<table:table-cell table:style-name='alt' office:value-type='float' "
      "office:value='7'/></table:table-row>"
      "<table:table-row "
      "table:number-rows-repeated='1000'><table:table-cell/></table:table-row><table:table-row>"
      "<table:table-cell office:value-type='date' office:date-value='2026-03-19T06:00:00'/>"
      "<table:covered-table-cell office:value-type='time' office:time-value='PT36H00M00.000S'/>"
      "<table:table-cell office:value-type='boolean' office:boolean-value='true'/>"
      "<table:table-cell office:value-type='string' office:string-value='' calcext:value-type='error'>"
      "<text:p>#N/A</text:p></table:table-cell>"
      "<table:table-cell office:value-type='string' "
      "office:string-value='val'><text:p>arata</text:p></table:table-cell>"
      "</table:table-row><table:table-row table:number-rows-repeated='1047572'/></table:table>",
      "<number:number-style style:name='n8'><number:number number:decimal-places='0' "
      "number:min-integer-digits='8'/>"
      "</number:number-style><style:style style:name='baza' style:data-style-name='n8'/>"
      "<style:style style:name='cod' style:parent-style-name='baza'/><style:style style:name='alt'/>"));
  EXPECT_EQ(cells.Row(0), "tVal. de  azi\nlei\nx ");
  EXPECT_EQ(cells.Row(1), "n-1.5|n1012100/8|n1012100/8|n7");
  EXPECT_EQ(cells.Row(2), cells.Row(1));
  EXPECT_EQ(cells.Row(1003), "d46100.25|d1.5|b1|e#N/A|tval");
  EXPECT_EQ(cells.cells.size(), 14u);
}

TEST(Ods, KnowsHiddenSheetsAndRefusesTheRest) {
  const auto book = OpenPackage(std::make_unique<Parts>(OdsParts(
      "<table:table table:name='A' table:style-name='ta'/><table:table table:name='B'/>",
      "<style:style style:name='ta'><style:table-properties table:display='false'/></style:style>")));
  ASSERT_EQ(book->sheets().size(), 2u);
  EXPECT_TRUE(book->sheets()[0].hidden);
  EXPECT_FALSE(book->sheets()[1].hidden);

  const std::string cell =
      "<table:table-cell office:value-type='float' office:value='{}' table:number-columns-repeated='{}'/>";
  const auto table = [&](const char* value, int columns, int rows) {
    return Refusal(
        OdsParts(fmt::format("<table:table table:name='Foaie'><table:table-row "
                             "table:number-rows-repeated='{}'>{}</table:table-row></table:table>",
                             rows, fmt::format(fmt::runtime(cell), value, columns))));
  };
  EXPECT_THAT(table("x", 1, 1).second, HasSubstr("randul 1, coloana 1: valoare gresita"));
  EXPECT_THAT(table("1", 20000, 1).second, HasSubstr("in afara foii"));
  EXPECT_THAT(table("1", 16000, 1000000), Pair(Reason::kUnsupported, HasSubstr("prea multe")));
  Parts::Map parts = OdsParts("");
  parts["META-INF/manifest.xml"] = "<manifest:encryption-data/>";
  EXPECT_EQ(Refusal(parts).first, Reason::kEncrypted);
  parts["mimetype"] = "application/vnd.oasis.opendocument.text";
  EXPECT_EQ(Refusal(parts).first, Reason::kNotAWorksheet);
}

TEST(OfficeArchive, RefusesBombsCutsAndOtherArchivesByName) {
  const auto refusal = [](const std::string& content) {
    return RefusalOf([&] { return OpenWorkbookContent(content, "foi.xlsx"); });
  };
  Parts::Map parts = XlsxParts("<row><c><v>1</v></c></row>");
  const std::string whole = Zip(parts);
  CellMap cells;
  OpenWorkbookContent(whole, "redenumit.xls")->Read("Foaie", cells);
  EXPECT_EQ(cells.at(0, 0), "n1") << "the content decides, not the name";
  EXPECT_THAT(
      refusal(whole.substr(0, whole.size() / 2)),
      Pair(Reason::kDamaged, HasSubstr("Fisierul foi.xlsx: arhiva zip a registrului este trunchiata")));
  EXPECT_EQ(refusal(Zip({{"citeste.txt", "text"}})).first, Reason::kNotAWorksheet);
  EXPECT_THAT(refusal("<html><table>"), Pair(Reason::kNotAWorksheet, HasSubstr("HTML")));
  for (std::size_t at = 0; at < whole.size(); at += 13) {  // a changed byte is refused or does no harm
    std::string changed = whole;
    changed[at] = static_cast<char>(changed[at] ^ 0x55);
    try {
      CellMap any;
      OpenWorkbookContent(changed, "foi.xlsx")->Read("Foaie", any);
    } catch (const SheetError& error) {
      EXPECT_THAT(error.what(), HasSubstr("foi.xlsx"));
    }
  }

  parts["xl/worksheets/a.xml"] =
      "<worksheet><sheetData>" + std::string(80 << 20, ' ') + "</sheetData></worksheet>";
  EXPECT_THAT(refusal(Zip(parts)), Pair(Reason::kUnsupported, HasSubstr("bomba zip")));
}

// Rows that each hold one cell far to the right would take memory without end.
TEST(OfficeTable, LeavesOutFarColumnsAndRefusesTooManyPlaces) {
  std::string rows;
  for (int i = 0; i < 66000; ++i) rows += "<row><c r='IV" + std::to_string(i + 1) + "'><v>1</v></c></row>";
  const auto wide = OpenPackage(std::make_unique<Parts>(XlsxParts(rows), 1 << 16));
  EXPECT_THROW(ReadSheetTable(*wide, "Foaie", {}), SheetError);
  const auto far = OpenPackage(
      std::make_unique<Parts>(XlsxParts("<row><c r='A1'><v>1</v></c><c r='XFD1'><v>2</v></c></row>")));
  EXPECT_EQ(ReadSheetTable(*far, "Foaie", {}).columns().size(), 1u);
}

}  // namespace
}  // namespace platform::spreadsheet
