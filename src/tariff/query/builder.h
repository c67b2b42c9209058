#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/connection.h"
#include "tariff/query/operators.h"

namespace tariff {

/// A row of the query builder's grid: a column of the chosen table and what is asked of it.
struct QueryColumn {
  std::string FieldName;
  std::string DataType;     ///< as SeAplicaLa has it
  std::string description;  ///< of the schema; may be empty
  bool shown = false;       ///< "Afiseaza Coloana"
  std::string DescSemn;     ///< operator in words; empty: no condition
  std::string Semn;
  std::string value;  ///< "Valoare Cautata", as it goes into the statement but for dates
};

/// What can be asked: tables and linked tables by name, then stored queries that need no parameters.
std::vector<store::SchemaTable> QueryTables(store::Connection& connection);

/// Columns of a table, nothing ticked, no conditions. Throws store::Error where a link or stored query cannot
/// be followed.
std::vector<QueryColumn> QueryColumns(store::Connection& connection, std::string_view table);

/// Takes an operator by its words or its sign, empty for none. Asking for (no) emptiness has one value, which
/// is filled in. False, and nothing taken, where the column's type has no such operator.
bool ChooseOperator(QueryColumn& column, const std::vector<SearchOperator>& operators,
                    std::string_view typed);

/// Takes a value as typed. Texts keep their quotes, or the lack of them; a date gets its # marks and a yes or
/// no its word in statements, where they were left out.
void EnterValue(QueryColumn& column, std::string_view typed);

/// The value as the statement has it: a date within is turned to "mm-dd-yyyy".
std::string ConditionValue(const QueryColumn& column);

/// Why a value will hardly do what was meant, for a mark beside it; empty where nothing is to be said.
std::string ValueRemark(const QueryColumn& column);

/// A composed statement and where each condition stands in it (byte offsets).
struct BuiltQuery {
  struct Condition {
    int row;
    int begin, end;
  };
  std::string text;
  std::vector<Condition> conditions;

  /// Row of the grid whose condition holds a position of the statement; -1 where none does.
  int RowAt(int position) const;
};

/// The row (from 0) with an operator but no value, which stops the build.
std::optional<int> RowWithoutValue(const std::vector<QueryColumn>& columns);

/// Composes the SELECT; rows without value must have been refused before.
BuiltQuery BuildQuery(std::string_view table, const std::vector<QueryColumn>& columns);

}  // namespace tariff
