#include "declarations/editor/columns.h"

#include "declarations/lines/lines.h"
#include "platform/encoding.h"

namespace declarations {
namespace {

constexpr std::string_view kMoney = "##,##0.00";
constexpr std::string_view kQuantity = "##,##0.0000";
constexpr std::string_view kDay = "dd.mm.yyyy";
constexpr std::string_view kMoment = "dd.mm.yyyy hh:mm";

struct Known {
  std::string_view field;
  std::string_view format;
  bool read_only;
  std::string_view provenance_caption = {};  ///< for those that the editor's grid does not show
};

/// What the grid knows of the table's columns, beside their captions and types. The tariff, the checker, the
/// calculations and the import fill those that are read-only.
constexpr Known kKnown[] = {
    {"Record_ID", "", true},
    {"TIP", "", true},
    {"Cod_Fiscal", "", true},
    {"Anul", "", true},
    {"Luna", "", true},
    {"DataReceptiei", kDay, false},
    {"Descriere", "", false},
    {"Cod_NC", "", false},
    {"Descriere_NC", "", true},
    {"Cantitate", kQuantity, false},
    {"UM", "", false},
    {"Valoare_Valuta", kMoney, false},
    {"Moneda", "", false},
    {"Curs_Schimb", kQuantity, false},
    {"Val_Fiscala", kMoney, false},
    {"Val_Stat", kMoney, false},
    {"Tara_Orig", "", false},
    {"Tara_Exp", "", false},
    {"Tara_Dest", "", false},
    {"Net", kMoney, false},
    {"Cod_UMS", "", false},
    {"Val_UMS", kQuantity, false},
    {"Exista_UMS", "", true},
    {"Nat_Tranz", "", false},
    {"Incoterms", "", false},
    {"Mod_Transp", "", false},
    {"Factura_Numar", "", false},
    {"Factura_Data", kDay, false},
    {"VAT_ID", "", false},
    {"Probleme", "", true},
    {"PU", kQuantity, false},
    {"Net_Unitar", kQuantity, false},
    {"Raport_Stat", kQuantity, true},
    {"Transp_Document", "", false},
    {"Transport_Suma", kQuantity, false},
    {"Transport_Moneda", "", false},
    {"Transport_Curs", kQuantity, false},
    {"Document_Numar_Referinta", "", true, "Document Numar Referinta"},
    {"Document_Data_Referinta", kDay, true, "Document Data Referinta"},
    {"SourceFile", "", true, "Fisier sursa"},
    {"SourceFile_FullPath", "", true, "Cale fisier sursa"},
    {"Data_Preluare", kMoment, true, "Data preluare"},
    {"UserName", "", true, "Utilizator"},
};

const Known* FindKnown(std::string_view field) {
  for (const Known& known : kKnown) {
    if (platform::EqualsNoCase(known.field, field)) return &known;
  }
  return nullptr;
}

ColumnKind KindOf(store::ColumnType type) {
  if (store::IsNumeric(type)) return ColumnKind::kNumber;
  if (type == store::ColumnType::kDateTime) return ColumnKind::kDate;
  if (type == store::ColumnType::kYesNo) return ColumnKind::kYesNo;
  return ColumnKind::kText;
}

}  // namespace

calc::LoneMark EditorColumn::lone_mark() const {
  for (const std::string_view rate : {"Curs_Schimb", "Transport_Curs", "Raport_Stat"}) {
    if (platform::EqualsNoCase(field, rate)) return calc::LoneMark::kDecimal;
  }
  return calc::LoneMark::kThousands;
}

std::vector<EditorColumn> EditorColumns(const store::Recordset& lines, bool arrivals, bool provenance) {
  std::vector<EditorColumn> columns;
  for (int i = 0; i < lines.field_count(); ++i) {
    const store::FieldInfo& info = lines.field(i);
    EditorColumn& column = columns.emplace_back();
    column.field = info.name;
    column.caption = GridCaption(info.name, arrivals);
    column.kind = KindOf(info.type);
    column.size = info.type == store::ColumnType::kText ? info.size : 0;
    column.codes = tariff::FindCodeCheck(info.name);
    column.read_only = info.base_column.empty();
    const Known* known = FindKnown(info.name);
    if (known != nullptr) {
      column.format = known->format;
      column.read_only = column.read_only || known->read_only;
      if (provenance && column.caption.empty()) column.caption = known->provenance_caption;
      column.hidden = column.caption.empty();
    }
    if (column.caption.empty()) column.caption = info.name;
  }
  return columns;
}

std::string CodeListStatement(const tariff::CodeCheck& codes) {
  // The condition names the code's column: " WHERE [Tara_COD]='".
  std::string_view name = codes.condition.substr(std::string_view(" WHERE ").size());
  name = platform::Trim(name.substr(0, name.find('=')));
  if (name.starts_with('[')) name = name.substr(1, name.size() - 2);
  return fmt::format("{} ORDER BY [{}]", codes.select, name);
}

}  // namespace declarations
