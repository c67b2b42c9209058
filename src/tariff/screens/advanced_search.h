#pragma once

#include "tariff/notes.h"
#include "ui/grid.h"
#include "ui/list_screen.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTextBrowser;

namespace tariff {

class NotesPane;

/// The advanced search: an expression looked up at once in the tariff and in the company's declaration
/// lines, with the explanatory notes of the tariff's current row. Each list can be printed and exported; a
/// found line leads to its declaration.
class Frm_Cautare_Tarif : public ui::Screen {
  Q_OBJECT
 public:
  explicit Frm_Cautare_Tarif(ui::Context& context, QWidget* parent = nullptr);

  /// Puts the expression into its field and searches; an empty one is only put there.
  void SearchFor(const QString& expression);

 private:
  /// One of the two lists and what stands under it.
  struct List {
    ui::RecordsetModel* rows = nullptr;
    ui::Grid* grid = nullptr;
    QLabel* status = nullptr;
    QString title;                            ///< of prints and files; the expression follows
    std::vector<QPushButton*> commands = {};  ///< that need rows
  };

  QWidget* MakeList(List& list, const QString& name, std::vector<ui::Column> columns);
  QWidget* MakeNotes();
  void MakeLayout(QWidget* commands, QWidget* expression);
  List& ActiveList();  ///< the one with the focus, else the tariff's unless it alone is empty
  ui::GridContent ContentOf(const List& list) const;
  void Print(const List& list);
  void Export(const List& list);

  void Search(const QString& expression);
  void Show(List& list, const store::Recordset& rows, const std::string& status, const QString& nothing);
  QString NothingInTariff(const QString& expression);
  void ShowNotes();
  void OpenLine();

  ExplanatoryNotes notes_;
  QString searched_;  ///< what the lists show
  QLineEdit* expression_;
  List tariff_, declarations_;
  QTextBrowser* description_;  ///< of the tariff's current row, whole
  NotesPane* pane_;
  QPushButton* copy_ = nullptr;
};

/// The main window's search box: opens the advanced search beside the other windows with the text searched
/// for, or brings the one of `parent` forward. It deletes itself when closed.
Frm_Cautare_Tarif* OpenQuickSearch(ui::Context& context, const QString& text, QWidget* parent);

}  // namespace tariff
