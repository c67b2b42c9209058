#include "support/test_host.h"

#include <atomic>
#include <chrono>

namespace test_support {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  static std::atomic<int> next{0};
  const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
  do {
    path_ = fs::temp_directory_path() / fmt::format("declarix_test_{}_{}", stamp, next++);
  } while (!fs::create_directory(path_));
}

TempFolder::~TempFolder() {
  std::error_code failed;
  fs::remove_all(path_, failed);
}

void FaultyFiles::Check(std::string_view path) const {
  if (refuses && refuses(path)) {
    throw platform::FileError(std::string(path), "Nu se poate scrie fisierul : " + std::string(path) +
                                                     " (nu mai este loc pe disc)");
  }
}

void FaultyFiles::Replace(std::string_view path, std::string_view content) {
  Check(path);
  Files::Replace(path, content);
}

void FaultyFiles::Append(std::string_view path, std::string_view content) {
  Check(path);
  Files::Append(path, content);
}

void FaultyFiles::Copy(std::string_view from, std::string_view to) {
  Check(to);
  Files::Copy(from, to);
}

}  // namespace test_support
