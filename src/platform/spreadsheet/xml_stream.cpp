#include "platform/spreadsheet/xml_stream.h"

#include "platform/spreadsheet/sheet.h"
#include "platform/spreadsheet/xml_scanner.h"

namespace platform::spreadsheet {

void ReadXml(Package& package, std::string_view part, XmlHandler& handler) {
  try {
    XmlScanner scanner(handler);
    package.Read(part, [&](std::string_view piece) {
      scanner.Feed(piece);
      return !handler.Done();
    });
    if (!handler.Done()) scanner.Finish();
  } catch (const SheetError& error) {
    const std::string text = error.what();
    if (!text.starts_with("XML ")) throw;
    throw SheetError(error.reason(), fmt::format("partea {}: {}", part, text));
  }
}

}  // namespace platform::spreadsheet
