// The preview of a 2,000-line declaration: time to the first page on screen, to all pages, to the files; and
// the same of a list of 65,000 rows. Absolute times are of this machine.

#include <fmt/format.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QLocale>
#include <cstdio>

#include "reports/html.h"
#include "reports/screens/page_painter.h"
#include "reports/screens/page_view.h"
#include "reports/screens/raport.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"

namespace {

constexpr int kLines = 2000, kRows = 65'000;

double Milliseconds(const std::function<void()>& work) {
  QElapsedTimer since;
  since.start();
  work();
  return static_cast<double>(since.nsecsElapsed()) / 1e6;
}

void Row(const char* what, double milliseconds) { std::printf("%-52s %9.2f ms\n", what, milliseconds); }

/// Opens the preview, paints its first page, then does the rest.
void Measure(test_support::ScreenFixture& on, const reports::Subject& subject) {
  std::unique_ptr<reports::Frm_Raport> screen;
  QImage picture(1366, 768, QImage::Format_ARGB32_Premultiplied);
  Row("opening the preview and its first picture", Milliseconds([&] {
        screen = std::make_unique<reports::Frm_Raport>(on.context, subject, nullptr);
        screen->resize(1366, 768);
        screen->show();
        screen->render(&picture);
      }));
  Row("all pages", Milliseconds([&] {
        while (!screen->layout_of_pages().complete()) QApplication::processEvents();
      }));
  const int pages = screen->layout_of_pages().page_count();
  std::printf("    %d pages\n", pages);
  Row("going to a far page and its picture, mean", Milliseconds([&] {
                                                     for (int i = 0; i < 50; ++i) {
                                                       screen->view()->GoTo(pages * i / 50);
                                                       screen->render(&picture);
                                                     }
                                                   }) / 50);
  Row("PDF", Milliseconds([&] { screen->WritePdf("C:\\Declarix\\r.pdf"); }));
  Row("HTML", Milliseconds([&] { screen->WriteHtml("C:\\Declarix\\r.html"); }));
  Row("spreadsheet", Milliseconds([&] { screen->WriteXlsx("C:\\Declarix\\r.xlsx"); }));
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QLocale::setDefault(QLocale(QLocale::Romanian, QLocale::Romania));
  const QApplication application(argc, argv);
  test_support::ScreenFixture on;
  session::Session& session = on.at.session;
  {
    store::Transaction lines(session.company);
    for (int i = 0; i < kLines; ++i) {
      test_support::AddLine(session, "I", 2026, 3,
                            {{"Val_Fiscala", 100.25 + i},
                             {"Factura_Numar", fmt::format("F{}", i / 10)},
                             {"Descriere", fmt::format("Piesa de schimb nr. {} pentru utilaje", i)}});
    }
    lines.Commit();
  }
  std::printf("A declaration of %d lines\n", kLines);
  reports::Subject declaration;
  declaration.report = reports::kDetailed;
  declaration.placeholders =
      reports::DeclarationPlaceholders(session, {"I", test_support::Installation::kCompany, 2026, 3});
  Measure(on, declaration);

  std::printf("A list of %d rows without a report of its own\n", kRows);
  std::vector<std::vector<store::Value>> rows;
  for (int i = 0; i < kRows; ++i) {
    rows.push_back({i, fmt::format("Piesa de schimb nr. {}", i), "84713000", 100.25 * i, 0.5 * i});
  }
  reports::Subject list;
  list.title = QStringLiteral("  REPORT - LISTA -");
  list.rows = std::make_shared<reports::MemoryTable>(
      std::vector<reports::Table::Column>{{"Nr", "Nr", reports::Format::kWhole},
                                          {"Descriere", "Descriere", reports::Format::kText},
                                          {"Cod", "Cod vamal", reports::Format::kText},
                                          {"Valoare", "Valoare", reports::Format::kAmount},
                                          {"Net", "Net [Kg]", reports::Format::kAmount}},
      std::move(rows));
  Measure(on, list);
  return 0;
}
