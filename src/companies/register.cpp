#include "companies/register.h"

#include "companies/open_company.h"
#include "platform/encoding.h"

namespace companies {
namespace {

using platform::Icon;

struct ScreenField {
  const char* name;
  const char* help;
};

constexpr ScreenField kScreen[] = {
    {"Cod_Fiscal", "ROXXXXXX - Cod de inregistrare fiscala, fara spatii"},
    {"Nume_Firma", "Nume firma, va recomandam fara SC"},
    {"Adresa_Firma", "Adresa oficiala, fara oras si judet"},
    {"Oras_Firma", ""},
    {"Judet_Firma", ""},
    {"CodPostal_Firma", ""},
    {"Tara_Firma", "ROMANIA - In majoritatea cazurilor"},
    {"Tel_Firma", ""},
    {"Fax_Firma", ""},
    {"Email_Firma", ""},
    {"Reg_No_Firma", "J00/AA/YYYY. Nr de inregistrare de la registrul comertului"},
    {"Persoana_Intrastat", ""},
    {"Persoana_Functie", ""},
    {"XML_Detaliat", ""},
    {"ValoareStatistica", ""},
};

Fields ScreenFields() {
  std::vector<std::string> names;
  for (const ScreenField& field : kScreen) names.emplace_back(field.name);
  return Fields(names);
}

/// Text without spaces at either end, as the register's file names are made.
std::string TrimSpaces(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return std::string(text);
}

bool RequiredFieldsPresent(session::Session& session, const Fields& fields) {
  if (store::IsEmpty(fields.Get("Cod_Fiscal"))) {
    platform::ShowRequired(session.host.prompter, "Cod de inregistrare fiscala");
    return false;
  }
  if (store::IsEmpty(fields.Get("Nume_Firma"))) {
    platform::ShowRequired(session.host.prompter, "Nume Firma");
    return false;
  }
  return true;
}

/// A database file that is about to be written over loses the journal of an interrupted run with it: left
/// behind, it would be played back into the new file.
void SettleJournal(session::Session& session, const std::string& path) {
  const std::string journal = path + "-journal";
  if (!session.host.files.Exists(journal)) return;
  store::PassOver(session.host.errors, "CreateCompany", [&] {
    store::Connection old(session::StoreEnvironment(session));
    old.Open(store::JetString(path));
    old.Tables();
  });
  session.host.files.Remove(journal);
}

bool CopyFailed(session::Session& session, const std::string& reason) {
  session.host.prompter.Error(" EROARE LA COPIERE ");
  session.host.prompter.Error(reason);
  return false;
}

bool CopyTemplate(session::Session& session, const std::string& path) {
  const std::string source = session.settings.DataBase + "goala.mdb";
  if (!session.host.files.Exists(source)) {
    session.host.prompter.Error("Fisierul :" + source + " NU EXISTA.", "EROARE MAJORA");
    return false;
  }
  const std::string_view name = std::string_view(path).substr(session.settings.DataBase.size());
  if (name.find_first_of("\\/:*?\"<>|") != std::string_view::npos) {
    // The code is not checked further, but the file must stay in its folder.
    return CopyFailed(
        session, "Numele " + std::string(name) + " contine semne care nu pot sta intr-un nume de fisier");
  }
  try {
    // A template that is no database must neither become a company nor be written over one.
    store::Connection(session::StoreEnvironment(session)).Open(store::JetString(source));
  } catch (const store::Error& error) {
    return CopyFailed(session, error.description());
  }
  try {
    if (session.company.is_open() && platform::EqualsNoCase(session.company.path(), path)) {
      session.company.Close();
    }
    SettleJournal(session, path);
    session.host.files.Copy(source, path);
    return true;
  } catch (const platform::FileError& error) {
    return CopyFailed(session, error.what());
  }
}

void Register(session::Session& session, const Fields& fields, const std::string& file) {
  const platform::LocalTime today = session.host.clock.Now();
  store::Recordset firms = session.common.QueryForUpdate("SELECT * FROM Firme");
  firms.AddNew();
  fields.WriteTo(firms);
  firms.Set("DataBaseFile", file);
  firms.Set("CreataLaData", fmt::format("{:02}/{:02}/{:04}", today.day, today.month, today.year));
  firms.Update();
}

}  // namespace

std::string_view HelpText(std::string_view field) {
  for (const ScreenField& known : kScreen) {
    if (known.name == field) return known.help;
  }
  return {};
}

std::string_view DetailedHelp() {
  return "Daca se bifeaza aceasta optiune programul NU va mai cumula pozitii care au acelasi cod vamal; tara "
         "origine; conditie de livrare. In acest caz declaratia Intrastat va contine toate liniile "
         "necumulate";
}

Fields NewCompany() {
  Fields fields = ScreenFields();
  fields.Set("Tara_Firma", "ROMANIA");
  fields.Set("XML_Detaliat", "0");
  fields.Set("ValoareStatistica", "0");
  return fields;
}

Fields ReadCompany(session::Session& session) {
  Fields fields = ScreenFields();
  fields.ReadFrom(
      session.common.Query("SELECT * FROM Firme WHERE Cod_Fiscal='" + session.current.Cod_Fiscal + "'"));
  return fields;
}

bool LeaveCodFiscal(session::Session& session, std::string& Cod_Fiscal) {
  if (!Cod_Fiscal.starts_with("RO")) {
    session.host.prompter.Error("Codul fiscal trebuie sa inceapa cu RO");
    return false;
  }
  // Also the blanks that come along when a code is copied from a page: tab, no-break, figure, narrow
  // no-break.
  for (const char* blank : {" ", "\t", "\xC2\xA0", "\xE2\x80\x87", "\xE2\x80\xAF"}) {
    Cod_Fiscal = platform::ReplaceAll(Cod_Fiscal, blank, "");
  }
  return true;
}

bool CreateCompany(session::Session& session, const Fields& fields) {
  if (!RequiredFieldsPresent(session, fields)) return false;
  const std::string code = fields.Get("Cod_Fiscal");
  platform::Prompter& prompter = session.host.prompter;
  try {
    if (session.common.Any("SELECT Cod_Fiscal FROM [Firme] WHERE [Cod_Fiscal]='" + code + "'")) {
      prompter.Error("Exista deja firma cu codul fiscal : " + code);
      return false;
    }
    const std::string file = TrimSpaces(code) + ".mdb";
    const std::string path = session.settings.DataBase + file;
    const bool existed = session.host.files.Exists(path);
    if (existed &&
        !prompter.Ask("Fisierul :" + path + " EXISTA DEJA. RESCRIETI SI PIERDETI DATELE AFERENTE ?",
                      "RASPUNDETI", Icon::kQuestion)) {
      return false;
    }
    if (!CopyTemplate(session, path)) return false;
    try {
      Register(session, fields, file);
    } catch (const store::Error&) {
      if (!existed) session.host.files.Remove(path);  // nobody's file would ask to be overwritten next time
      throw;
    }
    if (!OpenCompany(session, code, file)) {
      prompter.Error("Firma cu codul fiscal " + code +
                     " este inregistrata, dar baza ei de date nu s-a deschis");
      return false;
    }
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return false;
  }
  prompter.Info("FIRMA A FOST CREATA", "MESAJ");
  return true;
}

bool ModifyCompany(session::Session& session, const Fields& fields) {
  if (!RequiredFieldsPresent(session, fields)) return false;
  try {
    store::Recordset row = session.common.QueryForUpdate("SELECT * FROM Firme WHERE Cod_Fiscal='" +
                                                         session.current.Cod_Fiscal + "'");
    fields.WriteTo(row, "Cod_Fiscal");
    row.Update();
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return false;
  }
  session.current.Nume_Firma = fields.Get("Nume_Firma");
  session.host.prompter.Info("Datele au fost salvate", "Mesaj");
  return true;
}

}  // namespace companies
