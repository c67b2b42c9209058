// The grid of the screens over a table of 65,000 lines: reading and showing it, turning pages, sorting,
// searching while typing, resizing a column, writing the spreadsheet. Run without a display
// (QT_QPA_PLATFORM=offscreen); everything is painted into memory all the same.
//
//   grid_bench [LINES]     65,000 unless given

#include <fmt/format.h>

#include <QApplication>
#include <QHeaderView>
#include <QImage>
#include <QLocale>
#include <QScrollBar>
#include <QTest>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "support/test_host.h"
#include "ui/grid_export.h"
#include "ui/list_screen.h"
#include "ui/memory.h"

namespace {

constexpr char kPath[] = "C:\\Bench\\Firma.mdb";

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void MakeTable(const store::Environment& environment, int lines) {
  store::Connection::CreateDatabase(environment, kPath);
  store::Connection connection(environment);
  connection.Open(store::JetString(kPath));
  connection.Execute(
      "CREATE TABLE Linii (Record_ID COUNTER, Data DATETIME, Descriere TEXT(255), Cod_NC TEXT(8), Tara "
      "TEXT(2), Cantitate DOUBLE, Val_Valuta DOUBLE, Moneda TEXT(3), Curs DOUBLE, Val_Fiscala DOUBLE, Net "
      "DOUBLE, Probleme SHORT)");
  store::Transaction transaction(connection);
  store::Recordset rows = connection.QueryForUpdate("SELECT * FROM Linii WHERE 1=0");
  for (int i = 0; i < lines; ++i) {
    rows.AddNew();
    rows.Set("Data", store::Date{46000.0 + i % 365});
    rows.Set("Descriere", fmt::format("Piesa de schimb nr. {} pentru masini", (i * 7919) % lines));
    rows.Set("Cod_NC", fmt::format("{:08}", 1'012'100 + (i * 31) % 90'000));
    rows.Set("Tara", i % 3 == 0 ? "DE" : "IT");
    rows.Set("Cantitate", i % 100);
    rows.Set("Val_Valuta", i * 1.37);
    rows.Set("Moneda", "EUR");
    rows.Set("Curs", 4.9751);
    rows.Set("Val_Fiscala", i * 6.8159);
    rows.Set("Net", i * 0.25);
    rows.Set("Probleme", i % 9 == 0 ? -1 : 0);
    rows.Update();
  }
  transaction.Commit();
}

std::vector<ui::Column> Columns() {
  using ui::Format;
  return {{"Record_ID", "ID", Format::kWhole, 8},
          {"Data", "Data rec.", Format::kDate, 10},
          {"Descriere", "Descriere", Format::kText, 40},
          {"Cod_NC", "Cod vamal", Format::kText, 10},
          {"Tara", "Tara", Format::kText, 6},
          {"Cantitate", "Cantitate", Format::kRate, 12},
          {"Val_Valuta", "Valoare Valuta", Format::kAmount, 14},
          {"Moneda", "Moneda", Format::kText, 7},
          {"Curs", "Curs", Format::kRate, 10},
          {"Val_Fiscala", "Val Fiscala", Format::kAmount, 14},
          {"Net", "Net", Format::kAmount, 12}};
}

void Report(const char* what, double milliseconds) { std::printf("%-52s %9.2f ms\n", what, milliseconds); }

}  // namespace

int main(int argc, char** argv) {
  const int lines = argc > 1 ? std::atoi(argv[1]) : 65'000;
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QLocale::setDefault(QLocale(QLocale::Romanian, QLocale::Romania));
  QApplication application(argc, argv);
  test_support::TestHost machine;
  session::Session session{machine.host()};
  ui::ScreenMemory memory(machine.files, "C:\\Bench\\", "ana");
  ui::Context context{session, memory, {}, {}};
  const store::Environment environment = session::StoreEnvironment(session);
  machine.files.CreateFolders("C:\\Bench\\");
  MakeTable(environment, lines);
  store::Connection connection(environment);
  connection.Open(store::JetString(kPath));
  std::printf("%d lines of 11 columns, window 1366x768\n", lines);

  std::unique_ptr<ui::RecordsetModel> model;
  std::unique_ptr<ui::ListScreen> list;
  QImage picture(1366, 768, QImage::Format_ARGB32_Premultiplied);
  const auto paint = [&] { list->render(&picture); };
  store::Recordset rows;
  Report("reading the query", Milliseconds([&] { rows = connection.Query("SELECT * FROM Linii"); }));
  Report("opening the list and its first picture", Milliseconds([&] {
           model = std::make_unique<ui::RecordsetModel>(Columns(), rows);
           list = std::make_unique<ui::ListScreen>(context, "Frm_Banc", nullptr);
           list->SetModel(model.get());
           list->show();
           list->resize(1366, 768);
           QApplication::processEvents();
           paint();
         }));
  ui::Grid& grid = *list->grid();
  QScrollBar* bar = grid.verticalScrollBar();
  constexpr int kPages = 200;
  double worst = 0, all = 0;
  for (int i = 0; i < kPages; ++i) {
    const double took = Milliseconds([&] {
      bar->setValue(static_cast<int>(std::int64_t{bar->maximum()} * i / kPages));
      paint();
    });
    worst = std::max(worst, took);
    all += took;
  }
  Report("scrolling to a far page and its picture, mean", all / kPages);
  Report("    worst", worst);
  all = worst = 0;
  grid.SelectRow(0, 2);
  for (int i = 0; i < kPages; ++i) {
    const double took = Milliseconds([&] {
      QTest::keyClick(&grid, Qt::Key_Down);
      paint();
    });
    worst = std::max(worst, took);
    all += took;
  }
  Report("arrow down and the whole window's picture, mean", all / kPages);
  Report("    worst", worst);
  Report("resizing a column", Milliseconds([&] { grid.horizontalHeader()->resizeSection(2, 300); }));
  Report("sorting by a text column",
         Milliseconds([&] { grid.horizontalHeader()->setSortIndicator(2, Qt::AscendingOrder); }));
  Report("sorting by a number column",
         Milliseconds([&] { grid.horizontalHeader()->setSortIndicator(9, Qt::DescendingOrder); }));
  grid.SelectRow(0, 2);
  grid.StartSearch();
  worst = 0;
  for (const char key : std::string("piesa de schimb nr. 64999x")) {
    worst = std::max(worst, Milliseconds([&] { QTest::keyClick(&grid, key); }));
  }
  Report("a key of the search, worst (found late, not found)", worst);
  QTest::keyClick(&grid, Qt::Key_Escape);
  grid.selectAll();
  Report("copying all cells", Milliseconds([&] { grid.SelectedText(); }));
  Report("writing the spreadsheet", Milliseconds([&] { list->SaveSpreadsheet("C:\\Bench\\lista.xlsx"); }));
  return 0;
}
