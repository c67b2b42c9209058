#pragma once

#include <string>
#include <string_view>

#include "app/surroundings.h"
#include "session/session.h"

namespace app {

enum class UpdateOffer {
  kNothingNew,
  kDeclined,
  kLaunched,     ///< the updater runs; this process has to end
  kNotLaunched,  ///< accepted, but the updater is missing or cannot be started here; that has been shown
};

/// Offers the version that CheckVersion answered ("0": none) and on Yes launches the updater.
UpdateOffer OfferUpdate(session::Session& session, Surroundings& surroundings,
                        std::string_view program_folder, std::string_view version);

/// The way from launch to the first screen.
class StartUp {
 public:
  /// `program_folder` is the folder of the running executable, as a Windows path.
  StartUp(session::Session& session, Surroundings& surroundings, std::string program_folder);

  /// True where a screen is open now; false where the process ends, once pending events have run. Why has
  /// been shown.
  bool Run();

  /// A company has been opened or created: shows the main window, and on the first call runs the rates update
  /// noted at the splash's end (rates are kept per company, so it has to wait for one). Later companies take
  /// what has been fetched by then.
  void CompanyReady();

  bool update_accepted() const { return update_accepted_; }
  bool rates_noted() const { return rates_noted_; }

 private:
  bool Prepare();
  bool TakeDataFromDrives();
  void ShowMissing(const std::string& path);
  bool OpenFirstScreen();

  session::Session* session_;
  Surroundings* surroundings_;
  std::string program_folder_;
  bool update_accepted_ = false;
  bool rates_noted_ = false;
};

}  // namespace app
