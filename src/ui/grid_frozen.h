#pragma once

#include <QTableView>

namespace ui {

class Grid;
class GridDelegate;

/// The first column of a grid once more, over its left edge while the rest is scrolled away. It shares model
/// and selection with the grid, which keeps the focus; nothing is edited here.
class FrozenColumn : public QTableView {
  Q_OBJECT
 public:
  explicit FrozenColumn(Grid* grid);

  GridDelegate* delegate() const { return delegate_; }
  void Bind();    ///< to the grid's model
  void Follow();  ///< the grid's scrolling, size and column width

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  Grid* grid_;
  GridDelegate* delegate_;
};

}  // namespace ui
