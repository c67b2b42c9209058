#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/connection.h"

namespace tariff {

/// Validity of a row of InsCodeVersions. Years and months are compared separately when a period is looked up
/// (a row from month 7 never serves a January), so rows are laid out from month 1 to month 12 and a period's
/// row is found by its year alone.
struct Validity {
  int Anul = 0, Luna = 1;
  std::optional<int> Anul_End, Luna_End;  ///< both empty: still in force

  bool open() const { return !Anul_End && !Luna_End; }
  /// The look-up's own rule.
  bool Holds(int year, int month) const;
  friend bool operator==(const Validity&, const Validity&) = default;
};

/// Where a year's own row goes among the rows that are there.
struct YearPlan {
  Validity fresh;  ///< in force where the year is the newest, else months 1 to 12
  std::vector<std::vector<Validity>>
      remains;  ///< per row: what is left of it; none, itself, or up to two parts
};

/// Makes room for `year`: whatever the rows held of it they lose, so that no period matches two rows if none
/// did before. The row in force before a newest year ends in month 12 of the year before.
YearPlan PlanYear(const std::vector<Validity>& rows, int year);

/// Gives `year` its own row in InsCodeVersions of the common database, with the tariff file and the version
/// of each code list. Without `versions` they are taken over from the row that held the year, else from the
/// nearest earlier, else the nearest later one; the nomenclature's version is always the year. One
/// transaction.
void RegisterYear(store::Connection& common, int year, std::string_view CN_File,
                  const std::map<std::string, std::string>& versions = {});

}  // namespace tariff
