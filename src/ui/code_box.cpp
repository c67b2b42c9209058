#include "ui/code_box.h"

#include <QCompleter>
#include <QTreeView>
#include <QValidator>
#include <QWheelEvent>

namespace ui {
namespace {

constexpr int kCodeColumn = 0, kDescriptionColumn = 1;
constexpr int kSearchRole = Qt::UserRole + 1;  // "code description", what typing is looked for in
constexpr int kWidestDescription = 80;         // characters; longer ones end in "…"
constexpr int kShownRows = 14;

/// The list itself as a model: opening a cell on the ten thousand goods codes costs nothing.
class ListModel : public QAbstractTableModel {
 public:
  ListModel(const CodeList* list, QObject* parent) : QAbstractTableModel(parent), list_(list) {}
  void Begin() { beginResetModel(); }
  void End() { endResetModel(); }

  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(list_->lines.size());
  }
  int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 2; }
  QVariant data(const QModelIndex& index, int role) const override {
    if (!index.isValid()) return {};
    const CodeList::Line& line = list_->lines[static_cast<std::size_t>(index.row())];
    const bool code = index.column() == kCodeColumn;
    if (role == Qt::DisplayRole || role == Qt::EditRole) return code ? line.code : line.description;
    if (role == Qt::ToolTipRole) return code ? QVariant() : line.description;
    if (role == kSearchRole) return code ? QVariant(line.code + ' ' + line.description) : line.description;
    return {};
  }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return section == kCodeColumn ? list_->code_heading : list_->description_heading;
  }

 private:
  const CodeList* list_;
};

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
  list->setTextElideMode(Qt::ElideMiddle);  // goods codes differ at the ends of their descriptions
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
  setModel(new ListModel(&list_, this));
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
    QMetaObject::invokeMethod(completion_view_, "hide", Qt::QueuedConnection);
  });
  // Chosen from the list or from the completions.
  connect(this, &QComboBox::activated, this, [this] {
    lineEdit()->selectAll();
    Q_EMIT CodeChanged();
  });
}

void CodeBox::SetList(CodeList list) {
  const QString kept = code();
  auto* items = static_cast<ListModel*>(model());
  items->Begin();
  list_ = std::move(list);
  items->End();
  // Measured are the longest only: measuring ten thousand texts would be felt.
  QString code = list_.code_heading, description = list_.description_heading;
  for (const CodeList::Line& line : list_.lines) {
    if (line.code.size() > code.size()) code = line.code;
    if (line.description.size() > description.size()) description = line.description;
  }
  const int code_width = fontMetrics().horizontalAdvance(code);
  int description_width = fontMetrics().horizontalAdvance(description.left(kWidestDescription));
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

void CodeBox::showPopup() {
  QComboBox::showPopup();
  const QString typed = currentText();
  if (typed.isEmpty()) return;
  const auto shown = [this](const CodeList::Line& line) {
    return show_descriptions_ ? line.description : line.code;
  };
  int at = -1;
  for (int i = 0; i < static_cast<int>(list_.lines.size()); ++i) {
    const QString text = shown(list_.lines[static_cast<std::size_t>(i)]);
    if (at < 0 && text.startsWith(typed, Qt::CaseInsensitive)) at = i;
    if (text == typed) {
      at = i;
      break;
    }
  }
  if (at < 0) return;
  const QModelIndex index = model()->index(at, modelColumn());
  list_view_->setCurrentIndex(index);
  list_view_->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

void CodeBox::wheelEvent(QWheelEvent* event) { event->ignore(); }

QString CodeBox::description() const {
  const CodeList::Line* line = list_.Find(code());
  return line == nullptr ? QString() : line->description;
}

}  // namespace ui
