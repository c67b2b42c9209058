#pragma once

#include <QPointer>
#include <QTableView>

#include "ui/context.h"
#include "ui/grid_model.h"

namespace ui {

class FrozenColumn;
class GridDelegate;

/// The grid of every list and editor: row colours from the settings (the selected row keeps its own when the
/// focus leaves), problem marks in the margin, heading click sorts, widths, order and sort remembered, Ctrl+C
/// copies the selected block as tab-separated text, Ctrl+F searches as you type, F3 goes on. Where nothing
/// can be edited, typing searches at once.
class Grid : public QTableView {
  Q_OBJECT
 public:
  /// `name` is where the layout is remembered, usually the screen's name.
  Grid(Context& context, const QString& name, QWidget* parent = nullptr);

  /// Another place of remembering, for screens that show several tables; before SetGridModel.
  void SetLayoutName(const QString& name) { name_ = name; }

  /// The grid does not own the model.
  void SetGridModel(GridModel* model);
  GridModel* grid_model() const { return model_; }

  int current_row() const { return currentIndex().row(); }  ///< -1: none
  /// `where` holds for a row that is not in view.
  void SelectRow(int row, int column = -1, ScrollHint where = EnsureVisible);
  std::vector<int> selected_rows() const;    ///< ascending
  std::vector<int> visible_columns() const;  ///< of the model, in the order shown

  /// Until the user sets widths, the widest text column takes what is left of the view; false lets the space
  /// stay empty (few narrow columns that belong together). Before SetGridModel.
  void SetFillsWidth(bool on) { fills_width_ = on; }
  /// The first column, which is not to be edited, stays in view however far the others are scrolled.
  void FreezeFirstColumn();
  /// Said in the middle of an empty grid.
  void SetEmptyText(const QString& text);
  const QString& empty_text() const { return empty_text_; }
  /// Colours of the settings anew (after the settings dialog).
  void ReadColours();

  /// The selected block, tabs between cells, lines ended by \n: numbers without grouping, ticks as Da and Nu.
  QString SelectedText() const;

  void StartSearch();  ///< on the current column
  void SearchNext();
  bool searching() const { return searching_; }

  /// Goes on to the next (1) or previous (-1) cell that can be edited, over the line's end. False at the
  /// last.
  bool MoveOn(int step);
  void MoveBy(int rows, int columns);  ///< over the cells shown; stops at the edge
  /// Gives a cell its typed text; a refusal or a failing store is shown and answers false.
  bool Store(int row, int column, const QString& text);
  void ToggleTick(const QModelIndex& index);
  /// Ends the typing in a cell, keeping what was typed, for commands that come by their keys. False where it
  /// was refused (shown).
  bool CommitEdit();
  void RevertEdit();  ///< the same, leaving the cell as it was
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  /// True while more than one cell is selected.
  bool has_block() const { return has_block_; }

 Q_SIGNALS:
  void Activated(int row);                  ///< double click or Enter where the cell is not edited
  void SearchText(const QString& message);  ///< "In curs de cautare : abc", empty when it ends
  void SearchColumn(const QString& caption);
  void Pasted(int row, int column, const QString& text);  ///< Ctrl+V on an editable grid
  void Sorted(int column);
  void CurrentRowChanged(int row);
  void PastEnd();  ///< Enter or Tab in the last cell that can be edited of the last row

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* key) override;
  void keyboardSearch(const QString& text) override;
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void updateGeometries() override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  void SetRowHeight();
  void ApplyLayout();
  void SaveLayout();
  void FillWidth();
  void OnSort(int column, Qt::SortOrder order);
  void OnReset();
  bool SearchKey(QKeyEvent* key);
  void Search(const QString& text, int from);
  int FindRow(const QString& text, int from) const;
  void EndSearch();
  void RepaintRow(int row);
  void OpenCodes();

  Context* context_;
  QString name_, empty_text_;
  QPointer<GridModel> model_;
  GridDelegate* delegate_;
  FrozenColumn* frozen_ = nullptr;
  bool editable_ = false;    ///< some column is
  bool own_widths_ = false;  ///< the user has set widths
  bool fills_width_ = true;
  bool arranging_ = false;  ///< the header is changed by us, not by the user
  bool has_block_ = false;
  int kept_row_ = -1, kept_column_ = -1;  ///< while the model resets
  bool searching_ = false, found_ = true;
  int search_column_ = -1;
  QString search_text_;
};

}  // namespace ui
