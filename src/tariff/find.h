#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tariff {

/// How the find dialog compares a column with what was typed.
enum class FindOption { kEqual = 1, kBegins, kContains, kWords };

/// What the dialog says when an option is chosen; the words option has two lines.
std::string_view FindHint(FindOption option);

/// The condition on a column. The text goes in as it stands: a quote in it makes the query fail. With kWords,
/// "+" asks for every part, otherwise "-" for any; the two are never mixed, and without either the whole text
/// must occur.
std::string FindCondition(FindOption option, std::string_view column, std::string_view text);

/// The columns of a SELECT as they are written in it ("[HS8_COD]", "(TR1_COD + '.'+ TR2_COD)"), so that a
/// condition can name them; anything but a bare name stands in parentheses.
std::vector<std::string> SelectedColumns(std::string_view select);

/// A list's statement narrowed by a condition: an ORDER BY stays last, a condition that is there already is
/// kept, and each of its alternatives is narrowed.
std::string Narrow(std::string_view select, std::string_view condition);

}  // namespace tariff
