#include "ui/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QPalette>
#include <QSvgRenderer>

static void LoadResources() { Q_INIT_RESOURCE(icons); }  // has to stand outside of any namespace

namespace ui {
namespace {

QPixmap Drawn(const QByteArray& svg, const QColor& colour, int size) {
  QByteArray coloured = svg;
  coloured.replace("currentColor", colour.name().toLatin1());
  QSvgRenderer renderer(coloured);
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  renderer.render(&painter);
  return pixmap;
}

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

}  // namespace

QIcon Icon(const QString& name) {
  LoadResources();
  QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray svg = file.readAll();
  const QPalette palette = QGuiApplication::palette();
  QIcon icon;
  for (const int size : {16, 20, 24, 32, 48, 64, 96}) {
    icon.addPixmap(Drawn(svg, palette.color(QPalette::Active, QPalette::ButtonText), size), QIcon::Normal);
    icon.addPixmap(Drawn(svg, palette.color(QPalette::Disabled, QPalette::ButtonText), size),
                   QIcon::Disabled);
  }
  return icon;
}

QColor FromBgr(std::uint32_t colour) {
  return QColor(static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                static_cast<int>((colour >> 16) & 0xFF));
}

std::uint32_t ToBgr(const QColor& colour) {
  const auto part = [](int value) { return static_cast<std::uint32_t>(value); };
  return part(colour.red()) | (part(colour.green()) << 8) | (part(colour.blue()) << 16);
}

double Contrast(const QColor& a, const QColor& b) {
  const double x = Luminance(a), y = Luminance(b);
  return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

QColor ReadableOn(const QColor& background) {
  return Luminance(background) > 0.179 ? QColor(Qt::black) : QColor(Qt::white);
}

}  // namespace ui
