#include "platform/spreadsheet/xls_globals.h"

#include <unordered_map>

#include "platform/encoding.h"
#include "platform/spreadsheet/biff_records.h"
#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {
namespace {

using biff::Record;
using biff::RecordReader;

constexpr std::uint16_t kVersionBiff5 = 0x0500;
constexpr std::uint16_t kVersionBiff8 = 0x0600;

// Two code pages have numbers of their own in these files.
int CodePageNumber(std::uint16_t number) {
  if (number == 0x8000) return 10000;  // Macintosh Roman
  if (number == 0x8001 || number == 0) return 1252;
  return number;
}

class GlobalsReader {
 public:
  explicit GlobalsReader(std::string_view stream) : stream_(stream) {}

  XlsGlobals Read() {
    RecordReader reader(stream_, 0);
    Record record;
    CheckVersion(reader, record);
    int depth = 1;
    while (depth > 0) {
      if (!reader.Next(record)) {
        throw SheetError(SheetError::Reason::kDamaged, "registrul este trunchiat (descrierea foilor)");
      }
      if (record.id == biff::kBof) {
        ++depth;
      } else if (record.id == biff::kEof) {
        --depth;
      } else if (depth == 1) {
        Take(record, reader);
      }
    }
    Resolve();
    return std::move(globals_);
  }

 private:
  void CheckVersion(RecordReader& reader, Record& record) {
    if (!reader.Next(record)) {
      throw SheetError(SheetError::Reason::kDamaged, "registrul este gol sau trunchiat");
    }
    // BOF of BIFF2, 3 and 4: the record's own number tells the version.
    if (record.id == 0x0009 || record.id == 0x0209 || record.id == 0x0409) {
      throw SheetError(SheetError::Reason::kUnsupported,
                       "format prea vechi (Excel 2, 3 sau 4); salvati fisierul ca Excel 97-2003 (.xls)");
    }
    if (record.id != biff::kBof || record.data.size() < 4) {
      throw SheetError(SheetError::Reason::kDamaged, "registrul nu incepe cu antetul cunoscut");
    }
    const std::uint16_t version = LoadU16(record.data.data());
    if (version != kVersionBiff5 && version != kVersionBiff8) {
      throw SheetError(SheetError::Reason::kUnsupported, "versiune necunoscuta a formatului .xls");
    }
    globals_.biff8 = version == kVersionBiff8;
  }

  void Take(const Record& record, RecordReader& reader) {
    const std::string_view data = record.data;
    switch (record.id) {
      case biff::kFilePass:
        throw SheetError(SheetError::Reason::kEncrypted,
                         "fisierul este criptat; salvati-l fara parola la deschidere");
      case biff::kDate1904:
        globals_.base_1904 = data.size() >= 2 && LoadU16(data.data()) != 0;
        break;
      case biff::kCodePage:
        if (data.size() >= 2) globals_.code_page = CodePageNumber(LoadU16(data.data()));
        break;
      case biff::kFormat:
        TakeFormat(data);
        break;
      case biff::kXf:
        xf_formats_.push_back(data.size() >= 4 ? LoadU16(data.data() + 2) : std::uint16_t{0});
        break;
      case biff::kBoundSheet:
        if (data.size() >= 7) raw_sheets_.push_back(data);
        break;
      case biff::kSst:
        globals_.string_segments = reader.WithContinuations(record);
        break;
      default:
        break;
    }
  }

  void TakeFormat(std::string_view data) {
    if (data.size() < 3) return;
    std::string text;
    if (globals_.biff8) {
      ContinuedReader(std::vector<std::string_view>{Slice(data, 2)}).UnicodeText(text);
    } else {
      text = Slice(data, 3, LoadU8(data.data() + 2));
    }
    stored_formats_[LoadU16(data.data())] = ClassifyNumberFormat(text);
  }

  // Names wait for the end of the substream, since the code page may come behind them.
  void Resolve() {
    for (const std::uint16_t index : xf_formats_) {
      const auto stored = stored_formats_.find(index);
      globals_.formats.push_back(stored != stored_formats_.end() ? stored->second
                                                                 : BuiltInNumberFormat(index));
    }
    for (const std::string_view data : raw_sheets_) {
      XlsGlobals::Sheet sheet;
      sheet.offset = LoadU32(data.data());
      sheet.hidden = (LoadU8(data.data() + 4) & 0x03) != 0;
      if (LoadU8(data.data() + 5) != 0 || !IsWorksheet(sheet.offset)) continue;
      sheet.name = SheetName(data);
      globals_.sheets.push_back(std::move(sheet));
    }
  }

  // A sheet whose BOF record cannot be found stays in the list: reading it says that it is damaged.
  bool IsWorksheet(std::size_t offset) const {
    RecordReader reader(stream_, offset);
    Record record;
    if (!reader.Next(record) || record.id != biff::kBof || record.data.size() < 4) return true;
    return LoadU16(record.data.data() + 2) == biff::kWorksheet;
  }

  std::string SheetName(std::string_view data) const {
    const std::size_t count = LoadU8(data.data() + 6);
    if (!globals_.biff8) return FromCodePage(Slice(data, 7, count), globals_.code_page);
    std::string name;
    if (data.size() < 8) return name;
    ContinuedReader reader({Slice(data, 8)});
    reader.Characters(count, (LoadU8(data.data() + 7) & 1) != 0, name);
    return name;
  }

  std::string_view stream_;
  XlsGlobals globals_;
  std::unordered_map<std::uint16_t, NumberFormat> stored_formats_;
  std::vector<std::uint16_t> xf_formats_;
  std::vector<std::string_view> raw_sheets_;
};

}  // namespace

XlsGlobals ReadXlsGlobals(std::string_view stream) { return GlobalsReader(stream).Read(); }

}  // namespace platform::spreadsheet
