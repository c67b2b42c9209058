#include "ui/format.h"

namespace {

const QLocale kRomanian(QLocale::Romanian, QLocale::Romania);
const QLocale kEnglish(QLocale::English, QLocale::UnitedStates);

TEST(Format, ShowsNumbersInTheLocale) {
  using ui::Format;
  const auto shown = [](double number, Format format) { return ui::Shown(number, format, kRomanian); };
  EXPECT_EQ(shown(1234567.891, Format::kAmount), "1.234.567,89");
  EXPECT_EQ(shown(4.9751, Format::kRate), "4,9751");
  EXPECT_EQ(shown(12345, Format::kWhole), "12.345");
  // Halves as the number reads, not as it is stored; no negative zero.
  EXPECT_EQ(shown(2.675, Format::kAmount), "2,68");
  EXPECT_EQ(shown(-2.675, Format::kAmount), "-2,68");
  EXPECT_EQ(shown(0.125, Format::kAmount), "0,13");
  EXPECT_EQ(shown(-0.001, Format::kAmount), "0,00");
  EXPECT_EQ(shown(123456789012.25, Format::kAmount), "123.456.789.012,25");
  EXPECT_EQ(ui::Shown(1234.5, Format::kAmount, kEnglish), "1,234.50");
  // Codes as stored; numbers without a format with the locale's mark and nothing added.
  EXPECT_EQ(ui::Shown("00123", Format::kAmount, kRomanian), "00123");
  EXPECT_EQ(ui::Shown(2026, Format::kText, kRomanian), "2026");
  EXPECT_EQ(ui::Shown(12.5, Format::kText, kRomanian), "12,5");
  EXPECT_EQ(ui::Shown(store::Value(), Format::kAmount, kRomanian), "");
  EXPECT_EQ(ui::Shown(store::Date{46097.4375}, Format::kDate, kRomanian), "16.03.2026");
  EXPECT_EQ(ui::Shown(store::Date{46097.4375}, Format::kDateTime, kRomanian), "16.03.2026 10:30");
  EXPECT_EQ(ui::ForEditing(1234567.891, Format::kAmount, kRomanian), "1234567,891");
}

TEST(Format, ReadsNumbersAsTyped) {
  const auto read = [](const char* text, const QLocale& locale = kRomanian) {
    return ui::ParseNumber(QString::fromUtf8(text), ui::Format::kAmount, locale);
  };
  EXPECT_EQ(read("1.234.567,89"), 1234567.89);
  EXPECT_EQ(read(" 1 234,5 "), 1234.5);
  EXPECT_EQ(read("4.9751"), 4.9751);
  EXPECT_EQ(read("12.500"), 12500.0);
  EXPECT_EQ(read("-,5"), -0.5);
  EXPECT_EQ(read("1.000.000"), 1000000.0);
  // A rate's single mark is the decimal one, whichever it is.
  EXPECT_EQ(ui::ParseNumber("4.975", ui::Format::kRate, kRomanian), 4.975);
  EXPECT_EQ(ui::ParseNumber("4,975", ui::Format::kRate, kEnglish), 4.975);
  EXPECT_EQ(ui::ParseNumber("1.234,5", ui::Format::kRate, kRomanian), 1234.5);
  EXPECT_EQ(ui::ParseNumber("1.234.567", ui::Format::kRate, kRomanian), 1234567.0);
  EXPECT_EQ(read("1,234.5", kEnglish), 1234.5);
  for (const char* wrong : {"", " ", ".", ",", "abc", "1,2,3", "12.34,5", "1.23.456", "12a", "1-2", "--1"}) {
    EXPECT_EQ(read(wrong), std::nullopt) << wrong;
  }
}

TEST(Format, KnowsTheDisplayFormats) {
  EXPECT_EQ(ui::FormatByText("##,##0.00"), ui::Format::kAmount);
  EXPECT_EQ(ui::FormatByText("##,##0.0000"), ui::Format::kRate);
  EXPECT_EQ(ui::FormatByText("##,##0"), ui::Format::kWhole);
  EXPECT_EQ(ui::FormatByText("0.00"), ui::Format::kText);
}

}  // namespace
