#include "tariff/screens/versions.h"

#include <QLabel>
#include <QTimer>

#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"

namespace {

using test_support::Installation;
using test_support::ScreenFixture;

constexpr char kFile[] = "C:\\CN_2025.xml";
constexpr char kNomenclature[] =
    R"(<InsNomenclature><Version>2025</Version>
<Item><Code>I</Code><NameRo>SECTIUNEA I</NameRo><Level>1</Level></Item>
<Item><Code>01</Code><NameRo>CAPITOLUL 1</NameRo><Level>2</Level><parentCode>I</parentCode></Item>
<Item><Code>0101</Code><NameRo>Cai</NameRo><Level>4</Level><parentCode>01</parentCode></Item>
<Item><Code>01012100</Code><NameRo>De rasa</NameRo><Level>6</Level><RefCode>p/st</RefCode><parentCode>0101</parentCode></Item>
</InsNomenclature>)";

void Load(QWidget& screen, const QString& year = {}) {
  QTimer::singleShot(0, [&screen, year] {
    QWidget* form = QApplication::activeModalWidget();
    ASSERT_NE(form, nullptr);
    ScreenFixture::Click(*form, "CmdAlege");
    if (!year.isEmpty()) ScreenFixture::Type(*form, "TxtAnul", year);
    ScreenFixture::Click(*form, "CmdOK");
  });
  ScreenFixture::Click(screen, "CmdIncarca");
}

struct Versions {
  ScreenFixture at;
  tariff::Frm_Tarif_Versiuni screen{at.context, test_support::DataFolder(at.at.files()), nullptr,
                                    [] { return std::string(kFile); }};
  explicit Versions(Installation::State state = Installation::State::kCommonOpen) : at(state) {
    at.at.files().Replace(kFile, kNomenclature);
    screen.show();
  }
  std::string Row(int row) {
    std::string text;
    for (int i = 0; i < 7; ++i) text += screen.grid()->grid_model()->TextAt(row, i).toStdString() + "|";
    return text;
  }
  QString Status() { return at.Get<QLabel>(screen, "Stare").text(); }
};

TEST(Versions, LoadsAYearAndLaysItsRowOut) {
  Versions on;
  const int rows = on.screen.grid()->grid_model()->Rows();
  EXPECT_EQ(on.Row(rows - 1), "2026|1|||CN_2026.mdb|2026|in vigoare|");
  Load(on.screen);  // the year is in the file's name
  EXPECT_TRUE(on.screen.loaded());
  EXPECT_EQ(on.Status(), "CN_2025.mdb incarcat: 1 sectiuni, 1 capitole, 1 grupe, 1 HS6, 1 coduri (1 cu UM)");
  EXPECT_EQ(on.Row(on.screen.grid()->current_row()), "2025|1|2025|12|CN_2025.mdb|2025|inchis|");
  EXPECT_EQ(test_support::SharedMnemonics(on.screen), std::vector<std::string>());
}

TEST(Versions, AsksBeforeReplacingAndTellsOfAnotherVersion) {
  Versions on(Installation::State::kCompanyOpen);
  constexpr char kReplace[] =
      "Tariful anului 2026 exista: CN_2026.mdb\r\nIl inlocuiti cu cel din fisierul CN_2025.xml ?";
  on.at.at.prompter().ExpectQuestion(kReplace, "RASPUNDETI", platform::Icon::kQuestion, false);
  Load(on.screen, QStringLiteral("2026"));
  EXPECT_FALSE(on.screen.loaded());
  on.at.at.prompter().ExpectQuestion(kReplace, "RASPUNDETI", platform::Icon::kQuestion, true);
  constexpr char kOther[] =
      "Fisierul spune ca este versiunea 2025, nu 2026. Il incarcati ca tarif al anului 2026 ?";
  on.at.at.prompter().ExpectQuestion(kOther, "RASPUNDETI", platform::Icon::kQuestion, false);
  Load(on.screen, QStringLiteral("2026"));
  EXPECT_FALSE(on.screen.loaded());
  EXPECT_GT(on.at.at.Get("SELECT COUNT(*) FROM HS8").ToInteger(), 1);
  on.at.at.prompter().ExpectQuestion(kReplace, "RASPUNDETI", platform::Icon::kQuestion, true);
  on.at.at.prompter().ExpectQuestion(kOther, "RASPUNDETI", platform::Icon::kQuestion, true);
  Load(on.screen, QStringLiteral("2026"));
  EXPECT_TRUE(on.screen.loaded());
  // The tariff was open, and the company read its codes.
  EXPECT_EQ(on.at.at.Get("SELECT COUNT(*) FROM HS8").ToInteger(), 1);
  EXPECT_EQ(on.at.at.session.tariff.Query("SELECT * FROM HS_8").record_count(), 1);
}

TEST(Versions, ARefusedOrStoppedFileChangesNothing) {
  Versions on;
  const std::string before = on.Row(on.screen.grid()->grid_model()->Rows() - 1);
  on.at.at.machine.progress.cancelled = true;
  Load(on.screen, QStringLiteral("2030"));
  EXPECT_EQ(on.Status(), "Incarcare oprita; tarifele au ramas cum erau");
  EXPECT_FALSE(on.at.at.files().Exists(Installation::InDataBase("CN\\CN_2030.mdb")));
  on.at.at.machine.progress.cancelled = false;
  on.at.at.files().Replace(kFile, "nu e xml");
  on.at.at.prompter().ExpectStarting("Fisierul : C:\\CN_2025.xml nu poate fi incarcat: ", "EROARE",
                                     platform::Icon::kCritical);
  Load(on.screen, QStringLiteral("2030"));
  EXPECT_EQ(on.Row(on.screen.grid()->grid_model()->Rows() - 1), before);
}

}  // namespace
