#include "ui/grid_delegate.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPixmapCache>
#include <QToolTip>

#include "ui/code_box.h"
#include "ui/grid.h"
#include "ui/icons.h"

namespace ui {
namespace {

constexpr int kPadding = 4;
constexpr int kPicture = 16;
const QColor kProblem(0xd3, 0x2f, 0x2f);

constexpr char kNames[] = "names";  // a box whose text is kept as typed

QString EditorText(QWidget* editor) {
  if (auto* box = qobject_cast<CodeBox*>(editor)) {
    return box->property(kNames).toBool() ? box->currentText() : box->code();
  }
  if (auto* line = qobject_cast<QLineEdit*>(editor)) return line->text();
  return {};
}

/// Our icons take the theme's text colour; on a row they take the row's.
void DrawPicture(QPainter* painter, const QRect& rect, const QString& name, const QColor& colour) {
  const double ratio = painter->device()->devicePixelRatioF();
  const QString key = QStringLiteral("row/%1/%2/%3").arg(name, colour.name()).arg(ratio);
  QPixmap picture;
  if (!QPixmapCache::find(key, &picture)) {
    picture = Icon(name).pixmap(QSize(kPicture, kPicture), ratio);
    if (picture.isNull()) return;
    QPainter tint(&picture);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(QRect(QPoint(0, 0), picture.size()), colour);
    tint.end();
    QPixmapCache::insert(key, picture);
  }
  painter->drawPixmap(QRect(rect.left(), rect.center().y() - kPicture / 2 + 1, kPicture, kPicture), picture);
}

}  // namespace

GridDelegate::GridDelegate(Grid* grid) : QStyledItemDelegate(grid), grid_(grid) {}

Paint GridDelegate::PaintOf(const QModelIndex& index, bool selected) const {
  const bool current = index.row() == grid_->current_row();
  Paint paint = current ? colours_.current : colours_.Row(index.row());
  const GridModel& model = *grid_->grid_model();
  if (!current && !model.ProblemAt(index.row(), -1).isEmpty()) paint = Washed(paint, kProblem, 0.16);
  if (selected && grid_->has_block()) paint = Washed(paint, colours_.current.background, current ? 0 : 0.3);
  return paint;
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const GridModel& model = *grid_->grid_model();
  const Column& column = model.columns()[static_cast<std::size_t>(index.column())];
  const bool current_row = index.row() == grid_->current_row();
  const Paint paint = PaintOf(index, (option.state & QStyle::State_Selected) != 0);
  const QRect cell = option.rect;
  painter->save();
  painter->setClipRect(cell);
  painter->fillRect(cell, paint.background);
  painter->setPen(Blend(paint.background, paint.text, 0.14));
  painter->drawLine(cell.topRight(), cell.bottomRight());
  painter->drawLine(cell.bottomLeft(), cell.bottomRight());

  QRect inner = cell.adjusted(kPadding, 0, -kPadding, 0);
  const QString picture = model.PictureAt(index.row(), index.column());
  if (!picture.isEmpty()) {
    DrawPicture(painter, inner, picture, paint.text);
    inner.setLeft(inner.left() + kPicture + 4);
  }
  if (column.format == Format::kTick) {
    DrawTick(painter, cell, model.ValueAt(index.row(), index.column()).ToBoolean(), paint.text);
  } else {
    QString text = model.TextAt(index.row(), index.column());
    if (!text.isEmpty()) {
      text.replace('\r', "").replace('\n', ' ');
      // Only as much as could ever fit: descriptions of the tariff run to thousands of characters.
      const Qt::TextElideMode mode = column.ends_tell ? Qt::ElideMiddle : Qt::ElideRight;
      if (mode == Qt::ElideRight && text.size() > 4 * inner.width()) text.truncate(4 * inner.width());
      painter->setFont(option.font);
      painter->setPen(paint.text);
      painter->drawText(inner,
                        int{Qt::AlignVCenter | Qt::TextSingleLine} |
                            int{RightAligned(column.format) ? Qt::AlignRight : Qt::AlignLeft},
                        option.fontMetrics.elidedText(text, mode, inner.width()));
    }
  }
  if (!model.ProblemAt(index.row(), index.column()).isEmpty()) {
    const QPoint corner[] = {cell.topRight() - QPoint(8, 0), cell.topRight(), cell.topRight() + QPoint(0, 8)};
    painter->setPen(Qt::NoPen);
    painter->setBrush(current_row ? paint.text : kProblem);
    painter->drawConvexPolygon(corner, 3);
  }
  if (index == grid_->currentIndex()) {
    const bool focus = grid_->hasFocus();
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(paint.text, 1, focus ? Qt::SolidLine : Qt::DotLine));
    painter->drawRect(cell.adjusted(1, 1, -3, -3));
    if (focus) painter->drawRect(cell.adjusted(2, 2, -4, -4));
  }
  painter->restore();
}

QRect GridDelegate::TickBox(const QRect& cell) const {
  const int side = std::min(cell.height() - 8, 14);
  return {cell.center().x() - side / 2, cell.center().y() - side / 2, side, side};
}

void GridDelegate::DrawTick(QPainter* painter, const QRect& cell, bool on, const QColor& colour) const {
  const QRectF box = QRectF(TickBox(cell)).adjusted(0.5, 0.5, -0.5, -0.5);
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setBrush(Qt::NoBrush);
  painter->setPen(QPen(colour, 1.25));
  painter->drawRoundedRect(box, 2, 2);
  if (on) {
    painter->setPen(QPen(colour, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF points[] = {{box.left() + box.width() * 0.22, box.top() + box.height() * 0.52},
                              {box.left() + box.width() * 0.42, box.top() + box.height() * 0.74},
                              {box.left() + box.width() * 0.8, box.top() + box.height() * 0.26}};
    painter->drawPolyline(points, 3);
  }
  painter->setRenderHint(QPainter::Antialiasing, false);
}

QSize GridDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const int width = option.fontMetrics.horizontalAdvance(index.data().toString()) + 2 * kPadding + 4;
  return {width, option.fontMetrics.height() + 8};
}

bool GridDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip || !index.isValid()) {
    return QStyledItemDelegate::helpEvent(event, view, option, index);
  }
  QString tip = index.data(Qt::ToolTipRole).toString();
  const QString text = index.data().toString();
  if (tip.isEmpty() && option.fontMetrics.horizontalAdvance(text) > option.rect.width() - 2 * kPadding) {
    tip = QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());  // rich text wraps
  }
  QToolTip::showText(event->globalPos(), tip, view);
  return true;
}

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex& index) const {
  const Column& column = grid_->grid_model()->columns()[static_cast<std::size_t>(index.column())];
  if (column.format == Format::kTick) return nullptr;
  const CodeList* codes = column.codes ? column.codes() : nullptr;
  if (codes != nullptr) {
    auto* box = new CodeBox(parent);
    box->ShowDescriptions(column.names);
    box->setProperty(kNames, column.names);
    box->SetList(*codes);
    box->completer()->popup()->installEventFilter(const_cast<GridDelegate*>(this));
    box->setFrame(false);
    editor_ = box;
  } else {
    auto* line = new QLineEdit(parent);
    line->setFrame(false);
    line->setTextMargins(kPadding - 3, 0, kPadding - 3, 0);
    if (RightAligned(column.format)) line->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    editor_ = line;
  }
  editor_->setAutoFillBackground(true);
  stored_ = filled_ = false;
  return editor_;
}

void GridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  // Rows that change while a cell is being typed in leave it alone.
  if (filled_) return;
  filled_ = true;
  const QString text = index.data(Qt::EditRole).toString();
  before_ = text;
  if (auto* box = qobject_cast<CodeBox*>(editor)) {
    box->SetCode(text);
    box->lineEdit()->selectAll();
  } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
    line->setText(text);
    line->selectAll();
  }
}

void GridDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const {
  // A message box shown while storing takes the focus, which asks for storing once more.
  if (stored_) return;
  stored_ = true;
  if (IsChanged(editor, index)) grid_->Store(index.row(), index.column(), EditorText(editor));
}

bool GridDelegate::IsChanged(QWidget* editor, const QModelIndex& at) const {
  if (EditorText(editor) != before_) return true;
  const auto* line = qobject_cast<QLineEdit*>(editor);
  return line != nullptr && line->isModified() && grid_->grid_model()->TakesSameText(at.row(), at.column());
}

void GridDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex&) const {
  QRect place = option.rect.adjusted(0, 0, -1, -1);
  const int least =
      option.fontMetrics.averageCharWidth() * (qobject_cast<CodeBox*>(editor) != nullptr ? 12 : 6);
  if (place.width() < least) place.setWidth(least);
  editor->setGeometry(place);
}

bool GridDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                               const QModelIndex& index) {
  const Column& column = grid_->grid_model()->columns()[static_cast<std::size_t>(index.column())];
  if (column.format != Format::kTick || event->type() != QEvent::MouseButtonRelease) {
    return QStyledItemDelegate::editorEvent(event, model, option, index);
  }
  const auto* click = static_cast<QMouseEvent*>(event);
  if (click->button() != Qt::LeftButton || (index.flags() & Qt::ItemIsEditable) == 0) return false;
  if (!TickBox(option.rect).adjusted(-4, -4, 4, 4).contains(click->position().toPoint())) return false;
  grid_->ToggleTick(index);
  return true;
}

bool GridDelegate::Finish(QWidget* editor) {
  const QModelIndex at = grid_->currentIndex();
  const QString text = EditorText(editor);
  const bool changed = !stored_ && IsChanged(editor, at);
  stored_ = true;
  Q_EMIT closeEditor(editor, NoHint);
  return !changed || grid_->Store(at.row(), at.column(), text);
}

bool GridDelegate::FinishOpen(bool keep) {
  if (editor_ == nullptr || stored_) return true;
  if (keep) return Finish(editor_);
  stored_ = true;
  Q_EMIT closeEditor(editor_, RevertModelCache);
  return true;
}

bool GridDelegate::OnListKey(CodeBox* box, QKeyEvent* key) {
  // One press does: it takes the line chosen in the list, if any, and goes on.
  if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter && key->key() != Qt::Key_Tab) return false;
  QAbstractItemView* popup = box->completer()->popup();
  const QModelIndex chosen = popup->currentIndex();
  if (chosen.isValid()) box->lineEdit()->setText(box->completer()->pathFromIndex(chosen));
  popup->hide();
  return OnKey(box, key);
}

bool GridDelegate::OnKey(QWidget* editor, QKeyEvent* key) {
  const auto* box = qobject_cast<CodeBox*>(editor);
  if (key->modifiers() & (Qt::AltModifier | Qt::ControlModifier)) return false;
  auto leave = [&](auto move) {
    if (Finish(editor)) move();
    return true;
  };
  switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
      return leave([&] { grid_->MoveOn(1); });
    case Qt::Key_Backtab:
      return leave([&] { grid_->MoveOn(-1); });
    case Qt::Key_Escape:
      stored_ = true;
      Q_EMIT closeEditor(editor, RevertModelCache);
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down: {
      const int step = key->key() == Qt::Key_Up ? -1 : 1;
      return leave([&] { grid_->MoveBy(step, 0); });
    }
    case Qt::Key_Left:
    case Qt::Key_Right: {
      if (keep_arrows_ || box != nullptr) return false;
      const int step = key->key() == Qt::Key_Left ? -1 : 1;
      return leave([&] { grid_->MoveBy(0, step); });
    }
    default:
      return false;
  }
}

bool GridDelegate::eventFilter(QObject* watched, QEvent* event) {
  auto* editor = qobject_cast<QWidget*>(watched);
  auto* box = qobject_cast<CodeBox*>(editor_);
  if (box != nullptr && editor == box->completer()->popup()) {
    return event->type() == QEvent::KeyPress && OnListKey(box, static_cast<QKeyEvent*>(event));
  }
  if (editor != nullptr && editor == editor_ && event->type() == QEvent::KeyPress) {
    if (OnKey(editor, static_cast<QKeyEvent*>(event))) return true;
    // Neither the base's own keys nor, for a line, what the grid would do with them.
    return false;
  }
  return QStyledItemDelegate::eventFilter(watched, event);
}

}  // namespace ui
