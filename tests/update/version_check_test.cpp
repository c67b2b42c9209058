#include "update/version_check.h"

#include <gtest/gtest.h>

#include "support/local_server.h"
#include "support/test_host.h"
#include "update/offer.h"

namespace update {
namespace {

constexpr char kPath[] = "download/dat/vers.txt";

TEST(ServerVersion, IsTheTextBeforeTheFirstDash) {
  EXPECT_EQ(ServerVersion("2.1.5 - comentariu - altul\r\n9.9.9 -\r\n"), "2.1.5");
  EXPECT_EQ(ServerVersion("\xEF\xBB\xBF 3.0.1-"), "3.0.1");
  EXPECT_EQ(ServerVersion("2.1.5\r\n2.1.6 - x"), "") << "no dash in the first line";
  EXPECT_EQ(ServerVersion(" - comentariu"), "");
  EXPECT_EQ(ServerVersion(""), "");
  for (const char* harmful : {"2.1.5 & calc - x", "..\\2 - x", "2.1.5\" -", "v2.1 - x", "2 1 - x"}) {
    EXPECT_EQ(ServerVersion(harmful), "") << harmful;
  }
}

TEST(IsNewer, ComparesPartsAsTexts) {
  EXPECT_TRUE(IsNewer("2.1.5", "2.1.6"));
  EXPECT_TRUE(IsNewer("2.1.5", "3.0.0"));
  EXPECT_TRUE(IsNewer("2.10.0", "2.9.0")) << "9 stands behind 10 as a text";
  EXPECT_FALSE(IsNewer("2.1.5", "2.1.10"));
  EXPECT_FALSE(IsNewer("2.1.5", "2.1.5"));
  EXPECT_FALSE(IsNewer("2.1.5", "1.9.9"));
  EXPECT_FALSE(IsNewer("2.1.5", "2.1"));
}

TEST(Offer, LaunchesTheUpdaterWithItsBlankBeforeTheQuote) {
  for (const char* folder : {"C:\\Program Files\\Declarix", "C:\\Program Files\\Declarix\\"}) {
    const Launch launch = UpdaterLaunch(folder, "2.1.6");
    EXPECT_EQ(launch.verb, "runas");
    EXPECT_EQ(launch.file, "\"C:\\Program Files\\Declarix\\UpdateWEB\\UpdateWEB.exe \"");
    EXPECT_EQ(launch.parameters, "2.1.6_update.exe");
    EXPECT_EQ(launch.folder, "");
    EXPECT_EQ(UpdaterPath(folder), "C:\\Program Files\\Declarix\\UpdateWEB\\UpdateWEB.exe");
  }
}

class CheckVersionTest : public testing::Test {
 protected:
  CheckVersionTest() {
    session_.settings.System = "C:\\Declarix\\System\\";
    session_.settings.www = server_.Address("");
    machine_.files.CreateFolders(session_.settings.System);
  }
  void ExpectNoServerVersion(int number) {
    machine_.prompter.ExpectError(
        "EROARE LA DESCARCARE FISIER\r\nNu exista fisierul sau nu exista o conexiune la internet.\r\n"
        "Numar eroare: " +
            std::to_string(number),
        "");
    machine_.prompter.ExpectError("A fost o eroare la verificare versiune disponibila pentru download", "");
  }

  test_support::TestHost machine_;
  test_support::LocalServer server_;
  session::Session session_{machine_.host()};
};

TEST_F(CheckVersionTest, AnswersANewerVersionAndKeepsTheFile) {
  server_.Serve(kPath, "9.9.9 - noua\r\n");
  EXPECT_EQ(CheckVersion(session_, false), "9.9.9");
  EXPECT_EQ(CheckVersion(session_, true), "9.9.9");
  EXPECT_EQ(machine_.files.Read("C:\\Declarix\\System\\vers.txt"), "9.9.9 - noua\r\n");
  session_.settings.www.pop_back();  // without the slash at its end
  EXPECT_EQ(CheckVersion(session_, false), "9.9.9");
}

TEST_F(CheckVersionTest, SaysOnlyWhenAskedThatNothingIsNewer) {
  server_.Serve(kPath, "0.9 - veche\r\n");
  EXPECT_EQ(CheckVersion(session_, false), "0");
  machine_.prompter.ExpectInfo("Nu este necesara actualizarea programului.\r\nVersiunea instalata este: " +
                               InstalledVersion() + "\r\nVersiunea de pe server : 0.9");
  EXPECT_EQ(CheckVersion(session_, true), "0");
  server_.Serve(kPath, "format necunoscut\r\n");
  EXPECT_EQ(CheckVersion(session_, true), "0") << "an empty version has no message";
}

TEST_F(CheckVersionTest, AFailedDownloadIsNotAnsweredFromAnEarlierFile) {
  server_.Serve(kPath, "9.9.9 - noua\r\n");
  EXPECT_EQ(CheckVersion(session_, false), "9.9.9");
  server_.Serve(kPath, "<html><body>Conectati-va la retea - aici</body></html>");
  ExpectNoServerVersion(200);
  EXPECT_EQ(CheckVersion(session_, false), "0");
  session_.settings.www = server_.Address("alt/");
  ExpectNoServerVersion(404);
  EXPECT_EQ(CheckVersion(session_, true), "0");
  session_.settings.www.clear();
  ExpectNoServerVersion(3);
  EXPECT_EQ(CheckVersion(session_, false), "0");
  EXPECT_EQ(machine_.files.Read("C:\\Declarix\\System\\vers.txt"), "9.9.9 - noua\r\n");
}

}  // namespace
}  // namespace update
