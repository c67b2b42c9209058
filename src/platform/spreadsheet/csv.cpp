#include "platform/spreadsheet/csv.h"

#include <vector>

#include "platform/encoding.h"
#include "platform/spreadsheet/csv_text.h"
#include "platform/spreadsheet/csv_value.h"

namespace platform::spreadsheet {
namespace {

// What the fields of a column say about how its values are written.
struct CsvColumn {
  std::size_t commas = 0, points = 0;  ///< numbers that are such only with that decimal sign
  std::size_t days_first = 0, months_first = 0;
  char decimal = '.';
  bool mixed = false;  ///< some field is plain text

  void Weigh(std::string_view field) {
    const bool comma = ParseCsvNumber(field, ',').has_value();
    const bool point = ParseCsvNumber(field, '.').has_value();
    if (comma != point) ++(comma ? commas : points);
    if (comma || point || field.find('/') == std::string_view::npos) return;
    const bool day = ParseCsvDate(field, false).has_value();
    const bool month = ParseCsvDate(field, true).has_value();
    if (day != month) ++(day ? days_first : months_first);
  }
};

bool IsErrorName(std::string_view text) {
  if (text.starts_with("Err:")) return true;
  for (const std::string_view name : {"#N/A", "#DIV/0!", "#VALUE!", "#REF!", "#NAME?", "#NUM!", "#NULL!"}) {
    if (text == name) return true;
  }
  return false;
}

class CsvWorkbook : public SheetBook {
 public:
  CsvWorkbook(std::string content, std::string sheet_name) : text_(DecodeCsv(std::move(content))) {
    std::string_view text = text_;
    char delimiter = '\0';
    constexpr std::string_view kSep = "sep=";
    if (EqualsNoCase(text.substr(0, kSep.size()), kSep) && text.size() > kSep.size() + 1) {
      delimiter = text[kSep.size()];
      text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    }
    if (delimiter == '\0') delimiter = DetectDelimiter(text);
    rows_ = CutCsv(text, delimiter);
    if (rows_.open_quote) {
      throw SheetError(
          SheetError::Reason::kDamaged,
          fmt::format("textul este trunchiat sau gresit: ghilimelele deschise la randul {} nu se inchid",
                      rows_.open_row));
    }
    WeighColumns(delimiter);
    infos_.push_back({std::move(sheet_name), false});
  }

 private:
  std::size_t IndexOf(std::string_view) const override { return 0; }

  void ReadSheet(std::size_t, CellSink& sink) override {
    CellEvent cell;
    for (std::size_t row = 0; row < rows_.row_ends.size(); ++row) {
      cell.row = static_cast<std::uint32_t>(row);
      const std::size_t begin = rows_.row_begin(row);
      for (std::size_t i = begin; i < rows_.row_ends[row]; ++i) {
        if (rows_.fields[i].empty()) continue;
        cell.column = static_cast<std::uint32_t>(i - begin);
        SetCell(cell, rows_.fields[i], row == heading_row_ || IsMarked(i));
        if (!sink.OnCell(cell)) return;
      }
    }
  }

  // The first row with something in it names the columns if any of it is plain text: then all of it does.
  void WeighColumns(char delimiter) {
    std::size_t first = 0;
    while (first < rows_.row_ends.size() && rows_.row_ends[first] - rows_.row_begin(first) == 1 &&
           Trim(rows_.fields[rows_.row_begin(first)]).empty()) {
      ++first;
    }
    const auto each = [&](const auto& visit) {
      for (std::size_t row = first + 1; row < rows_.row_ends.size(); ++row) {
        for (std::size_t i = rows_.row_begin(row); i < rows_.row_ends[row]; ++i) {
          const std::size_t column = i - rows_.row_begin(row);
          if (columns_.size() <= column) columns_.resize(column + 1);
          if (!Trim(rows_.fields[i]).empty()) visit(columns_[column], Trim(rows_.fields[i]), i);
        }
      }
    };
    each([&](CsvColumn&, std::string_view, std::size_t place) {
      marks_texts_ = marks_texts_ || rows_.quotes[place] == CsvQuotes::kNone;
    });
    each([&](CsvColumn& column, std::string_view field, std::size_t place) {
      if (!IsMarked(place)) column.Weigh(field);
    });
    std::size_t commas = 0, points = 0;
    for (const CsvColumn& column : columns_) {
      commas += column.commas;
      points += column.points;
    }
    // Where nothing tells, commas between the fields leave none for the numbers.
    const char usual = commas != points ? (commas > points ? ',' : '.') : delimiter == ',' ? '.' : ',';
    for (CsvColumn& column : columns_) {
      column.decimal = column.commas == column.points ? usual : column.commas > column.points ? ',' : '.';
    }
    each([&](CsvColumn& column, std::string_view field, std::size_t place) {
      CellEvent cell;
      column.mixed = column.mixed || IsMarked(place) || KindOf(column, field, cell) == CellKind::kText;
    });
    if (first >= rows_.row_ends.size()) return;
    for (std::size_t i = rows_.row_begin(first); i < rows_.row_ends[first]; ++i) {
      CellEvent cell;
      const std::string_view field = Trim(rows_.fields[i]);
      if (!field.empty() && KindOf(CsvColumn(), field, cell) == CellKind::kText) heading_row_ = first;
    }
  }

  // Where some fields have needless quotes and others none, the quotes mark texts, whatever these look like.
  bool IsMarked(std::size_t place) const {
    return marks_texts_ && rows_.quotes[place] == CsvQuotes::kNeedless;
  }

  static CellKind KindOf(const CsvColumn& column, std::string_view field, CellEvent& cell) {
    if (const auto number = ParseCsvNumber(field, column.decimal)) {
      cell.number = *number;
      return CellKind::kNumber;
    }
    if (const auto days = ParseCsvDate(field, column.months_first > column.days_first)) {
      cell.number = *days;
      return CellKind::kDate;
    }
    if (field == "TRUE" || field == "FALSE") {
      cell.number = field == "TRUE" ? 1 : 0;
      return CellKind::kBoolean;
    }
    return IsErrorName(field) ? CellKind::kError : CellKind::kText;
  }

  void SetCell(CellEvent& cell, std::string_view field, bool text) const {
    const CsvColumn column = cell.column < columns_.size() ? columns_[cell.column] : CsvColumn();
    cell.kind = text ? CellKind::kText : KindOf(column, Trim(field), cell);
    cell.text = field;
    // Among texts a number stays as it is written: 8471.3000 is a code there. Only a decimal comma makes it
    // one.
    const bool comma = column.decimal == ',' && field.find(',') != std::string_view::npos;
    if (cell.kind == CellKind::kNumber && column.mixed && !comma) cell.kind = CellKind::kText;
  }

  std::string text_;
  CsvRows rows_;
  std::vector<CsvColumn> columns_;
  bool marks_texts_ = false;
  std::size_t heading_row_ = static_cast<std::size_t>(-1);
};

}  // namespace

std::unique_ptr<SheetBook> OpenCsv(std::string content, std::string sheet_name) {
  return std::make_unique<CsvWorkbook>(std::move(content), std::move(sheet_name));
}

}  // namespace platform::spreadsheet
