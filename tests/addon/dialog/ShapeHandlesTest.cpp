// The box and the sphere that the user drags in the plot: when the host is told of them, and what
// dragging does.
#include "DialogTest.h"
#include "HostLock.h"

#include "qelvane/QelUtil.h"

#include <array>
#include <limits>
#include <utility>

namespace {

using fakehost::DialogTest;
using fakehost::kGeneralError;
using fakehost::MakeLattice;
using fakehost::Service;
using fakehost::ShapeCall;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::PickKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using IdOf = LgIndex_t ControlIds::*;
using Numbers = std::array<double, 3>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr Numbers kNoTurn = {0.0, 0.0, 0.0};

class Handles : public DialogTest {
 protected:
  void SetUp() override {
    host.OfferAlso(Service::ShapeHandles);
    DialogTest::SetUp();
    host.isRecording = true;
  }

  void ShowBox() {
    ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
    ASSERT_TRUE(host.IsShapeShown());
    host.shapeCalls.clear();
    host.shapeCalls.push_back({true, Shape_Box, {}, {}, {}});
  }
  void ShowSphere() {
    ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
    ASSERT_TRUE(host.IsShapeShown());
  }
  /// The calls since the shape came to be shown.
  std::size_t NewCalls() const { return host.shapeCalls.size() - 1; }

  static Numbers Part(const std::array<double, 9>& all, std::size_t first) {
    return {all[first], all[first + 1], all[first + 2]};
  }
  void ExpectBoxIsWhatIsKnown() {
    const ShapeCall& call = host.shapeCalls.back();
    const auto numbers = Session().Cube().Definition();
    EXPECT_TRUE(call.isShow);
    EXPECT_EQ(call.kind, Shape_Box);
    EXPECT_EQ(call.anchor, Part(numbers, 0));
    EXPECT_EQ(call.size, Part(numbers, 3));
    EXPECT_EQ(call.rotationDeg, Part(numbers, 6));
  }
  std::vector<std::string> BoxTexts() const {
    std::vector<std::string> texts;
    for (const IdOf field :
         {&ControlIds::anchorXField, &ControlIds::anchorYField, &ControlIds::anchorZField,
          &ControlIds::sizeXField, &ControlIds::sizeYField, &ControlIds::sizeZField,
          &ControlIds::rotateXField, &ControlIds::rotateYField, &ControlIds::rotateZField}) {
      texts.push_back(TextOf(Ids().*field));
    }
    return texts;
  }
  std::vector<double> PointsOf(const char* zone) {
    std::vector<double> all;
    for (LgIndex_t var = 1; var <= 3; ++var) {
      for (const double value : host.ValuesOf(host.ZoneNamed(zone), var)) all.push_back(value);
    }
    return all;
  }
  bool DragBox() { return host.DragShape({0.1, 0.2, 0.3}, {1.0, 1.1, 1.2}, {5.0, 6.0, 7.0}); }
};

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

void DeleteShapesZone(fakehost::FakeHost& host) {
  auto& zones = host.ActiveData()->zones;
  zones.pop_back();
  host.Deliver(StateChange_ZonesDeleted);
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
                   [](fakehost::FakeHost& host, const ControlIds&) { DeleteShapesZone(host); }},
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
  DeleteShapesZone(host);
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
  DeleteShapesZone(host);
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "2"));
  host.RunIdleQueue();
  EXPECT_FALSE(host.IsShapeShown()) << "a box's zone is not made anew";
  EXPECT_THAT(host.idleQueue, IsEmpty());
}

// What dragging does -----------------------------------------------------------------------------

TEST_F(Handles, EnterABoxIntoItsFields) {
  ShowBox();
  ASSERT_TRUE(host.DragShape({0.123456789, -1234567.0, 3e-7}, {1.5, 2.00000049, 1.0 / 3.0},
                             {45.1234567, -10.0, 725.0}));
  EXPECT_THAT(BoxTexts(), ElementsAre("0.123457", "-1.23457e+06", "3e-07", "1.5", "2", "0.333333",
                                      "45.1235", "-10", "725"));
  EXPECT_THAT(Session().Cube().Definition(),
              ElementsAre(0.123457, -1234570.0, 3e-7, 1.5, 2.0, 0.333333, 45.1235, -10.0, 725.0));
  EXPECT_EQ(NewCalls(), 0U) << "the host has it in hand";
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(Handles, EnterASphereIntoItsFields) {
  ShowSphere();
  ASSERT_TRUE(host.DragShape({1.23456789, 2.0, 3.0}, {0.98765432, 7.0, 7.0}, {7.0, 7.0, 7.0}));
  EXPECT_EQ(TextOf(Ids().centerXField), "1.23457");
  EXPECT_EQ(TextOf(Ids().centerYField), "2");
  EXPECT_EQ(TextOf(Ids().centerZField), "3");
  EXPECT_EQ(TextOf(Ids().radiusField), "0.987654");
  const auto numbers = Session().Sphere().Definition();
  EXPECT_EQ(numbers[3], 0.987654);
  EXPECT_EQ(numbers[4], 0.987654 * 0.987654) << "the radius squared follows";
  EXPECT_EQ(numbers[6], 0.0);
}

TEST_F(Handles, DoWhatTypingTheSameNumbersDoes) {
  const auto outcome = [this](bool isDragged) {
    ASSERT_TRUE(host.Choose(Ids().variableMenu, n));
    ASSERT_TRUE(host.EnterText(Ids().modifierField, "+5"));
    if (!IsOn(Ids().cubeTool)) {
      ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
    }
    if (isDragged) {
      ASSERT_TRUE(host.DragShape({0.5, 0.25, -0.5}, {1.75, 2.0, 2.5}, {0.0, 0.0, 30.0}));
    } else {
      const std::pair<IdOf, const char*> kTyped[] = {
          {&ControlIds::anchorXField, "0.5"},  {&ControlIds::anchorYField, "0.25"},
          {&ControlIds::anchorZField, "-0.5"}, {&ControlIds::sizeXField, "1.75"},
          {&ControlIds::sizeYField, "2"},      {&ControlIds::sizeZField, "2.5"},
          {&ControlIds::rotateXField, "0"},    {&ControlIds::rotateYField, "0"},
          {&ControlIds::rotateZField, "30"}};
      for (const auto& [field, text] : kTyped) ASSERT_TRUE(host.EnterText(Ids().*field, text));
    }
    EXPECT_THAT(host.idleQueue, SizeIs(1)) << "one rewrite of the zone";
    host.RunIdleQueue();
    host.recordedLines.clear();
    ASSERT_TRUE(host.Press(Ids().applyButton));
  };
  const std::vector<double> start = host.ValuesOf(1, n);
  outcome(false);
  const auto lines = host.recordedLines;
  const auto values = host.ValuesOf(1, n);
  const auto texts = BoxTexts();
  const auto points = PointsOf("PICKING_CUBE");
  ASSERT_TRUE(host.Press(Ids().undoAlterButton));
  ASSERT_EQ(host.ValuesOf(1, n), start);
  ASSERT_TRUE(host.EnterText(Ids().anchorXField, "0.1"));
  host.RunIdleQueue();
  outcome(true);
  EXPECT_THAT(lines, SizeIs(2));
  EXPECT_EQ(host.recordedLines, lines);
  EXPECT_EQ(host.ValuesOf(1, n), values);
  EXPECT_NE(values, start);
  EXPECT_EQ(BoxTexts(), texts);
  EXPECT_EQ(PointsOf("PICKING_CUBE"), points);
}

TEST_F(Handles, LetTheZoneFollowWhenTheHostIsIdle) {
  ShowBox();
  const auto before = PointsOf("PICKING_CUBE");
  ASSERT_TRUE(DragBox());
  ASSERT_TRUE(host.DragShape({0.2, 0.2, 0.3}, {1.0, 1.1, 1.2}, {5.0, 6.0, 7.0}));
  EXPECT_EQ(PointsOf("PICKING_CUBE"), before);
  EXPECT_THAT(host.idleQueue, SizeIs(1));
  host.RunIdleQueue();
  EXPECT_NE(PointsOf("PICKING_CUBE"), before);
  EXPECT_EQ(NewCalls(), 0U);
}

TEST_F(Handles, DropTheUndo) {
  ShowBox();
  ChooseAlteration("+5");
  ASSERT_TRUE(host.Press(Ids().applyButton));
  ASSERT_TRUE(IsSensitive(Ids().undoAlterButton));
  ASSERT_TRUE(DragBox());
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Handles, ThatWereNotMovedChangeNothing) {
  ShowBox();
  ASSERT_TRUE(host.EnterText(Ids().sizeXField, "4.23456789"));
  host.RunIdleQueue();
  ChooseAlteration("+5");
  ASSERT_TRUE(host.Press(Ids().applyButton));
  host.RunIdleQueue();
  const auto numbers = Session().Cube().Definition();
  ASSERT_TRUE(host.DragShape(Part(numbers, 0), Part(numbers, 3), Part(numbers, 6)));
  EXPECT_EQ(Session().Cube().Definition(), numbers) << "not even rounded";
  EXPECT_TRUE(IsSensitive(Ids().undoAlterButton));
  EXPECT_THAT(host.idleQueue, IsEmpty());
}

TEST_F(Handles, ThatWereDraggedAreNotMovedByBeingTakenInHandAgain) {
  ShowBox();
  const Numbers anchor = {0.123456789, 0.2, 0.3};
  const Numbers size = {1.0, 1.1, 1.2};
  ASSERT_TRUE(host.DragShape(anchor, size, kNoTurn));
  host.RunIdleQueue();
  ChooseAlteration("+5");
  ASSERT_TRUE(host.Press(Ids().applyButton));
  ASSERT_TRUE(host.DragShape(anchor, size, kNoTurn));
  EXPECT_TRUE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Handles, TakeSizesBelowZeroLikeFields) {
  ShowBox();
  ASSERT_TRUE(host.DragShape({0.0, 0.0, 0.0}, {-1.0, 0.0, 1.0}, kNoTurn));
  EXPECT_EQ(TextOf(Ids().sizeXField), "-1");
  EXPECT_EQ(Session().Cube().Definition()[3], -1.0);
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  ASSERT_TRUE(host.DragShape({0.0, 0.0, 0.0}, {-2.0, 0.0, 0.0}, kNoTurn));
  EXPECT_EQ(TextOf(Ids().radiusField), "-2");
}

TEST_F(Handles, RefuseWhatIsNowhereAndShowTheirOwnAgain) {
  ShowBox();
  const auto numbers = Session().Cube().Definition();
  const auto texts = BoxTexts();
  for (const double bad : {kNaN, kInfinity, -kInfinity}) {
    const std::size_t calls = host.shapeCalls.size();
    ASSERT_TRUE(host.DragShape({0.0, bad, 0.0}, {1.0, 1.0, 1.0}, kNoTurn));
    EXPECT_EQ(Session().Cube().Definition(), numbers);
    EXPECT_EQ(BoxTexts(), texts);
    EXPECT_THAT(host.shapeCalls, SizeIs(calls + 1));
    ExpectBoxIsWhatIsKnown();
  }
  EXPECT_THAT(host.idleQueue, IsEmpty());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_F(Handles, IgnoreAChangeWithoutNumbersOrAfterTheyWent) {
  ShowBox();
  const auto changed = host.shapeChanged;
  const auto numbers = Session().Cube().Definition();
  const double three[3] = {1.0, 2.0, 3.0};
  changed(nullptr, three, three);
  changed(three, nullptr, three);
  changed(three, three, nullptr);
  EXPECT_EQ(Session().Cube().Definition(), numbers);
  ASSERT_TRUE(host.Switch(Ids().rectangleTool, true));
  changed(three, three, three);
  EXPECT_EQ(Session().Cube().Definition(), numbers);
  host.CloseAll();
  changed(three, three, three);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(Handles, ShowWhatIsInHandAfterAnErrorOnTheWay) {
  ShowBox();
  host.FailCall("QelUtilOnIdleQueueAddCallback", 1);
  ASSERT_TRUE(DragBox());
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  ExpectBoxIsWhatIsKnown();
}

}  // namespace
