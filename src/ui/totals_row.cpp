#include "ui/totals_row.h"

#include <QHelpEvent>
#include <QScrollBar>
#include <QToolTip>

#include "ui/grid.h"

namespace ui {
namespace {

constexpr int kPadding = 4;  // as in the cells

}  // namespace

TotalsRow::TotalsRow(Grid* grid, QWidget* parent)
    : QWidget(parent), grid_(grid), label_(QStringLiteral("Total")) {
  QFont bold = font();
  bold.setBold(true);
  setFont(bold);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  const auto repaint = [this] { update(); };
  QHeaderView* header = grid_->horizontalHeader();
  connect(header, &QHeaderView::sectionResized, this, repaint);
  connect(header, &QHeaderView::sectionMoved, this, repaint);
  connect(header, &QHeaderView::geometriesChanged, this, repaint);
  connect(header, &QHeaderView::sectionCountChanged, this, repaint);
  connect(grid_->horizontalScrollBar(), &QScrollBar::valueChanged, this, repaint);
}

void TotalsRow::SetText(int column, const QString& text) {
  if (text.isEmpty()) {
    texts_.erase(column);
  } else {
    texts_[column] = text;
  }
  update();
}

QString TotalsRow::text(int column) const {
  const auto found = texts_.find(column);
  return found == texts_.end() ? QString() : found->second;
}

void TotalsRow::SetLabel(const QString& label) {
  label_ = label;
  update();
}

QSize TotalsRow::sizeHint() const { return {100, fontMetrics().height() + 8}; }

QRect TotalsRow::PlaceOf(int column) const {
  const QHeaderView* header = grid_->horizontalHeader();
  const int origin = mapFromGlobal(grid_->viewport()->mapToGlobal(QPoint(0, 0))).x();
  const int right = origin + header->sectionViewportPosition(column) + header->sectionSize(column) - kPadding;
  int left = origin + header->sectionViewportPosition(column) + kPadding;
  const int needed = fontMetrics().horizontalAdvance(text(column)) + 1;
  for (int visual = header->visualIndex(column) - 1; visual >= 0 && right - left < needed; --visual) {
    const int neighbour = header->logicalIndex(visual);
    if (header->isSectionHidden(neighbour)) continue;
    if (texts_.count(neighbour) != 0) break;
    left = origin + header->sectionViewportPosition(neighbour) + kPadding;
  }
  return {left, 0, right - left, height()};
}

void TotalsRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().window());
  painter.setPen(palette().mid().color());
  painter.drawLine(rect().topLeft(), rect().topRight());
  painter.setPen(palette().windowText().color());
  const int margin = mapFromGlobal(grid_->viewport()->mapToGlobal(QPoint(0, 0))).x();
  const int edge = margin + grid_->viewport()->width();
  int label_end = edge;
  painter.setClipRect(QRect(margin, 0, edge - margin, height()));
  const QHeaderView* header = grid_->horizontalHeader();
  for (const auto& [column, text] : texts_) {
    if (column >= header->count() || header->isSectionHidden(column)) continue;
    const QRect place = PlaceOf(column);
    if (place.right() < margin || place.left() > edge) continue;
    const QString shown = fontMetrics().elidedText(text, Qt::ElideRight, place.width());
    painter.drawText(place, int{Qt::AlignRight} | Qt::AlignVCenter, shown);
    label_end = std::min(label_end, place.right() - fontMetrics().horizontalAdvance(shown));
  }
  painter.setClipping(false);
  const QRect label(kPadding, 0, label_end - 2 * kPadding, height());
  if (label.width() >= fontMetrics().horizontalAdvance(label_)) {
    painter.drawText(label, int{Qt::AlignLeft} | Qt::AlignVCenter, label_);
  }
}

bool TotalsRow::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  auto* help = static_cast<QHelpEvent*>(event);
  for (const auto& [column, text] : texts_) {
    if (grid_->isColumnHidden(column)) continue;
    if (PlaceOf(column).contains(help->pos())) {
      QToolTip::showText(help->globalPos(), text, this);
      return true;
    }
  }
  QToolTip::hideText();
  return true;
}

}  // namespace ui
