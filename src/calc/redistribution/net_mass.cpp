#include "calc/redistribution/net_mass.h"

namespace calc {

std::vector<Redis_Mod> NetRedistribution::Mods() const {
  return {Redis_Mod::Redis_Mod_Cantitate, Redis_Mod::Redis_Mod_Valoare};
}

std::vector<Redis_Op> NetRedistribution::Ops() const {
  return {Redis_Op::Redis_Op_Doc, Redis_Op::Redis_Op_CodVamal};
}

AmountRedistribution::Grouping NetRedistribution::GroupingOf(Redis_Op op) const {
  if (op == Redis_Op::Redis_Op_CodVamal) return {"Intrastat_Grup_CodVamal_Greutate", " ORDER BY Cod_NC"};
  return {"Intrastat_Grup_Document_Greutate", " ORDER BY Factura_Numar"};
}

std::vector<std::string> NetRedistribution::HelpLines() const {
  return {"Bifati / Debifati prima coloana Redistribuie si introduceti GREUATTEA NETA DE REDISTRIBUIT"};
}

std::vector<GroupColumn> NetRedistribution::OwnColumns() const {
  using Kind = GroupColumn::Kind;
  constexpr char kValues[] = "##,##0.00";
  return {{"Redistribuie", "Redistribuie", Kind::kTick, "", true},
          {"Total_GreutateNeta", "Greutate de redistribuit", Kind::kNumber, kValues, true},
          {"TOTAL_Cantitate", "Cantitate", Kind::kNumber, "##,##0", false},
          {"TOTAL_Valoare_Valuta", "Valoare Valuta", Kind::kNumber, kValues, false},
          {"TOTAL_Val_Fiscala", "Valoare Fiscala", Kind::kNumber, kValues, false},
          {"Moneda", "Moneda", Kind::kText, "", false}};
}

std::vector<std::string> NetRedistribution::Statements(const store::Recordset& row) const {
  return {"UPDATE Intrastat SET Net=" + Share(row, 2) + " WHERE " + Condition(row)};
}

GroupCalculation::Measures NetRedistribution::MeasuresOf(const store::Recordset& row, bool stored) const {
  return {.key = KeyColumn(),
          .shared = stored ? "Net" : Share(row, 2),
          .Val_Stat = "",
          .expected = "",
          .amount = Amount(row),
          .decimals = 2};
}

std::vector<std::string> NetRedistribution::Remarks(const store::Recordset& row) const {
  std::vector<std::string> remarks = AmountRedistribution::Remarks(row);
  if (Amount(row) <= 0) remarks.emplace_back("Greutatea de redistribuit nu este mai mare ca zero");
  return remarks;
}

}  // namespace calc
