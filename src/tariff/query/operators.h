#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/connection.h"

namespace tariff {

/// A row of Semne_Cautare_Selectie, which serves the query builder (by Semn) and the conditions of the
/// declaration editor (by SemnExpresie).
struct SearchOperator {
  std::string DescSemn;      ///< shown
  std::string Semn;          ///< put before the value, its blank included: "LIKE "
  std::string SeAplicaLa;    ///< kind of column
  std::string SemnExpresie;  ///< the word "Valoare" stands for the value: "LIKE '%Valoare%'"
};

/// The rows of a SELECT on Semne_Cautare_Selectie; columns it leaves out stay empty. Throws store::Error.
std::vector<SearchOperator> ReadOperators(store::Connection& connection, std::string_view select);

/// What a column of this type is called in SeAplicaLa by the query builder: "TEXT", "NUMERIC", "DATETIME" or
/// "YESNO".
std::string DataTypeOf(store::ColumnType type);

/// The query builder's operators for a data type; for an empty one all of them. Throws store::Error.
std::vector<SearchOperator> OperatorsFor(store::Connection& connection, std::string_view DataType);

}  // namespace tariff
