#include "tariff/screens/reference_list.h"

#include <QHeaderView>
#include <QLabel>

#include "app/commands.h"
#include "support/qt/screen_fixture.h"

namespace {

using test_support::Installation;
using test_support::ScreenFixture;

tariff::ReferenceTable TableOf(const app::Command& command) {
  tariff::ReferenceTable table{std::string(command.query), std::string(command.title), {}};
  for (const std::string_view heading : command.headings) {
    if (!heading.empty()) table.captions.emplace_back(heading);
  }
  return table;
}

TEST(ReferenceList, ShowsEveryTableOfTheMenu) {
  ScreenFixture at(Installation::State::kCommonOpen);
  int lists = 0;
  for (const app::Command& command : app::CommandTable()) {
    if (command.kind != app::CommandKind::kViewer) continue;
    SCOPED_TRACE(std::string(command.key));
    ++lists;
    const tariff::ReferenceTable table = TableOf(command);
    tariff::Frm_Tabel screen(at.context, table);
    screen.show();
    EXPECT_EQ(screen.windowTitle().toStdString(), table.title);
    const store::Recordset rows = at.at.session.common.Query(table.query);
    EXPECT_GT(rows.record_count(), 0);
    EXPECT_EQ(at.Get<QLabel>(screen, "Total").text().toStdString(),
              fmt::format("  Total Inregistrari :  {}", rows.record_count()));
    ui::GridModel& model = *screen.grid()->grid_model();
    ASSERT_EQ(model.columnCount(), rows.field_count());
    ASSERT_EQ(model.columnCount(), static_cast<int>(table.captions.size()));
    for (int i = 0; i < model.columnCount(); ++i) {
      EXPECT_EQ(model.columns()[static_cast<std::size_t>(i)].caption.toStdString(),
                table.captions[static_cast<std::size_t>(i)]);
      EXPECT_FALSE(model.CanEdit(0, i));
    }
  }
  EXPECT_EQ(lists, 6);
}

TEST(ReferenceList, TransactionsAreJoinedByAPointAndFoundByTyping) {
  ScreenFixture at(Installation::State::kCommonOpen);
  const app::Command& command = *app::FindCommand("TABELE_NAT_TRANZ");
  tariff::Frm_Tabel screen(at.context, TableOf(command));
  screen.show();
  EXPECT_EQ(screen.grid()->grid_model()->TextAt(0, 0), "1.1");
  QTest::keyClicks(screen.grid(), "2.");
  EXPECT_EQ(at.Get<QLabel>(screen, "Cautare").text(), "In curs de cautare : 2.");
  EXPECT_TRUE(screen.grid()->grid_model()->TextAt(screen.grid()->current_row(), 0).startsWith("2."));
}

TEST(ReferenceList, DatesOfAccessionReadAsDates) {
  ScreenFixture at(Installation::State::kCommonOpen);
  tariff::Frm_Tabel screen(at.context, TableOf(*app::FindCommand("TABELE_TARI_UE")));
  const int romania = screen.grid()->grid_model()->FindText(0, "RO", 0);
  ASSERT_GE(romania, 0);
  EXPECT_EQ(screen.grid()->grid_model()->TextAt(romania, 2), "01.01.2007");
}

TEST(ReferenceList, EachTableRemembersItsOwnColumns) {
  ScreenFixture at(Installation::State::kCommonOpen);
  {
    tariff::Frm_Tabel screen(at.context, TableOf(*app::FindCommand("TABELE_TARI")));
    screen.show();
    screen.grid()->horizontalHeader()->resizeSection(0, 222);
  }
  tariff::Frm_Tabel countries(at.context, TableOf(*app::FindCommand("TABELE_TARI")));
  tariff::Frm_Tabel currencies(at.context, TableOf(*app::FindCommand("TABELE_MONEZI")));
  EXPECT_EQ(countries.grid()->columnWidth(0), 222);
  EXPECT_NE(currencies.grid()->columnWidth(0), 222);
}

}  // namespace
