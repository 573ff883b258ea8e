// The zone that shows the box: how it is made, brought up to date, and what may fail on the way.
#include "CubeTest.h"

#include <cmath>
#include <memory>

namespace {

using fakehost::AssertText;
using fakehost::Boundary3dTest;
using fakehost::BoxNodes;
using fakehost::ClippingCube;
using fakehost::Cube;
using fakehost::ErrorOf;
using fakehost::ExpectNodes;
using fakehost::kUpright;
using fakehost::Point;
using fakehost::StateChangeNotice;
using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

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

}  // namespace
