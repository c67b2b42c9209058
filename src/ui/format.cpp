#include "ui/format.h"

#include <cmath>

#include "calc/rounding/typed_number.h"
#include "platform/clock.h"
#include "ui/text.h"

namespace ui {
namespace {

int Decimals(Format format) { return format == Format::kRate ? 4 : format == Format::kAmount ? 2 : 0; }

/// A half is shown rounded away from zero, judged by the decimal number that the double stands for: 2.675,
/// stored a little below, shows as 2,68.
QString Fixed(double number, int decimals, const QLocale& locale) {
  if (std::abs(number) < 1e11) number = std::nextafter(number, number < 0 ? -HUGE_VAL : HUGE_VAL);
  if (std::abs(number) * std::pow(10, decimals) < 0.5) number = 0;  // no "-0,00"
  return locale.toString(number, 'f', decimals);
}

}  // namespace

Format FormatByText(std::string_view format) {
  if (format == "##,##0") return Format::kWhole;
  if (format == "##,##0.00") return Format::kAmount;
  if (format == "##,##0.0000") return Format::kRate;
  return Format::kText;
}

QString Shown(const store::Value& value, Format format, const QLocale& locale) {
  if (value.is_null() || format == Format::kTick) return {};
  switch (format) {
    case Format::kWhole:
    case Format::kAmount:
    case Format::kRate:
      if (value.is_number()) return Fixed(value.ToDouble(), Decimals(format), locale);
      break;
    case Format::kDate:
    case Format::kDateTime:
      if (value.is_date()) {
        const platform::LocalTime at = platform::FromSerial(value.ToDate().days);
        const std::string day = fmt::format("{:02}.{:02}.{:04}", at.day, at.month, at.year);
        return Q(format == Format::kDate ? day : fmt::format("{} {:02}:{:02}", day, at.hour, at.minute));
      }
      break;
    default:
      if (value.is_double()) return ForEditing(value, format, locale);
      break;
  }
  return Q(value.ToText());
}

QString ForEditing(const store::Value& value, Format format, const QLocale& locale) {
  if (format == Format::kTick) return value.ToBoolean() ? QStringLiteral("1") : QStringLiteral("0");
  if (value.is_double()) return Q(store::DoubleText(value.ToDouble())).replace('.', locale.decimalPoint());
  if (value.is_date()) return Shown(value, format == Format::kDateTime ? format : Format::kDate, locale);
  return Q(value.ToText());
}

std::optional<double> ParseNumber(const QString& text, Format format, const QLocale& locale) {
  return calc::ParseTypedNumber(
      Utf8(text), Utf8(locale.decimalPoint()),
      format == Format::kRate ? calc::LoneMark::kDecimal : calc::LoneMark::kThousands);
}

bool RightAligned(Format format) {
  return format == Format::kWhole || format == Format::kAmount || format == Format::kRate ||
         format == Format::kNumber;
}

}  // namespace ui
