#include "declarations/list/printed_declaration.h"

#include "declarations/export.h"
#include "declarations/lines/line_query.h"

namespace declarations {
namespace {

constexpr char kAmount[] = "##,##0.00", kDate[] = "dd.mm.yyyy";

struct Source {
  std::string_view column;     ///< of the lines
  std::string_view aggregate;  ///< of the export views; empty: lines only
  std::string_view caption;    ///< shorter than on screen, where there is more room than on a page
  std::string_view format = {};
  int width = 8;
};

constexpr Source kSources[] = {
    {"Factura_Numar", "", "Document", "", 10},
    {"Factura_Data", "", "Data", kDate, 10},
    {"Cod_NC", "Cod_NC", "Cod vamal", "", 9},
    {"Descriere", "Descriere1", "Descriere", "", 30},
    {"Valoare_Valuta", "", "Val. valuta", kAmount, 12},
    {"Moneda", "", "Mon.", "", 6},
    {"Val_Fiscala", "Val_Fiscala1", "Val. fiscala", kAmount, 13},
    {"Val_Stat", "Val_Stat1", "Val. stat.", kAmount, 13},
    {"Net", "Net1", "Net [Kg]", kAmount, 11},
    {"Val_UMS", "Val_UMS1", "Cant. supl.", kAmount, 10},
    {"Cod_UMS", "Cod_UMS", "UM", "", 6},
    {"Tara_Orig", "Tara_Orig", "Orig", "", 5},
    {"Tara_Exp", "Tara_Exp", "Exp", "", 5},
    {"Tara_Dest", "Tara_Dest", "Dest", "", 5},
    {"Nat_Tranz", "Nat_Tranz", "Nat", "", 5},
    {"Incoterms", "Incoterms", "Livr", "", 5},
    {"Mod_Transp", "Mod_Transp", "Tr", "", 5},
    {"VAT_ID", "", "Cod TVA", "", 14},
    // Prefix and number stand apart in the items of dispatches.
    {"", "Country_VAT_ID", "TVA", "", 5},
    {"", "VAT_ID1", "Cod TVA", "", 14},
};

}  // namespace

PrintedDeclaration ReadPrinted(session::Session& session, const Identity& identity,
                               const PrintCompany& company) {
  const bool detailed = company.XML_Detaliat;
  PrintedDeclaration printed;
  printed.title =
      fmt::format("DECLARATIE INTRASTAT - {} {} / {} - {} - {}", DeclarationList::DirectionText(identity.TIP),
                  identity.Anul, identity.Luna, company.Nume_Firma, company.Cod_Fiscal);
  printed.rows =
      session.company.Query(detailed ? BuiltInLineQuery(kEditorColumns).With(IdentityFilter(identity))
                                     : ItemQuery(identity, false));
  for (const Source& source : kSources) {
    const std::string_view field = detailed ? source.column : source.aggregate;
    // The home country's end of the way is the same on every line.
    if (field.empty() || field == (identity.arrivals() ? "Tara_Dest" : "Tara_Exp")) continue;
    if (printed.rows.FindField(field) < 0) continue;  // the partner, where it is not declared
    printed.columns.push_back(
        {std::string(field), std::string(source.caption), std::string(source.format), source.width});
  }
  return printed;
}

}  // namespace declarations
