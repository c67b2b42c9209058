#pragma once

#include <QString>
#include <QWidget>
#include <map>

namespace ui {

class Grid;

/// Totals pinned under a grid, each under the column that it adds up, however columns are sized, moved,
/// hidden or scrolled. Put right below the grid in the same layout, without space between.
class TotalsRow : public QWidget {
  Q_OBJECT
 public:
  explicit TotalsRow(Grid* grid, QWidget* parent = nullptr);

  void SetText(int column, const QString& text);  ///< an empty one takes it away
  QString text(int column) const;
  void SetLabel(const QString& label);  ///< at the left end; "Total" at first

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  /// Where a column's text stands: its own cell, and as much of the empty ones left of it as it needs.
  QRect PlaceOf(int column) const;

  Grid* grid_;
  std::map<int, QString> texts_;
  QString label_;
};

}  // namespace ui
