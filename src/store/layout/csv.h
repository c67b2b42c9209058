#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace store::layout {

/// A comma-separated text (RFC 4180, UTF-8) with a heading row.
struct Csv {
  std::string path;  ///< Windows path, for messages
  std::vector<std::string> header;
  std::vector<std::vector<std::string>> rows;  ///< each as long as the header
  std::vector<int> lines;                      ///< line of the file on which each row begins, from 1

  /// Position of a column; throws platform::FileError where the file lacks it.
  std::size_t Column(std::string_view name) const;
};

/// Throws platform::FileError naming the file and, where the text is malformed, the line.
Csv ReadCsv(const platform::Files& files, std::string_view path);
Csv ParseCsv(std::string_view text, std::string_view path);

/// The error that everything reading these texts throws: "Fisierul : <path>, linia 7: <reason>".
[[noreturn]] void FailAtLine(std::string_view path, int line, std::string_view reason);

}  // namespace store::layout
