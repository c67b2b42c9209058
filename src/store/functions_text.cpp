#include <cmath>

#include "platform/encoding.h"
#include "store/collation.h"
#include "store/functions.h"
#include "store/functions_call.h"
#include "store/value.h"

// Positions and lengths count code points.

namespace store::functions {

namespace {

std::size_t CountArgument(const Call& call, int i) {
  std::int64_t count = call.Integer(i);
  if (count < 0) FailInvalidCall();
  return static_cast<std::size_t>(count);
}

/// Text without its first `count` code points.
std::string_view Drop(std::string_view text, std::size_t count) {
  return text.substr(platform::Utf8Prefix(text, count).size());
}

void Left(Call& call) {
  std::size_t count = CountArgument(call, 1);
  call.Return(platform::Utf8Prefix(call.Text(0), count));
}

void Right(Call& call) {
  std::size_t count = CountArgument(call, 1);
  TextArgument text = call.Text(0);
  std::size_t length = platform::Utf8Length(text);
  call.Return(count >= length ? text.view() : Drop(text, length - count));
}

void Mid(Call& call) {
  std::size_t start = CountArgument(call, 1);
  if (start == 0) FailInvalidCall();
  TextArgument text = call.Text(0);
  std::string_view rest = Drop(text, start - 1);
  call.Return(call.count() > 2 ? platform::Utf8Prefix(rest, CountArgument(call, 2)) : rest);
}

void Len(Call& call) { call.Return(static_cast<std::int64_t>(platform::Utf8Length(call.Text(0)))); }

void TrimSides(Call& call, bool left, bool right) {
  TextArgument text = call.Text(0);
  std::string_view view = text;
  while (left && !view.empty() && view.front() == ' ') view.remove_prefix(1);
  while (right && !view.empty() && view.back() == ' ') view.remove_suffix(1);
  call.Return(view);
}
void Trim(Call& call) { TrimSides(call, true, true); }
void LeftTrim(Call& call) { TrimSides(call, true, false); }
void RightTrim(Call& call) { TrimSides(call, false, true); }

void UpperCase(Call& call) { call.Return(platform::ToUpper(call.Text(0))); }
void LowerCase(Call& call) { call.Return(platform::ToLower(call.Text(0))); }

/// The comparison argument of the searching functions: 0 asks for exact characters, anything else for the
/// database's own way.
FoldedMatch Search(std::string_view text, std::string_view what, std::size_t from, bool exact) {
  if (!exact) return FindFolded(text, what, from);
  std::size_t at = text.find(what, from);
  return {at, what.size()};
}

void InStr(Call& call) {
  // INSTR([start,] text, what[, compare]); a comparison needs the start.
  int first = call.count() >= 3 ? 1 : 0;
  std::size_t start = first == 1 ? CountArgument(call, 0) : 1;
  if (start == 0) FailInvalidCall();
  bool exact = call.SmallInteger(3, 1) == 0;
  TextArgument text = call.Text(first), what = call.Text(first + 1);
  if (text.view().empty() || start > platform::Utf8Length(text)) return call.Return(0);
  std::size_t from = platform::Utf8Prefix(text, start - 1).size();
  FoldedMatch match = Search(text, what, from, exact);
  if (match.position == std::string_view::npos) return call.Return(0);
  call.Return(static_cast<std::int64_t>(platform::Utf8Length(text.view().substr(0, match.position)) + 1));
}

void InStrRev(Call& call) {
  TextArgument text = call.Text(0), what = call.Text(1);
  int start = call.SmallInteger(2, -1);
  if (start == 0 || start < -1) FailInvalidCall();
  bool exact = call.SmallInteger(3, 1) == 0;
  std::string_view head =
      start < 0 ? text.view() : platform::Utf8Prefix(text, static_cast<std::size_t>(start));
  if (head.empty()) return call.Return(0);
  if (what.view().empty()) return call.Return(static_cast<std::int64_t>(platform::Utf8Length(head)));
  std::size_t last = std::string_view::npos;
  for (std::size_t from = 0;;) {
    FoldedMatch match = Search(head, what, from, exact);
    if (match.position == std::string_view::npos) break;
    last = from = match.position;
    NextCodePoint(head, from);
  }
  if (last == std::string_view::npos) return call.Return(0);
  call.Return(static_cast<std::int64_t>(platform::Utf8Length(head.substr(0, last)) + 1));
}

void Replace(Call& call) {
  // REPLACE(text, what, with[, start[, count[, compare]]]); the result begins at `start`.
  TextArgument text = call.Text(0), what = call.Text(1), with = call.Text(2);
  int start = call.SmallInteger(3, 1), count = call.SmallInteger(4, -1);
  if (start < 1 || count < -1) FailInvalidCall();
  bool exact = call.SmallInteger(5, 1) == 0;
  std::string_view rest = Drop(text, static_cast<std::size_t>(start - 1));
  if (what.view().empty()) return call.Return(rest);
  std::string result;
  std::size_t from = 0;
  while (count != 0) {
    FoldedMatch match = Search(rest, what, from, exact);
    if (match.position == std::string_view::npos) break;
    result.append(rest.substr(from, match.position - from)).append(with.view());
    from = match.position + match.length;
    if (count > 0) --count;
  }
  result.append(rest.substr(from));
  call.Return(result);
}

void StrComp(Call& call) {
  TextArgument left = call.Text(0), right = call.Text(1);
  int order = call.SmallInteger(2, 1) == 0 ? left.view().compare(right.view()) : CompareText(left, right);
  call.Return(order < 0 ? -1 : order > 0 ? 1 : 0);
}

void StrReverse(Call& call) {
  TextArgument text = call.Text(0);
  std::string_view view = text;
  std::string result(view.size(), '\0');
  std::size_t at = 0, end = view.size();
  while (at < view.size()) {
    std::size_t begin = at;
    NextCodePoint(view, at);
    end -= at - begin;
    view.copy(result.data() + end, at - begin, begin);
  }
  call.Return(result);
}

/// Longest text that SPACE and STRING make; more is a slip in an expression.
constexpr std::size_t kLongestRepeat = 10'000'000;

void Space(Call& call) {
  std::size_t count = CountArgument(call, 0);
  if (count > kLongestRepeat) FailOverflow();
  call.Return(std::string(count, ' '));
}

std::string Character(int code) {
  if (code < 0 || code > 255) FailInvalidCall();
  char byte = static_cast<char>(code);
  if (code < 128) return std::string(1, byte);
  return platform::FromCodePage({&byte, 1}, 1250);
}

void String(Call& call) {
  std::size_t count = CountArgument(call, 0);
  if (count > kLongestRepeat) FailOverflow();
  std::string unit;
  if (call.type(1) == SQLITE_TEXT) {
    unit = platform::Utf8Prefix(call.Text(1), 1);
    if (unit.empty()) FailInvalidCall();
  } else {
    unit = Character(call.SmallInteger(1) & 255);
  }
  std::string result;
  for (std::size_t i = 0; i < count; ++i) result += unit;
  call.Return(result);
}

void Chr(Call& call) { call.Return(Character(call.SmallInteger(0))); }

void Asc(Call& call) {
  TextArgument text = call.Text(0);
  if (text.view().empty()) FailInvalidCall();
  std::string byte = platform::ToCodePage(platform::Utf8Prefix(text, 1), 1250);
  call.Return(byte.empty() ? 63 : static_cast<int>(static_cast<unsigned char>(byte[0])));
}

void Str(Call& call) {
  double number = call.Number(0);
  std::string text = DoubleText(number);
  call.Return(number < 0 ? text : " " + text);
}

void Val(Call& call) {
  // The number at the front, blanks anywhere in it passed over; 0 where there is none.
  std::string digits;
  TextArgument text = call.Text(0);
  for (char c : text.view()) {
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
    bool sign = (c == '-' || c == '+') && (digits.empty() || digits.back() == 'e');
    bool point = c == '.' && digits.find_first_of(".e") == std::string::npos;
    bool power = (c == 'e' || c == 'E' || c == 'd' || c == 'D') && digits.find('e') == std::string::npos &&
                 digits.find_first_of("0123456789") != std::string::npos;
    if (!(c >= '0' && c <= '9') && !sign && !point && !power) break;
    digits += power ? 'e' : c;
  }
  while (!digits.empty() && !ParseNumber(digits)) digits.pop_back();
  call.Return(digits.empty() ? 0.0 : *ParseNumber(digits));
}

void FormatFunction(Call& call) {
  if (call.IsNull(0)) return call.Return("");
  int first_weekday = call.SmallInteger(2, 1), first_week = call.SmallInteger(3, 1);
  TextArgument pattern = call.count() > 1 ? call.Text(1) : TextArgument(call.value(0));
  if (call.count() == 1 || pattern.view().empty()) return call.Return(call.Text(0));
  if (IsDatePattern(pattern)) {
    auto days = call.TryDays(0);
    if (!days) return call.Return(call.Text(0));
    return call.Return(FormatDate(call.Days(0), pattern, first_weekday, first_week));
  }
  auto number = call.TryNumber(0);
  if (number && pattern.view().find_first_of("@&<>!") == std::string_view::npos) {
    return call.Return(FormatNumber(*number, pattern));
  }
  call.Return(FormatText(call.Text(0), pattern));
}

}  // namespace

void RegisterText(sqlite3* db) {
  static constexpr Definition kDefinitions[] = {
      {"left", 2, 2, Enter<NullThrough<Left>>},         {"right", 2, 2, Enter<NullThrough<Right>>},
      {"mid", 2, 3, Enter<NullThrough<Mid>>},           {"len", 1, 1, Enter<NullThrough<Len>>},
      {"trim", 1, 1, Enter<NullThrough<Trim>>},         {"ltrim", 1, 1, Enter<NullThrough<LeftTrim>>},
      {"rtrim", 1, 1, Enter<NullThrough<RightTrim>>},   {"ucase", 1, 1, Enter<NullThrough<UpperCase>>},
      {"lcase", 1, 1, Enter<NullThrough<LowerCase>>},   {"instr", 2, 4, Enter<NullThrough<InStr>>},
      {"instrrev", 2, 4, Enter<NullThrough<InStrRev>>}, {"replace", 3, 6, Enter<NullThrough<Replace>>},
      {"strcomp", 2, 3, Enter<NullThrough<StrComp>>},   {"strreverse", 1, 1, Enter<NullThrough<StrReverse>>},
      {"space", 1, 1, Enter<NullThrough<Space>>},       {"string", 2, 2, Enter<NullThrough<String>>},
      {"chr", 1, 1, Enter<NullThrough<Chr>>},           {"asc", 1, 1, Enter<NullThrough<Asc>>},
      {"str", 1, 1, Enter<NullThrough<Str>>},           {"val", 1, 1, Enter<NullThrough<Val>>},
      {"format", 1, 4, Enter<FormatFunction>},
  };
  RegisterAll(db, kDefinitions);
}

}  // namespace store::functions
