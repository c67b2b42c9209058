#include "declarations/list/printed_declaration.h"

#include "declarations/export.h"
#include "declarations/lines/line_query.h"

namespace declarations {
namespace {

constexpr char kAmount[] = "##,##0.00", kDate[] = "dd.mm.yyyy";

struct Source {
  std::string_view column;     ///< of the lines
  std::string_view aggregate;  ///< of the export views; empty: lines only
  std::string_view format = {};
  int width = 8;
};

constexpr Source kSources[] = {
    {"Factura_Numar", "", "", 10},
    {"Factura_Data", "", kDate, 10},
    {"Cod_NC", "Cod_NC", "", 9},
    {"Descriere", "Descriere1", "", 30},
    {"Valoare_Valuta", "", kAmount, 12},
    {"Moneda", "", "", 6},
    {"Val_Fiscala", "Val_Fiscala1", kAmount, 13},
    {"Val_Stat", "Val_Stat1", kAmount, 13},
    {"Net", "Net1", kAmount, 11},
    {"Val_UMS", "Val_UMS1", kAmount, 10},
    {"Cod_UMS", "Cod_UMS", "", 6},
    {"Tara_Orig", "Tara_Orig", "", 5},
    {"Tara_Exp", "Tara_Exp", "", 5},
    {"Tara_Dest", "Tara_Dest", "", 5},
    {"Nat_Tranz", "Nat_Tranz", "", 5},
    {"Incoterms", "Incoterms", "", 5},
    {"Mod_Transp", "Mod_Transp", "", 5},
    {"VAT_ID", "", "", 14},
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
    printed.columns.push_back({std::string(field), GridCaption(source.column, identity.arrivals()),
                               std::string(source.format), source.width});
  }
  // Prefix and number stand apart in the items of dispatches.
  if (printed.rows.FindField("VAT_ID1") >= 0) {
    printed.columns.push_back({"Country_VAT_ID", "Dest TVA tara", "", 5});
    printed.columns.push_back({"VAT_ID1", GridCaption("VAT_ID", false), "", 14});
  }
  return printed;
}

}  // namespace declarations
