#pragma once

#include "calc/screens/amount_screen.h"

namespace calc {

/// A total net mass shared over the lines it was invoiced for.
class Frm_Calcul_Net : public AmountScreen {
  Q_OBJECT
 public:
  Frm_Calcul_Net(ui::Context& context, declarations::Identity identity, QWidget* parent);

 protected:
  std::vector<ui::Column> FiguresColumns() const override;
  QString EnteredText() const override;
  QString NothingPreviewed() const override;
};

}  // namespace calc
