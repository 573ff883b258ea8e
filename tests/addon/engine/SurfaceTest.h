#pragma once

#include "EngineTest.h"

#include <string>
#include <vector>

namespace fakehost {

constexpr char kOffSurface[] =
    "The seed point must be inside the pick geometry\n and on a boundary surface.\n\nNote that a "
    "face may be visible but not necessarily\n on a boundary surface.  This happens when "
    "neighboring\n cells are either blanked or in a different zone.";
constexpr char kTryAgain[] = "Failed to select a seed point. Please try again.";
constexpr char kRectangle[] = "PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=9";
constexpr char kAlter[] = "ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 SEEDPOINT=1";

/// Two zones of 3 x 3 x 3 bricks in one place, seen from above; nodes count along x first. The
/// middle of either is within: nodes 22, 23, 26, 27, 38, 39, 42 and 43.
class SurfaceTest : public EngineTest {
 protected:
  void SetUp() override { LoadTwo(ZoneType_FEBrick); }

  void LoadTwo(QelZoneType_e type, QelPlotType_e plotType = PlotType_Cartesian3D) {
    host.Reset();
    host.AddFrame(plotType);
    const LgIndex_t depth = plotType == PlotType_Cartesian3D ? 3 : 0;
    host.AddZone(MakeLattice(type, 3, 3, depth));
    host.AddZone(MakeLattice(type, 3, 3, depth));
    n = host.AddVariable("n", ValueLocation_Nodal, StoredType::Double,
                         [](LgIndex_t, LgIndex_t) { return 10.0; });
    c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Double,
                         [](LgIndex_t, LgIndex_t) { return 10.0; });
    InitQelAddOn113();
  }

  /// What "pick with a rectangle, add 5 to n" leaves in the session, and the rectangle.
  QelGeomID_t Prepare() {
    Session().SetPickKind(qelvane::qelutiltools::PickKind::Rectangle, true);
    Session().SetAlterVariable(n);
    EXPECT_TRUE(Session().ParseModifier("+5"));
    return host.AddGeometry(Everywhere());
  }
  static Geometry Everywhere() {
    return {0, GeomType_Rectangle, {-1, -1, 0}, 9, 9, {}, CoordSys_Grid};
  }
  /// The nodes with x up to 1.
  static Geometry Left() { return {0, GeomType_Rectangle, {-1, -1, 0}, 2.5, 9, {}, CoordSys_Grid}; }

  /// Puts another one in the rectangle's place.
  void Redraw(Geometry geometry) {
    geometry.id = host.ActiveFrame().geometries.at(0).id;
    host.ActiveFrame().geometries[0] = geometry;
  }

  void ClickSeed(LgIndex_t zone, LgIndex_t node) {
    EXPECT_TRUE(Session().StartSurfacePick());
    host.Probe(true, zone, 1, node);
  }

  /// The nodes or cells that do not have the value 10 any more.
  std::vector<LgIndex_t> Changed(LgIndex_t zone, LgIndex_t var) {
    std::vector<LgIndex_t> changed;
    LgIndex_t item = 0;
    for (const double value : host.ValuesOf(zone, var)) {
      ++item;
      if (value != 10.0) changed.push_back(item);
    }
    return changed;
  }
  void ExpectNothingChanged() {
    for (const LgIndex_t zone : {1, 2}) {
      EXPECT_THAT(Changed(zone, n), ::testing::IsEmpty());
      EXPECT_THAT(Changed(zone, c), ::testing::IsEmpty());
    }
  }

  static bool IsWithin(LgIndex_t node) {
    const auto isMiddle = [](LgIndex_t at) { return at == 1 || at == 2; };
    return isMiddle((node - 1) % 4) && isMiddle((node - 1) / 4 % 4) && isMiddle((node - 1) / 16);
  }
  static std::vector<LgIndex_t> Outside() {
    std::vector<LgIndex_t> outside;
    for (LgIndex_t node = 1; node <= 64; ++node) {
      if (!IsWithin(node)) outside.push_back(node);
    }
    return outside;
  }

  /// An area pick after a surface pick tunnels through all zones again.
  void ExpectAreasAreWholeAgain() {
    constexpr double kAdded = 1000;
    const std::vector<double> before1 = host.ValuesOf(1, n);
    const std::vector<double> before2 = host.ValuesOf(2, n);
    PlayWell(kRectangle);
    PlayWell("ALTERAREA VARIABLE=\"n\" MODIFIER=\"+1000\" RULE=ALLINSIDE");
    const auto raised = [](std::vector<double> values) {
      for (double& value : values) value += kAdded;
      return values;
    };
    EXPECT_EQ(host.ValuesOf(1, n), raised(before1));
    EXPECT_EQ(host.ValuesOf(2, n), raised(before2));
  }
};
/// Surface picks as the user makes them.
class SurfacePick : public SurfaceTest {};

}  // namespace fakehost
