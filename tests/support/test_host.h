#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/host.h"
#include "support/scripted_prompter.h"

namespace test_support {

/// A folder of its own below the host's temporary folder, removed at the end.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Files whose writing fails where `refuses` says so (a full or protected disk).
class FaultyFiles : public platform::Files {
 public:
  using Files::Files;
  std::function<bool(std::string_view path)> refuses;

  void Replace(std::string_view path, std::string_view content) override;
  void Append(std::string_view path, std::string_view content) override;
  void Copy(std::string_view from, std::string_view to) override;

 private:
  void Check(std::string_view path) const;
};

/// A machine for one test: empty drives in a temporary folder, a fixed clock, scripted prompts.
struct TestHost {
  TestHost() = default;
  operator platform::Host() { return host(); }
  platform::Host host() { return {files, clock, prompter, progress, errors}; }

  TempFolder folder;
  platform::Drives drives{folder.path()};
  FaultyFiles files{drives};
  platform::FixedClock clock{{2026, 3, 16, 10, 30, 0}};
  ScriptedPrompter prompter;
  RecordingProgress progress;
  platform::ErrorLog errors{files, clock};
};

}  // namespace test_support
