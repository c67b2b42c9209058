#pragma once

#include <cstdint>
#include <string_view>

namespace platform::spreadsheet {

/// What a cell's number format makes of its number.
struct NumberFormat {
  enum class Kind : std::uint8_t {
    kNumber,
    kDate,     ///< a calendar date, with or without time
    kTime,     ///< a time of day
    kElapsed,  ///< hours, minutes or seconds that go past the day: [h]:mm
  };
  Kind kind = Kind::kNumber;
  std::uint8_t zero_pad = 0;  ///< digits of a format made of zeros only, such as 00000000; else 0
};

/// Reads a format text. Letters inside quotes and brackets, and those after \ _ or *, say nothing.
NumberFormat ClassifyNumberFormat(std::string_view format);

/// The formats that a worksheet need not store, by their index ([MS-XLS] 2.4.126; 27 to 36 and 50 to 58 are
/// dates of the East Asian versions).
NumberFormat BuiltInNumberFormat(std::uint16_t index);

}  // namespace platform::spreadsheet
