#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "declarations/editor/editor.h"
#include "declarations/nil.h"
#include "declarations/screens/declaration_list.h"
#include "declarations/screens/problems.h"
#include "ui/list_screen.h"

namespace declarations {

class EditorModel;
class FilterPanel;
class HeaderPanel;

/// The calculation screens that the editor's commands open; the command of an empty one is disabled.
struct EditorCommands {
  /// A calculation over the lines that a filter (" WHERE [TIP] ='I' AND …") names, modal over `over`. The
  /// editor reads its lines again afterwards.
  using Calculation = std::function<void(QWidget* over, const std::string& filter)>;
  Calculation recalculate_statistical_value = {};  ///< CmdRecalcValStat
  Calculation redistribute_transport = {};         ///< CmdRedistribuireTransport
  Calculation redistribute_net = {};               ///< CmdRedistribuireNet
};

/// The declaration editor: header, commands, filter, lines, totals. The constructor opens the declaration;
/// where that fails (shown), is_open() is false and the screen is not to be shown.
class Frm_INTRASTAT : public ui::ListScreen {
  Q_OBJECT
 public:
  Frm_INTRASTAT(ui::Context& context, const EditorOpening& opening, bool view, EditorCommands commands,
                QWidget* parent);
  ~Frm_INTRASTAT() override;

  bool is_open() const { return is_open_; }
  Editor& editor() { return editor_; }

  /// Goes to a line and one of its columns; a filter that hides the line goes. False where the line is gone.
  bool GoTo(std::int64_t Record_ID, const std::string& column);
  bool GoTo(const LineProblem& problem);
  /// The problems screen of the last check, beside the editor.
  Frm_Intrastat_Probleme& problems_screen();

  /// Saves the line being typed and keeps the declaring agent's fields; stays open where that fails and the
  /// user does not want to lose the line.
  void reject() override;

 private:
  void AddCommands();
  /// A command that works on the lines: what is being typed in a cell is kept first, or it does not run.
  std::function<void()> Working(void (Frm_INTRASTAT::*command)());
  void BindWidgets();
  void MakeModel();

  void NewLine();
  void Duplicate();
  void Delete();
  void CopyAbove();
  void Paste(int row, int column, const QString& text);
  void Refresh();
  void Filter();
  void ShowAll();
  void ExecuteUpdate();
  void ShowProvenance(bool on);
  void Check();
  void ShowProblems();
  void Export();
  void PrintDeclaration();
  void RecalculateStatisticalValue();
  void RedistributeTransport();
  void RedistributeNet();
  void Calculate(const EditorCommands::Calculation& calculation, const std::optional<std::string>& filter);

  void OnRow(int row);
  /// Once the grid is done with changing its row: what moves rows waits until then.
  void AfterRow();
  void AutoSave();
  /// Runs what reads the lines anew; the line and column that the user is on stay, where they still are.
  bool Reading(const std::function<bool()>& action);
  std::int64_t CurrentLine();  ///< its Record_ID; 0 where there is none
  void FollowLines();
  /// Title, totals, number of problems, what can be done.
  void ShowState();
  void ShowProblemsOf(const LineProblems& found);
  bool ReviewFindings(const std::vector<Finding>& findings);
  bool GoTo(const Editor::Cell& cell);
  int FirstEditable() const;

  Editor editor_;
  bool view_, is_open_ = false;
  EditorCommands commands_;
  Frm_Intrastat_Probleme* problems_screen_ = nullptr;
  HeaderPanel* header_ = nullptr;
  FilterPanel* filter_ = nullptr;
  std::unique_ptr<EditorModel> model_;
  QPushButton* errors_ = nullptr;
  std::vector<QPushButton*> changing_;  ///< commands that change lines
  QTimer auto_save_, after_row_;
  std::optional<Finding> led_to_;  ///< chosen in the review
};

/// What the declaration list opens declarations with.
OpenEditor EditorOpener(ui::Context& context, EditorCommands commands);

}  // namespace declarations
