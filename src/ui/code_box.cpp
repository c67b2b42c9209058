#include "ui/code_box.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QStandardItemModel>
#include <QWheelEvent>

namespace ui {
namespace {

constexpr int kCodeRole = Qt::UserRole + 1;
constexpr int kDescriptionRole = Qt::UserRole + 2;

/// Completes by any part of code or description; what it leaves in the field is the code (or the name).
class Completer : public QCompleter {
 public:
  Completer(QAbstractItemModel* model, QObject* parent) : QCompleter(model, parent) {
    setCompletionMode(QCompleter::PopupCompletion);
    setFilterMode(Qt::MatchContains);
    setCaseSensitivity(Qt::CaseInsensitive);
    setMaxVisibleItems(12);
  }
  bool names = false;  // shows descriptions

  QString pathFromIndex(const QModelIndex& index) const override {
    return index.data(names ? kDescriptionRole : kCodeRole).toString();
  }
};

}  // namespace

CodeBox::CodeBox(QWidget* parent) : QComboBox(parent) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setMaxVisibleItems(16);
  setModel(new QStandardItemModel(this));
  auto* completer = new Completer(model(), this);
  setCompleter(completer);
  view()->setTextElideMode(Qt::ElideRight);
  connect(lineEdit(), &QLineEdit::textEdited, this, &CodeBox::CodeChanged);
  // A chosen line leaves its code in the field, not "code  description".
  connect(this, &QComboBox::activated, this, [this](int row) {
    const auto& line = list_.lines[static_cast<std::size_t>(row)];
    lineEdit()->setText(show_descriptions_ ? line.description : line.code);
    lineEdit()->selectAll();
    Q_EMIT CodeChanged();
  });
  connect(completer, qOverload<const QString&>(&QCompleter::activated), this, [this](const QString& text) {
    lineEdit()->setText(text);
    Q_EMIT CodeChanged();
  });
}

void CodeBox::SetList(CodeList list) {
  const QString kept = code();
  list_ = std::move(list);
  auto* items = qobject_cast<QStandardItemModel*>(model());
  items->clear();
  int widest = 0;
  for (const CodeList::Line& line : list_.lines) {
    const QString shown = show_descriptions_           ? line.description
                          : line.description.isEmpty() ? line.code
                                                       : line.code + QStringLiteral("   ") + line.description;
    auto* item = new QStandardItem(shown);
    item->setData(line.code, kCodeRole);
    item->setData(line.description, kDescriptionRole);
    item->setToolTip(line.description);
    items->appendRow(item);
    widest = std::max(widest, static_cast<int>(shown.size()));
  }
  view()->setMinimumWidth(std::min(widest + 4, 80) * fontMetrics().averageCharWidth());
  if (completer() != nullptr) {
    completer()->popup()->setMinimumWidth(view()->minimumWidth());
  }
  SetCode(kept);
}

void CodeBox::ShowDescriptions(bool on) {
  show_descriptions_ = on;
  static_cast<Completer*>(completer())->names = on;
  SetList(std::move(list_));
}

QString CodeBox::code() const {
  const QString typed = currentText();
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
