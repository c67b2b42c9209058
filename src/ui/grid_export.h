#pragma once

#include <QString>

#include "session/session.h"
#include "ui/grid_model.h"

class QPrinter;

namespace ui {

/// The visible columns in the given order (indices of the model's columns), all rows.
struct GridContent {
  GridModel* model = nullptr;
  std::vector<int> columns;
  QString title;
};

/// Writes an .xlsx: headings in bold, frozen first row, filters, numbers and dates as such with their
/// formats, column widths. Shows progress; a failure or a cancelled run is shown and leaves an earlier file
/// as it was.
bool WriteSpreadsheet(session::Session& session, const GridContent& content, const std::string& windows_path);

/// Plain print of a grid: title, headings on every page, columns fitted to the page (landscape where that
/// needs it), footer with the publisher's name and telephone, the user and the page "1 / 3". Works on a
/// printer and into a PDF.
bool PrintGrid(session::Session& session, const GridContent& content, QPrinter& printer);
/// The same into a PDF file, which takes its place only when complete.
bool WritePdf(session::Session& session, const GridContent& content, const std::string& windows_path);

}  // namespace ui
