#include <QAction>
#include <QCheckBox>
#include <QToolButton>
#include <QTreeWidget>

#include "declarations/screens/editor_fixture.h"
#include "declarations/screens/findings.h"
#include "ui/code_box.h"
#include "ui/totals_row.h"

namespace declarations {
namespace {

using platform::Icon;
using test_support::ScreenFixture;

/// Chooses by what the list shows, as the user does.
void Choose(QComboBox& box, const char* text) {
  const int at = box.findText(QString::fromLatin1(text));
  ASSERT_GE(at, 0) << text;
  box.setCurrentIndex(at);
  Q_EMIT box.activated(at);
}

TEST_F(EditorScreenTest, FiltersAndSetsAColumn) {
  for (int i = 0; i < 3; ++i) AddLine({{"Factura_Numar", i == 0 ? "4711" : "4712"}});
  Open();
  Choose(Get<QComboBox>("CmbColoanaWhere"), "Factura Numar");
  EXPECT_EQ(Get<QLineEdit>("TXT_ColoanaWhere_Fel").text(), "T");
  Choose(Get<QComboBox>("CmbSemn"), "egal");
  Get<QLineEdit>("Txt_ValueUpdateWhere").setText("4712");
  Click("CmdFilter");
  EXPECT_EQ(screen_->windowTitle(), "INTRASTAT :  ACHIZITIE 2026 / 3 -   INREGISTRARI : 2");
  EXPECT_EQ(screen_->totals_row()->text(Column("Val_Fiscala")), "300,00");

  Get<QPushButton>("CmdActualizare").click();
  on_.at.prompter().ExpectInfo("Coloana Descriere_NC NU SE POATE ACTUALIZA");
  Choose(Get<QComboBox>("CmbColoanaUpdate"), "Descriere Cod vamal");
  EXPECT_EQ(Get<QComboBox>("CmbColoanaUpdate").currentText(), "");
  on_.at.prompter().ExpectError("Coloana Actulizata  -  Obligatoriu de completat !");
  on_.at.prompter().ExpectError("Valoare Nou  -  Obligatoriu de completat !");
  Click("CmdExecuteUpdate");
  Choose(Get<QComboBox>("CmbColoanaUpdate"), "Nat Tranz");
  EXPECT_EQ(Get<QLineEdit>("TXT_ColoanaUpdate_Fel").text(), "T");
  Get<QLineEdit>("Txt_ValueUpdate").setText("2.1");
  on_.at.prompter().ExpectInfo("Inregistrari modificate : 2");
  Click("CmdExecuteUpdate");
  EXPECT_EQ(Count("Nat_Tranz='2.1' AND Factura_Numar='4712'"), 2);
  EXPECT_EQ(screen_->editor().TextAt(0, Column("Nat_Tranz")), "2.1");

  Get<QLineEdit>("Txt_ValueUpdate").setText("O'Neil");
  on_.at.prompter().AcceptAnything(true);
  const std::size_t told = on_.at.prompter().seen().size();
  Click("CmdExecuteUpdate");
  EXPECT_EQ(on_.at.prompter().seen().size(), told + 1);
  EXPECT_EQ(Count("Nat_Tranz='2.1'"), 2);
  Click("CmdTot");
  EXPECT_EQ(screen_->windowTitle(), "INTRASTAT :  ACHIZITIE 2026 / 3 -   INREGISTRARI : 3");
}

TEST_F(EditorScreenTest, AnUpdateOfAllLinesIsAskedFor) {
  AddLine();
  Open();
  Get<QPushButton>("CmdActualizare").click();
  Choose(Get<QComboBox>("CmbColoanaUpdate"), "Mod transp");
  Get<QLineEdit>("Txt_ValueUpdate").setText("1");
  on_.at.prompter().ExpectQuestion(
      "NU ati selectat nici o conditie, se vor actualiza toate inregistrarile. Continuati ?", "RASPUNDETI",
      Icon::kQuestion, false);
  Click("CmdExecuteUpdate");
  EXPECT_EQ(Count("Mod_Transp='3'"), 1);
}

TEST_F(EditorScreenTest, TheCheckerLeadsToEachCell) {
  AddLine();
  const auto wrong = AddLine({{"Incoterms", "QQQ"}, {"Factura_Numar", "9"}});
  Open();
  Key(Qt::Key_F9);
  EXPECT_EQ(Get<QPushButton>("CmdErori").text(), "&Erori 1");
  EXPECT_TRUE(screen_->problems_screen().isVisible());
  EXPECT_FALSE(screen_->grid()->grid_model()->ProblemAt(1, Column("Incoterms")).isEmpty());
  GoToCell(0, "Descriere");
  screen_->problems_screen().Next();
  EXPECT_EQ(At(), "1 Incoterms");
  // A filter that hides the line goes; a line that is gone is told.
  Choose(Get<QComboBox>("CmbColoanaWhere"), "Cond livrare");
  Choose(Get<QComboBox>("CmbSemn"), "egal");
  Get<QLineEdit>("Txt_ValueUpdateWhere").setText("CPT");
  Click("CmdFilter");
  EXPECT_EQ(screen_->editor().row_count(), 1);
  EXPECT_TRUE(screen_->GoTo(wrong, "Incoterms"));
  EXPECT_EQ(At(), "1 Incoterms");
  screen_->grid()->setFocus();
  Keys("CPT");
  on_.at.prompter().ExpectInfo("Declaratie Intrastat - OK. Nu sunt probleme");
  Key(Qt::Key_F9);
  EXPECT_FALSE(screen_->problems_screen().isVisible());
  EXPECT_EQ(Stored(fmt::format("SELECT Incoterms, Probleme FROM Intrastat WHERE Record_ID={}", wrong)),
            "CPT|0");
  EXPECT_FALSE(screen_->GoTo(wrong + 100, "Incoterms"));
}

TEST_F(EditorScreenTest, ExportReviewsWritesAndOffersTheFile) {
  AddLine({{"Val_Fiscala", 1234.5}});
  on_.at.session.settings.DirectorSalvare = "C:\\Declarix\\";
  Open();
  Get<QComboBox>("Combo_Tip").setCurrentText("C-Corectie");
  const std::string path = "C:\\Declarix\\0000123456_AR_20263.xml";
  EXPECT_EQ(Get<QLineEdit>("TXT_File_XML").text(), "0000123456_AR_20263.xml");
  Get<QLineEdit>("TXT_NumeCompanie").setText("A & B");
  on_.at.prompter().AcceptAnything(true);
  // The first finding is about the contact: it leads to the field, and nothing is written.
  OnModal("Frm_Intrastat_Observatii", [](QWidget& window) {
    QTest::keyClick(&ScreenFixture::Get<QTreeWidget>(window, "Lista"), Qt::Key_Return);
  });
  Key(Qt::Key_E, Qt::ControlModifier);
  EXPECT_FALSE(on_.at.files().Exists(path));
  ASSERT_NE(screen_->focusWidget(), nullptr);
  EXPECT_TRUE(screen_->focusWidget()->objectName().startsWith("TXT_"))
      << screen_->focusWidget()->objectName().toStdString();

  OnModal("Frm_Intrastat_Observatii", [this](QWidget& window) {
    OnModal("Frm_Fisier_Optiuni", [](QWidget&) {});
    ScreenFixture::Click(window, "CmdContinua");
  });
  Click("Cmd_Fisier");
  const std::string text = on_.at.files().Read(path);
  EXPECT_THAT(text, testing::HasSubstr("<InsRevisedArrival SchemaVersion=\"1.0\""));
  EXPECT_THAT(text, testing::HasSubstr("<FirmName>A - B</FirmName>"));
  EXPECT_THAT(text, testing::HasSubstr("<InvoiceValue>1235</InvoiceValue>"));
  EXPECT_EQ(Get<QLineEdit>("TXT_NumeCompanie").text(), "A - B");

  on_.at.Run("UPDATE Intrastat SET Incoterms='QQQ'");
  on_.at.files().Remove(path);
  Click("Cmd_Fisier");
  EXPECT_FALSE(on_.at.files().Exists(path));
  EXPECT_TRUE(screen_->problems_screen().isVisible());
}

TEST_F(EditorScreenTest, TheAgentsFieldsAreKeptAndTownsFollowTheCounty) {
  Open(false, {}, true);
  EXPECT_TRUE(Get<QCheckBox>("Check_Dec_Tert").isChecked());
  Get<QToolButton>("CmdAntet").click();
  auto& phone = Get<QLineEdit>("TXT_Tel");
  phone.setFocus();
  QTest::keyClick(&phone, Qt::Key_Return);
  EXPECT_EQ(screen_->focusWidget()->objectName(), "TXT_Fax");
  EXPECT_EQ(Status(), "Faxul persoanei de contact");
  auto& county = Get<ui::CodeBox>("TXT_Judet_Dec");
  auto& town = Get<ui::CodeBox>("TXT_Oras_Dec");
  const std::size_t all = town.list().lines.size();
  const ui::CodeList::Line somewhere = town.list().lines.front();
  const std::string of =
      Stored("SELECT City_RefCode FROM Orase WHERE City_Code='" + ui::Utf8(somewhere.code) + "'");
  county.SetCode(ui::Q(of));
  Q_EMIT county.CodeChanged();
  EXPECT_LT(town.list().lines.size(), all);
  town.SetCode(somewhere.code);
  Q_EMIT town.CodeChanged();
  Get<QLineEdit>("TXT_CUI_Dec").setText("RO77");
  EXPECT_TRUE(Get<QLabel>("LblAntet").text().contains("declarant"));
  screen_->close();
  Open();
  EXPECT_EQ(screen_->editor().request().header.TXT_CUI_Dec, "RO77");
  EXPECT_EQ(screen_->editor().request().header.TXT_Judet_Dec, of);
  EXPECT_EQ(screen_->editor().request().header.TXT_Oras_Dec, ui::Utf8(somewhere.code));
  // Another county takes its town along.
  for (const auto& line : Get<ui::CodeBox>("TXT_Judet_Dec").list().lines) {
    if (ui::Utf8(line.code) == of) continue;
    Get<ui::CodeBox>("TXT_Judet_Dec").SetCode(line.code);
    break;
  }
  Q_EMIT Get<ui::CodeBox>("TXT_Judet_Dec").CodeChanged();
  EXPECT_EQ(screen_->editor().request().header.TXT_Oras_Dec, "");
  // A text that is no name would be filed as a code.
  auto& typed = *Get<ui::CodeBox>("TXT_Judet_Dec").lineEdit();
  const auto* mark = typed.findChild<QAction*>("Necunoscut");
  ASSERT_NE(mark, nullptr);
  EXPECT_FALSE(mark->isVisible());
  typed.setText("Judetul meu");
  Q_EMIT typed.editingFinished();
  EXPECT_TRUE(mark->isVisible());
}

TEST_F(EditorScreenTest, CalculationsGetTheFilterAndTheLinesAreReadAgain) {
  AddLine();
  std::vector<std::string> filters;
  const auto calculation = [&](QWidget*, const std::string& filter) {
    filters.push_back(filter);
    on_.at.Run("UPDATE Intrastat SET Net=77" + filter);
  };
  AddLine({{"Net", 3.0}});
  Open(false, {calculation, calculation, {}});
  EXPECT_FALSE(Get<QPushButton>("CmdRedistribuireNet").isEnabled());
  on_.at.prompter().ExpectInfo(
      "Nu este bifata optiunea calcul valoare statistica\r\nPentru a determina necesitatea calculului "
      "valorii "
      "statistice va rugam consultati legislatia in vigoare");
  Click("CmdRecalcValStat");
  Get<QCheckBox>("Check_ValStatistica").setChecked(true);
  Click("CmdRecalcValStat");
  Click("CmdRedistribuireTransport");
  EXPECT_THAT(filters, testing::Each(" WHERE [TIP] ='I' AND [Anul]=2026 AND [Luna]=3"));
  EXPECT_EQ(filters.size(), 2U);
  EXPECT_EQ(screen_->editor().TextAt(0, Column("Net")), "77");
  on_.at.Run("UPDATE Intrastat SET Net=3 WHERE Record_ID=(SELECT MAX(Record_ID) FROM Intrastat)");
  EXPECT_TRUE(screen_->editor().Filter({"Net", "= Valoare", "77"}));
  Click("CmdRedistribuireTransport");
  EXPECT_TRUE(screen_->editor().filtered()) << "what the user was looking at stays";
}

TEST_F(EditorScreenTest, ProvenanceIsForReadingAndSortingKeepsTheLine) {
  AddLine({{"Descriere", "b"}});
  const auto second = AddLine({{"Descriere", "a"}, {"SourceFile", "foaie.xls"}});
  Open();
  GoToCell(1, "Descriere");
  Click("CmdProvenienta");
  EXPECT_EQ(screen_->grid()->current_row(), 1) << "the same line, by where it came from";
  Click("CmdProvenienta");
  GoToCell(1, "Descriere");
  screen_->grid()->horizontalHeader()->setSortIndicator(Column("Descriere"), Qt::AscendingOrder);
  EXPECT_EQ(At(), "0 Descriere");
  EXPECT_EQ(screen_->editor().RowOf(second), 0);
  Click("CmdProvenienta");
  EXPECT_FALSE(screen_->grid()->isColumnHidden(Column("SourceFile")));
  EXPECT_EQ(screen_->editor().TextAt(0, Column("SourceFile")), "foaie.xls");
  EXPECT_FALSE(Get<QPushButton>("Cmd_Verifica").isEnabled());
  EXPECT_EQ(screen_->grid()->grid_model()->Rows(), 2);
  Click("CmdProvenienta");
  EXPECT_TRUE(Get<QPushButton>("Cmd_Verifica").isEnabled());
  EXPECT_EQ(screen_->grid()->grid_model()->Rows(), 3);
  EXPECT_EQ(screen_->editor().RowOf(second), 0);
  Key(Qt::Key_F5);
  EXPECT_EQ(screen_->editor().RowOf(second), 1) << "the order of entry is back";
  EXPECT_EQ(At(), "1 DataReceptiei");
  Open();
  EXPECT_EQ(screen_->editor().RowOf(second), 1) << "and stays at the next opening";
}

TEST_F(EditorScreenTest, ADeclarationDeletedMeanwhileIsTold) {
  AddLine();
  Open();
  on_.at.Run("DELETE FROM Intrastat");
  on_.at.prompter().ExpectError(
      "Declaratia ACHIZITIE 2026 / 3 nu mai are nici o linie: a fost stearsa intre timp");
  Key(Qt::Key_F5);
  EXPECT_EQ(screen_->grid()->grid_model()->Rows(), 1);
  EXPECT_EQ(At(), "0 DataReceptiei");
}

}  // namespace
}  // namespace declarations
