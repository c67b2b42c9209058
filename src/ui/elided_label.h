#pragma once

#include <QLabel>

namespace ui {

/// A line of text that ends in "…" where it does not fit; the tooltip then has the whole.
class ElidedLabel : public QLabel {
  Q_OBJECT
 public:
  /// `characters` is the least width.
  ElidedLabel(int characters, QWidget* parent);
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  bool Fits() const;
  int characters_;
};

}  // namespace ui
