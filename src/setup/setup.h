#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/host.h"

namespace setup {

inline constexpr char kDefaultRoot[] = "C:\\Declarix\\";

struct Outcome {
  std::vector<std::string>
      added;  ///< folders and files by path, "file: table[.column]", "file: list, n rows"
  std::vector<std::string> notes;  ///< what the user should know although it is no error
};

/// Lays an installation down below `root` from the texts of `data_folder`: folders, Settings.xml in the
/// common application-data folder, Comun.mdb, the company template, the delivered tariff, the rates folder
/// and lists.
///
/// Run again it only adds what is missing: folders, files, tables, columns, list rows by their key; stored
/// queries of ours are refreshed, in the company files of the register too. Rows and files that are there are
/// never changed. A database is built beside its place and put there as a whole, or completed in one
/// transaction. Throws platform::FileError naming the file that stands in the way.
Outcome LayDown(platform::Host host, std::string_view root, std::string_view data_folder);

}  // namespace setup
