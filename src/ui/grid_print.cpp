#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>
#include <algorithm>
#include <numeric>

#include "ui/grid_export.h"
#include "ui/progress.h"
#include "ui/text.h"

// A printed grid: columns as wide as what they hold where that fits the page; else landscape, a smaller font,
// and at last texts wrapped in their cells. Nothing is cut off.

namespace ui {
namespace {

constexpr double kFontPoints[] = {9, 8, 7};
constexpr int kMeasuredRows = 2000;  // evenly chosen, of longer lists
constexpr int kMostLines = 12;       // of a wrapped cell
constexpr int kWrap = Qt::TextWordWrap | Qt::TextWrapAnywhere;

class GridPrinter {
 public:
  GridPrinter(session::Session& session, const GridContent& content, QPrinter& printer)
      : session_(session), content_(content), printer_(printer) {}

  /// False where the run was given up or the printer refused.
  bool Run() {
    MeasureColumns(QFont(), kFontPoints[0]);
    const auto wanted = [this] { return std::accumulate(natural_.begin(), natural_.end(), 0); };
    if (wanted() > PageWidth() && printer_.pageLayout().orientation() == QPageLayout::Portrait) {
      printer_.setPageOrientation(QPageLayout::Landscape);
    }
    for (const double points : kFontPoints) {
      MeasureColumns(QFont(), points);
      if (wanted() <= PageWidth()) break;
    }
    FitColumns();
    if (!BreakPages()) return false;
    QPainter painter;
    if (!painter.begin(&printer_)) {
      session_.host.prompter.Error("Imprimanta nu poate fi folosita");
      return false;
    }
    for (std::size_t page = 0; page < page_starts_.size(); ++page) {
      if (page > 0 && !printer_.newPage()) return Fail();
      PaintPage(painter, page);
      if (Stopped("Tiparire", 50 + static_cast<int>((page + 1) * 50 / page_starts_.size()))) {
        printer_.abort();
        return false;
      }
    }
    return painter.end() || Fail();
  }

 private:
  bool Fail() {
    session_.host.prompter.Error("Tiparirea nu s-a putut termina");
    return false;
  }
  bool Stopped(const char* caption, int percent) {
    session_.host.progress.Update(caption, percent);
    if (!session_.host.progress.Cancelled()) return false;
    session_.host.prompter.Info("Tiparirea a fost oprita");
    return true;
  }

  int PageWidth() const {
    return static_cast<int>(printer_.pageLayout().paintRectPixels(printer_.resolution()).width());
  }
  int PageHeight() const {
    return static_cast<int>(printer_.pageLayout().paintRectPixels(printer_.resolution()).height());
  }
  int Points(double points) const { return static_cast<int>(points * printer_.resolution() / 72); }

  /// Painted texts are a little wider than measured ones, by the rounding of each letter.
  int Slack() const { return Points(1.5); }

  const Column& ColumnAt(std::size_t i) const {
    return content_.model->columns()[static_cast<std::size_t>(content_.columns[i])];
  }
  QString TextOf(int row, std::size_t i) const {
    if (ColumnAt(i).format == Format::kTick) {
      return content_.model->ValueAt(row, content_.columns[i]).ToBoolean() ? QStringLiteral("Da")
                                                                           : QStringLiteral("Nu");
    }
    return content_.model->TextAt(row, content_.columns[i]).simplified();
  }

  void MeasureColumns(QFont font, double points) {
    font.setPointSizeF(points);
    font_ = font;
    bold_ = font;
    bold_.setBold(true);
    const QFontMetrics metrics(font_, &printer_), heading(bold_, &printer_);
    line_ = metrics.height();
    pad_ = Points(3);
    natural_.clear();
    const int rows = content_.model->Rows(), step = std::max(1, rows / kMeasuredRows);
    for (std::size_t i = 0; i < content_.columns.size(); ++i) {
      int width = heading.horizontalAdvance(ColumnAt(i).caption);
      for (int row = 0; row < rows; row += step) {
        const QString text = TextOf(row, i);
        // Anything this long is wider than a page.
        width = std::max(width, metrics.horizontalAdvance(text.left(400)));
      }
      natural_.push_back(width + 2 * pad_ + Slack());
    }
  }

  /// Columns that are too wide for the page give way, the widest texts first; numbers keep their width. What
  /// is left of the page goes to the widest text.
  void FitColumns() {
    widths_ = natural_;
    const auto total = [this] { return std::accumulate(widths_.begin(), widths_.end(), 0); };
    const int least = Points(36);
    while (total() > PageWidth()) {
      std::size_t widest = 0;
      int second = least, most = 0;
      for (std::size_t i = 0; i < widths_.size(); ++i) {
        const int weight = RightAligned(ColumnAt(i).format) ? widths_[i] / 4 : widths_[i];
        if (weight > most) {
          second = std::max(most, least);
          most = weight;
          widest = i;
        } else {
          second = std::max(second, weight);
        }
      }
      const int excess = total() - PageWidth();
      const int smaller = std::max(widths_[widest] - excess, std::min(second, widths_[widest] - 1));
      if (smaller < Points(12)) break;  // more columns than a page can take
      widths_[widest] = smaller;
    }
    std::size_t filler = widths_.size();
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      if (ColumnAt(i).format != Format::kText) continue;
      if (filler == widths_.size() || widths_[i] > widths_[filler]) filler = i;
    }
    if (filler < widths_.size() && total() < PageWidth()) widths_[filler] += PageWidth() - total();
    if (total() > PageWidth()) {
      for (int& width : widths_) width = static_cast<int>(std::int64_t{width} * PageWidth() / total());
    }
  }

  static int LinesOf(const QFontMetrics& metrics, int height) {
    return (height + metrics.lineSpacing() / 2) / metrics.lineSpacing();
  }

  int RowHeight(const QFontMetrics& metrics, int row) const {
    int lines = 1;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      const QString text = TextOf(row, i);
      const int room = widths_[i] - 2 * pad_;
      if (metrics.horizontalAdvance(text) + Slack() <= room) continue;
      const int height = metrics.boundingRect(QRect(0, 0, room, 1 << 24), kWrap, text).height();
      lines = std::max(lines, std::min(LinesOf(metrics, height), kMostLines));
    }
    return lines * line_ + pad_;
  }

  int HeadHeight() const {
    const QFontMetrics heading(bold_, &printer_);
    int lines = 1;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      const int height =
          heading.boundingRect(QRect(0, 0, widths_[i] - 2 * pad_, 1 << 24), kWrap, ColumnAt(i).caption)
              .height();
      lines = std::max(lines, LinesOf(heading, height));
    }
    return lines * line_ + pad_;
  }

  int TitleHeight() const { return 2 * line_ + Points(6); }
  int FooterHeight() const { return line_ + Points(6); }

  bool BreakPages() {
    const QFontMetrics metrics(font_, &printer_);
    const int rows = content_.model->Rows();
    const int room = PageHeight() - HeadHeight() - FooterHeight();
    int used = TitleHeight();
    page_starts_ = {0};
    heights_.clear();
    for (int row = 0; row < rows; ++row) {
      if (row % 256 == 0 && Stopped("Pregatire pagini", static_cast<int>(std::int64_t{row} * 50 / rows)))
        return false;
      const int height = RowHeight(metrics, row);
      if (used + height > room && row > page_starts_.back()) {
        page_starts_.push_back(row);
        used = 0;
      }
      used += height;
      heights_.push_back(height);
    }
    return true;
  }

  void PaintCells(QPainter& painter, int top, int height,
                  const std::function<QString(std::size_t)>& text) const {
    int left = 0;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      const QRect cell(left + pad_, top + pad_ / 2, widths_[i] - 2 * pad_, height - pad_ / 2);
      const int side = RightAligned(ColumnAt(i).format) ? Qt::AlignRight : Qt::AlignLeft;
      painter.drawText(cell, side | int{Qt::AlignTop} | kWrap, text(i));
      left += widths_[i];
    }
  }

  void PaintPage(QPainter& painter, std::size_t page) const {
    const int width = std::min(std::accumulate(widths_.begin(), widths_.end(), 0), PageWidth());
    const int first = page_starts_[page];
    const int end = page + 1 < page_starts_.size() ? page_starts_[page + 1] : content_.model->Rows();
    const QPen thin(QColor(0xc8, 0xc8, 0xc8), Points(0.5)), strong(Qt::black, Points(0.75));
    int top = 0;
    painter.setPen(Qt::black);
    if (page == 0) {
      QFont title = bold_;
      title.setPointSizeF(bold_.pointSizeF() * 1.4);
      painter.setFont(title);
      painter.drawText(QRect(0, 0, PageWidth(), 2 * line_), int{Qt::AlignLeft} | Qt::AlignVCenter,
                       content_.title);
      painter.setFont(font_);
      const platform::LocalTime now = session_.host.clock.Now();
      painter.drawText(QRect(0, 0, PageWidth(), 2 * line_), int{Qt::AlignRight} | Qt::AlignVCenter,
                       Q(fmt::format("{:02}.{:02}.{:04}", now.day, now.month, now.year)));
      top = TitleHeight();
    }
    const int head = HeadHeight();
    painter.setFont(bold_);
    painter.fillRect(QRect(0, top, width, head), QColor(0xee, 0xee, 0xee));
    PaintCells(painter, top, head, [this](std::size_t i) { return ColumnAt(i).caption; });
    painter.setPen(strong);
    painter.drawLine(0, top + head, width, top + head);
    top += head;
    painter.setFont(font_);
    for (int row = first; row < end; ++row) {
      const int height = heights_[static_cast<std::size_t>(row)];
      painter.setPen(Qt::black);
      PaintCells(painter, top, height, [this, row](std::size_t i) { return TextOf(row, i); });
      top += height;
      painter.setPen(thin);
      painter.drawLine(0, top, width, top);
    }
    PaintFooter(painter, page);
  }

  void PaintFooter(QPainter& painter, std::size_t page) const {
    const session::Publisher& publisher = session_.publisher;
    QString contact = Q(publisher.NumeFirma);
    if (!publisher.Telefon.empty()) {
      contact += (contact.isEmpty() ? QString() : QStringLiteral("   ")) + QStringLiteral("Telefon : ") +
                 Q(publisher.Telefon);
    }
    const QRect place(0, PageHeight() - line_, PageWidth(), line_);
    painter.setPen(QPen(Qt::black, Points(0.5)));
    painter.drawLine(0, place.top() - Points(2), PageWidth(), place.top() - Points(2));
    painter.drawText(place, int{Qt::AlignLeft} | Qt::AlignVCenter, contact);
    painter.drawText(place, int{Qt::AlignHCenter} | Qt::AlignVCenter, Q(session_.user_name));
    painter.drawText(place, int{Qt::AlignRight} | Qt::AlignVCenter,
                     QStringLiteral("%1 / %2").arg(page + 1).arg(page_starts_.size()));
  }

  session::Session& session_;
  const GridContent& content_;
  QPrinter& printer_;
  QFont font_, bold_;
  int line_ = 0, pad_ = 0;  // printer pixels, as all measures here
  std::vector<int> natural_, widths_, heights_;
  std::vector<int> page_starts_;
};

}  // namespace

bool PrintGrid(session::Session& session, const GridContent& content, QPrinter& printer) {
  if (content.columns.empty()) return false;
  const LongRun run(session.host.progress, QStringLiteral("Tiparire"), Stopping::kPossible);
  return GridPrinter(session, content, printer).Run();
}

bool WritePdf(session::Session& session, const GridContent& content, const std::string& windows_path) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("lista.pdf"));
  {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(file);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageMargins(QMarginsF(12, 12, 12, 12), QPageLayout::Millimeter);
    printer.setDocName(content.title.trimmed());
    if (!PrintGrid(session, content, printer)) return false;
  }
  QFile written(file);
  if (!written.open(QIODevice::ReadOnly)) {
    session.host.prompter.Error(
        fmt::format("Fisierul {} nu s-a putut scrie: {}", windows_path, Utf8(written.errorString())));
    return false;
  }
  const QByteArray bytes = written.readAll();
  try {
    session.host.files.Replace(windows_path, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
  } catch (const platform::FileError& failure) {
    session.host.prompter.Error(failure.what());
    return false;
  }
  return true;
}

}  // namespace ui
