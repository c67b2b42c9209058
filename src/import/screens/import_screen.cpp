#include "import/screens/import_screen.h"

#include <QIntValidator>

#include "import/screens/rejected_rows.h"
#include "import/screens/template_editor.h"
#include "import/template_draft.h"
#include "platform/encoding.h"
#include "ui/icons.h"
#include "ui/memory.h"
#include "ui/progress.h"
#include "ui/text.h"

namespace importer {

using ui::Q;

namespace {

constexpr char kTemplateKey[] = "macheta", kFolderKey[] = "folder";

}  // namespace

Frm_Preluare::Frm_Preluare(ui::Context& screen_context, OpenDeclaration open_declaration, QWidget* parent,
                           FileChooser choose_file)
    : Form(screen_context, QStringLiteral("Frm_Preluare"), parent),
      open_declaration_(std::move(open_declaration)),
      choose_file_(std::move(choose_file)) {
  setWindowTitle(QStringLiteral("Preluare fisier excel - ") + Q(session().current.Nume_Firma));
  if (!choose_file_) choose_file_ = WorksheetDialog(context(), this);
  AddFields();
  SetButtons(
      QStringLiteral("&Preia fisierul"), [this] { Run(); }, QStringLiteral("&Inchide"));
  rejected_ = AddCommand(QStringLiteral("CmdRespinse"), QStringLiteral("&Randuri respinse..."),
                         [this] { ShowRejected(); });
  declaration_ = AddCommand(QStringLiteral("CmdDeclaratie"), QStringLiteral("D&eschide declaratia"), [this] {
    open_declaration_({taken_.tip_operatiune.substr(0, 1), taken_.Cod_Fiscal, taken_.Anul, taken_.Luna},
                      this);
  });
  rejected_->setAutoDefault(false);
  declaration_->setAutoDefault(false);
  ReadTemplates(ui::Utf8(context().memory.Get(objectName(), QString::fromLatin1(kTemplateKey))));
  ShowResult();
  FocusField(QStringLiteral("Nume_Fisier"));
}

void Frm_Preluare::AddFields() {
  const auto required = [this](const char* name) { MarkRequired(QString::fromLatin1(name)); };
  // Imports are of the month that has ended.
  const platform::LocalTime now = session().host.clock.Now();
  QLineEdit* year = AddText(QStringLiteral("Anul"), QStringLiteral("&Anul"), 6,
                            QStringLiteral("Anul de referinta al liniilor preluate"), Kind::kFree);
  year->setMaxLength(4);
  year->setValidator(new QIntValidator(0, 9999, year));
  year->setText(QString::number(now.month == 1 ? now.year - 1 : now.year));
  required("Anul");
  auto* month = new QComboBox(this);
  month->setObjectName(QStringLiteral("Luna"));
  std::vector<std::string> months;
  for (int each = 1; each <= 12; ++each) months.push_back(std::to_string(each));
  FillChoices(session(), *month, "Frm_Preluare", months);
  month->setMaxVisibleItems(12);
  month->setCurrentIndex(month->findText(QString::number(now.month == 1 ? 12 : now.month - 1)));
  AddField(QStringLiteral("&Luna"), month, QStringLiteral("Luna de referinta a liniilor preluate"));
  required("Luna");
  AddBeside(new QLabel(this));  // keeps the list as wide as what it holds

  QLineEdit* path =
      AddText(QStringLiteral("Nume_Fisier"), QStringLiteral("Nume &fisier"), 56,
              QStringLiteral("Fisierul excel cu liniile lunii; butonul din dreapta il cauta"), Kind::kFree);
  required("Nume_Fisier");
  auto* browse = new QPushButton(ui::Icon(QStringLiteral("folder")), QString(), this);
  browse->setObjectName(QStringLiteral("CmdFisier"));
  browse->setToolTip(QStringLiteral("Alege fisierul"));
  browse->setAutoDefault(false);
  connect(browse, &QPushButton::clicked, this, [this] { Try([this] { ChooseFile(); }); });
  AddBeside(browse);
  sheet_ = new QComboBox(this);
  sheet_->setObjectName(QStringLiteral("Sheet_Name"));
  sheet_->setEditable(true);
  sheet_->setFixedWidth(sheet_->fontMetrics().averageCharWidth() * 40);
  connect(sheet_, &QComboBox::activated, this, [this] { state_->clear(); });
  AddField(QStringLiteral("&Sheet Name"), sheet_, QStringLiteral("Foaia din fisier in care sunt liniile"));
  required("Sheet_Name");
  AddBeside(new QLabel(this));
  connect(path, &QLineEdit::editingFinished, this, [this, path] {
    if (!path->isModified()) return;
    path->setModified(false);
    Try([this, path] { TakeFile(TypedPath(path->text())); });
  });

  QLineEdit* company =
      AddText(QStringLiteral("Cod_Fiscal"), QStringLiteral("&Cod inreg fiscala"), 16,
              QStringLiteral("Firma curenta; alta firma se alege in meniul Firme"), Kind::kFree);
  company->setReadOnly(true);
  company->setText(Q(session().current.Cod_Fiscal));
  AddBeside(new QLabel(Q(session().current.Nume_Firma), this));
  required("Cod_Fiscal");
  template_ = new QComboBox(this);
  template_->setObjectName(QStringLiteral("Nume_Macheta"));
  template_->setFixedWidth(template_->fontMetrics().averageCharWidth() * 40);
  AddField(QStringLiteral("Nume &Macheta"), template_,
           QStringLiteral("Macheta facuta pentru fisiere de felul acesta; ea da si foaia si operatiunea"));
  required("Nume_Macheta");
  AddTemplateCommand("CmdMacheta", QStringLiteral("Mo&difica..."), QStringLiteral("modifica"),
                     QStringLiteral("Modifica macheta aleasa"), [this] { EditTemplate(); });
  AddTemplateCommand("CmdMachetaNoua", QStringLiteral("&Noua..."), QStringLiteral("macheta"),
                     QStringLiteral("Face o macheta pentru fisierul ales"), [this] { NewTemplate(); });
  AddBeside(new QLabel(this));
  operation_ = new QComboBox(this);
  operation_->setObjectName(QStringLiteral("Tip_Operatiune"));
  FillChoices(session(), *operation_, "Frm_Preluare", {"I-ACHIZITIE", "O-LIVRARE"});
  operation_->setCurrentIndex(-1);
  AddField(QStringLiteral("&Tip Operatiune"), operation_,
           QStringLiteral("I-ACHIZITIE: marfuri intrate in tara; O-LIVRARE: marfuri iesite"));
  required("Tip_Operatiune");
  AddBeside(new QLabel(this));
  connect(template_, &QComboBox::currentTextChanged, this, [this] { Try([this] { FollowTemplate(); }); });

  state_ = new QLabel(this);
  state_->setObjectName(QStringLiteral("Stare"));
  state_->setTextFormat(Qt::PlainText);
  state_->setWordWrap(true);
  state_->setMinimumHeight(state_->fontMetrics().height() * 2);
  AddWide(state_);
}

void Frm_Preluare::AddTemplateCommand(const char* name, const QString& caption, const QString& icon,
                                      const QString& tip, std::function<void()> action) {
  auto* button = new QPushButton(ui::Icon(icon), caption, this);
  button->setObjectName(QString::fromLatin1(name));
  button->setToolTip(tip);
  button->setAutoDefault(false);
  button->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  connect(button, &QPushButton::clicked, this, [this, run = std::move(action)] { Try(run); });
  AddBeside(button);
}

void Frm_Preluare::ReadTemplates(const std::string& current) {
  {
    const QSignalBlocker quiet(template_);
    template_->clear();
    store::Recordset rows = session().company.Query(kChooserSelect);
    for (; !rows.eof(); rows.MoveNext()) template_->addItem(Q(rows.Get(0).ToText()));
    // A single template needs no choosing.
    const int at = template_->findText(Q(current));
    template_->setCurrentIndex(at < 0 && template_->count() == 1 ? 0 : at);
  }
  FollowTemplate();
}

void Frm_Preluare::FollowTemplate() {
  const std::string name = ui::Utf8(template_->currentText());
  folder_.clear();
  TemplateDraft chosen(session());
  if (name.empty() || !chosen.Open(name)) return;
  folder_ = chosen.header.Locatie_Implicita;
  sheet_->setEditText(Q(chosen.header.Work_Sheet_Name));
  FitSheet();
  for (int i = 0; i < operation_->count(); ++i) {
    if (operation_->itemText(i).endsWith(Q(chosen.header.TIP))) operation_->setCurrentIndex(i);
  }
}

void Frm_Preluare::ChooseFile() {
  const std::string now = TypedPath(Text(QStringLiteral("Nume_Fisier")));
  std::string folder = now.empty() ? folder_ : std::string(platform::FolderOf(now));
  if (folder.empty()) {
    folder = ui::Utf8(context().memory.Get(objectName(), QString::fromLatin1(kFolderKey)));
  }
  const std::string path = choose_file_(folder);
  if (path.empty()) return;
  SetText(QStringLiteral("Nume_Fisier"), Q(path));
  context().memory.Set(objectName(), QString::fromLatin1(kFolderKey), Q(platform::FolderOf(path)));
  TakeFile(path);
}

void Frm_Preluare::TakeFile(const std::string& path) {
  const SheetList sheets = OfferSheets(session(), *sheet_, path);
  state_->setText(path.empty() ? QString() : Q(sheets.problem));
  FitSheet();
  if (sheets.problem.empty() && path.find('\'') != std::string::npos) {
    state_->setText(
        QStringLiteral("Un fisier cu apostrof in nume sau in folder nu poate fi preluat; redenumiti-l."));
  }
}

void Frm_Preluare::FitSheet() {
  if (sheet_->count() == 0 || sheet_->findText(sheet_->currentText(), Qt::MatchFixedString) >= 0) return;
  if (sheet_->count() == 1) return sheet_->setEditText(sheet_->itemText(0));  // nothing to choose
  QStringList names;
  for (int i = 0; i < sheet_->count(); ++i) names += sheet_->itemText(i);
  state_->setText(QStringLiteral("Fisierul nu are foaia \"%1\". Alegeti una dintre foile lui: %2")
                      .arg(sheet_->currentText(), names.join(QStringLiteral(", "))));
}

void Frm_Preluare::EditTemplate() {
  const std::string name = ui::Utf8(template_->currentText());
  if (name.empty()) return FocusField(QStringLiteral("Nume_Macheta"));
  Frm_Macheta editor(context(), name, this, choose_file_);
  editor.exec();
  ReadTemplates(editor.Nume_Structura());
}

void Frm_Preluare::NewTemplate() {
  Frm_Macheta editor(context(), "", this, choose_file_);
  const std::string operation = ui::Utf8(operation_->currentText());
  editor.BeginWith(TypedPath(Text(QStringLiteral("Nume_Fisier"))),
                   operation.substr(std::min(operation.find('-') + 1, operation.size())));
  editor.exec();
  if (!editor.Nume_Structura().empty()) ReadTemplates(editor.Nume_Structura());
}

Inputs Frm_Preluare::Typed() const {
  const auto text = [this](const char* name) { return ui::Utf8(Text(QString::fromLatin1(name)).trimmed()); };
  Inputs inputs;
  inputs.Anul = Text(QStringLiteral("Anul")).toInt();
  inputs.Luna = Text(QStringLiteral("Luna")).toInt();
  inputs.path = TypedPath(Text(QStringLiteral("Nume_Fisier")));
  inputs.sheet = text("Sheet_Name");
  inputs.Cod_Fiscal = text("Cod_Fiscal");
  inputs.Nume_Structura = text("Nume_Macheta");
  inputs.tip_operatiune = text("Tip_Operatiune");
  return inputs;
}

void Frm_Preluare::Run() {
  taken_ = Typed();
  context().memory.Set(objectName(), QString::fromLatin1(kTemplateKey), Q(taken_.Nume_Structura));
  {
    const ui::LongRun run(session().host.progress, QStringLiteral("Preluare fisier excel"),
                          ui::Stopping::kPossible);
    result_ = importer::Run(session(), taken_);
  }
  if (result_.saved > 0) Q_EMIT LinesSaved();
  ShowResult();
  if (result_.outcome == Outcome::kRefused) return FocusMissing();
  if (!result_.rejected.empty()) ShowRejected();
  if (result_.saved > 0) declaration_->setFocus();
}

void Frm_Preluare::ShowResult() {
  QString text = Q(result_.status);
  if (result_.outcome == Outcome::kDone) {
    text += QStringLiteral("   Preluate: %1 din %2.").arg(result_.saved).arg(result_.total);
    if (!result_.rejected.empty()) text += QStringLiteral(" Respinse: %1.").arg(result_.rejected.size());
  }
  if (result_.outcome == Outcome::kCancelled) text = QStringLiteral("Preluarea a fost oprita");
  state_->setText(text);
  rejected_->setEnabled(!result_.rejected.empty() && result_.outcome == Outcome::kDone);
  declaration_->setEnabled(result_.saved > 0 && open_declaration_ != nullptr);
}

void Frm_Preluare::ShowRejected() { Frm_Preluare_Respinse(context(), taken_, result_, this).exec(); }

void Frm_Preluare::FocusMissing() {
  for (const char* name : {"Anul", "Luna", "Nume_Fisier", "Sheet_Name", "Nume_Macheta", "Tip_Operatiune"}) {
    const std::string text = ui::Utf8(Text(QString::fromLatin1(name)));
    if (store::IsEmpty(text) || text == "0") return FocusField(QString::fromLatin1(name));
  }
  FocusField(QStringLiteral("Nume_Fisier"));
}

}  // namespace importer
