#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace cli {

/// What is wrong with a command line, in Romanian like every other message; the parser's own texts are
/// English.
std::string UsageText(const CLI::App& app, const CLI::ParseError& error);

/// Arguments end up in databases and declaration files, which are UTF-8. Throws CLI::ValidationError.
void RequireUtf8(const std::vector<std::string>& arguments);

}  // namespace cli
