#pragma once

#include <string>
#include <string_view>

#include "session/session.h"

namespace declarations {

/// A query on a declaration's lines, around the filter that completes it.
struct LineQuery {
  std::string select;
  std::string tail;

  std::string With(std::string_view filter) const { return select + std::string(filter) + tail; }
};

/// "SELECT columns FROM INTRASTAT … ORDER BY Record_ID".
LineQuery BuiltInLineQuery(std::string_view columns);

/// The same, unless the installation replaces it by a text file below the system folder
/// ("SQL\Verificare.txt"): first line the SELECT, second line what follows the filter; a missing line is
/// empty. An unreadable file is logged under `where` and leaves the built-in query.
LineQuery ReadLineQuery(session::Session& session, std::string_view file, std::string_view columns,
                        std::string_view where);

}  // namespace declarations
