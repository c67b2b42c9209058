#pragma once

#include <QDialog>
#include <QLockFile>
#include <QPointer>
#include <memory>
#include <string>

#include "app/program_commands.h"
#include "app/startup.h"
#include "app/surroundings.h"
#include "ui/context.h"
#include "ui/memory.h"

namespace declarations {
struct EditorOpening;
}

namespace app {

class MainWindow;
class Splash;

/// The desktop program around the start-up sequence and the dispatcher: its windows, and what the rest of the
/// machine does for it.
class Desktop : public Surroundings {
 public:
  /// `program_folder` is the folder of the running executable, as a Windows path.
  Desktop(session::Session& session, std::string program_folder);
  ~Desktop() override;

  /// Runs the start-up sequence; false where the process ends.
  bool Start();

  ui::Context& context() { return context_; }
  Commands& commands() { return commands_; }
  MainWindow* main_window() { return main_window_.get(); }
  const std::string& program_folder() const { return program_folder_; }

  /// The large button that has no key in the menu: names a declaration and opens it.
  void NewDeclaration();
  /// The search box: looks an expression up in the tariff and in the declarations.
  void QuickSearch(const QString& text);
  void OpenQueries();  ///< any question of the company's database
  /// The exit action by its own key, as closing the main window does.
  void Exit() { program_commands_.Exit(); }

  bool OtherInstanceRuns() override;
  void ShowSplash() override;
  void CloseSplash() override;
  void Pause(std::chrono::milliseconds time) override;
  std::vector<std::string> DriveRoots() override;
  void OpenScreen(Screen screen) override;
  bool CloseScreens() override;
  std::string CheckVersion(bool interactive) override;
  bool RunElevated(std::string_view file, std::string_view parameters) override;
  bool OpenDocument(std::string_view path) override;
  calc::RatesOutcome UpdateRates() override;
  void TakeFetchedRates() override;
  void EndProcess() override;

 private:
  void BindCommands();
  void BindWorkScreens();
  /// Comes back when the editor is closed.
  void OpenEditor(const declarations::EditorOpening& opening, bool view, QWidget* over);
  void RefreshDeclarations();  ///< the declaration list, where it stands open
  void ShowFirst(QDialog* screen, std::function<void()> on_accepted);
  void SelectCompany();
  void CreateCompany();
  void ShowDefaults(QWidget* parent, std::function<void()> then);
  /// A screen that stays open beside the main window; a second call brings the first one forward.
  void OpenOnce(std::string_view key, const std::function<QDialog*()>& make);
  void OpenManualAt(std::string_view screen);

  session::Session* session_;
  std::string program_folder_;
  ui::ScreenMemory memory_;
  ui::Context context_;
  Commands commands_;
  ProgramCommands program_commands_;
  StartUp start_up_;
  std::unique_ptr<QLockFile> instance_;
  std::unique_ptr<Splash> splash_;
  std::unique_ptr<MainWindow> main_window_;
  std::map<std::string, QPointer<QDialog>, std::less<>> open_;
};

/// The whole program, with the host's real parts; answers the process's exit code.
int RunDesktop();

}  // namespace app
