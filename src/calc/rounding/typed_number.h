#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace calc {

/// What a single mark of the other kind means where it could separate thousands ("4.975" with a decimal
/// comma).
enum class LoneMark : std::uint8_t {
  kThousands,
  kDecimal,  ///< for rates and percentages, which hardly reach a thousand and have three or four decimals
};

/// A number as typed or pasted. `decimal_mark` is the user's own, "," or "."; the other mark, blanks and
/// no-break blanks may separate thousands. A single other mark that cannot separate thousands is taken for
/// the decimal one: numeric keypads have a point, and pasted sheets may be of another country. So with a
/// decimal comma "1.5" is one and a half and "1.500" fifteen hundred, unless `lone_mark` says otherwise.
std::optional<double> ParseTypedNumber(std::string_view text, std::string_view decimal_mark,
                                       LoneMark lone_mark = LoneMark::kThousands);

}  // namespace calc
