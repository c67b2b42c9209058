#pragma once

#include <string>
#include <string_view>

namespace update {

/// Asked with Yes and No and the exclamation icon when a newer version is there.
std::string_view OfferText();

/// How the updater is started: by verb, with a normal window. The updater is a program of its own.
struct Launch {
  std::string verb = "runas";  ///< asks for elevation
  std::string file;            ///< quoted; the blank before the closing quote is part of it
  std::string parameters;      ///< the new version and "_update.exe"
  std::string folder;          ///< none

  std::string CommandLine() const { return file + " " + parameters; }
};
/// `program_folder` with or without a backslash at its end.
Launch UpdaterLaunch(std::string_view program_folder, std::string_view new_version);

/// Windows path of the updater, to see whether it is there.
std::string UpdaterPath(std::string_view program_folder);

}  // namespace update
