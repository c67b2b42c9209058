#include "platform/spreadsheet/xls.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "platform/encoding.h"
#include "platform/spreadsheet/compound_file.h"
#include "platform/spreadsheet/xls_globals.h"
#include "platform/spreadsheet/xls_sheet.h"

namespace platform::spreadsheet {
namespace {

using Reason = SheetError::Reason;

constexpr std::uintmax_t kLargestFile = 1u << 30;  // ten times what the format can hold in practice

bool StartsWith(std::string_view text, std::string_view head) { return text.substr(0, head.size()) == head; }

// Names what a file that is no compound file really is; several programs export such under the name .xls.
[[noreturn]] void RefuseForeign(std::string_view content) {
  if (content.empty()) throw SheetError(Reason::kNotAWorksheet, "fisierul este gol");
  if (StartsWith(content, "PK\x03\x04")) {
    throw SheetError(Reason::kUnsupported,
                     "este o arhiva zip (.xlsx sau .ods), nu .xls; salvati fisierul ca Excel 97-2003 (.xls)");
  }
  std::string head(content.substr(0, 1024));
  head.erase(std::remove(head.begin(), head.end(), '\0'), head.end());  // UTF-16
  for (const std::string_view mark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
    if (StartsWith(head, mark)) head.erase(0, mark.size());
  }
  head.erase(0, std::min(head.find_first_not_of(" \t\r\n"), head.size()));
  const std::string_view text = head;
  if (StartsWith(text, "%PDF")) throw SheetError(Reason::kNotAWorksheet, "este un document PDF, nu .xls");
  if (StartsWith(text, "{\\rtf")) throw SheetError(Reason::kNotAWorksheet, "este un document RTF, nu .xls");
  if (StartsWith(text, "<")) {
    const bool xml = StartsWith(text, "<?xml");
    throw SheetError(Reason::kNotAWorksheet,
                     fmt::format("este un text {} cu numele schimbat, nu .xls; deschideti-l si salvati-l ca "
                                 "Excel 97-2003 (.xls)",
                                 xml ? "XML" : "HTML"));
  }
  throw SheetError(Reason::kNotAWorksheet, "nu este un registru de calcul .xls");
}

std::string WorkbookStream(const std::string& content) {
  if (!CompoundFile::HasSignature(content)) {
    // A workbook stream that was never put into a compound file is read as it is; so are the heads of the
    // versions before BIFF5, which are refused by name.
    if (content.size() >= 4) {
      const std::uint16_t id = LoadU16(content.data());
      const std::uint16_t length = LoadU16(content.data() + 2);
      const bool head = id == 0x0009 || id == 0x0209 || id == 0x0409 || id == biff::kBof;
      if (head && length >= 4 && length <= 16) return content;
    }
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

class XlsWorkbook : public Workbook {
 public:
  XlsWorkbook(std::string stream, std::string file_name)
      : stream_(std::move(stream)), file_name_(std::move(file_name)), globals_(ReadXlsGlobals(stream_)) {
    for (const XlsGlobals::Sheet& sheet : globals_.sheets) infos_.push_back({sheet.name, sheet.hidden});
  }

  const std::vector<SheetInfo>& sheets() const override { return infos_; }

  void Read(std::string_view sheet, CellSink& sink) override {
    const std::string wanted = ToLower(sheet);
    for (const XlsGlobals::Sheet& candidate : globals_.sheets) {
      if (ToLower(candidate.name) != wanted) continue;
      try {
        LoadStrings();
        XlsSheetReader(stream_, globals_, strings_).Read(candidate.offset, sink);
      } catch (const SheetError& error) {
        throw SheetError(error.reason(),
                         fmt::format("{}foaia \"{}\": {}", Prefix(file_name_), candidate.name, error.what()));
      }
      return;
    }
    throw SheetError(Reason::kNoSuchSheet, fmt::format("{}foaia \"{}\" nu exista; foile fisierului sunt: {}",
                                                       Prefix(file_name_), sheet, Names()));
  }

  static std::string Prefix(const std::string& file_name) {
    return file_name.empty() ? "" : fmt::format("Fisierul {}: ", file_name);
  }

 private:
  // Only for the first sheet that is read: whoever asks for the sheets' names does not wait for the texts.
  void LoadStrings() {
    if (globals_.string_segments.empty()) return;
    strings_.Load(ContinuedReader(std::move(globals_.string_segments)));
    globals_.string_segments.clear();
  }

  std::string Names() const {
    std::string names;
    for (const SheetInfo& info : infos_) names += (names.empty() ? "" : ", ") + info.name;
    return names;
  }

  std::string stream_;
  std::string file_name_;
  XlsGlobals globals_;
  SharedStrings strings_;
  std::vector<SheetInfo> infos_;
};

std::string ReadWhole(const std::filesystem::path& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error) throw SheetError(Reason::kUnreadable, "nu poate fi citit: " + error.message());
  if (size > kLargestFile) throw SheetError(Reason::kUnsupported, "este prea mare pentru un registru .xls");
  std::ifstream file(path, std::ios::binary);
  std::string content(static_cast<std::size_t>(size), '\0');
  if (!file || !file.read(content.data(), static_cast<std::streamsize>(size))) {
    throw SheetError(Reason::kUnreadable, "nu poate fi citit (acces interzis sau folosit de alt program)");
  }
  return content;
}

}  // namespace

std::unique_ptr<Workbook> OpenXlsContent(std::string content) {
  std::string stream = WorkbookStream(content);
  content = std::string();
  return std::make_unique<XlsWorkbook>(std::move(stream), "");
}

std::unique_ptr<Workbook> OpenXls(const std::string& host_path) {
  const std::filesystem::path path(std::u8string(host_path.begin(), host_path.end()));
  const std::u8string bare = path.filename().u8string();
  const std::string file_name(bare.begin(), bare.end());
  try {
    std::string stream = WorkbookStream(ReadWhole(path));
    return std::make_unique<XlsWorkbook>(std::move(stream), file_name);
  } catch (const SheetError& error) {
    throw SheetError(error.reason(), XlsWorkbook::Prefix(file_name) + error.what());
  }
}

}  // namespace platform::spreadsheet
