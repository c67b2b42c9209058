#include "platform/spreadsheet/table_builder.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <set>

#include "platform/encoding.h"

namespace platform::spreadsheet {
namespace {

constexpr std::size_t kCellBlock = 16 * 1024;
constexpr std::size_t kLongestName = 64;
constexpr std::size_t kLongestText = 255;  // of a text column; a longer one makes the column a memo
constexpr double kSecondsPerDay = 86400;

std::string CellToText(const Cell& cell) {
  switch (cell.source) {
    case CellKind::kText:
      return std::string(cell.AsText());
    case CellKind::kNumber:
      return NumberToText(cell.number, cell.zero_pad);
    case CellKind::kDate:
      return DateToText(cell.number);
    case CellKind::kBoolean:
      return cell.number != 0 ? "TRUE" : "FALSE";
    default:
      return {};
  }
}

ColumnKind KindOf(CellKind kind) {
  switch (kind) {
    case CellKind::kNumber:
      return ColumnKind::kNumber;
    case CellKind::kDate:
      return ColumnKind::kDate;
    case CellKind::kBoolean:
      return ColumnKind::kBoolean;
    default:
      return ColumnKind::kText;
  }
}

// What a column's cells are, counted.
struct Census {
  std::array<std::size_t, 6> count{};
  std::uint8_t widest_pad = 0;
  bool unpadded = false;

  void Add(const Cell& cell) {
    ++count[static_cast<std::size_t>(cell.source)];
    if (cell.source == CellKind::kNumber) {
      widest_pad = std::max(widest_pad, cell.zero_pad);
      unpadded = unpadded || cell.zero_pad == 0;
    }
  }

  CellKind Decide(bool mixed_as_text) const {
    constexpr std::array kOrder = {CellKind::kNumber, CellKind::kDate, CellKind::kText, CellKind::kBoolean};
    const auto of = [&](CellKind kind) { return count[static_cast<std::size_t>(kind)]; };
    CellKind most = CellKind::kText;
    std::size_t kinds = 0;
    std::size_t best = 0;
    for (const CellKind kind : kOrder) {
      if (of(kind) > 0) ++kinds;
      if (of(kind) > best) {
        best = of(kind);
        most = kind;
      }
    }
    return kinds > 1 && mixed_as_text ? CellKind::kText : most;
  }
};

}  // namespace

std::string NumberToText(double number, std::uint8_t zero_pad) {
  std::array<char, 32> buffer;
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 15);
  std::string text(buffer.data(), end.ptr);
  if (text == "-0") text = "0";
  const std::size_t sign = text[0] == '-' ? 1 : 0;
  const bool whole = std::all_of(text.begin() + static_cast<std::ptrdiff_t>(sign), text.end(),
                                 [](char c) { return c >= '0' && c <= '9'; });
  if (whole && text.size() - sign < zero_pad) text.insert(sign, zero_pad - (text.size() - sign), '0');
  std::replace(text.begin(), text.end(), 'e', 'E');
  return text;
}

std::string DateToText(double days) {
  const double seconds_total = std::round(days * kSecondsPerDay);
  const double whole = std::floor(seconds_total / kSecondsPerDay);
  const int seconds = static_cast<int>(seconds_total - whole * kSecondsPerDay);
  std::string time = fmt::format("{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
  if (whole == 0 && seconds != 0) return time;
  using std::chrono::year_month_day;
  constexpr std::chrono::sys_days kEpoch = std::chrono::year{1899} / 12 / 30;
  const year_month_day date(kEpoch + std::chrono::days(static_cast<int>(whole)));
  std::string text = fmt::format("{:02}.{:02}.{:04}", static_cast<unsigned>(date.day()),
                                 static_cast<unsigned>(date.month()), static_cast<int>(date.year()));
  return seconds == 0 ? text : text + " " + time;
}

std::string FitHeading(std::string_view heading) {
  std::string name;
  for (std::size_t i = 0; i < heading.size(); ++i) {
    const char c = heading[i];
    if (c == '\r' && i + 1 < heading.size() && heading[i + 1] == '\n') continue;
    switch (c) {
      case '.':
        name += '#';
        break;
      case '!':
        name += '_';
        break;
      case '[':
        name += '(';
        break;
      case ']':
        name += ')';
        break;
      default:
        name += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
  }
  return std::string(Trim(Utf8Prefix(Trim(name), kLongestName)));
}

Cell& TableBuilder::Slot(std::size_t column) {
  if (column >= row_.size()) row_.resize(column + 1);
  return row_[column];
}

void TableBuilder::PutNumber(std::size_t column, CellKind source, double number, std::uint8_t zero_pad) {
  Cell& cell = Slot(column);
  cell.kind = Cell::Kind::kNumber;
  cell.source = source;
  cell.zero_pad = zero_pad;
  cell.number = source == CellKind::kBoolean ? (number != 0 ? -1 : 0) : number;
}

void TableBuilder::PutText(std::size_t column, std::string_view text) {
  Cell& cell = Slot(column);
  cell.source = CellKind::kText;
  SetText(cell, text);
}

void TableBuilder::SetText(Cell& cell, std::string_view text) {
  const std::string_view kept = table_.texts_.Add(text);
  cell.kind = Cell::Kind::kText;
  cell.length = static_cast<std::uint32_t>(kept.size());
  cell.text = kept.data();
}

void TableBuilder::EndRow() {
  Table::Row row;
  if (!row_.empty()) {
    if (cells_left_ < row_.size()) {
      const std::size_t block = std::max(kCellBlock, row_.size());
      table_.cells_.push_back(std::make_unique<Cell[]>(block));
      next_cell_ = table_.cells_.back().get();
      cells_left_ = block;
    }
    row = {next_cell_, row_.size()};
    std::copy(row_.begin(), row_.end(), next_cell_);
    next_cell_ += row_.size();
    cells_left_ -= row_.size();
    row_.clear();
  }
  table_.rows_.push_back(row);
}

void TableBuilder::FitColumns() {
  std::size_t first = std::string::npos;
  std::size_t end = 0;
  for (const Table::Row& row : table_.rows_) {
    const Cell* const cells_end = row.first + row.width;
    const Cell* const value = std::find_if(row.first, row.first + std::min(row.width, first),
                                           [](const Cell& cell) { return cell.kind != Cell::Kind::kNull; });
    if (value != cells_end) first = std::min(first, static_cast<std::size_t>(value - row.first));
    end = std::max(end, row.width);
  }
  if (first == std::string::npos) first = 0;
  for (Table::Row& row : table_.rows_) {
    const std::size_t cut = std::min(first, row.width);
    row.first += cut;
    row.width -= cut;
  }
  table_.columns_.resize(std::max<std::size_t>(end - std::min(first, end), 1));
}

std::vector<std::string> TableBuilder::TakeHeadings() {
  std::vector<std::string> headings;
  if (table_.rows_.empty()) return headings;
  const Table::Row& row = table_.rows_.front();
  for (std::size_t i = 0; i < row.width; ++i) headings.push_back(CellToText(row.first[i]));
  table_.rows_.erase(table_.rows_.begin());
  return headings;
}

void TableBuilder::NameColumns(const std::vector<std::string>& headings) {
  std::set<std::string> taken;
  for (std::size_t i = 0; i < table_.columns_.size(); ++i) {
    std::string base = i < headings.size() ? FitHeading(headings[i]) : std::string();
    if (base.empty()) base = fmt::format("F{}", i + 1);
    std::string name = base;
    for (int repeat = 1; !taken.insert(ToLower(name)).second; ++repeat)
      name = fmt::format("{}{}", base, repeat);
    table_.columns_[i].name = std::move(name);
  }
}

void TableBuilder::TypeColumns(bool mixed_as_text) {
  for (std::size_t column = 0; column < table_.columns_.size(); ++column) TypeColumn(column, mixed_as_text);
}

void TableBuilder::TypeColumn(std::size_t index, bool mixed_as_text) {
  Census census;
  for (const Table::Row& row : table_.rows_) {
    if (index < row.width) census.Add(row.first[index]);
  }
  const CellKind kind = census.Decide(mixed_as_text);
  Column& column = table_.columns_[index];
  column.kind = KindOf(kind);
  column.zero_pad = kind == CellKind::kNumber && !census.unpadded ? census.widest_pad : std::uint8_t{0};
  for (const Table::Row& row : table_.rows_) {
    if (index >= row.width) continue;
    Cell& cell = row.first[index];
    if (cell.kind == Cell::Kind::kNull) continue;
    if (cell.source != kind) {
      if (kind == CellKind::kText && mixed_as_text) {
        SetText(cell, CellToText(cell));
      } else {
        cell = Cell();
      }
    }
    // Only a text of more bytes than that can have more characters.
    if (cell.kind == Cell::Kind::kText && cell.length > kLongestText && column.size != 0 &&
        Utf8Length(cell.AsText()) > kLongestText) {
      column.size = 0;
    }
  }
}

}  // namespace platform::spreadsheet
