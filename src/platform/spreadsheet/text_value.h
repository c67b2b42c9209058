#pragma once

#include <optional>
#include <string_view>

namespace platform::spreadsheet {

/// A date and perhaps time written as `format` says (y, m, d, h, n for minutes, s; m behind h is minutes),
/// with or without a time behind what the format asks for. Days since 1899-12-30; empty where it is none.
std::optional<double> ParseDate(std::string_view text, std::string_view format);

/// A whole text as a number with the given decimal sign.
std::optional<double> ParseNumber(std::string_view text, char decimal);

}  // namespace platform::spreadsheet
