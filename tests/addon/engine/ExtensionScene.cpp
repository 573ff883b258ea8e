#include "ExtensionScene.h"

#include "FakeHostTest.h"

#include <algorithm>
#include <array>
#include <limits>

namespace extension {

using fakehost::Host;
using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::Point;
using fakehost::StoredType;
using reference::Boundary;
using reference::Random;
using reference::Shape;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Where zones and boundaries lie ---------------------------------------------------------------

/// Steps that lines carry whole, though not all are whole in binary: nodes come to lie on faces of
/// boundaries, exactly or but for rounding.
double PartOfAStep(Random& random) {
  constexpr double kParts[] = {0.0, 0.0, 0.1, 0.125, 0.3, 0.5, 0.7};
  return OneOf(random, kParts);
}

double StrangeCoordinate(Random& random) {
  const double strange[] = {kNaN,    -kNaN, kInfinity, -kInfinity, 1e150, -1e150, 5e-324, -5e-324,
                            -1e-310, -0.0,  3e38,      3.5e38,     -1e39, 0.1F,   1e7,    -1e-45};
  return OneOf(random, strange);
}

void MovePoints(Random& random, Mesh& mesh) {
  const bool isRegular = random.Below(4) == 0;
  const int strangeIn = random.Below(3) == 0 ? 12 : 0;
  const double offset = random.Below(3) == 0 ? -4.0 : 0.0;
  for (Point& point : mesh.points) {
    for (double Point::*axis : {&Point::x, &Point::y, &Point::z}) {
      point.*axis += offset;
      if (!isRegular) point.*axis += PartOfAStep(random);
      if (strangeIn > 0 && random.Below(strangeIn) == 0) point.*axis = StrangeCoordinate(random);
    }
  }
}

/// Node numbers that no zone has.
void BreakElements(Random& random, Mesh& mesh) {
  const LgIndex_t bad[] = {0,
                           -1,
                           -3,
                           mesh.NodeCount() + 1,
                           mesh.NodeCount() + 64,
                           std::numeric_limits<LgIndex_t>::max()};
  for (std::size_t element = 0; element < mesh.elements.size(); ++element) {
    if (random.Below(6) != 0) continue;
    const int corner = random.Below(static_cast<int>(mesh.elements.CornerCount()));
    mesh.elements.SetNode(element, static_cast<std::size_t>(corner), OneOf(random, bad));
  }
}

int DimensionsOf(Random& random, QelZoneType_e type) {
  switch (type) {
    case ZoneType_Ordered:
      return 1 + random.Below(3);
    case ZoneType_FELineSeg:
      return 1;
    case ZoneType_FETetra:
    case ZoneType_FEBrick:
    case ZoneType_FEPolyhedron:
      return 3;
    default:
      return 2;
  }
}

/// Most zones fill some words of 64 items and a part of another; one in five fills whole words with
/// its nodes.
Mesh SmallLattice(Random& random, QelZoneType_e type) {
  const auto dimensions = static_cast<std::size_t>(DimensionsOf(random, type));
  constexpr int kMost[] = {300, 18, 6};
  constexpr std::array<LgIndex_t, 3> kWholeWords[] = {{63, 0, 0}, {15, 7, 0}, {7, 7, 2}};
  const int most = kMost[dimensions - 1];
  const bool isWhole = random.Below(5) == 0;
  std::array<LgIndex_t, 3> cells = kWholeWords[dimensions - 1];
  for (std::size_t axis = 0; axis < dimensions && !isWhole; ++axis) {
    cells[axis] = 1 + random.Below(most);
  }
  return MakeLattice(type, cells[0], cells[1], cells[2]);
}

Mesh RandomZone(Random& random, QelZoneType_e type) {
  Mesh mesh = SmallLattice(random, type);
  MovePoints(random, mesh);
  if (mesh.HasNodeMap() && random.Below(4) == 0) BreakElements(random, mesh);
  return mesh;
}

StoredType CoordinateType(Random& random) {
  constexpr int kStoredTypes = 10;
  if (random.Below(4) == 0) return static_cast<StoredType>(random.Below(kStoredTypes));
  return random.Flip() ? StoredType::Float : StoredType::Double;
}

// Values ---------------------------------------------------------------------------------------

double AnyValue(Random& random, LgIndex_t index) {
  const double strange[] = {kNaN,    -kNaN,        kInfinity, -kInfinity, -0.0,  5e-324,
                            1e150,   -1e300,       127.5,     255.5,      -0.5,  0.5,
                            32767.5, 2147483646.5, 9.3e18,    3e38,       -1e39, 9007199254740993.0,
                            -128.5,  0.1};
  return random.Below(4) == 0 ? OneOf(random, strange) : index / 8.0;
}

void AddVariables(Random& random) {
  constexpr int kStoredTypes = 10;
  for (const char* name : {"n1", "c1", "n2", "c2"}) {
    const auto location = name[0] == 'n' ? ValueLocation_Nodal : ValueLocation_CellCentered;
    const auto stored = static_cast<StoredType>(random.Below(kStoredTypes));
    const bool isStrange = random.Flip();
    Host().AddVariable(name, location, stored, [&](LgIndex_t zone, LgIndex_t index) {
      return isStrange ? AnyValue(random, index) : 3.0 * zone + index;
    });
  }
}

void HideAtRandom(Random& random) {
  fakehost::Blanking& blanking = Host().ActiveFrame().blanking;
  blanking.include = random.Below(3) != 0;
  blanking.blankEntireCell = random.Flip();
  blanking.cellMode = random.Below(3);
  for (const LgIndex_t number : {1, 5}) {
    fakehost::Constraint constraint;
    constraint.include = random.Flip();
    constraint.varA = RandomVariable(random);
    constraint.varB = RandomVariable(random);
    constraint.relOp = random.Below(6);
    constraint.op2Mode = random.Below(2);
    constraint.cutoff = random.Below(40);
    blanking.constraints[number] = constraint;
  }
}

void ShareAndSpare(Random& random, int zoneCount, bool areAlike) {
  const LgIndex_t var = 4 + random.Below(4);
  if (areAlike && zoneCount > 1 && random.Flip()) Host().Share(1, 2, var);
  if (zoneCount > 2 && random.Flip()) Host().MakePassive(3, var);
  if (random.Below(8) == 0) Host().MakePassive(1, 1 + random.Below(3));
  if (zoneCount > 1 && random.Below(4) == 0) Host().ZoneAt(zoneCount)->isActive = false;
  if (random.Below(4) == 0) Host().ZoneAt(1)->fieldMap.usesValueBlanking = false;
  if (random.Below(8) == 0) Host().ValuesAt(1, var)->isWritable = false;
}

}  // namespace

LgIndex_t RandomVariable(Random& random) {
  return 1 + random.Below(static_cast<int>(Host().ActiveData()->varNames.size()));
}

void MakeRandomScene(Random& random, QelZoneType_e type) {
  const bool is3d = random.Flip();
  fakehost::Frame& frame = Host().AddFrame(is3d ? PlotType_Cartesian3D : PlotType_Cartesian2D);
  frame.view = {1.0 * random.Below(90),
                1.0 * random.Below(90),
                7.5 * random.Below(3),
                1.0,
                {PartOfAStep(random), 1.5, PartOfAStep(random)}};
  Host().paperScale = random.Flip() ? 2.5 : 1.0;
  Host().paperX = PartOfAStep(random);
  const int zoneCount = 1 + random.Below(3);
  const bool areAlike = random.Flip();
  Mesh mesh = RandomZone(random, type);
  for (int zone = 1; zone <= zoneCount; ++zone) {
    std::array<StoredType, 3> types{};
    types.fill(CoordinateType(random));
    if (random.Below(3) == 0) types[1] = CoordinateType(random);
    Host().AddZone(mesh, types);
    if (!areAlike) mesh = RandomZone(random, type);
  }
  AddVariables(random);
  ShareAndSpare(random, zoneCount, areAlike);
  HideAtRandom(random);
  // At times another variable is drawn along an axis, even one of the cells.
  if (random.Below(6) == 0) {
    const auto axis = static_cast<std::size_t>(random.Below(3));
    Host().ActiveFrame().axisVars[axis] = RandomVariable(random);
  }
}

namespace {

/// A number that a node's coordinate may have.
double Place(Random& random, int from, int to) {
  const double place = from + random.Below(to - from) + PartOfAStep(random);
  return random.Below(40) == 0 ? StrangeCoordinate(random) : place;
}

}  // namespace

Boundary AnyBoundary(Random& random, int reach) {
  Boundary boundary;
  boundary.shape = static_cast<Shape>(random.Below(5));
  const auto at = [&] { return Place(random, random.Flip() ? -1 : -5, std::max(1, reach / 2)); };
  const auto length = [&] { return Place(random, random.Below(8) == 0 ? -3 : 0, reach + 2); };
  boundary.anchor = {at(), at(), at()};
  boundary.size = {length(), length(), length()};
  if (random.Below(3) == 0) {
    boundary.angles = {1.0 * random.Below(360), 45.0 * random.Below(8), 1.0 * random.Below(360)};
  }
  const int cornerCount = 3 + random.Below(random.Below(4) == 0 ? 40 : 6);
  for (int corner = 0; corner < cornerCount; ++corner) {
    const bool isRepeated = corner > 0 && random.Below(10) == 0;
    boundary.corners.push_back(isRepeated
                                   ? boundary.corners.back()
                                   : Point{Place(random, -2, reach), Place(random, -2, reach), 0});
  }
  return boundary;
}

namespace {

/// The values one after the other, wherever the host keeps them; a passive variable has none.
std::vector<unsigned char> Packed(const fakehost::Values& values) {
  std::vector<unsigned char> packed;
  if (values.storage == nullptr) return packed;
  const std::size_t size = fakehost::SizeOf(values.storage->type);
  const fakehost::Storage& storage = *values.storage;
  for (std::int64_t index = 0; index < storage.count; ++index) {
    packed.insert(packed.end(), storage.At(index), storage.At(index) + size);
  }
  return packed;
}

}  // namespace

std::vector<std::vector<unsigned char>> AllValues() {
  std::vector<std::vector<unsigned char>> all;
  for (const fakehost::Zone& zone : Host().ActiveData()->zones) {
    for (const fakehost::Values& values : zone.vars) all.push_back(Packed(values));
  }
  return all;
}

}  // namespace extension
