#pragma once

#include <string>

#include "store/recordset.h"
#include "store/value.h"

namespace sql_tests {

/// A value as the batch tool prints it (README.md).
std::string Print(const store::Value& value);
/// The current row of a recordset, tab-separated.
std::string PrintRow(const store::Recordset& rows);

}  // namespace sql_tests
