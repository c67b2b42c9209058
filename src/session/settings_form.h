#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace session {

/// An edit control of the settings dialog. Its name is section and key joined by "_" ("Culori_Meniu_Color");
/// colours are decimal texts of 0x00BBGGRR, yes/no keys "1" or "0".
struct SettingsControl {
  std::string name, value;
};

/// The key that a control is bound to; nothing for a name without "_".
struct BoundKey {
  std::string section;  ///< full path
  std::string key;
};
std::optional<BoundKey> KeyOf(std::string_view control);
bool IsColourControl(std::string_view control);

/// Opening: the text of every bound control's key as it stands in the file, empty where it is missing. A file
/// that cannot be read is shown once.
void ReadControls(Session& session, std::vector<SettingsControl>& controls);

/// Confirming: checks, then writes every control and reads the settings record anew. Stops at the first
/// failure, which has been shown, with nothing written by the checks; answers the name of the control
/// concerned, nothing when all went well. Folders get their backslash in `controls` too.
std::optional<std::string> ConfirmControls(Session& session, std::vector<SettingsControl>& controls);

}  // namespace session
