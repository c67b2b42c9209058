#include "platform/utf8.h"

#include "platform/encoding.h"

namespace platform {
namespace {

bool IsAscii(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

/// Blocks in which capitals stand at even numbers and their small letters right behind.
bool IsEvenPair(char32_t c) {
  return (c >= 0x0100 && c <= 0x0137 && c != 0x0130 && c != 0x0131) || (c >= 0x014A && c <= 0x0177) ||
         (c >= 0x01DE && c <= 0x01EF) || (c >= 0x01F8 && c <= 0x021F) || (c >= 0x0222 && c <= 0x0233) ||
         (c >= 0x0370 && c <= 0x0373) || (c >= 0x03D8 && c <= 0x03EF) || (c >= 0x0460 && c <= 0x0481) ||
         (c >= 0x048A && c <= 0x04BF) || (c >= 0x04D0 && c <= 0x052F) || (c >= 0x1E00 && c <= 0x1E95) ||
         (c >= 0x1EA0 && c <= 0x1EFF);
}

/// The same at odd numbers.
bool IsOddPair(char32_t c) {
  return (c >= 0x0139 && c <= 0x0148) || (c >= 0x0179 && c <= 0x017E) || (c >= 0x01CD && c <= 0x01DC) ||
         (c >= 0x04C1 && c <= 0x04CE);
}

char32_t UpperOf(char32_t c) {
  if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
  if ((c >= 0x00E0 && c <= 0x00FE && c != 0x00F7) || (c >= 0x03B1 && c <= 0x03CB && c != 0x03C2) ||
      (c >= 0x0430 && c <= 0x044F)) {
    return c - 32;
  }
  if (IsEvenPair(c)) return c & ~char32_t{1};
  if (IsOddPair(c)) return (c & 1) != 0 ? c : c - 1;
  if (c >= 0x0450 && c <= 0x045F) return c - 80;
  if (c >= 0x03AD && c <= 0x03AF) return c - 37;
  switch (c) {
    case 0x00FF:
      return 0x0178;
    case 0x03C2:
      return 0x03A3;  // final sigma
    case 0x03AC:
      return 0x0386;
    case 0x03CC:
      return 0x038C;
    case 0x03CD:
      return 0x038E;
    case 0x03CE:
      return 0x038F;
    case 0x04CF:
      return 0x04C0;
    default:
      return c;
  }
}

char32_t LowerOf(char32_t c) {
  if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
  if ((c >= 0x00C0 && c <= 0x00DE && c != 0x00D7) || (c >= 0x0391 && c <= 0x03AB && c != 0x03A2) ||
      (c >= 0x0410 && c <= 0x042F)) {
    return c + 32;
  }
  if (IsEvenPair(c)) return c | 1;
  if (IsOddPair(c)) return (c & 1) != 0 ? c + 1 : c;
  if (c >= 0x0400 && c <= 0x040F) return c + 80;
  if (c >= 0x0388 && c <= 0x038A) return c + 37;
  switch (c) {
    case 0x0178:
      return 0x00FF;
    case 0x0386:
      return 0x03AC;
    case 0x038C:
      return 0x03CC;
    case 0x038E:
      return 0x03CD;
    case 0x038F:
      return 0x03CE;
    case 0x04C0:
      return 0x04CF;
    default:
      return c;
  }
}

template <char32_t (*kFold)(char32_t)>
std::string Fold(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  if (IsAscii(utf8)) {
    for (const char c : utf8) text += static_cast<char>(kFold(static_cast<unsigned char>(c)));
    return text;
  }
  for (std::size_t i = 0; i < utf8.size();) {
    const std::size_t at = i;
    const char32_t c = NextCodePoint(utf8, i);
    const char32_t folded = kFold(c);
    if (folded == c) {
      text.append(utf8, at, i - at);  // bytes that are no UTF-8 stay as they are
    } else {
      AppendUtf8(text, folded);
    }
  }
  return text;
}

}  // namespace

char32_t NextCodePoint(std::string_view text, std::size_t& i) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned char lead = byte(i);
  if (lead < 0x80) {
    ++i;
    return lead;
  }
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  char32_t c = lead & (0x7Fu >> length);
  bool valid = lead >= 0xC2 && lead <= 0xF4 && i + length <= text.size();
  for (std::size_t k = 1; valid && k < length; ++k) {
    valid = (byte(i + k) & 0xC0) == 0x80;
    c = c << 6 | (byte(i + k) & 0x3Fu);
  }
  if (length == 3) valid = valid && c >= 0x800 && !(c >= 0xD800 && c < 0xE000);
  if (length == 4) valid = valid && c >= 0x10000 && c <= 0x10FFFF;
  if (!valid) {
    ++i;
    return kReplacement;
  }
  i += length;
  return c;
}

void AppendUtf8(std::string& text, char32_t c) {
  const auto put = [&](char32_t bits) { text += static_cast<char>(bits); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

bool IsValidUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t at = i;
    if (NextCodePoint(text, i) == kReplacement && i - at == 1) return false;
  }
  return true;
}

std::string ToUpper(std::string_view utf8) { return Fold<UpperOf>(utf8); }
std::string ToLower(std::string_view utf8) { return Fold<LowerOf>(utf8); }

std::size_t Utf8Length(std::string_view utf8) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < utf8.size(); ++count) NextCodePoint(utf8, i);
  return count;
}

std::string_view Utf8Prefix(std::string_view utf8, std::size_t count) {
  std::size_t i = 0;
  while (i < utf8.size() && count-- > 0) NextCodePoint(utf8, i);
  return utf8.substr(0, i);
}

}  // namespace platform
