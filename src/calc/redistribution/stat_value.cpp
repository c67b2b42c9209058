#include "calc/redistribution/stat_value.h"

#include "platform/encoding.h"

namespace calc {
namespace {

std::string PercentText(const store::Recordset& row) {
  return store::NumberText(row.Get("Procent").ToDouble());
}

/// One line's value raised by the percentage, unrounded.
std::string Raised(const store::Recordset& row) {
  return "Val_Fiscala + (Val_Fiscala * " + PercentText(row) + "/ 100)";
}

}  // namespace

std::string StatValueRecalculation::ListStatement() const {
  return (identity().arrivals() ? "SELECT * FROM Intrastat_Grup_Recalculare_I"
                                : "SELECT * FROM Intrastat_Grup_Recalculare_O") +
         Filter();
}

std::string StatValueRecalculation::LineColumn(std::string_view field) const {
  return platform::EqualsNoCase(field, "Tara") ? PartnerCountry() : std::string(field);
}

std::vector<GroupColumn> StatValueRecalculation::OwnColumns() const {
  return {{"Procent", "Procent", GroupColumn::Kind::kNumber, "##,##0.0000", true}};
}

std::string StatValueRecalculation::Condition(const store::Recordset& row) const {
  const auto text = [&](const char* field) { return row.Get(field).ToText(); };
  return " Intrastat.Tip ='" + text("TIP") + "' AND Intrastat.Cod_Fiscal ='" + text("Cod_Fiscal") +
         "' AND Intrastat.Anul =" + text("Anul") + " AND Intrastat.Luna =" + text("Luna") +
         " AND Intrastat.Incoterms ='" + text("Incoterms") + "' AND Intrastat.Mod_Transp = '" +
         text("Mod_Transp") + "' AND Intrastat.Nat_Tranz = '" + text("Nat_Tranz") + "' AND Intrastat." +
         PartnerCountry() + " = '" + text("Tara") + "'";
}

std::vector<std::string> StatValueRecalculation::Statements(const store::Recordset& row) const {
  const std::string percent = PercentText(row);
  return {"UPDATE INTRASTAT SET Val_Stat = ROUND(Val_Fiscala + (Val_Fiscala * " + percent +
          "/ 100),2),  Raport_Stat = (Val_Fiscala + (Val_Fiscala * " + percent +
          "/ 100)) / Val_Fiscala  WHERE " + Condition(row)};
}

GroupCalculation::Measures StatValueRecalculation::MeasuresOf(const store::Recordset& row,
                                                              bool stored) const {
  const std::string raised = Raised(row);
  const std::string value = stored ? "Val_Stat" : "ROUND(" + raised + ",2)";
  return {.key = "Val_Fiscala",
          .shared = value,
          .Val_Stat = value,
          .expected = raised,
          .amount = 0,
          .decimals = 4};
}

std::string StatValueRecalculation::RunGroup(const store::Recordset& row) {
  std::string reason;
  bool zero_lines = false;
  store::PassOver(session_.host.errors, LogName(), [&] {
    try {
      session_.company.Execute(Statements(row).front());
    } catch (const store::Error& error) {
      zero_lines = error.number() == store::kDivisionByZero;
      if (zero_lines) return;
      reason = error.description();
      throw;
    }
  });
  if (!zero_lines) return reason;

  const std::string zero = Condition(row) + " AND Intrastat.Val_Fiscala = 0";
  std::string named;
  store::PassOver(session_.host.errors, LogName(), [&] {
    store::Recordset lines = session_.company.Query("SELECT Record_ID FROM Intrastat WHERE " + zero);
    for (; !lines.eof(); lines.MoveNext()) named += (named.empty() ? "" : ", ") + lines.Get(0).ToText();
  });
  session_.host.errors.Write(LogName(), "Valoare fiscala 0, fara raport statistic: Record_ID " + named);
  reason = Execute(Statements(row).front() + " AND Intrastat.Val_Fiscala <> 0");
  if (!reason.empty()) return reason;
  return Execute("UPDATE INTRASTAT SET Val_Stat = 0, Raport_Stat = NULL WHERE " + zero);
}

}  // namespace calc
