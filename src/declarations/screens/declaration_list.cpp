#include "declarations/screens/declaration_list.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QShortcut>

#include "declarations/screens/add_declaration.h"
#include "reports/screens/preview.h"
#include "ui/icons.h"
#include "ui/memory.h"
#include "ui/text.h"

namespace declarations {

using ui::Q;

namespace {

constexpr char kNewestKey[] = "sortare";  // the list was last ordered by its command, not by a heading

std::vector<ui::Column> GridColumns() {
  std::vector<ui::Column> columns;
  for (const ListColumn& each : DeclarationList::columns()) {
    ui::Column column;
    column.field = each.field;
    column.caption = Q(each.caption);
    column.format = ui::FormatByText(each.format);
    column.width = each.field == "TIP" ? 15 : column.format == ui::Format::kAmount ? 16 : 7;
    columns.push_back(std::move(column));
  }
  return columns;
}

}  // namespace

DeclarationListModel::DeclarationListModel(DeclarationList& list, QObject* parent)
    : GridModel(GridColumns(), parent), list_(&list) {}

void DeclarationListModel::Reset() {
  beginResetModel();
  endResetModel();
}

QString DeclarationListModel::TextAt(int row, int index) const {
  if (index != 0) return GridModel::TextAt(row, index);
  return Q(DeclarationList::DirectionText(list_->ValueAt(row, 0).ToText()));
}

QString DeclarationListModel::PictureAt(int row, int index) const {
  if (index != 0) return {};
  return list_->arrivals(row) ? QStringLiteral("intrare") : QStringLiteral("iesire-marfa");
}

void DeclarationListModel::SortBy(int index, Qt::SortOrder order) {
  list_->SortBy(index, order == Qt::DescendingOrder);
}

Frm_Intrastat_Lista::Frm_Intrastat_Lista(ui::Context& screen_context, OpenEditor open_editor, QWidget* parent)
    : ListScreen(screen_context, QStringLiteral("Frm_Intrastat_Lista"), parent),
      list_(screen_context.session, ui::Utf8(QLocale().decimalPoint())),
      model_(new DeclarationListModel(list_, this)),
      open_editor_(std::move(open_editor)) {
  setWindowTitle(QStringLiteral("Declaratii Intrastat - ") + Q(session().current.Nume_Firma));
  SetFirstSize({1100, 640});
  SetCountCaption(QStringLiteral("Inregistrari: "));
  AddCommands();
  AddSearchRow();
  AddMenu();
  context().memory.Get(objectName(), kNewestKey) == "1" ? list_.Sort() : list_.Open();
  SetModel(model_);
  connect(model_, &ui::GridModel::modelReset, this, &Frm_Intrastat_Lista::ShowFilter);
  connect(grid(), &ui::Grid::Sorted, this,
          [this](int column) { context().memory.Set(objectName(), kNewestKey, column < 0 ? "1" : "0"); });
  connect(grid(), &ui::Grid::Activated, this, [this] { Try([this] { Edit(false); }); });
  ShowFilter();
}

// A window that is deleted while shown lays its grid out once more: while the rows are still there.
Frm_Intrastat_Lista::~Frm_Intrastat_Lista() { hide(); }

void Frm_Intrastat_Lista::AddCommands() {
  const auto add = [this](const char* name, const char* caption, const char* icon,
                          std::function<void()> action, const QKeySequence& key = {}) {
    return commands()->Add(QString::fromLatin1(name), QString::fromLatin1(caption), QString::fromLatin1(icon),
                           std::move(action), key);
  };
  add(
      "CmdAdauga", "&Adauga", "adauga", [this] { Add(false); }, QKeySequence::New);
  add(
      "CmdModifica", "&Modifica", "modifica", [this] { Edit(false); }, QKeySequence(Qt::Key_F2));
  add("CmdVizualizare", "&Vizualizare", "vizualizare", [this] { Edit(true); });
  add("CmdAddNula", "Declaratie &nula", "declaratie-nula", [this] { Add(true); });
  commands()->AddSeparator();
  add("CmdSortare", "&Sorteaza", "sorteaza", [this] {
    // The heading's order gives way.
    grid()->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    list_.Sort();
    model_->Reset();
    grid()->SelectRow(0);
    ShowStatus(QStringLiteral("Cele mai noi declaratii sunt primele"));
  })->setToolTip(QStringLiteral("Cele mai noi declaratii intai"));
  add(
      "CmdTiparire", "&Tipareste", "tipareste", [this] { PrintDeclaration(); },
      QKeySequence(QKeySequence::Print));
  QPushButton* list = add(
      "CmdTiparireLista", "&Lista", "tipareste", [this] { Print(); },
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
  list->setToolTip(QStringLiteral("Tipareste lista declaratiilor (Ctrl+Shift+P)"));
  SetReportTitle(QStringLiteral("  REPORT - Declaratii Intrastat"));
  SetReport("Frm_Intrastat_Lista");
  add(
      "CmdExcel", "E&xcel", "excel", [this] { ExportSpreadsheet(); }, QKeySequence(Qt::CTRL | Qt::Key_E));
  add("CmdRefresh", "", "reimprospateaza", [this] {
    Refresh();
  })->setToolTip(QStringLiteral("Reincarca lista"));
  BindKey(findChild<QPushButton*>(QStringLiteral("CmdRefresh")), QKeySequence(Qt::Key_F5));
  add("CmdAjutor", "", "intrebare", [this] {
    list_.Hint();
  })->setToolTip(QStringLiteral("Unde se genereaza fisierul declaratiei"));
  commands()
      ->AddApart(QStringLiteral("CmdInchide"), QStringLiteral("&Inchide"), QStringLiteral("iesire"),
                 [this] { close(); })
      ->setToolTip(QStringLiteral("Esc"));
  commands()->AddApart(
      QStringLiteral("CmdSterge"), QStringLiteral("Ste&rge"), QStringLiteral("sterge"), [this] { Delete(); },
      QKeySequence(QKeySequence::Delete));
}

void Frm_Intrastat_Lista::AddSearchRow() {
  auto* row = new QWidget(this);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  auto* column = new QComboBox(row);
  column->setObjectName(QStringLiteral("CmbColoana"));
  for (const ListColumn& each : DeclarationList::columns()) column->addItem(Q(each.caption));
  column->setCurrentIndex(0);
  auto* column_label = new QLabel(QStringLiteral("&Coloana de cautare"), row);
  column_label->setBuddy(column);
  auto* expression = new QLineEdit(row);
  expression->setObjectName(QStringLiteral("Txt_Expresie"));
  expression->setMaximumWidth(240);
  expression->setClearButtonEnabled(true);
  auto* expression_label = new QLabel(QStringLiteral("&Expresie de cautare"), row);
  expression_label->setBuddy(expression);
  layout->addWidget(column_label);
  layout->addWidget(column);
  layout->addSpacing(8);
  layout->addWidget(expression_label);
  layout->addWidget(expression, 1);
  const auto add = [&](const char* name, const char* caption, const char* icon,
                       std::function<void()> action) {
    auto* button = new QPushButton(ui::Icon(QString::fromLatin1(icon)), QString::fromLatin1(caption), row);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, run = std::move(action)] { Try(run); });
    layout->addWidget(button);
    return button;
  };
  add("CmdCautare", "Ca&uta", "cauta", [this] {
    lookup_ = Lookup::kSearch;
    Search(0);
  })->setToolTip(QStringLiteral("Prima declaratie potrivita; F3 trece la urmatoarea"));
  add("CmdFiltrare", "&Filtreaza", "filtreaza", [this] {
    lookup_ = Lookup::kFilter;
    Filter();
  })->setToolTip(QStringLiteral("Arata numai declaratiile potrivite"));
  add("CmdTot", "T&oate", "toate", [this] {
    ShowAll();
  })->setToolTip(QStringLiteral("Arata toate declaratiile"));
  layout->addStretch(1);
  AddAboveGrid(row);

  connect(expression, &QLineEdit::returnPressed, this,
          [this] { Try([this] { lookup_ == Lookup::kSearch ? Search(0) : Filter(); }); });
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this,
          [this] { BeginLookup(Lookup::kSearch); });
  connect(new QShortcut(QKeySequence(Qt::Key_F3), this), &QShortcut::activated, this, [this] {
    if (grid()->searching()) {
      grid()->SearchNext();
    } else if (lookup_text().empty()) {
      BeginLookup(Lookup::kSearch);
    } else {
      Try([this] { Search(current_row() + 1); });
    }
  });
}

void Frm_Intrastat_Lista::AddMenu() {
  auto* menu = new QMenu(this);
  const auto add = [&](const char* name, const char* caption, const char* icon,
                       std::function<void()> action) {
    QAction* entry = menu->addAction(ui::Icon(QString::fromLatin1(icon)), QString::fromLatin1(caption));
    entry->setObjectName(QString::fromLatin1(name));
    connect(entry, &QAction::triggered, this, [this, run = std::move(action)] { Try(run); });
  };
  add("Menu_Cautare", "&Cautare", "cauta", [this] { BeginLookup(Lookup::kSearch); });
  add("Menu_Filtrare", "&Filtrare", "filtreaza", [this] { BeginLookup(Lookup::kFilter); });
  add("Menu_Tot", "&Toate", "toate", [this] { ShowAll(); });
  grid()->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(grid(), &QWidget::customContextMenuRequested, this,
          [this, menu](const QPoint& at) { menu->popup(grid()->viewport()->mapToGlobal(at)); });
}

void Frm_Intrastat_Lista::Refresh() {
  Reread([this] { list_.Open(); });
}

void Frm_Intrastat_Lista::Reread(const std::function<void()>& action) {
  const std::optional<Identity> kept = current_row() < 0 ? std::nullopt : list_.Selected(current_row());
  action();
  model_->Reset();
  GoTo(kept);
}

void Frm_Intrastat_Lista::GoTo(const std::optional<Identity>& identity) {
  if (!identity) return;
  const int row = list_.RowOf(*identity);
  if (row >= 0) grid()->SelectRow(row);
}

void Frm_Intrastat_Lista::ShowFilter() {
  ShowTotals(QStringLiteral("Valoare RON ") +
             ui::Shown(store::Value(list_.total_Val_Fiscala()), ui::Format::kAmount));
  findChild<QPushButton*>(QStringLiteral("CmdTot"))->setEnabled(list_.filtered());
  grid()->SetEmptyText(
      list_.filtered()
          ? QStringLiteral("Nici o declaratie nu corespunde filtrului. Comanda Toate aduce lista intreaga.")
          : QStringLiteral("Aici apar declaratiile firmei, cate una pe sens, an si luna.\nComanda Adauga "
                           "(Ctrl+N) incepe prima declaratie; liniile se pot si prelua din Excel."));
}

void Frm_Intrastat_Lista::Edit(bool view) {
  const std::optional<Identity> identity = list_.Selected(current_row());
  if (!identity) return;
  if (open_editor_) open_editor_(DeclarationList::Opening(*identity, view), view, this);
  Refresh();
}

void Frm_Intrastat_Lista::Add(bool nil) {
  const std::optional<EditorOpening> opening = AskForDeclaration(
      context(), this, nil ? Frm_Intrastat_Add::Purpose::kNil : Frm_Intrastat_Add::Purpose::kDeclaration);
  if (!opening) return;
  if (open_editor_) open_editor_(*opening, false, this);
  Refresh();
  GoTo(opening->identity);
}

void Frm_Intrastat_Lista::Delete() {
  if (!list_.Delete(current_row())) return;
  model_->Reset();
  ShowStatus(QStringLiteral("Declaratia a fost stearsa"));
}

void Frm_Intrastat_Lista::PrintDeclaration() {
  const int row = current_row();
  const std::optional<PrintCompany> company = list_.Print(row);
  if (!company) return;
  reports::PreviewDeclaration(context(), *list_.Selected(row), company->XML_Detaliat, this);
}

int Frm_Intrastat_Lista::lookup_column() const {
  return findChild<QComboBox*>(QStringLiteral("CmbColoana"))->currentIndex();
}

std::string Frm_Intrastat_Lista::lookup_text() const {
  return ui::Utf8(findChild<QLineEdit*>(QStringLiteral("Txt_Expresie"))->text());
}

void Frm_Intrastat_Lista::BeginLookup(Lookup lookup) {
  lookup_ = lookup;
  auto* expression = findChild<QLineEdit*>(QStringLiteral("Txt_Expresie"));
  const QModelIndex at = grid()->currentIndex();
  if (at.isValid() && grid()->hasFocus()) {
    findChild<QComboBox*>(QStringLiteral("CmbColoana"))->setCurrentIndex(at.column());
    expression->setText(at.column() == 0 ? model_->TextAt(at.row(), 0)
                                         : model_->data(at, Qt::EditRole).toString());
  }
  expression->setFocus();
  expression->selectAll();
}

void Frm_Intrastat_Lista::Search(int from) {
  const int row = list_.Search(lookup_column(), lookup_text(), from);
  if (row < 0) return;
  grid()->SelectRow(row, lookup_column());
  grid()->setFocus();
}

void Frm_Intrastat_Lista::Filter() {
  const std::string text = lookup_text();
  const int column = lookup_column();
  Reread([&] { list_.Filter(column, text); });
  if (list_.filtered()) grid()->setFocus();
}

void Frm_Intrastat_Lista::ShowAll() {
  Reread([this] { list_.ShowAll(); });
}

}  // namespace declarations
