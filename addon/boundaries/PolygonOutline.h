#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qelvane::qelutiltools {

/// A point of the plane in which the frame's geometries are drawn.
struct Point2d {
  double x = 0.0;
  double y = 0.0;
};

inline bool operator==(const Point2d& a, const Point2d& b) { return a.x == b.x && a.y == b.y; }

/// -1, 0 or +1; what is not a number counts as positive.
inline std::int32_t SignOf(double value) {
  if (value < 0.0) return -1;
  return value == 0.0 ? 0 : 1;
}

/// The area below the edge from p to q, doubled.
inline double Trapezoid(const Point2d& p, const Point2d& q) { return (q.y + p.y) * (q.x - p.x); }

/// The doubled area of a triangle, positive when its corners run clockwise.
inline double TriangleSum(const Point2d& p, const Point2d& q, const Point2d& r) {
  return Trapezoid(p, q) + Trapezoid(q, r) + Trapezoid(r, p);
}

/// Whether the point lies in the triangle or on its edge.
bool IsInTriangle(const Point2d& point, const Point2d& a, const Point2d& b, const Point2d& c);

/// A polygon as its convex hull and the pockets to be cut out of it. All of its tests go by signs
/// of sums that are rounded, and journals rely on the answers that this gives.
struct PolygonOutline {
  std::vector<Point2d> hull;     ///< the convex corners, in input order
  std::vector<Point2d> pockets;  ///< triangles: previous, removed, next corner
  std::int32_t orientation = 0;  ///< sign of the trapezoid sum, +1 clockwise

  std::size_t PocketCount() const { return pockets.size() / 3; }

  /// The corner that the hull's edge comes from, before the one that it goes to.
  const Point2d& EdgeStart(std::size_t edge) const {
    return edge == 0 ? hull.back() : hull[edge - 1];
  }

  /// Whether the point is on the inner side of the hull's edge, which ends in the corner of that
  /// number; an edge is not inside.
  bool IsInsideEdge(const Point2d& point, std::size_t edge) const;
  bool IsInPocket(const Point2d& point, std::size_t pocket) const;

  /// Inside of all edges and in no pocket.
  bool Has(const Point2d& point) const;
};

}  // namespace qelvane::qelutiltools
