#pragma once

#include <string>

#include "reports/layout.h"
#include "reports/report.h"

namespace reports {

/// The report as one HTML page that needs nothing beside it: a table with headings, groups and sums, which
/// repeats its headings when printed from a browser.
std::string Html(const Report& report, const Footer& footer);

}  // namespace reports
