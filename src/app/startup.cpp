#include "app/startup.h"

#include "companies/open_company.h"
#include "platform/locale.h"
#include "update/offer.h"

namespace app {
namespace {

using platform::Icon;

constexpr std::chrono::milliseconds kSplashTime(1500);

/// Where the data lies on a drive; searched in this spelling, written to the settings in the other.
constexpr char kSearchedFile[] = "Declarix\\System\\Database\\Comun.mdb";

struct FoundFolder {
  const char* key;
  const char* below_root;
};
constexpr FoundFolder kFoundFolders[] = {
    {"DataBase", "Declarix\\System\\DataBase\\"},
    {"ReportDefinitionPath", "Declarix\\System\\ReportDefinition\\"},
    {"System", "Declarix\\System\\"},
    {"DirectorSalvare", "Declarix\\System\\DeclaratiiXML\\"},
};

}  // namespace

UpdateOffer OfferUpdate(session::Session& session, Surroundings& surroundings,
                        std::string_view program_folder, std::string_view version) {
  if (version == "0") return UpdateOffer::kNothingNew;
  platform::Prompter& prompter = session.host.prompter;
  if (!prompter.Ask(update::OfferText(), "RASPUNDETI", Icon::kExclamation)) return UpdateOffer::kDeclined;
  const update::Launch launch = update::UpdaterLaunch(program_folder, version);
  const bool present = session.host.files.Exists(update::UpdaterPath(program_folder));
  if (present && surroundings.RunElevated(launch.file, launch.parameters)) return UpdateOffer::kLaunched;
  const std::string reason =
      present ? "Programul de actualizare nu a putut fi pornit." : "Lipseste programul de actualizare.";
  prompter.Message(reason + "\r\nComanda ar fi fost:\r\n" + launch.CommandLine(), "", Icon::kExclamation);
  return UpdateOffer::kNotLaunched;
}

StartUp::StartUp(session::Session& session, Surroundings& surroundings, std::string program_folder)
    : session_(&session), surroundings_(&surroundings), program_folder_(std::move(program_folder)) {}

bool StartUp::Run() {
  if (surroundings_->OtherInstanceRuns()) {
    session_->host.prompter.Error("Aplicatia ruleaza deja !", "");
    return false;
  }
  surroundings_->ShowSplash();
  if (!Prepare()) {
    surroundings_->CloseSplash();
    return false;
  }
  surroundings_->Pause(kSplashTime);
  surroundings_->CloseSplash();
  rates_noted_ = session_->settings.UpdateCurs;
  return OpenFirstScreen();
}

bool StartUp::Prepare() {
  session::Session& session = *session_;
  platform::Prompter& prompter = session.host.prompter;
  if (!session.host.files.Exists(session.settings_file)) {
    prompter.Error("EROARE identificare fisier setari: " + session.settings_file + "\r\nNu exista !", "");
    return false;
  }
  // Found data changes the settings, so all of them are read again. Once: where the settings cannot be
  // written, the next search would find the same and change as little.
  for (bool searched = false;; searched = true) {
    session.ReadSettings(program_folder_);
    if (session.settings.VerificaUpdate) {
      const UpdateOffer offer =
          OfferUpdate(session, *surroundings_, program_folder_, surroundings_->CheckVersion(false));
      update_accepted_ = offer == UpdateOffer::kLaunched || offer == UpdateOffer::kNotLaunched;
      if (offer == UpdateOffer::kLaunched) return false;
    }
    if (session.host.files.Exists(session.CommonPath())) break;
    if (searched || !TakeDataFromDrives()) {
      ShowMissing(session.CommonPath());
      return false;
    }
  }
  session.decimal_comma = platform::DecimalSeparator() != ".";
  try {
    session::OpenCommonConnection(session);
    return true;
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return false;
  }
}

bool StartUp::TakeDataFromDrives() {
  const std::vector<std::string> roots = surroundings_->DriveRoots();
  if (roots.empty()) {
    session_->host.prompter.Error("No Drives were found!", "");
    return false;
  }
  for (const std::string& root : roots) {
    if (!session_->host.files.Exists(root + kSearchedFile)) continue;
    for (const FoundFolder& folder : kFoundFolders) {
      // What fails has been shown; the other folders would only fail alike.
      if (!session::UpdateSetting(session_->host, session_->settings_file, session::kSectionFileLocation,
                                  folder.key, root + folder.below_root, true)) {
        return false;
      }
    }
    return true;
  }
  return false;
}

void StartUp::ShowMissing(const std::string& path) {
  session_->host.prompter.Error("EROARE MAJORA, NU EXISTA FISIERUL : \r\n" + path, "");
}

bool StartUp::OpenFirstScreen() {
  session::Session& session = *session_;
  int count = 0;
  std::string code;
  std::string file;
  try {
    const store::Recordset rows =
        session.common.Query("SELECT Cod_Fiscal, Nume_Firma, DataBaseFile FROM Firme");
    count = static_cast<int>(rows.record_count());
    if (count == 1) {
      code = rows["Cod_Fiscal"].ToText();
      file = rows["DataBaseFile"].ToText();
    }
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return false;
  }
  if (count == 0) {
    session.host.prompter.Info(
        "Pentru o utilizare mai usoara va recomandam sa consultati manualul de utilizare. In meniu -> "
        "Ajutor");
    session.creation_mode = true;
    surroundings_->OpenScreen(Screen::kCreateCompany);
    return true;
  }
  if (count > 1) {
    surroundings_->OpenScreen(Screen::kSelectCompany);
    return true;
  }
  if (!companies::OpenCompany(session, code, file)) return false;
  CompanyReady();
  return true;
}

void StartUp::CompanyReady() {
  surroundings_->OpenScreen(Screen::kMainWindow);
  if (std::exchange(rates_noted_, false)) {
    surroundings_->UpdateRates();
  } else if (session_->settings.UpdateCurs) {
    surroundings_->TakeFetchedRates();
  }
}

}  // namespace app
