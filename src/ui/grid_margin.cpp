#include "ui/grid_margin.h"

#include "ui/grid.h"

namespace ui {

GridMargin::GridMargin(QWidget* parent) : QHeaderView(Qt::Vertical, parent) {
  setSectionsClickable(true);
  setHighlightSections(false);
  setSectionResizeMode(QHeaderView::Fixed);  // uniform rows: nothing is ever measured
}

QSize GridMargin::sizeHint() const { return {fontMetrics().height() + 8, 0}; }

void GridMargin::paintSection(QPainter* painter, const QRect& rect, int row) const {
  painter->save();
  painter->setClipRect(rect);
  painter->fillRect(rect, palette().window());
  painter->setPen(palette().mid().color());
  painter->drawLine(rect.topRight(), rect.bottomRight());
  painter->setRenderHint(QPainter::Antialiasing);
  const auto* grid = qobject_cast<const Grid*>(parentWidget());
  const GridModel* model = grid == nullptr ? nullptr : grid->grid_model();
  const double side = std::min(rect.width(), rect.height()) - 6;
  const QPointF middle = QRectF(rect).center();
  if (model != nullptr && !model->ProblemAt(row, -1).isEmpty()) {
    // A warning triangle: dark sign on amber, readable on light and dark margins.
    const double half = side / 2;
    const QPointF corners[] = {{middle.x(), middle.y() - half + 1},
                               {middle.x() + half, middle.y() + half - 1},
                               {middle.x() - half, middle.y() + half - 1}};
    painter->setPen(QPen(QColor(0x7a, 0x2e, 0x00), 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(QColor(0xff, 0xb3, 0x00));
    painter->drawConvexPolygon(corners, 3);
    painter->setPen(QPen(QColor(0x33, 0x14, 0x00), 1.6, Qt::SolidLine, Qt::RoundCap));
    painter->drawLine(QPointF(middle.x(), middle.y() - half * 0.25),
                      QPointF(middle.x(), middle.y() + half * 0.25));
    painter->drawPoint(QPointF(middle.x(), middle.y() + half * 0.6));
  } else if (model != nullptr && row >= model->DataRows()) {
    // A star: the row that begins a new one when typed in.
    painter->setPen(QPen(palette().windowText(), 1.4, Qt::SolidLine, Qt::RoundCap));
    for (const double degrees : {90.0, 30.0, -30.0}) {
      const QPointF arm = QLineF::fromPolar(side * 0.3, degrees).p2();
      painter->drawLine(middle - arm, middle + arm);
    }
  } else if (grid != nullptr && grid->current_row() == row) {
    const double half = side / 4;
    const QPointF corners[] = {{middle.x() - half * 0.7, middle.y() - half},
                               {middle.x() + half * 0.7, middle.y()},
                               {middle.x() - half * 0.7, middle.y() + half}};
    painter->setPen(Qt::NoPen);
    painter->setBrush(palette().windowText());
    painter->drawConvexPolygon(corners, 3);
  }
  painter->restore();
}

}  // namespace ui
