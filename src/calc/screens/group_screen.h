#pragma once

#include <memory>

#include "calc/screens/group_model.h"
#include "ui/grid.h"
#include "ui/screen.h"

class QLabel;

namespace ui {
class CommandRow;
class TotalsRow;
}  // namespace ui

namespace calc {

/// What the three calculations have in common on screen: options and help on top, the groups, what each of
/// them will get (after a run: has got), and the commands. Nothing is written before CmdAjustare; closing
/// asks where something was entered and not run.
class GroupScreen : public ui::Screen {
  Q_OBJECT
 public:
  void reject() override;

 Q_SIGNALS:
  void LinesChanged();  ///< a run or an undo has written lines; whoever shows them reads them anew

 protected:
  GroupScreen(ui::Context& context, const QString& name, const QString& title,
              std::unique_ptr<GroupCalculation> calculation, QWidget* parent);

  /// The widgets of the options, in order; then Open, which lays everything out and reads the groups.
  void AddOptions(QWidget* options);
  ui::CommandRow* commands() { return commands_; }
  ui::Grid* grid() { return grid_; }
  void HideTotals();  ///< where no column adds up
  /// `close` is the close command's name; the screen's own commands are added before.
  void Open(const QString& close);

  GroupCalculation& calculation() { return *calculation_; }
  /// Shows the list that the calculation holds now. `layout` names the columns' memory.
  void ShowList(const QString& layout);
  /// Reads the list anew; what was entered stays.
  void ReadAgain();
  /// Works out what every taken group would get.
  void PreviewAll();

  /// Column of the amount to share; empty where every group is taken.
  virtual std::string AmountField() const { return ""; }
  virtual std::vector<ui::Column> FiguresColumns() const = 0;
  virtual QString EmptyText() const = 0;
  /// Of the closing question: what was entered and is not in the lines.
  virtual QString EnteredText() const = 0;
  /// What the figures panel waits for, while it is empty.
  virtual QString NothingPreviewed() const = 0;

  /// True from the first change after opening or after a run on.
  bool entered() const { return entered_; }
  void ShowStatus(const QString& text);
  bool Ask(const QString& question);

 private:
  void Run();
  void ClearFigures();
  void ShowFigures(bool stored);
  void ShowFiguresOf(int row);
  void ShowTotals();
  void OnEntered(int row);
  void Paste(int row, int column, const QString& text);

  std::unique_ptr<GroupCalculation> calculation_;
  FiguresByRow figures_;
  ui::CodeList currencies_;
  std::unique_ptr<GroupModel> model_;
  std::unique_ptr<FiguresModel> figures_model_;
  QVBoxLayout* options_;
  ui::CommandRow* commands_;
  ui::Grid* grid_;
  ui::TotalsRow* totals_;
  QLabel* figures_title_;
  ui::Grid* figures_grid_;
  QLabel* status_;
  bool entered_ = false, stored_ = false, pasting_ = false;
};

/// "un grup", "2 grupuri", "20 de grupuri".
QString GroupsText(std::size_t count);

}  // namespace calc
