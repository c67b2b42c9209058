#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/session.h"
#include "store/value.h"

namespace calc {

/// Lei per one unit of the currency for a document of that date: the latest rate published strictly before
/// it, divided by its multiplier, rounded to 4 decimals and narrowed to single precision. 0 where there is
/// none or an argument is empty.
float Curs_Schimb(session::Session& session, const store::Value& Cod_Moneda, const store::Value& Data);

/// Adds or replaces one currency's rate of a date. Rates are kept to 4 decimals.
void AddRate(session::Session& session, std::string_view Cod_Moneda, store::Date date, double Curs_Schimb,
             int Multiplicator);

/// Rates dated after this day are slips: the table would count as current until that day comes.
store::Date LatestRateDay(const session::Session& session);

}  // namespace calc
