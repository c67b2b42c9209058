#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/xml_stream.h"

namespace platform::spreadsheet {

/// Parses UTF-8 XML that comes in pieces. Sheets are some fifty to two hundred megabytes of very short
/// elements, which a general parser takes several times as long for. Knows what office files have: elements,
/// attributes, character and the five named references, CDATA, comments, instructions. Throws SheetError
/// (kDamaged) naming the byte where the text is not well-formed, and for a document type.
class XmlScanner {
 public:
  explicit XmlScanner(XmlHandler& handler) : handler_(&handler) {}
  void Feed(const std::string& piece);
  /// Checks that the text has not ended too early.
  void Finish();

 private:
  [[noreturn]] void Fail(const char* what) const;
  void Start();
  std::size_t CheckCharacters(std::string_view text, bool last);
  std::size_t Scan(std::string_view text);
  const char* TakeText(const char* at, const char* end);
  const char* TakeMarkup(const char* at, const char* end);
  const char* TakeElement(const char* at, const char* end);
  const char* TakeAttribute(const char* at, const char* end);
  const char* TakeEndTag(const char* at, const char* end);
  /// Behind the closing mark; null where it has not come yet.
  const char* Past(const char* at, const char* end, std::string_view mark) const;
  std::string_view Resolve(std::string_view text, std::string& out) const;

  XmlHandler* handler_;
  std::string left_;             ///< what the pieces so far end in and cut
  std::uint64_t consumed_ = 0;   ///< bytes taken
  const char* base_ = nullptr;   ///< of the text being scanned, behind which stands a NUL
  const char* place_ = nullptr;  ///< in it
  std::vector<XmlAttribute> attributes_;
  std::deque<std::string> values_;  ///< of attributes with references
  std::string text_;
  std::string names_;  ///< of the open elements, one behind another
  std::vector<std::size_t> open_;
  bool started_ = false, rooted_ = false;
};

/// Appends a character below U+110000.
void AppendUtf8(std::string& out, std::uint32_t code);

}  // namespace platform::spreadsheet
