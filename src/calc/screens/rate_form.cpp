#include "calc/screens/rate_form.h"

#include "ui/format.h"
#include "ui/text.h"

namespace calc {

using ui::Q;

namespace {

QString NumberText(const std::optional<double>& number, ui::Format format) {
  return number ? ui::ForEditing(store::Value(*number), format) : QString();
}

}  // namespace

Frm_Curs::Frm_Curs(ui::Context& screen_context, const RateEntry& entry, std::optional<RateKey> changed,
                   QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Curs"), parent), changed_(std::move(changed)) {
  setWindowTitle(changed_ ? QStringLiteral("Modificare curs valutar") : QStringLiteral("Curs valutar nou"));
  ui::CodeList currencies;
  Try([&] { currencies = ui::CodeList::Read(session().company, kCurrencyChoices); });
  ui::CodeBox* currency =
      AddCode(QStringLiteral("Cod_Moneda"), QStringLiteral("&Moneda"), std::move(currencies), 5,
              QStringLiteral("Codul monedei, asa cum este in tabela Monezi; Alt+sageata jos arata lista"));
  currency->TypeCapitals();
  auto* day = AddText(QStringLiteral("Valid_La_Data"), QStringLiteral("&Data cursului"), 10,
                      QStringLiteral("Ziua pentru care este publicat cursul (zz.ll.aaaa); se aplica "
                                     "documentelor din zilele urmatoare"));
  day->setPlaceholderText(QStringLiteral("zz.ll.aaaa"));
  AddText(QStringLiteral("Curs_Schimb"), QStringLiteral("&Curs schimb"), 14,
          QStringLiteral("Lei pentru numarul de unitati de la multiplicator, cu patru zecimale"));
  AddText(QStringLiteral("Multiplicator"), QStringLiteral("M&ultiplicator"), 8,
          QStringLiteral("Numarul de unitati pentru care este publicat cursul: 100 pentru HUF sau JPY, 1 "
                         "pentru celelalte"));
  for (const char* required : {"Cod_Moneda", "Valid_La_Data", "Curs_Schimb", "Multiplicator"})
    MarkRequired(QString::fromLatin1(required));
  SetButtons(QStringLiteral("OK - Retine datele"), [this] { Confirm(); });

  SetText(QStringLiteral("Cod_Moneda"), Q(entry.Cod_Moneda));
  if (entry.Valid_La_Data) SetText(QStringLiteral("Valid_La_Data"), Q(store::DateText(*entry.Valid_La_Data)));
  SetText(QStringLiteral("Curs_Schimb"), NumberText(entry.Curs_Schimb, ui::Format::kRate));
  SetText(QStringLiteral("Multiplicator"), NumberText(entry.Multiplicator, ui::Format::kWhole));
  if (!changed_) {
    connect(currency, &ui::CodeBox::CodeChanged, this, [this, currency] {
      if (currency->description().isEmpty()) return;  // not yet a currency
      Try([&] {
        const int usual = UsualMultiplier(session(), ui::Utf8(currency->code()));
        SetText(QStringLiteral("Multiplicator"), QString::number(usual));
      });
    });
  }
  if (changed_) findChild<QWidget*>(QStringLiteral("Curs_Schimb"))->setFocus();
  GuardChanges();
}

RateEntry Frm_Curs::Typed() const {
  const auto text = [this](const char* name) { return Text(QString::fromLatin1(name)).trimmed(); };
  return {ui::Utf8(text("Cod_Moneda")), store::ParseDate(ui::Utf8(text("Valid_La_Data"))),
          ui::ParseNumber(text("Curs_Schimb"), ui::Format::kRate),
          ui::ParseNumber(text("Multiplicator"), ui::Format::kWhole)};
}

void Frm_Curs::Confirm() {
  const RateSaving saving = SaveRate(session(), Typed(), changed_);
  if (saving.saved) {
    saved_ = *saving.saved;
    accept();
  } else if (!saving.field.empty()) {
    FocusField(Q(saving.field));
  }
}

}  // namespace calc
