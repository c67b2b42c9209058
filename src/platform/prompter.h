#pragma once

#include <string>
#include <string_view>

namespace platform {

enum class Icon { kNone, kInformation, kQuestion, kExclamation, kCritical };

/// Every message and question of the program goes through here: message boxes on screen, lines on stderr in
/// the batch tool, a scripted queue in tests.
class Prompter {
 public:
  virtual ~Prompter() = default;

  /// A message with one OK button. `text` may hold CR LF.
  virtual void Message(std::string_view text, std::string_view title, Icon icon) = 0;

  /// A Yes/No question; true for Yes.
  virtual bool Ask(std::string_view text, std::string_view title, Icon icon) = 0;

  void Error(std::string_view text, std::string_view title = "EROARE") {
    Message(text, title, Icon::kCritical);
  }
  void Info(std::string_view text, std::string_view title = "") { Message(text, title, Icon::kInformation); }
};

/// The shared required-value message: the field's label and "  -  Obligatoriu de completat !", title
/// "EROARE".
void ShowRequired(Prompter& prompter, std::string_view label);

}  // namespace platform
