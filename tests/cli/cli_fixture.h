#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "cli/batch/run.h"
#include "support/test_host.h"
#include "support/xls_writer.h"

/// Runs the batch tool's command lines in a drives folder of its own.
class CliTest : public testing::Test {
 protected:
  struct Answer {
    int status = 0;
    std::string out, err;
  };

  Answer Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--drives", folder_.path().string()});
    std::ostringstream out, err;
    const int status = cli::Run(arguments, {HostPath("declarix-cli"), out, err, false});
    return {status, out.str(), err.str()};
  }

  std::string HostPath(const std::string& name) const { return (folder_.path() / name).string(); }

  /// An installation with one company.
  void Install() {
    ASSERT_EQ(Run({"setup"}).status, cli::kDone);
    const Answer added = Run({"company", "add", "--cod-fiscal", "RO 123 456", "--nume", "Proba"});
    ASSERT_EQ(added.status, cli::kDone) << added.err;
  }

  test_support::TempFolder folder_;
};
