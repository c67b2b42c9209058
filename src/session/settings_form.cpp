#include "session/settings_form.h"

#include "platform/encoding.h"
#include "platform/paths.h"
#include "session/once_prompter.h"

namespace session {
namespace {

constexpr char kColours[] = "Culori_";
constexpr char kFolders[] = "FileLocation_";
constexpr char kReports[] = "FileLocation_ReportDefinitionPath";
constexpr char kSaveFolder[] = "FileLocation_DirectorSalvare";

class Confirmation {
 public:
  Confirmation(Session& session, std::vector<SettingsControl>& controls)
      : session_(&session), controls_(&controls) {}

  std::optional<std::string> Run() {
    for (const auto step : {&Confirmation::CheckFilled, &Confirmation::CheckNumbers,
                            &Confirmation::CheckFolders, &Confirmation::Write}) {
      if (!(this->*step)()) return failed_;
    }
    const std::string before = session_->settings.DataBase;
    session_->ReadSettingsAgain();
    // The register that is open lies in the old folder: companies of one folder must not come into the
    // register of another.
    if (session_->common.is_open() && !platform::EqualsNoCase(before, session_->settings.DataBase)) {
      session_->settings.DataBase = before;
      prompter().Info("Noul folder al bazelor de date va fi folosit de la urmatoarea pornire a programului");
    }
    return std::nullopt;
  }

 private:
  platform::Prompter& prompter() { return session_->host.prompter; }
  platform::Files& files() { return session_->host.files; }

  bool Fail(const std::string& control) {
    failed_ = control;
    return false;
  }

  SettingsControl* Find(std::string_view name) {
    for (SettingsControl& control : *controls_) {
      if (control.name == name) return &control;
    }
    return nullptr;
  }

  bool CheckFilled() {
    for (const SettingsControl& control : *controls_) {
      if (!KeyOf(control.name) || IsColourControl(control.name) || !store::IsEmpty(control.value)) continue;
      platform::ShowRequired(prompter(), control.name);
      return Fail(control.name);
    }
    return true;
  }

  bool CheckNumbers() {
    for (const char* name :
         {"Zecimale_ZecRotCalcule", "Zecimale_ZecRotLEI", "Zecimale_ZecRotValuta", "Zecimale_NrZecTaxare"}) {
      const SettingsControl* control = Find(name);
      if (control == nullptr || IsCountOfDecimals(control->value)) continue;
      prompter().Error(std::string(name) + " - NU ESTE NUMAR");
      return Fail(name);
    }
    return true;
  }

  bool CheckFolders() {
    for (SettingsControl& control : *controls_) {
      if (control.name.starts_with(kFolders)) control.value = platform::WithBackslash(control.value);
    }
    if (const SettingsControl* reports = Find(kReports)) {
      const std::string file = reports->value + "UE_Reports.xml";
      if (!files().Exists(file)) {
        prompter().Error("Nu exista fisierul: " + file);
        return Fail(kReports);
      }
    }
    for (const char* name : {"FileLocation_DataBase", "FileLocation_System"}) {
      const SettingsControl* folder = Find(name);
      if (folder == nullptr || files().FolderExists(folder->value)) continue;
      ShowMissing(folder->value);
      return Fail(name);
    }
    // A missing output folder does not block: it is taken out, and the export asks for one. Deliberate, empty
    // value in the second message and all.
    SettingsControl* output = Find(kSaveFolder);
    if (output != nullptr && !files().FolderExists(output->value)) {
      ShowMissing(output->value);
      output->value.clear();
      prompter().Info("Directorul de salvare a fost set la :" + output->value);
    }
    return true;
  }

  // What the field of the settings record can hold; anything else would be stored and then passed over.
  static bool IsCountOfDecimals(const std::string& text) {
    const std::optional<double> number = store::ParseNumber(text);
    return number && *number >= 0 && *number <= 255;
  }

  void ShowMissing(const std::string& folder) { prompter().Error("Nu exista directorul: " + folder); }

  bool Write() {
    for (const SettingsControl& control : *controls_) {
      const std::optional<BoundKey> bound = KeyOf(control.name);
      if (!bound) continue;
      if (!UpdateSetting(session_->host, session_->settings_file, bound->section, bound->key, control.value,
                         true)) {
        return Fail(control.name);
      }
    }
    return true;
  }

  Session* session_;
  std::vector<SettingsControl>* controls_;
  std::string failed_;
};

}  // namespace

std::optional<BoundKey> KeyOf(std::string_view control) {
  const std::size_t at = control.find('_');
  if (at == std::string_view::npos) return std::nullopt;
  return BoundKey{fmt::format("{}/Setari/{}", kSectionRoot, control.substr(0, at)),
                  std::string(platform::Trim(control.substr(at + 1)))};
}

bool IsColourControl(std::string_view control) { return control.starts_with(kColours); }

void ReadControls(Session& session, std::vector<SettingsControl>& controls) {
  OncePrompter once(session.host.prompter);
  platform::Host host{session.host.files, session.host.clock, once, session.host.progress,
                      session.host.errors};
  for (SettingsControl& control : controls) {
    if (const std::optional<BoundKey> bound = KeyOf(control.name)) {
      control.value = ReadSetting(host, session.settings_file, bound->section, bound->key);
    }
  }
}

std::optional<std::string> ConfirmControls(Session& session, std::vector<SettingsControl>& controls) {
  return Confirmation(session, controls).Run();
}

}  // namespace session
