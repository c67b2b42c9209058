#pragma once

#include "calc/redistribution/amounts.h"

namespace calc {

/// Shares transport invoices over the lines they cover and sets every line's statistical value to its
/// invoiced value plus its share in lei (screen Frm_Calcul_Transp_Statistic). Without a currency it is RON,
/// without a rate 1. Delivery terms that include the transport to the destination take negative amounts.
class TransportRedistribution : public AmountRedistribution {
 public:
  using AmountRedistribution::AmountRedistribution;

  std::string AmountField() const override { return "Total_Transport_Suma"; }
  std::vector<Redis_Mod> Mods() const override;
  std::vector<Redis_Op> Ops() const override;
  std::vector<std::string> HelpLines() const override;
  std::vector<std::string> Statements(const store::Recordset& row) const override;

  /// Asks, then removes all shares of the declaration. Lines touched; -1 where the statement failed (it is in
  /// the log then), none where the user refused.
  std::optional<std::int64_t> CmdStergeRedistribuire();

 protected:
  Grouping GroupingOf(Redis_Op op) const override;
  std::string LogName() const override { return "Redistribuire transport"; }
  std::vector<GroupColumn> OwnColumns() const override;
  Measures MeasuresOf(const store::Recordset& row, bool stored) const override;
  std::vector<std::string> Remarks(const store::Recordset& row) const override;
};

}  // namespace calc
