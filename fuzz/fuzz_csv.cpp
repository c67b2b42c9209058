// Any bytes as delimited text.
#include "check_order.h"
#include "platform/spreadsheet/csv.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace platform::spreadsheet;
  try {
    fuzz::ReadAll(*OpenCsv(std::string(data, data + size), "foaie"), 1u << 30, 1u << 30, size % 2 == 0);
  } catch (const SheetError&) {
  }
  return 0;
}
