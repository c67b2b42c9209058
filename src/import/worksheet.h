#pragma once

#include <string>
#include <string_view>

#include "session/session.h"

namespace importer {

/// A worksheet read through a template: fields are named after the destination columns.
struct Worksheet {
  store::Recordset rows;
  std::int64_t heading_row = 1;  ///< row of the worksheet that holds the headings
  std::string problem;  ///< why it could not be read, naming file, sheet or column; empty when it was
};

Worksheet OpenWorksheet(session::Session& session, std::string_view path, std::string_view sheet,
                        std::string_view Nume_Structura);

/// Connection settings for a worksheet or text source of this installation.
store::Environment SourceEnvironment(session::Session& session);

}  // namespace importer
