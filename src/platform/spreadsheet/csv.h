#pragma once

#include <memory>
#include <string>

#include "platform/spreadsheet/sheet_book.h"

namespace platform::spreadsheet {

/// Opens delimited text as a workbook of one sheet. Encoding (UTF-8, UTF-16, else windows-1250), delimiter
/// (; , tab |, or what a first line "sep=;" says) and the kinds of values come from the content. Whatever
/// sheet is asked for is this one, so that a template reads next month's file under its own name too.
/// Throws SheetError, which does not name the file.
std::unique_ptr<SheetBook> OpenCsv(std::string content, std::string sheet_name);

}  // namespace platform::spreadsheet
