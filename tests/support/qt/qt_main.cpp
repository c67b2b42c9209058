#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

// Screens are tested without a display, in the locale that most of their users have.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  QLocale::setDefault(QLocale(QLocale::Romanian, QLocale::Romania));
  QApplication application(argc, argv);
  application.setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
