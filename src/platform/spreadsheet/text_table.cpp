#include "platform/spreadsheet/text_table.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include "platform/encoding.h"
#include "platform/spreadsheet/table_builder.h"
#include "platform/spreadsheet/text_value.h"

namespace platform::spreadsheet {
namespace {

using Type = TextLayout::Type;

struct TextField {
  std::string text;
  bool quoted = false;
};

// Cuts delimited text into rows of fields. A quoted field may hold delimiters, line ends and doubled quotes.
class FieldReader {
 public:
  FieldReader(std::string_view text, const TextLayout& layout) : text_(text), layout_(&layout) {}

  // False at the end. Blank lines are passed over.
  bool NextRow(std::vector<TextField>& fields) {
    while (at_ < text_.size() && (text_[at_] == '\n' || text_[at_] == '\r')) ++at_;
    if (at_ >= text_.size()) return false;
    fields.clear();
    do {
      fields.push_back(NextField());
    } while (fields.size() < kMostFields && TakeDelimiter());
    while (at_ < text_.size() && text_[at_] != '\n' && text_[at_] != '\r') ++at_;
    return true;
  }

 private:
  static constexpr std::size_t kMostFields = 255;

  bool TakeDelimiter() {
    if (at_ >= text_.size() || text_[at_] != layout_->delimiter) return false;
    ++at_;
    return true;
  }

  TextField NextField() {
    TextField field;
    const char quote = layout_->quote;
    if (quote != '\0' && at_ < text_.size() && text_[at_] == quote) {
      field.quoted = true;
      for (++at_; at_ < text_.size(); ++at_) {
        if (text_[at_] == quote) {
          if (at_ + 1 >= text_.size() || text_[at_ + 1] != quote) break;
          ++at_;
        }
        field.text += text_[at_];
      }
      if (at_ < text_.size()) ++at_;  // the closing quote
    }
    const std::size_t end = std::min(text_.find_first_of(ends_, at_), text_.size());
    field.text += text_.substr(at_, end - at_);
    at_ = end;
    return field;
  }

  std::string_view text_;
  const TextLayout* layout_;
  std::string ends_ = {layout_->delimiter, '\n', '\r'};
  std::size_t at_ = 0;
};

ColumnKind KindOf(Type type) {
  switch (type) {
    case Type::kText:
    case Type::kMemo:
      return ColumnKind::kText;
    case Type::kBit:
      return ColumnKind::kBoolean;
    case Type::kDateTime:
      return ColumnKind::kDate;
    default:
      return ColumnKind::kNumber;
  }
}

// A whole number of a type that only holds such; a fraction is rounded half to even as the driver does.
std::optional<double> Whole(double value, double least, double most) {
  value = std::nearbyint(value);
  if (value < least || value > most) return std::nullopt;
  return value;
}

template <typename Integer>
std::optional<double> Whole(double value) {
  return Whole(value, std::numeric_limits<Integer>::min(), std::numeric_limits<Integer>::max());
}

std::optional<double> ToNumber(std::string_view text, Type type, char decimal) {
  const std::optional<double> value = ParseNumber(text, decimal);
  if (!value) return std::nullopt;
  switch (type) {
    case Type::kByte:
      return Whole<std::uint8_t>(*value);
    case Type::kShort:
      return Whole<std::int16_t>(*value);
    case Type::kLong:
      return Whole<std::int32_t>(*value);
    case Type::kSingle:
      return std::abs(*value) > std::numeric_limits<float>::max() ? std::nullopt : value;
    default:
      return value;
  }
}

std::optional<double> ToDate(std::string_view text, const std::string& format) {
  if (!format.empty()) return ParseDate(text, format);
  const std::optional<double> iso = ParseDate(text, "yyyy-mm-dd");
  return iso ? iso : ParseDate(text, "dd.mm.yyyy");
}

std::optional<double> ToBit(std::string_view text, char decimal) {
  if (EqualsNoCase(text, "True") || EqualsNoCase(text, "Yes")) return 1;
  if (EqualsNoCase(text, "False") || EqualsNoCase(text, "No")) return 0;
  return ParseNumber(text, decimal);
}

class TextTableReader {
 public:
  TextTableReader(std::string_view text, const TextLayout& layout)
      : reader_(text, layout), layout_(&layout) {}

  Table Read(bool headings) {
    std::vector<TextField> row;
    std::vector<std::string> names;
    if (layout_->headings.value_or(headings) && reader_.NextRow(row)) {
      for (const TextField& field : row) names.push_back(field.text);
    }
    const std::size_t described = layout_->fields.size();
    std::size_t columns = described > 0 ? described : std::max<std::size_t>(names.size(), 1);
    while (reader_.NextRow(row)) {
      if (described == 0) columns = std::max(columns, row.size());
      for (std::size_t i = 0; i < row.size() && i < columns; ++i) Put(i, row[i]);
      builder_.EndRow();
    }
    names.resize(columns);
    builder_.columns().resize(columns);
    for (std::size_t i = 0; i < columns; ++i) {
      const TextLayout::Field field = FieldAt(i);
      if (!field.name.empty()) names[i] = field.name;
      builder_.columns()[i].kind = KindOf(field.type);
      builder_.columns()[i].size = field.type == Type::kMemo ? 0 : field.width;
    }
    builder_.NameColumns(names);
    return builder_.Take();
  }

 private:
  TextLayout::Field FieldAt(std::size_t index) const {
    return index < layout_->fields.size() ? layout_->fields[index] : TextLayout::Field();
  }

  void Put(std::size_t index, const TextField& value) {
    const Type type = index < layout_->fields.size() ? layout_->fields[index].type : Type::kText;
    if (type == Type::kText || type == Type::kMemo) {
      if (value.text.empty() && !value.quoted) return;
      const int width = index < layout_->fields.size() ? layout_->fields[index].width : 255;
      std::string_view text = value.text;
      if (type == Type::kText) text = Utf8Prefix(text, static_cast<std::size_t>(width));
      builder_.PutText(index, text);
      return;
    }
    const std::string_view text = Trim(value.text);
    if (text.empty()) return;
    if (type == Type::kDateTime) {
      if (const auto days = ToDate(text, layout_->date_format)) {
        builder_.PutNumber(index, CellKind::kDate, *days);
      }
    } else if (type == Type::kBit) {
      if (const auto bit = ToBit(text, layout_->decimal)) {
        builder_.PutNumber(index, CellKind::kBoolean, *bit);
      }
    } else if (const auto number = ToNumber(text, type, layout_->decimal)) {
      builder_.PutNumber(index, CellKind::kNumber, *number);
    }
  }

  FieldReader reader_;
  const TextLayout* layout_;
  TableBuilder builder_;
};

std::string ReadWhole(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) throw SheetError(SheetError::Reason::kUnreadable, "nu poate fi citit");
  return content;
}

// The folder's column description, whatever the case of its name.
std::string ReadSchemaIni(const std::filesystem::path& folder) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder.empty() ? "." : folder, error)) {
    const std::u8string name = entry.path().filename().u8string();
    if (EqualsNoCase(std::string(name.begin(), name.end()), "schema.ini")) return ReadWhole(entry.path());
  }
  return {};
}

}  // namespace

Table ParseTextTable(std::string_view content, const TextLayout& layout, bool headings) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  constexpr std::string_view kUtf16Mark = "\xFF\xFE";
  int code_page = layout.code_page;
  if (content.substr(0, kUtf8Mark.size()) == kUtf8Mark) {
    content.remove_prefix(kUtf8Mark.size());
    code_page = 65001;
  } else if (content.substr(0, kUtf16Mark.size()) == kUtf16Mark) {
    content.remove_prefix(kUtf16Mark.size());
    code_page = 1200;
  }
  std::string text = FromCodePage(content, code_page);
  if (!text.empty() && text.back() == '\x1A') text.pop_back();  // DOS end of file
  return TextTableReader(text, layout).Read(headings);
}

Table ReadTextTable(const std::string& host_path, bool headings) {
  const std::filesystem::path path(std::u8string(host_path.begin(), host_path.end()));
  const std::u8string bare = path.filename().u8string();
  const std::string file_name(bare.begin(), bare.end());
  try {
    const std::string content = ReadWhole(path);
    const TextLayout layout = ParseSchemaIni(ReadSchemaIni(path.parent_path()), file_name);
    return ParseTextTable(content, layout, headings);
  } catch (const SheetError& error) {
    throw SheetError(error.reason(), fmt::format("Fisierul {}: {}", file_name, error.what()));
  }
}

}  // namespace platform::spreadsheet
