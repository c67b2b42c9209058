#pragma once

#include <string>

#include "platform/progress.h"
#include "reports/report.h"

namespace reports {

enum class SpreadsheetOutcome { kWritten, kCancelled, kTooLong, kFailed };

/// The report as an .xlsx: title, headings in bold that stay in view and are printed on every page, numbers
/// and dates as such with their formats, sums as SUBTOTAL formulas with their values. `host_file` is written
/// directly, through `host_folder` for what is only temporary; `reason` is told for kFailed.
SpreadsheetOutcome WriteSpreadsheet(const Report& report, bool landscape, const std::string& host_file,
                                    const std::string& host_folder, platform::Progress& progress,
                                    std::string& reason);

}  // namespace reports
