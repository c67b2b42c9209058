// The editor's commands.

#include <QApplication>
#include <QFileDialog>

#include "declarations/screens/editor_model.h"
#include "declarations/screens/editor_screen.h"
#include "declarations/screens/filter_panel.h"
#include "declarations/screens/findings.h"
#include "declarations/screens/header_panel.h"
#include "reports/screens/preview.h"
#include "ui/file_options.h"
#include "ui/progress.h"
#include "ui/text.h"

namespace declarations {

using ui::Q;
using ui::Utf8;

namespace {

constexpr std::size_t kRefusedShown = 12;  // cells of a pasted block; a longer list would not be read

std::string RefusedText(const PasteResult& result) {
  std::string text =
      fmt::format("S-au preluat {} celule. Nu s-au preluat {} :\r\n", result.cells, result.refused.size());
  for (std::size_t i = 0; i < std::min(result.refused.size(), kRefusedShown); ++i) {
    const RefusedCell& cell = result.refused[i];
    text += fmt::format("\r\nLinia {} - {}", cell.row + 1, cell.reason);
    if (cell.column < 0) text += fmt::format(" ('{}')", cell.text);
  }
  if (result.refused.size() > kRefusedShown) {
    text += fmt::format("\r\n... si inca {}", result.refused.size() - kRefusedShown);
  }
  return text;
}

}  // namespace

// --- lines

void Frm_INTRASTAT::NewLine() {
  if (!editor_.SaveLine()) return;
  FollowLines();
  grid()->SelectRow(model_->Rows() - 1, FirstEditable());
  grid()->setFocus();
}

void Frm_INTRASTAT::Duplicate() {
  const int row = editor_.DuplicateLine(grid()->current_row());
  FollowLines();
  if (row < 0) return;
  grid()->SelectRow(row);
  grid()->setFocus();
  ShowStatus(QStringLiteral("Linia a fost copiata la sfarsit"));
}

void Frm_INTRASTAT::Delete() {
  std::vector<int> rows = grid()->selected_rows();
  std::erase_if(rows, [this](int row) { return row >= editor_.row_count(); });
  const int first = rows.empty() ? -1 : rows.front();
  bool deleted = false;
  Reading([&] { return deleted = editor_.DeleteLines(rows); });
  if (!deleted) return;
  if (first >= 0) grid()->SelectRow(std::min(first, model_->Rows() - 1));
  ShowStatus(rows.size() == 1 ? QStringLiteral("Linia a fost stearsa")
                              : QStringLiteral("Linii sterse : %1").arg(rows.size()));
}

void Frm_INTRASTAT::CopyAbove() {
  grid()->RevertEdit();
  const QModelIndex at = grid()->currentIndex();
  if (!at.isValid()) return;
  const bool beginning = at.row() >= editor_.row_count();
  const EditResult result = editor_.CopyAbove(at.row(), at.column());
  if (!result.accepted && beginning && editor_.pending_row() == at.row()) editor_.CancelLine();
  FollowLines();
  ShowStatus(Q(result.message));
  if (!result.accepted) {
    QApplication::beep();
    return;
  }
  auto_save_.start();
  grid()->setFocus();
}

void Frm_INTRASTAT::Paste(int row, int column, const QString& text) {
  const std::vector<int> shown = grid()->visible_columns();
  const auto first = std::find(shown.begin(), shown.end(), column);
  PasteResult result;
  {
    const ui::LongRun run(session().host.progress, QStringLiteral("Lipire"));
    result = editor_.Paste(row, std::vector<int>(first, shown.end()), Utf8(text));
  }
  FollowLines();
  if (!result.done) return;
  if (!result.refused.empty()) session().host.prompter.Error(RefusedText(result));
  ShowStatus(
      QStringLiteral("S-au lipit %1 celule, linii adaugate : %2").arg(result.cells).arg(result.lines_added));
}

// --- loading

void Frm_INTRASTAT::Refresh() {
  if (!Reading([this] { return editor_.Refresh(); })) return;
  // The order of entry comes back, here and at the next opening.
  grid()->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  ShowStatus(QStringLiteral("Reincarcat"));
}

void Frm_INTRASTAT::Filter() {
  if (!Reading([this] { return editor_.Filter(filter_->condition()); })) return;
  ShowStatus(editor_.filtered()
                 ? QStringLiteral("Linii care indeplinesc conditia : %1").arg(editor_.row_count())
                 : QString());
}

void Frm_INTRASTAT::ShowAll() {
  filter_->Clear();
  if (Reading([this] { return editor_.Filter({}); })) ShowStatus({});
}

void Frm_INTRASTAT::ExecuteUpdate() {
  const QString column = filter_->update_column();
  if (!Reading([&] {
        return editor_.ExecuteUpdate(Utf8(column), Utf8(filter_->update_value()), filter_->condition());
      })) {
    return;
  }
  grid()->setFocus();
}

void Frm_INTRASTAT::ShowProvenance(bool on) {
  auto& button = *findChild<QPushButton*>(QStringLiteral("CmdProvenienta"));
  const std::int64_t line = CurrentLine();
  if (!grid()->CommitEdit() || !editor_.ShowProvenance(on)) {
    const QSignalBlocker quiet(&button);
    button.setChecked(editor_.provenance());
    return;
  }
  const QSignalBlocker quiet(&button);
  button.setChecked(on);
  MakeModel();
  grid()->SelectRow(std::max(0, editor_.RowOf(line)));
  grid()->setFocus();
}

// --- checking and filing

void Frm_INTRASTAT::Check() {
  CheckOutcome outcome = CheckOutcome::kNotRun;
  Reading([&] {
    const ui::LongRun run(session().host.progress, QStringLiteral("Verificare declaratie"));
    outcome = editor_.Check(nullptr);
    return outcome == CheckOutcome::kFine;
  });
  switch (outcome) {
    case CheckOutcome::kNotRun:
      return ShowStatus(QStringLiteral("Declaratia nu a fost verificata"));
    case CheckOutcome::kFine:
      ShowStatus(QStringLiteral("Verificat: nu sunt probleme"));
      break;
    case CheckOutcome::kProblems:
      ShowStatus(QStringLiteral("Verificat, probleme : %1").arg(editor_.problems().all().size()));
      break;
  }
  ShowProblemsOf(editor_.problems());
}

void Frm_INTRASTAT::ShowProblems() {
  Frm_Intrastat_Probleme& problems = problems_screen();
  problems.ShowReport(editor_.report());
  if (!problems.isVisible()) {
    problems.show();
    // At the lower edge, where it hides the fewest lines.
    const QPoint corner = mapToGlobal(rect().bottomRight());
    problems.move(corner.x() - problems.width() - 24, corner.y() - problems.height() - 48);
  }
  problems.activateWindow();
}

void Frm_INTRASTAT::ShowProblemsOf(const LineProblems& found) {
  if (found.all().empty()) {
    if (problems_screen_ != nullptr) problems_screen_->hide();
    return;
  }
  ShowProblems();
}

bool Frm_INTRASTAT::ReviewFindings(const std::vector<Finding>& findings) {
  std::vector<Finding> shown = findings;
  for (Finding& finding : shown) finding.where = Utf8(header_->CaptionOf(Q(finding.where)));
  Frm_Intrastat_Observatii review(context(), shown, this);
  if (review.exec() == QDialog::Accepted) return true;
  if (review.chosen() >= 0) led_to_ = findings[static_cast<std::size_t>(review.chosen())];
  return false;
}

void Frm_INTRASTAT::Export() {
  ExportResult result;
  led_to_.reset();
  const auto busy = [this] {
    return std::make_unique<ui::LongRun>(session().host.progress, QStringLiteral("Fisier Intrastat"));
  };
  Reading([&] {
    std::unique_ptr<ui::LongRun> run = busy();
    ExportCallbacks callbacks;
    // Dialogs stand alone, not behind a progress box.
    callbacks.choose_folder = [&]() -> std::string {
      run.reset();
      const QString chosen =
          QFileDialog::getExistingDirectory(this, QStringLiteral("Folderul declaratiilor"));
      run = busy();
      if (chosen.isEmpty()) return {};
      return session().host.files.drives().FromHost(std::filesystem::path(chosen.toStdU16String()));
    };
    callbacks.review = [&](const std::vector<Finding>& findings) {
      run.reset();
      const bool go_on = ReviewFindings(findings);
      run = busy();
      return go_on;
    };
    result = editor_.Export(std::move(callbacks));
    return result.outcome == ExportOutcome::kWritten;
  });
  header_->Fill();  // the company's name comes back as it was filed
  switch (result.outcome) {
    case ExportOutcome::kWritten:
      ShowStatus(QStringLiteral("Fisier scris: ") + Q(result.path));
      ui::Frm_Fisier_Optiuni(context(), result.path, this).exec();
      break;
    case ExportOutcome::kProblems:
      ShowStatus(QStringLiteral("Fisierul nu s-a scris, probleme : %1").arg(editor_.problems().all().size()));
      ShowProblemsOf(editor_.problems());
      break;
    default:
      ShowStatus(QStringLiteral("Fisierul nu s-a scris"));
      break;
  }
  if (!led_to_) return;
  const Finding finding = *led_to_;
  if (finding.Record_ID != 0) {
    GoTo(finding.Record_ID, finding.column);
  } else {
    header_->GoTo(Q(finding.where));
  }
  ShowStatus(header_->CaptionOf(Q(finding.where)) + QStringLiteral(": ") + Q(finding.what));
}

void Frm_INTRASTAT::PrintDeclaration() {
  if (!grid()->CommitEdit()) return;
  if (editor_.pending() && !editor_.SaveLine()) return;
  FollowLines();
  // Whoever has chosen lines wants these.
  const bool chosen = editor_.filtered() || editor_.provenance();
  reports::PreviewDeclaration(context(), editor_.identity(), editor_.request().Check_XML_Detaliat,
                              {model_.get(), grid()->visible_columns(),
                               QStringLiteral("  REPORT - ") + windowTitle(), "Declaratie_Ecran"},
                              chosen, this);
}

// --- calculations

void Frm_INTRASTAT::Calculate(const EditorCommands::Calculation& calculation,
                              const std::optional<std::string>& filter) {
  FollowLines();
  if (!filter) return;
  calculation(this, *filter);
  Reading([this] { return editor_.ReadAgain(); });
}

void Frm_INTRASTAT::RecalculateStatisticalValue() {
  Calculate(commands_.recalculate_statistical_value, editor_.RecalcValStatFilter());
}

void Frm_INTRASTAT::RedistributeTransport() {
  Calculate(commands_.redistribute_transport, editor_.CalculationFilter());
}

void Frm_INTRASTAT::RedistributeNet() { Calculate(commands_.redistribute_net, editor_.CalculationFilter()); }

}  // namespace declarations
