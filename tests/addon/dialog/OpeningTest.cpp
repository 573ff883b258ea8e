// Opening and closing the dialog, its two tab pages, and what they say at first.
#include "DialogTest.h"
#include "HostLock.h"
#include "SessionRegistry.h"

namespace {

using fakehost::DialogTest;
using fakehost::MessageShown;
using qelvane::qelutiltools::DialogSession;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::PickRule;
using qelvane::qelutiltools::RefillVariableMenu;
using qelvane::qelutiltools::Selvane;
using qelvane::qelutiltools::SessionRegistry;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Opening : public DialogTest {
 protected:
  void Reopen() {
    ASSERT_TRUE(host.CloseWindow(Ids().dialog));
    ASSERT_FALSE(host.IsDialogUp());
    host.ChooseMenu("Marquell ...");
    ASSERT_TRUE(host.IsDialogUp());
  }
  std::vector<LgIndex_t> ToolsOn() const {
    std::vector<LgIndex_t> on;
    for (const LgIndex_t tool : {Ids().elementTool, Ids().rectangleTool, Ids().circleTool,
                                 Ids().polygonTool, Ids().cubeTool, Ids().sphereTool}) {
      if (IsOn(tool)) on.push_back(tool);
    }
    return on;
  }
};

TEST_F(Opening, BindsToTheSessionOfTheActiveFrame) {
  const HostLock lock;
  EXPECT_NE(DialogSession(), nullptr);
  EXPECT_EQ(DialogSession(), SessionRegistry::Instance().Find());
}

TEST_F(Opening, BindsToAnotherFramesSessionTheNextTime) {
  Selvane* const first = DialogSession();
  AddBlock(PlotType_Cartesian2D);
  host.ChooseMenu("Marquell ...");
  EXPECT_NE(DialogSession(), first);
  host.ActivateFrame(0);
  host.ChooseMenu("Marquell ...");
  EXPECT_EQ(DialogSession(), first);
}

TEST_F(Opening, SetsNothingWhereNothingCanBePicked) {
  const std::vector<std::string> items = host.At(Ids().variableMenu).items;
  host.ActiveFrame().plotType = PlotType_Line;
  host.ChooseMenu("Marquell ...");
  EXPECT_EQ(DialogSession(), nullptr);
  EXPECT_EQ(host.At(Ids().variableMenu).items, items);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(Opening, ShowsTheDefaultsOfANewSession) {
  EXPECT_THAT(ToolsOn(), IsEmpty());
  EXPECT_EQ(ShownPage(), Ids().startPage);
  EXPECT_EQ(host.At(Ids().tab).value, 1);
  EXPECT_EQ(TextOf(Ids().applyButton), "Apply Alteration");
  EXPECT_EQ(TextOf(Ids().modifierField), "+0");
  EXPECT_THAT(host.At(Ids().variableMenu).items, ElementsAre("X", "Y", "Z", "n", "c"));
  EXPECT_EQ(host.ChosenItem(Ids().insideOutsideMenu), "Inside");
  EXPECT_EQ(host.ChosenItem(Ids().anyAllMenu), "All");
  EXPECT_EQ(TextOf(Ids().cornersLabel), "corners inside");
  EXPECT_FALSE(IsSensitive(Ids().applyButton));
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
  EXPECT_FALSE(IsOn(Ids().shadeToggle));
  EXPECT_FALSE(IsVisible(Ids().shadeToggle));
  EXPECT_FALSE(IsVisible(Ids().seedLabel));
  EXPECT_TRUE(IsVisible(Ids().surfaceRadioBox));
  EXPECT_EQ(host.mouseMode, Mouse_Select);
}

TEST_F(Opening, SwitchesThePickToolOff) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_GT(host.ZoneNamed("PICKING_CUBE"), 0);
  host.ChooseMenu("Marquell ...");
  EXPECT_EQ(Session().Kind(), PickKind::None);
  EXPECT_THAT(ToolsOn(), IsEmpty());
  EXPECT_EQ(ShownPage(), Ids().startPage);
  EXPECT_EQ(host.ZoneNamed("PICKING_CUBE"), 0);
}

struct RuleRow {
  PickRule rule;
  const char* side;
  const char* count;
  const char* corners;
};

TEST_F(Opening, ShowsTheRuleOfTheSession) {
  const RuleRow rows[] = {{PickRule::AnyInside, "Inside", "Any", "corners inside"},
                          {PickRule::AnyOutside, "Outside", "Any", "corners outside"},
                          {PickRule::AllInside, "Inside", "All", "corners inside"},
                          {PickRule::AllOutside, "Outside", "All", "corners outside"}};
  for (const RuleRow& row : rows) {
    Session().SetPickRule(row.rule);
    Reopen();
    EXPECT_EQ(host.ChosenItem(Ids().insideOutsideMenu), row.side);
    EXPECT_EQ(host.ChosenItem(Ids().anyAllMenu), row.count);
    EXPECT_EQ(TextOf(Ids().cornersLabel), row.corners);
  }
}

TEST_F(Opening, KeepsVariableAndModifierOfTheSession) {
  ChooseAlteration("*1.5");
  Reopen();
  EXPECT_EQ(host.ChosenItem(Ids().variableMenu), "n");
  EXPECT_EQ(TextOf(Ids().modifierField), "*1.5");
}

TEST_F(Opening, ReturnsToThePageThatWasActiveLast) {
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  Reopen();
  EXPECT_EQ(host.At(Ids().tab).value, 2);
  EXPECT_TRUE(Session().IsBlankMode());
  EXPECT_EQ(TextOf(Ids().applyButton), "Apply Blanking");
  // Another data set has a mode of its own.
  AddBlock(PlotType_Cartesian3D);
  host.ChooseMenu("Marquell ...");
  EXPECT_EQ(host.At(Ids().tab).value, 1);
  EXPECT_EQ(TextOf(Ids().applyButton), "Apply Alteration");
  host.ActivateFrame(0);
  host.ChooseMenu("Marquell ...");
  EXPECT_EQ(host.At(Ids().tab).value, 2);
}

TEST_F(Opening, DropsTheUndo) {
  AlterAll();
  host.ChooseMenu("Marquell ...");
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Opening, RefusesToListAVariableWithoutAName) {
  const HostLock lock;
  host.FailCall("QelUtilVarGetName", 2);
  try {
    RefillVariableMenu();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(),
                ::testing::MatchesRegex("Assert failed: QelUtilVarGetName\\(varNum, &varName\\) "
                                        "\\([A-Za-z]+ [0-9]+\\)"));
  }
}

TEST_F(Opening, ClosesWithTheToolSwitchedOff) {
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  host.mouseMode = Mouse_Zoom;
  ASSERT_TRUE(host.CloseWindow(Ids().dialog));
  EXPECT_FALSE(host.IsDialogUp());
  EXPECT_EQ(Session().Kind(), PickKind::None);
  EXPECT_EQ(host.mouseMode, Mouse_Select);
  EXPECT_EQ(host.ZoneNamed("PICKING_SPHERE"), 0);
  EXPECT_THAT(ToolsOn(), IsEmpty());
  EXPECT_EQ(ShownPage(), Ids().startPage);
}

TEST_F(Opening, AsksTheHostForItsHelpPage) {
  ASSERT_TRUE(host.AskForHelp(Ids().dialog));
  std::vector<std::string> asked;
  for (const fakehost::CallRecord& call : host.calls) {
    if (call.function == "QelUtilHelp") asked.push_back(call.arguments);
  }
  EXPECT_THAT(asked, ElementsAre("\"selvane.html\", false, 0"));
}

// The pages -------------------------------------------------------------------------------------

class Pages : public Opening {
 protected:
  void RefuseTheBlankingVariable() {
    host.FailCall("QelUtilDataSetAddVarX", 1);
    ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
    ASSERT_TRUE(host.WasFaultHit());
  }
};

TEST_F(Pages, BlankTakesTheDataSetIntoBlanking) {
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  EXPECT_TRUE(Session().IsBlankMode());
  EXPECT_THAT(host.At(Ids().variableMenu).items,
              ElementsAre("X", "Y", "Z", "n", "c", "PICK_BLANK"));
  EXPECT_TRUE(IsSensitive(Ids().includeBlankingToggle));
  EXPECT_EQ(TextOf(Ids().applyButton), "Apply Blanking");
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_F(Pages, BlankShowsWhetherBlankingIsOn) {
  for (const bool isOn : {true, false, true}) {
    host.ActiveFrame().blanking.include = isOn;
    ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
    EXPECT_EQ(IsOn(Ids().includeBlankingToggle), isOn);
    ASSERT_TRUE(host.TurnTo(Ids().tab, 1));
  }
}

TEST_F(Pages, BlankSaysWhenTheDataSetCannotBeBlanked) {
  RefuseTheBlankingVariable();
  ASSERT_THAT(host.messageBoxes, SizeIs(1));
  EXPECT_EQ(host.messageBoxes[0].text, "Unable to initialize this data set for pick blanking.");
  EXPECT_EQ(host.messageBoxes[0].kind, MessageBox_Information);
  EXPECT_FALSE(IsSensitive(Ids().includeBlankingToggle));
  EXPECT_EQ(TextOf(Ids().applyButton), "Apply Blanking");
  EXPECT_EQ(host.At(Ids().tab).value, 2);
  EXPECT_FALSE(Session().IsBlankMode());
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(Pages, BlankCanBeTakenAgainAfterARefusal) {
  RefuseTheBlankingVariable();
  ASSERT_TRUE(host.TurnTo(Ids().tab, 1));
  EXPECT_EQ(TextOf(Ids().applyButton), "Apply Alteration");
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  EXPECT_TRUE(IsSensitive(Ids().includeBlankingToggle));
  EXPECT_TRUE(Session().IsBlankMode());
}

TEST_F(Pages, AlterReturnsToVariableAndModifier) {
  ChooseAlteration("/4");
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  ASSERT_TRUE(host.TurnTo(Ids().tab, 1));
  EXPECT_FALSE(Session().IsBlankMode());
  EXPECT_EQ(host.ChosenItem(Ids().variableMenu), "n");
  EXPECT_EQ(TextOf(Ids().modifierField), "/4");
  EXPECT_EQ(TextOf(Ids().applyButton), "Apply Alteration");
}

TEST_F(Pages, BothDropTheUndo) {
  AlterAll();
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  EXPECT_FALSE(Session().IsUndoAvailable());
  ASSERT_TRUE(host.TurnTo(Ids().tab, 1));
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Pages, AlterDropsTheUndoOfAnAlterationMadeOnTheOther) {
  // A data set that cannot be blanked goes on being altered there.
  RefuseTheBlankingVariable();
  Session().SetAlterVariable(n);
  host.DrawGeometry(RectangleUpTo(9.0));
  ASSERT_TRUE(host.Press(Ids().applyButton));
  ASSERT_TRUE(Session().IsUndoAvailable());
  ASSERT_TRUE(host.TurnTo(Ids().tab, 1));
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Pages, RefreshTheApplyButton) {
  const QelGeomID_t geometry = host.AddGeometry(RectangleUpTo(1.0));
  ASSERT_FALSE(IsSensitive(Ids().applyButton));
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  EXPECT_TRUE(IsSensitive(Ids().applyButton));
  host.DeleteGeometry(geometry);
  ASSERT_TRUE(host.TurnTo(Ids().tab, 1));
  EXPECT_FALSE(IsSensitive(Ids().applyButton));
}

TEST_F(Pages, DoNothingWhenLeft) {
  host.calls.clear();
  host.At(Ids().tab).made.left(1);
  EXPECT_EQ(host.CallCount("QelGUISetSensitivity"), 0);
  EXPECT_EQ(host.CallCount("QelGUIButtonSetText"), 0);
  EXPECT_FALSE(Session().IsBlankMode());
}

}  // namespace
