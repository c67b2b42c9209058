#pragma once

#include <QString>
#include <functional>

#include "ui/grid.h"
#include "ui/grid_export.h"
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

class TotalsRow;

/// The list skeleton: command row, search row (while searching), grid, status line with count, totals and the
/// last message.
class ListScreen : public Screen {
  Q_OBJECT
 public:
  ListScreen(Context& context, const QString& name, QWidget* parent);

  CommandRow* commands() { return commands_; }
  Grid* grid() { return grid_; }

  /// Search ("CmdCautare"), print ("CmdTiparire", Ctrl+P), spreadsheet ("CmdExcel", Ctrl+E) and close
  /// ("CmdInchide") for any list, after its own commands. `report_title` heads the print. A screen whose list
  /// has a search of its own leaves ours out.
  enum class Search { kInGrid, kOwn };
  void AddListCommands(const QString& report_title, Search search = Search::kInGrid);

  /// For a list whose contents change their name.
  void SetReportTitle(const QString& title) { report_title_ = title; }

  /// What the list's files and sheets are called; without it as the window.
  void SetFileTitle(const QString& title) { file_title_ = title; }
  QString file_title() const { return file_title_.isEmpty() ? windowTitle() : file_title_; }

  /// The list's report in the report definitions; without it the one whose title is the print's, else a plain
  /// one.
  void SetReport(std::string report) { report_ = std::move(report); }

  /// Does not own the model.
  void SetModel(GridModel* model);
  /// "  Total Inregistrari :  " by default; the count is put after it.
  void SetCountCaption(const QString& caption);
  void ShowTotals(const QString& text);
  void ShowStatus(const QString& text);
  void UpdateCount();

  /// A widget between the command row and the grid.
  void AddAboveGrid(QWidget* widget);
  /// A pane under the grid that the user can make larger or smaller; at most one.
  void AddBelowGrid(QWidget* widget, int height);
  /// A widget over the grid, first so high, with a handle between the two; how they share the room is
  /// remembered.
  void SplitAboveGrid(QWidget* widget, int height);
  /// Totals under the columns; made at the first call.
  TotalsRow* totals_row();

  /// Previews the list as a report.
  void Print();
  /// The same for what is not the list itself.
  void Print(const GridContent& content);
  /// Asks for the file.
  void ExportSpreadsheet();
  bool SaveSpreadsheet(const std::string& windows_path);

 private:
  /// Tells what was written, with a link that opens it.
  void ShowFile(const std::string& windows_path);

  CommandRow* commands_ = nullptr;
  Grid* grid_ = nullptr;
  QVBoxLayout* above_ = nullptr;
  QLabel* count_ = nullptr;
  QLabel* totals_ = nullptr;
  QLabel* status_ = nullptr;
  QWidget* search_row_ = nullptr;
  QLabel* search_column_ = nullptr;
  QLabel* search_text_ = nullptr;
  QVBoxLayout* middle_ = nullptr;
  TotalsRow* totals_row_ = nullptr;
  std::string report_;
  std::string written_;  ///< Windows path behind the status line's link
  QString count_caption_, report_title_, file_title_;
};

}  // namespace ui
