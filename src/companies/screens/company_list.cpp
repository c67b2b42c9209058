#include "companies/screens/company_list.h"

#include <QListWidget>

#include "ui/text.h"

namespace companies {

using ui::Q;

Frm_Firme::Frm_Firme(ui::Context& screen_context, QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Firme"), parent) {
  setWindowTitle(QStringLiteral("Selectare Firma"));
  SetFirstSize({560, 520});
  QLineEdit* search = AddText(
      QStringLiteral("TxtCautare"), QStringLiteral("&Cauta"), 40,
      QStringLiteral("O parte din nume sau din codul fiscal; sageata in jos trece in lista"), Kind::kFree);
  search->setClearButtonEnabled(true);
  list_ = new QListWidget(this);
  list_->setObjectName(QStringLiteral("Nume_Firma"));
  list_->setMinimumHeight(list_->fontMetrics().height() * 12);
  body()->insertWidget(body()->count() - 1, list_, 1);
  body()->setStretch(body()->count() - 1, 0);

  auto* chosen = new QGridLayout;
  chosen->setHorizontalSpacing(12);
  const auto add_shown = [&](const char* name, const QString& label) {
    auto* field = new QLineEdit(this);
    field->setObjectName(QString::fromLatin1(name));
    field->setReadOnly(true);
    field->setFocusPolicy(Qt::ClickFocus);
    const int row = chosen->rowCount();
    chosen->addWidget(new QLabel(label, this), row, 0);
    chosen->addWidget(field, row, 1);
  };
  add_shown("Cod_Fiscal", QStringLiteral("Cod de inregistrare fiscala"));
  add_shown("DataBaseFile", QStringLiteral("Fisier baza de date"));
  body()->addLayout(chosen);
  SetButtons(QStringLiteral("&Deschide firma"), [this] { Confirm(); });

  Try([this] { companies_ = ListCompanies(session()); });
  connect(search, &QLineEdit::textChanged, this, &Frm_Firme::ShowList);
  connect(list_, &QListWidget::currentRowChanged, this, &Frm_Firme::ShowChosen);
  connect(list_, &QListWidget::itemActivated, this, [this] { confirm_button()->click(); });
  search->installEventFilter(this);
  ShowList({});
  list_->setFocus();
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
  if (companies_.empty())
    ShowMessage(QStringLiteral("Nu exista firme. Meniul Firme - Creare Firma adauga una."));
}

void Frm_Firme::ShowChosen() {
  const QListWidgetItem* item = list_->currentItem();
  const auto* one =
      item == nullptr ? nullptr : &companies_[static_cast<std::size_t>(item->data(Qt::UserRole).toInt())];
  SetText(QStringLiteral("Cod_Fiscal"), one == nullptr ? QString() : Q(one->Cod_Fiscal));
  SetText(QStringLiteral("DataBaseFile"), one == nullptr ? QString() : Q(one->DataBaseFile));
}

void Frm_Firme::Confirm() {
  const QListWidgetItem* item = list_->currentItem();
  const ListedCompany chosen = item == nullptr
                                   ? ListedCompany()
                                   : companies_[static_cast<std::size_t>(item->data(Qt::UserRole).toInt())];
  if (ConfirmSelection(session(), chosen)) accept();
}

}  // namespace companies
