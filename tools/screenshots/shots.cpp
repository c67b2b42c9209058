#include <QAbstractItemView>
#include <QTabWidget>

#include "app/screens/settings.h"
#include "calc/rates.h"
#include "calc/screens/rate_form.h"
#include "calc/screens/rates.h"
#include "calculations.h"
#include "companies/screens/company.h"
#include "companies/screens/company_list.h"
#include "companies/screens/defaults.h"
#include "desk.h"
#include "ui/progress.h"
#include "ui/prompter.h"

namespace screenshots {
namespace {

void MessageBox(Desk& desk) {
  desk.GrabModal([] {
    ui::QtPrompter().Message("Exista deja firma cu codul fiscal : RO123456", "EROARE",
                             platform::Icon::kCritical);
  });
}

void Question(Desk& desk) {
  desk.GrabModal(
      [] {
        ui::QtPrompter().Ask(
            "Fisierul :C:\\Declarix\\System\\DataBase\\RO123456.mdb EXISTA DEJA. RESCRIETI SI PIERDETI "
            "DATELE AFERENTE ?",
            "RASPUNDETI", platform::Icon::kQuestion);
      },
      QStringLiteral("intrebare"));
}

void ProgressBox(Desk& desk) {
  ui::QtProgress progress;
  const ui::LongRun run(progress, QStringLiteral("Preluare fisier excel"), ui::Stopping::kPossible);
  QElapsedTimer since;
  since.start();
  while (since.elapsed() < 500) {
    progress.Update("Se preiau liniile din foaia Achizitii", 42);
    progress.Status("Linia 27.300 din 65.000");
  }
  desk.Grab(*QApplication::activeModalWidget());
}

void EmptyCompanyList(Desk& desk) {
  desk.Common("DELETE FROM Firme");
  desk.Shoot<companies::Frm_Firme>(QStringLiteral("fara_firme"));
}

void FilledCompany(Desk& desk) {
  desk.Common(
      "UPDATE Firme SET Adresa_Firma='Str. Exemplului nr. 12, bl. A3, ap. 7', Oras_Firma='Cluj-Napoca', "
      "Judet_Firma='CLUJ', CodPostal_Firma='400001', Tel_Firma='0264 000 000', Fax_Firma='0264 000 001', "
      "Email_Firma='contabilitate@proba.example', Reg_No_Firma='J12/345/2004', "
      "Persoana_Intrastat='Persoana de Contact', Persoana_Functie='Contabil sef'");
  desk.Shoot<companies::Frm_Firma>(QStringLiteral("modificare"));
}

void NewCompany(Desk& desk) {
  desk.session().creation_mode = true;
  desk.Shoot<companies::Frm_Firma>(QStringLiteral("creare"));
}

void OpenChoiceList(Desk& desk) {
  companies::Frm_Firma_Default screen(desk.on.context, nullptr);
  screen.show();
  Desk::Settle();
  auto* box = screen.findChild<QComboBox*>(QStringLiteral("I_Nat_Tranz"));
  box->setFocus();
  box->showPopup();
  Desk::Settle();
  QWidget* list = box->view()->window();
  list->setObjectName(screen.objectName());
  desk.Grab(*list, QStringLiteral("lista"));
}

void SettingsTabs(Desk& desk) {
  const char* names[] = {"culori", "zecimale", "foldere", "diverse"};
  for (int i = 0; i < 4; ++i) {
    desk.Shoot<app::Frm_Setari>(QString::fromLatin1(names[i]), [i](app::Frm_Setari& screen) {
      screen.findChild<QTabWidget*>()->setCurrentIndex(i);
    });
  }
}

/// Two weeks of rates that move a little from day to day.
void FillRates(session::Session& session) {
  const struct {
    const char* currency;
    double rate;
    int multiplier;
  } kRates[] = {{"CHF", 5.4312, 1},   {"CZK", 0.2089, 1}, {"EUR", 5.0925, 1}, {"GBP", 5.8704, 1},
                {"HUF", 1.3142, 100}, {"PLN", 1.1987, 1}, {"USD", 4.3621, 1}};
  for (int day = 2; day <= 13; ++day) {
    if (day == 7 || day == 8) continue;  // a weekend
    for (const auto& one : kRates) {
      calc::AddRate(session, one.currency, {platform::ToSerial({2026, 3, day, 0, 0, 0})},
                    one.rate * (1 + (day % 5 - 2) * 0.0007), one.multiplier);
    }
  }
}

void Rates(Desk& desk) {
  desk.Shoot<calc::Frm_Curs_Manual>(QStringLiteral("goala"), {}, [] {});
  FillRates(desk.session());
  desk.Shoot<calc::Frm_Curs_Manual>({}, {}, [] {});
  desk.Shoot<calc::Frm_Curs_Manual>(
      QStringLiteral("filtru"),
      [](calc::Frm_Curs_Manual& screen) {
        test_support::ScreenFixture::Type(screen, "Combo_Moneda", QStringLiteral("EUR"));
        test_support::ScreenFixture::Type(screen, "TxtDeLa", QStringLiteral("09.03.2026"));
        screen.grid()->setFocus();
      },
      [] {});
}

void OneRate(Desk& desk) {
  FillRates(desk.session());
  calc::Frm_Curs form(desk.on.context, calc::NewRate(desk.session(), "HUF"), std::nullopt, nullptr);
  desk.Grab(form);
}

}  // namespace

std::vector<Shot> Shots() {
  std::vector<Shot> shots = {
      {"Mesaj", MessageBox},
      {"Mesaj", Question},
      {"Frm_Progres", ProgressBox},
      {"Frm_Firme", [](Desk& desk) { desk.AddCompanies(), desk.Shoot<companies::Frm_Firme>(); }},
      {"Frm_Firme", EmptyCompanyList},
      {"Frm_Firma", NewCompany},
      {"Frm_Firma", FilledCompany},
      {"Frm_Firma_Default", [](Desk& desk) { desk.Shoot<companies::Frm_Firma_Default>(); }},
      {"Frm_Firma_Default", OpenChoiceList},
      {"Frm_Setari", SettingsTabs},
      {"Frm_Curs_Manual", Rates},
      {"Frm_Curs", OneRate},
  };
  for (Shot& shot : CalculationShots()) shots.push_back(std::move(shot));
  return shots;
}

}  // namespace screenshots
