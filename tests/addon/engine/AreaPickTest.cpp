#include "EngineTest.h"

namespace {

using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::StoredType;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

/// Takes the nodes at x = 0 and 1 of a lattice that starts at the origin.
constexpr char kLeftPart[] = "PICKRECTANGLE ANCHORX=-0.5 ANCHORY=-0.5 SIZEX=2 SIZEY=9";

class Area : public fakehost::EngineTest {
 protected:
  void Alter(const std::string& variable, const std::string& rule,
             const std::string& modifier = "=0") {
    PlayWell("ALTERAREA VARIABLE=\"" + variable + "\" MODIFIER=\"" + modifier + "\" RULE=" + rule);
  }
};

struct TriangleRow {
  const char* rule;
  double width;  ///< how much of the triangle with corners at x = 0, 1, 2 is inside
  bool isTaken;
};

class TriangleRule : public Area, public ::testing::WithParamInterface<TriangleRow> {};

TEST_P(TriangleRule, DecidesByItsCorners) {
  Mesh mesh;
  mesh.type = ZoneType_FETriangle;
  mesh.points = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}};
  mesh.elements = {{1, 2, 3}};
  Load(mesh);
  PlayWell("PICKRECTANGLE ANCHORX=-0.5 ANCHORY=-5 SIZEY=10 SIZEX=" +
           std::to_string(GetParam().width));
  Alter("c", GetParam().rule);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(GetParam().isTaken ? 0 : 10));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, TriangleRule,
    ::testing::Values(TriangleRow{"ANYINSIDE", 0.25, false}, TriangleRow{"ANYINSIDE", 1, true},
                      TriangleRow{"ANYINSIDE", 3, true}, TriangleRow{"ALLINSIDE", 0.25, false},
                      TriangleRow{"ALLINSIDE", 1, false}, TriangleRow{"ALLINSIDE", 2, false},
                      TriangleRow{"ALLINSIDE", 3, true}, TriangleRow{"ANYOUTSIDE", 0.25, true},
                      TriangleRow{"ANYOUTSIDE", 2, true}, TriangleRow{"ANYOUTSIDE", 3, false},
                      TriangleRow{"ALLOUTSIDE", 0.25, true}, TriangleRow{"ALLOUTSIDE", 1, false},
                      TriangleRow{"ALLOUTSIDE", 3, false}));

TEST_F(Area, AnyAndAllPickTheSameNodes) {
  for (const char* rule : {"ANYINSIDE", "ALLINSIDE"}) {
    host.Reset();
    Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
    PlayWell(kLeftPart);
    Alter("n", rule);
    EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(0, 0, 3, 0, 0, 6));
    host.Deliver(StateChange_NewLayout);
  }
}

TEST_F(Area, OrderedZonesInOneDimension) {
  Load(MakeLattice(ZoneType_Ordered, 3, 0, 0));
  PlayWell(kLeftPart);
  Alter("c", "ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(0, 20, 30));
  Alter("c", "ANYOUTSIDE", "=1");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(0, 1, 1));
}

TEST_F(Area, OrderedZoneOfASingleNode) {
  Load(MakeLattice(ZoneType_Ordered, 0, 0, 0));
  PlayWell(kLeftPart);
  Alter("c", "ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(0));
}

TEST_F(Area, OrderedZonesInThreeDimensions) {
  Load(MakeLattice(ZoneType_Ordered, 2, 1, 2), PlotType_Cartesian3D);
  PlayWell(kLeftPart);
  Alter("c", "ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(0, 20, 0, 40));
}

TEST_F(Area, A3DPlotTestsTheProjectedNodes) {
  Load(MakeLattice(ZoneType_FEBrick, 1, 1, 2), PlotType_Cartesian3D);
  // Along Y, so that Z is up: the lower cell lies below 1.5.
  host.ActiveFrame().view.psi = 90;
  PlayWell("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=2.5");
  Alter("c", "ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(0, 20));
}

TEST_F(Area, ACircleLivesOnPaperInA2DPlot) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.paperScale = 2;
  host.paperX = 100;
  host.paperY = 50;
  PlayWell("PICKCIRCLE ANCHORX=100 ANCHORY=50 RADIUS=2.5");
  Alter("n", "ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(0, 0, 3, 0, 5, 6));
}

TEST_F(Area, ARectangleLivesOnTheGridInA2DPlot) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.paperScale = 2;
  host.paperX = 100;
  PlayWell(kLeftPart);
  Alter("n", "ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(0, 0, 3, 0, 0, 6));
}

TEST_F(Area, InactiveAndIrrelevantZonesStayAsTheyAre) {
  host.AddFrame(PlotType_Cartesian2D);
  for (int zone = 0; zone < 3; ++zone) host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  const LgIndex_t v = host.AddVariable("v", ValueLocation_CellCentered, StoredType::Double,
                                       [](LgIndex_t zone, LgIndex_t) { return 1.0 * zone; });
  host.ZoneAt(1)->isActive = false;
  host.ZoneAt(2)->strand = 1;
  host.ZoneAt(2)->solutionTime = 7;
  InitQelAddOn113();
  PlayWell(kLeftPart);
  Alter("v", "ANYINSIDE");
  EXPECT_THAT(host.ValuesOf(1, v), ElementsAre(1));
  EXPECT_THAT(host.ValuesOf(2, v), ElementsAre(2));
  EXPECT_THAT(host.ValuesOf(3, v), ElementsAre(0));
}

TEST_F(Area, ASharedVariableIsUnsharedFirst) {
  host.AddFrame(PlotType_Cartesian2D);
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  const LgIndex_t v = host.AddVariable("v", ValueLocation_CellCentered, StoredType::Double,
                                       [](LgIndex_t, LgIndex_t) { return 5.0; });
  host.Share(1, 2, v);
  host.ZoneAt(2)->isActive = false;
  InitQelAddOn113();
  PlayWell(kLeftPart);
  Alter("v", "ANYINSIDE");
  EXPECT_THAT(host.ValuesOf(1, v), ElementsAre(0));
  EXPECT_THAT(host.ValuesOf(2, v), ElementsAre(5));
}

TEST_F(Area, APassiveVariableIsSkippedSilently) {
  host.AddFrame(PlotType_Cartesian2D);
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  const LgIndex_t v = host.AddVariable("v", ValueLocation_CellCentered, StoredType::Double,
                                       [](LgIndex_t, LgIndex_t) { return 5.0; });
  host.MakePassive(1, v);
  InitQelAddOn113();
  PlayWell(kLeftPart);
  Alter("v", "ANYINSIDE");
  EXPECT_THAT(host.ValuesOf(1, v), IsEmpty());
  EXPECT_THAT(host.ValuesOf(2, v), ElementsAre(0));
  ASSERT_FALSE(host.notices.empty());
  EXPECT_THAT(host.notices.back().zones, ElementsAre(2));
}

TEST_F(Area, BlankedCellsAndNodesAreSkipped) {
  Load(MakeLattice(ZoneType_FEQuad, 3, 1, 0));
  host.ActiveFrame().blanking.include = true;
  host.ActiveFrame().blanking.constraints[1] = {
      true, c, 0, BlankRelOp_EqualTo, ConstraintOp2Mode_UseConstant, 20};
  PlayWell("PICKRECTANGLE ANCHORX=-9 ANCHORY=-9 SIZEX=99 SIZEY=99");
  Alter("c", "ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(0, 20, 0));
  host.ActiveFrame().blanking.constraints[1] = {
      true, n, 0, BlankRelOp_LessThan, ConstraintOp2Mode_UseConstant, 3};
  Alter("n", "ALLINSIDE", "=50");
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(1, 2, 50, 50, 50, 50, 50, 50));
}

TEST_F(Area, KindsNoneAndElementSucceedAndDoNothing) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  Alter("c", "ANYINSIDE");
  PlayWell("ALTERELEMENT ZONE=1 ELEMENT=1 MODIFIER=\"+0\"");
  Alter("c", "ANYOUTSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
}

TEST_F(Area, AnUndefinedBoundaryIsRefused) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  PlayWell("PICKPOLYGON CORNERS=\"1,2\"");
  EXPECT_EQ(PlayBadly("ALTERAREA VARIABLE=\"c\" MODIFIER=\"=0\""),
            "Pick boundary not properly defined for ALTER/BLANK AREA command");
}

TEST_F(Area, NoWritableReferenceIsAnInternalError) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  host.ValuesAt(1, 1)->isWritable = false;
  PlayWell(kLeftPart);
  EXPECT_THAT(PlayBadly("ALTERAREA VARIABLE=\"X\" MODIFIER=\"=0\""),
              MatchesRegex("Assert failed: fieldDataPtr = QelUtilDataValueGetWritableNativeRef\\("
                           "zoneNum, varNum\\) \\([A-Za-z]+ [0-9]+\\)"));
}

}  // namespace
