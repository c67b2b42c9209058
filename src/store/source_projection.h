#pragma once

#include "store/dialect/translate.h"
#include "store/rows.h"
#include "store/sources.h"

namespace store {

/// Fills `rows` straight from a source where the translation is a projection of it; false, with `rows`
/// untouched, where it is none. Gives what stepping through the statement would give.
bool LoadProjection(const SourceSchema& sources, const dialect::Translation& translation,
                    const dialect::Normalized& literals, RowBlock& rows);

}  // namespace store
