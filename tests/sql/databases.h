#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "store/connection.h"

namespace sql_tests {

/// The databases that statement files name: an installation with one company, laid down on first use and kept
/// for the whole run, and files of their own beside it.
class Databases {
 public:
  Databases();
  ~Databases();
  Databases(const Databases&) = delete;
  Databases& operator=(const Databases&) = delete;

  /// Opens what a "database:" line names, in a transaction where it can be changed. Null where the file it
  /// needs is not on this machine. `folder`: of the statement file.
  std::unique_ptr<store::Connection> Open(const std::string& name, const std::filesystem::path& folder);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace sql_tests
