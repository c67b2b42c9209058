#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "store/dialect/translate.h"

/// Scanning shared by Normalize and the lexer: both must cut a statement into the same literals.
namespace store::dialect {

enum class CharClass : std::uint8_t {
  kRefused,
  kBlank,
  kLetter,
  kDigit,
  kQuote,
  kBracket,
  kHash,
  kDot,
  kSign
};

namespace scan_internal {
constexpr std::array<CharClass, 256> MakeClasses() {
  std::array<CharClass, 256> table{};
  for (int c = 0; c < 256; ++c) {
    CharClass k = CharClass::kRefused;
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') k = CharClass::kBlank;
    if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c >= 0x80) k = CharClass::kLetter;
    if (c >= '0' && c <= '9') k = CharClass::kDigit;
    table[static_cast<std::size_t>(c)] = k;
  }
  for (char c : {'\'', '"'}) table[static_cast<std::size_t>(c)] = CharClass::kQuote;
  for (char c : {'=', '<', '>', '+', '-', '*', '/', '\\', '^', '&', '(', ')', ',', ';', '!'}) {
    table[static_cast<std::size_t>(c)] = CharClass::kSign;
  }
  table['['] = CharClass::kBracket;
  table['#'] = CharClass::kHash;
  table['.'] = CharClass::kDot;
  return table;
}
}  // namespace scan_internal

inline constexpr std::array<CharClass, 256> kCharClasses = scan_internal::MakeClasses();

inline CharClass ClassOf(char c) { return kCharClasses[static_cast<unsigned char>(c)]; }
inline bool IsDigit(char c) { return ClassOf(c) == CharClass::kDigit; }
/// Letters, digits, "_" and "$" (worksheets such as Sheet1$, functions such as LEFT$).
inline bool IsNameChar(char c) {
  const CharClass k = ClassOf(c);
  return k == CharClass::kLetter || k == CharClass::kDigit || c == '$';
}

[[noreturn]] void ThrowUnclosed(std::string_view text, std::size_t position);
[[noreturn]] void ThrowRefusedChar(std::string_view text, std::size_t position);

/// Each Scan answers the position after the item that begins at `p`.
inline std::size_t ScanName(std::string_view text, std::size_t p) {
  while (p < text.size() && IsNameChar(text[p])) ++p;
  return p;
}

/// A number ends where a letter begins: in "0ORDER BY" the number is 0. An "E" belongs to it only when digits
/// follow.
inline std::size_t ScanNumber(std::string_view text, std::size_t p, LiteralKind& kind) {
  const std::size_t begin = p;
  while (p < text.size() && IsDigit(text[p])) ++p;
  // Eighteen digits always fit 64 bits.
  kind = p - begin <= 18 ? LiteralKind::kInteger : LiteralKind::kNumber;
  if (p < text.size() && text[p] == '.') {
    kind = LiteralKind::kNumber;
    ++p;
    while (p < text.size() && IsDigit(text[p])) ++p;
  }
  if (p + 1 < text.size() && (text[p] == 'e' || text[p] == 'E')) {
    std::size_t q = p + 1;
    if ((text[q] == '+' || text[q] == '-') && q + 1 < text.size()) ++q;
    if (IsDigit(text[q])) {
      kind = LiteralKind::kNumber;
      while (q < text.size() && IsDigit(text[q])) ++q;
      p = q;
    }
  }
  return p;
}

inline std::size_t ScanText(std::string_view text, std::size_t p, bool& doubled) {
  const char quote = text[p];
  const std::size_t begin = p++;
  doubled = false;
  for (;;) {
    p = text.find(quote, p);
    if (p == std::string_view::npos) ThrowUnclosed(text, begin);
    ++p;
    if (p >= text.size() || text[p] != quote) return p;
    doubled = true;
    ++p;
  }
}

inline std::size_t ScanDate(std::string_view text, std::size_t p) {
  const std::size_t end = text.find('#', p + 1);
  if (end == std::string_view::npos) ThrowUnclosed(text, p);
  return end + 1;
}

inline std::size_t ScanBracket(std::string_view text, std::size_t p) {
  const std::size_t begin = p;
  while (++p < text.size()) {
    if (text[p] == ']') return p + 1;
    if (static_cast<unsigned char>(text[p]) < 0x20) ThrowRefusedChar(text, p);
  }
  ThrowUnclosed(text, begin);
}

inline char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
inline bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (AsciiUpper(a[i]) != AsciiUpper(b[i])) return false;
  }
  return true;
}

}  // namespace store::dialect
