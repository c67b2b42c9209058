#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "declarations/lines/lines.h"
#include "session/session.h"
#include "store/recordset.h"

namespace calc {

/// A column of a group grid, in the order shown.
struct GroupColumn {
  enum class Kind : std::uint8_t { kText, kNumber, kTick };

  std::string field;  ///< of the group list
  std::string caption;
  Kind kind = Kind::kText;
  std::string format;  ///< "##,##0.00" and the like; empty for texts and ticks
  bool editable = false;
};

/// What one group gets: planned by Preview, stored after a run.
struct GroupFigures {
  std::int64_t row = 0;    ///< from 0, in the order the list was read
  std::string group;       ///< "Cond livrare CPT, Tara Exp DE, Mod transp 3"
  std::int64_t lines = 0;  ///< that the group's statements reach; 0 for a key that no equality meets
  double expected = 0;     ///< what the user entered to be shared (percentages: the raised value, unrounded)
  double shared = 0;       ///< sum of what the lines get
  double difference = 0;   ///< expected - shared: what rounding each line on its own leaves
  double invoiced = 0;     ///< sum of Val_Fiscala, lei
  std::optional<double> Val_Stat;    ///< its sum after the run, where the calculation writes it, lei
  std::vector<std::string> remarks;  ///< what the user may want to mend before running
  std::string error;                 ///< the statement that failed, where one did
};

struct RunReport {
  bool cancelled = false;             ///< the user stopped it; nothing was changed
  int groups = 0;                     ///< rows redistributed, as the closing message counts them
  std::vector<GroupFigures> figures;  ///< of those rows, in order
};

/// The groups of one declaration's lines, what the user enters for each, and the run that writes the lines.
///
/// The group list is a stored query of the company's file read into memory: whatever is edited in rows()
/// stays there until CmdAjustare. A run is one transaction; a failing statement is logged and the run goes on
/// with the next group. All numbers in statements carry a decimal point in any locale.
///
/// Load and the run's begin and commit throw store::Error (file gone, locked, read-only or full); nothing is
/// changed then and no closing message shown.
class GroupCalculation {
 public:
  GroupCalculation(session::Session& session, declarations::Identity identity);
  virtual ~GroupCalculation() = default;
  GroupCalculation(const GroupCalculation&) = delete;
  GroupCalculation& operator=(const GroupCalculation&) = delete;

  /// The statement that reads the group list.
  virtual std::string ListStatement() const = 0;
  /// Sentences shown on the screen, one a line.
  virtual std::vector<std::string> HelpLines() const { return {}; }

  /// Reads the group list anew. What was entered stays with the groups that are listed again.
  void Load();
  /// The list, editable in memory; call Load first. Only the columns marked editable are meant to be changed.
  /// Set throws store::Error(kConversion) for a text that is no number and leaves the cell as it was.
  store::Recordset& rows() { return rows_; }
  const store::Recordset& rows() const { return rows_; }
  /// Call Load first. The declaration's own columns (TIP, Cod_Fiscal, Anul, Luna) are not shown.
  std::vector<GroupColumn> Columns() const;

  /// What the run would give each group it takes, without writing anything. Tells the progress its percents.
  std::vector<GroupFigures> Preview();
  /// The same for one group, by its row in the order the list was read; nothing where the run leaves it out.
  std::optional<GroupFigures> PreviewOf(std::int64_t at);
  /// Runs over the group list from first to last and shows the closing message. Afterwards the caller
  /// refreshes its lines.
  RunReport CmdAjustare();
  /// Its two halves, for a screen whose progress box ends before the message comes.
  RunReport Run();
  void ShowClosing(const RunReport& report);

  /// Tells the groups of a list apart; the same group has the same key in a list read anew.
  std::string GroupKey(const store::Recordset& row) const;

  /// The statements for the current row of `row`, in their order, and the condition they share.
  virtual std::vector<std::string> Statements(const store::Recordset& row) const = 0;
  virtual std::string Condition(const store::Recordset& row) const;
  /// Whether the run takes the row.
  virtual bool Takes(const store::Recordset& row) const = 0;

  const declarations::Identity& identity() const { return identity_; }

 protected:
  /// Expressions over the lines of a group that tell its figures.
  struct Measures {
    std::string key;       ///< column that the shares follow
    std::string shared;    ///< one line's share
    std::string Val_Stat;  ///< one line's statistical value; empty where it is not written
    std::string expected;  ///< one line's unrounded part; empty where `amount` is the whole
    double amount = 0;
    int decimals = 2;  ///< of the difference
  };

  virtual std::string LogName() const = 0;
  virtual std::string ClosingMessage(int groups) const = 0;
  /// Columns that the user edits, then those only shown, without the key columns.
  virtual std::vector<GroupColumn> OwnColumns() const = 0;
  /// `stored`: as the lines hold it after the run; else computed from what was entered.
  virtual Measures MeasuresOf(const store::Recordset& row, bool stored) const = 0;
  virtual std::vector<std::string> Remarks(const store::Recordset& row) const;
  /// Runs the row's statements; the reason where one failed.
  virtual std::string RunGroup(const store::Recordset& row);
  /// Column of the lines behind a key column of the list.
  virtual std::string LineColumn(std::string_view field) const { return std::string(field); }

  std::string Filter() const { return declarations::EditorFilter(identity_); }
  /// The leading columns of the list identify its groups; totals and typed columns follow.
  int key_fields() const { return key_fields_; }
  /// Runs a statement of the run; on failure logs it and answers the reason.
  std::string Execute(const std::string& statement);

  session::Session& session_;

 private:
  std::string Describe(const store::Recordset& row) const;
  GroupFigures Measure(const store::Recordset& row, bool stored);
  std::vector<std::int64_t> TakenRows(store::Recordset& row) const;
  bool IndexPays(std::size_t groups);
  bool CreateIndex();

  declarations::Identity identity_;
  store::Recordset rows_;
  int key_fields_ = 0;
};

}  // namespace calc
