#include "declarations/screens/findings.h"

#include <QTreeWidget>

#include "ui/icons.h"
#include "ui/text.h"

namespace declarations {

Frm_Intrastat_Observatii::Frm_Intrastat_Observatii(ui::Context& screen_context,
                                                   const std::vector<Finding>& findings, QWidget* parent)
    : Screen(screen_context, QStringLiteral("Frm_Intrastat_Observatii"), parent) {
  setWindowTitle(QStringLiteral("Ce ar respinge INS"));
  SetFirstSize({760, 420});
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(16, 16, 16, 12);
  layout->setSpacing(8);
  auto* intro = new QLabel(
      QStringLiteral(
          "Verificarea nu a gasit probleme, dar INS respinge de obicei declaratiile cu cele de mai "
          "jos. Dublu clic sau Enter duce la locul de indreptat."),
      this);
  intro->setWordWrap(true);
  layout->addWidget(intro);

  list_ = new QTreeWidget(this);
  list_->setObjectName(QStringLiteral("Lista"));
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setHeaderLabels({QStringLiteral("Unde"), QStringLiteral("Ce")});
  for (const Finding& finding : findings) {
    new QTreeWidgetItem(list_, {ui::Q(finding.where), ui::Q(finding.what)});
  }
  list_->resizeColumnToContents(0);
  if (list_->topLevelItemCount() > 0) list_->setCurrentItem(list_->topLevelItem(0));
  connect(list_, &QTreeWidget::itemActivated, this, [this] { GoToCurrent(); });
  layout->addWidget(list_, 1);

  auto* bottom = new QHBoxLayout;
  const auto add = [&](const char* name, const char* caption, const char* icon) {
    auto* button = new QPushButton(ui::Icon(QString::fromLatin1(icon)), QString::fromLatin1(caption), this);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    bottom->addWidget(button);
    return button;
  };
  connect(add("CmdMergi", "&Mergi la", "modifica"), &QPushButton::clicked, this, [this] { GoToCurrent(); });
  bottom->addStretch(1);
  connect(add("CmdContinua", "&Continua - scrie fisierul", "fisier"), &QPushButton::clicked, this,
          &QDialog::accept);
  connect(add("CmdRenunt", "&Renunta", "renunta"), &QPushButton::clicked, this, &QDialog::reject);
  layout->addLayout(bottom);
  list_->setFocus();
}

void Frm_Intrastat_Observatii::GoToCurrent() {
  chosen_ = list_->indexOfTopLevelItem(list_->currentItem());
  reject();
}

}  // namespace declarations
