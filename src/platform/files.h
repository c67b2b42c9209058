#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/paths.h"

namespace platform {

/// A file operation that failed. what() is a Romanian sentence without diacritics that names the Windows path
/// and the host's reason, fit for a message box.
class FileError : public std::runtime_error {
 public:
  FileError(std::string path, const std::string& message)
      : std::runtime_error(message), path_(std::move(path)) {}
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// Files by Windows path. Virtual so that tests can make a disk full, read-only or slow.
class Files {
 public:
  explicit Files(const Drives& drives) : drives_(&drives) {}
  virtual ~Files() = default;

  const Drives& drives() const { return *drives_; }
  std::filesystem::path ToHost(std::string_view path) const { return drives_->ToHost(path); }

  virtual bool Exists(std::string_view path) const;  ///< a plain file
  virtual bool FolderExists(std::string_view path) const;
  virtual std::uint64_t Size(std::string_view path) const;  ///< bytes; throws FileError
  /// Local time of the last change; empty where the file is missing.
  virtual std::optional<std::chrono::system_clock::time_point> LastModified(std::string_view path) const;
  virtual void SetLastModified(std::string_view path, std::chrono::system_clock::time_point when);

  virtual std::string Read(
      std::string_view path) const;  ///< whole content, bytes as they are; throws FileError
  /// Replaces the file as a whole: written beside the target, flushed to disk, renamed over it. A reader, or
  /// a restart after a crash, sees the old content or the new one and never a part. Throws FileError.
  virtual void Replace(std::string_view path, std::string_view content);
  virtual void Append(std::string_view path, std::string_view content);  ///< creates a missing file
  virtual void Copy(std::string_view from, std::string_view to);         ///< atomically over an existing file
  virtual void Remove(std::string_view path);                            ///< a missing file is no error
  virtual void CreateFolders(std::string_view path);
  /// Bare names of the plain files in a folder, sorted; a missing folder has none.
  virtual std::vector<std::string> List(std::string_view folder) const;

 private:
  const Drives* drives_;
};

/// A text's lines without their CR LF or LF; a last line without line end counts, an empty end does not.
std::vector<std::string> SplitLines(std::string_view text);

}  // namespace platform
