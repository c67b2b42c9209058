#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/text_arena.h"

namespace platform::spreadsheet {

/// Appends BIFF8 characters to UTF-8. A pair of surrogates may arrive in two pieces.
class Utf8Writer {
 public:
  explicit Utf8Writer(std::string& out) : out_(&out) {}
  void Narrow(std::string_view bytes);  ///< low halves of UTF-16 units, so Latin-1
  void Wide(std::string_view bytes);    ///< UTF-16LE units
  void Finish();                        ///< a high surrogate left alone becomes U+FFFD

 private:
  void Put(std::uint32_t code_point);
  std::string* out_;
  std::uint16_t high_ = 0;
};

/// The payload of a record and of the CONTINUE records behind it, read as one run of bytes.
class ContinuedReader {
 public:
  explicit ContinuedReader(std::vector<std::string_view> segments) : segments_(std::move(segments)) {}

  bool AtEnd();
  /// The readers answer false where the payload ends too early.
  bool U8(std::uint8_t& value);
  bool U16(std::uint16_t& value);
  bool U32(std::uint32_t& value);
  bool Skip(std::size_t bytes);
  /// `count` characters of a BIFF8 text. Where they run into a CONTINUE record, that begins with a byte that
  /// says anew whether the characters are one or two bytes wide.
  bool Characters(std::size_t count, bool wide, std::string& out);
  /// A whole BIFF8 text: count, flags, characters, formatting runs, extended data.
  bool UnicodeText(std::string& out);

 private:
  std::vector<std::string_view> segments_;
  std::size_t segment_ = 0;
  std::size_t at_ = 0;
};

/// The texts that a BIFF8 workbook's cells share, from the SST record. Damaged data ends them early: cells
/// that point past the last one are refused later.
TextPool ReadSharedStrings(ContinuedReader reader);

}  // namespace platform::spreadsheet
