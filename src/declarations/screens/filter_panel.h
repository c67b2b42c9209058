#pragma once

#include <QWidget>

#include "declarations/editor/editor.h"

class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QPushButton;

namespace declarations {

/// The editor's filter row, and under it, when asked for, the row that sets one column of many lines. Only
/// what the user chose stands here; the screen runs it.
class FilterPanel : public QWidget {
  Q_OBJECT
 public:
  FilterPanel(Editor& editor, QWidget* parent);

  /// The columns to choose from, anew; what was chosen stays where the column is still there.
  void ShowColumns();
  Condition condition() const;
  QString update_column() const;  ///< field of CmbColoanaUpdate
  QString update_value() const;
  void Clear();  ///< no condition
  /// What the lines on show are filtered by, beside the row.
  void ShowFiltered(bool on);
  void ShowUpdate(bool on);
  void SetReadOnly();  ///< no updates
  /// Commands of the screen at the row's right end.
  void AddAtEnd(QWidget* widget);

 Q_SIGNALS:
  void FilterWanted();
  void AllWanted();
  void UpdateWanted();

 private:
  QPushButton* AddButton(QHBoxLayout* row, const char* name, const char* caption, const char* icon);
  void OnWhereColumn();
  void OnUpdateColumn(int index);

  Editor* editor_;
  QComboBox* where_column_;
  QComboBox* sign_;
  QLineEdit* where_value_;
  QComboBox* update_column_;
  QLineEdit* update_value_;
  QLineEdit* where_kind_;       ///< TXT_ColoanaWhere_Fel
  QLineEdit* update_kind_;      ///< TXT_ColoanaUpdate_Fel
  QLineEdit* sign_expression_;  ///< TXT_SemnExpresie
  QPushButton* all_;
  QPushButton* more_;
  QHBoxLayout* row_;
  QWidget* update_row_;
};

}  // namespace declarations
