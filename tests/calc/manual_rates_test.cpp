#include "calc/manual_rates.h"

#include <gtest/gtest.h>

#include "calc/rates.h"
#include "support/installation.h"

namespace calc {
namespace {

store::Date Day(const char* text) { return *store::ParseDate(text); }

/// The clock stands at 16 March 2026.
class ManualRatesTest : public testing::Test {
 protected:
  RateSaving Add(const char* currency, const char* day, double rate, double multiplier = 1) {
    return SaveRate(at_.session, {currency, store::ParseDate(day), rate, multiplier}, std::nullopt);
  }
  std::string List(const RateFilter& filter = {}) {
    std::string text;
    for (store::Recordset rows = ListRates(at_.session, filter); !rows.eof(); rows.MoveNext()) {
      text += fmt::format("{} {} {}/{}\n", rows["Cod_Moneda"].ToText(), rows["Valid_La_Data"].ToText(),
                          rows["Curs_Schimb"].ToText(), rows["Multiplicator"].ToText());
    }
    return text;
  }
  void ExpectQuestion(const char* text, bool answer) {
    at_.prompter().ExpectQuestion(text, "RASPUNDETI", platform::Icon::kQuestion, answer);
  }
  test_support::Installation at_;
};

TEST_F(ManualRatesTest, ListIsNarrowedByCurrencyAndDays) {
  Add("eur", "2026-03-12", 4.97006);
  Add("EUR", "2026-03-13", 4.9751);
  Add("HUF", "2026-03-13", 1.27, 100);
  EXPECT_EQ(List(), "EUR 13.03.2026 4.9751/1\nHUF 13.03.2026 1.27/100\nEUR 12.03.2026 4.9701/1\n");
  EXPECT_EQ(List({"EUR", Day("2026-03-13"), {}}), "EUR 13.03.2026 4.9751/1\n");
  EXPECT_EQ(List({"", {}, Day("2026-03-12")}), "EUR 12.03.2026 4.9701/1\n");
  EXPECT_EQ(List({"E'R", {}, {}}), "");
  EXPECT_EQ(RateCondition({"EUR", Day("2026-03-01"), Day("2026-03-13")}),
            " WHERE C.Cod_Moneda = 'EUR' AND C.Valid_La_Data >= #2026-03-01# AND C.Valid_La_Data <= "
            "#2026-03-13#");
  EXPECT_EQ(ListRates(at_.session, {})["Moneda_DESC"].ToText(), "Euro");
  const RateEntry next = NewRate(at_.session, "HUF");
  EXPECT_EQ(next.Multiplicator, 100);
  EXPECT_EQ(next.Valid_La_Data, Day("2026-03-16"));
}

TEST_F(ManualRatesTest, WhatMakesNoSenseIsToldAndNotStored) {
  const std::optional<store::Date> day = Day("2026-03-13");
  const struct {
    RateEntry entry;
    const char *message, *field;
  } kCases[] = {
      {{"", day, 4.97, 1}, "Moneda  -  Obligatoriu de completat !", "Cod_Moneda"},
      {{"QQQ", day, 4.97, 1}, "Moneda QQQ nu exista in tabela Monezi", "Cod_Moneda"},
      {{"E'R", day, 4.97, 1}, "Moneda E'R nu exista in tabela Monezi", "Cod_Moneda"},
      {{"RON", day, 1, 1}, "RON este moneda locala: cursul ei este intotdeauna 1", "Cod_Moneda"},
      {{"EUR", {}, 4.97, 1}, "Data cursului lipseste sau nu este o data (zz.ll.aaaa)", "Valid_La_Data"},
      {{"EUR", Day("2026-03-18"), 4.97, 1},
       "Data cursului trebuie sa fie intre 01.01.2000 si 17.03.2026",
       "Valid_La_Data"},
      {{"EUR", Day("1999-12-31"), 4.97, 1},
       "Data cursului trebuie sa fie intre 01.01.2000 si 17.03.2026",
       "Valid_La_Data"},
      {{"EUR", day, {}, 1},
       "Cursul trebuie sa fie un numar mai mare ca zero, cu cel mult 4 zecimale",
       "Curs_Schimb"},
      {{"EUR", day, 0.00001, 1},
       "Cursul trebuie sa fie un numar mai mare ca zero, cu cel mult 4 zecimale",
       "Curs_Schimb"},
      {{"EUR", day, std::nan(""), 1},
       "Cursul trebuie sa fie un numar mai mare ca zero, cu cel mult 4 zecimale",
       "Curs_Schimb"},
      {{"EUR", day, 4.97, 0.5},
       "Multiplicatorul trebuie sa fie un numar intreg, 1 sau mai mare",
       "Multiplicator"},
      {{"EUR", day, 4.97, {}},
       "Multiplicatorul trebuie sa fie un numar intreg, 1 sau mai mare",
       "Multiplicator"},
  };
  for (const auto& c : kCases) {
    at_.prompter().ExpectError(c.message);
    const RateSaving saving = SaveRate(at_.session, c.entry, std::nullopt);
    EXPECT_FALSE(saving.saved);
    EXPECT_EQ(saving.field, c.field);
    at_.prompter().Verify();
  }
  EXPECT_EQ(List(), "");
}

TEST_F(ManualRatesTest, ADayHasOneRateOfACurrency) {
  Add("EUR", "2026-03-12", 4.97);
  Add("EUR", "2026-03-13", 4.98);
  at_.session.decimal_comma = true;
  ExpectQuestion("Exista deja cursul EUR din 13.03.2026: 4,9800. Il inlocuiti cu 4,9900 ?", false);
  EXPECT_FALSE(Add("EUR", "2026-03-13", 4.99).saved);
  ExpectQuestion("Exista deja cursul EUR din 13.03.2026: 4,9800. Il inlocuiti cu 4,9900 ?", true);
  EXPECT_TRUE(Add("EUR", "2026-03-13", 4.99).saved);
  at_.session.decimal_comma = false;

  const RateKey changed{"EUR", Day("2026-03-12")};
  at_.prompter().ExpectError(
      "Exista deja cursul EUR din 13.03.2026: 4.9900. Modificati randul acela sau alegeti alta data.");
  EXPECT_FALSE(SaveRate(at_.session, {"EUR", Day("2026-03-13"), 5, 1}, changed).saved);
  EXPECT_EQ(List(), "EUR 13.03.2026 4.99/1\nEUR 12.03.2026 4.97/1\n");
  EXPECT_TRUE(SaveRate(at_.session, {"EUR", Day("2026-03-12"), 5, 10}, changed).saved);
  EXPECT_TRUE(SaveRate(at_.session, {"USD", Day("2026-03-11"), 4.5, 1}, changed).saved);
  EXPECT_EQ(List(), "EUR 13.03.2026 4.99/1\nUSD 11.03.2026 4.5/1\n");
}

TEST_F(ManualRatesTest, DeletingAsksAndNamesWhatGoes) {
  std::vector<RateKey> keys;
  for (int day = 6; day <= 12; ++day) {
    keys.push_back(*Add("EUR", fmt::format("2026-03-{:02}", day).c_str(), 4.97).saved);
  }
  const std::string before = List();
  ExpectQuestion("Stergeti cursul EUR din 06.03.2026 ?", false);
  EXPECT_FALSE(DeleteRates(at_.session, {keys[0]}));
  EXPECT_EQ(List(), before);
  ExpectQuestion(
      "Stergeti 7 cursuri: EUR din 06.03.2026, EUR din 07.03.2026, EUR din 08.03.2026, EUR din 09.03.2026, "
      "EUR din 10.03.2026 si inca 2 ?",
      true);
  EXPECT_TRUE(DeleteRates(at_.session, keys));
  EXPECT_EQ(List(), "");
}

}  // namespace
}  // namespace calc
