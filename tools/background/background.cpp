// Paints the background of the main window and of the splash: height lines as on a map, in tints of one hue,
// light enough for dark text on top of them. Usage: background_painter FILE.jpg

#include <QColor>
#include <QImage>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

constexpr int kWidth = 1600;
constexpr int kHeight = 1000;
constexpr double kLevels = 11;      // height lines between the lowest and the highest ground
constexpr double kLineWidth = 1.2;  // pixels
constexpr int kJpegQuality = 99;    // below this the flat tints get colour casts

struct Hill {
  double x, y;    // centre, in picture heights
  double radius;  // likewise
  double height;
};

// Laid out so that the lines are dense at the right and below; commands and texts stand at the left.
constexpr std::array<Hill, 8> kHills{{{1.42, 0.30, 0.34, 1.00},
                                      {1.18, 0.86, 0.30, 0.72},
                                      {0.66, 1.02, 0.36, 0.55},
                                      {0.28, 0.10, 0.30, 0.34},
                                      {0.86, 0.22, 0.24, 0.30},
                                      {1.66, 0.84, 0.26, 0.48},
                                      {-0.05, 0.66, 0.30, 0.26},
                                      {1.02, 0.52, 0.20, -0.22}}};

double Ground(double x, double y) {
  double sum = 0;
  for (const Hill& hill : kHills) {
    const double dx = (x - hill.x) / hill.radius;
    const double dy = (y - hill.y) / hill.radius;
    sum += hill.height * std::exp(-(dx * dx + dy * dy) / 2);
  }
  return sum;
}

QRgb Mix(const QColor& from, const QColor& to, double part) {
  const auto channel = [part](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * part)); };
  return qRgb(channel(from.red(), to.red()), channel(from.green(), to.green()),
              channel(from.blue(), to.blue()));
}

QImage Paint() {
  const QColor low(0xf4, 0xf9, 0xfd);
  const QColor high(0xcc, 0xe1, 0xf1);
  const QColor line(0xa9, 0xcb, 0xe2);
  const double pixel = 1.0 / kHeight;
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  for (int row = 0; row < kHeight; ++row) {
    auto* out = reinterpret_cast<QRgb*>(image.scanLine(row));
    for (int column = 0; column < kWidth; ++column) {
      const double x = column * pixel;
      const double y = row * pixel;
      const double level = Ground(x, y) * kLevels;
      const double slope = std::hypot(Ground(x + pixel, y) * kLevels - level,
                                      Ground(x, y + pixel) * kLevels - level);             // levels per pixel
      const double to_line = std::abs(level - std::round(level)) / std::max(slope, 1e-6);  // pixels
      const double band = std::floor(level) / kLevels;
      const double coverage = std::clamp(kLineWidth / 2 + 0.5 - to_line, 0.0, 1.0);
      const QColor tint(Mix(low, high, std::clamp(band, 0.0, 1.0)));
      out[column] = Mix(tint, line, coverage);
    }
  }
  return image;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: background_painter FILE.jpg\n", stderr);
    return 2;
  }
  if (!Paint().save(QString::fromLocal8Bit(argv[1]), "JPG", kJpegQuality)) {
    std::fprintf(stderr, "cannot write %s\n", argv[1]);
    return 1;
  }
  return 0;
}
