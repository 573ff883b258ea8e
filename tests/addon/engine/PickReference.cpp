#include "PickReference.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <sstream>

namespace reference {

using fakehost::Geometry;
using fakehost::Host;
using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::Point;
using fakehost::Storage;
using fakehost::StoredType;

namespace {

bool Is3dFrame() { return Host().ActiveFrame().plotType == PlotType_Cartesian3D; }

bool IsWithin(double value, double a, double b) {
  return value >= std::min(a, b) && value <= std::max(a, b);
}

// Cubes: points are turned about z, then y, then x, all through the anchor ---------------------

Point TurnedBack(const Point& point, const Point& anchor, const Point& degrees);

Point TurnedAbout(char axis, const Point& p, double degrees) {
  const double angle = degrees * 0.017453292519943295;
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  if (axis == 'x') return {p.x, c * p.y - s * p.z, s * p.y + c * p.z};
  if (axis == 'y') return {c * p.x + s * p.z, p.y, c * p.z - s * p.x};
  return {c * p.x - s * p.y, s * p.x + c * p.y, p.z};
}

Point Turned(const Point& point, const Point& anchor, const Point& degrees) {
  Point p{point.x - anchor.x, point.y - anchor.y, point.z - anchor.z};
  p = TurnedAbout('z', p, degrees.z);
  p = TurnedAbout('y', p, degrees.y);
  p = TurnedAbout('x', p, degrees.x);
  return {p.x + anchor.x, p.y + anchor.y, p.z + anchor.z};
}

/// The way back turns by the opposite angles in the same order, no inverse when there are several.
Point TurnedBack(const Point& point, const Point& anchor, const Point& degrees) {
  return Turned(point, anchor, {-degrees.x, -degrees.y, -degrees.z});
}

bool IsTurned(const Boundary& cube) {
  return cube.angles.x != 0.0 || cube.angles.y != 0.0 || cube.angles.z != 0.0;
}

struct Box {
  Point min{1e300, 1e300, 1e300};
  Point max{-1e300, -1e300, -1e300};
  void Take(const Point& p) {
    min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
    max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
  }
};

/// The box in the world around a cube or a sphere.
Box BoxAround(const Boundary& boundary) {
  Box box;
  const Point& a = boundary.anchor;
  if (boundary.shape == Shape::Sphere) {
    const double r = boundary.size.x;
    box.Take({a.x - r, a.y - r, a.z - r});
    box.Take({a.x + r, a.y + r, a.z + r});
    return box;
  }
  for (int corner = 0; corner < 8; ++corner) {
    const Point at{a.x + (corner & 1 ? boundary.size.x : 0.0),
                   a.y + (corner & 2 ? boundary.size.y : 0.0),
                   a.z + (corner & 4 ? boundary.size.z : 0.0)};
    box.Take(IsTurned(boundary) ? Turned(at, a, boundary.angles) : at);
  }
  return box;
}

bool IsInCube(const Boundary& cube, const Point& node) {
  const Box around = BoxAround(cube);
  if (!IsWithin(node.x, around.min.x, around.max.x) ||
      !IsWithin(node.y, around.min.y, around.max.y) ||
      !IsWithin(node.z, around.min.z, around.max.z)) {
    return false;
  }
  if (!IsTurned(cube)) return true;
  const Point p = TurnedBack(node, cube.anchor, cube.angles);
  return IsWithin(p.x, cube.anchor.x, cube.anchor.x + cube.size.x) &&
         IsWithin(p.y, cube.anchor.y, cube.anchor.y + cube.size.y) &&
         IsWithin(p.z, cube.anchor.z, cube.anchor.z + cube.size.z);
}

bool IsInPolygon(const std::vector<Point>& corners, const Point& p) {
  bool isInside = false;
  for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
    const Point& a = corners[i];
    const Point& b = corners[j];
    const bool crosses = (a.y > p.y) != (b.y > p.y);
    if (crosses && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) isInside = !isInside;
  }
  return isInside;
}

/// Whether rounding cannot decide about a node: a cube a hair smaller or larger has the same ones.
bool KeepsClear(const Boundary& cube, const Point& node) {
  constexpr double kHair = 1e-7;
  for (const double hair : {-kHair, kHair}) {
    Boundary other = cube;
    const auto grow = [hair](double& anchor, double& size) {
      const double out = size < 0 ? -hair : hair;
      anchor -= out;
      size += 2 * out;
    };
    grow(other.anchor.x, other.size.x);
    grow(other.anchor.y, other.size.y);
    grow(other.anchor.z, other.size.z);
    // Turned about the same point, whatever its size.
    const Point back = TurnedBack(node, cube.anchor, cube.angles);
    const bool isIn = IsWithin(back.x, other.anchor.x, other.anchor.x + other.size.x) &&
                      IsWithin(back.y, other.anchor.y, other.anchor.y + other.size.y) &&
                      IsWithin(back.z, other.anchor.z, other.anchor.z + other.size.z);
    const Box around = BoxAround(cube);
    const bool isAround = IsWithin(node.x, around.min.x - hair, around.max.x + hair) &&
                          IsWithin(node.y, around.min.y - hair, around.max.y + hair) &&
                          IsWithin(node.z, around.min.z - hair, around.max.z + hair);
    if ((isIn && isAround) != IsInCube(cube, node)) return false;
  }
  return true;
}

bool IsUsable(const Boundary& boundary) {
  if (!boundary.Is3d()) return true;
  Box nodes;
  for (LgIndex_t zone = 1; Host().ZoneAt(zone) != nullptr; ++zone) {
    // The one that shows another boundary is gone by then.
    if (!Host().ZoneAt(zone)->isFromFile) continue;
    for (LgIndex_t node = 1; node <= Host().ZoneAt(zone)->mesh.NodeCount(); ++node) {
      const Point at = NodeAt(zone, node);
      nodes.Take(at);
      if (boundary.shape == Shape::Cube && !KeepsClear(boundary, at)) return false;
    }
  }
  const Box box = BoxAround(boundary);
  return box.min.x < nodes.max.x && box.max.x > nodes.min.x && box.min.y < nodes.max.y &&
         box.max.y > nodes.min.y;
}

Boundary AnyBoundary(Random& random, bool allows3d) {
  Boundary boundary;
  boundary.shape = static_cast<Shape>(random.Below(allows3d ? 5 : 3));
  boundary.anchor = {random.Eighths(-2, 3), random.Eighths(-2, 3), random.Eighths(-2, 2)};
  boundary.size = {random.Eighths(1, 5), random.Eighths(1, 5), random.Eighths(1, 5)};
  if (boundary.shape == Shape::Cube) {
    if (random.Below(3) == 0) boundary.size.x = -boundary.size.x;
    for (double* const angle : {&boundary.angles.x, &boundary.angles.y, &boundary.angles.z}) {
      if (random.Below(3) == 0) *angle = random.Below(720) - 360;
    }
  }
  // Four-sided, turned a little, at times with a notch, of either orientation.
  const Point& a = boundary.anchor;
  const Point& s = boundary.size;
  boundary.corners = {{a.x, a.y, 0},
                      {a.x + s.x, a.y + 0.625, 0},
                      {a.x + s.x + 0.875, a.y + s.y + 1, 0},
                      {a.x - 0.375, a.y + s.y, 0}};
  if (random.Flip()) boundary.corners.push_back({a.x + 0.125 + s.x / 4, a.y + s.y / 2, 0});
  if (random.Flip()) std::reverse(boundary.corners.begin(), boundary.corners.end());
  return boundary;
}

}  // namespace

bool Boundary::Holds(const Point& node) const {
  if (shape == Shape::Cube) return IsInCube(*this, node);
  if (shape == Shape::Sphere) {
    const double dx = node.x - anchor.x;
    const double dy = node.y - anchor.y;
    const double dz = node.z - anchor.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz) <= size.x;
  }
  const Point seen = Is3dFrame() ? Host().Project(node) : node;
  if (shape == Shape::Polygon) return IsInPolygon(corners, seen);
  if (shape == Shape::Rectangle) {
    return IsWithin(seen.x, anchor.x, anchor.x + size.x) &&
           IsWithin(seen.y, anchor.y, anchor.y + size.y);
  }
  // A circle's numbers are those of the paper in a 2D frame.
  const double scale = Is3dFrame() ? 1.0 : Host().paperScale;
  const double x = seen.x * scale + (Is3dFrame() ? 0.0 : Host().paperX);
  const double y = seen.y * scale + (Is3dFrame() ? 0.0 : Host().paperY);
  return std::hypot(x - anchor.x, y - anchor.y) <= size.x;
}

std::string Boundary::Line() const {
  std::ostringstream line;
  switch (shape) {
    case Shape::Rectangle:
      line << "PICKRECTANGLE ANCHORX=" << anchor.x << " ANCHORY=" << anchor.y << " SIZEX=" << size.x
           << " SIZEY=" << size.y;
      break;
    case Shape::Circle:
      line << "PICKCIRCLE ANCHORX=" << anchor.x << " ANCHORY=" << anchor.y << " RADIUS=" << size.x;
      break;
    case Shape::Polygon: {
      line << "PICKPOLYGON CORNERS=";
      const char* separator = "";
      for (const Point& corner : corners) {
        line << separator << '"' << corner.x << ", " << corner.y << '"';
        separator = ",";
      }
      break;
    }
    case Shape::Cube:
      line << "PICKCUBE ANCHORX=" << anchor.x << " ANCHORY=" << anchor.y << " ANCHORZ=" << anchor.z
           << " SIZEX=" << size.x << " SIZEY=" << size.y << " SIZEZ=" << size.z
           << " ROTATEX=" << angles.x << " ROTATEY=" << angles.y << " ROTATEZ=" << angles.z;
      break;
    case Shape::Sphere:
      line << "PICKSPHERE ANCHORX=" << anchor.x << " ANCHORY=" << anchor.y
           << " ANCHORZ=" << anchor.z << " RADIUS=" << size.x;
      break;
  }
  return line.str();
}

Geometry Boundary::Drawn() const {
  Geometry geometry;
  geometry.anchor = anchor;
  geometry.width = size.x;
  geometry.height = size.y;
  if (shape == Shape::Rectangle) return geometry;
  if (shape == Shape::Circle) {
    geometry.type = GeomType_Circle;
    // Drawn in the grid; on paper it is this boundary.
    if (!Is3dFrame()) {
      geometry.anchor.x = (anchor.x - Host().paperX) / Host().paperScale;
      geometry.anchor.y = (anchor.y - Host().paperY) / Host().paperScale;
      geometry.width = size.x / Host().paperScale;
    }
    return geometry;
  }
  geometry.type = GeomType_LineSegs;
  for (const Point& corner : corners) {
    geometry.points.push_back({corner.x - anchor.x, corner.y - anchor.y, 0});
  }
  return geometry;
}

Boundary RandomBoundary(Random& random, bool allows3d) {
  Boundary boundary = AnyBoundary(random, allows3d);
  while (!IsUsable(boundary)) boundary = AnyBoundary(random, allows3d);
  return boundary;
}

Mesh RandomMesh(Random& random, QelZoneType_e type) {
  const bool isLine = type == ZoneType_FELineSeg;
  const bool isSolid =
      type == ZoneType_FETetra || type == ZoneType_FEBrick || type == ZoneType_FEPolyhedron;
  const int dimensions = type == ZoneType_Ordered ? 1 + random.Below(3)
                         : isLine                 ? 1
                         : isSolid                ? 3
                                                  : 2;
  Mesh mesh = MakeLattice(type, 1 + random.Below(4), dimensions > 1 ? 1 + random.Below(4) : 0,
                          dimensions > 2 ? 1 + random.Below(3) : 0);
  // Odd offsets keep every node off every boundary's lines.
  for (Point& point : mesh.points) {
    point.x += random.Below(97) / 211.0 + 0.0123;
    point.y += random.Below(97) / 223.0 + 0.0171;
    point.z += random.Below(97) / 227.0 + 0.0193;
  }
  return mesh;
}

const Modifier& RandomModifier(Random& random) {
  static const Modifier modifiers[] = {{"=7.25", [](double) { return 7.25; }},
                                       {"+1.5", [](double value) { return value + 1.5; }},
                                       {"-2.25", [](double value) { return value + (0 - 2.25); }},
                                       {"*0.3", [](double value) { return value * 0.3; }},
                                       {"/7", [](double value) { return value / 7; }}};
  return modifiers[random.Below(5)];
}

bool Takes(int rule, const std::vector<LgIndex_t>& corners, const std::vector<bool>& inside) {
  const bool wantsOutside = rule % 2 == 1;
  const auto isOnSide = [&](LgIndex_t node) {
    return inside[static_cast<std::size_t>(node - 1)] != wantsOutside;
  };
  return rule >= 2 ? std::all_of(corners.begin(), corners.end(), isOnSide)
                   : std::any_of(corners.begin(), corners.end(), isOnSide);
}

namespace {

void HideAtRandom(Random& random, const Scene& scene) {
  fakehost::Blanking& blanking = Host().ActiveFrame().blanking;
  blanking.include = random.Flip();
  blanking.blankEntireCell = random.Flip();
  blanking.cellMode = random.Below(3);
  for (const LgIndex_t number : {1, 3}) {
    fakehost::Constraint constraint;
    constraint.include = random.Flip();
    constraint.varA = random.Flip() ? scene.n : scene.c;
    constraint.relOp = random.Flip() ? BlankRelOp_LessThan : BlankRelOp_GreaterThan;
    constraint.op2Mode = ConstraintOp2Mode_UseConstant;
    constraint.cutoff = random.Eighths(1, 60);
    blanking.constraints[number] = constraint;
  }
  for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
    Host().ZoneAt(zone)->fieldMap.usesValueBlanking = random.Below(4) != 0;
  }
}

}  // namespace

Scene MakeScene(Random& random, QelZoneType_e type) {
  Scene scene;
  scene.is3d = random.Flip();
  scene.isCellCentred = random.Flip();
  scene.zoneCount = 1 + random.Below(3);
  Host().AddFrame(scene.is3d ? PlotType_Cartesian3D : PlotType_Cartesian2D);
  if (scene.is3d) {
    Host().ActiveFrame().view.psi = random.Below(90);
    Host().ActiveFrame().view.alpha = random.Below(90);
  }
  if (random.Flip()) {
    Host().paperScale = 2.0;
    Host().paperX = random.Eighths(-2, 2);
    Host().paperY = random.Eighths(-2, 2);
  }
  Mesh mesh = RandomMesh(random, type);
  for (LgIndex_t zone = 1; zone <= scene.zoneCount; ++zone) {
    Host().AddZone(mesh, random.Flip() ? StoredType::Float : StoredType::Double);
    for (Point& point : mesh.points) point.x += 0.4371;
  }
  constexpr int kStoredTypes = 10;
  const auto stored = static_cast<StoredType>(random.Below(kStoredTypes));
  scene.n = Host().AddVariable("n", ValueLocation_Nodal, stored,
                               [](LgIndex_t zone, LgIndex_t node) { return 5.0 * zone + node; });
  scene.c =
      Host().AddVariable("c", ValueLocation_CellCentered, stored,
                         [](LgIndex_t zone, LgIndex_t cell) { return 3.0 * zone + 2.0 * cell; });
  if (scene.zoneCount > 1 && random.Flip()) Host().Share(1, 2, scene.Variable());
  if (scene.zoneCount > 2 && random.Flip()) Host().MakePassive(3, scene.Variable());
  if (random.Below(4) == 0) Host().ZoneAt(scene.zoneCount)->isActive = false;
  HideAtRandom(random, scene);
  return scene;
}

Point NodeAt(LgIndex_t zone, LgIndex_t node) {
  const auto coordinate = [=](LgIndex_t var) {
    return Host().ValuesAt(zone, var)->storage->Get(node - 1);
  };
  return {coordinate(1), coordinate(2), coordinate(3)};
}

std::vector<bool> NodesInside(const Boundary& boundary, LgIndex_t zone) {
  std::vector<bool> inside;
  for (LgIndex_t node = 1; node <= Host().ZoneAt(zone)->mesh.NodeCount(); ++node) {
    inside.push_back(boundary.Holds(NodeAt(zone, node)));
  }
  return inside;
}

Bytes BytesOf(LgIndex_t zone, LgIndex_t var) {
  const fakehost::Values* const values = Host().ValuesAt(zone, var);
  return values == nullptr || values->storage == nullptr ? Bytes() : values->storage->bytes;
}

Bytes Altered(LgIndex_t zone, LgIndex_t var, int rule, const std::vector<bool>& inside,
              const Modifier& modifier) {
  const fakehost::Values& values = *Host().ValuesAt(zone, var);
  if (values.storage == nullptr) return {};
  const bool isCell = values.location == ValueLocation_CellCentered;
  const Mesh& mesh = Host().ZoneAt(zone)->mesh;
  Storage altered = *values.storage;
  for (LgIndex_t item = 1; item <= altered.count; ++item) {
    const bool isHidden =
        isCell ? Host().IsBlankedCell(zone, item) : Host().IsBlankedNode(zone, item);
    if (isHidden ||
        !Takes(rule, isCell ? mesh.Corners(item) : std::vector<LgIndex_t>{item}, inside))
      continue;
    altered.Set(item - 1, modifier.apply(altered.Get(item - 1)));
  }
  return altered.bytes;
}

Bytes Blanked(LgIndex_t zone, LgIndex_t blankVar, int rule, const std::vector<bool>& inside) {
  const Mesh& mesh = Host().ZoneAt(zone)->mesh;
  Bytes blanked = BytesOf(zone, blankVar);
  blanked.resize(static_cast<std::size_t>(mesh.CellCount()), 0);
  for (LgIndex_t cell = 1; cell <= mesh.CellCount(); ++cell) {
    if (Takes(rule, mesh.Corners(cell), inside)) blanked[static_cast<std::size_t>(cell - 1)] = 1;
  }
  return blanked;
}

}  // namespace reference
