#include "store/dialect/diagnose.h"
#include "store/dialect/lexer.h"
#include "store/dialect/scan.h"

namespace store::dialect {

namespace {

using AnyOf = std::vector<std::vector<RowCondition::Term>>;

// AND over OR multiplies out; a criterion that grows past this is no criterion.
constexpr std::size_t kMostTerms = 1000;

/// Recursive descent over "[col] op value" joined by AND, OR and parentheses.
class ConditionReader {
 public:
  explicit ConditionReader(std::string_view text) : text_(text), lexed_(Lex(text)) {}

  AnyOf Read() {
    AnyOf out = ReadOr(0);
    if (Peek().kind != TokenKind::kEnd) Fail("criteriu nevalid");
    return out;
  }

 private:
  const Token& Peek() const { return lexed_.tokens[at_]; }
  [[noreturn]] void Fail(const char* what) const {
    ThrowSyntax(text_, what, static_cast<std::size_t>(Peek().position));
  }
  bool Accept(std::string_view word) {
    const Token& token = Peek();
    if ((token.kind != TokenKind::kName && token.kind != TokenKind::kSign) || !SameName(token.text, word)) {
      return false;
    }
    ++at_;
    return true;
  }

  AnyOf ReadOr(int depth) {
    AnyOf out = ReadAnd(depth);
    while (Accept("OR")) {
      AnyOf more = ReadAnd(depth);
      out.insert(out.end(), more.begin(), more.end());
      if (out.size() > kMostTerms) Fail("criteriu prea lung");
    }
    return out;
  }

  AnyOf ReadAnd(int depth) {
    AnyOf out = ReadTerm(depth);
    while (Accept("AND")) {
      const AnyOf right = ReadTerm(depth);
      AnyOf product;
      if (out.size() * right.size() > kMostTerms) Fail("criteriu prea lung");
      for (const auto& a : out) {
        for (const auto& b : right) {
          product.push_back(a);
          product.back().insert(product.back().end(), b.begin(), b.end());
          if (product.back().size() > kMostTerms) Fail("criteriu prea lung");
        }
      }
      out = std::move(product);
    }
    return out;
  }

  AnyOf ReadTerm(int depth) {
    if (depth > 50) Fail("criteriu prea complex");
    if (Accept("(")) {
      AnyOf inner = ReadOr(depth + 1);
      if (!Accept(")")) Fail("se asteapta \")\"");
      return inner;
    }
    RowCondition::Term term;
    const Token& name = Peek();
    if (name.kind != TokenKind::kBracketName && (name.kind != TokenKind::kName || IsReserved(name.text))) {
      Fail("lipseste numele coloanei");
    }
    term.column = name.text;
    ++at_;
    for (const char* op : {"=", "<>", "<=", ">=", "<", ">", "LIKE"}) {
      if (!Accept(op)) continue;
      term.op = op;
      break;
    }
    if (term.op.empty()) Fail("lipseste operatorul");
    term.value = ReadValue();
    return {{std::move(term)}};
  }

  Value ReadValue() {
    const bool negative = Accept("-");
    if (!negative) Accept("+");
    const Token& token = Peek();
    if (token.kind == TokenKind::kLiteral) {
      const Value value = LiteralValue(lexed_.literals[static_cast<std::size_t>(token.literal)]);
      if (negative && !value.is_number()) Fail("lipseste valoarea");
      ++at_;
      if (!negative) return value;
      return value.is_integer() ? Value(-value.ToInteger()) : Value(-value.ToDouble());
    }
    if (!negative) {
      if (Accept("NULL")) return Value();
      if (Accept("TRUE")) return Value(true);
      if (Accept("FALSE")) return Value(false);
    }
    Fail("lipseste valoarea");
  }

  std::string_view text_;
  Lexed lexed_;
  std::size_t at_ = 0;
};

}  // namespace

RowCondition ParseRowCondition(std::string_view text) { return {ConditionReader(text).Read()}; }

}  // namespace store::dialect
