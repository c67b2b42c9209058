// Renders the screens without a display, with sample data, as pictures for docs/screenshots.
// Usage: screenshots FOLDER [--dark] [screen …]; QT_SCALE_FACTOR=2 gives those of a 200 % display.

#include <QFile>
#include <QTemporaryDir>

#include "desk.h"
#include "ui/romanian.h"

namespace {

/// The laptop screen that the screens have to fit on.
void DescribeScreen(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write(R"({"screens":[{"name":"laptop","x":0,"y":0,"width":1366,"height":768,"dpr":1}]})");
}

QPalette Dark() {
  const QColor window(45, 45, 48), base(30, 30, 30), text(230, 230, 230), dim(140, 140, 140);
  QPalette palette(window);
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::Button, window.lighter(115));
  palette.setColor(QPalette::Highlight, QColor(38, 110, 190));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::PlaceholderText, dim);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, dim);
  }
  palette.setColor(QPalette::ToolTipBase, window);
  palette.setColor(QPalette::ToolTipText, text);
  return palette;
}

/// The platform without a display reports that it cannot hand on size hints with every window.
void PrintRelevant(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (text.contains(QLatin1String("propagateSizeHints")) || text.contains(QLatin1String("XDG_RUNTIME_DIR")))
    return;
  std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(PrintRelevant);
  const QTemporaryDir scratch;
  const QString description = scratch.filePath(QStringLiteral("screen.json"));
  DescribeScreen(description);
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + description.toUtf8());
  QLocale::setDefault(QLocale(QLocale::Romanian, QLocale::Romania));
  QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication application(argc, argv);
  application.setQuitOnLastWindowClosed(false);
  const ui::RomanianTexts texts;
  QCoreApplication::installTranslator(const_cast<ui::RomanianTexts*>(&texts));

  QStringList wanted = QCoreApplication::arguments().mid(1);
  if (wanted.removeAll(QStringLiteral("--dark")) > 0) QApplication::setPalette(Dark());
  if (wanted.isEmpty()) {
    std::fputs("usage: screenshots FOLDER [--dark] [screen ...]\n", stderr);
    return 2;
  }
  const QDir folder(wanted.takeFirst());
  folder.mkpath(QStringLiteral("."));

  int failed = 0;
  std::vector<screenshots::Shot> shots = screenshots::ProgramShots();
  for (const screenshots::Shot& shot : screenshots::Shots()) shots.push_back(shot);
  for (const screenshots::Shot& shot : screenshots::DeclarationShots()) shots.push_back(shot);
  for (const screenshots::Shot& shot : screenshots::ReportShots()) shots.push_back(shot);
  for (const screenshots::Shot& shot : screenshots::EditorShots()) shots.push_back(shot);
  for (const screenshots::Shot& shot : screenshots::ImportShots()) shots.push_back(shot);
  for (const screenshots::Shot& shot : screenshots::TariffShots()) shots.push_back(shot);
  for (const screenshots::Shot& shot : screenshots::QueryShots()) shots.push_back(shot);
  for (const screenshots::Shot& shot : shots) {
    if (!wanted.isEmpty() && !wanted.contains(QString::fromLatin1(shot.screen))) continue;
    try {
      screenshots::Desk desk(folder);
      shot.take(desk);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s: %s\n", shot.screen, error.what());
      ++failed;
    }
  }
  return failed == 0 ? 0 : 1;
}
