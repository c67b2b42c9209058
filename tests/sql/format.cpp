#include "format.h"

#include <fmt/format.h>

#include "platform/clock.h"

namespace sql_tests {

std::string Print(const store::Value& value) {
  if (value.is_null()) return "\\N";
  if (value.is_double()) return fmt::format("{}", value.ToDouble());
  if (value.is_date()) {
    platform::LocalTime t = platform::FromSerial(value.ToDate().days);
    std::string day = fmt::format("{:04}-{:02}-{:02}", t.year, t.month, t.day);
    if (t.hour == 0 && t.minute == 0 && t.second == 0) return day;
    return day + fmt::format(" {:02}:{:02}:{:02}", t.hour, t.minute, t.second);
  }
  if (!value.is_text()) return value.ToText();
  std::string text;
  for (char c : value.text()) {
    switch (c) {
      case '\\':
        text += "\\\\";
        break;
      case '\t':
        text += "\\t";
        break;
      case '\n':
        text += "\\n";
        break;
      case '\r':
        text += "\\r";
        break;
      default:
        text += c;
    }
  }
  return text;
}

std::string PrintRow(const store::Recordset& rows) {
  std::string line;
  for (int i = 0; i < rows.field_count(); ++i) {
    if (i > 0) line += '\t';
    line += Print(rows[i]);
  }
  return line;
}

}  // namespace sql_tests
