#include "store/store_fixture.h"
#include "support/xls_writer.h"

namespace store {
namespace {

using test_support::XlsWriter;
using testing::HasSubstr;

class SourcesTest : public StoreTest {
 protected:
  SourcesTest() {
    XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
    sheet.Row(0, "'Cod N.C.|'Valoare|'Data|'Mixt|'Ales");
    sheet.Row(1, "01012100|=12.5|@46100|=7|?1");
    sheet.Row(2, "084713000|=100||'text|?0");
    sheet.Row(3, "|=-3");
    book.AddSheet("Alta foaie").Text(0, 0, "Singura");
    book.Save(HostPath("a.xls").string());
    db.Open(ImportSheetString(Path("a.xls")));
  }

  XlsWriter book;
  Connection db{environment};
};

TEST_F(SourcesTest, WorksheetsAreQueriedInTheDialect) {
  const Recordset rows = db.Query("SELECT TOP 2 * FROM [Sheet1$]");
  ASSERT_EQ(rows.field_count(), 5);
  EXPECT_EQ(rows.field(0).name, "Cod N#C#");
  EXPECT_EQ(rows.field(1).type, ColumnType::kDouble);
  EXPECT_EQ(rows.field(2).type, ColumnType::kDateTime);
  EXPECT_EQ(rows.field(3).type, ColumnType::kText);
  EXPECT_EQ(rows.field(4).type, ColumnType::kYesNo);
  EXPECT_EQ(rows["Valoare"], Value(12.5));
  EXPECT_EQ(rows["Data"], Value(Date{46100}));
  EXPECT_EQ(rows["Mixt"], Value("7"));
  EXPECT_EQ(Rows(db.Query("SELECT SUM(Valoare), COUNT(*) FROM [sheet1$] WHERE Valoare > 0")), "112.5|2");
  EXPECT_EQ(db.Query("SELECT * FROM [Sheet1$A1:B2]").record_count(), 1);
  EXPECT_EQ(db.Query("SELECT * FROM [Sheet1$A1:B2]").field_count(), 2);
  EXPECT_EQ(db.Tables().size(), 2u);
  EXPECT_EQ(db.Columns("Sheet1$")[1].column_name, "Valoare");
}

TEST_F(SourcesTest, LeadingZerosStayWhereANumberBecomesText) {
  // The four statement forms that the import builds.
  EXPECT_EQ(Rows(db.Query("SELECT [Cod N#C#] AS Cod FROM [Sheet1$]")), "01012100;84713000;~");
  EXPECT_EQ(Rows(db.Query("SELECT LEFT([Cod N#C#] ,8) AS Cod FROM [Sheet1$]")), "01012100;84713000;~");
  EXPECT_EQ(Rows(db.Query("SELECT IIF(ISNULL([Cod N#C#]),0 ,[Cod N#C#]) AS Cod FROM [Sheet1$]")),
            "01012100;84713000;0");
  EXPECT_EQ(Rows(db.Query("SELECT LEFT(IIF(ISNULL([Cod N#C#]),\"x\" ,[Cod N#C#]) ,8) AS Cod FROM [Sheet1$]")),
            "01012100;84713000;x");
  // As a number it stays a number.
  EXPECT_EQ(Rows(db.Query("SELECT [Cod N#C#] * 2 AS D FROM [Sheet1$] WHERE [Cod N#C#] < 2000000")),
            "2024200");
  EXPECT_EQ(Rows(db.Query("SELECT [Cod N#C#] & '!' AS T FROM [Sheet1$] ORDER BY [Cod N#C#] DESC")),
            "84713000!;01012100!;!");
}

TEST_F(SourcesTest, HandingColumnsOverGivesWhatSteppingThroughThemGives) {
  // A condition makes the engine step through SQLite; without one it copies the source's cells.
  for (const char* items :
       {"*", "[Data], [Ales], [Mixt]", "LEFT([Mixt] ,2) AS M",
        "LEFT(IIF(ISNULL([Mixt]),\"gol\" ,[Mixt]) ,3) AS M", "IIF(ISNULL([Valoare]),0 ,[Valoare]) AS V",
        "IIF(ISNULL([Cod N#C#]),1.5 ,[Cod N#C#]) AS C", "'RON' AS Moneda, 3 AS T",
        "IIF(ISNULL([Data]),'fara' ,[Data]) AS D", "LEFT([Mixt] ,0) AS Nimic"}) {
    const std::string select = fmt::format("SELECT {} FROM [Sheet1$]", items);
    const Recordset handed = db.Query(select), stepped = db.Query(select + " WHERE 1=1");
    EXPECT_EQ(Rows(handed), Rows(stepped)) << items;
    ASSERT_EQ(handed.record_count(), 3) << items;
    for (int i = 0; i < handed.field_count(); ++i) EXPECT_EQ(handed.Get(i), stepped.Get(i)) << items;
  }
}

TEST_F(SourcesTest, UnknownNamesTellWhatThereIs) {
  EXPECT_THAT(ErrorOf(kNoSuchTable, [&] { db.Query("SELECT * FROM [Foaie$]"); }),
              testing::AllOf(HasSubstr("Sheet1$"), HasSubstr("Alta foaie$"), HasSubstr("a.xls")));
  ErrorOf(kNoSuchTable, [&] { db.Query("SELECT * FROM Sheet1"); });
  ErrorOf(kNoSuchTable, [&] { db.Query("SELECT * FROM [Sheet1$Z]"); });
  ErrorOf(kMissingParameter, [&] { db.Query("SELECT Lipsa FROM [Sheet1$]"); });
}

TEST_F(SourcesTest, SourcesAreReadOnly) {
  EXPECT_ANY_THROW(db.Execute("DELETE FROM [Sheet1$]"));
  EXPECT_ANY_THROW(db.Execute("CREATE TABLE x (a LONG)"));
  EXPECT_ANY_THROW(db.catalog());
  Recordset rows = db.QueryForUpdate("SELECT * FROM [Sheet1$]");
  ErrorOf(kNotUpdatable, [&] { rows.Set(0, 1); });
}

TEST_F(SourcesTest, ARollbackLosesNoTable) {
  db.Begin();
  EXPECT_EQ(db.Query("SELECT * FROM [Sheet1$]").record_count(), 3);
  db.Rollback();
  EXPECT_EQ(db.Query("SELECT * FROM [Sheet1$]").record_count(), 3);
}

TEST_F(SourcesTest, UnreadableFilesAreNamed) {
  WriteFile("text.xls", "nu este o foaie de calcul");
  EXPECT_THAT(ErrorOf(kIntegrity, [&] { db.Open(ImportSheetString(Path("text.xls"))); }),
              HasSubstr("text.xls"));
  EXPECT_THAT(ErrorOf(kIntegrity, [&] { db.Open(ImportSheetString(Path("lipsa.xls"))); }),
              HasSubstr("Nu exista fisierul C:\\Date\\lipsa.xls"));
  ErrorOf(kIntegrity, [&] { db.Open(TextFolderString("C:\\Lipsa\\")); });
}

TEST_F(SourcesTest, TextFilesFollowTheirDescription) {
  WriteFile("Schema.ini",
            "[curs.txt]\r\nColNameHeader=False\r\nFormat=Delimited(|)\r\nDateTimeFormat=yyyy-mm-dd\r\n"
            "DecimalSymbol=.\r\nCol1=Currency_Code Text Width 3\r\nCol2=Data_Curs DateTime\r\nCol3=Curs "
            "Double\r\nCol4=Raport Long\r\n");
  WriteFile("curs.txt", "EUR|2026-03-02|5.0912|1\r\nHUF|2026-03-03|1.2345|100\r\n");
  db.Open(TextFolderString("C:\\Date\\"));
  EXPECT_EQ(Rows(db.Query("Select * From curs.txt WHERE Data_Curs > #2026-03-02#")),
            "HUF|03.03.2026|1.2345|100");
  EXPECT_THAT(ErrorOf(kNoSuchTable, [&] { db.Query("SELECT * FROM altul.txt"); }), HasSubstr("curs.txt"));
}

}  // namespace
}  // namespace store
