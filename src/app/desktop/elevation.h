#pragma once

#include <string_view>

namespace app {

/// Starts a program with raised rights: the shell's verb "runas", a normal window, no working folder. `file`
/// is taken as it stands. False where the user or the host refuses, and always off Windows, which has no such
/// verb.
bool RunElevated(std::string_view file, std::string_view parameters);

}  // namespace app
