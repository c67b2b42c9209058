#include "companies/screens/company.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>

#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"

namespace {

using platform::Icon;
using store::Value;
using test_support::Installation;
using test_support::ScreenFixture;

struct CompanyScreen : ScreenFixture {
  explicit CompanyScreen(bool creating) {
    at.session.creation_mode = creating;
    screen = std::make_unique<companies::Frm_Firma>(context, nullptr);
    screen->show();
    QApplication::setActiveWindow(screen.get());
  }
  void Type(const char* name, const QString& text) { ScreenFixture::Type(*screen, name, text); }
  void Confirm() { Click(*screen, "CmdOK"); }
  std::string Focus() const { return screen->focusWidget()->objectName().toStdString(); }
  Value Stored(const char* column, const char* code) {
    return at.session.common.Scalar(fmt::format("SELECT {} FROM Firme WHERE Cod_Fiscal='{}'", column, code))
        .value_or(Value());
  }
  /// A refusal or "No" leaves register, files and the current company as they were.
  void ExpectUntouched() {
    at.prompter().Verify();
    EXPECT_TRUE(screen->isVisible());
    EXPECT_EQ(at.session.common.Scalar("SELECT Count(*) FROM Firme WHERE Cod_Fiscal <> '0'"), Value(1));
    EXPECT_EQ(at.session.current.Cod_Fiscal, Installation::kCompany);
  }

  std::unique_ptr<companies::Frm_Firma> screen;
};

TEST(CompanyScreen, CreatesACompanyFromWhatIsTyped) {
  CompanyScreen on(true);
  EXPECT_EQ(on.screen->windowTitle(), "Introducere date firma noua");
  EXPECT_EQ(on.screen->confirm_button()->text().remove('&'), "Creaza Firma >>>");
  EXPECT_EQ(on.screen->Text("Tara_Firma"), "ROMANIA");
  on.Type("Cod_Fiscal", "ro 44 55 66");
  on.Type("Nume_Firma", "NOUA <&> SRL");
  EXPECT_EQ(on.screen->Text("Cod_Fiscal"), "RO445566");
  on.Type("Oras_Firma", "Iasi");
  QTest::keyClick(&on.Get<QCheckBox>(*on.screen, "XML_Detaliat"), Qt::Key_Space);
  on.at.prompter().ExpectInfo("FIRMA A FOST CREATA", "MESAJ");
  on.Confirm();
  EXPECT_FALSE(on.screen->isVisible());
  EXPECT_EQ(on.at.session.current.Cod_Fiscal, "RO445566");
  EXPECT_EQ(on.Stored("Nume_Firma", "RO445566"), Value("NOUA <&> SRL"));
  EXPECT_EQ(on.Stored("Oras_Firma", "RO445566"), Value("Iasi"));
  EXPECT_EQ(on.Stored("DataBaseFile", "RO445566"), Value("RO445566.mdb"));
  EXPECT_EQ(on.Stored("CreataLaData", "RO445566"), Value("16/03/2026"));
  EXPECT_TRUE(on.Stored("XML_Detaliat", "RO445566").ToBoolean());
  EXPECT_FALSE(on.Stored("ValoareStatistica", "RO445566").ToBoolean());
}

TEST(CompanyScreen, KeepsTheCursorInACodeWithoutROButNeverTrapsTheUser) {
  CompanyScreen on(true);
  on.Type("Cod_Fiscal", "445566");
  on.at.prompter().ExpectError("Codul fiscal trebuie sa inceapa cu RO");
  QTest::keyClick(on.screen->focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(on.Focus(), "Cod_Fiscal");
  on.at.prompter().Verify();
  // Confirming asks once, by the mouse or by Alt and the letter, and creates nothing.
  on.at.prompter().ExpectError("Codul fiscal trebuie sa inceapa cu RO");
  on.Confirm();
  EXPECT_EQ(on.Focus(), "Cod_Fiscal");
  on.ExpectUntouched();
  on.at.prompter().ExpectError("Codul fiscal trebuie sa inceapa cu RO");
  QTest::keyClick(on.screen->focusWidget(), Qt::Key_Z, Qt::AltModifier);
  QTest::qWait(150);
  EXPECT_EQ(on.Focus(), "Cod_Fiscal");
  on.ExpectUntouched();
  // Cancelling asks about the data typed, not about the code.
  on.at.prompter().ExpectQuestion("Datele modificate nu au fost salvate. Inchideti fara salvare ?",
                                  "RASPUNDETI", Icon::kQuestion, true);
  CompanyScreen::Click(*on.screen, "CmdRenunt");
  EXPECT_FALSE(on.screen->isVisible());
}

TEST(CompanyScreen, CreationRequiresCodeAndName) {
  CompanyScreen on(true);
  on.Type("Cod_Fiscal", "RO77");
  on.at.prompter().ExpectError("Nume Firma  -  Obligatoriu de completat !");
  on.Confirm();
  EXPECT_EQ(on.Focus(), "Nume_Firma");
  on.ExpectUntouched();
}

TEST(CompanyScreen, CreationRefusesARegisteredCodeEvenWithoutItsFile) {
  CompanyScreen on(true);
  on.at.session.company.Close();
  on.at.files().Remove(Installation::InDataBase("RO123456.mdb"));
  on.Type("Cod_Fiscal", "RO 123456");
  on.Type("Nume_Firma", "ALTA");
  on.at.prompter().ExpectError("Exista deja firma cu codul fiscal : RO123456");
  on.Confirm();
  EXPECT_EQ(on.Focus(), "Cod_Fiscal");
  on.ExpectUntouched();
}

TEST(CompanyScreen, CreationAsksBeforeItOverwritesAFile) {
  CompanyScreen on(true);
  const std::string path = Installation::InDataBase("RO55.mdb");
  on.at.files().Replace(path, "date vechi");
  on.Type("Cod_Fiscal", "RO55");
  on.Type("Nume_Firma", "ALTA");
  const std::string question = "Fisierul :" + path + " EXISTA DEJA. RESCRIETI SI PIERDETI DATELE AFERENTE ?";
  on.at.prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, false);
  on.Confirm();
  on.ExpectUntouched();
  EXPECT_EQ(on.at.files().Read(path), "date vechi");

  on.at.prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, true);
  on.at.prompter().ExpectInfo("FIRMA A FOST CREATA", "MESAJ");
  on.Confirm();
  EXPECT_EQ(on.at.session.current.Cod_Fiscal, "RO55");
}

TEST(CompanyScreen, CreationNeedsTheTemplate) {
  CompanyScreen on(true);
  on.at.files().Remove(Installation::InDataBase("goala.mdb"));
  on.Type("Cod_Fiscal", "RO55");
  on.Type("Nume_Firma", "ALTA");
  on.at.prompter().ExpectError("Fisierul :" + Installation::InDataBase("goala.mdb") + " NU EXISTA.",
                               "EROARE MAJORA");
  on.Confirm();
  on.ExpectUntouched();
}

TEST(CompanyScreen, ModifiesTheCurrentCompanyButNeverItsKey) {
  CompanyScreen on(false);
  EXPECT_EQ(on.screen->windowTitle(), "Modificare Date Firma");
  EXPECT_EQ(on.screen->confirm_button()->text().remove('&'), "OK - Retine datele");
  EXPECT_EQ(on.Focus(), "Nume_Firma");
  on.Type("Cod_Fiscal", "RO999");
  EXPECT_EQ(on.screen->Text("Cod_Fiscal"), Installation::kCompany);
  on.Type("Nume_Firma", "");
  QTest::keyClick(on.screen->focusWidget(), Qt::Key_Delete);
  on.at.prompter().ExpectError("Nume Firma  -  Obligatoriu de completat !");
  on.Confirm();
  EXPECT_EQ(on.Stored("Nume_Firma", Installation::kCompany), Value("PROBA SRL"));

  on.Type("Nume_Firma", "PROBA NOUA");
  on.Type("Email_Firma", "a@b.example");
  QTest::keyClick(&on.Get<QCheckBox>(*on.screen, "ValoareStatistica"), Qt::Key_Space);
  on.at.prompter().ExpectInfo("Datele au fost salvate", "Mesaj");
  on.Confirm();
  EXPECT_FALSE(on.screen->isVisible());
  EXPECT_EQ(on.at.session.current.Nume_Firma, "PROBA NOUA");
  EXPECT_EQ(on.Stored("Nume_Firma", Installation::kCompany), Value("PROBA NOUA"));
  EXPECT_EQ(on.Stored("Email_Firma", Installation::kCompany), Value("a@b.example"));
  EXPECT_TRUE(on.Stored("ValoareStatistica", Installation::kCompany).ToBoolean());
}

TEST(CompanyScreen, EnterWalksThroughTheFieldsToTheConfirmButton) {
  CompanyScreen on(false);
  std::vector<std::string> path;
  for (int i = 0; i < 20 && on.Focus() != "CmdOK"; ++i) {
    path.push_back(on.Focus());
    QTest::keyClick(on.screen->focusWidget(), Qt::Key_Return);
  }
  EXPECT_THAT(path, testing::ElementsAre("Nume_Firma", "Adresa_Firma", "Oras_Firma", "Judet_Firma",
                                         "CodPostal_Firma", "Tara_Firma", "Reg_No_Firma", "Tel_Firma",
                                         "Fax_Firma", "Email_Firma", "Persoana_Intrastat", "Persoana_Functie",
                                         "XML_Detaliat", "ValoareStatistica"));
  // Enter on the helping button is help and confirms nothing.
  on.Get<QWidget>(*on.screen, "CmdAjutorDetaliat").setFocus();
  on.at.prompter().ExpectStarting("Daca se bifeaza", "", Icon::kInformation);
  QTest::keyClick(on.screen->focusWidget(), Qt::Key_Return);
  EXPECT_TRUE(on.screen->isVisible());
}

TEST(CompanyScreen, HelpsWhereTheCursorIs) {
  CompanyScreen on(false);
  const auto help_of = [&](const char* name) {
    on.Get<QWidget>(*on.screen, name).setFocus();
    return CompanyScreen::Get<QLabel>(*on.screen, "LblMesaj").text();
  };
  EXPECT_EQ(help_of("Cod_Fiscal"), "ROXXXXXX - Cod de inregistrare fiscala, fara spatii");
  EXPECT_EQ(help_of("Nume_Firma"), "Nume firma, va recomandam fara SC");
  EXPECT_EQ(help_of("Adresa_Firma"), "Adresa oficiala, fara oras si judet");
  EXPECT_EQ(help_of("Tara_Firma"), "ROMANIA - In majoritatea cazurilor");
  EXPECT_EQ(help_of("Reg_No_Firma"), "J00/AA/YYYY. Nr de inregistrare de la registrul comertului");
  EXPECT_EQ(help_of("Fax_Firma"), "");
  EXPECT_EQ(CompanyScreen::Get<QCheckBox>(*on.screen, "XML_Detaliat").text().remove('&'),
            " Declaratie XML (intrastat) detaliata (fara cumulare)");
  EXPECT_EQ(CompanyScreen::Get<QCheckBox>(*on.screen, "ValoareStatistica").text().remove('&'),
            " Declarare Valoare Statistica (consultati legislatia)");
  on.at.prompter().ExpectInfo(
      "Daca se bifeaza aceasta optiune programul NU va mai cumula pozitii care au acelasi cod vamal; tara "
      "origine; conditie de livrare. In acest caz declaratia Intrastat va contine toate liniile necumulate");
  CompanyScreen::Click(*on.screen, "CmdAjutorDetaliat");
  EXPECT_THAT(test_support::SharedMnemonics(*on.screen), testing::IsEmpty());
  EXPECT_THAT(test_support::SharedMnemonics(*CompanyScreen(true).screen), testing::IsEmpty());
}

}  // namespace
