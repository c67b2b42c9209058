#include "store/dialect/lexer.h"

#include <algorithm>
#include <iterator>

#include "store/dialect/diagnose.h"
#include "store/dialect/scan.h"

namespace store::dialect {

Lexed Lex(std::string_view text) {
  Lexed out;
  std::size_t p = 0;
  auto add = [&](TokenKind kind, std::size_t end) {
    out.tokens.push_back({kind, text.substr(p, end - p), static_cast<int>(p), -1});
    p = end;
  };
  auto add_literal = [&](LiteralKind kind, std::size_t end, bool doubled) {
    out.tokens.push_back({TokenKind::kLiteral, text.substr(p, end - p), static_cast<int>(p),
                          static_cast<int>(out.literals.size())});
    out.literals.push_back({kind, text.substr(p, end - p), doubled});
    p = end;
  };
  while (p < text.size()) {
    const char c = text[p];
    switch (ClassOf(c)) {
      case CharClass::kBlank:
        ++p;
        break;
      case CharClass::kLetter:
        add(TokenKind::kName, ScanName(text, p));
        break;
      case CharClass::kDot:
        if (p + 1 >= text.size() || !IsDigit(text[p + 1])) {
          add(TokenKind::kSign, p + 1);
          break;
        }
        [[fallthrough]];
      case CharClass::kDigit: {
        LiteralKind kind;
        const std::size_t end = ScanNumber(text, p, kind);
        add_literal(kind, end, false);
        break;
      }
      case CharClass::kQuote: {
        bool doubled;
        const std::size_t end = ScanText(text, p, doubled);
        add_literal(LiteralKind::kText, end, doubled);
        break;
      }
      case CharClass::kHash:
        add_literal(LiteralKind::kDate, ScanDate(text, p), false);
        break;
      case CharClass::kBracket: {
        const std::size_t end = ScanBracket(text, p);
        if (end - p <= 2) ThrowSyntax(text, "nume gol intre paranteze drepte", p);
        out.tokens.push_back(
            {TokenKind::kBracketName, text.substr(p + 1, end - p - 2), static_cast<int>(p), -1});
        p = end;
        break;
      }
      case CharClass::kSign: {
        const char next = p + 1 < text.size() ? text[p + 1] : '\0';
        // "--" begins a comment elsewhere; here only a subtracted negative number may look so.
        if (c == '-' && next == '-') {
          const char after = p + 2 < text.size() ? text[p + 2] : '\0';
          if (!IsDigit(after) && after != '.' && after != '(')
            ThrowSyntax(text, "comentariile nu sunt permise", p);
        }
        const bool two = (c == '<' && (next == '=' || next == '>')) || (c == '>' && next == '=');
        add(TokenKind::kSign, p + (two ? 2 : 1));
        break;
      }
      case CharClass::kRefused:
        ThrowRefusedChar(text, p);
    }
  }
  out.tokens.push_back({TokenKind::kEnd, {}, static_cast<int>(text.size()), -1});
  return out;
}

bool IsReserved(std::string_view word) {
  static constexpr std::string_view kWords[] = {
      "ALL",         "AND",   "ANY",    "AS",     "BETWEEN", "BY",    "CREATE", "DELETE", "DISTINCT",
      "DISTINCTROW", "DROP",  "EQV",    "EXISTS", "FALSE",   "FROM",  "GROUP",  "HAVING", "IMP",
      "IN",          "INNER", "INSERT", "INTO",   "IS",      "JOIN",  "LEFT",   "LIKE",   "MOD",
      "NOT",         "NULL",  "ON",     "OR",     "ORDER",   "RIGHT", "SELECT", "SET",    "SOME",
      "TRUE",        "UNION", "UPDATE", "VALUES", "WHERE",   "XOR"};
  return std::any_of(std::begin(kWords), std::end(kWords),
                     [&](std::string_view w) { return SameName(w, word); });
}

}  // namespace store::dialect
