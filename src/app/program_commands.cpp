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
  platform::Prompter& prompter = session_->host.prompter;
  switch (surroundings_->UpdateRates()) {
    case calc::RatesOutcome::kUpToDate:
      return prompter.Info("Curs valutar actualizat la zi");
    case calc::RatesOutcome::kTriedToday:
      return prompter.Info("Cursurile au fost actualizate deja astazi");
    case calc::RatesOutcome::kNoMarker:
      return prompter.Message(
          "Cursurile nu se pot actualiza: lipseste fisierul\r\n" + session_->UnderSystem("CursBNR\\data.txt"),
          "", platform::Icon::kExclamation);
    case calc::RatesOutcome::kFailed:
      return prompter.Message("Cursurile nu s-au actualizat. Motivul este in jurnalul erorilor:\r\n" +
                                  session_->UnderSystem("Erori\\erori.txt"),
                              "", platform::Icon::kExclamation);
    case calc::RatesOutcome::kNotFetched:
      break;
  }
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
