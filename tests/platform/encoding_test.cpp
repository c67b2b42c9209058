#include "platform/encoding.h"

#include <gtest/gtest.h>

#include "platform/clock.h"

namespace platform {
namespace {

using namespace std::string_literals;

TEST(EncodingTest, RomanianLettersLoseAndRegainTheirComma) {
  EXPECT_EQ(ToCodePage("Ștefan Țăran ăâî", 1250), "\xAAtefan \xDE\xE3ran \xE3\xE2\xEE");
  EXPECT_EQ(ToCodePage("şţ", 1250), "\xBA\xFE");
  EXPECT_EQ(FromCodePage("\xAAtefan \xDE\xE3ran\xBA\xFE", 1250), "Ștefan Țăranșț");
  // Turkish has the cedilla for good.
  EXPECT_EQ(FromCodePage("\xFE", 1254), "ş");
}

TEST(EncodingTest, PagesAndTheirHoles) {
  EXPECT_EQ(FromCodePage("\x80\x81", 1252), "€\xEF\xBF\xBD");
  EXPECT_EQ(FromCodePage("\xCF\xF0", 1251), "Пр");
  EXPECT_EQ(FromCodePage("\x82", 437), "é");
  EXPECT_EQ(FromCodePage("\x8A\xE4", 10029), "äš");
  EXPECT_EQ(FromCodePage("\xE9", 9999), "é");
  EXPECT_EQ(FromCodePage("a\xE9", 1258), "aé");
  EXPECT_EQ(FromCodePage("\x93\xFA\x96{A", 932), "日本A");
  EXPECT_EQ(ToCodePage("日A€", 932), "\x93\xFA\x41?");
  EXPECT_EQ(ToCodePage("Ж€x", 1250), "?\x80x");
}

TEST(EncodingTest, Utf16AndUtf8) {
  EXPECT_EQ(FromCodePage("A\0\x1B\x02\x3D\xD8\x00\xDE"s, 1200), "Aț😀");
  EXPECT_EQ(ToCodePage("Aț😀", 1200), "A\0\x1B\x02\x3D\xD8\x00\xDE"s);
  EXPECT_EQ(FromCodePage("\x3D\xD8"
                         "A\0x"s,
                         1200),
            "\uFFFDA\uFFFD");
  EXPECT_EQ(FromCodePage("a\xC3(", 65001), "a\uFFFD(");
  EXPECT_TRUE(IsValidUtf8("ăț😀\uFFFD"));
  for (const char* bad : {"\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\x80"}) {
    EXPECT_FALSE(IsValidUtf8(bad)) << bad;
  }
  EXPECT_EQ(Utf8Length("ăț😀x"), 4u);
  EXPECT_EQ(Utf8Prefix("ăț😀x", 3), "ăț😀");
  EXPECT_EQ(Utf8Prefix("ab", 9), "ab");
}

TEST(EncodingTest, Case) {
  EXPECT_EQ(ToUpper("aăâîșțşţ ÿžđ ώς жёђ ß"), "AĂÂÎȘȚŞŢ ŸŽĐ ΏΣ ЖЁЂ ß");
  EXPECT_EQ(ToLower("AĂÂÎȘȚŞŢ ŸŽĐ ΏΣ ЖЁЂ ÷×"), "aăâîșțşţ ÿžđ ώσ жёђ ÷×");
  EXPECT_EQ(ToUpper("a\xFFz"), "A\xFFZ");
}

TEST(TextTest, SmallHelpers) {
  EXPECT_EQ(Trim(" \ta b\t "), "a b");
  EXPECT_EQ(Trim(" \t"), "");
  EXPECT_TRUE(EqualsNoCase("Comun.MDB", "COMUN.mdb"));
  EXPECT_FALSE(EqualsNoCase("a[", "A{"));
  EXPECT_EQ(ReplaceAll("a  b   c", "  ", " "), "a b  c");
}

TEST(ClockTest, SerialsCountFromTheEnginesDayZero) {
  EXPECT_EQ(ToSerial({1899, 12, 30, 0, 0, 0}), 0);
  EXPECT_EQ(ToSerial({2026, 3, 4, 12, 0, 0}), 46085.5);
  EXPECT_EQ(FromSerial(46085.5), (LocalTime{2026, 3, 4, 12, 0, 0}));
  EXPECT_EQ(FromSerial(-1.25), (LocalTime{1899, 12, 29, 6, 0, 0}));
  EXPECT_EQ(ToSerial({1899, 12, 29, 6, 0, 0}), -1.25);
  // A fraction that rounds up to midnight is the next day's start.
  EXPECT_EQ(FromSerial(46085.999999), (LocalTime{2026, 3, 5, 0, 0, 0}));
  for (const LocalTime& time : {LocalTime{2024, 2, 29, 23, 59, 59}, LocalTime{1900, 1, 1, 0, 0, 1}}) {
    EXPECT_EQ(FromSerial(ToSerial(time)), time);
  }
  EXPECT_TRUE(IsValidDate(2024, 2, 29));
  EXPECT_FALSE(IsValidDate(2023, 2, 29));
  EXPECT_FALSE(IsValidDate(2023, 13, 1));
}

}  // namespace
}  // namespace platform
