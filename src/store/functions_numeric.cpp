#include <cmath>
#include <random>

#include "store/functions.h"
#include "store/functions_call.h"
#include "store/value.h"

namespace store::functions {

namespace {

void Round(Call& call) {
  int decimals = call.SmallInteger(1, 0);
  if (decimals < 0) FailInvalidCall();
  if (call.type(0) == SQLITE_INTEGER) return call.ReturnSame(0);
  call.Return(RoundHalfEven(call.Number(0), decimals));
}

/// Keeps whole arguments whole.
template <double (*operation)(double)>
void Apply(Call& call) {
  if (call.type(0) == SQLITE_INTEGER) {
    call.ReturnArithmetic(operation(call.Number(0)), true);
  } else {
    call.Return(operation(call.Number(0)) + 0.0);
  }
}

double Absolute(double x) { return std::abs(x); }
double Floor(double x) { return std::floor(x); }
double Truncate(double x) { return std::trunc(x); }

void Sign(Call& call) {
  double x = call.Number(0);
  call.Return(x > 0 ? 1 : x < 0 ? -1 : 0);
}

void SquareRoot(Call& call) {
  double x = call.Number(0);
  if (x < 0) FailInvalidCall();
  call.Return(std::sqrt(x));
}

void Logarithm(Call& call) {
  double x = call.Number(0);
  if (x <= 0) FailInvalidCall();
  call.Return(std::log(x));
}

void Exponential(Call& call) { call.Return(std::exp(call.Number(0))); }
void Sine(Call& call) { call.Return(std::sin(call.Number(0))); }
void Cosine(Call& call) { call.Return(std::cos(call.Number(0))); }
void Tangent(Call& call) { call.Return(std::tan(call.Number(0))); }
void ArcTangent(Call& call) { call.Return(std::atan(call.Number(0))); }

void Random(Call& call) {
  static std::minstd_rand generator{std::random_device{}()};
  call.Return(std::uniform_real_distribution<double>(0, 1)(generator));
}

void IsNumericFunction(Call& call) { call.Return(!call.IsNull(0) && call.TryNumber(0).has_value()); }

/// Whole numbers in other bases: negative ones as 32 bits where they fit, else as 64.
std::string InBase(std::int64_t number, int bits) {
  auto value = static_cast<std::uint64_t>(number);
  if (number < 0 && number >= INT32_MIN) value = static_cast<std::uint32_t>(number);
  std::string digits;
  do {
    digits.insert(digits.begin(), "0123456789ABCDEF"[value & ((1U << bits) - 1)]);
    value >>= bits;
  } while (value != 0);
  return digits;
}
void Hex(Call& call) { call.Return(InBase(call.Integer(0), 4)); }
void Oct(Call& call) { call.Return(InBase(call.Integer(0), 3)); }

}  // namespace

void RegisterNumeric(sqlite3* db) {
  static constexpr Definition kDefinitions[] = {
      {"round", 1, 2, Enter<NullThrough<Round>>},
      {"abs", 1, 1, Enter<NullThrough<Apply<Absolute>>>},
      {"int", 1, 1, Enter<NullThrough<Apply<Floor>>>},
      {"fix", 1, 1, Enter<NullThrough<Apply<Truncate>>>},
      {"sgn", 1, 1, Enter<NullThrough<Sign>>},
      {"sqr", 1, 1, Enter<NullThrough<SquareRoot>>},
      {"exp", 1, 1, Enter<NullThrough<Exponential>>},
      {"log", 1, 1, Enter<NullThrough<Logarithm>>},
      {"sin", 1, 1, Enter<NullThrough<Sine>>},
      {"cos", 1, 1, Enter<NullThrough<Cosine>>},
      {"tan", 1, 1, Enter<NullThrough<Tangent>>},
      {"atn", 1, 1, Enter<NullThrough<ArcTangent>>},
      {"rnd", 0, 1, Enter<Random>, false},
      {"isnumeric", 1, 1, Enter<IsNumericFunction>},
      {"hex", 1, 1, Enter<NullThrough<Hex>>},
      {"oct", 1, 1, Enter<NullThrough<Oct>>},
  };
  RegisterAll(db, kDefinitions);
}

}  // namespace store::functions
