#pragma once

#include <string>

namespace platform {

/// The decimal mark of the user's own locale, "." where there is none to ask. The process itself always
/// reads and writes numbers with a point.
std::string DecimalSeparator();

}  // namespace platform
