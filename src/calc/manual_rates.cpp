#include "calc/manual_rates.h"

#include <cmath>

#include "calc/rates.h"
#include "calc/rounding/rounding.h"
#include "platform/encoding.h"

namespace calc {
namespace {

constexpr char kTitle[] = "EROARE";
constexpr double kHighestRate = 1e9, kHighestMultiplier = 1e6;

std::string KeyCondition(const RateKey& key) {
  return fmt::format(" WHERE Cod_Moneda = '{}' AND Valid_La_Data = #{}#",
                     platform::ReplaceAll(key.Cod_Moneda, "'", "''"), store::DateIso(key.Valid_La_Data));
}

std::string Named(const RateKey& key) {
  return fmt::format("{} din {}", key.Cod_Moneda, store::DateText(key.Valid_La_Data));
}

/// As the user's system writes numbers.
std::string RateText(const session::Session& session, double rate) {
  std::string text = fmt::format("{:.4f}", rate);
  return session.decimal_comma ? platform::ReplaceAll(text, ".", ",") : text;
}

/// The code as the list of currencies spells it; empty where it is not in there.
std::string ListedCurrency(session::Session& session, std::string_view typed) {
  const store::Value code =
      session.company
          .Scalar(fmt::format("SELECT [Moneda_COD] FROM [Monezi] WHERE [Moneda_COD]='{}'",
                              platform::ReplaceAll(typed, "'", "''")))
          .value_or(store::Value());
  return code.ToText();
}

bool IsSame(const RateKey& a, const RateKey& b) {
  return a.Cod_Moneda == b.Cod_Moneda && a.Valid_La_Data == b.Valid_La_Data;
}

}  // namespace

std::string FaultyField(session::Session& session, RateEntry& entry) {
  platform::Prompter& prompter = session.host.prompter;
  if (store::IsEmpty(entry.Cod_Moneda)) {
    ShowRequired(prompter, "Moneda");
    return "Cod_Moneda";
  }
  const std::string listed = ListedCurrency(session, entry.Cod_Moneda);
  if (listed.empty()) {
    prompter.Error(fmt::format("Moneda {} nu exista in tabela Monezi", entry.Cod_Moneda), kTitle);
    return "Cod_Moneda";
  }
  entry.Cod_Moneda = listed;
  if (listed == "RON") {
    prompter.Error(fmt::format("{} este moneda locala: cursul ei este intotdeauna 1", listed), kTitle);
    return "Cod_Moneda";
  }
  const store::Date earliest{platform::ToSerial({2000, 1, 1, 0, 0, 0})}, latest = LatestRateDay(session);
  if (!entry.Valid_La_Data) {
    prompter.Error("Data cursului lipseste sau nu este o data (zz.ll.aaaa)", kTitle);
    return "Valid_La_Data";
  }
  entry.Valid_La_Data->days = std::floor(entry.Valid_La_Data->days);
  if (entry.Valid_La_Data->days < earliest.days || entry.Valid_La_Data->days > latest.days) {
    prompter.Error(fmt::format("Data cursului trebuie sa fie intre {} si {}", store::DateText(earliest),
                               store::DateText(latest)),
                   kTitle);
    return "Valid_La_Data";
  }
  if (!entry.Curs_Schimb || !(Round(*entry.Curs_Schimb, 4) > 0) || *entry.Curs_Schimb > kHighestRate) {
    prompter.Error("Cursul trebuie sa fie un numar mai mare ca zero, cu cel mult 4 zecimale", kTitle);
    return "Curs_Schimb";
  }
  const double multiplier = entry.Multiplicator.value_or(0);
  if (!(multiplier >= 1) || multiplier > kHighestMultiplier || multiplier != std::floor(multiplier)) {
    prompter.Error("Multiplicatorul trebuie sa fie un numar intreg, 1 sau mai mare", kTitle);
    return "Multiplicator";
  }
  return "";
}

std::string RateCondition(const RateFilter& filter) {
  std::string condition;
  const auto add = [&](const std::string& part) {
    condition += (condition.empty() ? " WHERE " : " AND ") + part;
  };
  if (!filter.Cod_Moneda.empty())
    add(fmt::format("C.Cod_Moneda = '{}'", platform::ReplaceAll(filter.Cod_Moneda, "'", "''")));
  if (filter.from) add("C.Valid_La_Data >= #" + store::DateIso(*filter.from) + "#");
  if (filter.to) add("C.Valid_La_Data <= #" + store::DateIso(*filter.to) + "#");
  return condition;
}

store::Recordset ListRates(session::Session& session, const RateFilter& filter) {
  return session.company.Query(
      "SELECT C.Cod_Moneda, M.Moneda_DESC, C.Valid_La_Data, C.Curs_Schimb, C.Multiplicator"
      " FROM Rate_Schimb AS C LEFT JOIN Monezi AS M ON C.Cod_Moneda = M.Moneda_COD" +
      RateCondition(filter) + " ORDER BY C.Valid_La_Data DESC, C.Cod_Moneda");
}

int UsualMultiplier(session::Session& session, const std::string& Cod_Moneda) {
  const store::Value newest = session.company
                                  .Scalar(fmt::format("SELECT TOP 1 Multiplicator FROM Rate_Schimb WHERE "
                                                      "Cod_Moneda = '{}' ORDER BY Valid_La_Data DESC",
                                                      platform::ReplaceAll(Cod_Moneda, "'", "''")))
                                  .value_or(store::Value());
  return static_cast<int>(std::max<std::int64_t>(1, newest.ToInteger(1)));
}

RateEntry NewRate(session::Session& session, const std::string& Cod_Moneda) {
  const platform::LocalTime now = session.host.clock.Now();
  return {Cod_Moneda, store::Date{platform::ToSerial({now.year, now.month, now.day, 0, 0, 0})}, std::nullopt,
          UsualMultiplier(session, Cod_Moneda)};
}

std::optional<RateEntry> ReadRate(session::Session& session, const RateKey& key) {
  const store::Recordset row = session.company.Query("SELECT * FROM Rate_Schimb" + KeyCondition(key));
  if (row.record_count() == 0) return std::nullopt;
  return RateEntry{row["Cod_Moneda"].ToText(), row["Valid_La_Data"].ToDate(), row["Curs_Schimb"].ToDouble(),
                   row["Multiplicator"].ToDouble()};
}

RateSaving SaveRate(session::Session& session, const RateEntry& typed,
                    const std::optional<RateKey>& changed) {
  RateEntry entry = typed;
  const std::string field = FaultyField(session, entry);
  if (!field.empty()) return {std::nullopt, field};
  const RateKey key{entry.Cod_Moneda, *entry.Valid_La_Data};
  const bool moves = !changed || !IsSame(*changed, key);
  const std::optional<RateEntry> there = moves ? ReadRate(session, key) : std::nullopt;
  if (there) {
    const std::string found =
        fmt::format("Exista deja cursul {}: {}.", Named(key), RateText(session, *there->Curs_Schimb));
    if (changed) {
      session.host.prompter.Error(found + " Modificati randul acela sau alegeti alta data.", kTitle);
      return {std::nullopt, "Valid_La_Data"};
    }
    if (!session.host.prompter.Ask(
            fmt::format("{} Il inlocuiti cu {} ?", found, RateText(session, *entry.Curs_Schimb)),
            "RASPUNDETI", platform::Icon::kQuestion)) {
      return {std::nullopt, "Valid_La_Data"};
    }
  }
  store::Transaction transaction(session.company);
  if (changed && moves) session.company.Execute("DELETE FROM Rate_Schimb" + KeyCondition(*changed));
  AddRate(session, key.Cod_Moneda, key.Valid_La_Data, *entry.Curs_Schimb,
          static_cast<int>(*entry.Multiplicator));
  transaction.Commit();
  return {key, ""};
}

bool DeleteRates(session::Session& session, const std::vector<RateKey>& keys) {
  if (keys.empty()) return false;
  constexpr std::size_t kNamed = 5;
  std::string question =
      keys.size() == 1 ? "Stergeti cursul " : fmt::format("Stergeti {} cursuri: ", keys.size());
  for (std::size_t i = 0; i < std::min(keys.size(), kNamed); ++i)
    question += (i > 0 ? ", " : "") + Named(keys[i]);
  if (keys.size() > kNamed) question += fmt::format(" si inca {}", keys.size() - kNamed);
  if (!session.host.prompter.Ask(question + " ?", "RASPUNDETI", platform::Icon::kQuestion)) return false;
  store::Transaction transaction(session.company);
  for (const RateKey& key : keys) session.company.Execute("DELETE FROM Rate_Schimb" + KeyCondition(key));
  transaction.Commit();
  return true;
}

}  // namespace calc
