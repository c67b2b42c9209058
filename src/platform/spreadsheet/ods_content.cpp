#include "platform/spreadsheet/ods_content.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace platform::spreadsheet {
namespace {

constexpr std::uint64_t kMostRepeats = 1u << 30;

std::uint64_t Repeats(std::string_view text) {
  std::uint64_t count = 1;
  if (!text.empty()) std::from_chars(text.data(), text.data() + text.size(), count);
  return std::clamp<std::uint64_t>(count, 1, kMostRepeats);
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Notes, drawings and the like hold paragraphs and tables of their own.
bool SaysNothing(std::string_view name) {
  return name == "office:annotation" || name.starts_with("draw:") || name == "table:shapes" ||
         name == "office:forms" || name == "table:dde-links" || name == "table:tracked-changes" ||
         name == "table:table-source" || name == "table:scenario" || name == "table:detective";
}

}  // namespace

void OdsHandler::OnStart(std::string_view name, const XmlAttributes& attributes) {
  if (skip_ > 0) {
    ++skip_;
  } else if (in_cell_) {
    StartInText(name, attributes);
  } else if (in_table_) {
    if (name == "table:table-cell" || name == "table:covered-table-cell") {
      if (in_row_) StartCell(attributes);
    } else if (name == "table:table-row") {
      StartRow(attributes);
    } else if (name == "table:table-column") {
      StartColumn(attributes);
    } else if (SaysNothing(name)) {
      skip_ = 1;
    }
  } else if (in_styles_) {
    styles_.OnStart(name, attributes);
  } else if (name == "office:automatic-styles" || name == "office:styles") {
    in_styles_ = true;
  } else if (name == "office:spreadsheet") {
    has_spreadsheet_ = true;
  } else if (has_spreadsheet_) {
    if (name == "table:table") {
      StartTable(attributes);
    } else if (SaysNothing(name)) {
      skip_ = 1;
    }
  }
}

void OdsHandler::OnEnd(std::string_view name) {
  if (skip_ > 0) {
    --skip_;
  } else if (in_cell_) {
    if (paragraph_ > 0) --paragraph_;
    if (name == "table:table-cell" || name == "table:covered-table-cell") EndCell();
  } else if (in_table_) {
    if (name == "table:table-row") EndRow();
    if (name == "table:table") in_table_ = false;
  } else if (in_styles_) {
    styles_.OnEnd(name);
    if (name == "office:automatic-styles" || name == "office:styles") in_styles_ = false;
  }
}

void OdsHandler::StartInText(std::string_view name, const XmlAttributes& attributes) {
  if (paragraph_ == 0) {
    if (name != "text:p") {
      skip_ = 1;
      return;
    }
    if (paragraphs_) text_ += '\n';
    paragraphs_ = true;
    blank_before_ = true;  // blanks at a paragraph's head are layout of the file
    paragraph_ = 1;
    return;
  }
  if (SaysNothing(name)) {
    skip_ = 1;
    return;
  }
  ++paragraph_;
  if (name == "text:s") {
    const std::uint64_t count = Repeats(attributes.Get("text:c"));
    text_.append(static_cast<std::size_t>(std::min<std::uint64_t>(count, 0x8000)), ' ');
  } else if (name == "text:tab") {
    text_ += '\t';
  } else if (name == "text:line-break") {
    text_ += '\n';
  } else {
    return;
  }
  blank_before_ = false;
}

void OdsHandler::OnText(std::string_view text) {
  if (paragraph_ == 0 || skip_ > 0 || text_given_) return;
  while (!text.empty()) {
    // As it stands, up to the first blank that is not a single space.
    std::size_t length = 0;
    for (; length < text.size(); ++length) {
      const bool blank = IsBlank(text[length]);
      if (blank && (blank_before_ || text[length] != ' ')) break;
      blank_before_ = blank;
    }
    text_ += text.substr(0, length);
    text.remove_prefix(length);
    if (text.empty()) return;
    if (!blank_before_) text_ += ' ';
    blank_before_ = true;
    text.remove_prefix(1);
  }
}

void OdsHandler::StartTable(const XmlAttributes& attributes) {
  OdsContent::Sheet& sheet = content_->sheets.emplace_back();
  sheet.info.name = attributes.Get("table:name");
  sheet.info.hidden = styles_.IsHiddenTable(attributes.Get("table:style-name"));
  in_table_ = true;
  in_row_ = false;
  columns_.clear();
  next_row_ = 0;
}

void OdsHandler::StartColumn(const XmlAttributes& attributes) {
  const std::uint64_t start = columns_.empty() ? 0 : columns_.back().end;
  columns_.push_back({start + Repeats(attributes.Get("table:number-columns-repeated")),
                      PadOf(attributes.Get("table:default-cell-style-name"))});
}

void OdsHandler::StartRow(const XmlAttributes& attributes) {
  in_row_ = true;
  next_column_ = 0;
  row_repeat_ = Repeats(attributes.Get("table:number-rows-repeated"));
  const std::string_view style = attributes.Get("table:default-cell-style-name");
  row_styled_ = !style.empty();
  row_pad_ = PadOf(style);
  row_.first = content_->cells.size();
}

void OdsHandler::EndRow() {
  in_row_ = false;
  row_.last = content_->cells.size();
  if (row_.last > row_.first) {
    row_.row = static_cast<std::uint32_t>(next_row_);
    row_.repeat = static_cast<std::uint32_t>(row_repeat_);
    if (next_row_ + row_repeat_ > kMostRows) {
      CellEvent place;
      place.row = row_.row;
      DamagedCell(place, "rand in afara foii");
    }
    content_->sheets.back().rows.push_back(row_);
  }
  next_row_ = std::min(next_row_ + row_repeat_, kMostRepeats);
}

void OdsHandler::StartCell(const XmlAttributes& attributes) {
  in_cell_ = true;
  text_.clear();
  paragraph_ = 0;
  paragraphs_ = text_given_ = false;
  cell_repeat_ = 1;
  SetValue(attributes);
}

// Takes what the attributes say; a text may still come from the paragraphs.
void OdsHandler::SetValue(const XmlAttributes& attributes) {
  cell_ = OdsContent::Cell();
  std::string_view type, value, style, extended_type;
  for (const XmlAttribute& attribute : attributes) {
    const std::string_view name = attribute.name;
    if (name == "office:value-type") {
      type = attribute.value;
    } else if (name == "calcext:value-type") {
      extended_type = attribute.value;
    } else if (name == "office:string-value") {
      text_ = attribute.value;
    } else if (name.starts_with("office:") && name.ends_with("value")) {
      value = attribute.value;  // value, date-value, time-value, boolean-value
    } else if (name == "table:style-name") {
      style = attribute.value;
    } else if (name == "table:number-columns-repeated") {
      cell_repeat_ = Repeats(attribute.value);
    }
  }
  text_given_ = !text_.empty();
  if (type.empty()) return;
  CellEvent place;
  place.row = static_cast<std::uint32_t>(next_row_);
  place.column = static_cast<std::uint32_t>(next_column_);
  if (extended_type == "error") {
    cell_.kind = CellKind::kError;
    return;
  }
  std::optional<double> number;
  if (type == "string") {
    cell_.kind = CellKind::kText;
    return;
  }
  if (type == "date" || type == "time") {
    cell_.kind = CellKind::kDate;
    number = type == "date" ? ParseIsoDate(value) : ParseIsoDuration(value);
  } else if (type == "boolean") {
    cell_.kind = CellKind::kBoolean;
    number = value == "true" ? 1 : 0;
  } else if (type == "float" || type == "percentage" || type == "currency") {
    cell_.kind = CellKind::kNumber;
    double parsed = 0;
    const char* const end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, parsed);
    if (result.ec == std::errc() && result.ptr == end) number = parsed;
    cell_.zero_pad = !style.empty() ? PadOf(style) : row_styled_ ? row_pad_ : PadOfColumn(next_column_);
  } else {
    return;  // "void"
  }
  if (!number) DamagedCell(place, "valoare gresita");
  cell_.number = *number;
  if (cell_.kind == CellKind::kNumber && !std::isfinite(*number)) cell_.kind = CellKind::kError;
  text_given_ = true;
}

void OdsHandler::EndCell() {
  in_cell_ = false;
  const std::uint64_t column = next_column_;
  next_column_ = std::min(next_column_ + cell_repeat_, kMostRepeats);
  if (cell_.kind == CellKind::kEmpty) return;
  if (next_column_ > kMostColumns) {
    CellEvent place;
    place.row = static_cast<std::uint32_t>(next_row_);
    place.column = static_cast<std::uint32_t>(column);
    DamagedCell(place, "coloana in afara foii");
  }
  cell_.column = static_cast<std::uint16_t>(column);
  cell_.repeat = static_cast<std::uint16_t>(cell_repeat_);
  if (cell_.kind == CellKind::kText || cell_.kind == CellKind::kError) {
    cell_.text = content_->texts.Add(text_);
  }
  if (content_->cells.size() >= kMostCells) TooManyCells();
  content_->cells.push_back(cell_);
}

std::uint8_t OdsHandler::PadOf(std::string_view style) {
  if (style.empty()) return 0;
  const auto [entry, added] = pads_.try_emplace(std::string(style));
  if (added) entry->second = styles_.ZeroPad(style);
  return entry->second;
}

std::uint8_t OdsHandler::PadOfColumn(std::uint64_t column) const {
  const auto run =
      std::upper_bound(columns_.begin(), columns_.end(), column,
                       [](std::uint64_t place, const ColumnRun& one) { return place < one.end; });
  return run == columns_.end() ? std::uint8_t{0} : run->pad;
}

}  // namespace platform::spreadsheet
