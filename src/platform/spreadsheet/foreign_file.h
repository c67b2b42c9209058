#pragma once

#include <string>
#include <string_view>

namespace platform::spreadsheet {

/// The beginning of a file as text: without byte order mark, UTF-16 zeros and leading blanks.
std::string TextHead(std::string_view content);

/// Throws a SheetError that says what a file that is no workbook really is; several programs export web pages
/// and the like under the name .xls. Returns where it is none of those.
void RefuseDocument(std::string_view content);

/// The same for a file that had to be a workbook, whatever it is.
[[noreturn]] void RefuseForeign(std::string_view content);

}  // namespace platform::spreadsheet
