#include "import/screens/template_list.h"

#include "import/screens/template_editor.h"
#include "import/templates.h"
#include "ui/text.h"

namespace importer {

using ui::Q;

namespace {

std::vector<ui::Column> GridColumns() {
  return {{.field = "Nume_Structura", .caption = QStringLiteral("Nume"), .width = 40},
          {.field = "TIP", .caption = QStringLiteral("TIP"), .width = 16}};
}

}  // namespace

Frm_Machete::Frm_Machete(ui::Context& screen_context, Purpose purpose, QWidget* parent,
                         FileChooser choose_file)
    : ListScreen(screen_context, QStringLiteral("Frm_Machete"), parent),
      choose_file_(std::move(choose_file)),
      model_(new ui::RecordsetModel(GridColumns(), session().company.Query(kChooserSelect), this)) {
  setWindowTitle(purpose == Purpose::kModify ? QStringLiteral("Modificare Macheta")
                                             : QStringLiteral("Sterge Macheta"));
  SetFirstSize({720, 480});
  commands()->Add(
      QStringLiteral("CmdAdauga"), QStringLiteral("&Adauga"), QStringLiteral("adauga"), [this] { Edit(""); },
      QKeySequence(QKeySequence::New));
  const auto modify = [this] {
    const std::string name = Chosen();
    if (!name.empty()) Edit(name);
  };
  commands()->Add(QStringLiteral("CmdModifica"), QStringLiteral("&Modifica"), QStringLiteral("modifica"),
                  modify, QKeySequence(Qt::Key_F2));
  commands()->AddSeparator();
  AddListCommands(QStringLiteral("Machete de preluare"));
  SetReport("MACHETE");
  commands()->AddApart(
      QStringLiteral("CmdSterge"), QStringLiteral("&Sterge"), QStringLiteral("sterge"), [this] { Delete(); },
      QKeySequence(QKeySequence::Delete));
  connect(grid(), &ui::Grid::Activated, this,
          [this, purpose, modify] { Try([&] { purpose == Purpose::kModify ? modify() : Delete(); }); });
  grid()->SetEmptyText(QStringLiteral(
      "Aici apar machetele de preluare ale firmei. Comanda Adauga (Ctrl+N) face prima macheta, pornind de la "
      "un fisier exemplu."));
  SetModel(model_);
  if (model_->Rows() > 0) grid()->SelectRow(0, 0);
}

void Frm_Machete::Reload(const std::string& current) {
  model_->SetRows(session().company.Query(kChooserSelect));
  for (int row = 0; row < model_->Rows(); ++row) {
    if (model_->ValueAt(row, 0) == store::Value(current)) return grid()->SelectRow(row, 0);
  }
}

std::string Frm_Machete::Chosen() {
  const int row = grid()->current_row();
  if (row >= 0) return model_->ValueAt(row, 0).ToText();
  ShowStatus(QStringLiteral("Alegeti intai o macheta din lista"));
  return "";
}

void Frm_Machete::Edit(const std::string& Nume_Structura) {
  Frm_Macheta editor(context(), Nume_Structura, this, choose_file_);
  editor.exec();
  Reload(editor.Nume_Structura());
}

void Frm_Machete::Delete() {
  const std::string name = Chosen();
  if (name.empty() || !DeleteTemplate(session(), name)) return;
  Reload("");
  ShowStatus(QStringLiteral("Stearsa: ") + Q(name));
}

}  // namespace importer
