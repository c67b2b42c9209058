#include "tariff/codes.h"

#include "platform/encoding.h"

namespace tariff {

const std::array<CodeCheck, 8>& CodeChecks() {
  static const std::array<CodeCheck, 8> kChecks = {{
      {{"Cod_NC"}, "SELECT * FROM HS8", " WHERE [HS8_COD]='", "DESCRIERE"},
      {{"Moneda"}, "SELECT [Moneda_COD],[Moneda_DESC] FROM [Monezi]", " WHERE [Moneda_COD]='", "Moneda_DESC"},
      {{"Tara_Orig"}, "SELECT [Tara_COD] ,[Tara_DESC] FROM [Tari]", " WHERE [Tara_COD]='", "Tara_DESC"},
      {{"Tara_Exp", "Tara_Dest"},
       "SELECT [COD_TARA] ,[Tara_DESC] FROM [UE_Tari]",
       " WHERE [COD_TARA]='",
       "Tara_DESC"},
      {{"UM", "Cod_UMS"}, "SELECT [UM_COD] ,[UM_DESC] FROM [UM]", " WHERE [UM_COD]='", "UM_DESC"},
      {{"Nat_Tranz"}, "SELECT COD, TR_DESC FROM Tranzactii_Unit", " WHERE COD ='", "TR_DESC"},
      {{"Incoterms"},
       "SELECT [Incoterms_COD],[Incoterms_DESC] FROM [Incoterms]",
       " WHERE [Incoterms_COD]='",
       "Incoterms_DESC"},
      {{"Mod_Transp"},
       "SELECT [COD_MOD_TRANS],[DESC_MOD_TRANS] FROM [MOD_TRANS]",
       " WHERE [COD_MOD_TRANS]='",
       "DESC_MOD_TRANS"},
  }};
  return kChecks;
}

const CodeCheck* FindCodeCheck(std::string_view column) {
  for (const CodeCheck& check : CodeChecks()) {
    for (const std::string_view name : check.columns) {
      if (platform::EqualsNoCase(name, column)) return &check;
    }
  }
  return nullptr;
}

std::string CheckStatement(const CodeCheck& check, std::string_view code) {
  std::string statement(check.select);
  statement += check.condition;
  statement += code;
  statement += '\'';
  return statement;
}

std::optional<std::string> CodeDescription(session::Session& session, const CodeCheck& check,
                                           std::string_view code) {
  const store::Recordset found = session.company.Query(CheckStatement(check, code));
  if (found.record_count() == 0) return std::nullopt;
  return found.Get(check.description).ToText();
}

std::string TownsOfCounty(std::string_view county_code) {
  std::string statement = "SELECT City_Code, City_NameRo, City_RefCode from Orase WHERE City_RefCode='";
  statement += county_code;
  statement += "' ORDER BY City_NameRo";
  return statement;
}

}  // namespace tariff
