#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace companies {

/// An entry of the company list.
struct ListedCompany {
  std::string Nume_Firma, Cod_Fiscal, DataBaseFile;
};

/// The registered companies by name, the reserved code "0" left out. Throws store::Error.
std::vector<ListedCompany> ListCompanies(session::Session& session);

/// Makes a company current for the whole process: its connection, the tariff of the current month, its
/// default values, our stored queries and the link to the register. Failures are shown; false leaves the
/// previous company in place, without a connection where just the new file could not be opened.
bool OpenCompany(session::Session& session, std::string_view Cod_Fiscal, std::string_view DataBaseFile);

/// The same for a code, with the file that the register names; a code that is not registered is shown.
bool OpenRegisteredCompany(session::Session& session, std::string_view Cod_Fiscal);

/// Confirming the selection: all three values must be there, then OpenCompany.
bool ConfirmSelection(session::Session& session, const ListedCompany& chosen);

/// Brings the stored queries of an open company file in line with the template's (changed texts, missing
/// queries); the user's own queries stay. A missing template changes nothing. Answers how many were written.
int RefreshStoredQueries(session::Session& session);

}  // namespace companies
