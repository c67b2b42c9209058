#include "reports/screens/page_view.h"

#include <QElapsedTimer>
#include <QPaintEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include "reports/screens/page_painter.h"
#include "ui/text.h"

namespace reports {
namespace {

constexpr double kGap = 16;        // pixels around a page
constexpr qint64 kSlice = 12;      // milliseconds of breaking pages between two looks at the user's input
constexpr std::size_t kKept = 12;  // contents of pages

/// The texts of a page in which a find's text begins, wrapped texts being read as wholes.
std::vector<std::size_t> PlacesOf(const QString& text, const PageContent& content) {
  using Joint = PageContent::Text::Joint;
  std::vector<std::size_t> places;
  for (std::size_t first = 0; first < content.texts.size();) {
    QString whole;
    std::vector<qsizetype> begins;
    std::size_t t = first;
    do {
      const PageContent::Text& each = content.texts[t];
      if (each.joint == Joint::kBlank) whole += ' ';
      begins.push_back(whole.size());
      whole += ui::Q(each.text);
    } while (++t < content.texts.size() && content.texts[t].joint != Joint::kNone);
    for (qsizetype at = whole.indexOf(text, 0, Qt::CaseInsensitive); at >= 0;
         at = whole.indexOf(text, at + 1, Qt::CaseInsensitive)) {
      const auto line = std::upper_bound(begins.begin(), begins.end(), at) - begins.begin() - 1;
      const std::size_t place = first + static_cast<std::size_t>(line);
      if (places.empty() || places.back() != place) places.push_back(place);
    }
    first = t;
  }
  return places;
}

}  // namespace

PageView::PageView(QWidget* parent) : QAbstractScrollArea(parent) {
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setBackgroundRole(QPalette::Dark);
  viewport()->setAutoFillBackground(true);
  // A bar that comes and goes would change the width that pages are fitted to.
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  further_.setInterval(0);
  connect(&further_, &QTimer::timeout, this, [this] {
    QElapsedTimer since;
    since.start();
    while (!layout_->complete() && since.elapsed() < kSlice) layout_->BreakNextPage();
    UpdateBars();
    if (!layout_->complete()) return;
    further_.stop();
    contents_.clear();  // the feet now know the number of pages
    viewport()->update();
  });
}

void PageView::SetLayout(Layout* layout) {
  layout_ = layout;
  contents_.clear();
  found_page_ = -1;
  Rescale();
  verticalScrollBar()->setValue(0);
  if (!layout_->complete()) further_.start();
  viewport()->update();
}

double PageView::ScaleOf(double percent) const { return percent / 100 * logicalDpiY() / 72.0; }

double PageView::page_step() const { return layout_->page().height * scale_ + kGap; }

void PageView::SetZoom(Zoom zoom, double percent) {
  zoom_ = zoom;
  fixed_ = percent;
  Rescale();
}

void PageView::Rescale() {
  if (layout_ == nullptr) return;
  const double place = verticalScrollBar()->value() / page_step();
  const QSizeF room = viewport()->size() - QSizeF(2 * kGap, 2 * kGap);
  const double by_width = room.width() / layout_->page().width;
  const double by_height = room.height() / layout_->page().height;
  scale_ = ScaleOf(fixed_);
  if (zoom_ == Zoom::kWidth) scale_ = by_width;
  if (zoom_ == Zoom::kPage) scale_ = std::min(by_width, by_height);
  scale_ = std::clamp(scale_, ScaleOf(10), ScaleOf(800));
  UpdateBars();
  verticalScrollBar()->setValue(static_cast<int>(place * page_step()));
  viewport()->update();
}

void PageView::UpdateBars() {
  const QSize view = viewport()->size();
  const double height = layout_->page_count() * page_step() + kGap;
  const double width = layout_->page().width * scale_ + 2 * kGap;
  verticalScrollBar()->setRange(0, std::max(0, static_cast<int>(height) - view.height()));
  verticalScrollBar()->setPageStep(view.height());
  verticalScrollBar()->setSingleStep(40);
  horizontalScrollBar()->setRange(0, std::max(0, static_cast<int>(width - view.width())));
  horizontalScrollBar()->setPageStep(view.width());
  horizontalScrollBar()->setSingleStep(40);
  Q_EMIT PagesChanged();
}

int PageView::current_page() const {
  if (layout_ == nullptr) return 0;
  const double middle = verticalScrollBar()->value() + std::min(viewport()->height() / 2.0, page_step() / 2);
  return std::clamp(static_cast<int>(middle / page_step()), 0, layout_->page_count() - 1);
}

void PageView::GoTo(int page) {
  if (page >= layout_->page_count()) {
    while (!layout_->complete() && page >= layout_->page_count()) layout_->BreakNextPage();
    UpdateBars();
  }
  page = std::clamp(page, 0, layout_->page_count() - 1);
  verticalScrollBar()->setValue(static_cast<int>(std::ceil(page * page_step())));
}

void PageView::GoToEnd() {
  if (!layout_->complete() && finish_ && !finish_()) return;
  layout_->BreakAll();
  UpdateBars();
  GoTo(layout_->page_count() - 1);
}

void PageView::ReadOn(int direction) {
  QScrollBar* bar = verticalScrollBar();
  const int page = current_page(), room = viewport()->height();
  const double top = page * page_step(), bottom = top + page_step() + kGap - room;
  constexpr double kNear = 4;  // pixels that are not worth a step of their own
  const int step = room - 40;  // a line or two stay in view
  if (direction > 0) {
    if (bar->value() + kNear < bottom) {
      bar->setValue(static_cast<int>(std::min<double>(bar->value() + step, bottom)));
    } else if (page + 1 < layout_->page_count() || !layout_->complete()) {
      GoTo(page + 1);
    }
    return;
  }
  if (bar->value() - kNear > top) {
    bar->setValue(static_cast<int>(std::max<double>(bar->value() - step, std::ceil(top))));
  } else if (page > 0) {
    bar->setValue(static_cast<int>(std::max(top - page_step(), top + kGap - room)));
  }
}

const PageContent& PageView::Content(int page) {
  const auto known = contents_.find(page);
  if (known != contents_.end()) return known->second;
  if (contents_.size() >= kKept) contents_.clear();
  return contents_[page] = layout_->Page(page);
}

void PageView::PaintOne(QPainter& painter, int page, const QRectF& paper) {
  painter.fillRect(paper.translated(2, 2), QColor(0, 0, 0, 60));
  painter.fillRect(paper, Qt::white);
  painter.save();
  painter.setClipRect(paper);
  painter.translate(paper.topLeft());
  painter.scale(scale_, scale_);
  const PageContent& content = Content(page);
  PaintPage(painter, content);
  if (page == found_page_ && found_text_ < content.texts.size()) {
    const PageContent::Text& text = content.texts[found_text_];
    painter.fillRect(QRectF(text.x - 1, text.baseline - text.size, text.width + 2, text.size * 1.3),
                     QColor(255, 200, 0, 110));
  }
  painter.restore();
}

void PageView::paintEvent(QPaintEvent* event) {
  if (layout_ == nullptr) return;
  QPainter painter(viewport());
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  const double width = layout_->page().width * scale_, height = layout_->page().height * scale_;
  const double left = width + 2 * kGap <= viewport()->width() ? (viewport()->width() - width) / 2
                                                              : kGap - horizontalScrollBar()->value();
  const double top = verticalScrollBar()->value();
  for (int page = std::max(0, static_cast<int>((top - kGap) / page_step())); page < layout_->page_count();
       ++page) {
    const QRectF paper(left, kGap + page * page_step() - top, width, height);
    if (paper.top() > viewport()->height()) break;
    if (paper.intersects(event->rect())) PaintOne(painter, page, paper);
  }
}

void PageView::resizeEvent(QResizeEvent*) { Rescale(); }

void PageView::scrollContentsBy(int, int) {
  viewport()->update();
  Q_EMIT PagesChanged();
}

void PageView::keyPressEvent(QKeyEvent* key) {
  switch (key->key()) {
    case Qt::Key_PageDown:
    case Qt::Key_PageUp: {
      const int direction = key->key() == Qt::Key_PageDown ? 1 : -1;
      if (key->modifiers().testFlag(Qt::ControlModifier)) {
        GoTo(current_page() + direction);
      } else {
        ReadOn(direction);
      }
      break;
    }
    case Qt::Key_Home:
      GoTo(0);
      break;
    case Qt::Key_End:
      GoToEnd();
      break;
    case Qt::Key_Space:
      ReadOn(key->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
      break;
    default:
      QAbstractScrollArea::keyPressEvent(key);
      return;
  }
  key->accept();
}

void PageView::wheelEvent(QWheelEvent* event) {
  if (event->modifiers().testFlag(Qt::ControlModifier)) {
    if (event->angleDelta().y() != 0) Q_EMIT ZoomStep(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
    return;
  }
  QAbstractScrollArea::wheelEvent(event);
}

void PageView::ForgetFound() {
  found_page_ = -1;
  viewport()->update();
}

PageView::Found PageView::Find(const QString& text, int direction) {
  if (text.isEmpty() || layout_ == nullptr) return Found::kNot;
  if (!layout_->complete() && finish_ && !finish_()) return Found::kNot;
  layout_->BreakAll();
  UpdateBars();
  const int pages = layout_->page_count();
  const bool again = text == found_ && found_page_ >= 0;
  const int start = again ? found_page_ : current_page();
  for (int i = 0; i <= pages; ++i) {
    const int page = ((start + direction * i) % pages + pages) % pages;
    const PageContent content = layout_->Page(page);
    std::vector<std::size_t> places = PlacesOf(text, content);
    if (again && (i == 0 || i == pages)) {
      // Behind the last place first, at the very end those before it.
      std::erase_if(places, [&](std::size_t at) {
        const bool ahead = direction > 0 ? at > found_text_ : at < found_text_;
        return ahead != (i == 0);
      });
    }
    if (places.empty()) continue;
    const bool round = direction > 0 ? page < start || i == pages : page > start || i == pages;
    found_ = text;
    found_page_ = page;
    found_text_ = direction > 0 ? places.front() : places.back();
    const PageContent::Text& each = content.texts[found_text_];
    MakeVisible(QRectF(kGap + each.x * scale_,
                       kGap + page * page_step() + (each.baseline - each.size) * scale_, each.width * scale_,
                       each.size * scale_ * 1.3));
    viewport()->update();
    return round ? Found::kFromOtherEnd : Found::kFound;
  }
  ForgetFound();
  return Found::kNot;
}

void PageView::MakeVisible(const QRectF& place) {
  const auto bring = [](QScrollBar* bar, double from, double to, int room) {
    if (from < bar->value() || to > bar->value() + room) {
      bar->setValue(static_cast<int>((from + to - room) / 2));
    }
  };
  bring(verticalScrollBar(), place.top(), place.bottom(), viewport()->height());
  bring(horizontalScrollBar(), place.left(), place.right(), viewport()->width());
}

}  // namespace reports
