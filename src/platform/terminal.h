#pragma once

namespace platform {

/// True where the error stream is a terminal that a person watches, not a file or a pipe.
bool StderrIsTerminal();

}  // namespace platform
