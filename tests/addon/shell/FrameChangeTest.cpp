// Following the user to another frame, when the host is idle.
#include "TrackingTest.h"

namespace {

using fakehost::kGeneralError;
using fakehost::TrackingTest;
using qelvane::qelutiltools::DialogSession;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class FrameChange : public TrackingTest {};

TEST_F(FrameChange, BindsToANewFrameWhenTheHostIsIdle) {
  ChooseAlteration("*3");
  Selvane* const first = DialogSession();
  AddBlock(PlotType_Cartesian3D);
  AddSilently("more");
  host.Deliver(StateChange_NewActiveFrame);
  ASSERT_THAT(host.idleQueue, SizeIs(1));
  EXPECT_EQ(host.idleQueue[0].second, 0);
  EXPECT_EQ(DialogSession(), first) << "too early";
  host.RunIdleQueue();
  EXPECT_NE(DialogSession(), first);
  EXPECT_EQ(TextOf(Ids().modifierField), "+0");
  EXPECT_THAT(Items(), ElementsAre("X", "Y", "Z", "n", "c", "more"));
  EXPECT_TRUE(host.IsDialogUp());
}

TEST_F(FrameChange, ClosesAtANewFrameWhereNothingCanBePicked) {
  ASSERT_TRUE(host.Switch(Ids().circleTool, true));
  Selvane& session = Session();
  host.AddFrame(PlotType_Sketch);
  host.Deliver(StateChange_NewActiveFrame);
  EXPECT_TRUE(host.IsDialogUp()) << "too early";
  host.RunIdleQueue();
  EXPECT_FALSE(host.IsDialogUp());
  EXPECT_EQ(session.Kind(), PickKind::None);
  EXPECT_EQ(host.mouseMode, Mouse_Select);
}

TEST_F(FrameChange, QueuesOneBindingForManyFrames) {
  for (int notice = 0; notice < 10; ++notice) host.Deliver(StateChange_NewActiveFrame);
  NotifyOwn(StateChange_NewActiveFrame);
  EXPECT_THAT(host.idleQueue, SizeIs(1));
  host.RunIdleQueue();
  // The add-on's own frame changes count as well.
  NotifyOwn(StateChange_NewActiveFrame);
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

TEST_F(FrameChange, BindsNothingOnceTheDialogIsDown) {
  Selvane* const first = DialogSession();
  AddBlock(PlotType_Cartesian3D);
  host.Deliver(StateChange_NewActiveFrame);
  DropDialog();
  host.RunIdleQueue();
  EXPECT_EQ(DialogSession(), first);
  EXPECT_EQ(Found(), nullptr) << "a session was made";
  host.Deliver(StateChange_NewActiveFrame);
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

TEST_F(FrameChange, QueuesTheBindingAgainAfterAnError) {
  host.Deliver(StateChange_NewActiveFrame);
  host.FailCall("QelUtilVarGetName", 1);
  host.RunIdleQueue();
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  host.Deliver(StateChange_NewActiveFrame);
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

TEST_F(FrameChange, QueuesFramesAndVariablesBesideEachOther) {
  host.Deliver(StateChange_NewActiveFrame);
  host.Deliver(StateChange_VarsAdded);
  EXPECT_THAT(host.idleQueue, SizeIs(2));
}

TEST_F(FrameChange, TakesBoxAndUndoFromASessionThatIsLeft) {
  ChooseAlteration("+5");
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_TRUE(host.Choose(Ids().anyAllMenu, 1));
  ASSERT_TRUE(host.Press(Ids().applyButton));
  Selvane& left = Session();
  ASSERT_TRUE(left.IsUndoAvailable());
  AddBlock(PlotType_Cartesian3D);
  host.Deliver(StateChange_NewActiveFrame);
  host.RunIdleQueue();
  EXPECT_FALSE(left.IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
  host.ActivateFrame(0);
  EXPECT_EQ(host.ZoneNamed("PICKING_CUBE"), 0);
}

}  // namespace
