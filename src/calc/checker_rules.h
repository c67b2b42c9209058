#pragma once

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "calc/checked_lines.h"
#include "declarations/lines/lines.h"
#include "session/session.h"

namespace calc {

/// Reference tables that the rules probe.
enum class CodeTable : int { kHS8, kTari, kTari_UE, kTranzactii_Unit, kIncoterms, kMOD_TRANS, kCount };

/// Asks whether a value is a row of a reference table, and remembers the answer for the run. The value goes
/// into the statement as it stands; a probe that fails counts as no row and is logged.
class CodeProbes {
 public:
  explicit CodeProbes(session::Session& session) : session_(&session) {}
  bool Known(CodeTable table, std::string_view value);

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  using Answers = std::unordered_map<std::string, bool, Hash, std::equal_to<>>;

  bool Ask(CodeTable table, std::string_view value);

  session::Session* session_;
  std::array<Answers, static_cast<std::size_t>(CodeTable::kCount)> answers_;
};

/// What the rules need to know beyond the line.
struct CheckContext {
  declarations::Identity identity;
  bool CheckValStatistica = false;
  bool ValoriRotunjite = false;
  bool VerificaNet = false;
  bool tariff_of_period = true;  ///< false: the one open is another period's

  bool DispatchesFrom2015() const { return identity.TIP == "O" && identity.Anul >= 2015; }
  int value_decimals() const { return ValoriRotunjite ? 0 : 2; }
};

/// The fixed list of checks, in their order, run on one line after another.
class CheckerRules {
 public:
  CheckerRules(session::Session& session, const CheckContext& context, CheckedLines& lines,
               std::string& report);

  /// Checks the current line, appending its problems to the report; true where it has any.
  bool CheckLine();
  /// The boxes to show for all lines checked, in their order.
  const std::vector<std::string>& boxes() const { return boxes_; }

  // What a rule is made of.
  CheckedLines& lines() { return *lines_; }
  const CheckContext& context() const { return context_; }
  bool Known(CodeTable table, std::string_view value) { return probes_.Known(table, value); }
  /// A box for the user. It waits for the answer, so it is shown once nothing is locked any more.
  void AddBox(std::string text) { boxes_.push_back(std::move(text)); }

  /// One "… ESTE GOL" line for each empty column of the positions from `first` to `last`.
  void RequireFilled(int first, int last);
  void RequireKnown(CodeTable table, LineColumn column, std::string_view suffix);
  void RequireAbove0(LineColumn column, int decimals, std::string_view suffix);
  void ValueProblem(LineColumn column, std::string_view suffix);
  void ValueProblem(LineColumn column, std::string_view value, std::string_view suffix);
  void SupplementaryUnitProblem(std::string_view suffix);
  void Problem(std::initializer_list<std::string_view> parts);

 private:
  session::Session* session_;
  CheckContext context_;
  CheckedLines* lines_;
  std::string* report_;
  CodeProbes probes_;
  std::vector<void (*)(CheckerRules&)> checks_;  ///< those that apply to the declaration
  std::vector<std::string> boxes_;
  bool marked_ = false;
};

}  // namespace calc
