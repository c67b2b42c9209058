#include "platform/download/download.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "support/local_server.h"
#include "support/test_host.h"

namespace platform {
namespace {

using std::chrono::milliseconds;
using testing::Contains;
using testing::Each;
using testing::Pair;

constexpr char kTarget[] = "C:\\Date\\vers.txt";
constexpr char kGood[] = "2.1.5 - versiune\r\n";
constexpr char kOld[] = "2.0.0 - veche\r\n";

bool Anything(std::string_view) { return true; }

/// Cancels once it has been told something a number of times.
class ImpatientProgress : public test_support::RecordingProgress {
 public:
  void Update(std::string_view caption, int percent) override {
    RecordingProgress::Update(caption, percent);
    if (updates.size() > 3) cancelled = true;
  }
};

class DownloadTest : public testing::Test {
 protected:
  DownloadTest() {
    machine_.files.CreateFolders("C:\\Date\\");
    machine_.files.Replace(kTarget, kOld);
    options_ = {.connect_timeout = milliseconds(500),
                .stall_timeout = milliseconds(200),
                .total_timeout = milliseconds(3000),
                .redirects = 3,
                .size_limit = 4096};
  }

  bool Fetch(const std::string& path, const ContentCheck& valid = Anything) {
    return Download(machine_, DownloadRequest{server_.Address(path), kTarget}.Text(), valid, options_);
  }
  void ExpectFailure(int number) {
    machine_.prompter.ExpectError(
        "EROARE LA DESCARCARE FISIER\r\nNu exista fisierul sau nu exista o conexiune la internet.\r\n"
        "Numar eroare: " +
            std::to_string(number),
        "");
  }
  /// The fetch fails with that number and leaves the old file, and nothing else, behind.
  void ExpectRefused(const std::string& path, int number, const ContentCheck& valid = Anything) {
    SCOPED_TRACE(path);
    ExpectFailure(number);
    EXPECT_FALSE(Fetch(path, valid));
    machine_.prompter.Verify();
    EXPECT_EQ(machine_.files.Read(kTarget), kOld);
    EXPECT_THAT(machine_.files.List("C:\\Date\\"), testing::ElementsAre("vers.txt"));
  }

  test_support::TestHost machine_;
  test_support::LocalServer server_;
  DownloadOptions options_;
};

TEST_F(DownloadTest, PutsAWholeFileInPlaceAndTellsHowFarItIs) {
  server_.Serve("vers.txt", kGood);
  EXPECT_TRUE(Fetch("vers.txt"));
  EXPECT_EQ(machine_.files.Read(kTarget), kGood);
  EXPECT_THAT(machine_.progress.updates, Each(Pair("Descarc fisierul... Va rog asteptati...",
                                                   testing::AllOf(testing::Ge(0), testing::Le(100)))));
  EXPECT_EQ(machine_.progress.updates.back().second, 100);
  EXPECT_EQ(machine_.progress.statuses.front(), "Checking For Cached Copy...");
  EXPECT_EQ(machine_.progress.statuses.back(), "End Of Download Data...");
}

TEST_F(DownloadTest, TakesChunkedBodiesAndLocalFiles) {
  server_.ServeRaw("bucati",
                   "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n");
  EXPECT_TRUE(Fetch("bucati"));
  EXPECT_EQ(machine_.files.Read(kTarget), "abcde");
  machine_.files.Replace("C:\\Date\\sursa,noua.txt", kGood);
  const std::string address = "file://" + machine_.files.ToHost("C:\\Date\\sursa,noua.txt").string();
  const std::string request = DownloadRequest{address, kTarget}.Text();
  EXPECT_TRUE(Download(machine_, request, Anything, options_)) << "a comma in the address belongs to it";
  EXPECT_EQ(machine_.files.Read(kTarget), kGood);
}

TEST_F(DownloadTest, CutBodiesReplaceNothing) {
  server_.ServeRaw("cu-lungime", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n2.1.5 - ver");
  ExpectRefused("cu-lungime", 18);
  server_.ServeRaw("bucata", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n6\r\nabcdef\r\n6\r\nab");
  ExpectRefused("bucata", 18);
  server_.ServeRaw("fara-lungime", "HTTP/1.0 200 OK\r\n\r\n2.1.5 - versiune\r\n2.1");
  ExpectRefused("fara-lungime", 18);
  server_.ServeRaw("intreg", std::string("HTTP/1.0 200 OK\r\n\r\n") + kGood);
  EXPECT_TRUE(Fetch("intreg"));
}

TEST_F(DownloadTest, WrongAnswersReplaceNothing) {
  ExpectRefused("lipsa", 404);
  server_.Serve("gol", "");
  ExpectRefused("gol", 200);
  server_.Serve("pagina", "\xEF\xBB\xBF\r\n<!DOCTYPE html><html>Conectati-va</html>\n");
  ExpectRefused("pagina", 200);
  server_.Serve("altceva", "nu este o versiune\n");
  ExpectRefused("altceva", 200, [](std::string_view content) { return content.starts_with("2."); });
  server_.Serve("mare", std::string(5000, 'x'));
  ExpectRefused("mare", 63);
  server_.ServeRaw("mare-fara-lungime", "HTTP/1.0 200 OK\r\n\r\n" + std::string(5000, '\n'));
  ExpectRefused("mare-fara-lungime", 63);
  server_.ServeRaw("nimic", "");
  ExpectRefused("nimic", 52);
  EXPECT_EQ(machine_.errors.count(), 7) << "each is noted";
}

TEST_F(DownloadTest, FollowsRedirectsUpToTheLimitAndNeverToALocalFile) {
  server_.Serve("vers.txt", kGood);
  server_.Redirect("mutat", server_.Address("vers.txt"));
  EXPECT_TRUE(Fetch("mutat"));
  EXPECT_EQ(machine_.files.Read(kTarget), kGood);
  EXPECT_THAT(machine_.progress.statuses, Contains("Redirecting..."));
  machine_.files.Replace(kTarget, kOld);
  server_.Redirect("cerc", "/cerc");
  ExpectRefused("cerc", 47);
  EXPECT_EQ(server_.requests().size(), 2U + 4U);
  server_.Redirect("local", "file:///etc/passwd");
  ExpectRefused("local", 1);
}

TEST_F(DownloadTest, SilenceAndMissingServersEndInTime) {
  server_.ServeRaw("tacere", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n2.1", true);
  ExpectRefused("tacere", 28);
  options_.stall_timeout = milliseconds(3000);
  options_.total_timeout = milliseconds(200);
  ExpectRefused("tacere", 28);
  std::string nobody;
  {
    const test_support::LocalServer gone;
    nobody = gone.Address("vers.txt");
  }
  for (const auto& [address, number] :
       {std::pair(nobody, 7), std::pair(std::string(), 3), std::pair(std::string("ftp://127.0.0.1/x"), 1)}) {
    ExpectFailure(number);
    EXPECT_FALSE(Download(machine_, address + "," + kTarget + ",1", Anything, options_));
  }
}

TEST_F(DownloadTest, CancellingLeavesTheOldFileAndSaysNothingMore) {
  server_.ServeRaw("tacere", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n2.1", true);
  options_.stall_timeout = milliseconds(3000);
  ImpatientProgress progress;
  const Host host{machine_.files, machine_.clock, machine_.prompter, progress, machine_.errors};
  const auto began = std::chrono::steady_clock::now();
  EXPECT_FALSE(
      Download(host, DownloadRequest{server_.Address("tacere"), kTarget}.Text(), Anything, options_));
  EXPECT_LT(std::chrono::steady_clock::now() - began, milliseconds(1500));
  EXPECT_EQ(progress.statuses.back(), "Cancelling...");
  EXPECT_EQ(machine_.files.Read(kTarget), kOld);
}

TEST_F(DownloadTest, AProtectedTargetIsNamed) {
  server_.Serve("vers.txt", kGood);
  machine_.files.refuses = [](std::string_view path) { return path == kTarget; };
  machine_.prompter.ExpectStarting("Nu se poate scrie fisierul", "EROARE", Icon::kCritical);
  EXPECT_FALSE(Fetch("vers.txt"));
}

}  // namespace
}  // namespace platform
