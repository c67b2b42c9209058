#pragma once

#include "store/dialect/ast.h"

namespace store::dialect {

/// Fills `projection` where a bound query only hands over columns of one worksheet or delimited file: plain
/// columns, literals, a literal for a Null, a text cut to its first characters. The engine then reads the
/// source itself instead of stepping through SQLite. Left empty where anything else is asked.
void FindProjection(const Query& query, Translation& out);

}  // namespace store::dialect
