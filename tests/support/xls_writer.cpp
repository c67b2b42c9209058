#include "support/xls_writer.h"

#include <bit>
#include <cstring>
#include <fstream>

#include "platform/encoding.h"

namespace test_support {
namespace {

constexpr std::size_t kSector = 512;
constexpr std::size_t kMiniSector = 64;
constexpr std::size_t kMiniCutoff = 4096;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFree = 0xFFFFFFFF;
constexpr std::uint32_t kTableSector = 0xFFFFFFFD;
constexpr std::uint32_t kChainSector = 0xFFFFFFFC;
constexpr std::size_t kHeaderSlots = 109;
constexpr std::size_t kRecordLimit = 8224;
constexpr unsigned kFirstCellXf = 15;
constexpr unsigned kFirstFormat = 164;

void Append(std::string& out, std::uint64_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>(value >> (8 * i)));
}

void Pad(std::string& out, std::size_t unit) { out.resize((out.size() + unit - 1) / unit * unit); }

std::string DirectoryEntry(std::string_view name, unsigned type, std::uint32_t child, std::uint32_t start,
                           std::size_t size) {
  std::string entry;
  for (const char c : name) Append(entry, static_cast<unsigned char>(c), 2);
  entry.resize(64);
  Append(entry, (name.size() + 1) * 2, 2);
  Append(entry, type, 1);
  Append(entry, 1, 1);  // black
  Append(entry, kFree, 4);
  Append(entry, kFree, 4);
  Append(entry, child, 4);
  entry.resize(0x74);
  Append(entry, start, 4);
  Append(entry, size, 8);
  return entry;
}

// Sectors and the table that chains them.
struct Sectors {
  std::string body;
  std::vector<std::uint32_t> table;

  std::uint32_t Add(std::string content) {
    if (content.empty()) return kEndOfChain;
    Pad(content, kSector);
    const auto start = static_cast<std::uint32_t>(table.size());
    const std::size_t count = content.size() / kSector;
    for (std::size_t i = 1; i < count; ++i) table.push_back(static_cast<std::uint32_t>(start + i));
    table.push_back(kEndOfChain);
    body += content;
    return start;
  }
};

/// A BIFF8 text: one byte a character where all fit, two elsewhere.
struct Characters {
  explicit Characters(std::string_view utf8, bool always_wide = false)
      : bytes(platform::ToCodePage(utf8, 1200)), wide(always_wide) {
    for (std::size_t i = 1; i < bytes.size(); i += 2) wide = wide || bytes[i] != 0;
    units = static_cast<unsigned>(bytes.size() / 2);
    if (wide) return;
    std::string narrow;
    for (std::size_t i = 0; i < bytes.size(); i += 2) narrow += bytes[i];
    bytes = narrow;
  }
  std::string bytes;
  bool wide;
  unsigned units = 0;
};

}  // namespace

BiffStream& BiffStream::U8(unsigned value) { return Append(bytes_, value, 1), *this; }
BiffStream& BiffStream::U16(unsigned value) { return Append(bytes_, value, 2), *this; }
BiffStream& BiffStream::U32(std::uint32_t value) { return Append(bytes_, value, 4), *this; }
BiffStream& BiffStream::F64(double value) {
  return Append(bytes_, std::bit_cast<std::uint64_t>(value), 8), *this;
}
BiffStream& BiffStream::Bytes(std::string_view bytes) { return bytes_ += bytes, *this; }

BiffStream& BiffStream::Begin(unsigned id) {
  End();
  U16(id).U16(0);
  open_ = bytes_.size();
  return *this;
}

void BiffStream::End() {
  if (open_ == 0) return;
  const std::size_t length = bytes_.size() - open_;
  bytes_[open_ - 2] = static_cast<char>(length);
  bytes_[open_ - 1] = static_cast<char>(length >> 8);
  open_ = 0;
}

std::string BiffStream::Take() {
  End();
  return std::move(bytes_);
}

std::string CompoundFileOf(const std::string& stream, std::string_view name) {
  Sectors sectors;
  const bool mini = stream.size() < kMiniCutoff;
  std::string content = stream;
  std::string mini_table;
  if (mini) {
    Pad(content, kMiniSector);
    const std::size_t count = content.size() / kMiniSector;
    for (std::size_t i = 1; i <= count; ++i) Append(mini_table, i == count ? kEndOfChain : i, 4);
  }
  const std::size_t content_size = content.size();
  const std::uint32_t content_start = sectors.Add(std::move(content));
  const std::uint32_t mini_start = sectors.Add(mini_table);
  std::string directory = mini ? DirectoryEntry("Root Entry", 5, 1, content_start, content_size)
                               : DirectoryEntry("Root Entry", 5, 1, kEndOfChain, 0);
  directory += DirectoryEntry(name, 2, kFree, mini ? 0 : content_start, stream.size());
  const std::uint32_t directory_start = sectors.Add(std::move(directory));

  // The table describes its own sectors and those of the list of table sectors, too.
  constexpr std::size_t kPerSector = kSector / 4;
  const std::size_t used = sectors.table.size();
  std::size_t tables = 1;
  std::size_t lists = 0;
  for (;;) {
    lists = tables > kHeaderSlots ? (tables - kHeaderSlots + kPerSector - 2) / (kPerSector - 1) : 0;
    if (tables * kPerSector >= used + tables + lists) break;
    ++tables;
  }
  sectors.table.insert(sectors.table.end(), tables, kTableSector);
  sectors.table.insert(sectors.table.end(), lists, kChainSector);
  sectors.table.resize(tables * kPerSector, kFree);

  std::string file("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
  file.resize(0x18);
  Append(file, 0x003E, 2);
  Append(file, 3, 2);
  Append(file, 0xFFFE, 2);
  Append(file, 9, 2);
  Append(file, 6, 2);
  file.resize(0x2C);
  Append(file, tables, 4);
  Append(file, directory_start, 4);
  Append(file, 0, 4);
  Append(file, kMiniCutoff, 4);
  Append(file, mini ? mini_start : kEndOfChain, 4);
  Append(file, mini ? 1 : 0, 4);
  Append(file, lists > 0 ? used + tables : kEndOfChain, 4);
  Append(file, lists, 4);
  for (std::size_t i = 0; i < kHeaderSlots; ++i) Append(file, i < tables ? used + i : kFree, 4);
  file += sectors.body;
  for (const std::uint32_t next : sectors.table) Append(file, next, 4);
  for (std::size_t list = 0; list < lists; ++list) {
    for (std::size_t i = 0; i + 1 < kPerSector; ++i) {
      const std::size_t index = kHeaderSlots + list * (kPerSector - 1) + i;
      Append(file, index < tables ? used + index : kFree, 4);
    }
    Append(file, list + 1 < lists ? used + tables + list + 1 : kEndOfChain, 4);
  }
  return file;
}

BiffStream& XlsWriter::Sheet::Cell(unsigned id, unsigned row, unsigned column, std::string_view format) {
  return cells_.Begin(id).U16(row).U16(column).U16(kFirstCellXf + book_->FormatIndex(format));
}

void XlsWriter::Sheet::Text(unsigned row, unsigned column, std::string_view utf8) {
  Cell(0x00FD, row, column).U32(book_->TextIndex(utf8));
}

void XlsWriter::Sheet::Number(unsigned row, unsigned column, double number, std::string_view format) {
  Cell(0x0203, row, column, format).F64(number);
}

void XlsWriter::Sheet::Date(unsigned row, unsigned column, double days, std::string_view format) {
  Number(row, column, days, format);
}

void XlsWriter::Sheet::Boolean(unsigned row, unsigned column, bool value) {
  Cell(0x0205, row, column).U8(value ? 1 : 0).U8(0);
}

void XlsWriter::Sheet::Error(unsigned row, unsigned column, unsigned code) {
  Cell(0x0205, row, column).U8(code).U8(1);
}

void XlsWriter::Sheet::Formula(unsigned row, unsigned column, std::uint64_t result, std::string_view format) {
  Cell(0x0006, row, column, format).F64(std::bit_cast<double>(result)).U16(0).U32(0);
  cells_.U16(3).U8(0x1E).U16(0);  // one token: the integer 0
}

void XlsWriter::Sheet::FormulaNumber(unsigned row, unsigned column, double result, std::string_view format) {
  Formula(row, column, std::bit_cast<std::uint64_t>(result), format);
}

void XlsWriter::Sheet::FormulaText(unsigned row, unsigned column, std::string_view result) {
  Formula(row, column, result.empty() ? 0xFFFF000000000003 : 0xFFFF000000000000);
  if (result.empty()) return;
  const Characters text(result);
  cells_.Begin(0x0207).U16(text.units).U8(text.wide ? 1 : 0).Bytes(text.bytes);
}

void XlsWriter::Sheet::FormulaBoolean(unsigned row, unsigned column, bool result) {
  Formula(row, column, 0xFFFF000000000001 | (result ? 0x10000u : 0u));
}

void XlsWriter::Sheet::FormulaError(unsigned row, unsigned column, unsigned code) {
  Formula(row, column, 0xFFFF000000000002 | (code << 16));
}

void XlsWriter::Sheet::Row(unsigned row, std::string_view cells) {
  for (unsigned column = 0;; ++column) {
    const std::size_t end = cells.find('|');
    const std::string cell(cells.substr(0, end));
    const std::string rest = cell.empty() ? "" : cell.substr(1);
    const auto number = [&] { return std::stod(rest); };
    switch (cell.empty() ? ' ' : cell[0]) {
      case '=':
        Number(row, column, number());
        break;
      case '~':
        FormulaNumber(row, column, number());
        break;
      case '"':
        FormulaText(row, column, rest);
        break;
      case '0':
        Number(row, column, number(), "00000000");
        break;
      case '@':
        Date(row, column, number());
        break;
      case '?':
        Boolean(row, column, rest == "1");
        break;
      case '!':
        Error(row, column, 0x2A);
        break;
      case '\'':
        Text(row, column, rest);
        break;
      default:
        break;
    }
    if (end == std::string_view::npos) return;
    cells.remove_prefix(end + 1);
  }
}

XlsWriter::Sheet& XlsWriter::AddSheet(std::string_view name, bool hidden) {
  sheets_.push_back(std::unique_ptr<Sheet>(new Sheet(*this, std::string(name), hidden)));
  return *sheets_.back();
}

unsigned XlsWriter::FormatIndex(std::string_view format) {
  if (formats_.empty()) formats_.emplace_back("General");
  for (std::size_t i = 0; i < formats_.size(); ++i) {
    if (formats_[i] == format) return static_cast<unsigned>(i);
  }
  formats_.emplace_back(format);
  return static_cast<unsigned>(formats_.size() - 1);
}

std::uint32_t XlsWriter::TextIndex(std::string_view text) {
  ++text_uses_;
  const auto [entry, added] = text_index_.emplace(text, static_cast<std::uint32_t>(texts_.size()));
  if (added) texts_.emplace_back(text);
  return entry->second;
}

void XlsWriter::WriteTexts(BiffStream& out) {
  out.Begin(0x00FC).U32(text_uses_).U32(static_cast<std::uint32_t>(texts_.size()));
  std::size_t used = 8;
  for (const std::string& utf8 : texts_) {
    const Characters text(utf8);
    const std::size_t width = text.wide ? 2 : 1;
    // The three bytes of a text's head stay together; its characters may go on behind a boundary.
    if (kRecordLimit - used < 3) {
      out.Begin(0x003C);
      used = 0;
    }
    out.U16(text.units).U8(text.wide ? 1 : 0);
    used += 3;
    std::string_view rest = text.bytes;
    while (!rest.empty()) {
      const std::size_t fit = std::min(rest.size(), (kRecordLimit - used) / width * width);
      out.Bytes(rest.substr(0, fit));
      used += fit;
      rest.remove_prefix(fit);
      if (rest.empty()) break;
      out.Begin(0x003C).U8(text.wide ? 1 : 0);
      used = 1;
    }
  }
}

void XlsWriter::WriteGlobals(BiffStream& out, std::vector<std::size_t>& offset_slots) {
  out.Begin(0x0809).U16(0x0600).U16(0x0005).U16(0x0DBB).U16(0x07CC).U32(0).U32(0x0600);
  out.Begin(0x0042).U16(1200);
  out.Begin(0x003D).U16(0).U16(0).U16(0x4000).U16(0x2000).U16(0x38).U16(0).U16(0).U16(1).U16(600);
  out.Begin(0x0022).U16(base_1904_ ? 1 : 0);
  for (int font = 0; font < 4; ++font) {
    out.Begin(0x0031).U16(200).U16(0).U16(0x7FFF).U16(400).U16(0).U8(0).U8(2).U8(0).U8(0).U8(5).U8(0);
    out.Bytes("Arial");
  }
  FormatIndex("General");
  for (std::size_t i = 1; i < formats_.size(); ++i) {
    const Characters text(formats_[i], true);
    out.Begin(0x041E).U16(kFirstFormat + static_cast<unsigned>(i)).U16(text.units).U8(1).Bytes(text.bytes);
  }
  for (unsigned xf = 0; xf < kFirstCellXf + formats_.size(); ++xf) {
    const bool cell = xf >= kFirstCellXf;
    const unsigned format = xf > kFirstCellXf ? kFirstFormat + xf - kFirstCellXf : 0;
    out.Begin(0x00E0).U16(0).U16(format).U16(cell ? 0x0001 : 0xFFF5).U8(0x20).U8(0).U8(0);
    out.U8(cell ? 0x04 : 0).U32(0).U32(0).U16(0x20C0);
  }
  out.Begin(0x0293).U16(0x8000).U8(0).U8(0xFF);
  for (const auto& sheet : sheets_) {
    const Characters name(sheet->name_, true);
    out.Begin(0x0085);
    offset_slots.push_back(out.size());
    out.U32(0).U8(sheet->hidden_ ? 1 : 0).U8(0).U8(name.units).U8(1).Bytes(name.bytes);
  }
  WriteTexts(out);
  out.Begin(0x000A).End();
}

std::string XlsWriter::Stream() {
  BiffStream globals;
  std::vector<std::size_t> offset_slots;
  WriteGlobals(globals, offset_slots);
  std::string stream = globals.Take();
  for (std::size_t i = 0; i < sheets_.size(); ++i) {
    std::string offset;
    Append(offset, stream.size(), 4);
    stream.replace(offset_slots[i], 4, offset);
    BiffStream sheet;
    sheet.Begin(0x0809).U16(0x0600).U16(0x0010).U16(0x0DBB).U16(0x07CC).U32(0).U32(0x0600);
    sheet.Begin(0x0200).U32(0).U32(0).U16(0).U16(0).U16(0);  // empty on purpose: nobody should trust it
    sheet.End();
    BiffStream cells = sheets_[i]->cells_;
    sheet.Bytes(cells.Take());
    sheet.Begin(0x023E).U16(i == 0 ? 0x06B6 : 0x00B6).U16(0).U16(0).U32(0x40).U16(0).U16(0).U32(0);
    sheet.Begin(0x000A).End();
    stream += sheet.Take();
  }
  return stream;
}

std::string XlsWriter::Content() { return CompoundFileOf(Stream(), "Workbook"); }

void XlsWriter::Save(const std::string& host_path) {
  std::ofstream file(host_path, std::ios::binary);
  file << Content();
}

}  // namespace test_support
