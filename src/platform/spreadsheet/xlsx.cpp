#include "platform/spreadsheet/office_book.h"
#include "platform/spreadsheet/xlsx_parts.h"
#include "platform/spreadsheet/xlsx_sheet.h"

namespace platform::spreadsheet {
namespace {

class XlsxWorkbook : public SheetBook {
 public:
  XlsxWorkbook(std::unique_ptr<Package> package, const std::string& main_part)
      : package_(std::move(package)), parts_(ReadXlsxParts(*package_, main_part)) {
    for (const XlsxParts::Sheet& sheet : parts_.sheets) infos_.push_back({sheet.name, sheet.hidden});
  }

 private:
  void ReadSheet(std::size_t index, CellSink& sink) override {
    // Only for the first sheet that is read: whoever asks for the sheets' names does not wait for the texts.
    if (!parts_.strings_part.empty()) {
      strings_ = ReadXlsxStrings(*package_, parts_.strings_part);
      parts_.strings_part.clear();
    }
    const std::string& part = parts_.sheets[index].part;
    if (part.empty()) throw SheetError(SheetError::Reason::kDamaged, "nu se gaseste la locul ei in fisier");
    XlsxSheetHandler handler(parts_, strings_, sink);
    ReadXml(*package_, part, handler);
    if (!handler.has_data()) {
      throw SheetError(SheetError::Reason::kDamaged,
                       fmt::format("partea {} nu este o foaie de calcul", part));
    }
  }

  std::unique_ptr<Package> package_;
  XlsxParts parts_;
  TextPool strings_;
};

}  // namespace

std::unique_ptr<SheetBook> OpenXlsx(std::unique_ptr<Package> package, const std::string& main_part) {
  return std::make_unique<XlsxWorkbook>(std::move(package), main_part);
}

}  // namespace platform::spreadsheet
