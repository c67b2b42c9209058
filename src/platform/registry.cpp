#include "platform/registry.h"

#include "platform/encoding.h"
#ifdef _WIN32
#include <windows.h>
#endif

namespace platform {
namespace {

std::string FromIni(std::string_view content, std::string_view key, std::string_view value_name) {
  bool inside = false;
  for (const std::string& whole : SplitLines(content)) {
    const std::string_view line = Trim(whole);
    if (line.starts_with('[') && line.ends_with(']')) {
      inside = EqualsNoCase(Trim(line.substr(1, line.size() - 2)), key);
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!inside || equals == std::string_view::npos || line.starts_with(';')) continue;
    if (EqualsNoCase(Trim(line.substr(0, equals)), value_name)) {
      return std::string(Trim(line.substr(equals + 1)));
    }
  }
  return {};
}

}  // namespace

std::string ReadRegistryText(const Files& files, std::string_view key, std::string_view value_name) {
#ifdef _WIN32
  if (files.drives().root().empty()) {
    const auto wide = [](std::string_view text) { return std::wstring(text.begin(), text.end()); };
    wchar_t buffer[1024];
    DWORD size = sizeof buffer;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, wide(key).c_str(), wide(value_name).c_str(), RRF_RT_REG_SZ, nullptr,
                     buffer, &size) != ERROR_SUCCESS) {
      return {};
    }
    const std::string_view bytes(reinterpret_cast<const char*>(buffer), size - sizeof(wchar_t));
    return FromCodePage(bytes, 1200);
  }
#endif
  const std::string file = files.drives().FromHost(files.drives().root() / "registry.ini");
  if (!files.Exists(file)) return {};
  try {
    return FromIni(files.Read(file), key, value_name);
  } catch (const FileError&) {
    return {};
  }
}

}  // namespace platform
