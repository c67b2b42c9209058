#pragma once

#include <string>
#include <vector>

#include "chapter.h"

namespace manual {

// The whole manual as one file that needs no other: contents at the left (before the text on paper and on
// narrow windows). Well-formed as XML too.
std::string ManualPage(const std::vector<Chapter>& chapters, const std::string& version);

// One chapter as a page of its own, without contents.
std::string SinglePage(const Chapter& chapter);

}  // namespace manual
