#pragma once

#include <QIcon>
#include <QString>

namespace ui {

/// One of our line icons by name ("adauga"), in the palette's text colour; empty where there is none.
QIcon Icon(const QString& name);

/// A settings colour (0x00BBGGRR) for Qt, and back.
QColor FromBgr(std::uint32_t colour);
std::uint32_t ToBgr(const QColor& colour);
/// Contrast of two colours, 1 to 21, by the relative luminance of the accessibility guidelines (WCAG 2).
double Contrast(const QColor& a, const QColor& b);
/// Black or white, whichever can be read on `background` (contrast at least 4.5:1).
QColor ReadableOn(const QColor& background);

}  // namespace ui
