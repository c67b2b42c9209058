#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QTimer>

#include "declarations/screens/declaration_list.h"
#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"

namespace declarations {
namespace {

using platform::Icon;
using test_support::ScreenFixture;

class ListScreenTest : public testing::Test {
 protected:
  ListScreenTest() {
    test_support::AddLine(session(), "I", 2025, 12, {{"Val_Fiscala", 1250.5}});
    test_support::AddLine(session(), "I", 2026, 1);
    test_support::AddLine(session(), "O", 2026, 1);
    test_support::AddLine(session(), "I", 2026, 1);
    Open();
  }
  void Open() {
    screen_ = std::make_unique<Frm_Intrastat_Lista>(
        on_.context,
        [this](const EditorOpening& opening, bool view, QWidget*) {
          opened_.push_back(opening.title + (view ? " [vizualizare]" : ""));
          if (while_open_) while_open_();
        },
        nullptr);
    screen_->show();
    QApplication::setActiveWindow(screen_.get());
  }
  session::Session& session() { return on_.at.session; }
  QString Cell(int row, int column) { return screen_->grid()->model()->index(row, column).data().toString(); }
  /// The current declaration, as "LIVRARE 2026 1".
  QString Current() {
    const int row = screen_->grid()->current_row();
    return row < 0 ? QString() : Cell(row, 0) + ' ' + Cell(row, 2) + ' ' + Cell(row, 3);
  }
  void Select(const QString& declaration) {
    for (int row = 0; row < screen_->grid()->model()->rowCount() && Current() != declaration; ++row) {
      screen_->grid()->SelectRow(row);
    }
    ASSERT_EQ(Current(), declaration);
  }
  QString Label(const char* name) { return ScreenFixture::Get<QLabel>(*screen_, name).text(); }
  void Press(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
    QTest::keyClick(screen_->grid(), key, with);
  }
  void Click(const char* name) { ScreenFixture::Click(*screen_, name); }

  ScreenFixture on_;
  std::unique_ptr<Frm_Intrastat_Lista> screen_;
  std::vector<std::string> opened_;
  std::function<void()> while_open_;
};

TEST_F(ListScreenTest, ShowsOneRowADeclarationWithCountAndTotal) {
  QStringList captions;
  for (int i = 0; i < screen_->grid()->model()->columnCount(); ++i) {
    captions << screen_->grid()->model()->headerData(i, Qt::Horizontal).toString();
  }
  EXPECT_EQ(captions.join('|'),
            "Sens|Tip declaratie|Anul|Luna|Valoare valuta|Valoare RON|Greutate Neta [Kg]|Pozitii");
  Select("LIVRARE 2026 1");
  EXPECT_EQ(screen_->grid()->grid_model()->PictureAt(screen_->grid()->current_row(), 0), "iesire-marfa");
  Select("ACHIZITIE 2025 12");
  EXPECT_EQ(screen_->grid()->grid_model()->PictureAt(screen_->grid()->current_row(), 0), "intrare");
  EXPECT_EQ(Cell(screen_->grid()->current_row(), 5), QLocale().toString(1250.5, 'f', 2));
  EXPECT_EQ(Label("Total"), "Inregistrari: 3");
  EXPECT_EQ(Label("Totaluri"), "Valoare RON " + QLocale().toString(1550.5, 'f', 2));
  EXPECT_THAT(test_support::SharedMnemonics(*screen_), testing::IsEmpty());
}

TEST_F(ListScreenTest, OpensTheSelectedOneAndComesBackToIt) {
  Click("CmdSortare");
  EXPECT_EQ(Cell(2, 3), "12") << "newest first";
  Select("ACHIZITIE 2025 12");
  while_open_ = [this] { test_support::AddLine(session(), "O", 2024, 5); };
  Press(Qt::Key_Return);
  EXPECT_EQ(Current(), "ACHIZITIE 2025 12");
  EXPECT_EQ(Label("Total"), "Inregistrari: 4") << "the editor's changes are seen";
  while_open_ = [this] { on_.at.Run("DELETE FROM Intrastat WHERE Anul=2025"); };
  Press(Qt::Key_F2);
  EXPECT_EQ(Label("Total"), "Inregistrari: 3");
  Select("LIVRARE 2026 1");
  Click("CmdVizualizare");
  EXPECT_THAT(opened_, testing::ElementsAre("Modificare Declaratie : I / 2025 / 12",
                                            "Modificare Declaratie : I / 2025 / 12",
                                            "Vizualizare Declaratie : O / 2026 / 1 [vizualizare]"));
  Open();
  EXPECT_EQ(Cell(0, 2), "2026") << "the order is remembered";
}

TEST_F(ListScreenTest, DeletesAfterAQuestionAndSaysWhenNothingIsSelected) {
  Select("ACHIZITIE 2026 1");
  on_.at.prompter().ExpectQuestion("STERGETI ACESTA DECLARATIE ?\r\nI - 2026 - 1", "RASPUNDETI",
                                   Icon::kQuestion, true);
  Press(Qt::Key_Delete);
  EXPECT_EQ(Label("Total"), "Inregistrari: 2");
  Select("LIVRARE 2026 1");

  on_.at.Run("DELETE FROM Intrastat");
  Press(Qt::Key_F5);
  EXPECT_EQ(Label("Total"), "Inregistrari: 0");
  for (const char* command : {"CmdModifica", "CmdVizualizare", "CmdTiparire", "CmdSterge"}) {
    on_.at.prompter().ExpectError("Selectati un document", "MESAJ");
    Click(command);
  }
  on_.at.prompter().ExpectInfo("Apasati butonul Genereaza fisier Intrastat. Stanga Sus");
  Click("CmdAjutor");
  EXPECT_TRUE(opened_.empty());
}

TEST_F(ListScreenTest, SearchesAndFiltersByAColumn) {
  Select("LIVRARE 2026 1");
  on_.at.prompter().ExpectError("Expresie de cautare  -  Obligatoriu de completat !");
  Click("CmdFiltrare");
  auto& column = ScreenFixture::Get<QComboBox>(*screen_, "CmbColoana");
  column.setCurrentText("Luna");
  ScreenFixture::Type(*screen_, "Txt_Expresie", "12");
  Click("CmdCautare");
  EXPECT_EQ(Current(), "ACHIZITIE 2025 12");
  column.setCurrentText("Sens");
  ScreenFixture::Type(*screen_, "Txt_Expresie", "achiz");
  Click("CmdCautare");
  const QString first = Current();
  Press(Qt::Key_F3);
  EXPECT_NE(Current(), first);
  EXPECT_TRUE(Current().startsWith("ACHIZITIE"));

  Click("CmdFiltrare");
  EXPECT_EQ(Label("Total"), "Inregistrari: 2");
  Press(Qt::Key_F5);
  EXPECT_EQ(Label("Total"), "Inregistrari: 2") << "reading again keeps the filter";
  EXPECT_EQ(Label("Totaluri"), "Valoare RON " + QLocale().toString(1450.5, 'f', 2));
  screen_->findChild<QAction*>("Menu_Tot")->trigger();
  EXPECT_EQ(Label("Total"), "Inregistrari: 3");

  // From the menu, the cell that it was opened on is what to look for.
  Select("LIVRARE 2026 1");
  screen_->grid()->setFocus();
  screen_->findChild<QAction*>("Menu_Filtrare")->trigger();
  QTest::keyClick(&ScreenFixture::Get<QLineEdit>(*screen_, "Txt_Expresie"), Qt::Key_Return);
  EXPECT_EQ(Label("Total"), "Inregistrari: 1");
  EXPECT_EQ(Current(), "LIVRARE 2026 1");
}

TEST_F(ListScreenTest, NamesANewDeclarationAndGoesToIt) {
  while_open_ = [this] { test_support::AddLine(session(), "I", 2026, 2); };
  QTimer::singleShot(0, [] {
    QWidget* dialog = QApplication::activeModalWidget();
    ASSERT_NE(dialog, nullptr);
    ScreenFixture::Click(*dialog, "CmdOK");  // last month, arrivals
  });
  Press(Qt::Key_N, Qt::ControlModifier);
  EXPECT_THAT(opened_, testing::ElementsAre("Adauga Declaratie : I - 2026 / 2"));
  EXPECT_EQ(Current(), "ACHIZITIE 2026 2");
}

TEST_F(ListScreenTest, PreviewsTheSelectedDeclarationAsTheCompanyFilesIt) {
  session().common.Execute("UPDATE Firme SET XML_Detaliat=TRUE WHERE Cod_Fiscal='RO123456'");
  QString title, kind;
  QTimer::singleShot(0, [&] {
    QWidget* preview = QApplication::activeModalWidget();
    ASSERT_NE(preview, nullptr);
    title = preview->windowTitle();
    kind = ScreenFixture::Get<QComboBox>(*preview, "Combo_Raport").currentText();
    preview->close();
  });
  ScreenFixture::Click(*screen_, "CmdTiparire");
  EXPECT_TRUE(title.startsWith("DECLARATIE INTRASTAT - ")) << title.toStdString();
  EXPECT_EQ(kind, "Linie cu linie");
}

}  // namespace
}  // namespace declarations
