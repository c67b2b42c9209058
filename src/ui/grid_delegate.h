#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

#include "ui/grid_colours.h"

namespace ui {

class CodeBox;
class Grid;

/// Paints a grid's cells and edits them: a line, or a CodeBox where the column has a list. Enter and Tab
/// store and go on to the right, Esc leaves the cell as it was; arrows leave a cell whose editing began by
/// typing.
class GridDelegate : public QStyledItemDelegate {
  Q_OBJECT
 public:
  explicit GridDelegate(Grid* grid);

  void SetColours(const GridColours& colours) { colours_ = colours; }
  QWidget* editor() const { return editor_; }  ///< of the cell being edited; null
  /// Closes the editor of the cell being edited, if any; false where its text is to be kept and was refused.
  bool FinishOpen(bool keep);
  /// Whether arrow keys move the text cursor in the next cell to be edited (F2, double click).
  void KeepArrows(bool on) { keep_arrows_ = on; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Paint PaintOf(const QModelIndex& index, bool selected) const;
  void DrawTick(QPainter* painter, const QRect& cell, bool on, const QColor& colour) const;
  QRect TickBox(const QRect& cell) const;
  bool OnKey(QWidget* editor, QKeyEvent* key);
  /// Enter, Tab and Esc while the list of completions stands open.
  bool OnListKey(CodeBox* box, QKeyEvent* key);
  bool IsChanged(QWidget* editor, const QModelIndex& at) const;
  /// Closes the editor and stores what was typed; false where it was refused.
  bool Finish(QWidget* editor);

  Grid* grid_;
  GridColours colours_;
  mutable QPointer<QWidget> editor_;
  mutable QString before_;  ///< the edited cell's text
  mutable bool stored_ = false, filled_ = false;
  bool keep_arrows_ = false;
};

}  // namespace ui
