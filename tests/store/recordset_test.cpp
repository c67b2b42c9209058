#include "store/recordset.h"

#include "store/store_fixture.h"

namespace store {
namespace {

using testing::HasSubstr;

class RecordsetTest : public StoreTest {
 protected:
  RecordsetTest() : db(CreateAndOpen("a.mdb")) { CreateLines(db->catalog()); }

  void Insert(std::string_view code, std::string_view country, double value) {
    db->Execute(fmt::format("INSERT INTO Linii(Cod, Tara, Val_Stat) VALUES('{}', '{}', {})", code, country,
                            NumberText(value)));
  }

  std::unique_ptr<Connection> db;
};

TEST_F(RecordsetTest, NewRowsStartWithDefaultsAndShowTheirCounter) {
  Recordset rows = db->QueryForUpdate("SELECT TOP 1 * FROM Linii");
  EXPECT_TRUE(rows.eof() && rows.bof());
  rows.AddNew();
  EXPECT_EQ(rows["tara"], Value("RO"));
  EXPECT_EQ(rows["Val_Stat"], Value(0.0));
  EXPECT_EQ(rows["Bifat"], Value(false));
  EXPECT_TRUE(rows.IsNull(rows.FieldIndex("Nr")));
  rows.Set("Cod", "84713000");
  rows.Update();
  EXPECT_EQ(rows["Record_ID"], Value(1));
  EXPECT_EQ(rows.record_count(), 1);
  rows.AddNew();
  rows.Set("Cod", "1");
  rows.Set("Descriere", "o descriere mai lunga de opt caractere");
  rows.Update();
  EXPECT_EQ(rows["Record_ID"], Value(2));
  EXPECT_EQ(rows.TextView(3), "o descriere mai lunga de opt caractere");
  EXPECT_EQ(Rows(db->Query("SELECT Record_ID, Cod, Tara, Val_Stat, Bifat FROM Linii")),
            "1|84713000|RO|0|0;2|1|RO|0|0");
}

TEST_F(RecordsetTest, ValuesTakeTheColumnsType) {
  Recordset rows = db->QueryForUpdate("SELECT * FROM Linii");
  rows.AddNew();
  rows.Set("Cod", 12.5);
  EXPECT_EQ(rows["Cod"], Value("12.5"));
  rows.Set("Cod", 12);
  EXPECT_EQ(rows["Cod"], Value("12"));
  rows.Set("Nr", "2.5");
  EXPECT_EQ(rows["Nr"], Value(2));  // half to even
  rows.Set("Nr", 3.5);
  EXPECT_EQ(rows["Nr"], Value(4));
  rows.Set("Val_Stat", " 12.75 ");
  EXPECT_EQ(rows["Val_Stat"], Value(12.75));
  rows.Set("Curs", 4.9751);
  EXPECT_EQ(rows["Curs"], Value(static_cast<double>(4.9751F)));
  rows.Set("Suma", 1.00003);
  EXPECT_EQ(rows["Suma"], Value(1.0));
  for (const char* day : {"05.03.2024", "2024-03-05", "05/03/2024"}) {
    rows.Set("Data", day);
    EXPECT_EQ(rows["Data"], Value(Date{45356})) << day;
  }
  rows.Set("Data", "5.3.2024 12:00");
  EXPECT_EQ(rows["Data"], Value(Date{45356.5}));
  rows.Set("Bifat", "True");
  EXPECT_EQ(rows["Bifat"], Value(true));
  rows.Set("Bifat", Null{});
  EXPECT_EQ(rows["Bifat"], Value(false));  // yes/no is never Null
  rows.Set("Bifat", 5);
  rows.Update();
  EXPECT_EQ(db->Scalar("SELECT Bifat FROM Linii WHERE Bifat = -1"), Value(true));
  EXPECT_EQ(db->Scalar("SELECT Data FROM Linii"), Value(Date{45356.5}));
}

TEST_F(RecordsetTest, ValuesThatDoNotFitLeaveTheFieldAlone) {
  Recordset rows = db->QueryForUpdate("SELECT * FROM Linii");
  rows.AddNew();
  rows.Set("Cod", "șțăîâ123");  // eight characters, more bytes
  const std::string too_long = ErrorOf(kTooLong, [&] { rows.Set("Cod", "123456789"); });
  EXPECT_THAT(too_long, testing::AllOf(HasSubstr("Cod"), HasSubstr("123456789"), HasSubstr("8")));
  EXPECT_EQ(rows["Cod"], Value("șțăîâ123"));
  const std::string no_number = ErrorOf(kConversion, [&] { rows.Set("Val_Stat", "doua"); });
  EXPECT_THAT(no_number, testing::AllOf(HasSubstr("Val_Stat"), HasSubstr("doua")));
  EXPECT_THAT(ErrorOf(kConversion, [&] { rows.Set("Luna", 256); }), HasSubstr("0 ... 255"));
  const std::pair<const char*, Value> refused[] = {
      {"Nr", 40000.0},        {"Nr", 1e300},    {"Val_Stat", std::numeric_limits<double>::infinity()},
      {"Val_Stat", "12,5"},   {"Val_Stat", ""}, {"Curs", 1e39},
      {"Data", "31.02.2024"}, {"Data", 3e6},    {"Bifat", "poate"}};
  for (const auto& [column, value] : refused) {
    SCOPED_TRACE(column);
    ErrorOf(kConversion, [&, &column = column, &value = value] { rows.Set(column, value); });
  }
  ErrorOf(kItemNotFound, [&] { rows.Set("Lipsa", 1); });
  ErrorOf(kItemNotFound, [&] { rows.Set(99, 1); });
  rows.Update();
  EXPECT_EQ(Rows(db->Query("SELECT Cod, Val_Stat, Nr FROM Linii")), "șțăîâ123|0|~");
}

TEST_F(RecordsetTest, RowsCanStartWithSetValuesAndTakeFieldsOver) {
  db->Execute("CREATE TABLE de_la (T TEXT(40), D DOUBLE, L LONG)");
  db->Execute("INSERT INTO de_la VALUES ('un text mai lung de opt', 2.5, 7)");
  db->Execute("INSERT INTO de_la VALUES ('prea lung pentru coloana', NULL, 70000)");
  db->Execute("CREATE TABLE la (T TEXT(23), D DOUBLE, S SHORT, N TEXT(30))");
  Recordset from = db->Query("SELECT * FROM de_la");
  Recordset to = db->QueryForUpdate("SELECT * FROM la");
  to.SetForNewRows(3, "acelasi pe fiecare rand");
  EXPECT_THROW(to.SetForNewRows(2, "x"), Error);
  to.AddNew();
  for (int i = 0; i < 3; ++i) to.SetFrom(i, from, i);
  to.Update();
  from.MoveNext();
  to.AddNew();
  ErrorOf(kTooLong, [&] { to.SetFrom(0, from, 0); });
  to.SetFrom(1, from, 1);
  ErrorOf(kConversion, [&] { to.SetFrom(2, from, 2); });
  to.Set("N", "altul");
  to.Update();
  EXPECT_EQ(Rows(db->Query("SELECT * FROM la")),
            "un text mai lung de opt|2.5|7|acelasi pe fiecare rand;~|~|~|altul");
}

TEST_F(RecordsetTest, EditsWriteOnlyTheirColumnsToTheirRow) {
  Insert("a", "DE", 1);
  Insert("b", "FR", 2);
  Recordset rows =
      db->QueryForUpdate("SELECT Cod, Val_Stat, Tara & '!' AS Semn FROM Linii WHERE Val_Stat > 0");
  rows.MoveNext();
  db->Execute("UPDATE Linii SET Tara = 'IT'");
  rows.Set("Val_Stat", 20);
  EXPECT_TRUE(rows.pending());
  EXPECT_EQ(rows["Val_Stat"], Value(20.0));
  rows.Update();
  EXPECT_EQ(Rows(db->Query("SELECT Cod, Tara, Val_Stat FROM Linii ORDER BY Cod")), "a|IT|1;b|IT|20");
  rows.Set("Cod", "zzz");
  rows.CancelUpdate();
  EXPECT_EQ(rows["Cod"], Value("b"));
  ErrorOf(kNotUpdatable, [&] { rows.Set("Semn", "x"); });
  rows.CancelUpdate();
  // The failed change stays pending and can be put right.
  rows.Set("Cod", Null{});
  EXPECT_THAT(ErrorOf(kIntegrity, [&] { rows.Update(); }), HasSubstr("Linii.Cod"));
  rows.Set("Cod", "c");
  rows.MoveFirst();  // moving away saves
  EXPECT_EQ(db->Scalar("SELECT Cod FROM Linii WHERE Val_Stat = 20"), Value("c"));
  db->Execute("DELETE FROM Linii WHERE Cod = 'a'");
  rows.Set("Val_Stat", 3);
  EXPECT_THAT(ErrorOf(kIntegrity, [&] { rows.Update(); }), HasSubstr("stearsa"));
}

TEST_F(RecordsetTest, OnlySingleTableQueriesOpenedForItAreWritten) {
  Insert("a", "DE", 1);
  Recordset plain = db->Query("SELECT * FROM Linii");
  ErrorOf(kNotUpdatable, [&] { plain.Set("Cod", "x"); });
  ErrorOf(kNotUpdatable, [&] { plain.AddNew(); });
  ErrorOf(kNotUpdatable, [&] { plain.Delete(); });
  Recordset grouped = db->QueryForUpdate("SELECT Tara, SUM(Val_Stat) AS S FROM Linii GROUP BY Tara");
  ErrorOf(kNotUpdatable, [&] { grouped.Set("S", 2); });
  Recordset memory = db->Open("SELECT Tara, SUM(Val_Stat) AS S, 0.5 AS Procent FROM Linii GROUP BY Tara",
                              {.updatable = false, .in_memory = true});
  memory.Set("Procent", 12.5);
  memory.Update();
  memory.AddNew();
  memory.Set("Tara", "FR");
  memory.Update();
  EXPECT_EQ(Rows((memory.MoveFirst(), memory)), "DE|1|12.5;FR|~|~");
  EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Linii"), Value(1));
}

TEST_F(RecordsetTest, MovesAsAdoDoes) {
  Recordset none = db->Query("SELECT * FROM Linii");
  EXPECT_TRUE(none.eof() && none.bof());
  ErrorOf(kEndOfRecordset, [&] { none.Get(0); });
  ErrorOf(kEndOfRecordset, [&] { none.MoveNext(); });
  for (const char* code : {"a", "b", "c"}) Insert(code, "DE", 1);
  Recordset rows = db->Query("SELECT Cod FROM Linii ORDER BY Cod");
  rows.MovePrevious();
  EXPECT_TRUE(rows.bof());
  ErrorOf(kEndOfRecordset, [&] { rows.MovePrevious(); });
  ErrorOf(kEndOfRecordset, [&] { rows["Cod"]; });
  rows.MoveLast();
  EXPECT_EQ(rows["Cod"], Value("c"));
  Recordset copy = rows;  // a cursor of its own
  rows.MoveNext();
  EXPECT_TRUE(rows.eof());
  EXPECT_EQ(copy.position(), 2);
  rows.set_position(1);
  EXPECT_EQ(rows["cod"], Value("b"));
  EXPECT_EQ(Recordset().record_count(), 0);
  ErrorOf(kObjectClosed, [&] { Recordset().Get(0); });
}

TEST_F(RecordsetTest, DeletingMovesToTheNextRow) {
  for (const char* code : {"a", "b", "c", "d"}) Insert(code, code == std::string("c") ? "FR" : "DE", 1);
  Recordset rows = db->QueryForUpdate("SELECT * FROM Linii");
  Recordset copy = rows;
  copy.SetFilter("Tara = 'DE'");
  copy.MoveLast();
  rows.MoveNext();
  rows.Delete();
  EXPECT_EQ(rows["Cod"], Value("c"));
  EXPECT_EQ(copy.record_count(), 2);
  rows.MoveLast();
  rows.Delete();
  EXPECT_TRUE(rows.eof());
  copy.MoveFirst();
  copy.Delete();
  EXPECT_TRUE(copy.eof());
  EXPECT_EQ(Rows(db->Query("SELECT Cod FROM Linii")), "c");
  rows.MoveFirst();
  EXPECT_EQ(rows["Cod"], Value("c"));
}

TEST_F(RecordsetTest, FindsByOneColumn) {
  Insert("8471", "DE", 10);
  Insert("8473", "ȘT", 20);
  Insert("01", "FR", 5);
  Recordset rows = db->Query("SELECT * FROM Linii");
  EXPECT_TRUE(rows.Find("[Cod] LIKE '847*'"));
  EXPECT_EQ(rows["Cod"], Value("8471"));
  EXPECT_TRUE(rows.Find("[Cod] LIKE '847%'", 1));
  EXPECT_EQ(rows["Cod"], Value("8473"));
  EXPECT_TRUE(rows.Find("Tara = 'şt'", 0));  // comma and cedilla are one letter, case does not count
  EXPECT_TRUE(rows.Find("Val_Stat < 10", 0));
  EXPECT_EQ(rows["Cod"], Value("01"));
  EXPECT_FALSE(rows.Find("Val_Stat = 11", 0));
  EXPECT_TRUE(rows.eof());
  ErrorOf(kSyntaxError, [&] { rows.Find("Cod = '1' AND Tara = 'DE'", 0); });
  ErrorOf(kItemNotFound, [&] { rows.Find("Lipsa = '1'", 0); });
}

TEST_F(RecordsetTest, FiltersAndSortsInMemory) {
  Insert("b", "DE", 2);
  Insert("A", "FR", 1);
  Insert("a", "DE", 3);
  Insert("C", "IT", 1);
  db->Execute("UPDATE Linii SET Tara = Null WHERE Cod = 'C'");
  Recordset rows = db->QueryForUpdate("SELECT Cod, Tara, Val_Stat FROM Linii");
  rows.SetSort("[Cod], Val_Stat DESC");
  EXPECT_EQ(Rows(rows), "a|DE|3;A|FR|1;b|DE|2;C|~|1");
  rows.SetSort("Tara ASC, [Val_Stat] DESC");
  EXPECT_EQ(Rows(rows), "C|~|1;a|DE|3;b|DE|2;A|FR|1");  // Null first
  rows.SetFilter("Tara = 'de' OR Val_Stat < 2 AND Cod LIKE 'c%'");
  EXPECT_EQ(Rows(rows), "C|~|1;a|DE|3;b|DE|2");
  rows.AddNew();
  rows.Set("Cod", "x");
  rows.Update();
  EXPECT_EQ(rows["Cod"], Value("x"));
  EXPECT_EQ(rows.record_count(), 4);
  rows.SetFilter("");
  rows.SetSort("");
  EXPECT_EQ(Rows(rows), "b|DE|2;A|FR|1;a|DE|3;C|~|1;x|RO|0");
  ErrorOf(kItemNotFound, [&] { rows.SetSort("Lipsa"); });
  ErrorOf(kSyntaxError, [&] { rows.SetSort("Cod SUS"); });
}

TEST_F(RecordsetTest, ShapedRowsCarryTheirChildren) {
  db->Execute("CREATE TABLE StructuraFisiereAntet (Nume_Structura TEXT(50) PRIMARY KEY, TIP TEXT(10))");
  db->Execute(
      "CREATE TABLE StructuraFisiereContinut (Record_ID COUNTER, Nume_Structura TEXT(50), Sort_Order LONG, "
      "Dest_ColumnName TEXT(50))");
  for (const char* name : {"unu", "doi {2}"}) {
    db->Execute(fmt::format("INSERT INTO StructuraFisiereAntet VALUES('{}', 'LIVRARE')", name));
    for (int i = 3; i > 0; --i) {
      db->Execute(
          fmt::format("INSERT INTO StructuraFisiereContinut(Nume_Structura, Sort_Order, "
                      "Dest_ColumnName) VALUES('{}', {}, 'C{}')",
                      name, i, i));
    }
  }
  const auto shape = [](std::string_view where) {
    return fmt::format(
        "SHAPE {{SELECT * FROM StructuraFisiereAntet {}}} AS ParentCMD APPEND ({{SELECT "
        "Nume_Structura,Record_ID,Dest_ColumnName FROM StructuraFisiereContinut ORDER BY Sort_Order}} AS "
        "ChildCMD RELATE [Nume_Structura] TO [Nume_Structura])",
        where);
  };
  EXPECT_EQ(db->Query(shape("")).record_count(), 2);
  Recordset header = db->QueryForUpdate(shape("WHERE Nume_structura='doi {2}'"));
  ASSERT_EQ(header.record_count(), 1);
  EXPECT_EQ(Rows(header.Child("childcmd")), "doi {2}|6|C1;doi {2}|5|C2;doi {2}|4|C3");
  header.AddNew();
  header.Set("Nume_Structura", "nou");
  header.Update();
  EXPECT_EQ(header.Child("ChildCMD").record_count(), 0);
  Recordset columns = header.Child("ChildCMD");
  columns.AddNew();
  EXPECT_EQ(columns["Nume_Structura"], Value("nou"));  // the relation fills itself in
  columns.Set("Dest_ColumnName", "Cod_NC");
  columns.Update();
  EXPECT_EQ(header.Child("ChildCMD").record_count(), 1);
  columns.Set("Dest_ColumnName", "Net");
  columns.Update();
  EXPECT_EQ(db->Scalar("SELECT Dest_ColumnName FROM StructuraFisiereContinut WHERE Nume_Structura = 'nou'"),
            Value("Net"));
  columns.Delete();
  EXPECT_EQ(header.Child("ChildCMD").record_count(), 0);
  ErrorOf(kItemNotFound, [&] { header.Child("Altul"); });
  ErrorOf(kSyntaxError, [&] { db->Query("SHAPE {SELECT 1} AS a APPEND {SELECT 1 RELATE x TO y"); });
  ErrorOf(kItemNotFound,
          [&] { db->Query("SHAPE {SELECT 1 AS a} APPEND ({SELECT 1 AS b} AS c RELATE x TO b)"); });
}

TEST_F(RecordsetTest, ManyRowsAreAppendedInOneTransaction) {
  Recordset rows = db->QueryForUpdate("SELECT TOP 1 * FROM Linii");
  const int code = rows.FieldIndex("Cod"), text = rows.FieldIndex("Descriere"),
            value = rows.FieldIndex("Val_Stat");
  Transaction all(*db);
  for (int i = 0; i < 3000; ++i) {
    rows.AddNew();
    rows.Set(code, fmt::format("{:08}", i));
    rows.Set(text, i % 2 == 0 ? "aceeasi descriere lunga" : "alta descriere, la fel de lunga");
    if (i % 3 == 0) rows.Set(value, i);
    rows.Update();
  }
  all.Commit();
  EXPECT_EQ(rows.record_count(), 3000);
  EXPECT_EQ(Rows(db->Query("SELECT MIN(Cod), MAX(Cod), COUNT(*), SUM(Val_Stat) FROM Linii")),
            "00000000|00002999|3000|1498500");
  rows.set_position(2998);
  EXPECT_EQ(rows["Cod"], Value("00002998"));
  EXPECT_EQ(rows["Descriere"], Value("aceeasi descriere lunga"));
  EXPECT_EQ(rows["Record_ID"], Value(2999));
}

}  // namespace
}  // namespace store
