#include <charconv>

#include "store/dialect/parser.h"
#include "store/dialect/scan.h"

namespace store::dialect {

namespace {

struct TypeName {
  std::string_view name;
  ColumnType type;
};

constexpr TypeName kTypeNames[] = {
    {"COUNTER", ColumnType::kCounter},   {"AUTOINCREMENT", ColumnType::kCounter},
    {"BYTE", ColumnType::kByte},         {"TINYINT", ColumnType::kByte},
    {"SHORT", ColumnType::kShort},       {"SMALLINT", ColumnType::kShort},
    {"INTEGER", ColumnType::kLong},      {"INTEGER2", ColumnType::kShort},
    {"LONG", ColumnType::kLong},         {"INT", ColumnType::kLong},
    {"INTEGER4", ColumnType::kLong},     {"SINGLE", ColumnType::kSingle},
    {"REAL", ColumnType::kSingle},       {"DOUBLE", ColumnType::kDouble},
    {"FLOAT", ColumnType::kDouble},      {"NUMBER", ColumnType::kDouble},
    {"CURRENCY", ColumnType::kCurrency}, {"MONEY", ColumnType::kCurrency},
    {"DECIMAL", ColumnType::kDecimal},   {"NUMERIC", ColumnType::kDecimal},
    {"TEXT", ColumnType::kText},         {"CHAR", ColumnType::kText},
    {"VARCHAR", ColumnType::kText},      {"STRING", ColumnType::kText},
    {"MEMO", ColumnType::kMemo},         {"LONGTEXT", ColumnType::kMemo},
    {"NOTE", ColumnType::kMemo},         {"DATETIME", ColumnType::kDateTime},
    {"DATE", ColumnType::kDateTime},     {"TIME", ColumnType::kDateTime},
    {"YESNO", ColumnType::kYesNo},       {"BIT", ColumnType::kYesNo},
    {"LOGICAL", ColumnType::kYesNo},     {"BOOLEAN", ColumnType::kYesNo},
};

constexpr int kLongestText = 255;

}  // namespace

Type Parser::ParseType() {
  const Token name = Take();
  if (name.kind != TokenKind::kName) FailAt("lipseste tipul de date", name.position);
  const TypeName* found = nullptr;
  for (const TypeName& candidate : kTypeNames) {
    if (SameName(candidate.name, name.text)) found = &candidate;
  }
  if (found == nullptr) FailAt("tip de date necunoscut", name.position);
  int size = 0, scale = 0;
  if (AcceptSign("(")) {
    auto number = [&] {
      const Token token = Take();
      int value = 0;
      if (token.kind == TokenKind::kLiteral) {
        const auto [end, error] =
            std::from_chars(token.text.data(), token.text.data() + token.text.size(), value);
        if (error == std::errc() && end == token.text.data() + token.text.size()) return value;
      }
      FailAt("se asteapta un numar", token.position);
    };
    size = number();
    if (AcceptSign(",")) scale = number();
    ExpectSign(")");
  }
  if (found->type == ColumnType::kDecimal && size != 0) {
    if (size < 1 || size > 28 || scale < 0 || scale > size) {
      FailAt("un numar zecimal are cel mult 28 de cifre", name.position);
    }
    return Type::Of(ColumnType::kDecimal, DecimalSize(size, scale));
  }
  if (found->type != ColumnType::kText) return Type::Of(found->type);
  if (size < 0 || size > kLongestText) FailAt("dimensiunea textului este de cel mult 255", name.position);
  return Type::Of(ColumnType::kText, size == 0 ? kLongestText : size);
}

std::vector<std::string> Parser::ParseNameList() {
  std::vector<std::string> out;
  ExpectSign("(");
  do {
    out.push_back(TakeName("numele coloanei"));
    // INSERT INTO t (t.a, …) names its table at times.
    while (AcceptSign(".")) out.back() = TakeName("numele coloanei");
    if (!AcceptWord("ASC")) AcceptWord("DESC");
  } while (AcceptSign(","));
  ExpectSign(")");
  return out;
}

void Parser::ParseCreate(Statement& out) {
  if (AcceptWord("TABLE")) {
    ParseCreateTable(out);
    return;
  }
  out.kind = StatementKind::kCreateIndex;
  out.unique = AcceptWord("UNIQUE");
  ExpectWord("INDEX");
  out.index = TakeName("numele indexului");
  ExpectWord("ON");
  out.object_position = Peek().position;
  out.object = TakeTableName();
  out.key_columns = ParseNameList();
}

void Parser::ParseCreateTable(Statement& out) {
  out.kind = StatementKind::kCreateTable;
  out.object_position = Peek().position;
  out.object = TakeTableName();
  ExpectSign("(");
  do {
    if (IsWord("CONSTRAINT") || (IsWord("PRIMARY") && IsWord("KEY", 1))) {
      ParseConstraint(out);
    } else {
      const int position = Peek().position;
      NewColumn column = ParseColumn();
      for (const NewColumn& other : out.new_columns) {
        if (SameName(other.name, column.name)) FailAt("coloana apare de doua ori: " + column.name, position);
      }
      out.new_columns.push_back(std::move(column));
    }
  } while (AcceptSign(","));
  ExpectSign(")");
  if (out.new_columns.empty()) Fail("tabela nu are coloane");
  for (const std::string& key : out.key_columns) {
    const bool found = std::any_of(out.new_columns.begin(), out.new_columns.end(),
                                   [&](const NewColumn& column) { return SameName(column.name, key); });
    if (!found) Fail("coloana cheii nu exista: " + key);
  }
}

void Parser::ParseConstraint(Statement& out) {
  if (AcceptWord("CONSTRAINT")) TakeName("numele constrangerii");
  ExpectWord("PRIMARY");
  ExpectWord("KEY");
  if (!out.key_columns.empty()) Fail("tabela are deja o cheie primara");
  out.key_columns = ParseNameList();
}

NewColumn Parser::ParseColumn() {
  NewColumn column;
  column.name = TakeName("numele coloanei");
  const Type type = ParseType();
  column.type = type.column;
  column.size = type.size;
  for (;;) {
    if (AcceptWord("NOT")) {
      ExpectWord("NULL");
      column.not_null = true;
    } else if (AcceptWord("NULL")) {
      column.not_null = false;
    } else if (AcceptWord("DEFAULT")) {
      const int begin = Peek().position;
      ParseExpression();
      const Token& last = lexed_.tokens[at_ - 1];
      const std::size_t end = static_cast<std::size_t>(last.position) + last.text.size() +
                              (last.kind == TokenKind::kBracketName ? 2 : 0);
      column.default_text =
          std::string(text_.substr(static_cast<std::size_t>(begin), end - static_cast<std::size_t>(begin)));
    } else if (IsWord("CONSTRAINT") || IsWord("PRIMARY")) {
      if (AcceptWord("CONSTRAINT")) TakeName("numele constrangerii");
      ExpectWord("PRIMARY");
      ExpectWord("KEY");
      column.primary_key = true;
    } else {
      return column;
    }
  }
}

void Parser::ParseDrop(Statement& out) {
  if (AcceptWord("TABLE")) {
    out.kind = StatementKind::kDropTable;
  } else {
    ExpectWord("INDEX");
    out.kind = StatementKind::kDropIndex;
    out.index = TakeName("numele indexului");
    ExpectWord("ON");
  }
  out.object_position = Peek().position;
  out.object = TakeTableName();
}

}  // namespace store::dialect
