#include "app/program_commands.h"

#include "app/startup.h"

namespace app {

ProgramCommands::ProgramCommands(session::Session& session, Surroundings& surroundings,
                                 std::string program_folder)
    : session_(&session), surroundings_(&surroundings), program_folder_(std::move(program_folder)) {
  if (program_folder_.ends_with('\\')) program_folder_.pop_back();
}

void ProgramCommands::Bind(Commands& commands) {
  commands.Handle("SETARI_UPDATE", [this](const Command&) { Update(); });
  commands.Handle("AJUTOR_AJUTOR", [this](const Command&) { OpenManual(); });
  commands.Handle("IESIRE", [this](const Command&) { Exit(); });
}

void ProgramCommands::Update() {
  const std::string version = surroundings_->CheckVersion(true);
  if (OfferUpdate(*session_, *surroundings_, program_folder_, version) == UpdateOffer::kLaunched) Exit();
}

void ProgramCommands::OpenManual() {
  for (const char* name : {"\\Help\\Manual.Pdf", "\\Help\\Manual.Html"}) {
    const std::string manual = program_folder_ + name;
    if (session_->host.files.Exists(manual) && surroundings_->OpenDocument(manual)) return;
  }
  session_->host.prompter.Error("Manualul nu poate fi deschis: " + program_folder_ + "\\Help\\Manual.Pdf");
}

void ProgramCommands::UpdateRates() {
  if (surroundings_->UpdateRates()) session_->host.prompter.Info("Curs valutar actualizat la zi");
}

void ProgramCommands::Exit() {
  if (std::exchange(exiting_, true)) return;
  if (!surroundings_->CloseScreens()) {
    exiting_ = false;
    return;
  }
  session::CompactOnExit(*session_);
  surroundings_->EndProcess();
}

}  // namespace app
