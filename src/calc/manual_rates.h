#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace calc {

/// Choices for a rate's currency: code and name.
inline constexpr char kCurrencyChoices[] =
    "SELECT [Moneda_COD],[Moneda_DESC] FROM [Monezi] ORDER BY [Moneda_COD]";

/// What the list of rates is narrowed to; what is empty does not narrow.
struct RateFilter {
  std::string Cod_Moneda;
  std::optional<store::Date> from, to;  ///< both days belong to it

  bool IsEmpty() const { return Cod_Moneda.empty() && !from && !to; }
};

/// " WHERE …" on `Rate_Schimb AS C`, or nothing.
std::string RateCondition(const RateFilter& filter);

/// Columns `Cod_Moneda`, `Moneda_DESC`, `Valid_La_Data`, `Curs_Schimb`, `Multiplicator`, newest day first.
store::Recordset ListRates(session::Session& session, const RateFilter& filter);

/// What tells a row of `Rate_Schimb` from all others.
struct RateKey {
  std::string Cod_Moneda;
  store::Date Valid_La_Data;
};

/// A rate as typed; what could not be read is empty.
struct RateEntry {
  std::string Cod_Moneda;
  std::optional<store::Date> Valid_La_Data;
  std::optional<double> Curs_Schimb, Multiplicator;
};

/// What the form opens with: the currency with its usual multiplier, today.
RateEntry NewRate(session::Session& session, const std::string& Cod_Moneda);
/// The row; nothing where it is gone.
std::optional<RateEntry> ReadRate(session::Session& session, const RateKey& key);
/// That of the currency's newest rate, 1 where it has none.
int UsualMultiplier(session::Session& session, const std::string& Cod_Moneda);

/// Shows the first thing wrong with an entry and answers its column, "" where all is well; completes the
/// currency's spelling and drops the hour of the day.
std::string FaultyField(session::Session& session, RateEntry& entry);

struct RateSaving {
  std::optional<RateKey> saved;
  std::string field;  ///< where nothing was saved: the column at fault, if any
};

/// Checks and stores a rate, in place of the row `changed` where there is one. Whatever keeps it from being
/// stored is shown. A new rate of a currency and day that has one asks before it replaces it; a changed row
/// never overwrites another.
RateSaving SaveRate(session::Session& session, const RateEntry& entry, const std::optional<RateKey>& changed);

/// Asks, naming what goes, and deletes. False where the user says no.
bool DeleteRates(session::Session& session, const std::vector<RateKey>& keys);

}  // namespace calc
