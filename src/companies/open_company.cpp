#include "companies/open_company.h"

#include "companies/company_defaults.h"
#include "platform/encoding.h"
#include "tariff/lookup.h"

namespace companies {
namespace {

void ShowMissingFile(session::Session& session, const std::string& path) {
  session.host.prompter.Error("EROARE MAJORA, NU EXISTA FISIERUL : \r\n" + path, "");
}

/// Name of a registered company, "x" for one without.
std::string NameOf(session::Session& session, std::string_view code) {
  store::Recordset row =
      session.common.Query("SELECT * FROM [Firme] WHERE [Cod_Fiscal]='" + std::string(code) + "'");
  return store::TextOr(row["Nume_Firma"], "x");
}

}  // namespace

std::vector<ListedCompany> ListCompanies(session::Session& session) {
  store::Recordset rows = session.common.Query(
      "SELECT Nume_firma, Cod_Fiscal, DataBaseFile FROM Firme WHERE Cod_Fiscal <> '0' ORDER BY [Nume_firma]");
  std::vector<ListedCompany> companies;
  for (; !rows.eof(); rows.MoveNext()) {
    companies.push_back({rows.Get(0).ToText(), rows.Get(1).ToText(), rows.Get(2).ToText()});
  }
  return companies;
}

bool OpenCompany(session::Session& session, std::string_view Cod_Fiscal, std::string_view DataBaseFile) {
  const std::string path = session.settings.DataBase + std::string(DataBaseFile);
  if (!session.host.files.Exists(path)) {
    ShowMissingFile(session, path);
    return false;
  }
  session.user_name = platform::UserName();
  try {
    // The register is read before the connection moves: with a company that is not in it, nothing changes.
    const std::string name = NameOf(session, Cod_Fiscal);
    session.company.Close();
    session::OpenCompanyConnection(session, path);
    session.current = {std::string(Cod_Fiscal), name, path};
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return false;
  }
  const platform::LocalTime now = session.host.clock.Now();
  int month = now.month;
  int year = now.year;
  tariff::ConexiuneTarif(session, month, year);
  try {
    SetariValoriDefault(session, Cod_Fiscal);
  } catch (const store::Error& error) {
    session::ShowError(session, error);
  }
  store::PassOver(session.host.errors, "OpenCompany", [&] { RefreshStoredQueries(session); });
  session::ComunLink(session);
  return true;
}

bool OpenRegisteredCompany(session::Session& session, std::string_view Cod_Fiscal) {
  std::string code;  // as registered; the comparison takes small letters too
  std::string file;
  try {
    const store::Recordset row = session.common.Query(
        "SELECT Cod_Fiscal, DataBaseFile FROM [Firme] WHERE [Cod_Fiscal]='" + std::string(Cod_Fiscal) + "'");
    if (row.eof()) {
      session.host.prompter.Error("Nu exista firma cu codul fiscal : " + std::string(Cod_Fiscal));
      return false;
    }
    code = row["Cod_Fiscal"].ToText();
    file = row["DataBaseFile"].ToText();
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return false;
  }
  return OpenCompany(session, code, file);
}

bool ConfirmSelection(session::Session& session, const ListedCompany& chosen) {
  for (const std::string& value : {chosen.Nume_Firma, chosen.Cod_Fiscal, chosen.DataBaseFile}) {
    if (!store::IsEmpty(value)) continue;
    platform::ShowRequired(session.host.prompter, "Nume firma");  // whichever of the three is missing
    return false;
  }
  return OpenCompany(session, chosen.Cod_Fiscal, chosen.DataBaseFile);
}

int RefreshStoredQueries(session::Session& session) {
  const std::string file = session.settings.DataBase + "goala.mdb";
  if (!session.host.files.Exists(file)) return 0;
  store::Connection source(session::StoreEnvironment(session));
  source.Open(store::JetString(file));
  store::Catalog& ours = session.company.catalog();
  std::map<std::string, std::string> present;
  for (const store::StoredQuery& query : ours.Queries()) present[platform::ToUpper(query.name)] = query.text;
  std::vector<store::StoredQuery> changed;
  for (const store::StoredQuery& query : source.catalog().Queries()) {
    const auto found = present.find(platform::ToUpper(query.name));
    if (found == present.end() || found->second != query.text) changed.push_back(query);
  }
  if (changed.empty()) return 0;
  store::Transaction transaction(session.company);
  for (const store::StoredQuery& query : changed) ours.SetQuery(query);
  transaction.Commit();
  return static_cast<int>(changed.size());
}

}  // namespace companies
