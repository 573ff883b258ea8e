// Surface picks as the user makes them: the seed and the messages.
#include "SurfaceTest.h"

#include <stdexcept>

namespace {

using fakehost::FakeHost;
using fakehost::Geometry;
using fakehost::kOffSurface;
using fakehost::kTryAgain;
using fakehost::SurfacePick;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

constexpr char kInstruction[] = "Ctrl + Click on the a seed cell inside the boundary";
constexpr char kNeedsCtrl[] = "You must use Ctrl + Click to select a single seed point.";

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

}  // namespace
