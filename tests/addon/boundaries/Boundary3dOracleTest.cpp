// Boxes and spheres against their definitions, from the line to the values: which nodes are inside
// is worked out here once more, with matrices of its own and in higher precision.

#include "BoundaryTest.h"
#include "SessionRegistry.h"

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>

namespace {

using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::Point;
using fakehost::StoredType;

using Real = long double;
using Vector = std::array<Real, 3>;
using Matrix = std::array<Vector, 3>;

Matrix Times(const Matrix& a, const Matrix& b) {
  Matrix product{};
  for (std::size_t r = 0; r < 3; ++r) {
    for (std::size_t c = 0; c < 3; ++c) {
      for (std::size_t k = 0; k < 3; ++k) product[r][c] += a[r][k] * b[k][c];
    }
  }
  return product;
}

Vector Times(const Matrix& m, const Vector& v) {
  Vector product{};
  for (std::size_t r = 0; r < 3; ++r) {
    for (std::size_t c = 0; c < 3; ++c) product[r] += m[r][c] * v[c];
  }
  return product;
}

/// The turn about one axis, 0 to 2 for x to z, by the right-hand rule.
Matrix TurnAbout(std::size_t axis, double degrees) {
  const Real angle = degrees * std::acos(Real{-1}) / 180;
  const std::size_t from = (axis + 1) % 3;
  const std::size_t to = (axis + 2) % 3;
  Matrix turn{};
  turn[axis][axis] = 1;
  turn[from][from] = turn[to][to] = std::cos(angle);
  turn[to][from] = std::sin(angle);
  turn[from][to] = -std::sin(angle);
  return turn;
}

/// A boundary as its line says it. Its numbers are multiples of 1/8, so the line carries them
/// whole.
struct Definition {
  bool isSphere = false;
  std::array<double, 3> anchor{};
  std::array<double, 3> size{};  ///< the first is the sphere's radius
  std::array<double, 3> angles{};

  bool IsTurned() const { return angles != std::array<double, 3>{}; }

  std::string Line() const {
    std::ostringstream line;
    line << (isSphere ? "PICKSPHERE" : "PICKCUBE") << " ANCHORX=" << anchor[0]
         << " ANCHORY=" << anchor[1] << " ANCHORZ=" << anchor[2];
    if (isSphere) {
      line << " RADIUS=" << size[0];
    } else {
      line << " SIZEX=" << size[0] << " SIZEY=" << size[1] << " SIZEZ=" << size[2];
      // An upright box as often without its angles.
      if (IsTurned() || size[0] > 1) {
        line << " ROTATEX=" << angles[0] << " ROTATEY=" << angles[1] << " ROTATEZ=" << angles[2];
      }
    }
    return line.str();
  }
};

struct Box {
  Vector min;
  Vector max;
};

/// What the definition says about points.
class Oracle {
 public:
  explicit Oracle(const Definition& definition) : m_definition(definition) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const Real at = definition.anchor[axis];
      const Real size = definition.isSphere ? definition.size[0] : definition.size[axis];
      // A sphere's box is not put in order: of a negative radius it holds nothing.
      m_upright.min[axis] = definition.isSphere ? at - size : std::min(at, at + size);
      m_upright.max[axis] = definition.isSphere ? at + size : std::max(at, at + size);
    }
    m_around = m_upright;
    if (definition.isSphere || !definition.IsTurned()) return;
    const std::array<double, 3>& a = definition.angles;
    m_forward = Times(TurnAbout(0, a[0]), Times(TurnAbout(1, a[1]), TurnAbout(2, a[2])));
    m_back = Times(TurnAbout(0, -a[0]), Times(TurnAbout(1, -a[1]), TurnAbout(2, -a[2])));
    const Real infinity = std::numeric_limits<Real>::infinity();
    m_around = {{infinity, infinity, infinity}, {-infinity, -infinity, -infinity}};
    for (int corner = 0; corner < 8; ++corner) {
      Vector upright;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        upright[axis] = ((corner >> axis) & 1) != 0 ? m_upright.max[axis] : m_upright.min[axis];
      }
      const Vector turned = Turned(m_forward, upright);
      for (std::size_t axis = 0; axis < 3; ++axis) {
        m_around.min[axis] = std::min(m_around.min[axis], turned[axis]);
        m_around.max[axis] = std::max(m_around.max[axis], turned[axis]);
      }
    }
  }

  bool Holds(const Point& point) const {
    const Vector p{point.x, point.y, point.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (p[axis] > m_around.max[axis] || p[axis] < m_around.min[axis]) return false;
    }
    if (m_definition.isSphere) {
      Real squared = 0;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const Real d = p[axis] - m_definition.anchor[axis];
        squared += d * d;
      }
      return !(squared > Real{m_definition.size[0]} * m_definition.size[0]);
    }
    if (!m_definition.IsTurned()) return true;
    const Vector q = Turned(m_back, p);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (!(q[axis] >= m_upright.min[axis] && q[axis] <= m_upright.max[axis])) return false;
    }
    return true;
  }

  /// Whether rounding may decide about the point: never, unless the box is turned.
  bool IsDoubtful(const Point& point) const {
    if (m_definition.isSphere || !m_definition.IsTurned()) return false;
    const Vector p{point.x, point.y, point.z};
    const Vector q = Turned(m_back, p);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      for (const Real distance : {p[axis] - m_around.min[axis], p[axis] - m_around.max[axis],
                                  q[axis] - m_upright.min[axis], q[axis] - m_upright.max[axis]}) {
        if (std::fabs(distance) < 1e-9L) return true;
      }
    }
    return false;
  }

  const Box& Around() const { return m_around; }

  /// A point of the upright box where the turn takes it.
  Point TurnedForward(const Point& point) const {
    if (m_definition.isSphere || !m_definition.IsTurned()) return point;
    const Vector p = Turned(m_forward, {point.x, point.y, point.z});
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }

 private:
  Vector Turned(const Matrix& turn, Vector p) const {
    for (std::size_t axis = 0; axis < 3; ++axis) p[axis] -= m_definition.anchor[axis];
    p = Times(turn, p);
    for (std::size_t axis = 0; axis < 3; ++axis) p[axis] += m_definition.anchor[axis];
    return p;
  }

  Definition m_definition;
  Box m_upright{};
  Box m_around{};
  Matrix m_forward{};
  Matrix m_back{};
};

class Random {
 public:
  explicit Random(unsigned seed) : m_engine(seed) {}
  int Below(int end) { return static_cast<int>(m_engine() % static_cast<unsigned>(end)); }
  double Eighths(int from, int to) { return from + Below((to - from) * 8 + 1) / 8.0; }
  bool IsOneIn(int count) { return Below(count) == 0; }

 private:
  std::mt19937 m_engine;
};

/// angleCount of the three angles are not 0.
Definition RandomDefinition(Random& random, bool isSphere, int angleCount) {
  Definition definition;
  definition.isSphere = isSphere;
  for (double& value : definition.anchor) value = random.Eighths(-1, 3);
  for (double& value : definition.size) value = random.Eighths(-3, 4);
  if (isSphere) definition.size = {random.IsOneIn(8) ? -1.25 : random.Eighths(0, 3), 0, 0};
  const int start = random.Below(3);
  for (int i = 0; i < angleCount; ++i) {
    constexpr double kAngles[] = {30, -40, 90, 12.5, 180, -175, 270, 359, 45};
    definition.angles[static_cast<std::size_t>((start + i) % 3)] = kAngles[random.Below(9)];
  }
  return definition;
}

/// Whether the boundary stays where its line puts it: it overlaps the data in x and y.
bool Stays(const Oracle& oracle, const Mesh& mesh) {
  for (double Point::*const axis : {&Point::x, &Point::y}) {
    double min = std::numeric_limits<double>::infinity();
    double max = -min;
    for (const Point& point : mesh.points) {
      if (std::isnan(point.*axis)) continue;
      min = std::min(min, point.*axis);
      max = std::max(max, point.*axis);
    }
    const std::size_t n = axis == &Point::x ? 0 : 1;
    if (oracle.Around().min[n] > max || min > oracle.Around().max[n]) return false;
  }
  return true;
}

/// A multiple of 1/8 between the two or an eighth past them.
double About(Random& random, double a, double b) {
  const int eighths = static_cast<int>(std::fabs(b - a) * 8);
  return std::min(a, b) + (random.Below(eighths + 3) - 1) / 8.0;
}

/// One in two near the boundary. On multiples of 1/8, so that an upright box often has it on a face
/// and a sphere on its surface; moved aside where rounding would decide.
Point RandomPoint(Random& random, const Definition& definition, const Oracle& oracle) {
  Point point{random.Eighths(-2, 4), random.Eighths(-2, 4), random.Eighths(-2, 4)};
  if (random.IsOneIn(2)) {
    std::array<double, 3> near = definition.anchor;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double at = definition.anchor[axis];
      const double radius = definition.size[0];
      near[axis] = definition.isSphere ? About(random, at - radius, at + radius)
                                       : About(random, at, at + definition.size[axis]);
    }
    point = oracle.TurnedForward({near[0], near[1], near[2]});
  }
  while (oracle.IsDoubtful(point)) {
    point.x += random.Below(97) / 1000.0;
    point.y += random.Below(97) / 1000.0;
    point.z += random.Below(97) / 1000.0;
  }
  return point;
}

/// Some coordinates are no number.
Mesh RandomMesh(Random& random, QelZoneType_e type, const Definition& definition) {
  const Oracle oracle(definition);
  const bool isLine = type == ZoneType_FELineSeg;
  const bool isFlat =
      type == ZoneType_FETriangle || type == ZoneType_FEQuad || type == ZoneType_FEPolygon;
  const int dimensions = type == ZoneType_Ordered ? 1 + random.Below(3)
                         : isLine                 ? 1
                         : isFlat                 ? 2
                                                  : 3;
  Mesh mesh = MakeLattice(type, 1 + random.Below(4), dimensions > 1 ? 1 + random.Below(4) : 0,
                          dimensions > 2 ? 1 + random.Below(3) : 0);
  const bool hasHoles = random.IsOneIn(3);
  for (Point& point : mesh.points) {
    point = RandomPoint(random, definition, oracle);
    if (hasHoles && random.IsOneIn(6)) point.x = std::nan("");
    if (hasHoles && random.IsOneIn(6)) point.y = std::nan("");
    if (hasHoles && random.IsOneIn(6)) point.z = std::nan("");
  }
  return mesh;
}

const char* const kRules[] = {"ANYINSIDE", "ANYOUTSIDE", "ALLINSIDE", "ALLOUTSIDE"};

bool Takes(int rule, const std::vector<LgIndex_t>& corners, const std::vector<bool>& inside) {
  const bool wantsOutside = rule % 2 == 1;
  const auto isOnSide = [&](LgIndex_t node) {
    return inside[static_cast<std::size_t>(node - 1)] != wantsOutside;
  };
  return rule >= 2 ? std::all_of(corners.begin(), corners.end(), isOnSide)
                   : std::any_of(corners.begin(), corners.end(), isOnSide);
}

struct OracleRow {
  const char* name;
  bool isSphere;
  int angleCount;
};

void PrintTo(const OracleRow& row, std::ostream* out) { *out << row.name; }

class Boundary3dOracle : public fakehost::FakeHostTest,
                         public ::testing::WithParamInterface<OracleRow> {
 protected:
  void Load(const Mesh& mesh, StoredType type) {
    host.Reset();
    host.keepsCalls = false;
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(mesh);
    n = host.AddVariable("n", ValueLocation_Nodal, type,
                         [](LgIndex_t, LgIndex_t node) { return 1.0 * node; });
    c = host.AddVariable("c", ValueLocation_CellCentered, type,
                         [](LgIndex_t, LgIndex_t cell) { return 10.0 * cell; });
    InitQelAddOn113();
  }

  /// A host need not draw a sphere of negative radius, so such a one is chosen where none is drawn.
  void Choose(const Definition& definition) {
    const bool canBeDrawn = !definition.isSphere || definition.size[0] >= 0;
    host.ActiveFrame().plotType = canBeDrawn ? PlotType_Cartesian3D : PlotType_Cartesian2D;
    PlayWell(definition.Line());
    host.ActiveFrame().plotType = PlotType_Cartesian3D;
    EXPECT_EQ(host.ActiveData()->zones.size(), canBeDrawn ? 2u : 1u);
  }

  void ExpectAltered(const Mesh& mesh, LgIndex_t var, int rule, const std::vector<bool>& inside) {
    const bool isCell = var == c;
    fakehost::Storage expected = *host.ValuesAt(1, var)->storage;
    for (LgIndex_t item = 1; item <= expected.count; ++item) {
      const std::vector<LgIndex_t> corners =
          isCell ? mesh.Corners(item) : std::vector<LgIndex_t>{item};
      if (!Takes(rule, corners, inside)) continue;
      expected.Set(item - 1, expected.Get(item - 1) + 1000.5);
    }
    PlayWell(std::string("ALTERAREA VARIABLE=\"") + (isCell ? "c" : "n") +
             "\" MODIFIER=\"+1000.5\" RULE=" + kRules[rule]);
    EXPECT_EQ(host.ValuesAt(1, var)->storage->bytes, expected.bytes)
        << (isCell ? "cells " : "nodes ") << kRules[rule];
  }

  LgIndex_t n = 0;
  LgIndex_t c = 0;
};

TEST_P(Boundary3dOracle, AgreesWithTheDefinition) {
  int insideCount = 0;
  int outsideCount = 0;
  for (unsigned seed = 1; seed <= 480; ++seed) {
    Random random(seed);
    const auto type = static_cast<QelZoneType_e>(seed % 8);
    Definition definition;
    Mesh mesh;
    do {
      definition = RandomDefinition(random, GetParam().isSphere, GetParam().angleCount);
      mesh = RandomMesh(random, type, definition);
    } while (!Stays(Oracle(definition), mesh));
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + definition.Line());
    const Oracle oracle(definition);
    Load(mesh, random.IsOneIn(2) ? StoredType::Float : StoredType::Double);
    std::vector<bool> inside;
    for (const Point& point : mesh.points) {
      inside.push_back(oracle.Holds(point));
      ++(inside.back() ? insideCount : outsideCount);
    }
    Choose(definition);
    for (int rule = 0; rule < 4; ++rule) {
      ExpectAltered(mesh, n, rule, inside);
      ExpectAltered(mesh, c, rule, inside);
    }
    host.Deliver(StateChange_NewLayout);
    if (HasFailure()) return;
  }
  EXPECT_GT(insideCount, 500);
  EXPECT_GT(outsideCount, 500);
}

INSTANTIATE_TEST_SUITE_P(Shapes, Boundary3dOracle,
                         ::testing::Values(OracleRow{"UprightBox", false, 0},
                                           OracleRow{"BoxWithOneAngle", false, 1},
                                           OracleRow{"BoxWithTwoAngles", false, 2},
                                           OracleRow{"BoxWithThreeAngles", false, 3},
                                           OracleRow{"Sphere", true, 0}),
                         [](const auto& row) { return std::string(row.param.name); });

// What a line defines, recorded and played ------------------------------------------------------

using RecordedBoundary3d = Boundary3dOracle;

TEST_P(RecordedBoundary3d, PlaysBackToTheSameDefinition) {
  using qelvane::qelutiltools::HostLock;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    Random random(seed * 31);
    Definition definition = RandomDefinition(random, GetParam().isSphere, GetParam().angleCount);
    for (double& value : definition.anchor) value = random.Below(10000) / 10000.0;
    if (definition.isSphere) definition.size[0] = random.Below(1000) / 1000.0;
    SCOPED_TRACE(definition.Line());
    Load(MakeLattice(ZoneType_FEBrick, 2, 2, 2), StoredType::Double);
    Choose(definition);
    const HostLock lock;
    qelvane::qelutiltools::Selvane& session =
        *qelvane::qelutiltools::SessionRegistry::Instance().GetOrCreate();
    const auto current = [&]() -> qelvane::qelutiltools::CPickBoundary3d& {
      if (definition.isSphere) return session.Sphere();
      return session.Cube();
    };
    const auto before = current().Definition();
    host.isRecording = true;
    current().RecordAsMacro();
    host.isRecording = false;
    const std::string line = host.recordedLines.at(0).substr(std::string("Marquell ").size());
    PlayWell(definition.isSphere
                 ? "PICKSPHERE ANCHORX=1 ANCHORY=1 ANCHORZ=1 RADIUS=1"
                 : "PICKCUBE ANCHORX=1 ANCHORY=1 ANCHORZ=1 SIZEX=1 SIZEY=1 SIZEZ=1");
    ASSERT_NE(current().Definition(), before);
    PlayWell(line);
    EXPECT_EQ(current().Definition(), before) << line;
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, RecordedBoundary3d,
                         ::testing::Values(OracleRow{"Box", false, 3},
                                           OracleRow{"Sphere", true, 0}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
