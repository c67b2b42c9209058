#include "platform/spreadsheet/xml_scanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "platform/encoding.h"
#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {
namespace {

constexpr std::size_t kLongestMarkup = 4u << 20;  // bytes; it is scanned anew with each piece until it ends
constexpr std::size_t kLongestReference = 12;
constexpr std::size_t kDeepest = 256;

// What a byte may be the end of. Every set has NUL, which stands behind the buffer and in no XML text, so
// that the loops below need not watch the end.
enum : std::uint8_t { kBlank = 1, kName = 2, kText = 4, kQuoted = 8, kApostrophed = 16 };

constexpr std::array<std::uint8_t, 256> kEnds = [] {
  std::array<std::uint8_t, 256> ends{};
  const auto mark = [&](std::string_view bytes, int sets) {
    for (const char c : bytes) ends[static_cast<unsigned char>(c)] |= static_cast<std::uint8_t>(sets);
  };
  mark(" \t\n\r", kBlank | kName);
  mark("=/>\"'", kName);
  mark("<", kName | kText | kQuoted | kApostrophed);
  mark("&", kText | kQuoted | kApostrophed);
  mark("\"", kQuoted);
  mark("'", kApostrophed);
  mark({"\0", 1}, kName | kText | kQuoted | kApostrophed);
  return ends;
}();

bool Is(char c, int sets) { return (kEnds[static_cast<unsigned char>(c)] & sets) != 0; }
bool IsBlank(char c) { return Is(c, kBlank); }

const char* SkipBlanks(const char* at) {
  while (IsBlank(*at)) ++at;
  return at;
}

// The first byte that ends what the set names, or what lies behind the buffer.
const char* EndOf(const char* at, int sets) {
  while (!Is(*at, sets)) ++at;
  return at;
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

// The end, or where a reference begins that the end may have cut.
const char* BeforeCutReference(const char* at, const char* end) {
  const std::size_t tail = std::min<std::size_t>(kLongestReference, static_cast<std::size_t>(end - at));
  const std::string_view last = Between(end - tail, end);
  const std::size_t mark = last.rfind('&');
  const bool cut = mark != std::string_view::npos && last.find(';', mark) == std::string_view::npos;
  return cut ? end - tail + mark : end;
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
      consumed_ + (place_ == nullptr ? 0 : static_cast<std::uint64_t>(place_ - base_));
  throw SheetError(SheetError::Reason::kDamaged, fmt::format("XML gresit la octetul {}: {}", offset, what));
}

void XmlScanner::Feed(const std::string& piece) {
  constexpr std::size_t kJoin = 4096;  // bytes, so that nearly all of a piece is scanned where it stands
  for (std::string_view rest = piece; !rest.empty();) {
    if (started_ && left_.empty()) {
      left_ = rest.substr(Scan(rest));
      return;
    }
    const std::size_t before = left_.size();
    const std::size_t more = std::min(rest.size(), std::max(kJoin, before));
    left_ += rest.substr(0, more);
    if (!started_ && left_.size() >= 3) Start();
    const std::size_t taken = started_ ? Scan(left_) : 0;
    if (taken > before) {
      rest.remove_prefix(taken - before);
      left_.clear();
    } else {
      rest.remove_prefix(more);
      left_.erase(0, taken);
    }
  }
}

void XmlScanner::Start() {
  started_ = true;
  if (left_.starts_with("\xFF\xFE") || left_.starts_with("\xFE\xFF")) Fail("nu este scris in UTF-8");
  // A byte order mark is a blank before the root.
  if (left_.starts_with("\xEF\xBB\xBF")) left_.replace(0, 3, "   ");
}

void XmlScanner::Finish() {
  CheckCharacters(left_, true);
  place_ = nullptr;
  if (!left_.empty() || !open_.empty() || !rooted_) Fail("se termina prea devreme");
}

// The bytes that are whole characters; one that the end cuts waits for the next piece.
std::size_t XmlScanner::CheckCharacters(std::string_view text, bool last) {
  base_ = text.data();
  const char* const end = text.data() + text.size();
  const char* at = SkipAscii(text.data(), end);
  while (at < end) {
    const auto lead = static_cast<unsigned char>(*at);
    const std::ptrdiff_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (end - at < length && !last) break;
    const char* const next = at + std::min(length, end - at);
    place_ = at;
    if (!IsValidUtf8(Between(at, next))) Fail("octeti care nu sunt UTF-8");
    at = SkipAscii(next, end);
  }
  return static_cast<std::size_t>(at - text.data());
}

// Answers how many bytes it could take.
std::size_t XmlScanner::Scan(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + CheckCharacters(text, false);
  while (at < end) {
    place_ = at;
    const char* const next = *at == '<' ? TakeMarkup(at, end) : TakeText(at, end);
    if (next == nullptr) {
      if (static_cast<std::size_t>(end - at) > kLongestMarkup) Fail("element prea lung");
      break;
    }
    at = next;
  }
  place_ = nullptr;
  const auto taken = static_cast<std::size_t>(at - text.data());
  consumed_ += taken;
  return taken;
}

// Null where nothing can be taken until more has come.
const char* XmlScanner::TakeText(const char* at, const char* end) {
  const char* stop = EndOf(at, kText);
  const bool references = stop < end && *stop == '&';
  while (stop < end && *stop == '&') stop = EndOf(stop + 1, kText);
  if (stop >= end) {
    stop = references ? BeforeCutReference(at, end) : end;
    if (stop == at) return nullptr;
  } else if (*stop == '\0') {
    place_ = stop;
    Fail("octet nul");
  }
  if (!open_.empty()) {
    handler_->OnText(Resolve(Between(at, stop), text_));
  } else if (!std::all_of(at, stop, IsBlank)) {
    Fail("text in afara elementelor");
  }
  return stop;
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
  const std::string_view open =
      open_.empty() ? std::string_view() : std::string_view(names_).substr(open_.back());
  const char* close = at + 2 + open.size();
  if (open.empty() || close >= end || *close != '>' || std::memcmp(at + 2, open.data(), open.size()) != 0) {
    // Not the usual way to write it.
    const char* const name_end = EndOf(at + 2, kName);
    close = SkipBlanks(name_end);
    if (close >= end) return nullptr;
    if (*close != '>' || open.empty() || open != Between(at + 2, name_end)) Fail("element inchis gresit");
  }
  handler_->OnEnd(open);
  names_.resize(open_.back());
  open_.pop_back();
  return close + 1;
}

const char* XmlScanner::TakeElement(const char* at, const char* end) {
  const char* here = EndOf(at + 1, kName);
  if (here >= end) return nullptr;
  const std::string_view name = Between(at + 1, here);
  if (name.empty()) Fail("element fara nume");
  attributes_.clear();
  if (!values_.empty()) values_.clear();
  for (;;) {
    const char* const start = SkipBlanks(here);
    if (start >= end) return nullptr;
    if (*start == '>' || *start == '/') {
      here = start;
      break;
    }
    if (start == here) Fail("atribute lipite");
    here = TakeAttribute(start, end);
    if (here == nullptr) return nullptr;
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

// Behind the value's closing mark; null where that has not come yet.
const char* XmlScanner::TakeAttribute(const char* at, const char* end) {
  const char* here = EndOf(at, kName);
  const std::string_view name = Between(at, here);
  here = SkipBlanks(here);
  if (here >= end) return nullptr;
  if (*here != '=' || name.empty()) Fail("atribut fara valoare");
  here = SkipBlanks(here + 1);
  if (here >= end) return nullptr;
  const char quote = *here++;
  if (quote != '"' && quote != '\'') Fail("atribut fara ghilimele");
  const int ends = quote == '"' ? kQuoted : kApostrophed;
  const char* stop = EndOf(here, ends);
  const bool references = stop < end && *stop == '&';
  while (stop < end && *stop == '&') stop = EndOf(stop + 1, ends);
  if (stop >= end) return nullptr;
  if (*stop != quote) Fail("atribut neinchis");
  std::string_view value = Between(here, stop);
  if (references) value = Resolve(value, values_.emplace_back());
  attributes_.push_back({name, value});
  return stop + 1;
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
