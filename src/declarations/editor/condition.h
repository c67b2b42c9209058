#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "declarations/editor/columns.h"
#include "session/session.h"
#include "tariff/query/operators.h"

namespace declarations {

using ConditionOperator = tariff::SearchOperator;

/// The operators for a kind of column ("T", "N", "D", "B"). Throws store::Error.
std::vector<ConditionOperator> ConditionOperators(session::Session& session, std::string_view kind);

/// What the user chose for the filter and the bulk update.
struct Condition {
  std::string CmbColoanaWhere;       ///< field
  std::string TXT_SemnExpresie;      ///< expression of the operator
  std::string Txt_ValueUpdateWhere;  ///< as typed

  bool empty() const { return CmbColoanaWhere.empty() && TXT_SemnExpresie.empty(); }
};

/// " AND …", to stand behind a declaration's filter. `value` goes in as it stands.
std::string ConditionText(std::string_view column, std::string_view expression, std::string_view value);

/// "UPDATE INTRASTAT SET …" without filter and condition: text quoted as it stands, anything else unquoted.
std::string BulkUpdateHead(std::string_view column, ColumnKind kind, std::string_view value);

/// A typed value as statements hold it: numbers with a decimal point, dates as "2026-03-05". What is neither
/// stays as it is, so that the statement tells what is wrong with it.
std::string StatementValue(ColumnKind kind, std::string_view typed, std::string_view decimal_mark,
                           calc::LoneMark lone_mark = calc::LoneMark::kThousands);

}  // namespace declarations
