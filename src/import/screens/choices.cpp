#include "import/screens/choices.h"

#include <QFileDialog>
#include <QStandardPaths>

#include "import/template_rows.h"
#include "import/worksheet.h"
#include "ui/text.h"

namespace importer {

using ui::Q;

FileChooser WorksheetDialog(ui::Context& context, QWidget* parent) {
  return [&context, parent](std::string_view folder) -> std::string {
    const platform::Files& files = context.session.host.files;
    QString start = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!folder.empty() && files.FolderExists(folder)) {
      start = QString::fromStdU16String(files.ToHost(folder).u16string());
    }
    const QString chosen = QFileDialog::getOpenFileName(
        parent, QStringLiteral("Alegeti fisierul excel"), start,
        QStringLiteral("Excel Files (*.xls);;Excel 2007 (*.xlsx);;OpenDocument (*.ods);;Text CSV (*.csv);;"
                       "Toate foile de calcul (*.xls *.xlsx *.ods *.csv)"));
    if (chosen.isEmpty()) return {};
    return files.drives().FromHost(std::filesystem::path(chosen.toStdU16String()));
  };
}

void FillChoices(const session::Session& session, QComboBox& box, std::string_view screen,
                 const std::vector<std::string>& otherwise) {
  const std::vector<std::string> items = ReadComboList(session, ui::Utf8(box.objectName()), screen);
  for (const std::string& item : items.empty() ? otherwise : items) box.addItem(Q(item));
}

std::vector<std::string> OfferSheets(session::Session& session, QComboBox& box, std::string_view path) {
  const QString typed = box.currentText();
  box.clear();
  std::vector<std::string> names;
  if (session.host.files.Exists(path)) names = SheetNames(session, path);
  for (const std::string& name : names) box.addItem(Q(name));
  box.setEditText(typed);
  return names;
}

}  // namespace importer
