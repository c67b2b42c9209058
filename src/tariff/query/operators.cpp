#include "tariff/query/operators.h"

namespace tariff {

std::vector<SearchOperator> ReadOperators(store::Connection& connection, std::string_view select) {
  store::Recordset rows = connection.Query(select);
  const auto text = [&rows](std::string_view column) {
    const int field = rows.FindField(column);
    return field < 0 ? std::string() : rows.Get(field).ToText();
  };
  std::vector<SearchOperator> operators;
  for (; !rows.eof(); rows.MoveNext()) {
    operators.push_back({text("DescSemn"), text("Semn"), text("SeAplicaLa"), text("SemnExpresie")});
  }
  return operators;
}

std::string DataTypeOf(store::ColumnType type) {
  switch (type) {
    case store::ColumnType::kText:
    case store::ColumnType::kMemo:
      return "TEXT";
    case store::ColumnType::kDateTime:
      return "DATETIME";
    case store::ColumnType::kYesNo:
      return "YESNO";
    default:
      return "NUMERIC";
  }
}

std::vector<SearchOperator> OperatorsFor(store::Connection& connection, std::string_view DataType) {
  std::string select = "SELECT [DescSemn], [Semn], [SeAplicaLa] FROM [Semne_Cautare_Selectie]";
  if (!DataType.empty()) select += " WHERE [SeAplicaLa]='" + std::string(DataType) + "'";
  return ReadOperators(connection, select);
}

}  // namespace tariff
