#include "platform/spreadsheet/xml_stream.h"

#include <expat.h>

#include <exception>
#include <vector>

#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {
namespace {

// Exceptions of the handler wait until the parser, which is C, has returned.
class Parser {
 public:
  explicit Parser(XmlHandler& handler) : handler_(&handler), parser_(XML_ParserCreate(nullptr)) {
    if (!parser_) throw std::bad_alloc();
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), &Parser::Start, &Parser::End);
    XML_SetCharacterDataHandler(parser_.get(), &Parser::Text);
    XML_SetStartDoctypeDeclHandler(parser_.get(), &Parser::Doctype);
  }

  void Feed(std::string_view piece, bool last) {
    const XML_Status status =
        XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), last ? XML_TRUE : XML_FALSE);
    if (failure_) std::rethrow_exception(failure_);
    if (status != XML_STATUS_OK) {
      throw SheetError(SheetError::Reason::kDamaged,
                       fmt::format("XML gresit la linia {}: {}", XML_GetCurrentLineNumber(parser_.get()),
                                   XML_ErrorString(XML_GetErrorCode(parser_.get()))));
    }
  }

 private:
  struct Free {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  template <typename Call>
  void Guard(const Call& call) {
    if (failure_) return;
    try {
      call();
    } catch (...) {
      failure_ = std::current_exception();
      XML_StopParser(parser_.get(), XML_FALSE);
    }
  }

  static void Start(void* self, const char* name, const char** list) {
    Parser& parser = *static_cast<Parser*>(self);
    parser.attributes_.clear();
    for (; *list != nullptr; list += 2) parser.attributes_.push_back({list[0], list[1]});
    parser.Guard([&] { parser.handler_->OnStart(name, XmlAttributes(parser.attributes_)); });
  }
  static void End(void* self, const char* name) {
    Parser& parser = *static_cast<Parser*>(self);
    parser.Guard([&] { parser.handler_->OnEnd(name); });
  }
  static void Text(void* self, const char* text, int length) {
    Parser& parser = *static_cast<Parser*>(self);
    parser.Guard([&] { parser.handler_->OnText({text, static_cast<std::size_t>(length)}); });
  }
  static void Doctype(void* self, const char*, const char*, const char*, int) {
    static_cast<Parser*>(self)->Guard(
        [] { throw SheetError(SheetError::Reason::kDamaged, "XML cu DOCTYPE, care nu are ce cauta aici"); });
  }

  XmlHandler* handler_;
  std::unique_ptr<XML_ParserStruct, Free> parser_;
  std::vector<XmlAttribute> attributes_;
  std::exception_ptr failure_;
};

}  // namespace

void ReadXml(Package& package, std::string_view part, XmlHandler& handler) {
  try {
    Parser parser(handler);
    package.Read(part, [&](std::string_view piece) {
      parser.Feed(piece, false);
      return !handler.Done();
    });
    if (!handler.Done()) parser.Feed({}, true);
  } catch (const SheetError& error) {
    const std::string text = error.what();
    if (!text.starts_with("XML ")) throw;
    throw SheetError(error.reason(), fmt::format("partea {}: {}", part, text));
  }
}

}  // namespace platform::spreadsheet
