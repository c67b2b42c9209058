#pragma once

#include <optional>
#include <string_view>

namespace calc {

/// A number as typed or pasted. `decimal_mark` is the user's own, "," or "."; the other mark, blanks and
/// no-break blanks may separate thousands. A single other mark that cannot separate thousands is taken for
/// the decimal one: numeric keypads have a point, and pasted sheets may be of another country. So with a
/// decimal comma "1.5" is one and a half and "1.500" fifteen hundred.
std::optional<double> ParseTypedNumber(std::string_view text, std::string_view decimal_mark);

}  // namespace calc
