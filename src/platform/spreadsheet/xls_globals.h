#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet/biff_text.h"
#include "platform/spreadsheet/number_format.h"

namespace platform::spreadsheet {

/// What a workbook's first substream says about all of its sheets.
struct XlsGlobals {
  struct Sheet {
    std::string name;
    bool hidden = false;
    std::size_t offset = 0;  ///< of the sheet's BOF record in the stream
  };
  bool biff8 = true;
  bool base_1904 = false;
  int code_page = 1252;                           ///< of the texts of BIFF5
  std::vector<NumberFormat> formats;              ///< by index of the cell's XF record
  std::vector<Sheet> sheets;                      ///< worksheets only
  std::vector<std::string_view> string_segments;  ///< of the SST record; parts of the stream

  NumberFormat FormatOf(std::uint16_t xf) const { return xf < formats.size() ? formats[xf] : NumberFormat(); }
};

/// Reads the globals at the head of a workbook stream. Throws SheetError: encrypted, damaged, of a version
/// before BIFF5.
XlsGlobals ReadXlsGlobals(std::string_view stream);

}  // namespace platform::spreadsheet
