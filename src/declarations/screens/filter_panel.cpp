#include "declarations/screens/filter_panel.h"

#include "ui/icons.h"
#include "ui/text.h"

namespace declarations {
namespace {

using ui::Q;

/// A list that shows captions and keeps fields or expressions; nothing chosen at first.
QComboBox* NewChoice(const char* name, int characters, QWidget* parent) {
  auto* choice = new QComboBox(parent);
  choice->setObjectName(QString::fromLatin1(name));
  choice->setFixedWidth(choice->fontMetrics().averageCharWidth() * characters + 40);
  choice->setMaxVisibleItems(26);
  return choice;
}

QLineEdit* NewValue(const char* name, QWidget* parent) {
  auto* field = new QLineEdit(parent);
  field->setObjectName(QString::fromLatin1(name));
  field->setFixedWidth(field->fontMetrics().averageCharWidth() * 20 + 14);
  return field;
}

QLineEdit* NewHidden(const char* name, QWidget* parent) {
  auto* field = new QLineEdit(parent);
  field->setObjectName(QString::fromLatin1(name));
  field->hide();
  return field;
}

QLabel* Label(const char* text, QWidget* buddy, QWidget* parent) {
  auto* label = new QLabel(QString::fromLatin1(text), parent);
  label->setBuddy(buddy);
  return label;
}

void Choose(QComboBox* choice, const QString& data) {
  const int at = choice->findData(data);
  choice->setCurrentIndex(at < 0 ? 0 : at);
}

}  // namespace

FilterPanel::FilterPanel(Editor& editor, QWidget* parent) : QWidget(parent), editor_(&editor) {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(6);
  row_ = new QHBoxLayout;
  row_->setSpacing(6);
  rows->addLayout(row_);
  where_column_ = NewChoice("CmbColoanaWhere", 22, this);
  sign_ = NewChoice("CmbSemn", 12, this);
  where_value_ = NewValue("Txt_ValueUpdateWhere", this);
  where_kind_ = NewHidden("TXT_ColoanaWhere_Fel", this);
  update_kind_ = NewHidden("TXT_ColoanaUpdate_Fel", this);
  sign_expression_ = NewHidden("TXT_SemnExpresie", this);
  row_->addWidget(Label("Filtru:", where_column_, this));
  row_->addWidget(where_column_);
  row_->addWidget(sign_);
  row_->addWidget(where_value_);
  auto* filter = AddButton(row_, "CmdFilter", "Filtrea&za", "filtreaza");
  all_ = AddButton(row_, "CmdTot", "&Toate", "toate");
  all_->setToolTip(QStringLiteral("Arata toate liniile"));
  more_ = AddButton(row_, "CmdActualizare", "Act&ualizeaza...", "modifica");
  more_->setToolTip(QStringLiteral("Aceeasi valoare pe toate liniile care indeplinesc conditia"));
  more_->setCheckable(true);
  row_->addStretch(1);

  update_row_ = new QWidget(this);
  rows->addWidget(update_row_);
  auto* update = new QHBoxLayout(update_row_);
  update->setContentsMargins(0, 0, 0, 0);
  update->setSpacing(6);
  update_column_ = NewChoice("CmbColoanaUpdate", 22, update_row_);
  update_value_ = NewValue("Txt_ValueUpdate", update_row_);
  update->addWidget(Label("Coloana Actulizata", update_column_, update_row_));
  update->addWidget(update_column_);
  update->addWidget(Label("Valoare Nou", update_value_, update_row_));
  update->addWidget(update_value_);
  auto* execute = AddButton(update, "CmdExecuteUpdate", "E&xecuta", "actualizare");
  update->addWidget(Label("pe liniile care indeplinesc conditia de mai sus", nullptr, update_row_));
  update->addStretch(1);
  update_row_->hide();

  connect(where_column_, &QComboBox::currentIndexChanged, this, &FilterPanel::OnWhereColumn);
  connect(sign_, &QComboBox::currentIndexChanged, this,
          [this] { sign_expression_->setText(sign_->currentData().toString()); });
  connect(where_value_, &QLineEdit::returnPressed, this, &FilterPanel::FilterWanted);
  connect(filter, &QPushButton::clicked, this, &FilterPanel::FilterWanted);
  connect(all_, &QPushButton::clicked, this, &FilterPanel::AllWanted);
  connect(more_, &QPushButton::toggled, this, [this](bool on) {
    update_row_->setVisible(on);
    if (on) update_column_->setFocus();
  });
  connect(update_column_, &QComboBox::activated, this, &FilterPanel::OnUpdateColumn);
  connect(update_value_, &QLineEdit::returnPressed, execute, qOverload<>(&QWidget::setFocus));
  connect(execute, &QPushButton::clicked, this, &FilterPanel::UpdateWanted);
  ShowColumns();
  ShowFiltered(false);
}

QPushButton* FilterPanel::AddButton(QHBoxLayout* row, const char* name, const char* caption,
                                    const char* icon) {
  auto* button = new QPushButton(ui::Icon(QString::fromLatin1(icon)), QString::fromLatin1(caption), this);
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);
  row->addWidget(button);
  return button;
}

void FilterPanel::ShowColumns() {
  for (QComboBox* choice : {where_column_, update_column_}) {
    const QString chosen = choice->currentData().toString();
    const QSignalBlocker quiet(choice);
    choice->clear();
    choice->addItem(QString(), QString());
    for (const EditorColumn& column : editor_->columns()) {
      if (!column.hidden) choice->addItem(Q(column.caption), Q(column.field));
    }
    Choose(choice, chosen);
  }
  OnWhereColumn();
}

void FilterPanel::OnWhereColumn() {
  const int column = editor_->ColumnOf(ui::Utf8(where_column_->currentData().toString()));
  const std::string kind = column < 0 ? "" : editor_->columns()[static_cast<std::size_t>(column)].fel();
  if (!kind.empty() && ui::Utf8(where_kind_->text()) == kind) return;
  where_kind_->setText(Q(kind));
  const QString chosen = sign_->currentText();
  sign_->clear();
  sign_->addItem(QString(), QString());
  if (column >= 0) {
    for (const ConditionOperator& each : editor_->Operators(column)) {
      sign_->addItem(Q(each.DescSemn), Q(each.SemnExpresie));
    }
  }
  sign_->setCurrentIndex(std::max(0, sign_->findText(chosen)));
}

void FilterPanel::OnUpdateColumn(int index) {
  const QString field = update_column_->itemData(index).toString();
  if (!field.isEmpty() && !editor_->CanUpdate(ui::Utf8(field))) update_column_->setCurrentIndex(0);
  const int column = editor_->ColumnOf(ui::Utf8(update_column()));
  update_kind_->setText(column < 0 ? QString()
                                   : Q(editor_->columns()[static_cast<std::size_t>(column)].fel()));
}

Condition FilterPanel::condition() const {
  return {ui::Utf8(where_column_->currentData().toString()), ui::Utf8(sign_expression_->text()),
          ui::Utf8(where_value_->text())};
}

QString FilterPanel::update_column() const { return update_column_->currentData().toString(); }
QString FilterPanel::update_value() const { return update_value_->text(); }

void FilterPanel::Clear() {
  where_column_->setCurrentIndex(0);
  where_value_->clear();
}

void FilterPanel::ShowFiltered(bool on) { all_->setEnabled(on); }
void FilterPanel::ShowUpdate(bool on) { more_->setChecked(on); }

void FilterPanel::SetReadOnly() {
  ShowUpdate(false);
  more_->setEnabled(false);
}

void FilterPanel::AddAtEnd(QWidget* widget) { row_->addWidget(widget); }

}  // namespace declarations
