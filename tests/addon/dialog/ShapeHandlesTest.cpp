// The box and the sphere that the user can drag in the plot: when the host is told of them.
#include "HandlesTest.h"

namespace {

using fakehost::HandlesTest;
using fakehost::kGeneralError;
using fakehost::MakeLattice;
using fakehost::Service;
using qelvane::qelutiltools::ControlIds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Handles : public HandlesTest {};

// When a shape is shown --------------------------------------------------------------------------

TEST_F(Handles, AreShownForABoxWithItsNumbers) {
  EXPECT_THAT(host.shapeCalls, IsEmpty());
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_THAT(host.shapeCalls, SizeIs(1));
  ExpectBoxIsWhatIsKnown();
}

TEST_F(Handles, AreShownForASphereWithItsCentreAndRadius) {
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  ASSERT_THAT(host.shapeCalls, SizeIs(1));
  const auto numbers = Session().Sphere().Definition();
  EXPECT_EQ(host.shapeCalls[0].kind, Shape_Sphere);
  EXPECT_EQ(host.shapeCalls[0].anchor, Part(numbers, 0));
  EXPECT_EQ(host.shapeCalls[0].size, (Numbers{numbers[3], 0.0, 0.0}));
  EXPECT_EQ(host.shapeCalls[0].rotationDeg, kNoTurn);
}

TEST_F(Handles, AreNoBusinessOfAHostThatDoesNotKnowThem) {
  host.Withhold(Service::ShapeHandles);
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "2"));
  EXPECT_THAT(host.idleQueue, SizeIs(1)) << "the zone's own";
  EXPECT_THAT(host.shapeCalls, IsEmpty());
}

TEST_F(Handles, FollowWhatIsTypedAndStepped) {
  ShowBox();
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "2.5"));
  EXPECT_EQ(NewCalls(), 1U);
  ExpectBoxIsWhatIsKnown();
  ASSERT_TRUE(host.StepUp(Ids().rotateYField));
  EXPECT_EQ(NewCalls(), 2U);
  ExpectBoxIsWhatIsKnown();
  ASSERT_TRUE(host.StepDown(Ids().anchorZField));
  EXPECT_EQ(NewCalls(), 3U);
  ExpectBoxIsWhatIsKnown();
}

TEST_F(Handles, HearNothingWhenNothingMoves) {
  ShowBox();
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "abc"));
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "2"));
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "2"));
  host.RunIdleQueue();
  host.Deliver(StateChange_View);
  EXPECT_EQ(NewCalls(), 1U);
}

TEST_F(Handles, StayWhileASpheresZoneIsMadeAnew) {
  ShowSphere();
  ASSERT_TRUE(host.EnterText(Ids().radiusField, "0.5"));
  const std::size_t calls = host.shapeCalls.size();
  host.RunIdleQueue();
  EXPECT_THAT(host.shapeCalls, SizeIs(calls));
  EXPECT_TRUE(host.IsShapeShown());
}

TEST_F(Handles, AreNotShownInAFlatPlot) {
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_THAT(host.shapeCalls, IsEmpty());
}

TEST_F(Handles, AreNotShownForShapesThatAreNowhere) {
  ShowBox();
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "nan"));
  EXPECT_FALSE(host.IsShapeShown());
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "1"));
  EXPECT_TRUE(host.IsShapeShown());
}

// When it is taken away --------------------------------------------------------------------------

struct LeavingRow {
  const char* rule;
  void (*leave)(fakehost::FakeHost& host, const ControlIds& ids);
};

class LeavingHandles : public Handles, public ::testing::WithParamInterface<LeavingRow> {};

TEST_P(LeavingHandles, TakesTheShapeAwayOnce) {
  for (const IdOf tool : {&ControlIds::cubeTool, &ControlIds::sphereTool}) {
    if (!host.IsDialogUp()) return;
    ASSERT_TRUE(host.Switch(Ids().*tool, true));
    ASSERT_TRUE(host.IsShapeShown());
    host.shapeCalls.clear();
    host.shapeCalls.push_back({true, Shape_Box, {}, {}, {}});
    GetParam().leave(host, Ids());
    ASSERT_EQ(NewCalls(), 1U);
    EXPECT_FALSE(host.IsShapeShown());
    EXPECT_FALSE(host.DragShape({1, 1, 1}, {1, 1, 1}, kNoTurn));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Moments, LeavingHandles,
    ::testing::Values(
        LeavingRow{"ToolOff",
                   [](fakehost::FakeHost& host, const ControlIds& ids) {
                     host.Switch(host.ZoneNamed("PICKING_CUBE") > 0 ? ids.cubeTool : ids.sphereTool,
                                 false);
                   }},
        LeavingRow{"OtherTool",
                   [](fakehost::FakeHost& host, const ControlIds& ids) {
                     host.Switch(ids.rectangleTool, true);
                   }},
        LeavingRow{"DialogClosed", [](fakehost::FakeHost& host,
                                      const ControlIds& ids) { host.CloseWindow(ids.dialog); }},
        LeavingRow{"DialogsDropped",
                   [](fakehost::FakeHost& host, const ControlIds&) {
                     host.Deliver(StateChange_DropDialogs);
                   }},
        LeavingRow{"LinePlayed",
                   [](fakehost::FakeHost& host, const ControlIds&) { host.Play("VIEWXY"); }},
        LeavingRow{"Launched", [](fakehost::FakeHost& host,
                                  const ControlIds&) { host.ChooseMenu("Marquell ..."); }},
        LeavingRow{"ZoneDeleted",
                   [](fakehost::FakeHost& host, const ControlIds&) {
                     host.ActiveData()->zones.pop_back();
                     host.Deliver(StateChange_ZonesDeleted);
                   }},
        LeavingRow{"GeometryDrawn",
                   [](fakehost::FakeHost& host, const ControlIds&) {
                     fakehost::Geometry geometry;
                     geometry.width = geometry.height = 1.0;
                     host.DrawGeometry(geometry);
                   }},
        LeavingRow{"MouseMode", [](fakehost::FakeHost& host,
                                   const ControlIds&) { host.ChooseMouseMode(Mouse_GeomCircle); }},
        LeavingRow{"OtherPlot",
                   [](fakehost::FakeHost& host, const ControlIds&) {
                     host.ActiveFrame().plotType = PlotType_Line;
                     host.Deliver(StateChange_Style, {"PLOTTYPE"});
                   }},
        LeavingRow{"AllClosed",
                   [](fakehost::FakeHost& host, const ControlIds&) { host.CloseAll(); }},
        LeavingRow{"NewLayout", [](fakehost::FakeHost& host,
                                   const ControlIds&) { host.Deliver(StateChange_NewLayout); }}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Handles, GoAtOnceWithTheirFrame) {
  ShowBox();
  host.AddFrame(PlotType_Cartesian3D);
  host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
  host.activeFrame = 0;
  host.SwitchFrame(1);
  EXPECT_FALSE(host.IsShapeShown());
  host.RunIdleQueue();
  EXPECT_FALSE(host.IsShapeShown());
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_TRUE(host.IsShapeShown());
}

TEST_F(Handles, OfOneToolGiveWayToTheOther) {
  ShowBox();
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  ASSERT_EQ(NewCalls(), 2U);
  EXPECT_FALSE(host.shapeCalls[1].isShow);
  EXPECT_TRUE(host.shapeCalls[2].isShow);
  EXPECT_EQ(host.shapeCalls[2].kind, Shape_Sphere);
}

TEST_F(Handles, GoWithAToolThatCouldNotBeLeftInOrder) {
  ShowBox();
  host.FailCall("QelUtilMouseSetMode", 1);
  ASSERT_TRUE(host.Switch(Ids().cubeTool, false));
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  EXPECT_FALSE(host.IsShapeShown());
}

TEST_F(Handles, ComeBackWithASphereThatIsMadeAnew) {
  ShowSphere();
  DeleteShapesZone();
  ASSERT_FALSE(host.IsShapeShown());
  ASSERT_TRUE(host.EnterText(Ids().radiusField, "0.5"));
  EXPECT_FALSE(host.IsShapeShown());
  host.RunIdleQueue();
  ASSERT_GT(host.ZoneNamed("PICKING_SPHERE"), 0);
  EXPECT_TRUE(host.IsShapeShown());
  EXPECT_EQ(host.shapeCalls.back().size[0], 0.5);
}

TEST_F(Handles, AreLookedForNoLongerThanUntilTheHostIsIdle) {
  ShowBox();
  DeleteShapesZone();
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "2"));
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "3"));
  EXPECT_THAT(host.idleQueue, SizeIs(2)) << "the zone's own and the look for it, each once";
  host.RunIdleQueue();
  EXPECT_FALSE(host.IsShapeShown()) << "a box's zone is not made anew";
  EXPECT_THAT(host.idleQueue, IsEmpty());
}

}  // namespace
