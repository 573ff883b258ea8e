// Commands from their lines to the last values of zones with 2147483647 nodes and cells, the most
// that a host can count.
//
// What is left between the ends of such a zone takes minutes and half a gigabyte to go over:
// MARQUELL_WHOLE_ZONES=1 does that too.
#include "FakeHostTest.h"
#include "PickReference.h"
#include "SparseZone.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace sparse;
using fakehost::StoredType;

constexpr std::int64_t kFew = 4099;

// All of them have the three far nodes inside and no other.
constexpr const char* kFlatBoundaries[] = {
    "PICKRECTANGLE ANCHORX=0.5 ANCHORY=-1 SIZEX=1 SIZEY=2",
    "PICKCIRCLE ANCHORX=1 ANCHORY=0 RADIUS=0.25",
    "PICKPOLYGON CORNERS=\"0.5,-1,1.5,-1,1.5,1,0.5,1\"",
};
constexpr const char* kSolidBoundaries[] = {
    "PICKCUBE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=-1 SIZEX=1 SIZEY=2 SIZEZ=2",
    "PICKCUBE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=-1 SIZEX=1 SIZEY=2 SIZEZ=2 ROTATEZ=1",
    "PICKSPHERE ANCHORX=1 ANCHORY=0 ANCHORZ=0 RADIUS=0.25",
};
constexpr const char* kRectangle = kFlatBoundaries[0];

struct SizeRow {
  std::string name;
  Size size;
};

void PrintTo(const SizeRow& row, std::ostream* out) { *out << row.name; }

constexpr const char* kNames[] = {"", "X", "Y", "Z", "n", "c", "PICK_BLANK"};

class SizeTest : public fakehost::FakeHostTest, public ::testing::WithParamInterface<SizeRow> {
 protected:
  void SetUp() override {
    host.AddFrame(PlotType_Cartesian2D);
    host.keepsCalls = false;
    // Stands where the large zone is said to be.
    const bool isLine = GetParam().size.type == ZoneType_FELineSeg;
    host.AddZone(fakehost::MakeLattice(GetParam().size.type, 2, isLine ? 0 : 2, isLine ? 0 : 2));
    const auto zero = [](LgIndex_t, LgIndex_t) { return 0.0; };
    host.AddVariable("n", ValueLocation_Nodal, StoredType::Byte, zero);
    host.AddVariable("c", ValueLocation_CellCentered, StoredType::Byte, zero);
    host.AddVariable("PICK_BLANK", ValueLocation_CellCentered, StoredType::Byte, zero);
    InitQelAddOn113();
  }

  void TearDown() override {
    m_stage.reset();
    FakeHostTest::TearDown();
  }

  void Show(Shown shown) {
    m_stage.reset();
    m_zone = std::make_unique<SparseZone>(GetParam().size);
    m_stage = std::make_unique<Stage>(*m_zone, shown);
  }

  std::int64_t CountOf(LgIndex_t var) { return m_zone->Variable(var).count; }

  bool IsTaken(LgIndex_t var, int rule, std::int64_t item) const {
    std::vector<std::int64_t> corners = {item};
    if (var != SparseZone::kNodal) corners = m_zone->Corners(item);
    const bool wantsOutside = rule % 2 == 1;
    const auto isOnSide = [&](std::int64_t node) { return m_zone->IsFar(node) != wantsOutside; };
    return rule >= 2 ? std::all_of(corners.begin(), corners.end(), isOnSide)
                     : std::any_of(corners.begin(), corners.end(), isOnSide);
  }

  /// The values of the first and last items, one taken or not by a rule that a hidden item escapes.
  void ExpectAtEnds(LgIndex_t var, int rule, bool hides, double taken, const std::string& what) {
    constexpr std::int64_t kEnd = 200;
    const std::int64_t count = CountOf(var);
    for (std::int64_t n = 0; n < 2 * kEnd; ++n) {
      const std::int64_t item = n < kEnd ? n : count - 2 * kEnd + n;
      const bool isTaken =
          IsTaken(var, rule, item) && !(hides && SparseZone::IsHidden(item, count));
      ASSERT_EQ(m_zone->Variable(var).Get(item), isTaken ? taken : 0.0) << what << ", " << item;
    }
  }

  void Alter(LgIndex_t var, int rule, bool hides = false) {
    const std::string what = std::string(kNames[var]) + " " + reference::kRules[rule];
    host.ActiveFrame().blanking.include = hides;
    PlayWell(std::string("ALTERAREA VARIABLE=\"") + kNames[var] +
             "\" MODIFIER=\"+3\" RULE=" + reference::kRules[rule]);
    const std::int64_t changed = m_stage->ChangedCount();
    ExpectAtEnds(var, rule, hides, 3.0, what);
    // Those inside are a few, of a wide grid's whole cells none; of those outside it is at least
    // what the pool was given.
    const bool takesFew = rule % 2 == 0;
    EXPECT_LE(changed, takesFew ? 12 : CountOf(var)) << what;
    EXPECT_GE(changed, takesFew ? 0 : std::min<std::int64_t>(CountOf(var), 16384)) << what;
    if (changed == 0) {
      PlayBadly("UNDOALTER");
      return;
    }
    PlayWell("UNDOALTER");
    EXPECT_EQ(m_stage->ChangedCount(), changed) << what;
    ExpectAtEnds(var, rule, hides, 0.0, what + " undone");
  }

  /// What hides by writing 1, and shows again by writing 0.
  void Blank(const std::string& line, int rule) {
    PlayWell(line);
    ExpectAtEnds(SparseZone::kBlank, rule, false, 1.0, line);
    PlayWell("UNDOBLANK");
    ExpectAtEnds(SparseZone::kBlank, rule, false, 0.0, "UNDOBLANK");
  }

  void AlterLast(LgIndex_t var) {
    const std::int64_t last = CountOf(var);
    PlayWell(std::string("ALTERELEMENT VARIABLE=\"") + kNames[var] +
             "\" MODIFIER=\"+9\" ZONE=1 ELEMENT=" + std::to_string(last));
    EXPECT_EQ(m_zone->Variable(var).Get(last - 1), 9.0);
    PlayWell("UNDOALTER");
    EXPECT_EQ(m_zone->Variable(var).Get(last - 1), 0.0);
    if (last == kMost) return;
    PlayBadly("ALTERELEMENT ZONE=1 ELEMENT=" + std::to_string(last + 1));
  }

  std::unique_ptr<SparseZone> m_zone;
  std::unique_ptr<Stage> m_stage;
};

std::string NameOf(const ::testing::TestParamInfo<SizeRow>& row) { return row.param.name; }

// Few nodes, so that little memory is needed: in seconds ---------------------------------------

class ManyCells : public SizeTest {};

TEST_P(ManyCells, AreAlteredByEveryBoundaryAndRule) {
  Show(Shown::BySpansAtEnds);
  for (const char* boundary : kFlatBoundaries) {
    SCOPED_TRACE(boundary);
    PlayWell(boundary);
    for (int rule = 0; rule < 4; ++rule) Alter(SparseZone::kAtCells, rule);
    Alter(SparseZone::kNodal, 2);
  }
  host.ActiveFrame().plotType = PlotType_Cartesian3D;
  for (const char* boundary : kSolidBoundaries) {
    SCOPED_TRACE(boundary);
    PlayWell(boundary);
    for (int rule = 0; rule < 4; ++rule) Alter(SparseZone::kAtCells, rule);
  }
}

TEST_P(ManyCells, AreAlteredAndHiddenOneByOne) {
  for (const Shown shown : {Shown::ByAccessors, Shown::BySpansAtEnds}) {
    Show(shown);
    AlterLast(SparseZone::kAtCells);
    AlterLast(SparseZone::kNodal);
    PlayWell("BLANKELEMENT ZONE=1 ELEMENT=2147483647");
    EXPECT_EQ(m_zone->Variable(SparseZone::kBlank).Get(kMost - 1), 1.0);
  }
}

TEST_P(ManyCells, AreHiddenAndShownAgain) {
  Show(Shown::BySpansAtEnds);
  PlayWell(kRectangle);
  Blank("BLANKAREA RULE=ANYINSIDE", 0);
}

INSTANTIATE_TEST_SUITE_P(Zones, ManyCells,
                         ::testing::Values(SizeRow{"Triangles",
                                                   {ZoneType_FETriangle, {}, kFew, kMost}},
                                           SizeRow{"Quads", {ZoneType_FEQuad, {}, kFew, kMost}},
                                           SizeRow{"Tetras", {ZoneType_FETetra, {}, kFew, kMost}},
                                           SizeRow{"Bricks", {ZoneType_FEBrick, {}, kFew, kMost}},
                                           SizeRow{"Lines", {ZoneType_FELineSeg, {}, kFew, kMost}}),
                         NameOf);

// A walk leaves the last cell nowhere; the element walk alone notes every cell.
class ManySolids : public SizeTest {};

TEST_P(ManySolids, HaveASurface) {
  Show(Shown::BySpansAtEnds);
  PlayWell(kRectangle);
  const std::string seed = " ZONE=1 SEEDPOINT=" + std::to_string(kFew);
  PlayWell("ALTERSURFACE VARIABLE=\"c\" MODIFIER=\"+3\" RULE=ANYINSIDE" + seed);
  ExpectAtEnds(SparseZone::kAtCells, 0, false, 3.0, "altered");
  PlayWell("UNDOALTER");
  ExpectAtEnds(SparseZone::kAtCells, 0, false, 0.0, "undone");
  Blank("BLANKSURFACE RULE=ANYINSIDE" + seed, 0);
}

INSTANTIATE_TEST_SUITE_P(Zones, ManySolids,
                         ::testing::Values(SizeRow{"Tetras", {ZoneType_FETetra, {}, kFew, kMost}},
                                           SizeRow{"Bricks", {ZoneType_FEBrick, {}, kFew, kMost}},
                                           SizeRow{"Lines", {ZoneType_FELineSeg, {}, kFew, kMost}}),
                         NameOf);

// All nodes and cells, one after the other: in minutes -----------------------------------------

class WholeZones : public SizeTest {
 protected:
  void SetUp() override {
    if (std::getenv("MARQUELL_WHOLE_ZONES") == nullptr) {
      GTEST_SKIP() << "takes minutes: MARQUELL_WHOLE_ZONES=1";
    }
    SizeTest::SetUp();
  }

  void PickEverywhere(Shown shown) {
    Show(shown);
    PlayWell(kRectangle);
    Alter(SparseZone::kNodal, 0);
    Alter(SparseZone::kAtCells, 0);
    Alter(SparseZone::kAtCells, 2, true);
    Alter(SparseZone::kNodal, 2, true);
    Blank("BLANKAREA RULE=ALLINSIDE", 2);
    AlterLast(SparseZone::kNodal);
    AlterLast(SparseZone::kAtCells);
    PlayWell("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"=3\" RULE=ANYINSIDE ZONE=1 SEEDPOINT=" +
             std::to_string(CountOf(SparseZone::kNodal)));
    EXPECT_EQ(m_zone->Variable(SparseZone::kNodal).Get(CountOf(SparseZone::kNodal) - 1), 3.0);
    EXPECT_EQ(m_zone->Variable(SparseZone::kNodal).Get(0), 0.0);
  }
};

TEST_P(WholeZones, ArePickedWhereTheyLie) { PickEverywhere(Shown::BySpans); }
TEST_P(WholeZones, ArePickedByAccessors) { PickEverywhere(Shown::ByAccessors); }

TEST_P(WholeZones, AreWalkedFromANodeOfAllCells) {
  Show(Shown::ByAccessors);
  // The first node alone: none of its billions of cells has a face on the surface.
  PlayWell("PICKRECTANGLE ANCHORX=-0.5 ANCHORY=-1 SIZEX=1 SIZEY=2");
  PlayWell("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"=3\" RULE=ANYINSIDE ZONE=1 SEEDPOINT=1");
  EXPECT_EQ(m_zone->Variable(SparseZone::kNodal).Get(CountOf(SparseZone::kNodal) - 1), 0.0);
}

INSTANTIATE_TEST_SUITE_P(
    Zones, WholeZones,
    ::testing::Values(SizeRow{"Line", OrderedSize(2147483647, 1, 1)},
                      SizeRow{"Plane", OrderedSize(46340, 1, 46341)},
                      SizeRow{"Block", OrderedSize(1290, 1290, 1290)},
                      SizeRow{"Triangles", {ZoneType_FETriangle, {}, kMost, kMost}},
                      SizeRow{"Quads", {ZoneType_FEQuad, {}, kMost, kMost}},
                      SizeRow{"Tetras", {ZoneType_FETetra, {}, kMost, kMost}},
                      SizeRow{"Bricks", {ZoneType_FEBrick, {}, kMost, kMost}},
                      SizeRow{"Lines", {ZoneType_FELineSeg, {}, kMost, kMost}},
                      SizeRow{"Polygons", {ZoneType_FEPolygon, {}, kMost, kMost}},
                      SizeRow{"Polyhedra", {ZoneType_FEPolyhedron, {}, kMost, kMost}}),
    NameOf);

}  // namespace
