#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/session.h"

namespace tariff {

/// Condition of the InsCodeVersions rows of a period. Year and month are compared separately, not as one
/// period: the version rows are laid out for it.
std::string VersionCondition(int year, int month);

/// Chooses the tariff file valid for the period and (re)opens the tariff connection on it; a year of 0
/// becomes the current year. The company connection's HS8 then reads that file too. Failures are shown and
/// leave the connection as it was; answers whether the tariff is open for the period.
bool ConexiuneTarif(session::Session& session, int& month, int& year);

/// Statements of the company's file read the eight-digit codes as HS8: they follow the tariff connection.
/// Nothing happens unless both are open.
void BindCodesForCompany(session::Session& session);

/// Description "|" supplementary unit "|" has-unit flag of an eight-digit code; "||" when it is not in the
/// tariff. The description is cut to 250 characters. The code goes into the statement as it stands.
std::string Cautare_Tarif(session::Session& session, std::string_view code);

/// Holds the tariff file's read lock over a run of lookups, which otherwise take and release it one by one.
/// Not across ConexiuneTarif. Without an open tariff it does nothing.
class LookupRun {
 public:
  explicit LookupRun(session::Session& session) {
    if (session.tariff.is_open()) transaction_.emplace(session.tariff);
  }

 private:
  std::optional<store::Transaction> transaction_;  // never committed: nothing is written
};

/// The lookup's text taken apart.
struct TariffAnswer {
  bool found = false;       ///< the text was longer than two characters
  std::string description;  ///< blanks trimmed
  std::string unit;
  std::string flag;  ///< "1" or "0"
};
TariffAnswer SplitAnswer(std::string_view lookup);

}  // namespace tariff
