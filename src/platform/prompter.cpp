#include "platform/prompter.h"

namespace platform {

void ShowRequired(Prompter& prompter, std::string_view label) {
  prompter.Error(std::string(label) + "  -  Obligatoriu de completat !");
}

}  // namespace platform
