// The apply button, the surface choice, blanking and the views.
#include "DialogTest.h"

#include <algorithm>

namespace {

using fakehost::CallRecord;
using fakehost::DialogTest;
using fakehost::Geometry;
using fakehost::kGeneralError;
using fakehost::ViewState;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::StandardView;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr LgIndex_t kTunnelThrough = 1;
constexpr LgIndex_t kSurfaceOnly = 2;

class Apply : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    host.isRecording = true;
    before = host.ValuesOf(1, n);
  }
  /// Draws a rectangle around all nodes and forgets what was recorded of that.
  void DrawAroundAll() {
    host.DrawGeometry(RectangleUpTo(9.0));
    host.recordedLines.clear();
    host.redrawCount = 0;
  }
  std::vector<double> BeforePlus(double added) const {
    std::vector<double> values = before;
    for (double& value : values) value += added;
    return values;
  }
  std::vector<double> before;
};

TEST_F(Apply, AltersThroughTheWholeVolumeAndRecordsIt) {
  ChooseAlteration("+5");
  DrawAroundAll();
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_EQ(host.ValuesOf(1, n), BeforePlus(5.0));
  EXPECT_THAT(host.recordedLines,
              ElementsAre(StartsWith("Marquell PICKRECTANGLE "),
                          "Marquell ALTERAREA VARIABLE=\"n\" MODIFIER=\"+5\" RULE=ALLINSIDE"));
  EXPECT_EQ(host.redrawCount, 1);
}

TEST_F(Apply, BlanksAndRecordsItWithoutVariable) {
  DrawAroundAll();
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_THAT(host.ValuesOf(1, c + 1), Each(1.0));
  EXPECT_THAT(host.recordedLines, ElementsAre(StartsWith("Marquell PICKRECTANGLE "),
                                              "Marquell BLANKAREA RULE=ALLINSIDE"));
  EXPECT_EQ(host.redrawCount, 1);
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Apply, NeitherRecordsNorRedrawsWhileNothingIsRecorded) {
  host.isRecording = false;
  ChooseAlteration("+5");
  DrawAroundAll();
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_EQ(host.ValuesOf(1, n), BeforePlus(5.0));
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(host.redrawCount, 0);
}

struct ApplyRuleRow {
  LgIndex_t side;
  LgIndex_t count;
  const char* keyword;
};

TEST_F(Apply, RecordsTheRule) {
  const ApplyRuleRow rows[] = {
      {1, 1, "ANYINSIDE"}, {2, 1, "ANYOUTSIDE"}, {1, 2, "ALLINSIDE"}, {2, 2, "ALLOUTSIDE"}};
  DrawAroundAll();
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  for (const ApplyRuleRow& row : rows) {
    ASSERT_TRUE(host.Choose(Ids().insideOutsideMenu, row.side));
    ASSERT_TRUE(host.Choose(Ids().anyAllMenu, row.count));
    host.recordedLines.clear();
    ASSERT_TRUE(host.Press(Ids().applyButton));
    ASSERT_THAT(host.recordedLines, SizeIs(2));
    EXPECT_EQ(host.recordedLines[1], std::string("Marquell BLANKAREA RULE=") + row.keyword);
  }
}

TEST_F(Apply, RecordsNothingWhenItCannotPick) {
  ChooseAlteration("+5");
  Geometry ellipse = RectangleUpTo(9.0);
  ellipse.type = GeomType_Ellipse;
  host.AddGeometry(ellipse);
  ASSERT_TRUE(host.Switch(Ids().rectangleTool, true));
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_THAT(MessageTexts(),
              ElementsAre("Selected geometry is a type that is not supported for defining the "
                          "pick area."));
  EXPECT_EQ(host.ValuesOf(1, n), before);
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(host.redrawCount, 0);
}

struct SolidRow {
  LgIndex_t ControlIds::*tool;
  const char* line;
};

TEST_F(Apply, TakesABoxOrASphereWhateverTheSurfaceChoice) {
  ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, kSurfaceOnly));
  const SolidRow rows[] = {{&ControlIds::cubeTool, "Marquell PICKCUBE "},
                           {&ControlIds::sphereTool, "Marquell PICKSPHERE "}};
  ChooseAlteration("+5");
  ASSERT_TRUE(host.Choose(Ids().anyAllMenu, 1));
  for (const SolidRow& row : rows) {
    ASSERT_TRUE(host.Switch(Ids().*row.tool, true));
    host.recordedLines.clear();
    const std::vector<double> values = host.ValuesOf(1, n);
    ASSERT_TRUE(host.Press(Ids().applyButton));
    EXPECT_NE(host.ValuesOf(1, n), values);
    EXPECT_THAT(host.recordedLines,
                ElementsAre(StartsWith(row.line),
                            "Marquell ALTERAREA VARIABLE=\"n\" MODIFIER=\"+5\" RULE=ANYINSIDE"));
    EXPECT_FALSE(IsVisible(Ids().seedLabel));
    EXPECT_EQ(host.mouseMode, Mouse_Select);
  }
}

// Surface only -----------------------------------------------------------------------------------

class Surface : public Apply {
 protected:
  void AskForSeed() {
    ChooseAlteration("+5");
    DrawAroundAll();
    ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, kSurfaceOnly));
    ASSERT_TRUE(host.Press(Ids().applyButton));
    ASSERT_EQ(host.mouseMode, Mouse_Probe);
  }
};

TEST_F(Surface, AsksForASeedInsteadOfApplying) {
  AskForSeed();
  EXPECT_TRUE(IsVisible(Ids().seedLabel));
  EXPECT_EQ(TextOf(Ids().seedLabel), "Identify a surface 'seed' point.");
  EXPECT_EQ(host.probeInstruction, "Ctrl + Click on the a seed cell inside the boundary");
  EXPECT_EQ(host.ValuesOf(1, n), before);
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(host.redrawCount, 0);
}

TEST_F(Surface, IsAlteredWhenTheSeedIsClicked) {
  AskForSeed();
  host.Probe(true, 1, 0, 1);
  const std::vector<double> values = host.ValuesOf(1, n);
  EXPECT_EQ(values.front(), before.front() + 5.0);
  EXPECT_THAT(host.recordedLines,
              ElementsAre(StartsWith("Marquell PICKRECTANGLE "),
                          StartsWith("Marquell ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ")));
  EXPECT_EQ(host.mouseMode, Mouse_Select);
}

TEST_F(Surface, IsLeftByEitherRadioButton) {
  for (const LgIndex_t toggle : {kTunnelThrough, kSurfaceOnly}) {
    host.ActiveFrame().geometries.clear();
    AskForSeed();
    ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, toggle));
    EXPECT_EQ(host.mouseMode, Mouse_Select);
    EXPECT_FALSE(IsVisible(Ids().seedLabel));
    EXPECT_EQ(host.ValuesOf(1, n), before);
  }
}

TEST_F(Surface, IsLeftByAnotherTool) {
  AskForSeed();
  ASSERT_TRUE(host.Switch(Ids().circleTool, true));
  EXPECT_FALSE(IsVisible(Ids().seedLabel));
  EXPECT_EQ(host.mouseMode, Mouse_GeomCircle);
}

TEST_F(Surface, LeavesOtherMouseModesAlone) {
  ASSERT_TRUE(host.Switch(Ids().circleTool, true));
  const int changes = host.CallCount("QelUtilMouseSetMode");
  ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, kSurfaceOnly));
  EXPECT_EQ(host.mouseMode, Mouse_GeomCircle);
  EXPECT_EQ(host.CallCount("QelUtilMouseSetMode"), changes);
}

TEST_F(Surface, SaysWhenItsModeCannotBeLeft) {
  AskForSeed();
  host.FailCall("QelUtilMouseSetMode", 1);
  ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, kTunnelThrough));
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  EXPECT_TRUE(IsVisible(Ids().seedLabel)) << "the rest was done nevertheless";
  EXPECT_TRUE(host.IsDialogUp());
}

// Blanking ---------------------------------------------------------------------------------------

class BlankPage : public Apply {
 protected:
  void SetUp() override {
    Apply::SetUp();
    DrawAroundAll();
    ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
    ASSERT_TRUE(host.Press(Ids().applyButton));
    host.recordedLines.clear();
    host.redrawCount = 0;
  }
};

TEST_F(BlankPage, ResetsAllBlanks) {
  ASSERT_TRUE(host.Press(Ids().undoBlanksButton));
  EXPECT_THAT(host.ValuesOf(1, c + 1), Each(0.0));
  EXPECT_THAT(host.recordedLines, ElementsAre("Marquell UNDOBLANK"));
  EXPECT_EQ(host.redrawCount, 1);
}

TEST_F(BlankPage, ResetsAllBlanksUnrecorded) {
  host.isRecording = false;
  ASSERT_TRUE(host.Press(Ids().undoBlanksButton));
  EXPECT_THAT(host.ValuesOf(1, c + 1), Each(0.0));
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(host.redrawCount, 0);
}

TEST_F(BlankPage, SwitchesValueBlankingAndRecordsIt) {
  ASSERT_TRUE(host.Switch(Ids().includeBlankingToggle, false));
  EXPECT_FALSE(host.ActiveFrame().blanking.include);
  ASSERT_TRUE(host.Switch(Ids().includeBlankingToggle, true));
  EXPECT_TRUE(host.ActiveFrame().blanking.include);
  EXPECT_THAT(host.recordedLines,
              ElementsAre("$!BLANKING VALUE{INCLUDE = NO", "$!BLANKING VALUE{INCLUDE = YES"));
}

TEST_F(BlankPage, SwitchesValueBlankingUnrecorded) {
  host.isRecording = false;
  ASSERT_TRUE(host.Switch(Ids().includeBlankingToggle, false));
  EXPECT_FALSE(host.ActiveFrame().blanking.include);
  EXPECT_EQ(host.CallCount("QelUtilMacroRecordRawCommand"), 0);
}

TEST_F(BlankPage, LeavesItsConstraintWhenSwitchedOff) {
  ASSERT_TRUE(host.Switch(Ids().includeBlankingToggle, false));
  const fakehost::Constraint& kept = host.ActiveFrame().blanking.constraints.at(8);
  EXPECT_TRUE(kept.include);
  EXPECT_EQ(kept.varA, c + 1);
  ASSERT_TRUE(host.Switch(Ids().includeBlankingToggle, true));
  EXPECT_TRUE(host.IsBlankedCell(1, 1));
}

// Views ------------------------------------------------------------------------------------------

struct ViewRow {
  const char* rule;
  LgIndex_t ControlIds::*button;
  const char* line;
  std::array<double, 3> angles;  ///< psi, alpha, theta
};

class View : public Apply, public ::testing::WithParamInterface<ViewRow> {
 protected:
  static std::vector<double> AnglesOf(const ViewState& view) {
    return {view.psi, view.alpha, view.theta};
  }
  std::vector<std::string> RawLines() const {
    std::vector<std::string> lines;
    for (const CallRecord& call : host.calls) {
      if (call.function == "QelUtilMacroRecordRawCommand") lines.push_back(call.arguments);
    }
    return lines;
  }
};

TEST_P(View, TurnsAndIsRecordedWithItsFit) {
  ASSERT_TRUE(host.Press(Ids().viewXZButton));
  host.recordedLines.clear();
  host.calls.clear();
  host.redrawCount = 0;
  ASSERT_TRUE(host.Press(Ids().*GetParam().button));
  const ViewState& view = host.ActiveFrame().view;
  EXPECT_NEAR(view.psi, GetParam().angles[0], 1e-9);
  EXPECT_NEAR(view.alpha, GetParam().angles[1], 1e-9);
  EXPECT_NEAR(view.theta, GetParam().angles[2], 1e-9);
  EXPECT_THAT(host.recordedLines,
              ElementsAre(std::string("Marquell ") + GetParam().line, "$!VIEW FITSURFACES"));
  EXPECT_THAT(RawLines(), ElementsAre("\"$!VIEW FITSURFACES\n\""));
  EXPECT_EQ(host.redrawCount, 1);
}

TEST_P(View, RecordsItsFitOnlyWhileRecording) {
  host.isRecording = false;
  ASSERT_TRUE(host.Press(Ids().*GetParam().button));
  EXPECT_THAT(RawLines(), IsEmpty());
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(host.redrawCount, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Buttons, View,
    ::testing::Values(ViewRow{"XY", &ControlIds::viewXYButton, "VIEWXY", {0.0, 0.0, 0.0}},
                      ViewRow{"XZ", &ControlIds::viewXZButton, "VIEWXZ", {90.0, 0.0, 0.0}},
                      ViewRow{"YZ", &ControlIds::viewYZButton, "VIEWYZ", {90.0, -90.0, 0.0}},
                      ViewRow{"ThreeD", &ControlIds::view3DButton, "VIEW3D", {0.0, 0.0, 0.0}}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(View, In3DIsTheOneBeforeTheFirstTurn) {
  ViewState& view = host.ActiveFrame().view;
  view.psi = 60.0;
  view.alpha = 30.0;
  view.theta = 10.0;
  view.magnification = 2.0;
  const std::vector<double> before3D = AnglesOf(view);
  ASSERT_TRUE(host.Press(Ids().viewXYButton));
  ASSERT_TRUE(host.Press(Ids().viewYZButton));
  ASSERT_TRUE(host.Press(Ids().view3DButton));
  EXPECT_EQ(AnglesOf(host.ActiveFrame().view), before3D);
  EXPECT_EQ(host.ActiveFrame().view.magnification, 2.0);
}

TEST_F(View, SaysWhenItsFitCannotBeRecorded) {
  host.FailCall("QelUtilMacroRecordRawCommand", 1);
  ASSERT_TRUE(host.Press(Ids().viewXYButton));
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
  EXPECT_EQ(host.redrawCount, 0);
}

TEST_F(View, NamesTheCallThatCouldNotBeRecorded) {
  host.FailCall("QelUtilMacroRecordRawCommand", 1);
  try {
    Session().RecordView(StandardView::XY);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(),
                MatchesRegex("Assert failed: QelUtilMacroRecordRawCommand\\(\"\\$!VIEW "
                             "FITSURFACES\\\\n\"\\) \\([A-Za-z]+ [0-9]+\\)"));
  }
}

class ViewIn2d : public View {
 protected:
  void SetUp() override {
    Open(PlotType_Cartesian2D);
    host.isRecording = true;
  }
};

TEST_F(ViewIn2d, StaysAndIsRecorded) {
  ASSERT_TRUE(host.Press(Ids().viewYZButton));
  EXPECT_THAT(AnglesOf(host.ActiveFrame().view), ElementsAre(0.0, 0.0, 0.0));
  EXPECT_THAT(host.recordedLines, ElementsAre("Marquell VIEWYZ", "$!VIEW FITSURFACES"));
}

}  // namespace
