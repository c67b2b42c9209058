#include "platform/spreadsheet/xml_scanner.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "platform/encoding.h"
#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {
namespace {

constexpr std::size_t kLongestMarkup = 4u << 20;  // bytes; it is scanned anew with each piece until it ends
constexpr std::size_t kLongestReference = 12;
constexpr std::size_t kDeepest = 256;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool EndsName(char c) { return IsBlank(c) || c == '=' || c == '/' || c == '>' || c == '<' || c == '"'; }

const char* SkipBlanks(const char* at, const char* end) {
  while (at < end && IsBlank(*at)) ++at;
  return at;
}

const char* Find(const char* at, const char* end, char c) {
  const void* const found = std::memchr(at, c, static_cast<std::size_t>(end - at));
  return found == nullptr ? end : static_cast<const char*>(found);
}

std::string_view Between(const char* from, const char* to) {
  return {from, static_cast<std::size_t>(to - from)};
}

const char* SkipAscii(const char* at, const char* end) {
  for (std::uint64_t word; end - at >= 8; at += 8) {
    std::memcpy(&word, at, 8);
    if ((word & 0x8080808080808080u) != 0) break;
  }
  while (at < end && static_cast<unsigned char>(*at) < 0x80) ++at;
  return at;
}

}  // namespace

void AppendUtf8(std::string& out, std::uint32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
    return;
  }
  const int trail = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr unsigned char kLeads[] = {0, 0xC0, 0xE0, 0xF0};
  out += static_cast<char>(kLeads[trail] | (code >> (6 * trail)));
  for (int i = trail - 1; i >= 0; --i) out += static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3F));
}

void XmlScanner::Fail(const char* what) const {
  const std::uint64_t offset =
      consumed_ + (place_ == nullptr ? 0 : static_cast<std::uint64_t>(place_ - buffer_.data()));
  throw SheetError(SheetError::Reason::kDamaged, fmt::format("XML gresit la octetul {}: {}", offset, what));
}

void XmlScanner::Feed(std::string_view piece) {
  buffer_ += piece;
  if (!started_) {
    if (buffer_.size() < 3) return;
    started_ = true;
    if (buffer_.starts_with("\xFF\xFE") || buffer_.starts_with("\xFE\xFF")) Fail("nu este scris in UTF-8");
    if (buffer_.starts_with("\xEF\xBB\xBF")) {
      buffer_.erase(0, 3);
      consumed_ = 3;
    }
  }
  CheckCharacters(false);
  Scan();
}

void XmlScanner::Finish() {
  place_ = nullptr;
  CheckCharacters(true);
  if (!buffer_.empty() || !open_.empty() || !rooted_) Fail("se termina prea devreme");
}

// A character that the piece cuts waits for the next one.
void XmlScanner::CheckCharacters(bool last) {
  const char* const end = buffer_.data() + buffer_.size();
  const char* at = SkipAscii(buffer_.data() + checked_, end);
  while (at < end) {
    const auto lead = static_cast<unsigned char>(*at);
    const std::ptrdiff_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (end - at < length && !last) break;
    const char* const next = at + std::min(length, end - at);
    if (!IsValidUtf8(Between(at, next))) Fail("octeti care nu sunt UTF-8");
    at = SkipAscii(next, end);
  }
  checked_ = static_cast<std::size_t>(at - buffer_.data());
}

void XmlScanner::Scan() {
  const char* at = buffer_.data();
  const char* const end = at + checked_;
  while (at < end) {
    place_ = at;
    const char* const markup = Find(at, end, '<');
    const char* text_end = markup;
    if (markup == end) {
      // A reference at the end may be cut.
      const std::size_t tail = std::min<std::size_t>(kLongestReference, static_cast<std::size_t>(end - at));
      const std::string_view last = Between(end - tail, end);
      const std::size_t mark = last.rfind('&');
      if (mark != std::string_view::npos && last.find(';', mark) == std::string_view::npos) {
        text_end = end - tail + mark;
      }
    }
    if (text_end > at) EmitText(Between(at, text_end));
    at = text_end;
    if (markup == end) break;
    place_ = at;
    const char* const next = TakeMarkup(at, end);
    if (next == nullptr) {
      if (static_cast<std::size_t>(end - at) > kLongestMarkup) Fail("element prea lung");
      break;
    }
    at = next;
  }
  const auto done = static_cast<std::size_t>(at - buffer_.data());
  buffer_.erase(0, done);
  checked_ -= done;
  consumed_ += done;
  place_ = nullptr;
}

void XmlScanner::EmitText(std::string_view text) {
  if (!open_.empty()) {
    handler_->OnText(Resolve(text, text_));
  } else if (!std::all_of(text.begin(), text.end(), IsBlank)) {
    Fail("text in afara elementelor");
  }
}

const char* XmlScanner::Past(const char* at, const char* end, std::string_view mark) const {
  const std::string_view rest = Between(at, end);
  const std::size_t found = rest.find(mark);
  return found == std::string_view::npos ? nullptr : at + found + mark.size();
}

const char* XmlScanner::TakeMarkup(const char* at, const char* end) {
  if (end - at < 2) return nullptr;
  if (at[1] == '/') return TakeEndTag(at, end);
  if (at[1] == '?') return Past(at + 2, end, "?>");
  if (at[1] != '!') return TakeElement(at, end);
  constexpr std::string_view kComment = "<!--", kData = "<![CDATA[";
  const std::string_view rest = Between(at, end);
  if (rest.starts_with(kComment)) return Past(at + kComment.size(), end, "-->");
  if (rest.starts_with(kData)) {
    const char* const next = Past(at + kData.size(), end, "]]>");
    if (next != nullptr && !open_.empty()) handler_->OnText(Between(at + kData.size(), next - 3));
    return next;
  }
  if (rest.size() < kData.size() && (kComment.starts_with(rest) || kData.starts_with(rest))) return nullptr;
  Fail("declaratie (DOCTYPE) care nu are ce cauta in fisier");
}

const char* XmlScanner::TakeEndTag(const char* at, const char* end) {
  const char* const close = Find(at, end, '>');
  if (close == end) return nullptr;
  const char* name_end = close;
  while (IsBlank(name_end[-1])) --name_end;
  const std::string_view name = Between(at + 2, name_end);
  if (open_.empty() || std::string_view(names_).substr(open_.back()) != name) Fail("element inchis gresit");
  handler_->OnEnd(name);
  names_.resize(open_.back());
  open_.pop_back();
  return close + 1;
}

const char* XmlScanner::TakeElement(const char* at, const char* end) {
  const char* here = at + 1;
  while (here < end && !EndsName(*here)) ++here;
  if (here == end) return nullptr;
  const std::string_view name = Between(at + 1, here);
  if (name.empty()) Fail("element fara nume");
  attributes_.clear();
  values_.clear();
  for (;;) {
    const char* const start = SkipBlanks(here, end);
    if (start == end) return nullptr;
    if (*start == '>' || *start == '/') {
      here = start;
      break;
    }
    if (start == here) Fail("atribute lipite");
    here = start;
    while (here < end && !EndsName(*here)) ++here;
    const std::string_view attribute = Between(start, here);
    here = SkipBlanks(here, end);
    if (here == end) return nullptr;
    if (*here != '=' || attribute.empty()) Fail("atribut fara valoare");
    here = SkipBlanks(here + 1, end);
    if (here == end) return nullptr;
    const char quote = *here++;
    if (quote != '"' && quote != '\'') Fail("atribut fara ghilimele");
    const char* const close = Find(here, end, quote);
    if (close == end) return nullptr;
    std::string_view value = Between(here, close);
    if (Find(here, close, '<') != close) Fail("atribut neinchis");
    if (Find(here, close, '&') != close) value = Resolve(value, values_.emplace_back());
    attributes_.push_back({attribute, value});
    here = close + 1;
  }
  const bool empty = *here == '/';
  if (empty) {
    if (++here == end) return nullptr;
    if (*here != '>') Fail("element neinchis");
  }
  if (open_.empty() && rooted_) Fail("al doilea element principal");
  if (open_.size() >= kDeepest) Fail("elemente prea adanci");
  rooted_ = true;
  handler_->OnStart(name, XmlAttributes(attributes_));
  if (empty) {
    handler_->OnEnd(name);
  } else {
    open_.push_back(names_.size());
    names_ += name;
  }
  return here + 1;
}

std::string_view XmlScanner::Resolve(std::string_view text, std::string& out) const {
  std::size_t mark = text.find('&');
  if (mark == std::string_view::npos) return text;
  out.assign(text.substr(0, mark));
  while (mark < text.size()) {
    const std::size_t close = text.find(';', mark);
    if (close == std::string_view::npos) Fail("referinta neincheiata");
    const std::string_view name = text.substr(mark + 1, close - mark - 1);
    if (name.starts_with('#')) {
      const bool hex = name.starts_with("#x");
      std::uint32_t code = 0;
      const char* const last = name.data() + name.size();
      const auto parsed = std::from_chars(name.data() + (hex ? 2 : 1), last, code, hex ? 16 : 10);
      if (parsed.ec != std::errc() || parsed.ptr != last || code == 0 || code > 0x10FFFF ||
          (code >= 0xD800 && code < 0xE000)) {
        Fail("referinta la un caracter care nu exista");
      }
      AppendUtf8(out, code);
    } else if (name == "amp") {
      out += '&';
    } else if (name == "lt") {
      out += '<';
    } else if (name == "gt") {
      out += '>';
    } else if (name == "quot") {
      out += '"';
    } else if (name == "apos") {
      out += '\'';
    } else {
      Fail("referinta necunoscuta");
    }
    mark = std::min(text.find('&', close), text.size());
    out += text.substr(close + 1, mark - close - 1);
  }
  return out;
}

}  // namespace platform::spreadsheet
