// What each control of the dialog does, and what the dialog does when the host changes.
#include "DialogFixture.h"

#include "HostLock.h"
#include "PlotActions.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <fmt/format.h>

namespace scenario {
namespace {

using C = ControlIds;
using qelvane::qelutiltools::PickKind;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Opening and closing --------------------------------------------------------------------------

TEST_F(DialogTest, OpensWithNothingPickedAndTheVariablesListed) {
  EXPECT_EQ(Session().Kind(), PickKind::None);
  EXPECT_THAT(At(Controls.variableMenu).items, ElementsAre("X", "Y", "Z", "p", "c"));
  EXPECT_EQ(At(Controls.modifierField).text, "+0");
  EXPECT_EQ(At(Controls.insideOutsideMenu).selected, 1);
  EXPECT_EQ(At(Controls.anyAllMenu).selected, 2);
  EXPECT_EQ(At(Controls.cornersLabel).text, "corners inside");
  EXPECT_TRUE(host.dialogs.IsShown(Controls.startPage));
  EXPECT_TRUE(host.dialogs.IsShown(Controls.surfaceRadioBox));
  EXPECT_FALSE(host.dialogs.IsShown(Controls.shadeToggle));
  EXPECT_FALSE(host.dialogs.IsShown(Controls.seedLabel));
  EXPECT_FALSE(At(Controls.applyButton).isSensitive);
  EXPECT_EQ(At(Controls.applyButton).text, "Apply Alteration");
}

TEST_F(DialogTest, EndsThePickWhenItIsClosed) {
  Switch(Controls.cubeTool);
  EXPECT_TRUE(host.dialogs.CloseWindow(Controls.dialog));
  EXPECT_EQ(Session().Kind(), PickKind::None);
  EXPECT_FALSE(At(Controls.cubeTool).selected != 0);
  EXPECT_EQ(host.frames.Active()->Data()->ZoneCount(), 1);
}

// Tools ----------------------------------------------------------------------------------------

struct ToolRow {
  LgIndex_t ControlIds::*tool;
  PickKind kind;
  LgIndex_t ControlIds::*page;
  QelMouseMode_e mouseMode;
  bool hasSurfaceChoice;
  bool hasShade;
};

TEST_F(DialogTest, ToolsShowTheirPageAndSetTheMouseMode) {
  const ToolRow rows[] = {
      {&C::elementTool, PickKind::Element, &C::elementPage, Mouse_Probe, false, false},
      {&C::rectangleTool, PickKind::Rectangle, &C::rectanglePage, Mouse_GeomRectangle, true, false},
      {&C::circleTool, PickKind::Circle, &C::circlePage, Mouse_GeomCircle, true, false},
      {&C::polygonTool, PickKind::Polygon, &C::polygonPage, Mouse_GeomPolyline, true, false},
      {&C::cubeTool, PickKind::Cube, &C::cubePage, Mouse_Select, false, true},
      {&C::sphereTool, PickKind::Sphere, &C::spherePage, Mouse_Select, false, true}};
  for (const ToolRow& row : rows) {
    Switch(Controls.*row.tool);
    EXPECT_EQ(Session().Kind(), row.kind);
    EXPECT_TRUE(host.dialogs.IsShown(Controls.*row.page));
    EXPECT_EQ(host.interaction.mouseMode, row.mouseMode);
    EXPECT_EQ(host.dialogs.IsShown(Controls.surfaceRadioBox), row.hasSurfaceChoice);
    EXPECT_EQ(host.dialogs.IsShown(Controls.shadeToggle), row.hasShade);
    for (const ToolRow& other : rows) {
      EXPECT_EQ(At(Controls.*other.tool).selected != 0, other.kind == row.kind);
    }
    Switch(Controls.*row.tool, false);
    EXPECT_EQ(Session().Kind(), PickKind::None);
    EXPECT_TRUE(host.dialogs.IsShown(Controls.startPage));
  }
}

TEST_F(DialogTest, ShowsTheNumbersOfTheBox) {
  Switch(Controls.cubeTool);
  const auto& box = Session().Cube();
  EXPECT_EQ(std::stod(At(Controls.anchorXField).text),
            std::stod(fmt::format("{:g}", box.Parameter(0))));
  EXPECT_EQ(std::stod(At(Controls.sizeZField).text),
            std::stod(fmt::format("{:g}", box.Parameter(5))));
  EXPECT_EQ(At(Controls.rotateYField).text, "0");
}

// Rule -----------------------------------------------------------------------------------------

TEST_F(DialogTest, RuleFollowsBothMenus) {
  for (LgIndex_t side = 1; side <= 2; ++side) {
    for (LgIndex_t count = 1; count <= 2; ++count) {
      EXPECT_TRUE(host.dialogs.Choose(Controls.insideOutsideMenu, side));
      EXPECT_TRUE(host.dialogs.Choose(Controls.anyAllMenu, count));
      EXPECT_EQ(static_cast<int>(Session().Rule()), (side - 1) + 2 * (count - 1));
      EXPECT_EQ(At(Controls.cornersLabel).text, side == 1 ? "corners inside" : "corners outside");
    }
  }
}

TEST_F(DialogTest, EveryNewChoiceDropsUndo) {
  Alter();
  host.dialogs.Choose(Controls.anyAllMenu, 1);
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(At(Controls.undoAlterButton).isSensitive);
  Alter();
  host.dialogs.Choose(Controls.variableMenu, 5);
  EXPECT_FALSE(Session().IsUndoAvailable());
  Alter();
  Enter(Controls.modifierField, "+1");
  EXPECT_FALSE(Session().IsUndoAvailable());
  Alter();
  Switch(Controls.circleTool);
  EXPECT_FALSE(Session().IsUndoAvailable());
}

// Alter page -----------------------------------------------------------------------------------

TEST_F(DialogTest, ShowsTheModifierInForceAfterEveryEntry) {
  Enter(Controls.modifierField, "10");
  EXPECT_EQ(At(Controls.modifierField).text, "=10");
  Enter(Controls.modifierField, "*1.4x");
  EXPECT_EQ(At(Controls.modifierField).text, "*1.4");
  EXPECT_THAT(said, IsEmpty());
  Enter(Controls.modifierField, " /0 ");
  EXPECT_EQ(At(Controls.modifierField).text, "*1.4");
  EXPECT_THAT(
      said, ElementsAre(
                "Bad input for the value modifier:   /0 \n\nValid input is in the form of "
                "<operator><value>\n  where <operator> is one of: = + - * /\nIf no operator is "
                "included, = is assumed.\n\nExamples:\n    99\tAssign a value of 99 to all picked "
                "elements.\n  =-33\tAssign a value of -33 to all picked elements.\n   +10\tAdd 10 "
                "to the current value of picked elements.\n  -0.5\tSubtract .5 from the current "
                "value of picked elements.\n  *1.4\tMultiply current value of picked elements by "
                "1.4\n  /2.0\tDivide current value of picked elements by 2.\n  NOTE:  /0 is not "
                "allowed."));
  EXPECT_THAT(kinds, ElementsAre(MessageBox_Error));
}

TEST_F(DialogTest, SyncsTheContours) {
  host.dialogs.Choose(Controls.variableMenu, 4);
  EXPECT_EQ(host.frames.Active()->styles.contourVariable, 0);
  Switch(Controls.syncContoursToggle);
  EXPECT_EQ(host.frames.Active()->styles.contourVariable, 4);
  host.dialogs.Choose(Controls.variableMenu, 5);
  EXPECT_EQ(host.frames.Active()->styles.contourVariable, 5);
  Switch(Controls.syncContoursToggle, false);
  host.dialogs.Choose(Controls.variableMenu, 4);
  EXPECT_EQ(host.frames.Active()->styles.contourVariable, 5);
}

TEST_F(DialogTest, TellsOfAnUndoGeometryThatIsGone) {
  Alter();
  Act(host, "$!GEOMETRY DELETE 1");
  Press(Controls.undoAlterButton);
  EXPECT_THAT(said,
              ElementsAre("Unable to perform Undo because geometry has been changed or deleted."));
  EXPECT_FALSE(At(Controls.undoAlterButton).isSensitive);
}

// Blank page -----------------------------------------------------------------------------------

TEST_F(DialogTest, BlankPageMakesTheVariableAndRelabelsApply) {
  EXPECT_TRUE(host.dialogs.TurnToPage(Controls.tab, 2));
  EXPECT_TRUE(Session().IsBlankMode());
  EXPECT_EQ(At(Controls.applyButton).text, "Apply Blanking");
  EXPECT_EQ(At(Controls.variableMenu).items.back(), "PICK_BLANK");
  EXPECT_EQ(At(Controls.includeBlankingToggle).selected, 0);
  EXPECT_TRUE(host.dialogs.TurnToPage(Controls.tab, 1));
  EXPECT_FALSE(Session().IsBlankMode());
  EXPECT_EQ(At(Controls.applyButton).text, "Apply Alteration");
}

TEST_F(DialogTest, IncludeBlankingSwitchesAndRecords) {
  host.dialogs.TurnToPage(Controls.tab, 2);
  Switch(Controls.includeBlankingToggle);
  EXPECT_TRUE(QelUtilBlankingIsActive());
  Switch(Controls.includeBlankingToggle, false);
  EXPECT_FALSE(QelUtilBlankingIsActive());
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre("# marquell journal 1", "$!BLANKING VALUE{INCLUDE = YES",
                          "$!BLANKING VALUE{INCLUDE = NO"));
}

TEST_F(DialogTest, FollowsBlankingThatTheUserSwitchesElsewhere) {
  host.dialogs.TurnToPage(Controls.tab, 2);
  Act(host, "$!BLANKING VALUE{INCLUDE = YES}");
  EXPECT_EQ(At(Controls.includeBlankingToggle).selected, 1);
}

// Boundary fields ------------------------------------------------------------------------------

struct FieldRow {
  LgIndex_t ControlIds::*field;
  bool isSphere;
  int parameter;
  const char* message;
};

const FieldRow kFieldRows[] = {
    {&C::anchorXField, false, 0, "Illegal input ( abc ) for X anchor"},
    {&C::anchorYField, false, 1, "Illegal input ( abc ) for Y anchor"},
    {&C::anchorZField, false, 2, "Illegal input ( abc ) for Z anchor"},
    {&C::sizeXField, false, 3, "Illegal input ( abc ) for X size"},
    {&C::sizeYField, false, 4, "Illegal input ( abc ) for Y size"},
    {&C::sizeZField, false, 5, "Illegal input ( abc ) for Z size"},
    {&C::rotateXField, false, 6, "Illegal input ( abc ) for X rotation"},
    {&C::rotateYField, false, 7, "Illegal input ( abc ) for y rotation"},
    {&C::rotateZField, false, 8, "Illegal input ( abc ) for Z rotation"},
    {&C::centerXField, true, 0, "Illegal input ( abc ) for center X"},
    {&C::centerYField, true, 1, "Illegal input ( abc ) for center Y"},
    {&C::centerZField, true, 2, "Illegal input ( abc ) for center Z"},
    {&C::radiusField, true, 3, "Illegal input ( abc ) for radius"},
};

TEST_F(DialogTest, FieldsSetAndRestoreTheirNumber) {
  for (const FieldRow& row : kFieldRows) {
    SCOPED_TRACE(row.message);
    Switch(row.isSphere ? Controls.sphereTool : Controls.cubeTool);
    const LgIndex_t field = Controls.*row.field;
    said.clear();
    kinds.clear();
    Enter(field, " 1.25 ");
    EXPECT_EQ(Session().Boundary3d()->Parameter(row.parameter), 1.25);
    EXPECT_EQ(At(field).text, "1.25");
    Enter(field, "abc");
    EXPECT_THAT(said, ElementsAre(row.message));
    EXPECT_THAT(kinds, ElementsAre(MessageBox_Error));
    EXPECT_EQ(At(field).text, "1.25");
    EXPECT_EQ(Session().Boundary3d()->Parameter(row.parameter), 1.25);

    const bool isAngle = row.parameter >= 6;
    EXPECT_TRUE(host.dialogs.Spin(field, true));
    const double up = Session().Boundary3d()->Parameter(row.parameter);
    if (isAngle) {
      EXPECT_EQ(up, 6.25);
    }
    EXPECT_GT(up, 1.25);
    EXPECT_EQ(At(field).text, fmt::format("{:g}", up));
    EXPECT_TRUE(host.dialogs.Spin(field, false));
    EXPECT_NEAR(Session().Boundary3d()->Parameter(row.parameter), 1.25, 1e-12);
  }
}

TEST_F(DialogTest, AnglesWrapWhenTheyAreSpunAndNotWhenTheyAreTyped) {
  Switch(Controls.cubeTool);
  Enter(Controls.rotateXField, "357.5");
  host.dialogs.Spin(Controls.rotateXField, true);
  EXPECT_EQ(At(Controls.rotateXField).text, "2.5");
  host.dialogs.Spin(Controls.rotateXField, false);
  EXPECT_EQ(At(Controls.rotateXField).text, "-2.5");
  Enter(Controls.rotateXField, "725");
  EXPECT_EQ(At(Controls.rotateXField).text, "725");
}

TEST_F(DialogTest, FieldsWithoutABoundaryOnlyShowWhatWasTyped) {
  Switch(Controls.cubeTool);
  const auto before = Session().Cube().Definition();
  Switch(Controls.elementTool);
  // The page is hidden, so nobody can type there; the callback all the same holds its own.
  Control& field = *host.dialogs.Find(Controls.anchorXField);
  field.text = "7";
  EXPECT_TRUE(field.callbacks.entered("7"));
  EXPECT_EQ(field.text, "7");
  EXPECT_EQ(Session().Cube().Definition(), before);
  field.text = "abc";
  EXPECT_TRUE(field.callbacks.entered("abc"));
  EXPECT_EQ(field.text, "0");
}

TEST_F(DialogTest, AFieldThatChangesTheBoxDropsUndo) {
  host.dialogs.Choose(Controls.variableMenu, 4);
  Enter(Controls.modifierField, "+1");
  Switch(Controls.cubeTool);
  Press(Controls.applyButton);
  ASSERT_TRUE(Session().IsUndoAvailable());
  Enter(Controls.sizeXField, "3");
  EXPECT_FALSE(Session().IsUndoAvailable());
}

// Apply ----------------------------------------------------------------------------------------

TEST_F(DialogTest, SurfaceOnlyAsksForASeed) {
  host.dialogs.Choose(Controls.variableMenu, 4);
  Switch(Controls.rectangleTool);
  Draw();
  EXPECT_TRUE(host.dialogs.Choose(Controls.surfaceRadioBox, 2));
  Press(Controls.applyButton);
  EXPECT_TRUE(host.dialogs.IsShown(Controls.seedLabel));
  EXPECT_EQ(host.interaction.mouseMode, Mouse_Probe);
  EXPECT_EQ(host.interaction.probeInstruction,
            "Ctrl + Click on the a seed cell inside the boundary");
  EXPECT_TRUE(host.dialogs.Choose(Controls.surfaceRadioBox, 1));
  EXPECT_FALSE(host.dialogs.IsShown(Controls.seedLabel));
  EXPECT_EQ(host.interaction.mouseMode, Mouse_Select);
}

TEST_F(DialogTest, ViewsRecordTheirCommandAndTheFit) {
  Press(Controls.viewXZButton);
  EXPECT_NEAR(host.frames.Active()->view.psiDeg, 90.0, 1e-9);
  Press(Controls.view3DButton);
  EXPECT_NEAR(host.frames.Active()->view.psiDeg, 0.0, 1e-9);
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre("# marquell journal 1", "Marquell VIEWXZ", "$!VIEW FITSURFACES",
                          "Marquell VIEW3D", "$!VIEW FITSURFACES"));
  host.recorder.Stop();
  Press(Controls.viewXYButton);
  EXPECT_EQ(host.recorder.Lines().size(), 5U);
}

// What the host tells --------------------------------------------------------------------------

TEST_F(DialogTest, ManyNewVariablesRefillTheMenuOnce) {
  DataSet& data = *host.frames.Active()->Data();
  {
    const HostAction action(host.lock);
    for (int n = 0; n < 10; ++n) {
      data.AddVariable("v" + std::to_string(n), {}, false);
      host.notices.Send(StateChange_VarsAdded);
    }
  }
  EXPECT_EQ(host.idle.Size(), 1U);
  host.idle.Run();
  EXPECT_EQ(At(Controls.variableMenu).items.size(), 15U);
}

TEST_F(DialogTest, OwnChangesOnlyTouchTheMenu) {
  Alter();
  QelUtilLockStart(qelvane::qelutiltools::AddOnID);
  host.notices.SendStyle({SV_THREEDVIEW});
  QelUtilLockFinish(qelvane::qelutiltools::AddOnID);
  EXPECT_TRUE(Session().IsUndoAvailable());
  Act(host, "$!VIEW PSI=20");
  EXPECT_FALSE(Session().IsUndoAvailable()) << "a drawn area is tied to the view";
}

TEST_F(DialogTest, ATurnedViewLeavesTheUndoOfABox) {
  host.dialogs.Choose(Controls.variableMenu, 4);
  Enter(Controls.modifierField, "+1");
  Switch(Controls.cubeTool);
  Press(Controls.applyButton);
  Act(host, "$!VIEW PSI=20");
  EXPECT_TRUE(Session().IsUndoAvailable());
}

TEST_F(DialogTest, MouseModesOfTheUserSetTheTool) {
  Switch(Controls.elementTool);
  ChooseMouseMode(host, Mouse_GeomCircle);
  EXPECT_EQ(Session().Kind(), PickKind::Circle);
  EXPECT_EQ(At(Controls.circleTool).selected, 1);
  ChooseMouseMode(host, Mouse_Zoom);
  EXPECT_EQ(Session().Kind(), PickKind::None);
  EXPECT_EQ(At(Controls.circleTool).selected, 0);
  Switch(Controls.sphereTool);
  ChooseMouseMode(host, Mouse_Rotate);
  EXPECT_EQ(Session().Kind(), PickKind::Sphere);
}

TEST_F(DialogTest, ADrawnGeometryIsTakenWithItsKind) {
  Act(host, "$!GEOMETRY CIRCLE X=0 Y=0 RADIUS=1");
  EXPECT_EQ(Session().Kind(), PickKind::Circle);
  EXPECT_TRUE(Session().PolyBoundary().IsCircle());
  EXPECT_TRUE(At(Controls.applyButton).isSensitive);
  Act(host, "$!GEOMETRY ELLIPSE X=0 Y=0 WIDTH=1 HEIGHT=2");
  EXPECT_EQ(Session().Kind(), PickKind::Circle) << "no area is made of an ellipse";
}

TEST_F(DialogTest, APlotOfAnotherKindClosesItAndGreysTheMenu) {
  Act(host, "$!PLOTTYPE SKETCH");
  EXPECT_FALSE(host.dialogs.IsUp(Controls.dialog));
  EXPECT_FALSE(ChooseMenu(host, "Data", "Marquell ..."));
  Act(host, "$!PLOTTYPE CARTESIAN3D");
  EXPECT_TRUE(ChooseMenu(host, "Data", "Marquell ..."));
}

TEST_F(DialogTest, ClosingAllDataDropsItAndForgetsTheSession) {
  host.CloseAll();
  host.idle.Run();
  EXPECT_FALSE(host.dialogs.IsUp(Controls.dialog));
  EXPECT_EQ(DialogSession(), nullptr);
}

// Questions: an answer of No holds for the rest of the process, so these come last ---------------

TEST_F(DialogTest, YesSwitchesOnWhatIsMissing) {
  auto& layers = host.frames.Active()->styles.layerActive;
  layers.fill(false);
  host.messages.QueueAnswer(true);
  Switch(Controls.cubeTool);
  EXPECT_TRUE(layers[static_cast<std::size_t>(Layer::Edge)]);
  host.messages.QueueAnswer(true);
  Switch(Controls.sphereTool);
  EXPECT_TRUE(layers[static_cast<std::size_t>(Layer::Mesh)]);
  host.messages.QueueAnswer(true);
  Switch(Controls.shadeToggle);
  EXPECT_TRUE(layers[static_cast<std::size_t>(Layer::Shade)]);
  EXPECT_TRUE(Session().Sphere().IsShadeShown());
  EXPECT_THAT(
      said, ElementsAre(
                "Either the Edge or Mesh layer must be active in order to see the 3D pick "
                "boundary.\n\nWould you like to turn on the Edge layer ?",
                "The Mesh layer must be active in order to see the 3D sphere.\n\nWould you like to "
                "turn it on ?",
                "The Shade layer must be active in order to shade the 3D pick boundary "
                "surface.\n\nWould you like to turn it on ?"));
  EXPECT_THAT(kinds, testing::Each(MessageBox_YesNo));
  said.clear();
  Switch(Controls.shadeToggle, false);
  EXPECT_FALSE(Session().Sphere().IsShadeShown());
  EXPECT_THAT(said, IsEmpty());
}

TEST_F(DialogTest, NoIsTakenForGood) {
  auto& layers = host.frames.Active()->styles.layerActive;
  layers[static_cast<std::size_t>(Layer::Shade)] = false;
  Switch(Controls.cubeTool);
  host.messages.QueueAnswer(false);
  Switch(Controls.shadeToggle);
  EXPECT_TRUE(Session().Cube().IsShadeShown());
  EXPECT_THAT(said, ElementsAre(HasSubstr("The Shade layer must be active")));
  Switch(Controls.shadeToggle, false);
  Switch(Controls.shadeToggle);
  EXPECT_EQ(said.size(), 1U);
  EXPECT_FALSE(layers[static_cast<std::size_t>(Layer::Shade)]);
}

TEST_F(DialogTest, AsksForValueBlankingBeforeItHides) {
  host.dialogs.TurnToPage(Controls.tab, 2);
  Switch(Controls.cubeTool);
  host.messages.QueueAnswer(false);
  Press(Controls.applyButton);
  EXPECT_THAT(said, ElementsAre("Value blanking must be on to see the results of this "
                                "operation.\n\nWould you like to turn it on ?"));
  EXPECT_FALSE(QelUtilBlankingIsActive());
  Press(Controls.applyButton);
  EXPECT_EQ(said.size(), 1U);
}

TEST_F(DialogTest, IdleWorkDoesNothingOnceTheHostQuits) {
  host.Quit();
  DataSet& data = *host.frames.Active()->Data();
  {
    const HostAction action(host.lock);
    data.AddVariable("late", {}, false);
    host.notices.Send(StateChange_VarsAdded);
  }
  host.idle.Run();
  EXPECT_THAT(At(Controls.variableMenu).items, ElementsAre("X", "Y", "Z", "p", "c"));
}

}  // namespace
}  // namespace scenario
