#include "declarations/lines/lines.h"

#include <array>

#include "platform/encoding.h"

namespace declarations {
namespace {

struct Caption {
  std::string_view column;
  std::string_view arrivals;
  std::string_view dispatches;
};

constexpr std::array<Caption, 23> kCaptions = {{
    {"DataReceptiei", "Data receptiei", "Data livrarii"},
    {"Descriere", "Descriere / Denumire - Produse / Marfuri", "Descriere / Denumire - Produse / Marfuri"},
    {"Cod_NC", "Cod vamal", "Cod vamal"},
    {"Descriere_NC", "Descriere Cod vamal", "Descriere Cod vamal"},
    {"Cantitate", "Cantitate", "Cantitate"},
    {"UM", "UM", "UM"},
    {"Valoare_Valuta", "Valoare Valuta", "Valoare Valuta"},
    {"Moneda", "Moneda", "Moneda"},
    {"Curs_Schimb", "Curs schimb", "Curs schimb"},
    {"Val_Fiscala", "Valoare Fiscala", "Valoare Fiscala"},
    {"Val_Stat", "Valoare Statistica", "Valoare Statistica"},
    {"Tara_Orig", "Tara Orig", "Tara Orig"},
    {"Tara_Exp", "Tara Exp", "Tara Exp"},
    {"Tara_Dest", "Tara Dest", "Tara Dest"},
    {"Net", "Net [Kg]", "Net [Kg]"},
    {"Cod_UMS", "UM Supl", "UM Supl"},
    {"Val_UMS", "Cantitate Supl", "Cantitate Supl"},
    {"Nat_Tranz", "Nat Tranz", "Nat Tranz"},
    {"Incoterms", "Cond livrare", "Cond livrare"},
    {"Mod_Transp", "Mod transp", "Mod transp"},
    {"Factura_Numar", "Factura Numar", "Factura Numar"},
    {"Factura_Data", "Document Data", "Document Data"},
    {"VAT_ID", "Exp TVA cod", "Dest TVA cod"},
}};

std::string Filter(const Identity& identity, std::string_view type_equals, bool with_fiscal_code) {
  std::string filter(type_equals);
  filter += identity.TIP;
  filter += '\'';
  if (with_fiscal_code) filter += " AND [Cod_Fiscal]='" + identity.Cod_Fiscal + "'";
  filter += " AND [Anul]=" + std::to_string(identity.Anul);
  filter += " AND [Luna]=" + std::to_string(identity.Luna);
  return filter;
}

}  // namespace

std::string IdentityFilter(const Identity& identity) { return Filter(identity, " WHERE [TIP]='", true); }

std::string EditorFilter(const Identity& identity) { return Filter(identity, " WHERE [TIP] ='", false); }

const char kEditorColumns[] =
    "TIP,Cod_Fiscal,Anul,Luna,DataReceptiei,Descriere,Cod_NC,Descriere_NC,Cantitate,UM,Valoare_Valuta,Moneda,"
    "Curs_Schimb,Val_Fiscala,Val_Stat,Tara_Orig,Tara_Exp,Tara_Dest,Net,Cod_UMS,Val_UMS,Nat_Tranz,Incoterms,"
    "Mod_Transp,Factura_Numar,Factura_Data,VAT_ID,Probleme,Exista_UMS,PU,Net_Unitar,Record_ID,Raport_Stat,"
    "Transp_Document,Transport_Suma,Transport_Moneda,Transport_Curs";

const char kEditorShortColumns[] =
    "TIP,Cod_Fiscal,Anul,Luna,DataReceptiei,Descriere,Cod_NC,Descriere_NC,Cantitate,UM,Valoare_Valuta,Moneda,"
    "Curs_Schimb,Val_Fiscala,Val_Stat,Tara_Orig,Tara_Exp,Tara_Dest,Net,Cod_UMS,Val_UMS,Nat_Tranz,Incoterms,"
    "Mod_Transp,Factura_Numar,Factura_Data,VAT_ID,Probleme,Exista_UMS,PU,Net_Unitar,Record_ID,Raport_Stat";

const char kProvenanceColumns[] =
    "TIP,Cod_Fiscal,Anul,Luna,Record_ID,Cod_NC,Descriere_NC,Tara_Orig,Tara_Exp,Tara_Dest,Val_Fiscala,Val_"
    "Stat,"
    "Net,Cod_UMS,Val_UMS,Nat_Tranz,Incoterms,Mod_Transp,Document_Numar_Referinta,Document_Data_Referinta,"
    "Descriere,Cantitate,UM,Valoare_Valuta,Moneda,Curs_Schimb,VAT_ID,SourceFile,Data_Preluare,UserName,"
    "Probleme";

const char kCheckerColumns[] =
    "Record_ID,TIP,Cod_Fiscal,Anul,Luna,Cod_NC,Descriere_NC,Tara_Orig,Tara_Exp,Tara_Dest,Val_Fiscala,Val_"
    "Stat,"
    "Net,Exista_UMS,Cod_UMS,Val_UMS,Nat_Tranz,Incoterms,Mod_Transp,Probleme,VAT_ID";

const char kTotalsSelect[] =
    "SELECT SUM (Val_Fiscala), SUM(Val_Stat), SUM(Net), SUM(Valoare_Valuta) FROM INTRASTAT";

std::string GridCaption(std::string_view column, bool arrivals) {
  for (const Caption& caption : kCaptions) {
    if (platform::EqualsNoCase(caption.column, column)) {
      return std::string(arrivals ? caption.arrivals : caption.dispatches);
    }
  }
  return "";
}

}  // namespace declarations
