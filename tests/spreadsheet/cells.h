#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/spreadsheet/sheet.h"

namespace test_support {

/// Gathers a sheet's cells by position as short texts: n12.5 number, n7/8 one padded to 8 digits, d46100
/// date, t… text, b1 boolean, e#N/A error. Fails the test where the cells do not come row by row, left to
/// right.
class CellMap : public platform::spreadsheet::CellSink {
 public:
  bool OnCell(const platform::spreadsheet::CellEvent& cell) override {
    using platform::spreadsheet::CellKind;
    const std::pair<unsigned, unsigned> place(cell.row, cell.column);
    if (!cells.empty()) {
      EXPECT_LT(cells.rbegin()->first, place);
    }
    std::string& text = cells[place];
    switch (cell.kind) {
      case CellKind::kNumber:
        text = cell.zero_pad == 0 ? fmt::format("n{}", cell.number)
                                  : fmt::format("n{}/{}", cell.number, cell.zero_pad);
        break;
      case CellKind::kDate:
        text = fmt::format("d{}", cell.number);
        break;
      case CellKind::kText:
        text = "t" + std::string(cell.text);
        break;
      case CellKind::kBoolean:
        text = fmt::format("b{}", cell.number);
        break;
      case CellKind::kError:
        text = "e" + std::string(cell.text);
        break;
      default:
        text = "?";
    }
    return cells.size() < limit;
  }

  std::string at(unsigned row, unsigned column) const {
    const auto found = cells.find({row, column});
    return found == cells.end() ? "" : found->second;
  }

  /// The cells of a row, gaps among them empty.
  std::string Row(unsigned row) const {
    std::string text;
    unsigned column = 0;
    for (auto cell = cells.lower_bound({row, 0}); cell != cells.end() && cell->first.first == row; ++cell) {
      for (; column < cell->first.second; ++column) text += '|';
      text += cell->second;
    }
    return text;
  }

  std::map<std::pair<unsigned, unsigned>, std::string> cells;
  std::size_t limit = static_cast<std::size_t>(-1);
};

}  // namespace test_support
