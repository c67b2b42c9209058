#include "tariff/screens/query_builder.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>

#include "ui/icons.h"
#include "ui/memory.h"
#include "ui/progress.h"
#include "ui/text.h"

namespace tariff {
namespace {

constexpr char kMessageTitle[] = "Mesaj";

QLabel* Heading(const QString& text, QWidget* buddy, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setBuddy(buddy);
  return label;
}

/// A part of the upper half: heading on top, the rest below.
QVBoxLayout* PartLayout(QWidget* part) {
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  return layout;
}

/// Position in the box of a byte offset in its UTF-8 text.
int InBox(const std::string& statement, int offset) {
  const auto size = std::min(static_cast<std::size_t>(std::max(offset, 0)), statement.size());
  return static_cast<int>(ui::Q(std::string_view(statement).substr(0, size)).size());
}

}  // namespace

Frm_Script::Frm_Script(ui::Context& context, const QString& name, QWidget* parent)
    : Form(context, QStringLiteral("Frm_Script"), parent) {
  setWindowTitle(QStringLiteral("Salvare script"));
  AddNote(QStringLiteral("Introduceti numele scriptului care se salva"));
  QLineEdit* field = AddText(QStringLiteral("Script_Name"), QStringLiteral("&Nume Script"), 40,
                             QStringLiteral("Numele sub care comanda se gaseste in lista de scripturi"));
  field->setMaxLength(kLongestScriptName);
  field->setText(name);
  MarkRequired(QStringLiteral("Script_Name"));
  SetButtons(QStringLiteral("&Salveaza"), [this] {
    if (Require(QStringLiteral("Script_Name"), QStringLiteral("Nume Script"))) accept();
  });
  FocusField(QStringLiteral("Script_Name"));
}

std::string Frm_Script::Script_Name() const {
  return ui::Utf8(Text(QStringLiteral("Script_Name")).trimmed());
}

Frm_Interogari::Frm_Interogari(ui::Context& screen_context, QWidget* parent)
    : ListScreen(screen_context, QStringLiteral("Frm_Interogari"), parent),
      tables_model_(new QueryTablesModel(QueryTables(session().company), this)),
      columns_model_(new QueryColumnsModel(OperatorsFor(session().company, ""), this)) {
  setWindowTitle(QStringLiteral("Constructor interogari"));
  SetFirstSize({1240, 690});
  setMinimumSize(900, 540);
  AddCommands();

  auto* upper = new QSplitter(Qt::Horizontal, this);
  upper->setChildrenCollapsible(false);
  upper->addWidget(TablesPart());
  upper->addWidget(ColumnsPart());
  upper->addWidget(StatementPart());
  upper->setSizes({200, 680, 340});
  for (int i = 0; i < 3; ++i) upper->setStretchFactor(i, i == 0 ? 0 : 1);
  SplitAboveGrid(upper, 310);
  ui::RememberSplit(context(), objectName(), QStringLiteral("impartire_sus"), upper);

  SetCountCaption(QStringLiteral("Inregistrari: "));
  grid()->SetLayoutName(ResultLayout());
  grid()->SetEmptyText(QStringLiteral(
      "Aici apar randurile gasite. Alegeti un tabel, bifati coloanele, puneti conditii si apasati "
      "Afiseaza (F5); sau scrieti un SELECT ori alegeti un script si apasati Ruleaza SQL "
      "(Ctrl+Enter)."));

  connect(tables_, &ui::Grid::CurrentRowChanged, this,
          [this](int row) { Try([this, row] { ShowTable(row); }); });
  connect(tables_, &ui::Grid::Activated, this, [this] { columns_->setFocus(); });
  connect(columns_, &ui::Grid::CurrentRowChanged, columns_model_, &QueryColumnsModel::SetCurrentRow);
  connect(columns_model_, &QueryColumnsModel::NotInList, this, [this] {
    session().host.prompter.Message("Selectati o valoare din lista", kMessageTitle,
                                    platform::Icon::kExclamation);
  });
  tables_->SelectRow(std::max(tables_model_->RowOf("Intrastat"), 0), -1, ui::Grid::PositionAtCenter);
  ReadScripts("");
  tables_->setFocus();
}

Frm_Interogari::~Frm_Interogari() {
  grid()->SetGridModel(nullptr);  // the rows go before the grid does
}

void Frm_Interogari::AddCommands() {
  ui::CommandRow* row = commands();
  row->Add(
      QStringLiteral("CmdAfiseaza"), QStringLiteral("&Afiseaza"), QStringLiteral("vizualizare"),
      [this] { ShowQuery(); }, QKeySequence(Qt::Key_F5));
  QPushButton* run = row->Add(
      QStringLiteral("CmdRuleaza"), QStringLiteral("&Ruleaza SQL"), QStringLiteral("calcul"),
      [this] { RunTyped(); }, QKeySequence(Qt::CTRL | Qt::Key_Return));
  auto* enter = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Enter), this);  // of the number pad
  connect(enter, &QShortcut::activated, run, &QPushButton::click);
  row->AddSeparator();
  row->Add(
      QStringLiteral("CmdSalveaza"), QStringLiteral("&Salveaza script"), QStringLiteral("salveaza"),
      [this] { Save(); }, QKeySequence(QKeySequence::Save));
  delete_ = row->Add(QStringLiteral("CmdStergeScript"), QStringLiteral("S&terge script"),
                     QStringLiteral("sterge"), [this] { DeleteScript(); });
  row->AddSeparator();
  row->Add(
      QStringLiteral("CmdTiparire"), QStringLiteral("Ti&parire"), QStringLiteral("tipareste"),
      [this] { PrintRows(); }, QKeySequence(Qt::CTRL | Qt::Key_P));
  row->Add(
      QStringLiteral("CmdExport"), QStringLiteral("E&xport"), QStringLiteral("excel"), [this] { Export(); },
      QKeySequence(Qt::CTRL | Qt::Key_E));
  row->AddApart(QStringLiteral("CmdInchide"), QStringLiteral("&Inchide"), QStringLiteral("iesire"),
                [this] { close(); })
      ->setToolTip(QStringLiteral("Esc"));
}

QWidget* Frm_Interogari::TablesPart() {
  auto* part = new QWidget(this);
  tables_ = new ui::Grid(context(), objectName() + QStringLiteral("_tabele"), part);
  tables_->setObjectName(QStringLiteral("Grid_Tabele"));
  tables_->SetGridModel(tables_model_);
  tables_->horizontalHeader()->setSectionsClickable(false);
  tables_->SetEmptyText(QStringLiteral("Firma nu are tabele."));
  QVBoxLayout* layout = PartLayout(part);
  layout->addWidget(Heading(QStringLiteral("1. Ta&bel"), tables_, part));
  layout->addWidget(tables_, 1);
  return part;
}

QWidget* Frm_Interogari::ColumnsPart() {
  auto* part = new QWidget(this);
  columns_ = new ui::Grid(context(), objectName() + QStringLiteral("_coloane"), part);
  columns_->setObjectName(QStringLiteral("Grid_Coloane"));
  columns_->FreezeFirstColumn();
  columns_->SetGridModel(columns_model_);
  columns_->horizontalHeader()->setSectionsClickable(false);
  columns_->SetEmptyText(QStringLiteral("Aici apar coloanele tabelului ales in stanga."));
  auto* all = new QPushButton(QStringLiteral("T&oate coloanele"), part);
  all->setObjectName(QStringLiteral("CmdToate"));
  all->setAutoDefault(false);
  all->setMinimumWidth(all->sizeHint().width() + 16);
  all->setToolTip(QStringLiteral("Bifeaza toate coloanele; daca sunt bifate toate, le debifeaza"));
  connect(all, &QPushButton::clicked, this, [this] { TickAll(); });
  QVBoxLayout* layout = PartLayout(part);
  auto* top = new QHBoxLayout;
  top->addWidget(Heading(QStringLiteral("2. &Coloane si conditii"), columns_, part), 1);
  top->addWidget(all);
  layout->addLayout(top);
  layout->addWidget(columns_, 1);
  auto* hint =
      new QLabel(QStringLiteral("Texte: 'DE'   contine: '%pompa%'   numere: 12,5   date: 05.03.2026"), part);
  hint->setObjectName(QStringLiteral("Indrumare"));
  hint->setMinimumWidth(1);
  layout->addWidget(hint);
  return part;
}

QWidget* Frm_Interogari::StatementPart() {
  auto* part = new QWidget(this);
  scripts_ = new QComboBox(part);
  scripts_->setObjectName(QStringLiteral("Combo_Script"));
  scripts_->setPlaceholderText(QStringLiteral("alegeti un script salvat"));
  scripts_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  scripts_->setMinimumContentsLength(16);
  connect(scripts_, &QComboBox::textActivated, this,
          [this](const QString& name) { Try([this, name] { LoadScript(name); }); });

  TXT_SQL_ = new QPlainTextEdit(part);
  TXT_SQL_->setObjectName(QStringLiteral("TXT_SQL"));
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(std::max(this->font().pointSizeF(), font.pointSizeF()));
  TXT_SQL_->setFont(font);
  TXT_SQL_->setTabChangesFocus(true);
  TXT_SQL_->setPlaceholderText(
      QStringLiteral("SELECT Cod_NC, SUM(Net) AS Masa\nFROM Intrastat\nWHERE Anul = 2026\nGROUP BY "
                     "Cod_NC\n\nSe citeste numai; "
                     "comenzile care ar schimba date sunt refuzate."));
  connect(TXT_SQL_, &QPlainTextEdit::textChanged, this, [this] {
    TXT_SQL_->setExtraSelections({});
    columns_model_->ClearErrors();
  });

  QVBoxLayout* layout = PartLayout(part);
  auto* top = new QHBoxLayout;
  top->addWidget(Heading(QStringLiteral("&Nume Script"), scripts_, part));
  top->addWidget(scripts_, 1);
  layout->addLayout(top);
  layout->addWidget(TXT_SQL_, 1);
  return part;
}

void Frm_Interogari::ShowTable(int row) {
  if (!table_.empty()) asked_[table_] = columns_model_->rows();
  table_.clear();
  columns_model_->SetRows({});
  if (row < 0) return;
  const std::string& name = tables_model_->NameAt(row);
  const auto known = asked_.find(name);
  columns_model_->SetRows(known != asked_.end() ? known->second : QueryColumns(session().company, name));
  table_ = name;
  columns_->SelectRow(0, QueryColumnsModel::kShown);
  columns_->horizontalScrollBar()->setValue(0);  // names first
}

void Frm_Interogari::TickAll() {
  const std::vector<QueryColumn>& rows = columns_model_->rows();
  columns_model_->ShowAll(
      !std::all_of(rows.begin(), rows.end(), [](const QueryColumn& each) { return each.shown; }));
  columns_->setFocus();
}

void Frm_Interogari::ShowQuery() {
  if (!columns_->CommitEdit()) return;  // F5 comes while a value is being typed
  const std::vector<QueryColumn>& rows = columns_model_->rows();
  platform::Prompter& prompter = session().host.prompter;
  const auto stop = [&](const std::string& text, int row, int column) {
    prompter.Message(text, kMessageTitle, platform::Icon::kExclamation);
    columns_->SelectRow(row, column);
    columns_->setFocus();
  };
  if (const std::optional<int> without = RowWithoutValue(rows)) {
    return stop(fmt::format("Pentru coloana: {} NU ESTE SETATA VALOAREA DE CAUTARE",
                            rows[static_cast<std::size_t>(*without)].FieldName),
                *without, QueryColumnsModel::kValue);
  }
  if (std::none_of(rows.begin(), rows.end(), [](const QueryColumn& each) { return each.shown; })) {
    return stop("Bifati cel putin o coloana la \"Afiseaza Coloana\"", std::max(columns_->current_row(), 0),
                QueryColumnsModel::kShown);
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    // The words may stand in names that the database itself has (Firme.[DataBase]), not in what is typed.
    if (!rows[i].Semn.empty() && !WithoutForbiddenWord(session(), rows[i].value)) {
      columns_->SelectRow(static_cast<int>(i), QueryColumnsModel::kValue);
      columns_->setFocus();
      return;
    }
  }
  const BuiltQuery built = BuildQuery(table_, rows);
  PutStatement(ui::Q(built.text));
  scripts_->setCurrentIndex(-1);
  delete_->setEnabled(false);
  Run(&built);
}

bool Frm_Interogari::MayUse(const std::string& text) {
  if (MayRun(session(), text)) return true;
  const std::string_view word = ForbiddenWord(text).value_or("");
  const qsizetype at = ui::Q(text).indexOf(ui::Q(word), 0, Qt::CaseInsensitive);
  if (!word.empty() && at >= 0) MarkPlace(static_cast<int>(at), static_cast<int>(at + ui::Q(word).size()));
  TXT_SQL_->setFocus();
  return false;
}

void Frm_Interogari::RunTyped() {
  if (MayUse(statement())) Run(nullptr);
}

void Frm_Interogari::Run(const BuiltQuery* built) {
  const std::string text = statement();
  TXT_SQL_->setExtraSelections({});
  columns_model_->ClearErrors();
  ShowStatus({});
  try {
    const ui::LongRun run(session().host.progress, windowTitle(), ui::Stopping::kPossible,
                          QStringLiteral("Se cauta randurile"));
    ShowRows(RunStatement(session(), text), text);
    const QString script = scripts_->currentText();
    SetFileTitle(!script.isEmpty()  ? script
                 : built != nullptr ? QStringLiteral("Interogare ") + ui::Q(table_)
                                    : QStringLiteral("Interogare"));
  } catch (const store::Error& error) {
    if (error.number() == store::kCancelled) {
      ShowStatus(QStringLiteral("Interogarea a fost oprita; randurile aratate sunt cele de dinainte"));
      return;
    }
    session::ShowError(session(), error);
    ShowStatus(ui::Q(error.description()));
    PointAt(error, built);
  }
}

void Frm_Interogari::ShowRows(store::Recordset rows, const std::string& text) {
  if (text != shown_statement_) {
    // Order and sort of the columns are the statement's, not those that another one was left with.
    for (const char* key : {"coloane", "ordine"}) {
      context().memory.Set(ResultLayout(), QString::fromLatin1(key), {});
    }
  }
  shown_statement_ = text;
  std::vector<ui::Column> columns = ResultColumns(rows);
  auto model = std::make_unique<ui::RecordsetModel>(std::move(columns), std::move(rows));
  rows_model_.swap(model);  // the old rows live until the grid has the new ones
  SetModel(rows_model_.get());
  grid()->SetEmptyText(QStringLiteral("Nici un rand nu indeplineste conditiile."));
  if (rows_model_->Rows() > 0) grid()->setFocus();
}

void Frm_Interogari::PointAt(const store::Error& error, const BuiltQuery* built) {
  if (error.position() < 0) {
    TXT_SQL_->setFocus();
    return;
  }
  const std::string text = statement();
  const int begin = InBox(text, error.position());
  // The word that begins there, or the one sign.
  const QString shown = TXT_SQL_->toPlainText();
  int end = begin;
  while (end < shown.size() && (shown[end].isLetterOrNumber() || shown[end] == '_')) ++end;
  MarkPlace(begin, std::max(end, begin + 1));
  const int row = built == nullptr ? -1 : built->RowAt(error.position());
  if (row >= 0) {
    columns_model_->SetError(row, ui::Q(error.description()));
    columns_->SelectRow(row, QueryColumnsModel::kValue);
    columns_->setFocus();
  } else {
    TXT_SQL_->setFocus();
  }
}

void Frm_Interogari::MarkPlace(int begin, int end) {
  const int last = static_cast<int>(TXT_SQL_->toPlainText().size());
  QTextCursor cursor = TXT_SQL_->textCursor();
  cursor.setPosition(std::min(begin, last));
  TXT_SQL_->setTextCursor(cursor);
  TXT_SQL_->ensureCursorVisible();
  QTextEdit::ExtraSelection place;
  // At the very end there is nothing to underline but what comes before.
  cursor.setPosition(std::min(begin, std::max(last - 1, 0)));
  cursor.setPosition(std::min(end, last), QTextCursor::KeepAnchor);
  place.cursor = cursor;
  place.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
  place.format.setUnderlineColor(QColor(0xd3, 0x2f, 0x2f));
  place.format.setBackground(QColor(0xd3, 0x2f, 0x2f, 56));
  TXT_SQL_->setExtraSelections({place});
}

void Frm_Interogari::Save() {
  if (!MayUse(statement())) return;
  QString name = scripts_->currentText();
  for (;;) {
    Frm_Script ask(context(), name, this);
    if (ask.exec() != QDialog::Accepted) return;
    if (SaveAs(ask.Script_Name())) return;
    name = ui::Q(ask.Script_Name());
  }
}

bool Frm_Interogari::SaveAs(const std::string& Script_Name) {
  const std::string text = statement();
  if (!ScriptExists(session(), Script_Name)) {
    SaveScript(session(), Script_Name, text);
  } else if (session().host.prompter.Ask(
                 fmt::format("Exista deja scriptul : {}. Il inlocuiti cu comanda de acum ?", Script_Name),
                 "RASPUNDETI", platform::Icon::kQuestion)) {
    ReplaceScript(session(), Script_Name, text);
  } else {
    return false;
  }
  ReadScripts(Script_Name);
  ShowStatus(QStringLiteral("Script salvat: ") + ui::Q(Script_Name));
  return true;
}

void Frm_Interogari::LoadScript(const QString& name) {
  const std::optional<std::string> text = ScriptText(session(), ui::Utf8(name));
  if (!text) {
    ReadScripts("");
    ShowStatus(QStringLiteral("Scriptul nu mai exista: ") + name);
    return;
  }
  PutStatement(ui::Q(*text));
  delete_->setEnabled(true);
  ShowStatus(QStringLiteral("Script incarcat: %1. Ruleaza SQL: Ctrl+Enter").arg(name));
}

void Frm_Interogari::DeleteScript() {
  const std::string name = ui::Utf8(scripts_->currentText());
  if (name.empty()) return;
  if (!session().host.prompter.Ask(fmt::format("Stergeti scriptul : {} ?", name), "RASPUNDETI",
                                   platform::Icon::kQuestion)) {
    return;
  }
  tariff::DeleteScript(session(), name);
  ReadScripts("");
  ShowStatus(QStringLiteral("Script sters: %1; comanda a ramas in camp").arg(ui::Q(name)));
}

void Frm_Interogari::ReadScripts(const std::string& chosen) {
  scripts_->clear();
  for (const std::string& name : ScriptNames(session())) scripts_->addItem(ui::Q(name));
  scripts_->setCurrentIndex(chosen.empty() ? -1 : scripts_->findText(ui::Q(chosen), Qt::MatchFixedString));
  scripts_->setEnabled(scripts_->count() > 0);
  delete_->setEnabled(scripts_->currentIndex() >= 0);
}

void Frm_Interogari::Export() {
  const int rows = rows_model_ == nullptr ? 0 : rows_model_->Rows();
  if (rows == 0) {
    ShowStatus(QStringLiteral("Nu sunt randuri de exportat"));
    return;
  }
  if (rows > kMostExportedRows) {
    session().host.prompter.Message("Prea multe inregistrari, nu se poate exporta", kMessageTitle,
                                    platform::Icon::kExclamation);
    return;
  }
  ExportSpreadsheet();
}

void Frm_Interogari::PrintRows() {
  if (rows_model_ == nullptr || rows_model_->Rows() == 0) {
    ShowStatus(QStringLiteral("Nu sunt randuri de tiparit"));
    return;
  }
  Print({rows_model_.get(), grid()->visible_columns(), QStringLiteral("  REPORT - ") + file_title(),
         "INTEROGARI"});
}

std::string Frm_Interogari::statement() const { return ui::Utf8(TXT_SQL_->toPlainText()); }

void Frm_Interogari::PutStatement(const QString& text) {
  // As an edit of the whole text, so that Ctrl+Z brings back what was there.
  QTextCursor cursor(TXT_SQL_->document());
  cursor.select(QTextCursor::Document);
  cursor.insertText(text);
}

void OpenQueryBuilder(ui::Context& context, QWidget* parent) {
  ui::Try(context, [&] { Frm_Interogari(context, parent).exec(); });
}

}  // namespace tariff
