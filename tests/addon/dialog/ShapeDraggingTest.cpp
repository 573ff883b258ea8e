// What dragging the box or the sphere in the plot does.
#include "HandlesTest.h"

#include <limits>
#include <utility>

namespace {

using fakehost::HandlesTest;
using fakehost::kGeneralError;
using qelvane::qelutiltools::ControlIds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class Dragging : public HandlesTest {};

TEST_F(Dragging, EntersABoxIntoItsFields) {
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

TEST_F(Dragging, EntersASphereIntoItsFields) {
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

TEST_F(Dragging, DoesWhatTypingTheSameNumbersDoes) {
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

TEST_F(Dragging, LetsTheZoneFollowWhenTheHostIsIdle) {
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

TEST_F(Dragging, DropsTheUndo) {
  ShowBox();
  ChooseAlteration("+5");
  ASSERT_TRUE(host.Press(Ids().applyButton));
  ASSERT_TRUE(IsSensitive(Ids().undoAlterButton));
  ASSERT_TRUE(DragBox());
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Dragging, ThatMovesNothingChangesNothing) {
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

TEST_F(Dragging, IsNotDoneByTakingAShapeInHandAgain) {
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

TEST_F(Dragging, TakesSizesBelowZeroLikeFields) {
  ShowBox();
  ASSERT_TRUE(host.DragShape({0.0, 0.0, 0.0}, {-1.0, 0.0, 1.0}, kNoTurn));
  EXPECT_EQ(TextOf(Ids().sizeXField), "-1");
  EXPECT_EQ(Session().Cube().Definition()[3], -1.0);
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  ASSERT_TRUE(host.DragShape({0.0, 0.0, 0.0}, {-2.0, 0.0, 0.0}, kNoTurn));
  EXPECT_EQ(TextOf(Ids().radiusField), "-2");
}

TEST_F(Dragging, ToNowhereIsRefusedAndTheShapeShownAgain) {
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

TEST_F(Dragging, WithoutNumbersOrAShapeIsIgnored) {
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

TEST_F(Dragging, ThatFailsOnTheWayShowsWhatIsInHand) {
  ShowBox();
  host.FailCall("QelUtilOnIdleQueueAddCallback", 1);
  ASSERT_TRUE(DragBox());
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  ExpectBoxIsWhatIsKnown();
}

}  // namespace
