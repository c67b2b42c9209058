#pragma once

#include <QLineEdit>
#include <QPushButton>
#include <cstdint>
#include <string>

namespace ui {

/// A field painted in the colour it holds, with the button that lets the user pick another one.
class ColourField : public QWidget {
  Q_OBJECT
 public:
  explicit ColourField(QWidget* parent = nullptr);

  /// A decimal text of 0x00BBGGRR, as the settings keep colours; what is no number counts as black.
  std::string text() const { return std::to_string(colour_); }
  void SetText(std::string_view text);
  std::uint32_t colour() const { return colour_; }
  void SetColour(std::uint32_t colour);
  QPushButton* button() const { return button_; }

 Q_SIGNALS:
  void Changed();

 private:
  void Pick();
  std::uint32_t colour_ = 0;
  QLineEdit* shown_;
  QPushButton* button_;
};

}  // namespace ui
