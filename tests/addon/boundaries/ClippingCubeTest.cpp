// The box: its corners, its command.
#include "CubeTest.h"

#include <cmath>

namespace {

using fakehost::Boundary3dTest;
using fakehost::BoxNodes;
using fakehost::ClippingCube;
using fakehost::Cube;
using fakehost::ExpectNodes;
using fakehost::kUpright;
using fakehost::Point;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::MacroEngine;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The upright box a quarter turn about z, which keeps every number short.
constexpr char kTurned[] =
    "PICKCUBE ANCHORX=1 ANCHORY=1 ANCHORZ=0 SIZEX=2 SIZEY=1 SIZEZ=1 ROTATEZ=90";

// Shape ----------------------------------------------------------------------------------------

TEST_F(ClippingCube, CornersStandInTheirOrder) {
  ASSERT_TRUE(Take(cube, kUpright));
  ASSERT_TRUE(cube.Create());
  ExpectNodes(NodesOf(2), BoxNodes(0.5, 1, 1.5, 1.5, 2.25, 3.5));
  EXPECT_TRUE(cube.IsGeometryValid());
}

TEST_F(ClippingCube, BoundingBoxOfANegativeSizeIsInOrder) {
  ASSERT_TRUE(Take(cube, "PICKCUBE ANCHORX=1 ANCHORY=1 ANCHORZ=1 SIZEX=-2 SIZEY=-3 SIZEZ=-4"));
  EXPECT_EQ(cube.BoundingBox().min.x, -1.0);
  EXPECT_EQ(cube.BoundingBox().max.x, 1.0);
  EXPECT_EQ(cube.BoundingBox().min.y, -2.0);
  EXPECT_EQ(cube.BoundingBox().max.y, 1.0);
  EXPECT_EQ(cube.BoundingBox().min.z, -3.0);
  EXPECT_EQ(cube.BoundingBox().max.z, 1.0);
}

TEST_F(ClippingCube, UprightBoxHoldsEveryPointOfItsBoundingBox) {
  ASSERT_TRUE(Take(cube, kUpright));
  for (const double x : {0.5, 1.0, 1.5}) {
    for (const double y : {1.0, 2.0, 2.25}) {
      for (const double z : {1.5, 2.0, 3.5}) EXPECT_TRUE(cube.IsInside(x, y, z));
    }
  }
}

TEST_F(ClippingCube, TurnsAboutItsAnchor) {
  ASSERT_TRUE(Take(cube, kTurned));
  ASSERT_TRUE(cube.Create());
  const std::vector<Point> nodes = NodesOf(2);
  ASSERT_EQ(nodes.size(), 8u);
  EXPECT_NEAR(nodes[0].x, 1, 1e-12) << "the anchor stays";
  EXPECT_NEAR(nodes[0].y, 1, 1e-12);
  // The corner beside it in x goes to where y grew by the size in x.
  EXPECT_NEAR(nodes[3].x, 1, 1e-12);
  EXPECT_NEAR(nodes[3].y, 3, 1e-12);
  EXPECT_NEAR(cube.BoundingBox().min.x, 0, 1e-12);
  EXPECT_NEAR(cube.BoundingBox().max.y, 3, 1e-12);
  EXPECT_TRUE(cube.IsInside(0.5, 2.5, 0.5));
  EXPECT_FALSE(cube.IsInside(1.5, 2.5, 0.5));
}

struct TurnRow {
  const char* rule;
  const char* angles;
  Point corner;  ///< where the corner at (1, 2, 3) goes, the anchor being the origin
};

class CubeTurn : public Boundary3dTest, public ::testing::WithParamInterface<TurnRow> {};

TEST_P(CubeTurn, GoesAboutZThenYThenX) {
  ASSERT_TRUE(Take(cube, std::string("PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=2 "
                                     "SIZEZ=3 ") +
                             GetParam().angles));
  ASSERT_TRUE(cube.Create());
  const Point seen = NodesOf(2).at(6);
  EXPECT_NEAR(seen.x, GetParam().corner.x, 1e-12);
  EXPECT_NEAR(seen.y, GetParam().corner.y, 1e-12);
  EXPECT_NEAR(seen.z, GetParam().corner.z, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, CubeTurn,
    ::testing::Values(TurnRow{"X", "ROTATEX=90", {1, -3, 2}},
                      TurnRow{"Y", "ROTATEY=90", {3, 2, -1}},
                      TurnRow{"Z", "ROTATEZ=90", {-2, 1, 3}},
                      TurnRow{"ZThenX", "ROTATEX=90 ROTATEZ=90", {-2, -3, 1}},
                      TurnRow{"ZThenY", "ROTATEY=90 ROTATEZ=90", {3, 1, 2}},
                      TurnRow{"YThenX", "ROTATEX=90 ROTATEY=90", {3, 1, 2}},
                      TurnRow{"All", "ROTATEX=90 ROTATEY=90 ROTATEZ=90", {3, -2, 1}},
                      TurnRow{"Back", "ROTATEZ=-90", {2, -1, 3}}),
    [](const auto& row) { return std::string(row.param.rule); });

/// A turn about one axis as a function of its own, so that the two inverses can be told apart.
Point AboutX(const Point& p, double degrees) {
  const double a = degrees * std::acos(-1.0) / 180;
  return {p.x, std::cos(a) * p.y - std::sin(a) * p.z, std::sin(a) * p.y + std::cos(a) * p.z};
}
Point AboutY(const Point& p, double degrees) {
  const double a = degrees * std::acos(-1.0) / 180;
  return {std::cos(a) * p.x + std::sin(a) * p.z, p.y, -std::sin(a) * p.x + std::cos(a) * p.z};
}
bool IsInUnitBox(const Point& p) {
  const auto isWithin = [](double value) { return value >= 0 && value <= 1; };
  return isWithin(p.x) && isWithin(p.y) && isWithin(p.z);
}

TEST_F(ClippingCube, TwoAnglesAreTurnedBackInTheOrderOfTheTurn) {
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1 "
                   "ROTATEX=30 ROTATEY=40"));
  int differences = 0;
  for (double x = -0.93; x < 1.5; x += 0.11) {
    for (double y = -0.95; y < 1.5; y += 0.13) {
      for (double z = -0.97; z < 1.5; z += 0.17) {
        const Point p{x, y, z};
        const bool expected = IsInUnitBox(AboutX(AboutY(p, -40), -30));
        EXPECT_EQ(cube.IsInside(x, y, z), expected) << x << " " << y << " " << z;
        if (expected != IsInUnitBox(AboutY(AboutX(p, -30), -40))) ++differences;
      }
    }
  }
  EXPECT_GT(differences, 0) << "the exact inverse would have answered alike";
}

// The command ----------------------------------------------------------------------------------

TEST_F(ClippingCube, CommandGivesEveryNumber) {
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ROTATEZ=9 ROTATEY=8 ROTATEX=7 SIZEZ=6 SIZEY=5 SIZEX=4 "
                   "ANCHORZ=3 ANCHORY=2 ANCHORX=1"));
  EXPECT_THAT(cube.Definition(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9));
  EXPECT_TRUE(cube.IsGeometryValid());
}

TEST_F(ClippingCube, CommandWithoutAnglesGivesAnUprightBox) {
  ASSERT_TRUE(Take(cube, kTurned));
  ASSERT_TRUE(Take(cube, kUpright));
  EXPECT_THAT(cube.Definition(), ElementsAre(0.5, 1, 1.5, 1, 1.25, 2, 0, 0, 0));
  EXPECT_TRUE(cube.IsInside(0.5, 1, 1.5)) << "nothing is turned any more";
}

TEST_F(ClippingCube, CommandDoesNotTouchTheZone) {
  ASSERT_TRUE(cube.Create());
  const std::vector<Point> before = NodesOf(2);
  host.notices.clear();
  ASSERT_TRUE(Take(cube, kUpright));
  ExpectNodes(NodesOf(2), before);
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_THAT(host.idleQueue, IsEmpty());
}

struct FaultRow {
  const char* rule;
  const char* line;
  const char* message;
};

class CubeFault : public Boundary3dTest, public ::testing::WithParamInterface<FaultRow> {};

TEST_P(CubeFault, IsReportedAndLeavesTheBoxAsItWas) {
  ASSERT_TRUE(Take(cube, kUpright));
  const auto before = cube.Definition();
  EXPECT_FALSE(Take(cube, GetParam().line));
  EXPECT_EQ(MacroEngine.GlobalError(), GetParam().message);
  EXPECT_EQ(cube.Definition(), before);
}

constexpr char kMissing[] = "Missing parameter in PICKCUBE macro";
constexpr char kBad[] = "Bad value for parameter in PICKCUBE macro";

INSTANTIATE_TEST_SUITE_P(
    Rules, CubeFault,
    ::testing::Values(
        FaultRow{"NoSizeX", "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEY=1 SIZEZ=1", kMissing},
        FaultRow{"NoSizeY", "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEZ=1", kMissing},
        FaultRow{"NoSizeZ", "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1", kMissing},
        FaultRow{"NoAnchorX", "PICKCUBE ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1", kMissing},
        FaultRow{"NoAnchorY", "PICKCUBE ANCHORX=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1", kMissing},
        FaultRow{"NoAnchorZ", "PICKCUBE ANCHORX=0 ANCHORY=0 SIZEX=1 SIZEY=1 SIZEZ=1", kMissing},
        FaultRow{"Nothing", "PICKCUBE", kMissing},
        FaultRow{"OtherAttribute", "PICKCUBE RADIUS=1", kBad},
        FaultRow{"OtherAttributeAtTheEnd",
                 "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1 ZONE=1", kBad},
        FaultRow{"StringForANumber", "PICKCUBE ANCHORX=\"1\"", kBad},
        FaultRow{"KeywordForANumber", "PICKCUBE SIZEX=SPHERE", kBad},
        FaultRow{"StringForAnAngle", "PICKCUBE ROTATEZ=\"90\"", kBad}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(ClippingCube, IsRecordedAsItsCommand) {
  host.isRecording = true;
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=1e20 SIZEX=-1.25 SIZEY=2 SIZEZ=3 "
                   "ROTATEY=-40"));
  const HostLock lock;
  MacroEngine.AddStringAttribute(qelvane::qelutiltools::Attribute_Variable, "left from before");
  cube.RecordAsMacro();
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKCUBE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=1e+20 SIZEX=-1.25 "
                          "SIZEY=2 SIZEZ=3 ROTATEX=0 ROTATEY=-40 ROTATEZ=0"));
}

TEST_F(ClippingCube, RecordedLineMakesTheSameBox) {
  host.isRecording = true;
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ANCHORX=-0.125 ANCHORY=12.5 ANCHORZ=-3 SIZEX=-1.5 SIZEY=0 "
                   "SIZEZ=1e-3 ROTATEX=30 ROTATEY=-40.5 ROTATEZ=359"));
  {
    const HostLock lock;
    cube.RecordAsMacro();
  }
  Cube played{[] { return true; }};
  const std::string line = host.recordedLines.at(0).substr(std::string("Marquell ").size());
  ASSERT_TRUE(Take(played, line)) << line;
  EXPECT_EQ(played.Definition(), cube.Definition());
}

TEST_F(ClippingCube, IsNotRecordedWhileTheHostDoesNotRecord) {
  const HostLock lock;
  cube.RecordAsMacro();
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

}  // namespace
