#pragma once

#include <string>
#include <vector>

#include "app/surroundings.h"
#include "platform/paths.h"

namespace test_support {

/// Notes what the program asks for, in order, and answers as the test has set it.
class RecordedSurroundings : public app::Surroundings {
 public:
  explicit RecordedSurroundings(const platform::Drives& drives) : roots(drives.Roots()) {}

  bool OtherInstanceRuns() override { return other_instance; }
  void ShowSplash() override { calls.emplace_back("splash"); }
  void CloseSplash() override { calls.emplace_back("no splash"); }
  void Pause(std::chrono::milliseconds time) override {
    calls.push_back("pause " + std::to_string(time.count()));
  }
  std::vector<std::string> DriveRoots() override { return roots; }
  void OpenScreen(app::Screen screen) override {
    constexpr const char* kNames[] = {"creation", "selection", "main window"};
    calls.emplace_back(kNames[static_cast<int>(screen)]);
  }
  bool CloseScreens() override {
    calls.emplace_back("no screens");
    if (on_close) on_close();
    return screens_close;
  }
  std::string CheckVersion(bool interactive) override {
    calls.emplace_back(interactive ? "ask version" : "check version");
    return version;
  }
  bool RunElevated(std::string_view file, std::string_view parameters) override {
    calls.push_back("run " + std::string(file) + "|" + std::string(parameters));
    return elevates;
  }
  bool OpenDocument(std::string_view path) override {
    calls.push_back("open " + std::string(path));
    return true;
  }
  calc::RatesOutcome UpdateRates() override {
    calls.emplace_back("rates");
    return rates;
  }
  void TakeFetchedRates() override { calls.emplace_back("fetched rates"); }
  void EndProcess() override { calls.emplace_back("end"); }

  std::vector<std::string> roots;
  bool other_instance = false;
  bool elevates = true;
  bool screens_close = true;
  std::string version = "0";
  calc::RatesOutcome rates = calc::RatesOutcome::kUpToDate;
  std::function<void()> on_close;
  std::vector<std::string> calls;
};

}  // namespace test_support
