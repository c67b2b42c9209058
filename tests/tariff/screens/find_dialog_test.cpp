#include "tariff/screens/find_dialog.h"

#include <QLabel>
#include <QRadioButton>
#include <QTimer>

#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "tariff/screens/browser.h"
#include "tariff/screens/reference_list.h"

namespace {

using test_support::ScreenFixture;

constexpr char kNoRow[] = "Nici o inregistrare NU corespunde criteriului de cautare";

/// Opens a list's find dialog, types and confirms; `after` sees a dialog that stays open.
void Find(QWidget& list, int option, const QString& text, const std::function<void(QWidget&)>& after = {}) {
  QTimer::singleShot(0, [&] {
    QWidget* dialog = QApplication::activeModalWidget();
    ASSERT_NE(dialog, nullptr);
    ScreenFixture::Get<QRadioButton>(*dialog, fmt::format("Optiune{}", option).c_str()).click();
    ScreenFixture::Type(*dialog, "TxtExpresie", text);
    ScreenFixture::Click(*dialog, "CmdOK");
    if (after) {
      after(*dialog);
      dialog->close();
    }
  });
  ScreenFixture::Click(list, "CmdExpresie");
}

TEST(FindDialog, NarrowsTheBrowserAgainAndAgain) {
  ScreenFixture at;
  tariff::Frm_Tarif screen(at.context, *tariff::FindLevel(8));
  screen.show();
  const auto count = [&](const char* condition) {
    return at.at.session.tariff
        .Query(std::string("SELECT HS8_COD FROM HS_8 WHERE AN_END IS NULL AND ") + condition)
        .record_count();
  };
  screen.grid()->SelectRow(0, 0);
  Find(screen, 2, QStringLiteral("847"));
  EXPECT_EQ(screen.grid()->grid_model()->Rows(), count("HS8_COD LIKE '847%'"));
  EXPECT_EQ(at.Get<QLabel>(screen, "Stare").text(), "COD 8: \"847\" (incepe cu expresia)");
  Find(screen, 4, QStringLiteral("13-90"));
  EXPECT_EQ(screen.grid()->grid_model()->Rows(),
            count("HS8_COD LIKE '847%' AND (HS8_COD LIKE '%13%' OR HS8_COD LIKE '%90%')"));
  ScreenFixture::Click(screen, "CmdToate");
  EXPECT_EQ(screen.grid()->grid_model()->Rows(), count("HS8_COD IS NOT NULL"));
}

TEST(FindDialog, NothingFoundShowsTheEmptyResultAndAQuoteLeavesTheList) {
  ScreenFixture at;
  tariff::Frm_Tabel screen(at.context, {"SELECT TR1_COD + '.'+ TR2_COD, TR_DESC FROM Tranzactii ORDER BY "
                                        "TR1_COD, TR2_COD",
                                        "Natura Tranzactiei -",
                                        {"COD", "DESCRIERE "}});
  screen.show();
  const int all = screen.grid()->grid_model()->Rows();
  at.at.prompter().ExpectStarting("", "EROARE", platform::Icon::kCritical);
  Find(screen, 3, QStringLiteral("d'or"), [](QWidget& dialog) { EXPECT_TRUE(dialog.isVisible()); });
  EXPECT_EQ(screen.grid()->grid_model()->Rows(), all);
  screen.grid()->SelectRow(0, 0);
  Find(screen, 1, QStringLiteral("1.1"));
  EXPECT_EQ(screen.grid()->grid_model()->Rows(), 1);
  at.at.prompter().ExpectMessage(kNoRow, "Mesaj", platform::Icon::kCritical);
  Find(screen, 3, QStringLiteral("zzz"));
  EXPECT_EQ(screen.grid()->grid_model()->Rows(), 0);
  ScreenFixture::Click(screen, "CmdToate");
  EXPECT_EQ(screen.grid()->grid_model()->Rows(), all);
}

TEST(FindDialog, ShowsAHintForEachOptionAndNeedsAnExpression) {
  ScreenFixture at;
  tariff::Frm_Cautare dialog(
      at.context,
      {&at.at.session.common, "SELECT Tara_COD FROM Tari", {{"Tara_COD", QStringLiteral("COD")}}, 0});
  dialog.show();
  EXPECT_EQ(dialog.focusWidget()->objectName(), "TxtExpresie");
  EXPECT_EQ(dialog.focusWidget()->nextInFocusChain()->objectName(), "Combo_Coloana");
  EXPECT_EQ(at.Get<QLabel>(dialog, "LblIndicatie").text(),
            "Returneaza inregistrarile care CONTIN cu expresia de cautat");
  at.Get<QRadioButton>(dialog, "Optiune4").click();
  EXPECT_EQ(at.Get<QLabel>(dialog, "LblIndicatie").text(),
            "Aparate + electice  returneaza inregistrarile care CONTIN Aparate SI electrice\n"
            "Aparate - electice   returneaza inregistrarile care CONTIN Aparate SAU electrice");
  at.at.prompter().ExpectError("Expresia de cautat  -  Obligatoriu de completat !");
  ScreenFixture::Click(dialog, "CmdOK");
  EXPECT_TRUE(dialog.isVisible());
  ScreenFixture::Type(dialog, "TxtExpresie", "R+O");
  QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.rows()[0].ToText(), "RO");
  EXPECT_EQ(test_support::SharedMnemonics(dialog), std::vector<std::string>());
}

}  // namespace
