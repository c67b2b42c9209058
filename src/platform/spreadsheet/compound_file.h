#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::spreadsheet {

/// An OLE2 compound file ([MS-CFB]): a small file system of 512- or 4096-byte sectors chained by a table.
///
/// Chains that leave the file end there, so the stream comes out shorter than its entry says and the format
/// above decides whether that matters; chains that loop are refused. Memory never exceeds a small multiple of
/// the file's own size, whatever counts it claims.
class CompoundFile {
 public:
  static bool HasSignature(std::string_view bytes);

  /// `bytes` must outlive the object. Throws SheetError (kDamaged).
  explicit CompoundFile(std::string_view bytes);

  /// Content of a stream of the root storage, named without regard to case.
  std::optional<std::string> Stream(std::string_view name) const;

 private:
  struct Entry {
    std::string name;  ///< characters outside ASCII as "?"
    std::uint8_t type = 0;
    std::uint32_t left = 0, right = 0, child = 0;
    std::uint32_t start = 0;
    std::uint64_t size = 0;
  };

  std::string_view Sector(std::uint32_t number) const;
  void ReadSectorTable();
  void ReadDirectory(std::uint32_t start);
  std::string ReadChain(std::uint32_t start, std::uint64_t limit) const;
  std::string ReadMiniChain(std::uint32_t start, std::uint64_t size) const;
  const Entry* Find(std::string_view name) const;

  std::string_view bytes_;
  unsigned sector_shift_ = 9;
  unsigned mini_shift_ = 6;
  std::uint32_t sector_count_ = 0;
  std::uint32_t mini_cutoff_ = 4096;  ///< bytes; smaller streams live in the mini stream
  std::vector<std::uint32_t> table_;  ///< next sector of every sector
  std::vector<std::uint32_t> mini_table_;
  std::string mini_stream_;
  std::vector<Entry> entries_;
};

}  // namespace platform::spreadsheet
