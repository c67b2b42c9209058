#include <cmath>

#include "store/functions.h"
#include "store/functions_call.h"
#include "store/value.h"

namespace store::functions {

namespace {

[[noreturn]] void FailDivision() { Fail(kDivisionByZero, "Impartire la zero"); }

void Div(Call& call) {
  double left = call.Number(0), right = call.Number(1);
  if (right == 0) FailDivision();
  call.Return(left / right);
}

void IntegerDiv(Call& call) {
  std::int64_t left = call.Integer(0), right = call.Integer(1);
  if (right == 0) FailDivision();
  if (right == -1) return call.ReturnArithmetic(-static_cast<double>(left), true);
  call.Return(left / right);
}

void Mod(Call& call) {
  std::int64_t left = call.Integer(0), right = call.Integer(1);
  if (right == 0) FailDivision();
  call.Return(right == -1 ? std::int64_t{0} : left % right);
}

void Pow(Call& call) {
  double base = call.Number(0), exponent = call.Number(1);
  if (base == 0 && exponent < 0) FailDivision();
  if (base < 0 && exponent != std::floor(exponent)) FailInvalidCall();
  call.Return(std::pow(base, exponent));
}

void Plus(Call& call) {
  bool left_text = call.type(0) == SQLITE_TEXT, right_text = call.type(1) == SQLITE_TEXT;
  if (left_text && right_text) {
    std::string joined(call.Text(0).view());
    joined += call.Text(1).view();
    return call.Return(joined);
  }
  bool whole = call.type(0) == SQLITE_INTEGER && call.type(1) == SQLITE_INTEGER;
  call.ReturnArithmetic(call.Number(0) + call.Number(1), whole);
}

void Cat(Call& call) {
  std::string joined(call.Text(0).view());
  joined += call.Text(1).view();
  call.Return(joined);
}

void LikeOperator(Call& call) { call.Return(Like(call.Text(0), call.Text(1))); }

// The logical operators work bit by bit, as on the engine's long integers; -1 and 0 are the truth values.
// Null gives way where the other side decides alone.
void And(Call& call) {
  bool left_null = call.IsNull(0), right_null = call.IsNull(1);
  if (!left_null && !right_null) return call.Return(call.Integer(0) & call.Integer(1));
  if ((!left_null && call.Integer(0) == 0) || (!right_null && call.Integer(1) == 0)) return call.Return(0);
  call.ReturnNull();
}

void Or(Call& call) {
  bool left_null = call.IsNull(0), right_null = call.IsNull(1);
  if (!left_null && !right_null) return call.Return(call.Integer(0) | call.Integer(1));
  if (!left_null && call.Integer(0) != 0) return call.Return(call.Integer(0));
  if (!right_null && call.Integer(1) != 0) return call.Return(call.Integer(1));
  call.ReturnNull();
}

void Xor(Call& call) { call.Return(call.Integer(0) ^ call.Integer(1)); }
void Eqv(Call& call) { call.Return(~(call.Integer(0) ^ call.Integer(1))); }

void Imp(Call& call) {
  bool left_null = call.IsNull(0), right_null = call.IsNull(1);
  if (!left_null && !right_null) return call.Return(~call.Integer(0) | call.Integer(1));
  if (!left_null && call.Integer(0) == 0) return call.Return(-1);
  if (!right_null && call.Integer(1) != 0) return call.Return(call.Integer(1));
  call.ReturnNull();
}

void Not(Call& call) { call.Return(~call.Integer(0)); }

void DateTextOf(Call& call) {
  if (call.type(0) == SQLITE_TEXT) return call.ReturnSame(0);
  call.Return(DateText(Date{call.Days(0)}));
}

}  // namespace

void RegisterOperators(sqlite3* db) {
  static constexpr Definition kDefinitions[] = {
      {"div", 2, 2, Enter<NullThrough<Div>>},
      {"idiv", 2, 2, Enter<NullThrough<IntegerDiv>>},
      {"mod", 2, 2, Enter<NullThrough<Mod>>},
      {"pow", 2, 2, Enter<NullThrough<Pow>>},
      {"plus", 2, 2, Enter<NullThrough<Plus>>},
      {"cat", 2, 2, Enter<Cat>},
      {"like", 2, 2, Enter<NullThrough<LikeOperator>>},
      {"and", 2, 2, Enter<And>},
      {"or", 2, 2, Enter<Or>},
      {"xor", 2, 2, Enter<NullThrough<Xor>>},
      {"eqv", 2, 2, Enter<NullThrough<Eqv>>},
      {"imp", 2, 2, Enter<Imp>},
      {"not", 1, 1, Enter<NullThrough<Not>>},
      {"date_text", 1, 1, Enter<NullThrough<DateTextOf>>},
  };
  RegisterAll(db, kDefinitions);
}

}  // namespace store::functions
