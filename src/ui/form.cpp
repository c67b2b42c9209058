#include "ui/form.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFrame>
#include <QGroupBox>
#include <QTabWidget>

#include "platform/prompter.h"
#include "store/value.h"
#include "ui/colour_field.h"
#include "ui/elided_label.h"
#include "ui/text.h"

namespace ui {
namespace {

constexpr char kTag[] = "tag";  // "DA": the field takes part in reading and saving

bool IsBound(const QWidget* field) { return field->property(kTag).toString() == QLatin1String("DA"); }

QString TextOf(const QWidget* field) {
  if (const auto* line = qobject_cast<const QLineEdit*>(field)) return line->text();
  if (const auto* tick = qobject_cast<const QCheckBox*>(field)) return tick->isChecked() ? "1" : "0";
  if (const auto* code = qobject_cast<const CodeBox*>(field)) return code->code();
  if (const auto* colour = qobject_cast<const ColourField*>(field)) return Q(colour->text());
  if (const auto* box = qobject_cast<const QComboBox*>(field)) return box->currentText();
  return {};
}

/// A completer that completes within the field has no list at all.
bool CompletionsShown(const QComboBox& box) {
  const QCompleter* completer = box.completer();
  return completer != nullptr && completer->popup() != nullptr && completer->popup()->isVisible();
}

void PutText(QWidget* field, const QString& text) {
  if (auto* line = qobject_cast<QLineEdit*>(field)) {
    line->setText(text);
    line->setCursorPosition(0);
  } else if (auto* tick = qobject_cast<QCheckBox*>(field)) {
    tick->setChecked(store::Value(Utf8(text)).ToBoolean());
  } else if (auto* code = qobject_cast<CodeBox*>(field)) {
    code->SetCode(text);
  } else if (auto* colour = qobject_cast<ColourField*>(field)) {
    colour->SetText(Utf8(text));
  } else if (auto* box = qobject_cast<QComboBox*>(field)) {
    const int at = box->findText(text);
    if (at >= 0 || !box->isEditable()) box->setCurrentIndex(at);
    if (at < 0 && box->isEditable()) box->setEditText(text);
  }
}

/// Fields that cannot be typed in look like the ground they stand on.
void ShowReadOnly(QLineEdit* field) {
  QPalette palette;  // without roles of its own: the system's, also when that turns dark
  if (field->isReadOnly())
    palette.setColor(QPalette::Base, QApplication::palette(field).color(QPalette::Window));
  field->setPalette(palette);
}

}  // namespace

Form::Form(Context& context, const QString& name, QWidget* parent) : Screen(context, name, parent) {
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(16, 16, 16, 12);
  whole->setSpacing(12);
  outer_ = new QVBoxLayout;
  whole->addLayout(outer_, 1);
  auto* line = new QFrame(this);
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Sunken);
  whole->addWidget(line);
  message_ = new QLabel(this);
  message_->setObjectName(QStringLiteral("LblMesaj"));
  message_->setTextFormat(Qt::PlainText);
  message_->setWordWrap(true);
  message_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  whole->addWidget(message_);
  buttons_ = new QHBoxLayout;
  buttons_->setSpacing(8);
  buttons_->addStretch(1);
  whole->addLayout(buttons_);
}

void Form::AddTab(const QString& title) {
  if (tabs_ == nullptr) {
    tabs_ = new QTabWidget(this);
    outer_->addWidget(tabs_, 1);
  }
  auto* page = new QWidget(tabs_);
  auto* inside = new QVBoxLayout(page);
  inside->setContentsMargins(16, 16, 16, 16);
  columns_ = new QHBoxLayout;
  columns_->setSpacing(32);
  inside->addLayout(columns_);
  inside->addStretch(1);
  tabs_->addTab(page, title);
  column_ = nullptr;
  section_ = nullptr;
}

void Form::AddColumn() {
  if (columns_ == nullptr) {
    columns_ = new QHBoxLayout;
    columns_->setSpacing(32);
    outer_->addLayout(columns_);
    outer_->addStretch(1);
  }
  column_ = new QVBoxLayout;
  column_->setSpacing(16);
  columns_->addLayout(column_, 1);
  section_ = nullptr;
}

void Form::AddSection(const QString& title) {
  if (column_ == nullptr) AddColumn();
  if (column_->count() > 0) {  // the stretch below the section before
    delete column_->takeAt(column_->count() - 1);
  }
  if (!title.isEmpty()) {
    auto* heading = new QLabel(title, this);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    column_->addWidget(heading);
  }
  section_ = new QGridLayout;
  section_->setHorizontalSpacing(12);
  section_->setVerticalSpacing(8);
  section_->setColumnStretch(1, 1);
  column_->addLayout(section_);
  column_->addStretch(1);
}

QGridLayout* Form::section() {
  if (section_ == nullptr) AddSection();
  return section_;
}

QLineEdit* Form::AddText(const QString& name, const QString& label, int characters, const QString& help,
                         Kind kind) {
  auto* field = new QLineEdit(this);
  field->setObjectName(name);
  if (kind == Kind::kBound) field->setProperty(kTag, QStringLiteral("DA"));
  const int width = field->fontMetrics().horizontalAdvance(QString(characters, QLatin1Char('0'))) + 20;
  field->setMinimumWidth(std::min(width, 240));
  field->setMaximumWidth(width);
  AddRow(name, label, field);
  Watch(field, help);
  return field;
}

QCheckBox* Form::AddTick(const QString& name, const QString& caption, const QString& help, Kind kind) {
  auto* field = new QCheckBox(caption, this);
  field->setObjectName(name);
  if (kind == Kind::kBound) field->setProperty(kTag, QStringLiteral("DA"));
  AddRow(name, QString(), field);
  Watch(field, help);
  return field;
}

CodeBox* Form::AddCode(const QString& name, const QString& label, CodeList list, int characters,
                       const QString& help, Kind kind) {
  auto* field = new CodeBox(this);
  field->setObjectName(name);
  if (kind == Kind::kBound) field->setProperty(kTag, QStringLiteral("DA"));
  field->setFixedWidth(field->fontMetrics().horizontalAdvance(QString(characters, QLatin1Char('0'))) + 48);
  field->SetList(std::move(list));
  AddRow(name, label, field);
  Watch(field, help);
  auto* description = new ElidedLabel(24, this);
  description->setObjectName(name + QStringLiteral("_Descriere"));
  const auto show = [field, description] {
    const QString text = field->code().isEmpty()          ? QString()
                         : field->description().isEmpty() ? QStringLiteral("cod necunoscut")
                                                          : field->description();
    description->setText(text);
  };
  connect(field, &CodeBox::CodeChanged, description, show);
  connect(field, &QComboBox::editTextChanged, description, show);
  AddBeside(description);
  return field;
}

void Form::AddField(const QString& label, QWidget* field, const QString& help, Kind kind) {
  if (kind == Kind::kBound) field->setProperty(kTag, QStringLiteral("DA"));
  AddRow(field->objectName(), label, field);
  Watch(field, help);
}

QLineEdit* Form::AddShown(const QString& name, const QString& label) {
  auto* field = new QLineEdit(this);
  field->setObjectName(name);
  field->setReadOnly(true);
  field->setFocusPolicy(Qt::ClickFocus);
  AddRow(name, label, field);
  Watch(field, {});
  return field;
}

void Form::AddWide(QWidget* widget, Height height) {
  QGridLayout* grid = section();
  const int row = grid->rowCount();
  grid->addWidget(widget, row, 0, 1, 2);
  if (height != Height::kFills) return;
  grid->setRowStretch(row, 1);
  column_->setStretchFactor(grid, 1);
  column_->setStretch(column_->count() - 1, 0);
  if (tabs_ != nullptr) return;
  outer_->setStretchFactor(columns_, 1);
  outer_->setStretch(outer_->count() - 1, 0);
}

void Form::AddRow(const QString& name, const QString& label, QWidget* field) {
  QGridLayout* grid = section();
  const int row = grid->rowCount();
  last_row_ = new QHBoxLayout;
  last_row_->setSpacing(8);
  last_row_->addWidget(field, qobject_cast<QLineEdit*>(field) != nullptr ? 1 : 0);
  if (label.isNull()) {
    grid->addLayout(last_row_, row, 0, 1, 2);
    last_row_->addStretch(qobject_cast<QCheckBox*>(field) != nullptr ? 1 : 0);
    return;
  }
  auto* caption = new QLabel(label, this);
  caption->setBuddy(field);
  // The underlined letter is painted apart and takes a little more than the text is measured as.
  caption->setMinimumWidth(caption->sizeHint().width() + 3);
  labels_[name] = caption;
  grid->addWidget(caption, row, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addLayout(last_row_, row, 1);
  if (qobject_cast<QLineEdit*>(field) != nullptr) last_row_->addStretch(0);
}

void Form::AddBeside(QWidget* widget) {
  // Between the field and the stretch that may follow it.
  int at = last_row_->count();
  while (at > 0 && last_row_->itemAt(at - 1)->spacerItem() != nullptr) --at;
  last_row_->insertWidget(at, widget, qobject_cast<QLabel*>(widget) != nullptr ? 1 : 0);
}

void Form::AddNote(const QString& text) {
  auto* note = new QLabel(text, this);
  note->setWordWrap(true);
  note->setTextFormat(Qt::PlainText);
  QGridLayout* grid = section();
  grid->addWidget(note, grid->rowCount(), 0, 1, 2);
}

void Form::SetButtons(const QString& confirm, std::function<void()> on_confirm, const QString& cancel) {
  confirm_ = new QPushButton(confirm, this);
  confirm_->setObjectName(QStringLiteral("CmdOK"));
  confirm_->setDefault(true);
  // A click does not take the focus by itself: the field being typed in is left in one place, below.
  confirm_->setFocusPolicy(Qt::TabFocus);
  cancel_ = new QPushButton(cancel, this);
  cancel_->setObjectName(QStringLiteral("CmdRenunt"));
  cancel_->setFocusPolicy(Qt::TabFocus);  // a click leaves the field's checks alone
  connect(confirm_, &QPushButton::clicked, this, [this, action = std::move(on_confirm)] {
    confirm_->setFocus();
    if (focusWidget() != confirm_) return;  // the field refused to be left
    Try(action);
  });
  connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
#ifdef Q_OS_MACOS
  buttons_->addWidget(cancel_);
  buttons_->addWidget(confirm_);
#else
  buttons_->addWidget(confirm_);
  buttons_->addWidget(cancel_);
#endif
}

QPushButton* Form::AddCommand(const QString& name, const QString& caption, std::function<void()> on_click) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(name);
  connect(button, &QPushButton::clicked, this, [this, action = std::move(on_click)] { Try(action); });
  int at = 0;
  while (buttons_->itemAt(at)->spacerItem() == nullptr) ++at;
  buttons_->insertWidget(at, button);
  return button;
}

void Form::MarkRequired(const QString& name) {
  const auto found = labels_.find(name);
  if (found == labels_.end()) return;
  QLabel* label = found->second;
  label->setText(label->text() + QStringLiteral(" *"));
  label->setMinimumWidth(label->sizeHint().width() + 3);
  label->setToolTip(QStringLiteral("Obligatoriu de completat"));
  if (findChild<QLabel*>(QStringLiteral("LblObligatoriu")) != nullptr) return;
  auto* legend = new QLabel(QStringLiteral("* Obligatoriu de completat"), this);
  legend->setObjectName(QStringLiteral("LblObligatoriu"));
  buttons_->insertWidget(0, legend);
}

bool Form::Require(const QString& name, const QString& label) {
  if (!store::IsEmpty(Utf8(Text(name)))) return true;
  platform::ShowRequired(session().host.prompter, Utf8(label));
  FocusField(name);
  return false;
}

void Form::FocusField(const QString& name) {
  auto* field = findChild<QWidget*>(name);
  if (field == nullptr) return;
  for (int i = 0; tabs_ != nullptr && i < tabs_->count(); ++i) {
    if (tabs_->widget(i)->isAncestorOf(field)) tabs_->setCurrentIndex(i);
  }
  field->setFocus(Qt::OtherFocusReason);
}

void Form::OnLeave(const QString& name, std::function<bool()> check) {
  leave_checks_[name] = std::move(check);
}

std::vector<std::string> Form::BoundNames() const {
  std::vector<std::string> names;
  for (const QWidget* field : fields_) {
    if (IsBound(field)) names.push_back(Utf8(field->objectName()));
  }
  return names;
}

companies::Fields Form::Collect() const {
  companies::Fields fields(BoundNames());
  for (const QWidget* field : fields_) {
    if (IsBound(field)) fields.Set(Utf8(field->objectName()), Utf8(TextOf(field)));
  }
  return fields;
}

void Form::LimitTexts(const store::Recordset& columns) {
  for (int i = 0; i < columns.field_count(); ++i) {
    const store::FieldInfo& column = columns.field(i);
    if (column.type != store::ColumnType::kText || column.size <= 0) continue;
    if (auto* text = findChild<QLineEdit*>(Q(column.name))) text->setMaxLength(column.size);
  }
}

void Form::Fill(const companies::Fields& fields) {
  for (QWidget* field : fields_) {
    const std::string name = Utf8(field->objectName());
    if (IsBound(field) && fields.Has(name)) PutText(field, Q(fields.Get(name)));
  }
}

QString Form::Text(const QString& name) const {
  const auto* field = findChild<QWidget*>(name);
  return field == nullptr ? QString() : TextOf(field);
}

void Form::SetText(const QString& name, const QString& text) {
  if (auto* field = findChild<QWidget*>(name)) PutText(field, text);
}

std::vector<std::string> Form::BoundTexts() const {
  std::vector<std::string> texts;
  for (const QWidget* field : fields_) {
    if (IsBound(field)) texts.push_back(Utf8(TextOf(field)));
  }
  return texts;
}

void Form::GuardChanges() {
  guarded_ = true;
  as_opened_ = BoundTexts();
}

void Form::reject() {
  if (guarded_ && isVisible() && BoundTexts() != as_opened_ &&
      !session().host.prompter.Ask("Datele modificate nu au fost salvate. Inchideti fara salvare ?",
                                   "RASPUNDETI", platform::Icon::kQuestion)) {
    return;
  }
  Screen::reject();
}

void Form::SetHelp(QWidget* field, const QString& help) {
  field->setStatusTip(help);
  field->setWhatsThis(help);
}

void Form::ShowMessage(const QString& text) { message_->setText(text); }

void Form::Watch(QWidget* field, const QString& help) {
  SetHelp(field, help);
  fields_.push_back(field);
  field->installEventFilter(this);
  if (auto* box = qobject_cast<QComboBox*>(field); box != nullptr && box->lineEdit() != nullptr) {
    box->lineEdit()->installEventFilter(this);
  }
  if (field->focusProxy() != nullptr) field->focusProxy()->installEventFilter(this);
  if (auto* line = qobject_cast<QLineEdit*>(field)) ShowReadOnly(line);
}

QWidget* Form::FieldOf(QObject* watched) const {
  for (QWidget* field : fields_) {
    if (field == watched || (field->focusProxy() != nullptr && field->focusProxy() == watched)) return field;
    const auto* box = qobject_cast<const QComboBox*>(field);
    if (box != nullptr && box->lineEdit() == watched) return field;
  }
  return nullptr;
}

void Form::resizeEvent(QResizeEvent* event) {
  // The longest help line has room from the start, so that nothing moves when the focus does.
  const int width = this->width() - 32;
  int height = message_->fontMetrics().height();
  for (const QWidget* field : fields_) {
    const QRect needed =
        message_->fontMetrics().boundingRect(QRect(0, 0, width, 1000), Qt::TextWordWrap, field->statusTip());
    height = std::max(height, needed.height());
  }
  message_->setMinimumHeight(height);
  Screen::resizeEvent(event);
}

void Form::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) {
    for (QWidget* field : fields_) {
      if (auto* line = qobject_cast<QLineEdit*>(field)) ShowReadOnly(line);
    }
  }
  Screen::changeEvent(event);
}

void Form::MoveOn() {
  // Asked for before moving: a button that gets the focus becomes the default one for that time.
  const QWidget* last = confirm_;
  for (const QPushButton* button : findChildren<QPushButton*>()) {
    if (button->isDefault() && button->isVisible() && button->isEnabled()) last = button;
  }
  for (std::size_t i = 0; i <= fields_.size(); ++i) {  // a helping button may stand behind each
    focusNextChild();
    QWidget* next = focusWidget();
    if (next == last || FieldOf(next) != nullptr || qobject_cast<QAbstractButton*>(next) == nullptr) return;
  }
}

bool Form::eventFilter(QObject* watched, QEvent* event) {
  QWidget* field = FieldOf(watched);
  if (field == nullptr) return Screen::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::ReadOnlyChange:
      if (auto* line = qobject_cast<QLineEdit*>(field)) ShowReadOnly(line);
      break;
    case QEvent::FocusIn: {
      ShowMessage(field->statusTip());
      auto* line = qobject_cast<QLineEdit*>(field);
      if (auto* combo = qobject_cast<QComboBox*>(field)) line = combo->lineEdit();
      if (line != nullptr) {
        // After the mouse press that brought the focus has set its own cursor.
        QMetaObject::invokeMethod(line, "selectAll", Qt::QueuedConnection);
      }
      break;
    }
    case QEvent::FocusOut: {
      const auto check = leave_checks_.find(field->objectName());
      const auto reason = static_cast<QFocusEvent*>(event)->reason();
      if (check == leave_checks_.end() || checking_ || !isVisible() ||
          reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) {
        break;
      }
      QWidget* next = QApplication::focusWidget();
      if (next != nullptr && (next == cancel_ || next->window() != this)) break;  // a list is a window too
      checking_ = true;
      if (!check->second()) {
        field->setFocus(Qt::OtherFocusReason);
        checking_ = false;
        return Screen::eventFilter(watched, event);
      }
      checking_ = false;
      break;
    }
    case QEvent::KeyPress: {
      const int key = static_cast<QKeyEvent*>(event)->key();
      auto* box = qobject_cast<QComboBox*>(field);
      const bool list_open = box != nullptr && (box->view()->isVisible() || CompletionsShown(*box));
      if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !list_open) {
        MoveOn();
        return true;
      }
      break;
    }
    default:
      break;
  }
  return Screen::eventFilter(watched, event);
}

}  // namespace ui
