#include "platform/spreadsheet/compound_file.h"

#include <algorithm>

#include "platform/encoding.h"
#include "platform/spreadsheet/bytes.h"
#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {
namespace {

constexpr std::string_view kSignature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kEntrySize = 128;
constexpr std::size_t kHeaderTableSlots = 109;
constexpr std::uint32_t kLastSpecial = 0xFFFFFFFA;  // numbers above are marks: free, end of chain, table
constexpr std::uint32_t kFree = 0xFFFFFFFF;
constexpr std::uint8_t kStreamEntry = 2;

[[noreturn]] void Damaged(const char* what) { throw SheetError(SheetError::Reason::kDamaged, what); }

}  // namespace

bool CompoundFile::HasSignature(std::string_view bytes) {
  return bytes.substr(0, kSignature.size()) == kSignature;
}

CompoundFile::CompoundFile(std::string_view bytes) : bytes_(bytes) {
  if (bytes_.size() < kHeaderSize) Damaged("fisierul este trunchiat (antet OLE2 incomplet)");
  const char* header = bytes_.data();
  sector_shift_ = LoadU16(header + 0x1E);
  mini_shift_ = LoadU16(header + 0x20);
  if (sector_shift_ < 7 || sector_shift_ > 16 || mini_shift_ < 4 || mini_shift_ >= sector_shift_) {
    Damaged("antet OLE2 nevalid (marimea sectoarelor)");
  }
  const std::size_t sector_size = std::size_t{1} << sector_shift_;
  const std::size_t body = bytes_.size() > sector_size ? bytes_.size() - sector_size : 0;
  sector_count_ = static_cast<std::uint32_t>((body + sector_size - 1) >> sector_shift_);
  mini_cutoff_ = LoadU32(header + 0x38);
  ReadSectorTable();
  ReadDirectory(LoadU32(header + 0x30));
  const std::string mini_table = ReadChain(LoadU32(header + 0x3C), bytes_.size());
  mini_table_.reserve(mini_table.size() / 4);
  for (std::size_t at = 0; at + 4 <= mini_table.size(); at += 4) {
    mini_table_.push_back(LoadU32(mini_table.data() + at));
  }
  if (!entries_.empty()) mini_stream_ = ReadChain(entries_[0].start, entries_[0].size);
}

std::string_view CompoundFile::Sector(std::uint32_t number) const {
  if (number >= sector_count_) return {};
  return Slice(bytes_, (std::size_t{number} + 1) << sector_shift_, std::size_t{1} << sector_shift_);
}

void CompoundFile::ReadSectorTable() {
  const std::size_t per_sector = (std::size_t{1} << sector_shift_) / 4;
  // A table sector that the file does not hold keeps its place, so that later ones stay in step.
  const auto add_table_sector = [&](std::uint32_t number) {
    if (table_.size() >= sector_count_) return;
    const std::string_view sector = Sector(number);
    for (std::size_t i = 0; i < per_sector; ++i) {
      table_.push_back(i * 4 + 4 <= sector.size() ? LoadU32(sector.data() + i * 4) : kFree);
    }
  };
  for (std::size_t slot = 0; slot < kHeaderTableSlots; ++slot) {
    const std::uint32_t number = LoadU32(bytes_.data() + 0x4C + slot * 4);
    if (number >= kLastSpecial) break;
    add_table_sector(number);
  }
  std::uint32_t next = LoadU32(bytes_.data() + 0x44);
  for (std::uint32_t visited = 0; next < sector_count_ && table_.size() < sector_count_; ++visited) {
    if (visited >= sector_count_) Damaged("tabela de sectoare OLE2 este in bucla");
    const std::string_view sector = Sector(next);
    next = kFree;
    for (std::size_t i = 0; i < per_sector && i * 4 + 4 <= sector.size(); ++i) {
      const std::uint32_t number = LoadU32(sector.data() + i * 4);
      if (i + 1 == per_sector) {
        next = number;
      } else if (number < kLastSpecial) {
        add_table_sector(number);
      }
    }
  }
  if (table_.empty()) Damaged("fisierul nu are tabela de sectoare OLE2");
}

std::string CompoundFile::ReadChain(std::uint32_t start, std::uint64_t limit) const {
  std::string content;
  content.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(limit, bytes_.size())));
  std::uint32_t visited = 0;
  for (std::uint32_t sector = start; sector < sector_count_ && content.size() < limit;) {
    if (++visited > sector_count_) Damaged("lantul de sectoare OLE2 este in bucla");
    content.append(Sector(sector).substr(0, static_cast<std::size_t>(limit - content.size())));
    if (sector >= table_.size()) break;
    sector = table_[sector];
  }
  return content;
}

std::string CompoundFile::ReadMiniChain(std::uint32_t start, std::uint64_t size) const {
  std::string content;
  std::size_t visited = 0;
  for (std::uint32_t sector = start; sector < mini_table_.size() && content.size() < size;) {
    if (++visited > mini_table_.size()) Damaged("lantul de sectoare OLE2 este in bucla");
    const std::size_t length =
        std::min(std::size_t{1} << mini_shift_, static_cast<std::size_t>(size - content.size()));
    content.append(Slice(mini_stream_, std::size_t{sector} << mini_shift_, length));
    sector = mini_table_[sector];
  }
  return content;
}

void CompoundFile::ReadDirectory(std::uint32_t start) {
  const std::string directory = ReadChain(start, bytes_.size());
  const bool long_sizes = sector_shift_ > 9;  // older files leave rubbish in the upper half
  for (std::size_t at = 0; at + kEntrySize <= directory.size(); at += kEntrySize) {
    const char* raw = directory.data() + at;
    Entry entry;
    const std::size_t name_bytes = std::min<std::size_t>(LoadU16(raw + 0x40), 64);
    for (std::size_t i = 0; i + 2 < name_bytes; i += 2) {
      const std::uint16_t unit = LoadU16(raw + i);
      entry.name.push_back(unit >= 0x20 && unit < 0x7F ? static_cast<char>(unit) : '?');
    }
    entry.type = LoadU8(raw + 0x42);
    entry.left = LoadU32(raw + 0x44);
    entry.right = LoadU32(raw + 0x48);
    entry.child = LoadU32(raw + 0x4C);
    entry.start = LoadU32(raw + 0x74);
    entry.size = long_sizes ? LoadU64(raw + 0x78) : LoadU32(raw + 0x78);
    entries_.push_back(std::move(entry));
  }
  if (entries_.empty()) Damaged("fisierul nu are director OLE2");
}

const CompoundFile::Entry* CompoundFile::Find(std::string_view name) const {
  const auto matches = [&](const Entry& entry) {
    return entry.type == kStreamEntry && EqualsNoCase(entry.name, name);
  };
  // Only the root's own children: an embedded workbook lies in a storage and has a stream of the same name.
  std::vector<bool> seen(entries_.size());
  std::vector<std::uint32_t> pending = {entries_[0].child};
  while (!pending.empty()) {
    const std::uint32_t index = pending.back();
    pending.pop_back();
    if (index >= entries_.size() || seen[index]) continue;
    seen[index] = true;
    if (matches(entries_[index])) return &entries_[index];
    pending.push_back(entries_[index].left);
    pending.push_back(entries_[index].right);
  }
  // Some writers leave the tree unlinked and only fill the list, the book before anything embedded.
  const auto found = std::find_if(entries_.begin(), entries_.end(), matches);
  return found == entries_.end() ? nullptr : &*found;
}

std::optional<std::string> CompoundFile::Stream(std::string_view name) const {
  const Entry* entry = Find(name);
  if (entry == nullptr) return std::nullopt;
  return entry->size < mini_cutoff_ ? ReadMiniChain(entry->start, entry->size)
                                    : ReadChain(entry->start, entry->size);
}

}  // namespace platform::spreadsheet
