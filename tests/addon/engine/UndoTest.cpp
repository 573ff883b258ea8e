#include "EngineTest.h"

namespace {

using fakehost::Geometry;
using fakehost::MakeLattice;
using qelvane::qelutiltools::PickKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kNoUndo[] = "Macro failed to perform Undo";

class Undo : public fakehost::EngineTest {
 protected:
  void SetUp() override { Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0)); }
  void Alter(const std::string& modifier) {
    PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"" + modifier + "\" ZONE=1 ELEMENT=1");
  }
};

TEST_F(Undo, TakesBackAnAdditionOnce) {
  Alter("+5");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20));
  PlayWell("UNDOALTER");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
  EXPECT_EQ(PlayBadly("UNDOALTER"), kNoUndo);
  // The modifier still reads "+5".
  PlayWell("ALTERELEMENT ZONE=1 ELEMENT=1");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20));
}

TEST_F(Undo, OfAnElementBelowTheFirstTellsOfNoAlteration) {
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+5\" ZONE=1 ELEMENT=-5");
  EXPECT_TRUE(Session().IsUndoAvailable());
  const std::size_t noticesBefore = host.notices.size();
  PlayWell("UNDOALTER");
  EXPECT_EQ(host.notices.size(), noticesBefore);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
  EXPECT_EQ(PlayBadly("UNDOALTER"), kNoUndo);
}

TEST_F(Undo, TakesBackMultiplicationAndDivision) {
  Alter("*4");
  PlayWell("UNDOALTER");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
  Alter("/4");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(2.5, 20));
  PlayWell("UNDOALTER");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
}

TEST_F(Undo, IsNotOfferedForAnAssignment) {
  Alter("=5");
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_EQ(PlayBadly("UNDOALTER"), kNoUndo);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(5, 20));
}

TEST_F(Undo, IsOfferedForTimesZeroButFails) {
  Alter("*0");
  EXPECT_TRUE(Session().IsUndoAvailable());
  EXPECT_EQ(PlayBadly("UNDOALTER"), kNoUndo);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(0, 20));
}

TEST_F(Undo, IsOfferedForPlusZero) {
  PlayWell("ALTERELEMENT VARIABLE=\"c\" ZONE=1 ELEMENT=1");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
  EXPECT_THAT(host.notices, SizeIs(1));
  EXPECT_TRUE(Session().IsUndoAvailable());
}

TEST_F(Undo, EndsWithANewVariableModifierRuleOrKind) {
  Alter("+5");
  Session().SetAlterVariable(n);
  EXPECT_FALSE(Session().IsUndoAvailable());
  Alter("+5");
  EXPECT_TRUE(Session().ParseModifier("+5"));
  EXPECT_FALSE(Session().IsUndoAvailable());
  Alter("+5");
  EXPECT_FALSE(Session().ParseModifier("abc"));
  EXPECT_TRUE(Session().IsUndoAvailable());
  Session().SetPickRule(true, false);
  EXPECT_FALSE(Session().IsUndoAvailable());
  Alter("+5");
  Session().SetPickKind(PickKind::Circle, true);
  EXPECT_FALSE(Session().IsUndoAvailable());
}

TEST_F(Undo, OfAnAreaFromAMacroUsesTheBoundaryInForce) {
  PlayWell("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=2.5 SIZEY=9");
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+1\" RULE=ALLINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11, 20));
  PlayWell("UNDOALTER");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
}

TEST_F(Undo, FromTheDialogUsesTheGeometryOfTheApply) {
  const QelGeomID_t id = host.AddGeometry({0, GeomType_Rectangle, {-1, -1, 0}, 2.5, 9, {}});
  Session().SetPickKind(PickKind::Rectangle, true);
  Session().SetAlterVariable(c);
  Session().ParseModifier("+1");
  EXPECT_TRUE(Session().ApplyArea(false));
  EXPECT_EQ(Session().UndoGeometry(), id);
  host.AddGeometry({0, GeomType_Rectangle, {50, 50, 0}, 1, 1, {}});
  EXPECT_TRUE(Session().UndoLastAlter(false));
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
  EXPECT_FALSE(Session().IsUndoAvailable());
}

TEST_F(Undo, SaysThatTheGeometryIsGone) {
  const QelGeomID_t id = host.AddGeometry({0, GeomType_Rectangle, {-1, -1, 0}, 2.5, 9, {}});
  Session().SetPickKind(PickKind::Rectangle, true);
  Session().SetAlterVariable(c);
  Session().ParseModifier("+1");
  EXPECT_TRUE(Session().ApplyArea(false));
  host.DeleteGeometry(id);
  EXPECT_FALSE(Session().UndoLastAlter(false));
  ASSERT_THAT(host.messageBoxes, SizeIs(1));
  EXPECT_EQ(host.messageBoxes[0].text,
            "Unable to perform Undo because geometry has been changed or deleted.");
  EXPECT_EQ(host.messageBoxes[0].kind, 0);
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11, 20));
}

}  // namespace
