#include <QCheckBox>
#include <QMenu>

#include "calc/checker.h"
#include "declarations/screens/add_declaration.h"
#include "declarations/screens/declaration_list.h"
#include "declarations/screens/problems.h"
#include "desk.h"
#include "support/sample_lines.h"
#include "ui/file_options.h"

namespace screenshots {
namespace {

using declarations::Frm_Intrastat_Add;
using declarations::Frm_Intrastat_Lista;
using declarations::Frm_Intrastat_Probleme;

/// Two years of arrivals and dispatches.
void AddDeclarations(Desk& desk) {
  int seed = 7;
  for (int month = 1; month <= 26; ++month) {
    for (const char* TIP : {"I", "O"}) {
      if (TIP[0] == 'O' && month % 4 == 1) continue;
      const int lines = 1 + (seed = seed * 37 % 101) % 9;
      for (int line = 0; line < lines; ++line) {
        const double value = 1200.5 + (seed = seed * 37 % 101) * 317.25;
        test_support::AddLine(
            desk.session(), TIP, 2024 + (month - 1) / 12, (month - 1) % 12 + 1,
            {{"Valoare_Valuta", value}, {"Val_Fiscala", value * 4.9751}, {"Net", value / 31}});
      }
    }
  }
}

Frm_Intrastat_Lista* NewList(Desk& desk) { return new Frm_Intrastat_Lista(desk.on.context, {}, nullptr); }

void FilledList(Desk& desk) {
  AddDeclarations(desk);
  const std::unique_ptr<Frm_Intrastat_Lista> list(NewList(desk));
  list->show();
  desk.on.Click(*list, "CmdSortare");
  list->ShowStatus({});
  list->grid()->SelectRow(3);
  desk.Grab(*list);
  list->findChild<QComboBox*>(QStringLiteral("CmbColoana"))->setCurrentText(QStringLiteral("Sens"));
  desk.on.Type(*list, "Txt_Expresie", QStringLiteral("livrare"));
  desk.on.Click(*list, "CmdFiltrare");
  desk.Grab(*list, QStringLiteral("filtrata"));
}

void SmallestList(Desk& desk) {
  AddDeclarations(desk);
  const std::unique_ptr<Frm_Intrastat_Lista> list(NewList(desk));
  list->show();
  list->resize(1024, 700);
  desk.Grab(*list, QStringLiteral("1024"));
}

void EmptyList(Desk& desk) {
  const std::unique_ptr<Frm_Intrastat_Lista> list(NewList(desk));
  desk.Grab(*list, QStringLiteral("goala"));
}

void AddDialogs(Desk& desk) {
  Frm_Intrastat_Add dialog(desk.on.context, Frm_Intrastat_Add::Purpose::kDeclaration, nullptr);
  desk.Grab(dialog);
  desk.on.at.files().Replace(test_support::Installation::InSystem("Default\\Frm_INTRASTAT.txt"),
                             "TXT_CUI_Dec=RO2233445\r\nTXT_Nume_Dec=EXEMPLU CONTABILITATE SRL\r\n"
                             "TXT_Strada_Dec=Str. Exemplului\r\nTXT_Nr_Dec=12\r\nTXT_BL_Dec=A3\r\n"
                             "TXT_Judet_Dec=1\r\nTXT_Oras_Dec=1026\r\nTXT_CodPostal_Dec=510001\r\n");
  dialog.findChild<QCheckBox*>(QStringLiteral("Check_Dec_Tert"))->setChecked(true);
  dialog.FocusField(QStringLiteral("TXT_Judet_Dec"));
  desk.Grab(dialog, QStringLiteral("declarant"));
}

void FileOptions(Desk& desk) {
  desk.Shoot<ui::Frm_Fisier_Optiuni>({}, {}, "C:\\Declarix\\System\\DeclaratiiXML\\0000123456_AN_20262.xml");
}

void Problems(Desk& desk) {
  const declarations::Identity identity{"I", "RO123456", 2026, 3};
  const auto go_to = [](const declarations::LineProblem&) { return true; };
  {
    Frm_Intrastat_Probleme none(desk.on.context, identity, go_to, nullptr);
    desk.Grab(none, QStringLiteral("neverificata"));
  }
  session::Session& session = desk.session();
  test_support::AddLine(session, "I", 2026, 3);
  test_support::AddLine(session, "I", 2026, 3, {{"Tara_Exp", "RO"}, {"Net", 0.0}});
  test_support::AddLine(session, "I", 2026, 3, {{"Cod_NC", "8471300"}});
  test_support::AddLine(session, "I", 2026, 3,
                        {{"Nat_Tranz", "99"}, {"Incoterms", ""}, {"Val_Fiscala", 0.0}});
  test_support::AddLine(session, "I", 2026, 3, {{"Val_UMS", 0.0}, {"Tara_Exp", "GB"}});
  calc::Verifica_Declaratie(session, "I", 2026, 3, false, {});
  Frm_Intrastat_Probleme problems(desk.on.context, identity, go_to, nullptr);
  problems.show();
  for (int i = 0; i < 4; ++i) problems.Next();
  desk.Grab(problems);
}

}  // namespace

std::vector<Shot> DeclarationShots() {
  return {
      {"Frm_Intrastat_Lista", FilledList},   {"Frm_Intrastat_Lista", EmptyList},
      {"Frm_Intrastat_Lista", SmallestList}, {"Frm_Intrastat_Add", AddDialogs},
      {"Frm_Fisier_Optiuni", FileOptions},   {"Frm_Intrastat_Probleme", Problems},
  };
}

}  // namespace screenshots
