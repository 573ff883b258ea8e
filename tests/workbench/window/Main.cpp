#include <QVTKOpenGLNativeWidget.h>
#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
  // Settings of the one who runs the tests are not touched.
  QStandardPaths::setTestModeEnabled(true);
  QSurfaceFormat::setDefaultFormat(QVTKOpenGLNativeWidget::defaultFormat());
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QCoreApplication::setOrganizationName("Marquell");
  QCoreApplication::setApplicationName("WorkbenchTest");
  return RUN_ALL_TESTS();
}
