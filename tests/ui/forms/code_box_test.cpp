#include "ui/code_box.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

namespace {

class CodeBoxTest : public testing::Test {
 protected:
  CodeBoxTest() {
    box_.SetList({{{"AT", "AUSTRIA"}, {"DE", "GERMANIA"}, {"RO", "ROMANIA"}, {"1", "Una"}, {"11", "Doua"}}});
    box_.show();
    QApplication::setActiveWindow(&box_);
    box_.setFocus();
  }
  void Type(const QString& text) {
    box_.lineEdit()->selectAll();
    QTest::keyClicks(box_.lineEdit(), text);
    QApplication::processEvents();
  }
  QAbstractItemView& Choices() { return *box_.completer()->popup(); }

  ui::CodeBox box_;
};

TEST_F(CodeBoxTest, CompletesByAWordOfTheDescription) {
  QSignalSpy changes(&box_, &ui::CodeBox::CodeChanged);
  Type("mania");
  ASSERT_TRUE(Choices().isVisible());
  EXPECT_EQ(Choices().model()->rowCount(), 2);  // GERMANIA, ROMANIA
  QTest::keyClick(&Choices(), Qt::Key_Down);
  QTest::keyClick(&Choices(), Qt::Key_Down);
  QTest::keyClick(&Choices(), Qt::Key_Return);
  EXPECT_EQ(box_.code(), "RO");
  EXPECT_EQ(box_.description(), "ROMANIA");
  EXPECT_EQ(changes.count(), 6);
}

TEST_F(CodeBoxTest, ACompleteCodeLeavesNothingToChoose) {
  Type("RO");
  EXPECT_FALSE(Choices().isVisible());
  Type("1");  // "11" can still come of it
  EXPECT_TRUE(Choices().isVisible());
}

TEST_F(CodeBoxTest, TheListOpensAtItsCode) {
  box_.SetCode("RO");
  box_.showPopup();
  EXPECT_EQ(box_.view()->currentIndex().row(), 2);
  QTest::keyClick(box_.view(), Qt::Key_Up);
  QTest::keyClick(box_.view(), Qt::Key_Return);
  EXPECT_EQ(box_.code(), "DE");
  box_.SetCode("A");
  box_.showPopup();
  EXPECT_EQ(box_.view()->currentIndex().row(), 0);
  box_.hidePopup();
  EXPECT_EQ(box_.code(), "A");
}

TEST_F(CodeBoxTest, KeepsWhatIsNotInTheList) {
  Type("ZZ");
  EXPECT_EQ(box_.code(), "ZZ");
  EXPECT_EQ(box_.description(), "");
  box_.SetCode("QV");
  EXPECT_EQ(box_.code(), "QV");
  box_.SetList({{{"QV", "NECUNOSCUT"}}});
  EXPECT_EQ(box_.code(), "QV");
  EXPECT_EQ(box_.description(), "NECUNOSCUT");
}

TEST_F(CodeBoxTest, AltDownOpensBothColumns) {
  QTest::keyClick(&box_, Qt::Key_Down, Qt::AltModifier);
  ASSERT_TRUE(box_.view()->isVisible());
  const QAbstractItemModel& lines = *box_.view()->model();
  EXPECT_EQ(lines.headerData(0, Qt::Horizontal), "Cod");
  EXPECT_EQ(lines.headerData(1, Qt::Horizontal), "Denumire");
  EXPECT_EQ(lines.index(1, 1).data(), "GERMANIA");
  box_.view()->setCurrentIndex(lines.index(1, 0));
  QTest::keyClick(box_.view(), Qt::Key_Return);
  EXPECT_EQ(box_.code(), "DE");
  EXPECT_EQ(box_.currentText(), "DE");
}

TEST_F(CodeBoxTest, ShowsNamesAndKeepsTheirCodes) {
  box_.SetCode("DE");
  box_.ShowDescriptions(true);
  EXPECT_EQ(box_.currentText(), "GERMANIA");
  EXPECT_EQ(box_.code(), "DE");
  Type("austr");
  QTest::keyClick(&Choices(), Qt::Key_Down);
  QTest::keyClick(&Choices(), Qt::Key_Return);
  EXPECT_EQ(box_.currentText(), "AUSTRIA");
  EXPECT_EQ(box_.code(), "AT");
  Type("romania");
  EXPECT_EQ(box_.code(), "RO");
  box_.SetCode("AT");
  EXPECT_EQ(box_.currentText(), "AUSTRIA");
}

TEST_F(CodeBoxTest, TheWheelChangesNothing) {
  box_.SetCode("DE");
  QWheelEvent wheel({5, 5}, {5, 5}, {0, 120}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&box_, &wheel);
  EXPECT_EQ(box_.code(), "DE");
}

}  // namespace
