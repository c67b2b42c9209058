#pragma once

#include <QComboBox>

#include "ui/code_list.h"

class QTreeView;

namespace ui {

/// A look-up field: shows and keeps a code, offers code and description in a list (Alt+Down) and completes
/// while typing, by any part of either. A code that is not in the list stays as typed. Used in forms and as
/// the editor of code cells in grids.
class CodeBox : public QComboBox {
  Q_OBJECT
 public:
  explicit CodeBox(QWidget* parent = nullptr);

  void SetList(CodeList list);
  const CodeList& list() const { return list_; }

  /// Lists of names (counties, towns): the field shows the description and code() answers the code behind it.
  void ShowDescriptions(bool on);

  /// For lists whose codes are all in capitals: what is typed becomes capitals.
  void TypeCapitals();

  QString code() const;
  void SetCode(const QString& code);
  /// Description of the code now in the field; empty where it is unknown.
  QString description() const;

  void showPopup() override;  ///< at the code in the field, or the first that begins like it

 protected:
  /// A wheel that scrolls a screen must not change the codes that pass under it.
  void wheelEvent(QWheelEvent* event) override;

 Q_SIGNALS:
  void CodeChanged();  ///< typed or chosen

 private:
  CodeList list_;
  bool show_descriptions_ = false;
  QTreeView* list_view_;
  QTreeView* completion_view_;
};

}  // namespace ui
