#pragma once

#include <string>
#include <string_view>

#include "store/rows.h"
#include "store/value.h"

namespace store {

/// Why a value does not fit a column; empty where it does.
struct ConversionFailure {
  int number = 0;      ///< of error.h; 0 = it fits
  std::string reason;  ///< Romanian, without the column's name
};

/// Converts `value` to what a column of `type` and `size` holds, as assignment does: texts to numbers and
/// dates, numbers to text, doubles to integers half to even. A long text stays in `text`, to which the cell
/// points.
ConversionFailure ConvertForColumn(const Value& value, ColumnType type, int size, Cell& cell,
                                   std::string& text);

/// A column's default, from its expression text.
struct DefaultExpression {
  std::string sql;        ///< for SQLite's DEFAULT; empty: none
  Value value;            ///< where it is constant
  bool computed = false;  ///< Date(), Now(): new for each row
};
/// Throws Error(kSyntaxError) for expressions that no default can be.
DefaultExpression ParseDefault(std::string_view text, ColumnType type, int size);

/// Romanian name of a type, for messages.
std::string_view TypeName(ColumnType type);

}  // namespace store
