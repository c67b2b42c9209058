#pragma once

#include <functional>
#include <optional>

#include "declarations/list/declaration_list.h"
#include "ui/list_screen.h"

namespace declarations {

/// Opens the editor, for reading only where `view` is set, and comes back when it is closed. `parent` is the
/// window to stand over.
using OpenEditor = std::function<void(const EditorOpening& opening, bool view, QWidget* parent)>;

/// The declaration list as a grid shows it.
class DeclarationListModel : public ui::GridModel {
  Q_OBJECT
 public:
  explicit DeclarationListModel(DeclarationList& list, QObject* parent = nullptr);

  /// The list's rows have just changed.
  void Reset();

  int Rows() const override { return list_->row_count(); }
  store::Value ValueAt(int row, int column) const override { return list_->ValueAt(row, column); }
  QString TextAt(int row, int column) const override;
  QString PictureAt(int row, int column) const override;
  void SortBy(int column, Qt::SortOrder order) override;

 private:
  DeclarationList* list_;
};

/// The declarations of the open company: the screen from which they are made, opened, printed and deleted.
class Frm_Intrastat_Lista : public ui::ListScreen {
  Q_OBJECT
 public:
  Frm_Intrastat_Lista(ui::Context& context, OpenEditor open_editor, QWidget* parent);
  ~Frm_Intrastat_Lista() override;

  /// Reads the list again; the current declaration stays the current one.
  void Refresh();

 private:
  enum class Lookup { kSearch, kFilter };

  void AddCommands();
  void AddSearchRow();
  void AddMenu();
  int current_row() { return grid()->current_row(); }
  void Edit(bool view);
  void Add(bool nil);
  void Delete();
  void PrintDeclaration();
  /// Reads by `action`, then goes back to the declaration that was current.
  void Reread(const std::function<void()>& action);
  void GoTo(const std::optional<Identity>& identity);
  void ShowFilter();
  /// Puts the cursor where the expression is typed; Enter then runs `lookup`.
  void BeginLookup(Lookup lookup);
  void Search(int from);
  void Filter();
  void ShowAll();
  int lookup_column() const;
  std::string lookup_text() const;

  DeclarationList list_;
  DeclarationListModel* model_;
  OpenEditor open_editor_;
  Lookup lookup_ = Lookup::kSearch;
};

}  // namespace declarations
