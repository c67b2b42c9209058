#pragma once

#include "calc/redistribution/amounts.h"
#include "calc/screens/group_screen.h"

class QRadioButton;

namespace calc {

/// The two redistributions: what an amount is shared by, and over which groups, as two rows of choices.
/// Changing one reads another list; where that would drop something entered, it is asked first.
class AmountScreen : public GroupScreen {
  Q_OBJECT
 protected:
  AmountScreen(ui::Context& context, const QString& name, const QString& title,
               std::unique_ptr<AmountRedistribution> redistribution, QWidget* parent);

  AmountRedistribution& redistribution() { return *redistribution_; }
  /// A button beside the groupings. It is none of the choices, which arrow keys run through.
  void AddAction(const QString& name, const QString& caption, std::function<void()> action);
  /// Lays the screen out and shows the list of the first options.
  void OpenList();

  std::string AmountField() const override { return redistribution_->AmountField(); }
  QString EmptyText() const override;

 private:
  QHBoxLayout* AddRow(QGridLayout* rows, const QString& label);
  QRadioButton* AddChoice(QHBoxLayout* row, const QString& name, const QString& caption);
  void Choose(Redis_Mod mod, Redis_Op op);
  void CheckChosen();

  AmountRedistribution* redistribution_;
  QHBoxLayout* op_row_ = nullptr;
  std::map<Redis_Mod, QRadioButton*> mods_;
  std::map<Redis_Op, QRadioButton*> ops_;
};

}  // namespace calc
