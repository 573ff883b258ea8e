#include "FakeHostTest.h"
#include "HostLock.h"
#include "Selvane.h"
#include "SessionRegistry.h"

#include <map>
#include <stdexcept>

namespace {

using fakehost::CallRecord;
using fakehost::FakeHostTest;
using fakehost::Geometry;
using fakehost::MakeLattice;
using fakehost::StoredType;

struct Scenario {
  const char* rule;
  QelZoneType_e zoneType;
  QelPlotType_e plotType;
  std::vector<std::string> lines;
  bool hasProbe = false;
};

class EveryFault : public FakeHostTest, public ::testing::WithParamInterface<Scenario> {
 protected:
  void Prepare() {
    host.Reset();
    host.AddFrame(GetParam().plotType);
    host.AddZone(MakeLattice(GetParam().zoneType, 2, 2, IsSolid() ? 1 : 0));
    host.AddZone(MakeLattice(GetParam().zoneType, 2, 2, IsSolid() ? 1 : 0));
    for (const QelValueLocation_e location : {ValueLocation_Nodal, ValueLocation_CellCentered}) {
      const LgIndex_t var =
          host.AddVariable(location == ValueLocation_Nodal ? "n" : "c", location,
                           StoredType::Double, [](LgIndex_t, LgIndex_t i) { return 1.0 * i; });
      host.Share(1, 2, var);
      host.ActiveFrame().blanking.constraints[1] = {
          true, var, 0, BlankRelOp_LessThan, ConstraintOp2Mode_UseConstant, 2.0};
    }
    host.ActiveFrame().blanking.include = true;
    host.isRecording = true;
  }

  void Run() {
    InitQelAddOn113();
    // An add-on that did not register is never called again.
    if (host.macroCallbacks.empty()) return;
    for (const std::string& line : GetParam().lines) host.Play(line);
    host.ChooseMenu("Marquell ...");
    if (GetParam().hasProbe) {
      ArmProbe();
      host.Probe(false, 1, 1, 1);
    }
    host.RunIdleQueue();
    host.Deliver(StateChange_Style, {"PLOTTYPE"});
    host.Deliver(StateChange_NewLayout);
  }

  /// As a tool button does; its callback would contain the error.
  static void ArmProbe() {
    using namespace qelvane::qelutiltools;
    const HostLock lock;
    try {
      Selvane* const session = SessionRegistry::Instance().GetOrCreate();
      if (session != nullptr) session->SetPickKind(PickKind::Element, true);
    } catch (const std::runtime_error&) {
    }
  }

  bool IsSolid() const {
    const QelZoneType_e type = GetParam().zoneType;
    return type == ZoneType_FETetra || type == ZoneType_FEBrick || type == ZoneType_FEPolyhedron ||
           (type == ZoneType_Ordered && GetParam().plotType == PlotType_Cartesian3D);
  }
};

/// At most this many calls of one function are made to fail; more of the same tell nothing new.
constexpr int kMostFaults = 12;

TEST_P(EveryFault, LeavesLockAndMemoryInOrder) {
  // Once before counting: the dialog is built in the first run of a process only.
  Prepare();
  Run();
  Prepare();
  Run();
  std::map<std::string, int> counts;
  for (const CallRecord& call : host.calls) {
    if (call.isFallible) ++counts[call.function];
  }
  ASSERT_GT(counts.size(), 20u);
  for (const auto& [function, count] : counts) {
    for (int nth = 1; nth <= std::min(count, kMostFaults); ++nth) {
      SCOPED_TRACE(function + " call " + std::to_string(nth));
      Prepare();
      host.FailCall(function, nth);
      Run();
      EXPECT_TRUE(host.WasFaultHit());
      EXPECT_EQ(host.LockDepth(), 0);
      EXPECT_THAT(host.Misuse(), ::testing::IsEmpty());
      EXPECT_THAT(host.Leaks(), ::testing::IsEmpty());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Scenarios, EveryFault,
    ::testing::Values(
        Scenario{"AreaOfOrderedZones",
                 ZoneType_Ordered,
                 PlotType_Cartesian2D,
                 {"PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=2.5 SIZEY=9",
                  "ALTERAREA VARIABLE=\"c\" MODIFIER=\"+1\" RULE=ANYINSIDE", "UNDOALTER"}},
        Scenario{"AreaOfBricksIn3D",
                 ZoneType_FEBrick,
                 PlotType_Cartesian3D,
                 {"PICKPOLYGON CORNERS=\"-1,-1,2.5,-1,2.5,9,-1,9\"",
                  "ALTERAREA VARIABLE=\"c\" MODIFIER=\"*2\" RULE=ANYINSIDE", "VIEWXZ", "VIEW3D"}},
        Scenario{"AreaOfPolyhedra",
                 ZoneType_FEPolyhedron,
                 PlotType_Cartesian3D,
                 {"PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=2",
                  "ALTERAREA VARIABLE=\"c\" MODIFIER=\"-2\" RULE=ANYINSIDE"}},
        Scenario{"NodesOfTriangles",
                 ZoneType_FETriangle,
                 PlotType_Cartesian2D,
                 {"PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=2",
                  "ALTERAREA VARIABLE=\"n\" MODIFIER=\"/2\" RULE=ANYOUTSIDE", "UNDOALTER"}},
        Scenario{"Elements",
                 ZoneType_FEQuad,
                 PlotType_Cartesian2D,
                 {"ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+1\" ZONE=2 ELEMENT=3", "UNDOALTER",
                  "ALTERELEMENT ZONE=99 ELEMENT=1", "NONSENSE"},
                 true}),
    [](const auto& row) { return std::string(row.param.rule); });

}  // namespace
