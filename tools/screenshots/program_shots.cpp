#include "app/desktop/about.h"
#include "app/desktop/desktop.h"
#include "app/desktop/main_window.h"
#include "app/desktop/splash.h"
#include "desk.h"
#include "tariff/screens/reference_list.h"

namespace screenshots {
namespace {

std::string ProgramFolder(Desk& desk) {
  return platform::WithBackslash(desk.session().host.files.drives().FromHost(DECLARIX_PROGRAM_DIR));
}

void FillPublisher(session::Session& session) {
  session.publisher.NumeFirma = "DECLARIX";
  session.publisher.Telefon = "0264 000 000";
  session.publisher.Email = "ajutor@declarix.example";
}

void Splash(Desk& desk) {
  app::Splash splash(desk.session(), ProgramFolder(desk));
  desk.Grab(splash);
}

void MainWindow(Desk& desk) {
  FillPublisher(desk.session());
  app::Desktop desktop(desk.session(), ProgramFolder(desk));
  desktop.OpenScreen(app::Screen::kMainWindow);
  desk.Grab(*desktop.main_window());
}

void About(Desk& desk) {
  FillPublisher(desk.session());
  desk.Shoot<app::Frm_Despre>();
}

void ReferenceList(Desk& desk) {
  const app::Command& command = *app::FindCommand("TABELE_TARI_UE");
  tariff::ReferenceTable table{std::string(command.query), std::string(command.title), {}};
  for (const std::string_view heading : command.headings) table.captions.emplace_back(heading);
  desk.Shoot<tariff::Frm_Tabel>({}, {}, table);
}

}  // namespace

std::vector<Shot> ProgramShots() {
  return {
      {"Frm_Splash", Splash},
      {"Frm_Main", MainWindow},
      {"Frm_Despre", About},
      {"Frm_Tabel", ReferenceList},
  };
}

}  // namespace screenshots
