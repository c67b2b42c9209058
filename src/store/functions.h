#pragma once

#include <charconv>
#include <functional>
#include <string>
#include <string_view>

#include "store/value.h"

struct sqlite3;

namespace store {

/// Text order of the engine: without regard to case; accents, hyphens and apostrophes only break ties;
/// trailing blanks after a non-blank character do not count. Zero only for texts that the engine's "=" calls
/// equal. Comma-below ș/ț weigh the same as cedilla ş/ţ.
int CompareText(std::string_view a, std::string_view b);

/// LIKE as program statements have it: %, _, [a-f], [!a]. `star_too` adds "*" (Recordset.Find).
bool Like(std::string_view text, std::string_view pattern, bool star_too = false);

/// The engine's ROUND: scaled by 10^decimals in binary, then half to even. decimals 0 to 15.
double RoundHalfEven(double value, int decimals);

/// Name of the SQLite collation registered by RegisterFunctions.
inline constexpr char kCollation[] = "DX";

/// Where NOW, DATE and TIME take the moment from, in days since 1899-12-30; an empty function restores the
/// system's local time. Process-wide, so that tests fix it.
void SetFunctionClock(std::function<double()> now);

/// What a failing function leaves as SQLite's error message: "dx:<number>:<description>".
inline constexpr std::string_view kFunctionErrorPrefix = "dx:";

/// Takes such a message apart; false where it is one of SQLite's own.
inline bool ParseFunctionError(std::string_view message, int& number, std::string& description) {
  if (message.substr(0, kFunctionErrorPrefix.size()) != kFunctionErrorPrefix) return false;
  message.remove_prefix(kFunctionErrorPrefix.size());
  const char* end = message.data() + message.size();
  auto [stop, failure] = std::from_chars(message.data(), end, number);
  if (failure != std::errc() || stop == end || *stop != ':') return false;
  description.assign(stop + 1, end);
  return true;
}

/// Registers the collation and every function that translated statements call (names begin with "dx_").
void RegisterFunctions(sqlite3* db);

}  // namespace store
