#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <deque>
#include <sstream>

#include "platform/encoding.h"
#include "store/dialect/function_table.h"
#include "store/dialect/translate.h"
#include "store/error.h"
#include "store/functions.h"

namespace store::dialect {
namespace {

/// Two tables in a bare SQLite connection, described to the translator as the engine would do it.
class Translations : public ::testing::Test, protected SchemaSource {
 protected:
  void SetUp() override {
    ASSERT_EQ(sqlite3_open(":memory:", &db_), SQLITE_OK);
    RegisterFunctions(db_);
    Create("CREATE TABLE Tari (id COUNTER, Cod TEXT(2), Nume TEXT(50), UE YESNO)");
    Create("CREATE TABLE Linii (id COUNTER, Tara TEXT(2), Val DOUBLE, Luna SHORT, Data DATETIME)");
  }
  void TearDown() override { sqlite3_close(db_); }

  /// CREATE TABLE in the dialect, kept as the store keeps it.
  void Create(const std::string& statement) {
    const Translation made = Translate(statement, *this);
    ASSERT_EQ(made.kind, StatementKind::kCreateTable);
    Named& named = relations_.emplace_back();
    named.name = made.object;
    named.relation.sqlite_name = "\"" + made.object + "\"";
    std::string columns;
    for (const NewColumn& column : made.new_columns) {
      named.relation.columns.push_back({column.name, column.type, column.size});
      if (column.type == ColumnType::kCounter) named.relation.counter_column = column.name;
      columns += fmt::format("{}\"{}\" {}", columns.empty() ? "" : ", ", column.name, Storage(column.type));
    }
    Sqlite("CREATE TABLE \"" + made.object + "\" (" + columns + ")");
  }

  void CreateQuery(const std::string& name, const std::string& text) {
    Named& named = relations_.emplace_back();
    named.name = name;
    named.relation.is_query = true;
    named.relation.query_text = text;
  }

  const Relation* Find(std::string_view name) const override {
    for (const Named& named : relations_) {
      if (platform::EqualsNoCase(named.name, name)) return &named.relation;
    }
    return nullptr;
  }

  void Sqlite(const std::string& sql) {
    char* message = nullptr;
    ASSERT_EQ(sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK) << sql << "\n"
                                                                                     << message;
  }

  /// What SQLite says about how it will run a statement.
  std::string Plan(const std::string& text) {
    const std::string sql = "EXPLAIN QUERY PLAN " + Translate(text, *this).sql;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sql + ": " + sqlite3_errmsg(db_));
    }
    std::string out;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      out += reinterpret_cast<const char*>(sqlite3_column_text(statement, 3));
      out += "\n";
    }
    sqlite3_finalize(statement);
    return out;
  }

 private:
  struct Named {
    std::string name;
    Relation relation;
  };

  static const char* Storage(ColumnType type) {
    switch (type) {
      case ColumnType::kCounter:
        return "INTEGER PRIMARY KEY";
      case ColumnType::kText:
      case ColumnType::kMemo:
        return "TEXT COLLATE DX";
      case ColumnType::kByte:
      case ColumnType::kShort:
      case ColumnType::kLong:
      case ColumnType::kYesNo:
        return "INTEGER";
      default:
        return "REAL";
    }
  }

  sqlite3* db_ = nullptr;
  std::deque<Named> relations_;
};

TEST_F(Translations, UseIndexesThroughQueriesAndGroups) {
  Sqlite("CREATE INDEX k ON Linii (Tara); CREATE INDEX l ON Tari (Cod)");
  CreateQuery("Grup",
              "SELECT Tara, MAX(Val) AS M, IIF(ISNULL(MAX(Data))=0,1,0) AS Are FROM Linii WHERE Luna<4 GROUP "
              "BY Tara");
  CreateQuery("Grup2", "SELECT Tara AS T2, M FROM Grup");
  CreateQuery("Q", "SELECT Cod AS C, Nume FROM Tari WHERE UE");
  const std::pair<const char*, const char*> cases[] = {
      {"SELECT Tara FROM Grup WHERE Tara ='ro'", "SEARCH s"},
      {"SELECT T2 FROM Grup2 WHERE T2 ='ro'", "SEARCH s"},
      {"SELECT Tara FROM Grup WHERE M>1 AND 'ro'=Tara", "SEARCH s"},
      {"SELECT Cod FROM Tari WHERE Cod ='RO'", "SEARCH"},
      {"SELECT Cod FROM Tari ORDER BY [Cod]", "USING COVERING INDEX"},
      {"SELECT Nume FROM Q WHERE C='RO'", "SEARCH"},
      {"SELECT Val FROM Linii INNER JOIN Q ON Linii.Tara=Q.C", "SEARCH"},
      {"SELECT * FROM Tari WHERE id BETWEEN 5 AND 1", "SEARCH"},
  };
  for (const auto& [text, step] : cases) EXPECT_THAT(Plan(text), testing::HasSubstr(step)) << text;
  EXPECT_EQ(Plan("SELECT Cod FROM Tari ORDER BY [Cod]").find("TEMP B-TREE"), std::string::npos);
  EXPECT_EQ(Translate("SELECT Tara FROM Grup WHERE Tara ='RO'", *this).sql.find("MAX"), std::string::npos)
      << "unused columns are left out";
}

TEST_F(Translations, TellWhatCanBeWrittenThrough) {
  CreateQuery("Q", "SELECT Nume AS N, UE FROM Tari WHERE UE");
  CreateQuery("G", "SELECT DISTINCT Nume FROM Tari");
  const Translation through = Translate("SELECT N, N & '' FROM Q ORDER BY N", *this);
  EXPECT_EQ(through.base_table, "\"Tari\"");
  EXPECT_EQ(through.columns[0].table_column, "Nume");
  EXPECT_EQ(through.columns[1].table_column, "");
  EXPECT_EQ(Translate("SELECT TOP 1 * FROM Linii WHERE Luna=3", *this).base_name, "Linii");
  for (const char* text : {"SELECT * FROM G", "SELECT COUNT(*) FROM Tari", "SELECT a.id FROM Tari a, Tari b",
                           "SELECT id FROM Tari UNION SELECT id FROM Linii", "SELECT 1"}) {
    EXPECT_EQ(Translate(text, *this).base_table, "") << text;
  }
}

/// Values that shape the SQL cannot be bound: they are part of the statement's key.
TEST_F(Translations, NameTheLiteralsThatShapeThem) {
  const Translation folded = Translate("SELECT 0.1+0.2 FROM Linii WHERE Luna=5", *this);
  ASSERT_EQ(folded.structural.size(), 2U);
  EXPECT_EQ(folded.structural[1].second, "0.2");
  EXPECT_TRUE(Translate("SELECT ROUND(Val*-0.25/ 100,2) FROM Linii", *this).structural.empty());
  EXPECT_EQ(Translate("SELECT LEFT(Tara,1) FROM Linii GROUP BY LEFT(Tara,1)", *this).structural.size(), 2U);
  EXPECT_EQ(Translate("SELECT Cod FROM Tari ORDER BY 1", *this).structural.size(), 1U);
}

TEST_F(Translations, TellTypesAndParameters) {
  const Translation mixed =
      Translate("SELECT IIF(UE,Cod,Val), IIF(UE,Val,Null), IIF(UE,Data,Null) FROM Tari, Linii", *this);
  EXPECT_FALSE(mixed.columns[0].typed);
  EXPECT_EQ(mixed.columns[1].type, ColumnType::kDouble);
  EXPECT_EQ(mixed.columns[2].type, ColumnType::kDateTime);
  const Translation bound = Translate("PARAMETERS [x] Text, y Long; SELECT * FROM Tari WHERE Cod=[x]", *this);
  ASSERT_EQ(bound.parameters.size(), 1U);
  EXPECT_EQ(bound.parameters[0].name, "x");
  EXPECT_EQ(bound.declared.size(), 2U);
}

TEST_F(Translations, ErrorsTellTheirPlace) {
  CreateQuery("Stricata", "SELECT lipsa FROM Tari");
  const std::tuple<const char*, const char*, int> cases[] = {
      {"SELECT altul FROM Tari", "altul", 7},
      {"SELECT * FROM lipsa", "lipsa", 14},
      {"SELECT * FROM Stricata", "Stricata", -1},  // the place is in the query's own text
  };
  for (const auto& [text, named, position] : cases) {
    try {
      Translate(text, *this);
      ADD_FAILURE() << text;
    } catch (const Error& error) {
      EXPECT_THAT(error.description(), testing::HasSubstr(named));
      EXPECT_EQ(error.position(), position) << text;
    }
  }
}

TEST_F(Translations, EveryFunctionIsRegistered) {
  std::istringstream names(
      "LEFT RIGHT MID LEN TRIM LTRIM RTRIM UCASE LCASE INSTR INSTRREV REPLACE STRCOMP STRREVERSE SPACE "
      "STRING CHR ASC STR VAL HEX OCT CSTR CINT CLNG CBYTE CDBL CSNG CCUR CDEC CBOOL CDATE CVDATE CVAR "
      "ROUND ABS INT FIX SGN SQR EXP LOG SIN COS TAN ATN RND IIF ISNULL ISNUMERIC ISDATE SWITCH CHOOSE "
      "FORMAT DATE NOW TIME YEAR MONTH DAY HOUR MINUTE SECOND WEEKDAY WEEKDAYNAME MONTHNAME DATEADD "
      "DATEDIFF DATEPART DATESERIAL DATEVALUE TIMESERIAL TIMEVALUE ");
  for (std::string name; names >> name;) {
    const FunctionInfo* info = FindFunction(name);
    ASSERT_NE(info, nullptr) << name;
    for (int count = info->fewest; count <= info->most; ++count) {
      if (name == "SWITCH" && count % 2 != 0) continue;
      std::string call = "SELECT " + name + "(";
      for (int i = 0; i < count; ++i) call += i == 0 ? "Null" : ",Null";
      EXPECT_NO_THROW(Plan(call + ") FROM Tari")) << call;
    }
  }
}

TEST_F(Translations, Definitions) {
  const Translation table = Translate(
      "CREATE TABLE [Lista noua] (ID COUNTER CONSTRAINT pk PRIMARY KEY, Nume TEXT(30) NOT NULL, Tara TEXT(2) "
      "DEFAULT \"RO\","
      " Proc DECIMAL(18,4) DEFAULT -1.5, Nota MEMO, Da YESNO, Cod VARCHAR, Nr INTEGER, Nr2 INT)",
      *this);
  EXPECT_EQ(table.kind, StatementKind::kCreateTable);
  EXPECT_EQ(table.object, "Lista noua");
  EXPECT_TRUE(table.sql.empty());
  ASSERT_EQ(table.new_columns.size(), 9U);
  EXPECT_TRUE(table.new_columns[0].primary_key);
  EXPECT_EQ(table.new_columns[0].type, ColumnType::kCounter);
  EXPECT_TRUE(table.new_columns[1].not_null);
  EXPECT_EQ(table.new_columns[1].size, 30);
  EXPECT_EQ(table.new_columns[2].default_text, "\"RO\"");
  EXPECT_EQ(table.new_columns[3].default_text, "-1.5");
  EXPECT_EQ(table.new_columns[6].size, 255);
  EXPECT_EQ(table.new_columns[7].type, ColumnType::kLong);
  EXPECT_EQ(table.new_columns[8].type, ColumnType::kLong);
  const Translation keyed = Translate("CREATE TABLE x (a LONG, b LONG, PRIMARY KEY (a, B))", *this);
  EXPECT_EQ(keyed.key_columns, (std::vector<std::string>{"a", "B"}));
  const Translation index = Translate("CREATE UNIQUE INDEX i ON Tari (Cod DESC, id)", *this);
  EXPECT_TRUE(index.unique);
  EXPECT_EQ(index.index, "i");
  EXPECT_EQ(index.object, "Tari");
  EXPECT_EQ(index.key_columns.size(), 2U);
  EXPECT_EQ(Translate("DROP TABLE Tari;", *this).kind, StatementKind::kDropTable);
  EXPECT_EQ(Translate("DROP INDEX i ON Tari", *this).index, "i");
}

TEST(Normalize, StatementsThatDifferInValuesShareAKey) {
  Normalized a, b;
  auto same = [&](const char* left, const char* right) {
    Normalize(left, a);
    Normalize(right, b);
    return a.key == b.key;
  };
  EXPECT_TRUE(same("SELECT x FROM t WHERE c ='01012100' AND n=5 AND d<#3-5-24#",
                   "SELECT  x FROM t\r\nWHERE c ='a''b' AND n=77 AND d<#1/1/2024# "));
  EXPECT_FALSE(same("n=5", "n=5.0"));
  EXPECT_FALSE(same("n='5'", "n=5"));
  EXPECT_FALSE(same("a b", "ab"));
  EXPECT_FALSE(same("[5]", "[6]")) << "names are no values";
  EXPECT_FALSE(same("HS8", "HS6"));
  Normalize("UPDATE t SET a='x''y', b=-2.5e3, c=.5, d=\"q\"\"\", [e 5]=True WHERE f <> 0ORDER", a);
  ASSERT_EQ(a.literals.size(), 5U);
  EXPECT_EQ(LiteralValue(a.literals[0]), Value("x'y"));
  EXPECT_EQ(LiteralValue(a.literals[1]), Value(2500.0));
  EXPECT_EQ(LiteralValue(a.literals[2]), Value(0.5));
  EXPECT_EQ(LiteralValue(a.literals[3]), Value("q\""));
  EXPECT_EQ(LiteralValue(a.literals[4]), Value(0));
  for (const char* text : {"'a", "\"a", "[a", "#1/1/2024", "a{b", "a;\x01", "a|b", "[a\nb]"}) {
    EXPECT_THROW(Normalize(text, a), Error) << text;
  }
}

TEST(RowConditions, TermsJoinedByAndAndOr) {
  const RowCondition one = ParseRowCondition("[Cod NC] LIKE '%01*'");
  ASSERT_EQ(one.any_of.size(), 1U);
  EXPECT_EQ(one.any_of[0][0].column, "Cod NC");
  EXPECT_EQ(one.any_of[0][0].op, "LIKE");
  EXPECT_EQ(one.any_of[0][0].value, Value("%01*"));
  const RowCondition many = ParseRowCondition("(a=1 OR b<>'x''y') AND c>=-2.5 and d<#2024-03-05# OR e=True");
  ASSERT_EQ(many.any_of.size(), 3U);
  ASSERT_EQ(many.any_of[1].size(), 3U);
  EXPECT_EQ(many.any_of[1][0].value, Value("x'y"));
  EXPECT_EQ(many.any_of[1][1].value, Value(-2.5));
  EXPECT_EQ(many.any_of[1][2].value, Value(Date{45356}));
  EXPECT_EQ(many.any_of[2][0].value, Value(true));
  for (const char* text :
       {"", "a", "a=", "=1", "a=b", "a=1 AND", "(a=1", "a=1)", "a=-'x'", "a BETWEEN 1 AND 2", "a='x"}) {
    EXPECT_THROW(ParseRowCondition(text), Error) << text;
  }
}

}  // namespace
}  // namespace store::dialect
