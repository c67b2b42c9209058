#include "tariff/search.h"

#include "tariff/lookup.h"

namespace tariff {
namespace {

std::string Either(std::string_view select, std::string_view code_column, std::string_view expression,
                   std::string_view order) {
  return fmt::format("{} WHERE DESCRIERE  LIKE '%{}%' OR {} LIKE '%{}%'{}", select, expression, code_column,
                     expression, order);
}

std::string Status(const store::Recordset& rows, std::string_view where, std::string_view expression) {
  return fmt::format("{} Inregistrari gasite in {} pentru expresia : {}", rows.record_count(), where,
                     expression);
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
    result.declarations = session.company.Query(
        Either("SELECT Anul, luna, Cod_NC, Cantitate, UM, Val_Fiscala, Descriere FROM Intrastat", "Cod_NC",
               expression, " ORDER BY Anul DESC, luna DESC"));
    result.declarations_status = Status(result.declarations, "declaratiile intrastat", expression);
  }
  return result;
}

}  // namespace tariff
