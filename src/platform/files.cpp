#include "platform/files.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "platform/host_io.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using std::chrono::file_clock;
using std::chrono::system_clock;

constexpr std::size_t kChunk = 1 << 20;

[[noreturn]] void Throw(std::string_view doing, std::string_view path, const std::error_code& reason) {
  std::string text(doing);
  text += path;
  text += " (";
  text += ReasonText(reason);
  text += ")";
  throw FileError(std::string(path), text);
}

/// For a target whose folder is missing, a reason that says so.
[[noreturn]] void ThrowWriting(std::string_view path, const fs::path& host, const std::error_code& reason) {
  std::error_code failed;
  if (reason == std::errc::no_such_file_or_directory && !fs::is_directory(host.parent_path(), failed)) {
    throw FileError(std::string(path), "Nu se poate scrie fisierul : " + std::string(path) + " (directorul " +
                                           std::string(FolderOf(path)) + " nu exista)");
  }
  Throw("Nu se poate scrie fisierul : ", path, reason);
}

std::error_code StreamReason(const fs::path& host) {
  std::error_code failed;
  const fs::file_status status = fs::status(host, failed);
  if (fs::is_directory(status)) return std::make_error_code(std::errc::is_a_directory);
  if (!fs::exists(status)) return std::make_error_code(std::errc::no_such_file_or_directory);
  return std::make_error_code(std::errc::permission_denied);
}

std::ifstream OpenForReading(std::string_view path, const fs::path& host) {
  std::error_code failed;
  std::ifstream in;
  if (!fs::is_directory(host, failed)) in.open(host, std::ios::binary);
  if (!in.is_open()) Throw("Nu se poate citi fisierul : ", path, StreamReason(host));
  return in;
}

}  // namespace

bool Files::Exists(std::string_view path) const {
  std::error_code failed;
  return fs::is_regular_file(ToHost(path), failed);
}

bool Files::FolderExists(std::string_view path) const {
  std::error_code failed;
  return fs::is_directory(ToHost(path), failed);
}

std::uint64_t Files::Size(std::string_view path) const {
  std::error_code failed;
  const std::uint64_t size = fs::file_size(ToHost(path), failed);
  if (failed) Throw("Nu se poate citi fisierul : ", path, failed);
  return size;
}

std::optional<system_clock::time_point> Files::LastModified(std::string_view path) const {
  std::error_code failed;
  const fs::file_time_type time = fs::last_write_time(ToHost(path), failed);
  if (failed) return std::nullopt;
  return std::chrono::time_point_cast<system_clock::duration>(file_clock::to_sys(time));
}

void Files::SetLastModified(std::string_view path, system_clock::time_point when) {
  std::error_code failed;
  const auto time = std::chrono::time_point_cast<fs::file_time_type::duration>(file_clock::from_sys(when));
  fs::last_write_time(ToHost(path), time, failed);
  if (failed) Throw("Nu se poate schimba data fisierului : ", path, failed);
}

std::string Files::Read(std::string_view path) const {
  const fs::path host = ToHost(path);
  std::ifstream in = OpenForReading(path, host);
  std::error_code failed;
  const std::uint64_t size = fs::file_size(host, failed);
  std::string content(failed ? 0 : static_cast<std::size_t>(size), '\0');
  in.read(content.data(), static_cast<std::streamsize>(content.size()));
  content.resize(static_cast<std::size_t>(in.gcount()));
  char more[4096];  // a file that grew, or one without a size
  while (in.read(more, sizeof more), in.gcount() > 0) {
    content.append(more, static_cast<std::size_t>(in.gcount()));
  }
  if (in.bad()) Throw("Nu se poate citi fisierul : ", path, std::make_error_code(std::errc::io_error));
  return content;
}

void Files::Replace(std::string_view path, std::string_view content) {
  const fs::path host = ToHost(path);
  AtomicFile file(host);
  file.Write(content.data(), content.size());
  if (const std::error_code failed = file.Commit()) ThrowWriting(path, host, failed);
}

void Files::Append(std::string_view path, std::string_view content) {
  const fs::path host = ToHost(path);
  if (const std::error_code failed = AppendTo(host, content)) ThrowWriting(path, host, failed);
}

void Files::Copy(std::string_view from, std::string_view to) {
  std::ifstream in = OpenForReading(from, ToHost(from));
  const fs::path host = ToHost(to);
  AtomicFile file(host);
  std::vector<char> chunk(kChunk);
  while (in.read(chunk.data(), static_cast<std::streamsize>(chunk.size())), in.gcount() > 0) {
    if (!file.Write(chunk.data(), static_cast<std::size_t>(in.gcount()))) break;
  }
  if (in.bad()) Throw("Nu se poate citi fisierul : ", from, std::make_error_code(std::errc::io_error));
  if (const std::error_code failed = file.Commit()) ThrowWriting(to, host, failed);
}

void Files::Remove(std::string_view path) {
  const fs::path host = ToHost(path);
  std::error_code failed;
  if (fs::is_directory(host, failed)) {
    Throw("Nu se poate sterge fisierul : ", path, std::make_error_code(std::errc::is_a_directory));
  }
  fs::remove(host, failed);
  if (failed) Throw("Nu se poate sterge fisierul : ", path, failed);
}

void Files::CreateFolders(std::string_view path) {
  const fs::path host = ToHost(path);
  std::error_code failed;
  fs::create_directories(host, failed);
  if (!failed && !fs::is_directory(host, failed)) failed = std::make_error_code(std::errc::not_a_directory);
  if (failed) Throw("Nu se poate crea directorul : ", path, failed);
}

std::vector<std::string> Files::List(std::string_view folder) const {
  std::vector<std::string> names;
  std::error_code failed;
  for (fs::directory_iterator entry(ToHost(folder), failed), end; !failed && entry != end;
       entry.increment(failed)) {
    std::error_code ignored;
    if (!entry->is_regular_file(ignored)) continue;
    const std::u8string name = entry->path().filename().u8string();
    names.emplace_back(name.begin(), name.end());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (end != std::string_view::npos && !line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.emplace_back(line);
  }
  return lines;
}

}  // namespace platform
