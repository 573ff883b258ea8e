#include "FakeHostTest.h"

#include "qelvane/Keywords.h"

namespace {

using fakehost::CallRecord;
using fakehost::FakeHostTest;
using fakehost::MakeLattice;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

constexpr char kLoadError[] = "Marquell add-on failed to load.";

class Registration : public FakeHostTest {
 protected:
  /// The calls of the registration proper, without locks and questions.
  std::vector<std::string> Steps() const {
    static const std::vector<std::string> kSteps = {
        "QelUtilLockOn",           "QelUtilLockOff",
        "QelUtilAddOnRegister",    "QelUtilMacroAddCommandCallback",
        "QelUtilMenuAddSeparator", "QelUtilMenuAddOption",
        "QelUtilArgListAlloc",     "QelUtilArgListAppendFunction",
        "QelUtilArgListAppendInt", "QelUtilStateChangeAddCallbackX",
        "QelUtilArgListDealloc",   "QelUtilMenuSetSensitivity"};
    std::vector<std::string> steps;
    for (const CallRecord& call : host.calls) {
      if (std::find(kSteps.begin(), kSteps.end(), call.function) != kSteps.end()) {
        steps.push_back(call.function);
      }
    }
    return steps;
  }
};

TEST_F(Registration, RunsItsStepsInOrder) {
  InitQelAddOn113();
  EXPECT_THAT(Steps(),
              ElementsAre("QelUtilLockOn", "QelUtilAddOnRegister", "QelUtilMacroAddCommandCallback",
                          "QelUtilMenuAddSeparator", "QelUtilMenuAddOption", "QelUtilArgListAlloc",
                          "QelUtilArgListAppendFunction", "QelUtilArgListAppendInt",
                          "QelUtilArgListAppendInt", "QelUtilStateChangeAddCallbackX",
                          "QelUtilArgListDealloc", "QelUtilMenuSetSensitivity", "QelUtilLockOff"));
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(Registration, NamesItselfAndItsVersion) {
  InitQelAddOn113();
  EXPECT_EQ(host.registeredInterface, 110);
  EXPECT_EQ(host.registeredName, "Marquell");
  EXPECT_THAT(host.registeredVersion,
              MatchesRegex("V[0-9.]+\\(1\\.0\\.0\\) [A-Z][a-z][a-z] [ 0-9][0-9] [0-9]{4}"));
  EXPECT_FALSE(host.registeredAuthor.empty());
  EXPECT_EQ(host.macroCallbacks.count("Marquell"), 1u);
  EXPECT_THAT(host.stateCallbacks, SizeIs(1));
}

TEST_F(Registration, AddsOneMenuEntryAfterASeparator) {
  InitQelAddOn113();
  EXPECT_THAT(host.menuSeparators, ElementsAre("Data"));
  ASSERT_THAT(host.menu, SizeIs(1));
  EXPECT_EQ(host.menu[0].path, "Data");
  EXPECT_EQ(host.menu[0].label, "Marquell ...");
  EXPECT_EQ(host.menu[0].mnemonic, 1);
}

// What fails, and what has been done by then.
struct FailingStep {
  const char* rule;
  const char* function;
  int nth;
  std::size_t menuEntries;
};

class FailingRegistration : public FakeHostTest,
                            public ::testing::WithParamInterface<FailingStep> {};

TEST_P(FailingRegistration, ShowsTheLoadErrorAndReleasesTheLock) {
  host.FailCall(GetParam().function, GetParam().nth);
  InitQelAddOn113();
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, ElementsAre(kLoadError));
  EXPECT_EQ(host.LockDepth(), 0);
  EXPECT_THAT(host.menu, SizeIs(GetParam().menuEntries));
  EXPECT_THAT(host.stateCallbacks, IsEmpty());
}

TEST_P(FailingRegistration, ShowsNothingInABatchRun) {
  host.isBatch = true;
  host.FailCall(GetParam().function, GetParam().nth);
  InitQelAddOn113();
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Steps, FailingRegistration,
    ::testing::Values(FailingStep{"Register", "QelUtilAddOnRegister", 1, 0},
                      FailingStep{"MacroCallback", "QelUtilMacroAddCommandCallback", 1, 0},
                      FailingStep{"ArgumentList", "QelUtilArgListAlloc", 1, 1},
                      FailingStep{"CallbackArgument", "QelUtilArgListAppendFunction", 1, 1},
                      FailingStep{"ModeArgument", "QelUtilArgListAppendInt", 1, 1},
                      FailingStep{"ApiArgument", "QelUtilArgListAppendInt", 2, 1},
                      FailingStep{"StateChangeCallback", "QelUtilStateChangeAddCallbackX", 1, 1}),
    [](const auto& row) { return std::string(row.param.rule); });

struct SensitivityRow {
  const char* rule;
  bool hasFrame;
  bool hasData;
  QelPlotType_e plotType;
  bool isSensitive;
};

class MenuSensitivity : public FakeHostTest,
                        public ::testing::WithParamInterface<SensitivityRow> {};

TEST_P(MenuSensitivity, FollowsThePlot) {
  if (GetParam().hasFrame) host.AddFrame(GetParam().plotType);
  if (GetParam().hasData) host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  InitQelAddOn113();
  ASSERT_THAT(host.menu, SizeIs(1));
  EXPECT_EQ(host.menu[0].isSensitive, GetParam().isSensitive);
}

INSTANTIATE_TEST_SUITE_P(
    Plots, MenuSensitivity,
    ::testing::Values(SensitivityRow{"NoFrame", false, false, PlotType_None, false},
                      SensitivityRow{"NoDataSet", true, false, PlotType_Cartesian2D, false},
                      SensitivityRow{"Cartesian3D", true, true, PlotType_Cartesian3D, true},
                      SensitivityRow{"Cartesian2D", true, true, PlotType_Cartesian2D, true},
                      SensitivityRow{"Line", true, true, PlotType_Line, false},
                      SensitivityRow{"Polar", true, true, PlotType_Polar, false},
                      SensitivityRow{"Sketch", true, true, PlotType_Sketch, false}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Registration, MenuFollowsANewPlotType) {
  host.AddFrame(PlotType_Cartesian2D);
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  InitQelAddOn113();
  host.ActiveFrame().plotType = PlotType_Line;
  host.Deliver(StateChange_Style, {SV_PLOTTYPE});
  EXPECT_FALSE(host.menu.at(0).isSensitive);
  host.ActiveFrame().plotType = PlotType_Cartesian3D;
  host.Deliver(StateChange_Style, {SV_PLOTTYPE});
  EXPECT_TRUE(host.menu.at(0).isSensitive);
}

TEST_F(Registration, MenuEntryLaunchesTheOneDialog) {
  host.AddFrame(PlotType_Cartesian2D);
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  InitQelAddOn113();
  host.ChooseMenu("Marquell ...");
  EXPECT_TRUE(host.IsDialogUp());
  const int built = host.CallCount("QelGUIDialogCreateModeless");
  EXPECT_LE(built, 1);
  host.ChooseMenu("Marquell ...");
  EXPECT_EQ(host.CallCount("QelGUIDialogCreateModeless"), built);
  EXPECT_EQ(host.CallCount("QelGUIDialogLaunch"), 2);
}

}  // namespace
