#include <QLabel>
#include <QMimeData>
#include <QTimer>

#include "import/screens/import_screen.h"
#include "import/screens/rejected_rows.h"
#include "import/screens/template_editor.h"
#include "import/screens/template_list.h"
#include "import/screens/template_models.h"
#include "import/template_rows.h"
#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "support/xls_writer.h"
#include "ui/grid.h"

namespace importer {
namespace {

using platform::Icon;
using test_support::ScreenFixture;

/// Works with the delivered sample of arrivals; numbers have the decimal comma on screen.
struct ImportScreens : testing::Test {
  ScreenFixture at;
  const std::string sample = fmt::format("{}samples\\achizitii.xls", test_support::DataFolder(at.at.files()));
  std::string chosen = sample, folder;
  FileChooser chooser = [this](std::string_view start) {
    folder = start;
    return chosen;
  };

  void Show(QWidget& screen) {
    screen.show();
    screen.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&screen));
  }
  static ui::Grid& GridOf(QWidget& screen, const char* name) {
    return ScreenFixture::Get<ui::Grid>(screen, name);
  }
  static QString Label(QWidget& screen, const char* name) {
    return ScreenFixture::Get<QLabel>(screen, name).text();
  }
  static int RowOf(QWidget& screen, const QString& description) {
    const ui::GridModel& rows = *GridOf(screen, "GridColoane").grid_model();
    for (int row = 0; row < rows.Rows(); ++row) {
      if (rows.TextAt(row, 0) == description) return row;
    }
    throw std::runtime_error("no row " + description.toStdString());
  }
  static QString Cell(QWidget& screen, const QString& description, int column) {
    return GridOf(screen, "GridColoane").grid_model()->TextAt(RowOf(screen, description), column);
  }
  static void ClickCell(ui::Grid& grid, int row, int column) {
    const QPoint place = grid.visualRect(grid.grid_model()->index(row, column)).center();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, place);
  }
  /// A template of the sample, its columns by proposal.
  void MakeTemplate() {
    TemplateDraft draft(at.at.session);
    draft.header = {"Furnizor", "ACHIZITIE", "", "Achizitii", sample};
    ASSERT_TRUE(draft.Save());
    draft.Propose(ReadSample(at.at.session, sample, "Achizitii")->columns);
    ASSERT_TRUE(draft.Save());
  }
  void InModal(const std::function<void()>& open, const std::function<void(QWidget&)>& drive) {
    bool driven = false;
    QTimer::singleShot(0, [&] {
      QWidget* window = QApplication::activeModalWidget();
      ASSERT_NE(window, nullptr);
      drive(*window);
      driven = true;
      window->close();
    });
    open();
    EXPECT_TRUE(driven);
  }
};

TEST_F(ImportScreens, MapsAWorksheetNeverSeenBefore) {
  Frm_Macheta editor(at.context, "", nullptr, chooser);
  Show(editor);
  EXPECT_TRUE(test_support::SharedMnemonics(editor).empty());
  at.at.prompter().ExpectError("Nume Macheta  -  Obligatoriu de completat !");
  at.at.prompter().ExpectError("Se foloseste la  -  Obligatoriu de completat !");
  at.Click(editor, "CmdOK");
  EXPECT_EQ(editor.focusWidget()->objectName(), "Nume_Structura");
  at.Type(editor, "Nume_Structura", "Furnizor");
  at.Get<QComboBox>(editor, "TIP").setCurrentText("ACHIZITIE");
  at.Click(editor, "CmdFisier");
  EXPECT_EQ(editor.Text("Work_Sheet_Name"), "Achizitii") << "the only sheet there is";
  EXPECT_EQ(Label(editor, "LblColoane"), "Numar coloane in fisierul excel : 18");
  const ui::GridModel& columns = *GridOf(editor, "GridExemplu").grid_model();
  EXPECT_EQ(columns.TextAt(8, 0) + '|' + columns.TextAt(8, 1) + '|' + columns.TextAt(8, 2), "9|Moneda|EUR");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(columns.headerData(i, Qt::Horizontal, Qt::DisplayRole), QString(kSampleHeadings[i]));
  }
  at.Click(editor, "CmdPropune");  // the rows come with the first saving, which this begins with
  EXPECT_EQ(editor.windowTitle(), "Modificare Macheta - Furnizor");
  const ui::GridModel& rows = *GridOf(editor, "GridColoane").grid_model();
  EXPECT_GT(rows.Rows(), 20);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(rows.headerData(i, Qt::Horizontal, Qt::DisplayRole).toString().replace('\n', ' '),
              kRowHeadings[i]);
  }
  EXPECT_EQ(Cell(editor, "Cod vamal", 2), "4");
  EXPECT_EQ(Cell(editor, "Tara Origine", 2), "11");
  GridOf(editor, "GridColoane").Store(RowOf(editor, "Mod transp"), TemplateRowModel::kDefault, "3");
  EXPECT_EQ(columns.PictureAt(3, 0), "verifica");
  EXPECT_EQ(columns.PictureAt(0, 0), "") << "the running number is of no use";
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return Label(editor, "LblPrevizualizare").startsWith("Primele 20 linii"); }));
  EXPECT_TRUE(Label(editor, "LblPrevizualizare").endsWith("Valoare Fiscala (13), Cond livrare (2)"))
      << Label(editor, "LblPrevizualizare").toStdString();
  const ui::GridModel* lines = GridOf(editor, "GridPrevizualizare").grid_model();
  EXPECT_EQ(lines->TextAt(0, 0), "2");
  EXPECT_EQ(lines->TextAt(0, lines->ColumnOf("Cod_NC")), "84713000");
  EXPECT_EQ(lines->ProblemAt(0, lines->ColumnOf("Cod_NC")), "");
  GridOf(editor, "GridColoane").Store(RowOf(editor, "Mod transp"), TemplateRowModel::kDefault, "Q");
  EXPECT_TRUE(QTest::qWaitFor([&] {
    lines = GridOf(editor, "GridPrevizualizare").grid_model();
    return lines->ProblemAt(0, lines->ColumnOf("Mod_Transp")) == "Mod transp: cod necunoscut: Q";
  }));
  EXPECT_TRUE(lines->ProblemAt(0, -1).contains("cod necunoscut: Q"));

  at.at.prompter().ExpectQuestion("Datele modificate nu au fost salvate. Inchideti fara salvare ?",
                                  "RASPUNDETI", Icon::kQuestion, false);
  at.Click(editor, "CmdRenunt");
  EXPECT_TRUE(editor.isVisible());
  GridOf(editor, "GridColoane").Store(RowOf(editor, "Mod transp"), TemplateRowModel::kDefault, "3");
  at.Click(editor, "CmdOK");
  at.Click(editor, "CmdRenunt");
  EXPECT_FALSE(editor.isVisible());
  EXPECT_EQ(
      at.at.Get("SELECT Numar_Coloana FROM StructuraFisiereContinut WHERE Dest_ColumnName='Net'").ToInteger(),
      13);
}

TEST_F(ImportScreens, GivesColumnsByClickKeyAndDrag) {
  MakeTemplate();
  Frm_Macheta editor(at.context, "Furnizor", nullptr, chooser);
  Show(editor);
  ui::Grid& rows = GridOf(editor, "GridColoane");
  ui::Grid& columns = GridOf(editor, "GridExemplu");
  rows.SelectRow(0, 0);
  ClickCell(columns, 6, 1);  // column 7
  ClickCell(rows, 1, TemplateRowModel::kNumber);
  EXPECT_EQ(rows.grid_model()->TextAt(1, 2), "7");
  ClickCell(columns, 7, 1);
  QTest::keyClick(&columns, Qt::Key_Escape);
  EXPECT_TRUE(editor.isVisible()) << "it only gives up the column";
  ClickCell(rows, 1, 0);
  EXPECT_EQ(rows.grid_model()->TextAt(1, 2), "7");
  columns.SelectRow(8, 0);
  QTest::keyClick(&columns, Qt::Key_Return);
  EXPECT_EQ(rows.grid_model()->TextAt(1, 2), "9");
  EXPECT_EQ(rows.current_row(), 2) << "ready for the next";

  const std::unique_ptr<QMimeData> data(columns.model()->mimeData({columns.model()->index(9, 1)}));
  const QPoint place = rows.visualRect(rows.model()->index(3, 0)).center();
  QDragEnterEvent enter(place, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(rows.viewport(), &enter);
  QDropEvent drop(place, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(rows.viewport(), &drop);
  EXPECT_EQ(rows.grid_model()->TextAt(3, 2), "10");

  const int transport = RowOf(editor, "Mod transp");
  at.at.prompter().ExpectError("Bifati coloana: Exista in fisierul excel");
  EXPECT_FALSE(rows.Store(transport, TemplateRowModel::kNumber, "5"));
  at.at.prompter().ExpectError("Selectati o valoare din lista", "Mesaj");
  EXPECT_FALSE(rows.Store(transport, TemplateRowModel::kFormat, "NUMAR"));
  rows.Store(transport, TemplateRowModel::kPresent, "1");
  EXPECT_NE(rows.grid_model()->ProblemAt(transport, -1), "");
  at.at.prompter().ExpectError("Numar coloana fisier excel  -  Obligatoriu de completat !");
  at.Click(editor, "CmdOK");
  EXPECT_EQ(rows.current_row(), transport);
  at.at.prompter().ExpectQuestion("Stergeti inregistrarea ?", "RASPUNDETI", Icon::kQuestion, true);
  at.Click(editor, "CmdSterge");
  at.Click(editor, "CmdOK");
  EXPECT_EQ(at.at.Get("SELECT COUNT(*) FROM StructuraFisiereContinut WHERE Dest_ColumnName='Mod_Transp'")
                .ToInteger(),
            0);
}

TEST_F(ImportScreens, SaysWhatIsWrongWithASample) {
  MakeTemplate();
  Frm_Macheta editor(at.context, "Furnizor", nullptr, chooser);
  Show(editor);
  at.Type(editor, "SampleExcelFile", "C:\\Foi\\lipsa.xls");
  at.at.prompter().ExpectError("NU EXISTA FISIERUL : C:\\Foi\\lipsa.xls");
  at.Click(editor, "CmdCiteste");
  EXPECT_EQ(GridOf(editor, "GridExemplu").grid_model()->Rows(), 0);
  EXPECT_FALSE(at.Get<QPushButton>(editor, "CmdPropune").isEnabled());
  at.Type(editor, "SampleExcelFile", "C:\\Foi\\alt.xls");
  QTest::keyClick(editor.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(Label(editor, "LblColoane"), "NU EXISTA FISIERUL : C:\\Foi\\alt.xls") << "no box while typing";
  at.at.files().CreateFolders("C:\\Foi\\");
  at.at.files().Replace("C:\\Foi\\text.xls", "nu este o foaie");
  chosen = "C:\\Foi\\text.xls";
  at.at.prompter().ExpectStarting("Fisierul C:\\Foi\\text.xls", "EROARE", Icon::kCritical);
  at.Click(editor, "CmdFisier");
  EXPECT_TRUE(Label(editor, "LblPrevizualizare").contains("text.xls"));
  at.at.prompter().AcceptAnything(true);
}

TEST_F(ImportScreens, ReadsASampleWhosePathIsTyped) {
  test_support::XlsWriter book;
  book.AddSheet("Martie").Row(0, "'Cod vamal|'Kg net");
  book.AddSheet("Aprilie").Row(0, "'Cod");
  at.at.files().CreateFolders("C:\\Foi\\");
  book.Save(at.at.files().ToHost("C:\\Foi\\luni.xls").string());
  Frm_Macheta editor(at.context, "", nullptr, chooser);
  Show(editor);
  EXPECT_EQ(editor.Text("Work_Sheet_Name"), "Sheet1") << "offered";
  at.Type(editor, "SampleExcelFile", "\"C:\\Foi\\luni.xls\"");
  EXPECT_EQ(GridOf(editor, "GridExemplu").grid_model()->Rows(), 0);
  QTest::keyClick(editor.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(editor.Text("SampleExcelFile"), "C:\\Foi\\luni.xls");
  EXPECT_EQ(editor.Text("Locatie_Implicita"), "C:\\Foi\\");
  EXPECT_EQ(editor.Text("Work_Sheet_Name"), "Martie");
  EXPECT_EQ(Label(editor, "LblColoane"), "Numar coloane in fisierul excel : 2");
  at.Type(editor, "Work_Sheet_Name", "aprilie");
  QTest::keyClick(editor.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(Label(editor, "LblColoane"), "Numar coloane in fisierul excel : 1");
  at.at.prompter().AcceptAnything(true);
}

TEST_F(ImportScreens, OffersXlsFilesFirst) {
  EXPECT_EQ(DialogFilter(kWorksheetFilter), "Excel Files (*.xls);;Foi de calcul (*.xls *.xlsx *.ods *.csv)");
}

TEST_F(ImportScreens, ChoosesATemplate) {
  MakeTemplate();
  {
    Frm_Machete chooser_screen(at.context, Frm_Machete::Purpose::kModify, nullptr, chooser);
    Show(chooser_screen);
    EXPECT_EQ(chooser_screen.grid()->grid_model()->headerData(0, Qt::Horizontal, Qt::DisplayRole), "Nume");
    EXPECT_EQ(chooser_screen.grid()->grid_model()->headerData(1, Qt::Horizontal, Qt::DisplayRole), "TIP");
    InModal([&] { QTest::keyClick(chooser_screen.grid(), Qt::Key_Return); },
            [&](QWidget& editor) { EXPECT_EQ(editor.windowTitle(), "Modificare Macheta - Furnizor"); });
  }
  Frm_Machete chooser_screen(at.context, Frm_Machete::Purpose::kDelete, nullptr, chooser);
  Show(chooser_screen);
  at.at.prompter().ExpectQuestion("Stergeti modul de preluare ? Furnizor", "CONFIRMARE STERGERE",
                                  Icon::kQuestion, true);
  at.at.prompter().ExpectInfo("Macheta a fost stearsa");
  QTest::keyClick(chooser_screen.grid(), Qt::Key_Return);
  EXPECT_EQ(chooser_screen.grid()->grid_model()->Rows(), 0);
}

TEST_F(ImportScreens, TakesAWorksheetOver) {
  MakeTemplate();
  std::vector<declarations::Identity> opened;
  Frm_Preluare screen(
      at.context, [&](const declarations::Identity& identity, QWidget*) { opened.push_back(identity); },
      nullptr, chooser);
  Show(screen);
  EXPECT_TRUE(test_support::SharedMnemonics(screen).empty());
  EXPECT_EQ(screen.Text("Anul") + screen.Text("Luna"), "20262") << "the month before";
  EXPECT_EQ(screen.Text("Nume_Macheta"), "Furnizor") << "the only one";
  EXPECT_EQ(screen.Text("Sheet_Name"), "Achizitii");
  EXPECT_EQ(screen.Text("Tip_Operatiune"), "I-ACHIZITIE");
  at.Get<QComboBox>(screen, "Luna").setCurrentText("3");
  EXPECT_FALSE(at.Get<QPushButton>(screen, "CmdDeclaratie").isEnabled());
  at.Click(screen, "CmdFisier");
  EXPECT_EQ(screen.Text("Nume_Fisier"), ui::Q(sample));
  at.at.prompter().ExpectInfo("Au fost preluate : 36 inregistrari din totalul de : 36", "Preluare Terminata");
  at.Click(screen, "CmdOK");
  EXPECT_EQ(Label(screen, "Stare"), "OPERATIE TERMINATA . . .   Preluate: 36 din 36.");
  QTest::keyClick(screen.focusWidget(), Qt::Key_Return);
  ASSERT_EQ(opened.size(), 1U);
  EXPECT_EQ(opened[0].TIP + opened[0].Cod_Fiscal, "IRO123456");
  EXPECT_EQ(opened[0].Luna, 3);

  at.at.prompter().ExpectQuestion(fmt::format("Fisierul : {}\r\nA MAI FOST PRELUAT, CONTINUATI ?", sample),
                                  "RASPUNDETI", Icon::kQuestion, false);
  at.Click(screen, "CmdOK");
  at.at.prompter().ExpectQuestion(fmt::format("Fisierul : {}\r\nA MAI FOST PRELUAT, CONTINUATI ?", sample),
                                  "RASPUNDETI", Icon::kQuestion, true);
  at.at.prompter().ExpectMessage("Preluarea a fost oprita, nu s-a retinut nicio inregistrare", "MESAJ",
                                 Icon::kExclamation);
  at.at.machine.progress.cancelled = true;
  at.Click(screen, "CmdOK");
  EXPECT_EQ(at.at.Get("SELECT COUNT(*) FROM Intrastat").ToInteger(), 36)
      << "nothing of a stopped run is left";
}

TEST_F(ImportScreens, AsksForWhatIsMissing) {
  Frm_Preluare screen(at.context, {}, nullptr, chooser);
  Show(screen);
  at.Get<QLineEdit>(screen, "Anul").clear();
  at.Get<QComboBox>(screen, "Luna").setCurrentIndex(-1);
  for (const char* label : {"Anul", "Luna", "Nume fisier", "Sheet Name", "Nume Macheta", "Tip Operatiune"}) {
    at.at.prompter().ExpectError(fmt::format("{}  -  Obligatoriu de completat !", label));
  }
  at.Click(screen, "CmdOK");
  EXPECT_EQ(screen.focusWidget()->objectName(), "Anul");

  at.Click(screen, "CmdFisier");
  at.Get<QComboBox>(screen, "Tip_Operatiune").setCurrentText("I-ACHIZITIE");
  InModal([&] { at.Click(screen, "CmdMachetaNoua"); },
          [&](QWidget& editor) {
            at.Type(editor, "Nume_Structura", "Noua");
            at.Click(editor, "CmdOK");
            EXPECT_EQ(Label(editor, "LblColoane"), "Numar coloane in fisierul excel : 18");
          });
  EXPECT_EQ(screen.Text("Nume_Macheta"), "Noua");
  EXPECT_EQ(screen.Text("Sheet_Name"), "Achizitii");
}

TEST_F(ImportScreens, ListsTheRowsThatWereRefused) {
  test_support::XlsWriter book;
  auto& sheet = book.AddSheet("Sheet1");
  sheet.Row(0, "'Cod vamal|'Kg net|'Valoare lei");
  sheet.Row(1, "'84713000|'mult|=5");
  sheet.Row(2, "'84713000|=2|=5");
  at.at.files().CreateFolders("C:\\Foi\\");
  chosen = "C:\\Foi\\martie.xls";
  book.Save(at.at.files().ToHost(chosen).string());
  TemplateDraft draft(at.at.session);
  draft.header = {"Mica", "LIVRARE", "C:\\Foi\\", "", chosen};
  ASSERT_TRUE(draft.Save());
  draft.Propose(ReadSample(at.at.session, chosen, "")->columns);
  ASSERT_TRUE(draft.Save());

  Frm_Preluare screen(at.context, {}, nullptr, chooser);
  Show(screen);
  at.Click(screen, "CmdFisier");
  EXPECT_EQ(folder, "C:\\Foi\\") << "the template's";
  EXPECT_EQ(screen.Text("Tip_Operatiune"), "O-LIVRARE");
  at.at.prompter().ExpectInfo("Au fost preluate : 1 inregistrari din totalul de : 2", "Preluare Terminata");
  InModal([&] { at.Click(screen, "CmdOK"); },
          [&](QWidget& list) {
            EXPECT_EQ(list.objectName(), "Frm_Preluare_Respinse");
            const ui::GridModel& rows = *GridOf(list, "Grid").grid_model();
            ASSERT_EQ(rows.Rows(), 1);
            EXPECT_EQ(rows.TextAt(0, 0) + '|' + rows.TextAt(0, 1), "2|Net [Kg]");
            EXPECT_NE(rows.TextAt(0, 2), "");
          });
  EXPECT_TRUE(at.Get<QPushButton>(screen, "CmdRespinse").isEnabled());

  Show(screen);
  at.Type(screen, "Nume_Fisier", "C:\\Foi\\lipsa.xls");
  QTest::keyClick(screen.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(Label(screen, "Stare"), "Nu exista fisierul : C:\\Foi\\lipsa.xls");
  at.Type(screen, "Nume_Fisier", ui::Q(sample));
  QTest::keyClick(screen.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(Label(screen, "Stare"), "");
  EXPECT_EQ(screen.Text("Sheet_Name"), "Achizitii") << "the only one of the file";
  at.Click(screen, "CmdFisier");
  EXPECT_EQ(screen.Text("Sheet_Name"), "Sheet1");
  draft.Assign(0, 9);
  ASSERT_TRUE(draft.Save());
  at.at.prompter().AcceptAnything(true);
  at.Click(screen, "CmdOK");
  EXPECT_EQ(Label(screen, "Stare"),
            "EROARE - Fisierul Excel NU poate fi citit, verificati macheta de preluare");
  EXPECT_TRUE(
      ui::Q(at.at.prompter().seen().back()).contains("are numarul 9, iar foaia Sheet1 are 3 coloane"));
  EXPECT_FALSE(at.Get<QPushButton>(screen, "CmdRespinse").isEnabled());
}

}  // namespace
}  // namespace importer
