// The mouse in the plot, tool by tool.
#include <QApplication>
#include <QTest>

#include <gmock/gmock.h>

#include "Desk.h"
#include "PlotActions.h"

namespace marquell::workbench {
namespace {

using testing::DoubleNear;
using testing::HasSubstr;

class MouseTest : public testing::Test {
 protected:
  void SetUp() override { desk.OpenExample("pitzDaily/pitzDaily.vtm"); }
  Desk desk;
};

/// Half a pixel's worth, where numbers come from pixels.
double Slack(Desk& desk) { return 1.5 * desk.plot().Scene().GridPerPixel(); }

TEST_F(MouseTest, ARectangleIsDrawnBetweenTwoCorners) {
  desk.Choose("modeRectangle");
  desk.Drag(desk.At(0.05, 0.02), desk.At(-0.05, -0.01));
  ASSERT_EQ(desk.Frame().geometries.Count(), 1);
  const qelhost::Geometry& drawn = *desk.Frame().geometries.At(1);
  EXPECT_EQ(drawn.type, GeomType_Rectangle);
  EXPECT_THAT(drawn.anchor[0], DoubleNear(-0.05, Slack(desk)));
  EXPECT_THAT(drawn.anchor[1], DoubleNear(-0.01, Slack(desk)));
  EXPECT_THAT(drawn.size[0], DoubleNear(0.1, 2 * Slack(desk)));
  EXPECT_THAT(drawn.size[1], DoubleNear(0.03, 2 * Slack(desk)));
}

TEST_F(MouseTest, ACircleIsDrawnAboutItsCentre) {
  desk.Choose("modeCircle");
  desk.Drag(desk.At(0.0, 0.0), desk.At(0.03, 0.0));
  ASSERT_EQ(desk.Frame().geometries.Count(), 1);
  EXPECT_EQ(desk.Frame().geometries.At(1)->type, GeomType_Circle);
  EXPECT_THAT(desk.Frame().geometries.At(1)->size[0], DoubleNear(0.03, 2 * Slack(desk)));
}

TEST_F(MouseTest, ASquareKeepsItsFirstCornerWhereverItIsDragged) {
  desk.Choose("modeSquare");
  desk.Drag(desk.At(0.05, 0.01), desk.At(0.02, 0.0));
  ASSERT_EQ(desk.Frame().geometries.Count(), 1);
  const qelhost::Geometry& drawn = *desk.Frame().geometries.At(1);
  EXPECT_EQ(drawn.type, GeomType_Square);
  EXPECT_THAT(drawn.anchor[0] + drawn.size[0], DoubleNear(0.05, 2 * Slack(desk)));
  EXPECT_THAT(drawn.anchor[1] + drawn.size[0], DoubleNear(0.01, 2 * Slack(desk)));
}

TEST_F(MouseTest, APolygonEndsWithADoubleClick) {
  desk.Choose("modePolygon");
  for (const QPoint& corner : {desk.At(-0.05, -0.02), desk.At(0.05, -0.02), desk.At(0.0, 0.02)}) {
    desk.Click(corner);
  }
  QTest::mouseDClick(&desk.plot(), Qt::LeftButton, Qt::NoModifier, desk.At(0.0, 0.02));
  desk.Settle();
  ASSERT_EQ(desk.Frame().geometries.Count(), 1);
  EXPECT_EQ(desk.Frame().geometries.At(1)->type, GeomType_LineSegs);
  EXPECT_EQ(desk.Frame().geometries.At(1)->points.size(), 3u);
}

TEST_F(MouseTest, APolygonEndsAtItsFirstCornerAndWithEnter) {
  desk.Choose("modePolygon");
  for (const QPoint& corner :
       {desk.At(-0.05, -0.02), desk.At(0.05, -0.02), desk.At(0.0, 0.02), desk.At(-0.05, -0.02)}) {
    desk.Click(corner);
  }
  EXPECT_EQ(desk.Frame().geometries.Count(), 1);
  desk.Choose("modePolygon");
  for (const QPoint& corner : {desk.At(0.1, -0.02), desk.At(0.15, -0.02), desk.At(0.12, 0.02)}) {
    desk.Click(corner);
  }
  QTest::keyClick(&desk.plot(), Qt::Key_Return);
  EXPECT_EQ(desk.Frame().geometries.Count(), 2);
}

TEST_F(MouseTest, EscapeGivesUpWhatIsBeingDrawn) {
  desk.Choose("modePolygon");
  desk.Click(desk.At(-0.05, -0.02));
  desk.Click(desk.At(0.05, -0.02));
  QTest::keyClick(&desk.plot(), Qt::Key_Escape);
  QTest::keyClick(&desk.plot(), Qt::Key_Return);
  EXPECT_EQ(desk.Frame().geometries.Count(), 0);
}

TEST_F(MouseTest, AClickDrawsNothing) {
  desk.Choose("modeRectangle");
  desk.Click(desk.At(0.0, 0.0));
  EXPECT_EQ(desk.Frame().geometries.Count(), 0);
}

TEST_F(MouseTest, AGeometryIsSelectedMovedAndDeleted) {
  desk.Choose("modeRectangle");
  desk.Drag(desk.At(-0.05, -0.02), desk.At(0.05, 0.02));
  desk.Choose("modeSelect");
  ASSERT_EQ(desk.Frame().geometries.Count(), 1);
  const auto before = desk.Frame().geometries.At(1)->anchor;
  desk.Drag(desk.At(0.0, 0.02), desk.At(0.04, 0.01));
  ASSERT_EQ(desk.Frame().picked.size(), 1u);
  const auto after = desk.Frame().geometries.At(1)->anchor;
  EXPECT_THAT(after[0] - before[0], DoubleNear(0.04, 2 * Slack(desk)));
  EXPECT_THAT(after[1] - before[1], DoubleNear(-0.01, 2 * Slack(desk)));
  desk.Choose("deleteGeometry");
  EXPECT_EQ(desk.Frame().geometries.Count(), 0);
  EXPECT_TRUE(desk.Frame().picked.empty());
}

TEST_F(MouseTest, DraggingBesideGeometriesTurnsA3dPlot) {
  const qelhost::View before = desk.Frame().view;
  desk.Drag(desk.At(0.0, 0.0), desk.At(0.05, 0.0));
  EXPECT_FALSE(qelhost::HaveSameProjection(before, desk.Frame().view));
}

TEST_F(MouseTest, TheMiddleButtonMovesThePlotWithThePointer) {
  const auto under = desk.plot().Scene().GridAt(400, 300);
  const qelhost::View before = desk.Frame().view;
  const double ratio = desk.plot().devicePixelRatioF();
  const QPoint from(static_cast<int>(400 / ratio),
                    desk.plot().height() - 1 - static_cast<int>(300 / ratio));
  desk.Drag(from, from + QPoint(60, -40), Qt::MiddleButton);
  EXPECT_TRUE(qelhost::HaveSameProjection(before, desk.Frame().view));
  const auto now = desk.plot().Scene().GridAt(400 + 60 * ratio, 300 + 40 * ratio);
  EXPECT_THAT(now[0], DoubleNear(under[0], Slack(desk)));
  EXPECT_THAT(now[1], DoubleNear(under[1], Slack(desk)));
}

TEST_F(MouseTest, TheWheelZoomsAboutThePointer) {
  const QPoint at = desk.At(0.1, 0.01);
  for (int notch = 0; notch < 3; ++notch) desk.Wheel(at, 1);
  EXPECT_GT(desk.Frame().view.magnification, 1.3);
  EXPECT_NEAR(desk.At(0.1, 0.01).x(), at.x(), 2);
  EXPECT_NEAR(desk.At(0.1, 0.01).y(), at.y(), 2);
}

TEST_F(MouseTest, AClickWithTheProbeSaysWhatIsThere) {
  desk.Choose("modeProbe");
  desk.Click(desk.At(0.0, 0.0));
  EXPECT_GT(desk.host().interaction.probedZone, 0);
  EXPECT_GT(desk.host().interaction.probedCell, 0);
  EXPECT_THAT(desk.Label("probed").toStdString(), HasSubstr("cell"));
  EXPECT_THAT(desk.Label("probed").toStdString(), HasSubstr("p (cell) = "));
  desk.Click(desk.At(0.0, 0.0), Qt::ControlModifier);
  EXPECT_THAT(desk.Label("probed").toStdString(), HasSubstr("node"));
}

TEST_F(MouseTest, AClickBesideTheDataProbesNothing) {
  desk.Choose("modeProbe");
  desk.Click(desk.At(0.0, 0.12));
  EXPECT_EQ(desk.host().interaction.probedZone, 0);
  EXPECT_EQ(desk.Label("probed"), "Nothing there");
}

TEST_F(MouseTest, KeysChooseTools) {
  QApplication::setActiveWindow(&desk.window());
  QTest::keyClick(&desk.window(), Qt::Key_C);
  EXPECT_EQ(desk.host().interaction.mouseMode, Mouse_GeomCircle);
  QTest::keyClick(&desk.window(), Qt::Key_S);
  EXPECT_EQ(desk.host().interaction.mouseMode, Mouse_Select);
}

}  // namespace
}  // namespace marquell::workbench
