#include "app/startup.h"

#include <gmock/gmock.h>

#include "app/recorded_surroundings.h"
#include "support/installation.h"

namespace {

using platform::Icon;
using testing::ElementsAre;
namespace fs = std::filesystem;

constexpr char kProgram[] = "C:\\Program Files\\Declarix";
constexpr char kOffer[] =
    "Exista o versiune noua pentru download.\r\nDoriti descarcarea si instalarea noii versiuni ?";

/// A launch of the program on an installation: a session of its own, as a new process has it.
class StartUpTest : public testing::Test {
 protected:
  StartUpTest() { at.session.common.Close(); }

  bool Run() { return start.Run(); }
  void Set(const char* key, const char* value) {
    ASSERT_TRUE(session::UpdateSetting(at.session.host, session::SettingsPath(),
                                       session::FindKey(key)->section, key, value, true));
  }
  std::string Setting(const char* key) {
    return session::ReadSetting(at.session.host, session::SettingsPath(), session::FindKey(key)->section,
                                key);
  }
  fs::path Host(std::string_view path) { return at.files().ToHost(path); }
  void Register(std::string_view statement) {
    session::OpenCommonConnection(at.session);
    at.session.common.Execute(statement);
    at.session.common.Close();
  }
  void ExpectMissing(const std::string& path) {
    at.prompter().ExpectError("EROARE MAJORA, NU EXISTA FISIERUL : \r\n" + path, "");
  }

  test_support::Installation at{test_support::Installation::State::kClosed};
  session::Session session{at.machine.host()};
  test_support::RecordedSurroundings around{at.machine.drives};
  app::StartUp start{session, around, kProgram};
};

TEST_F(StartUpTest, OneCompanyIsOpenedDirectly) {
  EXPECT_TRUE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "pause 1500", "no splash", "main window"));
  EXPECT_EQ(session.current.Cod_Fiscal, "RO123456");
  EXPECT_EQ(session.current.Nume_Firma, "PROBA SRL");
  EXPECT_EQ(session.current.database_path, at.InDataBase("RO123456.mdb"));
  EXPECT_TRUE(session.common.is_open() && session.company.is_open() && session.tariff.is_open());
  EXPECT_FALSE(session.creation_mode);
}

TEST_F(StartUpTest, RatesWaitForTheCompany) {
  Set("UpdateCurs", "1");
  EXPECT_TRUE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "pause 1500", "no splash", "main window", "rates"));
}

TEST_F(StartUpTest, WithoutCompanyOneIsCreated) {
  Set("UpdateCurs", "1");
  Register("DELETE FROM Firme");
  at.prompter().ExpectInfo(
      "Pentru o utilizare mai usoara va recomandam sa consultati manualul de utilizare. In meniu -> Ajutor");
  EXPECT_TRUE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "pause 1500", "no splash", "creation"));
  EXPECT_TRUE(session.creation_mode);
  EXPECT_FALSE(session.company.is_open());
  around.calls.clear();
  start.CompanyReady();  // the creation screen's end; a company opened later takes what has been fetched
  start.CompanyReady();
  session.settings.UpdateCurs = false;
  start.CompanyReady();
  EXPECT_THAT(around.calls,
              ElementsAre("main window", "rates", "main window", "fetched rates", "main window"));
}

TEST_F(StartUpTest, SeveralCompaniesAreChosenFrom) {
  Register("INSERT INTO Firme (Cod_Fiscal, Nume_Firma, DataBaseFile) VALUES ('RO2', 'DOI', 'RO2.mdb')");
  EXPECT_TRUE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "pause 1500", "no splash", "selection"));
  EXPECT_FALSE(session.company.is_open());
}

TEST_F(StartUpTest, MissingCompanyFileEndsWithoutWindow) {
  fs::remove(Host(at.InDataBase("RO123456.mdb")));
  ExpectMissing(at.InDataBase("RO123456.mdb"));
  EXPECT_FALSE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "pause 1500", "no splash"));
}

TEST_F(StartUpTest, CompanyFileThatIsNoDatabase) {
  at.files().Replace(at.InDataBase("RO123456.mdb"), "<html>404</html>");
  at.prompter().ExpectStarting("Eroare nr: ", "EROARE", Icon::kCritical);
  EXPECT_FALSE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "pause 1500", "no splash"));
  EXPECT_EQ(at.files().Read(at.InDataBase("RO123456.mdb")), "<html>404</html>");
}

TEST_F(StartUpTest, SecondInstanceEndsBeforeAnythingElse) {
  around.other_instance = true;
  fs::remove(Host(session::SettingsPath()));
  at.prompter().ExpectError("Aplicatia ruleaza deja !", "");
  EXPECT_FALSE(Run());
  EXPECT_TRUE(around.calls.empty());
}

TEST_F(StartUpTest, MissingSettingsFile) {
  fs::remove(Host(session::SettingsPath()));
  at.prompter().ExpectError(
      "EROARE identificare fisier setari: C:\\ProgramData\\Declarix\\Settings.xml\r\nNu exista !", "");
  EXPECT_FALSE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "no splash"));
  EXPECT_FALSE(fs::exists(Host(session::SettingsPath())));
}

TEST_F(StartUpTest, DataOnAnotherDriveIsFoundAndRemembered) {
  Set("DataBase", "D:\\Vechi\\");
  Set("VerificaUpdate", "1");
  fs::create_directories(Host("E:\\"));
  fs::rename(Host("C:\\Declarix"), Host("E:\\") / "Declarix");
  around.roots = {"A:\\", "C:\\", "E:\\", "F:\\"};
  EXPECT_TRUE(Run());
  // The whole settings pass runs again, the version check with it.
  EXPECT_THAT(around.calls, ElementsAre("splash", "check version", "check version", "pause 1500", "no splash",
                                        "main window"));
  EXPECT_EQ(Setting("DataBase"), "E:\\Declarix\\System\\DataBase\\");
  EXPECT_EQ(Setting("ReportDefinitionPath"), "E:\\Declarix\\System\\ReportDefinition\\");
  EXPECT_EQ(Setting("System"), "E:\\Declarix\\System\\");
  EXPECT_EQ(Setting("DirectorSalvare"), "E:\\Declarix\\System\\DeclaratiiXML\\");
  EXPECT_EQ(session.settings.DirectorSalvare, "E:\\Declarix\\System\\DeclaratiiXML\\");
  EXPECT_EQ(session.current.database_path, "E:\\Declarix\\System\\DataBase\\RO123456.mdb");
}

TEST_F(StartUpTest, DataNowhereNamesTheConfiguredPath) {
  fs::remove_all(Host("C:\\Declarix"));
  Set("DataBase", "D:\\Vechi");
  ExpectMissing("D:\\Vechi\\Comun.mdb");
  EXPECT_FALSE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "no splash"));
  EXPECT_EQ(Setting("DataBase"), "D:\\Vechi");
}

TEST_F(StartUpTest, NoDrives) {
  Set("DataBase", "D:\\Vechi\\");
  around.roots.clear();
  at.prompter().ExpectError("No Drives were found!", "");
  ExpectMissing("D:\\Vechi\\Comun.mdb");
  EXPECT_FALSE(Run());
}

TEST_F(StartUpTest, SettingsThatCannotBeWrittenEndTheSearch) {
  Set("DataBase", "D:\\Vechi\\");
  at.files().refuses = [](std::string_view path) { return path.ends_with("Settings.xml"); };
  at.prompter().ExpectStarting(
      "Eroare la actualizare setari: /Settings/Declarix/Setari/FileLocation/DataBase", "EROARE",
      Icon::kCritical);
  at.prompter().ExpectStarting("Nu se poate scrie fisierul", "EROARE", Icon::kCritical);
  ExpectMissing("D:\\Vechi\\Comun.mdb");
  EXPECT_FALSE(Run());
}

TEST_F(StartUpTest, SettingsThatDoNotParse) {
  at.files().Replace(session::SettingsPath(), "<Settings><Declarix>");
  at.prompter().ExpectStarting("Fisierul de setari ", "EROARE", Icon::kCritical);  // reading
  at.prompter().ExpectStarting("Fisierul de setari ", "EROARE", Icon::kCritical);  // writing what was found
  ExpectMissing("\\Comun.mdb");
  EXPECT_FALSE(Run());
  EXPECT_EQ(at.files().Read(session::SettingsPath()), "<Settings><Declarix>");
}

TEST_F(StartUpTest, CommonFileThatIsNoDatabase) {
  const std::string before = "Acesta nu este o baza de date. Acesta nu este o baza de date.";
  at.files().Replace(at.InDataBase("Comun.mdb"), before);
  at.prompter().ExpectStarting("Sursa Eroare:", "EROARE", Icon::kCritical);
  EXPECT_FALSE(Run());
  EXPECT_THAT(around.calls, ElementsAre("splash", "no splash"));
  EXPECT_EQ(at.files().Read(at.InDataBase("Comun.mdb")), before);
}

TEST_F(StartUpTest, CommonFileWithoutRegister) {
  Register("DROP TABLE Firme");
  at.prompter().ExpectStarting("Eroare nr: ", "EROARE", Icon::kCritical);
  EXPECT_FALSE(Run());
}

class UpdateOfferTest : public StartUpTest {
 protected:
  UpdateOfferTest() {
    Set("VerificaUpdate", "1");
    around.version = "2.1.6";
    at.files().CreateFolders("C:\\Program Files\\Declarix\\UpdateWEB");
    at.files().Replace("C:\\Program Files\\Declarix\\UpdateWEB\\UpdateWEB.exe", "MZ");
  }
  void ExpectOffer(bool answer) {
    at.prompter().ExpectQuestion(kOffer, "RASPUNDETI", Icon::kExclamation, answer);
  }
  static constexpr char kRun[] =
      "run \"C:\\Program Files\\Declarix\\UpdateWEB\\UpdateWEB.exe \"|2.1.6_update.exe";
};

TEST_F(UpdateOfferTest, DeclinedGoesOn) {
  ExpectOffer(false);
  EXPECT_TRUE(Run());
  EXPECT_FALSE(start.update_accepted());
  EXPECT_EQ(around.calls.back(), "main window");
}

TEST_F(UpdateOfferTest, AcceptedLaunchesTheUpdaterAndEnds) {
  ExpectOffer(true);
  EXPECT_FALSE(Run());
  EXPECT_TRUE(start.update_accepted());
  EXPECT_THAT(around.calls, ElementsAre("splash", "check version", kRun, "no splash"));
  EXPECT_FALSE(session.common.is_open());
}

TEST_F(UpdateOfferTest, UpdaterThatCannotRunIsNamedAndTheStartGoesOn) {
  around.elevates = false;
  ExpectOffer(true);
  at.prompter().ExpectStarting("Programul de actualizare nu a putut fi pornit.", "", Icon::kExclamation);
  EXPECT_TRUE(Run());
  EXPECT_EQ(around.calls.back(), "main window");

  at.files().Remove("C:\\Program Files\\Declarix\\UpdateWEB\\UpdateWEB.exe");
  ExpectOffer(true);
  at.prompter().ExpectMessage(
      "Lipseste programul de actualizare.\r\nComanda ar fi fost:\r\n"
      "\"C:\\Program Files\\Declarix\\UpdateWEB\\UpdateWEB.exe \" 2.1.6_update.exe",
      "", Icon::kExclamation);
  EXPECT_EQ(app::OfferUpdate(session, around, "C:\\Program Files\\Declarix\\", "2.1.6"),
            app::UpdateOffer::kNotLaunched);
}

}  // namespace
