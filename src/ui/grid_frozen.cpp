#include "ui/grid_frozen.h"

#include <QHeaderView>
#include <QScrollBar>

#include "ui/grid.h"
#include "ui/grid_delegate.h"

namespace ui {

FrozenColumn::FrozenColumn(Grid* grid) : QTableView(grid), grid_(grid), delegate_(new GridDelegate(grid)) {
  setItemDelegate(delegate_);
  setFocusPolicy(Qt::NoFocus);
  setFrameShape(NoFrame);
  setShowGrid(false);
  setWordWrap(false);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(grid->selectionMode());
  setSelectionBehavior(grid->selectionBehavior());
  setVerticalScrollMode(ScrollPerPixel);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  verticalHeader()->hide();
  horizontalHeader()->setSectionsClickable(false);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(grid->horizontalHeader()->defaultAlignment());
  connect(grid->verticalScrollBar(), &QScrollBar::valueChanged, verticalScrollBar(), &QScrollBar::setValue);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, grid->verticalScrollBar(), &QScrollBar::setValue);
  connect(grid->horizontalScrollBar(), &QScrollBar::valueChanged, this, &FrozenColumn::Follow);
  connect(grid->horizontalHeader(), &QHeaderView::sectionResized, this, &FrozenColumn::Follow);
  hide();
}

void FrozenColumn::Bind() {
  setModel(grid_->grid_model());
  if (model() == nullptr) return;
  const QItemSelectionModel* own = selectionModel();
  setSelectionModel(grid_->selectionModel());
  delete own;
  for (int column = 1; column < model()->columnCount(); ++column) setColumnHidden(column, true);
}

void FrozenColumn::Follow() {
  const bool needed = model() != nullptr && grid_->horizontalScrollBar()->value() > 0;
  if (needed) {
    const int frame = grid_->frameWidth(), width = grid_->columnWidth(0);
    verticalHeader()->setMinimumSectionSize(grid_->verticalHeader()->minimumSectionSize());
    verticalHeader()->setDefaultSectionSize(grid_->verticalHeader()->defaultSectionSize());
    horizontalHeader()->setFixedHeight(grid_->horizontalHeader()->height());
    setColumnWidth(0, width);
    setGeometry(frame + grid_->verticalHeader()->width(), frame, width,
                grid_->horizontalHeader()->height() + grid_->viewport()->height());
    verticalScrollBar()->setValue(grid_->verticalScrollBar()->value());
  }
  setVisible(needed);
}

void FrozenColumn::mousePressEvent(QMouseEvent* event) {
  QTableView::mousePressEvent(event);
  grid_->setFocus();
}

}  // namespace ui
