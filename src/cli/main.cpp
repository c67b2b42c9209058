#include <iostream>

#include "cli/batch/run.h"
#include "platform/terminal.h"

int main(int argc, char** argv) {
  platform::TakeWriteErrors();
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  return cli::Run(arguments, {argv[0], std::cout, std::cerr, platform::StderrIsTerminal()});
}
