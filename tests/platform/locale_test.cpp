#include "platform/locale.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace platform {
namespace {

/// The first of the locales with a decimal comma that this machine has.
const char* CommaLocale() {
  for (const char* name : {"ro_RO.UTF-8", "ro_RO.utf8", "de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"}) {
    setenv("LC_ALL", name, 1);
    if (DecimalSeparator() == ",") return name;
  }
  return nullptr;
}

TEST(LocaleTest, TheUsersMarkIsReadAndTheProcessKeepsItsPoint) {
  const char* before = std::getenv("LC_ALL");
  const std::string restored = before == nullptr ? "" : before;
  setenv("LC_ALL", "C", 1);
  EXPECT_EQ(DecimalSeparator(), ".");
  setenv("LC_ALL", "xx_XX.UTF-8", 1);
  EXPECT_EQ(DecimalSeparator(), ".") << "a locale that is not there";
  const bool comma = CommaLocale() != nullptr;
  EXPECT_EQ(std::strtod("4.9751", nullptr), 4.9751);
  setenv("LC_ALL", restored.c_str(), 1);
  if (!comma) GTEST_SKIP() << "no locale with a decimal comma on this machine";
}

}  // namespace
}  // namespace platform
