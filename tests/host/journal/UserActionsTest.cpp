#include "UserActions.h"

#include "HostCommands.h"
#include "TestData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qelhost {
namespace {

using ::testing::ElementsAre;

class UserActions : public ::testing::Test {
 protected:
  UserActions() {
    host.ShowDataSet(MakeData(3, 3, 3));
    host.recorder.Start(FirstStateOf(host.frames));
  }
  ~UserActions() override {
    host.recorder.Stop();
    host.CloseAll();
  }
  const Geometry& Drawn() { return *host.frames.Active()->geometries.At(1); }

  Host& host = Host::Instance();
};

struct ActionRow {
  const char* name;
  Geometry geometry;
  const char* command;
};
Geometry Shape(QelGeomType_e type, double x, double y, double a, double b,
               std::vector<std::array<double, 2>> points = {}) {
  Geometry geometry;
  geometry.type = type;
  geometry.anchor = {x, y, 0.0};
  geometry.size = {a, b};
  geometry.points = std::move(points);
  return geometry;
}

TEST_F(UserActions, EveryShapeIsDrawnByItsOwnCommand) {
  const ActionRow rows[] = {
      {"Rectangle", Shape(GeomType_Rectangle, 1, -2, 3, 4.5),
       "$!GEOMETRY RECTANGLE X=1 Y=-2 WIDTH=3 HEIGHT=4.5"},
      {"Square", Shape(GeomType_Square, 0, 0, 1e-7, 0), "$!GEOMETRY SQUARE X=0 Y=0 SIZE=1e-07"},
      {"Circle", Shape(GeomType_Circle, 0.5, 0.25, 2, 0),
       "$!GEOMETRY CIRCLE X=0.5 Y=0.25 RADIUS=2"},
      {"Ellipse", Shape(GeomType_Ellipse, 0, 0, 2, 1),
       "$!GEOMETRY ELLIPSE X=0 Y=0 WIDTH=2 HEIGHT=1"},
      {"Polyline", Shape(GeomType_LineSegs, 1, 2, 0, 0, {{{0, 0}}, {{1.5, 0}}, {{0, -1}}}),
       "$!GEOMETRY POLYLINE X=1 Y=2 POINTS=\"0,0 1.5,0 0,-1\""}};
  for (const ActionRow& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(DrawCommand(row.geometry), row.command);
    Act(host, DrawCommand(row.geometry));
    EXPECT_EQ(Drawn().type, row.geometry.type);
    EXPECT_EQ(Drawn().anchor, row.geometry.anchor);
    EXPECT_EQ(Drawn().size, row.geometry.size);
    EXPECT_EQ(Drawn().points, row.geometry.points);
    Act(host, "$!GEOMETRY DELETE 1");
  }
}

TEST_F(UserActions, WhatIsDrawnByHandHasSixDigits) {
  Act(host, DrawCommand(Shape(GeomType_Circle, 1.0 / 3.0, 2e6 + 0.5, 0.1, 0)));
  EXPECT_EQ(Drawn().anchor[0], 0.333333);
  EXPECT_EQ(Drawn().anchor[1], 2e6);
}

TEST_F(UserActions, AreRecordedOnceAndOnlyWhenTheyWorked) {
  Act(host, "$!TIME 0.5");
  EXPECT_THROW(Act(host, "$!GEOMETRY DELETE 1"), CommandError);
  EXPECT_THROW(Act(host, "$!FROBNICATE"), CommandError);
  Act(host, "$!VIEW PSI=20");
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre("# marquell journal 1", "$!TIME 0.5", "$!VIEW PSI=20"));
  EXPECT_FALSE(host.lock.IsOn());
}

TEST_F(UserActions, WhatChangedUnsaidIsSaidFirst) {
  host.frames.Active()->solutionTime = 3.0;
  Act(host, "$!VIEW PSI=20");
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre("# marquell journal 1", "$!TIME 3", "$!VIEW PSI=20"));
}

/// Writes into the active data as an add-on would.
void Alter(Host& host, LgIndex_t item, double value) {
  const DataSetPtr data = host.frames.Active()->Data();
  const LgIndex_t p = data->VariableNumber("p");
  QelFieldData* const field = data->Writable(1, p);
  host.history.BeforeWriting(data, 1, p);
  field->set(field, item, value);
}

class UserActionsInHistory : public UserActions {
 protected:
  UserActionsInHistory() { host.history.isKept = true; }
  ~UserActionsInHistory() override { host.history.isKept = false; }

  std::vector<std::string> Steps() {
    return host.history.UndoNames(host.frames.Active()->Data()->Id());
  }
};

TEST_F(UserActionsInHistory, AreOneStepWithWhatTheyQueueAndSetOff) {
  Perform(host, "Deed", [this] {
    Alter(host, 0, 1.0);
    Perform(host, "Inner", [this] { Alter(host, 1, 1.0); });
    host.idle.Add([](ArbParam_t) { Alter(Host::Instance(), 2, 1.0); }, 0);
  });
  EXPECT_THAT(Steps(), ElementsAre("Deed: p"));
  UndoLast(host);
  EXPECT_EQ(host.frames.Active()->Data()->VariableRange(4).max, 0.0);
}

TEST_F(UserActionsInHistory, ThatFailAreAStepOfWhatTheyDidUntilThen) {
  EXPECT_THROW(Perform(host, "Deed",
                       [this] {
                         Alter(host, 0, 1.0);
                         throw CommandError("no");
                       }),
               CommandError);
  EXPECT_THAT(Steps(), ElementsAre("Deed: p"));
  Perform(host, "Next", [this] { Alter(host, 1, 1.0); });
  EXPECT_THAT(Steps(), ElementsAre("Next: p", "Deed: p"));
}

TEST_F(UserActionsInHistory, OfUndoAndRedoAreRecordedAndTellWhenThereIsNone) {
  Perform(host, "Deed", [this] { Alter(host, 0, 1.0); });
  UndoLast(host);
  EXPECT_THROW(UndoLast(host), CommandError);
  RedoLast(host);
  EXPECT_THROW(RedoLast(host), CommandError);
  EXPECT_THAT(host.recorder.Lines(), ElementsAre("# marquell journal 1", "$!UNDO", "$!REDO"));
}

TEST_F(UserActions, ByAnotherWayAreRecordedAsTheirCommand) {
  host.frames.Active()->solutionTime = 3.0;
  ActAs(host, "$!OPEN \"file.vtu\"", [](Host& its) {
    EXPECT_EQ(its.lock.Owner(), LockStack::kHostName);
    its.ShowFile(MakeData(2, 2, 2), "file.vtu");
  });
  EXPECT_EQ(host.frames.Active()->fileName, "file.vtu");
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre("# marquell journal 1", "$!TIME 3", "$!OPEN \"file.vtu\""));
  EXPECT_THROW(ActAs(host, "$!OPEN x", [](Host&) { throw CommandError("no"); }), CommandError);
  EXPECT_EQ(host.recorder.Lines().size(), 3U);
}

TEST_F(UserActionsInHistory, InADialogAreNamedByTheirControl) {
  DialogModel& dialogs = host.dialogs;
  ControlCallbacks callbacks;
  callbacks.pressed = [] { Alter(Host::Instance(), 0, 1.0); };
  callbacks.chosen = [](LgIndex_t n) { Alter(Host::Instance(), 1, 10.0 + n); };
  callbacks.entered = [](const char*) {
    Alter(Host::Instance(), 2, 3.0);
    return true;
  };
  callbacks.up = [] { Alter(Host::Instance(), 3, 4.0); };
  ControlCallbacks none;
  const LgIndex_t dialog =
      dialogs.Add(ControlKind::Dialog, DialogModel::kMainDialog, {}, none, "Title");
  const LgIndex_t button = dialogs.Add(ControlKind::Button, dialog, {}, callbacks, "Apply");
  const LgIndex_t toggle = dialogs.Add(ControlKind::BitmapToggle, dialog, {}, callbacks);
  const LgIndex_t menu = dialogs.Add(ControlKind::OptionMenu, dialog, {}, callbacks);
  const LgIndex_t field = dialogs.Add(ControlKind::SpinTextField, dialog, {}, callbacks, "0.5");
  dialogs.Find(toggle)->toolTip = "Use a circle";
  dialogs.Find(menu)->items = {"a", "b"};
  dialogs.Find(menu)->toolTip = "Rule";
  dialogs.Find(field)->toolTip = "Size";
  EXPECT_FALSE(PressControl(host, button)) << "the dialog is not up";
  dialogs.Launch(dialog);
  EXPECT_TRUE(PressControl(host, button));
  EXPECT_TRUE(ToggleControl(host, toggle, true));
  EXPECT_TRUE(ChooseItem(host, menu, 2));
  EXPECT_TRUE(EnterText(host, field, "7"));
  EXPECT_TRUE(Spin(host, field, true));
  EXPECT_FALSE(ChooseItem(host, menu, 3));
  EXPECT_FALSE(PressControl(host, toggle));
  EXPECT_TRUE(CloseDialog(host, dialog));
  EXPECT_FALSE(AskForHelp(host, dialog));
  EXPECT_THAT(Steps(), ElementsAre("Size: p", "Size: p", "Rule: p", "Use a circle: p", "Apply: p"));
}

}  // namespace
}  // namespace qelhost
