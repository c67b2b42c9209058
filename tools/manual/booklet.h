#pragma once

#include <QString>
#include <string>
#include <vector>

#include "chapter.h"

namespace manual {

struct Booklet {
  std::vector<Chapter> chapters;
  std::string version;
  QString icon;  // SVG on the title page
};

// Writes the manual as an A4 PDF: title page, contents with page numbers, chapters on pages of their own,
// links and bookmarks.
// Needs a QGuiApplication. False when the file cannot be written.
bool WritePdf(const Booklet& booklet, const QString& file);

}  // namespace manual
