#include "platform/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "platform/error_log.h"
#include "support/test_host.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class FilesTest : public testing::Test {
 protected:
  FilesTest() { fs::create_directories(temp_.path() / "c" / "date"); }
  ~FilesTest() override { fs::permissions(temp_.path() / "c" / "date", fs::perms::owner_all); }
  std::string FailureOf(const std::function<void()>& step) {
    try {
      step();
    } catch (const FileError& error) {
      return error.what();
    }
    return {};
  }
  test_support::TempFolder temp_;
  Drives drives_{temp_.path()};
  Files files_{drives_};
};

TEST_F(FilesTest, ReplaceKeepsBytesAndLeavesNothingBeside) {
  const std::string content("a\0b\r\n\xC8", 6);
  files_.Replace("C:\\date\\x.txt", content);
  EXPECT_EQ(files_.Read("C:\\DATE\\X.TXT"), content);
  files_.Replace("C:\\Date\\X.txt", "");
  EXPECT_EQ(files_.Size("C:\\date\\x.txt"), 0u);
  EXPECT_EQ(files_.List("C:\\date"), std::vector<std::string>{"x.txt"});
}

TEST_F(FilesTest, ATemporaryLeftByAKilledRunIsTakenOver) {
  std::ofstream(temp_.path() / "c/date/x.txt.tmp~") << "half a file, longer than the new one";
  files_.Replace("C:\\date\\x.txt", "new");
  EXPECT_EQ(files_.Read("C:\\date\\x.txt"), "new");
  EXPECT_EQ(files_.List("C:\\date\\").size(), 1u);
}

TEST_F(FilesTest, FailuresNameThePathAndTheReason) {
  EXPECT_EQ(FailureOf([&] { files_.Replace("C:\\lipsa\\x.txt", "x"); }),
            "Nu se poate scrie fisierul : C:\\lipsa\\x.txt (directorul C:\\lipsa\\ nu exista)");
  EXPECT_EQ(FailureOf([&] { files_.Read("C:\\date\\x.txt"); }),
            "Nu se poate citi fisierul : C:\\date\\x.txt (fisierul sau directorul nu exista)");
  EXPECT_THAT(FailureOf([&] { files_.Read("C:\\date"); }), HasSubstr("este un director"));

  files_.Replace("C:\\date\\x.txt", "old");
  fs::permissions(temp_.path() / "c/date/x.txt", fs::perms::owner_read);
  EXPECT_EQ(FailureOf([&] { files_.Replace("C:\\date\\x.txt", "new"); }),
            "Nu se poate scrie fisierul : C:\\date\\x.txt (acces refuzat sau protejat la scriere)");
  EXPECT_EQ(files_.Read("C:\\date\\x.txt"), "old");

  fs::permissions(temp_.path() / "c/date", fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_THAT(FailureOf([&] { files_.Replace("C:\\date\\y.txt", "new"); }), HasSubstr("protejat la scriere"));
}

TEST_F(FilesTest, AFullDiskLeavesTheOldContent) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  fs::create_symlink("/dev/full", temp_.path() / "c/date/x.txt.tmp~");
  files_.Append("C:\\date\\x.txt", "old");
  EXPECT_EQ(FailureOf([&] { files_.Replace("C:\\date\\x.txt", "new"); }).substr(0, 44),
            "Nu se poate scrie fisierul : C:\\date\\x.txt (");
  EXPECT_EQ(files_.Read("C:\\date\\x.txt"), "old");
}

TEST_F(FilesTest, CopyReplacesAsAWhole) {
  std::string big(3'000'000, 'x');
  big += "end";
  files_.Replace("C:\\date\\from", big);
  files_.Replace("C:\\date\\to", "old");
  files_.Copy("C:\\date\\from", "C:\\date\\to");
  EXPECT_EQ(files_.Read("C:\\date\\to"), big);
  EXPECT_THAT(FailureOf([&] { files_.Copy("C:\\date\\lipsa", "C:\\date\\to"); }),
              HasSubstr("C:\\date\\lipsa"));
  EXPECT_EQ(files_.Size("C:\\date\\to"), big.size());
}

TEST_F(FilesTest, TimesAndRemoval) {
  EXPECT_FALSE(files_.LastModified("C:\\date\\x").has_value());
  files_.Append("C:\\date\\x", "1");
  const auto day_ago = std::chrono::system_clock::now() - std::chrono::hours(24);
  files_.SetLastModified("C:\\date\\x", day_ago);
  EXPECT_LT(std::chrono::abs(*files_.LastModified("C:\\date\\x") - day_ago), std::chrono::seconds(2));
  files_.Remove("C:\\date\\X");
  files_.Remove("C:\\date\\x");
  EXPECT_FALSE(files_.Exists("C:\\date\\x"));
  EXPECT_TRUE(files_.FolderExists("C:\\date"));
}

TEST(SplitLinesTest, EndsOfLinesAndOfText) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(SplitLines("a\r\nb\n\nc"), (Lines{"a", "b", "", "c"}));
  EXPECT_EQ(SplitLines("a\r\n"), (Lines{"a"}));
  EXPECT_EQ(SplitLines(""), Lines{});
}

TEST(ErrorLogTest, OneLinePerErrorAndAFreshFileBeyondAMebibyte) {
  test_support::TestHost host;
  host.errors.Write("nowhere", "no folder known yet");
  host.errors.set_folder("C:\\S\\");
  host.errors.Write("import", "prima\r\na doua");
  EXPECT_EQ(host.files.Read("C:\\S\\Erori\\erori.txt"), "2026-03-16 10:30:00\timport\tprima  a doua\r\n");
  EXPECT_EQ(host.errors.count(), 2);

  host.files.Append("C:\\S\\Erori\\erori.txt", std::string(1'100'000, 'x'));
  host.errors.Write("x", "y");
  EXPECT_EQ(host.files.Size("C:\\S\\Erori\\erori.txt"), 25u);
  EXPECT_GT(host.files.Size("C:\\S\\Erori\\erori_vechi.txt"), 1'100'000u);

  host.files.refuses = [](std::string_view) { return true; };
  host.errors.Write("x", "passed over");
  EXPECT_EQ(host.errors.count(), 4);
}

}  // namespace
}  // namespace platform
