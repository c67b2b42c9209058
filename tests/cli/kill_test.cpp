// The tool is killed in the middle of its work, ever later; what it leaves is the state before or after.

#include <gmock/gmock.h>

#include <cstdlib>

#include "cli_fixture.h"

namespace {

#ifndef _WIN32

class Killed : public CliTest {
 protected:
  /// Runs the installed tool as a process of its own, killed after that many milliseconds; true when it came
  /// to its end.
  bool RunFor(int milliseconds, const std::string& arguments) {
    const std::string command = fmt::format(
        "timeout -s KILL {}.{:03} '{}' --drives '{}' --answer yes {} >/dev/null 2>&1", milliseconds / 1000,
        milliseconds % 1000, DECLARIX_CLI, folder_.path().string(), arguments);
    return std::system(command.c_str()) == 0;
  }

  int Lines() {
    const Answer answer =
        Run({"sql", "--db", "company", "--company", "RO123456", "SELECT COUNT(*) AS N FROM Intrastat"});
    EXPECT_EQ(answer.status, cli::kDone) << answer.err;
    return std::stoi(answer.out.substr(answer.out.find('\n') + 1));
  }
};

TEST_F(Killed, LeavesAllLinesOfAnImportOrNoneAndNeverHalfAFile) {
  constexpr int kRows = 4000;
  Install();
  test_support::XlsWriter book;
  auto& sheet = book.AddSheet("Sheet1");
  sheet.Text(0, 0, "Cod");
  sheet.Text(0, 1, "Lei");
  for (unsigned row = 1; row <= kRows; ++row) {
    sheet.Text(row, 0, row % 2 == 0 ? "84713000" : "94036010");
    sheet.Number(row, 1, row);
  }
  const std::string xls = HostPath("mare.xls");
  book.Save(xls);
  ASSERT_EQ(Run({"template", "create", "--company", "RO123456", "--name", "M", "--tip", "ACHIZITIE"}).status,
            cli::kDone);
  const auto set = [&](const char* column, const char* option, const char* value) {
    ASSERT_EQ(
        Run({"template", "set", "--company", "RO123456", "--name", "M", "--column", column, option, value})
            .status,
        cli::kDone);
  };
  set("Cod_NC", "--number", "1");
  set("Val_Fiscala", "--number", "2");
  set("Tara_Exp", "--default", "DE");
  set("Tara_Orig", "--default", "DE");
  set("Net", "--default", "1");
  set("Cantitate", "--default", "1");

  ASSERT_EQ(Run({"defaults", "set", "--company", "RO123456", "I_Tara_Exp=DE"}).status, cli::kDone);

  const std::string month = "--company RO123456 --tip I --year 2026 --month 3 ";
  int lines = 0;
  bool finished = false;
  for (int wait = 20; !finished && wait < 60000; wait += wait / 3) {
    finished = RunFor(wait, "import " + month + "--template M '" + xls + "'");
    const int now = Lines();
    ASSERT_TRUE(now == lines || now == lines + kRows) << now << " lines after " << wait << " ms";
    lines = now;
  }
  ASSERT_TRUE(finished);

  // Marks of a check that came to its end; every one that is killed leaves all of them or none.
  const auto marked = [&] {
    const Answer answer = Run({"sql", "--db", "company", "--company", "RO123456",
                               "SELECT COUNT(*) AS N FROM Intrastat WHERE Probleme<>0"});
    EXPECT_EQ(answer.status, cli::kDone) << answer.err;
    return std::stoi(answer.out.substr(answer.out.find('\n') + 1));
  };
  int marks = marked();
  ASSERT_EQ(marks, 0);
  for (int wait = 20; marks == 0 && wait < 60000; wait += wait / 3) {
    RunFor(wait, "check " + month + "--statistic");
    marks = marked();
    ASSERT_TRUE(marks == 0 || marks == lines) << marks << " marks after " << wait << " ms";
  }
  ASSERT_EQ(marks, lines) << "no line has a nature of transaction";

  const std::filesystem::path file = HostPath("c/Declarix/System/DeclaratiiXML/0000123456_A_20263.xml");
  finished = false;
  for (int wait = 20; !finished && wait < 60000; wait += wait / 3) {
    finished = RunFor(wait, "export " + month + "--no-statistic --detaliat");
    if (!std::filesystem::exists(file)) continue;
    std::stringstream xml;
    xml << std::ifstream(file).rdbuf();
    ASSERT_THAT(xml.str(), testing::EndsWith("</InsNewArrival>\r\n")) << "after " << wait << " ms";
  }
  EXPECT_TRUE(finished && std::filesystem::exists(file));
  EXPECT_EQ(Lines(), lines);
}

#endif

}  // namespace
