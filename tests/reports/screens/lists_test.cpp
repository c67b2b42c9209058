#include <gmock/gmock.h>

#include <QPlainTextEdit>
#include <QTimer>
#include <set>

#include "app/commands.h"
#include "calc/checker.h"
#include "calc/screens/rates.h"
#include "companies/screens/company_list.h"
#include "declarations/list/declaration_list.h"
#include "declarations/screens/declaration_list.h"
#include "declarations/screens/editor_screen.h"
#include "declarations/screens/problems.h"
#include "import/screens/rejected_rows.h"
#include "import/screens/template_list.h"
#include "platform/encoding.h"
#include "reports/screens/page_painter.h"
#include "reports/screens/raport.h"
#include "support/qt/screen_fixture.h"
#include "support/sample_lines.h"
#include "tariff/screens/advanced_search.h"
#include "tariff/screens/browser.h"
#include "tariff/screens/query_builder.h"
#include "tariff/screens/reference_list.h"
#include "tariff/screens/versions.h"

namespace reports {
namespace {

using test_support::Installation;
using test_support::ScreenFixture;

/// How a list came out on paper.
struct Printed {
  std::string report, title;
  std::vector<std::string> captions;
  std::vector<std::string> first_row;
};

/// The lists of the program, each printed by its own screen's command.
struct Lists : testing::Test, ScreenFixture {
  Lists() {
    context.preview_list = [this](const ui::GridContent& content, QWidget* parent) {
      PreviewList(context, content, parent);
    };
    test_support::AddLine(at.session, "I", 2026, 3,
                          {{"Val_Fiscala", 100.25}, {"Cod_NC", "84713000"}, {"Tara_Exp", "RO"}});
    at.Run(
        "INSERT INTO Rate_Schimb (Cod_Moneda, Valid_La_Data, Curs_Schimb, Multiplicator) VALUES ('EUR', "
        "#2026-03-02#, 5.0925, 1)");
    at.Run("INSERT INTO StructuraFisiereAntet (Nume_Structura, TIP) VALUES ('Furnizor', 'I-ACHIZITIE')");
  }

  Printed Print(QWidget& screen, const char* command = "CmdTiparire") {
    Printed printed;
    QTimer::singleShot(0, [&] {
      auto* preview = qobject_cast<Frm_Raport*>(QApplication::activeModalWidget());
      ASSERT_NE(preview, nullptr);
      const Report& report = preview->report();
      printed.report = report.id();
      printed.title = report.title();
      for (std::size_t c = 0; c < report.columns().size(); ++c) {
        printed.captions.push_back(report.columns()[c].caption);
        if (report.bands()[0].kind == Band::Kind::kDetail) {
          printed.first_row.push_back(report.TextOf(report.bands()[0], c));
        }
      }
      const Layout& pages = preview->layout_of_pages();
      QImage paper(static_cast<int>(pages.page().width), static_cast<int>(pages.page().height),
                   QImage::Format_RGB32);
      paper.fill(Qt::white);
      const QImage empty = paper;
      QPainter painter(&paper);
      PaintPage(painter, pages.Page(0));
      EXPECT_NE(paper, empty);
      preview->close();
    });
    screen.show();
    Click(screen, command);
    opened.insert(printed.report);
    return printed;
  }

  std::set<std::string> opened;
};

std::vector<std::string> Headings(const app::Command& command) {
  std::vector<std::string> headings;
  for (const std::string_view heading : command.headings) {
    if (!heading.empty()) headings.emplace_back(platform::Trim(heading));
  }
  return headings;
}

TEST_F(Lists, EveryDefinitionIsOpenedFromItsList) {
  for (const app::Command& command : app::CommandTable()) {
    const std::string title = "REPORT - " + std::string(command.title);
    Printed printed;
    if (command.kind == app::CommandKind::kViewer) {
      tariff::ReferenceTable table{std::string(command.query), std::string(command.title), {}};
      for (const std::string_view heading : command.headings) table.captions.emplace_back(heading);
      table.report = command.key;
      tariff::Frm_Tabel screen(context, table);
      printed = Print(screen);
    } else if (command.kind == app::CommandKind::kTariff) {
      const auto* level = std::find_if(std::begin(tariff::kLevels), std::end(tariff::kLevels),
                                       [&](const tariff::Level& each) { return each.key == command.key; });
      tariff::Frm_Tarif screen(context, *level);
      printed = Print(screen);
    } else {
      continue;
    }
    EXPECT_EQ(printed.report, command.key);
    EXPECT_EQ(platform::Trim(printed.title), title);
    EXPECT_EQ(printed.captions, Headings(command)) << command.key;
  }

  const auto expect = [](const Printed& printed, const char* report, const char* title,
                         const std::vector<std::string>& captions) {
    EXPECT_EQ(printed.report, report);
    EXPECT_EQ(platform::Trim(printed.title), title);
    EXPECT_EQ(printed.captions, captions) << report;
    EXPECT_TRUE(report == std::string("CURS_MANUAL") || !printed.first_row.empty()) << report;
  };
  const declarations::Identity identity{"I", Installation::kCompany, 2026, 3};
  calc::Frm_Curs_Manual rates(
      context, [] {}, nullptr);
  expect(Print(rates), "CURS_MANUAL", "REPORT - CURS VALUTAR -",
         {"Moneda", "Denumire", "Data cursului", "Curs schimb", "Multiplicator"});
  importer::Frm_Machete templates(context, importer::Frm_Machete::Purpose::kModify, nullptr);
  expect(Print(templates), "MACHETE", "Machete de preluare", {"Nume", "Fel"});
  importer::Inputs inputs;
  inputs.path = "C:\\x.xls";
  inputs.sheet = "Foaie";
  importer::Result result;
  result.rejected.push_back({7, "Net", "nu este un numar"});
  importer::Frm_Preluare_Respinse rejected(context, inputs, result, nullptr);
  expect(Print(rejected), "PRELUARE_RESPINSE", "Randuri care nu s-au preluat: x.xls, foaia Foaie",
         {"Rand in foaie", "Informatia", "Motivul"});
  tariff::Frm_Tarif_Versiuni versions(context, "");
  expect(Print(versions), "TARIF_VERSIUNI", "REPORT - VERSIUNI TARIF -",
         {"Din anul", "Din luna", "Pana in anul", "Pana in luna", "Fisier tarif", "Versiune NC", "Stare"});
  companies::Frm_Firme companies(context, nullptr);
  expect(Print(companies), "FIRME", "REPORT - FIRME -",
         {"Nume Firma", "Cod de inregistrare fiscala", "Fisier baza de date"});

  tariff::Frm_Cautare_Tarif search(context);
  search.SearchFor("8471");
  expect(Print(search, "CmdTiparireDeclaratii"), "CAUTARE_DECLARATII", "Declaratii intrastat - 8471",
         {"Anul", "Luna", "Cod NC", "Cantitate", "UM", "Valoare fiscala", "Descriere"});
  expect(Print(search, "CmdTiparireTarif"), "CAUTARE_TARIF", "Tarif vamal - 8471",
         {"Cod NC", "Cod vamal", "Data", "UM", "Descriere"});

  tariff::Frm_Interogari queries(context, nullptr);
  Get<QPlainTextEdit>(queries, "TXT_SQL")
      .setPlainText("SELECT Cod_NC, Val_Fiscala/3 AS Treime FROM Intrastat");
  Click(queries, "CmdRuleaza");
  const Printed asked = Print(queries);
  expect(asked, "INTEROGARI", "REPORT - Interogare", {"Cod_NC", "Treime"});

  declarations::Frm_Intrastat_Lista list(context, {}, nullptr);
  EXPECT_EQ(Print(list, "CmdTiparireLista").report, "Frm_Intrastat_Lista");
  at.prompter().AcceptAnything(true);
  calc::Verifica_Declaratie(at.session, "I", 2026, 3, false, {});
  declarations::Frm_Intrastat_Probleme problems(context, identity, {}, nullptr);
  expect(Print(problems, "CmdTipareste"), "Probleme", "REPORT - Probleme - ACHIZITIE 2026 / 3",
         {"Pozitia", "Factura", "Cod vamal", "Problema"});

  const Definitions file = Definitions::Read(at.session);
  for (const Definition& each : file.all()) {
    if (each.family.empty()) {
      EXPECT_THAT(opened, testing::Contains(each.id));
    }
  }
}

TEST_F(Lists, TheEditorPrintsItsDeclarationAndTheLinesChosen) {
  at.prompter().AcceptAnything(true);
  test_support::AddLine(at.session, "I", 2026, 3, {{"Val_Fiscala", 7}, {"Cod_NC", "01012100"}});
  const declarations::Identity identity{"I", Installation::kCompany, 2026, 3};
  declarations::Frm_INTRASTAT editor(context, declarations::DeclarationList::Opening(identity, false), false,
                                     {}, nullptr);
  editor.editor().request().Check_XML_Detaliat = true;
  EXPECT_EQ(Print(editor, "Cmd_Print").report, kDetailed);
  editor.editor().request().Check_XML_Detaliat = false;
  EXPECT_EQ(Print(editor, "Cmd_Print").report, kAggregated);
  ASSERT_TRUE(editor.editor().Filter({"Cod_NC", "= 'Valoare'", "01012100"}));
  std::string total;
  int choices = 0;
  QTimer::singleShot(0, [&] {
    auto* preview = qobject_cast<Frm_Raport*>(QApplication::activeModalWidget());
    ASSERT_NE(preview, nullptr);
    choices = Get<QComboBox>(*preview, "Combo_Raport").count();
    const Report& report = preview->report();
    for (std::size_t c = 0; c < report.columns().size(); ++c) {
      if (report.columns()[c].caption == "Valoare Fiscala") total = report.TextOf(report.bands().back(), c);
    }
    preview->close();
  });
  Click(editor, "Cmd_Print");
  EXPECT_EQ(choices, 5);
  EXPECT_EQ(total, "7,00") << "of the lines chosen";
}

}  // namespace
}  // namespace reports
