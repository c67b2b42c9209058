#include "app/screens/settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QColorDialog>
#include <QFileDialog>
#include <QTabWidget>
#include <QTimer>

#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "ui/colour_field.h"

namespace {

using platform::Icon;
using test_support::ScreenFixture;

class SettingsScreen : public testing::Test {
 protected:
  SettingsScreen() {
    screen_ = std::make_unique<app::Frm_Setari>(on_.context, nullptr);
    screen_->OnApplied([this] { ++applied_; });
    screen_->show();
  }
  std::string FileText() { return on_.at.files().Read(on_.at.session.settings_file); }
  std::string Stored(const char* section, const char* key) {
    return session::ReadSetting(on_.at.session.host, on_.at.session.settings_file, section, key);
  }
  /// The field is put on its tab as a user would find it.
  void Type(const char* name, const QString& text) {
    screen_->FocusField(QString::fromLatin1(name));
    ScreenFixture::Type(*screen_, name, text);
  }
  /// Confirms; expects refusal with nothing written and the cursor in that field.
  void ExpectRefused(const char* field) {
    const std::string before = FileText();
    Confirm();
    on_.at.prompter().Verify();
    EXPECT_TRUE(screen_->isVisible());
    EXPECT_EQ(FileText(), before);
    EXPECT_EQ(applied_, 0);
    ASSERT_NE(screen_->focusWidget(), nullptr);
    EXPECT_EQ(screen_->focusWidget()->objectName().toStdString(), field);
    EXPECT_TRUE(screen_->focusWidget()->isVisible());
  }
  void Confirm() { ScreenFixture::Click(*screen_, "CmdOK"); }

  ScreenFixture on_;
  std::unique_ptr<app::Frm_Setari> screen_;
  int applied_ = 0;
};

TEST_F(SettingsScreen, OpensOnWhatTheFileHolds) {
  EXPECT_EQ(screen_->windowTitle(), "Setari diverse");
  EXPECT_EQ(screen_->confirm_button()->text().remove('&'), "OK-Retine datele");
  EXPECT_EQ(screen_->Text("FileLocation_DataBase"), "C:\\Declarix\\System\\DataBase\\");
  EXPECT_EQ(screen_->Text("Zecimale_ZecRotCalcule"), "4");
  EXPECT_EQ(screen_->Text("Zecimale_UseFormat"), "1");
  EXPECT_EQ(screen_->Text("Diverse_ValoriRotunjite"), "0");
  EXPECT_EQ(screen_->Text("Culori_HighlightRowStyle_BackColor"), "16711680");
  const auto& blue = ScreenFixture::Get<ui::ColourField>(*screen_, "Culori_HighlightRowStyle_BackColor");
  const auto* painted = blue.findChild<QLineEdit*>();
  EXPECT_EQ(painted->palette().color(QPalette::Base), QColor(0, 0, 255));
  EXPECT_EQ(painted->palette().color(QPalette::Text), QColor(Qt::white));
}

TEST_F(SettingsScreen, RefusesEmptyFieldsByTheirControlsName) {
  // The empty field comes before the number that is none, whatever their tabs.
  Type("Zecimale_ZecRotLEI", "zero");
  Type("Diverse_www", "");
  on_.at.prompter().ExpectError("Diverse_www  -  Obligatoriu de completat !");
  QTest::keyClick(&ScreenFixture::Get<QLineEdit>(*screen_, "Diverse_www"), Qt::Key_Delete);
  ExpectRefused("Diverse_www");
  Type("Diverse_www", " ");
  on_.at.prompter().ExpectError("Diverse_www  -  Obligatoriu de completat !");
  ExpectRefused("Diverse_www");
}

TEST_F(SettingsScreen, RefusesWhatIsNoNumberInItsOrder) {
  const char* in_order[] = {"Zecimale_ZecRotCalcule", "Zecimale_ZecRotLEI", "Zecimale_ZecRotValuta",
                            "Zecimale_NrZecTaxare"};
  for (const char* name : in_order) Type(name, "2x");
  for (const char* name : in_order) {
    on_.at.prompter().ExpectError(std::string(name) + " - NU ESTE NUMAR");
    ExpectRefused(name);
    Type(name, "2");
  }
}

TEST_F(SettingsScreen, RefusesFoldersThatAreGone) {
  Type("FileLocation_DataBase", "C:\\Lipsa\\Baze");
  Type("FileLocation_System", "C:\\Lipsa\\Sistem");
  Type("FileLocation_ReportDefinitionPath", "C:\\Lipsa");
  Type("FileLocation_DirectorSalvare", "C:\\Lipsa\\Iesiri");
  on_.at.prompter().ExpectError("Nu exista fisierul: C:\\Lipsa\\UE_Reports.xml");
  ExpectRefused("FileLocation_ReportDefinitionPath");
  EXPECT_EQ(screen_->Text("FileLocation_DataBase"), "C:\\Lipsa\\Baze\\");
  Type("FileLocation_ReportDefinitionPath", "C:\\Declarix\\System\\ReportDefinition");
  on_.at.prompter().ExpectError("Nu exista directorul: C:\\Lipsa\\Baze\\");
  ExpectRefused("FileLocation_DataBase");
  Type("FileLocation_DataBase", "C:\\Declarix\\System\\DataBase");
  on_.at.prompter().ExpectError("Nu exista directorul: C:\\Lipsa\\Sistem\\");
  ExpectRefused("FileLocation_System");
}

TEST_F(SettingsScreen, ClearsAMissingOutputFolderAndGoesOn) {
  Type("FileLocation_DirectorSalvare", "C:\\Lipsa");
  on_.at.prompter().ExpectError("Nu exista directorul: C:\\Lipsa\\");
  on_.at.prompter().ExpectInfo("Directorul de salvare a fost set la :");
  Confirm();
  EXPECT_FALSE(screen_->isVisible());
  EXPECT_EQ(Stored(session::kSectionFileLocation, "DirectorSalvare"), "");
  EXPECT_EQ(on_.at.session.settings.DirectorSalvare, "\\");
}

TEST_F(SettingsScreen, WritesEveryKeyAndReadsThemAnew) {
  const auto choose_colour = [](const QColor& colour) {
    QTimer::singleShot(0, [colour] {
      auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      dialog->setCurrentColor(colour);
      dialog->accept();
    });
  };
  screen_->FocusField("Culori_Meniu_Color");
  choose_colour(QColor(0x12, 0x34, 0x56));
  ScreenFixture::Click(*screen_, "CmdMeniu_Color");
  Type("Zecimale_ZecRotValuta", "3");
  Type("FileLocation_System", "c:\\declarix\\system");
  screen_->FocusField("Diverse_ValoriRotunjite");
  QTest::keyClick(&ScreenFixture::Get<QCheckBox>(*screen_, "Diverse_ValoriRotunjite"), Qt::Key_Space);
  QTest::keyClick(&ScreenFixture::Get<QCheckBox>(*screen_, "Diverse_VerificaNet"), Qt::Key_Space);
  Confirm();

  EXPECT_FALSE(screen_->isVisible());
  EXPECT_EQ(applied_, 1);
  EXPECT_EQ(Stored(session::kSectionCulori, "Meniu_Color"), std::to_string(0x563412));
  EXPECT_EQ(Stored(session::kSectionCulori, "HighlightRowStyle_BackColor"), "16711680");
  EXPECT_EQ(Stored(session::kSectionFileLocation, "System"), "c:\\declarix\\system\\");
  EXPECT_EQ(Stored(session::kSectionDiverse, "ValoriRotunjite"), "1");
  const session::Settings& now = on_.at.session.settings;
  EXPECT_EQ(now.Meniu_Color, 0x563412U);
  EXPECT_EQ(now.ZecRotValuta, 3);
  EXPECT_EQ(now.System, "c:\\declarix\\system\\");
  EXPECT_TRUE(now.ValoriRotunjite);
  EXPECT_TRUE(now.VerificaNet);
}

TEST_F(SettingsScreen, BrowsesForAFolderOnTheDrives) {
  on_.at.files().CreateFolders("C:\\Declarix\\System\\DeclaratiiXML\\Arhiva");
  screen_->FocusField("FileLocation_DirectorSalvare");
  QString shown_at;
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    shown_at = dialog->directory().path();
    dialog->selectFile(QDir(shown_at).filePath("Arhiva"));
    QMetaObject::invokeMethod(dialog, "accept");
  });
  ScreenFixture::Click(*screen_, "CmdDirectorSalvare");
  EXPECT_TRUE(shown_at.endsWith("DeclaratiiXML")) << shown_at.toStdString();
  EXPECT_EQ(screen_->Text("FileLocation_DirectorSalvare"), "C:\\Declarix\\System\\DeclaratiiXML\\Arhiva\\");
  EXPECT_EQ(screen_->focusWidget()->objectName(), "FileLocation_DirectorSalvare");
}

TEST_F(SettingsScreen, StopsWhereTheFileCannotBeWritten) {
  Type("Zecimale_ZecRotLEI", "1");
  on_.at.files().refuses = [](std::string_view path) { return path.ends_with("Settings.xml"); };
  on_.at.prompter().ExpectError(
      "Eroare la actualizare setari: /Settings/Declarix/Setari/Zecimale/ZecRotLEI1");
  on_.at.prompter().ExpectStarting("Nu se poate scrie fisierul", "EROARE", Icon::kCritical);
  ExpectRefused("Zecimale_ZecRotLEI");
}

TEST_F(SettingsScreen, MnemonicsAreUniqueOnEveryTab) {
  auto* tabs = screen_->findChild<QTabWidget*>();
  for (int i = 0; i < tabs->count(); ++i) {
    tabs->setCurrentIndex(i);
    EXPECT_THAT(test_support::SharedMnemonics(*screen_), testing::IsEmpty()) << i;
  }
}

TEST(SettingsScreenBadFile, ShowsAFileThatDoesNotParseOnce) {
  ScreenFixture on;
  on.at.files().Replace(on.at.session.settings_file, "<Settings><Declarix>");
  on.at.prompter().ExpectStarting("Fisierul de setari ", "EROARE", Icon::kCritical);
  const app::Frm_Setari screen(on.context, nullptr);
  EXPECT_EQ(screen.Text("FileLocation_DataBase"), "");
}

}  // namespace
