#pragma once

#include <memory>
#include <string>

#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {

/// The same as OpenXls, on a file's content. Messages do not name the file.
std::unique_ptr<Workbook> OpenXlsContent(std::string content);

}  // namespace platform::spreadsheet
