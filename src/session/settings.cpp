#include "session/settings.h"

#include <algorithm>

#include "session/settings_document.h"

namespace session {
namespace {

/// The file read and parsed anew; on a failure the reason has been shown and nothing is answered.
std::unique_ptr<SettingsDocument> Load(platform::Host& host, std::string_view file) {
  try {
    return std::make_unique<SettingsDocument>(host.files.Read(file));
  } catch (const SettingsError& error) {
    host.prompter.Error("Fisierul de setari " + std::string(file) + " nu poate fi citit: " + error.what());
  } catch (const platform::FileError& error) {
    host.prompter.Error(error.what());
  }
  return nullptr;
}

std::string Joined(std::string_view section, std::string_view key) {
  std::string path(section);
  if (!path.ends_with('/')) path += '/';
  path += key;
  return path;
}

/// Shows the general text, then the host's reason where there is one.
void ShowFailure(platform::Host& host, std::string_view text, std::string_view section, std::string_view key,
                 std::string_view value, std::string_view reason) {
  std::string message(text);
  message.append(section).append(key).append(value);
  host.prompter.Error(message);
  if (!reason.empty()) host.prompter.Error(reason);
}

void Save(platform::Host& host, std::string_view file, const std::string& before,
          const SettingsDocument& document) {
  const std::string after = document.content();
  if (after != before) host.files.Replace(file, after);
}

/// White space that keeps the next element below this one: CR LF, a blank and a tab per level.
std::string SpaceBehind(std::string_view section) {
  const auto parts = std::count(section.begin(), section.end(), '/') + 1;
  const auto depth = parts < 3 ? 0 : parts - 2;
  return "\r\n " + std::string(static_cast<std::size_t>(depth), '\t');
}

}  // namespace

std::string SettingsPath() { return platform::CommonDataFolder() + "\\Declarix\\Settings.xml"; }

std::string ReadSetting(platform::Host& host, std::string_view file, std::string_view section,
                        std::string_view key) {
  const auto document = Load(host, file);
  if (document == nullptr) return {};
  return document->Text(Joined(section, key)).value_or("");
}

bool UpdateSetting(platform::Host& host, std::string_view file, std::string_view section,
                   std::string_view key, std::string_view value, bool create_if_missing) {
  const auto document = Load(host, file);
  if (document == nullptr) return false;
  const std::string path = Joined(section, key);
  if (!document->Has(path)) {
    if (!create_if_missing) return false;
    CreateSetting(host, file, section, key, value, false);
    return true;  // whatever came of it: the failure has been shown
  }
  std::string reason;
  try {
    const std::string before = document->content();
    document->SetText(path, value);
    Save(host, file, before, *document);
    return true;
  } catch (const std::exception& error) {
    reason = error.what();
  }
  const std::string shown = Joined(section, "");
  ShowFailure(host, "Eroare la actualizare setari: ", shown, key, value, reason);
  return false;
}

bool CreateSetting(platform::Host& host, std::string_view file, std::string_view section,
                   std::string_view key, std::string_view value, bool update_if_exists) {
  if (section.ends_with('/')) section.remove_suffix(1);
  const auto document = Load(host, file);
  if (document == nullptr) return false;
  if (document->Has(Joined(section, key))) {
    if (!update_if_exists) return false;
    UpdateSetting(host, file, section, key, value, false);
    return true;
  }
  std::string reason;
  if (document->Has(std::string(section))) {
    try {
      const std::string before = document->content();
      document->AppendElement(std::string(section), key, value, SpaceBehind(section));
      Save(host, file, before, *document);
      return true;
    } catch (const std::exception& error) {
      reason = error.what();
    }
  } else {
    reason = "Lipseste elementul " + std::string(section) + " din fisierul " + std::string(file);
  }
  ShowFailure(host, "Eroare la creare setari: ", section, key, value, reason);
  return false;
}

}  // namespace session
