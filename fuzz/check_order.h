#pragma once

#include <cstdint>
#include <cstdlib>

#include "platform/spreadsheet/table.h"

namespace fuzz {

/// Stops the run where cells do not come in order or lie outside the sheet; touches what their texts cover.
class CheckOrder : public platform::spreadsheet::CellSink {
 public:
  CheckOrder(std::uint32_t rows, std::uint32_t columns) : rows_(rows), columns_(columns) {}
  bool OnCell(const platform::spreadsheet::CellEvent& cell) override {
    const std::uint64_t place = (std::uint64_t{cell.row} << 32) | cell.column;
    if (place < next_ || cell.column >= columns_ || cell.row >= rows_) std::abort();
    next_ = place + 1;
    for (const char c : cell.text) sum_ = sum_ + static_cast<unsigned char>(c);
    return ++cells_ < 2'000'000;  // repeated cells make a small file long
  }

 private:
  std::uint32_t rows_, columns_;
  std::uint64_t next_ = 0;
  std::size_t cells_ = 0;
  volatile unsigned sum_ = 0;
};

/// Reads every sheet of a book as cells and as a table; what is wrong must come as SheetError.
inline void ReadAll(platform::spreadsheet::Workbook& book, std::uint32_t rows, std::uint32_t columns,
                    bool mixed_as_text) {
  using namespace platform::spreadsheet;
  for (const SheetInfo& info : book.sheets()) {
    try {
      CheckOrder sink(rows, columns);
      book.Read(info.name, sink);
      const Table table = ReadSheetTable(book, info.name, {.headings = true, .mixed_as_text = mixed_as_text});
      if (table.columns().empty()) std::abort();
    } catch (const SheetError&) {
    }
  }
}

}  // namespace fuzz
