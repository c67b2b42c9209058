#include "calc/screens/transport.h"

#include "calc/screens/stat_value.h"
#include "ui/list_screen.h"

namespace calc {

Frm_Calcul_Transp_Statistic::Frm_Calcul_Transp_Statistic(ui::Context& screen_context,
                                                         declarations::Identity identity, QWidget* parent)
    : AmountScreen(screen_context, QStringLiteral("Frm_Calcul_Transp_Statistic"),
                   QStringLiteral("Redistribuire transport"),
                   std::make_unique<TransportRedistribution>(screen_context.session, std::move(identity)),
                   parent) {
  SetFirstSize({1340, 700});
  AddAction(QStringLiteral("Redis_Op_Proc"), QStringLiteral("&Procent..."), [this] { OpenPercentages(); });
  commands()->AddSeparator();
  commands()->Add(QStringLiteral("CmdStergeRedistribuire"), QStringLiteral("&Sterge redistribuirea"),
                  QStringLiteral("sterge"), [this] { RemoveAll(); });
  OpenList();
}

void Frm_Calcul_Transp_Statistic::OpenPercentages() {
  Frm_Recalculare_ValStat percentages(context(), calculation().identity(), this);
  connect(&percentages, &GroupScreen::LinesChanged, this, [this] {
    Try([this] { PreviewAll(); });
    Q_EMIT LinesChanged();
  });
  percentages.exec();
}

void Frm_Calcul_Transp_Statistic::RemoveAll() {
  if (!grid()->CommitEdit()) return;
  const std::optional<std::int64_t> lines =
      static_cast<TransportRedistribution&>(calculation()).CmdStergeRedistribuire();
  if (!lines) return;
  if (*lines < 0) {
    ShowStatus(QStringLiteral("Redistribuirea nu s-a sters; motivul este in jurnalul erorilor"));
    return;
  }
  PreviewAll();
  ShowStatus(QStringLiteral("Redistribuirea s-a sters de pe %1 linii").arg(*lines));
  Q_EMIT LinesChanged();
}

std::vector<ui::Column> Frm_Calcul_Transp_Statistic::FiguresColumns() const {
  using ui::Format;
  return {{"group", QStringLiteral("Grup"), Format::kText, 40},
          {"lines", QStringLiteral("Linii"), Format::kWhole, 6},
          {"expected", QStringLiteral("De redistribuit"), Format::kRate, 12},
          {"shared", QStringLiteral("Redistribuit"), Format::kRate, 12},
          {"difference", QStringLiteral("Diferenta"), Format::kRate, 10},
          {"invoiced", QStringLiteral("Valoare Fiscala"), Format::kAmount, 12},
          {"Val_Stat", QStringLiteral("Valoare Statistica"), Format::kAmount, 12},
          {"remarks", QStringLiteral("Observatii"), Format::kText, 32}};
}

QString Frm_Calcul_Transp_Statistic::EnteredText() const {
  return QStringLiteral("Sumele introduse nu au fost redistribuite si se pierd");
}

QString Frm_Calcul_Transp_Statistic::NothingPreviewed() const {
  return QStringLiteral("Introduceti suma unui grup: aici apare ce va primi, inainte de a se scrie ceva.");
}

}  // namespace calc
