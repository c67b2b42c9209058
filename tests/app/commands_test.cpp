#include "app/commands.h"

#include <gmock/gmock.h>

#include <set>

#include "app/program_commands.h"
#include "app/recorded_surroundings.h"
#include "support/installation.h"

namespace {

using app::Command;
using app::CommandKind;
using test_support::Installation;
using testing::ElementsAre;

int HeadingCount(const Command& command) {
  return static_cast<int>(std::count_if(command.headings.begin(), command.headings.end(),
                                        [](std::string_view heading) { return !heading.empty(); }));
}

TEST(CommandTable, EveryKeyStandsOnceBelowASubMenu) {
  std::set<std::string_view> keys;
  for (const Command& command : app::CommandTable()) {
    EXPECT_TRUE(keys.insert(command.key).second) << command.key;
    const bool silent = command.kind == CommandKind::kSeparator || command.kind == CommandKind::kNoAction;
    EXPECT_EQ(command.caption.empty(), silent) << command.key;
    if (command.parent.empty()) continue;
    const Command* parent = app::FindCommand(command.parent);
    ASSERT_NE(parent, nullptr) << command.key;
    EXPECT_EQ(parent->kind, CommandKind::kSubMenu) << command.key;
  }
  EXPECT_EQ(keys.size(), 39u);
}

TEST(CommandTable, ListsRunAndHaveAHeadingPerColumn) {
  Installation at;
  for (const Command& command : app::CommandTable()) {
    const bool viewer = command.kind == CommandKind::kViewer;
    const bool list = viewer || command.kind == CommandKind::kTariff;
    EXPECT_EQ(list, !command.query.empty()) << command.key;
    if (!list) continue;
    store::Connection& connection = viewer ? at.session.common : at.session.tariff;
    const store::Recordset rows = connection.Query(command.query);
    EXPECT_EQ(rows.field_count(), HeadingCount(command)) << command.key;
    EXPECT_GT(rows.record_count(), 0) << command.key;
    EXPECT_TRUE(command.title.ends_with(" -")) << command.key;
  }
}

TEST(Commands, EveryKeyHasExactlyOneKindOfHandler) {
  Installation at;
  app::Commands commands(at.session);
  std::vector<std::string> ran;
  const auto note = [&ran](const char* who) {
    return [&ran, who](const Command& command) {
      ran.push_back(std::string(who) + " " + std::string(command.key));
    };
  };
  const std::map<CommandKind, std::string> expected = {{CommandKind::kAction, "action "},
                                                       {CommandKind::kViewer, "viewer "},
                                                       {CommandKind::kTariff, "tariff "}};
  for (const Command& command : app::CommandTable()) {
    EXPECT_EQ(commands.IsBuilt(command), expected.count(command.kind) == 0) << command.key;
    commands.ExecuteCommand(command.key);  // nothing is there yet
    if (command.kind == CommandKind::kAction) {
      commands.Handle(command.key, note("action"));
      EXPECT_THROW(commands.Handle(command.key, note("second")), std::logic_error) << command.key;
    } else {
      EXPECT_THROW(commands.Handle(command.key, note("own")), std::logic_error) << command.key;
    }
  }
  EXPECT_TRUE(ran.empty());
  commands.HandleViewers(note("viewer"));
  commands.HandleTariff(note("tariff"));
  for (const Command& command : app::CommandTable()) {
    ran.clear();
    commands.ExecuteCommand(command.key);
    std::vector<std::string> wanted;
    if (const auto found = expected.find(command.kind); found != expected.end()) {
      wanted.push_back(found->second + std::string(command.key));
    }
    EXPECT_EQ(ran, wanted) << command.key;
    EXPECT_TRUE(commands.IsBuilt(command)) << command.key;
  }
  ran.clear();
  for (const char* unknown : {"", "intrastat", "INTRASTAT ", "ALTCEVA"}) commands.ExecuteCommand(unknown);
  EXPECT_TRUE(ran.empty());
}

TEST(Commands, TariffListsOpenTheTariffOfTheMonth) {
  Installation at(Installation::State::kCommonOpen);
  app::Commands commands(at.session);
  int opened = 0;
  commands.HandleTariff([&](const Command& command) {
    ++opened;
    EXPECT_GT(at.session.tariff.Query(command.query).record_count(), 0);
  });
  commands.ExecuteCommand("TARIF_CAPITOLE");
  EXPECT_EQ(opened, 1);

  at.session.tariff.Close();
  at.session.common.Execute("DELETE FROM InsCodeVersions");
  at.prompter().ExpectError("Nu se poate identifica tabela tarif vamal");
  commands.ExecuteCommand("TARIF_CAPITOLE");
  EXPECT_EQ(opened, 1);
}

class ProgramCommandsTest : public testing::Test {
 protected:
  static constexpr char kFolder[] = "C:\\Program Files\\Declarix\\";
  void Put(std::string_view file) {
    const std::string path = kFolder + std::string(file);
    at.files().CreateFolders(platform::FolderOf(path));
    at.files().Replace(path, "x");
  }

  ProgramCommandsTest() { program.Bind(commands); }

  Installation at;
  test_support::RecordedSurroundings around{at.machine.drives};
  app::Commands commands{at.session};
  app::ProgramCommands program{at.session, around, kFolder};
};

TEST_F(ProgramCommandsTest, ExitReleasesAndCompactsOnce) {
  const std::string filler(200, 'x');
  store::Transaction transaction(at.session.company);
  at.session.company.Execute("CREATE TABLE Umplutura (T TEXT(250))");
  for (int i = 0; i < 8000; ++i) {
    at.session.company.Execute("INSERT INTO Umplutura (T) VALUES ('" + filler + "')");
  }
  transaction.Commit();
  at.prompter().ExpectInfo("Se va compacta baza de date: \r\n" + at.InDataBase("RO123456.mdb") +
                           "\r\nAstepati va rog .....");
  around.on_close = [this] { program.Exit(); };  // as the main window does when it closes
  commands.ExecuteCommand("IESIRE");
  EXPECT_THAT(around.calls, ElementsAre("no screens", "end"));
  EXPECT_FALSE(at.session.common.is_open() || at.session.company.is_open() || at.session.tariff.is_open());
}

TEST_F(ProgramCommandsTest, UpdateFromTheMenuEndsThroughTheExitAction) {
  commands.ExecuteCommand("SETARI_UPDATE");
  EXPECT_THAT(around.calls, ElementsAre("ask version"));

  around.calls.clear();
  around.version = "3.0.0";
  Put("UpdateWEB\\UpdateWEB.exe");
  at.prompter().ExpectQuestion(
      "Exista o versiune noua pentru download.\r\nDoriti descarcarea si instalarea noii versiuni ?",
      "RASPUNDETI", platform::Icon::kExclamation, true);
  commands.ExecuteCommand("SETARI_UPDATE");
  EXPECT_THAT(around.calls,
              ElementsAre("ask version",
                          "run \"C:\\Program Files\\Declarix\\UpdateWEB\\UpdateWEB.exe \"|3.0.0_update.exe",
                          "no screens", "end"));
}

TEST_F(ProgramCommandsTest, ManualOpensWhicheverFileIsThere) {
  at.prompter().ExpectError("Manualul nu poate fi deschis: C:\\Program Files\\Declarix\\Help\\Manual.Pdf");
  commands.ExecuteCommand("AJUTOR_AJUTOR");
  Put("Help\\Manual.Html");
  commands.ExecuteCommand("AJUTOR_AJUTOR");
  Put("Help\\Manual.Pdf");
  commands.ExecuteCommand("AJUTOR_AJUTOR");
  EXPECT_THAT(around.calls, ElementsAre("open C:\\Program Files\\Declarix\\Help\\Manual.Html",
                                        "open C:\\Program Files\\Declarix\\Help\\Manual.Pdf"));
}

}  // namespace
