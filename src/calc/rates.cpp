#include "calc/rates.h"

#include <cmath>

#include "calc/rounding/rounding.h"

namespace calc {
namespace {

/// The strict "<" is settled: a document is converted at the latest rate published before its day, never at
/// the rate of the day itself.
std::string RateStatement(const std::string& code, store::Date date) {
  return "SELECT C.Cod_Moneda, C.Valid_La_Data, C.Curs_Schimb, C.Multiplicator"
         " FROM Rate_Schimb AS C INNER JOIN "
         "(SELECT Cod_Moneda, Max(Valid_La_Data) AS Data_Curs"
         " FROM Rate_Schimb"
         " WHERE Cod_Moneda ='" +
         code + "' AND Valid_La_Data< #" + store::DateMdy(date) +
         "# GROUP BY Cod_Moneda) AS P"
         " ON C.Cod_Moneda = P.Cod_Moneda"
         " AND C.Valid_La_Data = P.Data_Curs";
}

}  // namespace

float Curs_Schimb(session::Session& session, const store::Value& Cod_Moneda, const store::Value& Data) {
  if (store::IsEmpty(Cod_Moneda) || store::IsEmpty(Data)) return 0;
  const store::Date date = Data.ToDate();
  if (date.days == 0 && !Data.is_date()) return 0;  // a text that is no date
  double rate = 0;
  store::PassOver(session.host.errors, "Curs_Schimb", [&] {
    const store::Recordset rates = session.company.Query(RateStatement(Cod_Moneda.ToText(), date));
    if (rates.record_count() == 0) return;
    const double per_unit = rates.Get(2).ToDouble() / rates.Get(3).ToDouble();
    if (std::isfinite(per_unit)) rate = Round(per_unit, 4);
  });
  return static_cast<float>(rate);
}

void AddRate(session::Session& session, std::string_view Cod_Moneda, store::Date date, double Curs_Schimb,
             int Multiplicator) {
  store::Transaction transaction(session.company);
  store::Recordset rates = session.company.QueryForUpdate(
      "SELECT * FROM Rate_Schimb WHERE Cod_Moneda = '" + std::string(Cod_Moneda) + "' AND Valid_La_Data = #" +
      store::DateIso(date) + "#");
  if (rates.record_count() == 0) {
    rates.AddNew();
    rates.Set("Cod_Moneda", Cod_Moneda);
    rates.Set("Valid_La_Data", date);
  }
  rates.Set("Curs_Schimb", Round(Curs_Schimb, 4));
  rates.Set("Multiplicator", Multiplicator);
  rates.Update();
  transaction.Commit();
}

store::Date LatestRateDay(const session::Session& session) {
  // An afternoon's rate may be entered under the day it is first used.
  constexpr int kDaysAhead = 1;
  const platform::LocalTime now = session.host.clock.Now();
  return {platform::ToSerial({now.year, now.month, now.day, 0, 0, 0}) + kDaysAhead};
}

}  // namespace calc
