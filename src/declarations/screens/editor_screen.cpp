#include "declarations/screens/editor_screen.h"

#include <QApplication>
#include <QKeyEvent>
#include <QShortcut>

#include "declarations/screens/editor_model.h"
#include "declarations/screens/filter_panel.h"
#include "declarations/screens/header_panel.h"
#include "ui/icons.h"
#include "ui/progress.h"
#include "ui/text.h"
#include "ui/totals_row.h"

namespace declarations {

using ui::Q;
using ui::Utf8;

namespace {

constexpr int kSaveAfter = 1500;  // ms without typing until the line begun is saved where it stands

std::string DecimalMark() { return Utf8(QLocale().decimalPoint()); }

}  // namespace

Frm_INTRASTAT::Frm_INTRASTAT(ui::Context& screen_context, const EditorOpening& opening, bool view,
                             EditorCommands commands, QWidget* parent)
    : ListScreen(screen_context, QStringLiteral("Frm_INTRASTAT"), parent),
      editor_(screen_context.session, opening.identity, view ? Editor::Mode::kView : Editor::Mode::kModify,
              DecimalMark()),
      view_(view),
      commands_(std::move(commands)) {
  SetFirstSize({1340, 720});
  const ui::LongRun run(session().host.progress, QStringLiteral("Deschidere declaratie"));
  is_open_ = editor_.Open();
  if (!is_open_) return;
  if (opening.agent) CopyDeclaringAgent(*opening.agent, editor_.request().header);

  header_ = new HeaderPanel(screen_context, editor_, Q(opening.title), this);
  qobject_cast<QVBoxLayout*>(layout())->insertWidget(0, header_);
  connect(header_, &HeaderPanel::HelpWanted, this, &Frm_INTRASTAT::ShowStatus);
  connect(header_, &HeaderPanel::Left, grid(), qOverload<>(&QWidget::setFocus));
  AddCommands();
  filter_ = new FilterPanel(editor_, this);
  AddAboveGrid(filter_);
  const auto at_end = [this](const char* name, const char* caption, const char* icon) {
    auto* button = new QPushButton(ui::Icon(QString::fromLatin1(icon)), QString::fromLatin1(caption), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    filter_->AddAtEnd(button);
    return button;
  };
  QPushButton* refresh = at_end("CmdRefresh", "&Reincarca", "reimprospateaza");
  refresh->setToolTip(QStringLiteral("Citeste din nou toate liniile, in ordinea introducerii"));
  BindKey(refresh, QKeySequence(Qt::Key_F5));
  connect(refresh, &QPushButton::clicked, this, Working(&Frm_INTRASTAT::Refresh));
  QPushButton* provenance = at_end("CmdProvenienta", "Pr&ovenienta", "import");
  provenance->setCheckable(true);
  provenance->setToolTip(QStringLiteral("Liniile dupa fisierul din care au fost preluate, numai de vazut"));
  connect(provenance, &QPushButton::toggled, this, &Frm_INTRASTAT::ShowProvenance);

  connect(filter_, &FilterPanel::FilterWanted, this, Working(&Frm_INTRASTAT::Filter));
  connect(filter_, &FilterPanel::AllWanted, this, Working(&Frm_INTRASTAT::ShowAll));
  connect(filter_, &FilterPanel::UpdateWanted, this, Working(&Frm_INTRASTAT::ExecuteUpdate));
  connect(grid(), &ui::Grid::CurrentRowChanged, this, &Frm_INTRASTAT::OnRow);
  connect(grid(), &ui::Grid::Pasted, this, &Frm_INTRASTAT::Paste);
  auto_save_.setSingleShot(true);
  auto_save_.setInterval(kSaveAfter);
  connect(&auto_save_, &QTimer::timeout, this, &Frm_INTRASTAT::AutoSave);
  after_row_.setSingleShot(true);
  connect(&after_row_, &QTimer::timeout, this, &Frm_INTRASTAT::AfterRow);
  grid()->SetEmptyText(
      view
          ? QStringLiteral("Declaratia nu are linii.")
          : QStringLiteral("Aici apar liniile declaratiei. Scrieti in prima linie: incepe o linie noua, care "
                           "se salveaza la trecerea pe linia urmatoare. O foaie de calcul se poate lipi cu "
                           "Ctrl+V."));
  if (view) {
    header_->SetReadOnly();
    filter_->SetReadOnly();
  }
  MakeModel();
  grid()->horizontalHeader()->setSortIndicatorClearable(true);  // a third click: the order of entry again
  grid()->SelectRow(0, FirstEditable());
  grid()->setFocus();
}

// The grid's model goes before the editor that it shows.
Frm_INTRASTAT::~Frm_INTRASTAT() { grid()->SetGridModel(nullptr); }

std::function<void()> Frm_INTRASTAT::Working(void (Frm_INTRASTAT::*command)()) {
  return [this, command] {
    if (grid()->CommitEdit()) Try([&] { (this->*command)(); });
  };
}

void Frm_INTRASTAT::AddCommands() {
  using Command = void (Frm_INTRASTAT::*)();
  const auto add = [this](const char* name, const char* caption, const char* icon, const char* tip,
                          Command command, const QKeySequence& key = {}) {
    QPushButton* button = this->commands()->Add(QString::fromLatin1(name), QString::fromLatin1(caption),
                                                QString::fromLatin1(icon), Working(command));
    button->setToolTip(QString::fromLatin1(tip));
    if (!key.isEmpty()) BindKey(button, key);
    return button;
  };
  const auto changing = [&](QPushButton* button) {
    changing_.push_back(button);
    return button;
  };
  const auto calculation = [&](QPushButton* button, const EditorCommands::Calculation& action) {
    if (action) {
      changing_.push_back(button);
    } else {
      button->setEnabled(false);
    }
  };
  changing(add("CmdLinieNoua", "&Linie noua", "linie-noua", "Linie noua", &Frm_INTRASTAT::NewLine,
               QKeySequence(Qt::CTRL | Qt::Key_N)));
  changing(add("CmdDuplica", "&Duplica", "duplica", "O copie a liniei, la sfarsit", &Frm_INTRASTAT::Duplicate,
               QKeySequence(Qt::CTRL | Qt::Key_D)));
  changing(add("CmdSterge", "Ster&ge", "sterge", "Sterge liniile selectate", &Frm_INTRASTAT::Delete,
               QKeySequence(Qt::Key_Delete)));
  this->commands()->AddSeparator();
  changing(add("Cmd_Verifica", "&Verifica", "verifica", "Verifica declaratia", &Frm_INTRASTAT::Check,
               QKeySequence(Qt::Key_F9)));
  errors_ = add("CmdErori", "&Erori", "erori", "Problemele gasite la ultima verificare",
                &Frm_INTRASTAT::ShowProblems);
  this->commands()->AddSeparator();
  calculation(add("CmdRecalcValStat", "Val. st&at", "calcul", "Recalculeaza valoarea statistica",
                  &Frm_INTRASTAT::RecalculateStatisticalValue),
              commands_.recalculate_statistical_value);
  calculation(add("CmdRedistribuireTransport", "Tran&sport", "transport", "Redistribuie costul transportului",
                  &Frm_INTRASTAT::RedistributeTransport),
              commands_.redistribute_transport);
  calculation(add("CmdRedistribuireNet", "&Masa neta", "greutate", "Redistribuie masa neta",
                  &Frm_INTRASTAT::RedistributeNet),
              commands_.redistribute_net);
  this->commands()->AddSeparator();
  changing(add("Cmd_Fisier", "&Fisier", "fisier", "Scrie fisierul XML al declaratiei", &Frm_INTRASTAT::Export,
               QKeySequence(Qt::CTRL | Qt::Key_E)));
  add("Cmd_Print", "Ti&pareste", "tipareste", "Rapoartele declaratiei si liniile de pe ecran",
      &Frm_INTRASTAT::PrintDeclaration, QKeySequence(Qt::CTRL | Qt::Key_P));
  this->commands()->Add(QStringLiteral("Cmd_Excel"), QStringLiteral("Ex&cel"), QStringLiteral("excel"),
                        [this] {
                          if (grid()->CommitEdit()) ExportSpreadsheet();
                        });

  const auto key = [this](const QKeySequence& keys, Command command) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, command] { (this->*command)(); });
  };
  // The quotation mark needs Shift on most keyboards, and the apostrophe is what other grids use.
  for (const auto& keys :
       {QKeySequence(Qt::CTRL | Qt::Key_QuoteDbl), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_QuoteDbl),
        QKeySequence(Qt::CTRL | Qt::Key_Apostrophe)}) {
    key(keys, &Frm_INTRASTAT::CopyAbove);
  }
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, grid(), &ui::Grid::StartSearch);
}

void Frm_INTRASTAT::MakeModel() {
  grid()->SetGridModel(nullptr);
  model_ = std::make_unique<EditorModel>(session(), editor_, nullptr);
  connect(model_.get(), &EditorModel::CellTaken, this, [this](const QString& note) {
    ShowStatus(note);
    ShowState();
    auto_save_.start();
  });
  grid()->SetLayoutName(editor_.provenance() ? QStringLiteral("Frm_INTRASTAT provenienta")
                                             : QStringLiteral("Frm_INTRASTAT"));
  SetModel(model_.get());
  filter_->ShowColumns();
  ShowState();
}

// --- state

void Frm_INTRASTAT::ShowState() {
  setWindowTitle(Q(editor_.Title()) + (view_ ? QStringLiteral("   (numai vizualizare)") : QString()));
  const LineTotals& sums = editor_.totals();
  const std::pair<const char*, double> totals[] = {{"Val_Fiscala", sums.Val_Fiscala},
                                                   {"Val_Stat", sums.Val_Stat},
                                                   {"Net", sums.Net},
                                                   {"Valoare_Valuta", sums.Valoare_Valuta}};
  for (int i = 0; i < model_->columnCount(); ++i) totals_row()->SetText(i, {});
  for (const auto& [field, sum] : totals) {
    const int column = editor_.ColumnOf(field);
    if (column >= 0) totals_row()->SetText(column, ui::Shown(sum, ui::Format::kAmount));
  }
  const std::size_t problems = editor_.problems().all().size();
  errors_->setText(problems == 0 ? QStringLiteral("&Erori") : QStringLiteral("&Erori %1").arg(problems));
  for (QPushButton* button : changing_) button->setEnabled(editor_.can_edit());
  filter_->ShowFiltered(editor_.filtered());
  totals_row()->SetLabel(editor_.filtered() ? QStringLiteral("Total declaratie (liniile sunt filtrate)")
                                            : QStringLiteral("Total"));
  UpdateCount();
}

void Frm_INTRASTAT::FollowLines() {
  model_->Follow();
  ShowState();
}

std::int64_t Frm_INTRASTAT::CurrentLine() {
  const int row = grid()->current_row(), record_id = editor_.ColumnOf("Record_ID");
  const bool on_line = row >= 0 && row < editor_.row_count() && record_id >= 0;
  return on_line ? editor_.ValueAt(row, record_id).ToInteger() : 0;
}

bool Frm_INTRASTAT::Reading(const std::function<bool()>& action) {
  const int row = grid()->current_row(), column = grid()->currentIndex().column();
  const std::int64_t id = CurrentLine();
  const bool done = action();
  if (model_->Fits()) {
    model_->Reload();
  } else {
    MakeModel();
  }
  const int found = id == 0 ? -1 : editor_.RowOf(id);
  grid()->SelectRow(found >= 0 ? found : std::clamp(row, 0, std::max(0, model_->Rows() - 1)), column);
  ShowState();
  return done;
}

void Frm_INTRASTAT::OnRow(int row) {
  if (!editor_.pending() || editor_.pending_row() == row) return;
  auto_save_.stop();
  editor_.SaveLine();
  after_row_.start();
}

void Frm_INTRASTAT::AfterRow() {
  // A line that could not be saved is gone back to.
  if (editor_.pending() && editor_.pending_row() != grid()->current_row()) {
    grid()->SelectRow(editor_.pending_row());
  }
  FollowLines();
}

void Frm_INTRASTAT::AutoSave() {
  if (QApplication::activeModalWidget() != nullptr && QApplication::activeModalWidget() != this) return;
  if (editor_.pending() && editor_.SaveLine()) FollowLines();
}

int Frm_INTRASTAT::FirstEditable() const {
  auto* lines = const_cast<Frm_INTRASTAT*>(this)->grid();
  for (const int column : lines->visible_columns()) {
    if (model_->columns()[static_cast<std::size_t>(column)].editable) return column;
  }
  return -1;
}

bool Frm_INTRASTAT::GoTo(const Editor::Cell& cell) {
  if (cell.row < 0) return false;
  const bool shown = cell.column >= 0 && !grid()->isColumnHidden(cell.column);
  grid()->SelectRow(cell.row, shown ? cell.column : -1);
  activateWindow();
  grid()->setFocus();
  return true;
}

bool Frm_INTRASTAT::GoTo(std::int64_t Record_ID, const std::string& column) {
  if (!grid()->CommitEdit()) return false;
  if (editor_.provenance()) ShowProvenance(false);
  Editor::Cell cell;
  LineProblem problem;
  problem.Record_ID = Record_ID;
  problem.column = column;
  Reading([&] {
    cell = editor_.Locate(problem);
    return true;
  });
  if (GoTo(cell)) return true;
  ShowStatus(QStringLiteral("Linia nu mai exista in declaratie"));
  return false;
}

bool Frm_INTRASTAT::GoTo(const LineProblem& problem) {
  if (!GoTo(problem.Record_ID, problem.column)) return false;
  ShowStatus(Q(problem.text));
  return true;
}

Frm_Intrastat_Probleme& Frm_INTRASTAT::problems_screen() {
  if (problems_screen_ == nullptr) {
    problems_screen_ = new Frm_Intrastat_Probleme(
        context(), editor_.identity(), [this](const LineProblem& problem) { return GoTo(problem); }, this);
  }
  return *problems_screen_;
}

void Frm_INTRASTAT::reject() {
  if (is_open_) {
    if (!grid()->CommitEdit()) return;
    auto_save_.stop();
    if (!editor_.Close()) {
      if (editor_.pending()) grid()->SelectRow(editor_.pending_row());
      if (!session().host.prompter.Ask("Linia inceputa nu s-a putut salva. Inchideti fara ea ?", "RASPUNDETI",
                                       platform::Icon::kQuestion)) {
        return;
      }
      editor_.CancelLine();
      editor_.Close();
    }
  }
  ListScreen::reject();
}

OpenEditor EditorOpener(ui::Context& context, EditorCommands commands) {
  return
      [&context, commands = std::move(commands)](const EditorOpening& opening, bool view, QWidget* parent) {
        ui::Try(context, [&] {
          Frm_INTRASTAT screen(context, opening, view, commands, parent);
          if (!screen.is_open()) return;
          if (opening.Record_ID != 0) {
            QTimer::singleShot(0, &screen, [&] { screen.GoTo(opening.Record_ID, "Cod_NC"); });
          }
          screen.exec();
        });
      };
}

}  // namespace declarations
