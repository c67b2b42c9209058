#pragma once

#include <optional>
#include <string_view>

#include "platform/spreadsheet/number_format.h"
#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {

/// Most cells that are read from one sheet: as many as the .xls format has places for.
inline constexpr std::size_t kMostCells = 65536u * 256u;
/// Places of an .xlsx or .ods sheet.
inline constexpr std::uint32_t kMostRows = 1u << 20;
inline constexpr std::uint32_t kMostColumns = 1u << 14;

/// Makes a cell of a serial number: its format tells whether that is a date, counted from 1900 or 1904.
void SetNumber(CellEvent& cell, NumberFormat format, double number, bool base_1904);

/// An XML date or date and time ("2026-03-19T08:30:00") as days since 1899-12-30.
std::optional<double> ParseIsoDate(std::string_view text);
/// An XML duration of hours, minutes and seconds ("PT08H30M00S") as days.
std::optional<double> ParseIsoDuration(std::string_view text);

[[noreturn]] void DamagedCell(const CellEvent& cell, const char* what);
[[noreturn]] void TooManyCells();

}  // namespace platform::spreadsheet
