#pragma once

#include <string>
#include <string_view>

#include "store/error.h"

namespace store::dialect {

/// First characters of a statement, for Error::source().
std::string StatementHead(std::string_view text);

/// "Eroare de sintaxa: what, langa …" with the text that follows the position.
[[noreturn]] void ThrowSyntax(std::string_view text, const std::string& what, std::size_t position);
[[noreturn]] void ThrowAt(int number, std::string_view text, const std::string& description, int position);

}  // namespace store::dialect
