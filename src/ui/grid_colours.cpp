#include "ui/grid_colours.h"

#include <cmath>

#include "ui/icons.h"

namespace ui {
namespace {

constexpr double kReadable = 4.5;

}  // namespace

QColor Blend(const QColor& under, const QColor& over, double share) {
  auto mix = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
  return {mix(under.red(), over.red()), mix(under.green(), over.green()), mix(under.blue(), over.blue())};
}

Paint Washed(const Paint& paint, const QColor& wash, double share) {
  Paint washed{Blend(paint.background, wash, share), paint.text};
  if (Contrast(washed.background, washed.text) < kReadable) washed.text = ReadableOn(washed.background);
  return washed;
}

GridColours GridColours::From(const session::Settings& settings) {
  auto row = [](std::uint32_t colour) {
    const QColor background = FromBgr(colour);
    return Paint{background, ReadableOn(background)};
  };
  GridColours colours;
  colours.even = row(settings.EvenRowStyle_BackColor);
  colours.odd = row(settings.OddRowStyle_BackColor);
  colours.current = {FromBgr(settings.HighlightRowStyle_BackColor),
                     FromBgr(settings.HighlightRowStyle_ForeColor)};
  if (Contrast(colours.current.background, colours.current.text) < kReadable) {
    colours.current.text = ReadableOn(colours.current.background);
  }
  return colours;
}

}  // namespace ui
