#include "reports/spreadsheet.h"

#include <xlsxwriter.h>

#include "platform/encoding.h"

namespace reports {
namespace {

constexpr std::size_t kLongestText = 32767;   // characters in a cell, by the file format
constexpr std::size_t kMostRows = 1'048'576;  // of a sheet
constexpr double kFirstSafeDay = 61;          // 1 March 1900: before it, spreadsheets count one day wrongly
constexpr std::size_t kWidest = 60;           // characters of a column; longer texts are wrapped
constexpr double kPlain = 1.1, kBold = 0.85;  // letters that have room where a digit has
constexpr char kExporting[] = "Export in Excel";

/// Sheet names have at most 31 characters and none of []:*?/\ .
std::string SheetName(std::string_view title) {
  std::string name;
  for (const char c : title) {
    if (std::string_view("[]:*?/\\'").find(c) == std::string_view::npos) name += c;
  }
  const auto trimmed = [](std::string_view text) {
    text = platform::Trim(text);
    while (text.ends_with('-') || text.ends_with(' ')) text.remove_suffix(1);
    return text;
  };
  const std::string_view short_name = trimmed(platform::Utf8Prefix(trimmed(name), 31));
  return short_name.empty() ? "Raport" : std::string(short_name);
}

const char* NumberFormat(Format format) {
  switch (format) {
    case Format::kWhole:
      return "#,##0";
    case Format::kAmount:
      return "#,##0.00";
    case Format::kRate:
      return "#,##0.0000";
    case Format::kDate:
      return "dd.mm.yyyy";
    case Format::kDateTime:
      return "dd.mm.yyyy hh:mm";
    default:
      return nullptr;
  }
}

/// Lines that a text takes in a column, broken between words.
std::size_t LinesIn(std::string_view text, std::size_t characters) {
  std::size_t lines = 1, used = 0;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    const std::size_t length = platform::Utf8Length(word);
    if (used > 0 && used + 1 + length > characters) {
      ++lines;
      used = 0;
    }
    used += (used > 0 ? 1 : 0) + length;
    lines += (used - std::min<std::size_t>(used, 1)) / characters;
    used = used == 0 ? 0 : (used - 1) % characters + 1;
    text.remove_prefix(std::min(text.size(), word.size() + 1));
  }
  return lines;
}

std::size_t LongestWord(std::string_view text) {
  std::size_t longest = 0;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    longest = std::max(longest, platform::Utf8Length(word));
    text.remove_prefix(std::min(text.size(), word.size() + 1));
  }
  return longest;
}

class Writer {
 public:
  Writer(const Report& report, bool landscape, lxw_workbook* book)
      : report_(report),
        landscape_(landscape),
        book_(book),
        sheet_(workbook_add_worksheet(book, SheetName(report.title()).c_str())) {
    bold_ = NewFormat(Format::kText, true);
    wrapped_ = NewFormat(Format::kText, false);
    format_set_text_wrap(wrapped_);
    format_set_align(wrapped_, LXW_ALIGN_VERTICAL_TOP);
    for (std::size_t c = 0; c < report.columns().size(); ++c) {
      const Format format = report.FormatOf(c);
      formats_.push_back(format);
      plain_.push_back(NewFormat(format, false));
      format_set_align(plain_.back(), LXW_ALIGN_VERTICAL_TOP);  // beside texts of several lines
      sums_.push_back(NewFormat(format, true));
    }
  }

  bool Usable() const { return sheet_ != nullptr; }

  void WriteTop() {
    for (std::size_t c = 0; c < formats_.size(); ++c) {
      const std::string& caption = report_.columns()[c].caption;
      std::size_t widest = std::max(platform::Utf8Length(caption) / 2, LongestWord(caption)) + 3;
      const std::vector<Band>& bands = report_.bands();
      for (std::size_t i = 0; i < bands.size(); ++i) {
        if (i > 300 && bands[i].totals < 0) continue;
        const std::size_t bold = bands[i].totals >= 0 ? 2 : 0;
        widest = std::max(widest, platform::Utf8Length(report_.TextOf(bands[i], c)) + 1 + bold);
      }
      widths_.push_back(std::clamp<std::size_t>(widest, 6, kWidest));
      worksheet_set_column(sheet_, Column(c), Column(c), static_cast<double>(widths_.back()), nullptr);
    }
    Text(row_++, 0, report_.title(), bold_);
    for (const std::string& line : report_.lines()) Text(row_++, 0, line, nullptr);
    ++row_;
    SetHeight([this](std::size_t c) { return report_.columns()[c].caption; }, kBold);
    for (std::size_t c = 0; c < formats_.size(); ++c) {
      const ReportColumn& column = report_.columns()[c];
      lxw_format* heading = NewFormat(Format::kText, true);
      format_set_text_wrap(heading);
      format_set_bottom(heading, LXW_BORDER_THIN);
      format_set_align(heading, LXW_ALIGN_VERTICAL_TOP);
      if (column.alignment == Alignment::kRight) format_set_align(heading, LXW_ALIGN_RIGHT);
      Text(row_, Column(c), column.caption, heading);
    }
    worksheet_repeat_rows(sheet_, row_, row_);
    ++row_;
    worksheet_freeze_panes(sheet_, row_, 0);
    if (landscape_) worksheet_set_landscape(sheet_);
    worksheet_set_paper(sheet_, 9);  // A4
    worksheet_fit_to_pages(sheet_, 1, 0);
    first_.assign(1, row_);
  }

  void WriteBand(const Band& band) {
    switch (band.kind) {
      case Band::Kind::kGroupHeader:
        first_.resize(std::max<std::size_t>(first_.size(), band.level + 2u));
        first_[band.level + 1u] = row_ + 1;
        Text(row_, 0, report_.CaptionOf(band), bold_);
        break;
      case Band::Kind::kCount:
        Text(row_, 0, report_.CaptionOf(band), bold_);
        break;
      case Band::Kind::kDetail:
        SetHeight([&](std::size_t c) { return IsNumeric(formats_[c]) ? "" : report_.TextOf(band, c); },
                  kPlain);
        for (std::size_t c = 0; c < formats_.size(); ++c) Cell(band, c);
        break;
      case Band::Kind::kGroupTotal:
        Sums(band, first_[band.level + 1u]);
        break;
      case Band::Kind::kGrandTotal:
        Sums(band, first_[0]);
        break;
    }
    ++row_;
  }

 private:
  static lxw_col_t Column(std::size_t index) { return static_cast<lxw_col_t>(index); }

  lxw_format* NewFormat(Format format, bool bold) {
    lxw_format* made = workbook_add_format(book_);
    if (const char* number = NumberFormat(format); number != nullptr) format_set_num_format(made, number);
    if (bold) format_set_bold(made);
    return made;
  }

  /// Some programs do not fit a row's height to wrapped texts by themselves. `letters`: to a digit's width.
  void SetHeight(const std::function<std::string(std::size_t)>& text_of, double letters) {
    constexpr double kLine = 15;  // points
    std::size_t lines = 1;
    for (std::size_t c = 0; c < widths_.size(); ++c) {
      const std::string text = text_of(c);
      const auto room = static_cast<std::size_t>(static_cast<double>(widths_[c]) * letters);
      if (text.size() > room) lines = std::max(lines, LinesIn(text, room));
    }
    if (lines > 1)
      worksheet_set_row(sheet_, row_, std::min(static_cast<double>(lines) * kLine, 400.0), nullptr);
  }

  void Text(lxw_row_t row, lxw_col_t column, const std::string& text, lxw_format* format) {
    const std::string fitting(platform::Utf8Prefix(text, kLongestText));
    worksheet_write_string(sheet_, row, column, fitting.c_str(), format);
  }

  void Cell(const Band& band, std::size_t c) {
    const store::Value value = report_.ValueOf(band, c);
    const bool dated = formats_[c] == Format::kDate || formats_[c] == Format::kDateTime;
    if (value.is_date() && dated && value.ToDate().days >= kFirstSafeDay) {
      worksheet_write_number(sheet_, row_, Column(c), value.ToDate().days, plain_[c]);
      return;
    }
    if (report_.ShowsNumber(band, c)) {
      worksheet_write_number(sheet_, row_, Column(c), value.ToDouble(), plain_[c]);
      return;
    }
    const std::string text = report_.TextOf(band, c);
    if (!text.empty()) Text(row_, Column(c), text, text.size() >= kWidest ? wrapped_ : plain_[c]);
  }

  /// SUBTOTAL leaves the sums of inner groups out of the outer ones'.
  void Sums(const Band& band, lxw_row_t first) {
    bool captioned = false;
    for (std::size_t c = 0; c < formats_.size(); ++c) {
      if (!report_.columns()[c].total) {
        if (!std::exchange(captioned, true)) Text(row_, Column(c), report_.CaptionOf(band), bold_);
        continue;
      }
      if (report_.ValueOf(band, c).is_null()) continue;
      char from[LXW_MAX_CELL_NAME_LENGTH], to[LXW_MAX_CELL_NAME_LENGTH];
      lxw_rowcol_to_cell(from, first, Column(c));
      lxw_rowcol_to_cell(to, row_ - 1, Column(c));
      const std::string formula = fmt::format("=SUBTOTAL(9,{}:{})", from, to);
      worksheet_write_formula_num(sheet_, row_, Column(c), formula.c_str(), sums_[c],
                                  report_.ValueOf(band, c).ToDouble());
    }
  }

  const Report& report_;
  bool landscape_;
  lxw_workbook* book_;
  lxw_worksheet* sheet_;
  lxw_format *bold_, *wrapped_;
  std::vector<Format> formats_;
  std::vector<lxw_format*> plain_, sums_;
  std::vector<std::size_t> widths_;  ///< of the columns, in characters
  lxw_row_t row_ = 0;
  std::vector<lxw_row_t> first_;  ///< row in which the rows of all, then of each open group, begin
};

}  // namespace

SpreadsheetOutcome WriteSpreadsheet(const Report& report, bool landscape, const std::string& host_file,
                                    const std::string& host_folder, platform::Progress& progress,
                                    std::string& reason) {
  const std::vector<Band>& bands = report.bands();
  if (bands.size() + report.lines().size() + 3 > kMostRows) return SpreadsheetOutcome::kTooLong;
  std::string folder = host_folder;
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  options.tmpdir = folder.data();
  const auto release = [](lxw_workbook* book) { lxw_workbook_free(book); };  // given up: nothing is packed
  std::unique_ptr<lxw_workbook, decltype(release)> book(workbook_new_opt(host_file.c_str(), &options),
                                                        release);
  if (book == nullptr) {
    reason = "memorie insuficienta";
    return SpreadsheetOutcome::kFailed;
  }
  Writer writer(report, landscape, book.get());
  if (!writer.Usable()) {
    reason = "nume de foaie nevalid";
    return SpreadsheetOutcome::kFailed;
  }
  writer.WriteTop();
  for (std::size_t i = 0; i < bands.size(); ++i) {
    if (i % 256 == 0) {
      progress.Update(kExporting, static_cast<int>(i * 95 / bands.size()));
      if (progress.Cancelled()) return SpreadsheetOutcome::kCancelled;
    }
    writer.WriteBand(bands[i]);
  }
  if (const lxw_error error = workbook_close(book.release()); error != LXW_NO_ERROR) {
    reason = lxw_strerror(error);
    return SpreadsheetOutcome::kFailed;
  }
  progress.Update(kExporting, 100);
  return SpreadsheetOutcome::kWritten;
}

}  // namespace reports
