#include "calc/checker_rules.h"

#include <cctype>

#include "calc/rounding/rounding.h"
#include "platform/encoding.h"

namespace calc {
namespace {

constexpr std::array<std::string_view, static_cast<std::size_t>(CodeTable::kCount)> kProbes = {
    "SELECT HS8_COD FROM HS8 WHERE HS8_COD ='",
    "SELECT Tara_COD FROM Tari WHERE Tara_Cod ='",
    "SELECT COD_TARA FROM Tari_UE WHERE COD_TARA ='",
    "SELECT COD FROM Tranzactii_Unit WHERE COD ='",
    "SELECT Incoterms_COD FROM Incoterms WHERE Incoterms_COD ='",
    "SELECT COD_MOD_TRANS FROM MOD_TRANS WHERE COD_MOD_TRANS ='",
};

constexpr std::string_view kUnknown = " ===> NU EXISTA";
constexpr std::string_view kNotInUnion = " ===> NU EXISTA SAU NU ESTE TARA UE";
constexpr std::string_view kNotPositive = " ===> ESTE NULL - ZERO SAU VALOARE NEGATIVA";

/// Whether a text reads as a number: blanks around it, a sign and one decimal mark are allowed.
bool IsNumeric(std::string_view text) {
  text = platform::Trim(text);
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) text.remove_prefix(1);
  bool digits = false, mark = false;
  for (const char c : text) {
    if (c >= '0' && c <= '9') {
      digits = true;
    } else if ((c == '.' || c == ',') && !mark) {
      mark = true;
    } else {
      return false;
    }
  }
  return digits;
}

void CheckPartnerVat(CheckerRules& rules) {
  CheckedLines& lines = rules.lines();
  const std::string_view vat = lines.Text(kVAT_ID);
  if (store::IsEmpty(vat)) {
    rules.Problem({" - ", lines.Name(kVAT_ID), " ESTE GOL"});
    return;
  }
  const std::string_view prefix = platform::Utf8Prefix(vat, 2);
  if (IsNumeric(prefix)) {
    rules.AddBox("Format incorect Cod TVA: " + std::string(vat) +
                 "\r\nCodul de TVA trebuie sa inceapa cu codul tarii");
    rules.Problem({" - ", lines.Name(kVAT_ID), " FORMAT INCORECT"});
    return;
  }
  const std::string country = platform::ToUpper(prefix);
  if (!rules.Known(CodeTable::kTari_UE, country)) {
    rules.ValueProblem(kVAT_ID, country, " ===> PREFIX TARA - COD TVA INCORECT ");
  }
}

void CheckRetiredCountry(CheckerRules& rules) {
  CheckedLines& lines = rules.lines();
  for (const LineColumn country : {kTara_Exp, kTara_Dest, kTara_Orig}) {
    if (lines.Text(country) == "GB") {
      rules.Problem({" ===> GB Nu se mai poate folosi dupa 2020"});
      return;  // one line however many columns have it
    }
  }
}

void CheckSupplementaryUnit(CheckerRules& rules) {
  CheckedLines& lines = rules.lines();
  if (!lines.Flag(kExista_UMS)) return;
  if (store::IsEmpty(lines.Text(kCod_UMS))) {
    rules.SupplementaryUnitProblem(" ===> COD UM SUPL NU EXISTA");
  } else if (Round(lines.Number(kVal_UMS), 0) <= 0) {  // whole units, whatever ValoriRotunjite says
    rules.SupplementaryUnitProblem(" ===> VALOARE UM SUPL NU EXISTA in unitatea de masura: " +
                                   std::string(lines.Text(kCod_UMS)));
  }
}

bool Always(const CheckContext&) { return true; }
bool Arrivals(const CheckContext& c) { return c.identity.TIP == "I"; }
bool NotArrivals(const CheckContext& c) { return c.identity.TIP != "I"; }
bool DispatchesFrom2015(const CheckContext& c) { return c.DispatchesFrom2015(); }
bool After2020(const CheckContext& c) { return c.identity.Anul > 2020; }
bool WithStatisticalValue(const CheckContext& c) { return c.CheckValStatistica; }
bool WithNetMass(const CheckContext& c) { return c.VerificaNet; }

struct Rule {
  bool (*applies)(const CheckContext&);
  void (*check)(CheckerRules&);
};

// The order is the order of the report's lines.
constexpr Rule kRules[] = {
    {Always, [](CheckerRules& r) { r.RequireFilled(kRecord_ID, kCod_NC); }},
    // Before 2015 dispatches carried neither origin nor partner, so those may stay empty there.
    {NotArrivals, [](CheckerRules& r) { r.RequireFilled(kTara_Exp, kNet); }},
    {Arrivals, [](CheckerRules& r) { r.RequireFilled(kTara_Orig, kNet); }},
    {DispatchesFrom2015, [](CheckerRules& r) { r.RequireFilled(kTara_Orig, kTara_Orig); }},
    {DispatchesFrom2015, CheckPartnerVat},
    {Always, [](CheckerRules& r) { r.RequireFilled(kNat_Tranz, kMod_Transp); }},
    {Always, [](CheckerRules& r) { r.RequireKnown(CodeTable::kHS8, kCod_NC, kUnknown); }},
    {Arrivals, [](CheckerRules& r) { r.RequireKnown(CodeTable::kTari, kTara_Orig, kUnknown); }},
    {Arrivals,
     [](CheckerRules& r) {
       if (r.lines().Text(kTara_Exp) == "RO") {
         r.ValueProblem(kTara_Exp, " ===> NU SE POATE TARA EXPEDIERE ROMANIA");
       }
     }},
    {DispatchesFrom2015, [](CheckerRules& r) { r.RequireKnown(CodeTable::kTari, kTara_Orig, kUnknown); }},
    {DispatchesFrom2015,
     [](CheckerRules& r) {
       if (r.lines().Text(kTara_Dest) == "RO") {
         r.ValueProblem(kTara_Dest, " ===> NU SE POATE TARA DEST ROMANIA");
       }
     }},
    {Always, [](CheckerRules& r) { r.RequireKnown(CodeTable::kTari_UE, kTara_Exp, kNotInUnion); }},
    {After2020, CheckRetiredCountry},
    {Always, [](CheckerRules& r) { r.RequireKnown(CodeTable::kTari_UE, kTara_Dest, kNotInUnion); }},
    {Always, [](CheckerRules& r) { r.RequireKnown(CodeTable::kTranzactii_Unit, kNat_Tranz, kUnknown); }},
    {Always, [](CheckerRules& r) { r.RequireKnown(CodeTable::kIncoterms, kIncoterms, kUnknown); }},
    {Always, [](CheckerRules& r) { r.RequireKnown(CodeTable::kMOD_TRANS, kMod_Transp, kUnknown); }},
    {Always, CheckSupplementaryUnit},
    {Always,
     [](CheckerRules& r) { r.RequireAbove0(kVal_Fiscala, r.context().value_decimals(), kNotPositive); }},
    {WithStatisticalValue,
     [](CheckerRules& r) { r.RequireAbove0(kVal_Stat, r.context().value_decimals(), kNotPositive); }},
    // The text names only negative values, yet zero is refused as well; kept so on purpose.
    {WithNetMass, [](CheckerRules& r) { r.RequireAbove0(kNet, 2, " ===> VALOARE NEGATIVA"); }},
};

}  // namespace

bool CodeProbes::Known(CodeTable table, std::string_view value) {
  Answers& answers = answers_[static_cast<std::size_t>(table)];
  const auto known = answers.find(value);
  if (known != answers.end()) return known->second;
  const bool answer = Ask(table, value);
  answers.emplace(value, answer);
  return answer;
}

bool CodeProbes::Ask(CodeTable table, std::string_view value) {
  std::string statement(kProbes[static_cast<std::size_t>(table)]);
  statement += value;
  statement += '\'';
  bool found = false;
  store::PassOver(session_->host.errors, "Verifica_Declaratie",
                  [&] { found = session_->company.Any(statement); });
  return found;
}

CheckerRules::CheckerRules(session::Session& session, const CheckContext& context, CheckedLines& lines,
                           std::string& report)
    : session_(&session), context_(context), lines_(&lines), report_(&report), probes_(session) {
  for (const Rule& rule : kRules) {
    if (rule.applies(context)) checks_.push_back(rule.check);
  }
}

bool CheckerRules::CheckLine() {
  marked_ = false;
  for (const auto check : checks_) check(*this);
  return marked_;
}

void CheckerRules::RequireFilled(int first, int last) {
  for (int position = first; position <= last; ++position) {
    if (lines_->EmptyAt(position)) Problem({" - ", lines_->NameAt(position), " ESTE GOL"});
  }
}

void CheckerRules::RequireKnown(CodeTable table, LineColumn column, std::string_view suffix) {
  const std::string_view value = lines_->Text(column);
  if (!Known(table, value)) ValueProblem(column, value, suffix);
}

void CheckerRules::RequireAbove0(LineColumn column, int decimals, std::string_view suffix) {
  if (Round(lines_->Number(column), decimals) <= 0) ValueProblem(column, suffix);
}

void CheckerRules::ValueProblem(LineColumn column, std::string_view suffix) {
  ValueProblem(column, std::string(lines_->Text(column)), suffix);
}

void CheckerRules::ValueProblem(LineColumn column, std::string_view value, std::string_view suffix) {
  Problem({" - ", lines_->Name(column), " = ", value, suffix});
}

void CheckerRules::SupplementaryUnitProblem(std::string_view suffix) {
  const std::string code(lines_->Text(kCod_NC));
  Problem({" - Cod NC : ", code, suffix});
}

void CheckerRules::Problem(std::initializer_list<std::string_view> parts) {
  // A value may lie in the lines' scratch text, which reading the number of the line would overwrite.
  std::string text;
  for (const std::string_view part : parts) text += part;
  *report_ += "Pozitia: ";
  *report_ += lines_->Text(kRecord_ID);
  *report_ += text;
  *report_ += "\r\n";
  marked_ = true;
}

}  // namespace calc
