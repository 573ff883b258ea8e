#include "PolyBoundary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool SetCorners(CPolyBoundary& boundary, const std::vector<Point2d>& corners) {
  std::vector<double> xs;
  std::vector<double> ys;
  for (const Point2d& corner : corners) {
    xs.push_back(corner.x);
    ys.push_back(corner.y);
  }
  return boundary.SetPolygon(xs.data(), ys.data(), static_cast<std::int32_t>(corners.size()));
}

std::vector<Point2d> Reversed(std::vector<Point2d> corners) {
  std::reverse(corners.begin(), corners.end());
  return corners;
}

// A 4 x 4 square whose top edge has a notch down to (2, 2).
const std::vector<Point2d> kNotched = {{0, 0}, {4, 0}, {4, 4}, {2, 2}, {0, 4}};
const std::vector<Point2d> kSquare = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
// The middle of the bottom edge lies on the line between its neighbours.
const std::vector<Point2d> kWithCollinear = {{0, 0}, {2, 0}, {4, 0}, {4, 4}, {0, 4}};

struct ShapePointRow {
  const char* rule;
  void (*build)(CPolyBoundary&);
  double x;
  double y;
  bool isInside;
};

class BoundaryPoint : public ::testing::TestWithParam<ShapePointRow> {};

TEST_P(BoundaryPoint, FollowsRule) {
  CPolyBoundary boundary;
  GetParam().build(boundary);
  EXPECT_EQ(boundary.IsInside(GetParam().x, GetParam().y), GetParam().isInside);
}

void Rectangle(CPolyBoundary& b) { b.SetRectangle(1, 2, 5, 4); }
void SwappedRectangle(CPolyBoundary& b) { b.SetRectangle(5, 4, 1, 2); }
void Circle(CPolyBoundary& b) { b.SetCircle(1, 1, 5); }
void NegativeCircle(CPolyBoundary& b) { b.SetCircle(1, 1, -5); }
void Square(CPolyBoundary& b) { SetCorners(b, kSquare); }
void ReversedSquare(CPolyBoundary& b) { SetCorners(b, Reversed(kSquare)); }
void Notched(CPolyBoundary& b) { SetCorners(b, kNotched); }
void ReversedNotched(CPolyBoundary& b) { SetCorners(b, Reversed(kNotched)); }
void Collinear(CPolyBoundary& b) { SetCorners(b, kWithCollinear); }
void TwoCorners(CPolyBoundary& b) { SetCorners(b, {{0, 0}, {4, 4}}); }
void Line(CPolyBoundary& b) { SetCorners(b, {{0, 0}, {2, 2}, {4, 4}}); }

INSTANTIATE_TEST_SUITE_P(
    Rules, BoundaryPoint,
    ::testing::Values(
        ShapePointRow{"RectangleHoldsItsMiddle", Rectangle, 3, 3, true},
        ShapePointRow{"RectangleHoldsItsLeftEdge", Rectangle, 1, 3, true},
        ShapePointRow{"RectangleHoldsItsCorner", Rectangle, 5, 4, true},
        ShapePointRow{"RectangleEndsRightOfItsEdge", Rectangle, 5.0000001, 3, false},
        ShapePointRow{"RectangleEndsBelowItsEdge", Rectangle, 3, 1.9999999, false},
        ShapePointRow{"RectangleTakesItsCornersInAnyOrder", SwappedRectangle, 1, 2, true},
        ShapePointRow{"RectangleDoesNotRejectWhatIsNotANumber", Rectangle, kNaN, 3, true},
        ShapePointRow{"CircleHoldsAPointOnIt", Circle, 4, 5, true},
        ShapePointRow{"CircleHoldsTheEndOfItsBox", Circle, 6, 1, true},
        ShapePointRow{"CircleDoesNotHoldTheCornerOfItsBox", Circle, 5.9, 5.9, false},
        ShapePointRow{"CircleOfNegativeRadiusIsThatOfItsAbsoluteValue", NegativeCircle, 4, 5, true},
        ShapePointRow{"CircleDoesNotRejectWhatIsNotANumber", Circle, kNaN, 1, true},
        ShapePointRow{"SquareHoldsItsMiddle", Square, 2, 2, true},
        ShapePointRow{"SquareDoesNotHoldItsLeftEdge", Square, 0, 2, false},
        ShapePointRow{"SquareDoesNotHoldItsTopEdge", Square, 2, 4, false},
        ShapePointRow{"SquareDoesNotHoldItsCorner", Square, 4, 4, false},
        ShapePointRow{"SquareTheOtherWayRoundHoldsItsMiddle", ReversedSquare, 2, 2, true},
        ShapePointRow{"SquareTheOtherWayRoundDoesNotHoldItsEdge", ReversedSquare, 4, 2, false},
        ShapePointRow{"SquareRejectsWhatIsNotANumber", Square, kNaN, 2, false},
        ShapePointRow{"SquareTheOtherWayRoundDoesNot", ReversedSquare, kNaN, 2, true},
        ShapePointRow{"NotchIsOutside", Notched, 2, 3, false},
        ShapePointRow{"EdgeOfNotchIsOutside", Notched, 1, 3, false},
        ShapePointRow{"TipOfNotchIsOutside", Notched, 2, 2, false},
        ShapePointRow{"BesideNotchIsInside", Notched, 0.5, 3, true},
        ShapePointRow{"BelowNotchIsInside", Notched, 2, 1.9, true},
        ShapePointRow{"EdgeBetweenHullAndNotchIsOutside", Notched, 2, 4, false},
        ShapePointRow{"NotchIsOutsideTheOtherWayRound", ReversedNotched, 2, 3, false},
        ShapePointRow{"BesideNotchIsInsideTheOtherWayRound", ReversedNotched, 0.5, 3, true},
        ShapePointRow{"CollinearCornerLeavesTheMiddleInside", Collinear, 2, 2, true},
        ShapePointRow{"CollinearCornerLeavesItsEdgeOutside", Collinear, 2, 0, false},
        ShapePointRow{"CollinearCornerLeavesPointsJustAboveItInside", Collinear, 2, 1e-9, true},
        ShapePointRow{"TwoCornersHoldNothing", TwoCorners, 2, 2, false},
        ShapePointRow{"CornersOnALineHoldNothing", Line, 2, 2, false},
        ShapePointRow{"NewBoundaryHoldsNothing", [](CPolyBoundary&) {}, 0, 0, false},
        ShapePointRow{"ForgottenSquareHoldsNothing",
                      [](CPolyBoundary& b) {
                        Square(b);
                        b.Reset();
                      },
                      2, 2, false},
        ShapePointRow{"CircleReplacesRectangle",
                      [](CPolyBoundary& b) {
                        Rectangle(b);
                        Circle(b);
                      },
                      5, 4.5, false},
        ShapePointRow{"RectangleReplacesCircle",
                      [](CPolyBoundary& b) {
                        Circle(b);
                        Rectangle(b);
                      },
                      5, 4, true},
        ShapePointRow{"PolygonReplacesRectangle",
                      [](CPolyBoundary& b) {
                        Rectangle(b);
                        Notched(b);
                      },
                      2, 3, false}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(PolyBoundary, IsDefinedByEveryShapeAndByNoFailedPolygon) {
  CPolyBoundary boundary;
  EXPECT_FALSE(boundary.IsDefined());
  EXPECT_TRUE(boundary.SetRectangle(0, 0, 1, 1));
  EXPECT_TRUE(boundary.IsDefined());
  EXPECT_TRUE(boundary.IsRectangle());
  EXPECT_TRUE(boundary.SetCircle(0, 0, 1));
  EXPECT_TRUE(boundary.IsDefined());
  EXPECT_TRUE(boundary.IsCircle());
  EXPECT_FALSE(boundary.IsRectangle());
  EXPECT_TRUE(SetCorners(boundary, kSquare));
  EXPECT_TRUE(boundary.IsDefined());
  EXPECT_FALSE(boundary.IsCircle());
  EXPECT_FALSE(SetCorners(boundary, {{0, 0}, {1, 1}}));
  EXPECT_FALSE(boundary.IsDefined());
  EXPECT_TRUE(SetCorners(boundary, kSquare));
  EXPECT_FALSE(SetCorners(boundary, {{0, 0}, {1, 1}, {2, 2}, {3, 3}}));
  EXPECT_FALSE(boundary.IsDefined());
  EXPECT_TRUE(SetCorners(boundary, kSquare));
  boundary.Reset();
  EXPECT_FALSE(boundary.IsDefined());
}

struct TriangleRow {
  const char* rule;
  Point2d a, b, c;
  double x;
  double y;
  bool isInside;
};

class PocketTriangle : public ::testing::TestWithParam<TriangleRow> {};

TEST_P(PocketTriangle, FollowsRule) {
  const TriangleRow& row = GetParam();
  EXPECT_EQ(CPolyBoundary::IsInsideTriangle(row.x, row.y, row.a, row.b, row.c), row.isInside);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, PocketTriangle,
    ::testing::Values(
        TriangleRow{"HoldsItsMiddle", {0, 0}, {4, 0}, {0, 4}, 1, 1, true},
        TriangleRow{"HoldsItsMiddleTheOtherWayRound", {0, 0}, {0, 4}, {4, 0}, 1, 1, true},
        TriangleRow{"HoldsItsEdge", {0, 0}, {4, 0}, {0, 4}, 2, 2, true},
        TriangleRow{"HoldsItsCorner", {0, 0}, {4, 0}, {0, 4}, 0, 4, true},
        TriangleRow{"EndsBehindItsEdge", {0, 0}, {4, 0}, {0, 4}, 2.01, 2, false},
        TriangleRow{"EndsOnTheLineOfAnEdge", {0, 0}, {4, 0}, {0, 4}, 5, 0, false},
        TriangleRow{"FlatOneHoldsPointsOfItsLine", {0, 0}, {2, 2}, {4, 4}, 1, 1, true},
        TriangleRow{"FlatOneHoldsNothingBesideItsLine", {0, 0}, {2, 2}, {4, 4}, 1, 2, false}),
    [](const auto& row) { return std::string(row.param.rule); });

// The oracle ----------------------------------------------------------------------------------

/// Whole coordinates, so that every product in boundary and oracle is exact.
struct GridPoint {
  std::int64_t x;
  std::int64_t y;
};

std::int64_t Cross(const GridPoint& o, const GridPoint& p, const GridPoint& q) {
  return (p.x - o.x) * (q.y - o.y) - (p.y - o.y) * (q.x - o.x);
}

bool IsOnSegment(const GridPoint& p, const GridPoint& q, const GridPoint& point) {
  return Cross(p, q, point) == 0 && std::min(p.x, q.x) <= point.x &&
         point.x <= std::max(p.x, q.x) && std::min(p.y, q.y) <= point.y &&
         point.y <= std::max(p.y, q.y);
}

enum class Side { Inside, Outside, OnEdge };

/// Counts how many edges a ray to the right crosses.
Side SideOf(const std::vector<GridPoint>& polygon, const GridPoint& point) {
  bool isInside = false;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const GridPoint& p = polygon[i];
    const GridPoint& q = polygon[(i + 1) % polygon.size()];
    if (IsOnSegment(p, q, point)) return Side::OnEdge;
    if ((p.y > point.y) == (q.y > point.y)) continue;
    const GridPoint& lower = p.y < q.y ? p : q;
    const GridPoint& upper = p.y < q.y ? q : p;
    if (Cross(lower, upper, point) > 0) isInside = !isInside;
  }
  return isInside ? Side::Inside : Side::Outside;
}

bool HasThreeOnALine(const std::vector<GridPoint>& points) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    for (std::size_t j = i + 1; j < points.size(); ++j) {
      for (std::size_t k = j + 1; k < points.size(); ++k) {
        if (Cross(points[i], points[j], points[k]) == 0) return true;
      }
    }
  }
  return false;
}

/// A polygon whose corners run once round the origin, each seen from there: simple, and mostly
/// full of notches. Empty when the directions drawn leave a half plane without a corner, and when
/// three corners lie on a line: a pocket without area takes points of its whole line.
std::vector<GridPoint> DrawStar(std::mt19937& random) {
  const auto draw = [&random] { return static_cast<std::int64_t>(random() % 41) - 20; };
  std::vector<GridPoint> corners;
  const std::size_t count = 3 + random() % 12;
  for (std::size_t i = 0; i < count; ++i) {
    const GridPoint corner{2 * draw(), 2 * draw()};
    if (corner.x != 0 || corner.y != 0) corners.push_back(corner);
  }
  const auto isLowerHalf = [](const GridPoint& p) { return p.y < 0 || (p.y == 0 && p.x < 0); };
  const GridPoint origin{0, 0};
  std::sort(corners.begin(), corners.end(), [&](const GridPoint& p, const GridPoint& q) {
    if (isLowerHalf(p) != isLowerHalf(q)) return isLowerHalf(q);
    return Cross(origin, p, q) > 0;
  });
  for (std::size_t i = 0; i < corners.size(); ++i) {
    if (Cross(origin, corners[i], corners[(i + 1) % corners.size()]) <= 0) return {};
  }
  if (corners.size() < 3 || HasThreeOnALine(corners)) return {};
  return corners;
}

std::vector<Point2d> AsCorners(const std::vector<GridPoint>& points) {
  std::vector<Point2d> corners;
  for (const GridPoint& point : points) {
    corners.push_back({static_cast<double>(point.x), static_cast<double>(point.y)});
  }
  return corners;
}

TEST(PolyBoundary, AgreesWithCountingCrossingsInEveryPointOffTheEdges) {
  std::mt19937 random(20240611);
  int polygonCount = 0;
  int insideCount = 0;
  int notchedCount = 0;
  while (polygonCount < 400) {
    const std::vector<GridPoint> star = DrawStar(random);
    if (star.empty()) continue;
    ++polygonCount;
    CPolyBoundary boundary;
    CPolyBoundary reversed;
    ASSERT_TRUE(SetCorners(boundary, AsCorners(star)));
    ASSERT_TRUE(SetCorners(reversed, Reversed(AsCorners(star))));
    for (std::size_t i = 0; i < star.size(); ++i) {
      if (Cross(star[i], star[(i + 1) % star.size()], star[(i + 2) % star.size()]) < 0) {
        ++notchedCount;
        break;
      }
    }
    for (std::int64_t y = -41; y <= 41; y += 2) {
      for (std::int64_t x = -41; x <= 41; ++x) {
        const Side side = SideOf(star, {x, y});
        if (side == Side::OnEdge) continue;
        insideCount += side == Side::Inside ? 1 : 0;
        const auto px = static_cast<double>(x);
        const auto py = static_cast<double>(y);
        ASSERT_EQ(boundary.IsInside(px, py), side == Side::Inside)
            << "polygon " << polygonCount << ", point " << x << ", " << y;
        ASSERT_EQ(reversed.IsInside(px, py), side == Side::Inside)
            << "reversed polygon " << polygonCount << ", point " << x << ", " << y;
      }
    }
  }
  EXPECT_GT(insideCount, 10000);
  EXPECT_GT(notchedCount, 200);
}

TEST(PolyBoundary, HoldsNoPointOfAConvexPolygonsEdges) {
  CPolyBoundary boundary;
  const std::vector<GridPoint> polygon = {{-6, -4}, {6, -8}, {10, 2}, {4, 10}, {-8, 6}};
  ASSERT_TRUE(SetCorners(boundary, AsCorners(polygon)));
  int onEdgeCount = 0;
  for (std::int64_t y = -10; y <= 10; ++y) {
    for (std::int64_t x = -10; x <= 10; ++x) {
      if (SideOf(polygon, {x, y}) != Side::OnEdge) continue;
      ++onEdgeCount;
      EXPECT_FALSE(boundary.IsInside(static_cast<double>(x), static_cast<double>(y)))
          << x << ", " << y;
    }
  }
  EXPECT_GE(onEdgeCount, 5);
}

}  // namespace
}  // namespace qelvane::qelutiltools
