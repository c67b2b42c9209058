#pragma once

#include <QString>

#include "session/session.h"
#include "ui/grid_model.h"

namespace ui {

/// The visible columns in the given order (indices of the model's columns), all rows.
struct GridContent {
  GridModel* model = nullptr;
  std::vector<int> columns;
  QString title;
  std::string report = {};  ///< of the report definitions; empty: the one with this title, else none
};

/// Writes an .xlsx: headings in bold, frozen first row, filters, numbers and dates as such with their
/// formats, column widths. Shows progress; a failure or a cancelled run is shown and leaves an earlier file
/// as it was.
bool WriteSpreadsheet(session::Session& session, const GridContent& content, const std::string& windows_path);

}  // namespace ui
