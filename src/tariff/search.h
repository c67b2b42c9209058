#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/session.h"

namespace tariff {

/// What the advanced search finds, each with the line that tells how much.
struct SearchResult {
  store::Recordset tariff;        ///< HS8_COD, HS12_COD, DATE_START, UM_SUPL, DESCRIERE; valid or not
  store::Recordset declarations;  ///< Anul, luna, Cod_NC, Cantitate, UM, Val_Fiscala, Descriere; newest first
  std::string tariff_status, declarations_status;
};

/// Looks an expression up in the descriptions and codes of the tariff and of the company's declaration lines.
/// Without an open tariff the one of the current work's period is chosen first; where that is refused (which
/// has been shown), only the declarations are searched. Nothing for an empty expression. It goes into the
/// statements as it stands: a quote in it throws store::Error.
std::optional<SearchResult> SearchTariff(session::Session& session, std::string_view expression);

/// Record_ID of the declaration line behind a row of SearchResult::declarations, which reads no key. Rows
/// alike in every column are told apart by their order only. Nothing where the line has changed since, or is
/// gone. Throws store::Error.
std::optional<std::int64_t> FoundLine(session::Session& session, store::Recordset declarations,
                                      std::int64_t row);

}  // namespace tariff
