#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/dialect/ast.h"
#include "store/dialect/lexer.h"

namespace store::dialect {

/// Recursive descent over one statement; throws Error(kSyntaxError) with the position.
class Parser {
 public:
  /// `hoist`: literals keep their index, to become bound parameters.
  Parser(std::string_view text, Tree& tree, bool hoist);

  Statement ParseStatement();
  const std::vector<Literal>& literals() const { return lexed_.literals; }

 private:
  class Nesting;

  // Tokens
  const Token& Peek(std::size_t ahead = 0) const;
  Token Take();
  bool IsWord(std::string_view word, std::size_t ahead = 0) const;
  bool IsSign(std::string_view sign, std::size_t ahead = 0) const;
  bool AcceptWord(std::string_view word);
  bool AcceptSign(std::string_view sign);
  void ExpectWord(std::string_view word);
  void ExpectSign(std::string_view sign);
  bool IsName() const;  ///< a name that may stand bare or in brackets
  std::string TakeName(const char* what);
  std::string TakeTableName();
  [[noreturn]] void Fail(const std::string& what) const;
  [[noreturn]] void FailAt(const std::string& what, int position) const;

  // Statements
  std::vector<Declared> ParseParameters();
  Query* ParseQuery();
  Select* ParseSelect();
  SelectItem ParseItem();
  std::vector<From*> ParseFromList();
  From* ParseJoin();
  From* ParseSource();
  std::vector<OrderItem> ParseOrderBy();
  void ParseInsert(Statement& out);
  void ParseUpdate(Statement& out);
  void ParseDelete(Statement& out);
  void ParseCreate(Statement& out);
  void ParseDrop(Statement& out);
  void ParseCreateTable(Statement& out);
  NewColumn ParseColumn();
  void ParseConstraint(Statement& out);
  std::vector<std::string> ParseNameList();
  Type ParseType();

  // Expressions
  Expr* ParseExpression() { return ParseOperators(0); }
  Expr* ParseOperators(int lowest);
  Expr* ParseOperand();
  Expr* ParseComparisonTail(Expr* left, Op op, int position);
  Expr* ParsePrimary();
  Expr* ParseNameOrCall();
  Expr* ParseCall(const Token& name);
  Expr* Node(Op op, int position, std::vector<Expr*> args);

  std::string_view text_;
  Tree& tree_;
  bool hoist_;
  Lexed lexed_;
  std::size_t at_ = 0;
  int nesting_ = 0;
};

}  // namespace store::dialect
