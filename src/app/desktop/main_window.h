#pragma once

#include <QMainWindow>
#include <QPixmap>
#include <map>

#include "app/commands.h"

class QAction;
class QLabel;
class QPushButton;

namespace app {

class Desktop;

/// Stands for the large button "new declaration" among the keys.
inline constexpr std::string_view kNewDeclaration = "";

/// The main window: menu of all commands, current company, the publisher's contact, large buttons for the
/// most used commands. Closing it by any route runs the exit action.
class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  explicit MainWindow(Desktop& desktop);

  /// Takes over the current company, the settings' colours, and which commands are there.
  void Refresh();

  /// The menu entry of a key; its object name is the key. Null for keys that are not shown.
  QAction* action(std::string_view key) const;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildMenu();
  void BuildPage();
  void ApplyMenuColour();

  Desktop* desktop_;
  std::map<std::string_view, QAction*> actions_;
  QLabel* company_ = nullptr;
  QLabel* code_ = nullptr;
  QLabel* publisher_ = nullptr;
  QLabel* phone_ = nullptr;
  QLabel* email_ = nullptr;
  std::vector<std::pair<QPushButton*, std::string_view>> buttons_;  ///< with the keys that they run
};

}  // namespace app
