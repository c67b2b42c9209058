// The calculations over groups of lines against the same UPDATE statements as raw prepared SQLite statements
// (binary texts, SQLite's own round, the same index by month), each in one transaction with full sync. The
// ratio is to be 2 at most. With many groups the raw statements walk through all lines for each; a second
// column gives them an index of their own.
//
//   redistribution_bench [LINES]     65,000 unless given

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstdio>
#include <cstdlib>

#include "calc/redistribution/net_mass.h"
#include "calc/redistribution/stat_value.h"
#include "calc/redistribution/transport.h"
#include "measure.h"
#include "support/installation.h"

namespace {

using enum calc::Redis_Mod;
using enum calc::Redis_Op;

const declarations::Identity kDeclaration{"I", "RO123456", 2026, 3};
constexpr int kRepeats = 3;

/// 20 lines an invoice, 15 combinations of terms and country, 700 partners, 2,500 goods codes.
void FillLines(session::Session& session, int lines) {
  const char* const senders[] = {"DE", "IT", "FR", "PL", "HU"};
  const char* const terms[] = {"CPT", "EXW", "DAP"};
  store::Recordset rows = session.company.QueryForUpdate("SELECT * FROM Intrastat WHERE Record_ID=0");
  store::Transaction transaction(session.company);
  for (int n = 0; n < lines; ++n) {
    rows.AddNew();
    rows.Set("TIP", "I");
    rows.Set("Cod_Fiscal", "RO123456");
    rows.Set("Anul", 2026);
    rows.Set("Luna", 3);
    rows.Set("Descriere", fmt::format("Reper {} pentru montaj", n % 4000));
    rows.Set("Cod_NC", fmt::format("{:08}", 84'000'000 + n % 2500));
    rows.Set("Descriere_NC", fmt::format("Masini si aparate mecanice, parti ale acestora {}", n % 2500));
    rows.Set("Cantitate", 1.0 + n % 50);
    rows.Set("UM", "BUC");
    rows.Set("Valoare_Valuta", 10.25 + n % 977);
    rows.Set("Moneda", "EUR");
    rows.Set("Curs_Schimb", 4.9751);
    rows.Set("Val_Fiscala", 51.0 + n % 977);
    rows.Set("Val_Stat", 51.0 + n % 977);
    rows.Set("Tara_Orig", "CN");
    rows.Set("Tara_Exp", senders[n / 60 % 5]);
    rows.Set("Tara_Dest", "RO");
    rows.Set("Net", 1.37 + n % 211);
    rows.Set("Nat_Tranz", "1.1");
    rows.Set("Incoterms", terms[n / 20 % 3]);
    rows.Set("Mod_Transp", "3");
    rows.Set("Factura_Numar", fmt::format("F{:06}", n / 20));
    rows.Set("VAT_ID", fmt::format("DE{:09}", n / 20 % 700));
    rows.Update();
  }
  transaction.Commit();
}

/// Takes the lines into a table without collations.
void CopyLines(bench::Raw& raw, const std::string& company_file) {
  // Only to read the company's table with; the copy's columns compare by bytes.
  sqlite3_create_collation(raw.db(), "DX", SQLITE_UTF8, nullptr,
                           [](void*, int, const void*, int, const void*) { return 0; });
  raw.Run("PRAGMA journal_mode=DELETE; PRAGMA synchronous=FULL");
  raw.Run("ATTACH '" + company_file + "' AS company");
  raw.Run("CREATE TABLE Intrastat AS SELECT * FROM company.Intrastat");
  raw.Run("DETACH company");
  raw.Run("CREATE INDEX Intrastat_Declaratie ON Intrastat (Anul, Luna)");
}

/// One calculation: its groups and the raw form of its statements, whose ?1 is the group's number (quotient
/// or percentage), and the keys from ?2 on.
struct Case {
  const char* name;
  calc::GroupCalculation& groups;
  std::vector<std::string> updates, keys;
  std::function<double(const store::Recordset&)> number;
};

/// `indexed`: with an index on the keys that is made and dropped within the transaction, as the run does.
double RunRaw(bench::Raw& raw, const Case& c, store::Recordset rows, bool indexed) {
  return bench::SecondsOf([&] {
    std::string where = " WHERE TIP='I' AND Cod_Fiscal='RO123456' AND Anul=2026 AND Luna=3";
    for (std::size_t i = 0; i < c.keys.size(); ++i) where += fmt::format(" AND {}=?{}", c.keys[i], i + 2);
    raw.Run("BEGIN");
    if (indexed)
      raw.Run(fmt::format("CREATE INDEX Keys ON Intrastat (Anul, Luna, {})", fmt::join(c.keys, ", ")));
    std::vector<bench::Raw::Prepared> statements(c.updates.size());
    for (std::size_t i = 0; i < c.updates.size(); ++i) raw.Prepare(c.updates[i] + where, statements[i]);
    for (rows.MoveFirst(); !rows.eof(); rows.MoveNext()) {
      for (const bench::Raw::Prepared& statement : statements) {
        sqlite3_bind_double(statement.handle, 1, c.number(rows));
        for (std::size_t i = 0; i < c.keys.size(); ++i) {
          const std::string_view key = rows.TextView(4 + static_cast<int>(i));
          sqlite3_bind_text(statement.handle, static_cast<int>(i) + 2, key.data(),
                            static_cast<int>(key.size()), SQLITE_TRANSIENT);
        }
        if (sqlite3_step(statement.handle) != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(raw.db()));
        sqlite3_reset(statement.handle);
      }
    }
    statements.clear();
    if (indexed) raw.Run("DROP INDEX Keys");
    raw.Run("COMMIT");
  });
}

void Measure(bench::Raw& raw, const Case& c, int repeats) {
  double list = 0, plain = 0, with_index = 0, ours = 0, preview = 0;
  const auto best = [](double& kept, double now) { kept = kept == 0 ? now : std::min(kept, now); };
  best(list, bench::SecondsOf([&] { c.groups.Load(); }));
  store::Recordset rows = c.groups.rows();
  const auto set = [&](const char* field, const store::Value& value) {
    if (rows.FindField(field) >= 0) rows.Set(field, value);
  };
  for (; !rows.eof(); rows.MoveNext()) {
    set("Redistribuie", true);
    set("Total_Transport_Suma", 123.45);
    set("Total_GreutateNeta", 123.45);
    set("Procent", 2.5);
    rows.Update();
  }
  calc::RunReport report;
  // The first run widens the lines; it is not measured where there are more.
  for (int i = 0; i <= repeats; ++i) {
    const double raw_now = RunRaw(raw, c, rows, false);
    const double indexed_now = RunRaw(raw, c, rows, true);
    const double ours_now = bench::SecondsOf([&] { report = c.groups.CmdAjustare(); });
    if (i == 0 && repeats > 0) continue;
    best(plain, raw_now);
    best(with_index, indexed_now);
    best(ours, ours_now);
  }
  best(preview, bench::SecondsOf([&] { c.groups.Preview(); }));
  std::int64_t lines = 0;
  for (const calc::GroupFigures& figures : report.figures) lines += figures.lines;
  fmt::print("| {} | {} | {} | {:.2f} s | {:.3f} s | {:.3f} s | {:.2f} | {:.2f} | {:.3f} s | {:.3f} s |\n",
             c.name, report.groups, lines, plain, with_index, ours, ours / plain, ours / with_index, list,
             preview);
  std::fflush(stdout);
}

void RunAll(int lines) {
  test_support::Installation at;
  at.prompter().AcceptAnything(true);
  session::Session& session = at.session;
  FillLines(session, lines);
  bench::Raw raw((at.machine.folder.path() / "raw.db").string());
  CopyLines(raw, at.files().ToHost(session.company.path()).string());

  const std::string second =
      "UPDATE Intrastat SET Val_Stat = Val_Fiscala + round(Transport_Suma * Transport_Curs, 2)";
  const auto shares = [&](const char* key) {
    return std::vector<std::string>{
        fmt::format("UPDATE Intrastat SET Transport_Suma=round({}*?1,4), Transp_Document='', "
                    "Transport_Moneda='RON', Transport_Curs=1.0",
                    key),
        second};
  };
  const auto quotient = [](const char* total) {
    return [total](const store::Recordset& row) { return 123.45 / row.Get(total).ToDouble(); };
  };
  calc::TransportRedistribution transport{session, kDeclaration};
  calc::NetRedistribution net{session, kDeclaration};
  calc::StatValueRecalculation percent{session, kDeclaration};
  fmt::print(
      "| calculation | groups | lines | raw | raw, indexed | run | ratio | ratio to indexed | reading the "
      "list | preview |\n");
  fmt::print("|---|---|---|---|---|---|---|---|---|---|\n");
  Measure(raw,
          {"statistical value, per cent",
           percent,
           {"UPDATE Intrastat SET Val_Stat = round(Val_Fiscala + (Val_Fiscala * ?1 / 100), 2), Raport_Stat = "
            "(Val_Fiscala + (Val_Fiscala * ?1 / 100)) / Val_Fiscala"},
           {"Incoterms", "Mod_Transp", "Nat_Tranz", "Tara_Exp"},
           [](const store::Recordset&) { return 2.5; }},
          kRepeats);
  transport.Choose(Redis_Mod_Valoare, Redis_Op_Incoterms);
  Measure(raw,
          {"transport by terms, country, mode",
           transport,
           shares("Val_Fiscala"),
           {"Incoterms", "Tara_Exp", "Mod_Transp"},
           quotient("TOTAL_Val_Fiscala")},
          kRepeats);
  transport.Choose(Redis_Mod_Net, Redis_Op_VAT);
  Measure(raw,
          {"transport by partner",
           transport,
           shares("Net"),
           {"VAT_ID", "Incoterms", "Mod_Transp"},
           quotient("TOTAL_Net")},
          0);
  transport.Choose(Redis_Mod_Cantitate, Redis_Op_Doc);
  Measure(raw,
          {"transport by invoice",
           transport,
           shares("Cantitate"),
           {"Factura_Numar"},
           quotient("TOTAL_Cantitate")},
          0);
  net.Choose(Redis_Mod_Cantitate, Redis_Op_CodVamal);
  Measure(raw,
          {"net mass by goods code",
           net,
           {"UPDATE Intrastat SET Net=round(Cantitate*?1,2)"},
           {"Cod_NC"},
           quotient("TOTAL_Cantitate")},
          0);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    RunAll(argc > 1 ? std::atoi(argv[1]) : 65'000);
  } catch (const std::exception& error) {
    fmt::print(stderr, "redistribution_bench: {}\n", error.what());
    return 1;
  }
  return 0;
}
