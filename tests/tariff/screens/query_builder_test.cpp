#include "tariff/screens/query_builder.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QTimer>

#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"

namespace {

using tariff::Frm_Interogari;
using tariff::QueryColumnsModel;
using test_support::ScreenFixture;

struct QueryScreen : ScreenFixture {
  explicit QueryScreen(int lines = 3) {
    for (int i = 0; i < lines; ++i) {
      test_support::AddLine(at.session, "I", 2026, 3,
                            {{"Cod_NC", i % 2 == 0 ? "84713000" : "73269098"}, {"Net", 10.25 * (i + 1)}});
    }
    screen = std::make_unique<Frm_Interogari>(context, nullptr);
    screen->show();
    screen->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(screen.get()));
  }

  ui::Grid& columns() { return Get<ui::Grid>(*screen, "Grid_Coloane"); }
  QPlainTextEdit& sql() { return Get<QPlainTextEdit>(*screen, "TXT_SQL"); }
  std::string count() { return Get<QLabel>(*screen, "Total").text().toStdString(); }
  int RowOf(const char* column) {
    return columns().grid_model()->FindText(0, QString::fromLatin1(column), 0);
  }
  bool Enter(const char* column, QueryColumnsModel::Place place, const QString& text) {
    columns().SelectRow(RowOf(column), place);
    return columns().Store(RowOf(column), place, text);
  }
  void RunText(const QString& text) {
    sql().setPlainText(text);
    Click(*screen, "CmdRuleaza");
  }

  std::unique_ptr<Frm_Interogari> screen;
};

TEST(QueryBuilderScreen, BuildsRunsAndCounts) {
  QueryScreen on;
  on.at.prompter().ExpectMessage("Bifati cel putin o coloana la \"Afiseaza Coloana\"", "Mesaj",
                                 platform::Icon::kExclamation);
  on.Click(*on.screen, "CmdAfiseaza");
  on.columns().setFocus();
  on.columns().SelectRow(on.RowOf("Cod_NC"), QueryColumnsModel::kShown);
  QTest::keyClick(&on.columns(), Qt::Key_Space);
  ASSERT_TRUE(on.Enter("Net", QueryColumnsModel::kOperator, "mai mare"));
  on.at.prompter().ExpectMessage("Pentru coloana: Net NU ESTE SETATA VALOAREA DE CAUTARE", "Mesaj",
                                 platform::Icon::kExclamation);
  QTest::keyClick(on.screen.get(), Qt::Key_F5);
  EXPECT_EQ(on.columns().currentIndex().column(), QueryColumnsModel::kValue);
  EXPECT_EQ(on.columns().current_row(), on.RowOf("Net"));

  QLocale::setDefault(QLocale(QLocale::Romanian, QLocale::Romania));
  ASSERT_TRUE(on.Enter("Net", QueryColumnsModel::kValue, "12,5"));
  QLocale::setDefault(QLocale::c());
  QTest::keyClick(on.screen.get(), Qt::Key_F5);
  EXPECT_EQ(on.sql().toPlainText().toStdString(),
            "SELECT Intrastat.[Cod_NC] FROM Intrastat WHERE [Net] > 12.5");
  EXPECT_EQ(on.count(), "Inregistrari: 2");
  ASSERT_NE(on.screen->grid()->grid_model(), nullptr);
  EXPECT_EQ(on.screen->grid()->grid_model()->columns()[0].caption, "Cod_NC");

  // F5 takes the value that is still being typed.
  on.columns().SelectRow(on.RowOf("Net"), QueryColumnsModel::kValue);
  QTest::keyClick(&on.columns(), '2');
  QTest::keyClick(QApplication::focusWidget(), '5');
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F5);
  EXPECT_EQ(on.count(), "Inregistrari: 1");

  on.at.prompter().ExpectMessage("Selectati o valoare din lista", "Mesaj", platform::Icon::kExclamation);
  EXPECT_FALSE(on.Enter("Net", QueryColumnsModel::kOperator, "cam ca"));
  EXPECT_THAT(test_support::SharedMnemonics(*on.screen), testing::IsEmpty());
}

TEST(QueryBuilderScreen, OffersTheOperatorsOfTheColumnAndRemembersEachTable) {
  QueryScreen on;
  on.columns().SelectRow(on.RowOf("Net"), QueryColumnsModel::kOperator);
  QTest::keyClick(&on.columns(), Qt::Key_F2);
  auto* box = on.columns().findChild<ui::CodeBox*>();
  ASSERT_NE(box, nullptr);
  EXPECT_NE(box->list().Find("mai mare"), nullptr);
  EXPECT_EQ(box->list().Find("mai mare")->description, ">");
  EXPECT_EQ(box->list().Find("contine (%text%)"), nullptr);
  QTest::keyClick(box, Qt::Key_Escape);

  on.Enter("TIP", QueryColumnsModel::kOperator, "egal");
  on.Enter("TIP", QueryColumnsModel::kValue, "I");
  EXPECT_FALSE(on.columns().grid_model()->ProblemAt(on.RowOf("TIP"), QueryColumnsModel::kValue).isEmpty());
  auto& tables = ScreenFixture::Get<ui::Grid>(*on.screen, "Grid_Tabele");
  const int before = tables.current_row();
  tables.SelectRow(tables.grid_model()->FindText(0, "Scripts", 0));
  EXPECT_EQ(on.columns().grid_model()->Rows(), 2);
  tables.SelectRow(before);
  EXPECT_EQ(on.columns().grid_model()->TextAt(on.RowOf("TIP"), QueryColumnsModel::kValue), "I");
}

TEST(QueryBuilderScreen, ErrorsPointAtTheirPlace) {
  QueryScreen on;
  on.RunText("SELECT Cod_NC FROM Intrastat");
  EXPECT_EQ(on.count(), "Inregistrari: 3");
  on.at.prompter().ExpectStarting("", "EROARE", platform::Icon::kCritical);
  on.RunText(QString::fromUtf8("SELECT 'ș', Gresit FROM Intrastat"));
  EXPECT_EQ(on.sql().textCursor().position(), 12);
  EXPECT_EQ(on.sql().extraSelections().front().cursor.selectedText(), "Gresit");
  EXPECT_EQ(on.count(), "Inregistrari: 3");  // the rows of before stay
  on.at.prompter().ExpectError("Nu este permis sa rulati comanda :SET");
  on.RunText("SELECT * FROM Intrastat WHERE Descriere = 'Offset'");
  EXPECT_EQ(on.sql().extraSelections().front().cursor.selectedText(), "set");

  // A condition of the grid that fails is marked there.
  on.Click(*on.screen, "CmdToate");
  on.Enter("Tara_Orig", QueryColumnsModel::kOperator, "egal");
  on.Enter("Tara_Orig", QueryColumnsModel::kValue, "DE");
  on.at.prompter().ExpectStarting("", "EROARE", platform::Icon::kCritical);
  on.Click(*on.screen, "CmdAfiseaza");
  EXPECT_FALSE(on.columns().grid_model()->ProblemAt(on.RowOf("Tara_Orig"), -1).isEmpty());
  EXPECT_EQ(on.columns().current_row(), on.RowOf("Tara_Orig"));
  on.at.prompter().ExpectError("Nu este permis sa rulati comanda :SET");
  on.Enter("Tara_Orig", QueryColumnsModel::kValue, "'set'");
  on.Click(*on.screen, "CmdAfiseaza");
  on.Enter("Tara_Orig", QueryColumnsModel::kValue, "'DE'");
  EXPECT_TRUE(on.columns().grid_model()->ProblemAt(on.RowOf("Tara_Orig"), -1).isEmpty());
}

TEST(QueryBuilderScreen, SavesLoadsReplacesAndDeletesScripts) {
  QueryScreen on;
  on.at.prompter().ExpectError("Script SQL  -  Obligatoriu de completat !");
  on.Click(*on.screen, "CmdSalveaza");
  on.sql().setPlainText("SELECT Net FROM Intrastat");
  QTimer::singleShot(0, [] {
    auto* form = qobject_cast<tariff::Frm_Script*>(QApplication::activeModalWidget());
    ASSERT_NE(form, nullptr);
    ScreenFixture::Type(*form, "Script_Name", "Lista lui 'Ion'");
    QTest::keyClick(form, Qt::Key_Return);
    ScreenFixture::Click(*form, "CmdOK");
  });
  on.Click(*on.screen, "CmdSalveaza");
  EXPECT_EQ(on.at.Get("SELECT Script_SQL FROM Scripts WHERE Script_Name='Lista lui ''Ion'''").ToText(),
            "SELECT Net FROM Intrastat");

  on.sql().setPlainText("SELECT 1");
  const char* question = "Exista deja scriptul : lista lui 'ion'. Il inlocuiti cu comanda de acum ?";
  on.at.prompter().ExpectQuestion(question, "RASPUNDETI", platform::Icon::kQuestion, false);
  EXPECT_FALSE(on.screen->SaveAs("lista lui 'ion'"));
  auto& scripts = ScreenFixture::Get<QComboBox>(*on.screen, "Combo_Script");
  QTest::keyClick(&scripts, Qt::Key_Down);
  Q_EMIT scripts.textActivated(scripts.currentText());
  EXPECT_EQ(on.sql().toPlainText(), "SELECT Net FROM Intrastat");
  on.sql().undo();
  EXPECT_EQ(on.sql().toPlainText(), "SELECT 1");
  on.at.prompter().ExpectQuestion(question, "RASPUNDETI", platform::Icon::kQuestion, true);
  EXPECT_TRUE(on.screen->SaveAs("lista lui 'ion'"));
  EXPECT_EQ(on.at.Get("SELECT Script_SQL FROM Scripts").ToText(), "SELECT 1");

  on.at.prompter().ExpectQuestion("Stergeti scriptul : Lista lui 'Ion' ?", "RASPUNDETI",
                                  platform::Icon::kQuestion, true);
  on.Click(*on.screen, "CmdStergeScript");
  EXPECT_EQ(scripts.count(), 0);
  EXPECT_EQ(on.at.Get("SELECT COUNT(*) FROM Scripts").ToInteger(), 0);
}

TEST(QueryBuilderScreen, ExportsAtMost65535RowsAndKeepsTheStatementsOrder) {
  QueryScreen on(256);
  on.Click(*on.screen, "CmdExport");  // nothing to export: nothing happens
  on.RunText("SELECT a.Net FROM Intrastat AS a, Intrastat AS b");
  EXPECT_EQ(on.count(), "Inregistrari: 65536");
  on.at.prompter().ExpectMessage("Prea multe inregistrari, nu se poate exporta", "Mesaj",
                                 platform::Icon::kExclamation);
  on.Click(*on.screen, "CmdExport");

  on.RunText("SELECT TOP 65535 a.Net FROM Intrastat AS a, Intrastat AS b");
  EXPECT_EQ(on.count(), "Inregistrari: 65535");
  EXPECT_TRUE(on.screen->SaveSpreadsheet("C:\\Declarix\\rezultat.xlsx"));

  on.screen->grid()->horizontalHeader()->setSortIndicator(0, Qt::DescendingOrder);
  on.RunText("SELECT Net FROM Intrastat ORDER BY Net");
  EXPECT_EQ(on.screen->grid()->grid_model()->ValueAt(0, 0).ToDouble(), 10.25);
}

}  // namespace
