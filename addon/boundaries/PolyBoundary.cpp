#include "PolyBoundary.h"

#include "Bits.h"
#include "HostLock.h"
#include "NumberAttributes.h"
#include "ShapeKernels.h"

#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <queue>
#include <string>
#include <utility>

namespace qelvane::qelutiltools {

namespace {

constexpr double kEmptyMin = 1e150;
constexpr double kEmptyMax = -1e150;

std::int32_t OrientationOf(const std::vector<Point2d>& corners) {
  double sum = 0.0;
  const Point2d* previous = &corners.back();
  for (const Point2d& corner : corners) {
    sum += Trapezoid(*previous, corner);
    previous = &corner;
  }
  return SignOf(sum);
}

/// The corners still active, as a ring in input order.
class CornerRing {
 public:
  explicit CornerRing(std::size_t count)
      : m_previous(count), m_next(count), m_isActive(count, true) {
    for (std::size_t corner = 0; corner < count; ++corner) {
      m_previous[corner] = (corner + count - 1) % count;
      m_next[corner] = (corner + 1) % count;
    }
  }

  bool IsActive(std::size_t corner) const { return m_isActive[corner]; }
  std::size_t Previous(std::size_t corner) const { return m_previous[corner]; }
  std::size_t Next(std::size_t corner) const { return m_next[corner]; }

  void Remove(std::size_t corner) {
    m_isActive[corner] = false;
    m_next[m_previous[corner]] = m_next[corner];
    m_previous[m_next[corner]] = m_previous[corner];
  }

 private:
  std::vector<std::size_t> m_previous;
  std::vector<std::size_t> m_next;
  std::vector<bool> m_isActive;
};

/// Takes reflex and collinear corners out of the ring until none is left, going around it in
/// passes. A removal counts at once for the corners after it, so the pockets tile what the hull has
/// too much. After the first pass only corners that have got another neighbour are looked at: a
/// curve that is undone from its end loses a single corner in each of its passes.
std::vector<Point2d> CutPockets(const std::vector<Point2d>& corners, std::int32_t orientation,
                                CornerRing& ring) {
  using Visit = std::pair<std::size_t, std::size_t>;  // the pass, and the corner in it
  std::vector<Visit> firstPass;
  firstPass.reserve(corners.size());
  for (std::size_t v = 0; v < corners.size(); ++v) firstPass.emplace_back(0, v);
  std::priority_queue<Visit, std::vector<Visit>, std::greater<>> visits(std::greater<>(),
                                                                        std::move(firstPass));
  std::vector<Point2d> pockets;
  while (!visits.empty()) {
    const auto [pass, v] = visits.top();
    visits.pop();
    if (!ring.IsActive(v)) continue;
    const std::size_t previous = ring.Previous(v);
    const std::size_t next = ring.Next(v);
    const double area = 0.5 * TriangleSum(corners[previous], corners[v], corners[next]);
    if (area != 0.0 && SignOf(area) == orientation) continue;
    pockets.insert(pockets.end(), {corners[previous], corners[v], corners[next]});
    ring.Remove(v);
    for (const std::size_t neighbour : {previous, next}) {
      visits.emplace(neighbour > v ? pass : pass + 1, neighbour);
    }
  }
  return pockets;
}

/// Cuts text at commas, runs of them counting as one, and reads each piece as a number.
std::vector<double> NumbersIn(const std::string& text) {
  std::vector<double> numbers;
  std::size_t first = text.find_first_not_of(',');
  while (first != std::string::npos) {
    const std::size_t end = text.find(',', first);
    numbers.push_back(std::atof(text.substr(first, end - first).c_str()));
    first = text.find_first_not_of(',', end);
  }
  return numbers;
}

/// A list of strings as the one string that it is cut from: a corner each, or all corners in one.
template <class Strings>
std::string Joined(const Strings& strings) {
  std::string text;
  for (const std::string& part : strings) {
    if (!text.empty()) text += ',';
    text += part;
  }
  return text;
}

std::string TextOf(const std::vector<Point2d>& corners) {
  std::vector<std::string> parts;
  for (const Point2d& corner : corners) {
    char part[64];
    std::snprintf(part, sizeof part, "%g, %g", corner.x, corner.y);
    parts.emplace_back(part);
  }
  return Joined(parts);
}

}  // namespace

void CPolyBoundary::Reset() {
  m_corners.clear();
  m_outline = PolygonOutline();
  m_grid.reset();
  m_expectedCount = 0.0;
  m_isRectangle = false;
  m_isCircle = false;
  m_isDefined = false;
}

void CPolyBoundary::SetEmptyBox() {
  m_xMin = m_yMin = kEmptyMin;
  m_xMax = m_yMax = kEmptyMax;
}

bool CPolyBoundary::SetRectangle(double x1, double y1, double x2, double y2) {
  Reset();
  m_xMin = std::min(x1, x2);
  m_xMax = std::max(x1, x2);
  m_yMin = std::min(y1, y2);
  m_yMax = std::max(y1, y2);
  m_isRectangle = true;
  m_isDefined = true;
  return true;
}

bool CPolyBoundary::SetCircle(double cx, double cy, double r) {
  Reset();
  r = std::fabs(r);
  m_centreX = cx;
  m_centreY = cy;
  m_xMin = cx - r;
  m_xMax = cx + r;
  m_yMin = cy - r;
  m_yMax = cy + r;
  m_radiusSquared = r * r;
  m_isCircle = true;
  m_isDefined = true;
  return true;
}

bool CPolyBoundary::SetPolygon(const double* xs, const double* ys, std::int32_t n) {
  Reset();
  SetEmptyBox();
  if (n < 3) return false;

  const auto count = static_cast<std::size_t>(n);
  m_corners.reserve(count);
  for (std::size_t i = 0; i < count; ++i) m_corners.push_back({xs[i], ys[i]});

  m_xMin = m_xMax = m_corners.back().x;
  m_yMin = m_yMax = m_corners.back().y;
  for (const Point2d& corner : m_corners) {
    m_xMin = std::min(m_xMin, corner.x);
    m_xMax = std::max(m_xMax, corner.x);
    m_yMin = std::min(m_yMin, corner.y);
    m_yMax = std::max(m_yMax, corner.y);
  }

  m_outline.orientation = OrientationOf(m_corners);
  CornerRing ring(count);
  m_outline.pockets = CutPockets(m_corners, m_outline.orientation, ring);
  if (count - m_outline.PocketCount() < 3) {
    SetEmptyBox();
    return false;
  }

  for (std::size_t i = 0; i < count; ++i) {
    if (ring.IsActive(i)) m_outline.hull.push_back(m_corners[i]);
  }
  m_isDefined = true;
  return true;
}

bool CPolyBoundary::SetFromGeometry(QelGeomID_t geom, bool usePaperCoords) {
  const HostLock lock;
  if (!QelUtilGeomIsValid(geom)) return false;
  QelUtilGeomSetPositionCoordSys(geom, CoordSys_Grid);
  return ReadFromGeometry(geom, usePaperCoords);
}

bool CPolyBoundary::ReadFromGeometry(QelGeomID_t geom, bool usePaperCoords) {
  const HostLock lock;
  if (!QelUtilGeomIsValid(geom)) return false;

  const QelGeomType_e type = QelUtilGeomGetType(geom);
  double ax = 0.0;
  double ay = 0.0;
  double az = 0.0;
  QelUtilGeomGetAnchorPos(geom, &ax, &ay, &az);

  switch (type) {
    case GeomType_Rectangle: {
      double width = 0.0;
      double height = 0.0;
      QelUtilGeomRectangleGetSize(geom, &width, &height);
      return SetRectangle(ax, ay, ax + width, ay + height);
    }
    case GeomType_Square: {
      const double side = QelUtilGeomSquareGetSize(geom);
      return SetRectangle(ax, ay, ax + side, ay + side);
    }
    case GeomType_Circle: {
      double radius = QelUtilGeomCircleGetRadius(geom);
      if (usePaperCoords) {
        ax = QelUtilConvertXPosition(CoordSys_Grid, CoordSys_Paper, ax);
        ay = QelUtilConvertYPosition(CoordSys_Grid, CoordSys_Paper, ay);
        radius = QelUtilConvertXDimension(CoordSys_Grid, CoordSys_Paper, radius);
      }
      return SetCircle(ax, ay, radius);
    }
    case GeomType_LineSegs:
      return SetFromPolyline(geom, ax, ay);
    default:
      return false;
  }
}

bool CPolyBoundary::SetFromPolyline(QelGeomID_t geom, double anchorX, double anchorY) {
  const LgIndex_t pointCount = QelUtilGeomPolyGetPointCount(geom);
  if (pointCount < 3) return false;
  std::vector<double> xs;
  std::vector<double> ys;
  for (LgIndex_t point = 0; point < pointCount; ++point) {
    double x = 0.0;
    double y = 0.0;
    QelUtilGeom2DPolylineGetPoint(geom, point + 1, &x, &y);
    xs.push_back(anchorX + x);
    ys.push_back(anchorY + y);
  }
  return SetPolygon(xs.data(), ys.data(), pointCount);
}

bool CPolyBoundary::IsInside(double x, double y) const {
  if (x < m_xMin || x > m_xMax || y < m_yMin || y > m_yMax) return false;
  if (m_isCircle) {
    const double dx = x - m_centreX;
    const double dy = y - m_centreY;
    return !(dy * dy + dx * dx > m_radiusSquared);
  }
  return m_isRectangle || m_outline.Has({x, y});
}

std::uint64_t CPolyBoundary::InsideOf(const PointBlock& points, std::uint64_t wanted) const {
  if (m_isCircle) return PointsInCircle(points, {m_centreX, m_centreY}, m_radiusSquared);
  if (m_isRectangle) return wanted;
  if (m_grid != nullptr) return m_grid->InsideOf(m_outline, points, wanted);
  return BitsWhere(wanted, [&](int bit) {
    const auto point = static_cast<std::size_t>(bit);
    return m_outline.Has({points[0][point], points[1][point]});
  });
}

void CPolyBoundary::ExpectPoints(std::int64_t count) const {
  m_expectedCount += static_cast<double>(count);
  if (m_grid != nullptr || !PolygonGrid::Pays(m_outline, m_expectedCount)) return;
  m_grid = PolygonGrid::Make(m_outline, {m_xMin, m_xMax}, {m_yMin, m_yMax}, m_expectedCount);
}

Ranges3<double> CPolyBoundary::BoundingBox() const {
  constexpr double kFree = std::numeric_limits<double>::infinity();
  return {{{m_xMin, m_xMax}, {m_yMin, m_yMax}, {-kFree, kFree}}};
}

bool CPolyBoundary::IsInsideTriangle(double x, double y, const Point2d& a, const Point2d& b,
                                     const Point2d& c) {
  return IsInTriangle({x, y}, a, b, c);
}

CPolyBoundary::Shape CPolyBoundary::Definition() const {
  return {m_isRectangle, m_isCircle, m_xMin, m_xMax, m_yMin, m_yMax, m_corners};
}

bool operator==(const CPolyBoundary::Shape& a, const CPolyBoundary::Shape& b) {
  return a.isRectangle == b.isRectangle && a.isCircle == b.isCircle && a.xMin == b.xMin &&
         a.xMax == b.xMax && a.yMin == b.yMin && a.yMax == b.yMax && a.corners == b.corners;
}

void CPolyBoundary::RecordAsMacro() const {
  MacroCommand& command = MacroEngine.CurrentCommand;
  command.Attributes.clear();
  if (m_isRectangle) {
    command.Command = Command_PickRectangle;
    MacroEngine.AddNumberAttribute(Attribute_AnchorX, m_xMin);
    MacroEngine.AddNumberAttribute(Attribute_AnchorY, m_yMin);
    MacroEngine.AddNumberAttribute(Attribute_SizeX, m_xMax - m_xMin);
    MacroEngine.AddNumberAttribute(Attribute_SizeY, m_yMax - m_yMin);
  } else if (m_isCircle) {
    command.Command = Command_PickCircle;
    MacroEngine.AddNumberAttribute(Attribute_AnchorX, m_centreX);
    MacroEngine.AddNumberAttribute(Attribute_AnchorY, m_centreY);
    MacroEngine.AddNumberAttribute(Attribute_Radius, std::sqrt(m_radiusSquared));
  } else {
    command.Command = Command_PickPolygon;
    if (!m_corners.empty()) {
      MacroEngine.AddStringAttribute(Attribute_Corners, TextOf(m_corners));
    }
  }
  MacroEngine.CommitCommand();
}

bool CPolyBoundary::PickRectangle(const MacroCommand& command) {
  double anchorX = 0.0;
  double anchorY = 0.0;
  double sizeX = 0.0;
  double sizeY = 0.0;
  return ReadNumberAttributes(command, {{Attribute_AnchorX, &anchorX},
                                        {Attribute_AnchorY, &anchorY},
                                        {Attribute_SizeX, &sizeX},
                                        {Attribute_SizeY, &sizeY}}) &&
         SetRectangle(anchorX, anchorY, anchorX + sizeX, anchorY + sizeY);
}

bool CPolyBoundary::PickCircle(const MacroCommand& command) {
  double anchorX = 0.0;
  double anchorY = 0.0;
  double radius = 0.0;
  return ReadNumberAttributes(command, {{Attribute_AnchorX, &anchorX},
                                        {Attribute_AnchorY, &anchorY},
                                        {Attribute_Radius, &radius}}) &&
         SetCircle(anchorX, anchorY, radius);
}

bool CPolyBoundary::PickPolygon(const MacroCommand& command) {
  std::string text;
  for (const MacroAttribute& attribute : command.Attributes) {
    if (attribute.Attribute != Attribute_Corners) {
      ReportInvalidParameter(command);
      ReportBadValue(command);
      return false;
    }
    std::string first;
    if (!MacroEngine.GetString(attribute.Value, first)) {
      ReportBadValue(command);
      return false;
    }
    text = Joined(attribute.Value.Strings);
  }

  const std::vector<double> numbers = NumbersIn(text);
  std::vector<double> xs;
  std::vector<double> ys;
  for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
    xs.push_back(numbers[i]);
    ys.push_back(numbers[i + 1]);
  }
  if (ys.empty()) {
    ReportMissingParameter(command);
    return false;
  }
  SetPolygon(xs.data(), ys.data(), static_cast<std::int32_t>(ys.size()));
  return true;
}

}  // namespace qelvane::qelutiltools
