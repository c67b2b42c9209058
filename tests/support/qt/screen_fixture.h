#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "support/installation.h"
#include "ui/context.h"
#include "ui/memory.h"
#include "ui/text.h"

namespace test_support {

/// A laid-down installation with what screens work with. Screens are driven by object name.
struct ScreenFixture {
  explicit ScreenFixture(Installation::State state = Installation::State::kCompanyOpen) : at(state) {}

  Installation at;
  ui::ScreenMemory memory{at.machine.files, "C:\\ProgramData\\Declarix\\", "ana"};
  std::vector<std::string> opened_documents, opened_chapters, opened_pages;
  ui::Context context{at.session, memory,
                      [this](std::string_view path) {
                        opened_documents.emplace_back(path);
                        return true;
                      },
                      [this](std::string_view screen) { opened_chapters.emplace_back(screen); },
                      [this](std::string_view page) {
                        opened_pages.emplace_back(page);
                        return true;
                      }};

  /// The screen's widget of that name; throws where there is none.
  template <typename Widget>
  static Widget& Get(QWidget& screen, const char* name) {
    auto* found = screen.findChild<Widget*>(QString::fromLatin1(name));
    if (found == nullptr) {
      throw std::runtime_error(
          fmt::format("no widget named {} in {}", name, screen.objectName().toStdString()));
    }
    return *found;
  }
  /// Puts a text into a field as typing does, replacing what is there.
  static void Type(QWidget& screen, const char* name, const QString& text) {
    auto& field = Get<QWidget>(screen, name);
    field.setFocus();
    if (auto* combo = qobject_cast<QComboBox*>(&field)) {
      combo->lineEdit()->selectAll();
      QTest::keyClicks(combo->lineEdit(), text);
    } else {
      QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClicks(&field, text);
    }
  }
  static void Click(QWidget& screen, const char* name) {
    QTest::mouseClick(&Get<QPushButton>(screen, name), Qt::LeftButton);
  }
};

}  // namespace test_support
