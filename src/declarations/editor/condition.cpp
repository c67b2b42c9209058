#include "declarations/editor/condition.h"

#include "declarations/editor/typed_text.h"
#include "platform/encoding.h"

namespace declarations {

std::vector<ConditionOperator> ConditionOperators(session::Session& session, std::string_view kind) {
  return tariff::ReadOperators(
      session.company, "SELECT * FROM Semne_Cautare_Selectie WHERE SeAplicaLa='" + std::string(kind) + "'");
}

std::string ConditionText(std::string_view column, std::string_view expression, std::string_view value) {
  const std::string name = "[" + std::string(column) + "]";
  // Compares with one blank, not with the empty text; kept so on purpose.
  if (expression == "IS NOT NULL") return " AND " + name + " <> \" \"";
  if (expression == "IS NULL") return " AND (" + name + " IS NULL OR " + name + "=\"\")";
  return " AND " + name + " " + platform::ReplaceAll(expression, "Valoare", value);
}

std::string BulkUpdateHead(std::string_view column, ColumnKind kind, std::string_view value) {
  std::string statement = "UPDATE INTRASTAT SET [" + std::string(column) + "]=";
  // An apostrophe in the value is not doubled: the statement fails and tells so. Kept so on purpose.
  if (kind == ColumnKind::kText) return statement + "'" + std::string(value) + "'";
  return statement + std::string(value);
}

std::string StatementValue(ColumnKind kind, std::string_view typed, std::string_view decimal_mark,
                           calc::LoneMark lone_mark) {
  if (kind == ColumnKind::kNumber) {
    if (const std::optional<double> number = calc::ParseTypedNumber(typed, decimal_mark, lone_mark)) {
      return std::floor(*number) == *number && std::abs(*number) < 1e15
                 ? std::to_string(static_cast<long long>(*number))
                 : store::NumberText(*number);
    }
  }
  if (kind == ColumnKind::kDate) {
    if (const std::optional<store::Date> date = store::ParseDate(typed)) return store::DateIso(*date);
  }
  return std::string(typed);
}

}  // namespace declarations
