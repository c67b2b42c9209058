#include "companies/screens/company_list.h"

#include <QListWidget>

#include "reports/declaration_report.h"
#include "reports/screens/preview.h"
#include "ui/text.h"

namespace companies {

using ui::Q;

Frm_Firme::Frm_Firme(ui::Context& screen_context, QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Firme"), parent) {
  setWindowTitle(QStringLiteral("Selectare Firma"));
  SetFirstSize({560, 520});
  QLineEdit* search = AddText(
      QStringLiteral("TxtCautare"), QStringLiteral("&Cauta"), 80,
      QStringLiteral("O parte din nume sau din codul fiscal; sageata in jos trece in lista"), Kind::kFree);
  search->setClearButtonEnabled(true);
  list_ = new QListWidget(this);
  list_->setObjectName(QStringLiteral("Nume_Firma"));
  list_->setMinimumHeight(list_->fontMetrics().height() * 12);
  list_->setStyleSheet(QStringLiteral("QListWidget::item { padding: 4px; }"));
  AddWide(list_, Height::kFills);
  empty_ = new QLabel(list_->viewport());
  empty_->setAlignment(Qt::AlignCenter);
  auto* middle = new QVBoxLayout(list_->viewport());
  middle->addWidget(empty_);
  AddShown(QStringLiteral("Cod_Fiscal"), QStringLiteral("Cod de inregistrare fiscala"));
  AddShown(QStringLiteral("DataBaseFile"), QStringLiteral("Fisier baza de date"));
  SetButtons(QStringLiteral("&Deschide firma"), [this] { Confirm(); });
  QPushButton* print =
      AddCommand(QStringLiteral("CmdTiparire"), QStringLiteral("&Tiparire"), [this] { Print(); });
  print->setAutoDefault(false);
  BindKey(print, QKeySequence(QKeySequence::Print));

  Try([this] { companies_ = ListCompanies(session()); });
  connect(search, &QLineEdit::textChanged, this, &Frm_Firme::ShowList);
  connect(list_, &QListWidget::currentRowChanged, this, &Frm_Firme::ShowChosen);
  // Enter in the list reaches the default button by itself.
  connect(list_, &QListWidget::itemDoubleClicked, this, [this] { confirm_button()->click(); });
  ShowList({});
  list_->setFocus();
  if (!companies_.empty()) ShowMessage(QStringLiteral("Enter sau dublu clic deschide firma aleasa"));
}

void Frm_Firme::ShowList(const QString& part) {
  list_->clear();
  for (std::size_t i = 0; i < companies_.size(); ++i) {
    const ListedCompany& one = companies_[i];
    if (!Q(one.Nume_Firma).contains(part, Qt::CaseInsensitive) &&
        !Q(one.Cod_Fiscal).contains(part, Qt::CaseInsensitive)) {
      continue;
    }
    auto* item = new QListWidgetItem(Q(one.Nume_Firma), list_);
    item->setData(Qt::UserRole, static_cast<int>(i));
    if (one.Cod_Fiscal == session().current.Cod_Fiscal) list_->setCurrentItem(item);
  }
  if (list_->currentRow() < 0 && list_->count() > 0 && (!part.isEmpty() || list_->count() == 1)) {
    list_->setCurrentRow(0);
  }
  ShowChosen();
  empty_->setVisible(list_->count() == 0);
  empty_->setText(
      companies_.empty()
          ? QStringLiteral("Aici apar firmele.\nComanda Firme Meniu - Creare Firma adauga prima firma.")
          : QStringLiteral("Nicio firma nu contine textul cautat."));
}

void Frm_Firme::ShowChosen() {
  const QListWidgetItem* item = list_->currentItem();
  const auto* one =
      item == nullptr ? nullptr : &companies_[static_cast<std::size_t>(item->data(Qt::UserRole).toInt())];
  SetText(QStringLiteral("Cod_Fiscal"), one == nullptr ? QString() : Q(one->Cod_Fiscal));
  SetText(QStringLiteral("DataBaseFile"), one == nullptr ? QString() : Q(one->DataBaseFile));
}

void Frm_Firme::Print() {
  std::vector<std::vector<store::Value>> rows;
  for (int i = 0; i < list_->count(); ++i) {
    const ListedCompany& one =
        companies_[static_cast<std::size_t>(list_->item(i)->data(Qt::UserRole).toInt())];
    rows.push_back({one.Nume_Firma, one.Cod_Fiscal, one.DataBaseFile});
  }
  reports::Subject subject;
  subject.report = "FIRME";
  subject.title = QStringLiteral("  REPORT - FIRME -");
  subject.placeholders = reports::CommonPlaceholders(session());
  std::vector<reports::Table::Column> columns = {{"Nume_Firma", "Nume Firma"},
                                                 {"Cod_Fiscal", "Cod de inregistrare fiscala"},
                                                 {"DataBaseFile", "Fisier baza de date"}};
  subject.rows = std::make_shared<reports::MemoryTable>(std::move(columns), std::move(rows));
  reports::Preview(context(), subject, this);
}

void Frm_Firme::Confirm() {
  const QListWidgetItem* item = list_->currentItem();
  const ListedCompany chosen = item == nullptr
                                   ? ListedCompany()
                                   : companies_[static_cast<std::size_t>(item->data(Qt::UserRole).toInt())];
  if (ConfirmSelection(session(), chosen)) accept();
}

bool Frm_Firme::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && watched->objectName() == QLatin1String("TxtCautare") &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down) {
    list_->setFocus();
    if (list_->currentRow() < 0) list_->setCurrentRow(0);
    return true;
  }
  return Form::eventFilter(watched, event);
}

}  // namespace companies
