#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QTimer>

#include "calc/rates.h"
#include "declarations/screens/editor_screen.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"

namespace declarations {

/// The editor on the arrivals of March 2026, driven by keys and object names.
class EditorScreenTest : public testing::Test {
 protected:
  std::int64_t AddLine(const test_support::LineValues& changes = {}) {
    return test_support::AddLine(on_.at.session, "I", 2026, 3, changes);
  }

  void Open(bool view = false, EditorCommands commands = {}, bool with_agent = false) {
    EditorOpening opening;
    opening.identity = {"I", test_support::Installation::kCompany, 2026, 3};
    opening.title = "Modificare Declaratie : I / 2026 / 3";
    if (with_agent) opening.agent.emplace().Check_Dec_Tert = true;
    screen_ = std::make_unique<Frm_INTRASTAT>(on_.context, opening, view, std::move(commands), nullptr);
    ASSERT_TRUE(screen_->is_open());
    screen_->show();
    QApplication::setActiveWindow(screen_.get());
    screen_->grid()->setFocus();
    QApplication::processEvents();
  }
  template <typename Widget>
  Widget& Get(const char* name) {
    return test_support::ScreenFixture::Get<Widget>(*screen_, name);
  }
  void Click(const char* name) { test_support::ScreenFixture::Click(*screen_, name); }

  /// Keys go to the cell being typed in while there is one.
  void Key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(Target(), static_cast<Qt::Key>(key), modifiers);
    QApplication::processEvents();
  }
  void Keys(const char* text) {
    for (; *text != '\0'; ++text) QTest::keyClick(Target(), *text);
  }
  /// What has the focus within the screen: without a display, lists that drop down make their own window the
  /// active one, which no display does.
  QWidget* Target() {
    QApplication::setActiveWindow(screen_.get());
    QWidget* focus = QApplication::focusWidget();
    return focus != nullptr ? focus : screen_.get();
  }
  void GoToCell(int row, const char* field) { screen_->grid()->SelectRow(row, Column(field)); }
  int Column(const char* field) { return screen_->editor().ColumnOf(field); }
  std::string At() {
    const QModelIndex at = screen_->grid()->currentIndex();
    return fmt::format("{} {}", at.row(),
                       screen_->editor().columns().at(static_cast<std::size_t>(at.column())).field);
  }
  QString Status() { return Get<QLabel>("Stare").text(); }
  /// Values of the only line of a statement, as the database has them.
  std::string Stored(std::string_view select) {
    const store::Recordset rows = on_.at.session.company.Query(select);
    if (rows.record_count() != 1) return fmt::format("{} rows", rows.record_count());
    std::string text;
    for (int i = 0; i < rows.field_count(); ++i) text += (i == 0 ? "" : "|") + rows.Get(i).ToText();
    return text;
  }
  std::int64_t Count(std::string_view condition = "1=1") {
    return on_.at.Get(fmt::format("SELECT COUNT(*) FROM Intrastat WHERE {}", condition)).ToInteger();
  }
  /// Runs on the next modal window of that name, while something else waits for it to close.
  void OnModal(const char* name, std::function<void(QWidget&)> action) {
    QTimer::singleShot(0, [this, name, action] {
      QWidget* window = QApplication::activeModalWidget();
      ASSERT_NE(window, nullptr) << name;
      EXPECT_EQ(window->objectName().toStdString(), name);
      action(*window);
      window->close();
    });
  }

  test_support::ScreenFixture on_;
  std::unique_ptr<Frm_INTRASTAT> screen_;
};

}  // namespace declarations
