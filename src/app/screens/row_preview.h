#pragma once

#include <array>

#include "ui/colour_field.h"

namespace app {

/// A few sample rows in the colours that are being chosen.
class RowPreview : public QWidget {
  Q_OBJECT
 public:
  explicit RowPreview(QWidget* parent) : QWidget(parent) {}

  /// Redraws whenever one of the fields changes.
  void Follow(ui::ColourField* even, ui::ColourField* odd, ui::ColourField* selected, ui::ColourField* text);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int RowHeight() const { return fontMetrics().height() + 8; }
  std::array<ui::ColourField*, 4> fields_{};
};

}  // namespace app
