#pragma once

#include "calc/redistribution/amounts.h"

namespace calc {

/// Shares a total net mass over the lines it was invoiced for (screen Frm_Calcul_Net), in kilograms with 2
/// decimals. The statistical value stays; there is no undo: the old total entered again restores
/// proportional masses.
class NetRedistribution : public AmountRedistribution {
 public:
  using AmountRedistribution::AmountRedistribution;

  std::string AmountField() const override { return "Total_GreutateNeta"; }
  std::vector<Redis_Mod> Mods() const override;
  std::vector<Redis_Op> Ops() const override;
  std::vector<std::string> HelpLines() const override;
  std::vector<std::string> Statements(const store::Recordset& row) const override;

 protected:
  Grouping GroupingOf(Redis_Op op) const override;
  std::string LogName() const override { return "Redistribuire greutate neta"; }
  std::vector<GroupColumn> OwnColumns() const override;
  Measures MeasuresOf(const store::Recordset& row, bool stored) const override;
  std::vector<std::string> Remarks(const store::Recordset& row) const override;
};

}  // namespace calc
