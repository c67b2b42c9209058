#include "calc/screens/amount_screen.h"

#include <QRadioButton>

#include "ui/text.h"

namespace calc {
namespace {

struct Choice {
  QString name, caption;
};

Choice ChoiceOf(Redis_Mod mod) {
  switch (mod) {
    case Redis_Mod::Redis_Mod_Cantitate:
      return {QStringLiteral("Redis_Mod_Cantitate"), QStringLiteral("&Cantitate")};
    case Redis_Mod::Redis_Mod_Net:
      return {QStringLiteral("Redis_Mod_Net"), QStringLiteral("&Masa neta")};
    case Redis_Mod::Redis_Mod_Valoare:
      break;
  }
  return {QStringLiteral("Redis_Mod_Valoare"), QStringLiteral("&Valoare facturata")};
}

Choice ChoiceOf(Redis_Op op) {
  switch (op) {
    case Redis_Op::Redis_Op_Doc:
      return {QStringLiteral("Redis_Op_Doc"), QStringLiteral("&Factura")};
    case Redis_Op::Redis_Op_Incoterms:
      return {QStringLiteral("Redis_Op_Incoterms"),
              QStringLiteral("Conditie de &livrare, tara si mod de transport")};
    case Redis_Op::Redis_Op_VAT:
      return {QStringLiteral("Redis_Op_VAT"), QStringLiteral("Cod &TVA partener")};
    case Redis_Op::Redis_Op_CodVamal:
      break;
  }
  return {QStringLiteral("Redis_Op_CodVamal"), QStringLiteral("Cod va&mal")};
}

/// What the lines lack when no group has anything to share by.
QString KeyText(Redis_Mod mod) {
  switch (mod) {
    case Redis_Mod::Redis_Mod_Cantitate:
      return QStringLiteral("cantitate");
    case Redis_Mod::Redis_Mod_Net:
      return QStringLiteral("masa neta");
    case Redis_Mod::Redis_Mod_Valoare:
      break;
  }
  return QStringLiteral("valoare facturata");
}

}  // namespace

AmountScreen::AmountScreen(ui::Context& screen_context, const QString& name, const QString& title,
                           std::unique_ptr<AmountRedistribution> of, QWidget* parent)
    : GroupScreen(screen_context, name, title, std::move(of), parent),
      redistribution_(static_cast<AmountRedistribution*>(&calculation())) {
  auto* options = new QWidget(this);
  auto* rows = new QGridLayout(options);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setHorizontalSpacing(16);
  rows->setVerticalSpacing(4);
  QHBoxLayout* mod_row = AddRow(rows, QStringLiteral("Se imparte dupa:"));
  for (const Redis_Mod mod : redistribution_->Mods()) {
    const Choice choice = ChoiceOf(mod);
    mods_[mod] = AddChoice(mod_row, choice.name, choice.caption);
    connect(mods_[mod], &QRadioButton::clicked, this, [this, mod] { Choose(mod, redistribution_->op()); });
  }
  op_row_ = AddRow(rows, QStringLiteral("Pe grupuri de:"));
  for (const Redis_Op op : redistribution_->Ops()) {
    const Choice choice = ChoiceOf(op);
    ops_[op] = AddChoice(op_row_, choice.name, choice.caption);
    connect(ops_[op], &QRadioButton::clicked, this, [this, op] { Choose(redistribution_->mod(), op); });
  }
  AddOptions(options);
}

QHBoxLayout* AmountScreen::AddRow(QGridLayout* rows, const QString& label) {
  const int row = rows->rowCount();
  auto* choices = new QWidget(this);  // choices exclude each other within one parent
  choices->setAccessibleName(label);
  auto* layout = new QHBoxLayout(choices);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(16);
  layout->addStretch(1);
  rows->addWidget(new QLabel(label, this), row, 0);
  rows->addWidget(choices, row, 1);
  rows->setColumnStretch(1, 1);
  return layout;
}

QRadioButton* AmountScreen::AddChoice(QHBoxLayout* row, const QString& name, const QString& caption) {
  auto* button = new QRadioButton(caption, row->parentWidget());
  button->setObjectName(name);
  row->insertWidget(row->count() - 1, button);
  return button;
}

void AmountScreen::AddAction(const QString& name, const QString& caption, std::function<void()> action) {
  auto* button = new QPushButton(caption, op_row_->parentWidget());
  button->setObjectName(name);
  button->setAutoDefault(false);
  op_row_->insertWidget(op_row_->count() - 1, button);
  connect(button, &QPushButton::clicked, this, [this, run = std::move(action)] {
    if (grid()->CommitEdit()) Try(run);
  });
}

void AmountScreen::CheckChosen() {
  mods_[redistribution_->mod()]->setChecked(true);
  ops_[redistribution_->op()]->setChecked(true);
  // Tab stops once in a row of choices, on the chosen one; arrows go on from there.
  for (QRadioButton* choice : findChildren<QRadioButton*>()) {
    choice->setFocusPolicy(choice->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

void AmountScreen::OpenList() {
  Open(QStringLiteral("CmdRenunt"));
  CheckChosen();
  Choose(redistribution_->mod(), redistribution_->op());
}

void AmountScreen::Choose(Redis_Mod mod, Redis_Op op) {
  if (!grid()->CommitEdit()) {
    CheckChosen();
    return;
  }
  const int lost = entered() ? redistribution_->LostBy(mod, op) : 0;
  if (lost > 0 &&
      !Ask(QStringLiteral("Ce ati introdus la %1 nu a fost redistribuit si se pierde la schimbarea optiunii. "
                          "Continui ?")
               .arg(GroupsText(static_cast<std::size_t>(lost))))) {
    CheckChosen();
    return;
  }
  Try([&] {
    redistribution_->Choose(mod, op);
    ShowList(objectName() + '_' + ops_[op]->objectName());
  });
  CheckChosen();
}

QString AmountScreen::EmptyText() const {
  return QStringLiteral(
             "Nicio linie a declaratiei nu are %1, deci nu este dupa ce imparti. Completati liniile "
             "in editor sau alegeti mai sus alta impartire.")
      .arg(KeyText(redistribution_->mod()));
}

}  // namespace calc
