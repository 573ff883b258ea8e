// What a pick allocates, whatever the host shows of its own memory.
#include "EngineTest.h"
#include "HeapMeter.h"

#include <memory>

namespace {

using fakehost::EngineTest;
using fakehost::MakeLattice;
using fakehost::StoredType;
using support::HeapMeter;

TEST(HeapMeter, CountsWhatIsHeldAndTheMostThatWas) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the thread sanitizer's own operators are used";
#endif
  constexpr std::int64_t kLarge = 1 << 20;
  const HeapMeter meter;
  EXPECT_EQ(meter.PeakBytes(), 0);
  auto first = std::make_unique<char[]>(kLarge);
  { const auto second = std::make_unique<char[]>(kLarge); }
  EXPECT_GE(meter.LiveBytes(), kLarge);
  EXPECT_LT(meter.LiveBytes(), 2 * kLarge);
  EXPECT_GE(meter.PeakBytes(), 2 * kLarge);
  first.reset();
  EXPECT_EQ(meter.LiveBytes(), 0);
  EXPECT_EQ(HeapMeter().PeakBytes(), 0) << "a new meter starts anew";
}

struct PickRow {
  const char* name;
  QelZoneType_e type;
  std::array<LgIndex_t, 3> cells;
  const char* boundary;
};

class PickMemory : public EngineTest, public ::testing::WithParamInterface<PickRow> {
 protected:
  void SetUp() override {
    const auto& cells = GetParam().cells;
    Load(MakeLattice(GetParam().type, cells[0], cells[1], cells[2]), PlotType_Cartesian3D,
         StoredType::Float);
    host.keepsCalls = false;
    host.ZoneAt(1)->mesh.Derived();  // the host's own
    PlayWell(GetParam().boundary);
  }

  /// The most that a pick of the variable holds at a time, by every rule.
  std::int64_t PeakOf(const std::string& variable) {
    std::int64_t peak = 0;
    for (const char* rule : {"ANYINSIDE", "ALLINSIDE", "ANYOUTSIDE", "ALLOUTSIDE"}) {
      const std::string line = "ALTERAREA VARIABLE=\"" + variable + "\" MODIFIER=\"+1\" RULE=";
      const HeapMeter meter;
      PlayWell(line + rule);
      peak = std::max(peak, meter.PeakBytes());
    }
    return peak;
  }
};

TEST_P(PickMemory, IsAByteANodeAndABitACellAtMost) {
  const std::int64_t nodeCount = host.ZoneAt(1)->mesh.NodeCount();
  const std::int64_t cellCount = host.ZoneAt(1)->mesh.CellCount();
  constexpr std::int64_t kAnyPick = std::int64_t{64} << 10;
  constexpr std::int64_t kBitsPerByte = 8;
  const std::int64_t most = nodeCount + cellCount / kBitsPerByte + kAnyPick;
  ASSERT_GT(nodeCount, kAnyPick) << "too small to show anything";
  EXPECT_LE(PeakOf("n"), most);
  EXPECT_LE(PeakOf("c"), most);
}

constexpr char kCubePick[] = "PICKCUBE ANCHORX=1 ANCHORY=1 ANCHORZ=-1 SIZEX=20 SIZEY=20 SIZEZ=20";
constexpr char kTurnedCube[] =
    "PICKCUBE ANCHORX=1 ANCHORY=1 ANCHORZ=-1 SIZEX=20 SIZEY=20 SIZEZ=20 ROTATEZ=30";
constexpr char kSpherePick[] = "PICKSPHERE ANCHORX=9 ANCHORY=9 ANCHORZ=0 RADIUS=20";
constexpr char kCircle[] = "PICKCIRCLE ANCHORX=9 ANCHORY=9 RADIUS=20";
constexpr char kRectanglePick[] = "PICKRECTANGLE ANCHORX=1 ANCHORY=1 SIZEX=20 SIZEY=20";

INSTANTIATE_TEST_SUITE_P(
    Picks, PickMemory,
    ::testing::Values(PickRow{"OrderedCube", ZoneType_Ordered, {60, 60, 60}, kCubePick},
                      PickRow{"OrderedSheetCircle", ZoneType_Ordered, {400, 400, 0}, kCircle},
                      PickRow{"BrickTurnedCube", ZoneType_FEBrick, {60, 60, 60}, kTurnedCube},
                      PickRow{"BrickRectangle", ZoneType_FEBrick, {60, 60, 60}, kRectanglePick},
                      PickRow{"TetraSphere", ZoneType_FETetra, {50, 50, 50}, kSpherePick},
                      PickRow{"QuadRectangle", ZoneType_FEQuad, {400, 400, 0}, kRectanglePick},
                      PickRow{"TriangleSphere", ZoneType_FETriangle, {400, 400, 0}, kSpherePick},
                      PickRow{"LineCube", ZoneType_FELineSeg, {100000, 0, 0}, kCubePick},
                      PickRow{"PolygonCircle", ZoneType_FEPolygon, {300, 300, 0}, kCircle},
                      PickRow{"PolyhedronCube", ZoneType_FEPolyhedron, {42, 42, 42}, kCubePick}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
