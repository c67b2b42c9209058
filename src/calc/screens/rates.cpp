#include "calc/screens/rates.h"

#include <QFileDialog>
#include <QShortcut>
#include <QStandardPaths>

#include "calc/bnr_import.h"
#include "calc/screens/rate_form.h"
#include "ui/icons.h"
#include "ui/memory.h"
#include "ui/progress.h"
#include "ui/text.h"

namespace calc {

using ui::Q;

namespace {

constexpr char kNothingChosen[] = "Alegeti intai un curs din lista";

enum Columns { kCurrency, kName, kDay, kRate, kMultiplier };

std::vector<ui::Column> GridColumns() {
  return {{.field = "Cod_Moneda", .caption = QStringLiteral("Moneda"), .width = 10},
          {.field = "Moneda_DESC", .caption = QStringLiteral("Denumire"), .width = 36},
          {.field = "Valid_La_Data",
           .caption = QStringLiteral("Data cursului"),
           .format = ui::Format::kDate,
           .width = 16},
          {.field = "Curs_Schimb",
           .caption = QStringLiteral("Curs schimb"),
           .format = ui::Format::kRate,
           .width = 16},
          {.field = "Multiplicator",
           .caption = QStringLiteral("Multiplicator"),
           .format = ui::Format::kWhole,
           .width = 14}};
}

}  // namespace

Frm_Curs_Manual::Frm_Curs_Manual(ui::Context& screen_context, std::function<void()> update_rates,
                                 QWidget* parent, FileChooser choose_file)
    : ListScreen(screen_context, QStringLiteral("Frm_Curs_Manual"), parent),
      update_rates_(std::move(update_rates)),
      choose_file_(std::move(choose_file)),
      model_(new ui::RecordsetModel(GridColumns(), ListRates(session(), {}), this)) {
  setWindowTitle(QStringLiteral("Curs valutar - introducere manuala"));
  if (!choose_file_) choose_file_ = [this] { return AskForFile(); };
  commands()->Add(
      QStringLiteral("CmdAdauga"), QStringLiteral("&Adauga"), QStringLiteral("adauga"),
      [this] { Edit(std::nullopt); }, QKeySequence(QKeySequence::New));
  commands()->Add(
      QStringLiteral("CmdModifica"), QStringLiteral("&Modifica"), QStringLiteral("modifica"),
      [this] {
        const int row = grid()->current_row();
        row >= 0 ? Edit(KeyAt(row)) : ShowStatus(QString::fromLatin1(kNothingChosen));
      },
      QKeySequence(Qt::Key_F2));
  commands()->AddSeparator();
  commands()->Add(QStringLiteral("CmdFisierBNR"), QStringLiteral("&Preia fisier BNR..."),
                  QStringLiteral("fisier"), [this] { TakeFile(); });
  commands()
      ->Add(QStringLiteral("CmdActualizare"), QStringLiteral("Act&ualizare automata"),
            QStringLiteral("actualizare"), [this] { Update(); })
      ->setEnabled(update_rates_ != nullptr);
  commands()->AddSeparator();
  commands()->AddApart(
      QStringLiteral("CmdSterge"), QStringLiteral("&Sterge"), QStringLiteral("sterge"), [this] { Delete(); },
      QKeySequence(QKeySequence::Delete));
  AddListCommands(QStringLiteral("  REPORT - CURS VALUTAR -"));
  SetReport("CURS_MANUAL");
  AddFilterRow();
  connect(grid(), &ui::Grid::Activated, this, [this](int row) { Try([&] { Edit(KeyAt(row)); }); });
  auto* refresh = new QShortcut(QKeySequence(Qt::Key_F5), this);
  connect(refresh, &QShortcut::activated, this, [this] { Try([this] { Reload(); }); });
  ShowEmptyText();
  SetModel(model_);
  if (model_->Rows() > 0) grid()->SelectRow(0, 0);
}

void Frm_Curs_Manual::AddFilterRow() {
  auto* row = new QWidget(this);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  const auto add = [&](const QString& caption, QWidget* field) {
    auto* label = new QLabel(caption, row);
    label->setBuddy(field);
    layout->addWidget(label);
    layout->addWidget(field);
  };
  currency_ = new ui::CodeBox(row);
  currency_->setObjectName(QStringLiteral("Combo_Moneda"));
  currency_->setFixedWidth(currency_->fontMetrics().horizontalAdvance(QStringLiteral("MMMM")) + 48);
  currency_->TypeCapitals();
  Try([this] { currency_->SetList(ui::CodeList::Read(session().company, kCurrencyChoices)); });
  add(QStringLiteral("M&oneda"), currency_);
  connect(currency_, &ui::CodeBox::CodeChanged, this, [this] {
    const QString code = currency_->code().trimmed();
    if (code.isEmpty() || code.size() >= 3) Try([this] { ApplyFilter(); });
  });

  const auto add_day = [&](const char* name, const QString& caption) {
    auto* field = new QLineEdit(row);
    field->setObjectName(QString::fromLatin1(name));
    field->setPlaceholderText(QStringLiteral("zz.ll.aaaa"));
    field->setFixedWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("00.00.0000")) + 24);
    add(caption, field);
    connect(field, &QLineEdit::editingFinished, this, [this] { Try([this] { ApplyFilter(); }); });
    return field;
  };
  from_ = add_day("TxtDeLa", QStringLiteral("&De la data"));
  to_ = add_day("TxtPanaLa", QStringLiteral("pa&na la data"));

  auto* all = new QPushButton(ui::Icon(QStringLiteral("toate")), QStringLiteral("Toate cursu&rile"), row);
  all->setObjectName(QStringLiteral("CmdToate"));
  all->setAutoDefault(false);
  connect(all, &QPushButton::clicked, this, [this] { Try([this] { ClearFilter(); }); });
  layout->addWidget(all);
  layout->addStretch(1);
  AddAboveGrid(row);
}

std::optional<store::Date> Frm_Curs_Manual::DayIn(QLineEdit* field) {
  const QString text = field->text().trimmed();
  if (text.isEmpty()) return std::nullopt;
  const std::optional<store::Date> day = store::ParseDate(ui::Utf8(text));
  if (day) {
    field->setText(Q(store::DateText(*day)));
  } else {
    ShowStatus(QStringLiteral("\"%1\" nu este o data; nu se tine seama de ea").arg(text));
  }
  return day;
}

void Frm_Curs_Manual::ApplyFilter() {
  ShowStatus({});
  const RateFilter before = filter_;
  filter_ = {ui::Utf8(currency_->code().trimmed()), DayIn(from_), DayIn(to_)};
  if (RateCondition(before) != RateCondition(filter_)) Reload();
}

void Frm_Curs_Manual::ClearFilter() {
  currency_->SetCode({});
  from_->clear();
  to_->clear();
  ApplyFilter();
}

void Frm_Curs_Manual::ShowEmptyText() {
  grid()->SetEmptyText(
      filter_.IsEmpty()
          ? QStringLiteral("Aici apar cursurile valutare ale firmei. \"Preia fisier BNR...\" le aduce din "
                           "fisierul XML al Bancii Nationale, \"Actualizare automata\" de pe server, iar "
                           "\"Adauga\" scrie un curs.")
          : QStringLiteral("Nu exista cursuri pentru moneda si datele alese. \"Toate cursurile\" arata din "
                           "nou intreaga lista."));
}

void Frm_Curs_Manual::Reload() {
  ShowEmptyText();
  model_->SetRows(ListRates(session(), filter_));
}

RateKey Frm_Curs_Manual::KeyAt(int row) const {
  return {model_->ValueAt(row, kCurrency).ToText(), model_->ValueAt(row, kDay).ToDate()};
}

std::vector<RateKey> Frm_Curs_Manual::Selected() {
  std::vector<RateKey> keys;
  for (const int row : grid()->selected_rows()) keys.push_back(KeyAt(row));
  return keys;
}

void Frm_Curs_Manual::Select(const RateKey& key) {
  for (int row = 0; row < model_->Rows(); ++row) {
    const RateKey here = KeyAt(row);
    if (here.Valid_La_Data == key.Valid_La_Data && here.Cod_Moneda == key.Cod_Moneda) {
      grid()->SelectRow(row, 0);
      return;
    }
  }
}

void Frm_Curs_Manual::Edit(const std::optional<RateKey>& key) {
  RateEntry entry;
  if (!key) {
    const int near = grid()->current_row();
    entry = NewRate(session(),
                    filter_.Cod_Moneda.empty() && near >= 0 ? KeyAt(near).Cod_Moneda : filter_.Cod_Moneda);
  } else if (const std::optional<RateEntry> held = ReadRate(session(), *key)) {
    entry = *held;
  } else {
    Reload();
    ShowStatus(QStringLiteral("Cursul a fost sters intre timp"));
    return;
  }
  Frm_Curs form(context(), entry, key, this);
  if (form.exec() != QDialog::Accepted) return;
  Reload();
  Select(form.saved());
  ShowStatus(QStringLiteral("Salvat: %1 din %2")
                 .arg(Q(form.saved().Cod_Moneda), Q(store::DateText(form.saved().Valid_La_Data))));
}

void Frm_Curs_Manual::Delete() {
  const std::vector<RateKey> keys = Selected();
  const int row = grid()->current_row();
  if (keys.empty()) ShowStatus(QString::fromLatin1(kNothingChosen));
  if (!DeleteRates(session(), keys)) return;
  Reload();
  if (model_->Rows() > 0) grid()->SelectRow(std::clamp(row, 0, model_->Rows() - 1), 0);
  ShowStatus(QStringLiteral("Cursuri sterse: %1").arg(keys.size()));
}

std::string Frm_Curs_Manual::AskForFile() {
  const platform::Files& files = session().host.files;
  QString start = context().memory.Get(objectName(), QStringLiteral("dosar"));
  if (start.isEmpty()) start = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
  const QString chosen =
      QFileDialog::getOpenFileName(this, QStringLiteral("Fisierul cu cursuri al Bancii Nationale"), start,
                                   QStringLiteral("Fisiere XML (*.xml);;Toate fisierele (*)"));
  if (chosen.isEmpty()) return {};
  context().memory.Set(objectName(), QStringLiteral("dosar"), QFileInfo(chosen).absolutePath());
  return files.drives().FromHost(std::filesystem::path(chosen.toStdU16String()));
}

void Frm_Curs_Manual::TakeFile() {
  const std::string path = choose_file_();
  if (path.empty()) return;
  BnrImport result;
  {
    const ui::LongRun run(session().host.progress, QStringLiteral("Preluare fisier BNR"),
                          ui::Stopping::kPossible);
    result = ImportBnrFile(session(), path);
  }
  switch (result.outcome) {
    case BnrImport::Outcome::kTaken:
      Reload();
      ShowStatus(QStringLiteral("Fisier BNR: ") + Q(result.Summary()));
      break;
    case BnrImport::Outcome::kStopped:
      ShowStatus(QStringLiteral("Preluare oprita; cursurile au ramas cum erau"));
      break;
    case BnrImport::Outcome::kRefused:
      ShowStatus(QStringLiteral("Fisierul nu a fost preluat"));
      break;
  }
}

void Frm_Curs_Manual::Update() {
  const auto count = [this] {
    const auto rows = session().company.Scalar("SELECT COUNT(*) FROM Rate_Schimb");
    return rows.value_or(store::Value()).ToInteger();
  };
  const std::int64_t before = count();
  update_rates_();
  const std::int64_t added = count() - before;
  Reload();
  ShowStatus(added > 0 ? QStringLiteral("Actualizare automata: cursuri noi %1").arg(added)
                       : QStringLiteral("Actualizare automata: nu au venit cursuri noi"));
}

}  // namespace calc
