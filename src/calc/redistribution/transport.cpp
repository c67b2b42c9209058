#include "calc/redistribution/transport.h"

#include "calc/rounding/rounding.h"
#include "platform/encoding.h"

namespace calc {
namespace {

constexpr char kAmounts[] = "##,##0.00";
constexpr char kQuantities[] = "##,##0.0000";

/// Transport to the destination is in the price: the part beyond the border is taken off. The last three
/// are the D terms of Incoterms 2010 and 2020, which the help text on the screen does not name.
constexpr std::array<std::string_view, 11> kTransportIncluded = {"CIP", "CIF", "CPT", "CFR", "DDU", "DDP",
                                                                 "DES", "DAF", "DAP", "DPU", "DAT"};

std::string RateText(const store::Recordset& row) {
  return store::NumberText(Round(store::NumberOr(row.Get("Transport_Curs"), 1), 4));
}

std::string Currency(const store::Recordset& row) {
  return store::TextOr(row.Get("Transport_Moneda"), "RON");
}

}  // namespace

std::vector<Redis_Mod> TransportRedistribution::Mods() const {
  return {Redis_Mod::Redis_Mod_Cantitate, Redis_Mod::Redis_Mod_Net, Redis_Mod::Redis_Mod_Valoare};
}

std::vector<Redis_Op> TransportRedistribution::Ops() const {
  return {Redis_Op::Redis_Op_Doc, Redis_Op::Redis_Op_Incoterms, Redis_Op::Redis_Op_VAT};
}

AmountRedistribution::Grouping TransportRedistribution::GroupingOf(Redis_Op op) const {
  if (op == Redis_Op::Redis_Op_Incoterms) {
    return {identity().arrivals() ? "Intrastat_Grup_Incoterms_I" : "Intrastat_Grup_Incoterms_O",
            " ORDER BY Incoterms, Tara_Exp, Mod_Transp"};
  }
  // No blank before this one: the number of the key's condition ends where the word begins. Deliberate.
  if (op == Redis_Op::Redis_Op_VAT) return {"Intrastat_Grup_VAT", "ORDER BY VAT_ID, Incoterms, Mod_Transp"};
  return {"Intrastat_Grup_Document", " ORDER BY Factura_Numar"};
}

std::vector<std::string> TransportRedistribution::HelpLines() const {
  return {
      "Bifati prima coloana Redistribuie si introduceti suma de redistribuit",
      "Pentru conditiile de livrare CIP; CIF; CPT; CFR; DDU; DDP; DES; DAF sumele trebuie sa fie NEGATIVE si "
      "se "
      "vor introduce cu minus",
      "In cazul in care nu se specifica moneda si cursul se va considera RON si cursul egal cu 1",
      "Pentru a sterge o redistribuire bifati coloana redistribuie si introduceti la suma de redistribuit "
      "ZERO"};
}

std::vector<GroupColumn> TransportRedistribution::OwnColumns() const {
  using Kind = GroupColumn::Kind;
  return {{"Redistribuie", "Redistribuie", Kind::kTick, "", true},
          {"Total_Transport_Suma", "Suma de redistribuit", Kind::kNumber, kAmounts, true},
          {"Transport_Moneda", "Moneda Optional", Kind::kText, "", true},
          {"Transport_Curs", "Curs  Optional", Kind::kNumber, kQuantities, true},
          {"Transp_Document", "Factura Transp. Optional", Kind::kText, "", true},
          {"TOTAL_Cantitate", "Cantitate", Kind::kNumber, kQuantities, false},
          {"TOTAL_Valoare_Valuta", "Valoare Valuta", Kind::kNumber, kAmounts, false},
          {"TOTAL_Val_Fiscala", "Valoare Fiscala", Kind::kNumber, kAmounts, false},
          {"TOTAL_Net", "Net [Kg]", Kind::kNumber, kQuantities, false},
          {"Moneda", "Moneda", Kind::kText, "", false}};
}

std::vector<std::string> TransportRedistribution::Statements(const store::Recordset& row) const {
  const std::string where = " WHERE " + Condition(row);
  return {"UPDATE Intrastat SET Transport_Suma=" + Share(row, 4) + ", Transp_Document='" +
              row.Get("Transp_Document").ToText() + "', Transport_Moneda='" + Currency(row) +
              "', Transport_Curs=" + RateText(row) + where,
          "UPDATE Intrastat SET Val_Stat = Val_Fiscala + ROUND(Transport_Suma * Transport_Curs, 2)" + where};
}

GroupCalculation::Measures TransportRedistribution::MeasuresOf(const store::Recordset& row,
                                                               bool stored) const {
  Measures measures{.key = KeyColumn(),
                    .shared = "Transport_Suma",
                    .Val_Stat = "Val_Stat",
                    .expected = "",
                    .amount = Amount(row),
                    .decimals = 4};
  if (!stored) {
    measures.shared = Share(row, 4);
    measures.Val_Stat = "Val_Fiscala + ROUND(" + measures.shared + " * " + RateText(row) + ", 2)";
  }
  return measures;
}

std::vector<std::string> TransportRedistribution::Remarks(const store::Recordset& row) const {
  std::vector<std::string> remarks = AmountRedistribution::Remarks(row);
  if (Amount(row) == 0) remarks.emplace_back("Suma este zero: redistribuirea grupului se sterge");
  const std::string document = row.Get("Transp_Document").ToText();
  const std::string currency = Currency(row);
  if (document.find('\'') != std::string::npos || currency.find('\'') != std::string::npos) {
    remarks.emplace_back("Un apostrof in moneda sau in factura de transport opreste calculul grupului");
  }
  if (platform::Utf8Length(document) > 50)
    remarks.emplace_back("Factura de transport are peste 50 de caractere");
  if (platform::Utf8Length(currency) > 3) remarks.emplace_back("Moneda are peste 3 caractere");
  if (!platform::EqualsNoCase(currency, "RON") && store::NumberOr(row.Get("Transport_Curs"), 0) == 0) {
    remarks.push_back("Moneda " + currency + " nu are curs, se considera 1");
  }
  const int terms = row.FindField("Incoterms");
  if (terms >= 0 && Amount(row) > 0) {
    const std::string code = platform::ToUpper(row.Get(terms).ToText());
    if (std::find(kTransportIncluded.begin(), kTransportIncluded.end(), code) != kTransportIncluded.end()) {
      remarks.push_back("Pentru " + code + " suma trebuie sa fie NEGATIVA");
    }
  }
  return remarks;
}

std::optional<std::int64_t> TransportRedistribution::CmdStergeRedistribuire() {
  if (!session_.host.prompter.Ask("Sterg toate sumele redistribuite in aceasta declaratie Intrastat ?",
                                  "RASPUNDETI", platform::Icon::kQuestion)) {
    return std::nullopt;
  }
  std::int64_t touched = -1;
  store::PassOver(session_.host.errors, LogName(), [&] {
    touched = session_.company.Execute(
        "UPDATE Intrastat SET Transp_Document=NULL, Transport_Moneda=NULL, Transport_Suma=NULL, "
        "Transport_Curs=NULL, Val_Stat=Val_Fiscala " +
        Filter());
  });
  return touched;
}

}  // namespace calc
