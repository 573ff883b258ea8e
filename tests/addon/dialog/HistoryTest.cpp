// The host's own undo and redo: what the add-on could take back is gone then.
#include "DialogTest.h"
#include "HostLock.h"
#include "SessionRegistry.h"

namespace {

using fakehost::DialogTest;
using fakehost::MakeLattice;
using fakehost::Service;
using ::testing::IsEmpty;

class History : public DialogTest {
 protected:
  void SetUp() override {
    host.OfferAlso(Service::History);
    DialogTest::SetUp();
  }
};

TEST_F(History, IsHeardOfOnlyWhereTheHostKeepsOne) {
  EXPECT_NE(host.valuesRestored, nullptr);
  host.Reset();
  host.OfferExtensions({});
  InitQelAddOn113();
  EXPECT_EQ(host.valuesRestored, nullptr);
}

TEST_F(History, EndsTheUndo) {
  AlterAll();
  const std::vector<double> altered = host.ValuesOf(1, n);
  ASSERT_TRUE(host.TellOfRestoredValues());
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
  EXPECT_FALSE(host.Press(Ids().undoAlterButton));
  EXPECT_EQ(host.ValuesOf(1, n), altered);
}

TEST_F(History, LetsALaterAlterationBeUndone) {
  AlterAll();
  ASSERT_TRUE(host.TellOfRestoredValues());
  const std::vector<double> before = host.ValuesOf(1, n);
  ASSERT_TRUE(host.Press(Ids().applyButton));
  ASSERT_NE(host.ValuesOf(1, n), before);
  ASSERT_TRUE(host.Press(Ids().undoAlterButton));
  EXPECT_EQ(host.ValuesOf(1, n), before);
}

TEST_F(History, LeavesEverythingElse) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  const auto cube = Session().Cube().Definition();
  ASSERT_TRUE(host.TellOfRestoredValues());
  EXPECT_EQ(Session().Kind(), qelvane::qelutiltools::PickKind::Cube);
  EXPECT_EQ(Session().Cube().Definition(), cube);
  EXPECT_GT(host.ZoneNamed("PICKING_CUBE"), 0);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(History, EndsTheUndoOfAPlotThatCannotBePickedInNow) {
  AlterAll();
  auto& session = Session();
  host.ActiveFrame().plotType = PlotType_Line;
  ASSERT_TRUE(host.TellOfRestoredValues());
  EXPECT_FALSE(session.IsUndoAvailable());
}

TEST_F(History, MattersToNobodyWithoutData) {
  host.CloseAll();
  ASSERT_TRUE(host.TellOfRestoredValues());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(History, EndsTheUndoOfPlayedLines) {
  PlayWell("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=9");
  PlayWell("ALTERAREA VARIABLE=\"n\" MODIFIER=\"+5\" RULE=ALLINSIDE");
  const std::vector<double> altered = host.ValuesOf(1, n);
  ASSERT_TRUE(host.TellOfRestoredValues());
  host.Play("UNDOALTER");
  EXPECT_EQ(host.ValuesOf(1, n), altered);
}

}  // namespace
