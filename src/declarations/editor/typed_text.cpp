#include "declarations/editor/typed_text.h"

#include <cctype>

#include "platform/clock.h"
#include "platform/encoding.h"

namespace declarations {
namespace {

bool AllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int Digits(std::string_view text) { return static_cast<int>(store::Value(text).ToInteger()); }

std::optional<store::Date> DateOf(int year, int month, int day) {
  if (!platform::IsValidDate(year, month, day)) return std::nullopt;
  return store::Date{platform::ToSerial({year, month, day, 0, 0, 0})};
}

}  // namespace

std::optional<store::Date> ParseTypedDate(std::string_view text, int year, int month) {
  text = platform::Trim(text);
  if (text.ends_with('.')) text.remove_suffix(1);
  if (!text.empty() && text.size() <= 2 && AllDigits(text)) return DateOf(year, month, Digits(text));
  if (text.size() == 8 && AllDigits(text)) {
    return DateOf(Digits(text.substr(4)), Digits(text.substr(2, 2)), Digits(text.substr(0, 2)));
  }
  const std::size_t at = text.find_first_of("./-");
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view day = text.substr(0, at), rest = text.substr(at + 1);
  if (!day.empty() && day.size() <= 2 && AllDigits(day) && !rest.empty() && rest.size() <= 2 &&
      AllDigits(rest)) {
    return DateOf(year, Digits(rest), Digits(day));
  }
  return store::ParseDate(text);
}

bool IsLineDate(store::Date date) {
  const int year = platform::FromSerial(date.days).year;
  return year >= 2000 && year <= 2099;
}

std::string TypedText(const store::Value& value, std::string_view decimal_mark) {
  std::string text = value.ToText();
  if (value.is_double() && decimal_mark == ",") text = platform::ReplaceAll(text, ".", ",");
  return text;
}

std::vector<std::vector<std::string>> SplitBlock(std::string_view text) {
  std::vector<std::vector<std::string>> lines;
  std::size_t at = 0;
  while (at < text.size()) {
    std::vector<std::string>& cells = lines.emplace_back();
    for (;;) {
      std::string cell;
      bool taken = false;
      if (at < text.size() && text[at] == '"') {
        // Quotes count only where they close right before the cell ends; else they belong to the text.
        std::size_t end = at + 1;
        std::string inside;
        for (; end < text.size(); ++end) {
          if (text[end] == '"') {
            if (end + 1 < text.size() && text[end + 1] == '"') {
              ++end;
            } else {
              break;
            }
          }
          if (text[end] == '\r') continue;
          inside += text[end] == '\n' || text[end] == '\t' ? ' ' : text[end];
        }
        const std::size_t after = end + 1;
        if (end < text.size() &&
            (after == text.size() || text[after] == '\t' || text[after] == '\n' || text[after] == '\r')) {
          cell = inside;
          at = after;
          taken = true;
        }
      }
      if (!taken) {
        const std::size_t end = std::min(text.find_first_of("\t\r\n", at), text.size());
        cell = text.substr(at, end - at);
        at = end;
      }
      cells.push_back(std::move(cell));
      if (at >= text.size() || text[at] != '\t') break;
      ++at;
    }
    if (at < text.size() && text[at] == '\r') ++at;
    if (at < text.size() && text[at] == '\n') ++at;
  }
  return lines;
}

}  // namespace declarations
