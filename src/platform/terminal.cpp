#include "platform/terminal.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>

#include <csignal>
#endif

namespace platform {

bool StderrIsTerminal() {
#ifdef _WIN32
  return _isatty(2) != 0;
#else
  return isatty(STDERR_FILENO) == 1;
#endif
}

void TakeWriteErrors() {
#ifndef _WIN32
  signal(SIGXFSZ, SIG_IGN);
#endif
}

}  // namespace platform
