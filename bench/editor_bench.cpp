// The declaration editor on a large declaration against raw SQLite: reading and sorting the lines, changing a
// cell, the bulk update. Prints Markdown tables of ratios; absolute times are of this machine and only for
// orientation. The files lie in memory (/dev/shm), so that no figure holds the disk's sync.

#include <fmt/format.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "calc/rates.h"
#include "declarations/editor/editor.h"
#include "measure.h"
#include "store/functions.h"
#include "support/installation.h"

namespace {

constexpr int kRows = 65000;
constexpr int kRuns = 5;
constexpr int kEdits = 500;

double ResidentMiB() {
  long pages = 0, resident = 0;
  if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

void AddLines(session::Session& session) {
  const char* const codes[] = {"84713000", "94036010", "09012100", "87089997"};
  const char* const countries[] = {"DE", "IT", "FR", "PL", "HU"};
  store::Transaction transaction(session.company);
  store::Recordset lines = session.company.QueryForUpdate("SELECT * FROM Intrastat WHERE Record_ID=0");
  for (int n = 0; n < kRows; ++n) {
    lines.AddNew();
    lines.Set("TIP", "I");
    lines.Set("Cod_Fiscal", "RO123456");
    lines.Set("Anul", 2026);
    lines.Set("Luna", 3);
    lines.Set("DataReceptiei", store::Date{46082.0 + n % 28});
    lines.Set("Descriere", fmt::format("Reper {} pentru montaj", n * 7919 % 4000));
    lines.Set("Cod_NC", codes[n % 4]);
    lines.Set("Descriere_NC",
              "Masini automate de prelucrare a datelor, portabile, cu greutatea maxima 10 kg");
    lines.Set("Cantitate", 1.0 + n % 50);
    lines.Set("UM", "BUC");
    lines.Set("Valoare_Valuta", 10.25 + n * 31 % 977);
    lines.Set("Moneda", "EUR");
    lines.Set("Curs_Schimb", 4.9751);
    lines.Set("Val_Fiscala", 51.0 + n * 31 % 977);
    lines.Set("Val_Stat", 51.0 + n * 31 % 977);
    lines.Set("Tara_Orig", countries[n / 7 % 5]);
    lines.Set("Tara_Exp", countries[n / 3 % 5]);
    lines.Set("Tara_Dest", "RO");
    lines.Set("Net", 1.37 + n % 211);
    lines.Set("Exista_UMS", 0);
    lines.Set("Nat_Tranz", "1.1");
    lines.Set("Incoterms", "CPT");
    lines.Set("Mod_Transp", "3");
    lines.Set("Factura_Numar", fmt::format("F{:06}", n / 20));
    lines.Set("VAT_ID", fmt::format("DE{:09}", n % 700));
    lines.Update();
  }
  transaction.Commit();
}

void PrintRatio(const char* what, double ours, double raw) {
  fmt::print("| {} | {:.3f} | {:.3f} | {:.2f} |\n", what, ours, raw, ours / raw);
}

void Must(bool done) {
  if (!done) throw std::runtime_error("refused");
}

void MeasureReading(session::Session& session, bench::Raw& raw) {
  const declarations::Identity identity{"I", "RO123456", 2026, 3};
  const std::string select = std::string("SELECT ") + declarations::kEditorColumns + " FROM Intrastat" +
                             declarations::IdentityFilter(identity) + " ORDER BY ";
  const auto raw_by = [&](const std::string& order) {
    return bench::Shortest(kRuns, [&] {
      if (raw.Step(select + order) != kRows) throw std::runtime_error("raw rows");
    });
  };
  const auto make = [&] {
    return std::make_unique<declarations::Editor>(session, identity, declarations::Editor::Mode::kModify,
                                                  ",");
  };
  fmt::print("| {} lines | s | raw s | ratio |\n|---|---|---|---|\n", kRows);
  const double plain = raw_by("Record_ID");
  malloc_trim(0);  // what was freed so far is not to be counted as room
  const double before = ResidentMiB();
  auto editor = make();
  Must(editor->Open());
  const double memory = ResidentMiB() - before;
  PrintRatio("open, with the header, the tariff and the totals",
             bench::Shortest(kRuns,
                             [&] {
                               editor = make();
                               Must(editor->Open());
                             }),
             plain);
  PrintRatio("read again", bench::Shortest(kRuns, [&] { Must(editor->Refresh()); }), plain);
  for (const char* field : {"Descriere", "Val_Fiscala", "Tara_Orig"}) {
    bool descending = false;
    PrintRatio(fmt::format("sort by {}", field).c_str(),
               bench::Shortest(kRuns,
                               [&] {
                                 descending = !descending;
                                 Must(editor->Sort(editor->ColumnOf(field), descending));
                               }),
               raw_by(fmt::format("{}, Record_ID", field)));
  }
  fmt::print("\nMemory of the lines: {:.1f} MiB for 10,000.\n\n", memory / kRows * 10000);
}

void MeasureEditing(session::Session& session, bench::Raw& raw) {
  const declarations::Identity identity{"I", "RO123456", 2026, 3};
  declarations::Editor editor(session, identity, declarations::Editor::Mode::kModify, ",");
  Must(editor.Open());
  fmt::print("| one change | mean ms | longest ms |\n|---|---|---|\n");
  const std::pair<const char*, std::array<const char*, 2>> changes[] = {
      {"Valoare_Valuta", {"1.234,50", "77"}},
      {"Moneda", {"USD", "EUR"}},
      {"DataReceptiei", {"5", "6"}},
      {"Cod_NC", {"84713000", "94036010"}},
      {"Cantitate", {"12", "13"}},
      {"Descriere", {"Altceva", "Iar"}},
      {"Tara_Exp", {"DE", "ZZ"}},
  };
  for (const auto& [field, texts] : changes) {
    const int column = editor.ColumnOf(field);
    double total = 0, longest = 0;
    for (int i = 0; i < kEdits; ++i) {
      const int row = i * 7919 % kRows;
      const double start = bench::Seconds();
      Must(editor.SetText(row, column, texts[static_cast<std::size_t>(i % 2)]).accepted);
      Must(editor.SaveLine());
      const double took = bench::Seconds() - start;
      total += took;
      longest = std::max(longest, took);
    }
    fmt::print("| {} and save | {:.2f} | {:.2f} |\n", field, total / kEdits * 1e3, longest * 1e3);
  }
  std::string block;
  for (int i = 0; i < 1000; ++i) block += fmt::format("5\t84713000\t{}\tBUC\t10,5\tEUR\n", i % 50 + 1);
  std::vector<int> columns;
  for (const char* field : {"DataReceptiei", "Cod_NC", "Cantitate", "UM", "Valoare_Valuta", "Moneda"}) {
    columns.push_back(editor.ColumnOf(field));
  }
  const double start = bench::Seconds();
  Must(editor.Paste(editor.row_count(), columns, block).done);
  fmt::print("| paste of 1,000 lines of 6 cells, for each line | {:.2f} | |\n", bench::Seconds() - start);

  fmt::print("\n| bulk update | s | raw s | ratio |\n|---|---|---|---|\n");
  const std::string filter = declarations::IdentityFilter(identity);
  int turn = 0;
  const double raw_update =
      bench::Shortest(kRuns, [&] { raw.Step(fmt::format("UPDATE Intrastat SET Net={}{}", ++turn, filter)); });
  PrintRatio(
      "the statement",
      bench::Shortest(
          kRuns,
          [&] { session.company.Execute(fmt::format("UPDATE INTRASTAT SET [Net]={}{}", ++turn, filter)); }),
      raw_update);
  const std::string select = std::string("SELECT ") + declarations::kEditorColumns + " FROM Intrastat" +
                             filter + " ORDER BY Record_ID";
  const double raw_both = bench::Shortest(kRuns, [&] {
    raw.Step(fmt::format("UPDATE Intrastat SET Net={}{}", ++turn, filter));
    raw.Step(select);
  });
  PrintRatio("the command, which reads the lines again",
             bench::Shortest(kRuns, [&] { Must(editor.ExecuteUpdate("Net", std::to_string(++turn), {})); }),
             raw_both);
}

}  // namespace

int main() {
  setenv("TMPDIR", "/dev/shm", 1);
  try {
    test_support::Installation at;
    at.prompter().AcceptAnything(true);
    calc::AddRate(at.session, "EUR", store::Date{46050}, 4.9751, 1);
    calc::AddRate(at.session, "USD", store::Date{46050}, 4.5, 1);
    AddLines(at.session);
    bench::Raw raw(at.files().ToHost(at.session.company.path()).string());
    store::RegisterFunctions(raw.db());  // the columns' own text order
    MeasureReading(at.session, raw);
    MeasureEditing(at.session, raw);
  } catch (const std::exception& error) {
    fmt::print(stderr, "editor_bench: {}\n", error.what());
    return 1;
  }
  return 0;
}
