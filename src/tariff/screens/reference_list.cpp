#include "tariff/screens/reference_list.h"

#include "tariff/screens/find_dialog.h"
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
    : ListScreen(context, QStringLiteral("Frm_Tabel"), parent), whole_(table.query), select_(table.query) {
  setWindowTitle(ui::Q(table.title));
  AddFindCommand(*this,
                 {[this] { return FindIn(*this, session().common, select_); },
                  [this](const std::string& select, const store::Recordset& rows) { Show(select, rows); }});
  commands()->Add(
      QStringLiteral("CmdToate"), QStringLiteral("T&oate"), QStringLiteral("toate"),
      [this] {
        Show(whole_, session().common.Query(whole_));
        ShowStatus({});
      },
      QKeySequence(Qt::Key_F5));
  commands()->AddSeparator();
  AddListCommands(ui::Q("  REPORT - " + table.title));
  SetReport(table.report);
  grid()->SetLayoutName(QStringLiteral("Frm_Tabel ") + windowTitle());
  store::Recordset rows = session().common.Query(table.query);
  model_ = new ui::RecordsetModel(ColumnsOf(table, rows), rows, this);
  SetModel(model_);
  Show(whole_, rows);
}

void Frm_Tabel::Show(const std::string& select, const store::Recordset& rows) {
  select_ = select;
  grid()->SetEmptyText(
      select_ == whole_
          ? QStringLiteral("Aici apar codurile tabelei de referinta. Tabela este goala: ea se completeaza la "
                           "actualizarea programului (Firme Meniu, Setari, Actualizare program).")
          : QStringLiteral("Niciun cod nu corespunde expresiei cautate. \"Toate\" arata din nou "
                           "intreaga tabela."));
  model_->SetRows(rows);
}

}  // namespace tariff
