#include <gmock/gmock.h>

#include <QApplication>

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  // A window that comes up on a developer's own screen would take the keyboard away.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
  const QApplication application(argc, argv);
  QApplication::setStyle("fusion");
  return RUN_ALL_TESTS();
}
