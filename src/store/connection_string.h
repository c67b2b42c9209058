#pragma once

#include <string>
#include <string_view>

namespace store {

/// What a connection string asks for.
struct ConnectionRequest {
  enum class Kind { kDatabase, kWorksheet, kTextFolder };
  Kind kind = Kind::kDatabase;
  std::string data_source;     ///< Windows path
  bool read_only = false;      ///< Mode=Read
  bool headings = true;        ///< HDR of a worksheet or text folder
  bool mixed_as_text = false;  ///< IMEX=1
};

/// Reads "name=value;…": names without regard to case, the last of a name counts, values plain or in '…' or
/// "…". A quoted value ends at the quote that a ";" or the end follows, so a path may hold an apostrophe.
ConnectionRequest ParseConnectionString(std::string_view text);

}  // namespace store
