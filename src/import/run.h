#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "session/session.h"

namespace importer {

/// What the import screen asks for. A year or month of 0 and an empty text are missing.
struct Inputs {
  int Anul = 0;
  int Luna = 0;
  std::string path;   ///< Windows path of the worksheet file
  std::string sheet;  ///< without the driver's "$"
  std::string Cod_Fiscal;
  std::string Nume_Structura;  ///< template
  std::string tip_operatiune;  ///< "I-ACHIZITIE", "O-LIVRARE"; the first letter becomes TIP
};

/// A worksheet row that could not become a line.
struct Rejected {
  std::int64_t row = 0;  ///< row of the worksheet, from 1
  std::string column;    ///< of Intrastat; empty where the row as a whole was refused
  std::string reason;
};

enum class Outcome { kDone, kRefused, kCancelled };

struct Result {
  Outcome outcome = Outcome::kRefused;
  std::int64_t saved = 0;
  std::int64_t total = 0;
  std::vector<Rejected> rejected;
  std::string status;  ///< the last one shown
};

/// Takes a worksheet over into the open company's Intrastat. All lines are one transaction: a run that is
/// stopped, fails or is killed leaves none. Every message is shown through the session's prompter; the
/// rejected rows are left to the caller, who has a place to list them.
Result Run(session::Session& session, const Inputs& inputs);

}  // namespace importer
