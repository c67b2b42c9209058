// The scanner takes most of a piece where it stands and joins only what a piece cuts: wherever that happens,
// it has to say the same.
#include "platform/spreadsheet/xml_scanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/spreadsheet/sheet.h"

namespace {

using namespace platform::spreadsheet;

// What was said, texts put together however they were cut.
class Log : public XmlHandler {
 public:
  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    log += fmt::format("<{}", name);
    for (const XmlAttribute& attribute : attributes)
      log += fmt::format(" {}={}", attribute.name, attribute.value);
    log += '>';
  }
  void OnEnd(std::string_view name) override { log += fmt::format("</{}>", name); }
  void OnText(std::string_view text) override { log += text; }
  std::string log;
};

std::string Scanned(const std::string& text, std::size_t piece) {
  Log log;
  try {
    XmlScanner scanner(log);
    for (std::size_t at = 0; at < text.size(); at += piece) scanner.Feed(text.substr(at, piece));
    scanner.Finish();
  } catch (const SheetError& error) {
    return std::string("! ") + error.what();
  }
  return log.log;
}

TEST(XmlScanner, SaysTheSameHoweverThePiecesAreCut) {
  const std::string text =
      "\xEF\xBB\xBF<?xml version='1.0'?>\n<!-- <a> --><a:r x = \"1>2'\" y='&lt;\"&#537;'>t&amp;ț😀 <b/>\n"
      "<![CDATA[<&]]></a:r >\n";
  const std::string whole = "<a:r x=1>2' y=<\"ș>t&ț😀 <b></b>\n<&</a:r>";
  for (std::size_t piece = 1; piece <= text.size(); ++piece) EXPECT_EQ(Scanned(text, piece), whole) << piece;

  // Longer than what is joined at once, with an element that spans several pieces.
  const std::string value(20000, 'v');
  std::string table = "<t>", expected = "<t>";
  for (int i = 0; i < 400; ++i) {
    table += fmt::format("<c n='{}'>ă{}</c>", i == 200 ? value : std::to_string(i), i);
    expected += fmt::format("<c n={}>ă{}</c>", i == 200 ? value : std::to_string(i), i);
  }
  for (const std::size_t piece : {1000u, 4096u, 4097u, 5000u, 9999u, 30000u}) {
    EXPECT_EQ(Scanned(table + "</t>", piece), expected + "</t>") << piece;
  }
}

TEST(XmlScanner, NamesTheSameFaultHoweverThePiecesAreCut) {
  for (const std::string& text :
       {std::string("<a><b>x</a></b>"), std::string("<a b='<'/>"), std::string("<a b='1'c='2'/>"),
        std::string("<a>\xC3x</a>"), std::string("<a>&nu;</a>"), std::string("<a>x\0y</a>", 11),
        std::string("<a b='x\0y'/>", 12), std::string("<a\0b/>", 6), std::string("<a/>x"),
        std::string("<!DOCTYPE a><a/>"), std::string("<a>"), std::string("<a></a"), std::string("<a>&am")}) {
    const std::string whole = Scanned(text, text.size());
    EXPECT_THAT(whole, testing::HasSubstr("! XML gresit la octetul")) << text;
    for (std::size_t piece = 1; piece < text.size(); ++piece) EXPECT_EQ(Scanned(text, piece), whole) << text;
  }
}

}  // namespace
