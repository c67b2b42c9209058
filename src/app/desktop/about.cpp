#include "app/desktop/about.h"

#include <QDialogButtonBox>

#include "ui/icons.h"
#include "ui/text.h"
#include "update/version_check.h"

namespace app {

using ui::Q;

Frm_Despre::Frm_Despre(ui::Context& screen_context, QWidget* parent)
    : Screen(screen_context, QStringLiteral("Frm_Despre"), parent) {
  setWindowTitle(QStringLiteral("Despre program"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 24, 24, 16);
  layout->setSpacing(16);

  auto* head = new QHBoxLayout;
  head->setSpacing(16);
  auto* picture = new QLabel(this);
  picture->setPixmap(ui::Icon(QStringLiteral("declarix")).pixmap(64, 64));
  head->addWidget(picture);
  auto* title = new QVBoxLayout;
  auto* name = new QLabel(QStringLiteral("Declarix"), this);
  QFont large = name->font();
  large.setPointSizeF(large.pointSizeF() * 1.8);
  large.setWeight(QFont::DemiBold);
  name->setFont(large);
  title->addWidget(name);
  auto* version = new QLabel(QStringLiteral("Versiunea ") + Q(update::InstalledVersion()), this);
  version->setObjectName(QStringLiteral("LblVersiune"));
  title->addWidget(version);
  title->addWidget(new QLabel(QStringLiteral("Program pentru declaratiile statistice Intrastat"), this));
  head->addLayout(title, 1);
  layout->addLayout(head);

  auto* facts = new QFormLayout;
  facts->setHorizontalSpacing(16);
  facts->setVerticalSpacing(6);
  const auto fact = [&](const char* label, const std::string& value) {
    if (value.empty()) return;
    auto* text = new QLabel(Q(value), this);
    text->setTextFormat(Qt::PlainText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text->setWordWrap(true);
    text->setMinimumWidth(text->fontMetrics().averageCharWidth() * 40);
    facts->addRow(QString::fromLatin1(label), text);
  };
  const session::Publisher& publisher = session().publisher;
  fact("Editor", publisher.NumeFirma);
  fact("Telefon", publisher.Telefon);
  fact("Email", publisher.Email);
  fact("Pagina", session().settings.www);
  fact("Firma curenta", session().current.Nume_Firma + " (" + session().current.Cod_Fiscal + ")");
  fact("Baze de date", session().settings.DataBase);
  fact("Setari", session().settings_file);
  fact("Utilizator", session().user_name);
  layout->addLayout(facts);
  layout->addStretch(1);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

}  // namespace app
