#pragma once

#include "CMacroEngine.h"
#include "PointBlock.h"
#include "PolygonGrid.h"
#include "PolygonOutline.h"
#include "RangeKernels.h"

#include "qelvane/Types.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace qelvane::qelutiltools {

/// The 2D area of an area pick: a rectangle, a circle or a polygon.
///
/// A polygon is kept as its convex hull and the pockets to be cut out of it, one triangle for each
/// corner that the hull lost. Every Set... operation replaces the shape held before.
class CPolyBoundary {
 public:
  CPolyBoundary() = default;
  virtual ~CPolyBoundary() = default;

  /// Forgets the shape; the bounding box stays as it was.
  void Reset();

  /// The rectangle between two opposite corners, in any order. Always true.
  bool SetRectangle(double x1, double y1, double x2, double y2);

  /// The exact circle; a negative radius counts as its absolute value. Always true.
  bool SetCircle(double cx, double cy, double r);

  /// The polygon with n corners. False, leaving an undefined boundary that holds no point, when
  /// fewer than three corners are given or are left once collinear and reflex ones are cut off.
  bool SetPolygon(const double* xs, const double* ys, std::int32_t n);

  /// Builds the boundary from a geometry of the active frame. With usePaperCoords a circle is kept
  /// in paper coordinates. False for a geometry that is gone, of another type or too short; the
  /// shape held before then stays, but for a polyline that SetPolygon refused. Takes the lock.
  bool SetFromGeometry(QelGeomID_t geom, bool usePaperCoords);

  /// The same of a geometry that is kept in grid coordinates, as drawn ones are; nothing of the
  /// geometry changes.
  bool ReadFromGeometry(QelGeomID_t geom, bool usePaperCoords);

  /// Edges of rectangles and circles are inside; those of polygons and of their pockets are not.
  bool IsInside(double x, double y) const;

  /// IsInside for 64 points at once, the first in the lowest bit. Only the bits in `wanted` count,
  /// whose points lie in the bounding box.
  std::uint64_t InsideOf(const PointBlock& points, std::uint64_t wanted) const;

  /// Says that so many points more are going to be asked about, so that what makes that faster is
  /// made when it pays. Not while another thread asks.
  void ExpectPoints(std::int64_t count) const;

  /// The box to look at first, a range for x and one for y; z is free.
  Ranges3<double> BoundingBox() const;

  /// Whether the point lies in the triangle or on its edge.
  static bool IsInsideTriangle(double x, double y, const Point2d& a, const Point2d& b,
                               const Point2d& c);

  /// Hands the boundary to the macro engine as the command that makes it again.
  void RecordAsMacro() const;

  /// The commands PICKRECTANGLE, PICKCIRCLE and PICKPOLYGON. False, with the reason in the macro
  /// engine's error text and the boundary as it was, when an attribute is wrong or missing.
  /// A polygon of too few corners is accepted and leaves an undefined boundary.
  bool PickRectangle(const MacroCommand& command);
  bool PickCircle(const MacroCommand& command);
  bool PickPolygon(const MacroCommand& command);

  /// What the shape was made from; equal definitions make equal shapes.
  struct Shape {
    bool isRectangle = false;
    bool isCircle = false;
    double xMin = 0.0;
    double xMax = 0.0;
    double yMin = 0.0;
    double yMax = 0.0;
    std::vector<Point2d> corners;
    friend bool operator==(const Shape& a, const Shape& b);
  };
  Shape Definition() const;

  bool IsDefined() const { return m_isDefined; }
  bool IsCircle() const { return m_isCircle; }
  bool IsRectangle() const { return m_isRectangle; }

 private:
  void SetEmptyBox();
  bool SetFromPolyline(QelGeomID_t geom, double anchorX, double anchorY);

  std::vector<Point2d> m_corners;  ///< as given, in input order
  PolygonOutline m_outline;
  double m_xMin = 1e150;
  double m_xMax = -1e150;
  double m_yMin = 1e150;
  double m_yMax = -1e150;
  double m_centreX = 0.0;
  double m_centreY = 0.0;
  double m_radiusSquared = 0.0;
  bool m_isRectangle = false;
  bool m_isCircle = false;
  bool m_isDefined = false;

  // Made for the points to come; copies may share it because it is never changed.
  mutable std::shared_ptr<const PolygonGrid> m_grid;
  mutable double m_expectedCount = 0.0;
};

}  // namespace qelvane::qelutiltools
