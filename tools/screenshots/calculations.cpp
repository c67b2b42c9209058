#include "calculations.h"

#include "calc/screens/net_mass.h"
#include "calc/screens/stat_value.h"
#include "calc/screens/transport.h"
#include "support/sample_lines.h"

namespace screenshots {
namespace {

const declarations::Identity kArrivals{"I", test_support::Installation::kCompany, 2026, 3};

/// Four invoices of March, as an importer of several suppliers has them.
void AddLines(Desk& desk) {
  struct Sample {
    const char *invoice, *code, *country, *terms, *mode, *supplier, *currency;
    double quantity, value, net;
  };
  const Sample samples[] = {
      {"RE-2026-00417", "84713000", "DE", "EXW", "3", "DE812345678", "EUR", 12, 9840.40, 28.8},
      {"RE-2026-00417", "84717050", "DE", "EXW", "3", "DE812345678", "EUR", 40, 3184.06, 6.4},
      {"RE-2026-00417", "85444290", "DE", "EXW", "3", "DE812345678", "EUR", 250, 1119.40, 31.25},
      {"FT 2026/118", "94033019", "IT", "CPT", "3", "IT01234567890", "EUR", 8, 12437.75, 412},
      {"FT 2026/118", "94032080", "IT", "CPT", "3", "IT01234567890", "EUR", 16, 5970.12, 268.5},
      {"55120087", "73269098", "PL", "DAP", "3", "PL5260001246", "PLN", 1500, 6322.80, 745.2},
      {"2026-F-0093", "90318080", "FR", "FCA", "4", "FR40303265045", "EUR", 1, 38210.15, 17.6}};
  for (const Sample& each : samples) {
    test_support::AddLine(desk.session(), "I", 2026, 3,
                          {{"Factura_Numar", each.invoice},
                           {"Cod_NC", each.code},
                           {"Tara_Exp", each.country},
                           {"Tara_Orig", each.country},
                           {"Incoterms", each.terms},
                           {"Mod_Transp", each.mode},
                           {"VAT_ID", each.supplier},
                           {"Moneda", each.currency},
                           {"Cantitate", each.quantity},
                           {"Valoare_Valuta", each.value / 4.9751},
                           {"Val_Fiscala", each.value},
                           {"Val_Stat", each.value},
                           {"Net", each.net}});
  }
}

/// A cell of the groups as typed; rows from 0.
void Enter(QWidget& screen, int row, const char* field, const char* text) {
  auto& grid = test_support::ScreenFixture::Get<ui::Grid>(screen, "Grid");
  grid.SelectRow(row, grid.grid_model()->ColumnOf(field));
  grid.Store(row, grid.grid_model()->ColumnOf(field), QString::fromLatin1(text));
}

void Transport(Desk& desk) {
  using Screen = calc::Frm_Calcul_Transp_Statistic;
  desk.Shoot<Screen>(QStringLiteral("fara_linii"), {}, kArrivals);
  AddLines(desk);
  const auto enter = [](Screen& screen) {
    Enter(screen, 1, "Total_Transport_Suma", "1200");
    Enter(screen, 3, "Total_Transport_Suma", "480");
    Enter(screen, 3, "Transport_Moneda", "EUR");
    Enter(screen, 3, "Transport_Curs", "4,9751");
    Enter(screen, 3, "Transp_Document", "TR 20914");
  };
  desk.Shoot<Screen>({}, enter, kArrivals);
  desk.Shoot<Screen>(
      QStringLiteral("dupa_calcul"),
      [&](Screen& screen) {
        enter(screen);
        test_support::ScreenFixture::Click(screen, "CmdAjustare");
      },
      kArrivals);
  desk.Shoot<Screen>(
      QStringLiteral("conditii"),
      [](Screen& screen) {
        test_support::ScreenFixture::Get<QAbstractButton>(screen, "Redis_Op_Incoterms").click();
        Enter(screen, 0, "Total_Transport_Suma", "350");
      },
      kArrivals);
}

void NetMass(Desk& desk) {
  AddLines(desk);
  desk.Shoot<calc::Frm_Calcul_Net>(
      {},
      [](calc::Frm_Calcul_Net& screen) {
        Enter(screen, 2, "Total_GreutateNeta", "682,5");
        Enter(screen, 3, "Total_GreutateNeta", "64");
      },
      kArrivals);
}

void Percentages(Desk& desk) {
  AddLines(desk);
  desk.Shoot<calc::Frm_Recalculare_ValStat>(
      {}, [](calc::Frm_Recalculare_ValStat& screen) { Enter(screen, 1, "Procent", "2,5"); }, kArrivals);
}

}  // namespace

std::vector<Shot> CalculationShots() {
  return {{"Frm_Calcul_Transp_Statistic", Transport},
          {"Frm_Calcul_Net", NetMass},
          {"Frm_Recalculare_ValStat", Percentages}};
}

}  // namespace screenshots
