#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace cli {

/// What the batch tool gets from its process.
struct Process {
  std::string program;  ///< path it was started by
  std::ostream& out;    ///< results
  std::ostream& err;    ///< messages, questions and their answers, progress
  bool err_is_terminal = false;
};

enum Status : int {
  kDone = 0,
  kRefused = 1,  ///< refused, failed, or problems found
  kUsage = 2,
};

/// Runs one command line (without the program's name); answers the exit status.
int Run(const std::vector<std::string>& arguments, const Process& process);

}  // namespace cli
