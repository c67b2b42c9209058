#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace platform {

/// Writes a file beside its target and puts it in the target's place once all of it is on disk. Without
/// Commit the target stays as it was. The first failure sticks and is what Commit answers.
///
/// The file beside bears the target's name and ".tmp~"; one left by a killed run is taken over, one that
/// another program is writing just now refuses.
class AtomicFile {
 public:
  explicit AtomicFile(const std::filesystem::path& target);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  bool Write(const char* data, std::size_t size);
  std::error_code Commit();
  std::error_code error() const { return error_; }

 private:
  void Fail();
  void Close();

  std::filesystem::path target_;
  std::filesystem::path beside_;
#ifdef _WIN32
  void* handle_ = nullptr;
#else
  int handle_ = -1;
#endif
  std::error_code error_;
};

/// Adds to the end of a file in one write; creates a missing one.
std::error_code AppendTo(const std::filesystem::path& file, std::string_view content);

/// The host's reason in Romanian without diacritics; the host's own words where we have none.
std::string ReasonText(const std::error_code& reason);

}  // namespace platform
