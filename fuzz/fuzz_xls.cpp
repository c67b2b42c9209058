// Any bytes as a .xls file: every sheet is read or refused with SheetError, its cells in order.
#include <cstdint>
#include <string>

#include "check_order.h"
#include "platform/spreadsheet/xls.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace platform::spreadsheet;
  try {
    fuzz::ReadAll(*OpenXlsContent(std::string(data, data + size)), 65536, 256, size % 2 == 0);
  } catch (const SheetError&) {
  }
  return 0;
}
