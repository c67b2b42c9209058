#pragma once

#include <QComboBox>
#include <functional>
#include <string>
#include <string_view>

#include "ui/context.h"

namespace importer {

/// Asks for a worksheet, starting in a folder (Windows path, may be ""); its Windows path, or "" where the
/// user gives up.
using FileChooser = std::function<std::string(std::string_view folder)>;
/// The file dialog, over `parent`; .xls files are offered first.
FileChooser WorksheetDialog(ui::Context& context, QWidget* parent);

/// Fills a list from its text file in the folder "ComboBox", or from `otherwise` where that is missing.
void FillChoices(const session::Session& session, QComboBox& box, std::string_view screen,
                 const std::vector<std::string>& otherwise);

/// Offers a file's worksheets; the text stays as it is. Answers them.
std::vector<std::string> OfferSheets(session::Session& session, QComboBox& box, std::string_view path);

}  // namespace importer
