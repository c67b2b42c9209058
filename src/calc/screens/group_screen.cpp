#include "calc/screens/group_screen.h"

#include <QAbstractButton>
#include <QShortcut>
#include <QSplitter>

#include "calc/manual_rates.h"
#include "ui/elided_label.h"
#include "ui/icons.h"
#include "ui/list_screen.h"
#include "ui/progress.h"
#include "ui/text.h"
#include "ui/totals_row.h"

namespace calc {
namespace {

/// "ACHIZITIE 2026 / 3", as the editor's heading has it.
QString Particulars(const declarations::Identity& identity) {
  return QStringLiteral("%1 %2 / %3")
      .arg(identity.arrivals() ? QStringLiteral("ACHIZITIE") : QStringLiteral("LIVRARE"))
      .arg(identity.Anul)
      .arg(identity.Luna);
}

}  // namespace

QString GroupsText(std::size_t count) {
  if (count == 1) return QStringLiteral("un grup");
  const bool of = count % 100 >= 20 || (count > 0 && count % 100 == 0);
  return QStringLiteral("%1%2 grupuri").arg(count).arg(of ? QStringLiteral(" de") : QString());
}

GroupScreen::GroupScreen(ui::Context& screen_context, const QString& name, const QString& title,
                         std::unique_ptr<GroupCalculation> of, QWidget* parent)
    : Screen(screen_context, name, parent), calculation_(std::move(of)) {
  setWindowTitle(title + QStringLiteral(" - ") + Particulars(calculation_->identity()));
  SetFirstSize({1180, 690});
  setMinimumSize(800, 480);
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(8, 8, 8, 8);
  outer->setSpacing(8);
  options_ = new QVBoxLayout;
  options_->setSpacing(4);
  outer->addLayout(options_);

  QStringList help;
  for (const std::string& line : calculation_->HelpLines()) help << ui::Q(line);
  if (!help.isEmpty()) {
    auto* text = new QLabel(help.join('\n'), this);
    text->setObjectName(QStringLiteral("Ajutor"));
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    outer->addWidget(text);
  }

  auto* parts = new QSplitter(Qt::Vertical, this);
  parts->setChildrenCollapsible(false);
  const auto add_part = [&](const char* grid_name, int stretch) {
    auto* part = new QWidget(parts);
    auto* layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    parts->addWidget(part);
    parts->setStretchFactor(parts->count() - 1, stretch);
    auto* grid = new ui::Grid(screen_context, objectName(), part);
    grid->setObjectName(QString::fromLatin1(grid_name));
    return std::pair(layout, grid);
  };
  const auto [upper, groups] = add_part("Grid", 3);
  grid_ = groups;
  totals_ = new ui::TotalsRow(grid_, this);
  totals_->setObjectName(QStringLiteral("Totaluri"));
  upper->addWidget(grid_, 1);
  upper->addWidget(totals_);
  const auto [lower, figures] = add_part("Previzualizare", 2);
  figures_grid_ = figures;
  figures_grid_->SetLayoutName(objectName() + QStringLiteral("_previzualizare"));
  figures_title_ = new QLabel(this);
  figures_title_->setObjectName(QStringLiteral("Previzualizare_Titlu"));
  QFont bold = figures_title_->font();
  bold.setBold(true);
  figures_title_->setFont(bold);
  figures_title_->setMargin(4);
  lower->addWidget(figures_title_);
  lower->addWidget(figures_grid_, 1);
  outer->addWidget(parts, 1);

  status_ = new ui::ElidedLabel(20, this);
  status_->setObjectName(QStringLiteral("Stare"));
  outer->addWidget(status_);
  commands_ = new ui::CommandRow(this);
  commands_
      ->Add(QStringLiteral("CmdAjustare"), QStringLiteral("&Ajustare"), QStringLiteral("calcul"),
            [this] { Run(); })
      ->setToolTip(QStringLiteral("Scrie in liniile declaratiei ce arata tabelul de jos"));
  commands_
      ->Add(QStringLiteral("CmdInfo"), QStringLiteral("&Incoterms"), QStringLiteral("info"),
            [this] {
              if (context().open_help && !context().open_help("incoterms.html")) {
                ShowStatus(QStringLiteral("Pagina nu s-a putut deschide: Help\\incoterms.html"));
              }
            })
      ->setToolTip(QStringLiteral("Ce transport cuprinde pretul la fiecare conditie de livrare"));

  connect(grid_, &ui::Grid::CurrentRowChanged, this, [this](int row) {
    if (row >= 0 && model_ != nullptr) ShowFiguresOf(row);
  });
  connect(figures_grid_, &ui::Grid::Activated, this, [this](int row) {
    grid_->SelectRow(model_->ShownRow(figures_model_->ListRow(row)), model_->entry_column());
    grid_->setFocus();
  });
  connect(grid_, &ui::Grid::Pasted, this, &GroupScreen::Paste);
  auto* refresh = new QShortcut(QKeySequence(Qt::Key_F5), this);
  connect(refresh, &QShortcut::activated, this, [this] { Try([this] { ReadAgain(); }); });
}

void GroupScreen::HideTotals() { totals_->hide(); }

void GroupScreen::AddOptions(QWidget* options) { options_->addWidget(options); }

void GroupScreen::Open(const QString& close_name) {
  commands_->AddApart(close_name, QStringLiteral("I&nchide"), QStringLiteral("iesire"), [this] { close(); })
      ->setToolTip(QStringLiteral("Esc"));
  layout()->addWidget(commands_);
  QWidget* before = nullptr;
  const auto next = [&](QWidget* widget) {
    if (before != nullptr) setTabOrder(before, widget);
    before = widget;
  };
  for (int i = 0; i < options_->count(); ++i) {
    for (auto* choice : options_->itemAt(i)->widget()->findChildren<QAbstractButton*>()) next(choice);
  }
  next(grid_);
  next(figures_grid_);
  for (QPushButton* button : commands_->findChildren<QPushButton*>()) next(button);
  Try([this] { currencies_ = ui::CodeList::Read(session().company, kCurrencyChoices); });
  figures_model_ = std::make_unique<FiguresModel>(FiguresColumns(), figures_);
  figures_grid_->SetGridModel(figures_model_.get());
  figures_grid_->SetEmptyText(NothingPreviewed());
  grid_->setFocus();
}

void GroupScreen::ShowList(const QString& layout_name) {
  for (int column = 0; model_ != nullptr && column < model_->columnCount(); ++column) {
    totals_->SetText(column, {});
  }
  ClearFigures();
  auto model = std::make_unique<GroupModel>(*calculation_, figures_, currencies_, AmountField());
  connect(model.get(), &GroupModel::Entered, this, &GroupScreen::OnEntered);
  grid_->SetLayoutName(layout_name);
  model_.swap(model);  // the old one lives until the grid has the new one
  grid_->SetGridModel(model_.get());
  PreviewAll();
  ShowTotals();
  grid_->SetEmptyText(EmptyText());
  grid_->SelectRow(0, model_->entry_column());
}

void GroupScreen::ClearFigures() {
  figures_.clear();
  figures_model_->Refresh();
}

void GroupScreen::ReadAgain() {
  if (!grid_->CommitEdit()) return;
  calculation_->Load();
  ClearFigures();
  model_->Refresh();
  PreviewAll();
  ShowTotals();
  grid_->SetEmptyText(EmptyText());
}

void GroupScreen::PreviewAll() {
  ClearFigures();
  {
    const ui::LongRun run(session().host.progress, windowTitle(), ui::Stopping::kNotPossible,
                          QStringLiteral("Se calculeaza ce primeste fiecare grup"));
    for (GroupFigures& each : calculation_->Preview()) figures_[each.row] = std::move(each);
  }
  ShowFigures(false);
}

void GroupScreen::ShowFigures(bool stored) {
  stored_ = stored;
  figures_title_->setText(stored
                              ? QStringLiteral("Ce a primit fiecare grup, cu diferenta lasata de rotunjire")
                              : QStringLiteral("Ce va primi fiecare grup la Ajustare"));
  figures_model_->Refresh();
  if (grid_->current_row() >= 0) ShowFiguresOf(grid_->current_row());
  const int last = model_->columnCount() - 1;
  if (last >= 0 && model_->Rows() > 0) {
    Q_EMIT model_->dataChanged(model_->index(0, 0), model_->index(model_->Rows() - 1, last));
    Q_EMIT model_->headerDataChanged(Qt::Vertical, 0, model_->Rows() - 1);
  }
}

void GroupScreen::ShowFiguresOf(int row) {
  const int shown = figures_model_->ShownRow(model_->ListRow(row));
  if (shown >= 0) {
    figures_grid_->SelectRow(shown);
  } else {
    figures_grid_->setCurrentIndex({});
  }
}

void GroupScreen::ShowTotals() {
  for (int column = 0; column < model_->columnCount(); ++column) {
    const ui::Column& each = model_->columns()[static_cast<std::size_t>(column)];
    const bool total =
        each.field == "TOTAL_Cantitate" || each.field == "TOTAL_Val_Fiscala" || each.field == "TOTAL_Net";
    const bool amount = column == model_->amount_column();
    if (!total && !amount) continue;
    const int currency = model_->ColumnOf("Transport_Moneda");
    double sum = 0;
    std::optional<std::string> first_currency;
    bool adds_up = model_->Rows() > 0;
    for (int row = 0; row < model_->Rows(); ++row) {
      if (amount) {
        if (!model_->ValueAt(row, model_->ColumnOf("Redistribuie")).ToBoolean()) continue;
        // Amounts in several currencies make no sum.
        const std::string in = currency < 0 ? "" : store::TextOr(model_->ValueAt(row, currency), "RON");
        if (first_currency && *first_currency != in) adds_up = false;
        first_currency = in;
      }
      sum += model_->ValueAt(row, column).ToDouble();
    }
    totals_->SetText(column, adds_up ? ui::Shown(sum, each.format) : QString());
  }
}

void GroupScreen::OnEntered(int row) {
  entered_ = true;
  if (pasting_) return;
  ShowStatus({});
  if (stored_) {
    PreviewAll();  // from here on it is a new run that is prepared
  } else {
    const std::int64_t at = model_->ListRow(row);
    figures_.erase(at);
    Try([&] {
      if (std::optional<GroupFigures> figures = calculation_->PreviewOf(at)) {
        figures_.insert_or_assign(at, std::move(*figures));
      }
    });
    ShowFigures(false);
  }
  ShowTotals();
}

void GroupScreen::Paste(int row, int column, const QString& text) {
  // Cells go where they would be typed: down the rows, over the columns shown, leaving what cannot be edited.
  const std::vector<int> shown = grid_->visible_columns();
  const auto first = std::find(shown.begin(), shown.end(), column);
  QStringList lines = text.split('\n');
  if (lines.size() > 1 && lines.back().isEmpty()) lines.removeLast();
  pasting_ = true;
  for (qsizetype i = 0; i < lines.size() && row + i < model_->Rows(); ++i) {
    const QStringList cells = lines[i].remove('\r').split('\t');
    auto at = first;
    for (qsizetype j = 0; j < cells.size() && at != shown.end(); ++j, ++at) {
      const int target = static_cast<int>(row + i);
      if (!model_->CanEdit(target, *at)) continue;
      QString cell = cells[j];
      if (model_->columns()[static_cast<std::size_t>(*at)].format == ui::Format::kTick) {
        cell = cell.compare(QLatin1String("Da"), Qt::CaseInsensitive) == 0 || cell == "1" ? "1" : "0";
      }
      if (!grid_->Store(target, *at, cell)) {
        i = lines.size();
        break;
      }
    }
  }
  pasting_ = false;
  Try([this] { PreviewAll(); });
  ShowTotals();
}

void GroupScreen::Run() {
  if (!grid_->CommitEdit()) return;  // the commands' keys come while a cell is being typed in
  RunReport report;
  {
    const ui::LongRun run(session().host.progress, windowTitle(), ui::Stopping::kPossible);
    report = calculation_->Run();
  }
  if (!report.cancelled) {
    entered_ = false;
    figures_.clear();
    double difference = 0;
    std::size_t failed = 0;
    for (GroupFigures& each : report.figures) {
      if (!each.error.empty()) {
        ++failed;
      } else if (std::abs(each.difference) > std::abs(difference)) {
        difference = each.difference;
      }
      figures_[each.row] = std::move(each);
    }
    ShowFigures(true);
    QString status;
    if (failed > 0) {
      status = QStringLiteral("Nu s-a putut calcula pe %1: randul este marcat, motivul este la Observatii")
                   .arg(GroupsText(failed));
    } else if (!report.figures.empty()) {
      // Groups may be in several currencies, whose differences make no sum.
      status = QStringLiteral("Calculat pe %1; cea mai mare diferenta lasata de rotunjire: %2")
                   .arg(GroupsText(report.figures.size()), ui::Shown(difference, ui::Format::kRate));
    }
    if (!status.isEmpty()) ShowStatus(status);
    Q_EMIT LinesChanged();
  }
  calculation_->ShowClosing(report);
}

void GroupScreen::ShowStatus(const QString& text) { status_->setText(text); }

bool GroupScreen::Ask(const QString& question) {
  return session().host.prompter.Ask(ui::Utf8(question), "RASPUNDETI", platform::Icon::kQuestion);
}

void GroupScreen::reject() {
  if (!grid_->CommitEdit()) return;
  if (entered_ && !figures_.empty() && !Ask(EnteredText() + QStringLiteral(". Inchid ecranul ?"))) return;
  Screen::reject();
}

}  // namespace calc
