#pragma once

#include <QHeaderView>

namespace ui {

/// The narrow margin left of a grid's rows: a mark at rows with a problem, an arrow at the current one.
class GridMargin : public QHeaderView {
  Q_OBJECT
 public:
  explicit GridMargin(QWidget* parent);

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int row) const override;
  QSize sizeHint() const override;
};

}  // namespace ui
