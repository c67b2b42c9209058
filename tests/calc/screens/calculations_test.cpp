#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QRadioButton>
#include <QTimer>

#include "calc/screens/net_mass.h"
#include "calc/screens/stat_value.h"
#include "calc/screens/transport.h"
#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"
#include "ui/totals_row.h"

namespace calc {
namespace {

using platform::Icon;
using test_support::Installation;
using test_support::LineValues;
using test_support::ScreenFixture;
using testing::HasSubstr;

const store::Value kNull;
const declarations::Identity kArrivals{"I", Installation::kCompany, 2026, 3};

class CalculationScreens : public testing::Test {
 protected:
  std::int64_t Line(const LineValues& changes) {
    return test_support::AddLine(on_.at.session, "I", 2026, 3, changes);
  }
  store::Value Stored(std::int64_t id, const std::string& column) {
    return on_.at.Get("SELECT [" + column + "] FROM Intrastat WHERE Record_ID=" + std::to_string(id));
  }
  template <typename Screen>
  Screen& Show() {
    auto screen = std::make_unique<Screen>(on_.context, kArrivals, nullptr);
    QObject::connect(screen.get(), &GroupScreen::LinesChanged, [this] { ++changed_; });
    screen->show();
    screen->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(screen.get()));
    Screen& shown = *screen;
    screen_ = std::move(screen);
    return shown;
  }
  ui::Grid& Groups() { return ScreenFixture::Get<ui::Grid>(*screen_, "Grid"); }
  ui::Grid& Figures() { return ScreenFixture::Get<ui::Grid>(*screen_, "Previzualizare"); }
  static int ColumnOf(ui::Grid& grid, const char* caption) {
    const std::vector<ui::Column>& columns = grid.grid_model()->columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (columns[i].caption == QLatin1String(caption)) return static_cast<int>(i);
    }
    throw std::runtime_error(std::string("no column ") + caption);
  }
  static std::string Cell(ui::Grid& grid, int row, const char* caption) {
    return grid.grid_model()->TextAt(row, ColumnOf(grid, caption)).toStdString();
  }
  static bool Ticked(ui::Grid& grid, int row) {
    return grid.grid_model()->ValueAt(row, ColumnOf(grid, "Redistribuie")).ToBoolean();
  }
  /// Typed over the cell, which stays open.
  QLineEdit* BeginTyping(int row, const char* caption, const QString& text) {
    Groups().setFocus();
    Groups().SelectRow(row, ColumnOf(Groups(), caption));
    QTest::keyClicks(&Groups(), text.left(1));
    auto* editor = Groups().viewport()->findChild<QLineEdit*>();
    EXPECT_NE(editor, nullptr) << caption;
    if (editor != nullptr) QTest::keyClicks(editor, text.mid(1));
    return editor;
  }
  /// Typed over the cell and left with Enter.
  void Type(int row, const char* caption, const QString& text) {
    QLineEdit* editor = BeginTyping(row, caption, text);
    ASSERT_NE(editor, nullptr);
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  QRadioButton& Option(const char* name) { return ScreenFixture::Get<QRadioButton>(*screen_, name); }
  std::string Status() { return ScreenFixture::Get<QLabel>(*screen_, "Stare").text().toStdString(); }
  void Run() { ScreenFixture::Click(*screen_, "CmdAjustare"); }
  void ExpectDone(int groups) {
    on_.at.prompter().ExpectInfo("Redistribuire terminata. Distribuire pe :" + std::to_string(groups) +
                                 " linii");
  }
  void ExpectAsked(const char* question, bool answer) {
    on_.at.prompter().ExpectQuestion(question, "RASPUNDETI", Icon::kQuestion, answer);
  }

  ScreenFixture on_;
  std::unique_ptr<GroupScreen> screen_;
  int changed_ = 0;
};

TEST_F(CalculationScreens, ATransportInvoiceIsTypedPreviewedAndShared) {
  std::vector<std::int64_t> ids;
  for (int i = 0; i < 3; ++i) ids.push_back(Line({{"Factura_Numar", "F1"}, {"Cantitate", 1.0}}));
  const std::int64_t other = Line({{"Factura_Numar", "F2"}, {"Val_Stat", 7.0}});
  Show<Frm_Calcul_Transp_Statistic>();
  EXPECT_THAT(test_support::SharedMnemonics(*screen_), testing::IsEmpty());
  EXPECT_EQ(screen_->windowTitle(), "Redistribuire transport - ACHIZITIE 2026 / 3");
  EXPECT_TRUE(Option("Redis_Mod_Cantitate").isChecked());
  EXPECT_TRUE(Option("Redis_Op_Doc").isChecked());
  EXPECT_EQ(ScreenFixture::Get<QLabel>(*screen_, "Ajutor").text(),
            "Bifati prima coloana Redistribuie si introduceti suma de redistribuit\n"
            "Pentru conditiile de livrare CIP; CIF; CPT; CFR; DDU; DDP; DES; DAF sumele trebuie sa fie "
            "NEGATIVE si se vor introduce cu minus\n"
            "In cazul in care nu se specifica moneda si cursul se va considera RON si cursul egal cu 1\n"
            "Pentru a sterge o redistribuire bifati coloana redistribuie si introduceti la suma de "
            "redistribuit ZERO");

  // The grid is where typing starts, on the first group's amount; its order is not the list's.
  EXPECT_EQ(screen_->focusWidget(), &Groups());
  Option("Redis_Op_Doc").setFocus();
  QTest::keyClick(&Option("Redis_Op_Doc"), Qt::Key_Tab);
  EXPECT_EQ(screen_->focusWidget(), &ScreenFixture::Get<QPushButton>(*screen_, "Redis_Op_Proc"));
  QTest::keyClick(screen_->focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(screen_->focusWidget(), &Groups());
  Figures().setFocus();
  QTest::keyClick(&Figures(), Qt::Key_Tab);
  EXPECT_EQ(screen_->focusWidget(), &ScreenFixture::Get<QPushButton>(*screen_, "CmdAjustare"));
  Groups().sortByColumn(ColumnOf(Groups(), "Factura Numar"), Qt::DescendingOrder);
  ASSERT_EQ(Cell(Groups(), 1, "Factura Numar"), "F1");
  EXPECT_EQ(Cell(Groups(), 1, "Suma de redistribuit"), "") << "nothing entered yet";
  Type(1, "Suma de redistribuit", "100");
  EXPECT_TRUE(Ticked(Groups(), 1));
  Type(1, "Moneda Optional", "EUR");
  EXPECT_THAT(Groups().grid_model()->ProblemAt(1, -1).toStdString(), HasSubstr("EUR nu are curs"));
  EXPECT_EQ(Groups().grid_model()->ProblemAt(0, -1), "");
  Type(1, "Curs  Optional", "4,9751");
  Type(1, "Factura Transp. Optional", "T 1");
  ASSERT_EQ(Figures().grid_model()->Rows(), 1);
  EXPECT_EQ(Cell(Figures(), 0, "Linii"), "3");
  EXPECT_EQ(Cell(Figures(), 0, "Redistribuit"), "99,9999");
  EXPECT_EQ(Cell(Figures(), 0, "Valoare Statistica"), "797,52");
  EXPECT_EQ(Cell(Figures(), 0, "Observatii"), "");
  EXPECT_EQ(Stored(ids[0], "Transport_Suma"), kNull) << "nothing is written before CmdAjustare";

  ExpectDone(1);
  Run();
  on_.at.prompter().Verify();
  EXPECT_EQ(changed_, 1);
  for (const std::int64_t id : ids) {
    EXPECT_EQ(Stored(id, "Transport_Suma"), 33.3333);
    EXPECT_EQ(Stored(id, "Val_Stat"), 100 + 165.84);
    EXPECT_EQ(Stored(id, "Transp_Document"), "T 1");
  }
  EXPECT_EQ(Stored(other, "Val_Stat"), 7.0);
  EXPECT_EQ(Cell(Figures(), 0, "Diferenta"), "0,0001");
  EXPECT_THAT(Status(), HasSubstr("0,0001"));
  EXPECT_THAT(ScreenFixture::Get<QLabel>(*screen_, "Previzualizare_Titlu").text().toStdString(),
              HasSubstr("Ce a primit"));

  // The next amount prepares another run; the ticks of the first are part of it.
  Type(0, "Suma de redistribuit", "0");
  EXPECT_EQ(Figures().grid_model()->Rows(), 2);
  EXPECT_EQ(Cell(Groups(), 0, "Suma de redistribuit"), "0,00");
  Groups().SelectRow(0, ColumnOf(Groups(), "Redistribuie"));
  QTest::keyClick(&Groups(), Qt::Key_Space);
  EXPECT_FALSE(Ticked(Groups(), 0));
  EXPECT_EQ(Figures().grid_model()->Rows(), 1);

  const char question[] = "Sterg toate sumele redistribuite in aceasta declaratie Intrastat ?";
  ExpectAsked(question, false);
  ScreenFixture::Click(*screen_, "CmdStergeRedistribuire");
  EXPECT_EQ(changed_, 1);
  ExpectAsked(question, true);
  ScreenFixture::Click(*screen_, "CmdStergeRedistribuire");
  EXPECT_EQ(changed_, 2);
  EXPECT_EQ(Stored(ids[0], "Transport_Suma"), kNull);
  EXPECT_EQ(Stored(other, "Val_Stat"), 100.0);

  ScreenFixture::Click(*screen_, "CmdInfo");
  EXPECT_EQ(on_.opened_pages, std::vector<std::string>{"incoterms.html"});
}

TEST_F(CalculationScreens, OptionsMakeTheListAndAskBeforeDroppingWhatWasEntered) {
  Line({{"Factura_Numar", "F1"}, {"Cantitate", 0.0}, {"Incoterms", "EXW"}});
  Line({{"Factura_Numar", "F2"}, {"Val_Fiscala", 0.0}, {"Incoterms", "CPT"}});
  Show<Frm_Calcul_Transp_Statistic>();
  ASSERT_EQ(Groups().grid_model()->Rows(), 1);
  Option("Redis_Mod_Valoare").click();
  ASSERT_EQ(Groups().grid_model()->Rows(), 1);
  EXPECT_EQ(Cell(Groups(), 0, "Factura Numar"), "F1");
  Option("Redis_Mod_Net").click();
  ASSERT_EQ(Groups().grid_model()->Rows(), 2);
  Type(0, "Suma de redistribuit", "50");

  // F1 is listed by value too: what was entered goes along. By quantity it is not.
  Option("Redis_Mod_Valoare").click();
  EXPECT_EQ(Cell(Groups(), 0, "Suma de redistribuit"), "50,00");
  EXPECT_EQ(Figures().grid_model()->Rows(), 1);
  const char question[] =
      "Ce ati introdus la un grup nu a fost redistribuit si se pierde la schimbarea optiunii. Continui ?";
  ExpectAsked(question, false);
  Option("Redis_Mod_Cantitate").click();
  EXPECT_TRUE(Option("Redis_Mod_Valoare").isChecked());
  ExpectAsked(question, true);
  Option("Redis_Op_Incoterms").click();
  EXPECT_EQ(Cell(Groups(), 0, "Cond livrare"), "EXW");
  EXPECT_EQ(Cell(Groups(), 0, "Suma de redistribuit"), "");
  EXPECT_EQ(Figures().grid_model()->Rows(), 0);
  Option("Redis_Op_Incoterms").setFocus();
  QTest::keyClick(&Option("Redis_Op_Incoterms"), Qt::Key_Right);
  EXPECT_TRUE(Option("Redis_Op_VAT").isChecked());
  EXPECT_EQ(Cell(Groups(), 0, "Exp TVA cod"), "");

  Type(0, "Suma de redistribuit", "5");
  const char closing[] = "Sumele introduse nu au fost redistribuite si se pierd. Inchid ecranul ?";
  ExpectAsked(closing, false);
  QTest::keyClick(screen_.get(), Qt::Key_Escape);
  EXPECT_TRUE(screen_->isVisible());
  ExpectAsked(closing, true);
  ScreenFixture::Click(*screen_, "CmdRenunt");
  EXPECT_FALSE(screen_->isVisible());
  EXPECT_EQ(changed_, 0);
}

TEST_F(CalculationScreens, PercentagesOpenFromTheTransportScreen) {
  const std::int64_t id = Line({{"Val_Fiscala", 1000.0}});
  const std::int64_t sea = Line({{"Val_Fiscala", 10.0}, {"Mod_Transp", "1"}});
  Show<Frm_Calcul_Transp_Statistic>();
  bool opened = false;
  QTimer::singleShot(0, [&] {
    auto* percentages = qobject_cast<Frm_Recalculare_ValStat*>(QApplication::activeModalWidget());
    ASSERT_NE(percentages, nullptr);
    opened = true;
    EXPECT_THAT(test_support::SharedMnemonics(*percentages), testing::IsEmpty());
    auto& grid = ScreenFixture::Get<ui::Grid>(*percentages, "Grid");
    EXPECT_EQ(grid.grid_model()->Rows(), 2);
    const int procent = ColumnOf(grid, "Procent");
    const int row = Cell(grid, 0, "Mod transp") == "3" ? 0 : 1;
    EXPECT_EQ(Cell(grid, row, "Procent"), "0,0000");
    on_.at.prompter().ExpectError("\"2 la suta\" nu este un numar");
    EXPECT_FALSE(grid.Store(row, procent, "2 la suta"));
    EXPECT_TRUE(grid.Store(row, procent, "2,5"));
    auto& figures = ScreenFixture::Get<ui::Grid>(*percentages, "Previzualizare");
    EXPECT_EQ(Cell(figures, row, "Valoare Statistica"), "1.025,00");
    EXPECT_EQ(Stored(id, "Val_Stat"), 110.0);
    on_.at.prompter().ExpectInfo("Recalculare Terminata");
    ScreenFixture::Click(*percentages, "CmdAjustare");
    ScreenFixture::Click(*percentages, "CmdClose");
  });
  ScreenFixture::Click(*screen_, "Redis_Op_Proc");
  EXPECT_TRUE(opened);
  EXPECT_TRUE(Option("Redis_Op_Doc").isChecked());
  EXPECT_EQ(changed_, 1);
  EXPECT_EQ(Stored(id, "Val_Stat"), 1025.0);
  EXPECT_EQ(Stored(id, "Raport_Stat"), 1.025);
  EXPECT_EQ(Stored(sea, "Val_Stat"), 10.0) << "every group is recalculated";
}

TEST_F(CalculationScreens, NetMassesArePastedAndSharedByCode) {
  std::vector<std::int64_t> ids;
  for (int i = 0; i < 3; ++i) ids.push_back(Line({{"Cod_NC", "84713000"}, {"Cantitate", 1.0}}));
  ids.push_back(Line({{"Cod_NC", "85044090"}}));
  ids.push_back(Line({{"Cod_NC", "9504'091"}}));
  Show<Frm_Calcul_Net>();
  EXPECT_THAT(test_support::SharedMnemonics(*screen_), testing::IsEmpty());
  EXPECT_EQ(screen_->findChild<QRadioButton*>("Redis_Mod_Net"), nullptr);
  EXPECT_EQ(ScreenFixture::Get<QLabel>(*screen_, "Ajutor").text(),
            "Bifati / Debifati prima coloana Redistribuie si introduceti GREUATTEA NETA DE REDISTRIBUIT");
  Option("Redis_Op_CodVamal").click();
  ASSERT_EQ(Groups().grid_model()->Rows(), 3);
  Q_EMIT Groups().Pasted(0, ColumnOf(Groups(), "Greutate de redistribuit"), "10\t999\n\n7,5\n");
  EXPECT_TRUE(Ticked(Groups(), 0));
  EXPECT_FALSE(Ticked(Groups(), 1));
  EXPECT_EQ(Cell(Groups(), 0, "Cantitate"), "3") << "what cannot be edited stays";
  EXPECT_EQ(Cell(Figures(), 0, "Diferenta [Kg]"), "0,01");
  const std::string totals = ScreenFixture::Get<ui::TotalsRow>(*screen_, "Totaluri")
                                 .text(ColumnOf(Groups(), "Greutate de redistribuit"))
                                 .toStdString();
  EXPECT_EQ(totals, "17,50");

  ExpectDone(2);
  Run();
  EXPECT_EQ(Stored(ids[0], "Net"), 3.33);
  EXPECT_EQ(Stored(ids[0], "Val_Stat"), 110.0);
  EXPECT_THAT(Status(), HasSubstr("Nu s-a putut calcula pe un grup"));
  EXPECT_THAT(Cell(Figures(), 1, "Observatii"), HasSubstr("Eroare"));
  EXPECT_EQ(Cell(Figures(), 1, "Redistribuit [Kg]"), "");
  screen_->close();
  EXPECT_FALSE(screen_->isVisible()) << "nothing left to ask for";
}

TEST_F(CalculationScreens, WhatIsBeingTypedBelongsToTheRun) {
  const std::int64_t id = Line({{"Cantitate", 1.0}, {"Factura_Numar", "F1"}});
  Show<Frm_Calcul_Transp_Statistic>();
  BeginTyping(0, "Suma de redistribuit", "100");
  ExpectDone(1);
  Run();
  EXPECT_EQ(Stored(id, "Transport_Suma"), 100.0);

  // The same amount typed again ticks the row again; a cell only looked into does not.
  Groups().SelectRow(0, ColumnOf(Groups(), "Redistribuie"));
  QTest::keyClick(&Groups(), Qt::Key_Space);
  ASSERT_FALSE(Ticked(Groups(), 0));
  Groups().SelectRow(0, ColumnOf(Groups(), "Suma de redistribuit"));
  QTest::keyClick(&Groups(), Qt::Key_F2);
  QTest::keyClick(Groups().viewport()->findChild<QLineEdit*>(), Qt::Key_Return);
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(Ticked(Groups(), 0));
  Type(0, "Suma de redistribuit", "100");
  EXPECT_TRUE(Ticked(Groups(), 0));

  BeginTyping(0, "Curs  Optional", "x");
  on_.at.prompter().ExpectError("\"x\" nu este un numar");
  screen_->close();
  EXPECT_TRUE(screen_->isVisible());
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  Type(0, "Curs  Optional", "4.975");  // the number pad's point
  EXPECT_EQ(Cell(Groups(), 0, "Curs  Optional"), "4,9750");
  ExpectAsked("Sumele introduse nu au fost redistribuite si se pierd. Inchid ecranul ?", true);
  screen_->close();
}

TEST_F(CalculationScreens, AStoppedRunKeepsWhatWasEnteredAndAnEmptyListSaysWhy) {
  const std::int64_t id = Line({{"Cantitate", kNull}, {"Factura_Numar", "F1"}});
  Show<Frm_Calcul_Net>();
  EXPECT_EQ(Groups().grid_model()->Rows(), 0);
  EXPECT_THAT(Groups().empty_text().toStdString(), HasSubstr("cantitate"));
  ExpectDone(0);
  Run();
  Option("Redis_Mod_Valoare").click();
  Type(0, "Greutate de redistribuit", "5");
  on_.at.machine.progress.cancelled = true;
  on_.at.prompter().ExpectMessage("Calculul a fost oprit, nu s-a modificat nicio linie", "MESAJ",
                                  Icon::kExclamation);
  const int before = changed_;
  Run();
  EXPECT_EQ(changed_, before);
  EXPECT_EQ(Stored(id, "Net"), 10.0);
  ExpectAsked("Greutatile introduse nu au fost redistribuite si se pierd. Inchid ecranul ?", true);
  screen_->close();
}

}  // namespace
}  // namespace calc
