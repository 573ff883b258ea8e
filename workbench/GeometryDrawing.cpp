#include "GeometryDrawing.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace marquell::workbench {

using qelhost::Geometry;

std::optional<Geometry> DraggedGeometry(QelMouseMode_e mode, const std::array<double, 2>& from,
                                        const std::array<double, 2>& to) {
  const double dx = to[0] - from[0];
  const double dy = to[1] - from[1];
  Geometry geometry;
  geometry.anchor = {from[0], from[1], 0.0};
  switch (mode) {
    case Mouse_GeomRectangle:
      geometry.type = GeomType_Rectangle;
      geometry.anchor = {std::min(from[0], to[0]), std::min(from[1], to[1]), 0.0};
      geometry.size = {std::fabs(dx), std::fabs(dy)};
      if (dx == 0.0 || dy == 0.0) return std::nullopt;
      return geometry;
    case Mouse_GeomSquare: {
      const double side = std::max(std::fabs(dx), std::fabs(dy));
      geometry.type = GeomType_Square;
      geometry.anchor = {dx < 0.0 ? from[0] - side : from[0], dy < 0.0 ? from[1] - side : from[1],
                         0.0};
      geometry.size = {side, side};
      break;
    }
    case Mouse_GeomCircle:
      geometry.type = GeomType_Circle;
      geometry.size = {std::hypot(dx, dy), 0.0};
      break;
    case Mouse_GeomEllipse:
      geometry.type = GeomType_Ellipse;
      geometry.size = {2.0 * std::fabs(dx), 2.0 * std::fabs(dy)};
      if (dx == 0.0 || dy == 0.0) return std::nullopt;
      return geometry;
    default:
      return std::nullopt;
  }
  if (geometry.size[0] == 0.0) return std::nullopt;
  return geometry;
}

Geometry PolygonOf(const std::vector<std::array<double, 2>>& corners) {
  Geometry geometry;
  geometry.type = GeomType_LineSegs;
  if (corners.empty()) return geometry;
  geometry.anchor = {corners.front()[0], corners.front()[1], 0.0};
  for (const auto& corner : corners) {
    geometry.points.push_back({corner[0] - geometry.anchor[0], corner[1] - geometry.anchor[1]});
  }
  return geometry;
}

namespace {

double DistanceToSegment(const std::array<double, 2>& p, const std::array<double, 2>& a,
                         const std::array<double, 2>& b) {
  const double dx = b[0] - a[0];
  const double dy = b[1] - a[1];
  const double length2 = dx * dx + dy * dy;
  const double along =
      length2 > 0.0 ? std::clamp(((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / length2, 0.0, 1.0)
                    : 0.0;
  return std::hypot(p[0] - (a[0] + along * dx), p[1] - (a[1] + along * dy));
}

}  // namespace

LgIndex_t GeometryAt(const qelhost::GeometryList& geometries, const std::array<double, 2>& point,
                     double reach) {
  LgIndex_t found = 0;
  LgIndex_t n = 0;
  for (QelGeomID_t id = geometries.First(); id != 0; id = geometries.After(id)) {
    ++n;
    const auto outline = qelhost::OutlineOf(*geometries.Find(id));
    for (std::size_t i = 1; i < outline.size(); ++i) {
      if (DistanceToSegment(point, outline[i - 1], outline[i]) <= reach) found = n;
    }
  }
  return found;
}

std::string MoveCommand(LgIndex_t n, double x, double y) {
  char text[96];
  std::snprintf(text, sizeof text, "$!GEOMETRY MOVE %d X=%g Y=%g", n, x, y);
  return text;
}

}  // namespace marquell::workbench
