#include "support/scripted_prompter.h"

#include <gtest/gtest.h>

namespace test_support {
namespace {

const char* IconName(platform::Icon icon) {
  switch (icon) {
    case platform::Icon::kNone:
      return "none";
    case platform::Icon::kInformation:
      return "information";
    case platform::Icon::kQuestion:
      return "question";
    case platform::Icon::kExclamation:
      return "exclamation";
    case platform::Icon::kCritical:
      return "critical";
  }
  return "?";
}

std::string Describe(bool question, std::string_view text, std::string_view title, platform::Icon icon) {
  return fmt::format("{} [{}] ({}): {}", question ? "question" : "message", title, IconName(icon), text);
}

}  // namespace

ScriptedPrompter::~ScriptedPrompter() { Verify(); }

void ScriptedPrompter::ExpectMessage(std::string_view text, std::string_view title, platform::Icon icon) {
  expected_.push_back({false, false, std::string(text), std::string(title), icon, false});
}

void ScriptedPrompter::ExpectError(std::string_view text, std::string_view title) {
  ExpectMessage(text, title, platform::Icon::kCritical);
}

void ScriptedPrompter::ExpectInfo(std::string_view text, std::string_view title) {
  ExpectMessage(text, title, platform::Icon::kInformation);
}

void ScriptedPrompter::ExpectStarting(std::string_view beginning, std::string_view title,
                                      platform::Icon icon) {
  expected_.push_back({false, true, std::string(beginning), std::string(title), icon, false});
}

void ScriptedPrompter::ExpectQuestion(std::string_view text, std::string_view title, platform::Icon icon,
                                      bool answer) {
  expected_.push_back({true, false, std::string(text), std::string(title), icon, answer});
}

void ScriptedPrompter::Verify() {
  for (const Expectation& left : expected_) {
    ADD_FAILURE() << "never shown: " << Describe(left.question, left.text, left.title, left.icon);
  }
  expected_.clear();
}

void ScriptedPrompter::AcceptAnything(bool answer) {
  accept_anything_ = true;
  default_answer_ = answer;
}

void ScriptedPrompter::Message(std::string_view text, std::string_view title, platform::Icon icon) {
  Take(false, text, title, icon);
}

bool ScriptedPrompter::Ask(std::string_view text, std::string_view title, platform::Icon icon) {
  return Take(true, text, title, icon);
}

bool ScriptedPrompter::Take(bool question, std::string_view text, std::string_view title,
                            platform::Icon icon) {
  seen_.emplace_back(text);
  if (expected_.empty()) {
    if (!accept_anything_) ADD_FAILURE() << "unexpected " << Describe(question, text, title, icon);
    return default_answer_;
  }
  const Expectation next = expected_.front();
  expected_.pop_front();
  const std::string_view shown = next.beginning_only ? text.substr(0, next.text.size()) : text;
  if (next.question != question || next.text != shown || next.title != title || next.icon != icon) {
    ADD_FAILURE() << "expected " << Describe(next.question, next.text, next.title, next.icon) << "\n     got "
                  << Describe(question, text, title, icon);
  }
  return next.answer;
}

}  // namespace test_support
