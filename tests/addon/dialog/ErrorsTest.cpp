// What goes wrong behind a control ends in the general box, and the dialog stays usable.
#include "DialogTest.h"

#include <functional>
#include <map>

namespace {

using fakehost::CallRecord;
using fakehost::DialogTest;
using fakehost::FakeHost;
using fakehost::kGeneralError;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::Controls;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A call of the host that is refused while the user does something.
struct ErrorRow {
  const char* rule;
  const char* function;
  std::function<bool(FakeHost& host)> act;
};

const ErrorRow kErrors[] = {
    {"Tool", "QelUtilMouseSetMode",
     [](FakeHost& host) { return host.Switch(Controls.circleTool, true); }},
    {"ElementTool", "QelUtilProbeInstallCallback",
     [](FakeHost& host) { return host.Switch(Controls.elementTool, true); }},
    {"AlterPage", "QelUtilVarGetName", [](FakeHost& host) { return host.TurnTo(Controls.tab, 1); }},
    {"Apply", "QelUtilRedraw", [](FakeHost& host) { return host.Press(Controls.applyButton); }},
    {"ApplyWithoutValues", "QelUtilDataValueGetWritableNativeRef",
     [](FakeHost& host) { return host.Press(Controls.applyButton); }},
    {"UndoBlanks", "QelUtilRedraw",
     [](FakeHost& host) { return host.Press(Controls.undoBlanksButton); }},
    {"IncludeBlanking", "QelUtilArgListAlloc",
     [](FakeHost& host) { return host.Switch(Controls.includeBlankingToggle, false); }},
    {"IncludeBlankingUnrecorded", "QelUtilMacroRecordRawCommand",
     [](FakeHost& host) { return host.Switch(Controls.includeBlankingToggle, false); }},
    {"View", "QelUtilViewGet", [](FakeHost& host) { return host.Press(Controls.viewXYButton); }},
    {"ViewRotation", "QelUtilViewRotate3D",
     [](FakeHost& host) { return host.Press(Controls.viewYZButton); }},
    {"Field", "QelUtilOnIdleQueueAddCallback",
     [](FakeHost& host) {
       return host.Switch(Controls.cubeTool, true) && host.StepUp(Controls.sizeXField);
     }},
    {"Init", "QelUtilVarGetName",
     [](FakeHost& host) {
       host.ChooseMenu("Marquell ...");
       return true;
     }},
};

class Errors : public DialogTest, public ::testing::WithParamInterface<ErrorRow> {
 protected:
  /// On the blank page, with everything ready to be applied and recorded.
  void SetUp() override {
    DialogTest::SetUp();
    host.isRecording = true;
    ChooseAlteration("+5");
    host.DrawGeometry(RectangleUpTo(9.0));
    ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
    host.FailCall(GetParam().function, 1);
  }
};

TEST_P(Errors, AreReportedOnceAndLeaveTheDialogUp) {
  ASSERT_TRUE(GetParam().act(host));
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  EXPECT_TRUE(host.IsDialogUp());
  EXPECT_EQ(host.LockDepth(), 0);
}

TEST_P(Errors, AreSilentInABatchRun) {
  host.isBatch = true;
  ASSERT_TRUE(GetParam().act(host));
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, Errors, ::testing::ValuesIn(kErrors),
                         [](const auto& row) { return std::string(row.param.rule); });

// Every call that can fail, once ------------------------------------------------------------------

class EveryDialogFault : public DialogTest {
 protected:
  void SetUp() override {}

  void Prepare(QelPlotType_e plotType) {
    host.Deliver(StateChange_NewLayout);
    host.RunIdleQueue();
    host.Reset();
    AddBlock(plotType);
    host.isRecording = true;
    // A No would hold for the process.
    host.queuedAnswers.assign(99, true);
    InitQelAddOn113();
    host.ChooseMenu("Marquell ...");
    host.calls.clear();
  }

  /// A session of everything; what cannot be reached after a fault is left out.
  void UseEverything() {
    host.Choose(Ids().variableMenu, n);
    host.EnterText(Ids().modifierField, "*2");
    host.EnterText(Ids().modifierField, "/0");
    host.Switch(Ids().syncContoursToggle, false);
    host.Switch(Ids().syncContoursToggle, true);
    for (const LgIndex_t tool : {Ids().elementTool, Ids().rectangleTool, Ids().circleTool,
                                 Ids().polygonTool, Ids().cubeTool, Ids().sphereTool}) {
      host.Switch(tool, true);
      host.Switch(Ids().shadeToggle, !IsOn(Ids().shadeToggle));
      host.EnterText(Ids().anchorXField, "0.5");
      host.EnterText(Ids().radiusField, "x");
      host.StepUp(Ids().rotateZField);
      host.StepDown(Ids().centerYField);
      host.RunIdleQueue();
      if (tool == Ids().rectangleTool) host.DrawGeometry(RectangleUpTo(1.0));
      host.Choose(Ids().anyAllMenu, 1);
      host.Press(Ids().applyButton);
      host.Press(Ids().undoAlterButton);
    }
    host.Switch(Ids().rectangleTool, true);
    host.ChooseRadio(Ids().surfaceRadioBox, 2);
    host.Press(Ids().applyButton);
    host.Probe(true, 1, 0, 1);
    host.ChooseRadio(Ids().surfaceRadioBox, 1);
    host.TurnTo(Ids().tab, 2);
    host.Press(Ids().applyButton);
    host.Press(Ids().undoBlanksButton);
    host.Switch(Ids().includeBlankingToggle, !IsOn(Ids().includeBlankingToggle));
    for (const LgIndex_t button :
         {Ids().viewXYButton, Ids().viewXZButton, Ids().viewYZButton, Ids().view3DButton}) {
      host.Press(button);
    }
    host.AskForHelp(Ids().dialog);
    host.Deliver(StateChange_VarsReset);
    host.Deliver(StateChange_NewActiveFrame);
    host.RunIdleQueue();
    host.TurnTo(Ids().tab, 1);
    host.CloseWindow(Ids().dialog);
  }
};

/// More of one function tell nothing new.
constexpr int kMostFaults = 6;

TEST_F(EveryDialogFault, LeavesLockAndMemoryInOrder) {
  for (const QelPlotType_e plotType : {PlotType_Cartesian3D, PlotType_Cartesian2D}) {
    Prepare(plotType);
    UseEverything();
    EXPECT_THAT(host.errorBoxes, IsEmpty());
    std::map<std::string, int> counts;
    for (const CallRecord& call : host.calls) {
      // A refused idle call is never asked for again in the process: it has a test of its own.
      if (call.isFallible && call.function != "QelUtilOnIdleQueueAddCallback") {
        ++counts[call.function];
      }
    }
    ASSERT_GT(counts.size(), 20U);
    for (const auto& [function, count] : counts) {
      for (int nth = 1; nth <= std::min(count, kMostFaults); ++nth) {
        SCOPED_TRACE(function + " call " + std::to_string(nth));
        Prepare(plotType);
        host.FailCall(function, nth);
        UseEverything();
        EXPECT_TRUE(host.WasFaultHit());
        EXPECT_EQ(host.LockDepth(), 0);
        EXPECT_THAT(host.Misuse(), IsEmpty());
        // A session may hold the view that it has to put back.
        host.Deliver(StateChange_NewLayout);
        EXPECT_THAT(host.Leaks(), IsEmpty());
      }
    }
  }
}

}  // namespace
