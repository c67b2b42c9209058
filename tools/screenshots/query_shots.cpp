#include <QPlainTextEdit>

#include "desk.h"
#include "support/sample_lines.h"
#include "tariff/screens/query_builder.h"

namespace screenshots {
namespace {

using tariff::Frm_Interogari;
using tariff::QueryColumnsModel;
using test_support::ScreenFixture;

void AddLines(Desk& desk) {
  const char* codes[] = {"84713000", "85444290", "94033019", "73269098", "90318080"};
  const char* countries[] = {"DE", "IT", "PL", "FR"};
  for (int i = 0; i < 60; ++i) {
    test_support::AddLine(desk.session(), i % 3 == 0 ? "O" : "I", 2026, 1 + i % 3,
                          {{"Cod_NC", codes[i % 5]},
                           {"Tara_Orig", countries[i % 4]},
                           {"Factura_Numar", fmt::format("FT 2026/{}", 101 + i * 7)},
                           {"DataReceptiei", store::Date{46082.0 + i}},
                           {"Net", 12.5 * (i + 1)},
                           {"Val_Fiscala", 1375.4 + 217.35 * i}});
  }
}

void Ask(Frm_Interogari& screen, const char* column, bool shown, const char* sign = "",
         const char* value = "") {
  auto& grid = ScreenFixture::Get<ui::Grid>(screen, "Grid_Coloane");
  const int row = grid.grid_model()->FindText(0, QString::fromLatin1(column), 0);
  grid.SelectRow(row, QueryColumnsModel::kValue);
  grid.Store(row, QueryColumnsModel::kShown, shown ? "1" : "0");
  if (*sign == '\0') return;
  grid.Store(row, QueryColumnsModel::kOperator, QString::fromLatin1(sign));
  grid.Store(row, QueryColumnsModel::kValue, QString::fromLatin1(value));
}

void Queries(Desk& desk) {
  desk.Shoot<Frm_Interogari>(QStringLiteral("goala"));
  AddLines(desk);
  desk.Company(
      "INSERT INTO Scripts (Script_Name, Script_SQL) VALUES ('Mase pe coduri si luni', 'SELECT Anul, Luna, "
      "Cod_NC, "
      "COUNT(*) AS Linii, SUM(Net) AS Masa, SUM(Val_Fiscala) AS Valoare\nFROM Intrastat\nWHERE TIP = "
      "''I''\nGROUP "
      "BY Anul, Luna, Cod_NC\nORDER BY SUM(Val_Fiscala) DESC')");
  const auto ask = [](Frm_Interogari& screen) {
    for (const char* column : {"Factura_Numar", "Val_Fiscala", "Cod_NC"}) Ask(screen, column, true);
    Ask(screen, "Tara_Orig", true, "egal", "'DE'");
    Ask(screen, "Net", true, "mai mare", "100");
    Ask(screen, "DataReceptiei", true, "mai mare sau egal", "10.03.2026");
  };
  desk.Shoot<Frm_Interogari>({}, [&](Frm_Interogari& screen) {
    ask(screen);
    ScreenFixture::Click(screen, "CmdAfiseaza");
  });
  desk.Shoot<Frm_Interogari>(QStringLiteral("script"), [](Frm_Interogari& screen) {
    auto& scripts = ScreenFixture::Get<QComboBox>(screen, "Combo_Script");
    scripts.setCurrentIndex(0);
    Q_EMIT scripts.textActivated(scripts.currentText());
    ScreenFixture::Click(screen, "CmdRuleaza");
  });
  desk.Shoot<Frm_Interogari>(QStringLiteral("eroare"), [&](Frm_Interogari& screen) {
    ask(screen);
    Ask(screen, "Tara_Orig", true, "egal", "DE");
    ScreenFixture::Click(screen, "CmdAfiseaza");
  });
  tariff::Frm_Script name(desk.on.context, QStringLiteral("Mase pe coduri si luni"), nullptr);
  name.show();
  desk.Grab(name);
}

}  // namespace

std::vector<Shot> QueryShots() { return {{"Frm_Interogari", Queries}}; }

}  // namespace screenshots
