#include "PolygonOutline.h"

namespace qelvane::qelutiltools {

bool IsInTriangle(const Point2d& point, const Point2d& a, const Point2d& b, const Point2d& c) {
  const std::int32_t orientation = SignOf(TriangleSum(a, b, c));
  const auto excludes = [orientation](double sum) {
    return sum != 0.0 && SignOf(sum) != orientation;
  };
  return !excludes(TriangleSum(a, b, point)) && !excludes(TriangleSum(b, c, point)) &&
         !excludes(TriangleSum(c, a, point));
}

bool PolygonOutline::IsInsideEdge(const Point2d& point, std::size_t edge) const {
  const Point2d& previous = EdgeStart(edge);
  const Point2d& corner = hull[edge];
  const double area = 0.5 * ((corner.y + previous.y) * (corner.x - previous.x) +
                             (previous.y + point.y) * (previous.x - point.x) +
                             (point.x - corner.x) * (corner.y + point.y));
  return SignOf(area) == orientation;
}

bool PolygonOutline::IsInPocket(const Point2d& point, std::size_t pocket) const {
  return IsInTriangle(point, pockets[3 * pocket], pockets[3 * pocket + 1], pockets[3 * pocket + 2]);
}

bool PolygonOutline::Has(const Point2d& point) const {
  if (hull.empty()) return false;
  for (std::size_t edge = 0; edge < hull.size(); ++edge) {
    if (!IsInsideEdge(point, edge)) return false;
  }
  for (std::size_t pocket = 0; pocket < PocketCount(); ++pocket) {
    if (IsInPocket(point, pocket)) return false;
  }
  return true;
}

}  // namespace qelvane::qelutiltools
