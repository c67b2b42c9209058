#include "reports/table.h"

#include <charconv>

#include "platform/encoding.h"

namespace reports {
namespace {

std::string OneLine(std::string text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  std::size_t end = 0;
  for (const char c : text) {
    if (is_blank(c) && (end == 0 || text[end - 1] == ' ')) continue;
    text[end++] = is_blank(c) ? ' ' : c;
  }
  if (end > 0 && text[end - 1] == ' ') --end;
  text.resize(end);
  return text;
}

Format FormatOfType(store::ColumnType type) {
  using enum store::ColumnType;
  switch (type) {
    case kDateTime:
      return Format::kDate;
    case kYesNo:
      return Format::kTick;
    case kCurrency:
      return Format::kAmount;
    case kSingle:
    case kDouble:
    case kDecimal:
      return Format::kNumber;
    default:
      return Format::kText;
  }
}

}  // namespace

int Table::ColumnOf(std::string_view field) const {
  if (field.starts_with('#')) {
    int number = 0;
    const char* end = field.data() + field.size();
    const auto read = std::from_chars(field.data() + 1, end, number);
    if (read.ec != std::errc() || read.ptr != end || number < 1) return -1;
    for (int i = 0; i < static_cast<int>(columns_.size()); ++i) {
      const int own = columns_[static_cast<std::size_t>(i)].number;
      if ((own > 0 ? own : i + 1) == number) return i;
    }
    return -1;
  }
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (platform::EqualsNoCase(columns_[i].field, field)) return static_cast<int>(i);
  }
  return -1;
}

std::string Table::TextAt(int row, int column, Format format, const Formatter& formatter) const {
  const Format own = columns_[static_cast<std::size_t>(column)].format;
  if (format == Format::kAsShown && own != Format::kTick) return OneLine(ShownAt(row, column, formatter));
  if (format == Format::kAsShown) format = own;
  const store::Value value = ValueAt(row, column);
  if (format == Format::kTick) return value.is_null() ? "" : value.ToBoolean() ? "Da" : "Nu";
  return OneLine(formatter(value, format));
}

std::string Table::ShownAt(int row, int column, const Formatter& formatter) const {
  return formatter(ValueAt(row, column), columns_[static_cast<std::size_t>(column)].format);
}

RecordsetTable::RecordsetTable(store::Recordset rows) : rows_(std::move(rows)) {
  for (int i = 0; i < rows_.field_count(); ++i) {
    const store::FieldInfo& field = rows_.field(i);
    columns_.push_back({field.name, field.name, FormatOfType(field.type)});
  }
}

store::Value RecordsetTable::ValueAt(int row, int column) const {
  if (rows_.position() != row) rows_.set_position(row);
  return rows_.Get(column);
}

MemoryTable::MemoryTable(std::vector<Column> columns, std::vector<std::vector<store::Value>> rows)
    : rows_(std::move(rows)) {
  columns_ = std::move(columns);
}

store::Value MemoryTable::ValueAt(int row, int column) const {
  return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

}  // namespace reports
