#pragma once

#include <QString>
#include <functional>

#include "ui/grid.h"
#include "ui/screen.h"

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace ui {

/// The row of commands on top of a list or editor: icon and text, in groups, the destructive one last and
/// apart.
class CommandRow : public QWidget {
  Q_OBJECT
 public:
  explicit CommandRow(Screen* screen);

  QPushButton* Add(const QString& name, const QString& caption, const QString& icon,
                   std::function<void()> action, const QKeySequence& key = {});
  void AddSeparator();
  /// Pushed to the right end.
  QPushButton* AddApart(const QString& name, const QString& caption, const QString& icon,
                        std::function<void()> action, const QKeySequence& key = {});

 private:
  Screen* screen_;
  QHBoxLayout* layout_;
  int end_ = 0;
};

/// The list skeleton: command row, search row (while searching), grid, status line with count, totals and the
/// last message.
class ListScreen : public Screen {
  Q_OBJECT
 public:
  ListScreen(Context& context, const QString& name, QWidget* parent);

  CommandRow* commands() { return commands_; }
  Grid* grid() { return grid_; }

  /// Print (Ctrl+P), spreadsheet (Ctrl+E) and close for any list, after its own commands. `report_title`
  /// heads the print.
  void AddListCommands(const QString& report_title);

  void SetModel(GridModel* model);
  /// "  Total Inregistrari :  " by default; the count is put after it.
  void SetCountCaption(const QString& caption);
  void ShowTotals(const QString& text);
  void ShowStatus(const QString& text);
  void UpdateCount();

  /// A widget between the command row and the grid.
  void AddAboveGrid(QWidget* widget);

  void Print();
  void ExportSpreadsheet();

 private:
  CommandRow* commands_ = nullptr;
  Grid* grid_ = nullptr;
  QVBoxLayout* above_ = nullptr;
  QLabel* count_ = nullptr;
  QLabel* totals_ = nullptr;
  QLabel* status_ = nullptr;
  QLabel* search_ = nullptr;
  QString count_caption_, report_title_;
};

}  // namespace ui
