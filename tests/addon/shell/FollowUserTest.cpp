// Following what the user does beside the dialog: the view, the mouse mode, drawn geometries.
#include "GeometryChoice.h"
#include "TrackingTest.h"

#include <utility>

namespace {

using fakehost::Geometry;
using fakehost::TrackingTest;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::IsGeometryArmed;
using qelvane::qelutiltools::PickKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using IdOf = LgIndex_t ControlIds::*;

class Following : public TrackingTest {};

// View -------------------------------------------------------------------------------------------

struct ToolRow {
  const char* rule;
  PickKind kind;
  IdOf tool;  ///< null: none
  bool isTiedToTheView;
};

/// Every tool with something to undo.
class ViewChange : public Following, public ::testing::WithParamInterface<ToolRow> {
 protected:
  void SetUp() override {
    Following::SetUp();
    ChooseAlteration("+5");
    ASSERT_TRUE(host.Choose(Ids().anyAllMenu, 1));
    host.AddGeometry(RectangleUpTo(9.0));
    host.Switch(Ids().rectangleTool, true);
    host.Switch(Ids().rectangleTool, false);
    if (GetParam().tool != nullptr) host.Switch(Ids().*GetParam().tool, true);
    if (GetParam().kind == PickKind::Element) {
      host.Probe(true, 1, 0, 1);
    } else {
      ASSERT_TRUE(host.Press(Ids().applyButton));
    }
    ASSERT_EQ(Session().Kind(), GetParam().kind);
    ASSERT_TRUE(Session().IsUndoAvailable());
  }
  void ExpectUndo(bool isKept) {
    EXPECT_EQ(Session().IsUndoAvailable(), isKept);
    EXPECT_EQ(IsSensitive(Ids().undoAlterButton), isKept);
  }
};

TEST_P(ViewChange, DropsTheUndoOfAnAreaDrawnInTheView) {
  host.RotateView(10.0, 20.0, 30.0);
  ExpectUndo(!GetParam().isTiedToTheView);
}

TEST_P(ViewChange, IsTheOnlyStyleThatDropsIt) {
  for (const std::string other : {"threedview", "TWODVIEW", "FIELDMAP", "PLOTTYPE"}) {
    host.Deliver(StateChange_Style, {other});
    host.Deliver(StateChange_Style, {other, "THREEDVIEW"});
  }
  host.Deliver(StateChange_View);
  ExpectUndo(true);
}

TEST_P(ViewChange, DropsItWhenTheDialogIsDown) {
  DropDialog();
  host.RotateView(10.0, 20.0, 30.0);
  EXPECT_EQ(Session().IsUndoAvailable(), !GetParam().isTiedToTheView);
  EXPECT_TRUE(IsSensitive(Ids().undoAlterButton)) << "a dialog that is down was touched";
}

INSTANTIATE_TEST_SUITE_P(
    Tools, ViewChange,
    ::testing::Values(ToolRow{"None", PickKind::None, nullptr, false},
                      ToolRow{"Element", PickKind::Element, &ControlIds::elementTool, false},
                      ToolRow{"Rectangle", PickKind::Rectangle, &ControlIds::rectangleTool, true},
                      ToolRow{"Polygon", PickKind::Polygon, &ControlIds::polygonTool, true},
                      ToolRow{"Circle", PickKind::Circle, &ControlIds::circleTool, true},
                      ToolRow{"Cube", PickKind::Cube, &ControlIds::cubeTool, false},
                      ToolRow{"Sphere", PickKind::Sphere, &ControlIds::sphereTool, false}),
    [](const auto& row) { return std::string(row.param.rule); });

// Mouse mode -------------------------------------------------------------------------------------

struct MouseRow {
  const char* rule;
  IdOf tool;  ///< null: none
  QelMouseMode_e mode;
  PickKind kind;
};

class MouseChange : public Following, public ::testing::WithParamInterface<MouseRow> {
 protected:
  void SetUp() override {
    Following::SetUp();
    if (GetParam().tool != nullptr) host.Switch(Ids().*GetParam().tool, true);
    zones = host.ActiveData()->zones.size();
    before = Session().Kind();
    host.calls.clear();
  }
  std::size_t zones = 0;
  PickKind before = PickKind::None;
};

TEST_P(MouseChange, BringsTheToolInLine) {
  host.ChooseMouseMode(GetParam().mode);
  EXPECT_EQ(Session().Kind(), GetParam().kind);
  const std::pair<IdOf, PickKind> toggles[] = {{&ControlIds::elementTool, PickKind::Element},
                                               {&ControlIds::rectangleTool, PickKind::Rectangle},
                                               {&ControlIds::polygonTool, PickKind::Polygon},
                                               {&ControlIds::circleTool, PickKind::Circle},
                                               {&ControlIds::cubeTool, PickKind::Cube},
                                               {&ControlIds::sphereTool, PickKind::Sphere}};
  for (const auto& [toggle, kind] : toggles) {
    EXPECT_EQ(IsOn(Ids().*toggle), kind == GetParam().kind) << static_cast<int>(kind);
  }
}

TEST_P(MouseChange, TouchesNeitherModeNorZones) {
  host.ChooseMouseMode(GetParam().mode);
  EXPECT_EQ(host.mouseMode, GetParam().mode);
  EXPECT_EQ(host.CallCount("QelUtilMouseSetMode"), 0);
  EXPECT_EQ(host.CallCount("QelUtilProbeInstallCallback"), 0);
  EXPECT_EQ(host.ActiveData()->zones.size(), zones);
}

TEST_P(MouseChange, IsIgnoredWhenOwn) {
  host.mouseMode = GetParam().mode;
  NotifyOwn(StateChange_MouseModeUpdate);
  EXPECT_EQ(Session().Kind(), before);
}

TEST_P(MouseChange, BringsTheToolInLineWithTheDialogDown) {
  DropDialog();
  host.calls.clear();
  host.ChooseMouseMode(GetParam().mode);
  EXPECT_EQ(Session().Kind(), GetParam().kind);
  EXPECT_EQ(host.CallCount("QelGUIToggleSet"), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Modes, MouseChange,
    ::testing::Values(
        MouseRow{"RectangleMode", nullptr, Mouse_GeomRectangle, PickKind::Rectangle},
        MouseRow{"PolylineMode", nullptr, Mouse_GeomPolyline, PickKind::Polygon},
        MouseRow{"CircleMode", nullptr, Mouse_GeomCircle, PickKind::Circle},
        MouseRow{"OtherAreaMode", &ControlIds::circleTool, Mouse_GeomRectangle,
                 PickKind::Rectangle},
        MouseRow{"AreaModeAfterElement", &ControlIds::elementTool, Mouse_GeomPolyline,
                 PickKind::Polygon},
        MouseRow{"AreaModeAfterCube", &ControlIds::cubeTool, Mouse_GeomCircle, PickKind::Circle},
        MouseRow{"ProbeKeepsElement", &ControlIds::elementTool, Mouse_Probe, PickKind::Element},
        MouseRow{"SelectEndsElement", &ControlIds::elementTool, Mouse_Select, PickKind::None},
        MouseRow{"ZoomEndsElement", &ControlIds::elementTool, Mouse_Zoom, PickKind::None},
        MouseRow{"SelectEndsRectangle", &ControlIds::rectangleTool, Mouse_Select, PickKind::None},
        MouseRow{"ZoomEndsPolygon", &ControlIds::polygonTool, Mouse_Zoom, PickKind::None},
        MouseRow{"RotateEndsCircle", &ControlIds::circleTool, Mouse_Rotate, PickKind::None},
        MouseRow{"SquareEndsRectangle", &ControlIds::rectangleTool, Mouse_GeomSquare,
                 PickKind::None},
        MouseRow{"SelectLeavesCube", &ControlIds::cubeTool, Mouse_Select, PickKind::Cube},
        MouseRow{"RotateLeavesSphere", &ControlIds::sphereTool, Mouse_Rotate, PickKind::Sphere},
        MouseRow{"SelectLeavesNone", nullptr, Mouse_Select, PickKind::None}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Following, RefreshesShadeAndApplyWithTheMouseMode) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_TRUE(host.Switch(Ids().shadeToggle, true));
  ASSERT_TRUE(IsSensitive(Ids().applyButton));
  host.ChooseMouseMode(Mouse_GeomCircle);
  EXPECT_FALSE(IsOn(Ids().shadeToggle));
  EXPECT_FALSE(IsSensitive(Ids().applyButton)) << "there is no geometry";
  host.AddGeometry(RectangleUpTo(1.0));
  host.ChooseMouseMode(Mouse_Select);
  EXPECT_TRUE(IsSensitive(Ids().applyButton));
}

TEST_F(Following, FollowsNoMouseModeWithoutASession) {
  AddBlock(PlotType_Cartesian3D);
  host.calls.clear();
  host.ChooseMouseMode(Mouse_GeomCircle);
  EXPECT_EQ(Found(), nullptr);
  EXPECT_EQ(host.CallCount("QelGUIToggleSet"), 0);
}

// Geometries -------------------------------------------------------------------------------------

struct GeometryRow {
  const char* rule;
  QelGeomType_e type;
  PickKind kind;
};

class Drawn : public Following, public ::testing::WithParamInterface<GeometryRow> {
 protected:
  static Geometry OfType(QelGeomType_e type) {
    Geometry geometry = RectangleUpTo(2.0);
    geometry.type = type;
    geometry.points = {{0.0, 0.0}, {2.0, 0.0}, {0.0, 2.0}};
    return geometry;
  }
};

TEST_P(Drawn, IsTakenWithTheKindThatFits) {
  host.isRecording = true;
  host.DrawGeometry(OfType(GetParam().type));
  EXPECT_EQ(Session().Kind(), GetParam().kind);
  EXPECT_THAT(host.recordedLines, ElementsAre("Marquell PICKGEOMETRY"));
}

TEST_P(Drawn, IsTakenFromAmongOlderOnes) {
  host.AddGeometry(OfType(GeomType_LineSegs));
  host.AddGeometry(OfType(GeomType_Circle));
  host.DrawGeometry(OfType(GetParam().type));
  EXPECT_EQ(Session().Kind(), GetParam().kind);
}

TEST_P(Drawn, IsTakenWithoutADialogOnlyWhenArmed) {
  host.isRecording = true;
  DropDialog();
  host.DrawGeometry(OfType(GetParam().type));
  EXPECT_EQ(Session().Kind(), PickKind::None);
  EXPECT_THAT(host.recordedLines, IsEmpty());

  PlayWell("PICKGEOMETRY");
  ASSERT_TRUE(IsGeometryArmed());
  host.recordedLines.clear();
  host.DrawGeometry(OfType(GetParam().type));
  EXPECT_FALSE(IsGeometryArmed());
  EXPECT_EQ(Session().Kind(), GetParam().kind);
  EXPECT_THAT(host.recordedLines, ElementsAre("Marquell PICKGEOMETRY"));

  // Armed for one alone.
  host.recordedLines.clear();
  host.DrawGeometry(OfType(GeomType_Circle));
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Types, Drawn,
    ::testing::Values(GeometryRow{"Polyline", GeomType_LineSegs, PickKind::Polygon},
                      GeometryRow{"Rectangle", GeomType_Rectangle, PickKind::Rectangle},
                      GeometryRow{"Square", GeomType_Square, PickKind::Rectangle},
                      GeometryRow{"Circle", GeomType_Circle, PickKind::Circle}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Following, TakesNoGeometryUnlessTheHostHoldsTheLock) {
  host.isRecording = true;
  host.AddGeometry(RectangleUpTo(2.0));
  NotifyOwn(StateChange_GeomCreated);
  host.FailCall("QelUtilLockIsOn", 1);
  host.Deliver(StateChange_GeomCreated);
  EXPECT_TRUE(host.WasFaultHit());
  EXPECT_EQ(Session().Kind(), PickKind::None);
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

TEST_F(Following, TakesNoGeometryWithoutASession) {
  host.isRecording = true;
  AddBlock(PlotType_Cartesian3D);
  host.DrawGeometry(RectangleUpTo(2.0));
  EXPECT_EQ(Found(), nullptr);
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

TEST_F(Following, LeavesTheToolWithAGeometryOfAnotherType) {
  host.isRecording = true;
  ASSERT_TRUE(host.Switch(Ids().circleTool, true));
  Geometry ellipse = RectangleUpTo(2.0);
  ellipse.type = GeomType_Ellipse;
  host.DrawGeometry(ellipse);
  EXPECT_EQ(Session().Kind(), PickKind::Circle);
  EXPECT_THAT(host.recordedLines, ElementsAre("Marquell PICKGEOMETRY"));
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_F(Following, CanApplyWhatWasJustDrawn) {
  ASSERT_TRUE(host.Switch(Ids().rectangleTool, true));
  ASSERT_FALSE(host.Press(Ids().applyButton));
  ChooseAlteration("+5");
  host.DrawGeometry(RectangleUpTo(9.0));
  EXPECT_TRUE(host.Press(Ids().applyButton));
  EXPECT_EQ(host.ValuesOf(1, n).front(), 6.0);
}

}  // namespace
