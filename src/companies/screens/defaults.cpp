#include "companies/screens/defaults.h"

#include "companies/company_defaults.h"
#include "ui/text.h"

namespace companies {

Frm_Firma_Default::Frm_Firma_Default(ui::Context& screen_context, QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Firma_Default"), parent) {
  setWindowTitle(QStringLiteral("Setari Implicite - ") + ui::Q(session().current.Nume_Firma));
  SetFirstSize({1000, 300});
  ui::CodeList countries, deliveries, transactions, transports;
  Try([&] {
    store::Connection& company = session().company;
    countries = ui::CodeList::Read(company, kCountryChoices);
    deliveries = ui::CodeList::Read(company, kDeliveryChoices);
    transactions = ui::CodeList::Read(company, kTransactionChoices);
    transports = ui::CodeList::Read(company, kTransportChoices);
  });
  for (ui::CodeList::Line& line : transactions.lines) {
    if (line.code.endsWith('.')) line.code.chop(1);  // filed and stored without the dot
  }
  const auto add = [&](const char* prefix, const char* column, const char* label, const ui::CodeList& list) {
    AddCode(QString::fromLatin1(prefix) + QString::fromLatin1(column), QString::fromLatin1(label), list, 6,
            QStringLiteral("Se completeaza la liniile noi si la cele preluate din Excel; Alt+sageata jos "
                           "arata lista"))
        ->TypeCapitals();
  };
  AddColumn();
  AddSection(QStringLiteral("Achizitii"));
  add("I_", "Incoterms", "&Conditii livrare", deliveries);
  add("I_", "Mod_Transp", "&Mod transport", transports);
  add("I_", "Nat_Tranz", "&Natura tranzactiei", transactions);
  add("I_", "Tara_Exp", "&Tara expediere", countries);
  AddColumn();
  AddSection(QStringLiteral("Livrari"));
  add("O_", "Incoterms", "Conditii &livrare", deliveries);
  add("O_", "Mod_Transp", "Mo&d transport", transports);
  add("O_", "Nat_Tranz", "Natura tran&zactiei", transactions);
  add("O_", "Tara_Dest", "Tara d&estinatie", countries);
  SetButtons(QStringLiteral("&OK-Retine datele"), [this] {
    if (SaveDefaults(session(), Collect())) accept();
  });
  Try([this] { Fill(ReadDefaults(session())); });
  GuardChanges();
}

}  // namespace companies
