// content.xml and styles.xml of an .ods file, a byte 255 between them; or a whole archive.
#include "office_parts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Parts fixed;
  fixed.parts["mimetype"] = "application/vnd.oasis.opendocument.spreadsheet";
  fuzz::OpenAny({reinterpret_cast<const char*>(data), size}, std::move(fixed), {"content.xml", "styles.xml"});
  return 0;
}
