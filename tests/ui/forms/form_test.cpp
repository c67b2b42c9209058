#include "ui/form.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QTabWidget>

#include "support/qt/screen_fixture.h"
#include "ui/colour_field.h"

namespace {

using platform::Icon;
using test_support::ScreenFixture;

/// Two tabs with one field of each sort.
class SampleForm : public ui::Form {
 public:
  explicit SampleForm(ui::Context& context) : Form(context, "Frm_Test", nullptr) {
    AddTab("Unu");
    AddText("Nume", "&Nume", 20, "Cum se numeste");
    AddText("Liber", "&Liber", 20, "Nu se retine", Kind::kFree);
    AddCode("Tara", "&Tara", ui::CodeList{{{"DE", "GERMANIA"}, {"RO", "ROMANIA"}}}, 4, "Codul tarii");
    AddTick("Bifa", "&Bifa", "Da sau nu");
    AddTab("Doi");
    auto* colour = new ui::ColourField(this);
    colour->setObjectName("Culoare");
    AddField("&Culoare", colour, "Se alege", Kind::kBound);
    AddText("Cod", "C&od", 8);
    MarkRequired("Nume");
    SetButtons("&Gata", [this] {
      ++confirmed;
      if (Require("Cod", "Codul") && Require("Nume", "Numele")) accept();
    });
    show();
    QApplication::setActiveWindow(this);
  }
  QString Line() { return ScreenFixture::Get<QLabel>(*this, "LblMesaj").text(); }
  void Press(int key) { QTest::keyClick(focusWidget(), static_cast<Qt::Key>(key)); }
  std::string Focus() { return focusWidget() == nullptr ? "" : focusWidget()->objectName().toStdString(); }
  int confirmed = 0;
};

class FormTest : public testing::Test {
 protected:
  ScreenFixture on_{test_support::Installation::State::kClosed};
  SampleForm form_{on_.context};
};

TEST_F(FormTest, BindsTaggedFieldsByName) {
  EXPECT_EQ(form_.BoundNames(), (std::vector<std::string>{"Nume", "Tara", "Bifa", "Culoare", "Cod"}));
  companies::Fields fields({"Nume", "Tara", "Bifa", "Culoare", "Liber"});
  fields.Set("Nume", "  cu blancuri ");
  fields.Set("Tara", "XX");
  fields.Set("Bifa", "-1");
  fields.Set("Culoare", "-2147483643");  // a system colour
  fields.Set("Liber", "nu");
  form_.Fill(fields);
  EXPECT_EQ(form_.Text("Liber"), "");
  const companies::Fields back = form_.Collect();
  EXPECT_EQ(back.Get("Nume"), "  cu blancuri ");
  EXPECT_EQ(back.Get("Tara"), "XX");
  EXPECT_EQ(back.Get("Bifa"), "1");
  EXPECT_EQ(back.Get("Culoare"), std::to_string(0x80000005U));
  EXPECT_EQ(back.Get("Cod"), "");
  EXPECT_FALSE(back.Has("Liber"));
}

TEST_F(FormTest, KeysReachADropDownListThatCompletesWithinItsField) {
  auto* sheet = new QComboBox(&form_);
  sheet->setObjectName("Foaie");
  sheet->setEditable(true);
  form_.AddField("Foaia", sheet);
  sheet->show();
  sheet->setFocus();
  QTest::keyClicks(sheet, "Sheet1");
  QTest::keyClick(sheet, Qt::Key_Return);
  EXPECT_EQ(form_.Text("Foaie"), "Sheet1");
  EXPECT_FALSE(sheet->hasFocus());
}

TEST_F(FormTest, EnterMovesOnAndEntryHelpsAndSelects) {
  form_.SetText("Liber", "text");
  form_.SetText("Tara", "RO");
  form_.FocusField("Nume");
  EXPECT_EQ(form_.Line(), "Cum se numeste");
  form_.Press(Qt::Key_Return);
  EXPECT_EQ(form_.Focus(), "Liber");
  EXPECT_EQ(form_.Line(), "Nu se retine");
  QApplication::processEvents();
  EXPECT_EQ(ScreenFixture::Get<QLineEdit>(form_, "Liber").selectedText(), "text");
  form_.Press(Qt::Key_Enter);
  EXPECT_EQ(form_.Focus(), "Tara");
  EXPECT_EQ(form_.Line(), "Codul tarii");
  QApplication::processEvents();
  EXPECT_EQ(ScreenFixture::Get<ui::CodeBox>(form_, "Tara").lineEdit()->selectedText(), "RO");
  form_.Press(Qt::Key_Return);
  EXPECT_EQ(form_.Focus(), "Bifa");
  form_.Press(Qt::Key_Return);
  EXPECT_EQ(form_.Focus(), "CmdOK");
  EXPECT_EQ(form_.confirmed, 0);  // none of these confirmed the form
  form_.FocusField("Culoare");
  EXPECT_EQ(form_.Line(), "Se alege");
  form_.Press(Qt::Key_Return);
  EXPECT_EQ(form_.Focus(), "Cod");
}

TEST_F(FormTest, RequiredFieldsAreSaidSoBeforeAndAsked) {
  EXPECT_EQ(ScreenFixture::Get<QLabel>(form_, "LblObligatoriu").text(), "* Obligatoriu de completat");
  form_.FocusField("Nume");
  on_.at.prompter().ExpectError("Codul  -  Obligatoriu de completat !");
  ScreenFixture::Click(form_, "CmdOK");
  EXPECT_EQ(form_.Focus(), "Cod");
  EXPECT_TRUE(form_.focusWidget()->isVisible());  // on the other tab
  form_.SetText("Cod", "1");
  form_.SetText("Nume", " ");
  on_.at.prompter().ExpectError("Numele  -  Obligatoriu de completat !");
  ScreenFixture::Click(form_, "CmdOK");
  EXPECT_EQ(form_.Focus(), "Nume");
  form_.SetText("Nume", "x");
  ScreenFixture::Click(form_, "CmdOK");
  EXPECT_EQ(form_.result(), QDialog::Accepted);
}

TEST_F(FormTest, ALeaveCheckRunsOncePerTryAndNotForWindowsListsOrCancel) {
  int asked = 0;
  bool let_go = false;
  form_.OnLeave("Tara", [&] {
    ++asked;
    return let_go;
  });
  form_.FocusField("Tara");
  ScreenFixture::Get<ui::CodeBox>(form_, "Tara").showPopup();
  ScreenFixture::Get<ui::CodeBox>(form_, "Tara").hidePopup();
  EXPECT_EQ(asked, 0);
  QTest::mouseClick(&ScreenFixture::Get<QLineEdit>(form_, "Nume"), Qt::LeftButton);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(form_.Focus(), "Tara");
  ScreenFixture::Click(form_, "CmdOK");
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(form_.confirmed, 0);
  EXPECT_EQ(form_.Focus(), "Tara");
  ScreenFixture::Click(form_, "CmdRenunt");
  EXPECT_EQ(asked, 2);
  EXPECT_FALSE(form_.isVisible());

  form_.show();
  QApplication::setActiveWindow(&form_);
  form_.FocusField("Tara");
  let_go = true;
  form_.Press(Qt::Key_Tab);
  EXPECT_EQ(asked, 3);
  EXPECT_EQ(form_.Focus(), "Bifa");
}

TEST_F(FormTest, AsksBeforeChangesAreLost) {
  form_.GuardChanges();
  form_.SetText("Liber", "nu conteaza");
  form_.reject();
  EXPECT_FALSE(form_.isVisible());
  form_.show();
  form_.SetText("Bifa", "1");
  const char question[] = "Datele modificate nu au fost salvate. Inchideti fara salvare ?";
  on_.at.prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, false);
  QTest::keyClick(&form_, Qt::Key_Escape);
  EXPECT_TRUE(form_.isVisible());
  on_.at.prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, false);
  form_.close();
  EXPECT_TRUE(form_.isVisible());
  on_.at.prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, true);
  form_.close();
  EXPECT_FALSE(form_.isVisible());
}

TEST_F(FormTest, RemembersItsSizeAndOpensTheManualAtItself) {
  form_.resize(form_.size() + QSize(40, 30));
  const QSize kept = form_.size();
  form_.hide();
  ui::ScreenMemory later(on_.at.machine.files, "C:\\ProgramData\\Declarix\\", "ana");
  ui::Context context{on_.at.session, later, {}, on_.context.open_manual};
  SampleForm again(context);
  EXPECT_EQ(again.size(), kept);
  QTest::keyClick(again.focusWidget(), Qt::Key_F1);
  EXPECT_EQ(on_.opened_chapters, std::vector<std::string>{"Frm_Test"});
}

}  // namespace
