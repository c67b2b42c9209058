#pragma once

struct sqlite3;

namespace store {

class SourceSchema;

/// Registers the module "dx_source": "CREATE VIRTUAL TABLE x USING dx_source(n)" shows the n-th source of
/// `sources` read-only and in place. A number with a zero-padding format carries its digits as the value's
/// subtype, by which functions that turn it into text keep the zeros.
void RegisterSourceModule(sqlite3* db, const SourceSchema& sources);

}  // namespace store
