#pragma once

#include "qelvane/Types.h"

#include <array>
#include <vector>

namespace qelhost {

/// A figure drawn on a frame, in grid coordinates.
///
/// size   rectangle and ellipse: width and height; square: its side; circle: its radius. The
///        anchor is a rectangle's or square's first corner, a circle's or ellipse's centre.
/// points a polyline's, relative to the anchor
struct Geometry {
  QelGeomID_t id = 0;
  QelGeomType_e type = GeomType_LineSegs;
  QelCoordSys_e coordSys = CoordSys_Grid;
  std::array<double, 3> anchor{0.0, 0.0, 0.0};
  std::array<double, 2> size{0.0, 0.0};
  std::vector<std::array<double, 2>> points;
};

/// The corners of the closed line that the geometry is drawn as, the first once more at the end;
/// circles and ellipses have 96 sides, a polyline of fewer than three points stays open.
std::vector<std::array<double, 2>> OutlineOf(const Geometry& geometry);

/// The geometries of a frame in creation order. Ids are never reused within a process.
class GeometryList {
 public:
  /// Takes the geometry and gives it an id.
  QelGeomID_t Add(Geometry geometry);
  /// False when there is none of that id.
  bool Delete(QelGeomID_t id);
  /// Null when there is none of that id.
  Geometry* Find(QelGeomID_t id);
  const Geometry* Find(QelGeomID_t id) const;
  /// The n-th in creation order, from 1; null past the last.
  Geometry* At(LgIndex_t n);
  /// 0: none, or the last.
  QelGeomID_t First() const;
  QelGeomID_t After(QelGeomID_t id) const;
  LgIndex_t Count() const { return static_cast<LgIndex_t>(m_geometries.size()); }

 private:
  std::vector<Geometry> m_geometries;
};

}  // namespace qelhost
