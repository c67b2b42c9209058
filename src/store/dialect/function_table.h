#pragma once

#include <cstdint>
#include <string_view>

#include "store/value.h"

namespace store::dialect {

enum class ResultRule : std::uint8_t { kFixed, kLikeFirst, kUnknown };

/// A scalar function of the dialect. It is called as "dx_" and its name in lower case.
struct FunctionInfo {
  std::string_view name;
  int fewest, most;
  ResultRule rule;
  ColumnType result;
  /// Bit n set: argument n is read as text, so a date there is spelled out first.
  unsigned text_arguments;
};

/// Null where the dialect has no such function. IIF, ISNULL, SWITCH and CHOOSE are written without a call.
const FunctionInfo* FindFunction(std::string_view upper_name);

struct AggregateInfo {
  std::string_view name;
  std::string_view sqlite_name;
  bool numeric;  ///< texts are refused
};
const AggregateInfo* FindAggregate(std::string_view upper_name);

}  // namespace store::dialect
