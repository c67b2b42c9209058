#include "declarations/screens/problems.h"

#include <QKeyEvent>
#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>
#include <set>

#include "calc/checker.h"
#include "declarations/list/declaration_list.h"
#include "reports/screens/preview.h"
#include "ui/list_screen.h"
#include "ui/text.h"

namespace declarations {

using ui::Q;

Frm_Intrastat_Probleme::Frm_Intrastat_Probleme(ui::Context& screen_context, const Identity& identity,
                                               GoToProblem go_to, QWidget* parent)
    : Reader(screen_context, QStringLiteral("Frm_Intrastat_Probleme"), parent),
      identity_(identity),
      go_to_(std::move(go_to)) {
  setWindowTitle(QStringLiteral("Probleme - %1 %2 / %3")
                     .arg(Q(DeclarationList::DirectionText(identity.TIP)))
                     .arg(identity.Anul)
                     .arg(identity.Luna));
  SetFirstSize({820, 420});
  commands()->Add(
      QStringLiteral("CmdUrmatoarea"), QStringLiteral("&Urmatoarea problema"), QStringLiteral("erori"),
      [this] { Next(); }, QKeySequence(Qt::Key_F3));
  commands()->Add(
      QStringLiteral("CmdPrecedenta"), QStringLiteral("P&recedenta"), QString(), [this] { Previous(); },
      QKeySequence(Qt::SHIFT | Qt::Key_F3));
  AddReaderCommands();
  text()->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text()->setLineWrapMode(QTextEdit::NoWrap);
  text()->setPlaceholderText(QStringLiteral(
      "Aici apar problemele gasite de verificare. Declaratia nu a fost inca verificata: comanda "
      "Verifica (F9) din editor o face."));
  text()->installEventFilter(this);
  OnLineActivated([this](int line) { GoTo(ProblemAt(line)); });
  Load();
}

void Frm_Intrastat_Probleme::Load() {
  const std::string path = calc::ProblemsReportPath(session(), identity_);
  if (!session().host.files.Exists(path)) {
    ShowReport("");
    return;
  }
  Try([&] { ShowReport(session().host.files.Read(path)); });
}

void Frm_Intrastat_Probleme::ShowReport(const std::string& report) {
  checked_ = !report.empty();
  problems_ = LineProblems(report);
  QString shown;
  for (const std::string& line : platform::SplitLines(report)) shown += Q(line) + '\n';
  shown.chop(1);
  SetPlainText(shown);
  current_ = std::min(current_, problem_count() - 1);
  found_ = true;
  for (const char* name : {"CmdUrmatoarea", "CmdPrecedenta"}) {
    findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(problem_count() > 0);
  }
  for (const char* name : {"CmdTipareste", "CmdPdf"}) {
    findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(checked_);
  }
  Mark();
  ShowCount();
}

int Frm_Intrastat_Probleme::ProblemAt(int line) const {
  const auto& all = problems_.all();
  const auto after =
      std::upper_bound(all.begin(), all.end(), line,
                       [](int wanted, const LineProblem& problem) { return wanted < problem.report_line; });
  return static_cast<int>(after - all.begin()) - 1;
}

void Frm_Intrastat_Probleme::Next() {
  if (problem_count() > 0) GoTo((current_ + 1) % problem_count());
}

void Frm_Intrastat_Probleme::Previous() {
  if (problem_count() > 0) GoTo(current_ <= 0 ? problem_count() - 1 : current_ - 1);
}

void Frm_Intrastat_Probleme::Print() { reports::PreviewProblems(context(), identity_, problems_, this); }

void Frm_Intrastat_Probleme::ExportPdf() { reports::ExportProblems(context(), identity_, problems_, this); }

void Frm_Intrastat_Probleme::GoTo(int problem) {
  if (problem < 0) return;
  current_ = problem;
  Mark();
  found_ = !go_to_ || go_to_(problems_.all()[static_cast<std::size_t>(problem)]);
  ShowCount();
}

void Frm_Intrastat_Probleme::Mark() {
  QList<QTextEdit::ExtraSelection> marks;
  if (current_ >= 0) {
    const auto& problem = problems_.all()[static_cast<std::size_t>(current_)];
    QTextCursor cursor(text()->document()->findBlockByNumber(problem.report_line));
    text()->setTextCursor(cursor);
    QTextEdit::ExtraSelection mark;
    mark.cursor = cursor;
    mark.format.setBackground(palette().highlight());
    mark.format.setForeground(palette().highlightedText());
    mark.format.setProperty(QTextFormat::FullWidthSelection, true);
    marks.append(mark);
  }
  text()->setExtraSelections(marks);
}

void Frm_Intrastat_Probleme::ShowCount() {
  if (!checked_) {
    ShowStatus(QStringLiteral("Declaratia nu a fost inca verificata"));
    return;
  }
  if (problem_count() == 0) {
    ShowStatus(QStringLiteral("Nu sunt probleme"));
    return;
  }
  std::set<std::int64_t> lines;
  for (const LineProblem& problem : problems_.all()) lines.insert(problem.Record_ID);
  QString status = QStringLiteral("Probleme: %1      Linii: %2").arg(problem_count()).arg(lines.size());
  if (current_ >= 0) {
    status += QStringLiteral("      Problema %1 din %2").arg(current_ + 1).arg(problem_count());
  }
  if (!found_) status += QStringLiteral(": linia ei nu mai exista in declaratie");
  ShowStatus(status);
}

bool Frm_Intrastat_Probleme::eventFilter(QObject* watched, QEvent* event) {
  if (watched == text() && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      GoTo(ProblemAt(text()->textCursor().blockNumber()));
      return true;
    }
  }
  return Reader::eventFilter(watched, event);
}

}  // namespace declarations
