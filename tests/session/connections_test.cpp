#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "session/session.h"
#include "support/test_host.h"

namespace session {
namespace {

using platform::Icon;

class ConnectionsTest : public testing::Test {
 protected:
  ConnectionsTest() {
    session_.settings.DataBase = "C:\\Date\\";
    session_.settings.System = "C:\\Date\\";
    test_.files.CreateFolders("C:\\Date");
    test_.errors.set_folder("C:\\Date\\");
    MakeFile("Comun.mdb", [](store::Connection& file) {
      file.Execute("CREATE TABLE Firme (Cod_Fiscal TEXT(20) PRIMARY KEY, Nume_Firma TEXT(50))");
      file.Execute("INSERT INTO Firme (Cod_Fiscal, Nume_Firma) VALUES ('RO1', 'Unu')");
      file.Execute("CREATE TABLE Erori (Nr_Eroare LONG PRIMARY KEY, Descriere_Eroare TEXT(255))");
      file.Execute("INSERT INTO Erori (Nr_Eroare, Descriere_Eroare) VALUES (-2147467259, 'Cheie repetata')");
      file.catalog().SetQuery(
          {"Return_Error",
           "PARAMETERS [Numar] Long; SELECT Descriere_Eroare FROM Erori WHERE Nr_Eroare = "
           "[Numar]"});
    });
    MakeFile("RO1.mdb", [](store::Connection& file) {
      file.Execute("CREATE TABLE Linii (N LONG PRIMARY KEY, T TEXT(200))");
    });
    session_.current.database_path = "C:\\Date\\RO1.mdb";
  }
  void MakeFile(const std::string& name, const std::function<void(store::Connection&)>& fill) {
    store::Connection::CreateDatabase(StoreEnvironment(session_), "C:\\Date\\" + name);
    store::Connection file(StoreEnvironment(session_));
    file.Open(store::JetString("C:\\Date\\" + name));
    fill(file);
  }
  void GrowCompanyFile(std::uint64_t bytes) {
    const std::filesystem::path host = test_.files.ToHost("C:\\Date\\RO1.mdb");
    std::filesystem::resize_file(host, bytes);
  }

  test_support::TestHost test_;
  Session session_{test_.host()};
};

TEST_F(ConnectionsTest, ConnectionsStayOpenOnceOpened) {
  OpenCommonConnection(session_);
  OpenCommonConnection(session_);
  EXPECT_EQ(
      session_.common.connection_string(),
      "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=;Data Source='C:\\Date\\Comun.mdb';Mode=Read|Write");
  OpenCompanyConnection(session_, session_.current.database_path);
  OpenCompanyConnection(session_, "C:\\Date\\alta.mdb");
  EXPECT_EQ(session_.company.connection_string(),
            "Provider=MSDataShape;Data Provider=Microsoft.Jet.OLEDB.4.0;Data Source=;Data "
            "Source='C:\\Date\\RO1.mdb';Mode=Read|Write");
}

TEST_F(ConnectionsTest, TheRegisterIsLinkedAnewEveryTime) {
  OpenCompanyConnection(session_, session_.current.database_path);
  session_.company.catalog().CreateLink({"FIRME", "Vechi.mdb", "Firme"});
  ComunLink(session_);
  ComunLink(session_);
  EXPECT_EQ(session_.company.Scalar("SELECT Nume_Firma FROM Firme"), store::Value("Unu"));
  EXPECT_EQ(session_.company.catalog().Links().size(), 1u);
}

TEST_F(ConnectionsTest, ALocalTableOfThatNameStaysAndTheLinkFails) {
  OpenCompanyConnection(session_, session_.current.database_path);
  session_.company.Execute("CREATE TABLE Firme (X TEXT(5))");
  test_.prompter.ExpectError("Eroare - Creare Link DateComune");
  test_.prompter.ExpectStarting("", "EROARE", Icon::kCritical);  // the reason
  ComunLink(session_);
  EXPECT_EQ(session_.company.Query("SELECT * FROM Firme").field(0).name, "X");

  session_.current.database_path = "C:\\Date\\lipsa.mdb";
  test_.prompter.ExpectError("Eroare - Creare Link DateComune");
  test_.prompter.ExpectStarting("", "EROARE", Icon::kCritical);  // the reason
  ComunLink(session_);
}

TEST_F(ConnectionsTest, CompactionReplacesTheFileAndLeavesTheScratchCopy) {
  test_.files.CreateFolders("C:\\Date\\CompactDB");
  test_.files.Replace("C:\\Date\\CompactDB\\RO1.mdb", "left by an earlier run");
  OpenCompanyConnection(session_, session_.current.database_path);
  session_.company.Begin();
  for (int i = 0; i < 200; ++i) {
    session_.company.Execute("INSERT INTO Linii (N, T) VALUES (" + std::to_string(i) + ",'" +
                             std::string(200, 'x') + "')");
  }
  session_.company.Commit();
  session_.company.Execute("DELETE FROM Linii WHERE N > 0");
  const std::uint64_t before = test_.files.Size("C:\\Date\\RO1.mdb");
  test_.prompter.ExpectInfo("Se va compacta baza de date: \r\nC:\\Date\\RO1.mdb\r\nAstepati va rog .....");
  CompactDatabaseFile(session_, "C:\\Date\\RO1.mdb");
  EXPECT_FALSE(session_.company.is_open());
  EXPECT_LT(test_.files.Size("C:\\Date\\RO1.mdb"), before);
  EXPECT_EQ(test_.files.Size("C:\\Date\\RO1.mdb"), test_.files.Size("C:\\Date\\CompactDB\\RO1.mdb"));
  OpenCompanyConnection(session_, session_.current.database_path);
  EXPECT_EQ(session_.company.Scalar("SELECT Count(*) FROM Linii")->ToInteger(), 1);
  CompactDatabaseFile(session_, "C:\\Date\\lipsa.mdb");
}

TEST_F(ConnectionsTest, WhatCannotBeCompactedStaysAsItWas) {
  const std::string before = test_.files.Read("C:\\Date\\RO1.mdb");
  test_.prompter.AcceptAnything(false);
  CompactDatabaseFile(session_, "C:\\Date\\RO1.mdb");  // no scratch folder
  EXPECT_EQ(test_.files.Read("C:\\Date\\RO1.mdb"), before);
  EXPECT_EQ(test_.errors.count(), 1);

  test_.files.CreateFolders("C:\\Date\\CompactDB");
  test_.files.Replace("C:\\Date\\CompactDB\\stricat.mdb", "an old scratch copy");
  test_.files.Replace("C:\\Date\\stricat.mdb", "no database");
  CompactDatabaseFile(session_, "C:\\Date\\stricat.mdb");
  EXPECT_EQ(test_.files.Read("C:\\Date\\stricat.mdb"), "no database");
}

TEST_F(ConnectionsTest, OnlyFilesAboveTheirLimitAreCompacted) {
  OpenCommonConnection(session_);
  OpenCompanyConnection(session_, session_.current.database_path);
  session_.company.Close();
  GrowCompanyFile(1000 * 1024);
  CompactOnExit(session_);
  EXPECT_FALSE(session_.common.is_open());
  GrowCompanyFile(1000 * 1024 + 512);  // 1000.50 rounds to the even 1000
  CompactOnExit(session_);
  GrowCompanyFile(1001 * 1024);
  test_.prompter.ExpectInfo("Se va compacta baza de date: \r\nC:\\Date\\RO1.mdb\r\nAstepati va rog .....");
  CompactOnExit(session_);
}

TEST_F(ConnectionsTest, ErrorsAreShownWithTheTextOfTheErrorTable) {
  const store::Error duplicate(store::kIntegrity, "INSERT", "cheia RO1 exista");
  test_.prompter.ExpectError("Sursa Eroare:INSERT\r\ncheia RO1 exista");
  ShowError(session_, duplicate);  // the common connection is not open yet
  OpenCommonConnection(session_);
  test_.prompter.ExpectError(
      "Eroare nr: -2147467259\r\nDescriere Eroare: Cheie repetata\r\ncheia RO1 exista");
  ShowError(session_, duplicate);
  test_.prompter.ExpectError("Sursa Eroare:SELECT\r\neroare noua");
  ShowError(session_, store::Error(5, "SELECT", "eroare noua"));
  test_.prompter.ExpectError("EROARE NEDETERMINABILA");
  ShowError(session_, store::Error(5, "", ""));
}

TEST(SessionTest, AFileThatDoesNotParseIsShownOncePerPass) {
  test_support::TestHost test;
  Session session(test.host());
  test.files.CreateFolders("C:\\ProgramData\\Declarix");
  test.files.Replace(SettingsPath(), "<Settings>");
  test.prompter.ExpectStarting(
      "Fisierul de setari C:\\ProgramData\\Declarix\\Settings.xml nu poate fi citit: ", "EROARE",
      Icon::kCritical);
  session.ReadSettings("C:\\P");
  EXPECT_EQ(session.settings.DataBase, "\\");
  EXPECT_EQ(test.files.Read(SettingsPath()), "<Settings>");
}

}  // namespace
}  // namespace session
