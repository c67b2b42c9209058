#pragma once

#include "calc/screens/group_screen.h"

namespace calc {

/// Statistical values by a percentage per group of lines.
class Frm_Recalculare_ValStat : public GroupScreen {
  Q_OBJECT
 public:
  Frm_Recalculare_ValStat(ui::Context& context, declarations::Identity identity, QWidget* parent);

 protected:
  std::vector<ui::Column> FiguresColumns() const override;
  QString EmptyText() const override;
  QString EnteredText() const override;
  QString NothingPreviewed() const override;
};

}  // namespace calc
