#pragma once

#include "platform/clock.h"
#include "platform/error_log.h"
#include "platform/files.h"
#include "platform/progress.h"
#include "platform/prompter.h"

namespace platform {

/// What the rest of the system gets from the machine it runs on, in one hand. Tests give their own parts.
struct Host {
  Files& files;
  const Clock& clock;
  Prompter& prompter;
  Progress& progress;
  ErrorLog& errors;
};

}  // namespace platform
