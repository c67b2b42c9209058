#include "ui/list_screen.h"

#include <QSplitter>

#include "ui/file_options.h"
#include "ui/grid_export.h"
#include "ui/icons.h"
#include "ui/text.h"
#include "ui/totals_row.h"

namespace ui {

CommandRow::CommandRow(Screen* screen) : QWidget(screen), screen_(screen), layout_(new QHBoxLayout(this)) {
  layout_->setContentsMargins(0, 0, 0, 0);
  layout_->setSpacing(4);
  layout_->addStretch(1);
}

QPushButton* CommandRow::Add(const QString& name, const QString& caption, const QString& icon,
                             std::function<void()> action, const QKeySequence& key) {
  auto* button = new QPushButton(Icon(icon), caption, this);
  button->setObjectName(name);
  button->setAutoDefault(false);  // Enter belongs to the grid
  connect(button, &QPushButton::clicked, this, [this, run = std::move(action)] { screen_->Try(run); });
  if (!key.isEmpty()) screen_->BindKey(button, key);
  layout_->insertWidget(end_++, button);
  return button;
}

void CommandRow::AddSeparator() {
  auto* line = new QFrame(this);
  line->setFrameShape(QFrame::VLine);
  line->setFrameShadow(QFrame::Sunken);
  layout_->insertWidget(end_++, line);
}

QPushButton* CommandRow::AddApart(const QString& name, const QString& caption, const QString& icon,
                                  std::function<void()> action, const QKeySequence& key) {
  QPushButton* button = Add(name, caption, icon, std::move(action), key);
  layout_->removeWidget(button);
  --end_;
  layout_->addWidget(button);  // behind the stretch
  return button;
}

ListScreen::ListScreen(Context& context, const QString& name, QWidget* parent)
    : Screen(context, name, parent), count_caption_(QStringLiteral("  Total Inregistrari :  ")) {
  SetFirstSize({1000, 640});
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(8, 8, 8, 8);
  outer->setSpacing(8);
  commands_ = new CommandRow(this);
  outer->addWidget(commands_);
  above_ = new QVBoxLayout;
  outer->addLayout(above_);

  search_row_ = new QWidget(this);
  auto* search = new QHBoxLayout(search_row_);
  search->setContentsMargins(0, 0, 0, 0);
  search->setSpacing(16);
  search_column_ = new QLabel(search_row_);
  search_column_->setObjectName(QStringLiteral("Caut"));
  search_text_ = new QLabel(search_row_);
  search_text_->setObjectName(QStringLiteral("Cautare"));
  search_text_->setTextFormat(Qt::PlainText);
  QFont bold = search_text_->font();
  bold.setBold(true);
  search_text_->setFont(bold);
  auto* hint = new QLabel(QStringLiteral("F3 urmatoarea   Esc inchide cautarea"), search_row_);
  search->addWidget(search_column_);
  search->addWidget(search_text_, 1);
  search->addWidget(hint);
  search_row_->hide();
  outer->addWidget(search_row_);

  middle_ = new QVBoxLayout;
  middle_->setSpacing(0);
  grid_ = new Grid(context, name, this);
  grid_->setObjectName(QStringLiteral("Grid"));
  middle_->addWidget(grid_, 1);
  outer->addLayout(middle_, 1);

  auto* status_line = new QHBoxLayout;
  status_line->setSpacing(16);
  count_ = new QLabel(this);
  count_->setObjectName(QStringLiteral("Total"));
  totals_ = new QLabel(this);
  totals_->setObjectName(QStringLiteral("Totaluri"));
  status_ = new QLabel(this);
  status_->setObjectName(QStringLiteral("Stare"));
  status_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  status_->setMinimumWidth(1);  // a long message never widens the window
  status_line->addWidget(count_);
  status_line->addWidget(status_, 1);
  status_line->addWidget(totals_);
  outer->addLayout(status_line);

  connect(grid_, &Grid::SearchColumn, this, [this](const QString& caption) {
    search_column_->setText(QStringLiteral("Caut in coloana: ") + caption);
  });
  connect(grid_, &Grid::SearchText, this, [this](const QString& message) {
    search_text_->setText(message);
    search_row_->setVisible(!message.isEmpty());
  });
  connect(status_, &QLabel::linkActivated, this, [this] {
    if (this->context().open_document && !this->context().open_document(written_)) {
      ShowStatus(QStringLiteral("Fisierul nu s-a putut deschide: ") + Q(written_));
    }
  });
  UpdateCount();
  grid_->setFocus();
}

void ListScreen::AddListCommands(const QString& report_title, Search search) {
  report_title_ = report_title;
  if (search == Search::kInGrid) {
    commands_->Add(
        QStringLiteral("CmdCautare"), QStringLiteral("&Cautare"), QStringLiteral("cauta"),
        [this] { grid_->StartSearch(); }, QKeySequence(QKeySequence::Find));
  }
  commands_->Add(
      QStringLiteral("CmdTiparire"), QStringLiteral("&Tiparire"), QStringLiteral("tipareste"),
      [this] { Print(); }, QKeySequence(Qt::CTRL | Qt::Key_P));
  commands_->Add(
      QStringLiteral("CmdExcel"), QStringLiteral("E&xcel"), QStringLiteral("excel"),
      [this] { ExportSpreadsheet(); }, QKeySequence(Qt::CTRL | Qt::Key_E));
  auto* close_button = commands_->AddApart(QStringLiteral("CmdInchide"), QStringLiteral("&Inchide"),
                                           QStringLiteral("iesire"), [this] { close(); });
  close_button->setToolTip(QStringLiteral("Esc"));
}

void ListScreen::SetModel(GridModel* model) {
  if (grid_->grid_model() != nullptr) disconnect(grid_->grid_model(), nullptr, this, nullptr);
  grid_->SetGridModel(model);
  if (model != nullptr) {
    connect(model, &GridModel::modelReset, this, &ListScreen::UpdateCount);
    connect(model, &GridModel::rowsInserted, this, &ListScreen::UpdateCount);
    connect(model, &GridModel::rowsRemoved, this, &ListScreen::UpdateCount);
  }
  UpdateCount();
}

void ListScreen::SetCountCaption(const QString& caption) {
  count_caption_ = caption;
  UpdateCount();
}

void ListScreen::UpdateCount() {
  const int rows = grid_->grid_model() == nullptr ? 0 : grid_->grid_model()->DataRows();
  count_->setText(count_caption_ + QString::number(rows));
}

void ListScreen::ShowTotals(const QString& text) { totals_->setText(text); }

void ListScreen::ShowStatus(const QString& text) {
  status_->setTextFormat(Qt::PlainText);
  status_->setText(text);
  status_->setToolTip(text);
}

void ListScreen::ShowFile(const std::string& windows_path) {
  written_ = windows_path;
  status_->setTextFormat(Qt::RichText);
  status_->setText(QStringLiteral("Salvat: %1   <a href=\"deschide\">Deschide</a>")
                       .arg(Q(platform::FileNameOf(windows_path)).toHtmlEscaped()));
  status_->setToolTip(Q(windows_path));
}

void ListScreen::AddAboveGrid(QWidget* widget) { above_->addWidget(widget); }

void ListScreen::AddBelowGrid(QWidget* widget, int height) {
  auto* splitter = new QSplitter(Qt::Vertical, this);
  middle_->insertWidget(middle_->indexOf(grid_), splitter, 1);
  splitter->addWidget(grid_);
  splitter->addWidget(widget);
  splitter->setChildrenCollapsible(false);
  splitter->setStretchFactor(0, 1);
  constexpr int kGridHeight = 400;  // only its proportion to the pane counts
  splitter->setSizes({kGridHeight, height});
}

void ListScreen::SplitAboveGrid(QWidget* widget, int height) {
  auto* splitter = new QSplitter(Qt::Vertical, this);
  splitter->setChildrenCollapsible(false);
  middle_->removeWidget(grid_);
  middle_->insertWidget(0, splitter, 1);
  splitter->addWidget(widget);
  splitter->addWidget(grid_);
  splitter->setStretchFactor(1, 1);
  constexpr int kGridHeight = 300;  // only its proportion to the widget counts
  splitter->setSizes({height, kGridHeight});
  RememberSplit(context(), objectName(), QStringLiteral("impartire"), splitter);
}

TotalsRow* ListScreen::totals_row() {
  if (totals_row_ == nullptr) {
    totals_row_ = new TotalsRow(grid_, this);
    middle_->addWidget(totals_row_);
  }
  return totals_row_;
}

bool ListScreen::SaveSpreadsheet(const std::string& windows_path) {
  if (grid_->grid_model() == nullptr) return false;
  const GridContent content{grid_->grid_model(), grid_->visible_columns(), file_title()};
  if (!WriteSpreadsheet(session(), content, windows_path)) return false;
  ShowFile(windows_path);
  return true;
}

void ListScreen::ExportSpreadsheet() {
  const std::string path = AskForFile(this, file_title(), QStringLiteral("Export in Excel"),
                                      QStringLiteral("Excel (*.xlsx)"), QStringLiteral(".xlsx"));
  if (!path.empty() && SaveSpreadsheet(path)) Frm_Fisier_Optiuni(context(), path, this).exec();
}

void ListScreen::Print() {
  if (grid_->grid_model() == nullptr) return;
  Print({grid_->grid_model(), grid_->visible_columns(), report_title_, report_});
}

void ListScreen::Print(const GridContent& content) {
  if (context().preview_list) context().preview_list(content, this);
}

}  // namespace ui
