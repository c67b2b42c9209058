#include "ui/code_box.h"

#include <QCompleter>
#include <QStandardItemModel>
#include <QTreeView>
#include <QValidator>
#include <QWheelEvent>

namespace ui {
namespace {

constexpr int kCodeColumn = 0, kDescriptionColumn = 1;
constexpr int kSearchRole = Qt::UserRole + 1;  // "code description", what typing is looked for in
constexpr int kWidestDescription = 80;         // characters; longer ones end in "…"
constexpr int kShownRows = 14;

/// Completes by any part of code or description; what it leaves in the field is the code (or the name).
class Completer : public QCompleter {
 public:
  Completer(QAbstractItemModel* model, QObject* parent) : QCompleter(model, parent) {
    setCompletionMode(QCompleter::PopupCompletion);
    setCompletionRole(kSearchRole);
    setFilterMode(Qt::MatchContains);
    setCaseSensitivity(Qt::CaseInsensitive);
    setMaxVisibleItems(kShownRows);
  }
  int kept_column = kCodeColumn;

  QString pathFromIndex(const QModelIndex& index) const override {
    return index.siblingAtColumn(kept_column).data(Qt::DisplayRole).toString();
  }
};

/// The list under the field, in two columns.
QTreeView* NewList(QWidget* parent) {
  auto* list = new QTreeView(parent);
  list->setRootIsDecorated(false);
  list->setItemsExpandable(false);
  list->setUniformRowHeights(true);
  list->setAllColumnsShowFocus(true);
  list->setTextElideMode(Qt::ElideRight);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list->header()->setSectionsClickable(false);
  list->header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  return list;
}

void FitColumns(QTreeView* list, int code_width, int description_width, bool names) {
  list->setColumnHidden(kCodeColumn, names);
  list->header()->setStretchLastSection(true);
  list->header()->resizeSection(kCodeColumn, code_width);
  list->setMinimumWidth((names ? 0 : code_width) + description_width);
}

class Capitals : public QValidator {
 public:
  using QValidator::QValidator;
  State validate(QString& input, int&) const override {
    input = input.toUpper();
    return Acceptable;
  }
};

}  // namespace

CodeBox::CodeBox(QWidget* parent) : QComboBox(parent) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setMaxVisibleItems(kShownRows);
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setModel(new QStandardItemModel(0, 2, this));
  list_view_ = NewList(this);
  setView(list_view_);
  auto* completer = new Completer(model(), this);
  completion_view_ = NewList(nullptr);  // the completer's from here on
  completer->setPopup(completion_view_);
  setCompleter(completer);
  connect(lineEdit(), &QLineEdit::textEdited, this, [this](const QString& typed) {
    Q_EMIT CodeChanged();
    // Nothing is left to choose once the code stands there; Enter then moves on at the first press.
    const CodeList::Line* exact = list_.Find(typed);
    if (show_descriptions_ || exact == nullptr) return;
    const auto begins = [&](const CodeList::Line& line) { return line.code.startsWith(typed); };
    if (std::count_if(list_.lines.begin(), list_.lines.end(), begins) > 1) return;
    QMetaObject::invokeMethod(completion_view_, &QWidget::hide, Qt::QueuedConnection);
  });
  // Chosen from the list or from the completions.
  connect(this, &QComboBox::activated, this, [this] {
    lineEdit()->selectAll();
    Q_EMIT CodeChanged();
  });
}

void CodeBox::SetList(CodeList list) {
  const QString kept = code();
  list_ = std::move(list);
  auto* items = qobject_cast<QStandardItemModel*>(model());
  items->clear();
  items->setHorizontalHeaderLabels({QStringLiteral("Cod"), QStringLiteral("Denumire")});
  int code_width = fontMetrics().horizontalAdvance(QStringLiteral("Cod")), description_width = 0;
  for (const CodeList::Line& line : list_.lines) {
    auto* code = new QStandardItem(line.code);
    auto* description = new QStandardItem(line.description);
    description->setToolTip(line.description);
    code->setData(line.code + ' ' + line.description, kSearchRole);
    description->setData(line.description, kSearchRole);
    items->appendRow({code, description});
    code_width = std::max(code_width, fontMetrics().horizontalAdvance(line.code));
    description_width = std::max(description_width, fontMetrics().horizontalAdvance(line.description));
  }
  const int shown = show_descriptions_ ? kDescriptionColumn : kCodeColumn;
  setModelColumn(shown);
  auto* completing = static_cast<Completer*>(completer());
  completing->kept_column = shown;
  completing->setCompletionColumn(shown);
  const int margin = fontMetrics().averageCharWidth() * 3;
  description_width =
      std::min(description_width, fontMetrics().averageCharWidth() * kWidestDescription) + margin * 2;
  FitColumns(list_view_, code_width + margin, description_width, show_descriptions_);
  FitColumns(completion_view_, code_width + margin, description_width, show_descriptions_);
  SetCode(kept);
}

void CodeBox::ShowDescriptions(bool on) {
  show_descriptions_ = on;
  SetList(std::move(list_));
}

void CodeBox::TypeCapitals() { setValidator(new Capitals(this)); }

QString CodeBox::code() const {
  QString typed = currentText();
  if (!show_descriptions_) return typed;
  for (const CodeList::Line& line : list_.lines) {
    if (line.description.compare(typed, Qt::CaseInsensitive) == 0) return line.code;
  }
  return typed;
}

void CodeBox::SetCode(const QString& code) {
  const CodeList::Line* line = show_descriptions_ ? list_.Find(code) : nullptr;
  setCurrentIndex(-1);
  setEditText(line != nullptr ? line->description : code);
}

void CodeBox::wheelEvent(QWheelEvent* event) { event->ignore(); }

QString CodeBox::description() const {
  const CodeList::Line* line = list_.Find(code());
  return line == nullptr ? QString() : line->description;
}

}  // namespace ui
