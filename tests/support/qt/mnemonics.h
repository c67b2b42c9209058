#pragma once

#include <fmt/ranges.h>

#include <QAbstractButton>
#include <QLabel>
#include <QTabBar>
#include <map>
#include <string>

namespace test_support {

/// The letters that two things visible together share as Alt+letter, as "x: first, second" texts; empty when
/// every one is unique. Shows the screen; look at tabbed ones tab by tab.
inline std::vector<std::string> SharedMnemonics(QWidget& screen) {
  std::map<QString, std::vector<std::string>> users;
  const auto note = [&](const QString& text) {
    const QKeySequence key = QKeySequence::mnemonic(text);
    if (!key.isEmpty()) users[key.toString()].push_back(text.toStdString());
  };
  screen.show();
  for (const QLabel* label : screen.findChildren<QLabel*>()) {
    if (label->isVisible() && label->buddy() != nullptr) note(label->text());
  }
  for (const QAbstractButton* button : screen.findChildren<QAbstractButton*>()) {
    if (button->isVisible()) note(button->text());
  }
  for (const QTabBar* bar : screen.findChildren<QTabBar*>()) {
    for (int i = 0; bar->isVisible() && i < bar->count(); ++i) note(bar->tabText(i));
  }
  std::vector<std::string> shared;
  for (const auto& [key, texts] : users) {
    if (texts.size() > 1) shared.push_back(fmt::format("{}: {}", key.toStdString(), fmt::join(texts, ", ")));
  }
  return shared;
}

}  // namespace test_support
