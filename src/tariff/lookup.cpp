#include "tariff/lookup.h"

namespace tariff {
namespace {

constexpr char kVersionInForce[] =
    "SELECT * FROM InsCodeVersions WHERE Anul_End IS NULL AND Luna_End IS NULL";

/// Bare name of the period's tariff file; nothing where no version row fits.
std::optional<std::string> FileForPeriod(session::Session& session, int year, int month) {
  store::Recordset versions =
      session.common.Query("SELECT Anul,Luna,Anul_End,Luna_End,CN_File FROM InsCodeVersions WHERE " +
                           VersionCondition(year, month));
  if (versions.record_count() == 0) versions = session.common.Query(kVersionInForce);
  if (versions.record_count() == 0) return std::nullopt;
  versions.MoveFirst();
  return versions["CN_File"].ToText();
}

/// Reopens the tariff connection on `path`; where that file cannot be opened, the earlier one is opened
/// again.
bool Reopen(session::Session& session, const std::string& path) {
  const std::string earlier = session.tariff_connection_string;
  const std::string wanted = store::JetString(path);
  const bool was_open = session.tariff.is_open();
  if (was_open) session.tariff.Close();
  try {
    session.tariff.Open(wanted);
    session.tariff_connection_string = wanted;
    return true;
  } catch (const store::Error& error) {
    if (was_open) {
      store::PassOver(session.host.errors, "ConexiuneTarif", [&] { session.tariff.Open(earlier); });
    }
    session::ShowError(session, error);
    return false;
  }
}

bool Choose(session::Session& session, int month, int year) {
  std::optional<std::string> file;
  try {
    file = FileForPeriod(session, year, month);
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return false;
  }
  if (!file) {
    session.host.prompter.Error("Nu se poate identifica tabela tarif vamal");
    return false;
  }
  const std::string path = session.settings.DataBase + "CN\\" + *file;
  if (!session.host.files.Exists(path)) {
    session.host.errors.Write("ConexiuneTarif", path);  // the message does not name it
    session.host.prompter.Error("Nu se poate identifica fisierul pentru tabela tarif vamal");
    return false;
  }
  return Reopen(session, path);
}

}  // namespace

std::string VersionCondition(int year, int month) {
  return fmt::format(
      "( Anul<={0} AND Luna<={1} AND Anul_End>={0} AND Luna_End>={1})  OR "
      "( Anul<={0} AND Luna<={1} AND Anul_End IS NULL AND Luna_End IS NULL) ",
      year, month);
}

void BindCodesForCompany(session::Session& session) {
  if (!session.tariff.is_open() || !session.company.is_open()) return;
  store::PassOver(session.host.errors, "ConexiuneTarif",
                  [&session] { session.company.BindLink("HS8", session.tariff.path(), "HS8"); });
}

bool ConexiuneTarif(session::Session& session, int& month, int& year) {
  if (year == 0) year = session.host.clock.Now().year;
  const bool chosen = Choose(session, month, year);
  BindCodesForCompany(session);  // also after a refusal: a company opened since then has no binding yet
  return chosen;
}

std::string Cautare_Tarif(session::Session& session, std::string_view code) {
  std::string description, unit, flag;
  if (session.tariff.is_open()) {
    std::string statement =
        "SELECT HS8_COD, LEFT(MAX(DESCRIERE),250) AS DESCRIERE1, MAX(UM_SUPL) AS UM_SUPL1, "
        "IIF(ISNULL(MAX([UM_SUPL]))=0,1,0) AS EXISTA_UM FROM HS_8 WHERE [HS8_COD]='";
    statement += code;
    statement += "' AND ISNULL([AN_END])=-1 AND ISNULL([HS8_COD])=0 GROUP BY HS8_COD";
    store::PassOver(session.host.errors, "Cautare_Tarif", [&] {
      const store::Recordset found = session.tariff.Query(statement);
      if (found.record_count() == 0) return;
      description = found.Get(1).ToText();
      unit = found.Get(2).ToText();
      flag = found.Get(3).ToText();
    });
  }
  return description + "|" + unit + "|" + flag;
}

TariffAnswer SplitAnswer(std::string_view lookup) {
  TariffAnswer answer;
  if (lookup.size() <= 2) return answer;
  const auto next_part = [&lookup] {
    const std::size_t bar = lookup.find('|');
    const std::string_view part = lookup.substr(0, bar);
    lookup.remove_prefix(bar == std::string_view::npos ? lookup.size() : bar + 1);
    return part;
  };
  answer.found = true;
  std::string_view description = next_part();
  const std::size_t first = description.find_first_not_of(' ');
  if (first != std::string_view::npos) {
    answer.description = description.substr(first, description.find_last_not_of(' ') - first + 1);
  }
  answer.unit = next_part();
  answer.flag = next_part();
  return answer;
}

}  // namespace tariff
