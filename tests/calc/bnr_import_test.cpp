#include "calc/bnr_import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "calc/rates.h"
#include "support/installation.h"

namespace calc {
namespace {

using testing::HasSubstr;

constexpr char kPath[] = "C:\\Descarcari\\curs.xml";

/// Two days, as the bank's yearly file has them.
std::string Document(const std::string& cubes, const std::string& from = "https://www.bnr.ro/xsd") {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<DataSet xmlns=\"" + from +
         "\"><Header><PublishingDate>2026-03-13</PublishingDate></Header><Body><Subject>Reference "
         "rates</Subject><OrigCurrency>RON</OrigCurrency>" +
         cubes + "</Body></DataSet>";
}
constexpr char kTwoDays[] =
    "<Cube date=\"2026-03-12\"><Rate currency=\"EUR\">4.9701</Rate>"
    "<Rate currency=\"HUF\" multiplier=\"100\">1.26304</Rate></Cube>"
    "<Cube date=\"2026-03-13\"><Rate currency=\"EUR\"> 4.9751 </Rate></Cube>";

class BnrImportTest : public testing::Test {
 protected:
  BnrImport Import(const std::string& content) {
    at_.files().CreateFolders("C:\\Descarcari\\");
    at_.files().Replace(kPath, content);
    return ImportBnrFile(at_.session, kPath);
  }
  void ExpectRefusal() {
    at_.prompter().ExpectStarting("Fisierul nu a fost preluat: C:\\Descarcari\\curs.xml\r\n", "EROARE",
                                  platform::Icon::kCritical);
  }
  std::string Held(const char* currency, const char* day) {
    const store::Recordset rows = at_.session.company.Query(
        fmt::format("SELECT Curs_Schimb, Multiplicator FROM Rate_Schimb WHERE Cod_Moneda='{}' AND "
                    "Valid_La_Data=#{}#",
                    currency, day));
    return rows.record_count() == 1 ? rows[0].ToText() + "/" + rows[1].ToText() : "";
  }
  test_support::Installation at_;
};

TEST_F(BnrImportTest, TakesEveryDayAndReplacesWhatTheBankKnowsBetter) {
  AddRate(at_.session, "EUR", {*store::ParseDate("2026-03-12")}, 4.9, 1);
  AddRate(at_.session, "EUR", {*store::ParseDate("2026-03-11")}, 4.8, 1);
  const BnrImport first = Import(Document(kTwoDays));
  EXPECT_EQ(first.Summary(), "2 cursuri noi, 1 inlocuit, 0 neschimbate; ultima zi 13.03.2026");
  EXPECT_EQ(Held("EUR", "2026-03-11"), "4.8/1");
  EXPECT_EQ(Held("EUR", "2026-03-12"), "4.9701/1");
  EXPECT_EQ(Held("EUR", "2026-03-13"), "4.9751/1");
  EXPECT_EQ(Held("HUF", "2026-03-12"), "1.263/100");
  EXPECT_EQ(at_.machine.progress.updates.back(), std::pair(std::string("Preiau cursurile BNR"), 100));
  EXPECT_EQ(at_.machine.errors.count(), 0);

  const BnrImport again = Import(Document(kTwoDays, "http://www.bnr.ro/xsd"));
  EXPECT_EQ(again.unchanged, 3);
  EXPECT_EQ(again.added + again.replaced, 0);
}

TEST_F(BnrImportTest, WrongRowsAreNamedAndTheOthersTaken) {
  at_.prompter().ExpectMessage(
      "Fisier BNR: 1 curs nou, 0 inlocuite, 0 neschimbate; ultima zi 13.03.2026.\r\n\r\n"
      "Nu s-au preluat (12):\r\n"
      "USD din 13.03.2026: cursul \"-\" nu este un numar\r\n"
      "GBP din 13.03.2026: cursul \"5,83\" nu este un numar\r\n"
      "CHF din 13.03.2026: cursul \"0.00001\" nu este mai mare ca zero\r\n"
      "CZK din 13.03.2026: cursul \"1e300\" este prea mare\r\n"
      "JPY din 13.03.2026: multiplicatorul \"0\" este gresit\r\n"
      "SEK din 13.03.2026: multiplicatorul \"1.5\" este gresit\r\n"
      "moneda fara cod din 13.03.2026: codul monedei este gresit\r\n"
      "EURO din 13.03.2026: codul monedei este gresit\r\n"
      "EUR din 13.03.2026: apare de doua ori in fisier\r\n"
      "ziua \"2026-02-30\" (cursuri: 2): data este gresita\r\n"
      "ziua \"\" (cursuri: 0): data este gresita\r\n"
      "ziua \"2062-03-13\" (cursuri: 1): data este in viitor\r\n",
      "Fisier BNR", platform::Icon::kExclamation);
  const BnrImport result = Import(Document(
      "<Cube date=\"2026-03-13\"><Rate currency=\"EUR\">4.9751</Rate><Rate currency=\"USD\">-</Rate>"
      "<Rate currency=\"GBP\">5,83</Rate><Rate currency=\"CHF\">0.00001</Rate><Rate "
      "currency=\"CZK\">1e300</Rate>"
      "<Rate currency=\"JPY\" multiplier=\"0\">3.1</Rate><Rate currency=\"SEK\" "
      "multiplier=\"1.5\">0.43</Rate><Rate>1</Rate><Rate currency=\"EURO\">4.9</Rate>"
      "<Rate currency=\"EUR\">4.98</Rate></Cube>"
      "<Cube date=\"2026-02-30\"><Rate currency=\"EUR\">4</Rate><Rate currency=\"USD\">4</Rate></Cube>"
      "<Cube/><Cube date=\"2062-03-13\"><Rate currency=\"EUR\">4</Rate></Cube>"));
  EXPECT_EQ(result.added, 1);
  EXPECT_EQ(Held("EUR", "2026-03-13"), "4.9751/1");
  EXPECT_EQ(at_.machine.errors.count(), 12);
}

TEST_F(BnrImportTest, OtherFilesAreRefusedWithTheirReason) {
  const struct {
    std::string content;
    const char* reason;
  } kCases[] = {
      {"", "nu este un fisier XML corect"},
      {"EUR;2026-03-13;4.9751;1", "nu este un fisier XML corect"},
      {Document(kTwoDays).substr(0, 250), "nu este un fisier XML corect"},
      {"<InsNomenclature/>", "elementul radacina este InsNomenclature"},
      {Document(kTwoDays, "http://www.ecb.int/vocabulary"), "elementul radacina este DataSet"},
      {"<DataSet xmlns=\"http://www.bnr.ro/xsd\"><Body><OrigCurrency>EUR</OrigCurrency></Body></DataSet>",
       "exprimate in EUR"},
      {Document("<Cube date=\"2026-03-13\"></Cube>"), "nu contine nici un curs"},
      {Document(""), "nu contine nici un curs"},
  };
  for (const auto& c : kCases) {
    ExpectRefusal();
    const BnrImport result = Import(c.content);
    EXPECT_EQ(result.outcome, BnrImport::Outcome::kRefused);
    EXPECT_THAT(result.error, HasSubstr(c.reason));
  }
  ExpectRefusal();
  at_.files().Remove(kPath);
  EXPECT_THAT(ImportBnrFile(at_.session, kPath).error, HasSubstr("curs.xml"));
  EXPECT_EQ(at_.Get("SELECT COUNT(*) FROM Rate_Schimb").ToInteger(), 0);
}

TEST_F(BnrImportTest, StoppingLeavesTheTableAsItWas) {
  at_.machine.progress.cancelled = true;
  EXPECT_EQ(Import(Document(kTwoDays)).outcome, BnrImport::Outcome::kStopped);
  at_.machine.progress.cancelled = false;
  EXPECT_EQ(at_.Get("SELECT COUNT(*) FROM Rate_Schimb").ToInteger(), 0);
  EXPECT_FALSE(at_.session.company.in_transaction());
  EXPECT_EQ(Import(Document(kTwoDays)).added, 3);
}

TEST_F(BnrImportTest, TakesTheBanksOwnFiles) {
  const std::filesystem::path folder = "../shared/reference/bnr";
  const std::filesystem::path home = std::filesystem::path(DECLARIX_SOURCE_DIR) / folder;
  if (!std::filesystem::exists(home)) GTEST_SKIP() << folder << " is not there";
  at_.machine.clock.Set({2026, 8, 6, 9, 0, 0});
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(home)) {
    std::ifstream in(entry.path(), std::ios::binary);
    const BnrImport result = Import(std::string(std::istreambuf_iterator<char>(in), {}));
    EXPECT_EQ(result.outcome, BnrImport::Outcome::kTaken) << entry.path();
    EXPECT_GE(result.added, 30) << entry.path();
    EXPECT_TRUE(result.refused.empty());
    ++files;
  }
  EXPECT_GT(files, 0);
  EXPECT_EQ(Held("HUF", "2024-11-15"), "1.2243/100");
  EXPECT_EQ(Held("AED", "2026-08-05"), "1.2383/1");
}

}  // namespace
}  // namespace calc
