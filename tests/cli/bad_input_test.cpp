// What a user meets who gives the tool bad files, settings and command lines: a reason that names the file,
// row or field, the right exit status, and data that stays as it was.

#include <gmock/gmock.h>
#include <sqlite3.h>

#include "cli_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class BadInput : public CliTest {
 protected:
  static constexpr char kUnreadable[] =
      "EROARE: Fisierul Excel NU poate fi citit, verificati macheta de preluare\nEROARE: ";

  void SetUp() override {
    Install();
    ASSERT_EQ(Template({"create", "--tip", "ACHIZITIE"}).status, cli::kDone);
    const char* columns[] = {"Cod_NC", "Val_Fiscala", "DataReceptiei"};
    for (unsigned i = 0; i < std::size(columns); ++i) {
      ASSERT_EQ(
          Template({"set", "--column", columns[i], "--number", std::to_string(i + 1), "--size", ""}).status,
          cli::kDone);
    }
    test_support::XlsWriter book;
    auto& sheet = book.AddSheet("Sheet1");
    Heading(sheet);
    Line(sheet, 1);
    good_ = book.Content();
  }

  static void Heading(test_support::XlsWriter::Sheet& sheet) {
    const char* headings[] = {"Cod", "Lei", "Data"};
    for (unsigned i = 0; i < std::size(headings); ++i) sheet.Text(0, i, headings[i]);
  }
  static void Line(test_support::XlsWriter::Sheet& sheet, unsigned row) {
    sheet.Text(row, 0, "84713000");
    sheet.Number(row, 1, 100);
    sheet.Date(row, 2, 46085);
  }

  Answer Template(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "template");
    arguments.insert(arguments.end(), {"--company", "RO123456", "--name", "M"});
    return Run(arguments);
  }

  Answer Month(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(),
                     {"--company", "RO123456", "--tip", "I", "--year", "2026", "--month", "3"});
    return Run(arguments);
  }

  Answer Import(const std::string& name, const std::string& content) {
    std::ofstream(HostPath(name), std::ios::binary) << content;
    return Month({"import", "--template", "M", "--answer", "yes", HostPath(name)});
  }

  int Lines() {
    const Answer answer =
        Run({"sql", "--db", "company", "--company", "RO123456", "SELECT COUNT(*) AS N FROM Intrastat"});
    EXPECT_EQ(answer.status, cli::kDone) << answer.err;
    return std::atoi(answer.out.substr(answer.out.find('\n') + 1).c_str());
  }

  std::string Data(const std::string& name) { return HostPath("c/Declarix/System/DataBase/" + name); }

  static std::string Content(const std::string& host_path) {
    std::stringstream content;
    content << std::ifstream(host_path, std::ios::binary).rdbuf();
    return content.str();
  }

  std::string good_;
};

TEST_F(BadInput, NamesTheWorksheetThatCannotBeRead) {
  test_support::XlsWriter headings;
  Heading(headings.AddSheet("Sheet1"));
  test_support::XlsWriter other;
  Line(other.AddSheet("Alta"), 1);
  const struct {
    const char* name;
    std::string content;
    const char* reason;
  } kCases[] = {
      {"gol.xls", "", "este gol"},
      {"text.xls", "cod,lei\n1,2\n", "nu este un registru"},
      {"pagina.xls", "<html><table><tr><td>1</td></tr></table></html>", "HTML"},
      {"arhiva.xls", std::string("PK\3\4\0\0\0\0", 8), "zip"},
      {"antet.xls", good_.substr(0, 100), "trunchiat"},
      {"taiat.xls", good_.substr(0, good_.size() / 2), "OLE2"},
      {"capete.xls", headings.Content(), "nu are nicio inregistrare"},
      {"alta.xls", other.Content(), "foile lui sunt: Alta"},
  };
  for (const auto& [name, content, reason] : kCases) {
    const Answer answer = Import(name, content);
    EXPECT_EQ(answer.status, cli::kRefused) << name;
    EXPECT_THAT(answer.err, AllOf(StartsWith(kUnreadable), HasSubstr(reason))) << name;
    EXPECT_EQ(answer.out, "") << name;
  }
  const Answer missing = Month({"import", "--template", "M", HostPath("lipsa.xls")});
  EXPECT_EQ(missing.status, cli::kRefused);
  EXPECT_THAT(missing.err, AllOf(StartsWith("EROARE: Nu exista fisierul : "), HasSubstr("lipsa.xls")));
  EXPECT_EQ(Lines(), 0);
}

TEST_F(BadInput, SurvivesEveryFlippedByteOfAWorksheet) {
  for (std::size_t at = 0; at < good_.size(); at += 37) {
    std::string damaged = good_;
    damaged[at] = static_cast<char>(damaged[at] ^ 0xFF);
    std::ofstream(HostPath("stricat.xls"), std::ios::binary) << damaged;
    const Answer answer = Run({"sql", "--file", HostPath("stricat.xls"), "SELECT * FROM [Sheet1$]"});
    if (answer.status != cli::kDone) {
      ASSERT_THAT(answer.err, AllOf(StartsWith("eroare -"), HasSubstr("stricat.xls"))) << "byte " << at;
    }
  }
}

TEST_F(BadInput, ListsTheRowsThatDoNotFitAndTakesTheOthers) {
  test_support::XlsWriter book;
  auto& sheet = book.AddSheet("Sheet1");
  Heading(sheet);
  for (unsigned row = 1; row <= 6; ++row) Line(sheet, row);
  sheet.Text(2, 0, std::string(300, '8'));
  sheet.Text(3, 1, "o suta");
  sheet.Text(4, 2, "31.02.2026");
  sheet.Error(5, 1, 7);
  const Answer answer = Import("amestec.xls", book.Content());
  EXPECT_EQ(answer.status, cli::kRefused);
  EXPECT_THAT(answer.out, HasSubstr("\n3\t6\t3\n"));
  EXPECT_THAT(answer.err,
              AllOf(HasSubstr("amestec.xls, foaia Sheet1, inregistrari respinse: 3\n"),
                    HasSubstr("Randul 3, coloana Cod_NC: textul '8888"),
                    HasSubstr("Randul 4, coloana Val_Fiscala: valoarea 'o suta' nu este un numar\n"),
                    HasSubstr("Randul 5, coloana DataReceptiei: valoarea '31.02.2026' nu este o data\n")));
  EXPECT_EQ(Lines(), 3);
}

TEST_F(BadInput, NamesTheTemplateColumnThatFails) {
  const auto refused = [&](std::vector<std::string> set, const char* reason) {
    set.insert(set.begin(), "set");
    ASSERT_EQ(Template(set).status, cli::kDone);
    const Answer answer = Import("bun.xls", good_);
    EXPECT_EQ(answer.status, cli::kRefused);
    EXPECT_THAT(answer.err, AllOf(HasSubstr(kUnreadable), HasSubstr(reason)));
  };
  refused({"--column", "Mod_Transp", "--default", "Lipsa", "--size", ""}, "coloana Mod_Transp: ");
  refused({"--column", "Mod_Transp", "--default", "IIF(("}, "coloana Mod_Transp: ");
  refused({"--column", "Mod_Transp", "--default", "1/0"}, "coloana Mod_Transp: Impartire la zero");
  refused({"--column", "Mod_Transp", "--default", "", "--number", "99"}, "Mod_Transp are numarul 99");
  EXPECT_EQ(Lines(), 0);
}

TEST_F(BadInput, NamesTheDatabaseThatCannotBeUsed) {
  ASSERT_EQ(Import("bun.xls", good_).status, cli::kDone);
  const std::string company = Content(Data("RO123456.mdb"));
  const struct {
    std::string content;
    const char* reason;
  } kCases[] = {{"", "este gol"},
                {"nu este o baza de date", "nu este o baza de date"},
                {company.substr(0, 5000), "este deteriorat"}};
  for (const char* file : {"RO123456.mdb", "Comun.mdb"}) {
    const std::string intact = Content(Data(file));
    for (const auto& [content, reason] : kCases) {
      std::ofstream(Data(file), std::ios::binary) << content;
      const Answer answer = Month({"check"});
      EXPECT_EQ(answer.status, cli::kRefused) << file;
      EXPECT_THAT(answer.err, AllOf(HasSubstr(file), HasSubstr(reason)));
    }
    std::filesystem::remove(Data(file));
    EXPECT_THAT(Month({"check"}).err, HasSubstr(file));
    std::ofstream(Data(file), std::ios::binary) << intact;
  }

  using std::filesystem::perms;
  std::filesystem::permissions(Data("RO123456.mdb"), perms::owner_read);
  const Answer written = Import("bun.xls", good_);
  EXPECT_EQ(written.status, cli::kRefused);
  EXPECT_THAT(written.err, HasSubstr("RO123456.mdb poate fi doar citit"));
  std::filesystem::permissions(Data("RO123456.mdb"), perms::owner_read | perms::owner_write);
  EXPECT_EQ(Content(Data("RO123456.mdb")), company);

  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(Data("RO123456.mdb").c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  const Answer locked = Month({"lines"});
  sqlite3_close(other);
  EXPECT_EQ(locked.status, cli::kRefused);
  EXPECT_THAT(locked.err, HasSubstr("RO123456.mdb este folosit de alt program"));
  EXPECT_EQ(Lines(), 1);
}

TEST_F(BadInput, RegistersNoCompanyFromADamagedTemplateDatabase) {
  const std::string intact = Content(Data("goala.mdb"));
  std::ofstream(Data("goala.mdb"), std::ios::binary) << "nu este o baza de date";
  const Answer answer = Run({"company", "add", "--cod-fiscal", "RO7", "--nume", "Alta"});
  EXPECT_EQ(answer.status, cli::kRefused);
  EXPECT_THAT(answer.err, AllOf(StartsWith("EROARE:  EROARE LA COPIERE \n"), HasSubstr("goala.mdb")));
  EXPECT_FALSE(std::filesystem::exists(Data("RO7.mdb")));
  std::ofstream(Data("goala.mdb"), std::ios::binary) << intact;
  EXPECT_EQ(Run({"company", "add", "--cod-fiscal", "RO7", "--nume", "Alta"}).status, cli::kDone);
}

TEST_F(BadInput, LetsAWrongSettingBeMended) {
  ASSERT_EQ(Run({"settings", "set", "DataBase", "C:\\Nicaieri\\"}).status, cli::kDone);
  EXPECT_THAT(Run({"company", "list"}).err, HasSubstr("C:\\Nicaieri\\Comun.mdb"));
  EXPECT_EQ(Run({"settings", "get", "DataBase"}).out, "C:\\Nicaieri\\\n");
  ASSERT_EQ(Run({"settings", "set", "DataBase", "C:\\Declarix\\System\\DataBase\\"}).status, cli::kDone);
  EXPECT_EQ(Run({"company", "list"}).status, cli::kDone);

  const std::string settings = HostPath("c/ProgramData/Declarix/Settings.xml");
  for (const char* content : {"", "<Settings><a></Settings>", "\xff\xfe\xff"}) {
    std::ofstream(settings, std::ios::binary) << content;
    const Answer answer = Run({"company", "list"});
    EXPECT_EQ(answer.status, cli::kRefused);
    EXPECT_THAT(answer.err, HasSubstr("Settings.xml nu poate fi citit: "));
    EXPECT_EQ(Content(settings), content);
  }
  std::ofstream(settings, std::ios::binary) << "<Settings></Settings>";
  EXPECT_THAT(Run({"company", "list"}).err, HasSubstr("Lipseste elementul /Settings/Declarix din fisierul"));
}

TEST_F(BadInput, KeepsTheDeclarationFileThatCannotBeReplaced) {
  const auto folder = std::filesystem::path(HostPath("c/Declarix/System/DeclaratiiXML"));
  const std::string file = (folder / "0000123456_AN_20263.xml").string();
  ASSERT_EQ(Month({"nil"}).status, cli::kDone);
  const std::string before = Content(file);

  using std::filesystem::perms;
  for (const auto& target : {std::filesystem::path(file), folder}) {
    const perms usual = std::filesystem::status(target).permissions();
    std::filesystem::permissions(target,
                                 usual & ~(perms::owner_write | perms::group_write | perms::others_write));
    const Answer answer = Month({"--json", "nil", "--header", "TXT_Email=alt@b.example"});
    std::filesystem::permissions(target, usual);
    EXPECT_EQ(answer.status, cli::kRefused);
    EXPECT_EQ(answer.out, "");
    EXPECT_THAT(answer.err, HasSubstr("0000123456_AN_20263.xml (acces refuzat sau protejat la scriere)"));
  }
  EXPECT_EQ(Content(file), before);
  std::filesystem::remove_all(folder);
  EXPECT_THAT(Month({"nil"}).err, HasSubstr("(directorul C:\\Declarix\\System\\DeclaratiiXML\\ nu exista)"));
}

TEST_F(BadInput, SaysWhatIsWrongWithACommandLine) {
  const std::string company = "RO123456";
  const struct {
    std::vector<std::string> arguments;
    const char* reason;
  } kCases[] = {
      {{"nimic"}, "Nu exista comanda nimic\n"},
      {{"template"}, "Lipseste comanda\n"},
      {{"lines", "--company", company}, "Lipseste --tip\n"},
      {{"tariff", "find", "1", "--year", "2026", "--month", "13"},
       "--month: se asteapta un numar intre 1 si 12, nu 13\n"},
      {{"tariff", "find", "1", "--year", "2026", "--month"}, "--month: lipseste valoarea\n"},
      {{"company", "list", "--answer", "poate"},
       "--answer: se asteapta una din valorile yes, no, nu poate\n"},
      {{"company", "list", "--lipsa"}, "Argumente necunoscute: --lipsa\n"},
      {{"rate", "add", "--company", company, "--moneda", "EUR", "--date", "2026-03-04", "--curs", "-1"},
       "--curs: se asteapta un numar mai mare ca 0, nu -1\n"},
      {{"sql", "--file", "a.mdb", "--db", "common", "SELECT 1"}, "--file nu se poate da impreuna cu --db\n"},
      {{"company", "add", "--cod-fiscal", "RO2", "--nume", "a\xff"}, "argumentul nu este text UTF-8\n"},
  };
  for (const auto& [arguments, reason] : kCases) {
    const Answer answer = Run(arguments);
    EXPECT_EQ(answer.status, cli::kUsage) << reason;
    EXPECT_THAT(answer.err, HasSubstr(reason));
    EXPECT_EQ(answer.out, "");
  }
  EXPECT_EQ(Run({"template", "show", "--company", company, "--name", "O'Neil"}).err,
            "EROARE: Numele machetei nu poate contine apostrof: O'Neil\n");
  EXPECT_THAT(Run({"template", "show", "--company", company, "--name", ""}).err, HasSubstr("Nume Macheta"));
}

}  // namespace
