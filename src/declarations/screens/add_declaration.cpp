#include "declarations/screens/add_declaration.h"

#include <QFileDialog>
#include <QIntValidator>

#include "declarations/screens/places.h"
#include "import/template_rows.h"
#include "ui/file_options.h"
#include "ui/memory.h"
#include "ui/text.h"

namespace declarations {

using ui::Q;

namespace {

constexpr char kFlowKey[] = "Txt_Fel";

/// The fields of the declaring agent that are plain texts, as name, label and width in characters.
struct AgentField {
  const char* name;
  const char* label;
  int characters;
  const char* help;
};
constexpr AgentField kWhole[] = {
    {"TXT_CUI_Dec", "Cod &fiscal", 16, "Codul fiscal al firmei care depune declaratia"},
    {"TXT_Nume_Dec", "N&ume", 36, "Numele firmei care depune declaratia"},
    {"TXT_Strada_Dec", "&Strada", 36, ""},
};
constexpr AgentField kShort[] = {
    {"TXT_Nr_Dec", "Nr.", 5, "Numar, bloc, scara, apartament"},
    {"TXT_BL_Dec", "&Bloc", 5, "Numar, bloc, scara, apartament"},
    {"TXT_Sc_Dec", "S&cara", 4, "Numar, bloc, scara, apartament"},
    {"TXT_Ap_Dec", "A&p.", 4, "Numar, bloc, scara, apartament"},
};

std::vector<std::string> Choices(const session::Session& session, std::string_view control,
                                 const std::vector<std::string>& built_in) {
  std::vector<std::string> items = importer::ReadComboList(session, control, "Frm_Intrastat_Add");
  return items.empty() ? built_in : items;
}

std::vector<std::string> Months() {
  std::vector<std::string> months;
  for (int month = 1; month <= 12; ++month) months.push_back(std::to_string(month));
  return months;
}

}  // namespace

Frm_Intrastat_Add::Frm_Intrastat_Add(ui::Context& screen_context, Purpose purpose, QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Intrastat_Add"), parent) {
  setWindowTitle((purpose == Purpose::kNil ? QStringLiteral("Declaratie nula - ")
                                           : QStringLiteral("Adauga declaratie - ")) +
                 Q(session().current.Nume_Firma));
  AddPeriod();
  AddAgent();
  SetButtons(QStringLiteral("&Deschide declaratia"), [this] { Confirm(); });
  QPushButton* nil =
      AddCommand(QStringLiteral("CmdAddNula"), QStringLiteral("Declaratie &nula"), [this] { AddNula(); });
  nil->setToolTip(QStringLiteral("Scrie fisierul unei luni fara miscari pe sensul ales"));
  nil->setAutoDefault(true);  // Enter presses it once the cursor is there
  if (purpose == Purpose::kNil) nil->setDefault(true);
  SwitchAgent(false);
  FocusField(QStringLiteral("Txt_Fel"));
}

void Frm_Intrastat_Add::AddPeriod() {
  const platform::LocalTime now = session().host.clock.Now();
  const int month = now.month == 1 ? 12 : now.month - 1;
  const int year = now.month == 1 ? now.year - 1 : now.year;
  const auto add_list = [this](const char* name, const char* label, const std::vector<std::string>& items,
                               const QString& help) {
    auto* box = new QComboBox(this);
    box->setObjectName(QString::fromLatin1(name));
    for (const std::string& item : items) box->addItem(Q(item));
    AddField(QString::fromLatin1(label), box, help);
    MarkRequired(QString::fromLatin1(name));
    return box;
  };
  AddColumn();
  AddSection(QStringLiteral("Declaratia"));
  QComboBox* flow = add_list("Txt_Fel", "F&el", Choices(session(), "Txt_Fel", {"ACHIZITIE", "LIVRARE"}),
                             QStringLiteral("ACHIZITIE: marfuri intrate in tara; LIVRARE: marfuri iesite"));
  flow->setCurrentIndex(std::max(0, flow->findText(context().memory.Get(objectName(), kFlowKey))));
  QLineEdit* year_field = AddText(QStringLiteral("Txt_Anul"), QStringLiteral("&Anul"), 6,
                                  QStringLiteral("Anul de referinta"), Kind::kFree);
  year_field->setMaxLength(4);
  year_field->setValidator(new QIntValidator(0, 9999, year_field));
  year_field->setText(QString::number(year));
  MarkRequired(QStringLiteral("Txt_Anul"));
  QComboBox* months = add_list("Txt_Luna", "&Luna", Choices(session(), "Txt_Luna", Months()),
                               QStringLiteral("Luna de referinta"));
  months->setMaxVisibleItems(12);
  months->setCurrentIndex(months->findText(QString::number(month)));
  QCheckBox* agent = AddTick(QStringLiteral("Check_Dec_Tert"), QStringLiteral("Depusa de un declarant &tert"),
                             QStringLiteral("Alta firma depune declaratia in numele acesteia"), Kind::kFree);
  connect(agent, &QCheckBox::toggled, this, [this](bool on) { Try([&] { SwitchAgent(on); }); });
  AddNote(QStringLiteral(
      "Pentru o luna fara miscari pe sensul ales, Declaratie nula scrie direct fisierul XML."));
}

void Frm_Intrastat_Add::AddAgent() {
  AddColumn();
  AddSection(QStringLiteral("Declarant tert"));
  for (const AgentField& field : kWhole) {
    agent_fields_.push_back(AddText(QString::fromLatin1(field.name), QString::fromLatin1(field.label),
                                    field.characters, QString::fromLatin1(field.help), Kind::kFree));
  }
  for (const AgentField& field : kShort) {
    agent_fields_.push_back(AddText(QString::fromLatin1(field.name), QString::fromLatin1(field.label),
                                    field.characters, QString::fromLatin1(field.help), Kind::kFree));
  }
  const auto add_names = [this](const char* name, const char* label, const QString& help) {
    auto* box = new ui::CodeBox(this);
    box->setObjectName(QString::fromLatin1(name));
    box->setMinimumWidth(box->fontMetrics().averageCharWidth() * 30);
    AddField(QString::fromLatin1(label), box, help);
    agent_fields_.push_back(box);
    return box;
  };
  ui::CodeBox* county = add_names("TXT_Judet_Dec", "&Judet", QStringLiteral("Alt+sageata jos arata lista"));
  ui::CodeBox* place = add_names("TXT_Oras_Dec", "Local&itate",
                                 QStringLiteral("Localitatile judetului ales; fara judet, toate"));
  agent_fields_.push_back(
      AddText(QStringLiteral("TXT_CodPostal_Dec"), QStringLiteral("Cod p&ostal"), 10, {}, Kind::kFree));
  places_ = new Places(context(), county, place);
}

void Frm_Intrastat_Add::SwitchAgent(bool on) {
  QPalette greyed;
  greyed.setColor(QPalette::Disabled, QPalette::Base, greyed.color(QPalette::Window));
  for (QWidget* field : agent_fields_) {
    field->setEnabled(on);
    field->setPalette(on ? QPalette() : greyed);
  }
  for (QLabel* label : findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) label->setEnabled(label->buddy()->isEnabled());
  }
  if (!on) return;
  ReadAgent();
  for (const QWidget* field : agent_fields_) {
    const QString name = field->objectName();
    SetText(name, Q(*HeaderField(agent_, ui::Utf8(name))));
  }
  places_->Set(Q(agent_.TXT_Judet_Dec), Q(agent_.TXT_Oras_Dec));
}

void Frm_Intrastat_Add::ReadAgent() {
  agent_ = {};
  if (!ReadDeclaringAgent(session(), agent_)) {
    ShowMessage(QStringLiteral("Datele declarantului folosite data trecuta nu s-au putut citi"));
  }
}

AddDialog Frm_Intrastat_Add::Typed() const {
  return {ui::Utf8(Text(QStringLiteral("Txt_Fel"))), ui::Utf8(Text(QStringLiteral("Txt_Anul"))),
          ui::Utf8(Text(QStringLiteral("Txt_Luna")))};
}

bool Frm_Intrastat_Add::WithAgent() const {
  return findChild<QCheckBox*>(QStringLiteral("Check_Dec_Tert"))->isChecked();
}

void Frm_Intrastat_Add::TakeAgent(Header& header) {
  context().memory.Set(objectName(), kFlowKey, Text(QStringLiteral("Txt_Fel")));
  header.Check_Dec_Tert = WithAgent();
  if (!header.Check_Dec_Tert) return;
  header.TXT_Sect_Dec = agent_.TXT_Sect_Dec;  // has no field here
  for (const QWidget* field : agent_fields_) {
    const QString name = field->objectName();
    *HeaderField(header, ui::Utf8(name)) = ui::Utf8(Text(name));
  }
  if (KeepDeclaringAgent(session(), header, agent_)) CopyDeclaringAgent(header, agent_);
}

void Frm_Intrastat_Add::FocusMissing() {
  for (const char* name : {"Txt_Luna", "Txt_Anul", "Txt_Fel"}) {
    if (store::IsEmpty(ui::Utf8(Text(QString::fromLatin1(name))))) {
      return FocusField(QString::fromLatin1(name));
    }
  }
  FocusField(QStringLiteral("Txt_Anul"));
}

void Frm_Intrastat_Add::Confirm() {
  opening_ = ConfirmDeclaration(session(), Typed());
  if (!opening_) return FocusMissing();
  Header agent;
  TakeAgent(agent);
  if (agent.Check_Dec_Tert) opening_->agent = std::move(agent);
  accept();
}

QString Frm_Intrastat_Add::CaptionOf(const QString& field) const {
  for (const QLabel* label : findChildren<QLabel*>()) {
    if (label->buddy() == nullptr || label->buddy()->objectName() != field) continue;
    return QStringLiteral("Declarant tert - ") + label->text().remove('&');
  }
  static const std::map<QString, QString> kElsewhere = {
      {QStringLiteral("TXT_CodFiscal"), QStringLiteral("Date Firma - Cod de inregistrare fiscala")},
      {QStringLiteral("TXT_NumeCompanie"), QStringLiteral("Date Firma - Nume Firma")},
      {QStringLiteral("TXT_Nume_Prenume"), QStringLiteral("Date Firma - Persoana responsabila")},
      {QStringLiteral("TXT_Nume_Pers"), QStringLiteral("Date Firma - Persoana responsabila, al doilea nume")},
      {QStringLiteral("TXT_PozitieCompanie"), QStringLiteral("Date Firma - Functia")},
      {QStringLiteral("TXT_Tel"), QStringLiteral("Date Firma - Telefon")},
      {QStringLiteral("TXT_Fax"), QStringLiteral("Date Firma - Fax")},
      {QStringLiteral("TXT_Email"), QStringLiteral("Date Firma - E-mail")},
      {QStringLiteral("InsCodeVersions"), QStringLiteral("Versiuni tarif")}};
  const auto found = kElsewhere.find(field);
  return found == kElsewhere.end() ? field : found->second;
}

void Frm_Intrastat_Add::AddNula() {
  const std::optional<Identity> identity = DialogIdentity(session(), Typed());
  if (!identity) return FocusMissing();
  Header header = NilHeader(session());
  TakeAgent(header);
  ExportCallbacks callbacks;
  callbacks.choose_folder = [this]() -> std::string {
    const QString chosen =
        QFileDialog::getExistingDirectory(this, QStringLiteral("Folderul pentru fisierele declaratiilor"));
    if (chosen.isEmpty()) return "";
    return session().host.files.drives().FromHost(std::filesystem::path(chosen.toStdU16String()));
  };
  callbacks.review = [this](std::vector<Finding> findings) {
    for (Finding& finding : findings) finding.where = ui::Utf8(CaptionOf(Q(finding.where)));
    return session().host.prompter.Ask("Declaratia poate fi respinsa:\r\n\r\n" + FindingsText(findings) +
                                           "\r\n\r\nScrieti fisierul totusi ?",
                                       "RASPUNDETI", platform::Icon::kExclamation);
  };
  const ExportResult result = WriteNilDeclaration(session(), *identity, header, callbacks);
  if (result.outcome == ExportOutcome::kGivenUp) {
    ShowMessage(QStringLiteral("Declaratia nula nu a fost scrisa"));
  }
  if (result.outcome != ExportOutcome::kWritten) return;
  ui::Frm_Fisier_Optiuni(context(), result.path, this).exec();
  ShowMessage(QStringLiteral("Scris: ") + Q(result.path));
}

std::optional<EditorOpening> AskForDeclaration(ui::Context& context, QWidget* parent,
                                               Frm_Intrastat_Add::Purpose purpose) {
  Frm_Intrastat_Add dialog(context, purpose, parent);
  return dialog.exec() == QDialog::Accepted ? dialog.opening() : std::nullopt;
}

}  // namespace declarations
