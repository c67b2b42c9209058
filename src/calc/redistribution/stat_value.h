#pragma once

#include "calc/redistribution/group_calculation.h"

namespace calc {

/// The statistical value of a line is its invoiced value raised by a percentage for transport and insurance
/// up to the border; here the percentage (`Procent`) is typed per group of lines with the same terms, mode,
/// nature and partner country (screen Frm_Recalculare_ValStat).
///
/// Every group of the list is recalculated: 0 % sets the statistical value back to the invoiced one. A group
/// with lines of no invoiced value, whose ratio is a division by zero, is done for its other lines; those get
/// `Val_Stat` 0, no ratio, and are named in the log.
class StatValueRecalculation : public GroupCalculation {
 public:
  using GroupCalculation::GroupCalculation;

  std::string ListStatement() const override;
  std::vector<std::string> Statements(const store::Recordset& row) const override;
  std::string Condition(const store::Recordset& row) const override;
  bool Takes(const store::Recordset&) const override { return true; }

 protected:
  std::string LogName() const override { return "Recalculare valoare statistica"; }
  std::string ClosingMessage(int) const override { return "Recalculare Terminata"; }
  std::vector<GroupColumn> OwnColumns() const override;
  Measures MeasuresOf(const store::Recordset& row, bool stored) const override;
  std::string RunGroup(const store::Recordset& row) override;
  std::string LineColumn(std::string_view field) const override;

 private:
  std::string PartnerCountry() const { return identity().arrivals() ? "Tara_Exp" : "Tara_Dest"; }
};

}  // namespace calc
