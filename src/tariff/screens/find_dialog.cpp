#include "tariff/screens/find_dialog.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/memory.h"
#include "ui/text.h"

namespace tariff {

using ui::Q;

FindRequest FindIn(ui::ListScreen& list, store::Connection& connection, const std::string& select) {
  FindRequest request{&connection, select, {}, 0};
  const std::vector<std::string> names = SelectedColumns(select);
  const int current = list.grid()->currentIndex().column();
  const ui::GridModel* model = list.grid()->grid_model();
  for (int i = 0; i < static_cast<int>(names.size()) && i < model->columnCount(); ++i) {
    const ui::Column& column = model->columns()[static_cast<std::size_t>(i)];
    if (column.hidden || !model->CanSearch(i)) continue;
    if (i == current) request.chosen = static_cast<int>(request.columns.size());
    request.columns.push_back({names[static_cast<std::size_t>(i)], column.caption});
  }
  return request;
}

Frm_Cautare::Frm_Cautare(ui::Context& screen_context, FindRequest request, QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Cautare"), parent),
      request_(std::move(request)),
      column_(new QComboBox(this)),
      options_(new QButtonGroup(this)),
      hint_(new QLabel(this)) {
  setWindowTitle(QStringLiteral("Cautare in lista"));
  QLineEdit* expression = AddText(
      QStringLiteral("TxtExpresie"), QStringLiteral("&Expresia de cautat"), 44,
      QStringLiteral("Literele mari si mici sunt tot una; apostroful nu poate fi cautat"), Kind::kFree);
  MarkRequired(QStringLiteral("TxtExpresie"));
  column_->setObjectName(QStringLiteral("Combo_Coloana"));
  for (const FindRequest::Column& each : request_.columns) column_->addItem(each.caption.trimmed());
  column_->setCurrentIndex(request_.chosen);
  AddField(QStringLiteral("Caut in c&oloana"), column_,
           QStringLiteral("Coloana in care se cauta; sunt cele cu text"));

  auto* group = new QWidget(this);
  group->setObjectName(QStringLiteral("Optiuni"));
  auto* layout = new QVBoxLayout(group);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  constexpr const char* kCaptions[] = {"&Identic cu expresia", "In&cepe cu expresia", "Con&tine expresia",
                                       "Cu&vinte legate prin + sau -"};
  for (int i = 1; i <= 4; ++i) {
    auto* option = new QRadioButton(QString::fromLatin1(kCaptions[i - 1]), group);
    option->setObjectName(QStringLiteral("Optiune%1").arg(i));
    options_->addButton(option, i);
    layout->addWidget(option);
  }
  AddField(QStringLiteral("Fel"), group);
  hint_->setObjectName(QStringLiteral("LblIndicatie"));
  hint_->setTextFormat(Qt::PlainText);
  hint_->setWordWrap(true);
  // Room for the longest hint in any option, so that the window stays as it is.
  hint_->setMinimumWidth(
      hint_->fontMetrics().horizontalAdvance(Q(FindHint(FindOption::kWords)).section('\n', 1)) + 8);
  hint_->setMinimumHeight(2 * hint_->fontMetrics().lineSpacing() + 4);
  hint_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  AddWide(hint_);
  SetButtons(QStringLiteral("C&auta"), [this] { Find(); });
  setTabOrder(expression, column_);  // made before it
  setTabOrder(column_, options_->button(1));
  FocusField(QStringLiteral("TxtExpresie"));

  connect(options_, &QButtonGroup::idClicked, this, [this] { ShowHint(); });
  const int last = context().memory.Get(objectName(), QStringLiteral("optiune")).toInt();
  options_->button(last >= 1 && last <= 4 ? last : int{static_cast<int>(FindOption::kContains)})
      ->setChecked(true);
  ShowHint();
}

/// The expression is all that a search needs: Enter there searches at once.
bool Frm_Cautare::eventFilter(QObject* watched, QEvent* event) {
  const auto* line = qobject_cast<QLineEdit*>(watched);
  if (line != nullptr && event->type() == QEvent::KeyPress && !line->text().isEmpty()) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      confirm_button()->click();
      return true;
    }
  }
  return Form::eventFilter(watched, event);
}

FindOption Frm_Cautare::option() const { return static_cast<FindOption>(options_->checkedId()); }

void Frm_Cautare::ShowHint() { hint_->setText(Q(FindHint(option()))); }

QString Frm_Cautare::summary() const {
  QString kind = options_->checkedButton()->text();
  return QStringLiteral("%1: \"%2\" (%3)")
      .arg(column_->currentText(), Text(QStringLiteral("TxtExpresie")), kind.remove('&').toLower());
}

void Frm_Cautare::Find() {
  if (!Require(QStringLiteral("TxtExpresie"), QStringLiteral("Expresia de cautat"))) return;
  if (column_->currentIndex() < 0) return;
  context().memory.Set(objectName(), QStringLiteral("optiune"), QString::number(options_->checkedId()));
  const std::string& column = request_.columns[static_cast<std::size_t>(column_->currentIndex())].name;
  const std::string narrowed =
      Narrow(request_.select, FindCondition(option(), column, ui::Utf8(Text(QStringLiteral("TxtExpresie")))));
  if (!Try([&] { rows_ = request_.connection->Query(narrowed); })) {
    FocusField(QStringLiteral("TxtExpresie"));
    return;
  }
  select_ = narrowed;
  if (rows_.record_count() == 0) {
    session().host.prompter.Message("Nici o inregistrare NU corespunde criteriului de cautare", "Mesaj",
                                    platform::Icon::kCritical);
  }
  accept();
}

QPushButton* AddFindCommand(ui::ListScreen& list, FindCommands commands) {
  return list.commands()->Add(
      QStringLiteral("CmdExpresie"), QStringLiteral("&Gaseste..."), QStringLiteral("filtreaza"),
      [&list, run = std::move(commands)] {
        Frm_Cautare dialog(list.context(), run.request(), &list);
        if (dialog.exec() != QDialog::Accepted) return;
        run.show(dialog.select(), dialog.rows());
        list.ShowStatus(dialog.summary());
      },
      QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
}

}  // namespace tariff
