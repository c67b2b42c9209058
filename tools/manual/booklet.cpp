#include "booklet.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <algorithm>
#include <cmath>
#include <map>

#include "pdf_links.h"

namespace manual {
namespace {

constexpr double kMarginMm = 22;
constexpr double kRunningMm = 12;      // of the running head and the page number from the page's edge
constexpr double kLastHeading = 0.88;  // part of the page below which a heading needs two paragraphs with it
constexpr double kPictureScale =
    0.62;                            // of a pixel at 96 per inch; smaller where the page is not wide enough
constexpr qsizetype kLongName = 36;  // letters in the first cell of a row
constexpr int kMostRounds = 5;
constexpr char kFont[] = "DejaVu Sans";
const QColor kAccent(0x1f, 0x63, 0x91);
const QColor kFaint(0x5b, 0x6b, 0x78);
const QColor kFrame(0xb4, 0xc0, 0xc9);

constexpr char kStyle[] = R"(
h1 { font-size: 19pt; color: #1f6391; page-break-before: always; margin-top: 0px; margin-bottom: 14px; }
h2 { font-size: 13pt; margin-top: 20px; margin-bottom: 9px; }
h3 { font-size: 10.5pt; margin-top: 14px; margin-bottom: 4px; }
p { margin-top: 0px; margin-bottom: 7px; line-height: 128%; }
li { margin-bottom: 3px; line-height: 128%; }
a { color: #1f6391; text-decoration: none; }
code { font-family: "DejaVu Sans Mono"; font-size: 8.5pt; }
pre { font-family: "DejaVu Sans Mono"; font-size: 8.5pt; background-color: #f3f7fa; }
table { margin-top: 4px; margin-bottom: 12px; }
p.picture { margin-top: 6px; margin-bottom: 3px; line-height: 100%; }
p.caption { margin-bottom: 12px; font-size: 8pt; color: #5b6b78; }
blockquote { margin-left: 14px; margin-right: 14px; color: #33454f; }
)";

// A spacing too small to be seen keeps letters from being joined: what is searched for is found ("firma").
QFont PlainFont(double points) {
  QFont font(kFont);
  font.setPointSizeF(points);
  font.setLetterSpacing(QFont::AbsoluteSpacing, 0.02);
  return font;
}

// Lays text out over pages of one size and paints them one by one.
class Flow {
 public:
  Flow(QPdfWriter* device, const QSizeF& page) : device_(device), page_(page) {}

  void AddPicture(const QString& name, const QImage& picture) {
    text_.addResource(QTextDocument::ImageResource, QUrl(name), picture);
  }

  void SetHtml(const QString& html) {
    text_.documentLayout()->setPaintDevice(device_);
    text_.setDefaultFont(PlainFont(9));
    text_.setDocumentMargin(0);
    text_.setDefaultStyleSheet(kStyle);
    text_.setHtml(html);
    text_.setPageSize(page_);
  }

  // A heading never stands at the foot of a page with little or no text below it, nor words that announce
  // what follows, nor a picture without its caption.
  void KeepTogether() {
    for (QTextBlock block = text_.begin(); block.isValid(); block = block.next()) {
      QTextBlock last = block;
      if (block.blockFormat().headingLevel() >= 2) {
        const double page = Top(block) / page_.height();
        last = block.next();
        if (page - std::floor(page) > kLastHeading && last.next().blockFormat().headingLevel() == 0) {
          last = last.next();
        }
      }
      while (IsPicture(last) || last.text().endsWith(':')) {
        last = last.next();
      }
      if (!last.isValid() || PageOf(last) == PageOf(block)) {
        continue;
      }
      QTextBlockFormat format = block.blockFormat();
      format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
      QTextCursor(block).setBlockFormat(format);
      text_.setPageSize(page_);  // lays out anew; laying out only what follows leaves gaps
    }
  }

  struct Place {
    int page;    // from 0
    double top;  // of the page's text
  };
  // Of every heading in reading order.
  std::vector<Place> HeadingPlaces() const {
    std::vector<Place> places;
    for (QTextBlock block = text_.begin(); block.isValid(); block = block.next()) {
      if (block.blockFormat().headingLevel() > 0) {
        const int page = PageOf(block);
        places.push_back({page, Top(block) - page * page_.height()});
      }
    }
    return places;
  }

  int PageCount() const { return text_.pageCount(); }

  void Paint(QPainter* painter, const QPointF& at, int page) const {
    painter->save();
    painter->translate(at.x(), at.y() - page * page_.height());
    QAbstractTextDocumentLayout::PaintContext context;
    // Without the last hair's breadth, or the frame of a picture on top of the next page shows here too.
    context.clip = QRectF(0, page * page_.height(), page_.width(), page_.height() - 4);
    context.palette.setColor(QPalette::Text, Qt::black);
    painter->setClipRect(context.clip);
    text_.documentLayout()->draw(painter, context);
    painter->restore();
  }

 private:
  static bool IsPicture(const QTextBlock& block) {
    return !block.begin().atEnd() && block.begin().fragment().charFormat().isImageFormat();
  }

  double Top(const QTextBlock& block) const {
    const double first_line = block.layout()->lineCount() > 0 ? block.layout()->lineAt(0).y() : 0;
    return text_.documentLayout()->blockBoundingRect(block).top() + first_line + 1;
  }

  int PageOf(const QTextBlock& block) const { return static_cast<int>(Top(block) / page_.height()); }

  QPdfWriter* device_;
  QSizeF page_;
  QTextDocument text_;
};

// On paper a link cannot be followed: the page number stands behind the words too.
QString WithPages(const QString& html, const std::map<QString, int>& page_of) {
  static const QRegularExpression link(R"re(<a href="(?:Manual\.Html)?#([^"]*)">(.*?)</a>)re");
  QString out;
  qsizetype done = 0;
  for (auto it = link.globalMatch(html); it.hasNext();) {
    const QRegularExpressionMatch match = it.next();
    const auto page = page_of.find(match.captured(1));
    out += html.mid(done, match.capturedStart() - done);
    out += "<a href=\"#" + match.captured(1) + "\">" + match.captured(2) +
           "</a>&#160;<span style=\"color: #5b6b78;\">[" +
           QString::number(page == page_of.end() ? 0 : page->second) + "]</span>";
    done = match.capturedEnd();
  }
  return out + html.mid(done);
}

// Pictures in the size that they have on paper. `room` is the width of the text in inches.
QString WithPictureSizes(const QString& html, double room) {
  static const QRegularExpression figure(
      R"re(<figure><a [^>]*><img src="([^"]*)" alt="[^"]*" width="(\d+)" height="(\d+)" /></a><figcaption>(.*?)</figcaption></figure>)re");
  QString out;
  qsizetype done = 0;
  for (auto it = figure.globalMatch(html); it.hasNext();) {
    const QRegularExpressionMatch match = it.next();
    const double width = match.captured(2).toDouble();
    const double scale = std::min(kPictureScale, std::floor(room * 96) / width);
    out += html.mid(done, match.capturedStart() - done);
    out += QStringLiteral(
               "<p class=\"picture\"><img src=\"%1\" width=\"%2\" height=\"%3\" /></p><p "
               "class=\"caption\">%4</p>")
               .arg(match.captured(1))
               .arg(std::lround(width * scale))
               .arg(std::lround(match.captured(3).toDouble() * scale))
               .arg(match.captured(4));
    done = match.capturedEnd();
  }
  return out + html.mid(done);
}

// In a table of two columns the first names what the second explains: long names do not take half of the
// page.
QString WithNarrowNames(const QString& html) {
  static const QRegularExpression table("<table>.*?</table>", QRegularExpression::DotMatchesEverythingOption);
  static const QRegularExpression row("<tr>\\s*<t[hd]>([^\n]*)</t[hd]>\\s*<t[hd]>[^\n]*</t[hd]>\\s*</tr>");
  QString out;
  qsizetype done = 0;
  for (auto it = table.globalMatch(html); it.hasNext();) {
    const QRegularExpressionMatch match = it.next();
    QString text = match.captured();
    qsizetype longest = 0;
    for (auto rows = row.globalMatch(text); rows.hasNext();) {
      longest = std::max(longest, rows.next().capturedLength(1));
    }
    if (longest > kLongName) {
      text.replace(text.indexOf("<th>"), 4,
                   "<th width=\"33%\" align=\"left\" style=\"background-color: #e6eff5;\">");
    }
    out += html.mid(done, match.capturedStart() - done) + text;
    done = match.capturedEnd();
  }
  return out + html.mid(done);
}

// A thin frame parts the picture's light window from the paper.
QImage Framed(const std::filesystem::path& file) {
  QImage picture(QString::fromStdU16String(file.u16string()));
  picture = picture.convertToFormat(QImage::Format_RGB32);
  QPainter painter(&picture);
  painter.setPen(kFrame);
  painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
  return picture;
}

// `pages` of every heading in reading order, in the booklet's own count; may be empty.
QString Body(const std::vector<Chapter>& chapters, const std::vector<int>& pages, double room) {
  QString html;
  std::map<QString, int> page_of;
  std::size_t index = 0;
  for (const Chapter& chapter : chapters) {
    html += QString::fromStdString(chapter.html);
    for (const Heading& heading : chapter.headings) {
      page_of[QString::fromStdString(heading.id)] = index < pages.size() ? pages[index] : 0;
      ++index;
    }
  }
  html = WithPictureSizes(WithPages(html, page_of), room);
  // The first page is new anyway.
  html.replace(html.indexOf("<h1"), 3, "<h1 style=\"page-break-before: auto;\"");
  html = WithNarrowNames(html);
  // The rich-text engine takes table lines from attributes.
  html.replace("<table>", "<table width=\"100%\" border=\"0\" cellspacing=\"0\" cellpadding=\"4\">");
  html.replace("<th>", "<th align=\"left\" style=\"background-color: #e6eff5;\">");
  html.replace("<td>", "<td style=\"border-bottom: 1px solid #d3dde5;\">");
  return html;
}

QString ContentsHtml(const std::vector<Chapter>& chapters, const std::vector<int>& pages) {
  QString html =
      "<p style=\"font-size: 19pt; font-weight: bold; color: #1f6391; margin-bottom: 14px;\">Cuprins</p>"
      "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"1\">";
  std::size_t index = 0;
  for (const Chapter& chapter : chapters) {
    for (const Heading& heading : chapter.headings) {
      const int page = index < pages.size() ? pages[index] : 0;
      ++index;
      if (heading.level > 2) {
        continue;
      }
      const QString title = QString::fromStdString("<a href=\"#" + heading.id + "\">" + heading.number +
                                                   "&#160;&#160;" + heading.html + "</a>");
      html += heading.level == 1
                  ? "<tr><td style=\"padding-top: 7px;\"><b>" + title +
                        "</b></td><td align=\"right\" style=\"padding-top: 7px;\"><b>"
                  : "<tr><td style=\"padding-left: 18px;\">" + title + "</td><td align=\"right\">";
      html += QString::number(page) + (heading.level == 1 ? "</b></td></tr>" : "</td></tr>");
    }
  }
  return html +
         "</table><p style=\"color: #5b6b78; margin-top: 16px;\">În text, numerele dintre paranteze drepte "
         "sunt pagini.</p>";
}

class Printer {
 public:
  Printer(const Booklet& booklet, QPdfWriter* device)
      : booklet_(booklet), device_(device), painter_(device) {}

  // False when the device cannot be written.
  bool Print() {
    if (!painter_.isActive()) {
      return false;
    }
    const double margin = Mm(kMarginMm);
    const QSizeF sheet(device_->width(), device_->height());
    const QSizeF room(sheet.width() - 2 * margin, sheet.height() - 2 * margin);
    Flow body(device_, room);
    Flow contents(device_, room);
    for (const Chapter& chapter : booklet_.chapters) {
      for (const Picture& picture : chapter.pictures) {
        body.AddPicture(QString::fromStdString(PictureCopy(picture)), Framed(picture.file));
      }
    }
    // Text on screens would be blurred by what is right for photographs.
    painter_.setRenderHint(QPainter::LosslessImageRendering);
    // The page numbers stand in the text itself and may move it, so it is laid out until they hold still.
    std::vector<int> pages;
    for (int round = 0; round < kMostRounds; ++round) {
      body.SetHtml(Body(booklet_.chapters, pages, room.width() / device_->resolution()));
      body.KeepTogether();
      contents.SetHtml(ContentsHtml(booklet_.chapters, pages));
      std::vector<int> found;
      places_.clear();
      for (const Flow::Place& place : body.HeadingPlaces()) {
        const int page = 1 + contents.PageCount() + place.page;
        places_.push_back({page, margin + place.top});
        found.push_back(page + 1);
      }
      if (found == pages) {
        break;
      }
      pages = std::move(found);
    }

    TitlePage(sheet);
    int number = 1;
    for (int page = 0; page < contents.PageCount(); ++page) {
      NewPage(sheet, ++number, "Cuprins");
      contents.Paint(&painter_, {margin, margin}, page);
    }
    for (int page = 0; page < body.PageCount(); ++page) {
      ++number;
      NewPage(sheet, number, ChapterOn(number, pages));
      body.Paint(&painter_, {margin, margin}, page);
    }
    return painter_.end();
  }

  // Where the headings stand, once printed.
  std::vector<Bookmark> Bookmarks() const {
    std::vector<Bookmark> marks;
    for (const Chapter& chapter : booklet_.chapters) {
      for (const Heading& heading : chapter.headings) {
        const Flow::Place& place = places_[marks.size()];
        const QString title =
            QTextDocumentFragment::fromHtml(QString::fromStdString(heading.number + " " + heading.html))
                .toPlainText()
                .trimmed();
        marks.push_back({heading.id, title.toStdU16String(), heading.level, place.page,
                         place.top / device_->resolution() * 72});
      }
    }
    return marks;
  }

 private:
  double Mm(double mm) const { return mm / 25.4 * device_->resolution(); }

  void Write(const QRectF& where, int flags, double points, const QColor& color, const QString& text,
             bool bold = false) {
    QFont font = PlainFont(points);
    font.setBold(bold);
    painter_.setFont(font);
    painter_.setPen(color);
    painter_.drawText(where, flags, text);
  }

  void TitlePage(const QSizeF& sheet) {
    const double left = Mm(30);
    const double width = sheet.width() - 2 * left;
    QSvgRenderer icon(booklet_.icon);
    icon.render(&painter_, QRectF(left, Mm(60), Mm(24), Mm(24)));
    Write({left, Mm(96), width, Mm(22)}, Qt::AlignLeft | Qt::AlignVCenter, 40, kAccent, "Declarix", true);
    Write({left, Mm(118), width, Mm(12)}, Qt::AlignLeft | Qt::AlignVCenter, 20, Qt::black,
          "Manual de utilizare");
    Write({left, Mm(131), width, Mm(8)}, Qt::AlignLeft | Qt::AlignVCenter, 12, kFaint,
          "Declarații statistice INTRASTAT pentru firmele din România");
    painter_.fillRect(QRectF(left, Mm(146), Mm(40), Mm(0.8)), kAccent);
    Write({left, Mm(152), width, Mm(8)}, Qt::AlignLeft | Qt::AlignVCenter, 11, kFaint,
          "Versiunea " + QString::fromStdString(booklet_.version));
  }

  void NewPage(const QSizeF& sheet, int number, const QString& head) {
    device_->newPage();
    const double margin = Mm(kMarginMm);
    const QRectF line(margin, 0, sheet.width() - 2 * margin, Mm(6));
    Write(line.translated(0, Mm(kRunningMm) - Mm(3)), Qt::AlignLeft | Qt::AlignVCenter, 8, kFaint, head);
    Write(line.translated(0, sheet.height() - Mm(kRunningMm) - Mm(3)), Qt::AlignLeft | Qt::AlignVCenter, 8,
          kFaint, "Declarix · Manual de utilizare");
    Write(line.translated(0, sheet.height() - Mm(kRunningMm) - Mm(3)), Qt::AlignRight | Qt::AlignVCenter, 8,
          kFaint, QString::number(number));
  }

  QString ChapterOn(int number, const std::vector<int>& pages) const {
    QString found;
    std::size_t index = 0;
    for (const Chapter& chapter : booklet_.chapters) {
      for (const Heading& heading : chapter.headings) {
        if (heading.level == 1 && index < pages.size() && pages[index] <= number) {
          found = QString::fromStdString(heading.number + "  " + heading.html);
        }
        ++index;
      }
    }
    return found;
  }

  const Booklet& booklet_;
  QPdfWriter* device_;
  QPainter painter_;
  std::vector<Flow::Place> places_;  // of the headings, in pages of the booklet from 0
};

}  // namespace

bool WritePdf(const Booklet& booklet, const QString& file) {
  QBuffer written;
  written.open(QIODevice::WriteOnly);
  QPdfWriter device(&written);
  device.setTitle("Declarix – Manual de utilizare");
  device.setCreator("Declarix");
  device.setPageSize(QPageSize(QPageSize::A4));
  device.setPageMargins(QMarginsF(0, 0, 0, 0));
  device.setResolution(600);
  Printer printer(booklet, &device);
  if (!printer.Print()) {
    return false;
  }
  const std::string pdf = WithLinksInside(written.data().toStdString(), printer.Bookmarks());
  QFile out(file);
  return out.open(QIODevice::WriteOnly) &&
         out.write(pdf.data(), static_cast<qint64>(pdf.size())) == static_cast<qint64>(pdf.size());
}

}  // namespace manual
