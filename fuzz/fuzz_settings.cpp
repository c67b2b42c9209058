// Any bytes as a settings file: reading refuses them or answers, and a change touches just the one value.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "session/settings_document.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  const std::string key = "/Settings/K";
  try {
    session::SettingsDocument document(content);
    if (document.content() != content) std::abort();
    document.Text("/Settings/*");
    if (document.Has(key)) {
      document.SetText(key, "a<&>\xC8\x9B");
    } else if (document.Has("/Settings")) {
      document.AppendElement("/Settings", "K", "a<&>\xC8\x9B", "\r\n ");
    } else {
      return 0;
    }
    if (session::SettingsDocument(document.content()).Text(key) != "a<&>\xC8\x9B") std::abort();
  } catch (const session::SettingsError&) {
    // refused
  }
  return 0;
}
