// The box: its corners, its zone, its command.
#include "BoundaryTest.h"

#include <cmath>

namespace {

using fakehost::AssertText;
using fakehost::Boundary3dTest;
using fakehost::Cube;
using fakehost::ErrorOf;
using fakehost::MakeLattice;
using fakehost::Point;
using fakehost::StateChangeNotice;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::MacroEngine;
using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

using ClippingCube = Boundary3dTest;

void ExpectNodes(const std::vector<Point>& nodes, const std::vector<Point>& expected) {
  ASSERT_EQ(nodes.size(), expected.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    EXPECT_NEAR(nodes[i].x, expected[i].x, 1e-12) << "node " << i + 1;
    EXPECT_NEAR(nodes[i].y, expected[i].y, 1e-12) << "node " << i + 1;
    EXPECT_NEAR(nodes[i].z, expected[i].z, 1e-12) << "node " << i + 1;
  }
}

/// The corners of an upright box in node order.
std::vector<Point> BoxNodes(double x0, double y0, double z0, double x1, double y1, double z1) {
  return {{x0, y0, z0}, {x0, y1, z0}, {x1, y1, z0}, {x1, y0, z0},
          {x0, y0, z1}, {x0, y1, z1}, {x1, y1, z1}, {x1, y0, z1}};
}

constexpr char kUpright[] = "PICKCUBE ANCHORX=0.5 ANCHORY=1 ANCHORZ=1.5 SIZEX=1 SIZEY=1.25 SIZEZ=2";
/// The same, a quarter turn about z, which keeps every number short.
constexpr char kTurned[] =
    "PICKCUBE ANCHORX=1 ANCHORY=1 ANCHORZ=0 SIZEX=2 SIZEY=1 SIZEZ=1 ROTATEZ=90";

// Shape ----------------------------------------------------------------------------------------

TEST_F(ClippingCube, CornersStandInTheirOrder) {
  ASSERT_TRUE(Take(cube, kUpright));
  ASSERT_TRUE(cube.Create());
  ExpectNodes(NodesOf(2), BoxNodes(0.5, 1, 1.5, 1.5, 2.25, 3.5));
  EXPECT_TRUE(cube.IsGeometryValid());
}

TEST_F(ClippingCube, BoundingBoxOfANegativeSizeIsInOrder) {
  ASSERT_TRUE(Take(cube, "PICKCUBE ANCHORX=1 ANCHORY=1 ANCHORZ=1 SIZEX=-2 SIZEY=-3 SIZEZ=-4"));
  EXPECT_EQ(cube.BoundingBox().min.x, -1.0);
  EXPECT_EQ(cube.BoundingBox().max.x, 1.0);
  EXPECT_EQ(cube.BoundingBox().min.y, -2.0);
  EXPECT_EQ(cube.BoundingBox().max.y, 1.0);
  EXPECT_EQ(cube.BoundingBox().min.z, -3.0);
  EXPECT_EQ(cube.BoundingBox().max.z, 1.0);
}

TEST_F(ClippingCube, UprightBoxHoldsEveryPointOfItsBoundingBox) {
  ASSERT_TRUE(Take(cube, kUpright));
  for (const double x : {0.5, 1.0, 1.5}) {
    for (const double y : {1.0, 2.0, 2.25}) {
      for (const double z : {1.5, 2.0, 3.5}) EXPECT_TRUE(cube.IsInside(x, y, z));
    }
  }
}

TEST_F(ClippingCube, TurnsAboutItsAnchor) {
  ASSERT_TRUE(Take(cube, kTurned));
  ASSERT_TRUE(cube.Create());
  const std::vector<Point> nodes = NodesOf(2);
  ASSERT_EQ(nodes.size(), 8u);
  EXPECT_NEAR(nodes[0].x, 1, 1e-12) << "the anchor stays";
  EXPECT_NEAR(nodes[0].y, 1, 1e-12);
  // The corner beside it in x goes to where y grew by the size in x.
  EXPECT_NEAR(nodes[3].x, 1, 1e-12);
  EXPECT_NEAR(nodes[3].y, 3, 1e-12);
  EXPECT_NEAR(cube.BoundingBox().min.x, 0, 1e-12);
  EXPECT_NEAR(cube.BoundingBox().max.y, 3, 1e-12);
  EXPECT_TRUE(cube.IsInside(0.5, 2.5, 0.5));
  EXPECT_FALSE(cube.IsInside(1.5, 2.5, 0.5));
}

struct TurnRow {
  const char* rule;
  const char* angles;
  Point corner;  ///< where the corner at (1, 2, 3) goes, the anchor being the origin
};

class CubeTurn : public Boundary3dTest, public ::testing::WithParamInterface<TurnRow> {};

TEST_P(CubeTurn, GoesAboutZThenYThenX) {
  ASSERT_TRUE(Take(cube, std::string("PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=2 "
                                     "SIZEZ=3 ") +
                             GetParam().angles));
  ASSERT_TRUE(cube.Create());
  const Point seen = NodesOf(2).at(6);
  EXPECT_NEAR(seen.x, GetParam().corner.x, 1e-12);
  EXPECT_NEAR(seen.y, GetParam().corner.y, 1e-12);
  EXPECT_NEAR(seen.z, GetParam().corner.z, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, CubeTurn,
    ::testing::Values(TurnRow{"X", "ROTATEX=90", {1, -3, 2}},
                      TurnRow{"Y", "ROTATEY=90", {3, 2, -1}},
                      TurnRow{"Z", "ROTATEZ=90", {-2, 1, 3}},
                      TurnRow{"ZThenX", "ROTATEX=90 ROTATEZ=90", {-2, -3, 1}},
                      TurnRow{"ZThenY", "ROTATEY=90 ROTATEZ=90", {3, 1, 2}},
                      TurnRow{"YThenX", "ROTATEX=90 ROTATEY=90", {3, 1, 2}},
                      TurnRow{"All", "ROTATEX=90 ROTATEY=90 ROTATEZ=90", {3, -2, 1}},
                      TurnRow{"Back", "ROTATEZ=-90", {2, -1, 3}}),
    [](const auto& row) { return std::string(row.param.rule); });

/// A turn about one axis as a function of its own, so that the two inverses can be told apart.
Point AboutX(const Point& p, double degrees) {
  const double a = degrees * std::acos(-1.0) / 180;
  return {p.x, std::cos(a) * p.y - std::sin(a) * p.z, std::sin(a) * p.y + std::cos(a) * p.z};
}
Point AboutY(const Point& p, double degrees) {
  const double a = degrees * std::acos(-1.0) / 180;
  return {std::cos(a) * p.x + std::sin(a) * p.z, p.y, -std::sin(a) * p.x + std::cos(a) * p.z};
}
bool IsInUnitBox(const Point& p) {
  const auto isWithin = [](double value) { return value >= 0 && value <= 1; };
  return isWithin(p.x) && isWithin(p.y) && isWithin(p.z);
}

TEST_F(ClippingCube, TwoAnglesAreTurnedBackInTheOrderOfTheTurn) {
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1 "
                   "ROTATEX=30 ROTATEY=40"));
  int differences = 0;
  for (double x = -0.93; x < 1.5; x += 0.11) {
    for (double y = -0.95; y < 1.5; y += 0.13) {
      for (double z = -0.97; z < 1.5; z += 0.17) {
        const Point p{x, y, z};
        const bool expected = IsInUnitBox(AboutX(AboutY(p, -40), -30));
        EXPECT_EQ(cube.IsInside(x, y, z), expected) << x << " " << y << " " << z;
        if (expected != IsInUnitBox(AboutY(AboutX(p, -30), -40))) ++differences;
      }
    }
  }
  EXPECT_GT(differences, 0) << "the exact inverse would have answered alike";
}

// Making the zone ------------------------------------------------------------------------------

TEST_F(ClippingCube, NewBoxIsPlacedInTheMiddleOfTheData) {
  ASSERT_TRUE(cube.Create());
  const double h = 0.6 * std::sqrt(29.0);  // half the diagonal of 2.4, 3.6, 4.8
  ExpectNodes(NodesOf(2),
              BoxNodes(1 - h / 2, 1.5 - 0.75 * h, 2 - h, 1 + h / 2, 1.5 + 0.75 * h, 2 + h));
  EXPECT_THAT(cube.m_step, DoubleEq(0.04 * h));
}

TEST_F(ClippingCube, NewBoxIsNeverThinnerThanATenthOfTheData) {
  host.ActiveFrame().view.magnification = 40;
  ASSERT_TRUE(cube.Create());
  ExpectNodes(NodesOf(2), BoxNodes(1 - 0.48, 1.5 - 0.48, 2 - 0.48, 1.48, 1.98, 2.48));
}

TEST_F(ClippingCube, BoxBesideTheDataIsPlacedAnew) {
  ASSERT_TRUE(Take(cube, "PICKCUBE ANCHORX=50 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1"));
  ASSERT_TRUE(cube.Create());
  EXPECT_LT(NodesOf(2).at(0).x, 1.0);
}

TEST_F(ClippingCube, BoxAboveTheDataStays) {
  ASSERT_TRUE(Take(cube, "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=90 SIZEX=1 SIZEY=1 SIZEZ=1"));
  ASSERT_TRUE(cube.Create());
  ExpectNodes(NodesOf(2), BoxNodes(0, 0, 90, 1, 1, 91));
}

TEST_F(ClippingCube, BoxPlacedAnewLosesItsAnglesButIsTurnedAsBefore) {
  // A half turn about z at (50, 50): (x, y) goes to (100 - x, 100 - y).
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ANCHORX=50 ANCHORY=50 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1 "
                   "ROTATEZ=180"));
  ASSERT_TRUE(cube.Create());
  EXPECT_THAT(cube.m_shape[5], 0.0);
  const double h = 0.6 * std::sqrt(29.0);
  std::vector<Point> expected =
      BoxNodes(1 - h / 2, 1.5 - 0.75 * h, 2 - h, 1 + h / 2, 1.5 + 0.75 * h, 2 + h);
  for (Point& node : expected) node = {100 - node.x, 100 - node.y, node.z};
  ExpectNodes(NodesOf(2), expected);
}

TEST_F(ClippingCube, ZoneIsMadeStepByStep) {
  host.isRecording = true;
  StartLog();
  ASSERT_TRUE(cube.Create());
  const std::string id = std::to_string(host.ActiveFrame().id);
  EXPECT_THAT(
      CallsOf({"QelUtilFrameActivateByUniqueID", "QelUtilVarGetMinMax",
               "QelUtilViewGetMagnification", "QelUtilDataSetGetNumZones", "QelUtilDataSetAddZone",
               "QelUtilStateChanged", "QelUtilDataNodeGetWritableRef",
               "QelUtilDataValueGetWritableNativeRef", "QelUtilStateChangedX", "QelUtilRedraw",
               "QelUtilZoneSetStrandID", "QelUtilZoneSetActive"}),
      ElementsAre("FrameActivateByUniqueID(" + id + ")", "VarGetMinMax(1)", "VarGetMinMax(2)",
                  "VarGetMinMax(3)", "ViewGetMagnification()", "DataSetGetNumZones()",
                  "DataSetAddZone(\"PICKING_CUBE\", 8, 1, 1, 4)", "StateChanged(3)",
                  "DataNodeGetWritableRef(2)", "StateChanged(5)",
                  "DataValueGetWritableNativeRef(2, 1)", "DataValueGetWritableNativeRef(2, 2)",
                  "DataValueGetWritableNativeRef(2, 3)", "StateChangedX(handle)", "Redraw(true)",
                  "ZoneSetStrandID(2, 0)", "ZoneSetActive(handle, 1)"));
  const fakehost::Zone& zone = *host.ZoneAt(2);
  EXPECT_EQ(zone.name, "PICKING_CUBE");
  EXPECT_EQ(zone.strand, 0);
  EXPECT_THAT(zone.mesh.Corners(1), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
  EXPECT_EQ(cube.m_frameId, host.ActiveFrame().id);
}

/// The notices of one kind, as text.
std::vector<std::string> NoticesOf(const std::vector<StateChangeNotice>& notices,
                                   QelStateChange_t change) {
  std::vector<std::string> texts;
  for (const StateChangeNotice& notice : notices) {
    if (notice.change != change) continue;
    std::string text = "zones";
    for (const SetIndex_t zone : notice.zones) text += " " + std::to_string(zone);
    text += " vars";
    for (const SetIndex_t var : notice.vars) text += " " + std::to_string(var);
    texts.push_back(text);
  }
  return texts;
}

TEST_F(ClippingCube, EverybodyHearsOfTheZone) {
  ASSERT_TRUE(cube.Create());
  EXPECT_THAT(NoticesOf(host.notices, StateChange_ZonesAdded), ElementsAre("zones 2 vars"));
  EXPECT_THAT(NoticesOf(host.notices, StateChange_NodeMapsAltered), ElementsAre("zones 2 vars"));
  EXPECT_THAT(NoticesOf(host.notices, StateChange_VarsAltered), ElementsAre("zones 2 vars 1 2 3"));
}

TEST_F(ClippingCube, CornersAreWrittenToTheAxesOfTheFrame) {
  host.ActiveFrame().axisVars = {3, 1, 2};
  ASSERT_TRUE(Take(cube, kUpright));
  ASSERT_TRUE(cube.Create());
  EXPECT_EQ(host.ValuesOf(2, 3).at(6), 1.5) << "x";
  EXPECT_EQ(host.ValuesOf(2, 1).at(6), 2.25) << "y";
  EXPECT_EQ(host.ValuesOf(2, 2).at(6), 3.5) << "z";
}

TEST_F(ClippingCube, ThereIsOneZoneHoweverOftenItIsMade) {
  ASSERT_TRUE(cube.Create());
  ASSERT_TRUE(cube.Create());
  EXPECT_EQ(host.ActiveData()->zones.size(), 2u);
  EXPECT_EQ(cube.GetZoneNum(), 2);
}

TEST_F(ClippingCube, NoZoneIsMadeInAPlotThatIsNot3D) {
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  EXPECT_FALSE(cube.Create());
  EXPECT_EQ(host.ActiveData()->zones.size(), 1u);
  EXPECT_EQ(cube.m_frameId, 0);
}

TEST_F(ClippingCube, OldZoneGoesAlsoWhereNoneCanBeMade) {
  ASSERT_TRUE(cube.Create());
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  EXPECT_FALSE(cube.Create());
  EXPECT_EQ(host.ActiveData()->zones.size(), 1u);
}

// Updates --------------------------------------------------------------------------------------

TEST_F(ClippingCube, SeveralUpdatesRewriteTheZoneOnceWhenTheHostIsIdle) {
  ASSERT_TRUE(Take(cube, kUpright));
  ASSERT_TRUE(cube.Create());
  double value = 0.0;
  cube.m_step = 0.5;
  cube.Nudge(0, true, value);
  cube.Nudge(3, true, value);
  cube.Nudge(5, false, value);
  ExpectNodes(NodesOf(2), BoxNodes(0.5, 1, 1.5, 1.5, 2.25, 3.5));
  EXPECT_EQ(host.idleQueue.size(), 1u);
  host.notices.clear();
  host.RunIdleQueue();
  ExpectNodes(NodesOf(2), BoxNodes(1, 1, 1.5, 2.5, 2.25, 3));
  EXPECT_THAT(NoticesOf(host.notices, StateChange_VarsAltered), ElementsAre("zones 2 vars 1 2 3"));
  EXPECT_THAT(NoticesOf(host.notices, StateChange_ZonesAdded), IsEmpty())
      << "rewritten, not made anew";
  EXPECT_EQ(cube.BoundingBox().max.x, 2.5);
  cube.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the next change is queued again";
}

TEST_F(ClippingCube, RewriteDrawsThePlotOnlyWhileRecording) {
  ASSERT_TRUE(cube.Create());
  cube.Update();
  host.RunIdleQueue();
  EXPECT_EQ(host.redrawCount, 0);
  host.isRecording = true;
  cube.Update();
  host.RunIdleQueue();
  EXPECT_EQ(host.redrawCount, 1);
}

TEST_F(ClippingCube, ZoneIsFoundByItsNameAfterRenumbering) {
  ASSERT_TRUE(sphere.Create());
  ASSERT_TRUE(Take(cube, kUpright));
  ASSERT_TRUE(cube.Create());
  ASSERT_EQ(cube.GetZoneNum(), 3);
  double value = 0.0;
  cube.m_step = 0.5;
  cube.Nudge(0, true, value);
  sphere.DeleteZone();
  ASSERT_EQ(cube.GetZoneNum(), 2);
  host.RunIdleQueue();
  ExpectNodes(NodesOf(2), BoxNodes(1, 1, 1.5, 2, 2.25, 3.5));
}

TEST_F(ClippingCube, UpdateIsNotQueuedInAPlotThatIsNot3D) {
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  cube.Update();
  EXPECT_THAT(host.idleQueue, IsEmpty());
}

TEST_F(ClippingCube, OneRewriteIsQueuedForAllBoxesAndAnotherForSpheres) {
  Cube other{[] { return true; }};
  cube.Update();
  other.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u);
  sphere.Update();
  EXPECT_EQ(host.idleQueue.size(), 2u);
}

TEST_F(ClippingCube, RewriteOfABoxThatIsNotInUseDoesNothing) {
  ASSERT_TRUE(Take(cube, kUpright));
  ASSERT_TRUE(cube.Create());
  double value = 0.0;
  cube.Nudge(0, true, value);
  isInUse = false;
  host.notices.clear();
  host.RunIdleQueue();
  ExpectNodes(NodesOf(2), BoxNodes(0.5, 1, 1.5, 1.5, 2.25, 3.5));
  EXPECT_THAT(host.notices, IsEmpty());
  isInUse = true;
  cube.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the flag was cleared";
}

TEST_F(ClippingCube, RewriteOfABoxThatIsGoneDoesNothing) {
  auto gone = std::make_unique<Cube>([] { return true; });
  ASSERT_TRUE(gone->Create());
  gone->Update();
  gone.reset();
  host.notices.clear();
  host.RunIdleQueue();
  EXPECT_THAT(host.notices, IsEmpty());
  cube.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the flag was cleared";
}

TEST_F(ClippingCube, RewriteOfAZoneThatTheUserDeletedDoesNothing) {
  ASSERT_TRUE(cube.Create());
  cube.Update();
  host.ActiveData()->zones.pop_back();
  host.RunIdleQueue();
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(ClippingCube, ErrorOfARewriteEndsInTheErrorBox) {
  ASSERT_TRUE(cube.Create());
  cube.Update();
  host.FailCall("QelUtilDataValueGetWritableNativeRef", 1);
  host.RunIdleQueue();
  EXPECT_THAT(host.errorBoxes,
              ElementsAre("An error occured in the Marquell add-on. Please try again."));
  cube.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the flag was cleared";
}

// Internal errors ------------------------------------------------------------------------------

struct CallRow {
  const char* name;
  const char* function;
  int nth;
  const char* call;
};

void PrintTo(const CallRow& row, std::ostream* out) { *out << row.name; }

class CubeError : public Boundary3dTest, public ::testing::WithParamInterface<CallRow> {};

TEST_P(CubeError, NamesTheCallAndLeavesNoLock) {
  host.FailCall(GetParam().function, GetParam().nth);
  EXPECT_THAT(ErrorOf([this] { cube.Create(); }),
              MatchesRegex(AssertText(GetParam().call, "ClippingCube")));
  EXPECT_EQ(host.LockDepth(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, CubeError,
    ::testing::Values(
        CallRow{"AddZone", "QelUtilDataSetAddZone", 1,
                "QelUtilDataSetAddZone(CUBEZONENAME, iMax, 1, 1, ZoneType_FEBrick, NULL)"},
        CallRow{"NewZoneSet", "QelUtilSetAlloc", 1, "zoneSet = QelUtilSetAlloc(FALSE)"},
        CallRow{"NewZoneMember", "QelUtilSetAddMember", 1,
                "QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE)"},
        CallRow{"NodeMap", "QelUtilDataNodeGetWritableRef", 1,
                "nodeMap = QelUtilDataNodeGetWritableRef(zoneNum)"},
        CallRow{"FieldX", "QelUtilDataValueGetWritableNativeRef", 1,
                "fieldPtrX = QelUtilDataValueGetWritableNativeRef(zoneNum, m_xVar)"},
        CallRow{"FieldY", "QelUtilDataValueGetWritableNativeRef", 2,
                "fieldPtrY = QelUtilDataValueGetWritableNativeRef(zoneNum, m_yVar)"},
        CallRow{"FieldZ", "QelUtilDataValueGetWritableNativeRef", 3,
                "fieldPtrZ = QelUtilDataValueGetWritableNativeRef(zoneNum, m_zVar)"},
        CallRow{"ZoneSet", "QelUtilSetAlloc", 2, "zoneSet = QelUtilSetAlloc(FALSE)"},
        CallRow{"ZoneMember", "QelUtilSetAddMember", 2,
                "QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE)"},
        CallRow{"VariableSet", "QelUtilSetAlloc", 3, "varSet = QelUtilSetAlloc(FALSE)"},
        CallRow{"VariableX", "QelUtilSetAddMember", 3,
                "QelUtilSetAddMember(varSet, static_cast<SetIndex_t>(m_xVar), FALSE)"},
        CallRow{"VariableY", "QelUtilSetAddMember", 4,
                "QelUtilSetAddMember(varSet, static_cast<SetIndex_t>(m_yVar), FALSE)"},
        CallRow{"VariableZ", "QelUtilSetAddMember", 5,
                "QelUtilSetAddMember(varSet, static_cast<SetIndex_t>(m_zVar), FALSE)"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(ClippingCube, RefusedUpdateIsAnInternalError) {
  // What was queued once is called at the end, so that nothing counts as pending.
  cube.Update();
  const auto queued = host.idleQueue.at(0);
  host.RunIdleQueue();
  host.FailCall("QelUtilOnIdleQueueAddCallback", 1);
  EXPECT_THAT(ErrorOf([this] { cube.Update(); }),
              MatchesRegex(AssertText("QelUtilOnIdleQueueAddCallback(OnIdleUpdateCube, clientData)",
                                      "ClippingCube")));
  EXPECT_EQ(host.LockDepth(), 0);
  queued.first(queued.second);
}

// The command ----------------------------------------------------------------------------------

TEST_F(ClippingCube, CommandGivesEveryNumber) {
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ROTATEZ=9 ROTATEY=8 ROTATEX=7 SIZEZ=6 SIZEY=5 SIZEX=4 "
                   "ANCHORZ=3 ANCHORY=2 ANCHORX=1"));
  EXPECT_THAT(cube.Definition(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9));
  EXPECT_TRUE(cube.IsGeometryValid());
}

TEST_F(ClippingCube, CommandWithoutAnglesGivesAnUprightBox) {
  ASSERT_TRUE(Take(cube, kTurned));
  ASSERT_TRUE(Take(cube, kUpright));
  EXPECT_THAT(cube.Definition(), ElementsAre(0.5, 1, 1.5, 1, 1.25, 2, 0, 0, 0));
  EXPECT_TRUE(cube.IsInside(0.5, 1, 1.5)) << "nothing is turned any more";
}

TEST_F(ClippingCube, CommandDoesNotTouchTheZone) {
  ASSERT_TRUE(cube.Create());
  const std::vector<Point> before = NodesOf(2);
  host.notices.clear();
  ASSERT_TRUE(Take(cube, kUpright));
  ExpectNodes(NodesOf(2), before);
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_THAT(host.idleQueue, IsEmpty());
}

struct FaultRow {
  const char* rule;
  const char* line;
  const char* message;
};

class CubeFault : public Boundary3dTest, public ::testing::WithParamInterface<FaultRow> {};

TEST_P(CubeFault, IsReportedAndLeavesTheBoxAsItWas) {
  ASSERT_TRUE(Take(cube, kUpright));
  const auto before = cube.Definition();
  EXPECT_FALSE(Take(cube, GetParam().line));
  EXPECT_EQ(MacroEngine.GlobalError(), GetParam().message);
  EXPECT_EQ(cube.Definition(), before);
}

constexpr char kMissing[] = "Missing parameter in PICKCUBE macro";
constexpr char kBad[] = "Bad value for parameter in PICKCUBE macro";

INSTANTIATE_TEST_SUITE_P(
    Rules, CubeFault,
    ::testing::Values(
        FaultRow{"NoSizeX", "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEY=1 SIZEZ=1", kMissing},
        FaultRow{"NoSizeY", "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEZ=1", kMissing},
        FaultRow{"NoSizeZ", "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1", kMissing},
        FaultRow{"NoAnchorX", "PICKCUBE ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1", kMissing},
        FaultRow{"NoAnchorY", "PICKCUBE ANCHORX=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1", kMissing},
        FaultRow{"NoAnchorZ", "PICKCUBE ANCHORX=0 ANCHORY=0 SIZEX=1 SIZEY=1 SIZEZ=1", kMissing},
        FaultRow{"Nothing", "PICKCUBE", kMissing},
        FaultRow{"OtherAttribute", "PICKCUBE RADIUS=1", kBad},
        FaultRow{"OtherAttributeAtTheEnd",
                 "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1 ZONE=1", kBad},
        FaultRow{"StringForANumber", "PICKCUBE ANCHORX=\"1\"", kBad},
        FaultRow{"KeywordForANumber", "PICKCUBE SIZEX=SPHERE", kBad},
        FaultRow{"StringForAnAngle", "PICKCUBE ROTATEZ=\"90\"", kBad}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(ClippingCube, IsRecordedAsItsCommand) {
  host.isRecording = true;
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=1e20 SIZEX=-1.25 SIZEY=2 SIZEZ=3 "
                   "ROTATEY=-40"));
  const HostLock lock;
  MacroEngine.AddStringAttribute(qelvane::qelutiltools::Attribute_Variable, "left from before");
  cube.RecordAsMacro();
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKCUBE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=1e+20 SIZEX=-1.25 "
                          "SIZEY=2 SIZEZ=3 ROTATEX=0 ROTATEY=-40 ROTATEZ=0"));
}

TEST_F(ClippingCube, RecordedLineMakesTheSameBox) {
  host.isRecording = true;
  ASSERT_TRUE(Take(cube,
                   "PICKCUBE ANCHORX=-0.125 ANCHORY=12.5 ANCHORZ=-3 SIZEX=-1.5 SIZEY=0 "
                   "SIZEZ=1e-3 ROTATEX=30 ROTATEY=-40.5 ROTATEZ=359"));
  {
    const HostLock lock;
    cube.RecordAsMacro();
  }
  Cube played{[] { return true; }};
  const std::string line = host.recordedLines.at(0).substr(std::string("Marquell ").size());
  ASSERT_TRUE(Take(played, line)) << line;
  EXPECT_EQ(played.Definition(), cube.Definition());
}

TEST_F(ClippingCube, IsNotRecordedWhileTheHostDoesNotRecord) {
  const HostLock lock;
  cube.RecordAsMacro();
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

}  // namespace
