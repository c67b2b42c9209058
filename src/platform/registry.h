#pragma once

#include <string>
#include <string_view>

#include "platform/files.h"

namespace platform {

/// Text value below HKEY_LOCAL_MACHINE; empty where it is missing or no text. Off Windows the values stand in
/// "registry.ini" in the drives folder, one section per key ("[Software\Company\Program]").
std::string ReadRegistryText(const Files& files, std::string_view key, std::string_view value_name);

}  // namespace platform
