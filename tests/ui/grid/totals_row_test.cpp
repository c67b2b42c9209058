#include "ui/totals_row.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/grid/grid_fixture.h"

namespace {

using test_support::GridFixture;

class TotalsRowTest : public testing::Test {
 protected:
  TotalsRowTest()
      : model(at.Columns(), at.Rows()),
        grid(new ui::Grid(at.context, "Frm_Proba")),
        totals(new ui::TotalsRow(grid)) {
    auto* layout = new QVBoxLayout(&window);
    layout->setSpacing(0);
    layout->addWidget(grid);
    layout->addWidget(totals);
    grid->SetGridModel(&model);
    window.resize(900, 300);
    window.show();
    totals->SetLabel("");
  }
  /// Right edge of what is written in the row, in the viewport's coordinates; -1 for nothing.
  int InkEnd() {
    const QImage image = totals->grab().toImage();
    const QColor paper = totals->palette().window().color();
    for (int x = image.width() - 1; x >= 0; --x) {
      for (int y = 2; y < image.height(); ++y) {
        if (image.pixelColor(x, y) == paper) continue;
        return grid->viewport()->mapFromGlobal(totals->mapToGlobal(QPoint(x, 0))).x();
      }
    }
    return -1;
  }
  int ColumnEnd(int column) {
    QHeaderView* header = grid->horizontalHeader();
    return header->sectionViewportPosition(column) + header->sectionSize(column);
  }

  GridFixture at;
  ui::RecordsetModel model;
  QWidget window;
  ui::Grid* grid;
  ui::TotalsRow* totals;
};

TEST_F(TotalsRowTest, StaysUnderItsColumn) {
  totals->SetText(4, "15.000,63");
  EXPECT_NEAR(InkEnd(), ColumnEnd(4), 8);
  grid->horizontalHeader()->resizeSection(2, 120);
  EXPECT_NEAR(InkEnd(), ColumnEnd(4), 8);
  grid->horizontalHeader()->moveSection(grid->horizontalHeader()->visualIndex(4), 1);
  EXPECT_NEAR(InkEnd(), ColumnEnd(4), 8);
  grid->horizontalHeader()->resizeSection(2, 1200);
  grid->horizontalScrollBar()->setValue(40);
  EXPECT_NEAR(InkEnd(), ColumnEnd(4), 8);
  // A total wider than its column reaches over the empty one left of it.
  grid->horizontalHeader()->moveSection(1, 3);
  grid->horizontalHeader()->resizeSection(4, 30);
  grid->SelectRow(0, 4);
  EXPECT_NEAR(InkEnd(), ColumnEnd(4), 8);
  grid->setColumnHidden(4, true);
  EXPECT_EQ(InkEnd(), -1);
}

}  // namespace
