// The declaration editor on a large declaration against raw SQLite: reading and sorting the lines, changing a
// cell, the bulk update. Prints Markdown tables of ratios; absolute times are of this machine and only for
// orientation. The files lie in memory (/dev/shm), so that no figure holds the disk's sync.

#include <fmt/format.h>
#include <malloc.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "calc/rates.h"
#include "companies/register.h"
#include "declarations/editor/editor.h"
#include "floor.h"
#include "setup/setup.h"
#include "store/functions.h"
#include "support/test_host.h"

namespace {

constexpr int kRows = 65000;
constexpr int kRuns = 5;
constexpr int kEdits = 500;

class BenchPrompter : public platform::Prompter {
 public:
  void Message(std::string_view text, std::string_view, platform::Icon) override { last = text; }
  bool Ask(std::string_view, std::string_view, platform::Icon) override { return true; }
  std::string last;
};

/// The shortest of some runs.
double Shortest(const std::function<void()>& run) {
  double best = 1e9;
  for (int i = 0; i < kRuns; ++i) {
    const double start = bench::Seconds();
    run();
    best = std::min(best, bench::Seconds() - start);
  }
  return best;
}

/// A statement of SQLite's own on the company's file.
class Raw {
 public:
  explicit Raw(const std::string& file) {
    if (sqlite3_open(file.c_str(), &db_) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(db_));
    store::RegisterFunctions(db_);  // the columns' own text order
  }
  ~Raw() { sqlite3_close(db_); }
  Raw(const Raw&) = delete;
  Raw& operator=(const Raw&) = delete;

  /// Steps through the rows and looks at every value; the rows.
  int Step(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errmsg(db_));
    }
    int rows = 0;
    double sum = 0;
    for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        switch (sqlite3_column_type(statement, i)) {
          case SQLITE_NULL:
            break;
          case SQLITE_TEXT:
            sum += *sqlite3_column_text(statement, i) + sqlite3_column_bytes(statement, i);
            break;
          default:
            sum += sqlite3_column_double(statement, i);
        }
      }
    }
    sqlite3_finalize(statement);
    looked_at_ = looked_at_ + sum;
    return rows;
  }

 private:
  sqlite3* db_ = nullptr;
  volatile double looked_at_ = 0;
};

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

void Must(bool done, const BenchPrompter& prompter) {
  if (!done) throw std::runtime_error(prompter.last);
}

void MeasureReading(session::Session& session, Raw& raw, const BenchPrompter& prompter) {
  const declarations::Identity identity{"I", "RO123456", 2026, 3};
  const std::string select = std::string("SELECT ") + declarations::kEditorColumns + " FROM Intrastat" +
                             declarations::IdentityFilter(identity) + " ORDER BY ";
  const auto raw_by = [&](const std::string& order) {
    return Shortest([&] {
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
  Must(editor->Open(), prompter);
  const double memory = ResidentMiB() - before;
  PrintRatio("open, with the header, the tariff and the totals", Shortest([&] {
               editor = make();
               Must(editor->Open(), prompter);
             }),
             plain);
  PrintRatio("read again", Shortest([&] { Must(editor->Refresh(), prompter); }), plain);
  for (const char* field : {"Descriere", "Val_Fiscala", "Tara_Orig"}) {
    bool descending = false;
    PrintRatio(fmt::format("sort by {}", field).c_str(), Shortest([&] {
                 descending = !descending;
                 Must(editor->Sort(editor->ColumnOf(field), descending), prompter);
               }),
               raw_by(fmt::format("{}, Record_ID", field)));
  }
  fmt::print("\nMemory of the lines: {:.1f} MiB for 10,000.\n\n", memory / kRows * 10000);
}

void MeasureEditing(session::Session& session, Raw& raw, const BenchPrompter& prompter) {
  const declarations::Identity identity{"I", "RO123456", 2026, 3};
  declarations::Editor editor(session, identity, declarations::Editor::Mode::kModify, ",");
  Must(editor.Open(), prompter);
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
      Must(editor.SetText(row, column, texts[static_cast<std::size_t>(i % 2)]).accepted, prompter);
      Must(editor.SaveLine(), prompter);
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
  Must(editor.Paste(editor.row_count(), columns, block).done, prompter);
  fmt::print("| paste of 1,000 lines of 6 cells, for each line | {:.2f} | |\n", bench::Seconds() - start);

  fmt::print("\n| bulk update | s | raw s | ratio |\n|---|---|---|---|\n");
  const std::string filter = declarations::IdentityFilter(identity);
  int turn = 0;
  const double raw_update =
      Shortest([&] { raw.Step(fmt::format("UPDATE Intrastat SET Net={}{}", ++turn, filter)); });
  PrintRatio("the statement", Shortest([&] {
               session.company.Execute(fmt::format("UPDATE INTRASTAT SET [Net]={}{}", ++turn, filter));
             }),
             raw_update);
  const std::string select = std::string("SELECT ") + declarations::kEditorColumns + " FROM Intrastat" +
                             filter + " ORDER BY Record_ID";
  const double raw_both = Shortest([&] {
    raw.Step(fmt::format("UPDATE Intrastat SET Net={}{}", ++turn, filter));
    raw.Step(select);
  });
  PrintRatio("the command, which reads the lines again",
             Shortest([&] { Must(editor.ExecuteUpdate("Net", std::to_string(++turn), {}), prompter); }),
             raw_both);
}

}  // namespace

int main() {
  setenv("TMPDIR", "/dev/shm", 1);
  try {
    test_support::TempFolder folder;
    platform::Drives drives{folder.path()};
    platform::Files files{drives};
    platform::SystemClock clock;
    BenchPrompter prompter;
    platform::SilentProgress progress;
    platform::ErrorLog errors{files, clock};
    setup::LayDown({files, clock, prompter, progress, errors}, setup::kDefaultRoot,
                   drives.FromHost(DECLARIX_SOURCE_DIR "/data"));
    session::Session session{{files, clock, prompter, progress, errors}};
    session.ReadSettings("C:\\Declarix\\");
    session::OpenCommonConnection(session);
    companies::Fields fields = companies::NewCompany();
    fields.Set("Cod_Fiscal", "RO123456");
    fields.Set("Nume_Firma", "PROBA SRL");
    Must(companies::CreateCompany(session, fields), prompter);
    calc::AddRate(session, "EUR", store::Date{46050}, 4.9751, 1);
    calc::AddRate(session, "USD", store::Date{46050}, 4.5, 1);
    AddLines(session);
    Raw raw(drives.ToHost(session.current.database_path).string());
    MeasureReading(session, raw, prompter);
    MeasureEditing(session, raw, prompter);
  } catch (const std::exception& error) {
    fmt::print(stderr, "editor_bench: {}\n", error.what());
    return 1;
  }
  return 0;
}
