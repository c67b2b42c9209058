#pragma once

#include <optional>
#include <string>

#include "store/dialect/ast.h"

namespace store::dialect {

/// + - * between literals only, a decimal fraction among them: its value is looked at.
bool IsDecimalArithmetic(const Expr& e);

/// The exact result of such an expression ("0.1 + 0.2"); nothing where 28 digits do not hold it.
std::optional<std::string> FoldDecimal(const Expr& e);

}  // namespace store::dialect
