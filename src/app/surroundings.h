#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "calc/rates_update.h"

namespace app {

enum class Screen { kCreateCompany, kSelectCompany, kMainWindow };

/// What the program does outside its own data: windows, the update server, other processes. The desktop shell
/// answers with real ones, tests with a record of the calls. Messages and questions go through the prompter.
class Surroundings {
 public:
  virtual ~Surroundings() = default;

  virtual bool OtherInstanceRuns() = 0;
  virtual void ShowSplash() = 0;  ///< modeless; a click on its link opens the setting `www`
  virtual void CloseSplash() = 0;
  virtual void Pause(std::chrono::milliseconds time) = 0;
  /// "C:\", "E:\", … in order, as platform::Drives::Roots has them.
  virtual std::vector<std::string> DriveRoots() = 0;

  /// Shows the screen in place of the one before it and returns; the shell's message loop runs afterwards.
  virtual void OpenScreen(Screen screen) = 0;
  /// False where a screen holds unsaved work and the user stays with it.
  virtual bool CloseScreens() = 0;

  /// "0" where no newer version is offered or the check failed, else the newer version. `interactive` says
  /// so too when there is none.
  virtual std::string CheckVersion(bool interactive) = 0;
  /// Starts a program with raised rights (the verb "runas"), normal window, empty working folder. `file` is
  /// taken as it stands, quotes included. False where this host cannot do that.
  virtual bool RunElevated(std::string_view file, std::string_view parameters) = 0;
  /// Opens a document by its Windows path with the program that the user has for it; false where that failed.
  virtual bool OpenDocument(std::string_view path) = 0;

  /// The exchange rates' run for the open company.
  virtual calc::RatesOutcome UpdateRates() = 0;
  /// Its local half: what has been fetched already, for the open company.
  virtual void TakeFetchedRates() = 0;

  /// Ends the message loop once pending events have run.
  virtual void EndProcess() = 0;
};

}  // namespace app
