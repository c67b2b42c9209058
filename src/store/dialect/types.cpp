#include "store/dialect/types.h"

namespace store::dialect {

Type Type::Of(ColumnType column, int size) {
  Type type;
  type.column = column;
  type.size = size;
  switch (column) {
    case ColumnType::kText:
    case ColumnType::kMemo:
      type.kind = Kind::kText;
      break;
    case ColumnType::kDateTime:
      type.kind = Kind::kDate;
      break;
    case ColumnType::kYesNo:
      type.kind = Kind::kYesNo;
      break;
    default:
      type.kind = Kind::kNumber;
  }
  return type;
}

namespace {

bool IsWhole(ColumnType type) {
  return type == ColumnType::kCounter || type == ColumnType::kByte || type == ColumnType::kShort ||
         type == ColumnType::kLong;
}

int WholeRank(ColumnType type) { return type == ColumnType::kByte ? 0 : type == ColumnType::kShort ? 1 : 2; }

/// The narrowest number type that holds values of both.
ColumnType Wider(ColumnType a, ColumnType b) {
  if (IsWhole(a) && IsWhole(b)) {
    if (WholeRank(a) == 2 || WholeRank(b) == 2) return ColumnType::kLong;
    return WholeRank(a) >= WholeRank(b) ? a : b;
  }
  if (a == b) return a;
  if (IsWhole(a)) std::swap(a, b);
  if (IsWhole(b)) {
    return a == ColumnType::kSingle && WholeRank(b) == 2 ? ColumnType::kDouble : a;
  }
  if (a == ColumnType::kDouble || b == ColumnType::kDouble || a == ColumnType::kSingle ||
      b == ColumnType::kSingle) {
    return ColumnType::kDouble;
  }
  return ColumnType::kDecimal;
}

}  // namespace

Type NumberType(const Type& a, const Type& b) {
  auto number = [](const Type& type) {
    if (type.kind == Type::Kind::kNumber) return type.column;
    return type.is_yes_no() || type.is_null() ? ColumnType::kByte : ColumnType::kDouble;
  };
  const ColumnType wider = Wider(number(a), number(b));
  // Sums of small integers leave their type at once.
  return Type::Of(IsWhole(wider) ? ColumnType::kLong : wider);
}

Type CommonType(const Type& a, const Type& b) {
  if (a.is_null()) return b;
  if (b.is_null()) return a;
  if (a.kind != b.kind) {
    Type type;
    type.kind = Type::Kind::kUnknown;
    return type;
  }
  switch (a.kind) {
    case Type::Kind::kNumber:
      return Type::Of(Wider(a.column, b.column));
    case Type::Kind::kText:
      if (a.size == 0 || b.size == 0) return Type::Of(ColumnType::kMemo);
      return Type::Of(ColumnType::kText, std::max(a.size, b.size));
    default:
      return a;
  }
}

bool Fits(const Type& source, const SourceColumn& target) {
  switch (target.type) {
    case ColumnType::kDouble:
      return source.kind == Type::Kind::kNumber || source.is_yes_no();
    case ColumnType::kText:
    case ColumnType::kMemo:
      return source.is_text() && (target.size == 0 || (source.size > 0 && source.size <= target.size));
    case ColumnType::kDateTime:
      return source.is_date();
    case ColumnType::kYesNo:
      return false;  // Null becomes False
    case ColumnType::kByte:
    case ColumnType::kShort:
    case ColumnType::kLong:
    case ColumnType::kCounter:
      return source.kind == Type::Kind::kNumber && IsWhole(source.column) &&
             WholeRank(source.column) <= WholeRank(target.type);
    default:
      return source.kind == Type::Kind::kNumber && source.column == target.type;
  }
}

}  // namespace store::dialect
