#pragma once

#include <string>
#include <string_view>

namespace platform {

// The host's code-page conversions: the system's calls on Windows, iconv elsewhere. encoding.h is the face
// for everyone else.

/// Single- and double-byte Windows pages that this host converts; 1200 and 65001 are not among them.
bool IsKnownCodePage(int code_page);
bool IsDoubleByte(int code_page);  ///< the East Asian pages 932, 936, 949, 950

/// Code point of one byte of a single-byte page; U+FFFD where the page defines none.
char32_t DecodeByte(unsigned char byte, int code_page);

std::string DecodeDoubleByte(std::string_view bytes, int code_page);
std::string EncodeDoubleByte(std::string_view utf8, int code_page);

}  // namespace platform
