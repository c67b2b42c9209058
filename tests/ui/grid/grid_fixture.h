#pragma once

#include <QClipboard>
#include <QSignalSpy>

#include "support/qt/screen_fixture.h"
#include "ui/grid.h"

namespace test_support {

/// Five lines of a table of the company, edited in place.
struct GridFixture : ScreenFixture {
  GridFixture() {
    at.Run(
        "CREATE TABLE Proba (ID COUNTER, Data DATETIME, Descriere TEXT(20), Cod TEXT(8), Valoare DOUBLE, "
        "Bifa "
        "YESNO)");
    const char* texts[] = {"Piesa rosie", "Surub", "Piesa albastra", "Piulita d'alama", "Surub lung"};
    for (int i = 0; i < 5; ++i) {
      at.Run(fmt::format(
          "INSERT INTO Proba (Data, Descriere, Cod, Valoare, Bifa) VALUES (#2026-03-{:02}#, '{}', "
          "'{}', {}.125, {})",
          i + 1, i == 3 ? "Piulita d''alama" : texts[i], 500 - i, 1000 * (i + 1),
          i % 2 == 0 ? "TRUE" : "FALSE"));
    }
    codes.lines = {{"100", "Unu"}, {"200", "Doi"}};
  }

  std::vector<ui::Column> Columns() {
    using ui::Format;
    return {{.field = "ID", .caption = "ID", .hidden = true},
            {.field = "Data", .caption = "Data", .format = Format::kDate, .editable = true},
            {.field = "Descriere", .caption = "Descriere", .width = 30, .editable = true},
            {.field = "Cod", .caption = "Cod", .editable = true, .codes = [this] { return &codes; }},
            {.field = "Valoare", .caption = "Valoare", .format = Format::kAmount, .editable = true},
            {.field = "Bifa", .caption = "Bifa", .format = Format::kTick, .editable = true}};
  }
  std::vector<ui::Column> ReadOnlyColumns() {
    std::vector<ui::Column> columns = Columns();
    for (ui::Column& each : columns) each.editable = false;
    return columns;
  }
  store::Recordset Rows() { return at.session.company.QueryForUpdate("SELECT * FROM Proba ORDER BY ID"); }
  store::Value Stored(const char* field, int id) {
    return at.Get(fmt::format("SELECT {} FROM Proba WHERE ID={}", field, id));
  }

  ui::CodeList codes;
};

/// A grid on the fixture's lines, shown and focused.
struct ShownGrid {
  ShownGrid(GridFixture& fixture, std::vector<ui::Column> columns)
      : model(std::move(columns), fixture.Rows()), grid(fixture.context, "Frm_Proba") {
    grid.SetGridModel(&model);
    grid.resize(700, 400);
    grid.show();
    grid.setFocus();
    QApplication::setActiveWindow(&grid);
    QApplication::processEvents();
  }
  /// Keys go to the cell's editor while there is one.
  void Key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(Target(), static_cast<Qt::Key>(key), modifiers);
  }
  void Keys(const char* text) {
    for (; *text != '\0'; ++text) QTest::keyClick(Target(), *text);
  }
  QWidget* Target() {
    QWidget* focus = QApplication::focusWidget();
    return focus != nullptr ? focus : &grid;
  }
  QString At() const {
    return QStringLiteral("%1,%2").arg(grid.currentIndex().row()).arg(grid.currentIndex().column());
  }

  ui::RecordsetModel model;
  ui::Grid grid;
};

}  // namespace test_support
