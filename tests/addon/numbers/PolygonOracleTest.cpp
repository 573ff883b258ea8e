// Polygons of any corners - repeated, collinear, crossing, huge, tiny, no numbers - against their
// definition written down step by step, without a thought for speed.
#include "NoNumbers.h"
#include "PolyBoundary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using qelvane::qelutiltools::CPolyBoundary;
using qelvane::qelutiltools::Point2d;
using qelvane::qelutiltools::PointBlock;

int Sign(double value) { return value < 0 ? -1 : value == 0 ? 0 : 1; }

/// A polygon as the definition has it: corners are active or not, and all are walked over each
/// time.
class Definition {
 public:
  explicit Definition(const std::vector<Point2d>& corners)
      : m_corners(corners), m_isActive(corners.size(), true) {
    if (corners.size() < 3) return;
    FindBox();
    FindOrientation();
    std::size_t left = corners.size();
    while (const std::size_t removed = Pass()) left -= removed;
    if (left < 3) return;
    for (std::size_t i = 0; i < corners.size(); ++i) {
      if (m_isActive[i]) m_hull.push_back(corners[i]);
    }
    m_isDefined = true;
  }

  bool IsDefined() const { return m_isDefined; }

  bool Holds(const Point2d& p) const {
    if (!m_isDefined) return false;
    if (p.x < m_xMin || p.x > m_xMax || p.y < m_yMin || p.y > m_yMax) return false;
    for (std::size_t k = 0; k < m_hull.size(); ++k) {
      const Point2d& to = m_hull[k];
      const Point2d& from = m_hull[k == 0 ? m_hull.size() - 1 : k - 1];
      const double a = 0.5 * ((to.y + from.y) * (to.x - from.x) + (from.y + p.y) * (from.x - p.x) +
                              (p.x - to.x) * (to.y + p.y));
      if (Sign(a) != m_orientation) return false;
    }
    for (std::size_t n = 0; n < m_pockets.size(); n += 3) {
      if (IsInTriangle(p, m_pockets[n], m_pockets[n + 1], m_pockets[n + 2])) return false;
    }
    return true;
  }

 private:
  void FindBox() {
    m_xMin = m_xMax = m_corners.back().x;
    m_yMin = m_yMax = m_corners.back().y;
    for (const Point2d& corner : m_corners) {
      if (corner.x < m_xMin) m_xMin = corner.x;
      if (corner.x > m_xMax) m_xMax = corner.x;
      if (corner.y < m_yMin) m_yMin = corner.y;
      if (corner.y > m_yMax) m_yMax = corner.y;
    }
  }

  void FindOrientation() {
    double sum = 0.0;
    for (std::size_t i = 0; i < m_corners.size(); ++i) {
      const Point2d& previous = m_corners[i == 0 ? m_corners.size() - 1 : i - 1];
      sum += (previous.y + m_corners[i].y) * (m_corners[i].x - previous.x);
    }
    m_orientation = Sign(sum);
  }

  std::size_t ActiveFrom(std::size_t corner, std::size_t step) const {
    std::size_t at = (corner + step) % m_corners.size();
    while (!m_isActive[at]) at = (at + step) % m_corners.size();
    return at;
  }

  /// How many corners it took out.
  std::size_t Pass() {
    std::size_t removed = 0;
    for (std::size_t i = 0; i < m_corners.size(); ++i) {
      if (!m_isActive[i]) continue;
      const Point2d& p = m_corners[ActiveFrom(i, m_corners.size() - 1)];
      const Point2d& v = m_corners[i];
      const Point2d& q = m_corners[ActiveFrom(i, 1)];
      const double area =
          0.5 * ((p.y + v.y) * (v.x - p.x) + (q.y + v.y) * (q.x - v.x) + (p.y + q.y) * (p.x - q.x));
      if (area != 0 && Sign(area) == m_orientation) continue;
      m_isActive[i] = false;
      m_pockets.insert(m_pockets.end(), {p, v, q});
      ++removed;
    }
    return removed;
  }

  static double Sum(const Point2d& p, const Point2d& q, const Point2d& r) {
    return (q.y + p.y) * (q.x - p.x) + (r.y + q.y) * (r.x - q.x) + (p.y + r.y) * (p.x - r.x);
  }

  static bool IsInTriangle(const Point2d& point, const Point2d& a, const Point2d& b,
                           const Point2d& c) {
    const int whole = Sign(Sum(a, b, c));
    for (const double part : {Sum(a, b, point), Sum(b, c, point), Sum(c, a, point)}) {
      if (part != 0 && Sign(part) != whole) return false;
    }
    return true;
  }

  std::vector<Point2d> m_corners;
  std::vector<bool> m_isActive;
  std::vector<Point2d> m_hull;
  std::vector<Point2d> m_pockets;
  int m_orientation = 0;
  bool m_isDefined = false;
  double m_xMin = 0.0;
  double m_xMax = 0.0;
  double m_yMin = 0.0;
  double m_yMax = 0.0;
};

class PolygonOracle : public ::testing::Test {
 protected:
  double Below(unsigned end) { return static_cast<double>(m_engine() % end); }
  bool IsOneIn(unsigned many) { return m_engine() % many == 0; }
  double Anywhere() { return std::uniform_real_distribution<double>(-1, 1)(m_engine); }

  Point2d Corner(int kind) {
    switch (kind) {
      case 0:  // few places: repeated, collinear, crossing
        return {Below(4), Below(4)};
      case 1:
        return {Anywhere(), Anywhere()};
      case 2:  // next to a line
        return {Below(9), Below(9) * 5e-324};
      default:  // on a line but for rounding
        const double t = Anywhere();
        return {0.1 * t, 0.3 * t};
    }
  }

  /// Of one scale; at times a corner is no place at all.
  std::vector<Point2d> Corners() {
    constexpr double kScales[] = {1, 1, 1, 1e-310, 1e-160, 1e76, 1e150, 1e155, 1e307};
    const double scale = kScales[m_engine() % std::size(kScales)];
    const auto kind = static_cast<int>(m_engine() % 4);
    std::vector<Point2d> corners(m_engine() % 24);
    for (Point2d& corner : corners) {
      corner = Corner(kind);
      corner = {corner.x * scale, corner.y * scale};
      if (&corner != &corners.front() && IsOneIn(8)) corner = *(&corner - 1);
      if (IsOneIn(200)) corner.x = IsOneIn(2) ? kNaN : -kInfinity;
      if (IsOneIn(200)) corner.y = IsOneIn(2) ? kNaN : kInfinity;
    }
    return corners;
  }

  /// The corners, places between any two of them and on the lines through them, and no places.
  std::vector<Point2d> Points(const std::vector<Point2d>& corners) {
    std::vector<Point2d> points = {{0, 0},      {-0.0, 5e-324}, {kNaN, 0},
                                   {0.5, kNaN}, {kNaN, kNaN},   {kInfinity, 0},
                                   {0, -1e308}, {1e150, 1e150}, {1e308, 1e308}};
    points.insert(points.end(), corners.begin(), corners.end());
    for (int n = 0; n < 60 && !corners.empty(); ++n) {
      const Point2d& a = corners[m_engine() % corners.size()];
      const Point2d& b = corners[m_engine() % corners.size()];
      const Point2d& c = corners[m_engine() % corners.size()];
      points.push_back({0.5 * a.x + 0.5 * b.x, 0.5 * a.y + 0.5 * b.y});
      points.push_back({0.4 * a.x + 0.25 * b.x + 0.35 * c.x, 0.4 * a.y + 0.25 * b.y + 0.35 * c.y});
    }
    return points;
  }

  /// One by one and by the 64, as small zones and as large ones ask.
  void Compare(const std::vector<Point2d>& corners, const std::string& what) {
    SCOPED_TRACE(what);
    std::vector<double> xs;
    std::vector<double> ys;
    for (const Point2d& corner : corners) {
      xs.push_back(corner.x);
      ys.push_back(corner.y);
    }
    const Definition definition(corners);
    CPolyBoundary boundary;
    ASSERT_EQ(boundary.SetPolygon(xs.data(), ys.data(), static_cast<std::int32_t>(corners.size())),
              definition.IsDefined());
    CPolyBoundary large = boundary;
    large.ExpectPoints(1000000);
    for (const Point2d& point : Points(corners)) {
      const bool isHeld = definition.Holds(point);
      m_held += isHeld ? 1 : 0;
      ASSERT_EQ(boundary.IsInside(point.x, point.y), isHeld) << point.x << ", " << point.y;
      PointBlock block{};
      block[0].fill(point.x);
      block[1].fill(point.y);
      // Blocks are asked about points of the box alone.
      const auto box = large.BoundingBox();
      if (!box[0].Has(point.x) || !box[1].Has(point.y)) continue;
      ASSERT_EQ(large.InsideOf(block, 1) & 1U, isHeld ? 1U : 0U) << point.x << ", " << point.y;
    }
  }

  std::mt19937 m_engine{20};
  int m_held = 0;
};

TEST_F(PolygonOracle, AgreesOnAnyCorners) {
  for (int round = 0; round < 3000 && !HasFailure(); ++round) {
    Compare(Corners(), "round " + std::to_string(round));
  }
  EXPECT_GT(m_held, 10000) << "the polygons show too little";
}

TEST_F(PolygonOracle, AgreesOnCurvesThatAreUndoneFromTheirEnds) {
  // From the last corner of the arc a far one is seen, so that the arc goes corner by corner and
  // each is a pass of its own; the other way round all go in the first pass.
  std::vector<Point2d> corners;
  for (int n = 0; n < 60; ++n) corners.push_back({std::cos(n * 0.02), std::sin(n * 0.02)});
  corners.push_back({0, 100});
  corners.push_back({-5, 0});
  for (std::size_t first = 0; first < corners.size(); first += 7) {
    std::vector<Point2d> turned(corners.begin() + static_cast<std::ptrdiff_t>(first),
                                corners.end());
    turned.insert(turned.end(), corners.begin(),
                  corners.begin() + static_cast<std::ptrdiff_t>(first));
    Compare(turned, "from " + std::to_string(first));
    Compare({turned.rbegin(), turned.rend()}, "backwards from " + std::to_string(first));
  }
  EXPECT_GT(m_held, 100);
}

}  // namespace
