#pragma once

#include <string>
#include <string_view>

#include "session/session.h"

namespace declarations {

/// What a declaration file says about the company and its declaring agent. Not stored with the lines: it is
/// assembled when a declaration is opened, and edited there. Named as the editor's fields.
struct Header {
  std::string TXT_CodFiscal, TXT_NumeCompanie;
  std::string TXT_Nume_Prenume;  ///< the contact's last name
  std::string TXT_Nume_Pers;     ///< the contact's first name
  std::string TXT_PozitieCompanie, TXT_Tel, TXT_Fax, TXT_Email;

  bool Check_Dec_Tert = false;  ///< filed by a declaring agent, another company acting for this one
  std::string TXT_CUI_Dec, TXT_Nume_Dec, TXT_Strada_Dec, TXT_Nr_Dec, TXT_BL_Dec, TXT_Sc_Dec, TXT_Ap_Dec;
  std::string TXT_Sect_Dec;                 ///< district; not exported
  std::string TXT_Judet_Dec, TXT_Oras_Dec;  ///< county and locality codes
  std::string TXT_CodPostal_Dec;
};

/// The header's text field of that name (names exact); null for a name it does not have.
std::string* HeaderField(Header& header, std::string_view name);

/// A header as the editor opens with, and the company's switches for the export.
struct EditorDefaults {
  Header header;
  bool ValoareStatistica = false;  ///< initial state of Check_ValStatistica
  bool XML_Detaliat = false;       ///< initial state of Check_XML_Detaliat
};

/// Reads the current company's row of the register. The contact person stands in TXT_Nume_Prenume as a whole.
EditorDefaults ReadEditorDefaults(session::Session& session);

/// Whether a field of that name tells of the declaring agent.
bool IsAgentField(std::string_view name);
/// The switch and the fields of the declaring agent.
void CopyDeclaringAgent(const Header& from, Header& to);

/// The declaring agent's fields as last used: "Default\Frm_INTRASTAT.txt" of the system folder, one
/// "name=value" line a field. A missing file changes nothing. False where the file cannot be read, which is
/// logged.
bool ReadDeclaringAgent(session::Session& session, Header& header);
/// Keeps the fields for the next use where they differ from those read before (`as_read`), so that a file
/// which could not be read is not replaced by blanks. A file that cannot be written is shown; false.
bool KeepDeclaringAgent(session::Session& session, const Header& header, const Header& as_read);

}  // namespace declarations
