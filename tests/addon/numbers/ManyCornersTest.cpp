// Polygons of 100,000 corners, from the line of the command to the values of the nodes.
#include "EngineTest.h"

#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace {

using fakehost::Mesh;
using fakehost::Point;

constexpr int kCornerCount = 100000;

using Corners = std::vector<Point>;

Corners Star() {
  Corners corners;
  for (int n = 0; n < kCornerCount; ++n) {
    const double angle = n * 6.283185307179586 / kCornerCount;
    const double radius = n % 2 == 0 ? 1.0 : 0.75;
    corners.push_back({radius * std::cos(angle), radius * std::sin(angle), 0});
  }
  return corners;
}

/// All but three of the corners are reflex in the end, but each only once the one after it is gone.
Corners ArcUndoneFromItsEnd() {
  Corners corners;
  for (int n = 0; n < kCornerCount - 2; ++n) {
    const double angle = 1.5707 * n / kCornerCount;
    corners.push_back({std::cos(angle), std::sin(angle), 0});
  }
  corners.push_back({0, 8, 0});
  corners.push_back({-1, 0, 0});
  return corners;
}

Corners OnePlaceAlmost() {
  Corners corners(kCornerCount - 3, Point{-1, -1, 0});
  corners.push_back({1, -1, 0});
  corners.push_back({1, 1, 0});
  corners.push_back({-1, 1, 0});
  return corners;
}

Corners Backwards(Corners (*make)()) {
  const Corners corners = make();
  return {corners.rbegin(), corners.rend()};
}

std::string LineOf(const Corners& corners) {
  std::string line = "PICKPOLYGON CORNERS=\"";
  for (const Point& corner : corners) {
    char text[64];
    std::snprintf(text, sizeof text, "%s%.17g,%.17g", &corner == &corners.front() ? "" : ",",
                  corner.x, corner.y);
    line += text;
  }
  return line + "\"";
}

/// By counting the edges that a ray meets; nodes are nowhere near an edge.
bool IsInside(const Corners& corners, const Point& p) {
  bool isInside = false;
  const Point* a = &corners.back();
  for (const Point& b : corners) {
    if ((a->y > p.y) != (b.y > p.y) && p.x < (b.x - a->x) * (p.y - a->y) / (b.y - a->y) + a->x) {
      isInside = !isInside;
    }
    a = &b;
  }
  return isInside;
}

struct CornersRow {
  const char* name;
  std::function<Corners()> make;
};

void PrintTo(const CornersRow& row, std::ostream* out) { *out << row.name; }

class ManyCorners : public fakehost::EngineTest, public ::testing::WithParamInterface<CornersRow> {
 protected:
  static Mesh Cloud() {
    std::mt19937 engine(7);
    Mesh mesh = fakehost::MakeLattice(ZoneType_Ordered, 1499, 0, 0);
    for (Point& point : mesh.points) {
      point = {engine() / 2147483648.0 - 1, engine() / 2147483648.0 - 1, 0};
    }
    return mesh;
  }
};

TEST_P(ManyCorners, PickTheNodesInside) {
  const Mesh cloud = Cloud();
  Load(cloud);
  const Corners corners = GetParam().make();
  const std::string line = LineOf(corners);
  const std::clock_t start = std::clock();
  PlayWell(line);
  PlayWell("ALTERAREA VARIABLE=\"n\" MODIFIER=\"=0\"");
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  // Corner by corner over all corners would take half a minute, and far more when it is watched.
  EXPECT_LT(seconds, 20.0);
  int taken = 0;
  const std::vector<double> values = host.ValuesOf(1, n);
  for (std::size_t node = 0; node < cloud.points.size(); ++node) {
    const bool isInside = IsInside(corners, cloud.points[node]);
    ASSERT_EQ(values[node] == 0.0, isInside) << "node " << node;
    taken += isInside ? 1 : 0;
  }
  EXPECT_GT(taken, 200);
  EXPECT_LT(taken, 1500);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, ManyCorners,
    ::testing::Values(CornersRow{"Star", Star},
                      CornersRow{"StarTheOtherWayRound", [] { return Backwards(Star); }},
                      CornersRow{"ArcUndoneFromItsEnd", ArcUndoneFromItsEnd},
                      CornersRow{"ArcUndoneFromItsStart",
                                 [] { return Backwards(ArcUndoneFromItsEnd); }}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(ManyCorners, InOnePlaceArePocketsWithoutAnArea) {
  Load(fakehost::MakeLattice(ZoneType_Ordered, 2, 0, 0));
  PlayWell(LineOf(OnePlaceAlmost()));
  PlayWell("ALTERAREA VARIABLE=\"n\" MODIFIER=\"=0\"");
  // The nodes lie at 0, at 1, which is on the edge, and at 2.
  EXPECT_THAT(host.ValuesOf(1, n), ::testing::ElementsAre(0, 2, 3));
}

}  // namespace
