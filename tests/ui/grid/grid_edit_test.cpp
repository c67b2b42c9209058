#include <QAbstractItemView>

#include "ui/code_box.h"
#include "ui/grid/grid_fixture.h"

namespace {

using test_support::GridFixture;
using test_support::ShownGrid;

TEST(GridEdit, TypingReplacesAndEnterGoesOnToTheRight) {
  GridFixture at;
  ShownGrid shown(at, at.Columns());
  shown.grid.SelectRow(0, 1);
  shown.Keys("7.4.26");
  shown.Key(Qt::Key_Return);
  EXPECT_EQ(at.Stored("Data", 1), store::Value(store::Date{46119}));
  EXPECT_EQ(shown.At(), "0,2");
  shown.Keys("Rondela");
  shown.Key(Qt::Key_Tab);
  shown.Keys("20");
  shown.Key(Qt::Key_Tab);
  shown.Keys("1.234,5");
  shown.Key(Qt::Key_Return);
  EXPECT_EQ(at.Stored("Descriere", 1).text(), "Rondela");
  EXPECT_EQ(at.Stored("Cod", 1).text(), "20");  // an unknown code stays as typed
  EXPECT_EQ(at.Stored("Valoare", 1).ToDouble(), 1234.5);
  EXPECT_EQ(shown.At(), "0,5");
  shown.Key(Qt::Key_Space);
  EXPECT_FALSE(at.Stored("Bifa", 1).ToBoolean());
  shown.Key(Qt::Key_Return);
  EXPECT_EQ(shown.At(), "1,1");  // the next line, past the hidden column
  shown.Key(Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ(shown.At(), "0,5");
}

TEST(GridEdit, EscapeArrowsAndF2) {
  GridFixture at;
  ShownGrid shown(at, at.Columns());
  shown.grid.SelectRow(1, 2);
  shown.Keys("xyz");
  shown.Key(Qt::Key_Escape);
  EXPECT_EQ(at.Stored("Descriere", 2).text(), "Surub");
  EXPECT_EQ(shown.At(), "1,2");
  shown.Keys("A");
  shown.Key(Qt::Key_Down);
  EXPECT_EQ(at.Stored("Descriere", 2).text(), "A");
  EXPECT_EQ(shown.At(), "2,2");
  // F2 goes into the text: arrows belong to it.
  shown.Key(Qt::Key_F2);
  shown.Key(Qt::Key_Home);
  shown.Key(Qt::Key_Right);
  shown.Keys("_");
  shown.Key(Qt::Key_Return);
  EXPECT_EQ(at.Stored("Descriere", 3).text(), "P_iesa albastra");
}

TEST(GridEdit, RefusedTextsAreShownAndNeverTrap) {
  GridFixture at;
  ShownGrid shown(at, at.Columns());
  shown.grid.SelectRow(0, 4);
  shown.Keys("abc");
  at.at.prompter().ExpectError("\"abc\" nu este un numar");
  shown.Key(Qt::Key_Return);
  EXPECT_EQ(at.Stored("Valoare", 1).ToDouble(), 1000.125);
  EXPECT_EQ(shown.At(), "0,4");
  shown.Key(Qt::Key_Tab);
  EXPECT_EQ(shown.At(), "0,5");
  // What the store refuses is shown by the common error routine.
  shown.grid.SelectRow(0, 2);
  shown.Keys("mai lung decat douazeci de litere");
  at.at.prompter().AcceptAnything(true);
  shown.Key(Qt::Key_Return);
  EXPECT_EQ(at.at.prompter().seen().size(), 2u);
  EXPECT_EQ(at.Stored("Descriere", 1).text(), "Piesa rosie");
}

TEST(GridEdit, LeavingByMouseStores) {
  GridFixture at;
  ShownGrid shown(at, at.Columns());
  shown.grid.SelectRow(0, 2);
  shown.Keys("Cui");
  const QRect other = shown.grid.visualRect(shown.model.index(3, 2));
  QTest::mouseClick(shown.grid.viewport(), Qt::LeftButton, {}, other.center());
  QApplication::processEvents();
  EXPECT_EQ(at.Stored("Descriere", 1).text(), "Cui");
  EXPECT_EQ(shown.At(), "3,2");
}

TEST(GridEdit, CodeCellsOpenTheirList) {
  GridFixture at;
  ShownGrid shown(at, at.Columns());
  shown.grid.SelectRow(0, 3);
  shown.Key(Qt::Key_Down, Qt::AltModifier);
  auto* box = shown.grid.findChild<ui::CodeBox*>();
  ASSERT_NE(box, nullptr);
  EXPECT_TRUE(box->view()->isVisible());
  QTest::keyClick(box->view(), Qt::Key_Down);
  QTest::keyClick(box->view(), Qt::Key_Return);
  EXPECT_FALSE(box->view()->isVisible());
  const QString chosen = box->code();
  EXPECT_NE(at.codes.Find(chosen), nullptr) << chosen.toStdString();
  QTest::keyClick(box, Qt::Key_Return);
  EXPECT_EQ(at.Stored("Cod", 1).text(), chosen.toStdString());
  EXPECT_EQ(shown.At(), "0,4");
}

TEST(GridEdit, TheLastCellTellsThatItWasLeft) {
  GridFixture at;
  ShownGrid shown(at, at.Columns());
  QSignalSpy past(&shown.grid, &ui::Grid::PastEnd);
  shown.grid.SelectRow(4, 4);
  shown.Key(Qt::Key_Return);
  EXPECT_TRUE(past.isEmpty());
  shown.Key(Qt::Key_Return);
  EXPECT_EQ(past.size(), 1);
}

TEST(GridEdit, ReadOnlyGridsOpenTheirRow) {
  GridFixture at;
  ShownGrid shown(at, at.ReadOnlyColumns());
  QSignalSpy activated(&shown.grid, &ui::Grid::Activated);
  QSignalSpy pasted(&shown.grid, &ui::Grid::Pasted);
  shown.grid.SelectRow(2);
  shown.Key(Qt::Key_Return);
  const QPoint place = shown.grid.visualRect(shown.model.index(1, 2)).center();
  QTest::mouseClick(shown.grid.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(shown.grid.viewport(), Qt::LeftButton, {}, place);
  ASSERT_EQ(activated.size(), 2);
  EXPECT_EQ(activated[0][0].toInt(), 2);
  EXPECT_EQ(activated[1][0].toInt(), 1);
  shown.Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_TRUE(pasted.isEmpty());
}

}  // namespace
