#pragma once

#include <string>
#include <string_view>

namespace tariff {

/// Paper that rich text is shown on: colours of the text are made lighter on dark paper.
enum class Paper { kLight, kDark };

/// The small vocabulary of the explanatory notes as HTML: paragraphs and their indent, bold, colours, escaped
/// letters. Sizes are left out: the pane shows the text in the reader's own size. Anything unknown is
/// skipped.
std::string RtfToHtml(std::string_view rtf, Paper paper);

}  // namespace tariff
