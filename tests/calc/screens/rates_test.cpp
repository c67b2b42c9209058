#include "calc/screens/rates.h"

#include <QLabel>
#include <QTimer>

#include "calc/rates.h"
#include "calc/screens/rate_form.h"
#include "support/qt/screen_fixture.h"

namespace calc {
namespace {

using test_support::ScreenFixture;

store::Date Day(const char* text) { return *store::ParseDate(text); }

/// The clock stands at 16 March 2026; numbers have the decimal comma on screen.
struct RatesScreenTest : testing::Test {
  RatesScreenTest() {
    AddRate(at.at.session, "EUR", Day("2026-03-12"), 4.9701, 1);
    AddRate(at.at.session, "EUR", Day("2026-03-13"), 4.9751, 1);
    AddRate(at.at.session, "HUF", Day("2026-03-13"), 1.27, 100);
    screen = std::make_unique<Frm_Curs_Manual>(
        at.context, [this] { update(); }, nullptr, [this] { return path; });
    screen->show();
    screen->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(screen.get()));
  }
  std::string List() {
    QString text;
    const ui::GridModel& model = *screen->grid()->grid_model();
    for (int row = 0; row < model.Rows(); ++row) {
      for (const int column : {0, 2, 3, 4}) text += (column > 0 ? " " : "") + model.TextAt(row, column);
      text += '\n';
    }
    return text.toStdString();
  }
  std::string Status() { return at.Get<QLabel>(*screen, "Stare").text().toStdString(); }
  /// Runs `drive` in the form that `open` brings up.
  void InForm(const std::function<void()>& open, const std::function<void(QWidget&)>& drive) {
    bool driven = false;
    QTimer::singleShot(0, [&] {
      QWidget* form = QApplication::activeModalWidget();
      ASSERT_NE(form, nullptr);
      EXPECT_TRUE(QTest::qWaitForWindowActive(form));
      drive(*form);
      driven = true;
      if (form->isVisible()) form->close();
    });
    open();
    EXPECT_TRUE(driven);
  }
  void Click(const char* name) { ScreenFixture::Click(*screen, name); }

  ScreenFixture at;
  std::string path;
  std::function<void()> update = [] {};
  std::unique_ptr<Frm_Curs_Manual> screen;
};

TEST_F(RatesScreenTest, FiltersByCurrencyAndDays) {
  EXPECT_EQ(List(), "EUR 13.03.2026 4,9751 1\nHUF 13.03.2026 1,2700 100\nEUR 12.03.2026 4,9701 1\n");
  ScreenFixture::Type(*screen, "Combo_Moneda", "eur");
  EXPECT_EQ(List(), "EUR 13.03.2026 4,9751 1\nEUR 12.03.2026 4,9701 1\n");
  ScreenFixture::Type(*screen, "TxtDeLa", "13.3.26");
  QTest::keyClick(&at.Get<QLineEdit>(*screen, "TxtDeLa"), Qt::Key_Return);
  EXPECT_EQ(List(), "EUR 13.03.2026 4,9751 1\n");
  ScreenFixture::Type(*screen, "TxtPanaLa", "31.02.2026");
  QTest::keyClick(&at.Get<QLineEdit>(*screen, "TxtPanaLa"), Qt::Key_Return);
  EXPECT_EQ(Status(), "\"31.02.2026\" nu este o data; nu se tine seama de ea");
  EXPECT_EQ(List(), "EUR 13.03.2026 4,9751 1\n");
  Click("CmdToate");
  EXPECT_EQ(at.Get<QLabel>(*screen, "Total").text(), "  Total Inregistrari :  3");
}

TEST_F(RatesScreenTest, AddsAndChangesByKeyboard) {
  screen->grid()->SelectRow(1, 0);
  InForm([&] { QTest::keyClick(screen->grid(), Qt::Key_N, Qt::ControlModifier); },
         [&](QWidget& form) {
           EXPECT_EQ(at.Get<ui::CodeBox>(form, "Cod_Moneda").code(), "HUF");
           EXPECT_EQ(at.Get<QLineEdit>(form, "Multiplicator").text(), "100");
           EXPECT_EQ(at.Get<QLineEdit>(form, "Valid_La_Data").text(), "16.03.2026");
           ScreenFixture::Type(form, "Cod_Moneda", "usd");
           ScreenFixture::Type(form, "Curs_Schimb", "4,51236");
           EXPECT_EQ(at.Get<ui::CodeBox>(form, "Cod_Moneda").code(), "USD");
           EXPECT_EQ(at.Get<QLineEdit>(form, "Multiplicator").text(), "1") << "the dollar's own";
           ScreenFixture::Type(form, "Valid_La_Data", "14.13.2026");
           at.at.prompter().ExpectError("Data cursului lipseste sau nu este o data (zz.ll.aaaa)");
           ScreenFixture::Click(form, "CmdOK");
           EXPECT_EQ(form.focusWidget()->objectName(), "Valid_La_Data");
           ScreenFixture::Type(form, "Valid_La_Data", "14.03.2026");
           ScreenFixture::Click(form, "CmdOK");
         });
  EXPECT_TRUE(List().starts_with("USD 14.03.2026 4,5124 1\n"));
  EXPECT_EQ(screen->grid()->current_row(), 0);
  EXPECT_EQ(Status(), "Salvat: USD din 14.03.2026");

  InForm([&] { QTest::keyClick(screen->grid(), Qt::Key_F2); },
         [&](QWidget& form) {
           EXPECT_EQ(at.Get<QLineEdit>(form, "Curs_Schimb").text(), "4,5124");
           ScreenFixture::Type(form, "Curs_Schimb", "4.6");
           ScreenFixture::Click(form, "CmdOK");
         });
  EXPECT_TRUE(List().starts_with("USD 14.03.2026 4,6000 1\n"));
}

TEST_F(RatesScreenTest, DeletesTheRowsChosen) {
  screen->grid()->SelectRow(0, 0);
  at.at.prompter().ExpectQuestion("Stergeti cursul EUR din 13.03.2026 ?", "RASPUNDETI",
                                  platform::Icon::kQuestion, true);
  QTest::keyClick(screen->grid(), Qt::Key_Delete);
  EXPECT_EQ(List(), "HUF 13.03.2026 1,2700 100\nEUR 12.03.2026 4,9701 1\n");
  at.at.prompter().ExpectQuestion("Stergeti 2 cursuri: HUF din 13.03.2026, EUR din 12.03.2026 ?",
                                  "RASPUNDETI", platform::Icon::kQuestion, true);
  screen->grid()->selectAll();
  Click("CmdSterge");
  EXPECT_EQ(List(), "");
  Click("CmdSterge");  // nothing is chosen, nothing is asked
  EXPECT_EQ(Status(), "Alegeti intai un curs din lista");
}

TEST_F(RatesScreenTest, TakesTheBanksFile) {
  Click("CmdFisierBNR");  // given up
  EXPECT_EQ(Status(), "");
  path = "C:\\Descarcari\\curs.xml";
  at.at.files().CreateFolders("C:\\Descarcari\\");
  at.at.files().Replace(path, "<html/>");
  at.at.prompter().ExpectError(
      "Fisierul nu a fost preluat: C:\\Descarcari\\curs.xml\r\nnu este un fisier de cursuri al BNR "
      "(elementul "
      "radacina este html)");
  Click("CmdFisierBNR");
  at.at.files().Replace(path,
                        "<b:DataSet xmlns:b=\"https://www.bnr.ro/xsd\"><b:Body><b:Cube date=\"2026-03-16\">"
                        "<b:Rate currency=\"EUR\">4.98</b:Rate><b:Rate "
                        "currency=\"USD\">?</b:Rate></b:Cube></b:Body></b:DataSet>");
  at.at.prompter().ExpectMessage(
      "Fisier BNR: 1 curs nou, 0 inlocuite, 0 neschimbate; ultima zi 16.03.2026.\r\n\r\nNu s-au preluat "
      "(1):\r\nUSD din 16.03.2026: cursul \"?\" nu este un numar\r\n",
      "Fisier BNR", platform::Icon::kExclamation);
  Click("CmdFisierBNR");
  EXPECT_TRUE(List().starts_with("EUR 16.03.2026 4,9800 1\n"));
  EXPECT_EQ(Status(), "Fisier BNR: 1 curs nou, 0 inlocuite, 0 neschimbate; ultima zi 16.03.2026");
}

TEST_F(RatesScreenTest, ShowsWhatTheAutomaticUpdateBrought) {
  Click("CmdActualizare");
  EXPECT_EQ(Status(), "Actualizare automata: nu au venit cursuri noi");
  update = [this] { AddRate(at.at.session, "EUR", Day("2026-03-16"), 4.98, 1); };
  Click("CmdActualizare");
  EXPECT_EQ(Status(), "Actualizare automata: cursuri noi 1");
  EXPECT_EQ(screen->grid()->grid_model()->Rows(), 4);
}

}  // namespace
}  // namespace calc
