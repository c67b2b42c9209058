#pragma once

#include <string>
#include <vector>

namespace manual {

// A place in the PDF that links lead to. Those of the first two levels are also shown as bookmarks.
struct Bookmark {
  std::string id;  // anchor
  std::u16string title;
  int level;   // 1 the chapter, 2 a section, …
  int page;    // from 0
  double top;  // points from the page's upper edge
};

// Makes jumps of the links that Qt's writer leaves as addresses ("#anchor"), and adds the bookmarks; both as
// an update appended to the document (ISO 32000-1, 7.5.6). Throws std::runtime_error where the document has
// not the form that the writer gives it or a link leads nowhere.
std::string WithLinksInside(std::string pdf, const std::vector<Bookmark>& bookmarks);

}  // namespace manual
