#include "calc/bnr_import.h"

#include <map>

#include "calc/bnr_file.h"
#include "calc/rates.h"

namespace calc {
namespace {

constexpr char kWhere[] = "ImportBnrFile";
constexpr std::size_t kNamedRows = 15;              ///< in the message; the log names more
constexpr std::size_t kLoggedRows = 500;            ///< a file that is wrong throughout need not fill the log
constexpr std::uint64_t kLargestFile = 64U << 20U;  ///< a year of rates is below 1 MB

/// Stores the rates; false where the user stops, and then nothing is stored.
bool Store(session::Session& session, const std::vector<PublishedRate>& rates, BnrImport& result) {
  if (rates.empty()) return true;
  store::Transaction transaction(session.company);
  const auto [first, last] =
      std::minmax_element(rates.begin(), rates.end(), [](const PublishedRate& a, const PublishedRate& b) {
        return a.Valid_La_Data.days < b.Valid_La_Data.days;
      });
  store::Recordset held = session.company.QueryForUpdate(
      fmt::format("SELECT * FROM Rate_Schimb WHERE Valid_La_Data >= #{}# AND Valid_La_Data <= #{}#",
                  store::DateIso(first->Valid_La_Data), store::DateIso(last->Valid_La_Data)));
  std::map<std::pair<double, std::string>, std::int64_t> positions;
  for (; !held.eof(); held.MoveNext()) {
    positions.emplace(std::pair(held["Valid_La_Data"].ToDate().days, held["Cod_Moneda"].ToText()),
                      held.position());
  }
  store::Recordset added = session.company.QueryForUpdate("SELECT * FROM Rate_Schimb WHERE Cod_Moneda = ''");
  std::size_t ordinal = 0;
  for (const PublishedRate& rate : rates) {
    if (session.host.progress.Cancelled()) return false;
    session.host.progress.Update("Preiau cursurile BNR", static_cast<int>(++ordinal * 100 / rates.size()));
    const auto at = positions.find({rate.Valid_La_Data.days, rate.Cod_Moneda});
    store::Recordset& row = at == positions.end() ? added : held;
    if (at == positions.end()) {
      row.AddNew();
      row.Set("Cod_Moneda", rate.Cod_Moneda);
      row.Set("Valid_La_Data", rate.Valid_La_Data);
      ++result.added;
    } else {
      row.set_position(at->second);
      const bool same = row["Curs_Schimb"].ToDouble() == rate.Curs_Schimb &&
                        row["Multiplicator"].ToInteger() == rate.Multiplicator;
      ++(same ? result.unchanged : result.replaced);
      if (same) continue;
    }
    row.Set("Curs_Schimb", rate.Curs_Schimb);
    row.Set("Multiplicator", rate.Multiplicator);
    row.Update();
  }
  transaction.Commit();
  result.newest = last->Valid_La_Data;
  return true;
}

void ShowRefused(session::Session& session, const BnrImport& result) {
  const std::vector<std::string>& rows = result.refused;
  if (rows.empty()) return;
  for (std::size_t i = 0; i < std::min(rows.size(), kLoggedRows); ++i)
    session.host.errors.Write(kWhere, rows[i]);
  std::string text =
      fmt::format("Fisier BNR: {}.\r\n\r\nNu s-au preluat ({}):\r\n", result.Summary(), rows.size());
  for (std::size_t i = 0; i < std::min(rows.size(), kNamedRows); ++i) text += rows[i] + "\r\n";
  if (rows.size() > kNamedRows) {
    text += fmt::format("... si inca {}; lista este in {}\r\n", rows.size() - kNamedRows,
                        session.UnderSystem("Erori\\erori.txt"));
  }
  session.host.prompter.Message(text, "Fisier BNR", platform::Icon::kExclamation);
}

}  // namespace

std::string BnrImport::Summary() const {
  const auto count = [](int number, const char* one, const char* many) {
    return fmt::format("{} {}", number, number == 1 ? one : many);
  };
  std::string text = count(added, "curs nou", "cursuri noi") + ", " +
                     count(replaced, "inlocuit", "inlocuite") + ", " +
                     count(unchanged, "neschimbat", "neschimbate");
  if (newest.days != 0) text += "; ultima zi " + store::DateText(newest);
  return text;
}

BnrImport ImportBnrFile(session::Session& session, std::string_view path) {
  BnrImport result;
  const auto refuse = [&](std::string reason) {
    result = {};
    result.outcome = BnrImport::Outcome::kRefused;
    result.error = std::move(reason);
    session.host.prompter.Error(fmt::format("Fisierul nu a fost preluat: {}\r\n{}", path, result.error));
    return result;
  };
  BnrFile file;
  try {
    if (session.host.files.Size(path) > kLargestFile)
      return refuse("este prea mare pentru un fisier de cursuri");
    std::string xml = session.host.files.Read(path);
    file = ReadBnrFile(xml, LatestRateDay(session));
  } catch (const platform::FileError& error) {
    return refuse(error.what());
  }
  if (!file.error.empty()) return refuse(file.error);
  result.refused = std::move(file.refused);
  if (!Store(session, file.rates, result)) {
    result = {};
    result.outcome = BnrImport::Outcome::kStopped;
    return result;
  }
  ShowRefused(session, result);
  return result;
}

}  // namespace calc
