#pragma once

#include <string_view>

namespace platform {

/// Shows how far a long run has come. Implementations yield to their message loop and may thin out updates.
class Progress {
 public:
  virtual ~Progress() = default;

  /// `caption` is the step's text; `percent` 0 to 100.
  virtual void Update(std::string_view caption, int percent) = 0;
  /// A status text without a measure.
  virtual void Status(std::string_view text) = 0;
  /// True once the user asked to stop; only runs that can stop safely look at it.
  virtual bool Cancelled() const { return false; }
};

/// Shows nothing.
class SilentProgress : public Progress {
 public:
  void Update(std::string_view, int) override {}
  void Status(std::string_view) override {}
};

}  // namespace platform
