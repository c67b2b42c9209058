#include "platform/encoding.h"

#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/code_page.h"
#include "platform/utf8.h"

namespace platform {
namespace {

constexpr int kUtf16 = 1200;
constexpr int kUtf8Page = 65001;
constexpr int kCentralEurope = 1250;

// Romanian s and t: the cedilla letters that code page 1250 has, the comma-below letters that the language
// has.
char32_t CommaBelow(char32_t c) {
  switch (c) {
    case 0x015E:
      return 0x0218;
    case 0x015F:
      return 0x0219;
    case 0x0162:
      return 0x021A;
    case 0x0163:
      return 0x021B;
    default:
      return c;
  }
}
char32_t Cedilla(char32_t c) {
  switch (c) {
    case 0x0218:
      return 0x015E;
    case 0x0219:
      return 0x015F;
    case 0x021A:
      return 0x0162;
    case 0x021B:
      return 0x0163;
    default:
      return c;
  }
}

/// A single-byte page, both ways.
struct BytePage {
  std::string utf8[256];
  std::unordered_map<char32_t, char> byte_of;
};

const BytePage& PageOf(int code_page) {
  static std::mutex guard;
  static std::map<int, std::unique_ptr<BytePage>> pages;
  const std::lock_guard<std::mutex> lock(guard);
  std::unique_ptr<BytePage>& page = pages[code_page];
  if (page == nullptr) {
    page = std::make_unique<BytePage>();
    for (int byte = 0; byte < 256; ++byte) {
      char32_t c = DecodeByte(static_cast<unsigned char>(byte), code_page);
      if (c != kReplacement) page->byte_of.emplace(c, static_cast<char>(byte));
      if (code_page == kCentralEurope) c = CommaBelow(c);
      AppendUtf8(page->utf8[byte], c);
    }
  }
  return *page;
}

int Known(int code_page) { return IsKnownCodePage(code_page) ? code_page : 1252; }

std::string FromUtf16(std::string_view bytes) {
  std::string text;
  const auto unit = [&](std::size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(bytes[i]) |
                                 static_cast<unsigned char>(bytes[i + 1]) << 8);
  };
  std::size_t i = 0;
  for (; i + 1 < bytes.size(); i += 2) {
    char32_t c = unit(i);
    if (c >= 0xD800 && c < 0xE000) {
      const char32_t low = c < 0xDC00 && i + 3 < bytes.size() ? unit(i + 2) : 0;
      if (low >= 0xDC00 && low < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      } else {
        c = kReplacement;
      }
    }
    AppendUtf8(text, c);
  }
  if (i < bytes.size()) AppendUtf8(text, kReplacement);
  return text;
}

void AppendUtf16(std::string& bytes, char32_t c) {
  const auto put = [&](char32_t unit) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  };
  if (c < 0x10000) return put(c);
  put(0xD800 + ((c - 0x10000) >> 10));
  put(0xDC00 + ((c - 0x10000) & 0x3FF));
}

}  // namespace

std::string FromCodePage(std::string_view bytes, int code_page) {
  if (code_page == kUtf16) return FromUtf16(bytes);
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  if (code_page == kUtf8Page) {
    for (std::size_t i = 0; i < bytes.size();) AppendUtf8(text, NextCodePoint(bytes, i));
    return text;
  }
  code_page = Known(code_page);
  if (IsDoubleByte(code_page)) return DecodeDoubleByte(bytes, code_page);
  const BytePage& page = PageOf(code_page);
  for (const char c : bytes) text += page.utf8[static_cast<unsigned char>(c)];
  return text;
}

std::string ToCodePage(std::string_view utf8, int code_page) {
  std::string bytes;
  bytes.reserve(utf8.size());
  if (code_page != kUtf16 && code_page != kUtf8Page) {
    code_page = Known(code_page);
    if (IsDoubleByte(code_page)) return EncodeDoubleByte(utf8, code_page);
  }
  const BytePage* page = code_page == kUtf16 || code_page == kUtf8Page ? nullptr : &PageOf(code_page);
  for (std::size_t i = 0; i < utf8.size();) {
    char32_t c = NextCodePoint(utf8, i);
    if (code_page == kUtf16) {
      AppendUtf16(bytes, c);
    } else if (page == nullptr) {
      AppendUtf8(bytes, c);
    } else {
      if (code_page == kCentralEurope) c = Cedilla(c);
      const auto found = page->byte_of.find(c);
      bytes += found == page->byte_of.end() ? '?' : found->second;
    }
  }
  return bytes;
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with) {
  if (what.empty()) return std::string(text);
  std::string result;
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(what, from)) != std::string_view::npos; from = at + what.size()) {
    result.append(text, from, at - from);
    result += with;
  }
  result.append(text, from);
  return result;
}

}  // namespace platform
