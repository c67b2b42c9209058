#include "platform/spreadsheet/xlsx_sheet.h"

#include <charconv>

#include "platform/encoding.h"

namespace platform::spreadsheet {
namespace {

// "AB12" as column and row from 0.
bool ParseAddress(std::string_view text, std::uint32_t& column, std::uint32_t& row) {
  std::uint32_t number = 0;
  std::size_t i = 0;
  for (; i < text.size() && i < 4; ++i) {
    const char letter = static_cast<char>(text[i] & ~0x20);
    if (letter < 'A' || letter > 'Z') break;
    number = number * 26 + static_cast<std::uint32_t>(letter - 'A' + 1);
  }
  const auto end = std::from_chars(text.data() + i, text.data() + text.size(), row);
  if (i == 0 || end.ec != std::errc() || end.ptr != text.data() + text.size() || row == 0) return false;
  column = number - 1;
  --row;
  return true;
}

}  // namespace

void XlsxSheetHandler::OnStart(std::string_view name, const XmlAttributes& attributes) {
  name = LocalName(name);
  if (in_cell_) {
    in_value_ = name == "v";
    if (in_value_) value_.clear();
    if (type_ == Type::kInline) inline_text_.OnStart(name, attributes);
  } else if (in_data_) {
    if (name == "c") StartCell(attributes);
    if (name == "row") StartRow(attributes);
  } else if (name == "sheetData") {
    has_data_ = in_data_ = true;
  }
}

void XlsxSheetHandler::OnEnd(std::string_view name) {
  name = LocalName(name);
  if (in_cell_) {
    if (type_ == Type::kInline) inline_text_.OnEnd(name);
    in_value_ = false;
    if (name == "c") FinishCell();
  } else if (name == "sheetData") {
    in_data_ = false;
  }
}

void XlsxSheetHandler::OnText(std::string_view text) {
  if (in_value_) {
    value_ += text;
  } else if (in_cell_ && type_ == Type::kInline) {
    inline_text_.OnText(text);
  }
}

void XlsxSheetHandler::StartRow(const XmlAttributes& attributes) {
  std::uint32_t row = next_row_;
  if (const std::string_view number = attributes.Get("r"); !number.empty()) {
    const auto end = std::from_chars(number.data(), number.data() + number.size(), row);
    cell_.column = 0;
    if (end.ec != std::errc() || row-- == 0 || row < next_row_) DamagedCell(cell_, "rand cu numar gresit");
  }
  cell_.row = row;
  if (row >= kMostRows) DamagedCell(cell_, "rand in afara foii");
  next_row_ = row + 1;
  next_column_ = 0;
}

void XlsxSheetHandler::StartCell(const XmlAttributes& attributes) {
  in_cell_ = true;
  style_ = 0;
  type_ = Type::kNumber;
  value_.clear();
  std::uint32_t column = next_column_;
  for (const XmlAttribute& attribute : attributes) {
    const std::string_view value = attribute.value;
    if (attribute.name == "r") {
      std::uint32_t row = 0;
      if (!ParseAddress(value, column, row) || row != cell_.row || column < next_column_) {
        DamagedCell(cell_, "celula cu adresa gresita");
      }
    } else if (attribute.name == "s") {
      std::from_chars(value.data(), value.data() + value.size(), style_);
    } else if (attribute.name == "t") {
      if (value == "s") type_ = Type::kShared;
      if (value == "str") type_ = Type::kFormulaText;
      if (value == "inlineStr") type_ = Type::kInline;
      if (value == "b") type_ = Type::kBoolean;
      if (value == "e") type_ = Type::kError;
      if (value == "d") type_ = Type::kDate;
    }
  }
  cell_.column = column;
  if (column >= kMostColumns) DamagedCell(cell_, "coloana in afara foii");
  next_column_ = column + 1;
  if (type_ == Type::kInline) inline_text_.Clear();
}

void XlsxSheetHandler::FinishCell() {
  in_cell_ = false;
  if (stopped_) return;
  CellEvent cell;
  cell.row = cell_.row;
  cell.column = cell_.column;
  if (!SetValue(cell)) return;
  if (++cells_ > kMostCells) TooManyCells();
  stopped_ = !sink_->OnCell(cell);
}

// False for a cell that has only a format.
bool XlsxSheetHandler::SetValue(CellEvent& cell) {
  if (type_ == Type::kInline) {
    cell.kind = CellKind::kText;
    cell.text = inline_text_.text();
    return !cell.text.empty();
  }
  if (type_ == Type::kFormulaText) {
    ResolveEscapes(value_);
    cell.kind = CellKind::kText;
    cell.text = value_;
    return true;
  }
  const std::string_view text = Trim(value_);
  if (text.empty()) return false;
  const char* const end = text.data() + text.size();
  switch (type_) {
    case Type::kShared: {
      std::size_t index = 0;
      const bool number = std::from_chars(text.data(), end, index).ptr == end;
      if (!number || index >= strings_->size()) DamagedCell(cell, "textul celulei lipseste din fisier");
      cell.kind = CellKind::kText;
      cell.text = strings_->at(index);
      return true;
    }
    case Type::kBoolean:
      cell.kind = CellKind::kBoolean;
      cell.number = text == "1" || text == "true" ? 1 : 0;
      return true;
    case Type::kError:
      cell.kind = CellKind::kError;
      cell.text = text;
      return true;
    case Type::kDate:
      if (const std::optional<double> days = ParseIsoDate(text)) {
        cell.kind = CellKind::kDate;
        cell.number = *days;
      } else {
        cell.kind = CellKind::kText;
        cell.text = text;
      }
      return true;
    default: {
      double number = 0;
      if (std::from_chars(text.data(), end, number).ptr != end) DamagedCell(cell, "numar gresit");
      SetNumber(cell, style_ < parts_->formats.size() ? parts_->formats[style_] : NumberFormat(), number,
                parts_->base_1904);
      return true;
    }
  }
}

}  // namespace platform::spreadsheet
