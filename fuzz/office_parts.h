#pragma once

#include <map>
#include <string>

#include "check_order.h"
#include "platform/spreadsheet/office_book.h"

namespace fuzz {

/// A package of parts in memory, cut from the input: an archive's checksum would stop nearly all changes.
class Parts : public platform::spreadsheet::Package {
 public:
  std::map<std::string, std::string, std::less<>> parts;

  bool Has(std::string_view part) const override { return parts.contains(part); }
  void Read(std::string_view part, const std::function<bool(std::string_view)>& take) override {
    using platform::spreadsheet::SheetError;
    const auto found = parts.find(part);
    if (found == parts.end()) throw SheetError(SheetError::Reason::kDamaged, "lipseste");
    constexpr std::size_t kPiece = 61;
    for (std::size_t at = 0; at < found->second.size(); at += kPiece) {
      if (!take(std::string_view(found->second).substr(at, kPiece))) return;
    }
  }
};

/// Bytes that begin as an archive are one; others are the named parts, a byte 255 between them, beside
/// what `fixed` has.
inline void OpenAny(std::string_view bytes, Parts fixed, std::initializer_list<const char*> names) {
  using namespace platform::spreadsheet;
  try {
    if (bytes.starts_with("PK")) {
      ReadAll(*OpenWorkbookContent(std::string(bytes), "foaie"), 1u << 20, 1u << 14, true);
      return;
    }
    auto package = std::make_unique<Parts>(std::move(fixed));
    for (const char* name : names) {
      const std::string_view part = bytes.substr(0, bytes.find('\xFF'));
      package->parts[name] = part;
      bytes.remove_prefix(std::min(part.size() + 1, bytes.size()));
    }
    ReadAll(*OpenPackage(std::move(package)), 1u << 20, 1u << 14, true);
  } catch (const SheetError&) {
  }
}

}  // namespace fuzz
