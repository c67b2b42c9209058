#pragma once

#include <optional>
#include <string>

#include "store/dialect/ast.h"

namespace store::dialect {

/// The exact result of + - * between literals where a decimal fraction is among them ("0.1 + 0.2"); nothing
/// for any other expression or where 28 digits do not hold it.
std::optional<std::string> FoldDecimal(const Expr& e);

}  // namespace store::dialect
