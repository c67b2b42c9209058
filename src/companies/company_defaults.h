#pragma once

#include <string>
#include <string_view>

#include "companies/fields.h"
#include "session/session.h"

namespace companies {

/// Loads the company's row of Intrastat_Default into the process-wide default values, with a fallback for
/// every empty column. A company without a row keeps the values of the one opened before it; that is
/// deliberate. Throws store::Error.
void SetariValoriDefault(session::Session& session, std::string_view Cod_Fiscal);

/// The fields of the current company's defaults, with the fallbacks in empty ones. A company without a row
/// gets one. Throws store::Error.
Fields ReadDefaults(session::Session& session);

/// Writes the fields into the current company's row and loads them as SetariValoriDefault does. A failure is
/// shown and answers false.
bool SaveDefaults(session::Session& session, const Fields& fields);

/// Statements behind the choice lists of the defaults screen (company connection): the code, then its
/// description.
inline constexpr char kCountryChoices[] = "SELECT COD_TARA, Tara_DESC FROM [UE_Tari] ORDER BY [COD_TARA]";
inline constexpr char kDeliveryChoices[] =
    "SELECT Incoterms_COD, Incoterms_DESC FROM [Incoterms] ORDER BY Incoterms_COD";
inline constexpr char kTransactionChoices[] =
    "SELECT [TR1_COD] + '.' + [TR2_COD] AS COD_Tranz, [TR_DESC] FROM [Tranzactii] ORDER BY "
    "[TR1_COD],[TR2_COD]";
inline constexpr char kTransportChoices[] =
    "SELECT COD_MOD_TRANS, DESC_MOD_TRANS FROM MOD_TRANS ORDER BY COD_MOD_TRANS";

}  // namespace companies
