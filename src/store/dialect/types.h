#pragma once

#include "store/dialect/ast.h"

namespace store::dialect {

/// Result type of + - * between numbers, dates, yes/no and Null.
Type NumberType(const Type& a, const Type& b);

/// Type of a value that is one or the other (arms of IIF, members of a UNION); unknown where they differ.
Type CommonType(const Type& a, const Type& b);

/// A column of type `source` goes into `target` as it is.
bool Fits(const Type& source, const SourceColumn& target);

}  // namespace store::dialect
