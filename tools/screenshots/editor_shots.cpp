#include <QFile>
#include <QRegularExpression>
#include <QTimer>
#include <QToolButton>

#include "calc/rates.h"
#include "declarations/screens/editor_screen.h"
#include "desk.h"

namespace screenshots {
namespace {

using declarations::EditorOpening;
using declarations::Frm_INTRASTAT;
using test_support::Installation;

/// The sample worksheet's lines as a spreadsheet would copy them: date, description, code, quantity, unit,
/// value, currency, countries, mass, transaction, terms, invoice, partner.
QString SampleBlock() {
  QFile file(QStringLiteral(DECLARIX_SOURCE_DIR "/data/samples/sursa/achizitii.csv"));
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("no sample lines");
  QString block;
  for (const QString& line : QString::fromUtf8(file.readAll()).split('\n').mid(3)) {
    const QStringList cells = line.split(';');
    if (cells.size() < 18) continue;
    const auto text = [&](int at) {
      return QString(cells[at]).remove('\'').remove('.').remove('-').remove(' ');
    };
    const double quantity = cells[4].toDouble();
    const auto factor = QRegularExpression(QStringLiteral("\\*([0-9.]+)")).match(cells[12]);
    const double net = quantity * (factor.hasMatch() ? factor.captured(1).toDouble() : 1);
    const QStringList typed = {cells[1],
                               cells[2],
                               text(3),
                               cells[4],
                               cells[5],
                               QLocale::c().toString(quantity * cells[6].toDouble(), 'f', 2).remove(','),
                               cells[8],
                               cells[10].toUpper(),
                               cells[11].toUpper(),
                               QLocale::c().toString(net, 'f', 2).remove(','),
                               QString(cells[13]).remove('\''),
                               cells[14],
                               QStringLiteral("3"),
                               cells[15],
                               cells[16],
                               cells[17]};
    block += typed.join('\t') + '\n';
  }
  return block;
}

EditorOpening March() {
  EditorOpening opening;
  opening.identity = {"I", Installation::kCompany, 2026, 3};
  opening.modify = true;
  opening.title = "Modificare Declaratie : I / 2026 / 3";
  return opening;
}

void FillDeclaration(Desk& desk, bool with_slips) {
  desk.Common(
      "UPDATE Firme SET Persoana_Intrastat='Persoana de Contact', Persoana_Functie='Contabil sef', "
      "Tel_Firma='0264 000 000', Fax_Firma='0264 000 001', Email_Firma='contabilitate@proba.example', "
      "ValoareStatistica=1");
  for (int day = 1; day <= 27; ++day) {
    const store::Date date{platform::ToSerial({2026, 3, day, 0, 0, 0})};
    calc::AddRate(desk.session(), "EUR", date, 5.0925 + day % 5 * 0.0011, 1);
    calc::AddRate(desk.session(), "USD", date, 4.3621 + day % 4 * 0.0017, 1);
  }
  declarations::Editor editor(desk.session(), March().identity, declarations::Editor::Mode::kModify, ".");
  editor.Open();
  std::vector<int> columns;
  for (const char* field : {"DataReceptiei", "Descriere", "Cod_NC", "Cantitate", "UM", "Valoare_Valuta",
                            "Moneda", "Tara_Orig", "Tara_Exp", "Net", "Nat_Tranz", "Incoterms", "Mod_Transp",
                            "Factura_Numar", "Factura_Data", "VAT_ID"}) {
    columns.push_back(editor.ColumnOf(field));
  }
  const auto result = editor.Paste(0, columns, SampleBlock().toStdString());
  if (!result.refused.empty()) std::fputs(result.refused.front().reason.c_str(), stderr);
  editor.Close();
  if (!with_slips) {
    desk.Company("UPDATE Intrastat SET Incoterms='DAP' WHERE Incoterms IS NULL");
    desk.Company("UPDATE Intrastat SET Val_UMS=Cantitate WHERE Exista_UMS<>0");
    return;
  }
  desk.Company("UPDATE Intrastat SET Val_UMS=Cantitate WHERE Exista_UMS<>0 AND Cod_NC<>'40111000'");
  desk.Company("UPDATE Intrastat SET Tara_Exp='RS' WHERE Factura_Numar='A-55121'");
}

void AsOpened(Desk& desk) {
  desk.Company("DELETE FROM Intrastat");
  desk.Shoot<Frm_INTRASTAT>(QStringLiteral("goala"), {}, March(), false, declarations::EditorCommands());
}

declarations::EditorCommands Commands() {
  const auto nothing = [](QWidget*, const std::string&) {};
  return {nothing, nothing, nothing};
}

void Lines(Desk& desk) {
  FillDeclaration(desk, true);
  desk.Shoot<Frm_INTRASTAT>(
      {}, [](Frm_INTRASTAT& screen) { screen.grid()->SelectRow(4, screen.editor().ColumnOf("Cantitate")); },
      March(), false, Commands());
}

void Checked(Desk& desk) {
  FillDeclaration(desk, true);
  desk.Shoot<Frm_INTRASTAT>(
      QStringLiteral("probleme"),
      [](Frm_INTRASTAT& screen) {
        test_support::ScreenFixture::Click(screen, "Cmd_Verifica");
        screen.problems_screen().hide();
        screen.GoTo(screen.editor().problems().all().front());
      },
      March(), false, Commands());
}

void Unfolded(Desk& desk) {
  FillDeclaration(desk, false);
  EditorOpening opening = March();
  opening.agent.emplace().Check_Dec_Tert = true;
  desk.Shoot<Frm_INTRASTAT>(
      QStringLiteral("antet"),
      [](Frm_INTRASTAT& screen) {
        screen.findChild<QToolButton*>(QStringLiteral("CmdAntet"))->click();
        screen.findChild<QPushButton*>(QStringLiteral("CmdActualizare"))->click();
        test_support::ScreenFixture::Get<QComboBox>(screen, "CmbColoanaWhere").setCurrentIndex(12);
        test_support::ScreenFixture::Get<QComboBox>(screen, "CmbSemn").setCurrentIndex(1);
        screen.findChild<QLineEdit*>(QStringLiteral("TXT_Nume_Dec"))
            ->setText(QStringLiteral("DECLARANT EXEMPLU SRL"));
      },
      opening, false, Commands());
}

void Typing(Desk& desk) {
  FillDeclaration(desk, false);
  desk.Shoot<Frm_INTRASTAT>(
      QStringLiteral("scriere"),
      [](Frm_INTRASTAT& screen) {
        screen.activateWindow();
        ui::Grid* grid = screen.grid();
        screen.findChild<QPushButton*>(QStringLiteral("CmdLinieNoua"))->click();
        QTest::keyClicks(grid, QStringLiteral("3"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTest::keyClicks(grid, QStringLiteral("L"));
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("aptop de proba"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTest::keyClicks(grid, QStringLiteral("8"));
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("471"));
      },
      March(), false, Commands());
}

void Provenance(Desk& desk) {
  FillDeclaration(desk, false);
  desk.Company("UPDATE Intrastat SET SourceFile='achizitii.xls', UserName='ana', Data_Preluare=#2026-03-30#");
  desk.Shoot<Frm_INTRASTAT>(
      QStringLiteral("provenienta"),
      [](Frm_INTRASTAT& screen) {
        screen.findChild<QPushButton*>(QStringLiteral("CmdProvenienta"))->click();
      },
      March(), true, Commands());
}

void Review(Desk& desk) {
  FillDeclaration(desk, false);
  desk.Common("UPDATE Firme SET Persoana_Functie=''");
  desk.Company("UPDATE Intrastat SET Net=0.2, Val_Fiscala=0.3 WHERE Factura_Numar='184'");
  Frm_INTRASTAT screen(desk.on.context, March(), false, Commands(), nullptr);
  screen.show();
  Desk::Settle();
  desk.GrabModal([&] { screen.findChild<QPushButton*>(QStringLiteral("Cmd_Fisier"))->click(); });
}

}  // namespace

std::vector<Shot> EditorShots() {
  return {
      {"Frm_INTRASTAT", AsOpened},          {"Frm_INTRASTAT", Lines},  {"Frm_INTRASTAT", Checked},
      {"Frm_INTRASTAT", Unfolded},          {"Frm_INTRASTAT", Typing}, {"Frm_INTRASTAT", Provenance},
      {"Frm_Intrastat_Observatii", Review},
  };
}

}  // namespace screenshots
