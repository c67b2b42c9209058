#include "import/worksheet.h"

#include "platform/encoding.h"
#include "platform/spreadsheet/sheet.h"

namespace importer {
namespace {

std::vector<ColumnRule> ReadRules(store::Connection& company, std::string_view Nume_Structura) {
  store::Recordset rows = company.Query("SELECT * FROM [StructuraFisiereContinut] WHERE Nume_Structura ='" +
                                        std::string(Nume_Structura) + "'");
  std::vector<ColumnRule> rules;
  for (; !rows.eof(); rows.MoveNext()) {
    ColumnRule rule;
    rule.Dest_ColumnName = rows["Dest_ColumnName"].ToText();
    rule.Exista_Coloana = rows["Exista_Coloana"].ToBoolean();
    const store::Value number = rows["Numar_Coloana"];
    if (!number.is_null()) rule.Numar_Coloana = static_cast<int>(number.ToInteger());
    rule.Valoare_Implicita = rows["Valoare_Implicita"].ToText();
    rule.Marime_Maxima = rows["Marime_Maxima"].ToText();
    rules.push_back(std::move(rule));
  }
  return rules;
}

bool IsUsed(const ColumnRule& rule) { return rule.Exista_Coloana || !store::IsEmpty(rule.Valoare_Implicita); }

/// Names the first column of the template that fails by itself; empty where each alone is fine.
std::string WrongRule(store::Connection& source, const std::vector<ColumnRule>& rules,
                      const std::vector<std::string>& headings, std::string_view sheet) {
  for (const ColumnRule& rule : rules) {
    if (!IsUsed(rule)) continue;
    try {
      source.Query(BuildSelect({rule}, headings, sheet).statement);
    } catch (const store::Error& error) {
      return "In macheta, coloana " + rule.Dest_ColumnName + ": " + error.description();
    }
  }
  return "";
}

/// The sheets' names without the driver's "$".
std::vector<std::string> SheetsOf(store::Connection& source) {
  std::vector<std::string> names;
  for (const store::SchemaTable& table : source.Tables()) {
    names.push_back(table.name.substr(0, table.name.rfind('$')));
  }
  return names;
}

/// A reason that tells which file it is about.
std::string NamingFile(const std::string& reason, std::string_view path) {
  if (reason.find(platform::FileNameOf(path)) != std::string::npos) return reason;
  return "Fisierul " + std::string(path) + ": " + reason;
}

}  // namespace

store::Environment SourceEnvironment(session::Session& session) {
  store::Environment environment;
  environment.drives = &session.host.files.drives();
  return environment;
}

bool SheetList::Has(std::string_view sheet) const {
  return std::any_of(names.begin(), names.end(),
                     [sheet](const std::string& name) { return platform::EqualsNoCase(name, sheet); });
}

SheetList ReadSheetList(session::Session& session, std::string_view path) {
  SheetList list;
  if (!session.host.files.Exists(path)) {
    list.problem = "Nu exista fisierul : " + std::string(path);
    return list;
  }
  try {
    store::Connection source(SourceEnvironment(session));
    source.Open(store::SampleSheetString(path));
    list.names = SheetsOf(source);
  } catch (const store::Error& error) {
    list = {{}, NamingFile(error.description(), path)};
  }
  return list;
}

store::Recordset QueryFirst(store::Connection& source, std::string_view path, std::string_view sheet,
                            int rows) {
  try {
    return source.Query("SELECT TOP " + std::to_string(rows) + " * FROM [" + std::string(sheet) + "$]");
  } catch (const store::Error& error) {
    if (error.number() != store::kNoSuchTable) throw;
    std::string names;
    for (const std::string& name : SheetsOf(source)) names += (names.empty() ? "" : ", ") + name;
    throw store::Error(
        error.number(), error.source(),
        fmt::format("Fisierul {} nu are foaia \"{}\"; foile lui sunt: {}", path, sheet, names));
  }
}

std::vector<std::string> Headings(store::Connection& source, std::string_view path, std::string_view sheet) {
  const store::Recordset heading_row = QueryFirst(source, path, sheet, 1);
  std::vector<std::string> headings;
  headings.reserve(static_cast<std::size_t>(heading_row.field_count()));
  for (int i = 0; i < heading_row.field_count(); ++i) headings.push_back(heading_row.field(i).name);
  return headings;
}

Worksheet ReadThrough(store::Connection& source, std::string_view sheet,
                      const std::vector<std::string>& headings, const std::vector<ColumnRule>& rules,
                      int top) {
  Worksheet result;
  SelectText select = BuildSelect(rules, headings, sheet);
  if (!select.problem.empty()) {
    result.problem = select.problem;
    return result;
  }
  if (top > 0) select.statement.insert(sizeof("SELECT") - 1, " TOP " + std::to_string(top));
  try {
    result.rows = source.Query(select.statement);
  } catch (const store::Error&) {
    result.problem = WrongRule(source, rules, headings, sheet);
    if (result.problem.empty()) throw;
    return result;
  }
  result.heading_row = source.FirstRow(std::string(sheet) + "$");
  if (result.rows.record_count() == 0) {
    result.problem = "Foaia " + std::string(sheet) + " nu are nicio inregistrare sub capul de tabel";
  }
  return result;
}

Worksheet OpenWorksheet(session::Session& session, std::string_view path, std::string_view sheet,
                        std::string_view Nume_Structura) {
  Worksheet result;
  try {
    store::Connection source(SourceEnvironment(session));
    source.Open(store::ImportSheetString(path));
    const std::vector<std::string> headings = Headings(source, path, sheet);
    const std::vector<ColumnRule> rules = ReadRules(session.company, Nume_Structura);
    if (std::none_of(rules.begin(), rules.end(), IsUsed)) {
      result.problem = "Macheta " + std::string(Nume_Structura) +
                       " nu are nicio coloana bifata si nicio valoare implicita";
      return result;
    }
    result = ReadThrough(source, sheet, headings, rules);
  } catch (const store::Error& error) {
    result.problem = error.description();
  } catch (const platform::spreadsheet::SheetError& error) {
    result.problem = error.what();
  }
  if (!result.problem.empty()) result.problem = NamingFile(result.problem, path);
  return result;
}

}  // namespace importer
