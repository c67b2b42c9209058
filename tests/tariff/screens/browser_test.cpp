#include "tariff/screens/browser.h"

#include <QLabel>
#include <QTextBrowser>

#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"
#include "tariff/screens/advanced_search.h"
#include "tariff/screens/notes_pane.h"

namespace {

using tariff::Frm_Tarif;
using test_support::ScreenFixture;

const tariff::Level& LevelOf(int number) { return *tariff::FindLevel(number); }

std::string Cell(Frm_Tarif& screen, int row, int column) {
  return screen.grid()->grid_model()->TextAt(row, column).toStdString();
}
void GoTo(Frm_Tarif& screen, const char* code) {
  const int row = screen.grid()->grid_model()->FindText(0, QString::fromLatin1(code), 0);
  ASSERT_GE(row, 0) << code;
  screen.grid()->SelectRow(row, 0);
}

TEST(Browser, EveryLevelOpensWithItsTexts) {
  ScreenFixture at;
  for (const tariff::Level& level : tariff::kLevels) {
    SCOPED_TRACE(level.number);
    Frm_Tarif screen(at.context, level);
    screen.show();
    EXPECT_EQ(screen.windowTitle().toStdString(), level.title);
    auto& link = at.Get<QPushButton>(screen, "CmdLegatura");
    EXPECT_EQ(link.text().toStdString(), level.link);
    EXPECT_EQ(link.isVisible(), level.number != 8);
    const auto count = at.at.session.tariff.Query(level.query).record_count();
    EXPECT_GT(count, 0);
    EXPECT_EQ(at.Get<QLabel>(screen, "Total").text().toStdString(),
              fmt::format("Total Inregistrari :  {}", count));
    for (const int column : screen.grid()->visible_columns()) {
      EXPECT_EQ(
          screen.grid()->grid_model()->columns()[static_cast<std::size_t>(column)].caption.toStdString(),
          level.headings[static_cast<std::size_t>(column)]);
    }
    EXPECT_EQ(test_support::SharedMnemonics(screen), std::vector<std::string>());
  }
}

TEST(Browser, DrillsDownByEnterAndComesBackByBackspace) {
  ScreenFixture at;
  Frm_Tarif screen(at.context, LevelOf(1));
  screen.show();
  QApplication::setActiveWindow(&screen);  // keys of commands need it
  for (const char* code : {"16", "84", "8471", "847130"}) {
    GoTo(screen, code);
    QTest::keyClick(screen.grid(), Qt::Key_Return);
  }
  EXPECT_EQ(screen.windowTitle(), "Cod Vamal -");
  EXPECT_EQ(Cell(screen, 0, 0), "84713000");
  EXPECT_EQ(Cell(screen, 0, 4), "2026");
  EXPECT_EQ(at.Get<QLabel>(screen, "Stare").text(), "In: 16 / 84 / 8471 / 847130");
  QTest::keyClick(screen.grid(), Qt::Key_Return);
  EXPECT_EQ(screen.windowTitle(), "Cod Vamal -");

  for (int i = 0; i < 2; ++i) QTest::keyClick(screen.grid(), Qt::Key_Backspace);
  EXPECT_EQ(screen.windowTitle(), "GRUPE -");
  EXPECT_EQ(Cell(screen, screen.grid()->current_row(), 0), "8471");
  EXPECT_TRUE(Cell(screen, 0, 0).starts_with("84"));
  ScreenFixture::Click(screen, "CmdToate");
  EXPECT_EQ(Cell(screen, 0, 0), "0101");
  EXPECT_EQ(Cell(screen, screen.grid()->current_row(), 0), "8471");
}

TEST(Browser, GoesUpFromALevelThatTheMenuOpened) {
  ScreenFixture at;
  Frm_Tarif screen(at.context, LevelOf(2));
  screen.show();
  QApplication::setActiveWindow(&screen);
  GoTo(screen, "84");
  QTest::keyClick(screen.grid(), Qt::Key_Backspace);
  EXPECT_EQ(screen.windowTitle(), "SECTIUNI -");
  EXPECT_EQ(Cell(screen, screen.grid()->current_row(), 0), "16");
  EXPECT_FALSE(at.Get<QPushButton>(screen, "CmdNivelSus").isEnabled());
}

TEST(Browser, NotesOfSectionsAndChaptersHaveAPane) {
  ScreenFixture at;
  at.at.session.tariff.Execute("UPDATE HS_1 SET HS_1_NOTE='Nota sectiunii' WHERE HS1_COD='16'");
  at.at.session.tariff.Execute("UPDATE HS_2 SET HS2_NOTE='Nota capitolului' WHERE HS2_COD='84'");
  Frm_Tarif screen(at.context, LevelOf(1));
  screen.show();
  auto& note = at.Get<QTextBrowser>(screen, "Note");
  GoTo(screen, "16");
  EXPECT_FALSE(note.isVisible());  // the menu's statement does not read them
  ScreenFixture::Click(screen, "CmdToate");
  EXPECT_EQ(note.toPlainText(), "Nota sectiunii");
  EXPECT_TRUE(note.isVisible());
  GoTo(screen, "01");
  EXPECT_FALSE(note.isVisible());
  GoTo(screen, "16");
  ScreenFixture::Click(screen, "CmdLegatura");
  EXPECT_EQ(note.toPlainText(), "Nota capitolului");
}

TEST(Browser, ColumnsOfNumbersRefuseTheSearch) {
  ScreenFixture at;
  Frm_Tarif screen(at.context, LevelOf(8));
  screen.show();
  QApplication::setActiveWindow(&screen);
  screen.grid()->SelectRow(0, 4);
  at.at.prompter().ExpectMessage(
      "In aceasta coloana cautarea nu se poate realiza, rezultate obtinute inexacte", "Mesaj",
      platform::Icon::kExclamation);
  QTest::keyClick(screen.grid(), Qt::Key_F, Qt::ControlModifier);
  screen.grid()->SelectRow(0, 0);
  QTest::keyClicks(screen.grid(), "84713");
  EXPECT_EQ(at.Get<QLabel>(screen, "Caut").text(), "Caut in coloana: COD 8");
  EXPECT_EQ(Cell(screen, screen.grid()->current_row(), 0), "84713000");
  QTest::keyClick(screen.grid(), Qt::Key_Backspace);  // takes a digit back, not the level
  EXPECT_EQ(at.Get<QLabel>(screen, "Cautare").text(), "In curs de cautare : 8471");
}

TEST(AdvancedSearch, ShowsBothListsAndTheNotes) {
  ScreenFixture at;
  auto* screen = tariff::OpenQuickSearch(at.context, QStringLiteral("84713000"), nullptr);
  screen->setAttribute(Qt::WA_DeleteOnClose, false);
  const std::unique_ptr<tariff::Frm_Cautare_Tarif> owned(screen);
  EXPECT_EQ(at.Get<QLabel>(*screen, "StareTarif").text(),
            "1 Inregistrari gasite in tariful vamal pentru expresia : 84713000");
  EXPECT_EQ(at.Get<QLabel>(*screen, "StareDeclaratii").text(),
            "0 Inregistrari gasite in declaratiile intrastat pentru expresia : 84713000");
  auto& notes = at.Get<tariff::NotesPane>(*screen, "Note");
  EXPECT_TRUE(notes.toPlainText().startsWith("847130000000\n")) << notes.toPlainText().toStdString();
  EXPECT_TRUE(notes.rtf().starts_with("{\\rtf1"));

  // A quote makes the query fail; both lists stay.
  at.at.prompter().ExpectStarting("", "EROARE", platform::Icon::kCritical);
  ScreenFixture::Type(*screen, "TxtExpresie", QStringLiteral("d'or"));
  QTest::keyClick(&at.Get<QLineEdit>(*screen, "TxtExpresie"), Qt::Key_Return);
  EXPECT_EQ(at.Get<ui::Grid>(*screen, "GridTarif").grid_model()->Rows(), 1);

  ScreenFixture::Type(*screen, "TxtExpresie", QStringLiteral("9999999x"));
  QTest::keyClick(&at.Get<QLineEdit>(*screen, "TxtExpresie"), Qt::Key_Return);
  EXPECT_EQ(at.Get<ui::Grid>(*screen, "GridTarif").grid_model()->Rows(), 0);
  EXPECT_TRUE(notes.rtf().empty());
  EXPECT_FALSE(at.Get<QPushButton>(*screen, "CmdTiparireTarif").isEnabled());
  EXPECT_EQ(test_support::SharedMnemonics(*screen), std::vector<std::string>());
}

TEST(AdvancedSearch, PrintsEachListAndOpensTheFoundLine) {
  ScreenFixture at;
  test_support::AddLine(at.at.session, "I", 2026, 2, {{"Descriere", "Pompa de apa"}});
  test_support::AddLine(at.at.session, "O", 2026, 3, {{"Descriere", "Pompa de vid"}});
  std::vector<std::string> printed;
  at.context.preview_list = [&](const ui::GridContent& content, QWidget*) {
    printed.push_back(fmt::format("{}: {} x {}", content.title.toStdString(), content.model->Rows(),
                                  content.columns.size()));
  };
  std::int64_t opened = 0;
  at.context.open_line = [&](std::int64_t Record_ID, QWidget*) {
    opened = Record_ID;
    at.at.Run("DELETE FROM Intrastat WHERE Descriere='Pompa de vid'");
  };
  tariff::Frm_Cautare_Tarif screen(at.context);
  screen.show();
  QApplication::setActiveWindow(&screen);
  screen.SearchFor(QStringLiteral("84713000"));
  auto& lines = at.Get<ui::Grid>(screen, "GridDeclaratii");
  QTest::keyClick(&screen, Qt::Key_P, Qt::ControlModifier);
  lines.setFocus();
  QTest::keyClick(&screen, Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(printed, (std::vector<std::string>{"Tarif vamal - 84713000: 1 x 5",
                                               "Declaratii intrastat - 84713000: 2 x 7"}));
  lines.SelectRow(1, 6);
  QTest::keyClick(&lines, Qt::Key_Return);
  EXPECT_EQ(opened, at.at.Get("SELECT Record_ID FROM Intrastat WHERE luna=2").ToInteger());
  EXPECT_EQ(lines.grid_model()->Rows(), 1);  // read again
  EXPECT_EQ(lines.current_row(), 0);

  at.at.Run("UPDATE Intrastat SET Descriere='Altceva'");
  at.at.prompter().ExpectInfo("Linia nu mai exista asa cum a fost gasita. Cautati din nou.", "Mesaj");
  ScreenFixture::Click(screen, "CmdDeclaratie");
}

TEST(QuickSearch, BringsTheOpenScreenForward) {
  ScreenFixture at;
  QWidget desk;
  auto* first = tariff::OpenQuickSearch(at.context, QStringLiteral("cai"), &desk);
  EXPECT_EQ(tariff::OpenQuickSearch(at.context, QStringLiteral("84713000"), &desk), first);
  EXPECT_EQ(at.Get<QLineEdit>(*first, "TxtExpresie").text(), "84713000");
}

}  // namespace
