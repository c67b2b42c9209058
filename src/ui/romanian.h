#pragma once

#include <QTranslator>

namespace ui {

/// Romanian for Qt's own buttons, context menus and dialogs, without diacritics as all texts on screen. Qt
/// brings no Romanian catalogue.
class RomanianTexts : public QTranslator {
 public:
  using QTranslator::QTranslator;
  QString translate(const char* context, const char* text, const char* disambiguation, int n) const override;
  bool isEmpty() const override { return false; }
};

}  // namespace ui
