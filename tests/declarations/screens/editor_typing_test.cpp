#include <QAbstractItemView>
#include <QClipboard>
#include <QCompleter>

#include "declarations/screens/editor_fixture.h"
#include "support/qt/mnemonics.h"
#include "ui/code_box.h"
#include "ui/totals_row.h"

namespace declarations {
namespace {

using platform::Icon;
using testing::IsEmpty;

TEST_F(EditorScreenTest, TwentyLinesAreTypedFromTheKeyboard) {
  calc::AddRate(on_.at.session, "EUR", {platform::ToSerial({2026, 2, 27, 0, 0, 0})}, 5.1, 1);
  on_.at.session.defaults.I_Incoterms = "DAP";
  Open();
  EXPECT_EQ(screen_->windowTitle(), "INTRASTAT :  ACHIZITIE 2026 / 3 -   INREGISTRARI : 0");
  EXPECT_EQ(At(), "0 DataReceptiei");
  // Date, description, code, quantity, unit, value, currency; then origin, consignment, mass and quantity.
  const std::vector<const char*> first = {"5", "Laptop", "84713000", "4", "p/st", "100,5", "EUR"};
  for (int line = 0; line < 20; ++line) {
    for (const char* text : first) {
      Keys(text);
      Key(Qt::Key_Return);
    }
    ASSERT_EQ(At(), fmt::format("{} Curs_Schimb", line));
    for (int i = 0; i < 3; ++i) Key(Qt::Key_Tab);
    Keys("CN");
    Key(Qt::Key_Tab);
    Keys("DE");
    Key(Qt::Key_Return);
    Key(Qt::Key_Return);
    Keys("8");
    Key(Qt::Key_Return);
    // To the line's end and on to the next.
    for (int i = 0; i < 20 && screen_->grid()->current_row() == line; ++i) Key(Qt::Key_Return);
    ASSERT_EQ(At(), fmt::format("{} DataReceptiei", line + 1));
    EXPECT_EQ(Count(), line + 1);
  }
  EXPECT_EQ(
      Stored("SELECT DISTINCT TIP, Cod_Fiscal, Anul, Luna, Descriere, Cod_NC, Cantitate, UM, Valoare_Valuta, "
             "Moneda, Curs_Schimb, Val_Fiscala, Val_Stat, Tara_Orig, Tara_Exp, Tara_Dest, Net, Net_Unitar, "
             "Cod_UMS, Incoterms FROM Intrastat"),
      "I|RO123456|2026|3|Laptop|84713000|4|p/st|100.5|EUR|5.1|512.55|512.55|CN|DE|RO|8|2|p/st|DAP");
  EXPECT_EQ(screen_->windowTitle(), "INTRASTAT :  ACHIZITIE 2026 / 3 -   INREGISTRARI : 20");
  EXPECT_EQ(Get<QLabel>("Total").text(), "  Total Inregistrari :  20");
  EXPECT_EQ(screen_->totals_row()->text(Column("Val_Fiscala")), "10.251,00");
  EXPECT_EQ(screen_->totals_row()->text(Column("Net")), "160,00");
}

TEST_F(EditorScreenTest, UnknownCodesStayAndAreMarkedAtOnce) {
  AddLine();
  Open();
  GoToCell(0, "Tara_Exp");
  Keys("QQ");
  Key(Qt::Key_Return);
  EXPECT_EQ(At(), "0 Tara_Dest");
  ui::GridModel& model = *screen_->grid()->grid_model();
  EXPECT_EQ(model.ProblemAt(0, Column("Tara_Exp")), "Tara Exp: codul 'QQ' nu exista");
  EXPECT_EQ(model.ProblemAt(0, -1), "Tara Exp: codul 'QQ' nu exista");
  EXPECT_EQ(model.ProblemAt(0, Column("Tara_Orig")), "");
  EXPECT_EQ(model.data(model.index(0, Column("Tara_Orig")), Qt::ToolTipRole).toString(), "China");
  Key(Qt::Key_Down);
  EXPECT_EQ(Stored("SELECT Tara_Exp FROM Intrastat"), "QQ");
}

TEST_F(EditorScreenTest, CodesAreFoundByAWordAndTakenWithOneEnter) {
  AddLine({{"Moneda", ""}});
  Open();
  GoToCell(0, "Moneda");
  Keys("dolar amer");
  auto* box = screen_->grid()->findChild<ui::CodeBox*>();
  ASSERT_NE(box, nullptr);
  QAbstractItemView* popup = box->completer()->popup();
  ASSERT_TRUE(popup->isVisible());
  QTest::keyClick(popup, Qt::Key_Down);
  QTest::keyClick(popup, Qt::Key_Return);
  EXPECT_EQ(At(), "0 Curs_Schimb");
  Key(Qt::Key_Down);
  EXPECT_EQ(Stored("SELECT Moneda FROM Intrastat"), "USD");
  // Earlier descriptions are offered too, and a free text is not held up by them.
  GoToCell(1, "Descriere");
  on_.at.Run("INSERT INTO Denumiri_Intrastat (Denumire) VALUES ('Surub M8')");
  Keys("Surub");
  Key(Qt::Key_Return);
  EXPECT_EQ(At(), "1 Cod_NC");
}

TEST_F(EditorScreenTest, ARefusedFirstCellBeginsNoLine) {
  Open();
  Keys("32");
  on_.at.prompter().ExpectError("Coloana Data receptiei: '32' nu este o data (zz.ll.aaaa)");
  Key(Qt::Key_Return);
  EXPECT_EQ(At(), "0 DataReceptiei");
  EXPECT_FALSE(screen_->editor().pending());
  EXPECT_EQ(screen_->grid()->grid_model()->Rows(), 1);
  Keys("3");
  Key(Qt::Key_Escape);
  EXPECT_TRUE(screen_->isVisible());
  screen_->close();
  EXPECT_EQ(Count(), 0);
}

TEST_F(EditorScreenTest, KeysCopyDuplicateAddAndDelete) {
  const auto first = AddLine({{"Descriere", "Unu"}, {"Factura_Numar", "F1"}});
  AddLine({{"Descriere", "Doi"}, {"Factura_Numar", "F2"}});
  Open();
  GoToCell(1, "Factura_Numar");
  Keys("x");
  Key(Qt::Key_QuoteDbl, Qt::ControlModifier);
  Key(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(At(), "2 Factura_Numar");
  EXPECT_EQ(Count("Descriere='Doi' AND Factura_Numar='F1'"), 2);
  Key(Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(At(), "3 DataReceptiei");
  screen_->grid()->SelectRow(0);
  screen_->grid()->selectionModel()->select(screen_->grid()->grid_model()->index(1, 5),
                                            QItemSelectionModel::Select);
  on_.at.prompter().ExpectQuestion("Stergeti 2 linii din declaratia ACHIZITIE 2026 / 3 ?", "RASPUNDETI",
                                   Icon::kQuestion, false);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Count(), 3);
  screen_->grid()->SelectRow(0);
  on_.at.prompter().ExpectQuestion("Stergeti linia selectata din declaratia ACHIZITIE 2026 / 3 ?",
                                   "RASPUNDETI", Icon::kQuestion, true);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Count(fmt::format("Record_ID={}", first)), 0);
  EXPECT_EQ(screen_->windowTitle(), "INTRASTAT :  ACHIZITIE 2026 / 3 -   INREGISTRARI : 2");
}

TEST_F(EditorScreenTest, ABlockIsPastedAndItsRefusedCellsAreNamedOnce) {
  AddLine();
  Open();
  GoToCell(1, "DataReceptiei");
  QApplication::clipboard()->setText("2\tPiesa A\t84713000\t\t10\n3\tPiesa B\t84713000\t\tzece\n");
  on_.at.prompter().ExpectError(
      "S-au preluat 7 celule. Nu s-au preluat 1 :\r\n\r\nLinia 3 - Coloana Cantitate: 'zece' nu este un "
      "numar");
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Count(), 3);
  EXPECT_EQ(Stored("SELECT Cantitate, Cod_UMS FROM Intrastat WHERE Descriere='Piesa A'"), "10|p/st");
  EXPECT_EQ(Status(), "S-au lipit 7 celule, linii adaugate : 2");
  EXPECT_EQ(screen_->grid()->grid_model()->Rows(), 4);
}

TEST_F(EditorScreenTest, AFailingStoreKeepsTheLineAndTheUserDecides) {
  AddLine();
  AddLine();
  Open();
  GoToCell(0, "Descriere");
  Keys("Schimbat");
  Key(Qt::Key_Return);
  store::Connection other(session::StoreEnvironment(on_.at.session));
  other.Open(store::JetString(on_.at.session.current.database_path));
  other.Execute("CREATE TABLE Alta (a LONG)");
  other.Begin();
  other.Execute("INSERT INTO Alta (a) VALUES (1)");
  on_.at.prompter().AcceptAnything(false);
  Key(Qt::Key_Down);
  EXPECT_EQ(At(), "0 Cod_NC");
  EXPECT_EQ(screen_->editor().TextAt(0, Column("Descriere")), "Schimbat");
  screen_->close();
  EXPECT_TRUE(screen_->isVisible());
  other.Rollback();
  Key(Qt::Key_Down);
  EXPECT_EQ(Count("Descriere='Schimbat'"), 1);
}

TEST_F(EditorScreenTest, ALineIsSavedAfterAWhileWithoutTyping) {
  AddLine();
  Open();
  GoToCell(0, "Descriere");
  Keys("Acum");
  Key(Qt::Key_Return);
  Keys("8471");  // what is being typed meanwhile stays
  EXPECT_TRUE(QTest::qWaitFor([&] { return !screen_->editor().pending(); }, 4000));
  EXPECT_EQ(Count("Descriere='Acum'"), 1);
  EXPECT_EQ(screen_->grid()->findChild<ui::CodeBox*>()->code(), "8471");
}

TEST_F(EditorScreenTest, ViewingWritesNothing) {
  AddLine();
  Open(true);
  EXPECT_EQ(screen_->windowTitle(),
            "INTRASTAT :  ACHIZITIE 2026 / 3 -   INREGISTRARI : 1   (numai vizualizare)");
  for (const char* name :
       {"CmdLinieNoua", "CmdDuplica", "CmdSterge", "Cmd_Verifica", "Cmd_Fisier", "CmdRecalcValStat",
        "CmdRedistribuireTransport", "CmdRedistribuireNet", "CmdActualizare"}) {
    EXPECT_FALSE(Get<QPushButton>(name).isEnabled()) << name;
  }
  EXPECT_EQ(screen_->grid()->grid_model()->Rows(), 1);
  Keys("x");
  for (const auto key : {Qt::Key_F9, Qt::Key_Delete, Qt::Key_F2}) Key(key);
  Key(Qt::Key_D, Qt::ControlModifier);
  QApplication::clipboard()->setText("1\t2");
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_TRUE(Get<QLineEdit>("TXT_Email").isReadOnly());
  screen_->close();
  EXPECT_EQ(Count("Descriere IS NULL"), 1);
  EXPECT_FALSE(on_.at.files().Exists(test_support::Installation::InSystem("Default\\Frm_INTRASTAT.txt")));
}

TEST_F(EditorScreenTest, MnemonicsAreUnique) {
  Open();
  Get<QPushButton>("CmdActualizare").setChecked(true);
  EXPECT_THAT(test_support::SharedMnemonics(*screen_), IsEmpty());
  EXPECT_LE(screen_->minimumSizeHint().width(), 1024);
}

}  // namespace
}  // namespace declarations
