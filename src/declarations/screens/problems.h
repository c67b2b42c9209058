#pragma once

#include <functional>

#include "declarations/editor/problems.h"
#include "declarations/lines/lines.h"
#include "ui/reader.h"

namespace declarations {

/// The checker's report of a declaration, to be worked off: it stands open beside the editor, and every
/// problem leads to its line and cell there.
class Frm_Intrastat_Probleme : public ui::Reader {
  Q_OBJECT
 public:
  /// Goes to a problem's line and cell; false where the line is gone.
  using GoToProblem = std::function<bool(const LineProblem& problem)>;

  Frm_Intrastat_Probleme(ui::Context& context, const Identity& identity, GoToProblem go_to, QWidget* parent);

  /// Reads the report of the last check from its file; the place in it is kept.
  void Load();
  /// A report that has just been made; its file may be an earlier one where the folder refuses writing.
  void ShowReport(const std::string& report);

  int problem_count() const { return static_cast<int>(problems_.all().size()); }
  int current() const { return current_; }  ///< problem, from 0; -1: none yet

  void Next();
  void Previous();
  /// As a report, with the lines' invoices and codes.
  void Print() override;
  void ExportPdf() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void GoTo(int problem);
  /// The problem that a line of the text belongs to; -1 above the first.
  int ProblemAt(int line) const;
  void Mark();
  void ShowCount();

  Identity identity_;
  GoToProblem go_to_;
  LineProblems problems_;
  int current_ = -1;
  bool found_ = true, checked_ = false;
};

}  // namespace declarations
