#include "companies/screens/company.h"

#include "companies/register.h"
#include "ui/icons.h"
#include "ui/text.h"

namespace companies {

using ui::Q;

Frm_Firma::Frm_Firma(ui::Context& screen_context, QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Firma"), parent),
      creating_(screen_context.session.creation_mode) {
  setWindowTitle(creating_ ? QStringLiteral("Introducere date firma noua")
                           : QStringLiteral("Modificare Date Firma"));
  const auto text = [this](const char* name, const char* label, int characters) {
    return AddText(QString::fromLatin1(name), QString::fromLatin1(label), characters, Q(HelpText(name)));
  };
  AddColumn();
  AddSection(QStringLiteral("Firma"));
  QLineEdit* code = text("Cod_Fiscal", "&Cod de inregistrare fiscala", 16);
  text("Nume_Firma", "&Nume Firma", 36);
  text("Adresa_Firma", "&Adresa", 36);
  text("Oras_Firma", "Ora&s", 24);
  text("Judet_Firma", "&Judet", 24);
  text("CodPostal_Firma", "Cod &postal", 10);
  text("Tara_Firma", "&Tara", 24);
  text("Reg_No_Firma", "Nr. re&gistrul comertului", 18);
  AddColumn();
  AddSection(QStringLiteral("Contact"));
  text("Tel_Firma", "T&elefon", 20);
  text("Fax_Firma", "&Fax", 20);
  text("Email_Firma", "E-&mail", 30);
  text("Persoana_Intrastat", "Persoana responsa&bila", 30);
  text("Persoana_Functie", "F&unctia", 30);
  AddSection(QStringLiteral("Declaratii"));
  AddTick(QStringLiteral("XML_Detaliat"),
          QStringLiteral(" Declaratie XML (intrastat) &detaliata (fara cumulare)"));
  auto* help = new QPushButton(this);
  help->setObjectName(QStringLiteral("CmdAjutorDetaliat"));
  help->setFocusPolicy(Qt::TabFocus);  // a click on it is no leaving of the field
  help->setIcon(ui::Icon(QStringLiteral("intrebare")));
  help->setToolTip(QStringLiteral("Ce inseamna declaratie detaliata"));
  connect(help, &QPushButton::clicked, this, [this] { session().host.prompter.Info(DetailedHelp()); });
  AddBeside(help);
  AddTick(QStringLiteral("ValoareStatistica"),
          QStringLiteral(" Declarare &Valoare Statistica (consultati legislatia)"));
  MarkRequired(QStringLiteral("Cod_Fiscal"));
  MarkRequired(QStringLiteral("Nume_Firma"));
  SetButtons(creating_ ? QStringLiteral("Crea&za Firma >>>") : QStringLiteral("&OK - Retine datele"),
             [this] { Confirm(); });

  Try([this] { LimitTexts(session().common.Query("SELECT * FROM Firme WHERE 1=0")); });
  if (creating_) {
    Fill(NewCompany());
    connect(code, &QLineEdit::textEdited, code, [code](const QString& typed) {
      const int at = code->cursorPosition();
      code->setText(typed.toUpper());
      code->setCursorPosition(at);
    });
    OnLeave(QStringLiteral("Cod_Fiscal"), [this, code] {
      std::string typed = ui::Utf8(code->text());
      if (!LeaveCodFiscal(session(), typed)) return false;
      code->setText(Q(typed));
      return true;
    });
  } else {
    Try([this] { Fill(ReadCompany(session())); });
    code->setReadOnly(true);  // the key of a company never changes
    findChild<QLineEdit*>(QStringLiteral("Nume_Firma"))->setFocus();
  }
  GuardChanges();
}

void Frm_Firma::Confirm() {
  const Fields fields = Collect();
  const bool done = creating_ ? CreateCompany(session(), fields) : ModifyCompany(session(), fields);
  if (done) {
    accept();
    return;
  }
  // What was refused has to do with the code, unless it is the name that is missing.
  const bool name_missing =
      !store::IsEmpty(fields.Get("Cod_Fiscal")) && store::IsEmpty(fields.Get("Nume_Firma"));
  FocusField(name_missing ? QStringLiteral("Nume_Firma") : QStringLiteral("Cod_Fiscal"));
}

}  // namespace companies
