// Surface picks as the user makes them: what is taken, what is recorded.
#include "SurfaceTest.h"

namespace {

using fakehost::Geometry;
using fakehost::SurfacePick;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// What a pick takes ----------------------------------------------------------------------------

TEST_F(SurfacePick, CellsAreDecidedByWhatWasReached) {
  // Every outer cell has a node within, which never counts as inside.
  Prepare();
  Session().SetAlterVariable(c);
  Session().SetPickRule(false, true);
  ClickSeed(1, 1);
  EXPECT_THAT(Changed(1, c), IsEmpty()) << "ALLINSIDE";
  Session().SetPickRule(false, false);
  ClickSeed(1, 1);
  EXPECT_THAT(Changed(1, c), SizeIs(26)) << "ANYINSIDE";
  EXPECT_EQ(host.ValuesOf(1, c)[13], 10.0) << "the cell in the middle";
  EXPECT_THAT(Changed(2, c), IsEmpty());
}

TEST_F(SurfacePick, OutsideRulesTakeWhatWasNotReachedInTheZone) {
  Prepare();
  Session().SetAlterVariable(c);
  Session().SetPickRule(true, true);
  ClickSeed(1, 1);
  EXPECT_THAT(Changed(1, c), ElementsAre(14)) << "ALLOUTSIDE";
  Session().SetPickRule(true, false);
  ClickSeed(1, 1);
  EXPECT_THAT(Changed(1, c), SizeIs(27)) << "ANYOUTSIDE";
  EXPECT_THAT(Changed(2, c), IsEmpty()) << "of the seed's zone alone";
}

TEST_F(SurfacePick, HiddenItemsAreLeftOut) {
  host.ActiveFrame().blanking.include = true;
  host.ActiveFrame().blanking.constraints[1] = {
      true, n, 0, BlankRelOp_LessThan, ConstraintOp2Mode_UseConstant, 5.0};
  host.ValuesAt(1, n)->storage->Set(0, 1.0);
  Prepare();
  ClickSeed(1, 1);
  std::vector<double> values = host.ValuesOf(1, n);
  EXPECT_EQ(values[0], 1.0);
  EXPECT_EQ(values[1], 15.0);
}

struct KindRow {
  const char* name;
  PickKind kind;
  bool picks;
};

class KindOfPick : public SurfacePick, public ::testing::WithParamInterface<KindRow> {};

TEST_P(KindOfPick, DecidesWhetherASurfaceIsPicked) {
  Prepare();
  Session().SetPickKind(GetParam().kind, true);
  EXPECT_TRUE(Session().StartSurfacePick());
  // Gives the session its seed, and the pick is repeated by hand.
  host.Probe(true, 1, 1, 1);
  if (GetParam().picks) {
    EXPECT_EQ(Changed(1, n), Outside());
    EXPECT_TRUE(Session().ApplySurface(false));
    EXPECT_EQ(host.ValuesOf(1, n)[0], 20.0);
    return;
  }
  const Selvane& session = Session();
  host.isRecording = true;
  host.calls.clear();
  EXPECT_TRUE(Session().ApplySurface(false));
  ExpectNothingChanged();
  EXPECT_THAT(host.recordedLines, IsEmpty()) << "no boundary was built";
  EXPECT_EQ(session.UndoGeometry(), 0);
  EXPECT_EQ(host.CallCount("QelUtilGeomGetBase"), 0);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
  host.isRecording = false;
  ExpectAreasAreWholeAgain();
  host.RunIdleQueue();
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindOfPick,
                         ::testing::Values(KindRow{"None", PickKind::None, true},
                                           KindRow{"Element", PickKind::Element, false},
                                           KindRow{"Rectangle", PickKind::Rectangle, true},
                                           KindRow{"Polygon", PickKind::Polygon, true},
                                           KindRow{"Circle", PickKind::Circle, true},
                                           KindRow{"Cube", PickKind::Cube, false},
                                           KindRow{"Sphere", PickKind::Sphere, false}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SurfacePick, GeometryThatMakesNoBoundaryEndsThePickInSilence) {
  Prepare();
  host.isRecording = true;
  Geometry& geometry = host.ActiveFrame().geometries[0];
  geometry.type = GeomType_LineSegs;
  geometry.points = {{0, 0, 0}, {9, 9, 0}};
  ClickSeed(1, 1);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(Session().UndoGeometry(), 0);
  ExpectNothingChanged();
  host.isRecording = false;
  ExpectAreasAreWholeAgain();
}

TEST_F(SurfacePick, PassiveVariableIsSkipped) {
  host.MakePassive(1, n);
  Prepare();
  ClickSeed(1, 1);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  EXPECT_THAT(host.ValuesOf(1, n), IsEmpty());
  EXPECT_FALSE(Session().IsUndoAvailable());
}

TEST_F(SurfacePick, SharedVariableIsTheSeedsZonesOwnAfterwards) {
  host.Share(1, 2, n);
  Prepare();
  ClickSeed(2, 1);
  EXPECT_THAT(Changed(1, n), IsEmpty());
  EXPECT_EQ(Changed(2, n), Outside());
}

TEST_F(SurfacePick, InactiveZoneIsPickedOnWhenTheSeedIsItsOwn) {
  host.ZoneAt(1)->isActive = false;
  PlayWell(fakehost::kRectangle);
  PlayWell("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 SEEDPOINT=1");
  EXPECT_EQ(Changed(1, n), Outside());
}

TEST_F(SurfacePick, ChangedZoneAndVariableAreReported) {
  Prepare();
  host.notices.clear();
  ClickSeed(2, 1);
  std::vector<fakehost::StateChangeNotice> altered;
  for (const auto& notice : host.notices) {
    if (notice.change == StateChange_VarsAltered) altered.push_back(notice);
  }
  ASSERT_THAT(altered, SizeIs(1));
  EXPECT_THAT(altered[0].zones, ElementsAre(2));
  EXPECT_THAT(altered[0].vars, ElementsAre(n));
}

// In 2D frames ---------------------------------------------------------------------------------

TEST_F(SurfacePick, PlanarPickWalksTheElementsInsideTheArea) {
  LoadTwo(ZoneType_FEQuad, PlotType_Cartesian2D);
  Prepare();
  Redraw(Left());
  ClickSeed(1, 1);
  // Node 13 is in the upper left corner and only ever a last corner.
  EXPECT_THAT(Changed(1, n), ElementsAre(1, 2, 5, 6, 9, 10, 14));
  EXPECT_THAT(Changed(2, n), IsEmpty());
}

TEST_F(SurfacePick, PlanarCircleIsRoundOnPaper) {
  LoadTwo(ZoneType_FEQuad, PlotType_Cartesian2D);
  Prepare();
  host.paperScale = 2.0;
  host.paperX = 100.0;
  host.isRecording = true;
  Redraw({0, GeomType_Circle, {0, 0, 0}, 1.25, 0, {}, CoordSys_Grid});
  ClickSeed(1, 1);
  EXPECT_THAT(Changed(1, n), ElementsAre(1, 2));
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKCIRCLE ANCHORX=100 ANCHORY=0 RADIUS=2.5",
                          "Marquell ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 SEEDPOINT=1 "
                          "RULE=ALLINSIDE"));
}

// Recording ------------------------------------------------------------------------------------

TEST_F(SurfacePick, BoundaryAndPickAreRecorded) {
  Prepare();
  EXPECT_TRUE(Session().ParseModifier("*0.25"));
  Session().SetPickRule(false, false);
  host.isRecording = true;
  ClickSeed(2, 6);
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=9",
                          "Marquell ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"*0.25\" ZONE=2 "
                          "SEEDPOINT=6 RULE=ANYINSIDE"));
}

TEST_F(SurfacePick, HidingIsRecorded) {
  Prepare();
  EXPECT_TRUE(Session().EnterBlankMode());
  Session().SetPickRule(true, false);
  host.isRecording = true;
  ClickSeed(1, 64);
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=9",
                          "Marquell BLANKSURFACE ZONE=1 SEEDPOINT=64 RULE=ANYOUTSIDE"));
}

TEST_F(SurfacePick, PolygonAreaIsRecorded) {
  Prepare();
  Geometry& geometry = host.ActiveFrame().geometries[0];
  geometry.type = GeomType_LineSegs;
  geometry.points = {{0, 0, 0}, {9, 0, 0}, {9, 9, 0}, {0, 9.5, 0}};
  host.isRecording = true;
  ClickSeed(1, 1);
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKPOLYGON CORNERS=\"-1, -1,8, -1,8, 8,-1, 8.5\"",
                          "Marquell ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 SEEDPOINT=1 "
                          "RULE=ALLINSIDE"));
}

TEST_F(SurfacePick, NothingIsRecordedUnlessTheUserRecords) {
  Prepare();
  ClickSeed(1, 1);
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

TEST_F(SurfacePick, RecordedPickPlaysBackToTheSameValues) {
  Prepare();
  Session().SetAlterVariable(c);
  Session().SetPickRule(false, false);
  Redraw(Left());
  host.isRecording = true;
  ClickSeed(1, 1);
  const std::vector<std::string> lines = host.recordedLines;
  const std::vector<double> picked = host.ValuesOf(1, c);
  ASSERT_THAT(lines, SizeIs(2));
  host.Deliver(StateChange_NewLayout);
  LoadTwo(ZoneType_FEBrick);
  for (const std::string& line : lines) PlayWell(line.substr(std::string("Marquell ").size()));
  EXPECT_EQ(host.ValuesOf(1, c), picked);
  EXPECT_THAT(Changed(2, c), IsEmpty());
}

}  // namespace
