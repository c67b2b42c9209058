#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace tariff {

/// How a typed code of a declaration line is looked up. A code is compared as typed: nothing is trimmed or
/// changed.
struct CodeCheck {
  std::vector<std::string_view> columns;  ///< the line's columns that take their values from this list
  std::string_view select;                ///< up to the condition
  std::string_view condition;             ///< up to the opening quote; the code and a closing quote follow
  std::string_view description;           ///< column that is shown for a known code
};

/// The eight code lists of the editor.
const std::array<CodeCheck, 8>& CodeChecks();

/// The check of a line's column, without regard to case; null for columns without a code list.
const CodeCheck* FindCodeCheck(std::string_view column);

/// The check's statement for a code; the code goes in as it stands.
std::string CheckStatement(const CodeCheck& check, std::string_view code);

/// Description of a code of the company's reference tables; nothing where the code is unknown. A code that
/// breaks the statement throws store::Error.
std::optional<std::string> CodeDescription(session::Session& session, const CodeCheck& check,
                                           std::string_view code);

// Drop-down lists, ordered by code.
inline constexpr char kNatTranzList[] = "SELECT COD, TR_DESC FROM Tranzactii_Unit ORDER BY [COD]";
inline constexpr char kModTranspList[] =
    "SELECT [COD_MOD_TRANS],[DESC_MOD_TRANS] FROM [MOD_TRANS] ORDER BY [COD_MOD_TRANS]";

// Counties and towns of a declaring agent's address, ordered by name.
inline constexpr char kCountiesList[] = "SELECT Jud_Code, Jud_NameRo from Judete ORDER BY Jud_NameRo";
inline constexpr char kTownsList[] =
    "SELECT City_Code, City_NameRo, City_RefCode from Orase ORDER BY City_NameRo";
std::string TownsOfCounty(std::string_view county_code);

}  // namespace tariff
