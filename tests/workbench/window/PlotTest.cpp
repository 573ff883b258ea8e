// What the plot shows, and that it agrees with pictures made without a window.
#include <QFile>
#include <QImage>
#include <QOpenGLWidget>
#include <QProcess>
#include <QTreeWidget>

#include <gmock/gmock.h>

#include <cstdlib>

#include "Desk.h"
#include "MenuBar.h"
#include "OffscreenPicture.h"
#include "PickWatch.h"

namespace marquell::workbench {
namespace {

using testing::HasSubstr;

QImage Shot(Desk& desk) {
  desk.plot().Follow();
  desk.Settle();
  return desk.plot().grabFramebuffer().convertToFormat(QImage::Format_RGB888);
}

/// The part of the pixels that differ visibly.
double Difference(const QImage& a, const QImage& b) {
  if (a.size() != b.size()) return 1.0;
  constexpr int kVisible = 24;
  int count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y);
      const QRgb q = b.pixel(x, y);
      const int most = std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                 std::abs(qBlue(p) - qBlue(q))});
      if (most > kVisible) ++count;
    }
  }
  return static_cast<double>(count) / (a.width() * a.height());
}

/// The part of the pixels that are neither white nor grey.
double Colourful(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor colour(image.pixel(x, y));
      if (colour.saturation() > 60) ++count;
    }
  }
  return static_cast<double>(count) / (image.width() * image.height());
}

TEST(PlotTest, TheWindowAndAPictureWithoutAWindowAgree) {
  Desk desk;
  desk.OpenExample("pitzDaily/pitzDaily.vtm");
  const QImage shown = Shot(desk);
  const QString file = desk.Path("picture.png");
  desk.plot().WritePicture(file.toStdString(), shown.width(), shown.height());
  const QImage drawn = QImage(file).convertToFormat(QImage::Format_RGB888);
  EXPECT_GT(Colourful(shown), 0.03);
  EXPECT_LT(Difference(shown, drawn), 0.01);
}

TEST(PlotTest, TheWindowAndTheCommandLineDrawTheSamePicture) {
  Desk desk;
  desk.OpenExample("pitzDaily/pitzDaily.vtm");
  qelhost::PlotLook look;
  look.variable = desk.Frame().Data()->VariableNumber("p");
  const qelhost::Range range = desk.Frame().Data()->VariableRange(look.variable);
  look.min = range.min;
  look.max = range.max;
  const QImage inWindow = DrawOffscreen(desk.Frame(), look, 800, 600);
  QFile journal(desk.Path("look.journal"));
  ASSERT_TRUE(journal.open(QIODevice::WriteOnly));
  journal.write("# marquell journal 1\n");
  journal.close();
  const QString picture = desk.Path("headless.png");
  ASSERT_EQ(QProcess::execute(MARQUELL_PROGRAM,
                              {"run", journal.fileName(), desk.Path("pitzDaily/pitzDaily.vtm"),
                               "--dry-run", "--quiet", "--image", picture, "--image-variable", "p",
                               "--add-on", MARQUELL_ADDON}),
            0);
  const QImage headless = QImage(picture).convertToFormat(QImage::Format_RGB888);
  EXPECT_GT(Colourful(headless), 0.03);
  EXPECT_LT(Difference(inWindow, headless), 0.005);
}

TEST(PlotTest, AnEmptyWindowIsWhite) {
  Desk desk;
  EXPECT_EQ(Colourful(Shot(desk)), 0.0);
}

TEST(PlotTest, LayersZonesAndColoursChangeThePicture) {
  Desk desk;
  desk.OpenExample("pitzDaily/pitzDaily.vtm");
  const QImage before = Shot(desk);
  for (const char* const layer : {"SHOWMESH", "SHOWCONTOUR", "SHOWSCATTER", "SHOWSHADE"}) {
    desk.Choose(layer);
    EXPECT_GT(Difference(before, Shot(desk)), 0.0005) << layer;
    desk.Choose(layer);
    EXPECT_EQ(before, Shot(desk)) << layer;
  }
  auto* const zones = desk.window().findChild<QTreeWidget*>("zones");
  ASSERT_GT(zones->topLevelItemCount(), 0);
  // The channel and its front lie one on the other.
  zones->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
  EXPECT_FALSE(desk.Frame().Data()->FindZone(1)->active);
  zones->topLevelItem(5)->setCheckState(0, Qt::Unchecked);
  EXPECT_GT(Difference(before, Shot(desk)), 0.001);
}

TEST(PlotTest, TimeStepsAreWalkedThrough) {
  Desk desk;

  desk.OpenExample("flange/flange.pvd");
  auto* const slider = desk.window().findChild<QSlider*>("timeSlider");
  ASSERT_TRUE(slider->isEnabled());
  EXPECT_EQ(slider->maximum(), 2);
  desk.ChooseFrom("Variable that colours the plot", "T");
  const QImage first = Shot(desk);
  slider->setValue(2);
  EXPECT_EQ(desk.Frame().solutionTime, desk.Frame().Data()->SolutionTimes()[2]);
  EXPECT_GT(Difference(first, Shot(desk)), 0.001);
}

TEST(PlotTest, ViewsLookAlongTheAxes) {
  Desk desk;
  desk.OpenExample("part/gmsh_part.vtu");
  desk.Choose("alongY");
  EXPECT_EQ(desk.Frame().view.psiDeg, 90.0);
  EXPECT_EQ(desk.Frame().view.alphaDeg, 0.0);
  desk.Choose("alongX");
  EXPECT_EQ(desk.Frame().view.alphaDeg, -90.0);
  desk.Choose("alongZ");
  EXPECT_EQ(desk.Frame().view.psiDeg, 0.0);
  desk.Choose("plot2d");
  EXPECT_EQ(desk.Frame().plotType, PlotType_Cartesian2D);
  EXPECT_FALSE(ActionNamed(&desk.window(), "alongX")->isEnabled());
}

TEST(PlotTest, ThePickInHandIsMarkedAndCounted) {
  Desk desk;
  desk.OpenExample("pitzDaily/pitzDaily.vtm");
  desk.Choose("addOn:Marquell ...");
  desk.ChooseFrom("Choose variable to pick and alter", "p (cell)");
  desk.Type("Define modifier for picked notes/cells", "*2");
  desk.Press("Define pick area using a rectangle");
  EXPECT_EQ(desk.Label("counted"), "");
  const QImage before = Shot(desk);
  desk.Drag(desk.At(-0.05, -0.02), desk.At(0.05, 0.02));
  desk.Settle();
  EXPECT_THAT(desk.Label("counted").toStdString(), testing::MatchesRegex("[0-9 ]+ (cells|nodes) in "
                                                                         "[0-9]+ zones?"));
  EXPECT_GT(Difference(before, Shot(desk)), 0.01);
}

}  // namespace
}  // namespace marquell::workbench
