#pragma once

#include <map>
#include <string>

#include "platform/spreadsheet/package.h"
#include "platform/spreadsheet/sheet.h"

namespace test_support {

/// An office package without its archive; parts come in pieces as small as asked for.
class Parts : public platform::spreadsheet::Package {
 public:
  using Map = std::map<std::string, std::string>;
  explicit Parts(Map parts, std::size_t piece = 7) : parts_(std::move(parts)), piece_(piece) {}

  bool Has(std::string_view part) const override { return parts_.contains(std::string(part)); }
  void Read(std::string_view part, const std::function<bool(std::string_view)>& take) override {
    const auto found = parts_.find(std::string(part));
    if (found == parts_.end()) {
      throw platform::spreadsheet::SheetError(platform::spreadsheet::SheetError::Reason::kDamaged,
                                              "lipseste " + std::string(part));
    }
    for (std::size_t at = 0; at < found->second.size(); at += piece_) {
      if (!take(std::string_view(found->second).substr(at, piece_))) return;
    }
  }

 private:
  Map parts_;
  std::size_t piece_;
};

/// The parts of an .xlsx file of one sheet "Foaie" and a hidden one "Ascunsa", with the given content.
inline Parts::Map XlsxParts(const std::string& sheet_data, const std::string& strings = "",
                            const std::string& workbook_head = "") {
  const std::string type = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
  const auto relation = [&](int id, const std::string& kind, const std::string& target) {
    return fmt::format(R"(<Relationship Id="r{}" Type="{}{}" Target="{}"/>)", id, type, kind, target);
  };
  return {
      {"_rels/.rels",
       "<Relationships>" + relation(1, "officeDocument", "/xl/workbook.xml") + "</Relationships>"},
      {"xl/workbook.xml",
       "<x:workbook xmlns:x='x' xmlns:r='r'>" + workbook_head +
           "<x:sheets><x:sheet name='Foaie' sheetId='1' r:id='r1'/>"
           "<x:sheet name='Grafic' sheetId='2' r:id='r2'/>"
           "<x:sheet name='Ascunsă' sheetId='3' state='veryHidden' r:id='r3'/></x:sheets></x:workbook>"},
      {"xl/_rels/workbook.xml.rels",
       "<Relationships>" + relation(1, "worksheet", "worksheets/a.xml") + relation(2, "chartsheet", "c.xml") +
           relation(3, "worksheet", "../xl/worksheets/b.xml") + relation(4, "sharedStrings", "s.xml") +
           relation(5, "styles", "styles.xml") + "</Relationships>"},
      {"xl/styles.xml",
       R"(<styleSheet><numFmts><numFmt numFmtId="164" formatCode="dd\.mm\.yyyy"/>)"
       R"(<numFmt numFmtId="165" formatCode="00000000"/></numFmts><cellXfs><xf numFmtId="0"/><xf numFmtId="164"/>)"
       R"(<xf numFmtId="165"/><xf numFmtId="14"/></cellXfs><dxfs><dxf><numFmt numFmtId="164" formatCode="0"/></dxf></dxfs></styleSheet>)"},
      {"xl/s.xml", "<sst>" + strings + "</sst>"},
      {"xl/worksheets/a.xml",
       "<worksheet><sheetData>" + sheet_data + "</sheetData><c r='A1'><v>1</v></c></worksheet>"},
      {"xl/worksheets/b.xml",
       "<worksheet><sheetData><row r='1'><c r='A1'><v>9</v></c></row></sheetData></worksheet>"}};
}

/// The parts of an .ods file with what stands in its spreadsheet element.
inline Parts::Map OdsParts(const std::string& spreadsheet, const std::string& styles = "") {
  return {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"},
          {"content.xml",
           "<office:document-content xmlns:office='o' xmlns:table='t' xmlns:text='x' xmlns:style='s' "
           "xmlns:number='n' "
           "xmlns:draw='d' xmlns:calcext='c'><office:automatic-styles>" +
               styles + "</office:automatic-styles><office:body><office:spreadsheet>" + spreadsheet +
               "</office:spreadsheet></office:body></office:document-content>"}};
}

}  // namespace test_support
