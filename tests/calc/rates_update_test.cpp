#include "calc/rates_update.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "calc/rates.h"
#include "support/installation.h"

namespace calc {
namespace {

using test_support::Installation;
using testing::HasSubstr;

constexpr char kNewFile[] =
    "EUR;2026-03-12;4.9701;1\r\nHUF;2026-03-12;1.26304;100\r\n"
    "EUR;2026-03-13;4.9751;1\r\nHUF;2026-03-13;1.27;100\r\n";

store::Date Day(int month, int day) { return {platform::ToSerial({2026, month, day, 0, 0, 0})}; }

/// The clock stands at Monday, 16 March 2026; the server has kNewFile.
class RatesUpdateTest : public testing::Test {
 protected:
  RatesUpdateTest() {
    at_.session.settings.www = "http://curs.example";
    Mark("", 1);
  }

  /// The marker, last changed that many days before the day of the clock.
  void Mark(std::string_view content, int days_ago) {
    at_.files().Replace(kMarker, content);
    std::tm noon{};
    noon.tm_year = 2026 - 1900;
    noon.tm_mon = 2;
    noon.tm_mday = at_.machine.clock.Now().day - days_ago;
    noon.tm_hour = 12;
    noon.tm_isdst = -1;
    at_.files().SetLastModified(kMarker, std::chrono::system_clock::from_time_t(std::mktime(&noon)));
  }
  /// Puts `served` in place where it passes the check, as the download service does; none: no connection.
  bool Update(const std::optional<std::string>& served = kNewFile) {
    return CursSchimb_Actualizare(at_.session,
                                  [&](const std::string& request, const platform::ContentCheck& valid) {
                                    requests_.push_back(request);
                                    if (!served || !valid(*served)) return false;
                                    at_.files().Replace(kFile, *served);
                                    return true;
                                  });
  }
  void ExpectShown(const char* day) {
    at_.prompter().ExpectInfo(std::string("Curs Valutar actualizat la data: ") + day);
  }
  std::int64_t Rows() { return at_.Get("SELECT COUNT(*) FROM Rate_Schimb").ToInteger(); }
  std::string Log() { return at_.files().Read(Installation::InSystem("Erori\\erori.txt")); }

  const std::string kFile = Installation::InSystem("CursBNR\\curs.txt");
  const std::string kOld = Installation::InSystem("CursBNR\\curs_old.txt");
  const std::string kMarker = Installation::InSystem("CursBNR\\data.txt");
  Installation at_;
  std::vector<std::string> requests_;
};

TEST_F(RatesUpdateTest, FetchesOnceADayAndTakesOnlyNewerRows) {
  AddRate(at_.session, "EUR", Day(3, 12), 4.9, 1);
  ExpectShown("13.03.2026");
  EXPECT_TRUE(Update());
  EXPECT_EQ(requests_, std::vector{"http://curs.example/curs_bnr/curs.txt," + kFile + ",1"});
  EXPECT_EQ(Rows(), 3);
  EXPECT_EQ(Curs_Schimb(at_.session, "EUR", Day(3, 13)), 4.9F) << "a row of a known day is not taken again";
  EXPECT_EQ(Curs_Schimb(at_.session, "EUR", Day(3, 16)), 4.9751F);
  EXPECT_EQ(Curs_Schimb(at_.session, "HUF", Day(3, 16)), 0.0127F);
  EXPECT_EQ(at_.files().Read(kMarker), "Actualizat:2026-03-13\r\n");
  const std::vector<std::pair<std::string, int>> expected = {{"Actualizez cursul valutar", 50},
                                                             {"Actualizez cursul valutar", 100}};
  EXPECT_EQ(at_.machine.progress.updates, expected);
  EXPECT_EQ(at_.machine.errors.count(), 0);

  Mark(at_.files().Read(kMarker), 0);
  EXPECT_EQ(UpdateRates(at_.session, {}), RatesOutcome::kTriedToday);
  at_.files().Remove(kMarker);
  EXPECT_EQ(UpdateRates(at_.session, {}), RatesOutcome::kNoMarker);
  EXPECT_FALSE(Update());
  EXPECT_EQ(requests_.size(), 1U);
}

TEST_F(RatesUpdateTest, CurrentRatesAreNotFetched) {
  const struct {
    int day;
    const char* last;
    bool current;
  } kCases[] = {{15, "2026-03-13", true},  {15, "2026-03-12", false}, {14, "2026-03-13", true},
                {16, "2026-03-13", false}, {16, "2026-03-16", true},  {13, "2026-02-30", false}};
  at_.prompter().AcceptAnything(false);
  for (const auto& c : kCases) {
    SCOPED_TRACE(fmt::format("{} martie, {}", c.day, c.last));
    at_.machine.clock.Set({2026, 3, c.day, 10, 0, 0});
    Mark(fmt::format("Actualizat:{}\r\n", c.last), 2);
    requests_.clear();
    EXPECT_EQ(Update(std::nullopt), c.current);
    EXPECT_EQ(requests_.empty(), c.current);
  }
  EXPECT_TRUE(at_.prompter().seen().empty());
}

TEST_F(RatesUpdateTest, AFailedDownloadKeepsTheBackupAndIsTriedAgain) {
  at_.files().Replace(kFile, "EUR;2026-03-02;4.95;1\r\n");
  EXPECT_FALSE(Update(std::nullopt));
  EXPECT_FALSE(at_.files().Exists(kFile));
  EXPECT_EQ(at_.files().Read(kOld), "EUR;2026-03-02;4.95;1\r\n");
  EXPECT_EQ(at_.files().Read(kMarker), "");
  EXPECT_EQ(Rows(), 1) << "what was there is taken all the same";
  for (const char* wrong :
       {"", "<html>a;b;c;d 20260313</html>", "Pagina a fost mutata", "{\"a\":1,2,3,4,567}"}) {
    EXPECT_FALSE(Update(wrong)) << wrong;
  }
  EXPECT_EQ(at_.files().Read(kOld), "EUR;2026-03-02;4.95;1\r\n");
  ExpectShown("13.03.2026");
  EXPECT_TRUE(Update());
  EXPECT_EQ(Rows(), 5);
}

TEST_F(RatesUpdateTest, ASecondCompanyTakesTheFileThatIsThere) {
  ExpectShown("13.03.2026");
  EXPECT_TRUE(Update());
  Mark(at_.files().Read(kMarker), 0);
  at_.AddCompany("RO654321", "A DOUA SRL");
  ASSERT_EQ(Rows(), 0);
  ExpectShown("13.03.2026");
  EXPECT_TRUE(Update());
  EXPECT_EQ(Rows(), 4);
  EXPECT_EQ(requests_.size(), 1U);

  at_.AddCompany("RO777", "A TREIA SRL");
  ExpectShown("13.03.2026");
  TakeFetchedRates(at_.session);
  EXPECT_EQ(Rows(), 4);
  TakeFetchedRates(at_.session);  // nothing newer, nothing said
  EXPECT_EQ(at_.files().Read(kMarker), "Actualizat:2026-03-13\r\n");
}

TEST_F(RatesUpdateTest, ARateDatedAheadDoesNotStopTheNextUpdate) {
  ExpectShown("17.03.2026");
  EXPECT_TRUE(Update("EUR;2026-03-17;4.98;1\r\n"));
  EXPECT_EQ(at_.files().Read(kMarker), "Actualizat:2026-03-16\r\n");
}

TEST_F(RatesUpdateTest, WrongRowsAreNamedAndTheOthersTaken) {
  ExpectShown("13.03.2026");
  EXPECT_TRUE(Update(
      "EUR;2026-03-13;4.9751;1\r\nUSD;2026-03-13;n/a;1\r\nGBP;2026-02-31;5.8;1\r\nCHF;2026-03-13;5.1;0\r\n"
      ";2026-03-13;1.1;1\r\nEUR;2026-03-13;4.98;1\r\nSEK;2062-03-13;0.43;1\r\nJPY;2026-03-13;3.1\r\n"
      "PLN;2026-03-13;1.16;1\r\n"));
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Curs_Schimb(at_.session, "EUR", Day(3, 16)), 4.9751F);
  EXPECT_EQ(Curs_Schimb(at_.session, "PLN", Day(3, 16)), 1.16F);
  const std::string log = Log();
  for (const char* row : {"USD;13.03.2026;n/a;1", "GBP;;5.8;1", "CHF;", ";13.03.2026;1.1;1",
                          "EUR;13.03.2026;4.98;1", "SEK;13.03.2062", "JPY;"}) {
    EXPECT_THAT(log, HasSubstr("rand ignorat in curs.txt: " + std::string(row)));
  }
}

TEST_F(RatesUpdateTest, AFileWithoutOneGoodRowLeavesTheMarker) {
  EXPECT_FALSE(Update("EUR;13-03-26;4.9751;1\r\nUSD;altfel;5;1\r\n"));
  EXPECT_EQ(at_.files().Read(kMarker), "");
  at_.files().Remove(Installation::InSystem("CursBNR\\Schema.ini"));
  EXPECT_FALSE(Update()) << "without the column description the columns have no names";
  EXPECT_EQ(Rows(), 0);
  at_.session.company.Close();
  requests_.clear();
  EXPECT_FALSE(Update());
  EXPECT_TRUE(requests_.empty()) << "no company, no table to update";
}

TEST_F(RatesUpdateTest, AFileThatCannotBeWrittenDoesNotKeepTheRatesAway) {
  at_.files().Replace(kFile, "EUR;2026-03-02;4.95;1\r\n");
  at_.files().refuses = [&](std::string_view path) { return path == kOld || path == kMarker; };
  ExpectShown("13.03.2026");
  EXPECT_TRUE(Update());
  EXPECT_EQ(Rows(), 5);
  EXPECT_EQ(at_.machine.errors.count(), 2);
}

TEST_F(RatesUpdateTest, RatesAreReadAlikeWhateverTheUsersDecimalSeparator) {
  at_.session.decimal_comma = true;
  ExpectShown("13.03.2026");
  EXPECT_TRUE(Update("EUR;2026-03-13;4.97514999;1\r\nHUF;2026-03-13;1,27;100\r\n"));
  EXPECT_EQ(at_.Get("SELECT Curs_Schimb FROM Rate_Schimb WHERE Cod_Moneda = 'EUR'").ToDouble(), 4.9751);
  EXPECT_EQ(at_.Get("SELECT Curs_Schimb FROM Rate_Schimb WHERE Cod_Moneda = 'HUF'").ToDouble(), 1.27);
}

}  // namespace
}  // namespace calc
