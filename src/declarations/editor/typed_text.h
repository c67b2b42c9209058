#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/value.h"

namespace declarations {

/// A date as typed: whole ("5.3.2026", "2026-03-05"), or just the day, or day and month ("5", "5.3"), which
/// the declaration's month and year complete.
std::optional<store::Date> ParseTypedDate(std::string_view text, int year, int month);

/// Years 2000 to 2099: anything else on a line is a slip of the keyboard.
bool IsLineDate(store::Date date);

/// A value as text to type over: all digits, the user's decimal mark, no grouping; dates dd.mm.yyyy.
std::string TypedText(const store::Value& value, std::string_view decimal_mark);

/// A block as spreadsheets copy it: cells separated by tabs, lines by line ends; a cell in quotes may hold
/// both (line ends within become blanks).
std::vector<std::vector<std::string>> SplitBlock(std::string_view text);

}  // namespace declarations
