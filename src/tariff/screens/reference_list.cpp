#include "tariff/screens/reference_list.h"

#include "ui/text.h"

namespace tariff {
namespace {

std::vector<ui::Column> ColumnsOf(const ReferenceTable& table, const store::Recordset& rows) {
  std::vector<ui::Column> columns;
  for (int i = 0; i < rows.field_count(); ++i) {
    const store::FieldInfo& field = rows.field(i);
    ui::Column column;
    column.field = field.name;
    const auto at = static_cast<std::size_t>(i);
    column.caption = ui::Q(at < table.captions.size() ? table.captions[at] : field.name);
    if (field.type == store::ColumnType::kDateTime) column.format = ui::Format::kDate;
    column.width = i == 0 ? 10 : column.format == ui::Format::kDate ? 14 : 60;
    columns.push_back(std::move(column));
  }
  return columns;
}

}  // namespace

Frm_Tabel::Frm_Tabel(ui::Context& context, const ReferenceTable& table, QWidget* parent)
    : ListScreen(context, QStringLiteral("Frm_Tabel"), parent) {
  setWindowTitle(ui::Q(table.title));
  AddListCommands(ui::Q("  REPORT - " + table.title));
  grid()->SetLayoutName(QStringLiteral("Frm_Tabel ") + windowTitle());
  grid()->SetEmptyText(
      QStringLiteral("Aici apar codurile tabelei de referinta. Tabela este goala: ea se completeaza la "
                     "actualizarea programului (Firme Meniu, Setari, Actualizare program)."));
  store::Recordset rows = session().common.Query(table.query);
  SetModel(new ui::RecordsetModel(ColumnsOf(table, rows), rows, this));
}

}  // namespace tariff
