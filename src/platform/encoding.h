#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Converts bytes of a Windows code page (1250, 1251, 1252, 10029, 437, …; 1200 = UTF-16LE, 65001 = UTF-8) to
/// UTF-8. Bytes that the page does not define become U+FFFD; an unknown page is read as 1252.
std::string FromCodePage(std::string_view bytes, int code_page);

/// UTF-8 to a Windows code page; what it does not hold becomes "?". In 1250, ș and ț (comma below) are
/// written as the cedilla letters, the only ones that page has.
std::string ToCodePage(std::string_view utf8, int code_page);

bool IsValidUtf8(std::string_view text);

/// Case folding as the database compares texts: Latin (Romanian included), Greek and Cyrillic letters.
std::string ToUpper(std::string_view utf8);
std::string ToLower(std::string_view utf8);

/// Number of code points; `Utf8Prefix` cuts after `count` of them.
std::size_t Utf8Length(std::string_view utf8);
std::string_view Utf8Prefix(std::string_view utf8, std::size_t count);

/// Text without blanks (space and tab) at either end; "Trim" as the dialect has it takes spaces only.
std::string_view Trim(std::string_view text);
bool EqualsNoCase(std::string_view a, std::string_view b);  ///< ASCII letters only; for names and keywords
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view with);

}  // namespace platform
