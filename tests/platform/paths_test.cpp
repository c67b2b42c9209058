#include "platform/paths.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/test_host.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

class PathsTest : public testing::Test {
 protected:
  void Touch(const std::string& below) {
    const fs::path file = folder_.path() / below;
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "x";
  }
  std::string Host(std::string_view windows) {
    return drives_.ToHost(windows).lexically_relative(folder_.path()).string();
  }
  test_support::TempFolder folder_;
  Drives drives_{folder_.path()};
};

TEST_F(PathsTest, MatchesNamesWithoutRegardToCase) {
  Touch("c/Declarix/System/DataBase/Comun.mdb");
  Touch("c/Declarix/Rapoarte/Ședință Țară.txt");
  EXPECT_EQ(Host("C:\\declarix\\SYSTEM\\Database\\COMUN.MDB"), "c/Declarix/System/DataBase/Comun.mdb");
  EXPECT_EQ(Host("c:\\Declarix\\rapoarte\\ȘEDINȚĂ țară.TXT"), "c/Declarix/Rapoarte/Ședință Țară.txt");
  // Parts that do not exist keep their spelling, even where the same name exists elsewhere.
  EXPECT_EQ(Host("C:\\DECLARIX\\Nou\\system\\x.TXT"), "c/Declarix/Nou/system/x.TXT");
}

TEST_F(PathsTest, ExactNameWinsOverAnotherCase) {
  Touch("c/a/DATE.txt");
  Touch("c/a/date.txt");
  EXPECT_EQ(Host("C:\\a\\date.txt"), "c/a/date.txt");
  EXPECT_EQ(Host("C:\\a\\DATE.txt"), "c/a/DATE.txt");
  EXPECT_EQ(Host("C:\\A\\Date.TXT"), "c/a/DATE.txt");
}

TEST_F(PathsTest, DrivesAndOddForms) {
  Touch("e/x.txt");
  EXPECT_EQ(Host("E:\\x.txt"), "e/x.txt");
  EXPECT_EQ(Host("\\temp\\x"), "c/temp/x");
  EXPECT_EQ(Host("C:/a\\.\\b\\..\\c"), "c/a/c");
  EXPECT_EQ(Host("C:\\..\\..\\a"), "c/a");
  EXPECT_EQ(drives_.ToHost("Z:\\"), fs::path("/"));
  EXPECT_EQ(drives_.Roots(), (std::vector<std::string>{"E:\\", "Z:\\"}));
}

TEST_F(PathsTest, HostPathsComeBackAsWindowsPaths) {
  Touch("c/Declarix/x.txt");
  EXPECT_EQ(drives_.FromHost(folder_.path() / "c" / "Declarix" / "x.txt"), "C:\\Declarix\\x.txt");
  EXPECT_EQ(drives_.FromHost(folder_.path() / "c"), "C:\\");
  const fs::path beside = folder_.path() / "elsewhere.txt";
  EXPECT_EQ(drives_.FromHost(beside).substr(0, 3), "Z:\\");
  EXPECT_EQ(drives_.ToHost(drives_.FromHost(beside)), beside);
}

TEST(PathTextTest, PartsOfAPath) {
  EXPECT_EQ(WithBackslash(""), "\\");
  EXPECT_EQ(WithBackslash("C:\\a"), "C:\\a\\");
  EXPECT_EQ(WithBackslash("C:\\a\\"), "C:\\a\\");
  EXPECT_EQ(FileNameOf("C:\\a\\b.mdb"), "b.mdb");
  EXPECT_EQ(FileNameOf("b.mdb"), "b.mdb");
  EXPECT_EQ(FolderOf("C:\\a\\b.mdb"), "C:\\a\\");
  EXPECT_EQ(FolderOf("b.mdb"), "");
}

}  // namespace
}  // namespace platform
