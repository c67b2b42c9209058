#include "declarations/screens/problems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QTextBlock>
#include <QTextBrowser>

#include "calc/checker.h"
#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"

namespace declarations {
namespace {

using test_support::ScreenFixture;

class ProblemsScreenTest : public testing::Test {
 protected:
  void Check() {
    on_.at.prompter().AcceptAnything(true);
    calc::Verifica_Declaratie(on_.at.session, "I", 2026, 3, false, {});
  }
  void Open() {
    screen_ = std::make_unique<Frm_Intrastat_Probleme>(
        on_.context, Identity{"I", "RO123456", 2026, 3},
        [this](const LineProblem& problem) {
          visited_.push_back(fmt::format("{} {}", problem.Record_ID, problem.column));
          return !gone_;
        },
        nullptr);
    screen_->show();
    QApplication::setActiveWindow(screen_.get());
  }
  QString Status() { return ScreenFixture::Get<QLabel>(*screen_, "LblMesaj").text(); }
  void DoubleClick(int line) {
    const QTextBlock block = screen_->text()->document()->findBlockByNumber(line);
    const QPoint at = screen_->text()->cursorRect(QTextCursor(block)).center();
    QTest::mouseDClick(screen_->text()->viewport(), Qt::LeftButton, {}, at + QPoint(20, 0));
  }

  ScreenFixture on_;
  std::unique_ptr<Frm_Intrastat_Probleme> screen_;
  std::vector<std::string> visited_;
  bool gone_ = false;
};

TEST_F(ProblemsScreenTest, EveryProblemLeadsToItsCell) {
  const std::int64_t first = test_support::AddLine(on_.at.session, "I", 2026, 3, {{"Tara_Exp", "RO"}});
  const std::int64_t second =
      test_support::AddLine(on_.at.session, "I", 2026, 3, {{"Nat_Tranz", "99"}, {"Incoterms", "QQQ"}});
  Check();
  Open();
  EXPECT_EQ(screen_->windowTitle(), "Probleme - ACHIZITIE 2026 / 3");
  EXPECT_EQ(screen_->problem_count(), 3);
  EXPECT_EQ(Status(), "Probleme: 3      Linii: 2");
  EXPECT_THAT(test_support::SharedMnemonics(*screen_), testing::IsEmpty());
  const std::string expected[] = {fmt::format("{} Tara_Exp", first), fmt::format("{} Nat_Tranz", second),
                                  fmt::format("{} Incoterms", second)};

  DoubleClick(2);  // the heading leads nowhere
  EXPECT_TRUE(visited_.empty());
  DoubleClick(9);
  EXPECT_EQ(screen_->current(), 1);
  QTest::keyClick(screen_->text(), Qt::Key_F3);
  ScreenFixture::Click(*screen_, "CmdUrmatoarea");  // goes round
  EXPECT_EQ(Status(), "Probleme: 3      Linii: 2      Problema 1 din 3");
  QTest::keyClick(screen_->text(), Qt::Key_Down);
  QTest::keyClick(screen_->text(), Qt::Key_Return);
  EXPECT_THAT(visited_, testing::ElementsAre(expected[1], expected[2], expected[0], expected[1]));
  gone_ = true;
  ScreenFixture::Click(*screen_, "CmdPrecedenta");
  EXPECT_THAT(Status().toStdString(), testing::EndsWith("linia ei nu mai exista in declaratie"));
}

TEST_F(ProblemsScreenTest, SaysWhenThereIsNothingToShow) {
  Open();
  EXPECT_EQ(Status(), "Declaratia nu a fost inca verificata");
  EXPECT_FALSE(ScreenFixture::Get<QPushButton>(*screen_, "CmdUrmatoarea").isEnabled());
  const std::int64_t line = test_support::AddLine(on_.at.session, "I", 2026, 3, {{"Cod_NC", "00000000"}});
  Check();
  screen_->Load();
  EXPECT_EQ(screen_->problem_count(), 1);
  ScreenFixture::Click(*screen_, "CmdUrmatoarea");
  EXPECT_THAT(visited_, testing::ElementsAre(fmt::format("{} Cod_NC", line)));
  on_.at.Run("DELETE FROM Intrastat");
  Check();
  screen_->Load();
  EXPECT_EQ(Status(), "Nu sunt probleme");
}

}  // namespace
}  // namespace declarations
