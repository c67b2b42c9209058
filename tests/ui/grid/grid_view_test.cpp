#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>

#include "ui/grid/grid_fixture.h"
#include "ui/grid_frozen.h"
#include "ui/list_screen.h"

namespace {

using test_support::GridFixture;
using test_support::ShownGrid;

TEST(Grid, CopiesBlocksThatPasteWell) {
  GridFixture at;
  ShownGrid shown(at, at.Columns());
  shown.grid.selectionModel()->select({shown.model.index(0, 0), shown.model.index(1, 5)},
                                      QItemSelectionModel::ClearAndSelect);
  shown.Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            "01.03.2026\tPiesa rosie\t500\t1000,125\tDa\n"
            "02.03.2026\tSurub\t499\t2000,125\tNu\n");
  // As the columns stand on screen; cells outside of the selection stay empty.
  shown.grid.horizontalHeader()->moveSection(2, 1);
  shown.grid.selectionModel()->select(shown.model.index(0, 2), QItemSelectionModel::ClearAndSelect);
  shown.grid.selectionModel()->select(shown.model.index(2, 1), QItemSelectionModel::Select);
  EXPECT_EQ(shown.grid.SelectedText().toStdString(), "Piesa rosie\t\n\t03.03.2026\n");
  QSignalSpy pasted(&shown.grid, &ui::Grid::Pasted);
  shown.grid.SelectRow(3, 4);
  shown.Key(Qt::Key_V, Qt::ControlModifier);
  ASSERT_EQ(pasted.size(), 1);
  EXPECT_EQ(pasted[0][0].toInt(), 3);
  EXPECT_EQ(pasted[0][1].toInt(), 4);
}

TEST(Grid, HeadingsSortAndTheRowIsKept) {
  GridFixture at;
  ShownGrid shown(at, at.ReadOnlyColumns());
  shown.grid.SelectRow(1, 2);
  QHeaderView* header = shown.grid.horizontalHeader();
  const QPoint heading(header->sectionViewportPosition(3) + 10, header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, heading);
  EXPECT_EQ(shown.model.TextAt(0, 3), "496");
  EXPECT_EQ(shown.model.TextAt(shown.grid.current_row(), 2), "Surub");
  EXPECT_EQ(shown.grid.currentIndex().column(), 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, heading);
  EXPECT_EQ(shown.model.TextAt(0, 3), "500");
  EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
  EXPECT_EQ(shown.grid.selected_rows(), std::vector<int>{1});
}

TEST(Grid, TheFrozenColumnStaysAndCoversNoCurrentCell) {
  GridFixture at;
  std::vector<ui::Column> columns = at.Columns();
  columns.erase(columns.begin());
  columns[0].editable = false;
  ShownGrid shown(at, columns);
  shown.grid.SetFillsWidth(false);
  shown.grid.FreezeFirstColumn();
  shown.grid.resize(260, 300);
  shown.grid.SelectRow(1, 4);
  QApplication::processEvents();
  auto* frozen = shown.grid.findChild<ui::FrozenColumn*>();
  ASSERT_NE(frozen, nullptr);
  EXPECT_GT(shown.grid.horizontalScrollBar()->value(), 0);
  EXPECT_TRUE(frozen->isVisible());
  shown.grid.SelectRow(1, 2);
  EXPECT_GE(shown.grid.columnViewportPosition(2), shown.grid.columnWidth(0));
  // A click on it chooses the row, without a jump of the rest.
  const int scrolled = shown.grid.horizontalScrollBar()->value();
  QTest::mouseClick(frozen->viewport(), Qt::LeftButton, {}, {10, frozen->rowViewportPosition(3) + 4});
  EXPECT_EQ(shown.At(), "3,0");
  EXPECT_EQ(shown.grid.horizontalScrollBar()->value(), scrolled);
  EXPECT_TRUE(shown.grid.hasFocus());
}

TEST(Grid, RemembersWidthsOrderAndSort) {
  GridFixture at;
  {
    ShownGrid shown(at, at.Columns());
    shown.grid.horizontalHeader()->resizeSection(2, 321);
    shown.grid.horizontalHeader()->moveSection(4, 1);
    shown.grid.horizontalHeader()->setSortIndicator(2, Qt::DescendingOrder);
  }
  ShownGrid again(at, at.Columns());
  EXPECT_EQ(again.grid.columnWidth(2), 321);
  EXPECT_EQ(again.grid.visible_columns(), (std::vector<int>{4, 1, 2, 3, 5}));
  EXPECT_EQ(again.model.TextAt(0, 2), "Surub lung");
  EXPECT_TRUE(again.grid.isColumnHidden(0));

  // Columns that came or went meanwhile, and a memory that makes no sense.
  std::vector<ui::Column> fewer = at.Columns();
  fewer.erase(fewer.begin() + 2);
  fewer.push_back({.field = "ID", .caption = "Alt ID"});
  ShownGrid other(at, fewer);
  EXPECT_EQ(other.grid.visible_columns(), (std::vector<int>{3, 1, 2, 4, 5}));
  EXPECT_EQ(other.grid.current_row(), 0);
  at.memory.Set("Frm_Proba", "coloane", "=;Cod;Cod=x;;Bifa=999999;Bifa=5;#7=3");
  at.memory.Set("Frm_Proba", "ordine", "Nimic ASC");
  ShownGrid odd(at, at.Columns());
  EXPECT_LE(odd.grid.columnWidth(5), 3000);
  EXPECT_EQ(odd.grid.visible_columns().size(), 5u);
}

TEST(Grid, SearchesWhileTyping) {
  GridFixture at;
  ShownGrid shown(at, at.ReadOnlyColumns());
  QSignalSpy texts(&shown.grid, &ui::Grid::SearchText), columns(&shown.grid, &ui::Grid::SearchColumn);
  shown.grid.SelectRow(2, 2);
  shown.Key(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(columns.back()[0], "Descriere");
  shown.Keys("su");
  EXPECT_EQ(texts.back()[0], "In curs de cautare : su");
  EXPECT_EQ(shown.grid.current_row(), 1);
  shown.Key(Qt::Key_F3);
  EXPECT_EQ(shown.grid.current_row(), 4);
  shown.Key(Qt::Key_F3);
  EXPECT_EQ(shown.grid.current_row(), 1);
  shown.Keys("x");
  EXPECT_EQ(texts.back()[0], "In curs de cautare : sux   (nu exista)");
  EXPECT_EQ(shown.grid.current_row(), 1);
  shown.Key(Qt::Key_Backspace);
  EXPECT_EQ(texts.back()[0], "In curs de cautare : su");
  shown.Key(Qt::Key_Escape);
  EXPECT_EQ(texts.back()[0], "");
  EXPECT_FALSE(shown.grid.searching());
  // Where nothing can be edited, typing is enough; an apostrophe is a letter like others.
  shown.Keys("piulita d'");
  EXPECT_EQ(shown.grid.current_row(), 3);
  shown.Key(Qt::Key_Up);
  EXPECT_FALSE(shown.grid.searching());
  EXPECT_EQ(shown.grid.current_row(), 2);

  shown.grid.SelectRow(0, 4);
  at.at.prompter().ExpectMessage(
      "In aceasta coloana cautarea nu se poate realiza, rezultate obtinute inexacte", "Mesaj",
      platform::Icon::kExclamation);
  shown.grid.StartSearch();
  EXPECT_FALSE(shown.grid.searching());
}

TEST(Grid, EscapeEndsTheSearchBeforeTheScreen) {
  GridFixture at;
  ui::RecordsetModel model(at.ReadOnlyColumns(), at.Rows());
  ui::ListScreen screen(at.context, "Frm_Proba", nullptr);
  screen.AddListCommands("  REPORT - Proba");
  screen.SetModel(&model);
  screen.show();
  QApplication::setActiveWindow(&screen);
  screen.grid()->SelectRow(0, 2);
  at.Click(screen, "CmdCautare");
  auto& column = at.Get<QLabel>(screen, "Caut");
  EXPECT_EQ(column.text(), "Caut in coloana: Descriere");
  EXPECT_TRUE(column.isVisible());
  QTest::keyClick(screen.grid(), Qt::Key_Escape);
  EXPECT_FALSE(column.isVisible());
  EXPECT_TRUE(screen.isVisible());
  QTest::keyClick(screen.grid(), Qt::Key_Escape);
  EXPECT_FALSE(screen.isVisible());
  model.SetFilter("[Descriere] LIKE 'Surub*'");
  EXPECT_EQ(at.Get<QLabel>(screen, "Total").text(), "  Total Inregistrari :  2");
}

/// The colour that a cell's background has on screen.
QColor Background(ui::Grid& grid, int row, int column) {
  const QRect cell = grid.visualRect(grid.model()->index(row, column));
  return grid.viewport()->grab().toImage().pixelColor(cell.left() + 1, cell.center().y());
}

TEST(Grid, RowsKeepTheColoursOfTheSettings) {
  GridFixture at;
  session::Settings& settings = at.at.session.settings;
  settings.OddRowStyle_BackColor = 0x00C0FFFF;
  settings.EvenRowStyle_BackColor = 0x00E0E0E0;
  settings.HighlightRowStyle_BackColor = 0x00FF0000;
  settings.HighlightRowStyle_ForeColor = 0x00FFFFFF;
  ShownGrid shown(at, at.Columns());
  shown.grid.SelectRow(2, 2);
  EXPECT_EQ(Background(shown.grid, 0, 4), QColor(0xFF, 0xFF, 0xC0));
  EXPECT_EQ(Background(shown.grid, 1, 4), QColor(0xE0, 0xE0, 0xE0));
  EXPECT_EQ(Background(shown.grid, 2, 4), QColor(0, 0, 0xFF));
  shown.grid.clearFocus();
  EXPECT_EQ(Background(shown.grid, 2, 4), QColor(0, 0, 0xFF));
  settings.OddRowStyle_BackColor = 0x00000080;
  shown.grid.ReadColours();
  EXPECT_EQ(Background(shown.grid, 0, 4), QColor(0x80, 0, 0));
}

TEST(Grid, StaysWhereItWasWhenRowsAreReadAnew) {
  GridFixture at;
  ShownGrid shown(at, at.Columns());
  shown.grid.horizontalHeader()->setSortIndicator(4, Qt::DescendingOrder);
  shown.grid.SelectRow(4, 3);
  at.at.Run("DELETE FROM Proba WHERE ID=1");
  shown.model.SetRows(at.Rows());
  EXPECT_EQ(shown.At(), "3,3");
  EXPECT_EQ(shown.model.TextAt(0, 4), "5.000,13");  // the sort holds for the new rows
  at.at.Run("DELETE FROM Proba");
  shown.model.SetRows(at.Rows());
  EXPECT_EQ(shown.grid.current_row(), -1);
  EXPECT_EQ(shown.grid.SelectedText(), "");
  shown.Key(Qt::Key_Return);
  shown.Keys("abc");
}

}  // namespace
