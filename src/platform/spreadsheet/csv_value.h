#pragma once

#include <optional>
#include <string_view>

namespace platform::spreadsheet {

/// A number as people and programs write it, with the given decimal sign: groups of three digits may be apart
/// by the other sign or by a blank. No number: digits behind a leading zero (a code), a plus sign, more than
/// 15 digits, which a number could not hold.
std::optional<double> ParseCsvNumber(std::string_view text, char decimal);

/// yyyy-mm-dd, or day, month and year (or month and day, if `month_first`, with slashes) apart by . / or -,
/// perhaps with a time behind. Days since 1899-12-30.
std::optional<double> ParseCsvDate(std::string_view text, bool month_first);

}  // namespace platform::spreadsheet
