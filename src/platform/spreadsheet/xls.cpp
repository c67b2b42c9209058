#include "platform/spreadsheet/xls.h"

#include "platform/spreadsheet/compound_file.h"
#include "platform/spreadsheet/foreign_file.h"
#include "platform/spreadsheet/xls_globals.h"
#include "platform/spreadsheet/xls_sheet.h"

namespace platform::spreadsheet {
namespace {

using Reason = SheetError::Reason;

// A workbook stream that was never put into a compound file is read as it is; so are the heads of the
// versions before BIFF5, which are refused by name.
bool IsBareStream(std::string_view content) {
  if (content.size() < 4) return false;
  const std::uint16_t id = LoadU16(content.data());
  const std::uint16_t length = LoadU16(content.data() + 2);
  const bool head = id == 0x0009 || id == 0x0209 || id == 0x0409 || id == biff::kBof;
  return head && length >= 4 && length <= 16;
}

std::string WorkbookStream(const std::string& content) {
  if (!CompoundFile::HasSignature(content)) {
    if (IsBareStream(content)) return content;
    RefuseForeign(content);
  }
  const CompoundFile file(content);
  // Files for both Excel 95 and 97 hold two books; the newer is complete.
  for (const char* name : {"Workbook", "Book"}) {
    if (std::optional<std::string> stream = file.Stream(name)) return *std::move(stream);
  }
  if (file.Stream("EncryptedPackage")) {
    throw SheetError(Reason::kEncrypted, "fisierul este criptat; salvati-l fara parola la deschidere");
  }
  throw SheetError(Reason::kNotAWorksheet, "fisierul nu contine un registru de calcul (alt document OLE2)");
}

class XlsWorkbook : public SheetBook {
 public:
  explicit XlsWorkbook(std::string stream) : stream_(std::move(stream)), globals_(ReadXlsGlobals(stream_)) {
    for (const XlsGlobals::Sheet& sheet : globals_.sheets) infos_.push_back({sheet.name, sheet.hidden});
  }

 private:
  void ReadSheet(std::size_t index, CellSink& sink) override {
    LoadStrings();
    XlsSheetReader(stream_, globals_, strings_).Read(globals_.sheets[index].offset, sink);
  }

  // Only for the first sheet that is read: whoever asks for the sheets' names does not wait for the texts.
  void LoadStrings() {
    if (globals_.string_segments.empty()) return;
    strings_ = ReadSharedStrings(ContinuedReader(std::move(globals_.string_segments)));
    globals_.string_segments.clear();
  }

  std::string stream_;
  XlsGlobals globals_;
  TextPool strings_;
};

}  // namespace

bool IsXls(std::string_view content) { return CompoundFile::HasSignature(content) || IsBareStream(content); }

std::unique_ptr<SheetBook> OpenXlsContent(std::string content) {
  std::string stream = WorkbookStream(content);
  content = std::string();
  return std::make_unique<XlsWorkbook>(std::move(stream));
}

}  // namespace platform::spreadsheet
