#include <QLabel>

#include "calc/rates.h"
#include "desk.h"
#include "import/screens/import_screen.h"
#include "import/screens/rejected_rows.h"
#include "import/screens/template_editor.h"
#include "import/screens/template_list.h"
#include "import/template_draft.h"
#include "import/template_rows.h"
#include "ui/grid.h"

namespace screenshots {
namespace {

std::string Sample(Desk& desk) {
  platform::Files& files = desk.session().host.files;
  const std::string sample = "C:\\Furnizori\\achizitii.xls";  // not where the pictures were made
  files.CreateFolders("C:\\Furnizori\\");
  files.Copy(fmt::format("{}samples\\achizitii.xls", test_support::DataFolder(files)), sample);
  return sample;
}

void MakeTemplates(Desk& desk) {
  calc::AddRate(desk.session(), "EUR", {platform::ToSerial({2026, 2, 27, 0, 0, 0})}, 5.0925, 1);
  calc::AddRate(desk.session(), "USD", {platform::ToSerial({2026, 2, 27, 0, 0, 0})}, 4.3621, 1);
  for (const char* name : {"Achizitii - registrul lunar", "Furnizor cu fisier in engleza"}) {
    importer::TemplateDraft draft(desk.session());
    draft.header = {name, "ACHIZITIE", "", "Achizitii", Sample(desk)};
    if (!draft.Save()) throw std::runtime_error("template not saved");
    draft.Propose(importer::ReadSample(desk.session(), Sample(desk), "Achizitii")->columns);
    draft.Save();
    importer::ChangeRow(desk.session(), name, "Incoterms", {{}, "DAP", {}});
  }
  importer::TemplateDraft draft(desk.session());
  draft.header = {"Livrari - facturi", "LIVRARE", "", "Livrari", ""};
  draft.Save();
}

void Chooser(Desk& desk) {
  MakeTemplates(desk);
  desk.Shoot<importer::Frm_Machete>({}, {}, importer::Frm_Machete::Purpose::kModify);
}

void NewTemplate(Desk& desk) {
  importer::Frm_Macheta editor(desk.on.context, "", nullptr, {});
  desk.Grab(editor, QStringLiteral("noua"));
}

void Template(Desk& desk) {
  MakeTemplates(desk);
  importer::Frm_Macheta editor(desk.on.context, "Achizitii - registrul lunar", nullptr, {});
  editor.show();
  editor.findChild<ui::Grid*>(QStringLiteral("GridColoane"))->SelectRow(4, 2);
  editor.findChild<ui::Grid*>(QStringLiteral("GridExemplu"))->SelectRow(7, 1);
  editor.findChild<ui::Grid*>(QStringLiteral("GridColoane"))->setFocus();
  desk.Grab(editor);
}

void Import(Desk& desk) {
  MakeTemplates(desk);
  importer::Frm_Preluare screen(
      desk.on.context, [](const declarations::Identity&, QWidget*) {}, nullptr,
      [&](std::string_view) { return Sample(desk); });
  screen.show();
  desk.Grab(screen, QStringLiteral("goala"));
  test_support::ScreenFixture::Get<QComboBox>(screen, "Nume_Macheta").setCurrentIndex(0);
  test_support::ScreenFixture::Click(screen, "CmdFisier");
  test_support::ScreenFixture::Click(screen, "CmdOK");
  desk.Grab(screen);
}

void Rejected(Desk& desk) {
  importer::Result result;
  result.saved = 33;
  result.rejected = {{14, "Net", "nu se poate face numar din 'aprox. 12 kg'"},
                     {27, "Tara_Orig", "textul 'China' are 5 caractere, coloana tine 2"},
                     {31, "DataReceptiei", "nu se poate face data din '31.02.2026'"}};
  desk.Shoot<importer::Frm_Preluare_Respinse>(
      {}, {}, importer::Inputs{2026, 3, Sample(desk), "Achizitii", "RO123456", "Achizitii", "I-ACHIZITIE"},
      result);
}

}  // namespace

std::vector<Shot> ImportShots() {
  return {
      {"Frm_Machete", Chooser}, {"Frm_Macheta", NewTemplate},        {"Frm_Macheta", Template},
      {"Frm_Preluare", Import}, {"Frm_Preluare_Respinse", Rejected},
  };
}

}  // namespace screenshots
