#include "app/screens/row_preview.h"

#include "ui/icons.h"

namespace app {
namespace {

constexpr std::array<const char*, 5> kSamples{"8471 30 00", "8471 41 00", "8471 49 00", "8471 50 00",
                                              "8471 60 60"};
constexpr std::size_t kSelected = 2;

}  // namespace

void RowPreview::Follow(ui::ColourField* even, ui::ColourField* odd, ui::ColourField* selected,
                        ui::ColourField* text) {
  fields_ = {even, odd, selected, text};
  for (ui::ColourField* field : fields_) {
    connect(field, &ui::ColourField::Changed, this, [this] { update(); });
  }
}

QSize RowPreview::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 30, RowHeight() * static_cast<int>(kSamples.size()) + 2};
}

void RowPreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect all = rect().adjusted(0, 0, -1, -1);
  for (std::size_t i = 0; i < kSamples.size(); ++i) {
    const QRect row(1, 1 + RowHeight() * static_cast<int>(i), all.width() - 1, RowHeight());
    // The first row of a list is an odd one.
    const QColor back = ui::FromBgr(fields_[i == kSelected ? 2 : 1 - i % 2]->colour());
    painter.fillRect(row, back);
    painter.setPen(i == kSelected ? ui::FromBgr(fields_[3]->colour()) : ui::ReadableOn(back));
    const QRect text = row.adjusted(8, 0, -8, 0);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, QString::fromLatin1(kSamples[i]));
    painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter, locale().toString(1250.5 * (i + 1.0), 'f', 2));
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(QRect(0, 0, all.width(), RowHeight() * static_cast<int>(kSamples.size()) + 1));
}

}  // namespace app
