#include "reports/layout.h"

#include <gmock/gmock.h>

#include <set>

#include "reports/html.h"

namespace reports {
namespace {

/// Letters all half as wide as high, so that widths can be counted.
Fonts Typewriter() {
  Fonts fonts;
  for (FontTable* table : {&fonts.plain, &fonts.bold}) {
    table->advance.fill(0.5f);
    table->other = 0.5f;
    table->height = 1.2f;
  }
  return fonts;
}

std::string Plain(const store::Value& value, Format) { return value.ToText(); }

using Rows = std::vector<std::vector<store::Value>>;

Report Made(const std::string& inside, Rows rows, const std::string& title = "Titlu") {
  const Definitions file = Definitions::Parse(
      "<Reports><Report Id=\"R\" Title=\"" + title + "\">" + inside + "</Report></Reports>", "f.xml");
  auto table = std::make_shared<MemoryTable>(
      std::vector<Table::Column>{
          {"Cod", "Cod", Format::kText}, {"Text", "Text", Format::kText}, {"Suma", "Suma", Format::kAmount}},
      std::move(rows));
  return Report(file.Get("R"), "f.xml", table, {}, Plain);
}

constexpr char kColumns[] =
    "<Column Field=\"Cod\" Width=\"6\"/><Column Field=\"Text\" Width=\"30\"/>"
    "<Column Field=\"Suma\" Total=\"1\"/>";
constexpr PageSize kA4 = {595, 842};

std::string Texts(const PageContent& page) {
  std::string all;
  for (const PageContent::Text& text : page.texts) all += text.text + '|';
  return all;
}

Rows Many(int count, const std::string& text = "piesa") {
  Rows rows;
  for (int i = 0; i < count; ++i) rows.push_back({fmt::format("C{}", i / 25), text, i});
  return rows;
}

TEST(Wrap, BreaksBetweenWordsAndInLongOnes) {
  const Fonts fonts = Typewriter();
  const auto wrapped = [&](std::string_view text, int letters) {
    std::string joined;
    for (const std::string_view line : Wrap(text, fonts.plain, 2, letters + 0.1)) {
      joined += std::string(line) + '/';
    }
    return joined;
  };
  EXPECT_EQ(wrapped("unu doi trei", 7), "unu doi/trei/");
  EXPECT_EQ(wrapped("unu doi trei", 4), "unu/doi/trei/");
  EXPECT_EQ(wrapped("abcdefghij kl", 4), "abcd/efgh/ij/kl/");
  EXPECT_EQ(wrapped("țară și limbă", 4), "țară/și/limb/ă/");
  EXPECT_EQ(wrapped("AB_CD-EFGHIJK", 7), "AB_CD-/EFGHIJK/");  // codes rather behind a sign
  EXPECT_EQ(wrapped("A_BCDEFGHIJK", 7), "A_BCDEF/GHIJK/");
  EXPECT_EQ(wrapped("", 4), "/");
  EXPECT_EQ(wrapped("ab", 0), "a/b/");
}

TEST(Layout, HeadingsAndOpenGroupsAreRepeatedAndEveryRowIsPrintedOnce) {
  const Report report =
      Made(std::string(kColumns) + "<Group Field=\"Cod\" Header=\"Grupa {Cod}\"/>", Many(200));
  const Fonts fonts = Typewriter();
  Layout layout(report, fonts, kA4, {"Editor", "ana", "16.03.2026"}, Orientation::kPortrait);
  EXPECT_EQ(layout.page_count(), 1);
  EXPECT_FALSE(layout.complete());
  EXPECT_THAT(Texts(layout.Page(0)), testing::EndsWith("Pagina 1|"));  // the rest is not known yet
  layout.BreakAll();
  ASSERT_GT(layout.page_count(), 3);
  std::multiset<std::string> sums;
  int continued = 0;
  for (int i = 0; i < layout.page_count(); ++i) {
    const PageContent page = layout.Page(i);
    const std::string texts = Texts(page);
    EXPECT_EQ(page.texts[i == 0 ? 1 : 0].text, "Titlu");  // in small on the further ones
    EXPECT_EQ(page.texts[i == 0 ? 1 : 0].size<9, i> 0);
    EXPECT_THAT(texts, testing::HasSubstr("Cod|Text|Suma|"));
    EXPECT_THAT(texts,
                testing::EndsWith(fmt::format("Editor|ana|Pagina {} / {}|", i + 1, layout.page_count())));
    continued += texts.find("(continuare)") != std::string::npos;
    double lowest = 0;
    for (std::size_t t = 0; t + 3 < page.texts.size(); ++t) {
      lowest = std::max(lowest, page.texts[t].baseline);
      EXPECT_GE(page.texts[t].x, page.texts.empty() ? 0 : kA4.margin - 0.01);
      EXPECT_LE(page.texts[t].x + page.texts[t].width, kA4.width - kA4.margin + 0.01);
      if (page.texts[t].text == "piesa") sums.insert(page.texts[t + 1].text);
    }
    EXPECT_LT(lowest, kA4.height - kA4.margin - 10);
    // A header never stands alone at a page's end.
    EXPECT_FALSE(page.texts[page.texts.size() - 4].text.starts_with("Grupa")) << texts;
  }
  EXPECT_GT(continued, 0);
  EXPECT_EQ(sums.size(), 200u);
  EXPECT_EQ(std::set<std::string>(sums.begin(), sums.end()).size(), 200u);
  EXPECT_THAT(Texts(layout.Page(layout.page_count() - 1)), testing::HasSubstr("TOTAL (200)|19900|"));
}

TEST(Layout, LongTextsWrapBeforeLettersShrink) {
  const std::string text = "un text care nu incape pe un rand si trece pe randul urmator";
  const Fonts fonts = Typewriter();
  const Report report = Made(kColumns, Many(10, text));
  const Layout narrow(report, fonts, {260, 842}, {}, Orientation::kPortrait);
  EXPECT_EQ(narrow.font_size(), 9);
  double sum = 0;
  for (const double width : narrow.widths()) sum += width;
  EXPECT_NEAR(sum, 260 - 2 * kA4.margin, 0.1);
  EXPECT_THAT(Texts(narrow.Page(0)), testing::Not(testing::HasSubstr(text)));
  const Layout tiny(report, fonts, {150, 842}, {}, Orientation::kPortrait);
  EXPECT_LT(tiny.font_size(), 9);
  EXPECT_THAT(Texts(tiny.Page(0)), testing::HasSubstr("urmator|"));  // the text's last word is there
}

TEST(Layout, APageTurnsOnlyWhereColumnsNeedIt) {
  const Fonts fonts = Typewriter();
  const Report slim = Made(kColumns, Many(3));
  EXPECT_LT(Layout(slim, fonts, kA4, {}, Orientation::kAuto).page().width, 600);
  const std::string wide_text = fmt::format("{:x<30} {:y<160}", "", "");
  const Report wide = Made("<Column Field=\"Text\" Width=\"200\"/>", Many(3, wide_text));
  EXPECT_GT(Layout(wide, fonts, kA4, {}, Orientation::kAuto).page().width, 800);
}

TEST(Layout, ARowLongerThanAPageStillEnds) {
  const Fonts fonts = Typewriter();
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "cuvant ";
  const Report report = Made(kColumns, Many(3, text));
  Layout layout(report, fonts, kA4, {}, Orientation::kPortrait);
  layout.BreakAll();
  EXPECT_EQ(layout.page_count(), 3);
  EXPECT_THAT(Texts(layout.Page(0)), testing::HasSubstr("...|"));
}

TEST(Html, EscapesTextsAndSpansGroups) {
  const Report report = Made(std::string(kColumns) + "<Group Field=\"Cod\" Header=\"Grupa {Cod}\"/>",
                             {{"A&B", "<b>\"x\"</b>", 2}}, "P &amp; Q");
  platform::SilentProgress silent;
  const std::string html = Html(report, {"Editor", "ana", "16.03.2026"}, true, silent);
  using testing::HasSubstr;
  EXPECT_THAT(html, HasSubstr("A4 landscape"));
  EXPECT_THAT(html, HasSubstr("<h1>P &amp; Q</h1>"));
  EXPECT_THAT(html, HasSubstr("<tr class=\"g\"><td colspan=\"3\">Grupa A&amp;B</td></tr>"));
  EXPECT_THAT(html, HasSubstr("<td>&lt;b&gt;&quot;x&quot;&lt;/b&gt;</td><td class=\"r\">2</td>"));
  EXPECT_THAT(html, HasSubstr("<td colspan=\"2\">TOTAL (1)</td><td class=\"r\">2</td>"));
}

}  // namespace
}  // namespace reports
