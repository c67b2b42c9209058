#include <QApplication>
#include <clocale>

#include "app/desktop/desktop.h"
#include "ui/icons.h"
#include "ui/romanian.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  setlocale(LC_NUMERIC, "C");  // numbers in statements and files have a decimal point; screens use QLocale
  QApplication::setApplicationName(QStringLiteral("Declarix"));
  QApplication::setQuitOnLastWindowClosed(false);  // the exit action ends the program
  QApplication::setWindowIcon(ui::Icon(QStringLiteral("declarix")));
  ui::RomanianTexts texts;
  QApplication::installTranslator(&texts);
  return app::RunDesktop();
}
