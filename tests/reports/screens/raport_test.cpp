#include "reports/screens/raport.h"

#include <gmock/gmock.h>

#include <QProcess>
#include <QScrollBar>
#include <QSpinBox>
#include <QTimer>
#include <set>

#include "reports/screens/page_view.h"
#include "support/qt/mnemonics.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"
#include "tariff/screens/reference_list.h"

namespace reports {
namespace {

using test_support::Installation;
using test_support::ScreenFixture;
using testing::HasSubstr;

/// A host program's output; empty where it is not there.
std::string Output(const char* program, const QStringList& arguments) {
  QProcess process;
  process.start(QString::fromLatin1(program), arguments);
  return process.waitForFinished() ? process.readAllStandardOutput().toStdString() : "";
}

struct Raport : testing::Test, ScreenFixture {
  void AddLines(int count) {
    store::Transaction lines(at.session.company);
    for (int i = 0; i < count; ++i) {
      test_support::AddLine(at.session, "I", 2026, 3,
                            {{"Val_Fiscala", 100.25}, {"Factura_Numar", fmt::format("F{}", i / 10)}});
    }
    lines.Commit();
  }
  Subject Declaration(const char* report) {
    Subject subject;
    subject.report = report;
    subject.placeholders = DeclarationPlaceholders(at.session, {"I", Installation::kCompany, 2026, 3});
    return subject;
  }
  QString Host(const char* path) { return QString::fromStdString(at.machine.files.ToHost(path).string()); }
  static int Page(QWidget& screen) { return Get<QSpinBox>(screen, "Txt_Pagina").value(); }
};

TEST_F(Raport, ShowsTheFirstPageAtOnceAndGoesThroughThePages) {
  AddLines(400);
  Frm_Raport screen(context, Declaration(kDetailed), nullptr);
  EXPECT_EQ(screen.layout_of_pages().page_count(), 1);
  screen.show();
  EXPECT_THAT(test_support::SharedMnemonics(screen), testing::IsEmpty());
  ASSERT_TRUE(QTest::qWaitFor([&] { return screen.layout_of_pages().complete(); }));
  const int pages = screen.layout_of_pages().page_count();
  ASSERT_GT(pages, 5);
  EXPECT_EQ(Get<QLabel>(screen, "LblPagini").text(), QStringLiteral("/ %1").arg(pages));
  // A page is read to its end before the next one; nothing of it is passed over.
  QScrollBar& bar = *screen.view()->verticalScrollBar();
  std::set<int> read;
  for (int before = -1; bar.value() != before;) {
    read.insert(Page(screen));
    before = bar.value();
    QTest::keyClick(screen.view(), Qt::Key_PageDown);
    ASSERT_LE(bar.value() - before, screen.view()->viewport()->height());
  }
  EXPECT_EQ(static_cast<int>(read.size()), pages);
  EXPECT_EQ(bar.value(), bar.maximum());
  QTest::keyClick(screen.view(), Qt::Key_Home);
  QTest::keyClick(screen.view(), Qt::Key_PageDown, Qt::ControlModifier);
  EXPECT_EQ(Page(screen), 2);
  QTest::keyClick(&Get<QPushButton>(screen, "CmdPdf"), Qt::Key_End);
  EXPECT_EQ(Page(screen), pages);
  EXPECT_FALSE(Get<QPushButton>(screen, "CmdUltima").isEnabled());
  Click(screen, "CmdPrima");
  EXPECT_EQ(Page(screen), 1);
  Get<QSpinBox>(screen, "Txt_Pagina").setValue(4);
  EXPECT_EQ(screen.view()->current_page(), 3);
  // The place stays while the size changes.
  const double fitted = screen.view()->percent();
  Click(screen, "CmdMareste");
  EXPECT_GT(screen.view()->percent(), fitted);
  EXPECT_EQ(Page(screen), 4);
  EXPECT_EQ(screen.view()->Find("total (400)"), PageView::Found::kFound);
  EXPECT_EQ(Page(screen), pages);
  EXPECT_EQ(screen.view()->Find("total (400)"), PageView::Found::kFromOtherEnd);
  EXPECT_EQ(screen.view()->Find("nicaieri"), PageView::Found::kNot);
  Get<QComboBox>(screen, "Combo_Orientare").setCurrentIndex(0);
  Q_EMIT Get<QComboBox>(screen, "Combo_Orientare").activated(0);
  EXPECT_LT(screen.layout_of_pages().page().width, 600);
}

TEST_F(Raport, AFamilyOffersItsOtherReports) {
  AddLines(30);
  Frm_Raport screen(context, Declaration(kAggregated), nullptr);
  auto& choice = Get<QComboBox>(screen, "Combo_Raport");
  ASSERT_EQ(choice.count(), 4);
  EXPECT_EQ(choice.currentText(), "Agregat, ca in fisier");
  choice.setCurrentIndex(choice.findText("Pe facturi"));
  Q_EMIT choice.activated(choice.currentIndex());
  EXPECT_THAT(screen.windowTitle().toStdString(), HasSubstr("PE FACTURI - ACHIZITIE 2026 / 3"));
  int groups = 0;
  for (const Band& band : screen.report().bands()) groups += band.kind == Band::Kind::kGroupTotal;
  EXPECT_EQ(groups, 3);
}

TEST_F(Raport, WritesPdfHtmlAndSpreadsheet) {
  AddLines(120);
  Frm_Raport screen(context, Declaration(kDetailed), nullptr);
  ASSERT_TRUE(screen.WritePdf("C:\\Declarix\\r.pdf"));
  const std::string info = Output("pdfinfo", {Host("C:\\Declarix\\r.pdf")});
  EXPECT_THAT(info, HasSubstr(fmt::format("Pages:           {}\n", screen.layout_of_pages().page_count())));
  EXPECT_THAT(Output("pdftotext", {"-layout", Host("C:\\Declarix\\r.pdf"), "-"}),
              testing::AllOf(HasSubstr("DECLARATIE INTRASTAT - ACHIZITIE 2026 / 3"), HasSubstr("12.030,00"),
                             HasSubstr(fmt::format("Pagina 2 / {}", screen.layout_of_pages().page_count()))));
  ASSERT_TRUE(screen.WriteHtml("C:\\Declarix\\r.html"));
  EXPECT_THAT(at.files().Read("C:\\Declarix\\r.html"),
              HasSubstr("TOTAL (120)</td><td class=\"r\">12.030,00"));
  ASSERT_TRUE(screen.WriteXlsx("C:\\Declarix\\r.xlsx"));
  const std::string sheet = Output("unzip", {"-p", Host("C:\\Declarix\\r.xlsx"), "xl/worksheets/sheet1.xml"});
  EXPECT_THAT(sheet, HasSubstr("<v>100.25</v>"));
  EXPECT_THAT(sheet, HasSubstr("<f>SUBTOTAL(9,G5:G124)</f><v>12030</v>"));
}

TEST_F(Raport, NumbersWithoutAFormatStayNumbers) {
  AddLines(1);
  ui::RecordsetModel model(
      {{.field = "Treime", .caption = QStringLiteral("Treime"), .format = ui::Format::kNumber}},
      at.session.company.Query("SELECT Val_Fiscala/4 AS Treime FROM Intrastat"));
  const ui::GridContent content{&model, {0}, QStringLiteral("Interogare")};
  Frm_Raport screen(context, SubjectOf(at.session, content), nullptr);
  EXPECT_EQ(screen.report().columns()[0].alignment, Alignment::kRight);
  ASSERT_TRUE(screen.WriteXlsx("C:\\Declarix\\r.xlsx"));
  EXPECT_THAT(Output("unzip", {"-p", Host("C:\\Declarix\\r.xlsx"), "xl/worksheets/sheet1.xml"}),
              HasSubstr("<v>25.0625</v>"));
}

TEST_F(Raport, FailingAndCancelledExportsLeaveTheEarlierFile) {
  static constexpr char kPath[] = "C:\\Declarix\\r.out";
  AddLines(2);
  Frm_Raport screen(context, Declaration(kDetailed), nullptr);
  at.files().Replace(kPath, "vechi");
  at.machine.progress.cancelled = true;
  for (int i = 0; i < 3; ++i) at.prompter().ExpectInfo("Exportul a fost oprit; fisierul nu a fost scris");
  EXPECT_FALSE(screen.WritePdf(kPath));
  EXPECT_FALSE(screen.WriteHtml(kPath));
  EXPECT_FALSE(screen.WriteXlsx(kPath));
  at.machine.progress.cancelled = false;
  at.files().refuses = [](std::string_view path) { return path == kPath; };
  at.prompter().AcceptAnything(true);
  EXPECT_FALSE(screen.WritePdf(kPath));
  EXPECT_FALSE(screen.WriteHtml(kPath));
  EXPECT_FALSE(screen.WriteXlsx(kPath));
  EXPECT_THAT(at.prompter().seen().back(), HasSubstr(kPath));
  EXPECT_EQ(at.files().Read(kPath), "vechi");
}

TEST_F(Raport, FindsTextsThatAreWrappedBothWays) {
  std::vector<std::vector<store::Value>> rows;
  for (int i = 0; i < 200; ++i) {
    rows.push_back(
        {i, i % 100 == 50 ? "o descriere destul de lunga ca sa treaca pe randul urmator" : "scurt"});
  }
  Subject subject;
  subject.title = "Lista";
  subject.rows = std::make_shared<MemoryTable>(
      std::vector<Table::Column>{{"Nr", "Nr", Format::kNumber}, {"Text", "Text"}}, std::move(rows));
  at.files().Replace(at.session.settings.ReportDefinitionPath + "UE_Reports.xml",
                     "<Reports><Report Id=\"L\" Title=\"Lista\" Orientation=\"Portrait\"><Column "
                     "Field=\"Nr\"/><Column Field=\"Text\" Width=\"12\"/><Column Field=\"Text\" "
                     "Width=\"400\" Caption=\"" +
                         std::string(120, 'x') + "\"/></Report></Reports>");
  Frm_Raport screen(context, subject, nullptr);
  screen.show();
  PageView& view = *screen.view();
  const QString text = "destul de lunga ca sa treaca pe randul";
  ASSERT_EQ(view.Find(text), PageView::Found::kFound);
  const int first = view.current_page();
  while (view.Find(text) == PageView::Found::kFound) continue;
  EXPECT_EQ(view.current_page(), first) << "round again";
  EXPECT_EQ(view.Find(text, -1), PageView::Found::kFromOtherEnd);
  EXPECT_GT(view.current_page(), first);
}

TEST_F(Raport, AWrongDefinitionIsToldAndTheListIsPrintedAsItStands) {
  const std::string file = at.session.settings.ReportDefinitionPath + "UE_Reports.xml";
  tariff::Frm_Tabel list(context, {"SELECT [Tara_COD], [Tara_DESC] FROM Tari", "TARI -", {"COD", "TARA"}});
  context.preview_list = [this](const ui::GridContent& content, QWidget* parent) {
    PreviewList(context, content, parent);
  };
  list.show();
  at.prompter().AcceptAnything(true);
  const auto print = [&] {
    QString title;
    QTimer::singleShot(0, [&] {
      QWidget* preview = QApplication::activeModalWidget();
      ASSERT_NE(preview, nullptr);
      title = preview->windowTitle();
      QTest::keyClick(preview, Qt::Key_Escape);
    });
    Click(list, "CmdTiparire");
    EXPECT_EQ(title, "REPORT - TARI -");
  };
  at.files().Replace(file, "<Reports>\r\n<Report Id=\"X\"");
  print();
  EXPECT_THAT(at.prompter().seen().back(), HasSubstr(file + " nu este un XML corect: linia 2, "));
  at.files().Replace(
      file,
      "<Reports>\n\n<Report Id=\"X\" Title=\"REPORT - TARI -\"><Column Field=\"Lipsa\"/></Report></Reports>");
  print();
  EXPECT_THAT(at.prompter().seen().back(), HasSubstr("linia 3, raportul X: coloana Lipsa nu exista"));
  const std::size_t told = at.prompter().seen().size();
  PreviewDeclaration(context, {"I", Installation::kCompany, 2026, 3}, true, &list);
  EXPECT_THAT(at.prompter().seen().back(), HasSubstr("nu are raportul Declaratie_Detaliat"));
  at.files().Replace(file, "<Reports/>");  // a list needs no report of its own
  print();
  EXPECT_EQ(at.prompter().seen().size(), told + 1);
}

TEST_F(Raport, ProblemsCarryTheirLinesInvoices) {
  AddLines(1);
  const std::int64_t id = at.Get("SELECT Record_ID FROM Intrastat").ToInteger();
  const declarations::LineProblems problems(
      fmt::format("Pozitia: {} - Tara_Exp = XX ===> NU EXISTA\r\nPozitia: 999 - Net = 0\r\n", id));
  std::string html;
  QTimer::singleShot(0, [&] {
    auto* preview = qobject_cast<Frm_Raport*>(QApplication::activeModalWidget());
    ASSERT_NE(preview, nullptr);
    for (const Band& band : preview->report().bands()) {
      for (std::size_t c = 0; band.kind == Band::Kind::kDetail && c < 4; ++c) {
        html += preview->report().TextOf(band, c) + "|";
      }
    }
    preview->close();
  });
  PreviewProblems(context, {"I", Installation::kCompany, 2026, 3}, problems, nullptr);
  EXPECT_EQ(html, fmt::format("{}|F0|84713000|Tara_Exp = XX ===> NU EXISTA|999|||Net = 0|", id));
}

}  // namespace
}  // namespace reports
