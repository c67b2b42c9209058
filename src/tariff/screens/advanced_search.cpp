#include "tariff/screens/advanced_search.h"

#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QSplitter>

#include "tariff/screens/notes_pane.h"
#include "tariff/search.h"
#include "ui/list_screen.h"
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
      {.field = "DESCRIERE", .caption = QStringLiteral("Descriere"), .width = 28}};
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

QLabel* PlainLabel(const char* name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QString::fromLatin1(name));
  label->setTextFormat(Qt::PlainText);
  label->setMinimumWidth(1);  // a long expression never widens the window
  return label;
}

}  // namespace

Frm_Cautare_Tarif::Frm_Cautare_Tarif(ui::Context& screen_context, QWidget* parent)
    : Screen(screen_context, QStringLiteral("Frm_Cautare_Tarif"), parent),
      expression_(new QLineEdit(this)),
      tariff_rows_(new ui::RecordsetModel(TariffColumns(), {}, this)),
      declaration_rows_(new ui::RecordsetModel(DeclarationColumns(), {}, this)),
      tariff_grid_(new ui::Grid(context(), QStringLiteral("Frm_Cautare_Tarif tarif"), this)),
      declaration_grid_(new ui::Grid(context(), QStringLiteral("Frm_Cautare_Tarif declaratii"), this)),
      tariff_status_(PlainLabel("StareTarif", this)),
      declaration_status_(PlainLabel("StareDeclaratii", this)),
      pane_(new NotesPane(this)) {
  setWindowTitle(QStringLiteral("Cautare avansata in tarif si declaratii"));
  SetFirstSize({1160, 700});
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(8, 8, 8, 8);
  outer->setSpacing(8);

  auto* row = new ui::CommandRow(this);
  row->Add(
      QStringLiteral("CmdCauta"), QStringLiteral("&Cauta"), QStringLiteral("cauta"), [this] { Search(); },
      QKeySequence(Qt::Key_F5));
  row->AddSeparator();
  copy_ = row->Add(QStringLiteral("CmdCopiaza"), QStringLiteral("Copiaza &nota"), QStringLiteral("copiaza"),
                   [this] { pane_->CopyAll(); });
  copy_->setEnabled(false);
  row->AddApart(QStringLiteral("CmdInchide"), QStringLiteral("&Inchide"), QStringLiteral("iesire"),
                [this] { close(); })
      ->setToolTip(QStringLiteral("Esc"));
  auto* label = new QLabel(QStringLiteral("&Expresia de cautat"), this);
  label->setBuddy(expression_);
  expression_->setObjectName(QStringLiteral("TxtExpresie"));
  expression_->setPlaceholderText(QStringLiteral("un cuvant din descriere sau cifre din cod"));
  expression_->setClearButtonEnabled(true);
  auto* top = new QHBoxLayout;
  top->setSpacing(8);
  top->addWidget(label);
  top->addWidget(expression_, 1);
  outer->addWidget(row);
  outer->addLayout(top);

  tariff_grid_->setObjectName(QStringLiteral("GridTarif"));
  declaration_grid_->setObjectName(QStringLiteral("GridDeclaratii"));
  pane_->setObjectName(QStringLiteral("Note"));
  pane_->setPlaceholderText(QStringLiteral("Aici apar notele explicative ale codului ales in tarif."));
  tariff_grid_->SetEmptyText(
      QStringLiteral("Aici apar codurile tarifului, valabile sau nu. Scrieti un "
                     "cuvant sau cifre din cod si apasati Enter."));
  declaration_grid_->SetEmptyText(
      QStringLiteral("Aici apar liniile declaratiilor firmei in care se gaseste expresia."));
  tariff_grid_->SetGridModel(tariff_rows_);
  declaration_grid_->SetGridModel(declaration_rows_);

  auto* upper = new QSplitter(Qt::Horizontal, this);
  upper->addWidget(Part(tariff_grid_, tariff_status_));
  upper->addWidget(pane_);
  upper->setSizes({700, 400});
  auto* whole = new QSplitter(Qt::Vertical, this);
  whole->addWidget(upper);
  whole->addWidget(Part(declaration_grid_, declaration_status_));
  whole->setSizes({380, 220});
  for (QSplitter* splitter : {upper, whole}) splitter->setChildrenCollapsible(false);
  outer->addWidget(whole, 1);

  connect(expression_, &QLineEdit::returnPressed, this, [this] { Try([this] { Search(); }); });
  connect(new QShortcut(QKeySequence(QKeySequence::Find), this), &QShortcut::activated, this, [this] {
    expression_->setFocus();
    expression_->selectAll();
  });
  connect(tariff_grid_, &ui::Grid::CurrentRowChanged, this, [this] { ShowNotes(); });
  setTabOrder(expression_, tariff_grid_);
  setTabOrder(tariff_grid_, pane_);
  setTabOrder(pane_, declaration_grid_);
  notes_.Load(session().host, session().UnderSystem(kNotesFile));
  expression_->setFocus();
}

QWidget* Frm_Cautare_Tarif::Part(ui::Grid* grid, QLabel* status) {
  auto* part = new QWidget(this);
  auto* layout = new QVBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(grid, 1);
  layout->addWidget(status);
  return part;
}

void Frm_Cautare_Tarif::SearchFor(const QString& expression) {
  expression_->setText(expression);
  Try([this] { Search(); });
}

void Frm_Cautare_Tarif::Search() {
  const std::optional<SearchResult> found = SearchTariff(session(), ui::Utf8(expression_->text()));
  if (!found) {
    expression_->setFocus();
    return;
  }
  tariff_rows_->SetRows(found->tariff);
  declaration_rows_->SetRows(found->declarations);
  tariff_status_->setText(Q(found->tariff_status));
  declaration_status_->setText(Q(found->declarations_status));
  if (tariff_rows_->Rows() > 0) tariff_grid_->SelectRow(0, 0);
  if (declaration_rows_->Rows() > 0) declaration_grid_->SelectRow(0, 0);
  ShowNotes();
  (tariff_rows_->Rows() > 0 ? static_cast<QWidget*>(tariff_grid_) : expression_)->setFocus();
}

void Frm_Cautare_Tarif::ShowNotes() {
  const int row = tariff_grid_->current_row();
  constexpr int kCode = 1;  // HS12_COD
  pane_->SetRtf(row < 0 ? std::string() : notes_.Rtf(tariff_rows_->ValueAt(row, kCode).ToText()));
  copy_->setEnabled(!pane_->rtf().empty());
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
