#pragma once

#include <QPushButton>
#include <string>
#include <vector>

#include "tariff/find.h"
#include "ui/form.h"
#include "ui/list_screen.h"

class QButtonGroup;

namespace tariff {

/// What the find dialog narrows: a list's statement and the database that it reads.
struct FindRequest {
  struct Column {
    std::string name;  ///< as the statement writes it
    QString caption;
  };
  store::Connection* connection = nullptr;
  std::string select;
  std::vector<Column> columns;  ///< that can be searched, in the order shown
  int chosen = 0;
};

/// The request of a list over a recordset of `select`: the shown text columns, the current one chosen.
FindRequest FindIn(ui::ListScreen& list, store::Connection& connection, const std::string& select);

/// The find dialog of lists: an expression, the column and one of four ways to compare. Confirming narrows
/// the statement and reads it; where that fails the message is shown and the dialog stays.
class Frm_Cautare : public ui::Form {
  Q_OBJECT
 public:
  Frm_Cautare(ui::Context& context, FindRequest request, QWidget* parent = nullptr);

  // After acceptance.
  const std::string& select() const { return select_; }
  const store::Recordset& rows() const { return rows_; }
  QString summary() const;  ///< what was searched for, for the list's status line

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  FindOption option() const;
  void ShowHint();
  void Find();

  FindRequest request_;
  std::string select_;
  store::Recordset rows_;
  QComboBox* column_;
  QButtonGroup* options_;
  QLabel* hint_;
};

/// Gives a list over a recordset the commands that narrow it and show it whole again. `select` answers the
/// statement shown now, `show` takes another one with its rows.
struct FindCommands {
  std::function<FindRequest()> request;
  std::function<void(const std::string& select, const store::Recordset& rows)> show;
};
QPushButton* AddFindCommand(ui::ListScreen& list, FindCommands commands);

}  // namespace tariff
