// Draws the workbench's windows for the documents: one test a picture, by the real widgets on a
// display with a window manager. Usage: shoot_windows FOLDER [--dark] [--gtest_filter=...]
#include <QVTKOpenGLNativeWidget.h>
#include <QApplication>
#include <QDockWidget>
#include <QPainter>
#include <QScreen>
#include <QStandardPaths>
#include <QTest>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <utility>

#include "Desk.h"
#include "DialogWindow.h"
#include "JournalPanel.h"

namespace marquell::workbench {
namespace {

QString Folder() { return QCoreApplication::arguments().value(1); }

/// The program's windows as they stand on the screen, with their title bars, on nothing.
QImage Shot() {
  // What a window manager and a compositor do takes a moment that nobody tells of.
  constexpr int kSettlingMs = 300;
  QTest::qWait(kSettlingMs);
  QScreen* const screen = QGuiApplication::primaryScreen();
  QImage whole = screen->grabWindow(0).toImage();
  const double ratio = screen->devicePixelRatio();
  whole.setDevicePixelRatio(1.0);
  QRegion shown;
  for (const QWidget* const widget : QApplication::topLevelWidgets()) {
    if (!widget->isVisible() || widget->windowType() == Qt::ToolTip) continue;
    const QRect frame = widget->frameGeometry();
    shown += QRect(frame.topLeft() * ratio, frame.size() * ratio);
  }
  QImage picture(shown.boundingRect().size(), QImage::Format_ARGB32);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.translate(-shown.boundingRect().topLeft());
  for (const QRect& rect : shown) painter.drawImage(rect.topLeft(), whole, rect);
  return picture;
}

void Save(const QImage& picture, const char* name) {
  const QString path = Folder() + "/" + name + ".png";
  EXPECT_TRUE(picture.save(path)) << path.toStdString();
}

class Pictures : public testing::Test {
 protected:
  void SetUp() override {
    desk.window().move(20, 20);
    desk.window().resize(1100, 700);
    desk.OpenExample("part/gmsh_part.vtu");
    desk.Choose("corner");
  }

  void TearDown() override { EXPECT_TRUE(desk.Failures().isEmpty()); }

  void HideDocks() {
    for (QDockWidget* const dock : desk.window().findChildren<QDockWidget*>()) dock->close();
    desk.Settle();
    desk.Choose("fit");
  }

  DialogWindow* Dialog() { return desk.window().findChild<DialogWindow*>(); }

  /// The dialog with variable and modifier chosen.
  void OpenDialog(const char* modifier = "*1.5") {
    desk.Choose("addOn:Marquell ...");
    desk.ChooseFrom("Choose variable to pick and alter", "phi");
    desk.Type("Define modifier for picked notes/cells", modifier);
  }

  void TurnToBlank() {
    auto* const pages = Dialog()->findChild<QTabWidget*>();
    ASSERT_NE(pages, nullptr);
    pages->setCurrentIndex(1);
    desk.Settle();
  }

  /// A turned box in the part.
  void TypeBox() {
    for (const auto& [field, number] :
         {std::pair("Anchor X", "1.2"), std::pair("Anchor Y", "-0.1"),
          std::pair("Anchor Z", "-0.1"), std::pair("Size X", "0.6"), std::pair("Size Y", "0.7"),
          std::pair("Size Z", "0.7"), std::pair("Rotate Z", "15")}) {
      desk.Type(field, number);
    }
  }

  /// A share of the plot's width and height, from its middle.
  QPoint InPlot(double right, double up) {
    return {static_cast<int>(desk.plot().width() * (0.5 + right)),
            static_cast<int>(desk.plot().height() * (0.5 - up))};
  }

  void ShootPlotWindow(const char* name) {
    if (DialogWindow* const dialog = Dialog()) dialog->hide();
    Save(Shot(), name);
  }

  Desk desk;
};

TEST_F(Pictures, MainWindow) { Save(Shot(), "window"); }

TEST_F(Pictures, DialogBesideTheWindow) {
  OpenDialog();
  desk.Press("Define pick area using a rectangle");
  desk.Drag(InPlot(-0.3, 0.1), InPlot(0.1, -0.2));
  Save(Shot(), "window-and-dialog");
}

TEST_F(Pictures, DialogAlter) {
  OpenDialog();
  desk.window().hide();
  Dialog()->show();
  Save(Shot(), "dialog-alter");
}

TEST_F(Pictures, DialogBlank) {
  OpenDialog();
  TurnToBlank();
  desk.Press("Define pick area using a cube");
  desk.window().hide();
  Dialog()->show();
  Save(Shot(), "dialog-blank");
}

TEST_F(Pictures, ToolElement) {
  HideDocks();
  OpenDialog("=3");
  desk.Press("Pick individual cells/nodes");
  desk.Click(InPlot(0.0, 0.0), Qt::ControlModifier);
  ShootPlotWindow("tool-element");
}

TEST_F(Pictures, ToolRectangle) {
  HideDocks();
  OpenDialog();
  desk.Press("Define pick area using a rectangle");
  desk.Drag(InPlot(-0.3, 0.1), InPlot(0.1, -0.2));
  ShootPlotWindow("tool-rectangle");
}

TEST_F(Pictures, ToolCircle) {
  HideDocks();
  OpenDialog();
  desk.Press("Define pick area using a circle");
  desk.Drag(InPlot(0.1, 0.0), InPlot(0.25, 0.0));
  ShootPlotWindow("tool-circle");
}

TEST_F(Pictures, ToolPolygon) {
  HideDocks();
  OpenDialog();
  desk.Press("Define pick area using a polygon");
  for (const QPoint& corner : {InPlot(-0.3, -0.2), InPlot(-0.05, -0.25), InPlot(-0.15, 0.0),
                               InPlot(0.05, 0.15), InPlot(-0.25, 0.2)}) {
    desk.Click(corner);
  }
  QTest::keyClick(&desk.plot(), Qt::Key_Return);
  desk.Settle();
  ShootPlotWindow("tool-polygon");
}

TEST_F(Pictures, ToolBox) {
  HideDocks();
  OpenDialog();
  desk.Press("Define pick area using a cube");
  TypeBox();
  ShootPlotWindow("tool-box");
}

TEST_F(Pictures, ToolSphere) {
  HideDocks();
  OpenDialog();
  desk.Press("Define pick area using a sphere");
  for (const auto& [field, number] : {std::pair("Center X", "1.6"), std::pair("Center Y", "0.1"),
                                      std::pair("Center Z", "0.4"), std::pair("Radius", "0.45")}) {
    desk.Type(field, number);
  }
  ShootPlotWindow("tool-sphere");
}

TEST_F(Pictures, Blanked) {
  HideDocks();
  OpenDialog();
  TurnToBlank();
  desk.Press("Define pick area using a cube");
  TypeBox();
  desk.Press("Apply Blanking");
  ShootPlotWindow("blanked");
}

TEST_F(Pictures, Journal) {
  desk.OpenExample("pitzDaily/pitzDaily.vtm");
  ASSERT_TRUE(desk.window().Journal().OpenFile(MARQUELL_EXAMPLES "/pitzDaily/edits.journal"));
  auto* const dock = desk.window().findChild<QDockWidget*>("journalDock");
  ASSERT_NE(dock, nullptr);
  constexpr int kLinesReadable = 480;
  desk.window().resizeDocks({dock}, {kLinesReadable}, Qt::Horizontal);
  desk.ChooseFrom("Variable that colours the plot", "p (cell)");
  constexpr int kLines = 6;
  for (int line = 0; line < kLines; ++line) desk.Choose("journalStep");
  Save(Shot(), "journal");
}

}  // namespace
}  // namespace marquell::workbench

int main(int argc, char** argv) {
  QStandardPaths::setTestModeEnabled(true);
  QSurfaceFormat::setDefaultFormat(QVTKOpenGLNativeWidget::defaultFormat());
  testing::InitGoogleTest(&argc, argv);
  QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
  QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() < 2) {
    std::fprintf(stderr, "usage: shoot_windows FOLDER [--dark]\n");
    return 2;
  }
  if (arguments.contains("--dark")) {
    QPalette dark(QColor(50, 52, 56));
    dark.setColor(QPalette::Base, QColor(30, 31, 34));
    dark.setColor(QPalette::Text, QColor(230, 230, 230));
    QApplication::setPalette(dark);
  }
  return RUN_ALL_TESTS();
}
