#include "reports/screens/page_painter.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QPrinter>

#include "ui/text.h"

namespace reports {
namespace {

constexpr double kFine = 20;  // font pixels to a point: letters stand where they were measured

QFont PageFont(double points, bool bold) {
  QFont font = QApplication::font();
  font.setPixelSize(static_cast<int>(std::lround(points * kFine)));
  font.setBold(bold);
  font.setKerning(false);  // widths are sums of the letters'
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

FontTable Measured(bool bold) {
  constexpr double kSize = 50;  // points
  const QFontMetricsF metrics(PageFont(kSize, bold));
  const double unit = kSize * kFine;
  FontTable table;
  for (std::size_t c = 0; c < FontTable::kLetters; ++c) {
    table.advance[c] =
        c < 0x20 ? 0 : static_cast<float>(metrics.horizontalAdvance(QChar(static_cast<char16_t>(c))) / unit);
  }
  table.other = static_cast<float>(metrics.horizontalAdvance(QChar('W')) / unit);
  table.height = static_cast<float>(metrics.height() / unit);
  table.ascent = static_cast<float>(metrics.ascent() / unit);
  return table;
}

}  // namespace

Fonts ReadFonts() { return {Measured(false), Measured(true)}; }

void PaintPage(QPainter& painter, const PageContent& content) {
  for (const PageContent::Fill& fill : content.fills) {
    painter.fillRect(QRectF(fill.x, fill.y, fill.width, fill.height),
                     QColor(fill.grey, fill.grey, fill.grey));
  }
  for (const PageContent::Line& line : content.lines) {
    painter.setPen(QPen(line.strong ? QColor(Qt::black) : QColor(0xb8, 0xb8, 0xb8), line.weight));
    painter.drawLine(QPointF(line.x, line.y), QPointF(line.x + line.width, line.y));
  }
  painter.setPen(Qt::black);
  painter.save();
  painter.scale(1 / kFine, 1 / kFine);
  double size = 0;
  bool bold = false;
  for (const PageContent::Text& text : content.texts) {
    if (size != text.size || bold != text.bold) {
      size = text.size;
      bold = text.bold;
      painter.setFont(PageFont(size, bold));
    }
    painter.drawText(QPointF(text.x * kFine, text.baseline * kFine), ui::Q(text.text));
  }
  painter.restore();
}

bool PrintPages(const Layout& layout, QPrinter& printer, int first, int last, const PageProgress& progress) {
  printer.setFullPage(true);
  QPainter painter;
  if (!painter.begin(&printer)) return false;
  const double scale = printer.resolution() / 72.0;
  painter.scale(scale, scale);
  for (int page = first; page <= last; ++page) {
    if ((page > first && !printer.newPage()) || !progress(page, layout.page_count())) {
      printer.abort();
      return false;
    }
    PaintPage(painter, layout.Page(page));
  }
  return painter.end();
}

QByteArray Pdf(const Layout& layout, const QString& title, const PageProgress& progress) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  const QSizeF size(layout.page().width, layout.page().height);
  writer.setPageSize(QPageSize(size, QPageSize::Point, QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF());
  writer.setTitle(title.trimmed());
  writer.setCreator(QStringLiteral("Declarix"));
  QPainter painter(&writer);
  const double scale = writer.resolution() / 72.0;
  painter.scale(scale, scale);
  for (int page = 0; page < layout.page_count(); ++page) {
    if (page > 0) writer.newPage();
    if (!progress(page, layout.page_count())) return {};
    PaintPage(painter, layout.Page(page));
  }
  painter.end();
  return bytes;
}

}  // namespace reports
