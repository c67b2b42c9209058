#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace declarations {

/// What identifies a declaration; every statement on lines filters on all four.
struct Identity {
  std::string TIP;         ///< "I" arrivals, "O" dispatches
  std::string Cod_Fiscal;  ///< as in Firme, prefix included
  int Anul = 0;
  int Luna = 0;

  bool arrivals() const { return TIP == "I"; }
};

/// " WHERE [TIP]='I' AND [Cod_Fiscal]='RO1' AND [Anul]=2026 AND [Luna]=3".
std::string IdentityFilter(const Identity& identity);
/// The editor's own filter, without the fiscal code: " WHERE [TIP] ='I' AND [Anul]=2026 AND [Luna]=3".
std::string EditorFilter(const Identity& identity);

/// Column lists of statements on Intrastat, in their exact order.
extern const char kEditorColumns[];       ///< the editor grid's
extern const char kEditorShortColumns[];  ///< the same without the four transport columns
extern const char kProvenanceColumns[];   ///< sorting and viewing by import provenance
extern const char kCheckerColumns[];
extern const char kTotalsSelect[];  ///< "SELECT SUM (Val_Fiscala), … FROM INTRASTAT"

/// Caption of a column in the editor's grid; empty for hidden ones. Some captions depend on the flow.
std::string GridCaption(std::string_view column, bool arrivals);

}  // namespace declarations
