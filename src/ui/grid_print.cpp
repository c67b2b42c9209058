#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>
#include <algorithm>
#include <functional>
#include <numeric>

#include "ui/grid_export.h"
#include "ui/progress.h"
#include "ui/text.h"

// A printed grid: columns as wide as what they hold where that fits the page; else landscape, a smaller font,
// and at last texts wrapped in their cells. Nothing is cut off.

namespace ui {
namespace {

constexpr double kFontPoints[] = {9, 8, 7, 6, 5.5};
constexpr std::size_t kPlainFonts = 3;  // the first ones, tried before any text is wrapped
constexpr int kMeasuredRows = 2000;     // evenly chosen, of longer lists
constexpr int kMostLines = 12;          // of a wrapped cell
constexpr int kNarrowText = 14;         // characters that a text column keeps where it has as many
constexpr int kLongWord = 24;           // longer words may be broken

/// A column's width: what its longest text takes, what it reads well with where texts are wrapped, and what
/// its longest word or number takes.
struct Width {
  int natural = 0, narrow = 0, least = 0;
};

class GridPrinter {
 public:
  GridPrinter(session::Session& session, const GridContent& content, QPrinter& printer)
      : session_(session), content_(content), printer_(printer) {}

  /// False where the run was given up or the printer refused.
  bool Run() {
    MeasureColumns(kFontPoints[0]);
    if (Sum(&Width::natural) > PageWidth() && printer_.pageLayout().orientation() == QPageLayout::Portrait) {
      printer_.setPageOrientation(QPageLayout::Landscape);
    }
    ChooseFont();
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

  int Sum(int Width::*measure) const {
    int sum = 0;
    for (const Width& width : columns_) sum += width.*measure;
    return sum;
  }

  /// The largest font with which nothing is wrapped, else the largest with which words stay whole.
  void ChooseFont() {
    for (std::size_t i = 0; i < kPlainFonts; ++i) {
      MeasureColumns(kFontPoints[i]);
      if (Sum(&Width::natural) <= PageWidth()) return;
    }
    for (const double points : kFontPoints) {
      MeasureColumns(points);
      if (Sum(&Width::narrow) <= PageWidth()) return;
    }
  }

  static int LongestWord(const QFontMetrics& metrics, const QString& text) {
    int longest = 0;
    for (const QString& word : text.split(' ')) {
      longest = std::max(longest, metrics.horizontalAdvance(word.left(kLongWord)));
    }
    return longest;
  }

  void MeasureColumns(double points) {
    font_.setPointSizeF(points);
    bold_ = font_;
    bold_.setBold(true);
    const QFontMetrics metrics(font_, &printer_), heading(bold_, &printer_);
    line_ = metrics.height();
    pad_ = Points(points / 3);
    columns_.clear();
    const int rows = content_.model->DataRows(), step = std::max(1, rows / kMeasuredRows);
    const int around = 2 * pad_ + Slack();
    for (std::size_t i = 0; i < content_.columns.size(); ++i) {
      const bool text_column = ColumnAt(i).format == Format::kText;
      int widest = 0, longest_word = LongestWord(heading, ColumnAt(i).caption);
      for (int row = 0; row < rows; row += step) {
        const QString text = TextOf(row, i).left(400);  // anything this long is wider than a page
        const int width = metrics.horizontalAdvance(text);
        if (width > longest_word) {
          longest_word = std::max(longest_word, text_column ? LongestWord(metrics, text) : width);
        }
        widest = std::max(widest, width);
      }
      Width width;
      width.natural = std::max(widest, heading.horizontalAdvance(ColumnAt(i).caption)) + around;
      const int readable = text_column ? metrics.averageCharWidth() * kNarrowText : 0;
      width.least = longest_word + around;
      width.narrow = std::max(longest_word, std::min(widest, readable)) + around;
      columns_.push_back(width);
    }
  }

  /// What is left of the page goes to the widest text, or to the columns that had to give way.
  void FitColumns() {
    widths_.clear();
    const int page = PageWidth(), wanted = Sum(&Width::natural);
    if (wanted <= page) {
      std::size_t filler = columns_.size();
      for (std::size_t i = 0; i < columns_.size(); ++i) {
        widths_.push_back(columns_[i].natural);
        if (ColumnAt(i).format != Format::kText) continue;
        if (filler == columns_.size() || columns_[i].natural > columns_[filler].natural) filler = i;
      }
      if (filler < columns_.size()) widths_[filler] += page - wanted;
      return;
    }
    const bool roomy = Sum(&Width::narrow) <= page;
    const auto from = roomy ? &Width::narrow : &Width::least, to = roomy ? &Width::natural : &Width::narrow;
    const std::int64_t smaller = Sum(from), larger = Sum(to);
    for (const Width& width : columns_) {
      const std::int64_t share =
          smaller >= page ? width.*from * page / smaller
                          : width.*from + (width.*to - width.*from) * (page - smaller) / (larger - smaller);
      widths_.push_back(static_cast<int>(share));
    }
  }

  /// Words are broken only where one is wider than its cell.
  static int WrapIn(const QFontMetrics& metrics, const QString& text, int room) {
    for (const QString& word : text.split(' ')) {
      if (metrics.horizontalAdvance(word) > room) return Qt::TextWrapAnywhere;
    }
    return Qt::TextWordWrap;
  }
  static int WrappedHeight(const QFontMetrics& metrics, const QString& text, int room) {
    return metrics.boundingRect(QRect(0, 0, room, 1 << 24), WrapIn(metrics, text, room), text).height();
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
      const int height = WrappedHeight(metrics, text, room);
      lines = std::max(lines, std::min(LinesOf(metrics, height), kMostLines));
    }
    return lines * line_ + pad_;
  }

  int HeadHeight() const {
    const QFontMetrics heading(bold_, &printer_);
    int lines = 1;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      const int height = WrappedHeight(heading, ColumnAt(i).caption, widths_[i] - 2 * pad_);
      lines = std::max(lines, LinesOf(heading, height));
    }
    return lines * line_ + pad_;
  }

  int TitleHeight() const { return 2 * line_ + Points(6); }
  int FooterHeight() const { return line_ + Points(6); }

  bool BreakPages() {
    const QFontMetrics metrics(font_, &printer_);
    const int rows = content_.model->DataRows();
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
                  const std::function<QString(std::size_t)>& text_of) const {
    const QFontMetrics metrics = painter.fontMetrics();
    int left = 0;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      const QRect cell(left + pad_, top + pad_ / 2, widths_[i] - 2 * pad_, height - pad_ / 2);
      const QString text = text_of(i);
      const int side = RightAligned(ColumnAt(i).format) ? Qt::AlignRight : Qt::AlignLeft;
      const int wrap = metrics.horizontalAdvance(text) + Slack() <= cell.width()
                           ? int{Qt::TextSingleLine}
                           : WrapIn(metrics, text, cell.width());
      painter.drawText(cell, side | int{Qt::AlignTop} | wrap, text);
      left += widths_[i];
    }
  }

  void PaintPage(QPainter& painter, std::size_t page) const {
    const int width = std::min(std::accumulate(widths_.begin(), widths_.end(), 0), PageWidth());
    const int first = page_starts_[page];
    const int end = page + 1 < page_starts_.size() ? page_starts_[page + 1] : content_.model->DataRows();
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
  std::vector<Width> columns_;
  std::vector<int> widths_, heights_;
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
