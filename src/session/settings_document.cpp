#include "session/settings_document.h"

#include "platform/encoding.h"

namespace session {

using platform::EqualsNoCase;

namespace {

constexpr int kUtf8 = 65001;
constexpr int kUtf16 = 1200;
constexpr int kUtf16BigEndian = 1201;

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool IsNameChar(char c, bool first) {
  const bool letter =
      (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
  return letter || (!first && ((c >= '0' && c <= '9') || c == '-' || c == '.'));
}

bool IsName(std::string_view name) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (!IsNameChar(name[i], i == 0)) return false;
  }
  return !name.empty();
}

std::string SwapBytes(std::string bytes) {
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  return bytes;
}

/// Value of encoding="…" in the declaration, empty where there is none.
std::string_view DeclaredEncoding(std::string_view bytes) {
  if (!bytes.starts_with("<?xml")) return {};
  const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
  std::size_t at = declaration.find("encoding");
  if (at == std::string_view::npos) return {};
  at = declaration.find_first_of("\"'", at);
  if (at == std::string_view::npos) return {};
  const std::size_t end = declaration.find(declaration[at], at + 1);
  return declaration.substr(at + 1, end == std::string_view::npos ? end : end - at - 1);
}

/// Windows page of a declared encoding; 0 for one that is not known.
int PageOfName(std::string_view name) {
  if (name.empty() || EqualsNoCase(name, "utf-8") || EqualsNoCase(name, "utf8") ||
      EqualsNoCase(name, "us-ascii")) {
    return kUtf8;
  }
  const auto number = [](std::string_view text) {
    int value = 0;
    for (const char c : text) value = c >= '0' && c <= '9' && value < 10000 ? value * 10 + (c - '0') : 10000;
    return text.empty() ? 0 : value;
  };
  if (name.size() > 8 && EqualsNoCase(name.substr(0, 8), "windows-")) {
    const int page = number(name.substr(8));
    return (page >= 1250 && page <= 1258) || page == 874 ? page : 0;
  }
  if (name.size() > 9 && EqualsNoCase(name.substr(0, 9), "iso-8859-")) {
    const int part = number(name.substr(9));
    return part >= 1 && part <= 16 ? 28590 + part : 0;
  }
  return 0;
}

const char* ReasonOf(pugi::xml_parse_status status) {
  switch (status) {
    case pugi::status_unrecognized_tag:
      return "element necunoscut";
    case pugi::status_bad_pi:
      return "instructiune de prelucrare gresita";
    case pugi::status_bad_comment:
      return "comentariu neinchis";
    case pugi::status_bad_cdata:
      return "sectiune CDATA neinchisa";
    case pugi::status_bad_doctype:
      return "declaratie DOCTYPE gresita";
    case pugi::status_bad_pcdata:
      return "text gresit";
    case pugi::status_bad_start_element:
      return "inceput de element gresit";
    case pugi::status_bad_attribute:
      return "atribut gresit";
    case pugi::status_bad_end_element:
      return "sfarsit de element gresit";
    case pugi::status_end_element_mismatch:
      return "sfarsitul elementului nu corespunde inceputului";
    case pugi::status_no_document_element:
      return "fisierul nu are element radacina";
    default:
      return "continutul nu poate fi citit";
  }
}

/// Past the comment, CDATA section, instruction or declaration that begins at `at` with "<!" or "<?".
std::size_t SkipMarkup(std::string_view bytes, std::size_t at) {
  const auto behind = [&](std::string_view end, std::size_t opening) {
    const std::size_t found = bytes.find(end, at + opening);
    return found == std::string_view::npos ? bytes.size() : found + end.size();
  };
  if (bytes.substr(at, 4) == "<!--") return behind("-->", 4);
  if (bytes.substr(at, 9) == "<![CDATA[") return behind("]]>", 9);
  if (bytes.substr(at, 2) == "<?") return behind("?>", 2);
  return behind(">", 2);
}

/// Past the ">" of the tag whose "<" or name is at `at`.
std::size_t TagEnd(std::string_view bytes, std::size_t at) {
  char quote = 0;
  for (; at < bytes.size(); ++at) {
    if (quote != 0) {
      if (bytes[at] == quote) quote = 0;
    } else if (bytes[at] == '"' || bytes[at] == '\'') {
      quote = bytes[at];
    } else if (bytes[at] == '>') {
      return at + 1;
    }
  }
  return at;
}

bool SelfClosing(std::string_view bytes, std::size_t tag_end) {
  return tag_end >= 2 && bytes[tag_end - 2] == '/';
}

/// The "<" of the end tag that closes the element whose start tag ends at `at`.
std::size_t ContentEnd(std::string_view bytes, std::size_t at) {
  for (int depth = 1;;) {
    at = bytes.find('<', at);
    if (at == std::string_view::npos) return bytes.size();
    if (bytes.substr(at, 2) == "</") {
      if (--depth == 0) return at;
      at = TagEnd(bytes, at);
    } else if (bytes.substr(at, 2) == "<!" || bytes.substr(at, 2) == "<?") {
      at = SkipMarkup(bytes, at);
    } else {
      at = TagEnd(bytes, at);
      if (!SelfClosing(bytes, at)) ++depth;
    }
  }
}

bool IsReference(std::string_view text) {
  for (const std::string_view known : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"}) {
    if (text.starts_with(known)) return true;
  }
  if (!text.starts_with("&#")) return false;
  const bool hex = text.substr(2, 1) == "x";
  const std::size_t begin = hex ? 3 : 2;
  const std::size_t end = text.find_first_not_of(hex ? "0123456789abcdefABCDEF" : "0123456789", begin);
  return end != std::string_view::npos && end > begin && text[end] == ';';
}

/// An "&" outside comments and CDATA that begins no known reference; npos where there is none.
std::size_t StrayAmpersand(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const std::string_view rest = bytes.substr(at);
    if (rest.starts_with("<!--") || rest.starts_with("<![CDATA[") || rest.starts_with("<?")) {
      at = SkipMarkup(bytes, at) - 1;
    } else if (bytes[at] == '&' && !IsReference(rest)) {
      return at;
    }
  }
  return std::string_view::npos;
}

std::string AllText(const pugi::xml_node& node) {
  std::string text;
  for (const pugi::xml_node& child : node.children()) {
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) text += child.value();
    if (child.type() == pugi::node_element) text += AllText(child);
  }
  return text;
}

}  // namespace

/// Where an element stands in the bytes.
struct SettingsDocument::Span {
  std::size_t name = 0;           ///< its name in the start tag
  std::size_t content_begin = 0;  ///< behind the start tag's ">"
  std::size_t content_end = 0;    ///< the "<" of the end tag; content_begin where the tag closes itself
  bool self_closing = false;
};

SettingsDocument::SettingsDocument(std::string content) {
  DetectEncoding(std::move(content));
  Parse();
}

void SettingsDocument::DetectEncoding(std::string content) {
  const auto take_mark = [&](std::string_view mark) {
    if (!content.starts_with(mark)) return false;
    mark_ = mark;
    content.erase(0, mark.size());
    return true;
  };
  if (take_mark("\xFF\xFE") || content.starts_with(std::string_view("<\0", 2))) {
    code_page_ = kUtf16;
  } else if (take_mark("\xFE\xFF") || content.starts_with(std::string_view("\0<", 2))) {
    code_page_ = kUtf16BigEndian;
  } else {
    const bool marked = take_mark("\xEF\xBB\xBF");
    code_page_ = marked ? kUtf8 : PageOfName(DeclaredEncoding(content));
    if (code_page_ == 0) {
      throw SettingsError("codificare necunoscuta : " + std::string(DeclaredEncoding(content)));
    }
    bytes_ = std::move(content);
    if (code_page_ == kUtf8 && !platform::IsValidUtf8(bytes_)) {
      throw SettingsError("contine caractere care nu sunt UTF-8");
    }
    return;
  }
  if (content.size() % 2 != 0) throw SettingsError("fisierul UTF-16 se termina in mijlocul unui caracter");
  if (code_page_ == kUtf16BigEndian) content = SwapBytes(std::move(content));
  bytes_ = platform::FromCodePage(content, kUtf16);
  if (platform::ToCodePage(bytes_, kUtf16) != content)
    throw SettingsError("contine caractere care nu sunt UTF-16");
}

void SettingsDocument::Parse() {
  if (bytes_.find('\0') != std::string::npos) {
    throw SettingsError("contine un caracter nul (" + Place(bytes_.find('\0')) + ")");
  }
  // Parsed byte for byte whatever the encoding: markup is ASCII in all of them, and offsets then hold.
  const pugi::xml_parse_result parsed = document_.load_buffer(
      bytes_.data(), bytes_.size(), pugi::parse_default & ~pugi::parse_escapes, pugi::encoding_utf8);
  if (!parsed) {
    throw SettingsError(std::string(ReasonOf(parsed.status)) + " (" +
                        Place(static_cast<std::size_t>(parsed.offset)) + ")");
  }
  const pugi::xml_node root = document_.document_element();
  if (const pugi::xml_node second = root.next_sibling(); second && second.type() == pugi::node_element) {
    throw SettingsError("fisierul are mai multe elemente radacina (" +
                        Place(static_cast<std::size_t>(second.offset_debug())) + ")");
  }
  if (const std::size_t at = StrayAmpersand(bytes_); at != std::string_view::npos) {
    throw SettingsError("semnul & nu incepe o entitate cunoscuta (" + Place(at) + ")");
  }
}

std::string SettingsDocument::Place(std::size_t offset) const {
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t i = 0; i < offset && i < bytes_.size(); ++i) {
    ++column;
    if (bytes_[i] == '\n') {
      ++line;
      column = 1;
    }
  }
  return "linia " + std::to_string(line) + ", coloana " + std::to_string(column);
}

pugi::xml_node SettingsDocument::Select(const std::string& xpath) const {
  try {
    return document_.select_node(xpath.c_str()).node();
  } catch (const pugi::xpath_exception&) {
    return {};
  }
}

std::string SettingsDocument::Decoded(std::string_view bytes) const {
  return code_page_ == kUtf8 || code_page_ == kUtf16 || code_page_ == kUtf16BigEndian
             ? std::string(bytes)
             : platform::FromCodePage(bytes, code_page_);
}

std::optional<std::string> SettingsDocument::Text(const std::string& xpath) const {
  const pugi::xml_node node = Select(xpath);
  if (node.empty()) return std::nullopt;
  const Span span = Locate(xpath);
  // The references in the value stand for characters of any page, so it is decoded first and parsed then.
  const std::string element =
      "<v>" +
      Decoded(std::string_view(bytes_).substr(span.content_begin, span.content_end - span.content_begin)) +
      "</v>";
  pugi::xml_document value;
  if (!value.load_buffer(element.data(), element.size(), pugi::parse_default | pugi::parse_ws_pcdata,
                         pugi::encoding_utf8)) {
    return std::nullopt;
  }
  const std::string text = AllText(value.document_element());
  std::string_view trimmed = text;
  while (!trimmed.empty() && IsSpace(trimmed.front())) trimmed.remove_prefix(1);
  while (!trimmed.empty() && IsSpace(trimmed.back())) trimmed.remove_suffix(1);
  return std::string(trimmed);
}

SettingsDocument::Span SettingsDocument::Locate(const std::string& xpath) const {
  const pugi::xml_node node = Select(xpath);
  if (node.type() != pugi::node_element) throw SettingsError("elementul nu exista");
  Span span;
  span.name = static_cast<std::size_t>(node.offset_debug());
  span.content_begin = TagEnd(bytes_, span.name);
  span.self_closing = SelfClosing(bytes_, span.content_begin);
  span.content_end = span.self_closing ? span.content_begin : ContentEnd(bytes_, span.content_begin);
  return span;
}

std::string SettingsDocument::Encoded(std::string_view value) const {
  std::string text;
  for (const char c : value) {
    switch (c) {
      case '&':
        text += "&amp;";
        break;
      case '<':
        text += "&lt;";
        break;
      case '>':
        text += "&gt;";
        break;
      case '\r':
        text += "&#13;";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n') {
          throw SettingsError("valoarea contine caractere de control");
        }
        text += c;
    }
  }
  if (!platform::IsValidUtf8(text)) throw SettingsError("valoarea nu este un text UTF-8");
  if (Decoded("\xC4\x83") == "\xC4\x83") return text;
  // What the file's page does not hold goes in as a numeric reference.
  std::string bytes;
  for (std::string_view left = text; !left.empty();) {
    const std::string_view letter = platform::Utf8Prefix(left, 1);
    left.remove_prefix(letter.size());
    const std::string encoded = platform::ToCodePage(letter, code_page_);
    if (encoded == "?" && letter != "?") {
      const std::string utf16 = platform::ToCodePage(letter, kUtf16);
      const auto unit = [&](std::size_t i) {
        return static_cast<unsigned>(static_cast<unsigned char>(utf16[i])) |
               static_cast<unsigned>(static_cast<unsigned char>(utf16[i + 1])) << 8;
      };
      const unsigned code =
          utf16.size() == 4 ? 0x10000 + ((unit(0) - 0xD800) << 10) + (unit(2) - 0xDC00) : unit(0);
      bytes += "&#" + std::to_string(code) + ";";
    } else {
      bytes += encoded;
    }
  }
  return bytes;
}

void SettingsDocument::SetText(const std::string& xpath, std::string_view value) {
  const Span span = Locate(xpath);
  const std::string text = Encoded(value);
  if (!span.self_closing) {
    bytes_.replace(span.content_begin, span.content_end - span.content_begin, text);
  } else if (!text.empty()) {
    OpenUp(span, text);
  }
}

void SettingsDocument::OpenUp(const Span& span, const std::string& content) {
  std::size_t slash = span.content_begin - 2;
  while (IsSpace(bytes_[slash - 1])) --slash;
  const std::size_t name_end = bytes_.find_first_of(" \t\r\n/>", span.name);
  const std::string name = bytes_.substr(span.name, name_end - span.name);
  bytes_.replace(slash, span.content_begin - slash, ">" + content + "</" + name + ">");
}

void SettingsDocument::AppendElement(const std::string& xpath, std::string_view name, std::string_view value,
                                     std::string_view space_behind) {
  if (!IsName(name)) throw SettingsError("numele nu este valid");
  const Span span = Locate(xpath);
  const std::string tag = Encoded(name);
  const std::string element = "<" + tag + ">" + Encoded(value) + "</" + tag + ">" + std::string(space_behind);
  if (span.self_closing) {
    OpenUp(span, element);
  } else {
    bytes_.insert(span.content_end, element);
  }
}

std::string SettingsDocument::content() const {
  if (code_page_ == kUtf16) return mark_ + platform::ToCodePage(bytes_, kUtf16);
  if (code_page_ == kUtf16BigEndian) return mark_ + SwapBytes(platform::ToCodePage(bytes_, kUtf16));
  return mark_ + bytes_;
}

}  // namespace session
