#pragma once

namespace platform {

/// True where the error stream is a terminal that a person watches, not a file or a pipe.
bool StderrIsTerminal();

/// A file that outgrows the user's limit is then an error of the write like any
/// other and no signal that ends the program.
void TakeWriteErrors();

}  // namespace platform
