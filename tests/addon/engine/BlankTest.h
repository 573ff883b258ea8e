#pragma once

#include "EngineTest.h"

#include <string>
#include <vector>

namespace fakehost {

inline constexpr char kBlank3[] = "BLANKELEMENT ZONE=1 ELEMENT=3";
inline constexpr char kEverywhere[] = "PICKRECTANGLE ANCHORX=-9 ANCHORY=-9 SIZEX=20 SIZEY=20";

/// Two zones of four quadrilaterals each.
class PickBlanking : public EngineTest {
 protected:
  void LoadTwo(QelPlotType_e plotType = PlotType_Cartesian2D) {
    host.AddFrame(plotType);
    host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
    host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
    n = host.AddVariable("n", ValueLocation_Nodal, StoredType::Double,
                         [](LgIndex_t zone, LgIndex_t node) { return 100.0 * zone + node; });
    c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Float,
                         [](LgIndex_t zone, LgIndex_t cell) { return 10.0 * zone + cell; });
    InitQelAddOn113();
  }

  LgIndex_t BlankVariable() {
    const qelvane::qelutiltools::HostLock lock;
    return QelUtilVarGetNumByName("PICK_BLANK");
  }
  std::vector<double> Blanks(LgIndex_t zone) { return host.ValuesOf(zone, BlankVariable()); }

  /// The zones that one variable was reported altered in, in that order.
  std::vector<SetIndex_t> ZonesReported(LgIndex_t var) const {
    std::vector<SetIndex_t> zones;
    for (const StateChangeNotice& notice : host.notices) {
      if (notice.change != StateChange_VarsAltered) continue;
      EXPECT_THAT(notice.vars, ::testing::ElementsAre(var));
      zones.insert(zones.end(), notice.zones.begin(), notice.zones.end());
    }
    return zones;
  }
};

}  // namespace fakehost
