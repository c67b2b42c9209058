#include "platform/spreadsheet/ods_content.h"
#include "platform/spreadsheet/office_book.h"

namespace platform::spreadsheet {
namespace {

using Reason = SheetError::Reason;

class OdsWorkbook : public SheetBook {
 public:
  explicit OdsWorkbook(Package& package) {
    constexpr std::string_view kManifest = "META-INF/manifest.xml";
    if (package.Has(kManifest) && package.ReadWhole(kManifest).find("encryption-data") != std::string::npos) {
      throw SheetError(Reason::kEncrypted, "fisierul este criptat; salvati-l fara parola la deschidere");
    }
    OdsHandler handler(content_);
    if (package.Has("styles.xml")) ReadXml(package, "styles.xml", handler);
    ReadXml(package, "content.xml", handler);
    if (!handler.has_spreadsheet()) {
      throw SheetError(Reason::kNotAWorksheet,
                       "este un document OpenDocument, dar nu o foaie de calcul .ods");
    }
    for (const OdsContent::Sheet& sheet : content_.sheets) infos_.push_back(sheet.info);
  }

 private:
  void ReadSheet(std::size_t index, CellSink& sink) override {
    std::size_t delivered = 0;
    for (const OdsContent::Row& row : content_.sheets[index].rows) {
      for (std::uint32_t i = 0; i < row.repeat; ++i) {
        for (std::size_t place = row.first; place < row.last; ++place) {
          const OdsContent::Cell& cell = content_.cells[place];
          delivered += cell.repeat;
          if (delivered > kMostCells) TooManyCells();
          if (!Deliver(cell, row.row + i, sink)) return;
        }
      }
    }
  }

  bool Deliver(const OdsContent::Cell& cell, std::uint32_t row, CellSink& sink) const {
    CellEvent event;
    event.row = row;
    event.kind = cell.kind;
    event.number = cell.number;
    event.zero_pad = cell.zero_pad;
    event.text = cell.text;
    for (std::uint32_t i = 0; i < cell.repeat; ++i) {
      event.column = cell.column + i;
      if (!sink.OnCell(event)) return false;
    }
    return true;
  }

  OdsContent content_;
};

}  // namespace

std::unique_ptr<SheetBook> OpenOds(std::unique_ptr<Package> package) {
  return std::make_unique<OdsWorkbook>(*package);
}

}  // namespace platform::spreadsheet
