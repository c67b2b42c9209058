#include "platform/spreadsheet/cell_value.h"

#include <charconv>
#include <cmath>

#include "platform/spreadsheet/text_value.h"

namespace platform::spreadsheet {
namespace {

constexpr double kDays1904 = 1462;     // between 1899-12-30 and 1904-01-01
constexpr double kLastDate = 2958465;  // 9999-12-31
constexpr double kPhantomDay = 60;     // the 29th of February 1900 that these files count

}  // namespace

void SetNumber(CellEvent& cell, NumberFormat format, double number, bool base_1904) {
  using Kind = NumberFormat::Kind;
  cell.kind = CellKind::kNumber;
  cell.number = number;
  cell.zero_pad = format.zero_pad;
  cell.text = {};
  if (!std::isfinite(number)) {
    cell.kind = CellKind::kError;
    cell.text = "#NUM!";
    return;
  }
  if (format.kind == Kind::kNumber || number < 0 || number > kLastDate) return;
  cell.kind = CellKind::kDate;
  if (format.kind == Kind::kElapsed || (format.kind == Kind::kTime && number < 1)) return;
  if (base_1904) {
    cell.number += kDays1904;
  } else if (format.kind == Kind::kDate && number >= 1 && number < kPhantomDay) {
    cell.number += 1;  // before the phantom day these files count one less
  }
}

std::optional<double> ParseIsoDate(std::string_view text) {
  if (text.ends_with('Z')) text.remove_suffix(1);
  return ParseDate(text.substr(0, text.find('.')), "yyyy-mm-dd");
}

std::optional<double> ParseIsoDuration(std::string_view text) {
  if (!text.starts_with("PT")) return std::nullopt;
  text.remove_prefix(2);
  double seconds = 0;
  while (!text.empty()) {
    double value = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (end.ec != std::errc() || end.ptr == text.data() + text.size()) return std::nullopt;
    const char unit = *end.ptr;
    if (unit != 'H' && unit != 'M' && unit != 'S') return std::nullopt;
    seconds += value * (unit == 'H' ? 3600 : unit == 'M' ? 60 : 1);
    text.remove_prefix(static_cast<std::size_t>(end.ptr - text.data()) + 1);
  }
  if (!std::isfinite(seconds)) return std::nullopt;
  return seconds / 86400;
}

void DamagedCell(const CellEvent& cell, const char* what) {
  throw SheetError(SheetError::Reason::kDamaged, fmt::format("este deteriorata la randul {}, coloana {}: {}",
                                                             cell.row + 1, cell.column + 1, what));
}

void TooManyCells() {
  throw SheetError(SheetError::Reason::kUnsupported,
                   fmt::format("are mai mult de {} celule, prea multe pentru o preluare", kMostCells));
}

}  // namespace platform::spreadsheet
