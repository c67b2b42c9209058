#include "store/dialect/decimal.h"

#include <algorithm>

#include "store/dialect/scan.h"

namespace store::dialect {

namespace {

__extension__ typedef __int128 Wide;

constexpr int kMostDigits = 28;

struct Decimal {
  Wide mantissa = 0;
  int scale = 0;
};

bool InRange(Wide mantissa) {
  static const Wide limit = [] {
    Wide value = 1;
    for (int i = 0; i < kMostDigits; ++i) value *= 10;
    return value;
  }();
  return mantissa < limit && mantissa > -limit;
}

std::optional<Decimal> ReadDecimal(const Literal& literal) {
  if (literal.kind != LiteralKind::kInteger && literal.kind != LiteralKind::kNumber) return std::nullopt;
  Decimal out;
  bool fraction = false;
  for (char c : literal.raw) {
    if (c == '.') {
      fraction = true;
      continue;
    }
    if (!IsDigit(c)) return std::nullopt;  // an exponent
    out.mantissa = out.mantissa * 10 + (c - '0');
    if (!InRange(out.mantissa)) return std::nullopt;
    if (fraction) ++out.scale;
  }
  return out;
}

bool Rescale(Decimal& d, int scale) {
  while (d.scale < scale) {
    d.mantissa *= 10;
    ++d.scale;
    if (!InRange(d.mantissa)) return false;
  }
  return true;
}

std::optional<Decimal> Evaluate(const Expr& e) {
  if (e.op == Op::kLiteral) return ReadDecimal(e.literal);
  if (e.op == Op::kNegate) {
    auto d = Evaluate(*e.args[0]);
    if (d) d->mantissa = -d->mantissa;
    return d;
  }
  if (e.op != Op::kAdd && e.op != Op::kSubtract && e.op != Op::kMultiply) return std::nullopt;
  auto left = Evaluate(*e.args[0]);
  if (!left) return std::nullopt;
  auto right = Evaluate(*e.args[1]);
  if (!right) return std::nullopt;
  if (e.op == Op::kMultiply) {
    // 28 digits times 28 digits would leave 128 bits: 10^18 by 10^18 at most.
    auto digits = [](Wide mantissa) {
      int n = 0;
      for (; mantissa != 0; mantissa /= 10) ++n;
      return n;
    };
    if (digits(left->mantissa) + digits(right->mantissa) > kMostDigits) return std::nullopt;
    return Decimal{left->mantissa * right->mantissa, left->scale + right->scale};
  }
  const int scale = std::max(left->scale, right->scale);
  if (!Rescale(*left, scale) || !Rescale(*right, scale)) return std::nullopt;
  left->mantissa += e.op == Op::kAdd ? right->mantissa : -right->mantissa;
  if (!InRange(left->mantissa)) return std::nullopt;
  return left;
}

bool IsLiteralArithmetic(const Expr& e, bool& fraction) {
  if (e.op == Op::kLiteral) {
    fraction = fraction || e.literal.kind == LiteralKind::kNumber;
    return e.literal.kind == LiteralKind::kInteger || e.literal.kind == LiteralKind::kNumber;
  }
  if (e.op != Op::kNegate && e.op != Op::kAdd && e.op != Op::kSubtract && e.op != Op::kMultiply) return false;
  return std::all_of(e.args.begin(), e.args.end(),
                     [&](const Expr* arg) { return IsLiteralArithmetic(*arg, fraction); });
}

}  // namespace

bool IsDecimalArithmetic(const Expr& e) {
  // A single literal, with its sign, stays a parameter.
  if (e.op != Op::kAdd && e.op != Op::kSubtract && e.op != Op::kMultiply) return false;
  bool fraction = false;
  return IsLiteralArithmetic(e, fraction) && fraction;
}

std::optional<std::string> FoldDecimal(const Expr& e) {
  auto value = Evaluate(e);
  if (!value || value->scale > kMostDigits) return std::nullopt;
  const bool negative = value->mantissa < 0;
  Wide rest = negative ? -value->mantissa : value->mantissa;
  std::string text;
  for (int digit = 0; rest != 0 || digit <= value->scale; ++digit) {
    if (digit == value->scale) text += digit == 0 ? "0." : ".";
    text += static_cast<char>('0' + static_cast<int>(rest % 10));
    rest /= 10;
  }
  std::reverse(text.begin(), text.end());
  return negative ? "-" + text : text;
}

}  // namespace store::dialect
