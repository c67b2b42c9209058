#include "platform/host_io.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace platform {
namespace {

namespace fs = std::filesystem;

fs::path TargetOf(const fs::path& path) {
  // A link is written through, not replaced by a file.
  std::error_code failed;
  if (!fs::is_symlink(path, failed)) return path;
  fs::path real = fs::canonical(path, failed);
  return failed ? path : real;
}

}  // namespace

#ifdef _WIN32

AtomicFile::AtomicFile(const fs::path& target) : target_(TargetOf(target)), beside_(target_) {
  beside_ += ".tmp~";
  const DWORD attributes = GetFileAttributesW(target_.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    error_ = std::error_code(ERROR_ACCESS_DENIED, std::system_category());
    return;
  }
  HANDLE handle =
      CreateFileW(beside_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    Fail();
  } else {
    handle_ = handle;
  }
}

AtomicFile::~AtomicFile() {
  if (handle_ == nullptr) return;
  Close();
  DeleteFileW(beside_.c_str());
}

void AtomicFile::Fail() {
  if (!error_) error_ = std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

void AtomicFile::Close() {
  CloseHandle(handle_);
  handle_ = nullptr;
}

bool AtomicFile::Write(const char* data, std::size_t size) {
  while (!error_ && size > 0) {
    DWORD written = 0;
    const DWORD chunk = static_cast<DWORD>(size < (1u << 30) ? size : (1u << 30));
    if (!WriteFile(handle_, data, chunk, &written, nullptr)) {
      Fail();
      break;
    }
    data += written;
    size -= written;
  }
  return !error_;
}

std::error_code AtomicFile::Commit() {
  if (error_) return error_;
  if (!FlushFileBuffers(handle_)) {
    Fail();
    return error_;
  }
  Close();
  if (!MoveFileExW(beside_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    Fail();
    DeleteFileW(beside_.c_str());
  }
  return error_;
}

std::error_code AppendTo(const fs::path& file, std::string_view content) {
  HANDLE handle = CreateFileW(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return {static_cast<int>(GetLastError()), std::system_category()};
  DWORD written = 0;
  std::error_code failed;
  if (!WriteFile(handle, content.data(), static_cast<DWORD>(content.size()), &written, nullptr)) {
    failed = std::error_code(static_cast<int>(GetLastError()), std::system_category());
  }
  CloseHandle(handle);
  return failed;
}

#else

namespace {

std::error_code LastError() { return {errno, std::generic_category()}; }

constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

/// Write-protected for everyone counts as read-only even for users whom the host lets write anyway.
std::error_code CheckWritable(const fs::path& target, mode_t* mode) {
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  struct stat info {};
  if (stat(folder.c_str(), &info) != 0) return LastError();
  if (!S_ISDIR(info.st_mode)) return {ENOTDIR, std::generic_category()};
  if ((info.st_mode & kAnyWrite) == 0) return {EACCES, std::generic_category()};
  if (stat(target.c_str(), &info) == 0) {
    if (S_ISDIR(info.st_mode)) return {EISDIR, std::generic_category()};
    if ((info.st_mode & kAnyWrite) == 0 || access(target.c_str(), W_OK) != 0) {
      return {EACCES, std::generic_category()};
    }
    *mode = info.st_mode & 07777;
  }
  return {};
}

void SyncFolder(const fs::path& folder) {
  const int handle = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return;
  fsync(handle);  // some network file systems refuse; the rename itself has happened
  close(handle);
}

}  // namespace

AtomicFile::AtomicFile(const fs::path& target) : target_(TargetOf(target)), beside_(target_) {
  beside_ += ".tmp~";
  mode_t mode = 0;
  error_ = CheckWritable(target_, &mode);
  if (error_) return;
  handle_ = open(beside_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (handle_ < 0) {
    Fail();
    return;
  }
  if (flock(handle_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    error_ = std::error_code(EBUSY, std::generic_category());
    close(handle_);
    handle_ = -1;
    return;
  }
  // Between our open and lock the other program may have renamed its file into place.
  struct stat ours {};
  struct stat named {};
  if (fstat(handle_, &ours) != 0 || stat(beside_.c_str(), &named) != 0 || ours.st_ino != named.st_ino) {
    error_ = std::error_code(EBUSY, std::generic_category());
    close(handle_);
    handle_ = -1;
    return;
  }
  if (ftruncate(handle_, 0) != 0 || (mode != 0 && fchmod(handle_, mode) != 0)) Fail();
}

AtomicFile::~AtomicFile() {
  if (handle_ < 0) return;
  unlink(beside_.c_str());
  Close();
}

void AtomicFile::Fail() {
  if (!error_) error_ = LastError();
}

void AtomicFile::Close() {
  close(handle_);
  handle_ = -1;
}

bool AtomicFile::Write(const char* data, std::size_t size) {
  while (!error_ && size > 0) {
    const ssize_t written = write(handle_, data, size);
    if (written < 0) {
      if (errno == EINTR) continue;
      Fail();
      break;
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return !error_;
}

std::error_code AtomicFile::Commit() {
  if (error_) return error_;
  if (fsync(handle_) != 0) {
    Fail();
    return error_;
  }
  if (rename(beside_.c_str(), target_.c_str()) != 0) {
    Fail();
    return error_;
  }
  Close();
  SyncFolder(target_.parent_path());
  return error_;
}

std::error_code AppendTo(const fs::path& file, std::string_view content) {
  const int handle = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (handle < 0) return LastError();
  std::error_code failed;
  while (!content.empty()) {
    const ssize_t written = write(handle, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) {
      failed = LastError();
      break;
    }
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  if (close(handle) != 0 && !failed) failed = LastError();
  return failed;
}

#endif

std::string ReasonText(const std::error_code& reason) {
  const struct {
    std::errc code;
    const char* text;
  } kReasons[] = {
      {std::errc::no_space_on_device, "nu mai este loc pe disc"},
      {std::errc::read_only_file_system, "discul este protejat la scriere"},
      {std::errc::permission_denied, "acces refuzat sau protejat la scriere"},
      {std::errc::operation_not_permitted, "acces refuzat sau protejat la scriere"},
      {std::errc::no_such_file_or_directory, "fisierul sau directorul nu exista"},
      {std::errc::not_a_directory, "o parte a caii nu este director"},
      {std::errc::is_a_directory, "este un director, nu un fisier"},
      {std::errc::file_exists, "exista deja un fisier cu acest nume"},
      {std::errc::device_or_resource_busy, "fisierul este folosit de alt program"},
      {std::errc::filename_too_long, "numele este prea lung"},
      {std::errc::file_too_large, "fisierul este prea mare"},
      {std::errc::too_many_files_open, "sunt deschise prea multe fisiere"},
      {std::errc::io_error, "eroare de citire sau scriere a discului"},
      {std::errc::directory_not_empty, "directorul nu este gol"},
  };
  for (const auto& known : kReasons) {
    if (reason == known.code) return known.text;
  }
  return reason.message();
}

}  // namespace platform
