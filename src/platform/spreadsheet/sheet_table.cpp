#include "platform/encoding.h"
#include "platform/spreadsheet/cell_value.h"
#include "platform/spreadsheet/table_builder.h"

namespace platform::spreadsheet {
namespace {

constexpr std::uint32_t kTableColumns = 256;  // as a .xls sheet has; what lies farther right is left out

// Takes a worksheet's values into a table from the first row that has one; rows in between stay empty.
class TableSink : public CellSink {
 public:
  explicit TableSink(TableBuilder& builder) : builder_(&builder) {}

  bool OnCell(const CellEvent& cell) override {
    const bool value = cell.kind != CellKind::kEmpty && cell.kind != CellKind::kError &&
                       !(cell.kind == CellKind::kText && cell.text.empty());
    // An error takes part in the used range like any value, and reads as Null.
    if ((!value && cell.kind != CellKind::kError) || cell.column >= kTableColumns) return true;
    if (!started_) {
      next_row_ = cell.row;
      builder_->SetFirstRow(cell.row + 1);
    }
    started_ = true;
    if (next_row_ < cell.row) EndRows(cell.row);
    if (!value) return true;
    width_ = cell.column + 1;
    if (cell.kind == CellKind::kText) {
      builder_->PutText(cell.column, cell.text);
    } else {
      builder_->PutNumber(cell.column, cell.kind, cell.number, cell.zero_pad);
    }
    return true;
  }

  void Finish() {
    if (started_) builder_->EndRow();
  }

 private:
  // A few cells far to the right make many places in the table.
  void EndRows(std::uint32_t row) {
    places_ += width_;
    width_ = 0;
    if (places_ > kMostCells) TooManyCells();
    for (; next_row_ < row; ++next_row_) builder_->EndRow();
  }

  TableBuilder* builder_;
  bool started_ = false;
  std::uint32_t next_row_ = 0;
  std::size_t width_ = 0, places_ = 0;
};

// The worksheet's own name for one that a statement wrote, with or without the fitted characters.
std::string ResolveSheet(const Workbook& book, std::string_view sheet) {
  const std::string wanted = ToLower(sheet);
  for (const SheetInfo& info : book.sheets()) {
    if (ToLower(info.name) == wanted) return info.name;
  }
  const std::string fitted = ToLower(FitHeading(sheet));
  for (const SheetInfo& info : book.sheets()) {
    if (ToLower(FitHeading(info.name)) == fitted) return info.name;
  }
  return std::string(sheet);
}

}  // namespace

Table ReadSheetTable(const std::string& host_path, std::string_view sheet, const SheetOptions& options) {
  return ReadSheetTable(*OpenWorkbook(host_path), sheet, options);
}

Table ReadSheetTable(Workbook& book, std::string_view sheet, const SheetOptions& options) {
  TableBuilder builder;
  TableSink sink(builder);
  book.Read(ResolveSheet(book, sheet), sink);
  sink.Finish();
  builder.FitColumns();
  builder.NameColumns(options.headings ? builder.TakeHeadings() : std::vector<std::string>());
  builder.TypeColumns(options.mixed_as_text);
  return builder.Take();
}

}  // namespace platform::spreadsheet
