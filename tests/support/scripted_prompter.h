#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/progress.h"
#include "platform/prompter.h"

namespace test_support {

/// A queue of the messages and questions that a test expects, in order, with the answers. Anything
/// unexpected, and an expectation left over at the end, fails the running test.
class ScriptedPrompter : public platform::Prompter {
 public:
  ~ScriptedPrompter() override;

  void ExpectMessage(std::string_view text, std::string_view title, platform::Icon icon);
  void ExpectError(std::string_view text, std::string_view title = "EROARE");
  void ExpectInfo(std::string_view text, std::string_view title = "");
  /// A message whose fixed beginning is followed by a reason that the test does not pin down.
  void ExpectStarting(std::string_view beginning, std::string_view title, platform::Icon icon);
  void ExpectQuestion(std::string_view text, std::string_view title, platform::Icon icon, bool answer);

  /// Fails the test where expectations are left, and drops them.
  void Verify();
  /// Takes everything without failing from here on; questions get `answer`. What came stands in seen().
  void AcceptAnything(bool answer);
  const std::vector<std::string>& seen() const { return seen_; }

  void Message(std::string_view text, std::string_view title, platform::Icon icon) override;
  bool Ask(std::string_view text, std::string_view title, platform::Icon icon) override;

 private:
  struct Expectation {
    bool question = false;
    bool beginning_only = false;
    std::string text, title;
    platform::Icon icon = platform::Icon::kNone;
    bool answer = false;
  };
  bool Take(bool question, std::string_view text, std::string_view title, platform::Icon icon);

  std::deque<Expectation> expected_;
  std::vector<std::string> seen_;
  bool accept_anything_ = false;
  bool default_answer_ = false;
};

/// Notes what it is told.
class RecordingProgress : public platform::Progress {
 public:
  void Update(std::string_view caption, int percent) override {
    updates.emplace_back(std::string(caption), percent);
  }
  void Status(std::string_view text) override { statuses.emplace_back(text); }
  bool Cancelled() const override { return cancelled; }

  std::vector<std::pair<std::string, int>> updates;
  std::vector<std::string> statuses;
  bool cancelled = false;
};

}  // namespace test_support
