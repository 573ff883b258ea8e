#pragma once

#include "FakeHostTest.h"
#include "HostLock.h"
#include "Selvane.h"
#include "SessionRegistry.h"

#include <string>

namespace fakehost {

/// A loaded add-on over one zone with a nodal variable "n" (value = index) and a cell-centred "c"
/// (value = 10 x index). Interactive operations go to the session itself: no dialog starts them
/// here.
class EngineTest : public FakeHostTest {
 protected:
  void Load(const Mesh& mesh, QelPlotType_e plotType = PlotType_Cartesian2D,
            StoredType type = StoredType::Double) {
    host.AddFrame(plotType);
    host.AddZone(mesh);
    n = host.AddVariable("n", ValueLocation_Nodal, type,
                         [](LgIndex_t, LgIndex_t node) { return 1.0 * node; });
    c = host.AddVariable("c", ValueLocation_CellCentered, type,
                         [](LgIndex_t, LgIndex_t cell) { return 10.0 * cell; });
    InitQelAddOn113();
  }

  qelvane::qelutiltools::Selvane& Session() {
    const qelvane::qelutiltools::HostLock lock;
    return *qelvane::qelutiltools::SessionRegistry::Instance().GetOrCreate();
  }

  LgIndex_t n = 0;
  LgIndex_t c = 0;
};

}  // namespace fakehost
