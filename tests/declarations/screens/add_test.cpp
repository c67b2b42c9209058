#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QTimer>

#include "declarations/screens/add_declaration.h"
#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"
#include "ui/code_box.h"

namespace declarations {
namespace {

using platform::Icon;
using test_support::Installation;
using test_support::ScreenFixture;

class AddScreenTest : public testing::Test {
 protected:
  AddScreenTest() { Open(); }
  void Open(Frm_Intrastat_Add::Purpose purpose = Frm_Intrastat_Add::Purpose::kDeclaration) {
    screen_ = std::make_unique<Frm_Intrastat_Add>(on_.context, purpose, nullptr);
    screen_->show();
    QApplication::setActiveWindow(screen_.get());
  }
  void Choose(const QString& Txt_Fel, const QString& Txt_Anul, const QString& Txt_Luna) {
    screen_->SetText("Txt_Fel", Txt_Fel);
    screen_->SetText("Txt_Anul", Txt_Anul);
    screen_->SetText("Txt_Luna", Txt_Luna);
  }
  void SetAgent(bool on) { ScreenFixture::Get<QCheckBox>(*screen_, "Check_Dec_Tert").setChecked(on); }
  ui::CodeBox& Box(const char* name) { return ScreenFixture::Get<ui::CodeBox>(*screen_, name); }
  void PickCode(const char* name, const QString& code) {
    Box(name).SetCode(code);
    Q_EMIT Box(name).CodeChanged();
  }
  void Click(const char* name) { ScreenFixture::Click(*screen_, name); }
  session::Session& session() { return on_.at.session; }

  ScreenFixture on_;
  std::unique_ptr<Frm_Intrastat_Add> screen_;
};

TEST_F(AddScreenTest, OffersLastMonthAndTheFlowUsedLast) {
  EXPECT_EQ(screen_->Text("Txt_Fel"), "ACHIZITIE");
  EXPECT_EQ(screen_->Text("Txt_Anul"), "2026");
  EXPECT_EQ(screen_->Text("Txt_Luna"), "2");
  EXPECT_THAT(test_support::SharedMnemonics(*screen_), testing::IsEmpty());
  Choose("LIVRARE", "2026", "2");
  Click("CmdOK");
  on_.at.machine.clock.Set({2026, 1, 10});
  on_.at.files().Remove(Installation::InSystem("ComboBox\\Txt_Luna.Frm_Intrastat_Add.txt"));
  Open();
  EXPECT_EQ(screen_->Text("Txt_Fel"), "LIVRARE");
  EXPECT_EQ(screen_->Text("Txt_Anul"), "2025");
  EXPECT_EQ(screen_->Text("Txt_Luna"), "12") << "the months stand without their file";
}

TEST_F(AddScreenTest, AsksForWhatIsMissing) {
  Choose("ACHIZITIE", "", "");
  screen_->findChild<QComboBox*>("Txt_Luna")->setCurrentIndex(-1);
  for (const char* command : {"CmdOK", "CmdAddNula"}) {
    on_.at.prompter().ExpectError("Luna  -  Obligatoriu de completat !");
    on_.at.prompter().ExpectError("Anul  -  Obligatoriu de completat !");
    Click(command);
    EXPECT_EQ(screen_->focusWidget()->objectName(), "Txt_Luna");
  }
  Choose("ACHIZITIE", "26", "3");
  on_.at.prompter().ExpectError("Anul 26 nu este intre 2000 si 2099");
  Click("CmdOK");
  EXPECT_TRUE(screen_->isVisible());
  EXPECT_FALSE(screen_->opening());
}

TEST_F(AddScreenTest, OpensAnExistingDeclarationOrANewOne) {
  test_support::AddLine(session(), "I", 2026, 3);
  Choose("ACHIZITIE", "2026", "3");
  on_.at.prompter().ExpectInfo("Aceasta declaratie exista deja");
  Click("CmdOK");
  ASSERT_TRUE(screen_->opening());
  EXPECT_EQ(screen_->opening()->title, "Modificare Declaratie : I - 2026 / 3");
  EXPECT_FALSE(screen_->opening()->agent);
  Open();
  Choose("LIVRARE", "2026", "3");
  Click("CmdOK");
  ASSERT_TRUE(screen_->opening());
  EXPECT_EQ(screen_->opening()->title, "Adauga Declaratie : O - 2026 / 3");
  EXPECT_EQ(screen_->result(), QDialog::Accepted);
}

TEST_F(AddScreenTest, KeepsTheAgentAndLetsPlacesFollowTheCounty) {
  const std::string file = Installation::InSystem("Default\\Frm_INTRASTAT.txt");
  on_.at.files().Replace(file,
                         "TXT_CUI_Dec=RO55\r\nTXT_Sect_Dec=3\r\nTXT_Judet_Dec=1\r\nTXT_Oras_Dec=1026\r\n");
  EXPECT_FALSE(Box("TXT_Judet_Dec").isEnabled());
  const std::size_t all = Box("TXT_Oras_Dec").list().lines.size();
  SetAgent(true);
  EXPECT_EQ(screen_->Text("TXT_CUI_Dec"), "RO55");
  EXPECT_EQ(Box("TXT_Judet_Dec").currentText(), "Alba");
  EXPECT_EQ(Box("TXT_Oras_Dec").currentText(), "Alba Iulia");
  const std::size_t of_county = Box("TXT_Oras_Dec").list().lines.size();
  EXPECT_LT(of_county, all);

  PickCode("TXT_Judet_Dec", "2");
  EXPECT_EQ(screen_->Text("TXT_Oras_Dec"), "") << "a place of another county goes";
  PickCode("TXT_Judet_Dec", "");
  EXPECT_EQ(Box("TXT_Oras_Dec").list().lines.size(), all);
  std::set<QString> names;
  for (const auto& line : Box("TXT_Oras_Dec").list().lines) names.insert(line.description);
  EXPECT_EQ(names.size(), all) << "every place can be told from the others";
  PickCode("TXT_Oras_Dec", "1222");
  EXPECT_EQ(Box("TXT_Judet_Dec").currentText(), "Alba") << "a place brings its county";
  QApplication::processEvents();
  EXPECT_EQ(Box("TXT_Oras_Dec").list().lines.size(), of_county);

  ScreenFixture::Type(*screen_, "TXT_Nume_Dec", "DECLARANT SRL");
  Choose("ACHIZITIE", "2026", "3");
  Click("CmdOK");
  ASSERT_TRUE(screen_->opening());
  ASSERT_TRUE(screen_->opening()->agent);
  EXPECT_TRUE(screen_->opening()->agent->Check_Dec_Tert);
  const std::string kept = on_.at.files().Read(file);
  for (const char* line : {"TXT_CUI_Dec=RO55\r\n", "TXT_Nume_Dec=DECLARANT SRL\r\n", "TXT_Sect_Dec=3\r\n",
                           "TXT_Judet_Dec=1\r\n", "TXT_Oras_Dec=1222\r\n"}) {
    EXPECT_THAT(kept, testing::HasSubstr(line));
  }
}

TEST_F(AddScreenTest, AnAgentThatCannotBeKeptStillReachesTheDeclaration) {
  SetAgent(true);
  ScreenFixture::Type(*screen_, "TXT_Nume_Dec", "DECLARANT SRL");
  on_.at.machine.files.refuses = [](std::string_view path) { return path.ends_with("Frm_INTRASTAT.txt"); };
  on_.at.prompter().ExpectStarting("Datele declarantului tert nu s-au putut pastra", "EROARE",
                                   Icon::kCritical);
  Choose("ACHIZITIE", "2026", "3");
  Click("CmdOK");
  ASSERT_TRUE(screen_->opening() && screen_->opening()->agent);
  EXPECT_EQ(screen_->opening()->agent->TXT_Nume_Dec, "DECLARANT SRL");
}

TEST_F(AddScreenTest, EnterEndsOnTheCommandThatWasCalled) {
  for (const auto& [purpose, command] : {std::pair{Frm_Intrastat_Add::Purpose::kDeclaration, "CmdOK"},
                                         std::pair{Frm_Intrastat_Add::Purpose::kNil, "CmdAddNula"}}) {
    Open(purpose);
    for (int i = 0; i < 4; ++i) QTest::keyClick(screen_->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(screen_->focusWidget()->objectName(), command);
  }
}

TEST_F(AddScreenTest, WritesANilDeclarationAfterTheReview) {
  const std::string file = "C:\\Declarix\\System\\DeclaratiiXML\\0000123456_DN_20263.xml";
  test_support::AddLine(session(), "O", 2026, 3);
  Choose("LIVRARE", "2026", "3");
  SetAgent(true);
  ScreenFixture::Type(*screen_, "TXT_CUI_Dec", "RO77");
  on_.at.prompter().AcceptAnything(false);
  Click("CmdAddNula");
  EXPECT_FALSE(on_.at.files().Exists(file));
  ASSERT_EQ(on_.at.prompter().seen().size(), 1U);
  EXPECT_THAT(on_.at.prompter().seen()[0],
              testing::AllOf(testing::HasSubstr("Date Firma - Persoana responsabila: "),
                             testing::HasSubstr("Declarant tert - Nume: nu este completat"),
                             testing::Not(testing::HasSubstr("TXT_")),
                             testing::HasSubstr("declaratia: este nula, dar luna are linii: 1")));

  on_.at.prompter().AcceptAnything(true);
  QString options;
  QTimer::singleShot(0, [&] {
    QWidget* dialog = QApplication::activeModalWidget();
    ASSERT_NE(dialog, nullptr);
    options = dialog->objectName();
    dialog->close();
  });
  Click("CmdAddNula");
  EXPECT_EQ(options, "Frm_Fisier_Optiuni");
  EXPECT_THAT(on_.at.files().Read(file), testing::AllOf(testing::HasSubstr("<InsNillDispatch"),
                                                        testing::HasSubstr("<VatNr>0000000077</VatNr>")));
  EXPECT_TRUE(screen_->isVisible()) << "the other flow may follow";
}

}  // namespace
}  // namespace declarations
