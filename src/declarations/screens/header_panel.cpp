#include "declarations/screens/header_panel.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QToolButton>

#include "declarations/screens/places.h"
#include "ui/code_box.h"
#include "ui/elided_label.h"
#include "ui/memory.h"
#include "ui/screen.h"
#include "ui/text.h"

namespace declarations {
namespace {

using ui::Q;

constexpr char kScreen[] = "Frm_INTRASTAT";

struct Help {
  const char* name;
  const char* text;
};
constexpr Help kHelps[] = {
    {"Combo_Tip", "N-Noua: prima declaratie a lunii; C-Corectie: inlocuieste una depusa"},
    {"Check_ValStatistica", "Fisierul contine si valoarea statistica a pozitiilor"},
    {"Check_XML_Detaliat", "Liniile se scriu una cate una, cu partenerul fiecareia"},
    {"Check_Dec_Tert", "Alta firma depune declaratia in numele acesteia"},
    {"TXT_NumeCompanie", "Numele firmei, asa cum se scrie in fisier"},
    {"TXT_Nume_Prenume", "Numele de familie al persoanei de contact"},
    {"TXT_Nume_Pers", "Prenumele persoanei de contact"},
    {"TXT_PozitieCompanie", "Functia persoanei de contact"},
    {"TXT_Tel", "Telefonul persoanei de contact"},
    {"TXT_Fax", "Faxul persoanei de contact"},
    {"TXT_Email", "Adresa de e-mail a persoanei de contact"},
    {"TXT_CUI_Dec", "Codul fiscal al firmei care depune declaratia"},
    {"TXT_Nume_Dec", "Numele firmei care depune declaratia"},
    {"TXT_Strada_Dec", "Strada declarantului, fara numar"},
    {"TXT_Nr_Dec", "Numarul strazii"},
    {"TXT_BL_Dec", "Blocul"},
    {"TXT_Sc_Dec", "Scara"},
    {"TXT_Ap_Dec", "Apartamentul"},
    {"TXT_Sect_Dec", "Sectorul; nu se scrie in fisier"},
    {"TXT_Judet_Dec", "Alt+sageata jos arata lista"},
    {"TXT_Oras_Dec", "Localitatile judetului ales; fara judet, toate"},
    {"TXT_CodPostal_Dec", "Codul postal al declarantului"},
};

QLabel* Heading(const char* text, QWidget* parent) {
  auto* label = new QLabel(QString::fromLatin1(text), parent);
  QFont font = label->font();
  font.setBold(true);
  label->setFont(font);
  return label;
}

/// A field that cannot be typed in looks like the ground it stands on.
void MakeReadOnly(QLineEdit* field) {
  field->setReadOnly(true);
  field->setFocusPolicy(Qt::ClickFocus);
  QPalette palette = field->palette();
  palette.setColor(QPalette::Base, palette.color(QPalette::Window));
  field->setPalette(palette);
}

int WidthOf(const QWidget* field, int characters) {
  return field->fontMetrics().horizontalAdvance(QString(characters, QLatin1Char('0'))) + 14;
}

QGridLayout* NewSection(const char* heading, QWidget* parent) {
  auto* grid = new QGridLayout(parent);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(8);
  grid->setVerticalSpacing(4);
  grid->addWidget(Heading(heading, parent), 0, 0, 1, 2);
  grid->setColumnStretch(1, 1);
  return grid;
}

}  // namespace

HeaderPanel::HeaderPanel(ui::Context& context, Editor& editor, const QString& title, QWidget* parent)
    : QWidget(parent), context_(&context), editor_(&editor), header_(&editor.request().header) {
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->setSpacing(6);
  auto* line = new QHBoxLayout;
  line->setSpacing(8);
  outer->addLayout(line);
  fold_ = new QToolButton(this);
  fold_->setObjectName(QStringLiteral("CmdAntet"));
  fold_->setText(QStringLiteral("A&ntet"));
  fold_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  fold_->setCheckable(true);
  fold_->setAutoRaise(true);
  fold_->setToolTip(QStringLiteral("Datele firmei si ale declarantului, asa cum se scriu in fisier"));
  line->addWidget(fold_);
  if (!title.isEmpty()) {
    auto* name = Heading("", this);
    name->setObjectName(QStringLiteral("LblTitlu"));
    name->setTextFormat(Qt::PlainText);
    name->setText(title);
    line->addWidget(name);
  }
  summary_ = new ui::ElidedLabel(20, this);
  summary_->setObjectName(QStringLiteral("LblAntet"));
  line->addWidget(summary_, 1);

  fields_ = new QWidget(this);
  fields_->setObjectName(QStringLiteral("Antet"));
  outer->addWidget(fields_);
  auto* columns = new QHBoxLayout(fields_);
  columns->setContentsMargins(8, 0, 8, 4);
  columns->setSpacing(24);
  const auto section = [&](const char* heading, int stretch) {
    auto* part = new QWidget(fields_);
    columns->addWidget(part, stretch, Qt::AlignTop);
    return NewSection(heading, part);
  };
  AddDeclaration(section("Declaratia", 2));
  AddCompany(section("Firma si persoana de contact", 3));
  AddAgent(section("Declarant tert", 3));

  connect(fold_, &QToolButton::toggled, this, [this](bool on) {
    fields_->setVisible(on);
    summary_->setVisible(!on);
    fold_->setArrowType(on ? Qt::DownArrow : Qt::RightArrow);
    if (on) ShowPlaces();
    context_->memory.Set(QString::fromLatin1(kScreen), QStringLiteral("antet"),
                         on ? QStringLiteral("1") : QStringLiteral("0"));
  });
  fold_->setArrowType(Qt::RightArrow);
  WatchFields();
  fields_->hide();
  Fill();
  if (context.memory.Get(QString::fromLatin1(kScreen), QStringLiteral("antet")) == "1") Unfold(true);
}

QLineEdit* HeaderPanel::NewLine(const char* name, int characters, std::string Header::*value) {
  auto* field = new QLineEdit(fields_);
  field->setObjectName(QString::fromLatin1(name));
  field->setMaximumWidth(WidthOf(field, characters));
  lines_.push_back({field, value});
  connect(field, &QLineEdit::textChanged, this, [this, value](const QString& text) {
    if (filling_) return;
    header_->*value = ui::Utf8(text);
    ShowSummary();
  });
  return field;
}

QLineEdit* HeaderPanel::AddLine(QGridLayout* grid, const char* name, const char* label, int characters,
                                std::string Header::*value) {
  QLineEdit* field = NewLine(name, characters, value);
  AddShort(grid, label, {field});
  return field;
}

void HeaderPanel::AddShort(QGridLayout* grid, const char* label, const std::vector<QWidget*>& fields) {
  const int row = grid->rowCount();
  auto* caption = new QLabel(QString::fromLatin1(label), grid->parentWidget());
  caption->setBuddy(fields.front());
  grid->addWidget(caption, row, 0);
  auto* beside = new QHBoxLayout;
  beside->setSpacing(6);
  for (QWidget* field : fields) beside->addWidget(field, fields.size() == 1 ? 1 : 0);
  beside->addStretch(0);
  if (fields.size() > 1) beside->setStretch(beside->count() - 1, 1);
  grid->addLayout(beside, row, 1);
}

QLineEdit* HeaderPanel::AddShown(QGridLayout* grid, const char* name, const char* label) {
  auto* field = new QLineEdit(fields_);
  field->setObjectName(QString::fromLatin1(name));
  MakeReadOnly(field);
  AddShort(grid, label, {field});
  return field;
}

QCheckBox* HeaderPanel::AddTick(QGridLayout* grid, const char* name, const char* caption, bool* value) {
  auto* tick = new QCheckBox(QString::fromLatin1(caption), fields_);
  tick->setObjectName(QString::fromLatin1(name));
  grid->addWidget(tick, grid->rowCount(), 0, 1, 2);
  ticks_.push_back({tick, value});
  connect(tick, &QCheckBox::toggled, this, [this, value](bool on) {
    if (filling_) return;
    *value = on;
    ShowAgent();
    ShowSummary();
  });
  return tick;
}

void HeaderPanel::AddDeclaration(QGridLayout* grid) {
  const Identity& identity = editor_->identity();
  const auto shown = [&](const char* name, const QString& text, int characters) {
    auto* field = new QLineEdit(text, fields_);
    field->setObjectName(QString::fromLatin1(name));
    field->setFixedWidth(WidthOf(field, characters));
    MakeReadOnly(field);
    return field;
  };
  auto* flow = new QLabel(QString::fromLatin1(identity.arrivals() ? "ACHIZITIE" : "LIVRARE"), fields_);
  AddShort(grid, "Sens", {shown("TXT_Tip", Q(identity.TIP), 2), flow});
  AddShort(grid, "Anul / luna",
           {shown("Txt_Anul", QString::number(identity.Anul), 4),
            shown("Txt_Luna", QString::number(identity.Luna), 2)});
  kind_ = new QComboBox(fields_);
  kind_->setObjectName(QStringLiteral("Combo_Tip"));
  kind_->addItems({QStringLiteral("N-Noua"), QStringLiteral("C-Corectie")});
  AddShort(grid, "Felul", {kind_});
  connect(kind_, &QComboBox::currentTextChanged, this, [this](const QString& text) {
    if (filling_) return;
    editor_->request().Combo_Tip = ui::Utf8(text);
    ShowSummary();
  });
  file_ = AddShown(grid, "TXT_File_XML", "Fisier XML");
  file_->setMinimumWidth(WidthOf(file_, 26));
  ExportRequest& request = editor_->request();
  AddTick(grid, "Check_ValStatistica", "Calcul valoare statistica", &request.Check_ValStatistica);
  AddTick(grid, "Check_XML_Detaliat", "XML detaliat (fara cumulare)", &request.Check_XML_Detaliat);
  AddTick(grid, "Check_Dec_Tert", "Depusa de un declarant tert", &header_->Check_Dec_Tert);
}

void HeaderPanel::AddCompany(QGridLayout* grid) {
  QLineEdit* code = AddLine(grid, "TXT_CodFiscal", "Cod fiscal", 14, &Header::TXT_CodFiscal);
  MakeReadOnly(code);  // it is what the lines are filed under
  AddLine(grid, "TXT_NumeCompanie", "Nume companie", 60, &Header::TXT_NumeCompanie);
  AddLine(grid, "TXT_Nume_Prenume", "Nume", 60, &Header::TXT_Nume_Prenume);
  AddLine(grid, "TXT_Nume_Pers", "Prenume", 60, &Header::TXT_Nume_Pers);
  AddLine(grid, "TXT_PozitieCompanie", "Functia", 60, &Header::TXT_PozitieCompanie);
  AddLine(grid, "TXT_Tel", "Telefon", 20, &Header::TXT_Tel);
  AddLine(grid, "TXT_Fax", "Fax", 20, &Header::TXT_Fax);
  AddLine(grid, "TXT_Email", "E-mail", 60, &Header::TXT_Email);
}

void HeaderPanel::AddAgent(QGridLayout* grid) {
  agent_ = grid->parentWidget();
  AddLine(grid, "TXT_CUI_Dec", "Cod fiscal", 14, &Header::TXT_CUI_Dec);
  AddLine(grid, "TXT_Nume_Dec", "Nume", 60, &Header::TXT_Nume_Dec);
  AddLine(grid, "TXT_Strada_Dec", "Strada", 60, &Header::TXT_Strada_Dec);
  const auto label = [this](const char* text) { return new QLabel(QString::fromLatin1(text), fields_); };
  AddShort(grid, "Numar",
           {NewLine("TXT_Nr_Dec", 6, &Header::TXT_Nr_Dec), label("Bloc"),
            NewLine("TXT_BL_Dec", 5, &Header::TXT_BL_Dec), label("Scara"),
            NewLine("TXT_Sc_Dec", 4, &Header::TXT_Sc_Dec)});
  AddShort(grid, "Apartament",
           {NewLine("TXT_Ap_Dec", 6, &Header::TXT_Ap_Dec), label("Sector"),
            NewLine("TXT_Sect_Dec", 4, &Header::TXT_Sect_Dec)});
  county_ = NewPlace("TXT_Judet_Dec");
  AddShort(grid, "Judet", {county_});
  town_ = NewPlace("TXT_Oras_Dec");
  AddShort(grid, "Localitate", {town_});
  AddLine(grid, "TXT_CodPostal_Dec", "Cod postal", 10, &Header::TXT_CodPostal_Dec);
}

ui::CodeBox* HeaderPanel::NewPlace(const char* name) {
  auto* field = new ui::CodeBox(fields_);
  field->setObjectName(QString::fromLatin1(name));
  field->setMaximumWidth(WidthOf(field, 40));
  return field;
}

void HeaderPanel::ShowPlaces() {
  if (places_ == nullptr) {
    places_ = new Places(*context_, county_, town_);
    connect(places_, &Places::Changed, this, [this] {
      if (filling_) return;
      header_->TXT_Judet_Dec = ui::Utf8(county_->code());
      header_->TXT_Oras_Dec = ui::Utf8(town_->code());
    });
  }
  places_->Set(Q(header_->TXT_Judet_Dec), Q(header_->TXT_Oras_Dec));
}

void HeaderPanel::Fill() {
  filling_ = true;
  for (const BoundLine& each : lines_) {
    each.field->setText(Q(header_->*each.value));
    each.field->setCursorPosition(0);
  }
  for (const BoundTick& each : ticks_) each.field->setChecked(*each.value);
  kind_->setCurrentText(Q(editor_->request().Combo_Tip));
  filling_ = false;
  ShowAgent();
  ShowSummary();
}

void HeaderPanel::ShowAgent() { agent_->setEnabled(header_->Check_Dec_Tert); }

void HeaderPanel::ShowSummary() {
  const QString file = Q(editor_->FileName());
  file_->setText(file);
  file_->setCursorPosition(0);
  QStringList parts{Q(header_->TXT_CodFiscal + " " + header_->TXT_NumeCompanie),
                    Q(header_->TXT_Nume_Prenume + " " + header_->TXT_Nume_Pers).trimmed(),
                    Q(editor_->request().Combo_Tip), file};
  if (header_->Check_Dec_Tert) parts.insert(3, QStringLiteral("declarant ") + Q(header_->TXT_Nume_Dec));
  parts.removeAll(QString());
  summary_->setText(parts.join(QStringLiteral(" \u00b7 ")));
}

void HeaderPanel::SetReadOnly() {
  for (const BoundLine& each : lines_) MakeReadOnly(each.field);
  county_->setEnabled(false);
  town_->setEnabled(false);
  for (const BoundTick& each : ticks_) each.field->setEnabled(false);
  kind_->setEnabled(false);
}

void HeaderPanel::Unfold(bool on) { fold_->setChecked(on); }

QString HeaderPanel::CaptionOf(const QString& field) const {
  for (const QLabel* label : fields_->findChildren<QLabel*>()) {
    if (label->buddy() == nullptr || label->buddy()->objectName() != field) continue;
    return (agent_->isAncestorOf(label) ? QStringLiteral("Declarant tert - ") : QStringLiteral("Antet - ")) +
           label->text();
  }
  return field;
}

void HeaderPanel::WatchFields() {
  for (const Help& help : kHelps) {
    auto* field = fields_->findChild<QWidget*>(QString::fromLatin1(help.name));
    field->setStatusTip(QString::fromLatin1(help.text));
    field->setWhatsThis(field->statusTip());
    watched_.push_back(field);
    field->installEventFilter(this);
    auto* box = qobject_cast<QComboBox*>(field);
    if (box != nullptr && box->lineEdit() != nullptr) box->lineEdit()->installEventFilter(this);
  }
}

QWidget* HeaderPanel::FieldOf(QObject* watched) const {
  for (QWidget* field : watched_) {
    const auto* box = qobject_cast<const QComboBox*>(field);
    if (field == watched || (box != nullptr && box->lineEdit() == watched)) return field;
  }
  return nullptr;
}

void HeaderPanel::MoveOn() {
  for (std::size_t i = 0; i <= watched_.size(); ++i) {
    focusNextChild();
    QWidget* next = window()->focusWidget();
    if (FieldOf(next) != nullptr) return;
    if (next == nullptr || !fields_->isAncestorOf(next)) break;
  }
  Q_EMIT Left();
}

bool HeaderPanel::eventFilter(QObject* watched, QEvent* event) {
  QWidget* field = FieldOf(watched);
  if (field == nullptr) return QWidget::eventFilter(watched, event);
  auto* box = qobject_cast<QComboBox*>(field);
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return false;
    const bool entered = event->type() == QEvent::FocusIn;
    Q_EMIT HelpWanted(entered ? field->statusTip() : QString());
    QLineEdit* line = box != nullptr ? box->lineEdit() : qobject_cast<QLineEdit*>(field);
    // After the mouse press that brought the focus has set its own cursor.
    if (entered && line != nullptr) QMetaObject::invokeMethod(line, "selectAll", Qt::QueuedConnection);
  } else if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool list_open =
        box != nullptr &&
        (box->view()->isVisible() || (box->completer() != nullptr && box->completer()->popup()->isVisible()));
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !list_open) {
      MoveOn();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

bool HeaderPanel::GoTo(const QString& field) {
  auto* found = fields_->findChild<QWidget*>(field);
  if (found == nullptr) return false;
  Unfold(true);
  found->setFocus(Qt::OtherFocusReason);
  if (auto* line = qobject_cast<QLineEdit*>(found)) line->selectAll();
  return true;
}

}  // namespace declarations
