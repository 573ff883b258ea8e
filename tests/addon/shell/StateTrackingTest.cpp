// Following the host's changes: which code does what, who made the change, and in what order.
#include "TrackingTest.h"

#include <set>

namespace {

using fakehost::CallRecord;
using fakehost::kGeneralError;
using fakehost::TrackingTest;
using qelvane::qelutiltools::DialogSession;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::Selvane;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Tracking : public TrackingTest {};

// Variables --------------------------------------------------------------------------------------

class VariableChange : public Tracking, public ::testing::WithParamInterface<QelStateChange_t> {};

TEST_P(VariableChange, RefillsTheMenuWhenTheHostIsIdle) {
  ASSERT_TRUE(host.Choose(Ids().variableMenu, c));
  AddSilently("new");
  host.Deliver(GetParam());
  EXPECT_THAT(Items(), ElementsAre("X", "Y", "Z", "n", "c")) << "too early";
  ASSERT_THAT(host.idleQueue, SizeIs(1));
  EXPECT_EQ(host.idleQueue[0].second, 0);
  host.RunIdleQueue();
  EXPECT_THAT(Items(), ElementsAre("X", "Y", "Z", "n", "c", "new"));
  EXPECT_EQ(host.ChosenItem(Ids().variableMenu), "c");
}

TEST_P(VariableChange, KeepsTheAlterVariableAmongThoseThatThereAre) {
  ASSERT_TRUE(host.Choose(Ids().variableMenu, c));
  RemoveLastVariableSilently();
  host.Deliver(GetParam());
  EXPECT_EQ(Session().AlterVariable(), n);
  host.RunIdleQueue();
  EXPECT_THAT(Items(), ElementsAre("X", "Y", "Z", "n"));
  EXPECT_EQ(host.ChosenItem(Ids().variableMenu), "n");
}

TEST_P(VariableChange, IsIgnoredWhenItIsOwn) {
  ASSERT_TRUE(host.Choose(Ids().variableMenu, c));
  RemoveLastVariableSilently();
  NotifyOwn(GetParam());
  EXPECT_THAT(host.idleQueue, IsEmpty());
  EXPECT_EQ(Session().AlterVariable(), c);
}

TEST_P(VariableChange, IsFollowedWhenNobodyHoldsTheLock) {
  host.FailCall("QelUtilLockIsOn", 1);
  NotifyOwn(GetParam());
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

TEST_P(VariableChange, DoesNothingWithoutASession) {
  AddBlock(PlotType_Cartesian3D);
  host.Deliver(GetParam());
  EXPECT_THAT(host.idleQueue, IsEmpty());
  EXPECT_EQ(Found(), nullptr) << "a session was made";
}

TEST_P(VariableChange, IsQueuedOnceUntilTheHostIsIdle) {
  for (int notice = 0; notice < 10; ++notice) host.Deliver(GetParam());
  EXPECT_THAT(host.idleQueue, SizeIs(1));
  host.RunIdleQueue();
  host.Deliver(GetParam());
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

TEST_P(VariableChange, RefillsNothingOnceTheDialogIsDown) {
  AddSilently("new");
  host.Deliver(GetParam());
  DropDialog();
  host.RunIdleQueue();
  EXPECT_THAT(Items(), ElementsAre("X", "Y", "Z", "n", "c"));
  // The work was taken off the queue all the same.
  host.Deliver(GetParam());
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

TEST_P(VariableChange, IsQueuedAgainAfterAnError) {
  host.Deliver(GetParam());
  host.FailCall("QelUtilVarGetName", 1);
  host.RunIdleQueue();
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  host.Deliver(GetParam());
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

TEST_P(VariableChange, IsSilentAboutErrorsInABatchRun) {
  host.isBatch = true;
  host.Deliver(GetParam());
  host.FailCall("QelUtilVarGetName", 1);
  host.RunIdleQueue();
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_P(VariableChange, EmptiesTheMenuWithTheDataSet) {
  host.Deliver(GetParam());
  host.ActiveFrame().dataSet.reset();
  host.RunIdleQueue();
  EXPECT_THAT(Items(), IsEmpty());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Codes, VariableChange,
                         ::testing::Values(StateChange_VarsAdded, StateChange_VarsDeleted,
                                           StateChange_VarsReset));

TEST_F(Tracking, QueuesOneRefillForAllKindsOfVariableChanges) {
  host.Deliver(StateChange_VarsAdded);
  host.Deliver(StateChange_VarsDeleted);
  host.Deliver(StateChange_VarsReset);
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

// Who made the change ----------------------------------------------------------------------------

TEST_F(Tracking, TakesAChangeAsOwnOnlyByTheExactName) {
  for (const std::string owner : {"marquell", "Marquell ", "Marquel", "Marquell2", ""}) {
    host.lockOwners.push_back(owner);
    host.Notify({StateChange_VarsAdded, {}, {}, {}});
    host.lockOwners.pop_back();
    EXPECT_THAT(host.idleQueue, SizeIs(1)) << owner;
    host.RunIdleQueue();
  }
}

TEST_F(Tracking, AsksWhoHoldsTheLockNow) {
  // The host acts within an action of the add-on.
  const HostLock lock;
  host.Deliver(StateChange_VarsAdded);
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

TEST_F(Tracking, IgnoresEveryOtherCode) {
  const std::set<QelStateChange_t> followed = {1, 6, 7, 9, 15, 17, 25, 36, 39, 44, 51};
  const std::set<std::string> questions = {"QelUtilLockIsOn", "QelUtilLockGetCurrentOwnerName",
                                           "QelUtilStringDealloc"};
  // Where the host lets the box be dragged, it has to know whether the box is still there.
  const std::set<QelStateChange_t> touchShape = {StateChange_ZonesDeleted,
                                                 StateChange_DataSetReset};
  const std::set<std::string> shapeQuestions = {
      "QelUtilExtensionGet",       "QelUtilLockStart",          "QelUtilLockFinish",
      "QelGUIDialogIsUp",          "QelUtilFrameGetPlotType",   "QelUtilDataSetGetUniqueID",
      "QelUtilDataSetIsAvailable", "QelUtilDataSetGetNumZones", "QelUtilDataSetGetInfo",
      "QelUtilZoneGetName"};
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  for (QelStateChange_t code = -3; code <= 120; ++code) {
    if (followed.count(code) != 0) continue;
    host.calls.clear();
    host.Deliver(code, {"PLOTTYPE"});
    for (const CallRecord& call : host.calls) {
      const bool isOfShape =
          touchShape.count(code) != 0 && shapeQuestions.count(call.function) != 0;
      EXPECT_TRUE(isOfShape || questions.count(call.function) != 0)
          << "code " << code << ": " << call.function;
    }
  }
  EXPECT_TRUE(host.IsDialogUp());
  EXPECT_EQ(Session().Kind(), PickKind::Cube);
  EXPECT_THAT(host.idleQueue, IsEmpty());
}

// Dialogs and menu -------------------------------------------------------------------------------

struct DropRow {
  const char* rule;
  QelStateChange_t code;
  int menuUpdates;
};

class DialogDrop : public Tracking, public ::testing::WithParamInterface<DropRow> {};

TEST_P(DialogDrop, TakesTheDialogAwayAsItIs) {
  ASSERT_TRUE(host.Switch(Ids().circleTool, true));
  host.calls.clear();
  host.Deliver(GetParam().code);
  EXPECT_FALSE(host.IsDialogUp());
  EXPECT_EQ(host.CallCount("QelGUIDialogDrop"), 1);
  EXPECT_EQ(host.CallCount("QelUtilMenuSetSensitivity"), GetParam().menuUpdates);
  EXPECT_EQ(Session().Kind(), PickKind::Circle) << "the tool was switched off";
  EXPECT_EQ(host.CallCount("QelUtilMouseSetMode"), 0);
}

TEST_P(DialogDrop, TakesItAwayWhenOwn) {
  NotifyOwn(GetParam().code);
  EXPECT_FALSE(host.IsDialogUp());
}

TEST_P(DialogDrop, LeavesADialogThatIsDownAlone) {
  DropDialog();
  host.calls.clear();
  host.Deliver(GetParam().code);
  EXPECT_EQ(host.CallCount("QelGUIDialogDrop"), 0);
  EXPECT_EQ(host.CallCount("QelUtilMenuSetSensitivity"), GetParam().menuUpdates);
}

INSTANTIATE_TEST_SUITE_P(Codes, DialogDrop,
                         ::testing::Values(DropRow{"Frame", StateChange_FrameDeleted, 1},
                                           DropRow{"Dialogs", StateChange_DropDialogs, 0}),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Tracking, GreysTheMenuEntryWithThePlot) {
  host.ActiveFrame().plotType = PlotType_Polar;
  host.Deliver(StateChange_FrameDeleted);
  EXPECT_FALSE(host.menu.at(0).isSensitive);
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  host.Deliver(StateChange_FrameDeleted);
  EXPECT_TRUE(host.menu.at(0).isSensitive);
}

// Everything gone --------------------------------------------------------------------------------

TEST_F(Tracking, ForgetsEverySessionWithItsDataSet) {
  ChooseAlteration("*3");
  AddBlock(PlotType_Cartesian3D);
  host.ChooseMenu("Marquell ...");
  ASSERT_TRUE(host.EnterText(Ids().modifierField, "*4"));
  host.calls.clear();
  host.Deliver(StateChange_NewLayout);
  EXPECT_FALSE(host.IsDialogUp());
  EXPECT_EQ(DialogSession(), nullptr);
  EXPECT_EQ(host.CallCount("QelUtilMouseSetMode"), 0) << "the close action ran";
  EXPECT_EQ(host.CallCount("QelUtilMenuSetSensitivity"), 0);
  for (const std::size_t frame : {0U, 1U}) {
    host.ActivateFrame(frame);
    EXPECT_EQ(Found(), nullptr);
    host.ChooseMenu("Marquell ...");
    EXPECT_EQ(TextOf(Ids().modifierField), "+0");
  }
}

TEST_F(Tracking, ForgetsEverySessionWhenItsOwnActionClosesAll) {
  NotifyOwn(StateChange_NewLayout);
  EXPECT_EQ(DialogSession(), nullptr);
  EXPECT_EQ(Found(), nullptr);
}

TEST_F(Tracking, DropsAnUpdateOfABoxThatIsGone) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_TRUE(host.StepUp(Ids().sizeXField));
  ASSERT_THAT(host.idleQueue, SizeIs(1));
  host.Deliver(StateChange_NewLayout);
  host.calls.clear();
  host.RunIdleQueue();
  EXPECT_EQ(host.CallCount("QelUtilDataValueSetByRef"), 0);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  // The next box is followed again.
  host.ChooseMenu("Marquell ...");
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_TRUE(host.StepUp(Ids().sizeXField));
  EXPECT_THAT(host.idleQueue, SizeIs(1));
}

// Style ------------------------------------------------------------------------------------------

TEST_F(Tracking, UpdatesTheMenuWithThePlotTypeAlsoWhenOwn) {
  host.calls.clear();
  NotifyOwn(StateChange_Style, {"PLOTTYPE"});
  EXPECT_EQ(host.CallCount("QelUtilMenuSetSensitivity"), 1);
  host.Deliver(StateChange_Style, {"PLOTTYPE"});
  EXPECT_EQ(host.CallCount("QelUtilMenuSetSensitivity"), 2);
  for (const std::string other : {"plottype", "PLOTTYPES", "PLOT", "THREEDVIEW"}) {
    host.Deliver(StateChange_Style, {other});
    host.Deliver(StateChange_Style, {other, "PLOTTYPE"});
  }
  host.Deliver(StateChange_Style, {});
  EXPECT_EQ(host.CallCount("QelUtilMenuSetSensitivity"), 2);
}

TEST_F(Tracking, DoesNothingElseAboutItsOwnStyle) {
  AlterAll();
  host.ActiveFrame().blanking.include = false;
  const bool wasOn = IsOn(Ids().includeBlankingToggle);
  NotifyOwn(StateChange_Style, {"THREEDVIEW"});
  NotifyOwn(StateChange_Style, {"BLANKING", "VALUE", "INCLUDE"});
  EXPECT_TRUE(Session().IsUndoAvailable());
  EXPECT_EQ(IsOn(Ids().includeBlankingToggle), wasOn);
  host.ActiveFrame().plotType = PlotType_Line;
  NotifyOwn(StateChange_Style, {"PLOTTYPE"});
  EXPECT_TRUE(host.IsDialogUp());
}

TEST_F(Tracking, ClosesTheDialogWhenNothingCanBePickedAnyMore) {
  ASSERT_TRUE(host.Switch(Ids().circleTool, true));
  Selvane& session = Session();
  host.ActiveFrame().plotType = PlotType_Line;
  host.Deliver(StateChange_Style, {"PLOTTYPE"});
  EXPECT_FALSE(host.IsDialogUp());
  EXPECT_EQ(session.Kind(), PickKind::None);
  EXPECT_EQ(host.mouseMode, Mouse_Select);
  EXPECT_FALSE(IsOn(Ids().circleTool));
  EXPECT_FALSE(host.menu.at(0).isSensitive);
}

TEST_F(Tracking, LeavesTheSessionAloneWhenTheDialogIsDown) {
  ASSERT_TRUE(host.Switch(Ids().circleTool, true));
  Selvane& session = Session();
  DropDialog();
  host.ActiveFrame().plotType = PlotType_Line;
  host.Deliver(StateChange_Style, {"PLOTTYPE"});
  EXPECT_EQ(session.Kind(), PickKind::Circle);
}

TEST_F(Tracking, UpdatesTheMenuAfterAnError) {
  host.ActiveFrame().plotType = PlotType_Line;
  host.FailCall("QelUtilMouseSetMode", 1);
  host.Deliver(StateChange_Style, {"PLOTTYPE"});
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  EXPECT_FALSE(host.menu.at(0).isSensitive);
}

TEST_F(Tracking, IsSilentAboutErrorsInABatchRun) {
  host.isBatch = true;
  host.ActiveFrame().plotType = PlotType_Line;
  host.FailCall("QelUtilMouseSetMode", 1);
  host.Deliver(StateChange_Style, {"PLOTTYPE"});
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  EXPECT_FALSE(host.menu.at(0).isSensitive);
}

// Blanking ---------------------------------------------------------------------------------------

TEST_F(Tracking, ShowsWhetherTheUserBlanks) {
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  ASSERT_TRUE(IsOn(Ids().includeBlankingToggle));
  host.SwitchBlanking(false);
  EXPECT_FALSE(IsOn(Ids().includeBlankingToggle));
  host.SwitchBlanking(true);
  EXPECT_TRUE(IsOn(Ids().includeBlankingToggle));
}

TEST_F(Tracking, ShowsBlankingOnlyForItsOwnPath) {
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  host.ActiveFrame().blanking.include = false;
  const std::vector<std::vector<std::string>> others = {{"BLANKING"},
                                                        {"BLANKING", "VALUE"},
                                                        {"BLANKING", "VALUE", "CONSTRAINT"},
                                                        {"BLANKING", "VALUE", "include"},
                                                        {"BLANKING", "IJK", "INCLUDE"},
                                                        {"VALUE", "BLANKING", "INCLUDE"},
                                                        {"PLOTTYPE", "VALUE", "INCLUDE"}};
  for (const std::vector<std::string>& other : others) {
    host.Deliver(StateChange_Style, other);
    EXPECT_TRUE(IsOn(Ids().includeBlankingToggle)) << ::testing::PrintToString(other);
  }
}

TEST_F(Tracking, ShowsNoBlankingInADialogThatIsDown) {
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  DropDialog();
  host.SwitchBlanking(false);
  EXPECT_TRUE(IsOn(Ids().includeBlankingToggle));
}

}  // namespace
