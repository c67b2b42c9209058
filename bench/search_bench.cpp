// The tariff's searches on a full tariff and a company of 65,000 lines: the advanced search against the same
// two statements of raw SQLite on the same files, the list's search key by key, the notes of a row. Prints
// Markdown; the files lie in memory (/dev/shm), so that no figure holds the disk's sync.

#include <fmt/format.h>

#include <QApplication>
#include <QImage>
#include <QTest>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "measure.h"
#include "support/installation.h"
#include "tariff/levels.h"
#include "tariff/notes.h"
#include "tariff/screens/browser.h"
#include "tariff/search.h"
#include "ui/memory.h"

namespace {

constexpr int kLines = 65000;
constexpr int kRuns = 7;

/// Lines over all codes of the tariff, described by it.
void AddLines(session::Session& session) {
  store::Recordset goods = session.tariff.Query("SELECT HS8_COD, DESCRIERE FROM HS_8");
  store::Transaction transaction(session.company);
  store::Recordset lines = session.company.QueryForUpdate("SELECT * FROM Intrastat WHERE 1=0");
  for (int i = 0; i < kLines; ++i) {
    lines.AddNew();
    lines.Set("TIP", i % 3 == 0 ? "O" : "I");
    lines.Set("Cod_Fiscal", "RO123456");
    lines.Set("Anul", 2020 + i % 7);
    lines.Set("Luna", 1 + i % 12);
    lines.Set("Cod_NC", goods["HS8_COD"].ToText());
    lines.Set("Descriere", fmt::format("{} model {}", goods["DESCRIERE"].ToText().substr(0, 60), i));
    lines.Set("Cantitate", i % 90);
    lines.Set("Val_Fiscala", i * 1.37);
    lines.Update();
    goods.MoveNext();
    if (goods.eof()) goods.MoveFirst();
  }
  transaction.Commit();
}

/// Distinct descriptions as long as the real ones.
void Describe(session::Session& session) {
  store::Transaction transaction(session.tariff);
  store::Recordset rows = session.tariff.QueryForUpdate("SELECT HS12_COD, DESCRIERE FROM HS_8");
  for (int i = 0; !rows.eof(); rows.MoveNext(), ++i) {
    rows.Set("DESCRIERE", fmt::format("{} - Masini si aparate de felul {}, chiar automate, pentru "
                                      "prelucrarea datelor - Altele decat cele de la numarul {}",
                                      rows["DESCRIERE"].ToText(), i * 7919 % 10007, i));
    rows.Update();
  }
  transaction.Commit();
}

void MeasureSearches(test_support::Installation& at) {
  const auto host = [&](const std::string& path) { return at.files().ToHost(path).string(); };
  bench::Raw tariff(host(at.session.tariff.path())), company(host(at.session.company.path()));
  std::printf("\n| expression | tariff rows | lines | s | raw s | ratio |\n|---|---|---|---|---|---|\n");
  for (const char* expression : {"847130", "84", "automate", "zzz", "a"}) {
    std::optional<tariff::SearchResult> found;
    const double ours = bench::Shortest(kRuns, [&] { found = tariff::SearchTariff(at.session, expression); });
    int rows = 0, lines = 0;
    const double raw = bench::Shortest(kRuns, [&] {
      rows = tariff.Step(fmt::format(
          "SELECT HS8_COD, HS12_COD, DATE_START, UM_SUPL, DESCRIERE FROM HS_8 WHERE DESCRIERE LIKE '%{0}%' "
          "OR HS12_COD LIKE '%{0}%'",
          expression));
      lines = company.Step(fmt::format(
          "SELECT Anul, luna, Cod_NC, Cantitate, UM, Val_Fiscala, Descriere FROM Intrastat WHERE Descriere "
          "LIKE '%{0}%' OR Cod_NC LIKE '%{0}%' ORDER BY Anul DESC, luna DESC",
          expression));
    });
    if (rows != found->tariff.record_count() || lines != found->declarations.record_count()) {
      std::printf("| %s: %lld and %lld rows, raw %d and %d |\n", expression,
                  static_cast<long long>(found->tariff.record_count()),
                  static_cast<long long>(found->declarations.record_count()), rows, lines);
      continue;
    }
    std::printf("| %s | %d | %d | %.4f | %.4f | %.2f |\n", expression, rows, lines, ours, raw, ours / raw);
  }
}

/// Key by key in the browser, each with the picture of its window.
void MeasureKeys(test_support::Installation& at) {
  ui::ScreenMemory memory(at.files(), "C:\\Bench\\", "ana");
  ui::Context context{at.session, memory, {}, {}};
  tariff::Frm_Tarif browser(context, *tariff::FindLevel(8));
  browser.show();
  browser.resize(1366, 768);
  QImage picture(1366, 768, QImage::Format_ARGB32_Premultiplied);
  browser.render(&picture);
  double worst = 0, all = 0;
  int keys = 0;
  const auto type = [&](int column, const char* whole) {
    browser.grid()->SelectRow(0, column);
    browser.grid()->StartSearch();
    for (const char* key = whole; *key != 0; ++key) {
      const double start = bench::Seconds();
      QTest::keyClick(browser.grid(), *key);
      browser.render(&picture);
      const double took = bench::Seconds() - start;
      worst = std::max(worst, took);
      all += took;
      ++keys;
    }
    QTest::keyClick(browser.grid(), Qt::Key_Escape);
  };
  type(0, "97069000");
  type(1, "970690000000");
  type(2, "obiecte de arta, antichitati zzz");
  std::printf(
      "\nA key of the browser's search on %d codes, the window painted: %.2f ms on average, %.2f ms at the "
      "longest.\n",
      browser.grid()->grid_model()->Rows(), all / keys * 1000, worst * 1000);
}

void MeasureNotes(test_support::Installation& at) {
  constexpr char kPath[] = "C:\\note.xml";
  std::string xml = "<CNSTEXT><SECTION><CHAPTER>";
  for (store::Recordset rows = at.session.tariff.Query("SELECT HS12_COD, DESCRIERE FROM HS_8"); !rows.eof();
       rows.MoveNext()) {
    xml += fmt::format("<SEITEM KEY=\"{0}\"><CN>{1}</CN><DM>{1}</DM><DM>{1}</DM></SEITEM>",
                       rows["HS12_COD"].ToText(), rows["DESCRIERE"].ToText());
  }
  at.files().Replace(kPath, xml + "</CHAPTER></SECTION></CNSTEXT>");
  tariff::ExplanatoryNotes notes;
  const double load = bench::Shortest(kRuns, [&] { notes.Load(at.machine.host(), kPath); });
  const double row = bench::Shortest(kRuns, [&] { notes.Rtf("970690000000"); });
  std::printf("\nNotes of %zu KiB: loaded in %.3f s, those of a row in %.2f ms.\n", xml.size() / 1024, load,
              row * 1000);
}

}  // namespace

int main(int argc, char** argv) {
  setenv("TMPDIR", "/dev/shm", 1);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  test_support::Installation at;
  at.prompter().AcceptAnything(true);
  Describe(at.session);
  AddLines(at.session);
  MeasureSearches(at);
  MeasureKeys(at);
  MeasureNotes(at);
  return 0;
}
