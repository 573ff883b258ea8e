// The grid of a polygon against the polygon's own tests, above all where rounding decides.
#include "Bits.h"
#include "PolyBoundary.h"
#include "PolygonGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace qelvane::qelutiltools;

constexpr double kPi = 3.14159265358979323846;

using Corners = std::vector<Point2d>;

/// A polygon cut up as the boundary does it, and its grid, made as for very many points.
class GriddedPolygon {
 public:
  explicit GriddedPolygon(const Corners& corners, double pointCount = 1e9) {
    std::vector<double> xs;
    std::vector<double> ys;
    for (const Point2d& corner : corners) {
      xs.push_back(corner.x);
      ys.push_back(corner.y);
    }
    m_isDefined = m_plain.SetPolygon(xs.data(), ys.data(), static_cast<std::int32_t>(xs.size()));
    m_gridded = m_plain;
    m_gridded.ExpectPoints(static_cast<std::int64_t>(pointCount));
    const Ranges3<double> box = m_plain.BoundingBox();
    m_x = box[0];
    m_y = box[1];
  }

  bool IsDefined() const { return m_isDefined; }
  const Range<double>& X() const { return m_x; }
  const Range<double>& Y() const { return m_y; }

  /// How many of the points in the box the two disagree about.
  int Differences(const Corners& points) const {
    int differences = 0;
    for (std::size_t first = 0; first < points.size(); first += 64) {
      PointBlock block;
      std::uint64_t inBox = 0;
      for (std::size_t n = 0; n < 64 && first + n < points.size(); ++n) {
        const Point2d& point = points[first + n];
        block[0][n] = point.x;
        block[1][n] = point.y;
        inBox |= std::uint64_t{m_x.Has(point.x) && m_y.Has(point.y)} << n;
      }
      const std::uint64_t plain = m_plain.InsideOf(block, inBox) & inBox;
      VisitBits(inBox, [&](int bit) {
        const auto n = static_cast<std::size_t>(bit);
        const bool isInside = m_plain.IsInside(block[0][n], block[1][n]);
        EXPECT_EQ(((plain >> bit) & 1) != 0, isInside);
      });
      const std::uint64_t gridded = m_gridded.InsideOf(block, inBox) & inBox;
      differences += __builtin_popcountll(plain ^ gridded);
    }
    return differences;
  }

 private:
  CPolyBoundary m_plain;
  CPolyBoundary m_gridded;
  bool m_isDefined = false;
  Range<double> m_x;
  Range<double> m_y;
};

double Beside(double value, int steps) {
  const double to = steps < 0 ? -std::numeric_limits<double>::infinity()
                              : std::numeric_limits<double>::infinity();
  for (int n = std::abs(steps); n > 0; --n) value = std::nextafter(value, to);
  return value;
}

/// Points anywhere, at corners, on edges and diagonals and their extensions, at borders of cells,
/// each with its neighbours among the doubles, and points with no number.
Corners PointsAround(const Corners& corners, const GriddedPolygon& polygon, std::mt19937& engine) {
  std::uniform_real_distribution<double> part(0.0, 1.0);
  const auto within = [](const Range<double>& range, double t) {
    return range.low + (range.high - range.low) * t;
  };
  Corners points;
  const auto addAround = [&](const Point2d& point) {
    points.push_back(point);
    const int dx = static_cast<int>(engine() % 7) - 3;
    const int dy = static_cast<int>(engine() % 7) - 3;
    points.push_back({Beside(point.x, dx), Beside(point.y, dy)});
  };
  for (int n = 0; n < 1500; ++n) {
    points.push_back({within(polygon.X(), part(engine)), within(polygon.Y(), part(engine))});
    const Point2d& a = corners[engine() % corners.size()];
    const bool isEdge = engine() % 2 == 0;
    const std::size_t next = static_cast<std::size_t>(&a - corners.data()) + 1;
    const Point2d& b = corners[(isEdge ? next : engine()) % corners.size()];
    const double t = 2 * part(engine) - 0.5;
    addAround({a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t});
    addAround(a);
    addAround({within(polygon.X(), static_cast<double>(engine() % 257) / 256),
               within(polygon.Y(), static_cast<double>(engine() % 257) / 256)});
    addAround({within(polygon.X(), static_cast<double>(engine() % 257) / 256), a.y});
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  points.push_back({nan, corners[0].y});
  points.push_back({corners[0].x, nan});
  points.push_back({nan, nan});
  return points;
}

void ExpectSameAnswers(const Corners& corners, const std::string& what) {
  std::mt19937 engine(static_cast<unsigned>(corners.size()));
  const GriddedPolygon polygon(corners);
  EXPECT_EQ(polygon.Differences(PointsAround(corners, polygon, engine)), 0) << what;
}

Corners Star(std::size_t count, double innerRadius, const Point2d& centre, double size) {
  Corners corners;
  for (std::size_t n = 0; n < count; ++n) {
    const double angle = 2 * kPi * static_cast<double>(n) / static_cast<double>(count);
    const double radius = size * (n % 2 == 0 ? 1.0 : innerRadius);
    corners.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)});
  }
  return corners;
}

TEST(PolygonGrid, StarsAnywhereAndOfAnySizeAnswerAsTheirTests) {
  for (const std::size_t count : {3, 4, 5, 12, 24, 101, 1000}) {
    for (const double innerRadius : {1.0, 0.9, 0.3, 0.01}) {
      for (const Point2d& centre : {Point2d{0, 0}, Point2d{1, 2}, Point2d{1000, -1e5}}) {
        for (const double size : {1e-3, 0.4, 1e6}) {
          ExpectSameAnswers(Star(count, innerRadius, centre, size),
                            std::to_string(count) + " corners, inner radius " +
                                std::to_string(innerRadius) + ", size " + std::to_string(size));
        }
      }
    }
  }
}

TEST(PolygonGrid, CornersThrownAnywhereAnswerAsTheirTests) {
  std::mt19937 engine(1);
  std::uniform_real_distribution<double> anywhere(-1.0, 1.0);
  for (int round = 0; round < 200; ++round) {
    Corners corners(3 + engine() % 30);
    const bool isOnLattice = round % 2 == 0;
    for (Point2d& corner : corners) {
      // On a lattice many corners are collinear, repeated or on each other's edges.
      corner = isOnLattice ? Point2d{static_cast<double>(engine() % 5),
                                     static_cast<double>(engine() % 5) * 0.1}
                           : Point2d{anywhere(engine), anywhere(engine)};
    }
    ExpectSameAnswers(corners, "round " + std::to_string(round));
  }
}

TEST(PolygonGrid, SidesOfManyCornersAnswerAsTheirTests) {
  Corners square;
  constexpr int kOnASide = 300;
  for (int side = 0; side < 4; ++side) {
    for (int n = 0; n < kOnASide; ++n) {
      const double t = n / static_cast<double>(kOnASide);
      const Point2d places[] = {{t, 0}, {1, t}, {1 - t, 1}, {0, 1 - t}};
      square.push_back(places[side]);
    }
  }
  ExpectSameAnswers(square, "square");
  for (Point2d& corner : square) {
    corner = {0.6 * corner.x - 0.8 * corner.y, 0.8 * corner.x + 0.6 * corner.y};
  }
  ExpectSameAnswers(square, "turned square");
  Corners backwards(square.rbegin(), square.rend());
  ExpectSameAnswers(backwards, "backwards");
}

TEST(PolygonGrid, OddPolygonsAnswerAsTheirTests) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const Corners oddities[] = {
      {{0, 0}, {1, 1}, {1, 0}, {0, 1}},                                  // crosses itself
      {{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}, {2, 0}, {2, 2}, {0, 2}},  // twice around
      {{0, 0}, {1, 0}, {1, 1e-12}, {0, 1e-12}},                          // next to no height
      {{0, 0}, {1e-300, 0}, {0, 1e-300}},                                // next to no size
      {{0, 0}, {1e200, 0}, {0, 1e200}},                                  // sums overflow
      {{0, 0}, {1, 0}, {nan, 0.5}, {1, 1}, {0, 1}},
      {{0, 0}, {1, 0}, {infinity, 0.5}, {1, 1}, {0, 1}},
      {{0, 0}, {0, 0}, {0, 0}, {1, 0}, {1, 1}, {0, 1}},                  // one corner thrice
      {{1e8, 1e8}, {1e8 + 1, 1e8}, {1e8 + 1, 1e8 + 1}, {1e8, 1e8 + 1}},  // far from 0
      {{0, 0}, {4, 0}, {4, 4}, {2, 1e-15}, {0, 4}},                      // a pocket down to an edge
  };
  for (const Corners& corners : oddities) {
    ExpectSameAnswers(corners, "oddity " + std::to_string(&corners - oddities));
  }
}

TEST(PolygonGrid, ManyCornersAnswerAsTheirTests) {
  std::mt19937 engine(2);
  for (const double innerRadius : {1.0, 0.9}) {
    const Corners corners = Star(20000, innerRadius, {0, 0}, 1);
    for (const double pointCount : {9000.0, 1e7}) {
      const GriddedPolygon polygon(corners, pointCount);
      Corners points = PointsAround(corners, polygon, engine);
      points.resize(640);
      EXPECT_EQ(polygon.Differences(points), 0) << innerRadius << ", " << pointCount;
    }
  }
}

}  // namespace
