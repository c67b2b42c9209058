#include "tariff/screens/advanced_search.h"

#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QSplitter>
#include <QTextBrowser>

#include "tariff/screens/notes_pane.h"
#include "tariff/search.h"
#include "ui/file_options.h"
#include "ui/text.h"

namespace tariff {

using ui::Q;

namespace {

constexpr char kNotesFile[] = "Database\\CN\\selfExplainTexts_ro.xml";  // below the system folder

std::vector<ui::Column> TariffColumns() {
  return {
      {.field = "HS8_COD", .caption = QStringLiteral("Cod NC"), .width = 9},
      {.field = "HS12_COD", .caption = QStringLiteral("Cod vamal"), .width = 13},
      {.field = "DATE_START", .caption = QStringLiteral("Data"), .format = ui::Format::kDate, .width = 10},
      {.field = "UM_SUPL", .caption = QStringLiteral("UM"), .width = 7},
      {.field = "DESCRIERE", .caption = QStringLiteral("Descriere"), .width = 28, .ends_tell = true}};
}

std::vector<ui::Column> DeclarationColumns() {
  return {{.field = "Anul", .caption = QStringLiteral("Anul"), .width = 6},
          {.field = "luna", .caption = QStringLiteral("Luna"), .width = 5},
          {.field = "Cod_NC", .caption = QStringLiteral("Cod NC"), .width = 9},
          {.field = "Cantitate",
           .caption = QStringLiteral("Cantitate"),
           .format = ui::Format::kAmount,
           .width = 12},
          {.field = "UM", .caption = QStringLiteral("UM"), .width = 7},
          {.field = "Val_Fiscala",
           .caption = QStringLiteral("Valoare fiscala"),
           .format = ui::Format::kAmount,
           .width = 15},
          {.field = "Descriere", .caption = QStringLiteral("Descriere"), .width = 40}};
}

QString WithoutDiacritics(QString text) {
  constexpr const char16_t* kPairs[] = {u"\u0103a", u"\u00e2a", u"\u00eei", u"\u0219s",
                                        u"\u015fs", u"\u021bt", u"\u0163t"};
  for (const char16_t* pair : kPairs) {
    text.replace(QChar(pair[0]), QChar(pair[1]));
    text.replace(QChar(pair[0]).toUpper(), QChar(pair[1]).toUpper());
  }
  return text;
}

/// A view and, under it, what it says and what can be done with it.
QWidget* PartOf(QWidget* view, QLabel* status, ui::CommandRow* row, QWidget* parent) {
  auto* part = new QWidget(parent);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(view, 1);
  auto* foot = new QHBoxLayout;
  foot->addWidget(status, 1);
  foot->addWidget(row);
  layout->addLayout(foot);
  return part;
}

}  // namespace

Frm_Cautare_Tarif::Frm_Cautare_Tarif(ui::Context& screen_context, QWidget* parent)
    : Screen(screen_context, QStringLiteral("Frm_Cautare_Tarif"), parent),
      expression_(new QLineEdit(this)),
      description_(new QTextBrowser(this)),
      pane_(new NotesPane(this)) {
  setWindowTitle(QStringLiteral("Cautare avansata in tarif si declaratii"));
  SetFirstSize({1160, 700});
  auto* row = new ui::CommandRow(this);
  row->Add(
      QStringLiteral("CmdCauta"), QStringLiteral("&Cauta"), QStringLiteral("cauta"),
      [this] { Search(expression_->text()); }, QKeySequence(Qt::Key_F5));
  row->AddApart(QStringLiteral("CmdInchide"), QStringLiteral("&Inchide"), QStringLiteral("iesire"),
                [this] { close(); })
      ->setToolTip(QStringLiteral("Esc"));
  auto* top = new QWidget(this);
  auto* line = new QHBoxLayout(top);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(8);
  auto* label = new QLabel(QStringLiteral("&Expresia de cautat"), top);
  label->setBuddy(expression_);
  expression_->setObjectName(QStringLiteral("TxtExpresie"));
  expression_->setPlaceholderText(QStringLiteral("un cuvant din descriere sau cifre din cod"));
  expression_->setClearButtonEnabled(true);
  line->addWidget(label);
  line->addWidget(expression_, 1);
  tariff_.title = QStringLiteral("Tarif vamal");
  declarations_.title = QStringLiteral("Declaratii intrastat");
  MakeLayout(row, top);

  connect(expression_, &QLineEdit::returnPressed, this,
          [this] { Try([this] { Search(expression_->text()); }); });
  connect(new QShortcut(QKeySequence(QKeySequence::Find), this), &QShortcut::activated, this, [this] {
    expression_->setFocus();
    expression_->selectAll();
  });
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_P), this), &QShortcut::activated, this,
          [this] { Print(ActiveList()); });
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_E), this), &QShortcut::activated, this,
          [this] { Export(ActiveList()); });
  connect(tariff_.grid, &ui::Grid::CurrentRowChanged, this, [this] { ShowNotes(); });
  connect(declarations_.grid, &ui::Grid::Activated, this, [this] { Try([this] { OpenLine(); }); });
  notes_.Load(session().host, session().UnderSystem(kNotesFile));
  ShowNotes();
  expression_->setFocus();
}

void Frm_Cautare_Tarif::MakeLayout(QWidget* commands, QWidget* expression) {
  auto* upper = new QSplitter(Qt::Horizontal, this);
  upper->addWidget(MakeList(tariff_, QStringLiteral("Tarif"), TariffColumns()));
  upper->addWidget(MakeNotes());
  upper->setSizes({700, 400});
  auto* whole = new QSplitter(Qt::Vertical, this);
  whole->addWidget(upper);
  whole->addWidget(MakeList(declarations_, QStringLiteral("Declaratii"), DeclarationColumns()));
  whole->setSizes({380, 240});
  for (QSplitter* splitter : {upper, whole}) splitter->setChildrenCollapsible(false);
  ui::RememberSplit(context(), objectName(), QStringLiteral("impartire_sus"), upper);
  ui::RememberSplit(context(), objectName(), QStringLiteral("impartire"), whole);
  tariff_.grid->SetEmptyText(
      QStringLiteral("Aici apar codurile tarifului, valabile sau nu. Scrieti un "
                     "cuvant sau cifre din cod si apasati Enter."));
  declarations_.grid->SetEmptyText(
      QStringLiteral("Aici apar liniile declaratiilor firmei in care se gaseste expresia."));
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(8, 8, 8, 8);
  outer->setSpacing(8);
  outer->addWidget(commands);
  outer->addWidget(expression);
  outer->addWidget(whole, 1);

  std::vector<QWidget*> order = {expression_, tariff_.grid};
  order.insert(order.end(), tariff_.commands.begin(), tariff_.commands.end());
  order.insert(order.end(), {description_, pane_, copy_, declarations_.grid});
  order.insert(order.end(), declarations_.commands.begin(), declarations_.commands.end());
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

QWidget* Frm_Cautare_Tarif::MakeList(List& list, const QString& name, std::vector<ui::Column> columns) {
  const bool lines = &list == &declarations_;
  list.rows = new ui::RecordsetModel(std::move(columns), {}, this);
  list.grid = new ui::Grid(context(), QStringLiteral("Frm_Cautare_Tarif ") + name.toLower(), this);
  list.grid->setObjectName(QStringLiteral("Grid") + name);
  list.grid->SetGridModel(list.rows);
  list.status = new QLabel(this);
  list.status->setObjectName(QStringLiteral("Stare") + name);
  list.status->setTextFormat(Qt::PlainText);
  list.status->setMinimumWidth(1);  // a long expression never widens the window
  auto* row = new ui::CommandRow(this);
  const auto add = [&](const QString& command, const QString& caption, const QString& icon,
                       const QString& tip, const std::function<void()>& action) {
    QPushButton* button = row->Add(command, caption, icon, action);
    button->setToolTip(tip);
    button->setEnabled(false);
    list.commands.push_back(button);
  };
  if (lines && context().open_line) {
    add(QStringLiteral("CmdDeclaratie"), QStringLiteral("&Deschide declaratia"), QStringLiteral("modifica"),
        QStringLiteral("Declaratia liniei alese, la aceasta linie (Enter)"), [this] { OpenLine(); });
  }
  add(QStringLiteral("CmdTiparire") + name, lines ? QStringLiteral("Ti&parire") : QStringLiteral("&Tiparire"),
      QStringLiteral("tipareste"), QStringLiteral("Ctrl+P in lista"), [this, &list] { Print(list); });
  add(QStringLiteral("CmdExcel") + name, lines ? QStringLiteral("Exce&l") : QStringLiteral("E&xcel"),
      QStringLiteral("excel"), QStringLiteral("Ctrl+E in lista"), [this, &list] { Export(list); });
  return PartOf(list.grid, list.status, row, this);
}

QWidget* Frm_Cautare_Tarif::MakeNotes() {
  pane_->setObjectName(QStringLiteral("Note"));
  auto* row = new ui::CommandRow(this);
  copy_ = row->Add(QStringLiteral("CmdCopiaza"), QStringLiteral("Copiaza &nota"), QStringLiteral("copiaza"),
                   [this] { pane_->CopyAll(); });
  copy_->setEnabled(false);
  description_->setObjectName(QStringLiteral("DescriereCod"));
  description_->setPlaceholderText(QStringLiteral("Aici apare descrierea intreaga a codului ales in tarif."));
  description_->setTabChangesFocus(true);
  description_->setFixedHeight(5 * description_->fontMetrics().lineSpacing() + 12);
  auto* texts = new QWidget(this);
  auto* layout = new QVBoxLayout(texts);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(description_);
  layout->addWidget(pane_, 1);
  return PartOf(texts, new QLabel(this), row, this);
}

Frm_Cautare_Tarif::List& Frm_Cautare_Tarif::ActiveList() {
  if (declarations_.grid->hasFocus()) return declarations_;
  return tariff_.rows->Rows() == 0 && declarations_.rows->Rows() > 0 ? declarations_ : tariff_;
}

ui::GridContent Frm_Cautare_Tarif::ContentOf(const List& list) const {
  return {list.rows, list.grid->visible_columns(), list.title + QStringLiteral(" - ") + searched_,
          &list == &tariff_ ? "CAUTARE_TARIF" : "CAUTARE_DECLARATII"};
}

void Frm_Cautare_Tarif::Print(const List& list) {
  if (list.rows->Rows() > 0 && context().preview_list) context().preview_list(ContentOf(list), this);
}

void Frm_Cautare_Tarif::Export(const List& list) {
  if (list.rows->Rows() == 0) return;
  const ui::GridContent content = ContentOf(list);
  const std::string path = ui::AskForFile(this, content.title, QStringLiteral("Export in Excel"),
                                          QStringLiteral("Excel (*.xlsx)"), QStringLiteral(".xlsx"));
  if (path.empty() || !ui::WriteSpreadsheet(session(), content, path)) return;
  ui::Frm_Fisier_Optiuni(context(), path, this).exec();
}

void Frm_Cautare_Tarif::SearchFor(const QString& expression) {
  expression_->setText(expression);
  Try([&] { Search(expression); });
}

void Frm_Cautare_Tarif::Search(const QString& expression) {
  const std::optional<SearchResult> found = SearchTariff(session(), ui::Utf8(expression));
  if (!found) {
    expression_->setFocus();
    return;
  }
  searched_ = expression;
  Show(tariff_, found->tariff, found->tariff_status, NothingInTariff(expression));
  Show(declarations_, found->declarations, found->declarations_status,
       session().company.is_open() ? QStringLiteral("Nici o linie declarata nu contine expresia.")
                                   : QStringLiteral("Nici o firma nu este deschisa."));
  ShowNotes();
  if (tariff_.rows->Rows() > 0) {
    tariff_.grid->setFocus();
  } else if (declarations_.rows->Rows() > 0) {
    declarations_.grid->setFocus();
  } else {
    expression_->setFocus();
  }
}

void Frm_Cautare_Tarif::Show(List& list, const store::Recordset& rows, const std::string& status,
                             const QString& nothing) {
  list.rows->SetRows(rows);
  list.grid->SetEmptyText(nothing);
  list.status->setText(Q(status));
  list.status->setToolTip(list.status->text());
  if (list.rows->Rows() > 0) list.grid->SelectRow(0, 0);
  for (QPushButton* command : list.commands) command->setEnabled(list.rows->Rows() > 0);
}

QString Frm_Cautare_Tarif::NothingInTariff(const QString& expression) {
  if (!session().tariff.is_open()) return QStringLiteral("Nici un tarif nu este deschis.");
  const QString plain = WithoutDiacritics(expression);
  if (plain != expression) {
    return QStringLiteral(
               "Nici un cod nu contine expresia. Tariful este scris fara diacritice: cautati \"%1\".")
        .arg(plain);
  }
  return QStringLiteral(
             "Nici un cod din %1 nu contine expresia. Descrierile amanuntite vin cu nomenclatorul "
             "institutului: Tarif Vamal, Versiuni..., Incarca nomenclator.")
      .arg(Q(platform::FileNameOf(session().tariff.path())));
}

void Frm_Cautare_Tarif::ShowNotes() {
  const int row = tariff_.grid->current_row();
  constexpr int kCode = 1, kDescription = 4;  // HS12_COD, DESCRIERE
  description_->setPlainText(row < 0 ? QString() : tariff_.rows->TextAt(row, kDescription));
  pane_->setPlaceholderText(row < 0
                                ? QStringLiteral("Aici apar notele explicative ale codului ales in tarif.")
                                : QStringLiteral("Codul ales nu are note explicative."));
  pane_->SetRtf(row < 0 ? std::string() : notes_.Rtf(tariff_.rows->ValueAt(row, kCode).ToText()));
  copy_->setEnabled(!pane_->rtf().empty());
}

void Frm_Cautare_Tarif::OpenLine() {
  const int row = declarations_.grid->current_row();
  if (row < 0 || !context().open_line) return;
  const std::optional<std::int64_t> Record_ID = FoundLine(session(), declarations_.rows->rows(), row);
  if (!Record_ID) {
    session().host.prompter.Info("Linia nu mai exista asa cum a fost gasita. Cautati din nou.", "Mesaj");
    return;
  }
  context().open_line(*Record_ID, this);
  // The line may have changed; what was searched for stays, and so does the place in the list.
  const int column = declarations_.grid->currentIndex().column();
  Search(searched_);
  declarations_.grid->SelectRow(std::min(row, declarations_.rows->Rows() - 1), column);
  declarations_.grid->setFocus();
}

Frm_Cautare_Tarif* OpenQuickSearch(ui::Context& context, const QString& text, QWidget* parent) {
  Frm_Cautare_Tarif* screen = nullptr;
  if (parent != nullptr) {
    screen = parent->findChild<Frm_Cautare_Tarif*>(QString(), Qt::FindDirectChildrenOnly);
  }
  if (screen == nullptr) {
    screen = new Frm_Cautare_Tarif(context, parent);
    screen->setAttribute(Qt::WA_DeleteOnClose);
  }
  screen->show();
  screen->raise();
  screen->activateWindow();
  if (!text.isEmpty()) screen->SearchFor(text);
  return screen;
}

}  // namespace tariff
