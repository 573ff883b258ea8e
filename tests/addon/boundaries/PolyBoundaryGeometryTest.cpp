#include "BoundaryTest.h"
#include "CMacroEngine.h"
#include "HostLock.h"
#include "PolyBoundary.h"

#include <functional>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {
namespace {

using fakehost::BoundaryTest;
using fakehost::Geometry;
using fakehost::Host;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr bool kInPaper = true;

Geometry Shape(QelGeomType_e type, double width, double height = 0.0) {
  Geometry geometry;
  geometry.type = type;
  geometry.anchor = {10.0, 20.0, 0.0};
  geometry.width = width;
  geometry.height = height;
  return geometry;
}

Geometry Polyline(const std::vector<double>& xs, const std::vector<double>& ys) {
  Geometry geometry = Shape(GeomType_LineSegs, 0.0);
  for (std::size_t i = 0; i < xs.size(); ++i) geometry.points.push_back({xs[i], ys[i], 0.0});
  return geometry;
}

/// Paper is grid, twice as large and moved.
class BoundaryFromGeometry : public BoundaryTest {
 protected:
  BoundaryFromGeometry() {
    host.AddFrame(PlotType_Cartesian2D);
    host.isRecording = true;
    host.paperScale = 2.0;
    host.paperX = 100.0;
    host.paperY = -50.0;
  }

  bool Take(Geometry geometry, bool usePaperCoords = false) {
    geometry.coordSys = CoordSys_Paper;
    return boundary.SetFromGeometry(host.AddGeometry(geometry), usePaperCoords);
  }

  void Record(const CPolyBoundary& recorded) const {
    const HostLock lock;
    recorded.RecordAsMacro();
  }

  CPolyBoundary boundary;
};

TEST_F(BoundaryFromGeometry, RectangleSpansItsSizeFromTheAnchorReadInGrid) {
  ASSERT_TRUE(Take(Shape(GeomType_Rectangle, 4, 2)));
  EXPECT_EQ(host.ActiveFrame().geometries.back().coordSys, CoordSys_Grid);
  EXPECT_TRUE(boundary.IsInside(14, 22));
  EXPECT_FALSE(boundary.IsInside(14, 22.1));
  EXPECT_FALSE(boundary.IsInside(9.9, 21));
}

TEST_F(BoundaryFromGeometry, RectangleOfNegativeSizeSpansToTheLeftAndDown) {
  ASSERT_TRUE(Take(Shape(GeomType_Rectangle, -4, -2)));
  EXPECT_TRUE(boundary.IsInside(6, 18));
  EXPECT_FALSE(boundary.IsInside(10.1, 20));
}

TEST_F(BoundaryFromGeometry, SquareSpansItsSideInBothDirections) {
  ASSERT_TRUE(Take(Shape(GeomType_Square, 3)));
  EXPECT_TRUE(boundary.IsInside(13, 23));
  EXPECT_FALSE(boundary.IsInside(13.1, 23));
  EXPECT_FALSE(boundary.IsInside(13, 23.1));
}

TEST_F(BoundaryFromGeometry, CircleStaysInGridUnlessPaperIsAskedFor) {
  ASSERT_TRUE(Take(Shape(GeomType_Circle, 5)));
  EXPECT_TRUE(boundary.IsInside(13, 24));
  EXPECT_FALSE(boundary.IsInside(13.1, 24));
}

TEST_F(BoundaryFromGeometry, CircleInPaperHasItsCentreAndRadiusConverted) {
  ASSERT_TRUE(Take(Shape(GeomType_Circle, 5), kInPaper));
  // Centre (10, 20) is (120, -10) on paper, radius 5 is 10.
  EXPECT_TRUE(boundary.IsInside(126, -2));
  EXPECT_FALSE(boundary.IsInside(126.1, -2));
  EXPECT_FALSE(boundary.IsInside(10, 20));
}

TEST_F(BoundaryFromGeometry, RectangleIsNeverInPaper) {
  ASSERT_TRUE(Take(Shape(GeomType_Rectangle, 4, 2), kInPaper));
  EXPECT_TRUE(boundary.IsInside(12, 21));
}

TEST_F(BoundaryFromGeometry, PolylineIsClosedAndItsPointsAreRelativeToTheAnchor) {
  ASSERT_TRUE(Take(Polyline({0, 4, 0}, {0, 0, 4}), kInPaper));
  EXPECT_TRUE(boundary.IsInside(11, 21));
  EXPECT_FALSE(boundary.IsInside(13, 23));
  EXPECT_FALSE(boundary.IsInside(1, 1));
}

TEST_F(BoundaryFromGeometry, RefusedGeometryKeepsTheShapeHeldBefore) {
  ASSERT_TRUE(boundary.SetRectangle(0, 0, 1, 1));
  EXPECT_FALSE(boundary.SetFromGeometry(12345678, false));
  EXPECT_FALSE(Take(Shape(GeomType_Ellipse, 4, 2)));
  EXPECT_FALSE(Take(Polyline({0, 4}, {0, 0})));
  EXPECT_TRUE(boundary.IsRectangle());
  EXPECT_TRUE(boundary.IsInside(1, 1));
}

TEST_F(BoundaryFromGeometry, PolylineOnALineBuildsNothing) {
  EXPECT_FALSE(Take(Polyline({0, 1, 2}, {0, 1, 2})));
  EXPECT_FALSE(boundary.IsDefined());
}

// Recording ------------------------------------------------------------------------------------

struct RecordRow {
  const char* rule;
  std::function<void(CPolyBoundary&)> build;
  const char* line;
};

class RecordedBoundary : public BoundaryFromGeometry,
                         public ::testing::WithParamInterface<RecordRow> {};

TEST_P(RecordedBoundary, IsWrittenAsItsCommand) {
  GetParam().build(boundary);
  MacroEngine.AddStringAttribute(Attribute_Variable, "left from the command before");
  Record(boundary);
  EXPECT_THAT(host.recordedLines, ElementsAre(GetParam().line));
}

void BuildTriangle(CPolyBoundary& boundary) {
  const double xs[] = {0, 10, 10};
  const double ys[] = {0, 0, 5};
  boundary.SetPolygon(xs, ys, 3);
}

/// What a played line makes; fails the test when the line is refused.
void Play(CPolyBoundary& boundary, const char* line) {
  MacroCommand command;
  ASSERT_TRUE(MacroEngine.ParseCommand(line, command)) << MacroEngine.GlobalError();
  ASSERT_TRUE(boundary.PickPolygon(command)) << MacroEngine.GlobalError();
}

INSTANTIATE_TEST_SUITE_P(
    Rules, RecordedBoundary,
    ::testing::Values(
        RecordRow{"RectangleWithItsLowestCornerAndSize",
                  [](CPolyBoundary& b) { b.SetRectangle(10, 0, 6, 2.5); },
                  "Marquell PICKRECTANGLE ANCHORX=6 ANCHORY=0 SIZEX=4 SIZEY=2.5"},
        RecordRow{"CircleWithItsPositiveRadius", [](CPolyBoundary& b) { b.SetCircle(1, -2, -3); },
                  "Marquell PICKCIRCLE ANCHORX=1 ANCHORY=-2 RADIUS=3"},
        RecordRow{"CircleWithItsPaperValues",
                  [](CPolyBoundary& b) {
                    b.SetFromGeometry(Host().AddGeometry(Shape(GeomType_Circle, 5)), kInPaper);
                  },
                  "Marquell PICKCIRCLE ANCHORX=120 ANCHORY=-10 RADIUS=10"},
        RecordRow{"PolygonWithItsCornersAsGiven", BuildTriangle,
                  "Marquell PICKPOLYGON CORNERS=\"0, 0,10, 0,10, 5\""},
        RecordRow{"PolygonWithTheCornersThatTheHullLost",
                  [](CPolyBoundary& b) {
                    const double xs[] = {0, 4, 4, 2, 0};
                    const double ys[] = {0, 0, 4, 2.5, 4};
                    b.SetPolygon(xs, ys, 5);
                  },
                  "Marquell PICKPOLYGON CORNERS=\"0, 0,4, 0,4, 4,2, 2.5,0, 4\""},
        RecordRow{"PolygonOfSevenNumbersWithThreeCorners",
                  [](CPolyBoundary& b) { Play(b, "PICKPOLYGON CORNERS=\"1,2,3,4,5,6,7\""); },
                  "Marquell PICKPOLYGON CORNERS=\"1, 2,3, 4,5, 6\""},
        RecordRow{"PolygonWithoutCornersWithoutTheAttribute",
                  [](CPolyBoundary& b) {
                    BuildTriangle(b);
                    b.Reset();
                  },
                  "Marquell PICKPOLYGON"}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(BoundaryFromGeometry, IsNotWrittenWhileTheHostDoesNotRecord) {
  host.isRecording = false;
  boundary.SetRectangle(0, 0, 1, 1);
  Record(boundary);
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

TEST_F(BoundaryFromGeometry, RecordedPolygonPlaysBackToTheSamePoints) {
  ASSERT_TRUE(Take(Polyline({0, 4, 4, 2, 0}, {0, 0, 4, 2, 4})));
  Record(boundary);
  const std::string line = host.recordedLines.at(0).substr(std::string("Marquell ").size());
  CPolyBoundary played;
  Play(played, line.c_str());
  for (double y = 19.75; y < 25; y += 0.25) {
    for (double x = 9.75; x < 15; x += 0.25) {
      EXPECT_EQ(played.IsInside(x, y), boundary.IsInside(x, y)) << x << ", " << y;
    }
  }
}

}  // namespace
}  // namespace qelvane::qelutiltools
