#pragma once

#include <string>
#include <string_view>

namespace platform {

inline constexpr char32_t kReplacement = 0xFFFD;

/// The code point at `i`, which moves behind it. Bytes that are no UTF-8 (overlong forms and surrogates among
/// them) count as U+FFFD, one byte each.
char32_t NextCodePoint(std::string_view text, std::size_t& i);

void AppendUtf8(std::string& text, char32_t c);

}  // namespace platform
