#pragma once

#include <QLocale>
#include <QString>
#include <optional>

#include "store/value.h"

namespace ui {

/// How a value is shown: numbers in the user's locale, dates dd.mm.yyyy, codes as stored.
enum class Format {
  kText,
  kWhole,   ///< "##,##0"
  kAmount,  ///< "##,##0.00"
  kRate,    ///< "##,##0.0000"
  kNumber,  ///< all decimals there are, no grouping: numbers of which nothing more is known
  kDate,
  kDateTime,  ///< dd.mm.yyyy hh:mm
  kTick,      ///< yes/no
};

/// The three display formats by their texts; anything else is kText.
Format FormatByText(std::string_view format);

/// Null shows as nothing, and so does a tick (it is drawn).
QString Shown(const store::Value& value, Format format = Format::kNumber, const QLocale& locale = QLocale());
/// The same for typing into and for copying: all decimals there are, no grouping, a tick as "1" or "0".
QString ForEditing(const store::Value& value, Format format = Format::kNumber,
                   const QLocale& locale = QLocale());

/// A number as typed (calc::ParseTypedNumber with the locale's mark). Nothing where it is none.
/// A single point without the locale's decimal mark is a decimal point even where the locale groups by
/// points: the number pad types one, and cells are edited without grouping. With kRate that holds also where
/// it could separate thousands.
std::optional<double> ParseNumber(const QString& text, Format format = Format::kNumber,
                                  const QLocale& locale = QLocale());

/// True for formats whose cells stand at the right.
bool RightAligned(Format format);

}  // namespace ui
