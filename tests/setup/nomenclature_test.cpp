#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "platform/encoding.h"
#include "tariff/load_nomenclature.h"

namespace tariff {
namespace {

std::string Item(std::string_view code, std::string_view text, std::string_view parent,
                 std::string_view unit = "") {
  return fmt::format(
      "<Item><Code>{}</Code><NameRo>{}</NameRo><Level>1</Level><RefCode>{}</RefCode><parentCode>{}</"
      "parentCode></Item>\n",
      code, text, unit, parent);
}

NomenclatureReading Read(const std::string& items) {
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<InsNomenclature><Id>CN</Id><Version>2030</Version>" +
      items + "</InsNomenclature>";
  return ReadNomenclature(xml);
}

const Nomenclature::Goods* FindGoods(const Nomenclature& nomenclature, std::string_view code) {
  for (const auto& goods : nomenclature.goods) {
    if (goods.code == code) return &goods;
  }
  return nullptr;
}

std::string TextOf(const std::vector<Nomenclature::Row>& rows, std::string_view code) {
  for (const auto& row : rows) {
    if (row.code == code) return row.text;
  }
  return "(none)";
}

TEST(Nomenclature, FoldsGroupsAndCleansTexts) {
  const auto reading = Read(Item("IX", "SECTIUNEA\xC2\xA0IX - LEMN", "") +
                            Item("44", "\"CAPITOLUL 44 - LEMN; CARBUNE\"", "IX") +
                            Item("@1", "I. DESEURI", "44") + Item("4407", "Lemn taiat:", "@1") +
                            Item("@2", "De  conifere", "4407") + Item("440711", "\xE2\x80\x93 De pin", "@2") +
                            Item("44071110", "\"Imbinat, zis \"\"scurt\"\"\"", "440711", "m3") +
                            Item("44071190", "Altele", "440711", "m3"));
  ASSERT_EQ(reading.error, "");
  const Nomenclature& cn = reading.nomenclature;
  EXPECT_EQ(cn.version, "2030");
  EXPECT_EQ(cn.sections[0].code, "09");
  EXPECT_EQ(cn.sections[0].text, "LEMN");
  EXPECT_EQ(cn.chapters[0].text, "LEMN; CARBUNE");
  EXPECT_EQ(cn.chapters[0].parent, "09");
  EXPECT_EQ(TextOf(cn.headings, "4407"), "Lemn taiat");
  EXPECT_EQ(TextOf(cn.subheadings, "440711"), "De conifere - De pin");
  EXPECT_EQ(cn.goods[0].text, "Lemn taiat - De conifere - De pin - Imbinat, zis \"scurt\"");
  EXPECT_EQ(cn.goods[1].unit, "m3");
}

TEST(Nomenclature, DerivesParentsThatTheFileLeavesOut) {
  const auto reading =
      Read(Item("I", "S", "") + Item("04", "C", "I") + Item("04090000", "Miere", "04") +
           Item("020500", "Carne de cal", "04") + Item("02050080", "Congelata", "020500") +
           Item("02050020", "Proaspata", "020500") + Item("0101", "Cai", "04") + Item("@1", "Vii", "0101") +
           Item("01013010", "Mari", "@1") + Item("01013090", "Mici", "@1"));
  ASSERT_EQ(reading.error, "");
  const Nomenclature& cn = reading.nomenclature;
  EXPECT_EQ(TextOf(cn.headings, "0409"), "Miere");
  EXPECT_EQ(TextOf(cn.subheadings, "040900"), "Miere");
  EXPECT_EQ(TextOf(cn.headings, "0205"), "Carne de cal");
  EXPECT_EQ(TextOf(cn.subheadings, "020500"), "Carne de cal");
  EXPECT_EQ(TextOf(cn.subheadings, "010130"), "Vii") << "what its codes share";
  EXPECT_EQ(cn.headings.size(), 3u);
  EXPECT_EQ(FindGoods(cn, "02050020")->text, "Carne de cal - Proaspata");
}

TEST(Nomenclature, RefusesOtherFiles) {
  std::string broken = "<InsNomenclature><Item>";
  EXPECT_THAT(ReadNomenclature(broken).error, testing::HasSubstr("XML"));
  std::string other = "<Settings/>";
  EXPECT_THAT(ReadNomenclature(other).error, testing::HasSubstr("Settings"));
  std::string countries = "<InsNomenclature><Id>COUNTRY</Id></InsNomenclature>";
  EXPECT_THAT(ReadNomenclature(countries).error, testing::HasSubstr("COUNTRY"));
  EXPECT_THAT(Read(Item("01", "Capitol", "I")).error, testing::HasSubstr("opt cifre"));
  std::string empty;
  EXPECT_NE(ReadNomenclature(empty).error, "");
}

TEST(Nomenclature, KeepsTheLastLevelInSight) {
  const std::string heading(300, 'a');
  const std::string group(105, 'b');
  const std::string joined = JoinLevels({heading, group, "Altele"});
  EXPECT_LE(joined.size(), 250u);
  EXPECT_TRUE(joined.ends_with(" - Altele"));
  const std::string last(400, 'c');
  const std::vector<std::string> two = {"x", last};
  EXPECT_EQ(JoinLevels(two), fmt::format("x - {}", last)) << "a long last level is kept whole";
}

TEST(Nomenclature, ReadsTheInstitutesFile) {
  const std::string path = DECLARIX_SOURCE_DIR "/../shared/reference/ins/CN_2024.xml";
  std::ifstream file(path, std::ios::binary);
  if (!file) GTEST_SKIP() << "no " << path;
  std::stringstream content;
  content << file.rdbuf();
  std::string xml = content.str();
  const auto reading = ReadNomenclature(xml);
  ASSERT_EQ(reading.error, "");
  const Nomenclature& cn = reading.nomenclature;
  EXPECT_EQ(cn.version, "2024");
  EXPECT_EQ(cn.sections.size(), 21u);
  EXPECT_EQ(cn.sections.back().code, "21");
  EXPECT_EQ(cn.chapters.size(), 98u);
  EXPECT_EQ(cn.goods.size(), 9769u);
  std::set<std::string> headings, subheadings;
  for (const auto& row : cn.headings) EXPECT_TRUE(headings.insert(row.code).second) << row.code;
  for (const auto& row : cn.subheadings) {
    EXPECT_TRUE(subheadings.insert(row.code).second) << row.code;
    EXPECT_TRUE(headings.contains(row.parent)) << row.code;
    EXPECT_NE(row.text, "") << row.code;
  }
  std::size_t with_unit = 0;
  for (const auto& goods : cn.goods) {
    with_unit += goods.unit.empty() ? 0 : 1;
    EXPECT_TRUE(subheadings.contains(goods.parent)) << goods.code;
    EXPECT_EQ(goods.text.find('"'), std::string::npos) << goods.text;
  }
  EXPECT_EQ(with_unit, 2712u);
  EXPECT_EQ(FindGoods(cn, "01012100")->text,
            "Cai, magari, catari si bardoi, vii - Cai - Reproducatori de rasa pura");
  EXPECT_EQ(FindGoods(cn, "01012100")->unit, "p/st");
  const std::string wine = FindGoods(cn, "22042111")->text;
  EXPECT_LE(platform::Utf8Length(wine), 250u);
  EXPECT_TRUE(wine.ends_with("Vinuri albe - Alsace")) << wine;
}

}  // namespace
}  // namespace tariff
