#pragma once

#include <string>
#include <vector>

#include "chapter.h"

namespace manual {

// The whole manual as one file that needs only its pictures: contents at the left (before the text on paper
// and on narrow windows). Well-formed as XML too.
std::string ManualPage(const std::vector<Chapter>& chapters, const std::string& version);

// A page that leads on to a section of the manual. Systems drop the anchor when they hand a file's address to
// the browser, but not when the browser itself follows it.
std::string ScreenPage(const std::string& id);

// One chapter as a page of its own, without contents.
std::string SinglePage(const Chapter& chapter);

}  // namespace manual
