#include "store/dialect/parser.h"

#include "store/dialect/diagnose.h"
#include "store/dialect/scan.h"

namespace store::dialect {

Parser::Parser(std::string_view text, Tree& tree, bool hoist)
    : text_(text), tree_(tree), hoist_(hoist), lexed_(Lex(text)) {}

const Token& Parser::Peek(std::size_t ahead) const {
  return lexed_.tokens[std::min(at_ + ahead, lexed_.tokens.size() - 1)];
}

Token Parser::Take() {
  const Token token = Peek();
  if (token.kind != TokenKind::kEnd) ++at_;
  return token;
}

bool Parser::IsWord(std::string_view word, std::size_t ahead) const {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::kName && SameName(token.text, word);
}

bool Parser::IsSign(std::string_view sign, std::size_t ahead) const {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::kSign && token.text == sign;
}

bool Parser::AcceptWord(std::string_view word) {
  if (!IsWord(word)) return false;
  ++at_;
  return true;
}

bool Parser::AcceptSign(std::string_view sign) {
  if (!IsSign(sign)) return false;
  ++at_;
  return true;
}

void Parser::ExpectWord(std::string_view word) {
  if (!AcceptWord(word)) Fail("se asteapta " + std::string(word));
}

void Parser::ExpectSign(std::string_view sign) {
  if (!AcceptSign(sign)) Fail("se asteapta \"" + std::string(sign) + "\"");
}

bool Parser::IsName() const {
  const Token& token = Peek();
  return token.kind == TokenKind::kBracketName || (token.kind == TokenKind::kName && !IsReserved(token.text));
}

std::string Parser::TakeName(const char* what) {
  if (!IsName()) Fail(std::string("lipseste ") + what);
  return std::string(Take().text);
}

/// Text files are tables too: "curs.txt" is one name.
std::string Parser::TakeTableName() {
  std::string name = TakeName("numele tabelei");
  while (IsSign(".") && (Peek(1).kind == TokenKind::kName || Peek(1).kind == TokenKind::kBracketName)) {
    ++at_;
    name += ".";
    name += Take().text;
  }
  return name;
}

void Parser::Fail(const std::string& what) const { FailAt(what, Peek().position); }
void Parser::FailAt(const std::string& what, int position) const {
  ThrowSyntax(text_, what, static_cast<std::size_t>(position));
}

Statement Parser::ParseStatement() {
  Statement out;
  if (AcceptWord("PARAMETERS")) out.parameters = ParseParameters();
  if (IsWord("SELECT") || IsSign("(")) {
    out.kind = StatementKind::kSelect;
    out.query = ParseQuery();
  } else if (AcceptWord("INSERT")) {
    ParseInsert(out);
  } else if (AcceptWord("UPDATE")) {
    ParseUpdate(out);
  } else if (AcceptWord("DELETE")) {
    ParseDelete(out);
  } else if (out.parameters.empty() && AcceptWord("CREATE")) {
    ParseCreate(out);
  } else if (out.parameters.empty() && AcceptWord("DROP")) {
    ParseDrop(out);
  } else {
    Fail("instructiune SQL nevalida; se asteapta DELETE, INSERT, SELECT sau UPDATE");
  }
  AcceptSign(";");
  if (Peek().kind != TokenKind::kEnd) {
    const bool after_end = at_ > 0 && lexed_.tokens[at_ - 1].text == ";";
    Fail(after_end ? "exista text dupa sfarsitul instructiunii" : "operator lipsa sau text nepotrivit");
  }
  return out;
}

std::vector<Declared> Parser::ParseParameters() {
  std::vector<Declared> out;
  do {
    std::string name = TakeName("numele parametrului");
    out.push_back({std::move(name), ParseType()});
  } while (AcceptSign(","));
  ExpectSign(";");
  return out;
}

Query* Parser::ParseQuery() {
  if (++nesting_ > 400) Fail("interogare prea complexa");
  Query& query = tree_.queries.emplace_back();
  for (;;) {
    if (AcceptSign("(")) {
      query.selects.push_back(ParseSelect());
      ExpectSign(")");
    } else {
      query.selects.push_back(ParseSelect());
    }
    if (!AcceptWord("UNION")) break;
    query.all.push_back(AcceptWord("ALL"));
  }
  std::vector<OrderItem> order = ParseOrderBy();
  if (query.is_union()) {
    query.order_by = std::move(order);
  } else {
    query.selects[0]->order_by = std::move(order);
  }
  --nesting_;
  return &query;
}

Select* Parser::ParseSelect() {
  Select& select = tree_.selects.emplace_back();
  select.position = Peek().position;
  ExpectWord("SELECT");
  if (!AcceptWord("ALL")) {
    if (AcceptWord("DISTINCT")) {
      select.distinct = true;
    } else if (AcceptWord("DISTINCTROW")) {
      select.distinct_row = true;
    }
  }
  // "Top" may be a column's name as well.
  if (IsWord("TOP") && Peek(1).kind == TokenKind::kLiteral) {
    ++at_;
    if (lexed_.literals[static_cast<std::size_t>(Peek().literal)].kind != LiteralKind::kInteger) {
      Fail("TOP cere un numar intreg");
    }
    select.top = ParsePrimary();
    select.top_percent = AcceptWord("PERCENT");
  }
  do {
    select.items.push_back(ParseItem());
  } while (AcceptSign(","));
  if (IsWord("INTO")) Fail("SELECT ... INTO nu este permis");
  if (AcceptWord("FROM")) {
    select.from = ParseFromList();
    if (AcceptWord("WHERE")) select.where = ParseExpression();
    if (AcceptWord("GROUP")) {
      ExpectWord("BY");
      do {
        select.group_by.push_back(ParseExpression());
      } while (AcceptSign(","));
    }
    if (AcceptWord("HAVING")) select.having = ParseExpression();
  }
  return &select;
}

SelectItem Parser::ParseItem() {
  SelectItem item;
  item.position = Peek().position;
  if (AcceptSign("*")) return item;
  // t.* and t!*, the table's name perhaps of several parts
  std::size_t ahead = 0;
  while (Peek(ahead).kind == TokenKind::kName || Peek(ahead).kind == TokenKind::kBracketName) {
    if (!IsSign(".", ahead + 1) && !IsSign("!", ahead + 1)) break;
    ahead += 2;
    if (!IsSign("*", ahead)) continue;
    for (std::size_t i = 0; i < ahead; i += 2) {
      if (i > 0) item.star_of += ".";
      item.star_of += Peek(i).text;
    }
    at_ += ahead + 1;
    return item;
  }
  item.expr = ParseExpression();
  if (AcceptWord("AS")) item.alias = TakeName("numele de dupa AS");
  return item;
}

std::vector<From*> Parser::ParseFromList() {
  std::vector<From*> out;
  do {
    out.push_back(ParseJoin());
  } while (AcceptSign(","));
  return out;
}

From* Parser::ParseJoin() {
  if (++nesting_ > 400) Fail("interogare prea complexa");
  From* left = ParseSource();
  From::Kind kind = From::Kind::kSource;
  const int position = Peek().position;
  if (AcceptWord("INNER")) {
    kind = From::Kind::kInner;
  } else if (AcceptWord("LEFT")) {
    kind = From::Kind::kLeft;
    AcceptWord("OUTER");
  } else if (AcceptWord("RIGHT")) {
    kind = From::Kind::kRight;
    AcceptWord("OUTER");
  }
  if (kind != From::Kind::kSource) {
    ExpectWord("JOIN");
    From& join = tree_.froms.emplace_back();
    join.kind = kind;
    join.position = position;
    join.left = left;
    join.right = ParseSource();
    ExpectWord("ON");
    join.on = ParseExpression();
    if (IsWord("INNER") || IsWord("LEFT") || IsWord("RIGHT")) {
      Fail("trei sau mai multe tabele legate cer paranteze");
    }
    left = &join;
  }
  --nesting_;
  return left;
}

From* Parser::ParseSource() {
  if (IsSign("(") && !IsWord("SELECT", 1)) {
    ++at_;
    From* inner = ParseJoin();
    ExpectSign(")");
    return inner;
  }
  From& from = tree_.froms.emplace_back();
  from.position = Peek().position;
  if (AcceptSign("(")) {
    from.derived = ParseQuery();
    ExpectSign(")");
  } else {
    from.name = TakeTableName();
  }
  if (AcceptWord("AS")) {
    from.alias = TakeName("numele de dupa AS");
  } else if (IsName()) {
    from.alias = Take().text;
  }
  return &from;
}

std::vector<OrderItem> Parser::ParseOrderBy() {
  std::vector<OrderItem> out;
  if (!AcceptWord("ORDER")) return out;
  ExpectWord("BY");
  do {
    OrderItem item{ParseExpression(), false};
    if (AcceptWord("DESC")) {
      item.descending = true;
    } else {
      AcceptWord("ASC");
    }
    out.push_back(item);
  } while (AcceptSign(","));
  return out;
}

void Parser::ParseInsert(Statement& out) {
  out.kind = StatementKind::kInsert;
  ExpectWord("INTO");
  out.object_position = Peek().position;
  out.object = TakeTableName();
  if (IsSign("(") && !IsWord("SELECT", 1)) out.insert_columns = ParseNameList();
  if (AcceptWord("VALUES")) {
    ExpectSign("(");
    do {
      out.values.push_back(ParseExpression());
    } while (AcceptSign(","));
    ExpectSign(")");
    return;
  }
  if (!IsWord("SELECT") && !IsSign("(")) Fail("se asteapta VALUES sau SELECT");
  out.query = ParseQuery();
}

void Parser::ParseUpdate(Statement& out) {
  out.kind = StatementKind::kUpdate;
  out.from = ParseFromList();
  ExpectWord("SET");
  do {
    Assignment set;
    set.position = Peek().position;
    set.target.push_back(TakeName("numele coloanei"));
    while (AcceptSign(".") || AcceptSign("!")) set.target.push_back(TakeName("numele coloanei"));
    ExpectSign("=");
    set.value = ParseExpression();
    out.set.push_back(std::move(set));
  } while (AcceptSign(","));
  if (AcceptWord("WHERE")) out.where = ParseExpression();
}

void Parser::ParseDelete(Statement& out) {
  out.kind = StatementKind::kDelete;
  if (!IsWord("FROM")) {
    const SelectItem item = ParseItem();
    if (item.expr != nullptr) FailAt("se asteapta FROM", item.position);
    out.delete_of = item.star_of;
  }
  ExpectWord("FROM");
  out.from = ParseFromList();
  if (AcceptWord("WHERE")) out.where = ParseExpression();
}

}  // namespace store::dialect
