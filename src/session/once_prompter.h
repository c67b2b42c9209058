#pragma once

#include <set>
#include <string>

#include "platform/prompter.h"

namespace session {

/// Shows a text once: with a file that does not parse, every key would repeat the same reason.
class OncePrompter : public platform::Prompter {
 public:
  explicit OncePrompter(platform::Prompter& inner) : inner_(&inner) {}
  void Message(std::string_view text, std::string_view title, platform::Icon icon) override {
    if (shown_.insert(std::string(text)).second) inner_->Message(text, title, icon);
  }
  bool Ask(std::string_view text, std::string_view title, platform::Icon icon) override {
    return inner_->Ask(text, title, icon);
  }

 private:
  platform::Prompter* inner_;
  std::set<std::string> shown_;
};

}  // namespace session
