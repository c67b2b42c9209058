#include "ui/grid.h"

#include <QClipboard>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <set>

#include "ui/code_box.h"
#include "ui/grid_delegate.h"
#include "ui/grid_frozen.h"
#include "ui/grid_layout.h"
#include "ui/grid_margin.h"
#include "ui/memory.h"
#include "ui/text.h"

namespace ui {
namespace {

constexpr char kColumnsKey[] = "coloane", kSortKey[] = "ordine";

class ArrangingScope {
 public:
  explicit ArrangingScope(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~ArrangingScope() { flag_ = before_; }

 private:
  bool& flag_;
  bool before_;
};

}  // namespace

Grid::Grid(Context& context, const QString& name, QWidget* parent)
    : QTableView(parent), context_(&context), name_(name), delegate_(new GridDelegate(this)) {
  setVerticalHeader(new GridMargin(this));
  setItemDelegate(delegate_);
  setSelectionMode(ExtendedSelection);
  setSelectionBehavior(SelectItems);
  setEditTriggers(AnyKeyPressed | EditKeyPressed | DoubleClicked);
  setShowGrid(false);  // the delegate draws lines that suit the row's colour
  setWordWrap(false);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollMode(ScrollPerPixel);
  setCornerButtonEnabled(false);
  SetRowHeight();
  QHeaderView* header = horizontalHeader();
  header->setSectionsMovable(true);
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setSortIndicator(-1, Qt::AscendingOrder);
  header->setSortIndicatorShown(true);
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  // A click on a heading sorts; it does not select the column.
  disconnect(header, &QHeaderView::sectionPressed, this, nullptr);
  disconnect(header, &QHeaderView::sectionEntered, this, nullptr);
  connect(header, &QHeaderView::sortIndicatorChanged, this, &Grid::OnSort);
  connect(header, &QHeaderView::sectionResized, this, [this] {
    if (arranging_) return;
    own_widths_ = true;
    SaveLayout();
  });
  connect(header, &QHeaderView::sectionMoved, this, [this] {
    if (!arranging_) SaveLayout();
  });
  connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
    if (!model_->CanEdit(index.row(), index.column())) Q_EMIT Activated(index.row());
  });
  ReadColours();
}

void Grid::SetGridModel(GridModel* model) {
  EndSearch();
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  own_widths_ = false;
  kept_row_ = kept_column_ = -1;
  {
    const ArrangingScope arranging(arranging_);
    setModel(model);
  }
  if (frozen_ != nullptr) frozen_->Bind();
  if (model_ == nullptr) return;
  editable_ = std::any_of(model_->columns().begin(), model_->columns().end(),
                          [](const Column& each) { return each.editable; });
  setTabKeyNavigation(editable_);
  connect(model_, &GridModel::modelAboutToBeReset, this, [this] {
    if (current_row() < 0) return;
    kept_row_ = current_row();
    kept_column_ = currentIndex().column();
  });
  connect(model_, &GridModel::modelReset, this, &Grid::OnReset);
  connect(model_, &GridModel::Refused, this,
          [this](const QString& message) { context_->session.host.prompter.Error(Utf8(message)); });
  ApplyLayout();
  OnReset();
}

void Grid::ApplyLayout() {
  const ArrangingScope arranging(arranging_);
  QHeaderView* header = horizontalHeader();
  const int character = fontMetrics().horizontalAdvance('0');
  const QFontMetrics heading(header->font());
  for (int i = 0; i < header->count(); ++i) {
    const Column& column = model_->columns()[static_cast<std::size_t>(i)];
    // Room for the whole caption, line by line, with its sort arrow.
    int caption = 0;
    for (const QString& line :
         model_->headerData(i, Qt::Horizontal, Qt::DisplayRole).toString().split('\n')) {
      caption = std::max(caption, heading.horizontalAdvance(line) + heading.height() + 10);
    }
    header->resizeSection(i, std::max(column.width * character + 14, caption));
    header->setSectionHidden(i, column.hidden);
  }
  own_widths_ = ApplyColumnsText(*header, model_->columns(), context_->memory.Get(name_, kColumnsKey));
  const auto [column, order] = ParseSortText(model_->columns(), context_->memory.Get(name_, kSortKey));
  const QSignalBlocker quiet(header);
  header->setSortIndicator(column, order);
  if (column >= 0) model_->sort(column, order);
}

void Grid::SaveLayout() {
  context_->memory.Set(name_, kColumnsKey, ColumnsText(*horizontalHeader(), model_->columns()));
}

void Grid::FillWidth() {
  if (!fills_width_ || own_widths_ || model_ == nullptr) return;
  const ArrangingScope arranging(arranging_);
  QHeaderView* header = horizontalHeader();
  int widest = -1;
  for (const int column : visible_columns()) {
    const Column& each = model_->columns()[static_cast<std::size_t>(column)];
    if (each.format != Format::kText) continue;
    if (widest < 0 || each.width > model_->columns()[static_cast<std::size_t>(widest)].width) widest = column;
  }
  if (widest < 0) return;
  const int character = fontMetrics().horizontalAdvance('0');
  const int least = std::min(model_->columns()[static_cast<std::size_t>(widest)].width * character + 14,
                             header->sectionSize(widest));
  const int others = header->length() - header->sectionSize(widest);
  header->resizeSection(widest, std::max(least, viewport()->width() - others));
}

void Grid::SetRowHeight() {
  const int height = fontMetrics().height() + 8;
  verticalHeader()->setMinimumSectionSize(height);
  verticalHeader()->setDefaultSectionSize(height);
  horizontalHeader()->setMinimumHeight(height);
}

void Grid::OnSort(int column, Qt::SortOrder order) {
  if (model_ == nullptr) return;
  // The row that the user is on stays the current one, wherever it goes.
  std::vector<store::Value> kept;
  const int row = current_row(), kept_column = currentIndex().column();
  if (row >= 0) {
    for (int i = 0; i < model_->columnCount(); ++i) kept.push_back(model_->ValueAt(row, i));
  }
  model_->sort(column, order);
  if (!kept.empty()) {
    auto same = [&](int candidate) {
      for (int i = 0; i < model_->columnCount(); ++i) {
        if (!(model_->ValueAt(candidate, i) == kept[static_cast<std::size_t>(i)])) return false;
      }
      return true;
    };
    const int rows = model_->Rows();
    int found = 0;
    while (found < rows && !same(found)) ++found;
    SelectRow(found < rows ? found : 0, kept_column);
  }
  context_->memory.Set(name_, kSortKey, SortText(model_->columns(), column, order));
  Q_EMIT Sorted(column);
}

void Grid::OnReset() {
  FillWidth();
  const int rows = model_->Rows();
  if (rows > 0) SelectRow(std::clamp(kept_row_, 0, rows - 1), kept_column_);
  kept_row_ = kept_column_ = -1;
  viewport()->update();
}

void Grid::SelectRow(int row, int column, ScrollHint where) {
  if (model_ == nullptr || row < 0 || row >= model_->Rows()) return;
  if (column < 0) column = currentIndex().column();
  if (column < 0 || isColumnHidden(column)) {
    const std::vector<int> shown = visible_columns();
    if (shown.empty()) return;
    column = shown.front();
  }
  const QModelIndex index = model_->index(row, column);
  const QRect place = visualRect(index);
  const bool in_view = place.top() >= 0 && place.bottom() < viewport()->height();
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  scrollTo(index, in_view ? EnsureVisible : where);
}

std::vector<int> Grid::selected_rows() const {
  std::set<int> rows;
  if (selectionModel() != nullptr) {
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
      for (int row = range.top(); row <= range.bottom(); ++row) rows.insert(rows.end(), row);
    }
  }
  return {rows.begin(), rows.end()};
}

std::vector<int> Grid::visible_columns() const {
  std::vector<int> columns;
  const QHeaderView* header = horizontalHeader();
  for (int visual = 0; visual < header->count(); ++visual) {
    const int column = header->logicalIndex(visual);
    if (!header->isSectionHidden(column)) columns.push_back(column);
  }
  return columns;
}

void Grid::FreezeFirstColumn() {
  frozen_ = new FrozenColumn(this);
  horizontalHeader()->setSectionsMovable(false);
  ReadColours();
  if (model_ != nullptr) frozen_->Bind();
}

void Grid::scrollTo(const QModelIndex& index, ScrollHint hint) {
  if (frozen_ == nullptr) return QTableView::scrollTo(index, hint);
  const int before = horizontalScrollBar()->value();
  QTableView::scrollTo(index, hint);
  if (index.column() == 0) {
    horizontalScrollBar()->setValue(before);  // in view as it is
    return;
  }
  const int covered = columnWidth(0) - columnViewportPosition(index.column());
  if (covered > 0) horizontalScrollBar()->setValue(horizontalScrollBar()->value() - covered);
}

void Grid::SetEmptyText(const QString& text) {
  empty_text_ = text;
  viewport()->update();
}

void Grid::ReadColours() {
  delegate_->SetColours(GridColours::From(context_->session.settings));
  if (frozen_ != nullptr) frozen_->delegate()->SetColours(GridColours::From(context_->session.settings));
  viewport()->update();
}

QString Grid::SelectedText() const {
  if (model_ == nullptr) return {};
  const QItemSelection selection = selectionModel()->selection();
  const std::vector<int> rows = selected_rows();
  std::vector<int> columns;
  for (const int column : visible_columns()) {
    if (std::any_of(selection.begin(), selection.end(), [column](const QItemSelectionRange& range) {
          return range.left() <= column && column <= range.right();
        })) {
      columns.push_back(column);
    }
  }
  QString text;
  for (const int row : rows) {
    for (const int column : columns) {
      if (column != columns.front()) text += '\t';
      if (!selectionModel()->isSelected(model_->index(row, column))) continue;
      const Format format = model_->columns()[static_cast<std::size_t>(column)].format;
      QString cell;
      if (format == Format::kTick) {
        cell = model_->ValueAt(row, column).ToBoolean() ? QStringLiteral("Da") : QStringLiteral("Nu");
      } else if (RightAligned(format)) {
        cell = ForEditing(model_->ValueAt(row, column), format);
      } else {
        cell = model_->TextAt(row, column);
      }
      text += cell.replace('\t', ' ').replace('\r', "").replace('\n', ' ');
    }
    text += '\n';
  }
  return text;
}

bool Grid::MoveOn(int step) {
  const std::vector<int> columns = visible_columns();
  const int count = static_cast<int>(columns.size()), rows = model_ == nullptr ? 0 : model_->Rows();
  if (count == 0 || !currentIndex().isValid()) return false;
  int row = current_row();
  int at =
      static_cast<int>(std::find(columns.begin(), columns.end(), currentIndex().column()) - columns.begin());
  for (int tried = 0; tried < 2 * count; ++tried) {
    at += step;
    if (at < 0 || at >= count) {
      row += step;
      at = step > 0 ? 0 : count - 1;
    }
    if (row < 0 || row >= rows) break;
    if (!model_->CanEdit(row, columns[static_cast<std::size_t>(at)])) continue;
    SelectRow(row, columns[static_cast<std::size_t>(at)]);
    return true;
  }
  if (row >= rows) Q_EMIT PastEnd();
  return false;
}

void Grid::MoveBy(int rows, int columns) {
  const std::vector<int> shown = visible_columns();
  if (shown.empty() || !currentIndex().isValid()) return;
  const int last = static_cast<int>(shown.size()) - 1;
  const int at =
      static_cast<int>(std::find(shown.begin(), shown.end(), currentIndex().column()) - shown.begin());
  SelectRow(std::clamp(current_row() + rows, 0, model_->Rows() - 1),
            shown[static_cast<std::size_t>(std::clamp(at + columns, 0, last))]);
}

bool Grid::Store(int row, int column, const QString& text) {
  try {
    return model_->setData(model_->index(row, column), text, Qt::EditRole);
  } catch (const store::Error& error) {
    session::ShowError(context_->session, error);
    return false;
  }
}

void Grid::ToggleTick(const QModelIndex& index) {
  const bool on = model_->ValueAt(index.row(), index.column()).ToBoolean();
  Store(index.row(), index.column(), on ? QStringLiteral("0") : QStringLiteral("1"));
}

bool Grid::CommitEdit() { return delegate_->FinishOpen(true); }
void Grid::RevertEdit() { delegate_->FinishOpen(false); }

bool Grid::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  // Arrows belong to the text only where the user went into it on purpose.
  if (trigger != NoEditTriggers) delegate_->KeepArrows(trigger != AnyKeyPressed);
  return QTableView::edit(index, trigger, event);
}

void Grid::OpenCodes() {
  edit(currentIndex(), EditKeyPressed, nullptr);
  if (auto* box = qobject_cast<CodeBox*>(delegate_->editor())) box->showPopup();
}

bool Grid::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && searching_) {
    // While searching, Esc ends the search and letters are searched for, whatever they mean to the screen.
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool plain = (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    if (key->key() == Qt::Key_Escape || key->key() == Qt::Key_Backspace || key->key() == Qt::Key_Return ||
        key->key() == Qt::Key_Enter || (plain && !key->text().isEmpty() && key->text().front().isPrint())) {
      event->accept();
      return true;
    }
  }
  return QTableView::event(event);
}

void Grid::keyPressEvent(QKeyEvent* key) {
  if (model_ == nullptr) return QTableView::keyPressEvent(key);
  if (searching_ && SearchKey(key)) return key->accept();
  const QModelIndex at = currentIndex();
  const bool can_edit = at.isValid() && model_->CanEdit(at.row(), at.column());
  if (key->matches(QKeySequence::Copy)) {
    QApplication::clipboard()->setText(SelectedText());
  } else if (key->matches(QKeySequence::Paste)) {
    if (editable_ && at.isValid()) {
      Q_EMIT Pasted(at.row(), at.column(), QApplication::clipboard()->text());
    }
  } else if (key->matches(QKeySequence::Find)) {
    StartSearch();
  } else if (key->key() == Qt::Key_F3) {
    SearchNext();
  } else if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
    if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return key->ignore();
    if (can_edit) {
      MoveOn(1);
    } else if (at.isValid()) {
      Q_EMIT Activated(at.row());
    }
  } else if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
    if (!MoveOn(key->key() == Qt::Key_Tab ? 1 : -1)) return key->ignore();
  } else if (can_edit && key->key() == Qt::Key_Down && (key->modifiers() & Qt::AltModifier) != 0) {
    OpenCodes();
  } else if (can_edit && key->key() == Qt::Key_Space &&
             model_->columns()[static_cast<std::size_t>(at.column())].format == Format::kTick) {
    ToggleTick(at);
  } else {
    return QTableView::keyPressEvent(key);
  }
  key->accept();
}

void Grid::keyboardSearch(const QString& text) {
  if (editable_ || text.trimmed().isEmpty()) return;
  StartSearch();
  if (searching_) Search(text, 0);
}

void Grid::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (empty_text_.isEmpty() || (model_ != nullptr && model_->DataRows() > 0)) return;
  QPainter painter(viewport());
  QColor text = palette().text().color();
  painter.setPen(Blend(palette().base().color(), text, 0.75));
  painter.drawText(viewport()->rect().adjusted(32, 32, -32, -32), int{Qt::AlignCenter} | Qt::TextWordWrap,
                   empty_text_);
}

void Grid::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) SetRowHeight();
}

void Grid::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  FillWidth();
}

void Grid::updateGeometries() {
  QTableView::updateGeometries();
  if (frozen_ != nullptr) frozen_->Follow();
}

void Grid::RepaintRow(int row) {
  if (row < 0) return;
  viewport()->update(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
  verticalHeader()->viewport()->update(0, rowViewportPosition(row), verticalHeader()->width(),
                                       rowHeight(row));
  if (frozen_ != nullptr) frozen_->viewport()->update();
}

void Grid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (current.row() == previous.row()) return;
  RepaintRow(previous.row());
  RepaintRow(current.row());
  Q_EMIT CurrentRowChanged(current.row());
}

void Grid::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  const QItemSelection all = selectionModel()->selection();
  const bool block = all.size() > 1 || (all.size() == 1 && (all[0].width() > 1 || all[0].height() > 1));
  if (block != has_block_) {
    has_block_ = block;
    viewport()->update();
  }
}

}  // namespace ui
