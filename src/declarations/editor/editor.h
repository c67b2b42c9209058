#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "declarations/editor/code_book.h"
#include "declarations/editor/columns.h"
#include "declarations/editor/condition.h"
#include "declarations/editor/line_rules.h"
#include "declarations/editor/problems.h"
#include "declarations/export.h"
#include "session/session.h"
#include "store/recordset.h"

namespace declarations {

/// Sums over the whole declaration, whatever the filter.
struct LineTotals {
  double Val_Fiscala = 0, Val_Stat = 0, Net = 0, Valoare_Valuta = 0;
};

/// The database's order of texts.
struct TextOrder {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const;
};

/// What became of Cmd_Verifica.
enum class CheckOutcome {
  kNotRun,  ///< refused or failed, which was said; what the last check found stands
  kFine,
  kProblems,
};

/// What became of a change to a cell.
struct EditResult {
  bool accepted = true;
  /// Why it was refused (names the column); else what the user should know, mostly empty.
  std::string message = {};
};

/// A cell of a pasted block that was not taken.
struct RefusedCell {
  int row = 0, column = 0;
  std::string text, reason;
};
struct PasteResult {
  bool done = false;  ///< false: refused as a whole (said so), nothing has changed
  int cells = 0;      ///< taken
  int lines_added = 0;
  std::vector<RefusedCell> refused;
};

/// The declaration editor (Frm_INTRASTAT) without its screen: the lines of one declaration, their cells, and
/// the commands on them.
///
/// Rows count from 0 in the order shown; columns are those of columns(). At most one line is changed and not
/// yet saved (the pending one); changing another line, and every command, saves it first. A line just begun
/// has the last row. Messages and questions go to the session's prompter; only the results of cell edits are
/// answered, for the screen to show at the cell. Database errors are shown, never thrown.
class Editor {
 public:
  enum class Mode { kModify, kView };

  /// `decimal_mark`: the user's, for typed numbers.
  Editor(session::Session& session, const Identity& identity, Mode mode, std::string_view decimal_mark);
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  /// Opens the tariff of the period, reads the header and the lines, and the problems of the last check.
  bool Open();
  /// Before the screen closes: saves the pending line and keeps the declaring agent's fields, where changed,
  /// for the next use. False: the line could not be saved, which was said; CancelLine gives it up.
  bool Close();

  const Identity& identity() const { return request_.identity; }
  bool can_edit() const { return mode_ == Mode::kModify && !provenance_; }
  /// What the export takes: header fields, Combo_Tip and switches, edited by the screen.
  ExportRequest& request() { return request_; }
  /// TXT_File_XML, following header and Combo_Tip.
  std::string FileName() const;

  // --- lines on show

  const std::vector<EditorColumn>& columns() const { return columns_; }
  int ColumnOf(std::string_view field) const;       ///< -1 where there is none
  int row_count() const;                            ///< a line just begun counts
  store::Value ValueAt(int row, int column) const;  ///< Null in a row that is not there
  std::string TextAt(int row, int column) const;    ///< to type over, and to copy
  bool CanEdit(int row, int column) const;          ///< row_count() is the line to begin
  /// What is wrong with a cell's code ("Moneda: codul 'XYZ' nu exista"); empty where nothing is.
  std::string CodeProblem(int row, int column) const;
  /// Description of a cell's code; empty where it is unknown or the column has none.
  std::string CodeDescription(int row, int column) const;
  const LineTotals& totals() const { return totals_; }
  std::string Title() const;  ///< "INTRASTAT :  ACHIZITIE 2026 / 3 -   INREGISTRARI : 38"

  // --- loading and order

  bool Refresh();    ///< CmdRefresh: all lines by Record_ID, without filter
  bool ReadAgain();  ///< the same lines, after other screens have changed them; the filter stays
  /// CmdFilter. An empty condition shows all.
  bool Filter(const Condition& condition);
  bool filtered() const { return !condition_text_.empty(); }
  /// By a heading, Record_ID breaking ties; column -1: as the query orders them. "Eroare sortare" where that
  /// fails.
  bool Sort(int column, bool descending);
  /// The lines by where they were imported from; for reading only.
  bool ShowProvenance(bool on);
  bool provenance() const { return provenance_; }

  // --- editing

  /// A cell as typed. A row of row_count() begins a line, unless the text is empty.
  EditResult SetText(int row, int column, std::string_view text);
  EditResult CopyAbove(int row, int column);
  /// Begins a line with its default values; its row. -1 where it cannot be (said so).
  int NewLine();
  bool pending() const { return pending_row_ >= 0; }
  int pending_row() const { return pending_row_; }  ///< -1: none
  /// Leaving a line saves it. False: it could not be saved, was said why, and stays pending. A line begun and
  /// left untouched goes.
  bool SaveLine();
  void CancelLine();  ///< the pending line as it was; a line just begun goes
  /// A copy of the line at the end, saved; its row. -1 where it cannot be.
  int DuplicateLine(int row);
  /// After a question that names how many.
  bool DeleteLines(const std::vector<int>& rows);
  /// A tab-separated block, its first cell going to `row` and columns[0], the next to columns[1], …: the
  /// columns as the screen shows them. Lines are begun as needed. One transaction, which a cancelled progress
  /// undoes.
  PasteResult Paste(int row, const std::vector<int>& columns, std::string_view text);

  // --- commands

  std::vector<ConditionOperator> Operators(int column) const;  ///< CmbSemn for a condition column
  /// Choosing in CmbColoanaUpdate; false where the grid shows the column as read-only, which is said.
  bool CanUpdate(std::string_view field);
  /// CmdExecuteUpdate: sets a column of all lines that meet the condition.
  bool ExecuteUpdate(std::string_view CmbColoanaUpdate, std::string_view Txt_ValueUpdate,
                     const Condition& condition);
  /// Cmd_Verifica. `show_problems` comes after the lines have been read again.
  CheckOutcome Check(const calc::ShowProblems& show_problems);
  /// Cmd_Fisier: the pending line saved, the checker, the review, the file. The callbacks' show_problems
  /// comes after the lines have been read again. In view mode it is refused: the checker writes.
  ExportResult Export(ExportCallbacks callbacks);
  /// The filter for the calculation screens; nothing where the pending line could not be saved.
  std::optional<std::string> CalculationFilter();
  /// The same for CmdRecalcValStat, which only explains itself where Check_ValStatistica is not set.
  std::optional<std::string> RecalcValStatFilter();
  /// Earlier descriptions of goods, for the pick list of Descriere.
  using DescriptionSet = std::set<std::string, TextOrder>;
  const DescriptionSet& Descriptions();

  // --- what the checker found

  const LineProblems& problems() const { return problems_; }
  /// The last check's report; empty before the first. Its file may be an earlier one.
  const std::string& report() const { return report_; }
  bool Flagged(int row) const;  ///< Probleme is set
  /// Problems of a flagged line, or of one of its cells; empty where there are none.
  std::string ProblemText(int row, int column = -1) const;
  struct Cell {
    int row = -1, column = -1;
  };
  /// Where a problem is; a filter that hides the line goes. Row -1 where the line is gone.
  Cell Locate(const LineProblem& problem);
  /// The same for what the institute refuses; row -1 also for findings in the header.
  Cell Locate(const Finding& finding);
  int RowOf(std::int64_t Record_ID) const;  ///< -1 where it is not shown

 private:
  static constexpr char kCannotAdd[] =
      "Interogarea instalarii nu are coloanele declaratiei: nu se pot adauga linii";
  static constexpr std::size_t kShowProgressFrom = 500;  ///< lines of a block

  static std::size_t Index(int column) { return static_cast<std::size_t>(column); }
  std::string Particulars() const;  ///< "ACHIZITIE 2026 / 3"
  std::string TextOf(const Condition& condition) const;
  /// Shows what is missing of a condition of which only one of column and operator was chosen.
  bool IsComplete(const Condition& condition) const;
  void TellDeleted(std::int64_t rows);
  void TakeReport(std::string report);
  void ReadReport();  ///< of the last check; one whose lines are all gone tells of an earlier declaration
  Cell CellOf(std::int64_t Record_ID, std::string_view field);
  /// Reads the lines and their totals; on failure (shown) everything stays as it was.
  bool Load(const std::string& condition_text);
  bool Reload() { return Load(condition_text_); }
  const store::Recordset& At(int row) const;
  const CodeBook::Entry* CodeAt(int row, int column) const;  ///< null for empty cells and without a list

  std::optional<std::string> WhyNot(int row, int column) const;  ///< may not be edited
  bool RefuseWriting();                                          ///< true, having said so, in view mode
  /// Makes `row` the pending line, beginning it where it is a new one; why that cannot be.
  std::optional<std::string> Enter(int row);
  void BeginLine();  ///< throws store::Error, leaving nothing pending
  /// On the pending line.
  EditResult Put(int column, const store::Value& value);
  EditResult PutText(int column, std::string_view text);
  std::optional<store::Value> Parse(const EditorColumn& column, std::string_view text,
                                    std::string* why_not) const;
  /// Writes the pending line; throws store::Error and leaves it pending.
  void Store();
  void ForgetPending();
  void KeepDescription(const std::string& description);
  LineTotals PendingAmounts() const;
  bool LineIsGone();
  bool SaveAgain();  ///< a line that was deleted by someone else
  std::vector<store::Value> LineValues(const store::Recordset& line) const;
  void SetLineValues(const std::vector<store::Value>& values);
  /// False where a blank line began no row.
  bool PasteLine(int row, const std::vector<int>& columns, const std::vector<std::string>& cells,
                 PasteResult& result);

  session::Session* session_;
  Mode mode_;
  std::string decimal_mark_;
  bool provenance_ = false;
  ExportRequest request_;
  Header agent_as_read_;  ///< the declaring agent's fields as the file had them

  std::vector<EditorColumn> columns_;
  int record_id_ = -1, probleme_ = -1;
  store::Recordset lines_;           ///< on the pending line
  mutable store::Recordset reader_;  ///< the same rows, for looking at any of them
  std::string condition_text_;       ///< of the filter on show
  std::string sort_;
  LineTotals totals_;

  int pending_row_ = -1;
  bool is_new_ = false, touched_ = false;
  LineTotals amounts_before_;  ///< of the pending line, as the totals hold them

  mutable CodeBook codes_;
  LineRules rules_;
  std::string report_;
  LineProblems problems_;
  std::optional<DescriptionSet> descriptions_;
  /// Lines that the declaration should have, by the last load of all and what this editor did since.
  std::int64_t expected_ = 0;
};

}  // namespace declarations
