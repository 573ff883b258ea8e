// The zone that shows the boundary of a pick: when it comes and goes, its updates, and two data
// sets.
#include "Boundary3dPick.h"

namespace {

using fakehost::Boundary3dPick;
using fakehost::kAdd5;
using fakehost::kCubeRow;
using fakehost::kSphereRow;
using fakehost::kWideRectangle;
using fakehost::MakeLattice;
using qelvane::qelutiltools::PickKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The zone -------------------------------------------------------------------------------------

TEST_P(Boundary3dPick, LineChoosesTheKindAndShowsTheZone) {
  host.mouseMode = Mouse_Zoom;
  PlayWell(GetParam().line);
  EXPECT_EQ(Session().Kind(), GetParam().kind);
  EXPECT_EQ(BoundaryZone(), 2);
  EXPECT_EQ(ZoneCount(), 2u);
  EXPECT_EQ(host.mouseMode, Mouse_Select);
}

TEST_P(Boundary3dPick, LineAgainMakesNoSecondZone) {
  PlayWell(GetParam().line);
  PlayWell(GetParam().line);
  PlayWell(GetParam().elsewhere);
  EXPECT_EQ(BoundaryZone(), 2);
  EXPECT_EQ(ZoneCount(), 2u);
}

TEST_P(Boundary3dPick, OtherKindsRemoveTheZone) {
  for (const char* const line : {kWideRectangle, "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1",
                                 "PICKPOLYGON CORNERS=\"0,0,4,0,0,4\""}) {
    PlayWell(GetParam().line);
    ASSERT_EQ(ZoneCount(), 2u);
    PlayWell(line);
    EXPECT_EQ(ZoneCount(), 1u) << line;
  }
  for (const PickKind kind : {PickKind::None, PickKind::Element}) {
    PlayWell(GetParam().line);
    EXPECT_TRUE(Session().SetPickKind(kind, true));
    EXPECT_EQ(ZoneCount(), 1u);
  }
  PlayWell(GetParam().line);
  EXPECT_TRUE(Session().SetPickKind(GetParam().kind, false));
  EXPECT_EQ(ZoneCount(), 1u) << "switched off";
  EXPECT_EQ(Session().Kind(), PickKind::None);
}

TEST_P(Boundary3dPick, OtherBoundaryTakesTheZonesPlace) {
  PlayWell(GetParam().line);
  PlayWell(GetParam().otherLine);
  EXPECT_EQ(BoundaryZone(), 0);
  EXPECT_EQ(ZoneCount(), 2u);
}

TEST_P(Boundary3dPick, UsersChoiceShowsABoundaryInTheMiddleOfTheData) {
  EXPECT_TRUE(Session().SetPickKind(GetParam().kind, true));
  EXPECT_EQ(BoundaryZone(), 2);
  const qelvane::qelutiltools::Box3d& box = Boundary().BoundingBox();
  EXPECT_DOUBLE_EQ(0.5 * (box.min.x + box.max.x), 2.0);
  EXPECT_DOUBLE_EQ(0.5 * (box.min.y + box.max.y), 0.5);
  EXPECT_DOUBLE_EQ(0.5 * (box.min.z + box.max.z), 0.5);
}

TEST_P(Boundary3dPick, ZoneIsRemovedWhereItWasMadeWhenAnotherFrameShowsTheData) {
  PlayWell(GetParam().line);
  host.AddFrame(PlotType_Cartesian3D);
  host.frames[1].dataSet = host.frames[0].dataSet;
  PlayWell(GetParam().otherLine);
  EXPECT_EQ(ZoneCount(), 2u);
  EXPECT_EQ(BoundaryZone(), 0);
  EXPECT_EQ(host.activeFrame, 1u);
}

TEST_P(Boundary3dPick, LineInA2DPlotSucceedsWithoutAZone) {
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  PlayWell(GetParam().line);
  EXPECT_EQ(Session().Kind(), GetParam().kind);
  EXPECT_EQ(ZoneCount(), 1u);
  EXPECT_FALSE(Session().SetPickKind(GetParam().kind, true)) << "the user is told";
}

TEST_P(Boundary3dPick, FailedLineKeepsTheKindAndTheZone) {
  PlayWell(GetParam().otherLine);
  const PickKind before = Session().Kind();
  PlayBadly(std::string(GetParam().line) + " ZONE=1");
  EXPECT_EQ(Session().Kind(), before);
  EXPECT_EQ(ZoneCount(), 2u);
  EXPECT_EQ(BoundaryZone(), 0);
}

// Idle updates ---------------------------------------------------------------------------------

TEST_P(Boundary3dPick, UpdateIsDroppedWhenAnotherKindWasChosenMeanwhile) {
  PlayWell(GetParam().line);
  Boundary().Update();
  ASSERT_EQ(host.idleQueue.size(), 1u);
  PlayWell(kWideRectangle);
  host.RunIdleQueue();
  EXPECT_EQ(ZoneCount(), 1u);
  PlayWell(GetParam().line);
  Boundary().Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the next one is queued";
}

TEST_P(Boundary3dPick, UpdateIsDroppedWhenItsSessionIsGone) {
  PlayWell(GetParam().line);
  Boundary().Update();
  host.Deliver(StateChange_NewLayout);
  host.notices.clear();
  host.RunIdleQueue();
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  PlayWell(GetParam().line);
  Boundary().Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the next one is queued";
}

// Two data sets --------------------------------------------------------------------------------

class BoundaryOfTwoDataSets : public Boundary3dPick {
 protected:
  /// The boundary's zone in the first data set; the second one's frame is there but not active.
  void SetUp() override {
    Boundary3dPick::SetUp();
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(MakeLattice(ZoneType_FEBrick, 2, 1, 1));
    host.ActivateFrame(0);
    PlayWell(GetParam().line);
    ASSERT_EQ(ZoneCount(0), 2u);
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, BoundaryOfTwoDataSets, ::testing::Values(kCubeRow, kSphereRow),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(BoundaryOfTwoDataSets, ZoneGoesWhenTheOtherSessionBecomesCurrent) {
  host.SwitchFrame(1);
  PlayWell("VIEWXY");
  EXPECT_EQ(ZoneCount(0), 1u);
  EXPECT_EQ(ZoneCount(1), 1u);
  EXPECT_EQ(host.activeFrame, 1u) << "the user's frame stays the active one";
}

TEST_P(BoundaryOfTwoDataSets, ChoiceOfTheFirstStaysWithoutItsZone) {
  host.SwitchFrame(1);
  PlayWell("VIEWXY");
  host.SwitchFrame(0);
  PlayWell(kAdd5);
  EXPECT_EQ(Session().Kind(), GetParam().kind);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20, 30, 40));
  EXPECT_EQ(ZoneCount(0), 1u);
}

TEST_P(BoundaryOfTwoDataSets, UndoOfTheFirstIsGone) {
  PlayWell(kAdd5);
  host.SwitchFrame(1);
  PlayWell("VIEWXY");
  host.SwitchFrame(0);
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
}

TEST_P(BoundaryOfTwoDataSets, EachKeepsABoundaryOfItsOwn) {
  host.SwitchFrame(1);
  PlayWell(GetParam().elsewhere);
  EXPECT_EQ(ZoneCount(0), 1u);
  EXPECT_EQ(ZoneCount(1), 2u);
  const auto second = Boundary().Definition();
  host.SwitchFrame(0);
  EXPECT_NE(Boundary().Definition(), second);
  EXPECT_EQ(ZoneCount(1), 1u);
}

TEST_P(BoundaryOfTwoDataSets, UpdateIsDroppedWhenTheOtherSessionIsCurrent) {
  Boundary().Update();
  host.SwitchFrame(1);
  PlayWell(GetParam().elsewhere);
  const QelUniqueID_t shown = host.ZoneAt(2)->id;
  host.notices.clear();
  host.RunIdleQueue();
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_EQ(host.ZoneAt(2)->id, shown);
  Boundary().Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the next one is queued";
}

TEST_P(BoundaryOfTwoDataSets, UpdateIsDroppedWhileTheOtherFrameIsActive) {
  Boundary().Update();
  host.SwitchFrame(1);
  host.notices.clear();
  host.RunIdleQueue();
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_EQ(ZoneCount(0), 2u);
  EXPECT_EQ(ZoneCount(1), 1u);
}

TEST_P(BoundaryOfTwoDataSets, UpdateIsDroppedUntilTheSessionIsCurrentAgain) {
  Boundary().Update();
  host.SwitchFrame(1);
  PlayWell("VIEWXY");
  host.SwitchFrame(0);
  host.RunIdleQueue();
  EXPECT_EQ(ZoneCount(0), 1u) << "nothing has asked for the first session since";
}

TEST_P(BoundaryOfTwoDataSets, SphereMadeAnewWhenIdleIsLeftBehind) {
  Boundary().Update();
  host.RunIdleQueue();
  ASSERT_EQ(ZoneCount(0), 2u);
  host.SwitchFrame(1);
  PlayWell("VIEWXY");
  // A box is rewritten where it is; a sphere made anew belongs to no frame and is not found again
  // from another one.
  EXPECT_EQ(ZoneCount(0), GetParam().kind == PickKind::Sphere ? 2u : 1u);
  EXPECT_EQ(host.activeFrame, 1u);
}

}  // namespace
