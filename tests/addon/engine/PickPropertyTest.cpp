#include "EngineTest.h"

#include "qelvane/Extensions.h"

#include <cmath>
#include <random>

namespace {

using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::Point;
using fakehost::StoredType;

enum class Shape { Rectangle, Circle, Polygon };

/// A boundary by its definition, in the plane that is tested. Its numbers are multiples of 1/8, so
/// a line carries them whole; nodes never lie on it.
struct Boundary {
  Shape shape = Shape::Rectangle;
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;
  std::vector<Point> corners;

  bool Holds(double px, double py) const {
    if (shape == Shape::Rectangle) {
      return px >= x && px <= x + width && py >= y && py <= y + height;
    }
    if (shape == Shape::Circle) return std::hypot(px - x, py - y) <= width;
    bool isInside = false;
    for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
      const Point& a = corners[i];
      const Point& b = corners[j];
      const bool crosses = (a.y > py) != (b.y > py);
      if (crosses && px < (b.x - a.x) * (py - a.y) / (b.y - a.y) + a.x) isInside = !isInside;
    }
    return isInside;
  }

  std::string Line() const {
    std::ostringstream line;
    if (shape == Shape::Rectangle) {
      line << "PICKRECTANGLE ANCHORX=" << x << " ANCHORY=" << y << " SIZEX=" << width
           << " SIZEY=" << height;
    } else if (shape == Shape::Circle) {
      line << "PICKCIRCLE ANCHORX=" << x << " ANCHORY=" << y << " RADIUS=" << width;
    } else {
      line << "PICKPOLYGON CORNERS=";
      const char* separator = "";
      for (const Point& corner : corners) {
        line << separator << '"' << corner.x << ", " << corner.y << '"';
        separator = ",";
      }
    }
    return line.str();
  }
};

class Random {
 public:
  explicit Random(unsigned seed) : m_engine(seed) {}
  int Below(int end) { return static_cast<int>(m_engine() % static_cast<unsigned>(end)); }
  double Eighths(int from, int to) { return from + Below((to - from) * 8) / 8.0; }

 private:
  std::mt19937 m_engine;
};

Boundary RandomBoundary(Random& random) {
  Boundary boundary;
  boundary.shape = static_cast<Shape>(random.Below(3));
  boundary.x = random.Eighths(-2, 3);
  boundary.y = random.Eighths(-2, 3);
  boundary.width = random.Eighths(1, 5);
  boundary.height = random.Eighths(1, 5);
  // A convex four-sided one, turned and of either orientation.
  boundary.corners = {{boundary.x, boundary.y, 0},
                      {boundary.x + boundary.width, boundary.y + 0.625, 0},
                      {boundary.x + boundary.width + 0.875, boundary.y + boundary.height + 1, 0},
                      {boundary.x - 0.375, boundary.y + boundary.height, 0}};
  if (random.Below(2) == 0) std::reverse(boundary.corners.begin(), boundary.corners.end());
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

struct Modifier {
  const char* text;
  double (*apply)(double value);
};

const Modifier kModifiers[] = {{"=7.25", [](double) { return 7.25; }},
                               {"+1.5", [](double value) { return value + 1.5; }},
                               {"-2.25", [](double value) { return value + (0 - 2.25); }},
                               {"*0.3", [](double value) { return value * 0.3; }},
                               {"/7", [](double value) { return value / 7; }}};

const char* const kRules[] = {"ANYINSIDE", "ANYOUTSIDE", "ALLINSIDE", "ALLOUTSIDE"};

bool Takes(int rule, const std::vector<LgIndex_t>& corners, const std::vector<bool>& inside) {
  const bool wantsOutside = rule % 2 == 1;
  const auto isOnSide = [&](LgIndex_t node) {
    return inside[static_cast<std::size_t>(node - 1)] != wantsOutside;
  };
  return rule >= 2 ? std::all_of(corners.begin(), corners.end(), isOnSide)
                   : std::any_of(corners.begin(), corners.end(), isOnSide);
}

/// The elements' nodes as one plain run, which a host may show instead of answering for each.
struct ShownNodes {
  std::vector<std::int32_t> narrow;
  std::vector<std::int64_t> wide;
  QelNodeSpan_s span{};
} shownNodes;

bool ShowNodes(const QelNodeMap*, QelNodeSpan_s* span) {
  *span = shownNodes.span;
  return true;
}

const QelBulkAccess_s kNodesOnly = {
    [](const QelFieldData*, QelFieldSpan_s*) { return false; }, ShowNodes,
    [](double*) { return false; },
    [](LgIndex_t, const std::uint64_t**, std::int64_t*) { return false; },
    [](LgIndex_t, const std::uint64_t**, std::int64_t*) { return false; }};

/// Keeps the mesh's nodes for ShowNodes, in the width and from the index base given.
void KeepNodes(const Mesh& mesh, std::int32_t width, std::int32_t base) {
  shownNodes = {};
  for (const std::vector<LgIndex_t>& corners : mesh.elements) {
    for (const LgIndex_t node : corners) {
      shownNodes.narrow.push_back(node - 1 + base);
      shownNodes.wide.push_back(node - 1 + base);
    }
  }
  void* const first = width == 8 ? static_cast<void*>(shownNodes.wide.data())
                                 : static_cast<void*>(shownNodes.narrow.data());
  const auto count = static_cast<std::int64_t>(mesh.elements.size());
  const std::size_t corners = mesh.elements.empty() ? 0 : mesh.elements.front().size();
  shownNodes.span = {first, width, base, static_cast<std::int32_t>(corners), count};
}

class PickProperty : public fakehost::EngineTest, public ::testing::WithParamInterface<int> {};

TEST_P(PickProperty, AgreesWithTheDefinitions) {
  const auto type = static_cast<QelZoneType_e>(GetParam());
  for (unsigned seed = 1; seed <= 120; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed * 8 + static_cast<unsigned>(type));
    host.Reset();
    host.keepsCalls = false;
    const Mesh mesh = RandomMesh(random, type);
    const bool is3D = random.Below(2) == 0;
    Load(mesh, is3D ? PlotType_Cartesian3D : PlotType_Cartesian2D,
         random.Below(2) == 0 ? StoredType::Float : StoredType::Double);
    if (is3D) {
      host.ActiveFrame().view.psi = random.Below(90);
      host.ActiveFrame().view.alpha = random.Below(90);
    }
    // One seed in two the host shows its connectivity; the answer must not differ.
    if (seed % 2 == 0) {
      KeepNodes(mesh, seed % 4 == 0 ? 8 : 4, static_cast<std::int32_t>(seed / 4 % 2));
      host.extensions[QEL_EXTENSION_BULK_ACCESS] = &kNodesOnly;
    }
    const Boundary boundary = RandomBoundary(random);
    const int rule = random.Below(4);
    const Modifier& modifier = kModifiers[random.Below(5)];
    const bool isCell = random.Below(2) == 0;
    const LgIndex_t var = isCell ? c : n;

    std::vector<bool> inside;
    for (const Point& point : mesh.points) {
      const Point seen = is3D ? host.Project(point) : point;
      inside.push_back(boundary.Holds(seen.x, seen.y));
    }
    fakehost::Storage expected = *host.ValuesAt(1, var)->storage;
    for (LgIndex_t item = 1; item <= expected.count; ++item) {
      const std::vector<LgIndex_t> corners =
          isCell ? mesh.Corners(item) : std::vector<LgIndex_t>{item};
      if (Takes(rule, corners, inside)) {
        expected.Set(item - 1, modifier.apply(expected.Get(item - 1)));
      }
    }
    PlayWell(boundary.Line());
    PlayWell(std::string("ALTERAREA VARIABLE=\"") + (isCell ? "c" : "n") + "\" MODIFIER=\"" +
             modifier.text + "\" RULE=" + kRules[rule]);
    EXPECT_EQ(host.ValuesAt(1, var)->storage->bytes, expected.bytes) << boundary.Line();
    host.Deliver(StateChange_NewLayout);
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(ZoneTypes, PickProperty, ::testing::Range(0, 8));

}  // namespace
