#include "store/layout/layout.h"

#include <gtest/gtest.h>

#include "support/test_host.h"

namespace store::layout {
namespace {

TEST(Csv, ReadsQuotesAndNamesLines) {
  const Csv csv = ParseCsv(
      "\xEF\xBB\xBF"
      "a,b\r\n1,\"x, \"\"y\"\"\nz\"\r\n\r\n2,\n",
      "f.csv");
  ASSERT_EQ(csv.rows.size(), 2u);
  EXPECT_EQ(csv.header[0], "a");
  EXPECT_EQ(csv.rows[0][1], "x, \"y\"\nz");
  EXPECT_EQ(csv.rows[1][1], "");
  EXPECT_EQ(csv.lines[1], 5);
  for (const char* wrong : {"", "a,b\n1\n", "a\n\"x\n", "a\n\"x\"y\n"}) {
    EXPECT_THROW(ParseCsv(wrong, "f.csv"), platform::FileError) << wrong;
  }
  try {
    ParseCsv("a,b\n1,2\n1,2,3\n", "C:\\f.csv");
    FAIL();
  } catch (const platform::FileError& error) {
    EXPECT_STREQ(error.what(), "Fisierul : C:\\f.csv, linia 3: 3 campuri in loc de 2");
  }
}

}  // namespace
}  // namespace store::layout
