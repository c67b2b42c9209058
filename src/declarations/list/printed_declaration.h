#pragma once

#include <string>
#include <vector>

#include "declarations/lines/lines.h"
#include "declarations/list/declaration_list.h"
#include "session/session.h"
#include "store/recordset.h"

namespace declarations {

/// A declaration as a plain print shows it: its lines one by one where the company files in detail, else
/// aggregated as in its file.
struct PrintedDeclaration {
  struct Column {
    std::string field, caption;
    std::string format;  ///< "##,##0.00", "dd.mm.yyyy" or empty
    int width = 8;       ///< characters
  };
  std::string title;
  std::vector<Column> columns;
  store::Recordset rows;
};

/// Throws store::Error.
PrintedDeclaration ReadPrinted(session::Session& session, const Identity& identity,
                               const PrintCompany& company);

}  // namespace declarations
