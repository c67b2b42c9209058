#pragma once

#include "platform/prompter.h"

namespace ui {

/// Message boxes over the active window. Questions stand on "No", so that a quick Enter destroys nothing.
class QtPrompter : public platform::Prompter {
 public:
  void Message(std::string_view text, std::string_view title, platform::Icon icon) override;
  bool Ask(std::string_view text, std::string_view title, platform::Icon icon) override;
};

}  // namespace ui
