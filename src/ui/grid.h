#pragma once

#include <QTableView>

#include "ui/context.h"
#include "ui/grid_model.h"

namespace ui {

/// The grid of every list and editor: row colours from the settings (the selected row keeps its own when the
/// focus leaves), problem marks in the margin, heading click sorts, widths, order and sort remembered, Ctrl+C
/// copies the selected block as tab-separated text, Ctrl+F searches as you type, F3 goes on.
class Grid : public QTableView {
  Q_OBJECT
 public:
  /// `name` is where the layout is remembered, usually the screen's name.
  Grid(Context& context, const QString& name, QWidget* parent = nullptr);

  /// The grid does not own the model.
  void SetGridModel(GridModel* model);
  GridModel* grid_model() const { return model_; }

  int current_row() const;  ///< -1: none
  void SelectRow(int row, int column = -1);
  std::vector<int> selected_rows() const;  ///< ascending

  /// Said in the middle of an empty grid.
  void SetEmptyText(const QString& text);
  /// Colours of the settings anew (after the settings dialog).
  void ReadColours();

  QString SelectedText() const;  ///< the selected block, tabs between cells, lines ended by \n
  void StartSearch();            ///< on the current column
  void SearchNext();

 Q_SIGNALS:
  void Activated(int row);                  ///< double click or Enter where the cell is not edited
  void SearchText(const QString& message);  ///< "In curs de cautare : abc", empty when it ends
  void SearchColumn(const QString& caption);
  void Pasted(int row, int column, const QString& text);  ///< Ctrl+V on an editable grid
  void Sorted(int column);

 private:
  GridModel* model_ = nullptr;
};

}  // namespace ui
