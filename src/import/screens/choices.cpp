#include "import/screens/choices.h"

#include <QFileDialog>
#include <QStandardPaths>

#include "import/template_rows.h"
#include "import/templates.h"
#include "ui/memory.h"
#include "ui/text.h"

namespace importer {

using ui::Q;

namespace {

constexpr char kMemory[] = "Foi_de_calcul", kFilterKey[] = "filtru";

}  // namespace

FileChooser WorksheetDialog(ui::Context& context, QWidget* parent) {
  return [&context, parent](std::string_view folder) -> std::string {
    const platform::Files& files = context.session.host.files;
    QString start = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!folder.empty() && files.FolderExists(folder)) {
      start = QString::fromStdU16String(files.ToHost(folder).u16string());
    }
    QString filter = context.memory.Get(QString::fromLatin1(kMemory), QString::fromLatin1(kFilterKey));
    const QString chosen = QFileDialog::getOpenFileName(parent, QStringLiteral("Alegeti fisierul excel"),
                                                        start, DialogFilter(kWorksheetFilter), &filter);
    if (chosen.isEmpty()) return {};
    context.memory.Set(QString::fromLatin1(kMemory), QString::fromLatin1(kFilterKey), filter);
    return files.drives().FromHost(std::filesystem::path(chosen.toStdU16String()));
  };
}

void FillChoices(const session::Session& session, QComboBox& box, std::string_view screen,
                 const std::vector<std::string>& otherwise) {
  const std::vector<std::string> items = ReadComboList(session, ui::Utf8(box.objectName()), screen);
  for (const std::string& item : items.empty() ? otherwise : items) box.addItem(Q(item));
}

QString DialogFilter(std::string_view filter) {
  QStringList parts = Q(filter).split('|', Qt::SkipEmptyParts);
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString caption = parts[i].section('(', 0, 0).trimmed();
    filters += QStringLiteral("%1 (%2)").arg(caption, parts[i + 1].replace(';', ' '));
  }
  return filters.join(QStringLiteral(";;"));
}

std::string TypedPath(const QString& text) {
  QString path = text.trimmed();
  if (path.size() > 1 && path.startsWith('"') && path.endsWith('"')) path = path.mid(1, path.size() - 2);
  return ui::Utf8(path.trimmed());
}

SheetList OfferSheets(session::Session& session, QComboBox& box, std::string_view path) {
  const QString typed = box.currentText();
  SheetList list = ReadSheetList(session, path);
  box.clear();
  for (const std::string& name : list.names) box.addItem(Q(name));
  box.setCurrentIndex(box.findText(typed, Qt::MatchFixedString));  // the arrows go on from there
  box.setEditText(typed);
  return list;
}

}  // namespace importer
