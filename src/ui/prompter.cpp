#include "ui/prompter.h"

#include <QMessageBox>

#include "ui/progress.h"
#include "ui/text.h"

namespace ui {
namespace {

QMessageBox::Icon IconOf(platform::Icon icon) {
  switch (icon) {
    case platform::Icon::kNone:
      return QMessageBox::NoIcon;
    case platform::Icon::kInformation:
      return QMessageBox::Information;
    case platform::Icon::kQuestion:
      return QMessageBox::Question;
    case platform::Icon::kExclamation:
      return QMessageBox::Warning;
    case platform::Icon::kCritical:
      return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

int Show(std::string_view text, std::string_view title, platform::Icon icon,
         QMessageBox::StandardButtons buttons, QMessageBox::StandardButton standing) {
  QWidget* over = QApplication::activeModalWidget();
  if (over != nullptr && over->objectName() == kProgressBox) {
    over->hide();  // it comes back with the run's next step
    over = over->parentWidget();
  }
  if (over == nullptr) over = QApplication::activeWindow();
  QString shown = Q(text);
  shown.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
  QMessageBox box(IconOf(icon), Q(title), shown, buttons, over);
  box.setTextFormat(Qt::PlainText);  // company names and paths may hold "<" or "&"
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.setDefaultButton(standing);
  box.setObjectName(QStringLiteral("Mesaj"));
  return box.exec();
}

}  // namespace

void QtPrompter::Message(std::string_view text, std::string_view title, platform::Icon icon) {
  Show(text, title, icon, QMessageBox::Ok, QMessageBox::Ok);
}

bool QtPrompter::Ask(std::string_view text, std::string_view title, platform::Icon icon) {
  return Show(text, title, icon, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace ui
