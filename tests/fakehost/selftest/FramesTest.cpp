#include "SelfTest.h"

#include <cmath>

namespace {

using fakehost::MakeLattice;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Frames : public fakehost::SelfTest {
 protected:
  Frames() {
    host.AddFrame(PlotType_Cartesian2D);
    host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
    host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
  }
};

TEST_F(Frames, HaveTheirOwnDataSets) {
  const QelUniqueID_t data = QelUtilDataSetGetUniqueID();
  EXPECT_EQ(QelUtilFrameGetCount(), 2);
  EXPECT_EQ(QelUtilDataSetGetNumZones(), 2);
  EXPECT_EQ(QelUtilFrameGetUniqueID(), host.frames[1].id);
  ASSERT_TRUE(QelUtilFrameActivateByUniqueID(host.frames[0].id));
  EXPECT_EQ(QelUtilDataSetGetNumZones(), 1);
  EXPECT_NE(QelUtilDataSetGetUniqueID(), data);
}

TEST_F(Frames, AnnounceThemselvesAndAPlotTypeThatDiffers) {
  ASSERT_TRUE(QelUtilFrameActivateByUniqueID(host.frames[1].id));
  EXPECT_THAT(host.notices, IsEmpty());
  ASSERT_TRUE(QelUtilFrameActivateByUniqueID(host.frames[0].id));
  ASSERT_EQ(host.notices.size(), 2U);
  EXPECT_EQ(host.notices[0].change, StateChange_NewActiveFrame);
  EXPECT_THAT(host.notices[1].styleParams, ElementsAre("PLOTTYPE"));
  host.frames[1].plotType = PlotType_Cartesian2D;
  Notices();
  ASSERT_TRUE(QelUtilFrameActivateByUniqueID(host.frames[1].id));
  EXPECT_THAT(Notices(), ElementsAre(StateChange_NewActiveFrame));
  host.frames[0].dataSet.reset();
  host.SwitchFrame(0);
  EXPECT_THAT(Notices(), ElementsAre(StateChange_NewActiveFrame, StateChange_Style));
  EXPECT_FALSE(QelUtilFrameActivateByUniqueID(0));
}

TEST_F(Frames, KeepReferencesOfTheOthersAlive) {
  const QelFieldData* const ref = QelUtilDataValueGetReadableNLRef(1, 1);
  const QelNodeMap* const nodes = QelUtilDataNodeGetReadableRef(1);
  QelUtilFrameActivateByUniqueID(host.frames[0].id);
  EXPECT_EQ(QelUtilDataValueGetByRef(ref, 2), 1.0);
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 1, 8), 7);
}

TEST_F(Frames, GoWithEverythingElseInANewLayout) {
  host.CloseAll();
  EXPECT_THAT(Notices(), ElementsAre(StateChange_NewLayout, StateChange_FrameDeleted));
  EXPECT_EQ(QelUtilFrameGetUniqueID(), 0);
  EXPECT_FALSE(QelUtilDataSetIsAvailable());
  EXPECT_EQ(QelUtilFrameGetPlotType(), PlotType_None);
}

TEST_F(Frames, AssignVariablesToTheAxesOfTheirPlot) {
  EXPECT_EQ(QelUtilVarGetNumByAssignment('Z'), 3);
  host.ActiveFrame().axisVars = {2, 3, 1};
  EXPECT_EQ(QelUtilVarGetNumByAssignment('X'), 2);
  QelUtilFrameActivateByUniqueID(host.frames[0].id);
  EXPECT_EQ(QelUtilVarGetNumByAssignment('Y'), 2);
  EXPECT_EQ(QelUtilVarGetNumByAssignment('Z'), 0);
  EXPECT_EQ(QelUtilVarGetNumByAssignment('x'), 0);
}

TEST_F(Frames, PutTheCoordinatesOfNewZonesOnTheirAxes) {
  host.ActiveFrame().axisVars = {2, 3, 1};
  const LgIndex_t zone = host.AddZone(MakeLattice(ZoneType_FELineSeg, 2, 0, 0));
  EXPECT_THAT(host.ValuesOf(zone, 2), ElementsAre(0, 1, 2));
  EXPECT_THAT(host.ValuesOf(zone, 1), ElementsAre(0, 0, 0));
}

TEST_F(Frames, TurnAndMoveTheirView) {
  QelView* before = nullptr;
  ASSERT_TRUE(QelUtilViewGet(&before));
  ASSERT_TRUE(
      QelUtilViewRotate3D(RotateAxis_Psi, 90.0, 0, 0, 0, RotateOriginLocation_DefinedOrigin));
  EXPECT_THAT(host.notices.back().styleParams, ElementsAre("THREEDVIEW"));
  double psi = 0;
  double alpha = 9;
  ASSERT_TRUE(QelUtilThreeDViewGetViewerAngle(&psi, &alpha, nullptr));
  EXPECT_DOUBLE_EQ(psi, std::acos(0.0));
  EXPECT_EQ(alpha, 0.0);
  host.ActiveFrame().view.psi = 0.0;
  host.ActiveFrame().view.magnification = 4.0;
  double magnification = 0;
  ASSERT_TRUE(QelUtilViewGetMagnification(&magnification));
  EXPECT_EQ(magnification, 4.0);
  Notices();
  ASSERT_TRUE(QelUtilViewSet(before));
  EXPECT_THAT(Notices(), ElementsAre(StateChange_View));
  EXPECT_EQ(host.ActiveFrame().view.magnification, 1.0);
  QelUtilViewDealloc(&before);
  EXPECT_EQ(before, nullptr);
  EXPECT_FALSE(QelUtilViewRotate3D(static_cast<QelRotateAxis_e>(3), 1, 0, 0, 0,
                                   RotateOriginLocation_Viewer));
}

TEST_F(Frames, SayWhoHoldsTheLock) {
  char* name = nullptr;
  ASSERT_TRUE(QelUtilLockGetCurrentOwnerName(&name));
  EXPECT_STREQ(name, "Workbench");
  QelUtilStringDealloc(&name);
  QelUtilLockOff();
  EXPECT_FALSE(QelUtilLockGetCurrentOwnerName(&name));
  EXPECT_EQ(name, nullptr);
  QelUtilLockOn();
}

TEST_F(Frames, RunHostCommandsUnderTheHostAndUnrecorded) {
  host.isRecording = true;
  int depth = 0;
  host.onExecute = [&](const std::string&) {
    depth = host.LockDepth();
    return !QelUtilMacroIsRecordingActive();
  };
  EXPECT_TRUE(QelUtilMacroExecuteCommand("$!REDRAW"));
  EXPECT_EQ(depth, host.LockDepth() + 1);
  EXPECT_THAT(host.executedCommands, ElementsAre("$!REDRAW"));
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

int idleRuns = 0;
void CountAndQueueAgain(ArbParam_t clientData) {
  ++idleRuns;
  if (clientData == 1) QelUtilOnIdleQueueAddCallback(CountAndQueueAgain, 0);
}

TEST_F(Frames, RunIdleCallbacksOnceEach) {
  idleRuns = 0;
  ASSERT_TRUE(QelUtilOnIdleQueueAddCallback(CountAndQueueAgain, 1));
  host.RunIdleQueue();
  EXPECT_EQ(idleRuns, 1);
  host.RunIdleQueue();
  host.RunIdleQueue();
  EXPECT_EQ(idleRuns, 2);
  EXPECT_FALSE(QelUtilOnIdleQueueAddCallback(nullptr, 1));
}

TEST_F(Frames, CountOpenBracketsAndWaitMessages) {
  QelUtilPleaseWait("a moment", TRUE);
  QelUtilDataLoadBegin();
  EXPECT_EQ(host.Leaks().size(), 2U);
  QelUtilPleaseWait(nullptr, FALSE);
  QelUtilDataLoadEnd();
  EXPECT_THAT(host.Leaks(), IsEmpty());
  EXPECT_THAT(host.waitHistory, ElementsAre("a moment"));
  QelUtilPleaseWait(nullptr, FALSE);
  QelUtilDataLoadEnd();
  EXPECT_EQ(host.Misuse().size(), 2U);
  host.Reset();
  QelUtilLockOn();
}

}  // namespace
