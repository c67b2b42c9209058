#pragma once

#include <cstddef>
#include <string_view>

namespace store {

/// One code point from `text` at `at`, which moves behind it. A byte that begins no UTF-8 sequence is a code
/// point of its own above U+10FFFF, so that damaged texts still have one order.
char32_t NextCodePoint(std::string_view text, std::size_t& at);

/// What a code point is to comparisons: lower case, comma-below letters as the cedilla ones.
char32_t FoldCase(char32_t c);

/// First occurrence of `what` in `text` from byte `from` under FoldCase (accents count); the byte position
/// and the length matched there, which may differ from what.size(). npos where there is none.
struct FoldedMatch {
  std::size_t position = std::string_view::npos;
  std::size_t length = 0;
};
FoldedMatch FindFolded(std::string_view text, std::string_view what, std::size_t from);

}  // namespace store
