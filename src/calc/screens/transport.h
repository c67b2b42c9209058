#pragma once

#include "calc/redistribution/transport.h"
#include "calc/screens/amount_screen.h"

namespace calc {

/// Transport invoices shared over the lines they cover, with the way back.
class Frm_Calcul_Transp_Statistic : public AmountScreen {
  Q_OBJECT
 public:
  Frm_Calcul_Transp_Statistic(ui::Context& context, declarations::Identity identity, QWidget* parent);

 protected:
  std::vector<ui::Column> FiguresColumns() const override;
  QString EnteredText() const override;
  QString NothingPreviewed() const override;

 private:
  void OpenPercentages();
  void RemoveAll();
};

}  // namespace calc
