#include "store/dialect/diagnose.h"
#include "store/dialect/parser.h"
#include "store/dialect/scan.h"

namespace store::dialect {

namespace {

// Binding strength of the operators, weakest first.
enum Strength {
  kImpStrength = 1,
  kEqvStrength,
  kXorStrength,
  kOrStrength,
  kAndStrength,
  kNotStrength,
  kCompareStrength,
  kConcatStrength,
  kAddStrength,
  kModStrength,
  kIntegerDivideStrength,
  kMultiplyStrength,
  kNegateStrength,
  kPowerStrength,
};

struct Infix {
  std::string_view text;
  Op op;
  int strength;
};

constexpr Infix kSigns[] = {
    {"=", Op::kEqual, kCompareStrength},      {"<>", Op::kNotEqual, kCompareStrength},
    {"<", Op::kLess, kCompareStrength},       {">", Op::kGreater, kCompareStrength},
    {"<=", Op::kLessEqual, kCompareStrength}, {">=", Op::kGreaterEqual, kCompareStrength},
    {"&", Op::kConcat, kConcatStrength},      {"+", Op::kAdd, kAddStrength},
    {"-", Op::kSubtract, kAddStrength},       {"\\", Op::kIntegerDivide, kIntegerDivideStrength},
    {"*", Op::kMultiply, kMultiplyStrength},  {"/", Op::kDivide, kMultiplyStrength},
    {"^", Op::kPower, kPowerStrength},
};

constexpr Infix kWords[] = {
    {"AND", Op::kAnd, kAndStrength},       {"OR", Op::kOr, kOrStrength},
    {"XOR", Op::kXor, kXorStrength},       {"EQV", Op::kEqv, kEqvStrength},
    {"IMP", Op::kImp, kImpStrength},       {"MOD", Op::kModulo, kModStrength},
    {"LIKE", Op::kLike, kCompareStrength}, {"IN", Op::kIn, kCompareStrength},
    {"IS", Op::kIsNull, kCompareStrength}, {"BETWEEN", Op::kBetween, kCompareStrength},
};

const Infix* FindInfix(const Token& token) {
  if (token.kind == TokenKind::kSign) {
    for (const Infix& infix : kSigns) {
      if (infix.text == token.text) return &infix;
    }
  } else if (token.kind == TokenKind::kName) {
    for (const Infix& infix : kWords) {
      if (SameName(infix.text, token.text)) return &infix;
    }
  }
  return nullptr;
}

bool IsComparison(Op op) { return op >= Op::kEqual && op <= Op::kGreaterEqual; }

// Deeper trees come from no honest statement; SQLite itself stops at 1000.
constexpr int kDeepest = 450;
constexpr int kMostNested = 150;

}  // namespace

/// Counts open recursion, so that a run of "(" cannot exhaust the stack.
class Parser::Nesting {
 public:
  explicit Nesting(Parser& parser) : parser_(parser) {
    if (++parser_.nesting_ > kMostNested * 3) parser_.Fail("expresie prea complexa");
  }
  ~Nesting() { --parser_.nesting_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  Parser& parser_;
};

Expr* Parser::Node(Op op, int position, std::vector<Expr*> args) {
  Expr* e = tree_.NewExpr(op, position);
  for (const Expr* arg : args) e->depth = std::max(e->depth, arg->depth + 1);
  if (e->depth > kDeepest) FailAt("expresie prea complexa", position);
  e->args = std::move(args);
  return e;
}

Expr* Parser::ParseOperators(int lowest) {
  const Nesting nesting(*this);
  Expr* left = ParseOperand();
  for (;;) {
    bool negated = false;
    std::size_t ahead = 0;
    if (IsWord("NOT")) {
      if (!IsWord("LIKE", 1) && !IsWord("IN", 1) && !IsWord("BETWEEN", 1)) return left;
      negated = true;
      ahead = 1;
    }
    const Infix* infix = FindInfix(Peek(ahead));
    if (infix == nullptr || infix->strength < lowest) return left;
    const int position = Peek().position;
    at_ += ahead + 1;
    if (infix->strength == kCompareStrength) {
      left = ParseComparisonTail(left, infix->op, position);
      left->negated = left->negated || negated;
    } else {
      left = Node(infix->op, position, {left, ParseOperators(infix->strength + 1)});
    }
  }
}

Expr* Parser::ParseComparisonTail(Expr* left, Op op, int position) {
  switch (op) {
    case Op::kIsNull: {
      const bool negated = AcceptWord("NOT");
      ExpectWord("NULL");
      Expr* e = Node(op, position, {left});
      e->negated = negated;
      return e;
    }
    case Op::kBetween: {
      Expr* low = ParseOperators(kConcatStrength);
      ExpectWord("AND");
      return Node(op, position, {left, low, ParseOperators(kConcatStrength)});
    }
    case Op::kIn: {
      ExpectSign("(");
      if (IsWord("SELECT")) {
        Expr* e = Node(Op::kInQuery, position, {left});
        e->query = ParseQuery();
        ExpectSign(")");
        return e;
      }
      std::vector<Expr*> args{left};
      do {
        args.push_back(ParseExpression());
      } while (AcceptSign(","));
      ExpectSign(")");
      return Node(op, position, std::move(args));
    }
    default:
      break;
  }
  if (IsComparison(op) && (IsWord("ANY") || IsWord("SOME") || IsWord("ALL")) && IsSign("(", 1)) {
    Expr* e = Node(Op::kQuantified, position, {left});
    e->compare = op;
    e->all = IsWord("ALL");
    at_ += 2;
    e->query = ParseQuery();
    ExpectSign(")");
    return e;
  }
  return Node(op, position, {left, ParseOperators(kConcatStrength)});
}

Expr* Parser::ParseOperand() {
  const int position = Peek().position;
  if (AcceptSign("-")) return Node(Op::kNegate, position, {ParseOperators(kNegateStrength)});
  if (AcceptSign("+")) return ParseOperators(kNegateStrength);
  if (AcceptWord("NOT")) return Node(Op::kNot, position, {ParseOperators(kNotStrength)});
  return ParsePrimary();
}

Expr* Parser::ParsePrimary() {
  const Token& token = Peek();
  const int position = token.position;
  switch (token.kind) {
    case TokenKind::kLiteral: {
      Expr* e = Node(Op::kLiteral, position, {});
      e->literal = lexed_.literals[static_cast<std::size_t>(token.literal)];
      if (hoist_) e->literal_index = token.literal;
      ++at_;
      return e;
    }
    case TokenKind::kSign:
      if (AcceptSign("(")) {
        Expr* e = nullptr;
        if (IsWord("SELECT")) {
          e = Node(Op::kScalar, position, {});
          e->query = ParseQuery();
        } else {
          e = ParseExpression();
        }
        ExpectSign(")");
        return e;
      }
      Fail("lipseste o valoare");
    case TokenKind::kName:
      if (AcceptWord("NULL")) return Node(Op::kNull, position, {});
      if (IsWord("TRUE") || IsWord("FALSE")) {
        Expr* e = Node(Op::kBoolean, position, {});
        e->truth = IsWord("TRUE");
        ++at_;
        return e;
      }
      if (AcceptWord("EXISTS")) {
        ExpectSign("(");
        Expr* e = Node(Op::kExists, position, {});
        e->query = ParseQuery();
        ExpectSign(")");
        return e;
      }
      break;
    case TokenKind::kBracketName:
      break;
    case TokenKind::kEnd:
      Fail("lipseste o valoare");
  }
  return ParseNameOrCall();
}

Expr* Parser::ParseNameOrCall() {
  const Token first = Peek();
  // LEFT and RIGHT are join words and functions.
  if (first.kind == TokenKind::kName && IsSign("(", 1) &&
      (!IsReserved(first.text) || IsWord("LEFT") || IsWord("RIGHT"))) {
    at_ += 2;
    return ParseCall(first);
  }
  Expr* e = Node(Op::kName, first.position, {});
  e->path.push_back(TakeName("o valoare"));
  while ((IsSign(".") || IsSign("!")) &&
         (Peek(1).kind == TokenKind::kName || Peek(1).kind == TokenKind::kBracketName)) {
    ++at_;
    e->path.emplace_back(Take().text);
  }
  return e;
}

Expr* Parser::ParseCall(const Token& name) {
  std::string upper;
  for (char c : name.text) upper += AsciiUpper(c);
  if (upper.size() > 1 && upper.back() == '$') upper.pop_back();
  Expr* e = Node(Op::kFunction, name.position, {});
  e->text = upper;
  if (upper == "COUNT" && AcceptSign("*")) {
    ExpectSign(")");
    e->op = Op::kAggregate;
    return e;
  }
  std::vector<Expr*> args;
  if (!AcceptSign(")")) {
    do {
      args.push_back(ParseExpression());
    } while (AcceptSign(","));
    ExpectSign(")");
  }
  for (const Expr* arg : args) e->depth = std::max(e->depth, arg->depth + 1);
  if (e->depth > kDeepest) FailAt("expresie prea complexa", name.position);
  e->args = std::move(args);
  return e;
}

}  // namespace store::dialect
