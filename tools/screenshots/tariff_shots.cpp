#include <QRadioButton>

#include "desk.h"
#include "support/sample_lines.h"
#include "tariff/screens/advanced_search.h"
#include "tariff/screens/browser.h"
#include "tariff/screens/find_dialog.h"
#include "tariff/screens/versions.h"

namespace screenshots {
namespace {

using tariff::Frm_Tarif;

void Browser(Desk& desk) {
  desk.session().tariff.Execute(
      "UPDATE HS_1 SET HS_1_NOTE='1. Sectiunea nu cuprinde articolele din materiale textile pentru uz tehnic "
      "si nici cele de la pozitiile 8201 la 8215. 2. Partile de masini se clasifica la pozitia masinii "
      "pentru "
      "care sunt facute.' WHERE HS1_COD='16'");
  Frm_Tarif sections(desk.on.context, *tariff::FindLevel(1), nullptr, "C:\\Date\\");
  sections.ShowAll();
  sections.grid()->SelectRow(15, 0);
  desk.Grab(sections, QStringLiteral("note"));
  for (int i = 0; i < 3; ++i) sections.DrillDown();
  desk.Grab(sections);
  Frm_Tarif codes(desk.on.context, *tariff::FindLevel(8), nullptr, "C:\\Date\\");
  codes.show();
  codes.resize(1024, 700);
  QTest::keyClicks(codes.grid(), QStringLiteral("8471"));
  desk.Grab(codes, QStringLiteral("cautare"));
}

void FindDialog(Desk& desk) {
  Frm_Tarif list(desk.on.context, *tariff::FindLevel(8));
  list.show();
  list.grid()->SelectRow(0, 2);
  tariff::Frm_Cautare dialog(
      desk.on.context,
      tariff::FindIn(list, desk.session().tariff, "SELECT HS8_COD, HS12_COD, DESCRIERE FROM HS_8"));
  dialog.show();
  desk.on.Type(dialog, "TxtExpresie", QStringLiteral("aparate + electrice"));
  desk.on.Get<QRadioButton>(dialog, "Optiune4").click();
  desk.Grab(dialog);
}

void AdvancedSearch(Desk& desk) {
  for (int i = 0; i < 9; ++i) {
    test_support::AddLine(desk.session(), i % 2 == 0 ? "I" : "O", 2026, 1 + i % 3,
                          {{"Descriere", fmt::format("Masini automate, laptop model {}", i + 1)},
                           {"Val_Fiscala", 1250.5 * (i + 3)}});
  }
  desk.on.context.open_line = [](std::int64_t, QWidget*) {};
  tariff::Frm_Cautare_Tarif screen(desk.on.context);
  desk.Grab(screen, QStringLiteral("goala"));
  screen.SearchFor(QStringLiteral("8471"));
  desk.Grab(screen);
}

void Versions(Desk& desk) {
  tariff::Frm_Tarif_Versiuni screen(desk.on.context, {});
  desk.Grab(screen);
  tariff::Frm_Tarif_Incarcare form(
      desk.on.context, [] { return std::string("C:\\Descarcari\\CN_2027.xml"); }, nullptr);
  form.show();
  desk.on.Click(form, "CmdAlege");
  desk.Grab(form);
}

}  // namespace

std::vector<Shot> TariffShots() {
  return {{"Frm_Tarif", Browser},
          {"Frm_Cautare", FindDialog},
          {"Frm_Cautare_Tarif", AdvancedSearch},
          {"Frm_Tarif_Versiuni", Versions}};
}

}  // namespace screenshots
