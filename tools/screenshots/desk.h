#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <functional>
#include <string_view>
#include <vector>

#include "support/qt/screen_fixture.h"

namespace screenshots {

/// What one shot works on: an installation of its own with the company "PROBA SRL" open, a context for
/// screens, and the folder that takes the pictures.
class Desk {
 public:
  explicit Desk(QDir folder) : folder_(std::move(folder)) {
    on.at.prompter().AcceptAnything(true);
    session().user_name = "contabil";
  }

  test_support::ScreenFixture on;

  session::Session& session() { return on.at.session; }
  /// Statements on the common or the company connection.
  void Common(std::string_view statement) { session().common.Execute(statement); }
  void Company(std::string_view statement) { session().company.Execute(statement); }
  void AddCompanies();  ///< two further ones; "PROBA SRL" stays open

  /// Shows the window, lets it settle and writes <object name>[_state].png.
  void Grab(QWidget& window, const QString& state = {});

  /// A screen made of the context (and what else it takes), as it opens or after `prepare`.
  template <typename Screen, typename... More>
  void Shoot(const QString& state = {}, const std::function<void(Screen&)>& prepare = {}, More&&... more) {
    Screen screen(on.context, std::forward<More>(more)..., nullptr);
    screen.show();
    Settle();
    if (prepare) prepare(screen);
    Grab(screen, state);
  }
  /// A modal window that `action` opens; it is closed after the picture.
  void GrabModal(const std::function<void()>& action, const QString& state = {});

  /// A file that a screen writes, beside the pictures; `write` gets a Windows path.
  void Keep(const std::string& name, const std::function<void(const std::string& path)>& write);

  static void Settle();

 private:
  QDir folder_;
};

struct Shot {
  const char* screen;  ///< for the command line's filter
  std::function<void(Desk&)> take;
};

/// Every screen has its lines in one of these.
std::vector<Shot> Shots();
std::vector<Shot> ProgramShots();  ///< what stands around the work: splash, main window, about, lists
std::vector<Shot> DeclarationShots();
std::vector<Shot> ReportShots();
std::vector<Shot> EditorShots();  ///< of the declaration editor and what it opens
std::vector<Shot> ImportShots();  ///< templates and the spreadsheet import
std::vector<Shot> TariffShots();
std::vector<Shot> QueryShots();

}  // namespace screenshots
