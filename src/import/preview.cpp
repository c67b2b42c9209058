#include "import/preview.h"

#include "calc/checker_rules.h"
#include "import/line_writer.h"
#include "import/templates.h"
#include "import/worksheet.h"
#include "platform/encoding.h"
#include "tariff/codes.h"

namespace importer {
namespace {

/// What the checker asks of every line of a flow; its tables, its idea of emptiness.
struct Demand {
  std::string_view column;
  enum class Flow { kBoth, kArrivals, kDispatches } flow = Flow::kBoth;
  bool required = true;
  calc::CodeTable table = calc::CodeTable::kCount;  ///< kCount: no table of the checker
};
using enum Demand::Flow;
constexpr Demand kDemands[] = {
    {"Cod_NC", kBoth, true, calc::CodeTable::kHS8},
    {"Val_Fiscala"},
    {"Net"},
    {"Tara_Orig", kBoth, true, calc::CodeTable::kTari},
    {"Tara_Exp", kArrivals, true, calc::CodeTable::kTari_UE},
    {"Tara_Dest", kDispatches, true, calc::CodeTable::kTari_UE},
    {"Nat_Tranz", kBoth, true, calc::CodeTable::kTranzactii_Unit},
    {"Incoterms", kBoth, true, calc::CodeTable::kIncoterms},
    {"Mod_Transp", kBoth, true, calc::CodeTable::kMOD_TRANS},
    {"VAT_ID", kDispatches},
    {"Moneda", kBoth, false},
    {"UM", kBoth, false},
    {"Cod_UMS", kBoth, false},
};

class CellChecks {
 public:
  CellChecks(session::Session& session, bool arrivals)
      : session_(&session), arrivals_(arrivals), probes_(session) {}

  std::string Problem(std::string_view column, const store::Value& value) {
    for (const Demand& demand : kDemands) {
      if (!platform::EqualsNoCase(demand.column, column)) continue;
      if (demand.flow != kBoth && (demand.flow == kArrivals) != arrivals_) return "";
      if (store::IsEmpty(value)) return demand.required ? "lipseste, dar declaratia o cere" : "";
      if (value.is_number() && demand.required && value.ToDouble() <= 0) return "este zero sau negativa";
      return value.is_text() && !Known(demand, value.text()) ? "cod necunoscut: " + value.text() : "";
    }
    return "";
  }

 private:
  bool Known(const Demand& demand, const std::string& code) {
    if (demand.table != calc::CodeTable::kCount) return probes_.Known(demand.table, code);
    const tariff::CodeCheck* check = tariff::FindCodeCheck(demand.column);
    if (check == nullptr) return true;
    const auto answer = others_.try_emplace({check, code}, false);
    if (answer.second) {
      bool& known = answer.first->second;
      store::PassOver(session_->host.errors, "Previzualizare macheta",
                      [&] { known = session_->company.Any(tariff::CheckStatement(*check, code)); });
    }
    return answer.first->second;
  }

  session::Session* session_;
  bool arrivals_;
  calc::CodeProbes probes_;
  std::map<std::pair<const tariff::CodeCheck*, std::string>, bool> others_;
};

/// Why a value in a currency could not become one in lei.
std::string WithoutRate(store::Recordset& line) {
  const store::Value currency = line.Get("Moneda"), date = line.Get("DataReceptiei");
  if (store::IsEmpty(currency) || currency.ToText() == "RON" || line.Get("Curs_Schimb").ToDouble() != 0) {
    return "";
  }
  if (date.is_null()) return ": fara data receptiei nu se stie cursul " + currency.ToText();
  return ": nu exista un curs " + currency.ToText() + " dinainte de " + date.ToText();
}

}  // namespace

void Preview::Close() {
  source_.reset();
  problem_.clear();
  headings_.clear();
}

void Preview::Open(std::string_view path, std::string_view sheet) {
  Close();
  path_ = path;
  sheet_ = store::IsEmpty(sheet) ? kDefaultSheet : sheet;
  try {
    auto source = std::make_unique<store::Connection>(SourceEnvironment(*session_));
    source->Open(store::ImportSheetString(path));
    headings_ = Headings(*source, path, sheet_);
    source_ = std::move(source);
  } catch (const store::Error& error) {
    problem_ = error.description();
  }
}

PreviewLines Preview::Read(const std::vector<ColumnRule>& rules, std::string_view TIP) {
  PreviewLines result;
  for (const ColumnRule& rule : rules) result.columns.push_back(rule.Dest_ColumnName);
  result.problem = problem_;
  if (source_ == nullptr) return result;

  std::vector<ColumnRule> used;
  for (const ColumnRule& rule : rules) {
    const bool without_number = rule.Exista_Coloana && !rule.Numar_Coloana;  // still being filled in
    if (!without_number && (rule.Exista_Coloana || !store::IsEmpty(rule.Valoare_Implicita))) {
      used.push_back(rule);
    }
  }
  if (used.empty()) return result;
  Worksheet sheet;
  try {
    sheet = ReadThrough(*source_, sheet_, headings_, used, kLines);
  } catch (const store::Error& error) {
    sheet.problem = error.description();
  }
  result.problem = sheet.problem;
  if (!sheet.problem.empty()) return result;

  const bool arrivals = TIP != "LIVRARE";
  Inputs inputs;
  inputs.path = path_;
  inputs.sheet = sheet_;
  inputs.Cod_Fiscal = session_->current.Cod_Fiscal;
  inputs.tip_operatiune = arrivals ? "I-ACHIZITIE" : "O-LIVRARE";
  store::Recordset lines = session_->company.QueryForUpdate("SELECT TOP 1 * FROM Intrastat");
  LineWriter writer(*session_, inputs, sheet.rows, lines);
  CellChecks checks(*session_, arrivals);
  for (std::int64_t n = 1; !sheet.rows.eof(); sheet.rows.MoveNext(), ++n) {
    PreviewLine line;
    line.row = sheet.heading_row + n;
    std::string refused, reason;
    try {
      writer.Fill();
    } catch (const store::Error& error) {
      refused = writer.column();
      reason = error.description();
    }
    for (const std::string& column : result.columns) {
      line.values.push_back(lines.Get(column));
      std::string& problem = line.problems.emplace_back();
      if (column == refused) problem = reason;
      if (!refused.empty()) continue;
      problem = checks.Problem(column, line.values.back());
      if (!problem.empty() && platform::EqualsNoCase(column, "Val_Fiscala")) problem += WithoutRate(lines);
    }
    if (refused.empty() && !line.problems.empty()) line.problems.front() += reason;
    lines.CancelUpdate();
    result.lines.push_back(std::move(line));
  }
  return result;
}

}  // namespace importer
