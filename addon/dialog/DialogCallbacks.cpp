#include "DialogCallbacks.h"

#include "Controls.h"
#include "DialogState.h"
#include "EntryPoint.h"
#include "HostCheck.h"
#include "LayerQuestions.h"
#include "Selvane.h"
#include "ShapeHandles.h"
#include "Utilities.h"

#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <string>

namespace qelvane::qelutiltools {

namespace {

/// Runs the body on the dialog's session; nothing when the dialog is bound to none.
template <class Body>
void OnSession(Body&& body) {
  EntryPoint(nullptr, [&body] {
    if (Selvane* const session = DialogSession()) body(*session);
  });
}

void SwitchTool(PickKind kind, bool isOn, void (*ask)() = nullptr) {
  OnSession([=](Selvane& session) {
    if (isOn && ask != nullptr) ask();
    session.SetPickKind(kind, isOn);
    RefreshTools();
    RefreshControls();
  });
  FollowShape();
}

void ShowView(StandardView view) {
  OnSession([view](Selvane& session) {
    session.SetView(view);
    session.RecordView(view);
  });
}

constexpr char kModifierHelp[] =
    "\n\nValid input is in the form of <operator><value>\n  where <operator> is one of: = + - * /\n"
    "If no operator is included, = is assumed.\n\nExamples:\n    99\tAssign a value of 99 to all "
    "picked elements.\n  =-33\tAssign a value of -33 to all picked elements.\n   +10\tAdd 10 to "
    "the "
    "current value of picked elements.\n  -0.5\tSubtract .5 from the current value of picked "
    "elements.\n  *1.4\tMultiply current value of picked elements by 1.4\n  /2.0\tDivide current "
    "value of picked elements by 2.\n  NOTE:  /0 is not allowed.";

void ReportBadModifier(const char* text) {
  const std::string message = std::string("Bad input for the value modifier:  ") +
                              (text == nullptr ? "" : text) + kModifierHelp;
  QelUtilDialogMessageBox(message.c_str(), MessageBox_Error);
}

}  // namespace

void OnInit() {
  EntryPoint(nullptr, InitDialog);
  FollowShape();
}

void OnClose() {
  EntryPoint(nullptr, CloseDialog);
  FollowShape();
}

void OnHelp() {
  EntryPoint(nullptr, [] { QelUtilHelp("selvane.html", FALSE, 0); });
}

void OnPageActivated(LgIndex_t page) {
  EntryPoint(nullptr, [page] {
    constexpr LgIndex_t kBlankPage = 2;
    if (page == kBlankPage) {
      EnterBlankPage();
    } else {
      EnterAlterPage();
    }
    RefreshApplyButton();
  });
}

void OnPageDeactivated(LgIndex_t) {}

void OnElementTool(LgIndex_t isOn) { SwitchTool(PickKind::Element, isOn != 0); }
void OnRectangleTool(LgIndex_t isOn) { SwitchTool(PickKind::Rectangle, isOn != 0); }
void OnCircleTool(LgIndex_t isOn) { SwitchTool(PickKind::Circle, isOn != 0); }
void OnPolygonTool(LgIndex_t isOn) { SwitchTool(PickKind::Polygon, isOn != 0); }
void OnCubeTool(LgIndex_t isOn) { SwitchTool(PickKind::Cube, isOn != 0, AskForEdgeOrMesh); }
void OnSphereTool(LgIndex_t isOn) { SwitchTool(PickKind::Sphere, isOn != 0, AskForMesh); }

void OnVariableChosen(LgIndex_t item) {
  OnSession([item](Selvane& session) { session.SetAlterVariable(item); });
}

bool OnModifierEntered(const char* text) {
  OnSession([text](Selvane& session) {
    if (text == nullptr || !session.ParseModifier(text)) ReportBadModifier(text);
    ShowModifier();
  });
  return true;
}

void OnSyncToggled(LgIndex_t isOn) {
  OnSession([isOn](Selvane& session) { session.SetSyncContours(isOn != 0); });
}

void OnUndoAlter() {
  OnSession([](Selvane& session) {
    if (!session.UndoLastAlter(false)) return;
    session.RecordUndoAlter();
    RedrawIfRecording();
  });
}

void OnUndoBlanks() {
  OnSession([](Selvane& session) {
    session.ResetPickBlanks();
    session.RecordUndoBlank();
    RedrawIfRecording();
  });
}

void OnIncludeBlankingToggled(LgIndex_t isOn) {
  OnSession([isOn](Selvane& session) {
    SetValueBlankingInclude(isOn != 0);
    session.RecordBlankingInclude(isOn != 0);
  });
}

void OnShadeToggled(LgIndex_t isOn) {
  OnSession([isOn](Selvane& session) {
    if (isOn != 0) AskForShade();
    if (CPickBoundary3d* const boundary = session.Boundary3d()) boundary->ShowShade(isOn != 0);
  });
}

void OnApply() {
  OnSession([](Selvane& session) {
    if (session.IsBlankMode()) AskForValueBlanking();
    if (!NeedsSeed(session)) {
      if (!session.ApplyArea(false)) return;
      session.RecordArea();
      RedrawIfRecording();
    } else {
      QelGUISetVisibility(Controls.seedLabel, TRUE);
      session.StartSurfacePick();
    }
  });
}

void OnSurfaceOptionChosen(LgIndex_t) {
  EntryPoint(nullptr, [] {
    if (QelUtilMouseGetCurrentMode() == Mouse_Probe) {
      HOST_CHECK(QelUtilMouseSetMode(MouseButtonMode_Select));
    }
    if (QelGUIDialogIsUp(Controls.dialog)) QelGUISetVisibility(Controls.seedLabel, FALSE);
  });
}

void OnViewXY() { ShowView(StandardView::XY); }
void OnViewXZ() { ShowView(StandardView::XZ); }
void OnViewYZ() { ShowView(StandardView::YZ); }
void OnView3D() { ShowView(StandardView::ThreeD); }

}  // namespace qelvane::qelutiltools
