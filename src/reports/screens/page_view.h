#pragma once

#include <QAbstractScrollArea>
#include <QTimer>
#include <map>

#include "reports/layout.h"

namespace reports {

/// The pages of a layout below each other, drawn as they come into view. While the program is idle, the
/// layout's further pages are broken.
class PageView : public QAbstractScrollArea {
  Q_OBJECT
 public:
  enum class Zoom { kWidth, kPage, kFixed };

  explicit PageView(QWidget* parent);

  /// Does not own the layout; shows its first page.
  void SetLayout(Layout* layout);
  /// Breaks the pages that are still open where the end or all of them are asked for; false where the user
  /// stopped it.
  void SetFinisher(std::function<bool()> finish) { finish_ = std::move(finish); }
  void SetZoom(Zoom zoom, double percent = 100);
  double percent() const { return scale_ / ScaleOf(100) * 100; }

  int current_page() const;  ///< from 0: the one that takes most of the view
  void GoTo(int page);
  void GoToEnd();
  /// On by what the view shows, but not past a page's end while a part of it has not been seen (1), or back
  /// (-1).
  void ReadOn(int direction);
  /// The next (1) or previous (-1) text from the last find on that contains `text`, without regard to case,
  /// be it wrapped or not; goes round at the end.
  enum class Found { kNot, kFound, kFromOtherEnd };
  Found Find(const QString& text, int direction = 1);
  void ForgetFound();  ///< takes its mark away

 Q_SIGNALS:
  void PagesChanged();           ///< the current page or their number
  void ZoomStep(int direction);  ///< Ctrl and the wheel

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void keyPressEvent(QKeyEvent* key) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  double ScaleOf(double percent) const;
  double page_step() const;  ///< from page to page, in pixels
  void Rescale();
  void UpdateBars();
  const PageContent& Content(int page);
  void PaintOne(QPainter& painter, int page, const QRectF& paper);
  void MakeVisible(const QRectF& place);

  Layout* layout_ = nullptr;
  QTimer further_;
  Zoom zoom_ = Zoom::kWidth;
  double fixed_ = 100, scale_ = 1;       ///< pixels to a point
  std::map<int, PageContent> contents_;  ///< of pages shown lately
  std::function<bool()> finish_;
  QString found_;
  int found_page_ = -1;
  std::size_t found_text_ = 0;
};

}  // namespace reports
