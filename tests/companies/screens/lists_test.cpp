// The selection of a company and the company's default values.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QListWidget>

#include "companies/open_company.h"
#include "companies/screens/company_list.h"
#include "companies/screens/defaults.h"
#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"

namespace {

using store::Value;
using test_support::Installation;
using test_support::ScreenFixture;

struct Selection : ScreenFixture {
  Selection() {
    at.AddCompany("RO22", "ZETA IMPEX");
    at.AddCompany("RO11", "ALFA SA");
    at.session.common.Execute("INSERT INTO Firme (Cod_Fiscal, Nume_Firma) VALUES ('0', 'REZERVAT')");
    companies::OpenRegisteredCompany(at.session, Installation::kCompany);
  }
  QStringList Names(QWidget& screen) {
    QStringList names;
    auto& list = Get<QListWidget>(screen, "Nume_Firma");
    for (int i = 0; i < list.count(); ++i) names.append(list.item(i)->text());
    return names;
  }
};

TEST(CompanySelection, ListsByNameAndOpensWhatIsChosen) {
  Selection on;
  companies::Frm_Firme screen(on.context, nullptr);
  screen.show();
  EXPECT_EQ(on.Names(screen), QStringList({"ALFA SA", "PROBA SRL", "ZETA IMPEX"}));
  EXPECT_EQ(screen.Text("Cod_Fiscal"), Installation::kCompany);  // the current one stands chosen
  QTest::keyClick(&on.Get<QListWidget>(screen, "Nume_Firma"), Qt::Key_Down);
  EXPECT_EQ(screen.Text("Cod_Fiscal"), "RO22");
  EXPECT_EQ(screen.Text("DataBaseFile"), "RO22.mdb");
  on.Click(screen, "CmdOK");
  EXPECT_EQ(screen.result(), QDialog::Accepted);
  EXPECT_EQ(on.at.session.current.Cod_Fiscal, "RO22");
  EXPECT_THAT(test_support::SharedMnemonics(screen), testing::IsEmpty());
}

TEST(CompanySelection, FiltersByNameOrCode) {
  Selection on;
  companies::Frm_Firme screen(on.context, nullptr);
  screen.show();
  on.Type(screen, "TxtCautare", "impex");
  EXPECT_EQ(on.Names(screen), QStringList({"ZETA IMPEX"}));
  EXPECT_EQ(screen.Text("Cod_Fiscal"), "RO22");
  on.Type(screen, "TxtCautare", "ro1");
  EXPECT_EQ(on.Names(screen), QStringList({"ALFA SA", "PROBA SRL"}));
  on.Type(screen, "TxtCautare", "nimic");
  EXPECT_TRUE(on.Names(screen).isEmpty());
  on.at.prompter().ExpectError("Nume firma  -  Obligatoriu de completat !");
  on.Click(screen, "CmdOK");
  EXPECT_TRUE(screen.isVisible());
}

TEST(CompanySelection, OpensOnceByEnterAndByDoubleClick) {
  for (const bool by_mouse : {false, true}) {
    Selection on;
    companies::Frm_Firme screen(on.context, nullptr);
    screen.show();
    auto& list = on.Get<QListWidget>(screen, "Nume_Firma");
    int accepted = 0;
    QObject::connect(&screen, &QDialog::accepted, [&accepted] { ++accepted; });
    list.setCurrentRow(0);
    if (by_mouse) {
      const QPoint at = list.visualItemRect(list.item(0)).center();
      QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);  // the first of the two
      QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
    } else {
      QTest::keyClick(&list, Qt::Key_Return);
    }
    EXPECT_EQ(accepted, 1) << by_mouse;
    EXPECT_EQ(on.at.session.current.Cod_Fiscal, "RO11");
  }
}

TEST(CompanySelection, AMissingFileKeepsScreenAndCompany) {
  Selection on;
  on.at.files().Remove(Installation::InDataBase("RO11.mdb"));
  companies::Frm_Firme screen(on.context, nullptr);
  screen.show();
  on.Type(screen, "TxtCautare", "alfa");
  QTest::keyClick(&on.Get<QLineEdit>(screen, "TxtCautare"), Qt::Key_Down);
  on.at.prompter().ExpectMessage(
      "EROARE MAJORA, NU EXISTA FISIERUL : \r\n" + Installation::InDataBase("RO11.mdb"), "",
      platform::Icon::kCritical);
  QTest::keyClick(screen.focusWidget(), Qt::Key_Return);
  on.at.prompter().Verify();
  EXPECT_TRUE(screen.isVisible());
  EXPECT_EQ(on.at.session.current.Cod_Fiscal, Installation::kCompany);
  EXPECT_TRUE(on.at.session.company.is_open());
}

struct Defaults : ScreenFixture {
  Value Stored(const char* column) {
    return at.session.common
        .Scalar(fmt::format("SELECT {} FROM Intrastat_Default WHERE Cod_Fiscal='RO123456'", column))
        .value_or(Value());
  }
};

TEST(DefaultsScreen, AddsTheRowOnceAndOffersTheFallbacks) {
  Defaults on;
  on.at.session.common.Execute("DELETE FROM Intrastat_Default");
  for (int opening = 0; opening < 2; ++opening) {
    const companies::Frm_Firma_Default screen(on.context, nullptr);
    EXPECT_EQ(screen.windowTitle(), "Setari Implicite - PROBA SRL");
    EXPECT_EQ(screen.Text("I_Incoterms"), "CPT");
    EXPECT_EQ(screen.Text("O_Incoterms"), "EXW");
    EXPECT_EQ(screen.Text("I_Mod_Transp"), "3");
    EXPECT_EQ(screen.Text("O_Nat_Tranz"), "1.1");
    EXPECT_EQ(screen.Text("I_Tara_Exp"), "");
    EXPECT_EQ(on.at.session.common.Scalar("SELECT Count(*) FROM Intrastat_Default"), Value(1));
    EXPECT_EQ(on.Stored("I_Incoterms").ToText(), "");  // shown, not stored
  }
}

TEST(DefaultsScreen, StoresAndTakesEffectAtOnce) {
  Defaults on;
  companies::Frm_Firma_Default screen(on.context, nullptr);
  screen.show();
  EXPECT_EQ(screen.confirm_button()->text().remove('&'), "OK-Retine datele");
  on.Type(screen, "I_Tara_Exp", "de");
  EXPECT_EQ(on.Get<QLabel>(screen, "I_Tara_Exp_Descriere").text(), "Germania");
  on.Type(screen, "O_Tara_Dest", "ZZ");
  EXPECT_EQ(on.Get<QLabel>(screen, "O_Tara_Dest_Descriere").text(), "cod necunoscut");
  on.Type(screen, "O_Nat_Tranz", "8");  // one without second digit
  EXPECT_TRUE(on.Get<QLabel>(screen, "O_Nat_Tranz_Descriere").text().startsWith("Materiale"));
  screen.SetText("I_Incoterms", "");
  on.Click(screen, "CmdOK");
  EXPECT_FALSE(screen.isVisible());
  EXPECT_EQ(on.Stored("I_Tara_Exp"), Value("DE"));
  EXPECT_EQ(on.at.session.defaults.I_Tara_Exp, "DE");
  EXPECT_EQ(on.at.session.defaults.O_Tara_Dest, "ZZ");
  EXPECT_EQ(on.at.session.defaults.I_Incoterms, "CPT");
  EXPECT_EQ(on.at.session.defaults.O_Nat_Tranz, "8");
  EXPECT_THAT(test_support::SharedMnemonics(screen), testing::IsEmpty());
}

}  // namespace
