#include "app/screens/settings.h"

#include <QFileDialog>

#include "app/screens/row_preview.h"
#include "session/settings_form.h"
#include "ui/colour_field.h"
#include "ui/icons.h"
#include "ui/text.h"

namespace app {

using ui::Q;
using ui::Utf8;

Frm_Setari::Frm_Setari(ui::Context& screen_context, QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Setari"), parent) {
  setWindowTitle(QStringLiteral("Setari diverse"));
  SetFirstSize({700, 360});

  AddTab(QStringLiteral("C&ulori"));
  const QString colour_help = QStringLiteral("Culoarea de fundal; textul ramane citibil pe orice culoare");
  AddColour(QStringLiteral("Culori_EvenRowStyle_BackColor"), QStringLiteral("Randuri &pare"), colour_help);
  AddColour(QStringLiteral("Culori_OddRowStyle_BackColor"), QStringLiteral("Randuri &impare"), colour_help);
  AddColour(QStringLiteral("Culori_HighlightRowStyle_BackColor"), QStringLiteral("Randul &selectat"),
            colour_help);
  AddColour(QStringLiteral("Culori_HighlightRowStyle_ForeColor"), QStringLiteral("&Textul randului selectat"),
            QStringLiteral("Culoarea literelor in randul selectat"));
  AddColour(QStringLiteral("Culori_Meniu_Color"), QStringLiteral("Bara de &meniu"),
            QStringLiteral("Culoarea de fundal a meniului din fereastra principala"));
  AddColumn();
  AddSection(QStringLiteral("Asa arata listele"));
  auto* preview = new RowPreview(this);
  const auto colour = [this](const char* name) {
    return findChild<ui::ColourField*>(QString::fromLatin1(name));
  };
  preview->Follow(colour("Culori_EvenRowStyle_BackColor"), colour("Culori_OddRowStyle_BackColor"),
                  colour("Culori_HighlightRowStyle_BackColor"), colour("Culori_HighlightRowStyle_ForeColor"));
  AddWide(preview);

  AddTab(QStringLiteral("&Zecimale"));
  const QString decimals_help = QStringLiteral("Numarul de zecimale, de la 0 la 255");
  const auto decimals = [&](const char* name, const char* label) {
    AddText(QString::fromLatin1(name), QString::fromLatin1(label), 4, decimals_help);
  };
  decimals("Zecimale_ZecRotLEI", "Valori in &lei");
  decimals("Zecimale_ZecRotValuta", "Valori in &valuta");
  decimals("Zecimale_ZecRotCalcule", "&Calcule intermediare");
  decimals("Zecimale_NrZecTaxare", "Ta&xare");
  AddTick(QStringLiteral("Zecimale_UseFormat"), QStringLiteral("Afisarea numerelor cu &format"));

  AddTab(QStringLiteral("Fol&dere"));
  AddFolder(QStringLiteral("FileLocation_DataBase"), QStringLiteral("&Baze de date"),
            QStringLiteral("Folderul cu Comun.mdb si bazele de date ale firmelor; firmele se deschid "
                           "din el de la urmatoarea pornire"));
  AddFolder(QStringLiteral("FileLocation_System"), QStringLiteral("&Sistem"),
            QStringLiteral("Folderul cu CursBNR, Verificare si celelalte foldere ale programului"));
  AddFolder(QStringLiteral("FileLocation_ReportDefinitionPath"), QStringLiteral("Definitii ra&poarte"),
            QStringLiteral("Folderul cu UE_Reports.xml"));
  AddFolder(QStringLiteral("FileLocation_DirectorSalvare"), QStringLiteral("Decl&aratii XML"),
            QStringLiteral("Folderul in care se salveaza declaratiile; daca nu exista, ramane gol si "
                           "programul il cere la fiecare salvare"));

  AddTab(QStringLiteral("Div&erse"));
  AddTick(QStringLiteral("Diverse_UpdateCurs"), QStringLiteral("Actualizarea &cursului valutar la pornire"),
          QStringLiteral("Cursurile noi se descarca de la adresa web de mai jos"));
  AddTick(QStringLiteral("Diverse_VerificaUpdate"), QStringLiteral("Cautarea unei &versiuni noi la pornire"),
          QStringLiteral("Versiunea se compara cu cea de la adresa web de mai jos"));
  AddTick(QStringLiteral("Diverse_VerificaNet"), QStringLiteral("Verificarea greutatii &nete"),
          QStringLiteral("La verificarea declaratiei se controleaza si greutatea neta"));
  AddTick(QStringLiteral("Diverse_ValoriRotunjite"), QStringLiteral("Valori ro&tunjite"),
          QStringLiteral("La verificarea declaratiei valorile se rotunjesc la lei intregi"));
  AddText(QStringLiteral("Diverse_www"), QStringLiteral("Adresa &web"), 44,
          QStringLiteral("Adresa de baza pentru cursuri si versiuni noi"));
  SetButtons(QStringLiteral("&OK-Retine datele"), [this] { Confirm(); });

  std::vector<session::SettingsControl> controls;
  for (const std::string& name : BoundNames()) controls.push_back({name, {}});
  session::ReadControls(session(), controls);
  for (const session::SettingsControl& control : controls) SetText(Q(control.name), Q(control.value));
  GuardChanges();
  FocusField(QStringLiteral("Culori_EvenRowStyle_BackColor"));
}

void Frm_Setari::AddColour(const QString& name, const QString& label, const QString& help) {
  auto* field = new ui::ColourField(this);
  field->setObjectName(name);
  field->button()->setObjectName(QStringLiteral("Cmd") + name.section('_', 1));
  AddField(label, field, help, Kind::kBound);
}

void Frm_Setari::AddFolder(const QString& name, const QString& label, const QString& help) {
  AddText(name, label, 56, help);
  auto* browse = new QPushButton(this);
  browse->setObjectName(QStringLiteral("Cmd") + name.section('_', 1));
  browse->setIcon(ui::Icon(QStringLiteral("folder")));
  browse->setToolTip(QStringLiteral("Alege folderul"));
  connect(browse, &QPushButton::clicked, this, [this, name] { Browse(name); });
  AddBeside(browse);
}

void Frm_Setari::Browse(const QString& name) {
  const platform::Drives& drives = session().host.files.drives();
  const QString begin = QString::fromStdU16String(drives.ToHost(Utf8(Text(name))).u16string());
  FocusField(name);
  const QString chosen = QFileDialog::getExistingDirectory(this, QStringLiteral("Alegeti folderul"), begin);
  if (chosen.isEmpty()) return;
  SetText(name, Q(platform::WithBackslash(drives.FromHost(std::filesystem::path(chosen.toStdU16String())))));
}

void Frm_Setari::Confirm() {
  std::vector<session::SettingsControl> controls;
  for (const std::string& name : BoundNames()) controls.push_back({name, Utf8(Text(Q(name)))});
  const std::optional<std::string> failed = session::ConfirmControls(session(), controls);
  for (const session::SettingsControl& control : controls) SetText(Q(control.name), Q(control.value));
  if (failed) {
    FocusField(Q(*failed));
    return;
  }
  if (on_applied_) on_applied_();
  accept();
}

}  // namespace app
