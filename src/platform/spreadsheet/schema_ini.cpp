#include "platform/spreadsheet/schema_ini.h"

#include <algorithm>
#include <charconv>

#include "platform/encoding.h"
#include "platform/files.h"
#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {
namespace {

constexpr int kMostFields = 255;  // as many as a table of the dialect can have

[[noreturn]] void BadLine(std::string_view line) {
  throw SheetError(SheetError::Reason::kUnsupported,
                   fmt::format("Schema.ini: linia \"{}\" nu este inteleasa", line));
}

bool StartsWithNoCase(std::string_view text, std::string_view head) {
  return EqualsNoCase(text.substr(0, head.size()), head);
}

std::optional<int> ToInt(std::string_view text) {
  int value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || end.ec != std::errc() || end.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

// The next word of a column's description, which may be quoted; `rest` moves behind it.
std::string_view TakeWord(std::string_view& rest) {
  rest = Trim(rest);
  std::string_view word;
  if (!rest.empty() && rest[0] == '"') {
    const std::size_t close = std::min(rest.find('"', 1), rest.size());
    word = rest.substr(1, close - 1);
    rest.remove_prefix(std::min(close + 1, rest.size()));
  } else {
    word = rest.substr(0, rest.find_first_of(" \t"));
    rest.remove_prefix(word.size());
  }
  return word;
}

std::optional<TextLayout::Type> TypeByName(std::string_view word) {
  using Type = TextLayout::Type;
  struct Name {
    std::string_view text;
    Type type;
  };
  constexpr std::array kNames = {
      Name{"Text", Type::kText},       Name{"Char", Type::kText},      Name{"Memo", Type::kMemo},
      Name{"LongChar", Type::kMemo},   Name{"Bit", Type::kBit},        Name{"Byte", Type::kByte},
      Name{"Short", Type::kShort},     Name{"Integer", Type::kShort},  Name{"Long", Type::kLong},
      Name{"Single", Type::kSingle},   Name{"Double", Type::kDouble},  Name{"Float", Type::kDouble},
      Name{"Currency", Type::kDouble}, Name{"Decimal", Type::kDouble}, Name{"DateTime", Type::kDateTime},
      Name{"Date", Type::kDateTime},
  };
  for (const Name& name : kNames) {
    if (EqualsNoCase(name.text, word)) return name.type;
  }
  return std::nullopt;
}

// Coln=name type [Width w]
void TakeField(std::string_view line, int number, std::string_view value, TextLayout& layout) {
  if (number < 1 || number > kMostFields) BadLine(line);
  TextLayout::Field field;
  field.name = TakeWord(value);
  if (const std::string_view word = TakeWord(value); !word.empty()) {
    const std::optional<TextLayout::Type> type = TypeByName(word);
    if (!type) BadLine(line);
    field.type = *type;
  }
  if (const std::string_view word = TakeWord(value); !word.empty()) {
    const std::optional<int> width = ToInt(TakeWord(value));
    if (!EqualsNoCase(word, "Width") || !width || *width < 1) BadLine(line);
    field.width = std::min(*width, 255);
  }
  const auto index = static_cast<std::size_t>(number - 1);
  if (layout.fields.size() <= index) layout.fields.resize(index + 1);
  layout.fields[index] = std::move(field);
}

void TakeFormat(std::string_view line, std::string_view value, TextLayout& layout) {
  if (EqualsNoCase(value, "CSVDelimited")) {
    layout.delimiter = ',';
  } else if (EqualsNoCase(value, "TabDelimited")) {
    layout.delimiter = '\t';
  } else if (StartsWithNoCase(value, "Delimited(") && value.size() == 12 && value.back() == ')') {
    layout.delimiter = value[10];
  } else {
    BadLine(line);
  }
}

void TakeCharacterSet(std::string_view line, std::string_view value, TextLayout& layout) {
  if (EqualsNoCase(value, "ANSI")) {
    layout.code_page = 1252;
  } else if (EqualsNoCase(value, "OEM")) {
    layout.code_page = 852;  // of a Romanian Windows
  } else if (EqualsNoCase(value, "Unicode")) {
    layout.code_page = 1200;
  } else if (const std::optional<int> number = ToInt(value)) {
    layout.code_page = *number;
  } else {
    BadLine(line);
  }
}

void TakeSetting(std::string_view line, TextLayout& layout) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) BadLine(line);
  const std::string_view key = Trim(line.substr(0, equals));
  const std::string_view value = Trim(line.substr(equals + 1));
  if (EqualsNoCase(key, "ColNameHeader")) {
    if (!EqualsNoCase(value, "True") && !EqualsNoCase(value, "False")) BadLine(line);
    layout.headings = EqualsNoCase(value, "True");
  } else if (EqualsNoCase(key, "Format")) {
    TakeFormat(line, value, layout);
  } else if (EqualsNoCase(key, "CharacterSet")) {
    TakeCharacterSet(line, value, layout);
  } else if (EqualsNoCase(key, "DateTimeFormat")) {
    layout.date_format = value;
  } else if (EqualsNoCase(key, "DecimalSymbol")) {
    if (value.size() != 1) BadLine(line);
    layout.decimal = value[0];
  } else if (EqualsNoCase(key, "TextDelimiter")) {
    layout.quote = value.empty() || EqualsNoCase(value, "none") ? '\0' : value[0];
  } else if (StartsWithNoCase(key, "Col")) {
    const std::optional<int> number = ToInt(key.substr(3));
    if (!number) BadLine(line);
    TakeField(line, *number, value, layout);
  }
  // MaxScanRows and the settings of how values are shown mean nothing to a reader.
}

}  // namespace

TextLayout ParseSchemaIni(std::string_view ini, std::string_view file_name) {
  TextLayout layout;
  bool ours = false;
  for (const std::string& raw : SplitLines(ini)) {
    const std::string_view line = Trim(raw);
    if (line.empty() || line[0] == ';') continue;
    if (line[0] == '[') {
      ours = EqualsNoCase(Trim(line.substr(1, line.find(']') - 1)), file_name);
    } else if (ours) {
      TakeSetting(line, layout);
    }
  }
  return layout;
}

}  // namespace platform::spreadsheet
