#include "app/desktop/elevation.h"

#ifdef _WIN32
#include <windows.h>
// Behind windows.h, which it needs.
#include <shellapi.h>

#include <QString>
#endif

namespace app {

#ifdef _WIN32
bool RunElevated(std::string_view file, std::string_view parameters) {
  const auto wide = [](std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toStdWString();
  };
  const std::wstring program = wide(file), arguments = wide(parameters);
  const auto answer =
      ShellExecuteW(nullptr, L"runas", program.c_str(), arguments.c_str(), L"", SW_SHOWNORMAL);
  return reinterpret_cast<std::intptr_t>(answer) > 32;  // above 32: started
}
#else
bool RunElevated(std::string_view /*file*/, std::string_view /*parameters*/) { return false; }
#endif

}  // namespace app
