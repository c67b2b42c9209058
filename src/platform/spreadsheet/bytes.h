#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform::spreadsheet {

/// Little-endian numbers at a byte address; the caller has checked that the bytes are there.
inline std::uint8_t LoadU8(const char* p) { return static_cast<std::uint8_t>(*p); }
inline std::uint16_t LoadU16(const char* p) {
  return static_cast<std::uint16_t>(LoadU8(p) | (LoadU8(p + 1) << 8));
}
inline std::uint32_t LoadU32(const char* p) {
  return static_cast<std::uint32_t>(LoadU16(p)) | (static_cast<std::uint32_t>(LoadU16(p + 2)) << 16);
}
inline std::uint64_t LoadU64(const char* p) {
  return static_cast<std::uint64_t>(LoadU32(p)) | (static_cast<std::uint64_t>(LoadU32(p + 4)) << 32);
}

/// Part of `bytes` from `offset`, at most `length` long; empty where the offset lies past the end.
inline std::string_view Slice(std::string_view bytes, std::size_t offset,
                              std::size_t length = std::string_view::npos) {
  return offset < bytes.size() ? bytes.substr(offset, length) : std::string_view();
}

}  // namespace platform::spreadsheet
