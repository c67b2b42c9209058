#include "import/screens/template_editor.h"

#include <QDropEvent>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopeGuard>
#include <QShortcut>
#include <QSplitter>
#include <QTimer>

#include "import/screens/template_models.h"
#include "import/template_rows.h"
#include "platform/encoding.h"
#include "ui/elided_label.h"
#include "ui/grid.h"
#include "ui/icons.h"
#include "ui/list_screen.h"
#include "ui/text.h"

namespace importer {

using ui::Q;

namespace {

constexpr int kRefreshAfter = 250;  // ms of rest before the preview is read again

/// These lists have an order of their own.
void KeepOrder(ui::Grid& grid) {
  grid.horizontalHeader()->setSectionsClickable(false);
  grid.horizontalHeader()->setSortIndicatorShown(false);
}

QPushButton* BesideButton(QWidget* parent, const char* name, const QString& tip) {
  auto* button = new QPushButton(ui::Icon(QStringLiteral("folder")), QString(), parent);
  button->setObjectName(QString::fromLatin1(name));
  button->setToolTip(tip);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

Frm_Macheta::Frm_Macheta(ui::Context& screen_context, const std::string& Nume_Structura, QWidget* parent,
                         FileChooser choose_file)
    : Form(screen_context, QStringLiteral("Frm_Macheta"), parent),
      draft_(session()),
      preview_(session()),
      choose_file_(std::move(choose_file)),
      refresh_(new QTimer(this)) {
  if (!choose_file_) choose_file_ = WorksheetDialog(context(), this);
  SetFirstSize({1280, 700});
  refresh_->setSingleShot(true);
  refresh_->setInterval(kRefreshAfter);
  connect(refresh_, &QTimer::timeout, this, [this] { Try([this] { ShowPreview(); }); });
  if (!Nume_Structura.empty() && draft_.Open(Nume_Structura)) stored_name_ = draft_.header.Nume_Structura;
  AddHeader();
  AddCommands();
  AddGrids();
  SetButtons(
      QStringLiteral("&Salveaza"), [this] { Save(); }, QStringLiteral("I&nchide"));
  ShowHeader();
  ReadColumns(Telling::kQuiet);
  FocusField(QStringLiteral("Nume_Structura"));
}

void Frm_Macheta::AddHeader() {
  AddColumn();
  AddText(QStringLiteral("Nume_Structura"), QStringLiteral("Nume &Macheta"), 40,
          QStringLiteral("Numele sub care se alege macheta la preluare, de pilda al furnizorului"))
      ->setMaxLength(100);
  MarkRequired(QStringLiteral("Nume_Structura"));
  flow_ = new QComboBox(this);
  flow_->setObjectName(QStringLiteral("TIP"));
  FillChoices(session(), *flow_, "Frm_Macheta", {"ACHIZITIE", "LIVRARE"});
  flow_->setCurrentIndex(-1);
  AddField(QStringLiteral("Se f&oloseste la"), flow_,
           QStringLiteral("ACHIZITIE: marfuri intrate in tara; LIVRARE: marfuri iesite"), Kind::kBound);
  MarkRequired(QStringLiteral("TIP"));
  AddBeside(new QLabel(this));  // keeps the list as wide as what it holds
  AddColumn();
  AddText(QStringLiteral("Locatie_Implicita"), QStringLiteral("&Locatie implicita"), 56,
          QStringLiteral("Folderul in care se cauta fisierele la preluare"))
      ->setMaxLength(255);
  auto* folder = BesideButton(this, "CmdLocatie", QStringLiteral("Alege folderul"));
  connect(folder, &QPushButton::clicked, this, [this] { ChooseFolder(); });
  AddBeside(folder);
  QLineEdit* path =
      AddText(QStringLiteral("SampleExcelFile"), QStringLiteral("Fisier &exemplu"), 56,
              QStringLiteral("Un fisier de felul celor care se vor prelua; din el se citesc coloanele"));
  path->setMaxLength(255);
  connect(path, &QLineEdit::editingFinished, this, [this, path] {
    if (!path->isModified()) return;
    path->setModified(false);
    Try([this, path] { TakeSample(TypedPath(path->text()), Telling::kQuiet); });
  });
  auto* sample = BesideButton(this, "CmdFisier", QStringLiteral("Alege fisierul exemplu"));
  connect(sample, &QPushButton::clicked, this, [this] { Try([this] { ChooseSample(); }); });
  AddBeside(sample);
  sheet_ = new QComboBox(this);
  sheet_->setObjectName(QStringLiteral("Work_Sheet_Name"));
  sheet_->setEditable(true);
  sheet_->setFixedWidth(sheet_->fontMetrics().averageCharWidth() * 36);
  AddField(QStringLiteral("&Foaia de lucru"), sheet_,
           QStringLiteral("Numele foii din fisier; fara nume se citeste Sheet1"), Kind::kBound);
  const auto reread = [this] { Try([this] { ReadColumns(Telling::kQuiet); }); };
  connect(sheet_, &QComboBox::activated, this, reread, Qt::QueuedConnection);
  connect(sheet_->lineEdit(), &QLineEdit::editingFinished, this, [this, reread] {
    if (ui::Utf8(sheet_->currentText().trimmed()) != read_sheet_) reread();
  });
  auto* read = new QPushButton(ui::Icon(QStringLiteral("reimprospateaza")),
                               QStringLiteral("&Citeste coloanele"), this);
  read->setObjectName(QStringLiteral("CmdCiteste"));
  read->setAutoDefault(false);
  connect(read, &QPushButton::clicked, this, [this, path] {
    Try([this, path] {  // its key does not take the focus out of a path just typed
      path->isModified() ? TakeSample(TypedPath(path->text()), Telling::kShow) : ReadColumns(Telling::kShow);
    });
  });
  read->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  AddBeside(read);
  AddBeside(new QLabel(this));
  connect(flow_, &QComboBox::currentTextChanged, refresh_, qOverload<>(&QTimer::start));
}

void Frm_Macheta::AddCommands() {
  body()->setStretch(body()->count() - 1, 0);
  auto* commands = new ui::CommandRow(this);
  commands
      ->Add(QStringLiteral("CmdPropune"), QStringLiteral("&Propune coloanele"), QStringLiteral("verifica"),
            [this] { Propose(); })
      ->setToolTip(QStringLiteral("Potriveste informatiile fara numar cu capetele de coloana din exemplu"));
  commands
      ->Add(QStringLiteral("CmdAtribuie"), QStringLiteral("&Atribuie coloana"), QStringLiteral("intrare"),
            [this] {
              if (const int number = SampleNumber()) AssignTo(row_grid_->current_row(), number);
            })
      ->setToolTip(QStringLiteral("Da informatiei curente coloana aleasa din exemplu (dublu clic pe ea)"));
  commands->AddApart(
      QStringLiteral("CmdSterge"), QStringLiteral("S&terge randul"), QStringLiteral("sterge"),
      [this] { DeleteRow(); }, QKeySequence(QKeySequence::Delete));
  body()->addWidget(commands);
}

void Frm_Macheta::AddGrids() {
  auto* whole = new QSplitter(Qt::Vertical, this);
  auto* above = new QSplitter(Qt::Horizontal, whole);
  whole->setChildrenCollapsible(false);
  above->setChildrenCollapsible(false);

  row_grid_ = new ui::Grid(context(), QStringLiteral("Frm_Macheta"), above);
  row_grid_->setObjectName(QStringLiteral("GridColoane"));
  row_grid_->SetEmptyText(QStringLiteral(
      "Informatiile declaratiei apar dupa ce macheta are nume si sens si este salvata prima data."));
  KeepOrder(*row_grid_);
  std::vector<std::string> formats = ReadComboList(session(), "Format", "Frm_Macheta");
  if (formats.empty()) formats = {"TEXT", "NUMERIC", "DATETIME"};
  rows_ = new TemplateRowModel(draft_, std::move(formats), this);
  row_grid_->SetGridModel(rows_);
  row_grid_->viewport()->setAcceptDrops(true);
  row_grid_->viewport()->installEventFilter(this);
  connect(row_grid_, &QTableView::clicked, this, [this](const QModelIndex& at) {
    const std::optional<int> number = armed_;
    Arm(std::nullopt);
    if (number && at.column() <= TemplateRowModel::kNumber) AssignTo(at.row(), *number);
  });
  const auto changed = [this] {
    sample_->ShowUses();
    refresh_->start();
  };
  connect(rows_, &ui::GridModel::dataChanged, this, changed);
  connect(rows_, &ui::GridModel::modelReset, this, changed);

  auto* beside = new QWidget(above);
  auto* column = new QVBoxLayout(beside);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(4);
  sample_label_ = new ui::ElidedLabel(20, beside);
  sample_label_->setObjectName(QStringLiteral("LblColoane"));
  sample_grid_ = new ui::Grid(context(), QStringLiteral("Macheta_Exemplu"), beside);
  sample_grid_->setObjectName(QStringLiteral("GridExemplu"));
  sample_grid_->setSelectionMode(QAbstractItemView::SingleSelection);
  sample_grid_->setDragEnabled(true);
  sample_grid_->setDragDropMode(QAbstractItemView::DragOnly);
  sample_grid_->SetEmptyText(
      QStringLiteral("Aici apar coloanele fisierului exemplu.\nAlegeti fisierul cu butonul de langa el."));
  KeepOrder(*sample_grid_);
  sample_ = new SampleModel(draft_, this);
  sample_grid_->SetGridModel(sample_);
  connect(sample_grid_, &QTableView::clicked, this, [this] { Arm(SampleNumber()); });
  connect(sample_grid_, &ui::Grid::Activated, this, [this] {
    AssignTo(row_grid_->current_row(), SampleNumber());
    if (row_grid_->current_row() + 1 < rows_->Rows()) row_grid_->SelectRow(row_grid_->current_row() + 1);
  });
  column->addWidget(sample_label_);
  column->addWidget(sample_grid_, 1);

  auto* below = new QWidget(whole);
  auto* lines = new QVBoxLayout(below);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(4);
  line_label_ = new QLabel(below);
  line_label_->setObjectName(QStringLiteral("LblPrevizualizare"));
  line_label_->setTextFormat(Qt::PlainText);
  line_label_->setWordWrap(true);
  line_grid_ = new ui::Grid(context(), QStringLiteral("Macheta_Linii"), below);
  line_grid_->setObjectName(QStringLiteral("GridPrevizualizare"));
  KeepOrder(*line_grid_);
  connect(line_grid_, &ui::Grid::CurrentRowChanged, this, [this] { TellLineProblem(); });
  lines->addWidget(line_label_);
  lines->addWidget(line_grid_, 1);

  above->setStretchFactor(0, 3);
  above->setStretchFactor(1, 2);
  above->setSizes({860, 400});
  whole->setStretchFactor(0, 3);
  whole->setStretchFactor(1, 2);
  whole->setSizes({280, 200});
  body()->addWidget(whole, 1);
  auto* save = new QShortcut(QKeySequence(QKeySequence::Save), this);
  connect(save, &QShortcut::activated, this, [this] { Try([this] { Save(); }); });
  auto* next = new QShortcut(QKeySequence(Qt::Key_F6), this);
  connect(next, &QShortcut::activated, this, [this] { GoToNextPart(); });
}

void Frm_Macheta::GoToNextPart() {
  if (row_grid_->isAncestorOf(focusWidget()) || row_grid_->hasFocus()) {
    if (!row_grid_->CommitEdit()) return;
    sample_grid_->setFocus();
  } else if (sample_grid_->hasFocus()) {
    line_grid_->setFocus();
    TellLineProblem();
  } else if (line_grid_->hasFocus()) {
    FocusField(QStringLiteral("Nume_Structura"));
  } else {
    row_grid_->setFocus();
  }
}

void Frm_Macheta::TellLineProblem() {
  const int row = line_grid_->current_row();
  if (!line_grid_->hasFocus() || lines_ == nullptr || row < 0 || row >= lines_->Rows()) return;
  const QString problem = lines_->ProblemAt(row, -1).replace('\n', QStringLiteral("; "));
  ShowMessage(problem.isEmpty() ? QString()
                                : QStringLiteral("Rand %1: %2").arg(lines_->TextAt(row, 0), problem));
}

void Frm_Macheta::ShowTitle() {
  setWindowTitle(stored_name_.empty() ? QStringLiteral("Adauga Macheta")
                                      : QStringLiteral("Modificare Macheta - ") + Q(stored_name_));
}

void Frm_Macheta::ShowHeader() {
  const TemplateHeader& header = draft_.header;
  SetText(QStringLiteral("Nume_Structura"), Q(header.Nume_Structura));
  SetText(QStringLiteral("TIP"), Q(header.TIP));
  SetText(QStringLiteral("Locatie_Implicita"), Q(header.Locatie_Implicita));
  SetText(QStringLiteral("Work_Sheet_Name"), Q(header.Work_Sheet_Name));
  SetText(QStringLiteral("SampleExcelFile"), Q(header.SampleExcelFile));
  ShowTitle();
}

void Frm_Macheta::TakeHeader() {
  const auto text = [this](const char* name) { return ui::Utf8(Text(QString::fromLatin1(name)).trimmed()); };
  draft_.header = {text("Nume_Structura"), text("TIP"), text("Locatie_Implicita"), text("Work_Sheet_Name"),
                   text("SampleExcelFile")};
}

void Frm_Macheta::Save() {
  if (!row_grid_->CommitEdit()) return;
  TakeHeader();
  const bool first = draft_.is_new();
  if (!draft_.Save()) {
    if (draft_.header.Nume_Structura.empty()) return FocusField(QStringLiteral("Nume_Structura"));
    if (draft_.header.TIP.empty()) return FocusField(QStringLiteral("TIP"));
    if (const auto row = draft_.IncompleteRow()) {
      row_grid_->SelectRow(static_cast<int>(*row), TemplateRowModel::kNumber);
      return row_grid_->setFocus();
    }
    return FocusField(QStringLiteral("Nume_Structura"));
  }
  stored_name_ = draft_.header.Nume_Structura;
  ShowHeader();
  rows_->Reset();
  if (first) row_grid_->setFocus();
  ShowMessage(
      first ? QStringLiteral("Macheta a fost salvata; dati acum informatiilor coloanele lor din exemplu")
            : QStringLiteral("Macheta a fost salvata"));
}

void Frm_Macheta::reject() {
  if (isVisible() && !row_grid_->CommitEdit()) return;
  TakeHeader();
  if (isVisible() && draft_.changed() &&
      !session().host.prompter.Ask("Datele modificate nu au fost salvate. Inchideti fara salvare ?",
                                   "RASPUNDETI", platform::Icon::kQuestion)) {
    return;
  }
  Form::reject();
}

void Frm_Macheta::ChooseFolder() {
  const platform::Drives& drives = session().host.files.drives();
  const std::string now = ui::Utf8(Text(QStringLiteral("Locatie_Implicita")));
  const QString start = now.empty() ? QString() : QString::fromStdU16String(drives.ToHost(now).u16string());
  const QString chosen = QFileDialog::getExistingDirectory(this, QStringLiteral("Alegeti folderul"), start);
  if (chosen.isEmpty()) return;
  SetText(QStringLiteral("Locatie_Implicita"),
          Q(platform::WithBackslash(drives.FromHost(std::filesystem::path(chosen.toStdU16String())))));
}

void Frm_Macheta::ChooseSample() {
  TakeHeader();
  const TemplateHeader& header = draft_.header;
  const std::string path = choose_file_(
      header.SampleExcelFile.empty() ? header.Locatie_Implicita : platform::FolderOf(header.SampleExcelFile));
  if (!path.empty()) TakeSample(path, Telling::kShow);
}

void Frm_Macheta::BeginWith(const std::string& sample, const std::string& TIP) {
  SetText(QStringLiteral("TIP"), Q(TIP));
  if (session().host.files.Exists(sample)) TakeSample(sample, Telling::kShow);
}

void Frm_Macheta::TakeSample(const std::string& path, Telling telling) {
  TakeHeader();
  SetText(QStringLiteral("SampleExcelFile"), Q(path));
  if (draft_.header.Locatie_Implicita.empty() && session().host.files.Exists(path)) {
    SetText(QStringLiteral("Locatie_Implicita"), Q(platform::WithBackslash(platform::FolderOf(path))));
  }
  const SheetList sheets = OfferSheets(session(), *sheet_, path);
  const std::string& named = draft_.header.Work_Sheet_Name;
  if (!sheets.names.empty() && !sheets.Has(named.empty() ? kDefaultSheet : named)) {
    sheet_->setEditText(Q(sheets.names.front()));
  }
  ReadColumns(telling);
}

void Frm_Macheta::ReadColumns(Telling telling) {
  TakeHeader();
  const std::string& path = draft_.header.SampleExcelFile;
  read_sheet_ = draft_.header.Work_Sheet_Name;
  SampleReading reading;
  if (telling == Telling::kQuiet && path.empty()) {
    preview_.Close();
  } else {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto done = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
    OfferSheets(session(), *sheet_, path);
    reading = TrySample(session(), path, draft_.header.Work_Sheet_Name);
    preview_.Open(path, draft_.header.Work_Sheet_Name);
  }
  if (!reading.problem.empty() && telling == Telling::kShow) session().host.prompter.Error(reading.problem);
  const std::vector<SampleColumn> columns =
      reading.sample ? reading.sample->columns : std::vector<SampleColumn>();
  sample_label_->setText(Q(reading.sample ? reading.sample->label : reading.problem));
  rows_->SetSample(columns);
  sample_->SetColumns(columns);
  findChild<QPushButton*>(QStringLiteral("CmdPropune"))->setEnabled(!columns.empty());
  findChild<QPushButton*>(QStringLiteral("CmdAtribuie"))->setEnabled(!columns.empty());
  Arm(std::nullopt);
  ShowPreview();
}

int Frm_Macheta::SampleNumber() const {
  const int row = sample_grid_->current_row();
  return row < 0 ? 0 : sample_->sample()[static_cast<std::size_t>(row)].number;
}

void Frm_Macheta::Propose() {
  if (!row_grid_->CommitEdit()) return;
  if (draft_.rows().empty()) Save();  // the rows come with the first saving
  if (draft_.rows().empty()) return;
  const int found = draft_.Propose(sample_->sample());
  rows_->Reset();
  ShowMessage(found == 0 ? QStringLiteral("Nici un cap de coloana nu seamana cu o informatie fara numar")
                         : QStringLiteral("Coloane propuse dupa capul lor: %1. Verificati-le in liniile de "
                                          "jos si completati ce lipseste.")
                               .arg(found));
}

void Frm_Macheta::Arm(std::optional<int> number) {
  armed_ = number && *number > 0 && rows_->Rows() > 0 ? number : std::nullopt;
  row_grid_->viewport()->setCursor(armed_ ? Qt::PointingHandCursor : Qt::ArrowCursor);
  if (!armed_) return;
  const QString heading = Q(sample_->sample()[static_cast<std::size_t>(*armed_ - 1)].heading);
  ShowMessage(QStringLiteral("Coloana %1, %2: faceti clic pe informatia pe care o contine (Esc renunta)")
                  .arg(*armed_)
                  .arg(heading));
}

void Frm_Macheta::AssignTo(int row, int number) {
  Arm(std::nullopt);
  if (row < 0 || number <= 0) return;
  row_grid_->RevertEdit();  // a number typed over is given up for this one
  rows_->Assign(row, number);
  row_grid_->SelectRow(row);
  ShowMessage(QStringLiteral("%1: coloana %2, %3")
                  .arg(rows_->TextAt(row, TemplateRowModel::kDescription))
                  .arg(number)
                  .arg(Q(sample_->sample()[static_cast<std::size_t>(number - 1)].heading)));
}

void Frm_Macheta::DeleteRow() {
  const int row = row_grid_->current_row();
  if (row < 0) return;
  const QString name = rows_->TextAt(row, TemplateRowModel::kDescription);
  if (rows_->Delete(row)) ShowMessage(QStringLiteral("Randul %1 dispare din macheta la salvare").arg(name));
}

void Frm_Macheta::ShowPreview() {
  refresh_->stop();
  PreviewLines read = preview_.Read(draft_.Rules(), ui::Utf8(Text(QStringLiteral("TIP"))));
  const QString problem = Q(read.problem);
  if (lines_ == nullptr || !lines_->Replace(read)) {
    auto* model = new PreviewModel(std::move(read), draft_.rows(), this);
    line_grid_->SetGridModel(model);
    delete lines_;
    lines_ = model;
  }
  QString text = QStringLiteral("Primele linii ale declaratiei");
  if (lines_->Rows() > 0) {
    const QString marked = lines_->ProblemSummary();
    text = QStringLiteral("Primele %1 linii ale declaratiei, asa cum se vor prelua").arg(lines_->Rows());
    text += marked.isEmpty() ? QStringLiteral("; nu lipseste nimic si toate codurile sunt cunoscute")
                             : QStringLiteral(". Lipsesc sau sunt necunoscute: ") + marked;
  }
  line_label_->setText(problem.isEmpty() ? text : problem);
  line_grid_->SetEmptyText(
      problem.isEmpty()
          ? QStringLiteral("Aici apar liniile facute din exemplu, indata ce o informatie are coloana ei.")
          : QStringLiteral("Din fisierul exemplu nu se pot face linii."));
}

bool Frm_Macheta::eventFilter(QObject* watched, QEvent* event) {
  if (row_grid_ == nullptr || watched != row_grid_->viewport()) return Form::eventFilter(watched, event);
  if (event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove &&
      event->type() != QEvent::Drop) {
    return Form::eventFilter(watched, event);
  }
  auto* drop = static_cast<QDropEvent*>(event);  // the base of all three
  const QByteArray number = drop->mimeData()->data(QString::fromLatin1(SampleModel::kMime));
  const QModelIndex at = row_grid_->indexAt(drop->position().toPoint());
  if (number.isEmpty() || (event->type() != QEvent::DragEnter && !at.isValid())) {
    drop->ignore();
    return true;
  }
  drop->acceptProposedAction();
  if (event->type() == QEvent::DragMove) row_grid_->SelectRow(at.row());
  if (event->type() == QEvent::Drop) AssignTo(at.row(), number.toInt());
  return true;
}

void Frm_Macheta::keyPressEvent(QKeyEvent* key) {
  if (key->key() == Qt::Key_Escape && armed_) {
    Arm(std::nullopt);
    ShowMessage({});
    return;
  }
  Form::keyPressEvent(key);
}

}  // namespace importer
