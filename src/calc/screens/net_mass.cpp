#include "calc/screens/net_mass.h"

#include "calc/redistribution/net_mass.h"

namespace calc {

Frm_Calcul_Net::Frm_Calcul_Net(ui::Context& screen_context, declarations::Identity identity, QWidget* parent)
    : AmountScreen(screen_context, QStringLiteral("Frm_Calcul_Net"),
                   QStringLiteral("Redistribuire greutate neta"),
                   std::make_unique<NetRedistribution>(screen_context.session, std::move(identity)), parent) {
  SetFirstSize({1100, 640});
  OpenList();
}

std::vector<ui::Column> Frm_Calcul_Net::FiguresColumns() const {
  using ui::Format;
  return {{"group", QStringLiteral("Grup"), Format::kText, 30},
          {"lines", QStringLiteral("Linii"), Format::kWhole, 6},
          {"expected", QStringLiteral("De redistribuit [Kg]"), Format::kAmount},
          {"shared", QStringLiteral("Redistribuit [Kg]"), Format::kAmount},
          {"difference", QStringLiteral("Diferenta [Kg]"), Format::kAmount},
          {"remarks", QStringLiteral("Observatii"), Format::kText, 32}};
}

QString Frm_Calcul_Net::EnteredText() const {
  return QStringLiteral("Greutatile introduse nu au fost redistribuite si se pierd");
}

QString Frm_Calcul_Net::NothingPreviewed() const {
  return QStringLiteral(
      "Introduceti greutatea unui grup: aici apare ce va primi, inainte de a se scrie ceva.");
}

}  // namespace calc
