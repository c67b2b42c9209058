#pragma once

#include "store/dialect/ast.h"

namespace store::dialect {

/// Copies conditions on a grouped query's key columns into that query, so that a probe of one key does not
/// group the whole table. SQLite does this by itself only for columns without a collation.
void PushFilters(Tree& tree);

}  // namespace store::dialect
