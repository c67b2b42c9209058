#include "store/catalog.h"

#include "store/store_fixture.h"

namespace store {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class CatalogTest : public StoreTest {
 protected:
  static std::vector<std::string> Names(const Connection& db) {
    std::vector<std::string> names;
    for (const SchemaTable& table : db.Tables()) names.push_back(table.type + " " + table.name);
    return names;
  }

  /// "Comun.mdb" with one company, and an empty company file beside it.
  void CreateCommon() {
    auto common = CreateAndOpen("Comun.mdb");
    common->catalog().CreateTable("Firme", {{.name = "Cod_Fiscal", .size = 15, .primary_key = true},
                                            {.name = "Nume_Firma", .size = 100}});
    common->catalog().SetQuery({"Nume", "SELECT Nume_Firma AS Nume FROM Firme"});
    common->Execute("INSERT INTO Firme VALUES('RO1', 'Alfa')");
  }
};

TEST_F(CatalogTest, SchemaRowsetsTellWhatWasDeclared) {
  auto db = CreateAndOpen("a.mdb");
  CreateLines(db->catalog());
  db = OpenFile("a.mdb");  // from the file, not from memory
  const std::vector<SchemaColumn> columns = db->Columns("LINII");
  ASSERT_EQ(columns.size(), 11u);
  EXPECT_EQ(columns[1].column_name, "Cod");
  EXPECT_EQ(columns[1].ordinal_position, 2);
  EXPECT_EQ(columns[1].description, "Codul");
  EXPECT_EQ(columns[1].character_maximum_length, 8);
  EXPECT_EQ(columns[1].numeric_precision, std::nullopt);
  EXPECT_FALSE(columns[1].is_nullable);
  EXPECT_EQ(columns[2].column_default, "\"RO\"");
  EXPECT_EQ(columns[3].character_maximum_length, 0);  // memo
  EXPECT_EQ(columns[4].column_default, "0");
  EXPECT_EQ(columns[4].numeric_precision, 15);
  EXPECT_EQ(columns[4].character_maximum_length, std::nullopt);
  EXPECT_TRUE(columns[9].datetime_precision.has_value());
  EXPECT_EQ(columns[9].numeric_precision, std::nullopt);
  EXPECT_THAT(Names(*db), ElementsAre("TABLE Linii"));  // the catalog's own tables stay hidden
  ErrorOf(kNoSuchTable, [&] { db->Query("SELECT * FROM dx_tables"); });
}

TEST_F(CatalogTest, ColumnsAndIndexesAreAddedToFilledTables) {
  auto db = CreateAndOpen("a.mdb");
  CreateLines(db->catalog());
  db->Execute("INSERT INTO Linii(Cod) VALUES('1')");
  db->catalog().AddColumn("linii",
                          {.name = "Nou", .type = ColumnType::kText, .size = 3, .default_text = "'x'"});
  db->catalog().AddColumn("linii", {.name = "Ales", .type = ColumnType::kYesNo});
  EXPECT_EQ(Rows(db->Query("SELECT Nou, Ales FROM Linii")), "x|0");
  ErrorOf(kIntegrity, [&] { CreateLines(db->catalog()); });
  ErrorOf(kNoSuchTable, [&] { db->catalog().AddColumn("lipsa", {.name = "x"}); });
  ErrorOf(kSyntaxError, [&] { db->catalog().CreateTable("t", {{.name = "a"}, {.name = "A"}}); });
  EXPECT_THAT(Names(*db), ElementsAre("TABLE Linii"));
}

TEST_F(CatalogTest, DefaultsAreConstantsOfTheColumnsTypeOrTheMoment) {
  auto db = CreateAndOpen("a.mdb");
  db->catalog().CreateTable(
      "T",
      {{.name = "N", .type = ColumnType::kLong},
       {.name = "Text", .size = 10, .default_text = "'O''Neil'"},
       {.name = "Zecimal", .type = ColumnType::kDecimal, .size = DecimalSize(10, 2), .default_text = "=0.25"},
       {.name = "Zi", .type = ColumnType::kDateTime, .default_text = "#2024-03-05#"},
       {.name = "Azi", .type = ColumnType::kDateTime, .default_text = "Date()"},
       {.name = "Da", .type = ColumnType::kYesNo, .default_text = "Yes"}});
  db->Execute("INSERT INTO T(N) VALUES(1)");
  Recordset rows = db->QueryForUpdate("SELECT * FROM T");
  rows.AddNew();
  rows.Set("N", 2);
  rows.Update();
  EXPECT_EQ(Rows(db->Query("SELECT N, Text, Zecimal, Zi, Da FROM T ORDER BY N")),
            "1|O'Neil|0.25|05.03.2024|-1;2|O'Neil|0.25|05.03.2024|-1");
  EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM T WHERE Azi > #2024-03-05# AND Azi = Int(Azi)"), Value(2));
  ErrorOf(kSyntaxError,
          [&] { db->catalog().CreateTable("U", {{.name = "a", .size = 5, .default_text = "Alta(1)"}}); });
  ErrorOf(kConversion, [&] {
    db->catalog().CreateTable("U", {{.name = "a", .type = ColumnType::kLong, .default_text = "\"x\""}});
  });
}

TEST_F(CatalogTest, ADroppedTableComesBackWithTheTransaction) {
  auto db = CreateAndOpen("a.mdb");
  db->Execute("CREATE TABLE Rate (Id COUNTER, Cod TEXT(3) NOT NULL)");
  db->Execute("INSERT INTO Rate(Cod) VALUES('EUR')");
  {
    Transaction undone(*db);
    db->Execute("DROP TABLE Rate");
    ErrorOf(kNoSuchTable, [&] { db->Query("SELECT * FROM Rate"); });
  }
  EXPECT_EQ(Rows(db->Query("SELECT * FROM Rate")), "1|EUR");
  db->Execute("DROP TABLE rate");
  EXPECT_TRUE(db->Tables().empty());
  EXPECT_TRUE(db->Columns("Rate").empty());
}

TEST_F(CatalogTest, LinksReachTheOtherFileBothWays) {
  CreateCommon();
  auto db = CreateAndOpen("RO1.mdb");
  db->catalog().CreateLink({"Firme", "Comun.mdb", "Firme"});
  db->catalog().CreateLink({"Numele", "Comun.mdb", "Nume"});
  EXPECT_THAT(Names(*db), ElementsAre("LINK Firme", "LINK Numele"));
  EXPECT_EQ(db->Scalar("SELECT Nume FROM Numele"), Value("Alfa"));
  EXPECT_EQ(db->Columns("Firme").size(), 2u);
  db->Execute("UPDATE Firme SET Nume_Firma = 'Beta' WHERE Cod_Fiscal = 'ro1'");
  EXPECT_EQ(OpenFile("Comun.mdb")->Scalar("SELECT Nume_Firma FROM Firme"), Value("Beta"));
  // Changes to both files are undone together.
  db->Execute("CREATE TABLE Local (Cod TEXT(5))");
  {
    Transaction undone(*db);
    db->Execute("DELETE FROM Firme");
    db->Execute("INSERT INTO Local VALUES('x')");
  }
  EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Firme"), Value(1));
  EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Local"), Value(0));
}

TEST_F(CatalogTest, AMissingLinkedFileFailsOnlyWhenUsed) {
  CreateCommon();
  auto db = CreateAndOpen("RO1.mdb");
  db->catalog().CreateLink({"Firme", "Comun.mdb", "Firme"});
  db->catalog().CreateLink({"Alta", "Comun.mdb", "Lipsa"});
  db->Close();
  std::filesystem::rename(HostPath("Comun.mdb"), HostPath("mutat.mdb"));
  db = OpenFile("RO1.mdb");
  EXPECT_THAT(ErrorOf(kIntegrity, [&] { db->Query("SELECT * FROM Firme"); }),
              testing::AllOf(HasSubstr("'Firme'"), HasSubstr("Comun.mdb")));
  std::filesystem::rename(HostPath("mutat.mdb"), HostPath("Comun.mdb"));
  EXPECT_TRUE(db->Any("SELECT * FROM Firme"));
  EXPECT_THAT(ErrorOf(kNoSuchTable, [&] { db->Query("SELECT * FROM Alta"); }), HasSubstr("'Lipsa'"));
  // Links follow the folder that the environment names.
  environment.link_folder = [] { return std::string("C:\\Alta\\"); };
  db = OpenFile("RO1.mdb");
  EXPECT_THAT(ErrorOf(kIntegrity, [&] { db->Query("SELECT * FROM Firme"); }),
              HasSubstr("C:\\Alta\\Comun.mdb"));
}

TEST_F(CatalogTest, BoundLinksLastAsLongAsTheConnection) {
  for (const char* year : {"2025", "2026"}) {
    auto tariff = CreateAndOpen(std::string("CN") + year + ".mdb");
    tariff->catalog().CreateTable("HS_8", {{.name = "HS8_COD", .size = 8}, {.name = "An", .size = 4}});
    tariff->catalog().SetQuery({"HS8", "SELECT HS8_COD, An FROM HS_8 WHERE HS8_COD <> ''"});
    tariff->Execute(fmt::format("INSERT INTO HS_8 VALUES('01012100', '{}')", year));
  }
  auto db = CreateAndOpen("RO1.mdb");
  for (int round = 0; round < 12; ++round) {  // more files than may be attached at once
    db->BindLink("HS8", Path("CN2025.mdb"), "HS8");
    EXPECT_EQ(db->Scalar("SELECT An FROM HS8 WHERE HS8_COD = '01012100'"), Value("2025"));
    db->BindLink("HS8", Path("CN2026.mdb"), "HS8");
    EXPECT_EQ(db->Scalar("SELECT An FROM HS8 WHERE HS8_COD = '01012100'"), Value("2026"));
  }
  ErrorOf(kIntegrity, [&] { db->BindLink("HS8", Path("CN2027.mdb"), "HS8"); });
  EXPECT_EQ(db->Scalar("SELECT An FROM HS8"), Value("2026"));
  db = OpenFile("RO1.mdb");
  ErrorOf(kNoSuchTable, [&] { db->Query("SELECT * FROM HS8"); });
}

TEST_F(CatalogTest, StoredQueriesHaveColumnsAndANameOfTheirOwn) {
  auto db = CreateAndOpen("a.mdb");
  Catalog& catalog = db->catalog();
  catalog.SetQuery({"Scumpe", "SELECT Cod, Val_Stat * 2 AS Dublu FROM Linii WHERE Val_Stat > 10"});
  CreateLines(catalog);
  EXPECT_EQ(db->Columns("Scumpe")[1].column_name, "Dublu");
  ErrorOf(kIntegrity, [&] { catalog.SetQuery({"Linii", "SELECT 1"}); });
  catalog.DropQuery("scumpe");
  ErrorOf(kNoSuchTable, [&] { db->Query("SELECT * FROM Scumpe"); });
}

TEST_F(CatalogTest, ParametersAreGivenInTheirDeclaredOrder) {
  auto db = CreateAndOpen("a.mdb");
  db->catalog().CreateTable("Erori",
                            {{.name = "Nr", .type = ColumnType::kLong}, {.name = "Text", .size = 50}});
  db->Execute("INSERT INTO Erori VALUES(-2147467259, 'Cheie dubla')");
  db->catalog().SetQuery({"Return_Error",
                          "PARAMETERS [Descriere] Text, [Numar] Long; SELECT [Text], [Descriere] AS D FROM "
                          "Erori WHERE Nr = [Numar]"});
  EXPECT_EQ(Rows(db->QueryStored("return_error", {"de la motor", -2147467259})), "Cheie dubla|de la motor");
  EXPECT_TRUE(db->QueryStored("Return_Error", {"x", 1}).eof());
  ErrorOf(kMissingParameter, [&] { db->QueryStored("Return_Error", {"x"}); });
  ErrorOf(kMissingParameter, [&] { db->QueryStored("Return_Error", {"x", 1, 2}); });
  ErrorOf(kNoSuchTable, [&] { db->QueryStored("Lipsa", {}); });
}

TEST_F(CatalogTest, CascadesDeleteTheChildrenOfARow) {
  auto db = CreateAndOpen("a.mdb");
  db->Execute("CREATE TABLE Antet (Nume TEXT(20) PRIMARY KEY)");
  db->Execute("CREATE TABLE Continut (Nume TEXT(20), Coloana TEXT(20))");
  db->catalog().CreateCascade("Antet", "Continut", "Nume");
  for (const char* name : {"a", "b"}) {
    db->Execute(fmt::format("INSERT INTO Antet VALUES('{}')", name));
    db->Execute(fmt::format("INSERT INTO Continut VALUES('{}', 'x')", name));
  }
  EXPECT_EQ(db->Execute("DELETE FROM [Antet] WHERE [Nume]='A'"), 1);
  EXPECT_EQ(Rows(db->Query("SELECT Nume FROM Continut")), "b");
  db->Execute("DROP TABLE Continut");
  EXPECT_EQ(db->Execute("DELETE FROM Antet"), 1);
}

TEST_F(CatalogTest, ChangesByAnotherConnectionAreSeen) {
  auto db = CreateAndOpen("a.mdb");
  auto other = OpenFile("a.mdb");
  CreateLines(other->catalog());
  EXPECT_EQ(db->Query("SELECT * FROM Linii").field_count(), 11);
  other->catalog().SetQuery({"Toate", "SELECT Cod FROM Linii"});
  EXPECT_EQ(db->Query("SELECT * FROM Toate").field_count(), 1);
  EXPECT_THAT(Names(*db), ElementsAre("TABLE Linii", "VIEW Toate"));
}

}  // namespace
}  // namespace store
