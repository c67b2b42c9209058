#pragma once

#include <QColor>

#include "session/settings.h"

namespace ui {

/// A background and the text colour that can be read on it.
struct Paint {
  QColor background, text;
};

/// The row colours of the settings, whatever the desktop's theme.
struct GridColours {
  Paint even, odd, current;

  static GridColours From(const session::Settings& settings);

  /// `row` from 0: the first row counts as odd.
  const Paint& Row(int row) const { return row % 2 == 0 ? odd : even; }
};

/// `over` laid on `under`, 0 to 1 thick.
QColor Blend(const QColor& under, const QColor& over, double share);
/// The paint with a wash over its background; its text stays unless it could not be read any more.
Paint Washed(const Paint& paint, const QColor& wash, double share);

}  // namespace ui
