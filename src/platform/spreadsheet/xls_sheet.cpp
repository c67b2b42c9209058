#include "platform/spreadsheet/xls_sheet.h"

#include <algorithm>
#include <bit>

#include "platform/encoding.h"
#include "platform/spreadsheet/cell_value.h"

namespace platform::spreadsheet {
namespace {

using biff::Record;
using biff::RecordReader;

constexpr std::uint16_t kColumns = 256;
constexpr std::size_t kCellHead = 6;  // row, column, XF: 16 bits each

// Payload that a record of this kind has at least; 0 for records that hold no value of a cell.
std::size_t CellPayload(std::uint16_t id) {
  switch (id) {
    case biff::kNumber:
    case biff::kFormula:
    case biff::kFormulaBiff3:
    case biff::kFormulaBiff4:
      return kCellHead + 8;
    case biff::kRk:
    case biff::kLabelSst:
      return kCellHead + 4;
    case biff::kMulRk:
      return kCellHead + 6;  // row, first column, one XF and number, last column
    case biff::kBoolErr:
    case biff::kLabel:
    case biff::kRString:
      return kCellHead + 2;
    default:
      return 0;
  }
}

// A number in 30 bits: the upper half of a double or an integer, either possibly in hundredths.
double DecodeRk(std::uint32_t bits) {
  const double number = (bits & 2) != 0
                            ? static_cast<double>(static_cast<std::int32_t>(bits) >> 2)
                            : std::bit_cast<double>(static_cast<std::uint64_t>(bits & 0xFFFFFFFC) << 32);
  return (bits & 1) != 0 ? number / 100 : number;
}

const char* ErrorName(std::uint8_t code) {
  switch (code) {
    case 0x00:
      return "#NULL!";
    case 0x07:
      return "#DIV/0!";
    case 0x0F:
      return "#VALUE!";
    case 0x17:
      return "#REF!";
    case 0x1D:
      return "#NAME?";
    case 0x24:
      return "#NUM!";
    default:
      return "#N/A";
  }
}

void SetBooleanOrError(CellEvent& cell, bool is_error, std::uint8_t value) {
  cell.kind = is_error ? CellKind::kError : CellKind::kBoolean;
  if (is_error) {
    cell.text = ErrorName(value);
  } else {
    cell.number = value != 0 ? 1 : 0;
  }
}

}  // namespace

void XlsSheetReader::Collect(std::size_t offset) {
  RecordReader reader(stream_, offset);
  Record record;
  if (!reader.Next(record) || record.id != biff::kBof) {
    throw SheetError(SheetError::Reason::kDamaged, "nu se gaseste la locul ei in fisier");
  }
  cells_.clear();
  bool ordered = true;
  for (int depth = 1; depth > 0;) {
    if (!reader.Next(record)) {
      throw SheetError(SheetError::Reason::kDamaged, "este trunchiata, lipseste sfarsitul ei");
    }
    // A chart drawn on the sheet is a substream of its own inside the sheet's.
    if (record.id == biff::kBof) ++depth;
    if (record.id == biff::kEof) --depth;
    if (depth != 1) continue;
    const std::size_t payload = CellPayload(record.id);
    if (payload == 0) continue;
    CellEvent cell;
    if (record.data.size() >= 4) {
      cell.row = LoadU16(record.data.data());
      cell.column = LoadU16(record.data.data() + 2);
    }
    if (record.data.size() < payload) DamagedCell(cell, "celula incompleta");
    if (cell.column >= kColumns) DamagedCell(cell, "coloana in afara foii");
    const CellRecord entry = {static_cast<std::uint32_t>(record.offset), static_cast<std::uint16_t>(cell.row),
                              static_cast<std::uint16_t>(cell.column)};
    if (!cells_.empty()) {
      const CellRecord& last = cells_.back();
      ordered = ordered && (entry.row > last.row || (entry.row == last.row && entry.column > last.column));
    }
    cells_.push_back(entry);
  }
  if (ordered) return;
  const auto key = [](const CellRecord& entry) { return entry.row * 0x10000u + entry.column; };
  std::stable_sort(cells_.begin(), cells_.end(),
                   [&](const CellRecord& a, const CellRecord& b) { return key(a) < key(b); });
  // Of a cell written twice the later record holds.
  const auto end = std::unique(cells_.rbegin(), cells_.rend(),
                               [&](const CellRecord& a, const CellRecord& b) { return key(a) == key(b); });
  cells_.erase(cells_.begin(), end.base());
}

void XlsSheetReader::Read(std::size_t offset, CellSink& sink) {
  Collect(offset);
  next_place_ = 0;
  for (const CellRecord& entry : cells_) {
    RecordReader reader(stream_, entry.offset);
    Record record;
    if (!reader.Next(record) || !Deliver(record, reader, sink)) return;
  }
}

bool XlsSheetReader::Emit(const CellEvent& cell, CellSink& sink) {
  const std::uint64_t place = std::uint64_t{cell.row} * kColumns + cell.column;
  if (place < next_place_) return true;
  next_place_ = place + 1;
  return sink.OnCell(cell);
}

bool XlsSheetReader::Deliver(const Record& record, RecordReader ahead, CellSink& sink) {
  const char* data = record.data.data();
  CellEvent cell;
  cell.row = LoadU16(data);
  cell.column = LoadU16(data + 2);
  if (record.id == biff::kMulRk) return DeliverMulRk(record, cell, sink);
  const std::uint16_t xf = LoadU16(data + 4);
  switch (record.id) {
    case biff::kRk:
      SetNumber(cell, xf, DecodeRk(LoadU32(data + kCellHead)));
      break;
    case biff::kNumber:
      SetNumber(cell, xf, std::bit_cast<double>(LoadU64(data + kCellHead)));
      break;
    case biff::kLabelSst: {
      const std::uint32_t index = LoadU32(data + kCellHead);
      if (index >= strings_->size()) DamagedCell(cell, "textul celulei lipseste din fisier");
      cell.kind = CellKind::kText;
      cell.text = strings_->at(index);
      break;
    }
    case biff::kLabel:
    case biff::kRString:
      cell.kind = CellKind::kText;
      cell.text = InlineText(record, ahead, kCellHead);
      break;
    case biff::kBoolErr:
      SetBooleanOrError(cell, LoadU8(data + kCellHead + 1) != 0, LoadU8(data + kCellHead));
      break;
    default:
      SetFormulaResult(cell, record.data, ahead);
  }
  return Emit(cell, sink);
}

bool XlsSheetReader::DeliverMulRk(const Record& record, CellEvent cell, CellSink& sink) {
  constexpr std::size_t kItem = 6;  // XF, RK number
  const std::size_t count = (record.data.size() - 6) / kItem;
  for (std::size_t i = 0; i < count && cell.column < kColumns; ++i, ++cell.column) {
    const char* item = record.data.data() + 4 + i * kItem;
    SetNumber(cell, LoadU16(item), DecodeRk(LoadU32(item + 2)));
    if (!Emit(cell, sink)) return false;
  }
  return true;
}

void XlsSheetReader::SetNumber(CellEvent& cell, std::uint16_t xf, double number) const {
  spreadsheet::SetNumber(cell, globals_->FormatOf(xf), number, globals_->base_1904);
}

void XlsSheetReader::SetFormulaResult(CellEvent& cell, std::string_view data, RecordReader ahead) {
  enum ResultType : std::uint8_t { kText = 0, kBoolean = 1, kError = 2, kEmptyText = 3 };
  const char* result = data.data() + kCellHead;
  if (LoadU16(result + 6) != 0xFFFF) {
    SetNumber(cell, LoadU16(data.data() + 4), std::bit_cast<double>(LoadU64(result)));
    return;
  }
  const std::uint8_t type = LoadU8(result);
  if (type == kBoolean || type == kError) {
    SetBooleanOrError(cell, type == kError, LoadU8(result + 2));
    return;
  }
  cell.kind = CellKind::kText;
  if (type != kText) return;
  // The text is the next STRING record; the definition of a shared or array formula may lie between.
  for (Record record; ahead.Next(record);) {
    switch (record.id) {
      case biff::kContinue:
      case biff::kSharedFormula:
      case biff::kSharedFormulaOld:
      case biff::kArray:
      case biff::kTable:
        continue;
      case biff::kString:
        cell.text = InlineText(record, ahead, 0);
        return;
      default:
        return;
    }
  }
}

std::string_view XlsSheetReader::InlineText(const Record& record, RecordReader ahead, std::size_t at) {
  text_.clear();
  std::vector<std::string_view> segments = ahead.WithContinuations(record);
  segments[0] = Slice(segments[0], at);
  if (globals_->biff8) {
    // Where the record ends too early, what there is of the text is what the maker's program shows too.
    ContinuedReader(std::move(segments)).UnicodeText(text_);
    return text_;
  }
  if (segments[0].size() < 2) return {};
  std::string bytes;
  std::size_t left = LoadU16(segments[0].data());
  segments[0].remove_prefix(2);
  for (const std::string_view segment : segments) {
    bytes.append(segment.substr(0, left));
    left -= std::min(left, segment.size());
  }
  const bool ascii =
      std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
  text_ = ascii ? std::move(bytes) : FromCodePage(bytes, globals_->code_page);
  return text_;
}

}  // namespace platform::spreadsheet
