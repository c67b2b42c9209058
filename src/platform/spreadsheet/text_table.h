#pragma once

#include <string>
#include <string_view>

#include "platform/spreadsheet/schema_ini.h"
#include "platform/spreadsheet/table.h"

namespace platform::spreadsheet {

/// The same as ReadTextTable, on a file's content. `headings` holds where the layout does not say.
Table ParseTextTable(std::string_view content, const TextLayout& layout, bool headings);

}  // namespace platform::spreadsheet
