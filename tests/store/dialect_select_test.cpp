#include "dialect_fixture.h"

namespace store::dialect {
namespace {

constexpr char kSyntax[] = "-2147217900", kMissing[] = "-2147217904", kNoTable[] = "-2147217865",
               kMismatch[] = "-2147217913";

class DialectSelect : public DialectTest {
 protected:
  /// Which spelling stands for a group of equal texts is open.
  std::string RunUpper(const std::string& text) { return platform::ToUpper(Run(text)); }

  void SetUp() override {
    DialectTest::SetUp();
    Create("CREATE TABLE Tari (id COUNTER, Cod TEXT(2), Nume TEXT(50), UE YESNO)");
    Create("CREATE TABLE Linii (id COUNTER, Tara TEXT(2), Val DOUBLE, Luna SHORT, Data DATETIME)");
    for (const char* row :
         {"'RO','Romania',True", "'FR','Franta',True", "'de','Germania',True", "'CN','China',False"}) {
      Run(std::string("INSERT INTO Tari (Cod, Nume, UE) VALUES (") + row + ")");
    }
    for (const char* row : {"'RO',10,1,#1/5/2024#", "'ro',20,1,#1/6/2024#", "'DE',30,2,#2/5/2024#",
                            "'FR',30,3,#3/5/2024#", "'XX',5,3,#3/6/2024#", "Null,1,4,Null"}) {
      Run(std::string("INSERT INTO Linii (Tara, Val, Luna, Data) VALUES (") + row + ")");
    }
  }
};

TEST_F(DialectSelect, NamesColumnsAsCallersSeeThem) {
  EXPECT_EQ(Names("SELECT cod, NUME AS n, 1+1, id*2 AS d, MAX(id) FROM Tari GROUP BY cod, nume, id"),
            "Cod,n,Expr1002,d,Expr1004");
  EXPECT_EQ(Names("SELECT COUNT(*) FROM Tari"), "Expr1000");
  EXPECT_EQ(Names("SELECT * FROM Tari"), "id,Cod,Nume,UE");
  EXPECT_EQ(Names("SELECT T.*, 1 FROM Tari AS t"), "id,Cod,Nume,UE,Expr1004");
  EXPECT_EQ(Names("SELECT t.id, l.id, Val FROM Tari AS t, Linii AS l"), "t.id,l.id,Val");
  EXPECT_EQ(Names("SELECT id, id FROM Tari"), "id,Expr1001");
  EXPECT_EQ(Names("SELECT Expr1000 FROM (SELECT COUNT(*) FROM Tari) AS q"), "Expr1000");
  EXPECT_EQ(Run("SELECT id AS a, Cod AS A FROM Tari"), kSyntax);
}

TEST_F(DialectSelect, QualifiedNames) {
  const std::string expected = "Romania";
  for (const char* text :
       {"SELECT t.Nume FROM Tari AS t WHERE t.Cod='RO'", "SELECT [t].[Nume] FROM [Tari] [t] WHERE t!Cod='ro'",
        "SELECT Tari.[Nume] FROM Tari WHERE [TARI]![cod]='RO'"}) {
    EXPECT_EQ(Run(text), expected) << text;
  }
  EXPECT_EQ(Run("SELECT Tari.Nume FROM Tari AS t"), kMissing) << "an alias hides the name";
  EXPECT_EQ(Run("SELECT id FROM Tari, Linii"), kSyntax) << "ambiguous";
  EXPECT_EQ(Run("SELECT 1 FROM Tari, tari"), kSyntax);
  EXPECT_EQ(Run("SELECT x.* FROM Tari"), kNoTable);
}

TEST_F(DialectSelect, AliasesServeLaterInTheList) {
  EXPECT_EQ(Run("SELECT Val*2 AS dublu, dublu+1 FROM Linii WHERE id=1"), "20.0,21.0");
  EXPECT_EQ(Run("SELECT dublu+1, Val*2 AS dublu FROM Linii"), kMissing);
  EXPECT_EQ(Run("SELECT Val*2 AS dublu FROM Linii WHERE dublu>1"), kMissing);
  EXPECT_EQ(Run("SELECT LEFT([Tara],1) AS Tara, Tara FROM Linii WHERE id=3"), "D,DE") << "the column wins";
  EXPECT_EQ(Run("SELECT LEFT(Nume,1) AS x FROM Tari ORDER BY x DESC"), "R;G;F;C");
  EXPECT_EQ(Run("SELECT SUM(Val) AS s, s/2 FROM Linii"), "96.0,48.0");
}

TEST_F(DialectSelect, DistinctGroupsAndSortsWithoutCase) {
  EXPECT_EQ(Run("SELECT DISTINCT Tara FROM Linii ORDER BY Tara"), "~;DE;FR;RO;XX");
  EXPECT_EQ(Run("SELECT DISTINCT LCASE(Tara) FROM Linii WHERE Tara LIKE 'r%'"), "ro");
  EXPECT_EQ(Run("SELECT DISTINCT IIF(id=1,'A','a') FROM Linii WHERE id<3"), "A");
  EXPECT_EQ(Run("SELECT Tara, SUM(Val), COUNT(*) FROM Linii GROUP BY Tara ORDER BY Tara"),
            "~,1.0,1;DE,30.0,1;FR,30.0,1;RO,30.0,2;XX,5.0,1");
  EXPECT_EQ(Run("SELECT COUNT(*) FROM (SELECT Cod & '' AS k FROM Tari) AS q GROUP BY k & ''"), "1;1;1;1");
  EXPECT_EQ(Run("SELECT Cod FROM Tari ORDER BY Cod"), "CN;de;FR;RO");
  EXPECT_EQ(Run("SELECT Cod FROM Tari ORDER BY Cod & '' DESC"), "RO;FR;de;CN");
  EXPECT_EQ(Run("SELECT MIN(Cod & ''), MAX(LCASE(Cod)) FROM Tari"), "CN,ro");
  EXPECT_EQ(Run("SELECT DISTINCT Tara FROM Linii ORDER BY Val"), kSyntax);
  EXPECT_EQ(Run("SELECT DISTINCT LEFT(Tara,1) FROM Linii WHERE id<4 ORDER BY LEFT(Tara,1) DESC"), "R;D");
}

TEST_F(DialectSelect, GroupingIsChecked) {
  EXPECT_EQ(Run("SELECT Tara, Val FROM Linii GROUP BY Tara"), kSyntax);
  EXPECT_NE(last_error_.find("'Val'"), std::string::npos);
  EXPECT_EQ(Run("SELECT Tara, COUNT(*) FROM Linii"), kSyntax);
  EXPECT_EQ(Run("SELECT * FROM Linii GROUP BY Tara"), kSyntax);
  EXPECT_EQ(Run("SELECT COUNT(*) FROM Linii WHERE SUM(Val)>1"), kSyntax);
  EXPECT_EQ(Run("SELECT SUM(MAX(Val)) FROM Linii"), kSyntax);
  EXPECT_EQ(Run("SELECT Tara FROM Linii GROUP BY Tara ORDER BY Val"), kSyntax);
  EXPECT_EQ(Run("SELECT LEFT(Tara,1), SUM(Val) FROM Linii WHERE id<4 GROUP BY LEFT(Tara,1)"),
            "D,30.0;R,30.0");
  EXPECT_EQ(Run("SELECT LEFT(Tara,2), SUM(Val) FROM Linii GROUP BY LEFT(Tara,1)"), kSyntax);
  EXPECT_EQ(Translate("SELECT LEFT(Tara,1) FROM Linii GROUP BY LEFT(Tara,1)", *this).structural.size(), 2U);
  EXPECT_EQ(Run("SELECT Luna, LEFT(MAX(Tara),1) & Luna FROM Linii GROUP BY Luna HAVING SUM(Val)>29"),
            "1,R1;2,D2;3,X3");
  EXPECT_EQ(Run("SELECT SUM(Val) FROM Linii HAVING COUNT(*)>100"), "");
  EXPECT_EQ(Run("SELECT SUM(Val), MAX(Tara), COUNT(*), COUNT(Tara) FROM Linii WHERE id>100"), "~,~,0,0");
  EXPECT_EQ(Run("SELECT COUNT(Tara), AVG(Val) FROM Linii"), "5,16.0");
  EXPECT_EQ(Run("SELECT 1 FROM Linii GROUP BY 'x', 1"), "1");
  EXPECT_EQ(
      Run("SELECT Cod FROM Tari AS t GROUP BY Cod HAVING (SELECT COUNT(*) FROM Linii WHERE Tara=t.Cod)>1"),
      "RO");
  EXPECT_EQ(
      Run("SELECT Cod FROM Tari AS t GROUP BY Cod HAVING (SELECT COUNT(*) FROM Linii WHERE Tara=t.Nume)>1"),
      kSyntax);
}

TEST_F(DialectSelect, TopGivesTies) {
  EXPECT_EQ(Run("SELECT TOP 1 Tara FROM Linii ORDER BY Val DESC"), "DE;FR");
  EXPECT_EQ(Run("SELECT TOP 3 Tara FROM Linii ORDER BY Val DESC"), "DE;FR;ro");
  EXPECT_EQ(Run("SELECT TOP 2 id FROM Linii"), "1;2");
  EXPECT_EQ(Run("SELECT TOP 1 id FROM Linii ORDER BY Val DESC, id"), "3");
  EXPECT_EQ(Run("SELECT TOP 50 PERCENT id FROM Linii ORDER BY id"), "1;2;3");
  EXPECT_EQ(Run("SELECT TOP 34 PERCENT id FROM Linii ORDER BY id"), "1;2;3");
  EXPECT_EQ(Run("SELECT TOP 10 PERCENT id FROM Linii"), "1");
  EXPECT_EQ(Run("SELECT DISTINCT TOP 2 Tara FROM Linii WHERE Tara IS NOT NULL ORDER BY Tara DESC"), "XX;RO");
  EXPECT_EQ(Run("SELECT TOP 1 Luna, SUM(Val) AS s FROM Linii GROUP BY Luna ORDER BY SUM(Val) DESC"),
            "3,35.0");
  EXPECT_EQ(Run("SELECT TOP 1 Luna, SUM(Val) FROM Linii WHERE id<4 GROUP BY Luna ORDER BY SUM(Val)"),
            "1,30.0;2,30.0");
  EXPECT_EQ(Run("SELECT COUNT(*) FROM (SELECT TOP 1 Tara FROM Linii ORDER BY Val DESC) AS q"), "2");
  EXPECT_EQ(Run("SELECT id FROM Linii WHERE Val IN (SELECT TOP 1 Val FROM Linii ORDER BY Val DESC)"), "3;4");
  EXPECT_EQ(Run("SELECT TOP x Tara FROM Linii"), kSyntax);
  EXPECT_EQ(Run("SELECT TOP 1.5 Tara FROM Linii"), kSyntax);
  const Translation top = Translate("SELECT TOP 1 * FROM Linii WHERE Luna=3", *this);
  EXPECT_EQ(top.base_name, "Linii");
}

TEST_F(DialectSelect, OrderByPlace) {
  EXPECT_EQ(Run("SELECT Cod, Nume FROM Tari ORDER BY 1"), "CN,China;de,Germania;FR,Franta;RO,Romania");
  EXPECT_EQ(Run("SELECT Cod FROM Tari ORDER BY 2"), kSyntax);
  EXPECT_EQ(Translate("SELECT Cod FROM Tari ORDER BY 1", *this).structural.size(), 1U);
  EXPECT_EQ(Run("SELECT id FROM Linii ORDER BY Luna DESC, Val DESC, id"), "6;4;5;3;2;1");
}

TEST_F(DialectSelect, Joins) {
  EXPECT_EQ(Run("SELECT l.id, Nume FROM Linii AS l INNER JOIN Tari AS t ON l.Tara=t.Cod ORDER BY l.id"),
            "1,Romania;2,Romania;3,Germania;4,Franta");
  EXPECT_EQ(
      Run("SELECT l.id, Nume FROM Linii l LEFT JOIN Tari t ON l.Tara=t.Cod WHERE Nume IS NULL ORDER BY l.id"),
      "5,~;6,~");
  EXPECT_EQ(Run("SELECT Nume FROM Linii l RIGHT OUTER JOIN Tari t ON l.Tara=t.Cod WHERE l.id IS NULL"),
            "China");
  EXPECT_EQ(Run("SELECT * FROM Tari t RIGHT JOIN Linii l ON l.Tara=t.Cod WHERE l.id=5"),
            "~,~,~,~,5,XX,5.0,3,45357.0");
  EXPECT_EQ(Run("SELECT l.id FROM Linii l, Tari t WHERE l.Tara=t.Cod AND t.UE=True AND l.Luna=1"), "1;2");
  const std::string three =
      "SELECT a.id, c.Nume FROM (Linii AS a INNER JOIN Linii AS b ON a.Val=b.Val) INNER JOIN Tari AS c ON "
      "b.Tara=c.Cod WHERE a.id=4 ORDER BY c.Nume";
  EXPECT_EQ(Run(three), "4,Franta;4,Germania");
  EXPECT_EQ(Run("SELECT a.id FROM Linii AS a INNER JOIN Linii AS b ON a.Val=b.Val INNER JOIN Tari AS c ON "
                "b.Tara=c.Cod"),
            kSyntax);
  EXPECT_EQ(Run("SELECT c.Nume, b.id FROM Tari AS c LEFT JOIN (Linii AS a INNER JOIN Linii AS b ON "
                "a.id=b.id) ON c.Cod=a.Tara WHERE c.Cod IN ('CN','FR') ORDER BY c.id"),
            "Franta,4;China,~");
  EXPECT_EQ(Run("SELECT a.id FROM Linii AS a INNER JOIN Tari AS t ON a.Tara=x.Cod, Tari AS x"), kMissing)
      << "ON sees its own join only";
  EXPECT_EQ(Run("SELECT a.id FROM Linii a FULL JOIN Tari t ON a.Tara=t.Cod"), kSyntax);
  EXPECT_EQ(
      Run("SELECT C.Tara, C.Val FROM Linii AS C INNER JOIN (SELECT Tara, Max(Data) AS D FROM Linii WHERE "
          "Tara ='RO' AND Data< #3-5-24# GROUP BY Tara) AS P ON C.Tara = P.Tara AND C.Data = P.D"),
      "ro,20.0");
}

TEST_F(DialectSelect, Subqueries) {
  EXPECT_EQ(Run("SELECT Cod FROM Tari WHERE Cod IN (SELECT Tara FROM Linii) ORDER BY Cod"), "de;FR;RO");
  EXPECT_EQ(Run("SELECT Cod FROM Tari WHERE Cod NOT IN (SELECT Tara FROM Linii WHERE Tara IS NOT NULL)"),
            "CN");
  EXPECT_EQ(Run("SELECT Cod FROM Tari t WHERE EXISTS (SELECT * FROM Linii WHERE Tara=t.Cod AND Val>20) ORDER "
                "BY Cod"),
            "de;FR");
  EXPECT_EQ(Run("SELECT Cod, (SELECT SUM(Val) FROM Linii WHERE Tara=Cod) FROM Tari ORDER BY 1"),
            "CN,~;de,30.0;FR,30.0;RO,30.0");
  EXPECT_EQ(Run("SELECT id FROM Linii WHERE Val >= ALL (SELECT Val FROM Linii)"), "3;4");
  EXPECT_EQ(Run("SELECT id FROM Linii WHERE Val < ANY (SELECT Val FROM Linii WHERE Luna=1) ORDER BY id"),
            "1;5;6");
  EXPECT_EQ(Run("SELECT id FROM Linii WHERE Tara = SOME (SELECT Cod FROM Tari WHERE UE) ORDER BY id"),
            "1;2;3;4");
  EXPECT_EQ(Run("SELECT id FROM Linii WHERE Val IN (SELECT Cod FROM Tari)"), kMismatch);
  EXPECT_EQ(Run("SELECT id FROM Linii WHERE Val IN (SELECT * FROM Tari)"), kSyntax);
  EXPECT_EQ(Run("SELECT x, COUNT(*) FROM (SELECT LEFT(Tara,1) AS x FROM Linii WHERE Luna<4) AS q GROUP BY x "
                "ORDER BY x"),
            "D,1;F,1;R,2;X,1");
  EXPECT_EQ(Run("SELECT x FROM (SELECT Tara & '' AS x FROM Linii WHERE Luna=1) q WHERE x='RO'"), "RO;ro");
}

TEST_F(DialectSelect, AValueComesFromOneRow) {
  const std::string several = std::to_string(kIntegrity);
  EXPECT_EQ(Run("SELECT (SELECT Nume FROM Tari WHERE UE)"), several);
  EXPECT_EQ(Run("SELECT (SELECT DISTINCT Nume FROM Tari WHERE UE)"), several);
  EXPECT_EQ(Run("SELECT (SELECT TOP 1 Nume FROM Tari ORDER BY UE)"), several) << "ties count";
  EXPECT_EQ(Run("SELECT (SELECT TOP 1 Nume FROM Tari ORDER BY Nume)"), "China");
  EXPECT_EQ(Run("SELECT (SELECT Nume FROM Tari WHERE id=99) & '!'"), "!");
  EXPECT_EQ(Run("SELECT id, (SELECT Nume FROM Tari WHERE Cod=Tara) FROM Linii WHERE id IN (1,5)"),
            "1,Romania;5,~");
  EXPECT_EQ(Run("SELECT id FROM Linii WHERE 'ROMANIA'=(SELECT DISTINCT Nume FROM Tari WHERE Cod=Linii.Tara)"),
            "1;2");
}

TEST_F(DialectSelect, DistinctRowCountsRowsNotValues) {
  EXPECT_EQ(
      Run("SELECT DISTINCTROW t.Nume FROM Tari AS t INNER JOIN Linii AS l ON t.Cod=l.Tara ORDER BY t.Nume"),
      "Franta;Germania;Romania");
  EXPECT_EQ(Run("SELECT DISTINCTROW t.UE FROM Tari AS t INNER JOIN Linii AS l ON t.Cod=l.Tara"), "-1;-1;-1");
  EXPECT_EQ(Run("SELECT DISTINCTROW Luna FROM Linii WHERE Luna=1"), "1;1");
}

TEST_F(DialectSelect, CollationSurvivesQueriesInBetween) {
  EXPECT_EQ(Run("SELECT q.k, t.Cod FROM (SELECT LCASE(Tara) & '' AS k FROM Linii WHERE id=3) AS q INNER JOIN "
                "Tari AS t "
                "ON q.k=t.Cod"),
            "de,de");
  EXPECT_EQ(Run("SELECT t.Cod FROM (SELECT LCASE(Tara) & '' AS k FROM Linii WHERE id=1) AS q, Tari AS t "
                "WHERE q.k=t.Cod"),
            "RO");
  EXPECT_EQ(
      Run("SELECT t.Cod FROM (SELECT DISTINCT Tara AS k FROM Linii UNION ALL SELECT 'cn') AS q, Tari AS t "
          "WHERE q.k=t.Cod AND t.Cod IN ('cn','de') ORDER BY t.Cod"),
      "CN;de");
  EXPECT_EQ(Run("SELECT Cod FROM Tari WHERE (SELECT LCASE(Cod) FROM Linii WHERE id=1)=Cod AND id=1"), "RO");
}

TEST_F(DialectSelect, Unions) {
  EXPECT_EQ(
      RunUpper(
          "SELECT Cod FROM Tari WHERE UE UNION SELECT Tara FROM Linii WHERE Tara IS NOT NULL ORDER BY Cod"),
      "DE;FR;RO;XX");
  EXPECT_EQ(Run("SELECT Cod FROM Tari WHERE id=1 UNION ALL SELECT Tara FROM Linii WHERE id<3 ORDER BY 1 DESC")
                .size(),
            8U);
  EXPECT_EQ(
      RunUpper("SELECT LCASE(Cod) AS k FROM Tari WHERE id=1 UNION SELECT UCASE(Tara) FROM Linii WHERE id=1"),
      "RO");
  EXPECT_EQ(Run("SELECT TOP 1 id FROM Tari ORDER BY id DESC"), "4");
  EXPECT_EQ(Run("SELECT Cod FROM Tari UNION SELECT Tara, id FROM Linii"), kSyntax);
  EXPECT_EQ(Run("SELECT Cod FROM Tari UNION SELECT Tara FROM Linii ORDER BY Val"), kSyntax);
  EXPECT_EQ(Run("SELECT n FROM (SELECT id AS n FROM Tari UNION SELECT Luna FROM Linii) AS q WHERE n>3"), "4");
  EXPECT_EQ(Run("SELECT TOP 1 Cod FROM Tari UNION ALL SELECT TOP 2 Tara FROM Linii"), "RO;RO;ro");
  EXPECT_EQ(Names("SELECT Cod AS a FROM Tari UNION SELECT Tara FROM Linii"), "a");
}

TEST_F(DialectSelect, StoredQueriesAreReadAsTables) {
  CreateQuery("UE_Tari", "SELECT Cod AS COD_TARA, Nume FROM Tari WHERE UE=True");
  CreateQuery("Grup",
              "SELECT Tara, Luna, SUM(Val) AS Total, MIN(id) AS Pozitia FROM Linii GROUP BY Tara, Luna ORDER "
              "BY MIN(id) DESC;");
  CreateQuery("Peste", "SELECT Tara AS T, Total FROM Grup WHERE Total>5");
  CreateQuery("Bucla", "SELECT * FROM Bucla2");
  CreateQuery("Bucla2", "SELECT * FROM Bucla");
  CreateQuery("Stricata", "SELECT lipsa FROM Tari");
  CreateQuery("Cu_Param", "PARAMETERS [x] Text; SELECT * FROM Tari WHERE Cod=[x]");
  EXPECT_EQ(Run("SELECT COD_TARA FROM UE_Tari WHERE COD_TARA ='DE'"), "de");
  EXPECT_EQ(Names("SELECT * FROM ue_tari"), "COD_TARA,Nume");
  EXPECT_EQ(Run("SELECT Pozitia, Total FROM Grup WHERE Luna>1"), "6,1.0;5,5.0;4,30.0;3,30.0")
      << "the query's own order";
  EXPECT_EQ(Run("SELECT * FROM Grup WHERE [Tara]='ro' AND [Luna]=1"), "RO,1,30.0,1");
  EXPECT_EQ(Run("SELECT T FROM Peste WHERE T='RO'"), "RO");
  EXPECT_EQ(Run("SELECT COUNT(*) FROM Grup"), "5");
  EXPECT_EQ(Run("SELECT * FROM Bucla"), kSyntax);
  EXPECT_EQ(Run("SELECT * FROM Stricata"), kMissing);
  EXPECT_NE(last_error_.find("Stricata"), std::string::npos);
  EXPECT_EQ(last_position_, -1);
  EXPECT_EQ(Run("SELECT * FROM Cu_Param"), kMissing);
  const Translation bound = Translate("PARAMETERS [x] Text, y Long; SELECT * FROM Tari WHERE Cod=[x]", *this);
  ASSERT_EQ(bound.parameters.size(), 1U);
  EXPECT_EQ(bound.parameters[0].name, "x");
  EXPECT_EQ(bound.declared.size(), 2U);
  EXPECT_EQ(Run("PARAMETERS x Long; SELECT * FROM Tari WHERE Cod=x"), kMismatch);
}

TEST_F(DialectSelect, AProbeOfAGroupedQueryReadsOneGroup) {
  Sqlite("CREATE INDEX k ON Linii (Tara)");
  CreateQuery("Grup",
              "SELECT Tara, MAX(Val) AS M, IIF(ISNULL(MAX(Data))=0,1,0) AS Are FROM Linii WHERE Luna<4 GROUP "
              "BY Tara");
  CreateQuery("Grup2", "SELECT Tara AS T2, M FROM Grup");
  for (const char* text : {"SELECT Tara FROM Grup WHERE Tara ='ro'", "SELECT T2 FROM Grup2 WHERE T2 ='ro'",
                           "SELECT Tara FROM Grup WHERE M>1 AND 'ro'=Tara"}) {
    EXPECT_NE(Plan(text).find("SEARCH s"), std::string::npos) << Plan(text);
    EXPECT_EQ(RunUpper(text), "RO") << Sql(text);
  }
  EXPECT_EQ(Sql("SELECT Tara FROM Grup WHERE Tara ='RO'").find("MAX"), std::string::npos)
      << "unused columns are left out";
  EXPECT_EQ(Run("SELECT Cod, M FROM Tari LEFT JOIN Grup ON Tari.Cod=Grup.Tara WHERE Grup.Tara='FR'"),
            "FR,30.0");
  EXPECT_EQ(Run("SELECT Tara FROM Grup WHERE Tara IN ('fr','RO') ORDER BY Tara"), "FR;RO");
  EXPECT_EQ(Run("SELECT Tara FROM Grup WHERE Tara LIKE 'r%'"), "RO");
  EXPECT_EQ(Run("SELECT T2 FROM Grup2 WHERE M=30 ORDER BY T2"), "DE;FR");
}

TEST_F(DialectSelect, IndexesServeThroughTheTranslation) {
  Sqlite("CREATE INDEX k ON Tari (Cod)");
  EXPECT_NE(Plan("SELECT Cod FROM Tari WHERE Cod ='RO'").find("SEARCH"), std::string::npos);
  EXPECT_NE(Plan("SELECT Cod FROM Tari ORDER BY [Cod]").find("USING COVERING INDEX"), std::string::npos);
  EXPECT_EQ(Plan("SELECT Cod FROM Tari ORDER BY [Cod]").find("TEMP B-TREE"), std::string::npos);
  CreateQuery("Q", "SELECT Cod AS C, Nume FROM Tari WHERE UE");
  EXPECT_NE(Plan("SELECT Nume FROM Q WHERE C='RO'").find("SEARCH"), std::string::npos);
  EXPECT_NE(Plan("SELECT Val FROM Linii INNER JOIN Q ON Linii.Tara=Q.C").find("SEARCH"), std::string::npos);
  EXPECT_NE(Plan("SELECT * FROM Tari WHERE id BETWEEN 5 AND 1").find("SEARCH"), std::string::npos);
}

TEST_F(DialectSelect, WhatCanBeWrittenThrough) {
  CreateQuery("Q", "SELECT Nume AS N, UE FROM Tari WHERE UE");
  CreateQuery("G", "SELECT DISTINCT Nume FROM Tari");
  const Translation through = Translate("SELECT N, N & '' FROM Q ORDER BY N", *this);
  EXPECT_EQ(through.base_table, "\"Tari\"");
  EXPECT_EQ(through.columns[0].table_column, "Nume");
  EXPECT_EQ(through.columns[1].table_column, "");
  EXPECT_EQ(Run("SELECT N FROM Q ORDER BY N"), "Franta;Germania;Romania");
  for (const char* text : {"SELECT * FROM G", "SELECT COUNT(*) FROM Tari", "SELECT a.id FROM Tari a, Tari b",
                           "SELECT id FROM Tari UNION SELECT id FROM Linii", "SELECT 1"}) {
    EXPECT_EQ(Translate(text, *this).base_table, "") << text;
  }
  Create("CREATE TABLE R (rowid TEXT(5), v LONG)");
  Run("INSERT INTO R VALUES ('x', 1)");
  EXPECT_EQ(Run("SELECT rowid FROM R"), "x");
}

TEST_F(DialectSelect, TableNamesOfFilesAndSheets) {
  Create("CREATE TABLE [Sheet1$] ([Cod NC] TEXT(20), F2 DOUBLE)");
  Create("CREATE TABLE [curs.txt] (Currency_Code TEXT(3), Data_Curs DATETIME)");
  Sqlite("INSERT INTO \"Sheet1$\" VALUES ('01', 2); INSERT INTO \"curs.txt\" VALUES ('EUR', 45400)");
  EXPECT_EQ(Run("SELECT TOP 1 * FROM [Sheet1$]"), "01,2.0");
  EXPECT_EQ(Run("SELECT LEFT([Cod NC] ,8) AS Cod_NC, 'RON' AS Moneda, 0 AS PU FROM [Sheet1$]"), "01,RON,0");
  EXPECT_EQ(Run("SELECT F2 FROM Sheet1$"), "2.0");
  EXPECT_EQ(Run("Select * From curs.txt WHERE Data_Curs > #2024-03-04#"), "EUR,45400.0");
  EXPECT_EQ(Run("Select curs.txt.Currency_Code From curs.txt"), "EUR");
}

}  // namespace
}  // namespace store::dialect
