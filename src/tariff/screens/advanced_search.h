#pragma once

#include "tariff/notes.h"
#include "ui/grid.h"
#include "ui/screen.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace tariff {

class NotesPane;

/// The advanced search: an expression looked up at once in the tariff and in the company's declaration
/// lines, with the explanatory notes of the tariff's current row.
class Frm_Cautare_Tarif : public ui::Screen {
  Q_OBJECT
 public:
  explicit Frm_Cautare_Tarif(ui::Context& context, QWidget* parent = nullptr);

  /// Puts the expression into its field and searches; an empty one is only put there.
  void SearchFor(const QString& expression);

 private:
  QWidget* Part(ui::Grid* grid, QLabel* status);
  void Search();
  void ShowNotes();

  ExplanatoryNotes notes_;
  QLineEdit* expression_;
  ui::RecordsetModel *tariff_rows_, *declaration_rows_;
  ui::Grid *tariff_grid_, *declaration_grid_;
  QLabel *tariff_status_, *declaration_status_;
  NotesPane* pane_;
  QPushButton* copy_ = nullptr;
};

/// The main window's search box: opens the advanced search beside the other windows with the text searched
/// for, or brings the one of `parent` forward. It deletes itself when closed.
Frm_Cautare_Tarif* OpenQuickSearch(ui::Context& context, const QString& text, QWidget* parent);

}  // namespace tariff
