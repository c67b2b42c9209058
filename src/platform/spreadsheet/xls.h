#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/spreadsheet/sheet_book.h"

namespace platform::spreadsheet {

/// Whether a file's content begins as a .xls does, whatever its name.
bool IsXls(std::string_view content);

/// Opens the content of a .xls file (BIFF5 or BIFF8). Throws SheetError, which does not name the file.
std::unique_ptr<SheetBook> OpenXlsContent(std::string content);

}  // namespace platform::spreadsheet
