#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform::spreadsheet {

/// The named parts of an office file (.xlsx and .ods are zip archives of XML parts).
class Package {
 public:
  virtual ~Package() = default;
  virtual bool Has(std::string_view part) const = 0;
  /// Hands a part over in pieces until `take` answers false. Throws SheetError: kDamaged where the part is
  /// missing or cut, kEncrypted, kUnsupported where it unpacks to more than it may.
  virtual void Read(std::string_view part, const std::function<bool(std::string_view piece)>& take) = 0;
  std::string ReadWhole(std::string_view part);
};

/// What an archive may unpack to. A sheet of a million rows stays far below; an archive made to fill the
/// memory does not.
struct ZipLimits {
  std::uint64_t total = std::uint64_t{1} << 30;        ///< bytes, of all parts read
  std::uint64_t ratio_from = std::uint64_t{64} << 20;  ///< bytes of a part from which its ratio counts
  std::uint64_t ratio = 300;                           ///< unpacked to packed; plain sheets reach about 50
};

/// Opens a zip archive. Throws SheetError (kDamaged).
std::unique_ptr<Package> OpenZip(std::string content, const ZipLimits& limits = {});

}  // namespace platform::spreadsheet
