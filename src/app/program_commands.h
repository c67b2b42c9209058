#pragma once

#include <string>

#include "app/commands.h"
#include "app/surroundings.h"
#include "session/session.h"

namespace app {

/// The commands that need no screen of their own.
class ProgramCommands {
 public:
  ProgramCommands(session::Session& session, Surroundings& surroundings, std::string program_folder);

  /// Puts in the handlers of SETARI_UPDATE, AJUTOR_AJUTOR and IESIRE. `this` has to outlive `commands`.
  void Bind(Commands& commands);

  void Update();  ///< asks the server for a newer version, says so where there is none, offers it where it is
  void OpenManual();   ///< the manual beside the executable
  void UpdateRates();  ///< runs the rates update and says how it ended
  /// The exit action, for every way of closing the main window: closes the screens (nothing more happens
  /// where one of them stays), releases the connections, compacts, ends. Closing the screens may come back
  /// here; the second call does nothing.
  void Exit();

 private:
  session::Session* session_;
  Surroundings* surroundings_;
  std::string program_folder_;  ///< without backslash at its end
  bool exiting_ = false;
};

}  // namespace app
