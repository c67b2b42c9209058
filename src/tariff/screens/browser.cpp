#include "tariff/screens/browser.h"

#include <QTextBrowser>

#include "tariff/screens/advanced_search.h"
#include "tariff/screens/find_dialog.h"
#include "tariff/screens/versions.h"
#include "ui/text.h"

namespace tariff {

using ui::Q;

namespace {

/// A section's or chapter's note follows code and description; where it is not read, the list has none.
constexpr int kNote = 2;
bool HasNotes(const Level& level) { return level.number <= 2; }

/// From the headings down descriptions are long and alike but for their ends: the pane shows them whole.
int DescriptionOf(const Level& level) {
  for (int i = 0; i < static_cast<int>(level.headings.size()); ++i) {
    if (!HasNotes(level) && level.headings[static_cast<std::size_t>(i)] == "DESCRIERE") return i;
  }
  return -1;
}

std::vector<ui::Column> ColumnsOf(const Level& level) {
  std::vector<ui::Column> columns;
  for (const std::string_view heading : level.headings) {
    if (heading.empty()) continue;
    ui::Column column;
    column.caption = Q(heading);
    column.width = heading == "DESCRIERE" ? 52 : heading == "COD 12" ? 16 : 10;
    column.ends_tell = heading == "DESCRIERE";
    columns.push_back(std::move(column));
  }
  if (HasNotes(level)) {
    ui::Column note;
    note.field = level.number == 1 ? "HS_1_NOTE" : "HS2_NOTE";
    note.caption = QStringLiteral("NOTE");
    note.hidden = true;  // it has its own pane
    columns.push_back(std::move(note));
  }
  return columns;
}

}  // namespace

Frm_Tarif::Frm_Tarif(ui::Context& screen_context, const Level& level, QWidget* parent,
                     std::string data_folder)
    : ListScreen(screen_context, QStringLiteral("Frm_Tarif"), parent), data_folder_(std::move(data_folder)) {
  SetFirstSize({1120, 680});
  link_ = commands()->Add(QStringLiteral("CmdLegatura"), Q(level.link), QStringLiteral("nivel-jos"),
                          [this] { DrillDown(); });
  link_->setToolTip(QStringLiteral("Enter"));
  up_ = commands()->Add(
      QStringLiteral("CmdNivelSus"), QStringLiteral("Nivel &sus"), QStringLiteral("nivel-sus"),
      [this] { GoUp(); }, QKeySequence(Qt::Key_Backspace));
  commands()->Add(
      QStringLiteral("CmdToate"), QStringLiteral("T&oate"), QStringLiteral("toate"), [this] { ShowAll(); },
      QKeySequence(Qt::Key_F5));
  commands()->AddSeparator();
  AddFindCommand(*this, {[this] { return FindIn(*this, session().tariff, view_.select); },
                         [this](const std::string& select, const store::Recordset& rows) {
                           Show({view_.level, select, view_.place}, rows);
                         }});
  commands()->Add(QStringLiteral("CmdCautareTarif"), QStringLiteral("Cautare &avansata"),
                  QStringLiteral("tarif"), [this] { OpenSearch(); });
  if (!data_folder_.empty()) {
    commands()->Add(QStringLiteral("CmdVersiuni"), QStringLiteral("&Versiuni..."), QStringLiteral("tabele"),
                    [this] { OpenVersions(); });
  }
  commands()->AddSeparator();
  AddListCommands({});
  SetCountCaption(QStringLiteral("Total Inregistrari :  "));

  note_ = new QTextBrowser(this);
  note_->setObjectName(QStringLiteral("Note"));
  note_->setTabChangesFocus(true);
  AddBelowGrid(note_, 70);
  connect(grid(), &ui::Grid::Activated, this, [this] { Try([this] { DrillDown(); }); });
  connect(grid(), &ui::Grid::CurrentRowChanged, this, [this] { ShowNote(); });

  const std::string select(level.query);
  Show({&level, select, {}}, session().tariff.Query(select));
}

void Frm_Tarif::Show(View view, const store::Recordset& rows) {
  const bool same_level = model_ != nullptr && view.level == view_.level;
  const bool narrowed = view.select != view.level->query && view.select != view.level->show_all;
  view_ = std::move(view);
  const Level& level = *view_.level;
  setWindowTitle(Q(level.title));
  SetReport(std::string(level.key));
  SetReportTitle(QStringLiteral("  REPORT - ") + Q(level.title));
  link_->setText(Q(level.link));
  link_->setVisible(!level.link.empty());
  up_->setEnabled(!steps_.empty() || LevelAbove(level) != nullptr);
  grid()->SetEmptyText(
      narrowed ? QStringLiteral("Niciun rand aici. \"Toate\" arata din nou intregul nivel.")
               : QStringLiteral("Aici apar randurile tarifului. Tariful deschis este gol: \"Versiuni...\" "
                                "incarca nomenclatorul unui an."));
  if (same_level) {
    model_->SetRows(rows);
  } else {
    const ui::RecordsetModel* before =
        std::exchange(model_, new ui::RecordsetModel(ColumnsOf(level), rows, this));
    grid()->SetLayoutName(QStringLiteral("Frm_Tarif %1").arg(level.number));
    SetModel(model_);
    delete before;
  }
  if (model_->Rows() > 0) grid()->SelectRow(0, same_level ? -1 : 0);  // the next search is in this column too
  ShowStatus(view_.place.isEmpty() ? QString() : QStringLiteral("In: ") + view_.place);
  ShowTotals(Q(platform::FileNameOf(session().tariff.path())));
  ShowNote();
  grid()->setFocus();
}

void Frm_Tarif::ShowNote() {
  const int row = grid()->current_row();
  const int description = DescriptionOf(*view_.level);
  const int column = HasNotes(*view_.level) ? kNote : description;
  const QString text = row < 0 ? QString() : Q(model_->ValueAt(row, column).ToText());
  note_->setPlainText(text);
  note_->setVisible(description >= 0 || !text.trimmed().isEmpty());
}

std::string Frm_Tarif::CodeAt(int row) const { return row < 0 ? "" : model_->ValueAt(row, 0).ToText(); }

void Frm_Tarif::SelectCode(const std::string& code) {
  for (int row = 0; row < model_->Rows(); ++row) {
    if (CodeAt(row) != code) continue;
    grid()->SelectRow(row, 0, QAbstractItemView::PositionAtCenter);
    return;
  }
}

void Frm_Tarif::DrillDown() {
  const int row = grid()->current_row();
  const Level* next = NextLevel(*view_.level);
  if (next == nullptr || row < 0 || model_->ValueAt(row, 0).is_null()) return;
  const std::string code = CodeAt(row);
  const std::string select = ChildrenStatement(*view_.level, code);
  const store::Recordset rows = session().tariff.Query(select);
  steps_.push_back({view_, code});
  const QString place = view_.place.isEmpty() ? Q(code) : view_.place + QStringLiteral(" / ") + Q(code);
  Show({next, select, place}, rows);
}

void Frm_Tarif::GoUp() {
  if (!steps_.empty()) {
    const Step step = steps_.back();
    const store::Recordset rows = session().tariff.Query(step.view.select);
    steps_.pop_back();
    Show(step.view, rows);
    SelectCode(step.code);
    return;
  }
  const Level* above = LevelAbove(*view_.level);
  if (above == nullptr) return;
  const std::string code = CodeAt(grid()->current_row());
  const auto parent = session().tariff.Scalar(ParentStatement(*view_.level, code));
  const std::string select(above->show_all);
  Show({above, select, {}}, session().tariff.Query(select));
  if (parent) SelectCode(parent->ToText());
}

void Frm_Tarif::ShowAll() {
  const std::string code = CodeAt(grid()->current_row());
  const std::string select(view_.level->show_all);
  const store::Recordset rows = session().tariff.Query(select);
  steps_.clear();
  Show({view_.level, select, {}}, rows);
  SelectCode(code);
}

void Frm_Tarif::OpenSearch() { OpenQuickSearch(context(), {}, this); }

void Frm_Tarif::OpenVersions() {
  Frm_Tarif_Versiuni versions(context(), data_folder_, this);
  versions.exec();
  // The tariff that is shown may have been replaced.
  if (versions.loaded()) ShowAll();
}

}  // namespace tariff
