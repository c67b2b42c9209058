// The whole road of a large worksheet (import, check, export) against the floor of what any implementation
// must do. Prints a Markdown table of ratios; absolute seconds are of this machine and only for orientation.
//
//   road_bench                       6,500 and 65,000 rows
//   road_bench make FILE ROWS        only writes the worksheet, so that peak memory is the road's
//   road_bench run FILE ROWS         one measured run

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>

#include "calc/checker.h"
#include "calc/rates.h"
#include "declarations/export.h"
#include "floor.h"
#include "import/run.h"
#include "import/template_rows.h"
#include "import/templates.h"
#include "measure.h"
#include "peak_memory.h"
#include "support/installation.h"
#include "support/xls_writer.h"
#include "tariff/lookup.h"

namespace {

constexpr char kSheet[] = "Sheet1";

/// Headings, which are also the line columns.
constexpr const char* kColumns[] = {
    "DataReceptiei", "Descriere",    "Cod_NC",      "Cantitate", "UM",        "Valoare_Valuta",
    "Moneda",        "Curs_Schimb",  "Val_Fiscala", "Val_Stat",  "Tara_Orig", "Tara_Exp",
    "Net",           "Cod_UMS",      "Val_UMS",     "Nat_Tranz", "Incoterms", "Mod_Transp",
    "Factura_Numar", "Factura_Data", "VAT_ID",      "PU"};

/// Codes of the delivered tariff, with and without a supplementary unit.
std::vector<std::string> Codes(const std::string& data_folder) {
  std::vector<std::string> codes;
  std::FILE* file = std::fopen((data_folder + "/tarif/2026.txt").c_str(), "rb");
  if (file == nullptr) throw std::runtime_error("no tariff list in " + data_folder);
  char line[512];
  while (std::fgets(line, sizeof line, file) != nullptr) {
    const std::string text = line;
    const auto colon = text.find(':');
    if (text[0] == '#' || colon == std::string::npos) continue;
    for (std::size_t at = colon + 2; at + 4 <= text.size(); at += 5)
      codes.push_back(text.substr(0, 4) + text.substr(at, 4));
  }
  std::fclose(file);
  return codes;
}

void MakeWorksheet(const std::string& path, unsigned rows, const std::string& data_folder) {
  const std::vector<std::string> codes = Codes(data_folder);
  const char* const origins[] = {"DE", "CN", "IT", "tr", "US", "FR", "JP", "PL"};
  const char* const senders[] = {"DE", "IT", "FR", "PL", "HU"};
  const char* const terms[] = {"CPT", "EXW", "DAP"};
  test_support::XlsWriter book;
  auto& sheet = book.AddSheet(kSheet);
  for (unsigned column = 0; column < std::size(kColumns); ++column) sheet.Text(0, column, kColumns[column]);
  for (unsigned row = 1; row <= rows; ++row) {
    const unsigned n = row - 1;
    // About 20,000 items: 2,500 codes, each from eight origins.
    const std::string& code = codes[(n * 3u) % 2500u * 3u % codes.size()];
    sheet.Date(row, 0, 46082 + n % 28);
    sheet.Text(row, 1, fmt::format("Reper {} pentru montaj", n % 4000));
    sheet.Text(row, 2,
               n % 3 == 0 ? code.substr(0, 4) + "." + code.substr(4, 2) + "-" + code.substr(6) : code);
    sheet.Number(row, 3, 1 + n % 50);
    sheet.Text(row, 4, "BUC");
    sheet.FormulaNumber(row, 5, 10.25 + n % 977);
    sheet.Text(row, 6, n % 2 ? "EUR" : "eur");
    sheet.Number(row, 7, 0);
    sheet.Number(row, 8, n % 4 ? 0 : 150.45 + n % 31);
    sheet.Number(row, 9, n % 4 ? 0 : 150.45 + n % 31);
    sheet.Text(row, 10, origins[n / 2500 % 8]);
    sheet.Text(row, 11, senders[n / 2500 % 8 % 5]);
    sheet.Number(row, 12, 1.37 + n % 211);
    // Cod_UMS and Val_UMS stay empty; the tariff fills them.
    sheet.Text(row, 15, "1.1");
    sheet.Text(row, 16, terms[n / 2500 % 8 % 3]);
    sheet.Text(row, 17, "3");
    sheet.Text(row, 18, fmt::format("F{:06}", n / 20));
    sheet.Date(row, 19, 46080 + n % 28);
    sheet.Text(row, 20, fmt::format("DE{:09}", n % 700));
    sheet.Number(row, 21, 1.125 + n % 97);
  }
  book.Save(path);
}

struct Measured {
  double import = 0;
  double check = 0;        ///< first check, which brings the lines up to date
  double recheck = 0;      ///< check of unchanged lines
  double export_file = 0;  ///< the export command, which checks once more before it writes
  /// Each phase once: the check inside the export is a recheck.
  double total() const { return import + check + export_file - recheck; }
  std::size_t rows = 0;
  double peak_mib = 0;
  bench::Floor floor;
};

Measured RunRoad(const std::string& worksheet, unsigned rows) {
  test_support::Installation at;
  at.prompter().AcceptAnything(true);
  session::Session& session = at.session;
  const auto must = [&](bool done, const char* step) {
    if (done) return;
    const std::vector<std::string>& seen = at.prompter().seen();
    throw std::runtime_error(fmt::format("{}: {}", step, seen.empty() ? "" : seen.back()));
  };
  session.common.Execute("UPDATE Firme SET ValoareStatistica=-1");
  calc::AddRate(session, "EUR", store::Date{46050}, 4.9751, 1);
  importer::TemplateEditor editor{session};
  editor.New();
  editor.header().Set("Nume_Structura", "Proba");
  editor.header().Set("TIP", "ACHIZITIE");
  editor.header().Set("Work_Sheet_Name", kSheet);
  must(editor.Save(), "template");
  for (std::size_t i = 0; i < std::size(kColumns); ++i) {
    importer::RowChange change;
    change.Numar_Coloana = static_cast<int>(i) + 1;
    importer::ChangeRow(session, "Proba", kColumns[i], change);
  }

  Measured measured;
  importer::Inputs inputs;
  inputs.Anul = 2026;
  inputs.Luna = 3;
  inputs.path = at.files().drives().FromHost(worksheet);
  inputs.sheet = kSheet;
  inputs.Cod_Fiscal = "RO123456";
  inputs.Nume_Structura = "Proba";
  inputs.tip_operatiune = "I-ACHIZITIE";
  double start = bench::Seconds();
  const importer::Result result = importer::Run(session, inputs);
  measured.import = bench::Seconds() - start;
  must(result.outcome == importer::Outcome::kDone && result.saved == rows, "import");

  const declarations::Identity identity{"I", "RO123456", 2026, 3};
  int month = 3, year = 2026;
  must(tariff::ConexiuneTarif(session, month, year), "tariff");
  start = bench::Seconds();
  must(calc::Verifica_Declaratie(session, "I", 2026, 3, true, {}), "check");
  measured.check = bench::Seconds() - start;

  start = bench::Seconds();
  must(calc::Verifica_Declaratie(session, "I", 2026, 3, true, {}), "recheck");
  measured.recheck = bench::Seconds() - start;

  declarations::ExportRequest request;
  request.identity = identity;
  request.header = declarations::ReadEditorDefaults(session).header;
  request.Check_ValStatistica = true;
  start = bench::Seconds();
  const declarations::ExportResult exported = declarations::ExportDeclaration(session, request, {});
  measured.export_file = bench::Seconds() - start;
  must(exported.outcome == declarations::ExportOutcome::kWritten, "export");

  measured.peak_mib = bench::PeakMemoryMiB();
  measured.rows = rows;
  const std::string database = at.files().ToHost(session.company.path()).string();
  session.company.Close();
  measured.floor = bench::MeasureFloor(worksheet, kSheet, bench::ReadRaw(database, "Intrastat"),
                                       at.machine.folder.path().string());
  return measured;
}

void Print(const Measured& m) {
  const double floor = m.floor.total();
  fmt::print(
      "| {} | {:.2f} | {:.2f} | {:.2f} | {:.2f} | {:.2f} | {:.2f} | {:.0f} | {:.2f} = {:.2f} + {:.2f} + "
      "{:.2f} | {} "
      "|\n",
      m.rows, m.import / floor, m.check / floor, m.recheck / floor, m.export_file / floor, m.total() / floor,
      m.total(), m.peak_mib, floor, m.floor.read_cells, m.floor.insert, m.floor.aggregate, m.floor.items);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string data_folder = DECLARIX_SOURCE_DIR "/data";
  try {
    if (argc == 4 && std::string_view(argv[1]) == "make") {
      MakeWorksheet(argv[2], static_cast<unsigned>(std::atoi(argv[3])), data_folder);
      return 0;
    }
    if (argc == 4 && std::string_view(argv[1]) == "run") {
      Print(RunRoad(argv[2], static_cast<unsigned>(std::atoi(argv[3]))));
      return 0;
    }
    fmt::print(
        "| rows | import / F | check / F | recheck / F | export with its recheck / F | import + check + "
        "export / F | s "
        "| peak MiB | F = read + insert + aggregate, s | items |\n");
    fmt::print("|---|---|---|---|---|---|---|---|---|---|\n");
    std::fflush(stdout);
    test_support::TempFolder folder;
    for (const int rows : {6500, 65000}) {
      const std::string sheet = (folder.path() / fmt::format("proba{}.xls", rows)).string();
      for (const std::string& command : {fmt::format("'{}' make '{}' {}", argv[0], sheet, rows),
                                         fmt::format("'{}' run '{}' {}", argv[0], sheet, rows)}) {
        if (std::system(command.c_str()) != 0) return 1;
      }
    }
  } catch (const std::exception& error) {
    fmt::print(stderr, "road_bench: {}\n", error.what());
    return 1;
  }
  return 0;
}
