#include "companies/company_defaults.h"

namespace companies {
namespace {

using session::DefaultValues;

struct DefaultColumn {
  const char* name;
  std::string DefaultValues::*field;
  const char* fallback;
};

constexpr DefaultColumn kColumns[] = {
    {"I_Incoterms", &DefaultValues::I_Incoterms, "CPT"}, {"I_Mod_Transp", &DefaultValues::I_Mod_Transp, "3"},
    {"I_Nat_Tranz", &DefaultValues::I_Nat_Tranz, "1.1"}, {"I_Tara_Exp", &DefaultValues::I_Tara_Exp, ""},
    {"O_Incoterms", &DefaultValues::O_Incoterms, "EXW"}, {"O_Mod_Transp", &DefaultValues::O_Mod_Transp, "3"},
    {"O_Nat_Tranz", &DefaultValues::O_Nat_Tranz, "1.1"}, {"O_Tara_Dest", &DefaultValues::O_Tara_Dest, ""},
};

std::string RowOf(std::string_view code) {
  return "SELECT * FROM Intrastat_Default WHERE Cod_Fiscal='" + std::string(code) + "'";
}

/// The current company's row, added where there was none.
store::Recordset OwnRow(session::Session& session) {
  const std::string& code = session.current.Cod_Fiscal;
  store::Recordset row = session.common.QueryForUpdate(RowOf(code));
  if (row.eof()) {
    row.AddNew();
    row.Set("Cod_Fiscal", code);
    row.Update();
  }
  return row;
}

}  // namespace

void SetariValoriDefault(session::Session& session, std::string_view Cod_Fiscal) {
  const store::Recordset row = session.common.Query(RowOf(Cod_Fiscal));
  if (row.eof()) return;
  for (const DefaultColumn& column : kColumns) {
    session.defaults.*column.field = store::TextOr(row[column.name], column.fallback);
  }
}

Fields ReadDefaults(session::Session& session) {
  std::vector<std::string> names;
  for (const DefaultColumn& column : kColumns) names.emplace_back(column.name);
  Fields fields(names);
  fields.ReadFrom(OwnRow(session));
  for (const DefaultColumn& column : kColumns) {
    if (store::IsEmpty(fields.Get(column.name))) fields.Set(column.name, column.fallback);
  }
  return fields;
}

bool SaveDefaults(session::Session& session, const Fields& fields) {
  try {
    store::Recordset row = OwnRow(session);
    Fields stored = fields;
    for (const char* name : {"I_Nat_Tranz", "O_Nat_Tranz"}) {
      // The choice list joins both digits by a dot; a code without second digit is filed without it.
      std::string code = fields.Get(name);
      if (code.ends_with('.')) code.pop_back();
      stored.Set(name, code);
    }
    stored.WriteTo(row);
    row.Update();
    SetariValoriDefault(session, session.current.Cod_Fiscal);
    return true;
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return false;
  }
}

}  // namespace companies
