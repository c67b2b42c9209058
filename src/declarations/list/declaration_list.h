#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "declarations/nil.h"
#include "session/session.h"
#include "store/recordset.h"

namespace declarations {

/// A column of the declaration list.
struct ListColumn {
  std::string_view field;    ///< of Lista_Intrastat
  std::string_view caption;  ///< heading
  std::string_view format;   ///< "##,##0.00", "##,##0" or empty
};

/// Row of the register that a printed declaration needs.
struct PrintCompany {
  std::string Cod_Fiscal, Nume_Firma;
  bool XML_Detaliat = false;  ///< lines one by one, else aggregated
};

/// The declaration list without its screen: one row a declaration of the open company, and the commands on
/// them. Rows count from 0 in the order shown. Messages and questions go to the session's prompter; database
/// errors are shown, never thrown.
class DeclarationList {
 public:
  /// `decimal_mark`: the user's, for typed numbers.
  DeclarationList(session::Session& session, std::string_view decimal_mark)
      : session_(&session), decimal_mark_(decimal_mark) {}

  bool Open();  ///< reads the list; a filter on show stays
  bool Sort();  ///< the same, newest first
  /// By one column, over whatever order the list was read in; -1 takes that away again.
  void SortBy(int column, bool descending);

  static const std::vector<ListColumn>& columns();  ///< in the grid's order
  int row_count() const { return static_cast<int>(rows_.record_count()); }
  store::Value ValueAt(int row, int column) const;
  /// "ACHIZITIE" and "LIVRARE" for the direction.
  static std::string_view DirectionText(std::string_view TIP) { return TIP == "I" ? "ACHIZITIE" : "LIVRARE"; }
  bool arrivals(int row) const;  ///< which of the two arrow pictures

  /// The declaration of a row; "Selectati un document" where there is no such row (-1: nothing selected).
  std::optional<Identity> Selected(int row) const;
  int RowOf(const Identity& identity) const;                 ///< -1 where it is not shown
  static std::string ModifyTitle(const Identity& identity);  ///< "Modificare Declaratie : I / 2026 / 3"
  static std::string ViewTitle(const Identity& identity);

  /// What the editor opens with.
  static EditorOpening Opening(const Identity& identity, bool view);
  /// To change the declaration of a line, at the line; nothing where the line is gone. Throws store::Error.
  static std::optional<EditorOpening> OpeningAt(session::Session& session, std::int64_t Record_ID);

  /// Deletes all lines of the declaration after a question; true when the list changed.
  bool Delete(int row);
  /// The company's row for printing; nothing where no row is selected or the register lacks it.
  std::optional<PrintCompany> Print(int row) const;
  void Hint() const;  ///< where files are generated

  /// First matching row from `from` on, wrapping; -1 where there is none (said so) or an input is missing.
  int Search(int column, std::string_view expression, int from) const;
  /// Shows only matching rows.
  bool Filter(int column, std::string_view expression);
  void ShowAll();
  bool filtered() const { return !filter_.empty(); }

  std::string CountText() const;     ///< "Inregistrari: 24"
  double total_Val_Fiscala() const;  ///< lei, over the rows shown

 private:
  bool Read(std::string_view order);
  /// Criterion by the column's type; nothing where an input is missing, which is said.
  std::optional<std::string> Criterion(int column, std::string_view expression) const;

  session::Session* session_;
  std::string decimal_mark_;
  mutable store::Recordset rows_;
  std::string order_, filter_, column_order_;
};

}  // namespace declarations
