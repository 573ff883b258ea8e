// Surface picks as the user makes them: the seed, the messages, what is taken, what is recorded.
#include "SurfaceTest.h"

#include <stdexcept>

namespace {

using fakehost::FakeHost;
using fakehost::Geometry;
using fakehost::kOffSurface;
using fakehost::kTryAgain;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

constexpr char kInstruction[] = "Ctrl + Click on the a seed cell inside the boundary";
constexpr char kNeedsCtrl[] = "You must use Ctrl + Click to select a single seed point.";

class SurfacePick : public fakehost::SurfaceTest {};

// Asking for the seed --------------------------------------------------------------------------

TEST_F(SurfacePick, StartAsksForTheSeed) {
  Prepare();
  EXPECT_TRUE(Session().StartSurfacePick());
  EXPECT_EQ(host.mouseMode, Mouse_Probe);
  EXPECT_EQ(host.probeInstruction, kInstruction);
  EXPECT_THAT(host.messageBoxes, IsEmpty());
  ExpectNothingChanged();
}

TEST_F(SurfacePick, StartThatTheHostRefusesIsAnInternalError) {
  Prepare();
  Selvane& session = Session();
  host.FailCall("QelUtilProbeInstallCallback", 1);
  std::string text;
  try {
    session.StartSurfacePick();
  } catch (const std::runtime_error& error) {
    text = error.what();
  }
  EXPECT_THAT(text, MatchesRegex("Assert failed: QelUtilProbeInstallCallback\\("
                                 "SelvaneSurfaceCallback, \"Ctrl \\+ Click on the a seed cell "
                                 "inside the boundary\"\\) \\([A-Za-z]+ [0-9]+\\)"));
}

struct GeometryRow {
  const char* name;
  void (*draw)(FakeHost& host);
  const char* message;
};

QelGeomID_t DrawOne(FakeHost& host, QelGeomType_e type) {
  return host.AddGeometry({0, type, {0, 0, 0}, 9, 9, {}, CoordSys_Grid});
}

class NoGeometry : public SurfacePick, public ::testing::WithParamInterface<GeometryRow> {
 protected:
  void SetUp() override {
    SurfacePick::SetUp();
    Session().SetPickKind(PickKind::Rectangle, true);
    GetParam().draw(host);
  }
  void ExpectExplained() {
    ASSERT_THAT(host.messageBoxes, SizeIs(1));
    EXPECT_EQ(host.messageBoxes[0].text, GetParam().message);
    EXPECT_EQ(host.messageBoxes[0].kind, 0);
    EXPECT_THAT(host.errorBoxes, IsEmpty());
    ExpectNothingChanged();
  }
};

TEST_P(NoGeometry, StartExplainsAndAsksForNoSeed) {
  EXPECT_FALSE(Session().StartSurfacePick());
  ExpectExplained();
  EXPECT_EQ(host.mouseMode, Mouse_GeomRectangle);
  EXPECT_EQ(host.CallCount("QelUtilProbeInstallCallback"), 0);
}

TEST_P(NoGeometry, StartIsSilentInABatchRun) {
  host.isBatch = true;
  EXPECT_FALSE(Session().StartSurfacePick());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_P(NoGeometry, ApplyExplainsAndChangesNothing) {
  EXPECT_FALSE(Session().ApplySurface(false));
  ExpectExplained();
  ExpectAreasAreWholeAgain();
}

INSTANTIATE_TEST_SUITE_P(
    Codes, NoGeometry,
    ::testing::Values(
        GeometryRow{"None", [](FakeHost&) {},
                    "No geometries exist that can be used to define the pick area."},
        GeometryRow{
            "OneEllipse", [](FakeHost& host) { DrawOne(host, GeomType_Ellipse); },
            "Selected geometry is a type that is not supported for defining the pick area."},
        GeometryRow{
            "SelectedEllipse",
            [](FakeHost& host) {
              DrawOne(host, GeomType_Circle);
              host.SelectGeometry(DrawOne(host, GeomType_Ellipse));
            },
            "Selected geometry is a type that is not supported for defining the pick area."},
        GeometryRow{"NoneSelected",
                    [](FakeHost& host) {
                      DrawOne(host, GeomType_Circle);
                      DrawOne(host, GeomType_Rectangle);
                    },
                    "When multiple geometries exist in a frame, you must\nselect a single geometry "
                    "to be used to define the pick area."},
        GeometryRow{"TwoSelected",
                    [](FakeHost& host) {
                      host.SelectGeometry(DrawOne(host, GeomType_Circle));
                      host.SelectGeometry(DrawOne(host, GeomType_Rectangle));
                    },
                    "Only one geometry may be selected for defining the pick area."},
        GeometryRow{"ZoneSelected",
                    [](FakeHost& host) {
                      DrawOne(host, GeomType_Circle);
                      DrawOne(host, GeomType_Rectangle);
                      host.ActiveFrame().pickList.push_back({PickObject_Zone, 0});
                    },
                    "The selected pick object item is not a geometry."}),
    [](const auto& row) { return std::string(row.param.name); });

// The click ------------------------------------------------------------------------------------

TEST_F(SurfacePick, ClickWithoutCtrlIsExplainedAndTheSeedStillAwaited) {
  Prepare();
  EXPECT_TRUE(Session().StartSurfacePick());
  host.Probe(false, 1, 1, 1);
  EXPECT_THAT(host.errorBoxes, ElementsAre(kNeedsCtrl));
  EXPECT_EQ(host.mouseMode, Mouse_Probe);
  ExpectNothingChanged();
  host.Probe(true, 1, 1, 1);
  EXPECT_THAT(host.errorBoxes, SizeIs(1));
  EXPECT_EQ(Changed(1, n), Outside());
}

TEST_F(SurfacePick, ClickBesideThePlotDoesNothingAndTheSeedIsStillAwaited) {
  Prepare();
  host.isRecording = true;
  EXPECT_TRUE(Session().StartSurfacePick());
  host.Probe(true, 0, 0, 0);
  EXPECT_EQ(host.mouseMode, Mouse_Probe);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  EXPECT_THAT(host.recordedLines, IsEmpty());
  ExpectNothingChanged();
  host.Probe(true, 2, 1, 64);
  EXPECT_EQ(Changed(2, n), Outside());
}

TEST_F(SurfacePick, ClickEndsTheProbeAndPicksTheOutsideOfItsZoneAlone) {
  Prepare();
  ClickSeed(1, 1);
  EXPECT_EQ(host.mouseMode, Mouse_Select);
  EXPECT_EQ(host.probeCallback, nullptr);
  EXPECT_EQ(Changed(1, n), Outside());
  EXPECT_THAT(Changed(2, n), IsEmpty());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  ExpectAreasAreWholeAgain();
}

TEST_F(SurfacePick, ClickTakesTheNodeNotTheCell) {
  Prepare();
  EXPECT_TRUE(Session().StartSurfacePick());
  // Node 23 would be refused.
  host.Probe(true, 1, 23, 1);
  EXPECT_EQ(Changed(1, n), Outside());
}

TEST_F(SurfacePick, SelectModeThatTheHostRefusesEndsThePick) {
  Prepare();
  EXPECT_TRUE(Session().StartSurfacePick());
  host.FailCall("QelUtilMouseSetMode", 1);
  host.Probe(true, 1, 1, 1);
  EXPECT_THAT(host.errorBoxes, ElementsAre(kTryAgain));
  ExpectNothingChanged();
}

TEST_F(SurfacePick, PlotOfAnotherTypeTakesNoSeed) {
  Prepare();
  EXPECT_TRUE(Session().StartSurfacePick());
  host.ActiveFrame().plotType = PlotType_Line;
  host.Probe(true, 1, 1, 1);
  ExpectNothingChanged();
  host.ActiveFrame().plotType = PlotType_Cartesian3D;
}

// Seeds that are refused -----------------------------------------------------------------------

struct SeedRow {
  const char* name;
  LgIndex_t seed;
  Geometry (*area)();
};

class RefusedSeed : public SurfacePick, public ::testing::WithParamInterface<SeedRow> {
 public:
  static Geometry Area() { return Everywhere(); }
  static Geometry LeftArea() { return Left(); }
};

TEST_P(RefusedSeed, IsExplainedAndChangesNothing) {
  Prepare();
  Redraw(GetParam().area());
  host.isRecording = true;
  ClickSeed(1, GetParam().seed);
  EXPECT_THAT(host.errorBoxes, ElementsAre(kOffSurface));
  EXPECT_EQ(host.mouseMode, Mouse_Select);
  ExpectNothingChanged();
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_THAT(host.recordedLines, SizeIs(1)) << "the boundary, built before, and no pick";
  host.isRecording = false;
  ExpectAreasAreWholeAgain();
}

TEST_P(RefusedSeed, IsNoErrorInAJournal) {
  const Geometry area = GetParam().area();
  PlayWell("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=" + std::to_string(area.width) + " SIZEY=9");
  PlayWell("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 SEEDPOINT=" +
           std::to_string(GetParam().seed));
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  ExpectNothingChanged();
  EXPECT_FALSE(Session().IsUndoAvailable());
  ExpectAreasAreWholeAgain();
}

INSTANTIATE_TEST_SUITE_P(Seeds, RefusedSeed,
                         ::testing::Values(SeedRow{"OutsideTheArea", 4, RefusedSeed::LeftArea},
                                           SeedRow{"WithinTheZone", 23, RefusedSeed::Area},
                                           SeedRow{"PastTheLastNode", 65, RefusedSeed::Area},
                                           SeedRow{"Negative", -3, RefusedSeed::Area}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SurfacePick, HiddenNeighboursStillCoverASeed) {
  // All but the cell in the middle of the bottom is hidden: it shows its sides, which are no
  // boundary. With the one node that is on no boundary as seed.
  host.ActiveFrame().blanking.include = true;
  host.ActiveFrame().blanking.constraints[1] = {
      true, c, 0, BlankRelOp_GreaterThan, ConstraintOp2Mode_UseConstant, 50.0};
  for (LgIndex_t cell = 0; cell < 27; ++cell) {
    host.ValuesAt(1, c)->storage->Set(cell, cell == 4 ? 0.0 : 100.0);
  }
  ASSERT_TRUE(host.IsBlankedCell(1, 1));
  ASSERT_FALSE(host.IsBlankedCell(1, 5));
  Prepare();
  ClickSeed(1, 22);
  EXPECT_THAT(host.errorBoxes, ElementsAre(kOffSurface));
  EXPECT_THAT(Changed(1, n), IsEmpty());
}

TEST_F(SurfacePick, MissingConnectivityIsExplainedAsARefusedSeed) {
  for (const char* const function :
       {"QelUtilDataNodeToElemMapGetReadableRef", "QelUtilDataFaceNbrGetReadableRef",
        "QelUtilDataNodeGetReadableRef"}) {
    SCOPED_TRACE(function);
    LoadTwo(ZoneType_FEBrick);
    Prepare();
    EXPECT_TRUE(Session().StartSurfacePick());
    host.FailCall(function, 1);
    host.Probe(true, 1, 1, 1);
    EXPECT_TRUE(host.WasFaultHit());
    EXPECT_THAT(host.errorBoxes, ElementsAre(kOffSurface));
    ExpectNothingChanged();
    host.Deliver(StateChange_NewLayout);
  }
}

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
