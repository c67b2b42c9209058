#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Maps the Windows paths that the settings hold ("C:\Declarix\System\", UTF-8) to files of this host.
///
/// On Windows a path is used as it is. Elsewhere each drive letter is a folder below `root` ("c/", "e/"), the
/// drive Z: is the host's root folder, and names are matched without regard to case, as Windows does.
class Drives {
 public:
  explicit Drives(std::filesystem::path root);

  /// Drives below $DECLARIX_DRIVES, or below the user's data folder where the variable is not set.
  static Drives FromEnvironment();

  const std::filesystem::path& root() const { return root_; }

  /// Host path of a Windows path. Existing parts are matched without regard to case (an exact match wins);
  /// the parts that do not exist keep their spelling. A path without a drive letter counts as one on drive
  /// C:.
  std::filesystem::path ToHost(std::string_view windows_path) const;

  /// Windows path of an absolute or relative host path: on a drive where it lies below one, else on Z:.
  std::string FromHost(const std::filesystem::path& host_path) const;

  /// The drive roots that exist ("C:\", …, "Z:\"), in alphabetical order.
  std::vector<std::string> Roots() const;

 private:
  std::filesystem::path root_;
};

/// `folder` with a backslash at its end; an empty text stays empty plus the backslash ("\").
std::string WithBackslash(std::string_view folder);

/// The part after the last "\" (the whole text where there is none).
std::string_view FileNameOf(std::string_view windows_path);

/// The part up to and including the last "\" (empty where there is none).
std::string_view FolderOf(std::string_view windows_path);

/// The folder for what programs share among the users of the machine, without a backslash at its end:
/// "C:\ProgramData", on Windows wherever it lies there.
std::string CommonDataFolder();

}  // namespace platform
