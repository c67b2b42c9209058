#include "support/sample_lines.h"

namespace test_support {

std::int64_t AddLine(session::Session& session, const std::string& TIP, int Anul, int Luna,
                     const LineValues& changes) {
  store::Recordset lines = session.company.QueryForUpdate("SELECT * FROM Intrastat WHERE Record_ID=0");
  lines.AddNew();
  const bool arrivals = TIP == "I";
  const LineValues base = {{"TIP", TIP},
                           {"Cod_Fiscal", session.current.Cod_Fiscal},
                           {"Anul", Anul},
                           {"Luna", Luna},
                           {"Cod_NC", "84713000"},
                           {"Tara_Orig", "CN"},
                           {"Tara_Exp", arrivals ? "DE" : "RO"},
                           {"Tara_Dest", arrivals ? "RO" : "IT"},
                           {"Cantitate", 2.0},
                           {"Val_Fiscala", 100.0},
                           {"Val_Stat", 110.0},
                           {"Net", 10.0},
                           {"Exista_UMS", 1},
                           {"Cod_UMS", "p/st"},
                           {"Val_UMS", 2.0},
                           {"Nat_Tranz", "1.1"},
                           {"Incoterms", arrivals ? "CPT" : "EXW"},
                           {"Mod_Transp", "3"},
                           {"VAT_ID", arrivals ? "" : "IT01234567890"}};
  for (const auto& [column, value] : base) lines.Set(column, value);
  for (const auto& [column, value] : changes) lines.Set(column, value);
  lines.Update();
  return lines["Record_ID"].ToInteger();
}

void LendTariff(Installation& at, int year) {
  const std::string folder = at.session.settings.DataBase + "CN\\";
  const std::string file =
      at.session.common.Scalar("SELECT CN_File FROM InsCodeVersions WHERE Anul=" + std::to_string(year))
          .value_or("")
          .ToText();
  at.files().Copy(at.session.tariff.path(), folder + file);
}

}  // namespace test_support
