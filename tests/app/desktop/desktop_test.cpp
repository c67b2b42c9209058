#include "app/desktop/desktop.h"

#include <gmock/gmock.h>

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QTimer>
#include <set>

#include "app/desktop/about.h"
#include "app/desktop/main_window.h"
#include "app/screens/settings.h"
#include "companies/screens/company.h"
#include "companies/screens/company_list.h"
#include "companies/screens/defaults.h"
#include "declarations/screens/editor_screen.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"
#include "tariff/screens/advanced_search.h"
#include "ui/colour_field.h"

namespace {

using platform::Icon;
using test_support::Installation;
using test_support::ScreenFixture;
using ui::Q;

/// The desktop without the splash's wait; the end of the process is noted.
class TestDesktop : public app::Desktop {
 public:
  explicit TestDesktop(session::Session& session, std::string program_folder = "Z:\\nowhere\\")
      : Desktop(session, std::move(program_folder)) {}
  void Pause(std::chrono::milliseconds) override {}
  void EndProcess() override { ended = true; }
  bool OpenDocument(std::string_view path) override {
    opened.emplace_back(path);
    return true;
  }
  bool ended = false;
  std::vector<std::string> opened;
};

/// The visible screen of that class among the program's windows; null where there is none.
template <typename Screen>
Screen* Shown() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* screen = qobject_cast<Screen*>(window);
    if (screen != nullptr && screen->isVisible()) return screen;
  }
  return nullptr;
}

void Settle() {
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QApplication::processEvents();
}

TEST(Desktop, TheFirstCompanyIsCreatedGivenDefaultsAndOpened) {
  Installation at(Installation::State::kCommonOpen);
  at.session.common.Execute("DELETE FROM Firme");
  at.session.common.Close();
  at.prompter().ExpectInfo(
      "Pentru o utilizare mai usoara va recomandam sa consultati manualul de utilizare. In meniu -> Ajutor");
  TestDesktop desktop(at.session);
  ASSERT_TRUE(desktop.Start());
  auto* company = Shown<companies::Frm_Firma>();
  ASSERT_NE(company, nullptr);
  EXPECT_EQ(company->windowTitle(), "Introducere date firma noua");

  QApplication::setActiveWindow(company);
  ScreenFixture::Type(*company, "Cod_Fiscal", "RO 77 88");
  ScreenFixture::Type(*company, "Nume_Firma", "NOUA");
  at.prompter().ExpectInfo("FIRMA A FOST CREATA", "MESAJ");
  ScreenFixture::Click(*company, "CmdOK");
  Settle();
  auto* defaults = Shown<companies::Frm_Firma_Default>();
  ASSERT_NE(defaults, nullptr);
  EXPECT_EQ(desktop.main_window(), nullptr);
  ScreenFixture::Click(*defaults, "CmdOK");
  Settle();
  ASSERT_NE(desktop.main_window(), nullptr);
  EXPECT_TRUE(desktop.main_window()->isVisible());
  EXPECT_TRUE(desktop.main_window()->windowTitle().contains("NOUA"));
  EXPECT_FALSE(at.session.creation_mode);
  EXPECT_EQ(at.session.common.Scalar("SELECT I_Incoterms FROM Intrastat_Default WHERE Cod_Fiscal='RO7788'"),
            store::Value("CPT"));
}

TEST(Desktop, LeavingTheFirstScreenEndsTheProgram) {
  Installation at(Installation::State::kCompanyOpen);
  at.AddCompany("RO9", "A DOUA");
  at.session.common.Close();
  TestDesktop desktop(at.session);
  ASSERT_TRUE(desktop.Start());
  auto* selection = Shown<companies::Frm_Firme>();
  ASSERT_NE(selection, nullptr);
  selection->close();
  Settle();
  EXPECT_TRUE(desktop.ended);
  EXPECT_FALSE(at.session.common.is_open());
}

TEST(Desktop, ACompanyIsChosenAndTheOnlyOneOpensByItself) {
  Installation at(Installation::State::kCompanyOpen);
  {
    at.session.common.Close();
    at.session.company.Close();
    TestDesktop alone(at.session);
    ASSERT_TRUE(alone.Start());
    ASSERT_NE(alone.main_window(), nullptr);
    EXPECT_EQ(alone.main_window()->windowTitle(), "Declarix - PROBA SRL");
  }
  at.AddCompany("RO9", "A DOUA");
  TestDesktop desktop(at.session);
  ASSERT_TRUE(desktop.Start());
  auto* selection = Shown<companies::Frm_Firme>();
  ASSERT_NE(selection, nullptr);
  ScreenFixture::Type(*selection, "TxtCautare", "proba");
  ScreenFixture::Click(*selection, "CmdOK");
  Settle();
  ASSERT_NE(desktop.main_window(), nullptr);
  EXPECT_EQ(desktop.main_window()->windowTitle(), "Declarix - PROBA SRL");
  EXPECT_EQ(at.session.current.Cod_Fiscal, "RO123456");
}

TEST(Desktop, ASecondInstanceIsRefusedUntilTheFirstEnds) {
  Installation at(Installation::State::kClosed);
  auto first = std::make_unique<TestDesktop>(at.session);
  EXPECT_FALSE(first->OtherInstanceRuns());
  TestDesktop second(at.session);
  EXPECT_TRUE(second.OtherInstanceRuns());
  first.reset();
  EXPECT_FALSE(second.OtherInstanceRuns());
}

struct OpenDesktop {
  OpenDesktop() {
    at.session.publisher.NumeFirma = "Editura de probe";
    at.session.publisher.Telefon = "0264 000 000";
    at.session.publisher.Email = "ajutor@declarix.example";
    desktop.OpenScreen(app::Screen::kMainWindow);
  }
  app::MainWindow& window() { return *desktop.main_window(); }

  Installation at;
  TestDesktop desktop{at.session};
};

TEST(MainWindow, HasEveryCommandAndEachOneDoesSomething) {
  OpenDesktop open;
  for (const app::Command& command : app::CommandTable()) {
    QAction* action = open.window().action(command.key);
    if (command.caption.empty()) {  // separators and the key without action
      EXPECT_EQ(action, nullptr) << command.key;
      continue;
    }
    ASSERT_NE(action, nullptr) << command.key;
    EXPECT_EQ(action->text(), Q(command.caption));
    EXPECT_TRUE(open.desktop.commands().IsBuilt(command)) << command.key;
    EXPECT_TRUE(action->isEnabled()) << command.key;
  }

  // Alt and a letter must mean one thing: the menu bar and the buttons share the window.
  std::set<QString> letters;
  for (const QAction* action : open.window().menuBar()->actions()) {
    EXPECT_TRUE(letters.insert(QKeySequence::mnemonic(action->text()).toString()).second)
        << action->text().toStdString();
  }
  for (const QPushButton* button : open.window().findChildren<QPushButton*>()) {
    EXPECT_TRUE(letters.insert(QKeySequence::mnemonic(button->text()).toString()).second)
        << button->text().toStdString();
  }
}

TEST(MainWindow, TheSearchBoxLeadsToADeclaredLine) {
  OpenDesktop open;
  test_support::AddLine(open.at.session, "I", 2026, 3, {{"Descriere", "Furtun"}});
  test_support::AddLine(open.at.session, "I", 2026, 3, {{"Descriere", "Pompa de vid"}});
  open.desktop.QuickSearch("pompa de vid");
  auto* search = open.window().findChild<tariff::Frm_Cautare_Tarif*>();
  ASSERT_NE(search, nullptr);
  QString title, line;
  QTimer::singleShot(0, [&] {
    // The editor goes to its line once it is open.
    QTimer::singleShot(0, [&] {
      auto* editor = qobject_cast<declarations::Frm_INTRASTAT*>(QApplication::activeModalWidget());
      ASSERT_NE(editor, nullptr);
      title = editor->windowTitle();
      ui::Grid& lines = *editor->grid();
      line = lines.grid_model()->TextAt(lines.current_row(), lines.grid_model()->ColumnOf("Descriere"));
      editor->reject();
    });
  });
  ScreenFixture::Click(*search, "CmdDeclaratie");
  EXPECT_TRUE(title.startsWith("INTRASTAT :  ACHIZITIE 2026 / 3 ")) << title.toStdString();
  EXPECT_EQ(line, "Pompa de vid");
}

TEST(MainWindow, ShowsCompanyAndPublisher) {
  OpenDesktop open;
  EXPECT_EQ(open.window().windowTitle(), "Declarix - PROBA SRL");
  EXPECT_EQ(ScreenFixture::Get<QLabel>(open.window(), "LblEditor").text(), "Editura de probe");
  EXPECT_EQ(ScreenFixture::Get<QLabel>(open.window(), "LblTelefon").text(), "Telefon : 0264 000 000");
  const QString email = ScreenFixture::Get<QLabel>(open.window(), "LblEmail").text();
  EXPECT_TRUE(email.startsWith("Email : "));
  EXPECT_TRUE(email.contains("mailto:ajutor@declarix.example?subject="));
  EXPECT_TRUE(open.window().menuBar()->styleSheet().contains("#ffffc0"));  // 12648447 is 0xC0FFFF: blue first
}

TEST(MainWindow, TakesTheMenuColourAsSoonAsSettingsAreConfirmed) {
  OpenDesktop open;
  QTimer::singleShot(0, [] {
    auto* settings = Shown<app::Frm_Setari>();
    ASSERT_NE(settings, nullptr);
    ScreenFixture::Get<ui::ColourField>(*settings, "Culori_Meniu_Color").SetColour(0x00336699);
    ScreenFixture::Click(*settings, "CmdOK");
  });
  open.window().action("SETARI_GENERALE")->trigger();
  EXPECT_TRUE(open.window().menuBar()->styleSheet().contains("#996633"));
}

TEST(MainWindow, ClosingByAnyRouteRunsTheExitActionOnce) {
  for (const bool by_menu : {false, true}) {
    OpenDesktop open;
    if (by_menu) {
      open.window().action("IESIRE")->trigger();
    } else {
      open.window().close();
    }
    EXPECT_TRUE(open.desktop.ended);
    EXPECT_FALSE(open.at.session.company.is_open());
    EXPECT_FALSE(open.at.session.common.is_open());
  }
}

TEST(MainWindow, HelpIsSaidToBeMissingOrOpened) {
  OpenDesktop open;
  open.at.prompter().ExpectError("Manualul nu poate fi deschis: Z:\\nowhere\\Help\\Manual.Pdf");
  open.window().action("AJUTOR_AJUTOR")->trigger();
  EXPECT_THAT(open.desktop.opened, testing::IsEmpty());
}

TEST(Desktop, TheManualOpensAtTheScreenOrAtItsBeginning) {
  Installation at(Installation::State::kCommonOpen);
  platform::Files& files = at.files();
  files.CreateFolders("C:\\Program\\Help\\ecrane\\");
  for (const char* page : {"Manual.Html", "ecrane\\Frm_Tarif.html"}) {
    files.Replace(std::string("C:\\Program\\Help\\") + page, "<html/>");
  }
  TestDesktop desktop(at.session, "C:\\Program\\");
  desktop.context().open_manual("Frm_Tarif");
  desktop.context().open_manual("Frm_Noua");
  EXPECT_THAT(desktop.opened, testing::ElementsAre("C:\\Program\\Help\\ecrane\\Frm_Tarif.html",
                                                   "C:\\Program\\Help\\Manual.Html"));
}

}  // namespace
