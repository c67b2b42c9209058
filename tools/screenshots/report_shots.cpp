#include "desk.h"
#include "reports/screens/page_view.h"
#include "reports/screens/raport.h"
#include "support/sample_lines.h"
#include "ui/text.h"

namespace screenshots {
namespace {

using reports::Frm_Raport;

/// A month's invoices of a few goods.
void FillDeclaration(Desk& desk, const char* TIP, int lines) {
  constexpr const char* kGoods[] = {"Calculatoare portabile 14\"", "Monitoare LED 27\"",
                                    "Piese de schimb pentru utilaje agricole, set complet cu garnituri",
                                    "Hartie xerox A4 80 g/mp", "Scaune de birou"};
  constexpr const char* kCodes[] = {"84713000", "85285210", "84329000", "48025620", "94013900"};
  constexpr const char* kTariff[] = {
      "Masini automate de prelucrare a datelor, portabile, cu o greutate de maximum 10 kg",
      "Monitoare pentru masini automate de prelucrare a datelor", "Parti de masini agricole",
      "Hartie si carton pentru scris, in coli", "Scaune cu cadru de lemn"};
  constexpr const char* kCountries[] = {"DE", "IT", "CN", "AT", "PL"};
  store::Transaction all(desk.session().company);
  for (int i = 0; i < lines; ++i) {
    const int kind = (i * 7) % 5;
    const double value = 250.5 + (i * 937) % 12000;
    test_support::AddLine(desk.session(), TIP, 2026, 3,
                          {{"Descriere", kGoods[kind]},
                           {"Cod_NC", kCodes[kind]},
                           {"Descriere_NC", kTariff[kind]},
                           {"Tara_Orig", kCountries[(i * 3) % 5]},
                           {"Moneda", "EUR"},
                           {"Curs_Schimb", 5.0925},
                           {"Valoare_Valuta", value},
                           {"Val_Fiscala", std::round(value * 509.25) / 100},
                           {"Val_Stat", std::round(value * 519.25) / 100},
                           {"Net", 12.5 + (i * 31) % 400},
                           {"Factura_Numar", fmt::format("FA{:05}", 1200 + i / 6)},
                           {"Factura_Data", store::Date{46082.0 + i / 24}}});
  }
  all.Commit();
}

reports::Subject Declaration(Desk& desk, const char* report, const char* TIP = "I") {
  reports::Subject subject;
  subject.report = report;
  subject.placeholders =
      reports::DeclarationPlaceholders(desk.session(), {TIP, test_support::Installation::kCompany, 2026, 3});
  return subject;
}

void Previews(Desk& desk) {
  desk.session().publisher.NumeFirma = "Declarix Software";
  desk.session().publisher.Telefon = "021 000 00 00";
  desk.Common(
      "UPDATE Firme SET Persoana_Intrastat='Persoana de Contact', Persoana_Functie='Contabil sef', "
      "Tel_Firma='0264 000 000', Email_Firma='contabilitate@proba.example'");
  FillDeclaration(desk, "I", 180);
  FillDeclaration(desk, "O", 40);
  desk.Shoot<Frm_Raport>({}, {}, Declaration(desk, reports::kDetailed));
  desk.Shoot<Frm_Raport>(
      QStringLiteral("cautare"),
      [](Frm_Raport& screen) {
        QTest::keyClick(&screen, Qt::Key_F, Qt::ControlModifier);
        auto& text = test_support::ScreenFixture::Get<QLineEdit>(screen, "Txt_Cautare");
        text.setText(QStringLiteral("FA01209"));
        Q_EMIT text.returnPressed();
      },
      Declaration(desk, "Declaratie_Facturi"));
  desk.Shoot<Frm_Raport>(
      QStringLiteral("pagina"),
      [](Frm_Raport& screen) { screen.view()->SetZoom(reports::PageView::Zoom::kPage); },
      Declaration(desk, "Declaratie_Coduri"));
  // Their PDFs, page by page, are looked at too.
  const std::pair<const char*, const char*> kFiles[] = {
      {reports::kDetailed, "I"},   {reports::kDetailed, "O"},   {reports::kAggregated, "I"},
      {reports::kAggregated, "O"}, {"Declaratie_Facturi", "I"}, {"Declaratie_Coduri", "I"}};
  for (const auto& [report, TIP] : kFiles) {
    Frm_Raport screen(desk.on.context, Declaration(desk, report, TIP), nullptr);
    desk.Keep(fmt::format("{}_{}.pdf", report, TIP), [&](const std::string& path) { screen.WritePdf(path); });
    if (TIP[0] == 'I') {
      const std::string name = report;
      desk.Keep(name + ".html", [&](const std::string& path) { screen.WriteHtml(path); });
      desk.Keep(name + ".xlsx", [&](const std::string& path) { screen.WriteXlsx(path); });
    }
  }
}

}  // namespace

std::vector<Shot> ReportShots() { return {{"Frm_Raport", Previews}}; }

}  // namespace screenshots
