#pragma once

#include <memory>

#include "platform/spreadsheet/package.h"
#include "platform/spreadsheet/sheet_book.h"

namespace platform::spreadsheet {

/// Opens an .xlsx package whose main part is the one named. Throws SheetError, which does not name the file.
std::unique_ptr<SheetBook> OpenXlsx(std::unique_ptr<Package> package, const std::string& main_part);

/// Opens an .ods package.
std::unique_ptr<SheetBook> OpenOds(std::unique_ptr<Package> package);

/// Opens an office package by what is in it; other archives are refused by their name.
std::unique_ptr<SheetBook> OpenPackage(std::unique_ptr<Package> package);

}  // namespace platform::spreadsheet
