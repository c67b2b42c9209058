#include "calc/checker.h"

#include <cmath>

#include "calc/checked_lines.h"
#include "calc/checker_rules.h"
#include "calc/rounding/rounding.h"
#include "declarations/lines/line_query.h"
#include "platform/encoding.h"
#include "tariff/lookup.h"

namespace calc {
namespace {

int Percent(std::int64_t ordinal, std::int64_t count) {
  return static_cast<int>(Round(static_cast<double>(ordinal) * 100 / static_cast<double>(count), 0));
}

/// Brings one line up to date: tariff columns, the retired country code, values that end in one half.
class Refresher {
 public:
  Refresher(session::Session& session, const CheckContext& context, CheckedLines& lines)
      : session_(&session), context_(&context), lines_(&lines) {}

  void RefreshLine() {
    // Another year's tariff would overwrite units and quantities that were right when they were declared.
    if (context_->tariff_of_period) RefreshTariffColumns();
    if (context_->identity.Anul > 2020 && lines_->Text(kTara_Orig) == "GB") lines_->Set(kTara_Orig, "XU");
    // Rounding to whole numbers takes an exact half to the even neighbour; these are meant to go up.
    for (const LineColumn column : {kNet, kVal_Fiscala, kVal_Stat, kVal_UMS}) {
      if (lines_->IsNull(column)) continue;
      const double value = lines_->Number(column);
      const double nudged = NudgeHalf(value);
      if (nudged != value) lines_->Set(column, nudged);
    }
    lines_->Save();
  }

 private:
  const tariff::TariffAnswer& LookUp(std::string_view code) {
    last_code_ = code;
    const auto [entry, is_new] = answers_.try_emplace(last_code_);
    if (is_new) entry->second = tariff::SplitAnswer(tariff::Cautare_Tarif(*session_, last_code_));
    return entry->second;
  }

  void RefreshTariffColumns() {
    const tariff::TariffAnswer& answer = LookUp(lines_->Text(kCod_NC));
    if (!answer.found) return;
    SetText(kDescriere_NC, answer.description);
    SetText(kCod_UMS, answer.unit);
    const bool has_unit = store::Value(answer.flag).ToDouble() != 0;
    if (lines_->IsNull(kExista_UMS) || lines_->Flag(kExista_UMS) != has_unit) {
      lines_->Set(kExista_UMS, has_unit ? 1 : 0);
    }
    if (has_unit) return;
    SetNull(kVal_UMS);
    SetNull(kCod_UMS);
  }

  void SetText(LineColumn column, const std::string& text) {
    if (lines_->Text(column) != text) lines_->Set(column, text);
  }
  void SetNull(LineColumn column) {
    if (!lines_->IsNull(column)) lines_->Set(column, store::Null());
  }

  session::Session* session_;
  const CheckContext* context_;
  CheckedLines* lines_;
  std::unordered_map<std::string, tariff::TariffAnswer> answers_;
  std::string last_code_;
};

std::string ReportHeader(const platform::LocalTime& now, const declarations::Identity& identity) {
  return fmt::format(
      "{:02}.{:02}.{:04} {:02}:{:02}:{:02}\r\n"
      "TIP = {}\r\n"
      "Cod_Fiscal= {}\r\n"
      "Anul={}\r\n"
      "Luna={}\r\n"
      "POZITIA ESTE AFISATA PE ULTIMA COLOANA\r\n"
      "{:*<62}\r\n"
      "\r\n",
      now.day, now.month, now.year, now.hour, now.minute, now.second, identity.TIP, identity.Cod_Fiscal,
      identity.Anul, identity.Luna, "");
}

void RefreshPass(session::Session& session, const CheckContext& context, CheckedLines& lines) {
  session.host.progress.Update("ACTUALIZARE UM SUPLIMENTARE", 0);
  Refresher refresher(session, context, lines);
  store::Recordset& rows = lines.rows();
  const std::int64_t count = rows.record_count();
  for (std::int64_t ordinal = 1; !rows.eof(); rows.MoveNext(), ++ordinal) {
    refresher.RefreshLine();
    session.host.progress.Update("Se verifica UM Supl ..... ", Percent(ordinal, count));
  }
}

/// The boxes to show afterwards.
std::vector<std::string> CheckPass(session::Session& session, const CheckContext& context,
                                   CheckedLines& lines, std::string& report) {
  CheckerRules rules(session, context, lines, report);
  store::Recordset& rows = lines.rows();
  if (rows.record_count() > 0) rows.MoveFirst();
  for (; !rows.eof(); rows.MoveNext()) {
    if (!rules.CheckLine()) continue;
    lines.Set(kProbleme, true);
    lines.Save();
  }
  return rules.boxes();
}

/// Number of marked lines.
std::int64_t CountPass(session::Session& session, CheckedLines& lines) {
  store::Recordset& rows = lines.rows();
  const std::int64_t count = rows.record_count();
  std::int64_t marked = 0;
  if (count > 0) rows.MoveFirst();
  for (std::int64_t ordinal = 1; !rows.eof(); rows.MoveNext(), ++ordinal) {
    if (lines.Flag(kProbleme)) ++marked;
    session.host.progress.Update("Verificare in detaliu ..... ", Percent(ordinal, count));
  }
  return marked;
}

}  // namespace

std::string ProblemsReportPath(const session::Session& session, const declarations::Identity& identity) {
  return session.UnderSystem("Verificare\\" + identity.Cod_Fiscal + "_" + identity.TIP + "_" +
                             std::to_string(identity.Luna) + "_" + std::to_string(identity.Anul) + ".txt");
}

bool Verifica_Declaratie(session::Session& session, const std::string& TIP, std::int16_t Anul,
                         std::int16_t Luna, bool CheckValStatistica, const ShowProblems& show_problems,
                         std::string* report) {
  CheckContext context;
  int month = Luna, year = Anul;
  context.tariff_of_period = tariff::ConexiuneTarif(session, month, year);  // refused: shown there
  if (!context.tariff_of_period) {
    session.host.errors.Write(
        "Verifica_Declaratie",
        fmt::format("tariful lunii {}/{} nu s-a deschis: descrierile si unitatile suplimentare raman", Luna,
                    Anul));
  }
  context.identity = {TIP, session.current.Cod_Fiscal, Anul, Luna};
  context.CheckValStatistica = CheckValStatistica;
  context.ValoriRotunjite = session.settings.ValoriRotunjite;
  context.VerificaNet = session.settings.VerificaNet;
  const std::string filter = declarations::IdentityFilter(context.identity);
  const std::string report_path = ProblemsReportPath(session, context.identity);

  std::string text;
  std::vector<std::string> boxes;
  bool any_problem = false;
  {
    const tariff::LookupRun lookups(session);
    store::Transaction transaction(session.company);
    session.company.Execute("UPDATE Intrastat SET Probleme=0" + filter);
    const declarations::LineQuery query = declarations::ReadLineQuery(
        session, "SQL\\Verificare.txt", declarations::kCheckerColumns, "Verifica_Declaratie");
    CheckedLines lines(session.company.QueryForUpdate(query.With(filter)), session.host.errors);
    RefreshPass(session, context, lines);
    text = ReportHeader(session.host.clock.Now(), context.identity);
    const std::size_t header_size = text.size();
    boxes = CheckPass(session, context, lines, text);
    // A replaced query without the mark's column still counts as a problem whatever was reported.
    any_problem = CountPass(session, lines) > 0 || text.size() > header_size;
    transaction.Commit();
  }
  // A box may stay open for hours; until the commit nobody else could write to the company's file.
  for (const std::string& box : boxes) session.host.prompter.Error(box);
  // Written as a whole, so that no crash leaves a part of it.
  try {
    session.host.files.CreateFolders(session.UnderSystem("Verificare\\"));
    session.host.files.Replace(report_path, text);
  } catch (const platform::FileError& error) {
    session.host.errors.Write("Verifica_Declaratie", error.what());
    session.host.prompter.Error(error.what());
  }
  if (report != nullptr) *report = std::move(text);
  if (any_problem) {
    if (show_problems) show_problems(report_path);
    return false;
  }
  session.host.prompter.Info("Declaratie Intrastat - OK. Nu sunt probleme");
  return true;
}

}  // namespace calc
