#pragma once

#include <QComboBox>
#include <functional>
#include <string>
#include <string_view>

#include "import/worksheet.h"
#include "ui/context.h"

namespace importer {

/// Asks for a worksheet, starting in a folder (Windows path, may be ""); its Windows path, or "" where the
/// user gives up.
using FileChooser = std::function<std::string(std::string_view folder)>;
/// The file dialog with kWorksheetFilter, over `parent`. It comes back with the filter chosen last.
FileChooser WorksheetDialog(ui::Context& context, QWidget* parent);

/// Fills a list from its text file in the folder "ComboBox", or from `otherwise` where that is missing.
void FillChoices(const session::Session& session, QComboBox& box, std::string_view screen,
                 const std::vector<std::string>& otherwise);

/// A filter of "caption|pattern;pattern|" pairs as Qt writes it.
QString DialogFilter(std::string_view filter);

/// A path as it was typed or pasted; the file manager copies paths in quotes.
std::string TypedPath(const QString& text);

/// Offers a file's worksheets; the text stays as it is. Answers them.
SheetList OfferSheets(session::Session& session, QComboBox& box, std::string_view path);

}  // namespace importer
