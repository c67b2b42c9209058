#include "tariff/search.h"

#include "tariff/lookup.h"

namespace tariff {
namespace {

constexpr std::string_view kLineColumns = "Anul, luna, Cod_NC, Cantitate, UM, Val_Fiscala, Descriere";

std::string Either(std::string_view select, std::string_view code_column, std::string_view expression,
                   std::string_view order) {
  return fmt::format("{} WHERE DESCRIERE  LIKE '%{}%' OR {} LIKE '%{}%'{}", select, expression, code_column,
                     expression, order);
}

std::string Status(const store::Recordset& rows, std::string_view where, std::string_view expression) {
  return fmt::format("{} Inregistrari gasite in {} pentru expresia : {}", rows.record_count(), where,
                     expression);
}

std::vector<store::Value> LineAt(store::Recordset& rows, std::int64_t row, int fields) {
  rows.set_position(row);
  std::vector<store::Value> values;
  for (int i = 0; i < fields; ++i) values.push_back(rows.Get(i));
  return values;
}

std::string Equals(std::string_view column, const store::Value& number) {
  return number.is_null() ? fmt::format("{} IS NULL", column)
                          : fmt::format("{}={}", column, number.ToInteger());
}

}  // namespace

std::optional<SearchResult> SearchTariff(session::Session& session, std::string_view expression) {
  if (expression.empty()) return std::nullopt;
  if (!session.tariff.is_open()) ConexiuneTarif(session, session.Luna, session.Anul);
  SearchResult result;
  if (session.tariff.is_open()) {
    result.tariff = session.tariff.Query(Either(
        "SELECT HS8_COD, HS12_COD, DATE_START, UM_SUPL, DESCRIERE FROM HS_8", "HS12_COD", expression, ""));
    result.tariff_status = Status(result.tariff, "tariful vamal", expression);
  }
  if (session.company.is_open()) {
    result.declarations =
        session.company.Query(Either(fmt::format("SELECT {} FROM Intrastat", kLineColumns), "Cod_NC",
                                     expression, " ORDER BY Anul DESC, luna DESC"));
    result.declarations_status = Status(result.declarations, "declaratiile intrastat", expression);
  }
  return result;
}

std::optional<std::int64_t> FoundLine(session::Session& session, store::Recordset declarations,
                                      std::int64_t row) {
  const int fields = declarations.field_count();
  const std::vector<store::Value> wanted = LineAt(declarations, row, fields);
  std::int64_t alike_before = 0;
  for (std::int64_t i = 0; i < row; ++i) {
    if (LineAt(declarations, i, fields) == wanted) ++alike_before;
  }
  store::Recordset month = session.company.Query(
      fmt::format("SELECT {}, Record_ID FROM Intrastat WHERE {} AND {} ORDER BY Record_ID", kLineColumns,
                  Equals("Anul", wanted[0]), Equals("luna", wanted[1])));
  for (std::int64_t i = 0; i < month.record_count(); ++i) {
    if (LineAt(month, i, fields) == wanted && alike_before-- == 0) return month.Get(fields).ToInteger();
  }
  return std::nullopt;
}

}  // namespace tariff
