#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace ui {

/// The system's texts are UTF-8; Qt's are its own. These two cross over.
inline QString Q(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string Utf8(const QString& text) { return text.toStdString(); }

}  // namespace ui
