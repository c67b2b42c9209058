#include "calc/rounding/typed_number.h"

#include <algorithm>

#include "platform/encoding.h"
#include "store/value.h"

namespace calc {
namespace {

bool AllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// Blanks and no-break blanks removed: spreadsheets separate thousands with them.
std::string WithoutBlanks(std::string_view text) {
  const std::string plain =
      platform::ReplaceAll(platform::ReplaceAll(text, "\xC2\xA0", ""), "\xE2\x80\xAF", "");
  return platform::ReplaceAll(plain, " ", "");
}

/// "1.234.567" with its marks taken out; nothing where they do not stand at thousands.
std::optional<std::string> Ungrouped(std::string_view whole, char mark) {
  std::string digits;
  bool first = true;
  for (;;) {
    const std::size_t at = whole.find(mark);
    const std::string_view group = whole.substr(0, at);
    if (!AllDigits(group)) return std::nullopt;
    if (first ? at != std::string_view::npos && (group.empty() || group.size() > 3) : group.size() != 3) {
      return std::nullopt;
    }
    digits += group;
    first = false;
    if (at == std::string_view::npos) return digits;
    whole.remove_prefix(at + 1);
  }
}

}  // namespace

std::optional<double> ParseTypedNumber(std::string_view text, std::string_view decimal_mark,
                                       LoneMark lone_mark) {
  const char mark = decimal_mark == "," ? ',' : '.';
  const char group = mark == ',' ? '.' : ',';
  std::string number = WithoutBlanks(platform::Trim(text));
  std::string sign, exponent;
  if (!number.empty() && (number[0] == '-' || number[0] == '+')) {
    sign = number[0] == '-' ? "-" : "";
    number.erase(0, 1);
  }
  if (const std::size_t e = number.find_first_of("eE"); e != std::string::npos) {
    exponent = number.substr(e);
    number.erase(e);
  }
  const auto read = [&](std::string_view whole, std::string_view fraction) {
    return store::ParseNumber(fmt::format("{}{}.{}{}", sign, whole.empty() ? "0" : whole,
                                          fraction.empty() ? "0" : fraction, exponent));
  };
  const std::size_t at = number.find(mark);
  const std::string_view whole = std::string_view(number).substr(0, at);
  const std::string_view fraction =
      at == std::string::npos ? std::string_view() : std::string_view(number).substr(at + 1);
  if (!AllDigits(fraction) || whole.size() + fraction.size() == 0) return std::nullopt;
  const std::size_t other = whole.find(group);
  const bool lone = at == std::string::npos && other != std::string_view::npos && other == whole.rfind(group);
  if (!lone || lone_mark == LoneMark::kThousands) {
    if (const std::optional<std::string> digits = Ungrouped(whole, group)) return read(*digits, fraction);
  }
  if (at != std::string::npos || whole.size() == 1 || !AllDigits(whole.substr(0, other)) ||
      !AllDigits(whole.substr(other + 1))) {
    return std::nullopt;
  }
  return read(whole.substr(0, other), whole.substr(other + 1));
}

}  // namespace calc
