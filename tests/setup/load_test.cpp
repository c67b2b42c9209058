#include "tariff/load.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <set>

#include "support/installation.h"
#include "tariff/load_versions.h"
#include "tariff/lookup.h"

namespace tariff {
namespace {

using test_support::Installation;
using testing::HasSubstr;

/// A nomenclature of one code whose text tells the file.
std::string SmallXml(std::string_view text) {
  return fmt::format(
      "<?xml version=\"1.0\"?><InsNomenclature><Id>CN</Id><Version>x</Version>"
      "<Item><Code>I</Code><NameRo>S</NameRo><Level>1</Level></Item>"
      "<Item><Code>01</Code><NameRo>C</NameRo><Level>2</Level><parentCode>I</parentCode></Item>"
      "<Item><Code>01012100</Code><NameRo>{}</NameRo><Level>4</Level><RefCode>p/st</RefCode>"
      "<parentCode>01</parentCode></Item></InsNomenclature>",
      text);
}

LoadOutcome Load(Installation& at, const std::string& xml, int year) {
  at.files().Replace("C:\\cn.xml", xml);
  return LoadNomenclature(at.session, test_support::DataFolder(at.files()), "C:\\cn.xml", year);
}

std::string Find(Installation& at, int year, int month) {
  if (!ConexiuneTarif(at.session, month, year)) return "(none)";
  return Cautare_Tarif(at.session, "01012100");
}

TEST(TariffLoad, RegistersYearsInAnyOrder) {
  std::mt19937 random(7);
  Installation at;
  std::set<int> loaded;
  for (int step = 0; step < 14; ++step) {
    const int year = 2008 + static_cast<int>(random() % 23);
    const LoadOutcome outcome = Load(at, SmallXml(std::to_string(year)), year);
    ASSERT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.file, fmt::format("CN_{}.mdb", year));
    loaded.insert(year);
    for (const int other : loaded) {
      ASSERT_EQ(Find(at, other, step % 12 + 1), fmt::format("{}|p/st|1", other)) << "after " << year;
    }
  }
  std::vector<Validity> rows;
  for (store::Recordset row = at.session.common.Query("SELECT * FROM InsCodeVersions"); !row.eof();
       row.MoveNext()) {
    Validity validity{
        static_cast<int>(row["Anul"].ToInteger()), static_cast<int>(row["Luna"].ToInteger()), {}, {}};
    if (!row["Anul_End"].is_null()) validity.Anul_End = static_cast<int>(row["Anul_End"].ToInteger());
    if (!row["Luna_End"].is_null()) validity.Luna_End = static_cast<int>(row["Luna_End"].ToInteger());
    rows.push_back(validity);
    const bool recent = validity.Anul >= 2022;
    EXPECT_EQ(row["NatureOfTransactionAVer"].ToText(), recent ? "2022" : "2010") << validity.Anul;
    EXPECT_EQ(row["LocalityVer"].ToText(), "06/2006");
  }
  for (int year = 2000; year < 2040; ++year) {
    for (int month = 1; month <= 12; ++month) {
      EXPECT_LE(std::count_if(rows.begin(), rows.end(),
                              [&](const Validity& row) { return row.Holds(year, month); }),
                1)
          << month << "/" << year;
    }
  }
}

TEST(TariffLoad, ReplacesItsOwnYearWhileItIsOpen) {
  Installation at;
  ASSERT_EQ(Load(at, SmallXml("intai"), 2026).error, "");
  EXPECT_EQ(Cautare_Tarif(at.session, "01012100"), "intai|p/st|1");
  ASSERT_EQ(Load(at, SmallXml("apoi"), 2026).error, "");
  EXPECT_EQ(Cautare_Tarif(at.session, "01012100"), "apoi|p/st|1") << "the open connection reads the new file";
  EXPECT_EQ(Find(at, 2027, 5), "apoi|p/st|1") << "still in force";
}

TEST(TariffLoad, RefusesWithoutTouchingAnything) {
  Installation at;
  const std::string database = at.files().Read(Installation::InDataBase("Comun.mdb"));
  for (const char* xml :
       {"", "<InsNomenclature>", "<Altceva/>", "<InsNomenclature><Id>CN</Id></InsNomenclature>"}) {
    EXPECT_THAT(Load(at, xml, 2026).error, HasSubstr("C:\\cn.xml")) << xml;
  }
  EXPECT_THAT(Load(at, SmallXml("x"), 26).error, HasSubstr("26"));
  EXPECT_THAT(LoadNomenclature(at.session, test_support::DataFolder(at.files()), "C:\\nu.xml", 2026).error,
              HasSubstr("nu exista"));
  at.files().refuses = [](std::string_view path) { return path.ends_with("CN_2025.mdb"); };
  EXPECT_NE(Load(at, SmallXml("x"), 2025).error, "");
  at.files().refuses = nullptr;
  EXPECT_FALSE(at.files().Exists(Installation::InDataBase("CN\\CN_2025.mdb")));
  EXPECT_EQ(Find(at, 2026, 1), "Animale vii|p/st|1");
  EXPECT_EQ(at.files().Read(Installation::InDataBase("Comun.mdb")), database);
}

TEST(TariffLoad, BuildsTheInstitutesNomenclature) {
  Installation at;
  const std::filesystem::path file = DECLARIX_SOURCE_DIR "/../shared/reference/ins/CN_2024.xml";
  if (!std::filesystem::exists(file)) GTEST_SKIP() << "no " << file;
  const LoadOutcome outcome = LoadNomenclature(at.session, test_support::DataFolder(at.files()),
                                               at.files().drives().FromHost(file), 2024);
  ASSERT_EQ(outcome.error, "");
  EXPECT_EQ(outcome.codes, 9769);
  EXPECT_EQ(outcome.codes_with_unit, 2712);
  EXPECT_EQ(outcome.sections, 21);
  EXPECT_EQ(Find(at, 2024, 7),
            "Cai, magari, catari si bardoi, vii - Cai - Reproducatori de rasa pura|p/st|1");
  EXPECT_EQ(Find(at, 2026, 7), "Animale vii|p/st|1");
}

}  // namespace
}  // namespace tariff
