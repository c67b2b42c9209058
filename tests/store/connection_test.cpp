#include "store/connection.h"

#include <sqlite3.h>

#include "store/store_fixture.h"

namespace store {
namespace {

using testing::HasSubstr;

class ConnectionTest : public StoreTest {
 protected:
  std::string OpenFailure(const std::string& text) {
    Connection connection(environment);
    const std::string reason = ErrorOf(kIntegrity, [&] { connection.Open(text); });
    EXPECT_FALSE(connection.is_open());
    return reason;
  }
};

TEST_F(ConnectionTest, TellsWhyAFileCannotBeOpened) {
  EXPECT_THAT(OpenFailure(JetString(Path("lipsa.mdb"))), HasSubstr("Nu exista fisierul C:\\Date\\lipsa.mdb"));
  EXPECT_THAT(OpenFailure(JetString("C:\\Alta\\x.mdb")), HasSubstr("Folderul"));
  WriteFile("access.mdb", std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4096, 'x'));
  EXPECT_THAT(OpenFailure(JetString(Path("access.mdb"))), HasSubstr("Access"));
  WriteFile("text.mdb", "acesta nu este un fisier de date, ci un text oarecare");
  EXPECT_THAT(OpenFailure(JetString(Path("text.mdb"))), HasSubstr("nu este o baza de date"));
  WriteFile("gol.mdb", "");
  EXPECT_THAT(OpenFailure(JetString(Path("gol.mdb"))), HasSubstr("gol"));
  WriteFile("stricat.mdb", std::string("SQLite format 3\0", 16) + std::string(4080, '\xAA'));
  EXPECT_THAT(OpenFailure(JetString(Path("stricat.mdb"))), HasSubstr("C:\\Date\\stricat.mdb"));
  OpenFailure("Provider=Microsoft.Jet.OLEDB.4.0");
}

TEST_F(ConnectionTest, RefusesWorkOnceClosed) {
  auto db = CreateAndOpen("a.mdb");
  CreateLines(db->catalog());
  Recordset rows = db->QueryForUpdate("SELECT * FROM Linii");
  db->Close();
  db->Close();
  ErrorOf(kObjectClosed, [&] { db->Execute("DELETE FROM Linii"); });
  ErrorOf(kObjectClosed, [&] { db->Scalar("SELECT 1"); });
  ErrorOf(kObjectClosed, [&] { rows.AddNew(); });
  // Not even on the next file that the connection opens.
  Create("b.mdb");
  db->Open(JetString(Path("b.mdb")));
  CreateLines(db->catalog());
  ErrorOf(kObjectClosed, [&] { rows.AddNew(); });
}

TEST_F(ConnectionTest, WritesFailCleanlyOnAFileOpenedForReading) {
  CreateLines(CreateAndOpen("a.mdb")->catalog());
  Connection db(environment);
  db.Open("Data Source='C:\\Date\\a.mdb';Mode=Read");
  EXPECT_EQ(db.Query("SELECT * FROM Linii").record_count(), 0);
  EXPECT_THAT(ErrorOf(kIntegrity, [&] { db.Execute("INSERT INTO Linii(Cod) VALUES('1')"); }),
              HasSubstr("poate fi doar citit"));
  Recordset rows = db.QueryForUpdate("SELECT * FROM Linii");
  rows.AddNew();
  rows.Set("Cod", "1");
  ErrorOf(kIntegrity, [&] { rows.Update(); });
  EXPECT_TRUE(rows.pending());
  ErrorOf(kIntegrity, [&] { db.catalog().CreateLink({"Legata", "b.mdb", "x"}); });
}

TEST_F(ConnectionTest, ReportsAFileLockedByAnotherProgram) {
  auto first = CreateAndOpen("a.mdb");
  CreateLines(first->catalog());
  auto second = OpenFile("a.mdb");
  first->Begin();
  first->Execute("INSERT INTO Linii(Cod) VALUES('1')");
  EXPECT_THAT(ErrorOf(kIntegrity, [&] { second->Execute("INSERT INTO Linii(Cod) VALUES('2')"); }),
              HasSubstr("C:\\Date\\a.mdb este folosit de alt program"));
  EXPECT_EQ(second->Scalar("SELECT COUNT(*) FROM Linii"), Value(0));
  first->Commit();
  second->Execute("INSERT INTO Linii(Cod) VALUES('2')");
  EXPECT_EQ(first->Scalar("SELECT COUNT(*) FROM Linii"), Value(2));
}

TEST_F(ConnectionTest, ReportsAFileThatAnotherProgramKeepsForItself) {
  CreateAndOpen("a.mdb");
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(HostPath("a.mdb").string().c_str(), &other), SQLITE_OK);
  sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
  EXPECT_THAT(OpenFailure(JetString(Path("a.mdb"))), HasSubstr("este folosit de alt program"));
  sqlite3_close(other);
  OpenFile("a.mdb");
}

TEST_F(ConnectionTest, NestedTransactionsAreOne) {
  auto db = CreateAndOpen("a.mdb");
  CreateLines(db->catalog());
  {
    Transaction outer(*db);
    db->Execute("INSERT INTO Linii(Cod) VALUES('1')");
    Transaction inner(*db);
    db->Execute("INSERT INTO Linii(Cod) VALUES('2')");
    inner.Commit();
    EXPECT_TRUE(db->in_transaction());
  }
  EXPECT_FALSE(db->in_transaction());
  EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Linii"), Value(0));
  db->Begin();
  db->Execute("INSERT INTO Linii(Cod) VALUES('3')");
  ErrorOf(kIntegrity, [&] { db->Execute("INSERT INTO Linii(Tara) VALUES('DE')"); });  // Cod is required
  db->Execute("INSERT INTO Linii(Cod) VALUES('4')");
  db->Commit();
  EXPECT_EQ(Rows(db->Query("SELECT Cod FROM Linii ORDER BY Cod")), "3;4");
  ErrorOf(kIntegrity, [&] { db->Commit(); });
  db->Rollback();
}

TEST_F(ConnectionTest, UpdatesCountRowsThatHeldTheirValueAlready) {
  const auto db = CreateAndOpen("m.mdb");
  db->Execute("CREATE TABLE m (n LONG, t TEXT(5), d DATETIME, y YESNO)");
  db->Execute("INSERT INTO m (n, t, y) VALUES (1, 'abc', 0)");
  db->Execute("INSERT INTO m (n, t, d, y) VALUES (0, 'ABC', #3/5/2024#, -1)");
  EXPECT_EQ(db->Execute("UPDATE m SET n=0"), 2);
  EXPECT_EQ(db->Execute("UPDATE m SET n=0 WHERE t='abc' AND y=0"), 1);
  EXPECT_EQ(db->Execute("UPDATE m SET n=0 WHERE n=7"), 0);
  EXPECT_EQ(db->Scalar("SELECT SUM(n) FROM m")->ToDouble(), 0);
  // Equal to "=", yet not the same value: written.
  EXPECT_EQ(db->Execute("UPDATE m SET t='ABC', d=NULL, y=True"), 2);
  EXPECT_EQ(Rows(db->Query("SELECT t, d, y FROM m")), "ABC|~|-1;ABC|~|-1");
  EXPECT_THROW(db->Execute("UPDATE m SET t='abcdef'"), Error);
}

TEST_F(ConnectionTest, ProbesReuseOneStatementWithOtherValues) {
  auto db = CreateAndOpen("a.mdb");
  CreateLines(db->catalog());
  db->Execute("INSERT INTO Linii(Cod, Nr, Data) VALUES('O''Neil', 7, #2024-03-05#)");
  EXPECT_FALSE(db->Any("SELECT * FROM Linii WHERE Cod = 'x'"));
  EXPECT_TRUE(db->Any("SELECT * FROM Linii WHERE Cod = 'O''Neil'"));
  EXPECT_TRUE(db->Any("SELECT * FROM Linii WHERE Cod = \"o'neil\""));
  EXPECT_TRUE(db->Any("SELECT * FROM Linii WHERE Data > #3-4-24#"));
  EXPECT_FALSE(db->Any("SELECT * FROM Linii WHERE Data > #3-5-24#"));
  EXPECT_EQ(db->Scalar("SELECT Nr FROM Linii WHERE Cod = 'x'"), std::nullopt);
  EXPECT_EQ(db->Scalar("SELECT Descriere FROM Linii"), Value());
  EXPECT_EQ(db->Scalar("SELECT Bifat FROM Linii"), Value(false));
  EXPECT_EQ(db->Scalar("SELECT Data FROM Linii"), Value(Date{45356}));
  // The number of rows is part of the statement, not a value of it.
  db->Execute("INSERT INTO Linii(Cod) VALUES('b')");
  EXPECT_EQ(db->Query("SELECT TOP 1 Cod FROM Linii").record_count(), 1);
  EXPECT_EQ(db->Query("SELECT TOP 2 Cod FROM Linii").record_count(), 2);
  EXPECT_EQ(db->Query("SELECT TOP 1 Cod FROM Linii").record_count(), 1);
}

TEST_F(ConnectionTest, HugeStatementsAreRefusedNotFatal) {
  const auto db = CreateAndOpen("a.mdb");
  db->Execute("CREATE TABLE t (s TEXT(20), n LONG)");
  db->Execute("INSERT INTO t VALUES ('Abc', 5)");
  const auto repeated = [](int times, std::string_view piece) {
    std::string text;
    for (int i = 0; i < times; ++i) text += piece;
    return text;
  };
  std::string aliases = "1 AS a0", any = "n=5", arms = "0";
  for (int i = 1; i < 60; ++i) aliases += fmt::format(", a{0}&a{0} AS a{1}", i - 1, i);
  for (int i = 0; i < 300; ++i) {
    any += fmt::format(" OR n={}", i + 10);
    arms = "IIF(n=-1,1," + arms + ")";
  }
  for (const std::string& huge :
       {repeated(5000, "("), "1" + repeated(5000, "+1"), repeated(5000, "- ") + "1", aliases}) {
    ErrorOf(kSyntaxError, [&] { db->Query("SELECT " + huge); });
  }
  const auto value = [&](const std::string& text) { return db->Scalar("SELECT " + text)->ToText(); };
  EXPECT_EQ(value("s FROM t WHERE " + any), "Abc");
  EXPECT_EQ(value("0" + repeated(300, "+n") + " FROM t"), "1500");
  EXPECT_EQ(value("'a'" + repeated(300, "&n") + " FROM t"), "a" + repeated(300, "5"));
  EXPECT_EQ(value("'a'" + repeated(300, "+s") + " FROM t"), "a" + repeated(300, "Abc"));
  EXPECT_EQ(value(arms + " FROM t"), "0");
}

TEST_F(ConnectionTest, CompactsIntoACheckedNewFile) {
  auto db = CreateAndOpen("a.mdb");
  CreateLines(db->catalog());
  db->catalog().SetQuery({"Toate", "SELECT * FROM Linii"});
  db->Begin();
  for (int i = 0; i < 2000; ++i) db->Execute(fmt::format("INSERT INTO Linii(Cod) VALUES('{}')", i));
  db->Commit();
  db->Execute("DELETE FROM Linii WHERE Nr IS NULL AND Cod <> '7'");
  db->Close();
  ErrorOf(kIntegrity, [&] { Connection::Compact(environment, Path("a.mdb"), "C:\\Lipsa\\a.mdb"); });
  ErrorOf(kIntegrity, [&] { Connection::Compact(environment, Path("x.mdb"), Path("b.mdb")); });
  Connection::Compact(environment, Path("a.mdb"), Path("b.mdb"));
  EXPECT_LT(std::filesystem::file_size(HostPath("b.mdb")), std::filesystem::file_size(HostPath("a.mdb")));
  EXPECT_EQ(OpenFile("b.mdb")->Scalar("SELECT Cod FROM Toate"), Value("7"));
  ErrorOf(kIntegrity, [&] { Connection::Compact(environment, Path("a.mdb"), Path("b.mdb")); });
  EXPECT_FALSE(std::filesystem::exists(HostPath("b.mdb.tmp")));
}

TEST_F(ConnectionTest, CompactingInPlaceLosesNothingOfOtherPrograms) {
  auto db = CreateAndOpen("a.mdb");
  CreateLines(db->catalog());
  db->Begin();
  for (int i = 0; i < 2000; ++i) db->Execute(fmt::format("INSERT INTO Linii(Cod) VALUES('{}')", i));
  db->Commit();
  db->Execute("DELETE FROM Linii WHERE Cod <> '7'");
  const auto before = std::filesystem::file_size(HostPath("a.mdb"));

  environment.busy_timeout_ms = 20;
  db->Begin();
  db->Execute("INSERT INTO Linii(Cod) VALUES('8')");
  EXPECT_THROW(Connection::CompactInPlace(environment, Path("a.mdb"), Path("b.mdb")), Error);
  db->Commit();
  EXPECT_EQ(std::filesystem::file_size(HostPath("a.mdb")), before);
  std::filesystem::remove(HostPath("b.mdb"));

  // The connection of the other program goes on with the same file.
  Connection::CompactInPlace(environment, Path("a.mdb"), Path("b.mdb"));
  EXPECT_LT(std::filesystem::file_size(HostPath("a.mdb")), before);
  db->Execute("INSERT INTO Linii(Cod) VALUES('9')");
  EXPECT_EQ(OpenFile("a.mdb")->Scalar("SELECT Count(*) FROM Linii WHERE Cod IN ('7','8','9')"), Value(3));
}

TEST_F(ConnectionTest, PassingOverLeavesANote) {
  host.errors.set_folder("C:\\Date\\");
  auto db = CreateAndOpen("a.mdb");
  EXPECT_FALSE(PassOver(host.errors, "test", [&] { db->Execute("DELETE FROM Lipsa"); }));
  EXPECT_TRUE(PassOver(host.errors, "test", [] {}));
  EXPECT_EQ(host.errors.count(), 1);
  EXPECT_THROW(PassOver(host.errors, "test", [] { throw std::logic_error("x"); }), std::logic_error);
}

}  // namespace
}  // namespace store
