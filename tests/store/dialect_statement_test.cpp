#include "dialect_fixture.h"

namespace store::dialect {
namespace {

constexpr char kSyntax[] = "-2147217900", kMissing[] = "-2147217904", kNoTable[] = "-2147217865",
               kTooLong[] = "-2147217833", kConversion[] = "-2147217887";

class DialectStatement : public DialectTest {
 protected:
  void SetUp() override {
    DialectTest::SetUp();
    Create(
        "CREATE TABLE t (id COUNTER PRIMARY KEY, s TEXT(5), m MEMO, b BYTE, n LONG, f SINGLE, d DOUBLE, c "
        "CURRENCY, z DATETIME, y YESNO)");
    Create("CREATE TABLE u (k TEXT(5), v DOUBLE)");
    Run("INSERT INTO u VALUES ('a', 1)");
    Run("INSERT INTO u VALUES ('B', 2)");
  }
};

TEST_F(DialectStatement, InsertConvertsOrRefuses) {
  EXPECT_EQ(Run("INSERT INTO t (s, n, d, z, y) VALUES (12, '12', '12.5', '13.05.2004', 5=5)"), "affected 1");
  EXPECT_EQ(Run("SELECT s, n, d, z=#5/13/2004#, y FROM t"), "12,12,12.5,-1,-1");
  EXPECT_EQ(Run("INSERT INTO t (s) VALUES ('abcdef')"), kTooLong);
  EXPECT_EQ(Run("INSERT INTO t (s) VALUES ('șțăîâ')"), "affected 1") << "characters count, not bytes";
  EXPECT_EQ(Run("INSERT INTO t (b) VALUES (256)"), kConversion);
  EXPECT_EQ(Run("INSERT INTO t (n) VALUES (3000000000)"), kConversion);
  EXPECT_EQ(Run("INSERT INTO t (n) VALUES ('x')"), kConversion);
  EXPECT_EQ(Run("INSERT INTO t (d) VALUES ('')"), kConversion);
  EXPECT_EQ(Run("INSERT INTO t (d) VALUES (1e400)"), kConversion);
  EXPECT_EQ(Run("INSERT INTO t (s, n, y) VALUES (Null, Null, Null)"), "affected 1");
  EXPECT_EQ(Run("SELECT y FROM t WHERE s IS NULL"), "0") << "yes/no is never Null";
  EXPECT_EQ(Run("INSERT INTO t (c, n, s, m) VALUES (1.23455, 2.5, #3/5/2024#, 3.5)"), kTooLong);
  EXPECT_EQ(Run("INSERT INTO t (c, n, m) VALUES (1.23455, 2.5, #3/5/2024#)"), "affected 1");
  EXPECT_EQ(Run("SELECT c, n, m FROM t WHERE c>1"), "1.2346,2,05.03.2024");
}

TEST_F(DialectStatement, InsertMatchesColumns) {
  EXPECT_EQ(Run("INSERT INTO u VALUES ('c')"), kSyntax);
  EXPECT_EQ(Run("INSERT INTO u (k, v) VALUES ('c')"), kSyntax);
  EXPECT_EQ(Run("INSERT INTO u (k, K) VALUES ('c', 'd')"), kSyntax);
  EXPECT_EQ(Run("INSERT INTO u (k, x) VALUES ('c', 1)"), kSyntax);
  EXPECT_EQ(Run("INSERT INTO lipsa VALUES (1)"), kNoTable);
  EXPECT_EQ(Run("INSERT INTO u (k) VALUES (c)"), kMissing);
  EXPECT_EQ(Run("INSERT INTO u SELECT v+1 AS v, k FROM u WHERE k='b'"), "affected 1") << "by name";
  EXPECT_EQ(Run("SELECT v FROM u WHERE k='B' ORDER BY v"), "2.0;3.0");
  EXPECT_EQ(Run("INSERT INTO u (k, v) SELECT k & 'x', MAX(v) FROM u GROUP BY k"), "affected 2");
  EXPECT_EQ(Run("INSERT INTO u SELECT v+1 FROM u"), kSyntax);
  EXPECT_EQ(Run("INSERT INTO t (s) SELECT k & 'xxxxx' FROM u"), kTooLong);
  EXPECT_EQ(Run("INSERT INTO Scripts (Script_Name) VALUES ('a''b')"), kNoTable);
  EXPECT_EQ(Run("INSERT INTO u (k) VALUES ('a''b')"), "affected 1");
  EXPECT_EQ(Run("SELECT k FROM u WHERE k=\"a'b\""), "a'b");
}

TEST_F(DialectStatement, Update) {
  EXPECT_EQ(Run("UPDATE u SET v = ROUND(v + (v * 2.5/ 100),2), k = UCASE(k) WHERE u.k ='A' AND v<>0"),
            "affected 1");
  EXPECT_EQ(Run("SELECT k, v FROM u"), "A,1.02;B,2.0");
  EXPECT_EQ(Run("UPDATE u SET [v]='12.5'"), "affected 2");
  EXPECT_EQ(Run("UPDATE u SET k=12 WHERE k='b'"), "affected 1");
  EXPECT_EQ(Run("UPDATE u SET k='abcdef'"), kTooLong);
  EXPECT_EQ(Run("UPDATE u SET k=lipsa"), kMissing);
  EXPECT_EQ(Run("UPDATE u SET lipsa=1"), kMissing);
  EXPECT_EQ(Run("UPDATE u SET v=1, v=2"), kSyntax);
  EXPECT_EQ(Run("UPDATE u SET v=SUM(v)"), kSyntax);
  EXPECT_EQ(Run("UPDATE u SET v=NULL, k=NULL WHERE k='12'"), "affected 1");
  EXPECT_EQ(Run("UPDATE u AS x SET x.v=(SELECT COUNT(*) FROM u WHERE v IS NULL)"), "affected 2");
  EXPECT_EQ(Run("SELECT v FROM u"), "1.0;1.0");
  EXPECT_EQ(Run("UPDATE lipsa SET v=1"), kNoTable);
}

TEST_F(DialectStatement, UpdateThroughJoinsAndQueries) {
  Run("INSERT INTO t (s, d) VALUES ('A', 10)");
  Run("INSERT INTO t (s, d) VALUES ('z', 20)");
  EXPECT_EQ(Run("UPDATE t INNER JOIN u ON t.s=u.k SET t.d=u.v*3, t.m=u.k & '!' WHERE u.v>0"), "affected 1");
  EXPECT_EQ(Run("SELECT d, m FROM t"), "3.0,a!;20.0,~");
  EXPECT_EQ(Run("UPDATE t LEFT JOIN u ON t.s=u.k SET t.n=-1 WHERE u.k IS NULL"), "affected 1");
  EXPECT_EQ(Run("UPDATE u RIGHT JOIN t ON t.s=u.k SET t.n=ISNULL(u.k)"), "affected 2");
  EXPECT_EQ(Run("SELECT n FROM t"), "0;-1");
  EXPECT_EQ(Run("UPDATE t, u SET t.n=1, u.v=2"), kSyntax);
  CreateQuery("q", "SELECT k AS cheie, v FROM u WHERE v>1");
  CreateQuery("g", "SELECT k, SUM(v) AS v FROM u GROUP BY k");
  EXPECT_EQ(Run("UPDATE q SET cheie='Q'"), "affected 1");
  EXPECT_EQ(Run("SELECT k FROM u"), "a;Q");
  EXPECT_EQ(Run("UPDATE g SET v=1"), std::to_string(kNotUpdatable));
  EXPECT_EQ(Run("UPDATE t INNER JOIN g ON t.s=g.k SET t.d=g.v"), "affected 1");
}

TEST_F(DialectStatement, Delete) {
  Run("INSERT INTO t (s) VALUES ('a')");
  Run("INSERT INTO t (s) VALUES ('x')");
  EXPECT_EQ(Run("DELETE t.* FROM t INNER JOIN u ON t.s=u.k"), "affected 1");
  EXPECT_EQ(Run("DELETE FROM t INNER JOIN u ON t.s=u.k"), kSyntax) << "which table?";
  EXPECT_EQ(Run("DELETE * FROM u WHERE v=2"), "affected 1");
  EXPECT_EQ(Run("DELETE x.* FROM u AS x WHERE x.k='zzz'"), "affected 0");
  EXPECT_EQ(Run("DELETE FROM u WHERE k IN (SELECT k FROM u)"), "affected 1");
  EXPECT_EQ(Run("DELETE u FROM u"), kSyntax);
  EXPECT_EQ(Run("DELETE y.* FROM u"), kNoTable);
  EXPECT_EQ(Run("DELETE FROM [t]"), "affected 1");
}

TEST_F(DialectStatement, Definitions) {
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
  const Translation index = Translate("CREATE UNIQUE INDEX i ON t (s DESC, n)", *this);
  EXPECT_TRUE(index.unique);
  EXPECT_EQ(index.index, "i");
  EXPECT_EQ(index.object, "t");
  EXPECT_EQ(index.key_columns.size(), 2U);
  EXPECT_EQ(Translate("DROP TABLE t;", *this).kind, StatementKind::kDropTable);
  EXPECT_EQ(Translate("DROP INDEX i ON t", *this).index, "i");
  for (const char* text : {"CREATE TABLE x (a LONG, A TEXT)", "CREATE TABLE x (a BLOB2)", "CREATE TABLE x ()",
                           "CREATE TABLE x (a TEXT(256))", "CREATE TABLE x (a LONG, PRIMARY KEY (b))",
                           "CREATE VIEW x AS SELECT 1", "DROP t", "CREATE TABLE x (a LONG) SELECT"}) {
    EXPECT_EQ(Run(text), kSyntax) << text;
  }
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
