#include "tariff/screens/versions.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QRegularExpression>
#include <QStandardPaths>

#include "tariff/load_file.h"
#include "ui/memory.h"
#include "ui/progress.h"
#include "ui/text.h"

namespace tariff {

using ui::Q;

namespace {

constexpr char kVersions[] =
    "SELECT Anul, Luna, Anul_End, Luna_End, CN_File, CnVer FROM InsCodeVersions ORDER BY Anul, Luna";

enum Columns { kYear, kMonth, kEndYear, kEndMonth, kFile, kVersion, kState };

/// Adds what a version's row means: in force or closed, and whether its file is there.
class VersionsModel : public ui::RecordsetModel {
 public:
  VersionsModel(session::Session& session, QObject* parent)
      : RecordsetModel({{.field = "Anul", .caption = QStringLiteral("Din anul"), .width = 9},
                        {.field = "Luna", .caption = QStringLiteral("Din luna"), .width = 9},
                        {.field = "Anul_End", .caption = QStringLiteral("Pana in anul"), .width = 12},
                        {.field = "Luna_End", .caption = QStringLiteral("Pana in luna"), .width = 12},
                        {.field = "CN_File", .caption = QStringLiteral("Fisier tarif"), .width = 18},
                        {.field = "CnVer", .caption = QStringLiteral("Versiune NC"), .width = 12},
                        {.field = "Stare", .caption = QStringLiteral("Stare"), .width = 22}},
                       session.common.Query(kVersions), parent),
        session_(&session) {}

  QString TextAt(int row, int column) const override {
    if (column != kState) return RecordsetModel::TextAt(row, column);
    const QString state = InForce(row) ? QStringLiteral("in vigoare") : QStringLiteral("inchis");
    return FileMissing(row) ? state + QStringLiteral(", fara fisier") : state;
  }
  /// Past years without a file are usual: few need them all.
  QString ProblemAt(int row, int column) const override {
    if (column != -1 || !InForce(row) || !FileMissing(row)) return {};
    return QStringLiteral("Fisierul %1 nu se afla in folderul CN; \"Incarca nomenclator...\" il face din nou")
        .arg(Q(ValueAt(row, kFile).ToText()));
  }
  bool CanSearch(int column) const override { return column != kState && RecordsetModel::CanSearch(column); }

 private:
  bool InForce(int row) const { return ValueAt(row, kEndYear).is_null(); }
  bool FileMissing(int row) const {
    return !session_->host.files.Exists(session_->settings.DataBase + "CN\\" + ValueAt(row, kFile).ToText());
  }
  session::Session* session_;
};

}  // namespace

Frm_Tarif_Versiuni::Frm_Tarif_Versiuni(ui::Context& screen_context, std::string data_folder, QWidget* parent,
                                       FileChooser choose_file)
    : ListScreen(screen_context, QStringLiteral("Frm_Tarif_Versiuni"), parent),
      data_folder_(std::move(data_folder)),
      choose_file_(std::move(choose_file)),
      model_(new VersionsModel(session(), this)) {
  setWindowTitle(QStringLiteral("Versiuni tarif"));
  SetFirstSize({920, 560});
  if (!choose_file_) choose_file_ = [this] { return AskForFile(); };
  commands()->Add(
      QStringLiteral("CmdIncarca"), QStringLiteral("I&ncarca nomenclator..."), QStringLiteral("import"),
      [this] { Load(); }, QKeySequence(QKeySequence::New));
  commands()->AddSeparator();
  AddListCommands(QStringLiteral("  REPORT - VERSIUNI TARIF -"));
  SetReport("TARIF_VERSIUNI");
  grid()->SetEmptyText(
      QStringLiteral("Aici apar tarifele incarcate. \"Incarca nomenclator...\" face tariful "
                     "unui an din fisierul XML al institutului."));
  SetModel(model_);
  if (model_->Rows() > 0) grid()->SelectRow(model_->Rows() - 1, 0);
}

void Frm_Tarif_Versiuni::Reload() { model_->SetRows(session().common.Query(kVersions)); }

void Frm_Tarif_Versiuni::SelectYear(int year) {
  for (int row = 0; row < model_->Rows(); ++row) {
    if (model_->ValueAt(row, kYear).ToInteger() == year) grid()->SelectRow(row, 0);
  }
}

std::string Frm_Tarif_Versiuni::AskForFile() {
  QString start = context().memory.Get(objectName(), QStringLiteral("dosar"));
  if (start.isEmpty()) start = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
  const QString chosen =
      QFileDialog::getOpenFileName(this, QStringLiteral("Nomenclatorul institutului"), start,
                                   QStringLiteral("Fisiere XML (*.xml);;Toate fisierele (*)"));
  if (chosen.isEmpty()) return {};
  context().memory.Set(objectName(), QStringLiteral("dosar"), QFileInfo(chosen).absolutePath());
  return session().host.files.drives().FromHost(std::filesystem::path(chosen.toStdU16String()));
}

void Frm_Tarif_Versiuni::Load() {
  Frm_Tarif_Incarcare form(context(), choose_file_, this);
  if (form.exec() != QDialog::Accepted) return;
  const std::string path = session().settings.DataBase + "CN\\" + TariffFileName(form.year());
  if (session().host.files.Exists(path) &&
      !session().host.prompter.Ask(
          fmt::format("Tariful anului {} exista: {}\r\nIl inlocuiti cu cel din fisierul {} ?", form.year(),
                      TariffFileName(form.year()), platform::FileNameOf(form.file())),
          "RASPUNDETI", platform::Icon::kQuestion)) {
    return;
  }
  LoadOutcome outcome;
  {
    const ui::LongRun run(session().host.progress, QStringLiteral("Incarcare tarif"),
                          ui::Stopping::kPossible);
    outcome =
        LoadNomenclature(session(), data_folder_, form.file(), form.year(), [&](const std::string& version) {
          return session().host.prompter.Ask(
              fmt::format("Fisierul spune ca este versiunea {}, nu {}. Il incarcati ca tarif al anului {} ?",
                          version, form.year(), form.year()),
              "RASPUNDETI", platform::Icon::kQuestion);
        });
  }
  if (outcome.stopped) {
    ShowStatus(QStringLiteral("Incarcare oprita; tarifele au ramas cum erau"));
    return;
  }
  if (!outcome.error.empty()) {
    session().host.prompter.Error(outcome.error);
    ShowStatus(QStringLiteral("Fisierul nu a fost incarcat"));
    return;
  }
  loaded_ = true;
  Reload();
  SelectYear(form.year());
  ShowStatus(QStringLiteral("%1 incarcat: %2 sectiuni, %3 capitole, %4 grupe, %5 HS6, %6 coduri (%7 cu UM)")
                 .arg(Q(outcome.file))
                 .arg(outcome.sections)
                 .arg(outcome.chapters)
                 .arg(outcome.headings)
                 .arg(outcome.subheadings)
                 .arg(outcome.codes)
                 .arg(outcome.codes_with_unit));
}

Frm_Tarif_Incarcare::Frm_Tarif_Incarcare(ui::Context& screen_context,
                                         Frm_Tarif_Versiuni::FileChooser choose_file, QWidget* parent)
    : Form(screen_context, QStringLiteral("Frm_Tarif_Incarcare"), parent),
      choose_file_(std::move(choose_file)) {
  setWindowTitle(QStringLiteral("Incarcare nomenclator"));
  QLineEdit* file =
      AddText(QStringLiteral("TxtFisier"), QStringLiteral("&Fisier XML"), 60,
              QStringLiteral("Nomenclatura combinata, asa cum o publica institutul"), Kind::kFree);
  file->setMinimumWidth(file->maximumWidth());
  connect(file, &QLineEdit::editingFinished, this, [this] {
    if (Text(QStringLiteral("TxtAnul")).trimmed().isEmpty()) ProposeYear();
  });
  auto* browse = new QPushButton(QStringLiteral("&Alege..."), this);
  browse->setObjectName(QStringLiteral("CmdAlege"));
  browse->setAutoDefault(false);
  connect(browse, &QPushButton::clicked, this, [this] { Try([this] { Browse(); }); });
  AddBeside(browse);
  AddText(QStringLiteral("TxtAnul"), QStringLiteral("A&nul"), 6,
          QStringLiteral("Anul pentru care este valabila nomenclatura; tariful lui se inlocuieste"),
          Kind::kFree);
  MarkRequired(QStringLiteral("TxtFisier"));
  MarkRequired(QStringLiteral("TxtAnul"));
  SetButtons(QStringLiteral("&Incarca"), [this] { Confirm(); });
}

std::string Frm_Tarif_Incarcare::file() const {
  return ui::Utf8(Text(QStringLiteral("TxtFisier")).trimmed());
}
int Frm_Tarif_Incarcare::year() const { return Text(QStringLiteral("TxtAnul")).trimmed().toInt(); }

void Frm_Tarif_Incarcare::Browse() {
  const std::string path = choose_file_();
  if (path.empty()) return;
  SetText(QStringLiteral("TxtFisier"), Q(path));
  ProposeYear();
  FocusField(QStringLiteral("TxtAnul"));
}

void Frm_Tarif_Incarcare::ProposeYear() {
  // "CN_2024.xml" tells its year.
  static const QRegularExpression kYearInName(QStringLiteral("(?<!\\d)(?:19|20)\\d\\d(?!\\d)"));
  const QRegularExpressionMatch match = kYearInName.match(Q(platform::FileNameOf(file())));
  if (match.hasMatch()) SetText(QStringLiteral("TxtAnul"), match.captured());
}

void Frm_Tarif_Incarcare::Confirm() {
  if (!Require(QStringLiteral("TxtFisier"), QStringLiteral("Fisier XML"))) return;
  if (!session().host.files.Exists(file())) {
    session().host.prompter.Error(fmt::format("Fisierul : {} nu exista", file()));
    FocusField(QStringLiteral("TxtFisier"));
    return;
  }
  if (!Require(QStringLiteral("TxtAnul"), QStringLiteral("Anul"))) return;
  if (year() <= 0) {
    session().host.prompter.Error(
        fmt::format("\"{}\" nu este un an", ui::Utf8(Text(QStringLiteral("TxtAnul")))));
    FocusField(QStringLiteral("TxtAnul"));
    return;
  }
  accept();
}

}  // namespace tariff
