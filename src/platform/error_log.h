#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/files.h"

namespace platform {

/// Where runs that pass over failing steps note what failed, so that nothing vanishes without trace. One line
/// per error, "yyyy-mm-dd hh:mm:ss<TAB>where<TAB>what", appended to "Erori\erori.txt" under the system
/// folder. Failing to write the log is itself passed over. Beyond 1 MiB the file is moved to
/// "erori_vechi.txt" and begun anew.
class ErrorLog {
 public:
  ErrorLog(Files& files, const Clock& clock) : files_(&files), clock_(&clock) {}

  void set_folder(std::string system_folder) { folder_ = std::move(system_folder); }
  void Write(std::string_view where, std::string_view what);
  int count() const { return count_; }  ///< errors noted since the start

 private:
  Files* files_;
  const Clock* clock_;
  std::string folder_;
  int count_ = 0;
};

}  // namespace platform
