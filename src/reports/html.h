#pragma once

#include <string>

#include "platform/progress.h"
#include "reports/layout.h"
#include "reports/report.h"

namespace reports {

/// The report as one HTML page that needs nothing beside it: a table with headings, groups and sums, which
/// repeats its headings when printed from a browser. Empty where `progress` was cancelled.
std::string Html(const Report& report, const Footer& footer, bool landscape, platform::Progress& progress);

}  // namespace reports
