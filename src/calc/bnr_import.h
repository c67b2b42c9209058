#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace calc {

/// What became of a rates file of the National Bank.
struct BnrImport {
  enum class Outcome { kTaken, kRefused, kStopped };  ///< the last two left the table as it was
  Outcome outcome = Outcome::kTaken;
  std::string error;  ///< the reason of kRefused
  int added = 0, replaced = 0, unchanged = 0;
  std::vector<std::string> refused;  ///< rows left out: which, and why
  store::Date newest;                ///< last day taken; day 0 where none was

  /// "38 cursuri noi, 1 inlocuit, 0 neschimbate; ultima zi 05.08.2026".
  std::string Summary() const;
};

/// Takes the rates of such a file (Windows path) into `Rate_Schimb` of the open company, in one transaction.
/// The bank's rate replaces one already there for the same currency and day. The user may stop the run. A
/// file that is refused and rows that are left out are shown in a message; the rows are also noted in the
/// error log. Throws store::Error where the table cannot be written.
BnrImport ImportBnrFile(session::Session& session, std::string_view path);

}  // namespace calc
