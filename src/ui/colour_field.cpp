#include "ui/colour_field.h"

#include <QColorDialog>

#include "store/value.h"
#include "ui/icons.h"

namespace ui {

ColourField::ColourField(QWidget* parent)
    : QWidget(parent), shown_(new QLineEdit(this)), button_(new QPushButton(this)) {
  shown_->setReadOnly(true);
  shown_->setFocusPolicy(Qt::NoFocus);
  shown_->setAlignment(Qt::AlignCenter);
  shown_->setFixedWidth(shown_->fontMetrics().averageCharWidth() * 16);
  button_->setText(QStringLiteral("Alege..."));
  button_->setIcon(Icon(QStringLiteral("culoare")));
  button_->setAutoDefault(false);
  setFocusProxy(button_);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  row->addWidget(shown_);
  row->addWidget(button_);
  connect(button_, &QPushButton::clicked, this, &ColourField::Pick);
  SetColour(0);
}

void ColourField::SetText(std::string_view text) {
  // System colours are stored as negative numbers.
  const double number = store::ParseNumber(text).value_or(0);
  const bool fits = number >= -2147483648.0 && number <= 4294967295.0;
  SetColour(fits ? static_cast<std::uint32_t>(static_cast<std::int64_t>(number)) : 0);
}

void ColourField::SetColour(std::uint32_t colour) {
  colour_ = colour;
  const QColor back = FromBgr(colour);
  QPalette palette = shown_->palette();
  palette.setColor(QPalette::Base, back);
  palette.setColor(QPalette::Text, ReadableOn(back));
  shown_->setPalette(palette);
  shown_->setText(back.name().toUpper());
  Q_EMIT Changed();
}

void ColourField::Pick() {
  const QColor chosen =
      QColorDialog::getColor(FromBgr(colour_), window(), QStringLiteral("Alegeti culoarea"));
  if (chosen.isValid()) SetColour(ToBgr(chosen));
}

}  // namespace ui
