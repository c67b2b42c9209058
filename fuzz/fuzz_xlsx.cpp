// Sheet, shared texts and styles of an .xlsx file, a byte 255 between them; or a whole archive.
#include "office_parts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Parts fixed;
  fixed.parts["xl/_rels/workbook.xml.rels"] =
      "<Relationships><Relationship Id='a' Type='/worksheet' Target='a.xml'/><Relationship Id='b' "
      "Type='/sharedStrings' Target='b.xml'/><Relationship Id='c' Type='/styles' "
      "Target='c.xml'/></Relationships>";
  fixed.parts["xl/workbook.xml"] = "<workbook><sheets><sheet name='a' r:id='a'/></sheets></workbook>";
  fuzz::OpenAny({reinterpret_cast<const char*>(data), size}, std::move(fixed),
                {"xl/a.xml", "xl/b.xml", "xl/c.xml"});
  return 0;
}
