#include "calc/screens/stat_value.h"

#include "calc/redistribution/stat_value.h"

namespace calc {

Frm_Recalculare_ValStat::Frm_Recalculare_ValStat(ui::Context& screen_context, declarations::Identity identity,
                                                 QWidget* parent)
    : GroupScreen(screen_context, QStringLiteral("Frm_Recalculare_ValStat"),
                  QStringLiteral("Recalculare valoare statistica"),
                  std::make_unique<StatValueRecalculation>(screen_context.session, std::move(identity)),
                  parent) {
  SetFirstSize({1060, 600});
  grid()->SetFillsWidth(false);
  HideTotals();
  Open(QStringLiteral("CmdClose"));
  Try([this] {
    calculation().Load();
    ShowList(objectName());
  });
}

std::vector<ui::Column> Frm_Recalculare_ValStat::FiguresColumns() const {
  using ui::Format;
  return {{"group", QStringLiteral("Grup"), Format::kText, 42},
          {"lines", QStringLiteral("Linii"), Format::kWhole, 6},
          {"invoiced", QStringLiteral("Valoare Fiscala"), Format::kAmount},
          {"Val_Stat", QStringLiteral("Valoare Statistica"), Format::kAmount},
          {"difference", QStringLiteral("Diferenta"), Format::kRate, 10},
          {"remarks", QStringLiteral("Observatii"), Format::kText, 20}};
}

QString Frm_Recalculare_ValStat::EmptyText() const {
  return QStringLiteral("Declaratia nu are linii, deci nici grupuri. Adaugati linii in editor si reveniti.");
}

QString Frm_Recalculare_ValStat::EnteredText() const {
  return QStringLiteral("Procentele introduse nu au fost aplicate si se pierd");
}

QString Frm_Recalculare_ValStat::NothingPreviewed() const {
  return QStringLiteral("Fara grupuri nu este nimic de recalculat.");
}

}  // namespace calc
