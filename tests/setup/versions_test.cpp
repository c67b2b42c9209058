#include <gtest/gtest.h>

#include <random>
#include <set>

#include "tariff/load_versions.h"

namespace tariff {
namespace {

constexpr int kFirst = 2005, kLast = 2035;

/// Carries a plan out on rows kept in memory; each row remembers the year whose tariff it names.
struct Row {
  Validity validity;
  int tariff_of;
};

void Load(std::vector<Row>& rows, int year) {
  std::vector<Validity> present;
  for (const Row& row : rows) present.push_back(row.validity);
  const YearPlan plan = PlanYear(present, year);
  std::vector<Row> next;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const Validity& left : plan.remains[i]) next.push_back({left, rows[i].tariff_of});
  }
  next.push_back({plan.fresh, year});
  rows = std::move(next);
}

std::vector<const Row*> Matches(const std::vector<Row>& rows, int year, int month) {
  std::vector<const Row*> matches;
  for (const Row& row : rows) {
    if (row.validity.Holds(year, month)) matches.push_back(&row);
  }
  return matches;
}

/// No period matches two rows, and every loaded year is served by its own tariff in all months.
void ExpectSound(const std::vector<Row>& rows, const std::set<int>& loaded, const std::string& what) {
  for (int year = kFirst; year <= kLast; ++year) {
    for (int month = 1; month <= 12; ++month) {
      const auto matches = Matches(rows, year, month);
      ASSERT_LE(matches.size(), 1u) << what << " " << month << "/" << year;
      if (loaded.contains(year)) {
        ASSERT_EQ(matches.size(), 1u) << what << " " << month << "/" << year;
        ASSERT_EQ(matches[0]->tariff_of, year) << what << " " << month << "/" << year;
      }
    }
  }
}

TEST(Versions, TakeAnOrderlyCourse) {
  std::vector<Row> rows = {{{2025, 1, 2025, 12}, 2025}, {{2026, 1, {}, {}}, 2026}};
  Load(rows, 2027);
  EXPECT_EQ(rows[1].validity, (Validity{2026, 1, 2026, 12}));
  EXPECT_EQ(rows[2].validity, (Validity{2027, 1, {}, {}}));
  Load(rows, 2024);
  EXPECT_EQ(rows.back().validity, (Validity{2024, 1, 2024, 12}));
  Load(rows, 2027);
  EXPECT_EQ(rows.size(), 4u) << "its own year is replaced";
  EXPECT_TRUE(rows.back().validity.open());
  Load(rows, 2029);  // 2028 has none of its own and stays with 2027
  EXPECT_EQ(rows[3].validity, (Validity{2027, 1, 2028, 12}));
  Load(rows, 2028);
  ExpectSound(rows, {2024, 2025, 2026, 2027, 2028, 2029}, "course");
}

TEST(Versions, NeverMatchTwoRowsInAnyLoadOrder) {
  std::mt19937 random(20260316);
  for (int round = 0; round < 400; ++round) {
    std::vector<Row> rows;
    std::set<int> loaded;
    if (round % 3 == 0) {  // the delivered rows
      for (int year = 2011; year <= 2025; ++year) rows.push_back({{year, 1, year, 12}, year});
      rows.push_back({{2026, 1, {}, {}}, 2026});
    } else if (round % 3 == 1) {  // rows that somebody laid out over several years and from mid-year
      rows = {{{2012, 7, 2016, 12}, -1}, {{2012, 1, 2016, 6}, -2}, {{2020, 3, {}, {}}, -3}};
    }
    std::string order;
    for (int step = 0; step < 12; ++step) {
      const int year = 2009 + static_cast<int>(random() % 22);
      Load(rows, year);
      loaded.insert(year);
      order += " " + std::to_string(year);
      ASSERT_NO_FATAL_FAILURE(ExpectSound(rows, loaded, order));
    }
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](const Row& row) { return row.validity.open(); }), 1)
        << order;
  }
}

}  // namespace
}  // namespace tariff
