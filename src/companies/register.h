#pragma once

#include <string>
#include <string_view>

#include "companies/fields.h"
#include "session/session.h"

namespace companies {

/// Help text of a field of the company screen, shown while the cursor is in it; empty for most.
std::string_view HelpText(std::string_view field);
/// Text of the help button beside `XML_Detaliat`.
std::string_view DetailedHelp();

/// The company screen's fields as a new company begins: empty, `Tara_Firma` "ROMANIA".
Fields NewCompany();
/// The same filled from the current company's row. Throws store::Error.
Fields ReadCompany(session::Session& session);

/// Leaving the field `Cod_Fiscal`: a code that does not begin with "RO" is shown and refused; otherwise the
/// code loses its spaces. There is no check digit.
bool LeaveCodFiscal(session::Session& session, std::string& Cod_Fiscal);

/// Confirming in creation mode: copies the template to the company's own database file, registers the company
/// and opens it. False where a step failed or was declined, which has been shown.
bool CreateCompany(session::Session& session, const Fields& fields);

/// Confirming in modification mode: writes the fields into the current company's row; the code never changes.
bool ModifyCompany(session::Session& session, const Fields& fields);

}  // namespace companies
