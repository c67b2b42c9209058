// The same 65,000 x 22 cells as .xls, .xlsx and .ods: how long each takes to read, as ratios to the .xls
// file. The .xlsx comes from libxlsxwriter; the .ods has what a spreadsheet program writes into each cell,
// the shown text too.
#include <xlsxwriter.h>
#include <zip.h>

#include <chrono>
#include <filesystem>

#include "platform/spreadsheet/table.h"
#include "support/test_host.h"
#include "support/xls_writer.h"

namespace {

using namespace platform::spreadsheet;

constexpr unsigned kRows = 65000;
constexpr unsigned kColumns = 22;

// What stands in each column: a supplier's list of lines.
enum class Kind { kText, kCode, kDate, kAmount };
constexpr Kind kKinds[kColumns] = {Kind::kAmount, Kind::kDate,   Kind::kText,   Kind::kCode,   Kind::kAmount,
                                   Kind::kText,   Kind::kAmount, Kind::kAmount, Kind::kText,   Kind::kAmount,
                                   Kind::kText,   Kind::kText,   Kind::kAmount, Kind::kText,   Kind::kText,
                                   Kind::kText,   Kind::kDate,   Kind::kText,   Kind::kAmount, Kind::kAmount,
                                   Kind::kAmount, Kind::kText};

std::string TextAt(unsigned row, unsigned column) {
  switch (column) {
    case 2:
      return fmt::format("Piese și accesorii pentru mașini, tip {}", row % 2500);
    case 15:
      return fmt::format("RE-{}", 260000 + row / 20);
    case 17:
      return fmt::format("DE{}", 100000000 + row % 2100);
    default:
      return std::string(1, static_cast<char>('A' + row % 26)) + static_cast<char>('A' + column);
  }
}

double NumberAt(unsigned row, unsigned column) {
  switch (kKinds[column]) {
    case Kind::kCode:
      return 1012100 + row % 2500 * 37000;
    case Kind::kDate:
      return 46082 + row % 30;
    default:
      return (row * 37 + column * 11) % 100000 / 100.0;
  }
}

void WriteXls(const std::string& path) {
  test_support::XlsWriter book;
  auto& sheet = book.AddSheet("Sheet1");
  for (unsigned column = 0; column < kColumns; ++column)
    sheet.Text(0, column, fmt::format("Coloana {}", column));
  for (unsigned row = 1; row <= kRows; ++row) {
    for (unsigned column = 0; column < kColumns; ++column) {
      if (kKinds[column] == Kind::kText) {
        sheet.Text(row, column, TextAt(row, column));
      } else if (kKinds[column] == Kind::kDate) {
        sheet.Date(row, column, NumberAt(row, column));
      } else {
        sheet.Number(row, column, NumberAt(row, column),
                     kKinds[column] == Kind::kCode ? "00000000" : "General");
      }
    }
  }
  book.Save(path);
}

void WriteXlsx(const std::string& path) {
  lxw_workbook* book = workbook_new(path.c_str());
  lxw_worksheet* sheet = workbook_add_worksheet(book, "Sheet1");
  lxw_format* date = workbook_add_format(book);
  format_set_num_format(date, "dd.mm.yyyy");
  lxw_format* code = workbook_add_format(book);
  format_set_num_format(code, "00000000");
  for (unsigned row = 0; row <= kRows; ++row) {
    for (unsigned i = 0; i < kColumns; ++i) {
      const auto column = static_cast<lxw_col_t>(i);
      if (row == 0) {
        worksheet_write_string(sheet, 0, column, fmt::format("Coloana {}", i).c_str(), nullptr);
      } else if (kKinds[i] == Kind::kText) {
        worksheet_write_string(sheet, row, column, TextAt(row, i).c_str(), nullptr);
      } else {
        lxw_format* const format = kKinds[i] == Kind::kDate   ? date
                                   : kKinds[i] == Kind::kCode ? code
                                                              : nullptr;
        worksheet_write_number(sheet, row, column, NumberAt(row, i), format);
      }
    }
  }
  workbook_close(book);
}

std::string OdsCell(unsigned row, unsigned column) {
  const auto text = [](const std::string& shown) {
    return "<table:table-cell office:value-type=\"string\" calcext:value-type=\"string\"><text:p>" + shown +
           "</text:p></table:table-cell>";
  };
  if (row == 0) return text(fmt::format("Coloana {}", column));
  if (kKinds[column] == Kind::kText) return text(TextAt(row, column));
  const double number = NumberAt(row, column);
  if (kKinds[column] == Kind::kDate) {
    const std::string day = DateToText(number);
    return fmt::format(
        "<table:table-cell table:style-name=\"ce1\" office:value-type=\"date\" "
        "office:date-value=\"{2}-{1}-{0}\" "
        "calcext:value-type=\"date\"><text:p>{0}.{1}.{2}</text:p></table:table-cell>",
        day.substr(0, 2), day.substr(3, 2), day.substr(6));
  }
  const bool code = kKinds[column] == Kind::kCode;
  return fmt::format(
      "<table:table-cell{} office:value-type=\"float\" office:value=\"{}\" "
      "calcext:value-type=\"float\"><text:p>{}"
      "</text:p></table:table-cell>",
      code ? " table:style-name=\"ce2\"" : "", number,
      code ? NumberToText(number, 8) : fmt::format("{:.2f}", number));
}

void WriteOds(const std::string& path) {
  std::string content =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><office:document-content xmlns:office=\"o\" "
      "xmlns:table=\"t\" "
      "xmlns:text=\"x\" xmlns:style=\"s\" xmlns:number=\"n\" xmlns:calcext=\"c\"><office:automatic-styles>"
      "<number:number-style style:name=\"N8\"><number:number number:decimal-places=\"0\" "
      "number:min-integer-digits=\"8\"/></number:number-style><style:style style:name=\"ce1\" "
      "style:family=\"table-cell\"/><style:style style:name=\"ce2\" style:family=\"table-cell\" "
      "style:data-style-name=\"N8\"/></office:automatic-styles><office:body><office:spreadsheet>"
      "<table:table table:name=\"Sheet1\"><table:table-column table:number-columns-repeated=\"22\"/>";
  for (unsigned row = 0; row <= kRows; ++row) {
    content += "<table:table-row table:style-name=\"ro1\">";
    for (unsigned column = 0; column < kColumns; ++column) content += OdsCell(row, column);
    content += "</table:table-row>";
  }
  content += "</table:table></office:spreadsheet></office:body></office:document-content>";
  const std::string_view type = "application/vnd.oasis.opendocument.spreadsheet";
  zip_t* archive = zip_open(path.c_str(), ZIP_CREATE, nullptr);
  zip_file_add(archive, "mimetype", zip_source_buffer(archive, type.data(), type.size(), 0), 0);
  zip_file_add(archive, "content.xml", zip_source_buffer(archive, content.data(), content.size(), 0), 0);
  zip_close(archive);
}

class Counter : public CellSink {
 public:
  bool OnCell(const CellEvent& cell) override {
    ++cells;
    sum += cell.number + static_cast<double>(cell.text.size());
    return true;
  }
  std::size_t cells = 0;
  double sum = 0;
};

template <typename Work>
double BestOf(const Work& work) {
  double best = 1e9;
  for (int round = 0; round < 9; ++round) {
    const auto start = std::chrono::steady_clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}

}  // namespace

int main() {
  const test_support::TempFolder folder;
  double cells_xls = 0, table_xls = 0, sum_xls = 0;
  fmt::print("| {} x {} | MiB | cells, s | / .xls | typed table, s | / .xls |\n|---|---|---|---|---|---|\n",
             kRows, kColumns);
  for (const char* extension : {".xls", ".xlsx", ".ods"}) {
    const std::string path = (folder.path() / fmt::format("foaie{}", extension)).string();
    (extension == std::string_view(".xls")   ? WriteXls
     : extension == std::string_view(".ods") ? WriteOds
                                             : WriteXlsx)(path);
    Counter counter;
    const double cells = BestOf([&] {
      counter = Counter();
      OpenWorkbook(path)->Read("Sheet1", counter);
    });
    const double table = BestOf([&] { ReadSheetTable(path, "Sheet1", {}); });
    if (cells_xls == 0) {
      cells_xls = cells;
      table_xls = table;
      sum_xls = counter.sum;
    }
    if (counter.cells != std::size_t{kRows + 1} * kColumns || std::abs(counter.sum - sum_xls) > 1) {
      fmt::print("{}: other cells than in the .xls file\n", extension);
      return 1;
    }
    fmt::print("| {} | {:.1f} | {:.3f} | {:.2f} | {:.3f} | {:.2f} |\n", extension,
               static_cast<double>(std::filesystem::file_size(path)) / (1 << 20), cells, cells / cells_xls,
               table, table / table_xls);
  }
}
