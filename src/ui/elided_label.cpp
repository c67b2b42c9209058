#include "ui/elided_label.h"

#include <QHelpEvent>
#include <QToolTip>

namespace ui {

ElidedLabel::ElidedLabel(int characters, QWidget* parent) : QLabel(parent), characters_(characters) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * characters_, QLabel::minimumSizeHint().height()};
}

bool ElidedLabel::Fits() const { return fontMetrics().horizontalAdvance(text()) <= contentsRect().width(); }

void ElidedLabel::paintEvent(QPaintEvent* event) {
  if (Fits()) {
    QLabel::paintEvent(event);
    return;
  }
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(contentsRect(), Qt::AlignLeft | Qt::AlignVCenter,
                   fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && !Fits()) {
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
  }
  return QLabel::event(event);
}

}  // namespace ui
