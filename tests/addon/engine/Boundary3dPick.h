#pragma once

#include "EngineTest.h"

#include <cstddef>
#include <ostream>
#include <vector>

namespace fakehost {

// Over a row of four bricks, both hold the nodes up to x = 1.25 and so the first cell whole.
inline constexpr char kCube[] =
    "PICKCUBE ANCHORX=-1 ANCHORY=-1 ANCHORZ=-1 SIZEX=2.25 SIZEY=4 SIZEZ=4";
inline constexpr char kSphere[] = "PICKSPHERE ANCHORX=0 ANCHORY=0.5 ANCHORZ=0.5 RADIUS=1.5";
inline constexpr char kWideRectangle[] = "PICKRECTANGLE ANCHORX=-9 ANCHORY=-9 SIZEX=20 SIZEY=20";
inline constexpr char kAdd5[] = "ALTERAREA VARIABLE=\"c\" MODIFIER=\"+5\"";

struct BoundaryRow {
  const char* name;
  const char* line;
  qelvane::qelutiltools::PickKind kind;
  const char* zoneName;
  const char* otherLine;  ///< that chooses the other one
  const char* elsewhere;  ///< the same with another shape
};

inline void PrintTo(const BoundaryRow& row, std::ostream* out) { *out << row.name; }

inline constexpr BoundaryRow kCubeRow = {
    "Cube",
    kCube,
    qelvane::qelutiltools::PickKind::Cube,
    "PICKING_CUBE",
    kSphere,
    "PICKCUBE ANCHORX=-1 ANCHORY=-1 ANCHORZ=-1 SIZEX=2.25 SIZEY=4 SIZEZ=4 ROTATEX=1"};
inline constexpr BoundaryRow kSphereRow = {
    "Sphere",         kSphere, qelvane::qelutiltools::PickKind::Sphere,
    "PICKING_SPHERE", kCube,   "PICKSPHERE ANCHORX=0 ANCHORY=0.5 ANCHORZ=0.5 RADIUS=1.4"};

/// A row of four bricks with "n" and "c" in a 3D frame.
class Boundary3dPick : public EngineTest, public ::testing::WithParamInterface<BoundaryRow> {
 protected:
  void SetUp() override { Load(MakeLattice(ZoneType_FEBrick, 4, 1, 1), PlotType_Cartesian3D); }
  void TearDown() override {
    // What is left queued would count as pending in the next test.
    host.RunIdleQueue();
    EngineTest::TearDown();
  }

  qelvane::qelutiltools::CPickBoundary3d& Boundary() {
    if (GetParam().kind == qelvane::qelutiltools::PickKind::Sphere) return Session().Sphere();
    return Session().Cube();
  }
  LgIndex_t BoundaryZone() { return host.ZoneNamed(GetParam().zoneName); }
  std::size_t ZoneCount(std::size_t frame = 0) const {
    return host.frames[frame].dataSet->zones.size();
  }

  /// Every value of a zone, one after the other.
  std::vector<double> AllValues(LgIndex_t zone) {
    std::vector<double> all;
    for (LgIndex_t var = 1; var <= 5; ++var) {
      const std::vector<double> values = host.ValuesOf(zone, var);
      all.insert(all.end(), values.begin(), values.end());
    }
    return all;
  }
};

}  // namespace fakehost
