// The XML of office files: however the text is cut into pieces, the scanner says the same or refuses it. Of
// two faults the one that is named may differ: characters are checked ahead, a piece at a time.
#include <fmt/format.h>

#include <cstdlib>
#include <optional>

#include "platform/spreadsheet/sheet.h"
#include "platform/spreadsheet/xml_scanner.h"

namespace {

using namespace platform::spreadsheet;

class Log : public XmlHandler {
 public:
  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    text += fmt::format("\1{}", name);
    for (const XmlAttribute& attribute : attributes)
      text += fmt::format("\2{}\3{}", attribute.name, attribute.value);
    text += '\4';
  }
  void OnEnd(std::string_view name) override { text += fmt::format("\5{}", name); }
  void OnText(std::string_view piece) override { text += piece; }
  std::string text;
};

std::optional<std::string> Scanned(std::string_view text, std::size_t piece) {
  Log log;
  try {
    XmlScanner scanner(log);
    for (std::size_t at = 0; at < text.size(); at += piece) scanner.Feed(std::string(text.substr(at, piece)));
    scanner.Finish();
  } catch (const SheetError&) {
    return std::nullopt;
  }
  return log.text;
}

}  // namespace

// The first byte says how long the pieces are.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  if (Scanned(text, data[0] + 1u) != Scanned(text, text.size())) std::abort();
  return 0;
}
