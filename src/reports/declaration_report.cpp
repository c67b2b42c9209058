#include "reports/declaration_report.h"

#include "declarations/export.h"
#include "declarations/list/declaration_list.h"

namespace reports {
namespace {

std::string Today(const session::Session& session) {
  const platform::LocalTime now = session.host.clock.Now();
  return fmt::format("{:02}.{:02}.{:04}", now.day, now.month, now.year);
}

}  // namespace

Placeholders CommonPlaceholders(const session::Session& session) {
  return {{"Nume_Firma", session.current.Nume_Firma},
          {"Cod_Fiscal", session.current.Cod_Fiscal},
          {"Utilizator", session.user_name},
          {"Data", Today(session)}};
}

Placeholders DeclarationPlaceholders(session::Session& session, const declarations::Identity& identity) {
  Placeholders values = CommonPlaceholders(session);
  values["TIP"] = identity.TIP;
  values["Anul"] = std::to_string(identity.Anul);
  values["Luna"] = std::to_string(identity.Luna);
  values["Sens"] = declarations::DeclarationList::DirectionText(identity.TIP);
  values["Vedere"] = declarations::ItemView(identity, false);
  constexpr const char* kContact[] = {"Persoana_Intrastat", "Persoana_Functie", "Tel_Firma", "Email_Firma"};
  const store::Recordset row = session.common.Query(
      "SELECT Persoana_Intrastat, Persoana_Functie, Tel_Firma, Email_Firma FROM Firme WHERE Cod_Fiscal='" +
      session.current.Cod_Fiscal + "'");
  for (const char* field : kContact) values[field] = row.eof() ? "" : row[field].ToText();
  return values;
}

Report RunStatement(session::Session& session, const Definition& definition, const std::string& file,
                    const Placeholders& placeholders, Formatter formatter) {
  store::Recordset rows = session.company.Query(StatementOf(definition, file, placeholders));
  if (!definition.sort.empty()) rows.SetSort(definition.sort);
  return Report(definition, file, std::make_shared<RecordsetTable>(std::move(rows)), placeholders,
                std::move(formatter));
}

Footer FooterOf(const session::Session& session) {
  Footer footer;
  footer.publisher = session.publisher.NumeFirma;
  if (!session.publisher.Telefon.empty()) {
    footer.publisher += (footer.publisher.empty() ? "" : "   ") + ("Telefon : " + session.publisher.Telefon);
  }
  footer.user = session.user_name;
  footer.date = Today(session);
  return footer;
}

Definition PlainDefinition() {
  Definition plain;
  plain.title = "{Titlu}";
  plain.columns.emplace_back().field = "*";
  return plain;
}

}  // namespace reports
