#include "cli/batch/output.h"

#include <charconv>
#include <cmath>
#include <ostream>

#include "platform/clock.h"

namespace cli {
namespace {

std::string DoubleText(double value) {
  const double size = std::abs(value);
  const bool plain = value == 0 || (size >= 1e-5 && size < 1e16);
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, value,
                                 plain ? std::chars_format::fixed : std::chars_format::scientific);
  return std::string(text, end.ptr);
}

std::string IsoText(store::Date date) {
  const platform::LocalTime time = platform::FromSerial(date.days);
  std::string text = fmt::format("{:04}-{:02}-{:02}", time.year, time.month, time.day);
  if (time.hour != 0 || time.minute != 0 || time.second != 0) {
    text += fmt::format(" {:02}:{:02}:{:02}", time.hour, time.minute, time.second);
  }
  return text;
}

/// Walks a recordset or a table through the same writer.
template <typename Names, typename EachRow>
void WriteJsonTable(std::ostream& out, const Names& names, const EachRow& each_row) {
  out << "{\"columns\": [";
  const char* separator = "";
  for (const std::string& name : names) {
    out << separator << JsonText(name);
    separator = ", ";
  }
  out << "], \"rows\": [";
  const char* row_separator = "\n";
  each_row([&](std::size_t fields, const auto& get) {
    out << row_separator << "[";
    row_separator = ",\n";
    for (std::size_t i = 0; i < fields; ++i) out << (i == 0 ? "" : ", ") << JsonValue(get(i));
    out << "]";
  });
  out << "]}";
}

std::vector<std::string> Names(const store::Recordset& rows) {
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(rows.field_count()));
  for (int i = 0; i < rows.field_count(); ++i) names.push_back(rows.field(i).name);
  return names;
}

template <typename Items>
void WriteLine(std::ostream& out, const Items& items) {
  const char* separator = "";
  for (const std::string& item : items) {
    out << separator << item;
    separator = "\t";
  }
  out << '\n';
}

}  // namespace

std::string PlainText(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '\\':
        escaped += "\\\\";
        break;
      case '\t':
        escaped += "\\t";
        break;
      case '\r':
        escaped += "\\r";
        break;
      case '\n':
        escaped += "\\n";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string PlainField(const store::Value& value) {
  if (value.is_null()) return "\\N";
  if (value.is_boolean()) return value.ToBoolean() ? "-1" : "0";
  if (value.is_double()) return DoubleText(value.ToDouble());
  if (value.is_date()) return IsoText(value.ToDate());
  return PlainText(value.ToText());
}

std::string JsonText(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (byte < 0x20) {
      quoted += fmt::format("\\u{:04x}", byte);
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

std::string JsonValue(const store::Value& value) {
  if (value.is_null()) return "null";
  if (value.is_boolean()) return value.ToBoolean() ? "true" : "false";
  if (value.is_integer()) return std::to_string(value.ToInteger());
  if (value.is_double()) return DoubleText(value.ToDouble());
  if (value.is_date()) return JsonText(IsoText(value.ToDate()));
  return JsonText(value.text());
}

void WritePlain(std::ostream& out, const ResultTable& table) {
  WriteLine(out, table.columns);
  for (const auto& row : table.rows) {
    std::vector<std::string> fields;
    fields.reserve(row.size());
    for (const store::Value& value : row) fields.push_back(PlainField(value));
    WriteLine(out, fields);
  }
}

void WritePlain(std::ostream& out, store::Recordset rows) {
  std::vector<std::string> fields = Names(rows);
  for (std::string& name : fields) name = PlainText(name);
  WriteLine(out, fields);
  for (; !rows.eof(); rows.MoveNext()) {
    for (int i = 0; i < rows.field_count(); ++i)
      fields[static_cast<std::size_t>(i)] = PlainField(rows.Get(i));
    WriteLine(out, fields);
  }
}

void WriteJson(std::ostream& out, const ResultTable& table) {
  WriteJsonTable(out, table.columns, [&](const auto& write_row) {
    for (const auto& row : table.rows) write_row(row.size(), [&](std::size_t i) { return row[i]; });
  });
}

void WriteJson(std::ostream& out, store::Recordset rows) {
  const auto names = Names(rows);
  WriteJsonTable(out, names, [&](const auto& write_row) {
    for (; !rows.eof(); rows.MoveNext()) {
      write_row(names.size(), [&](std::size_t i) { return rows.Get(static_cast<int>(i)); });
    }
  });
}

}  // namespace cli
