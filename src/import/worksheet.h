#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/select_builder.h"
#include "session/session.h"

namespace importer {

/// A worksheet read through a template: fields are named after the destination columns.
struct Worksheet {
  store::Recordset rows;
  std::int64_t heading_row = 1;  ///< row of the worksheet that holds the headings
  std::string problem;  ///< why it could not be read, naming file, sheet or column; empty when it was
};

/// The first rows of a sheet of an open file. Throws store::Error, which names the file's sheets where it has
/// no such one.
store::Recordset QueryFirst(store::Connection& source, std::string_view path, std::string_view sheet,
                            int rows);
/// Column names of a sheet, as its first row has them. Throws as QueryFirst.
std::vector<std::string> Headings(store::Connection& source, std::string_view path, std::string_view sheet);

/// Reads a sheet of an open file through column rules, all rows or the first `top`. Throws store::Error where
/// no single rule is to blame.
Worksheet ReadThrough(store::Connection& source, std::string_view sheet,
                      const std::vector<std::string>& headings, const std::vector<ColumnRule>& rules,
                      int top = 0);

/// The worksheet file through a stored template, as the import reads it.
Worksheet OpenWorksheet(session::Session& session, std::string_view path, std::string_view sheet,
                        std::string_view Nume_Structura);

/// The worksheets of a file, without the driver's "$", or why there are none.
struct SheetList {
  std::vector<std::string> names;
  std::string problem;
  bool Has(std::string_view sheet) const;
};
SheetList ReadSheetList(session::Session& session, std::string_view path);

/// Connection settings for a worksheet or text source of this installation.
store::Environment SourceEnvironment(session::Session& session);

}  // namespace importer
