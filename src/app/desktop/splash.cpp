#include "app/desktop/splash.h"

#include <QDesktopServices>
#include <QScreen>
#include <QUrl>

#include "ui/icons.h"
#include "ui/text.h"
#include "update/version_check.h"

namespace app {

QPixmap BackgroundPicture(session::Session& session, const std::string& program_folder) {
  const std::u16string path =
      session.host.files.ToHost(program_folder + "Imagini\\Background.jpg").u16string();
  return QPixmap(QString::fromStdU16String(path));
}

Splash::Splash(session::Session& session, const std::string& program_folder)
    : QWidget(nullptr, Qt::SplashScreen),  // not on top: the start's messages come over it
      picture_(BackgroundPicture(session, program_folder)) {
  setObjectName(QStringLiteral("Frm_Splash"));
  setFixedSize(560, 320);
  move(screen()->availableGeometry().center() - rect().center());
  QPalette dark_text = palette();  // the picture is light whatever the theme
  dark_text.setColor(QPalette::WindowText, QColor(0x1b, 0x2a, 0x3a));
  setPalette(dark_text);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(32, 32, 32, 24);
  auto* name = new QLabel(QStringLiteral("Declarix"), this);
  QFont large = name->font();
  large.setPointSizeF(large.pointSizeF() * 2.6);
  large.setWeight(QFont::DemiBold);
  name->setFont(large);
  layout->addWidget(name);
  layout->addWidget(new QLabel(QStringLiteral("Declaratii Intrastat"), this));
  layout->addStretch(1);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(new QLabel(QStringLiteral("Versiunea ") + ui::Q(update::InstalledVersion()), this));
  bottom->addStretch(1);
  auto* link = new QLabel(this);
  link->setObjectName(QStringLiteral("LblWww"));
  link->setTextFormat(Qt::RichText);
  link->setText(QStringLiteral("<a href=\"www\" style=\"color:#1b4f8a\">Pagina de internet</a>"));
  // The settings are read after the splash is shown, so the address is looked at when clicked.
  connect(link, &QLabel::linkActivated, this, [&session] {
    if (!session.settings.www.empty()) {
      QDesktopServices::openUrl(QUrl::fromUserInput(ui::Q(session.settings.www)));
    }
  });
  bottom->addWidget(link);
  layout->addLayout(bottom);
}

void Splash::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor(0xf3, 0xf6, 0xfa));
  if (!picture_.isNull()) {
    painter.drawPixmap(rect(), picture_.scaled(size() * devicePixelRatioF(), Qt::KeepAspectRatioByExpanding,
                                               Qt::SmoothTransformation));
  }
  painter.setPen(QColor(0xa9, 0xb8, 0xc8));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace app
