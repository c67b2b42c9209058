// Any bytes as a .xls file: every sheet is read or refused with SheetError, its cells in order.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/spreadsheet/table.h"
#include "platform/spreadsheet/xls.h"

namespace {

using platform::spreadsheet::CellEvent;
using platform::spreadsheet::CellSink;

class CheckOrder : public CellSink {
 public:
  bool OnCell(const CellEvent& cell) override {
    const std::uint64_t place = (std::uint64_t{cell.row} << 32) | cell.column;
    if (place < next_ || cell.column > 255 || cell.row > 65535) std::abort();
    next_ = place + 1;
    for (const char c : cell.text)
      sum_ = sum_ + static_cast<unsigned char>(c);  // touches what the view covers
    return true;
  }

 private:
  std::uint64_t next_ = 0;
  volatile unsigned sum_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace platform::spreadsheet;
  try {
    const auto book = OpenXlsContent(std::string(data, data + size));
    for (const SheetInfo& info : book->sheets()) {
      CheckOrder sink;
      try {
        book->Read(info.name, sink);
        const Table table =
            ReadSheetTable(*book, info.name, {.headings = true, .mixed_as_text = size % 2 == 0});
        if (table.columns().empty()) std::abort();
      } catch (const SheetError&) {
      }
    }
  } catch (const SheetError&) {
  }
  return 0;
}
