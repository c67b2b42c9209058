#include "declarations/header.h"

namespace declarations {
namespace {

struct Field {
  std::string_view name;
  std::string Header::*member;
  bool of_agent;
};

constexpr Field kFields[] = {
    {"TXT_CodFiscal", &Header::TXT_CodFiscal, false},
    {"TXT_NumeCompanie", &Header::TXT_NumeCompanie, false},
    {"TXT_Nume_Prenume", &Header::TXT_Nume_Prenume, false},
    {"TXT_Nume_Pers", &Header::TXT_Nume_Pers, false},
    {"TXT_PozitieCompanie", &Header::TXT_PozitieCompanie, false},
    {"TXT_Tel", &Header::TXT_Tel, false},
    {"TXT_Fax", &Header::TXT_Fax, false},
    {"TXT_Email", &Header::TXT_Email, false},
    {"TXT_CUI_Dec", &Header::TXT_CUI_Dec, true},
    {"TXT_Nume_Dec", &Header::TXT_Nume_Dec, true},
    {"TXT_Strada_Dec", &Header::TXT_Strada_Dec, true},
    {"TXT_Nr_Dec", &Header::TXT_Nr_Dec, true},
    {"TXT_BL_Dec", &Header::TXT_BL_Dec, true},
    {"TXT_Sc_Dec", &Header::TXT_Sc_Dec, true},
    {"TXT_Ap_Dec", &Header::TXT_Ap_Dec, true},
    {"TXT_Sect_Dec", &Header::TXT_Sect_Dec, true},
    {"TXT_Judet_Dec", &Header::TXT_Judet_Dec, true},
    {"TXT_Oras_Dec", &Header::TXT_Oras_Dec, true},
    {"TXT_CodPostal_Dec", &Header::TXT_CodPostal_Dec, true},
};

const Field* FindField(std::string_view name) {
  for (const Field& field : kFields) {
    if (field.name == name) return &field;
  }
  return nullptr;
}

std::string AgentFile(const session::Session& session) {
  return session.UnderSystem("Default\\Frm_INTRASTAT.txt");
}

}  // namespace

std::string* HeaderField(Header& header, std::string_view name) {
  const Field* field = FindField(name);
  return field == nullptr ? nullptr : &(header.*field->member);
}

bool IsAgentField(std::string_view name) {
  const Field* field = FindField(name);
  return field != nullptr && field->of_agent;
}

void CopyDeclaringAgent(const Header& from, Header& to) {
  to.Check_Dec_Tert = from.Check_Dec_Tert;
  for (const Field& field : kFields) {
    if (field.of_agent) to.*field.member = from.*field.member;
  }
}

EditorDefaults ReadEditorDefaults(session::Session& session) {
  EditorDefaults defaults;
  Header& header = defaults.header;
  header.TXT_CodFiscal = session.current.Cod_Fiscal;
  header.TXT_NumeCompanie = session.current.Nume_Firma;
  const store::Recordset row =
      session.common.Query("SELECT * FROM Firme WHERE Cod_Fiscal='" + session.current.Cod_Fiscal + "'");
  if (row.record_count() == 0) return defaults;
  header.TXT_Nume_Prenume = row["Persoana_Intrastat"].ToText();
  header.TXT_PozitieCompanie = row["Persoana_Functie"].ToText();
  header.TXT_Tel = row["Tel_Firma"].ToText();
  header.TXT_Fax = row["Fax_Firma"].ToText();
  header.TXT_Email = row["Email_Firma"].ToText();
  defaults.ValoareStatistica = row["ValoareStatistica"].ToBoolean();
  defaults.XML_Detaliat = row["XML_Detaliat"].ToBoolean();
  return defaults;
}

bool ReadDeclaringAgent(session::Session& session, Header& header) {
  const std::string path = AgentFile(session);
  if (!session.host.files.Exists(path)) return true;
  try {
    for (const std::string& line : platform::SplitLines(session.host.files.Read(path))) {
      const std::size_t equals = line.find('=');
      if (equals == std::string::npos) continue;
      const Field* field = FindField(std::string_view(line).substr(0, equals));
      if (field != nullptr && field->of_agent) header.*field->member = line.substr(equals + 1);
    }
    return true;
  } catch (const platform::FileError& error) {
    session.host.errors.Write("Frm_INTRASTAT.txt", error.what());
    return false;
  }
}

bool KeepDeclaringAgent(session::Session& session, const Header& header, const Header& as_read) {
  const bool same = std::all_of(std::begin(kFields), std::end(kFields), [&](const Field& field) {
    return !field.of_agent || header.*field.member == as_read.*field.member;
  });
  if (same) return true;
  std::string text;
  for (const Field& field : kFields) {
    if (!field.of_agent) continue;
    text += field.name;
    text += '=';
    // A line end inside a value would read back as another field.
    for (const char c : header.*field.member) text += c == '\r' || c == '\n' ? ' ' : c;
    text += "\r\n";
  }
  try {
    session.host.files.CreateFolders(session.UnderSystem("Default\\"));
    session.host.files.Replace(AgentFile(session), text);
    return true;
  } catch (const platform::FileError& error) {
    session.host.errors.Write("Frm_INTRASTAT.txt", error.what());
    session.host.prompter.Error(
        std::string("Datele declarantului tert nu s-au putut pastra pentru data viitoare.\r\n") +
        error.what());
    return false;
  }
}

}  // namespace declarations
