#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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

/// The texts that a BIFF8 workbook's cells share, in one block of UTF-8.
class SharedStrings {
 public:
  /// Reads the SST record. Damaged data ends the list early: cells that point past it are refused later.
  void Load(ContinuedReader reader);
  std::size_t size() const { return ends_.size(); }
  std::string_view at(std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return std::string_view(texts_).substr(begin, ends_[index] - begin);
  }

 private:
  std::string texts_;
  std::vector<std::size_t> ends_;
};

}  // namespace platform::spreadsheet
