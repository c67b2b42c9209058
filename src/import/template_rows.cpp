#include "import/template_rows.h"

#include "platform/encoding.h"

namespace importer {

std::string ShownDescription(std::string_view Dest_ColumnName, std::string_view Dest_ColumnDescription) {
  if (platform::EqualsNoCase(Dest_ColumnName, "Tara_Orig")) return "Tara Origine";
  return std::string(Dest_ColumnDescription);
}

bool AcceptColumnNumber(platform::Prompter& prompter, bool Exista_Coloana) {
  if (!Exista_Coloana) prompter.Error("Bifati coloana: Exista in fisierul excel");
  return Exista_Coloana;
}

bool AcceptRow(platform::Prompter& prompter, bool Exista_Coloana, std::optional<int> Numar_Coloana) {
  if (!Exista_Coloana || Numar_Coloana) return true;
  platform::ShowRequired(prompter, "Numar coloana fisier excel");
  return false;
}

bool ConfirmRowDelete(platform::Prompter& prompter) {
  return prompter.Ask("Stergeti inregistrarea ?", "RASPUNDETI", platform::Icon::kQuestion);
}

bool AcceptFromList(platform::Prompter& prompter, std::string_view value,
                    const std::vector<std::string>& list) {
  if (std::find(list.begin(), list.end(), value) != list.end()) return true;
  prompter.Error("Selectati o valoare din lista", "Mesaj");
  return false;
}

std::vector<std::string> ReadComboList(const session::Session& session, std::string_view control,
                                       std::string_view suffix) {
  const std::string path =
      session.UnderSystem("ComboBox\\" + std::string(control) + "." + std::string(suffix) + ".txt");
  if (!session.host.files.Exists(path)) return {};
  std::vector<std::string> items = platform::SplitLines(session.host.files.Read(path));
  std::erase_if(items, [](const std::string& item) { return store::IsEmpty(item); });
  return items;
}

bool ChangeRow(session::Session& session, std::string_view Nume_Structura, std::string_view Dest_ColumnName,
               const RowChange& change) {
  store::Recordset row = session.company.QueryForUpdate(
      "SELECT * FROM StructuraFisiereContinut WHERE Nume_Structura='" + std::string(Nume_Structura) +
      "' AND Dest_ColumnName='" + std::string(Dest_ColumnName) + "'");
  if (row.eof()) {
    session.host.prompter.Error("Macheta " + std::string(Nume_Structura) + " nu are coloana " +
                                std::string(Dest_ColumnName));
    return false;
  }
  const auto set_or_clear = [&](const char* field, const std::optional<std::string>& text) {
    if (text) row.Set(field, text->empty() ? store::Value() : store::Value(*text));
  };
  if (change.Numar_Coloana) {
    const bool present = *change.Numar_Coloana > 0;
    row.Set("Exista_Coloana", present);
    row.Set("Numar_Coloana", present ? store::Value(*change.Numar_Coloana) : store::Value());
  }
  set_or_clear("Valoare_Implicita", change.Valoare_Implicita);
  set_or_clear("Marime_Maxima", change.Marime_Maxima);
  row.Update();
  return true;
}

}  // namespace importer
