#include "store/dialect/function_table.h"

namespace store::dialect {

namespace {

constexpr int kMany = 60;
constexpr auto kFixed = ResultRule::kFixed;
constexpr auto kLikeFirst = ResultRule::kLikeFirst;
constexpr auto kUnknown = ResultRule::kUnknown;
constexpr auto kText = ColumnType::kMemo;
constexpr auto kLong = ColumnType::kLong;
constexpr auto kShort = ColumnType::kShort;
constexpr auto kDouble = ColumnType::kDouble;
constexpr auto kDate = ColumnType::kDateTime;
constexpr auto kYesNo = ColumnType::kYesNo;

constexpr FunctionInfo kFunctions[] = {
    {"LEFT", 2, 2, kFixed, kText, 1},
    {"RIGHT", 2, 2, kFixed, kText, 1},
    {"MID", 2, 3, kFixed, kText, 1},
    {"LEN", 1, 1, kFixed, kLong, 1},
    {"TRIM", 1, 1, kFixed, kText, 1},
    {"LTRIM", 1, 1, kFixed, kText, 1},
    {"RTRIM", 1, 1, kFixed, kText, 1},
    {"UCASE", 1, 1, kFixed, kText, 1},
    {"LCASE", 1, 1, kFixed, kText, 1},
    {"INSTR", 2, 4, kFixed, kLong, 6},
    {"INSTRREV", 2, 4, kFixed, kLong, 3},
    {"REPLACE", 3, 6, kFixed, kText, 7},
    {"STRCOMP", 2, 3, kFixed, kShort, 3},
    {"STRREVERSE", 1, 1, kFixed, kText, 1},
    {"SPACE", 1, 1, kFixed, kText, 0},
    {"STRING", 2, 2, kFixed, kText, 2},
    {"CHR", 1, 1, kFixed, kText, 0},
    {"ASC", 1, 1, kFixed, kLong, 1},
    {"STR", 1, 1, kFixed, kText, 0},
    {"VAL", 1, 1, kFixed, kDouble, 1},
    {"HEX", 1, 1, kFixed, kText, 0},
    {"OCT", 1, 1, kFixed, kText, 0},
    {"CSTR", 1, 1, kFixed, kText, 1},
    {"CINT", 1, 1, kFixed, kShort, 0},
    {"CLNG", 1, 1, kFixed, kLong, 0},
    {"CBYTE", 1, 1, kFixed, ColumnType::kByte, 0},
    {"CDBL", 1, 1, kFixed, kDouble, 0},
    {"CSNG", 1, 1, kFixed, ColumnType::kSingle, 0},
    {"CCUR", 1, 1, kFixed, ColumnType::kCurrency, 0},
    {"CDEC", 1, 1, kFixed, ColumnType::kDecimal, 0},
    {"CBOOL", 1, 1, kFixed, kYesNo, 0},
    {"CDATE", 1, 1, kFixed, kDate, 0},
    {"CVDATE", 1, 1, kFixed, kDate, 0},
    {"CVAR", 1, 1, kLikeFirst, kText, 0},
    {"ROUND", 1, 2, kLikeFirst, kDouble, 0},
    {"ABS", 1, 1, kLikeFirst, kDouble, 0},
    {"INT", 1, 1, kLikeFirst, kDouble, 0},
    {"FIX", 1, 1, kLikeFirst, kDouble, 0},
    {"SGN", 1, 1, kFixed, kShort, 0},
    {"SQR", 1, 1, kFixed, kDouble, 0},
    {"EXP", 1, 1, kFixed, kDouble, 0},
    {"LOG", 1, 1, kFixed, kDouble, 0},
    {"SIN", 1, 1, kFixed, kDouble, 0},
    {"COS", 1, 1, kFixed, kDouble, 0},
    {"TAN", 1, 1, kFixed, kDouble, 0},
    {"ATN", 1, 1, kFixed, kDouble, 0},
    {"RND", 0, 1, kFixed, kDouble, 0},
    {"IIF", 3, 3, kUnknown, kText, 0},
    {"ISNULL", 1, 1, kFixed, kYesNo, 0},
    {"ISNUMERIC", 1, 1, kFixed, kYesNo, 0},
    {"ISDATE", 1, 1, kFixed, kYesNo, 0},
    {"SWITCH", 2, kMany, kUnknown, kText, 0},
    {"CHOOSE", 2, kMany, kUnknown, kText, 0},
    {"FORMAT", 1, 4, kFixed, kText, 0},
    {"DATE", 0, 0, kFixed, kDate, 0},
    {"NOW", 0, 0, kFixed, kDate, 0},
    {"TIME", 0, 0, kFixed, kDate, 0},
    {"YEAR", 1, 1, kFixed, kShort, 0},
    {"MONTH", 1, 1, kFixed, kShort, 0},
    {"DAY", 1, 1, kFixed, kShort, 0},
    {"HOUR", 1, 1, kFixed, kShort, 0},
    {"MINUTE", 1, 1, kFixed, kShort, 0},
    {"SECOND", 1, 1, kFixed, kShort, 0},
    {"WEEKDAY", 1, 2, kFixed, kShort, 0},
    {"WEEKDAYNAME", 1, 3, kFixed, kText, 0},
    {"MONTHNAME", 1, 2, kFixed, kText, 0},
    {"DATEADD", 3, 3, kFixed, kDate, 0},
    {"DATEDIFF", 3, 5, kFixed, kLong, 0},
    {"DATEPART", 2, 4, kFixed, kShort, 0},
    {"DATESERIAL", 3, 3, kFixed, kDate, 0},
    {"DATEVALUE", 1, 1, kFixed, kDate, 0},
    {"TIMESERIAL", 3, 3, kFixed, kDate, 0},
    {"TIMEVALUE", 1, 1, kFixed, kDate, 0},
};

constexpr AggregateInfo kAggregates[] = {
    {"COUNT", "COUNT", false},  {"SUM", "SUM", true},        {"AVG", "AVG", true},
    {"MIN", "MIN", false},      {"MAX", "MAX", false},       {"FIRST", "dx_first", false},
    {"LAST", "dx_last", false}, {"STDEV", "dx_stdev", true}, {"STDEVP", "dx_stdevp", true},
    {"VAR", "dx_var", true},    {"VARP", "dx_varp", true},
};

template <typename Info, std::size_t kSize>
const Info* FindIn(const Info (&table)[kSize], std::string_view name) {
  for (const Info& info : table) {
    if (info.name == name) return &info;
  }
  return nullptr;
}

}  // namespace

const FunctionInfo* FindFunction(std::string_view upper_name) { return FindIn(kFunctions, upper_name); }
const AggregateInfo* FindAggregate(std::string_view upper_name) { return FindIn(kAggregates, upper_name); }

}  // namespace store::dialect
