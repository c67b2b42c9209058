#include "import/templates.h"

#include "import/template_rows.h"
#include "import/worksheet.h"
#include "platform/encoding.h"
#include "platform/spreadsheet/sheet.h"

namespace importer {

std::string ShapeText(std::string_view Nume_Structura) {
  std::string text = "SHAPE {SELECT * FROM StructuraFisiereAntet ";
  if (!Nume_Structura.empty()) text += "WHERE Nume_structura='" + std::string(Nume_Structura) + "'";
  text += "} AS ParentCMD ";
  text +=
      "APPEND ({SELECT Nume_Structura,Record_ID,Dest_ColumnDescription,Exista_Coloana, "
      "Numar_Coloana,Valoare_Implicita,Marime_Maxima,Format,Dest_ColumnName FROM StructuraFisiereContinut "
      "ORDER BY Sort_Order} AS ChildCMD ";
  text += "RELATE [Nume_Structura] TO [Nume_Structura])";
  return text;
}

void TemplateEditor::New() {
  header_ = session_->company.QueryForUpdate(ShapeText(""));
  header_.AddNew();
  opened_name_.clear();
}

bool TemplateEditor::Open(std::string_view Nume_Structura) {
  header_ = session_->company.QueryForUpdate(ShapeText(Nume_Structura));
  if (header_.eof()) return false;
  opened_name_ = header_["Nume_Structura"].ToText();
  return true;
}

bool TemplateEditor::Save() {
  platform::Prompter& prompter = session_->host.prompter;
  const store::Value name_value = header_["Nume_Structura"];
  const store::Value flow_value = header_["TIP"];
  if (store::IsEmpty(name_value)) platform::ShowRequired(prompter, "Nume Macheta");
  if (store::IsEmpty(flow_value)) platform::ShowRequired(prompter, "Se foloseste la");
  if (store::IsEmpty(name_value) || store::IsEmpty(flow_value)) return false;
  const std::string name = name_value.ToText();
  const std::string flow = flow_value.ToText();
  if (!AcceptFromList(prompter, flow, {"ACHIZITIE", "LIVRARE"})) return false;

  try {
    store::Connection& company = session_->company;
    store::Transaction transaction(company);
    header_.Update();
    if (!opened_name_.empty() && opened_name_ != name) {
      // The rows of a renamed template follow it.
      company.Execute("UPDATE StructuraFisiereContinut SET Nume_Structura='" + name +
                      "' WHERE Nume_structura='" + opened_name_ + "'");
    }
    if (opened_name_.empty() && columns().record_count() == 0) GenerateColumns(name);
    company.Execute(
        "DELETE FROM StructuraFisiereContinut "
        " WHERE Nume_structura='" +
        name + "' AND Dest_ColumnName = '" + (flow == "ACHIZITIE" ? "Tara_Dest" : "Tara_Exp") + "'");
    transaction.Commit();
    Open(name);
    return true;
  } catch (const store::Error& error) {
    prompter.Error(error.description());
    return false;
  }
}

void TemplateEditor::GenerateColumns(const std::string& Nume_Structura) {
  store::Recordset rows = session_->company.QueryForUpdate(
      "SELECT * FROM StructuraFisiereContinut WHERE Nume_structura='" + Nume_Structura + "'");
  for (const store::SchemaColumn& column : session_->company.Columns("Intrastat")) {
    if (column.description.empty()) continue;
    rows.AddNew();
    rows.Set("Nume_Structura", Nume_Structura);
    rows.Set("Dest_ColumnDescription", column.description);
    rows.Set("Dest_ColumnName", column.column_name);
    rows.Set("Sort_Order", column.ordinal_position);
    if (!store::IsEmpty(column.column_default)) {
      rows.Set("Valoare_Implicita", platform::ReplaceAll(column.column_default, "\"", ""));
    }
    if (column.character_maximum_length) {
      rows.Set("Marime_Maxima", *column.character_maximum_length);
      rows.Set("Format", "TEXT");
    } else if (column.numeric_precision) {
      rows.Set("Format", "NUMERIC");
    } else if (column.datetime_precision) {
      rows.Set("Format", "DATETIME");
    }
    rows.Update();
  }
}

bool DeleteTemplate(session::Session& session, std::string_view Nume_Structura) {
  platform::Prompter& prompter = session.host.prompter;
  const std::string name(Nume_Structura);
  if (!prompter.Ask("Stergeti modul de preluare ? " + name, "CONFIRMARE STERGERE",
                    platform::Icon::kQuestion)) {
    return false;
  }
  try {
    session.company.Execute("DELETE FROM [StructuraFisiereAntet] WHERE [Nume_structura]='" + name + "'");
  } catch (const store::Error& error) {
    prompter.Error(error.description());
    return false;
  }
  prompter.Info("Macheta a fost stearsa");
  return true;
}

SampleReading TrySample(session::Session& session, std::string_view path, std::string_view sheet) {
  if (!session.host.files.Exists(path)) return {std::nullopt, "NU EXISTA FISIERUL : " + std::string(path)};
  const std::string name(store::IsEmpty(sheet) ? kDefaultSheet : sheet);
  try {
    store::Connection source(SourceEnvironment(session));
    source.Open(store::SampleSheetString(path));
    const store::Recordset rows = QueryFirst(source, path, name, 2);
    Sample sample;
    for (int i = 0; i < rows.field_count(); ++i) {
      sample.columns.push_back({i + 1, rows.field(i).name, rows.eof() ? store::Value() : rows.Get(i)});
    }
    sample.label = "Numar coloane in fisierul excel : " + std::to_string(sample.columns.size());
    return {sample, ""};
  } catch (const store::Error& error) {
    return {std::nullopt, error.description()};
  } catch (const platform::spreadsheet::SheetError& error) {
    return {std::nullopt, error.what()};
  }
}

std::optional<Sample> ReadSample(session::Session& session, std::string_view path, std::string_view sheet) {
  const SampleReading reading = TrySample(session, path, sheet);
  if (!reading.sample) session.host.prompter.Error(reading.problem);
  return reading.sample;
}

}  // namespace importer
