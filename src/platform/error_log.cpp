#include "platform/error_log.h"

#include <fmt/core.h>

#include <exception>

namespace platform {
namespace {

constexpr std::uint64_t kLargestLog = 1024 * 1024;

std::string OnOneLine(std::string_view text) {
  std::string line(text);
  for (char& c : line) {
    if (c == '\r' || c == '\n' || c == '\t') c = ' ';
  }
  return line;
}

}  // namespace

void ErrorLog::Write(std::string_view where, std::string_view what) {
  ++count_;
  if (folder_.empty()) return;
  const LocalTime now = clock_->Now();
  const std::string line =
      fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}\t{}\t{}\r\n", now.year, now.month, now.day, now.hour,
                  now.minute, now.second, OnOneLine(where), OnOneLine(what));
  try {
    const std::string folder = folder_ + "Erori\\";
    const std::string file = folder + "erori.txt";
    if (files_->Exists(file)) {
      if (files_->Size(file) > kLargestLog) {
        files_->Copy(file, folder + "erori_vechi.txt");
        files_->Remove(file);
      }
    } else {
      files_->CreateFolders(folder);
    }
    files_->Append(file, line);
  } catch (const std::exception&) {
    // A log that cannot be written must not stop the work it reports on.
  }
}

}  // namespace platform
