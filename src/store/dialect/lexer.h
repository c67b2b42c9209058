#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/dialect/translate.h"

namespace store::dialect {

enum class TokenKind { kName, kBracketName, kLiteral, kSign, kEnd };

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string_view text;  ///< brackets left out
  int position = 0;       ///< byte offset in the statement
  int literal = -1;       ///< index into Lexed::literals
};

struct Lexed {
  std::vector<Token> tokens;      ///< ends with kEnd
  std::vector<Literal> literals;  ///< the same, in the same order, as Normalize finds
};

Lexed Lex(std::string_view text);

/// Words that cannot stand as a bare name or alias.
bool IsReserved(std::string_view word);

}  // namespace store::dialect
