#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "store/recordset.h"
#include "ui/code_list.h"
#include "ui/format.h"

namespace ui {

/// One column of a grid.
struct Column {
  std::string field;  ///< of the recordset; empty: the one at the column's position
  QString caption;
  Format format = Format::kText;
  int width = 14;  ///< first width, in characters; what the user makes of it is remembered
  bool hidden = false;
  bool editable = false;
  std::function<const CodeList*()> codes = {};  ///< look-up list of a code column
  bool names = false;                           ///< the list's descriptions are what the cell holds
  bool ends_tell = false;  ///< texts alike at their begin: one too long loses its middle, not its end
};

/// What a Grid shows. Rows and columns are those of the screen, hidden columns included.
class GridModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  explicit GridModel(std::vector<Column> columns, QObject* parent = nullptr);

  const std::vector<Column>& columns() const { return columns_; }
  int ColumnOf(std::string_view field) const;  ///< -1 where there is none

  virtual int Rows() const = 0;
  /// Rows that count and are exported: without a blank last one that waits to be typed in.
  virtual int DataRows() const { return Rows(); }
  virtual store::Value ValueAt(int row, int column) const = 0;
  /// A cell as typed; a tick as "1" or "0". False: refused, which has been shown (by Refuse or otherwise);
  /// the cell keeps what it had. May throw store::Error, which the grid shows.
  virtual bool SetTextAt(int row, int column, const QString& text);
  virtual bool CanEdit(int row, int column) const;
  /// Whether typing what the cell holds already is an entry too.
  virtual bool TakesSameText(int, int) const { return false; }
  /// What is wrong with a row (column -1) or a cell; shown as a mark in the margin, a tint and a tooltip.
  /// Asked for every cell painted.
  virtual QString ProblemAt(int row, int column) const;
  /// A picture before a cell's text; a name of ui::Icon.
  virtual QString PictureAt(int row, int column) const;
  /// A cell's text where it is not simply the formatted value ("ACHIZITIE" for I).
  virtual QString TextAt(int row, int column) const;
  virtual void SortBy(int column, Qt::SortOrder order);
  /// First row from `from` on (wrapping) whose column's text begins with `text`, without regard to case; -1.
  virtual int FindText(int column, const QString& text, int from) const;
  virtual bool CanSearch(int column) const;

  // QAbstractTableModel on top of the above
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  void sort(int column, Qt::SortOrder order) override;

 Q_SIGNALS:
  void Refused(const QString& message);  ///< for the user; the grid shows it

 protected:
  const Column& column(int index) const { return columns_[static_cast<std::size_t>(index)]; }
  /// For models that make their columns themselves, before any view sees them.
  void SetColumns(std::vector<Column> columns) { columns_ = std::move(columns); }
  /// Tells why a cell's text is not taken; false.
  bool Refuse(const QString& message);

 private:
  std::vector<Column> columns_;
};

/// A grid over a recordset. Edits, where a column allows them, go into the recordset (which a list of groups
/// holds in memory only, and a table stores on Update). Sorting, finding and filtering are the recordset's.
class RecordsetModel : public GridModel {
  Q_OBJECT
 public:
  RecordsetModel(std::vector<Column> columns, store::Recordset rows, QObject* parent = nullptr);

  void SetRows(store::Recordset rows);
  /// A recordset of its own position over the shown rows.
  store::Recordset& rows() { return rows_; }
  const store::Recordset& rows() const { return rows_; }
  /// "" shows all. Throws store::Error.
  void SetFilter(std::string_view criterion);

  int Rows() const override;
  store::Value ValueAt(int row, int column) const override;
  /// Stores the cell with the row's Update.
  bool SetTextAt(int row, int column, const QString& text) override;
  void SortBy(int column, Qt::SortOrder order) override;
  /// By the criterion [column] LIKE 'text*'.
  int FindText(int column, const QString& text, int from) const override;
  /// The criterion suits texts only.
  bool CanSearch(int column) const override;

 protected:
  int FieldOf(int column) const { return fields_[static_cast<std::size_t>(column)]; }

 private:
  void Bind();
  mutable store::Recordset rows_;
  std::vector<int> fields_;  ///< of each column; -1: not in the recordset
  std::string sort_;
};

}  // namespace ui
